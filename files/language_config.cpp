#include "language_config.h"

#include "../scriptdata/number_text.h"
#include "ini_file.h"

namespace {

// An empty field counts as 0; a comma at the very end begins no further one.
void AddNumbers(std::wstring_view list, std::set<uint16_t>& numbers)
{
    while (!list.empty()) {
        const std::size_t comma = list.find(L',');
        numbers.insert(static_cast<uint16_t>(vh::NumberOfText(stringx(list.substr(0, comma)).c_str())));
        list.remove_prefix(comma == list.npos ? list.size() : comma + 1);
    }
}

} // namespace

void LanguageConfig::Read(std::wstring_view file)
{
    path = file;
    inifilex document;
    if (!document.load(file, L"=", false))
        return;
    defaultLanguage = static_cast<uint16_t>(document.get_number(L"Languages", L"Default", 9));
    enableLangDlg = document.get_boolean(L"Startup", L"EnableLangDlg", false);
    AddNumbers(document.get_string(L"Languages", L"Supported", L""), supported);
    const stringx exact = document.get_string(L"Languages", L"RequireExactLangMatch", L"");
    if (exact == L"ALL")
        allRequireExactMatch = true;
    else
        AddNumbers(exact, requireExactLangMatch);
    AddNumbers(document.get_string(L"Languages", L"RTLLangs", L""), rtlLangs);
}
