// The exports of script lists: each finds the list and makes one call.
#include "vhrt/lists.h"

#include "../runtime/context.h"
#include "../runtime/frame.h"

namespace {

// One operation on the list of a handle; an unknown handle leads to the list that answers with errors.
template <class Operation>
int64_t OnList(ObjectContext* context, ListHandle list, Operation&& operation)
{
    return vh::Framed(context, [&](ObjectContext& c) -> int64_t { return operation(c.lists.Find(list)); });
}

} // namespace

int64_t _ListCreate(ObjectContext* context, int32_t type)
{
    return vh::Framed(context, [&](ObjectContext& c) { return c.lists.Create(type); });
}

int64_t _ListDestroy(ObjectContext* context, ListHandle* handle)
{
    return vh::Framed(context, [&](ObjectContext& c) -> int64_t { return c.lists.Destroy(handle); });
}

int64_t _ListCount(ObjectContext* context, ListHandle list)
{
    return OnList(context, list, [](CVHList& l) { return l.Count(); });
}

int64_t _ListGetType(ObjectContext* context, ListHandle list)
{
    return OnList(context, list, [](CVHList& l) { return l.GetType(); });
}

int64_t _ListAddItem(ObjectContext* context, ListHandle list, int32_t value, int32_t mode)
{
    return OnList(context, list, [&](CVHList& l) { return l.AddItem(&value, mode); });
}

int64_t _ListAddString(ObjectContext* context, ListHandle list, const wchar_t* text, int32_t mode)
{
    return OnList(context, list, [&](CVHList& l) { return l.AddString(text, mode); });
}

int64_t _ListCurrentItem(ObjectContext* context, ListHandle list, int32_t* value)
{
    return OnList(context, list, [&](CVHList& l) { return l.CurrentItem(value); });
}

int64_t _ListCurrentString(ObjectContext* context, ListHandle list, wchar_t* buffer, int32_t size)
{
    return OnList(context, list, [&](CVHList& l) { return l.CurrentString(buffer, size); });
}

int64_t _ListSetCurrentItem(ObjectContext* context, ListHandle list, int32_t value)
{
    return OnList(context, list, [&](CVHList& l) { return l.SetCurrentItem(&value); });
}

int64_t _ListSetCurrentString(ObjectContext* context, ListHandle list, const wchar_t* text)
{
    return OnList(context, list, [&](CVHList& l) { return l.SetCurrentString(text); });
}

int64_t _ListDeleteItem(ObjectContext* context, ListHandle list)
{
    return OnList(context, list, [](CVHList& l) { return l.DeleteItem(); });
}

int64_t _ListDeleteString(ObjectContext* context, ListHandle list)
{
    return OnList(context, list, [](CVHList& l) { return l.DeleteString(); });
}

int64_t _ListDeleteAll(ObjectContext* context, ListHandle list)
{
    return OnList(context, list, [](CVHList& l) { return l.DeleteAll(); });
}

int64_t _ListGetFirstItem(ObjectContext* context, ListHandle list, int32_t* value)
{
    return OnList(context, list, [&](CVHList& l) { return l.GetFirstItem(value); });
}

int64_t _ListGetNextItem(ObjectContext* context, ListHandle list, int32_t* value)
{
    return OnList(context, list, [&](CVHList& l) { return l.GetNextItem(value); });
}

int64_t _ListGetFirstString(ObjectContext* context, ListHandle list, wchar_t* buffer, int32_t size)
{
    return OnList(context, list, [&](CVHList& l) { return l.GetFirstString(buffer, size); });
}

int64_t _ListGetNextString(ObjectContext* context, ListHandle list, wchar_t* buffer, int32_t size)
{
    return OnList(context, list, [&](CVHList& l) { return l.GetNextString(buffer, size); });
}

int64_t _ListFindItem(ObjectContext* context, ListHandle list, int32_t value)
{
    return OnList(context, list, [&](CVHList& l) { return l.FindItem(&value); });
}

int64_t _ListFindString(ObjectContext* context, ListHandle list, const wchar_t* text)
{
    return OnList(context, list, [&](CVHList& l) { return l.FindString(text); });
}

int64_t _ListSetIndex(ObjectContext* context, ListHandle list, int32_t index)
{
    return OnList(context, list, [&](CVHList& l) { return l.SetIndex(index); });
}

int64_t _ListGetIndex(ObjectContext* context, ListHandle list, int32_t* index)
{
    return OnList(context, list, [&](CVHList& l) { return l.GetIndex(index); });
}

int64_t _ListReadFromFile(ObjectContext* context, ListHandle list, const wchar_t* path)
{
    return OnList(context, list, [&](CVHList& l) { return l.ReadFromFile(path); });
}

int64_t _ListWriteToFile(ObjectContext* context, ListHandle list, const wchar_t* path, int32_t flags)
{
    return OnList(context, list, [&](CVHList& l) { return l.WriteToFile(path, flags); });
}
