// The list exports of one side, and a list of equal elements on them.
#pragma once

#include "harness.h"
#include "modules.h"

namespace bench {

struct lists_api {
    explicit lists_api(const module& side)
        : context(side), create(BENCH_GET(side, _ListCreate)), destroy(BENCH_GET(side, _ListDestroy)),
          count(BENCH_GET(side, _ListCount)), add_item(BENCH_GET(side, _ListAddItem)),
          add_string(BENCH_GET(side, _ListAddString)), first_item(BENCH_GET(side, _ListGetFirstItem)),
          first_string(BENCH_GET(side, _ListGetFirstString)), next_item(BENCH_GET(side, _ListGetNextItem)),
          next_string(BENCH_GET(side, _ListGetNextString)), find_item(BENCH_GET(side, _ListFindItem)),
          find_string(BENCH_GET(side, _ListFindString)), delete_all(BENCH_GET(side, _ListDeleteAll))
    {
    }

    bench::context context;
    decltype(&_ListCreate) create;
    decltype(&_ListDestroy) destroy;
    decltype(&_ListCount) count;
    decltype(&_ListAddItem) add_item;
    decltype(&_ListAddString) add_string;
    decltype(&_ListGetFirstItem) first_item;
    decltype(&_ListGetFirstString) first_string;
    decltype(&_ListGetNextItem) next_item;
    decltype(&_ListGetNextString) next_string;
    decltype(&_ListFindItem) find_item;
    decltype(&_ListFindString) find_string;
    decltype(&_ListDeleteAll) delete_all;
};

// Texts when a text is given, else numbers.
class filled_list {
public:
    filled_list(const module& side, int32_t type, const wchar_t* text)
        : m_side(side), m_api(side), m_type(type), m_text(text)
    {
    }

    void Create() { m_list = m_api.create(m_api.context, m_type); }
    void Destroy() { m_api.destroy(m_api.context, &m_list); }
    void Clear() { m_api.delete_all(m_api.context, m_list); }
    void Append(long count)
    {
        for (; count > 0; --count) {
            if (m_text)
                m_api.add_string(m_api.context, m_list, m_text, ListAddAfter);
            else
                m_api.add_item(m_api.context, m_list, 5, ListAddAfter);
        }
    }
    void AppendLast()
    {
        if (m_text)
            m_api.add_string(m_api.context, m_list, L"twenty units of text.", ListAddAfter);
        else
            m_api.add_item(m_api.context, m_list, 6, ListAddAfter);
    }
    void First()
    {
        wchar_t text[64];
        int32_t number = 0;
        if (m_text)
            m_api.first_string(m_api.context, m_list, text, 64);
        else
            m_api.first_item(m_api.context, m_list, &number);
    }
    void Next(long count)
    {
        wchar_t text[64];
        int32_t number = 0;
        for (; count > 0; --count) {
            if (m_text)
                m_api.next_string(m_api.context, m_list, text, 64);
            else
                m_api.next_item(m_api.context, m_list, &number);
        }
        Keep(text[0]);
        Keep(number);
    }
    void FindLast()
    {
        if (m_text)
            Keep(m_api.find_string(m_api.context, m_list, L"twenty units of text."));
        else
            Keep(m_api.find_item(m_api.context, m_list, 6));
    }
    // The rest is of the library alone.
    void SetEachIndex(long count)
    {
        const auto set = BENCH_GET(m_side, _ListSetIndex);
        for (int32_t i = 0; i < count; ++i)
            set(m_api.context, m_list, i);
    }
    // Walks by next and asks for the index at each element.
    void AskEachIndex(long count)
    {
        const auto get = BENCH_GET(m_side, _ListGetIndex);
        int32_t number = 0;
        for (; count > 0; --count) {
            get(m_api.context, m_list, &number);
            m_api.next_item(m_api.context, m_list, &number);
        }
        Keep(number);
    }
    void Delete(long count)
    {
        const auto remove = BENCH_GET(m_side, _ListDeleteItem);
        for (; count > 0; --count)
            remove(m_api.context, m_list);
    }

private:
    const module& m_side;
    lists_api m_api;
    int32_t m_type;
    const wchar_t* m_text;
    ListHandle m_list = 0;
};

} // namespace bench
