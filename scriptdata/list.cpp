#include "list.h"

#include <memory>

#include "../Src/inc/script_values.h"
#include "results.h"

template <class T>
template <class Value>
int32_t CVHListImpl<T>::Add(Value&& value, int32_t mode)
{
    if (mode != ListAddAfter && mode != ListAddBefore)
        return -1;
    const bool behind = mode == ListAddAfter && !Empty();
    const iterator place = behind ? std::next(m_current) : m_current;
    GoTo(list::emplace(place, std::forward<Value>(value)), behind ? m_index + 1 : m_index);
    return 0;
}

template <class T>
int32_t CVHListImpl<T>::Delete()
{
    if (Empty())
        return 1;
    m_current = list::erase(m_current);
    // The position never falls off the end.
    if (m_current == list::end() && !Empty())
        StepBack();
    return 0;
}

template <class T>
bool CVHListImpl<T>::First()
{
    if (Empty())
        return false;
    GoTo(list::begin(), 0);
    return true;
}

template <class T>
bool CVHListImpl<T>::Next()
{
    if (Empty())
        return false;
    const iterator next = std::next(m_current);
    if (next == list::end())
        return false;
    // Elements lie one behind the other in their blocks: what a walk reaches soon is on its way already.
    PreFetchCacheLine(PF_TEMPORAL_LEVEL_1, reinterpret_cast<const char*>(std::addressof(*next)) + 1024);
    GoTo(next, m_index + 1);
    return true;
}

template <class T>
template <class Value>
int32_t CVHListImpl<T>::Find(const Value& value)
{
    const iterator end = list::end();
    int32_t index = m_index;
    for (iterator element = m_current; element != end; ++element, ++index) {
        if (*element == value) {
            GoTo(element, index);
            return 0;
        }
    }
    return 1;
}

template <class T>
int32_t CVHListImpl<T>::SetIndex(int32_t index)
{
    if (Empty())
        return 1;
    switch (index) {
    case ListIndexFirst:
        First();
        return 0;
    case ListIndexLast:
        GoTo(std::prev(list::end()), LastIndex());
        return 0;
    case ListIndexPrevious:
        if (m_index == 0)
            return -1;
        StepBack();
        return 0;
    case ListIndexNext:
        return Next() ? 0 : 1;
    default:
        break;
    }
    if (index < 0 || index > LastIndex())
        return 1;

    // From the nearest of front, back and the current element.
    const int32_t from_current = index > m_index ? index - m_index : m_index - index;
    if (index < from_current)
        GoTo(list::begin(), 0);
    else if (LastIndex() - index < from_current)
        GoTo(std::prev(list::end()), LastIndex());
    std::advance(m_current, index - m_index);
    m_index = index;
    return 0;
}

template <class T>
int32_t CVHListImpl<T>::GetIndex(int32_t* index)
{
    if (Empty())
        return 1;
    *index = m_index;
    return 0;
}

int32_t CNumList::GetType() { return ListTypeNumber; }

int32_t CNumList::CurrentItem(int32_t* value)
{
    if (Empty())
        return 1;
    *value = Current();
    return 0;
}

int32_t CNumList::SetCurrentItem(const int32_t* value)
{
    if (Empty())
        return 1;
    Current() = *value;
    return 0;
}

int32_t CNumList::GetFirstItem(int32_t* value)
{
    if (!First())
        return 1;
    *value = Current();
    return 0;
}

int32_t CNumList::GetNextItem(int32_t* value)
{
    if (!Next())
        return 1;
    *value = Current();
    return 0;
}

int32_t CStringxList::GetType() { return ListTypeString; }

int32_t CStringxList::AddString(const wchar_t* text, int32_t mode) { return Add(text, mode); }

int32_t CStringxList::TakeString(stringx&& text, int32_t mode)
{
    // A script's text ends at its first NUL.
    text.resize(std::wcslen(text.c_str()));
    return Add(std::move(text), mode);
}

int32_t CStringxList::SetCurrentString(const wchar_t* text)
{
    if (Empty())
        return 1;
    Current() = text;
    return 0;
}

int32_t CStringxList::Deliver(wchar_t* buffer, int32_t size) { return vh::CopyOut(Current(), buffer, size); }

int32_t CStringxList::CurrentString(wchar_t* buffer, int32_t size)
{
    return Empty() ? ListErrorNoItem : Deliver(buffer, size);
}

int32_t CStringxList::GetFirstString(wchar_t* buffer, int32_t size)
{
    return First() ? Deliver(buffer, size) : ListErrorNoItem;
}

int32_t CStringxList::GetNextString(wchar_t* buffer, int32_t size)
{
    if (!Next())
        return ListErrorNoItem;
    const int32_t result = Deliver(buffer, size);
    // The retry with a larger buffer has to meet the same element.
    if (result > 0)
        StepBack();
    return result;
}

int32_t CStringxList::FindString(const wchar_t* text) { return Find(std::wstring_view(text ? text : L"")); }

CVHListError& CVHListError::Instance()
{
    static CVHListError instance;
    return instance;
}

template class CVHListImpl<int32_t>;
template class CVHListImpl<stringx>;
