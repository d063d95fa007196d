// A session whose resource libraries are those with the test's texts.
#pragma once

#include "session.h"

namespace vh::test {

// A resource library beside the test program.
inline std::wstring TextsFile(const wchar_t* name)
{
    wchar_t own[MAX_PATH];
    GetModuleFileNameW(nullptr, own, MAX_PATH);
    return std::wstring(own, std::wstring_view(own).rfind(L'\\') + 1) + name;
}
inline std::wstring StandardTexts() { return TextsFile(L"vhtexts_standard.dll"); }
inline std::wstring UserTexts() { return TextsFile(L"vhtexts_user.dll"); }

class TextSession {
public:
    // An empty file means no library of that kind.
    TextSession(const std::wstring& user, const std::wstring& standard, HWND window = nullptr,
                std::map<long, variant> facts = {}, engine::Windows windows = engine::Windows::none)
        : m_session(OptionsOf(m_folder, user, standard, window, std::move(facts), windows))
    {
    }

    engine::Recorder& calls() const { return m_session.calls(); }

    operator ObjectContext*() const { return m_session; }
    const Session& session() const { return m_session; }
    const engine::test::SetupFolder& folder() const { return m_folder; }

private:
    static engine::Options OptionsOf(const engine::test::SetupFolder& folder, const std::wstring& user,
                                     const std::wstring& standard, HWND window, std::map<long, variant> facts,
                                     engine::Windows windows)
    {
        engine::test::MakeTree(folder);
        engine::Options options = folder.Given();
        options.window = window;
        options.windows = windows;
        options.facts = std::move(facts);
        for (const auto& [name, file] : {std::pair(L"VHUSER", user), std::pair(L"VHRES", standard)})
            if (!file.empty())
                options.variables.emplace_back(name, file);
        return options;
    }

    engine::test::SetupFolder m_folder;
    Session m_session;
};

} // namespace vh::test
