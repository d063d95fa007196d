// Exported functions on language identifiers, numbered texts and the string table.
#include "vhrt/language.h"

#include "../files/language_config.h"
#include "../runtime/context.h"
#include "../runtime/frame.h"
#include "../scriptdata/bstr.h"
#include "../scriptdata/results.h"

int32_t _GetStandardLangId(int32_t language)
{
    constexpr int32_t primary_bits = 0x3FF;
    constexpr int32_t default_sublanguage = 0x400;
    return (language & primary_bits) == language ? language + default_sublanguage : language;
}

// There is no test of the context here.
int32_t LangLoadString(ObjectContext* context, uint32_t id, wchar_t* buffer, int32_t size)
{
    return context->modules.LoadText(id, buffer, size);
}

int32_t _IsLangSupported(int32_t language, const wchar_t* path)
{
    LanguageConfig config;
    config.Read(vh::View(path));
    // An identifier has 16 bits, however wide the number is that holds it.
    return config.IsSupported(static_cast<uint16_t>(_GetStandardLangId(language)));
}

int32_t __LoadString(ObjectContext* context, const wchar_t* name, wchar_t* buffer, int32_t size)
{
    return vh::Framed(context, [&](ObjectContext& c) -> int32_t {
        if (!c.strings)
            return -1;
        vh::bstr text;
        const HRESULT code = c.strings->GetString(vh::TextOrEmpty(name).get(), text.put());
        if (FAILED(code))
            return code;
        // A name that is not there still delivers what the table gave with it.
        const int32_t copied = vh::CopyOut(text.view(), buffer, size);
        return code == S_FALSE ? -1 : copied;
    });
}
