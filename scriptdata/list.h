// The script's one container: a doubly linked list of numbers or texts with a remembered position.
#pragma once

#include <cstdint>
#include <list>

#include "slab.h"
#include "stringx.h"

// Results and special indices are those of vhrt.h.
enum : int32_t {
    ListErrorWrongType = -500,
    ListErrorBadHandle = -501,
    ListErrorNoItem = -502,
};

// Operations that a list type does not have answer ListErrorWrongType.
class CVHList {
public:
    CVHList() = default;
    CVHList(const CVHList&) = delete;
    CVHList& operator=(const CVHList&) = delete;
    virtual ~CVHList() = default;

    virtual int32_t AddItem(const int32_t*, int32_t) { return ListErrorWrongType; }
    virtual int32_t AddString(const wchar_t*, int32_t) { return ListErrorWrongType; }
    virtual int32_t GetType() = 0;
    virtual int32_t CurrentItem(int32_t*) { return ListErrorWrongType; }
    virtual int32_t CurrentString(wchar_t*, int32_t) { return ListErrorWrongType; }
    virtual int32_t SetCurrentItem(const int32_t*) { return ListErrorWrongType; }
    virtual int32_t SetCurrentString(const wchar_t*) { return ListErrorWrongType; }
    virtual int32_t DeleteItem() { return ListErrorWrongType; }
    virtual int32_t DeleteString() { return ListErrorWrongType; }
    virtual int32_t GetFirstItem(int32_t*) { return ListErrorWrongType; }
    virtual int32_t GetFirstString(wchar_t*, int32_t) { return ListErrorWrongType; }
    virtual int32_t GetNextItem(int32_t*) { return ListErrorWrongType; }
    virtual int32_t GetNextString(wchar_t*, int32_t) { return ListErrorWrongType; }
    virtual int32_t FindItem(const int32_t*) { return ListErrorWrongType; }
    virtual int32_t FindString(const wchar_t*) { return ListErrorWrongType; }
    virtual int32_t ReadFromFile(const wchar_t*) { return ListErrorWrongType; }
    virtual int32_t WriteToFile(const wchar_t*, int32_t) { return ListErrorWrongType; }
    virtual int32_t SetIndex(int32_t index) = 0;
    virtual int32_t GetIndex(int32_t* index) = 0;
    virtual int32_t Count() = 0;
    virtual int32_t DeleteAll() = 0;
    // AddString of a text that the caller has no more use for.
    virtual int32_t TakeString(stringx&& text, int32_t mode) { return AddString(text.c_str(), mode); }
};

// What both types share. `m_current` is a real element whenever there is one; `m_index` is its place, kept
// exact by every step, so that no walk is needed to tell it.
template <class T>
class CVHListImpl : public CVHList, private vh::slab_pool, protected std::list<T, vh::slab_allocator<T>> {
    using list = std::list<T, vh::slab_allocator<T>>;

public:
    int32_t SetIndex(int32_t index) override;
    int32_t GetIndex(int32_t* index) override;
    int32_t Count() override { return static_cast<int32_t>(list::size()); }
    int32_t DeleteAll() override
    {
        list::clear();
        GoTo(list::end(), 0);
        return 0;
    }

protected:
    using iterator = typename list::iterator;

    CVHListImpl() : list(vh::slab_allocator<T>(static_cast<vh::slab_pool&>(*this))), m_current(list::end()) {}

    // Insertion, removal and walking are the same for every element type; results as in vhrt.h.
    template <class Value>
    int32_t Add(Value&& value, int32_t mode);
    int32_t Delete();
    bool First();
    bool Next();
    template <class Value>
    int32_t Find(const Value& value);
    void StepBack() { GoTo(std::prev(m_current), m_index - 1); }
    T& Current() { return *m_current; }
    bool Empty() const { return list::empty(); }

private:
    void GoTo(iterator element, int32_t index)
    {
        m_current = element;
        m_index = index;
    }
    int32_t LastIndex() { return Count() - 1; }

    iterator m_current;
    int32_t m_index = 0;
};

class CNumList final : public CVHListImpl<int32_t> {
public:
    int32_t AddItem(const int32_t* value, int32_t mode) override { return Add(*value, mode); }
    int32_t GetType() override;
    int32_t CurrentItem(int32_t* value) override;
    int32_t SetCurrentItem(const int32_t* value) override;
    int32_t DeleteItem() override { return Delete(); }
    int32_t GetFirstItem(int32_t* value) override;
    int32_t GetNextItem(int32_t* value) override;
    int32_t FindItem(const int32_t* value) override { return Find(*value); }
};

class CStringxList : public CVHListImpl<stringx> {
public:
    int32_t AddString(const wchar_t* text, int32_t mode) override;
    int32_t GetType() override;
    int32_t CurrentString(wchar_t* buffer, int32_t size) override;
    int32_t SetCurrentString(const wchar_t* text) override;
    int32_t DeleteString() override { return Delete(); }
    int32_t GetFirstString(wchar_t* buffer, int32_t size) override;
    int32_t GetNextString(wchar_t* buffer, int32_t size) override;
    int32_t FindString(const wchar_t* text) override;
    int32_t ReadFromFile(const wchar_t* path) override;
    int32_t WriteToFile(const wchar_t* path, int32_t flags) override;
    int32_t TakeString(stringx&& text, int32_t mode) override;

private:
    int32_t Deliver(wchar_t* buffer, int32_t size);
};

// Stands in for a list that no handle leads to. FindItem alone keeps the base's answer.
class CVHListError final : public CVHList {
public:
    static CVHListError& Instance();

    int32_t AddItem(const int32_t*, int32_t) override { return ListErrorBadHandle; }
    int32_t AddString(const wchar_t*, int32_t) override { return ListErrorBadHandle; }
    int32_t GetType() override { return ListErrorBadHandle; }
    int32_t CurrentItem(int32_t*) override { return ListErrorBadHandle; }
    int32_t CurrentString(wchar_t*, int32_t) override { return ListErrorBadHandle; }
    int32_t SetCurrentItem(const int32_t*) override { return ListErrorBadHandle; }
    int32_t SetCurrentString(const wchar_t*) override { return ListErrorBadHandle; }
    int32_t DeleteItem() override { return ListErrorBadHandle; }
    int32_t DeleteString() override { return ListErrorBadHandle; }
    int32_t GetFirstItem(int32_t*) override { return ListErrorBadHandle; }
    int32_t GetFirstString(wchar_t*, int32_t) override { return ListErrorBadHandle; }
    int32_t GetNextItem(int32_t*) override { return ListErrorBadHandle; }
    int32_t GetNextString(wchar_t*, int32_t) override { return ListErrorBadHandle; }
    int32_t FindString(const wchar_t*) override { return ListErrorBadHandle; }
    int32_t ReadFromFile(const wchar_t*) override { return ListErrorBadHandle; }
    int32_t WriteToFile(const wchar_t*, int32_t) override { return ListErrorBadHandle; }
    int32_t SetIndex(int32_t) override { return ListErrorBadHandle; }
    int32_t GetIndex(int32_t*) override { return ListErrorBadHandle; }
    int32_t Count() override { return ListErrorBadHandle; }
    int32_t DeleteAll() override { return ListErrorBadHandle; }
    // A second find, which answers like the rest; nothing calls it.
    virtual int32_t FindItemAnywhere(const int32_t*) { return ListErrorBadHandle; }
};
