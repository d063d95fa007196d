// Twins of the list exports on a map of handles and standard containers.
#include <algorithm>
#include <cstring>

#include "context.h"

namespace {

template <class T>
class standard_list final : public twin::list {
public:
    int64_t Count() const override { return static_cast<int64_t>(m_all.size()); }
    void AddNumber(int32_t value) override
    {
        if constexpr (std::is_same_v<T, int32_t>)
            m_current = m_all.insert(Behind(), value);
    }
    void AddText(const wchar_t* text) override
    {
        if constexpr (std::is_same_v<T, std::wstring>)
            m_current = m_all.emplace(Behind(), text);
    }
    int64_t Next(wchar_t* buffer, int32_t size) override
    {
        if (m_all.empty() || std::next(m_current) == m_all.end())
            return 1;
        ++m_current;
        if constexpr (std::is_same_v<T, int32_t>) {
            std::memcpy(buffer, &*m_current, sizeof(int32_t));
        } else {
            if (m_current->size() >= static_cast<std::size_t>(size))
                return static_cast<int64_t>(m_current->size()) + 1;
            std::memcpy(buffer, m_current->c_str(), (m_current->size() + 1) * sizeof(wchar_t));
        }
        return 0;
    }
    int64_t FindNumber(int32_t value) override
    {
        if constexpr (std::is_same_v<T, int32_t>)
            return Find(value);
        return -1;
    }
    int64_t FindText(const wchar_t* text) override
    {
        if constexpr (std::is_same_v<T, std::wstring>)
            return Find(std::wstring_view(text));
        return -1;
    }
    void First() override { m_current = m_all.begin(); }
    void Clear() override
    {
        m_all.clear();
        m_current = m_all.end();
    }

private:
    auto Behind() { return m_all.empty() ? m_all.end() : std::next(m_current); }
    template <class Value>
    int64_t Find(const Value& value)
    {
        const auto found = std::find(m_current, m_all.end(), value);
        if (found == m_all.end())
            return 1;
        m_current = found;
        return 0;
    }

    std::list<T> m_all;
    typename std::list<T>::iterator m_current = m_all.end();
};

class number_vector final : public twin::list {
public:
    int64_t Count() const override { return static_cast<int64_t>(m_all.size()); }
    void AddNumber(int32_t value) override { m_all.push_back(value); }
    void Clear() override { m_all.clear(); }

private:
    std::vector<int32_t> m_all;
};

template <class Operation>
int64_t OnList(ObjectContext* context, ListHandle handle, Operation&& operation)
{
    if (!context)
        return -1;
    const auto found = context->lists.find(handle);
    return found == context->lists.end() ? -501 : operation(*found->second);
}

} // namespace

// The floor of any call with these arguments.
extern "C" int64_t EmptyCall(ObjectContext*, ListHandle, int32_t*) { return 0; }

int64_t _ListCreate(ObjectContext* context, int32_t type)
{
    std::unique_ptr<twin::list> made;
    if (type == twin::vector_type)
        made = std::make_unique<number_vector>();
    else if (type == ListTypeNumber)
        made = std::make_unique<standard_list<int32_t>>();
    else
        made = std::make_unique<standard_list<std::wstring>>();
    const auto handle = reinterpret_cast<int64_t>(made.get());
    context->lists.emplace(handle, std::move(made));
    return handle;
}

int64_t _ListDestroy(ObjectContext* context, ListHandle* handle) { return context->lists.erase(*handle) ? 0 : -501; }

int64_t _ListCount(ObjectContext* context, ListHandle list)
{
    return OnList(context, list, [](twin::list& l) { return l.Count(); });
}

int64_t _ListAddItem(ObjectContext* context, ListHandle list, int32_t value, int32_t)
{
    return OnList(context, list, [&](twin::list& l) { return l.AddNumber(value), 0; });
}

int64_t _ListAddString(ObjectContext* context, ListHandle list, const wchar_t* text, int32_t)
{
    return OnList(context, list, [&](twin::list& l) { return l.AddText(text), 0; });
}

int64_t _ListGetFirstItem(ObjectContext* context, ListHandle list, int32_t*)
{
    return OnList(context, list, [](twin::list& l) { return l.First(), 0; });
}

int64_t _ListGetFirstString(ObjectContext* context, ListHandle list, wchar_t*, int32_t)
{
    return OnList(context, list, [](twin::list& l) { return l.First(), 0; });
}

int64_t _ListGetNextItem(ObjectContext* context, ListHandle list, int32_t* value)
{
    return OnList(context, list, [&](twin::list& l) { return l.Next(reinterpret_cast<wchar_t*>(value), 0); });
}

int64_t _ListGetNextString(ObjectContext* context, ListHandle list, wchar_t* buffer, int32_t size)
{
    return OnList(context, list, [&](twin::list& l) { return l.Next(buffer, size); });
}

int64_t _ListFindItem(ObjectContext* context, ListHandle list, int32_t value)
{
    return OnList(context, list, [&](twin::list& l) { return l.FindNumber(value); });
}

int64_t _ListFindString(ObjectContext* context, ListHandle list, const wchar_t* text)
{
    return OnList(context, list, [&](twin::list& l) { return l.FindText(text); });
}

int64_t _ListDeleteAll(ObjectContext* context, ListHandle list)
{
    return OnList(context, list, [](twin::list& l) { return l.Clear(), 0; });
}
