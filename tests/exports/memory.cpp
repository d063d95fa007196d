// Exhausted memory leaves the library as one exception type, which the host catches by that type.
#include "../support/bare_context.h"

#include <oleauto.h>

namespace {

BSTR WINAPI NoText(const OLECHAR*, UINT) { return nullptr; }

// Small blocks are still there, as they are for the library's reserve.
void* OnlySmallBlocks(size_t size) { return size < 512 ? std::malloc(size) : nullptr; }

// Blocks as large as the reserve that the library gives back.
int reserves_back;
void CountedFree(void* block)
{
    reserves_back += block && _msize(block) >= 4096;
    std::free(block);
}

TEST(ExhaustedMemory, ReachesTheHostFromTextsAndFromBlocks)
{
    const BareContext context;
    const ListHandle texts = _ListCreate(context, ListTypeString), numbers = _ListCreate(context, ListTypeNumber);
    _ListAddString(context, texts, L"here before", ListAddAfter);
    {
        const Patched none("SysAllocStringLen", NoText, L"VHRT.dll");
        const Patched counted("free", CountedFree, L"VHRT.dll");
        reserves_back = 0;
        EXPECT_EQ(
            CodeOf<com_exception>([&] { _ListAddString(context, texts, L"a text that needs a block", ListAddAfter); }),
            E_OUTOFMEMORY);
        EXPECT_EQ(reserves_back, 1) << "the exception's own memory";
        EXPECT_EQ(CodeOf<com_exception>([&] { _ListAddString(context, texts, L"short", ListAddAfter); }), S_OK);
        // Script files tell every failure by their result.
        EXPECT_EQ(_OpenFile(context, L"a path that needs a block", 2, 0), -1);
    }
    {
        const Patched none("malloc", OnlySmallBlocks, L"VHRT.dll");
        const HRESULT code = CodeOf<com_exception>([&] {
            for (int i = 0; i < 1000; ++i)
                _ListAddItem(context, numbers, i, ListAddAfter);
        });
        EXPECT_EACH(E_OUTOFMEMORY, code, CodeOf<com_exception>([] { __CreateObjectContext(nullptr, nullptr); }));
    }
    EXPECT_EQ(_ListCount(context, texts), 2);
    EXPECT_EQ(_ListAddItem(context, numbers, 1, ListAddAfter), 0) << "usable again";
    EXPECT_STRNE(com_exception(E_OUTOFMEMORY).what(), "");
    EXPECT_STREQ(com_exception(S_OK).what(), "");
}

} // namespace
