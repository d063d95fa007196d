// System functions replaced while an object lives: late-bound ones, and those that a module imports.
#pragma once

#include <gtest/gtest.h>

#include "import_patch.h"

namespace vh::test {

template <class Function>
class Replaced : Pinned {
public:
    explicit Replaced(Function& function) : m_function(function) { function.hide(); }
    Replaced(Function& function, typename Function::pointer replacement) : m_function(function)
    {
        function.replace(replacement);
    }
    ~Replaced() { m_function.replace(nullptr); }

private:
    Function& m_function;
};

// An import of the test program, or of the module that is named.
struct Patched : ImportPatch {
    template <class Function>
    Patched(const char* function, Function* replacement, const wchar_t* module = nullptr)
        : ImportPatch(GetModuleHandleW(module), function, reinterpret_cast<void*>(replacement))
    {
        EXPECT_TRUE(found()) << function;
    }
};

} // namespace vh::test
