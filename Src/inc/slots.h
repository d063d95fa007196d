// Engine interfaces have fixed method positions; these macros make a wrong one fail to compile.
#pragma once

#include <windows.h>

namespace vh {

// Names an unnamed position as a type, so that every filler method is distinct.
template <int Position>
struct slot {
};

// A run of positions that nothing here names: they keep the layout and answer E_NOTIMPL.
template <class Base, int First, int Last>
struct unnamed_slots : unnamed_slots<Base, First, Last - 1> {
    virtual HRESULT STDMETHODCALLTYPE Unnamed(slot<Last>*) { return E_NOTIMPL; }
};

template <class Base, int First>
struct unnamed_slots<Base, First, First> : Base {
    virtual HRESULT STDMETHODCALLTYPE Unnamed(slot<First>*) { return E_NOTIMPL; }
};

} // namespace vh

// Opens a group of methods: the next declaration stands at `first`, QueryInterface being 0.
#define VH_SLOTS_FROM(first) enum : int { vh_slots_begin = __COUNTER__ + 1 - (first) }

#define VH_SLOT_IS(n) static_assert(__COUNTER__ - vh_slots_begin == (n), "method out of place")

// Declares the method at position n.
#define VH_SLOT(n)                                                                                                     \
    VH_SLOT_IS(n);                                                                                                     \
    virtual HRESULT STDMETHODCALLTYPE

// Holds position n open.
#define VH_UNNAMED(n)                                                                                                  \
    VH_SLOT_IS(n);                                                                                                     \
    virtual HRESULT STDMETHODCALLTYPE Unnamed##n() { return E_NOTIMPL; }
