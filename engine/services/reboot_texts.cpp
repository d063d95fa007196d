#include "reboot_texts.h"

#include <nlohmann/json.hpp>

#include "../files.h"

namespace vh::engine {

namespace {

constexpr uint64_t most_bytes = 1 << 20;

std::wstring FileBeside(const std::wstring& logFile) { return JoinPath(FolderOf(logFile), L"restart.json"); }

} // namespace

std::vector<RebootText> ReadRebootTexts(const std::wstring& logFile)
{
    const std::wstring file = FileBeside(logFile);
    std::vector<RebootText> texts;
    if (!FactsOf(file).file())
        return texts;
    const auto read = nlohmann::json::parse(ReadWhole(file, most_bytes), nullptr, false);
    if (!read.is_array())
        return texts;
    for (const auto& row : read) {
        RebootText text;
        for (std::size_t i = 0; row.is_array() && i < text.size() && i < row.size(); ++i)
            if (row[i].is_string())
                text[i] = ToWide(row[i].get_ref<const std::string&>());
        texts.push_back(std::move(text));
    }
    return texts;
}

bool WriteRebootTexts(const std::wstring& logFile, const std::vector<RebootText>& texts)
{
    const std::wstring file = FileBeside(logFile);
    if (texts.empty())
        return !FactsOf(file).exists() || RemoveFile(file);
    auto rows = nlohmann::json::array();
    for (const RebootText& text : texts)
        rows.push_back({ToUtf8(text[0]), ToUtf8(text[1]), ToUtf8(text[2])});
    return WriteWhole(file, rows.dump());
}

} // namespace vh::engine
