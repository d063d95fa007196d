// Formats of traced operations whose end records repeat the fields of the begin record.
#pragma once

namespace vh {

struct TraceFormats {
    const wchar_t* begin;
    const wchar_t* failure;
    const wchar_t* success;
};

} // namespace vh

// `tabs` stand between the error and the fields.
#define VH_TRACE_FORMATS(tabs, fields)                                                                                 \
    {                                                                                                                  \
        fields, L"Result=%s\t\tError=0x%08lx" tabs fields, L"Result=%s\t\t" fields                                     \
    }
