// The trace export.
#include "../diagnostics/trace.h"
#include "vhrt/types.h"

extern "C" int32_t _SetupTraceWrite(const wchar_t* category, const wchar_t* subcategory, const wchar_t* text)
{
    // The text is the format, by definition: a percent sign in it is a conversion.
    vh::TraceScriptLine(category, subcategory, text ? text : L"");
    return 0;
}
