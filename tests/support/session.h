// A context on the embedded engine: a product of the test's own, each engine call on record, and nothing left at
// the end.
#pragma once

#include "../../exports/vhrt.h"
#include "../engine/setup_folder.h"
#include "test.h"

namespace vh::test {

class Session : Pinned {
public:
    // `more` are further members of the product file beside the tree of MakeTree.
    explicit Session(const std::string& more = {})
    {
        engine::test::MakeTree(folder, more);
        Begin(folder.Given());
    }
    explicit Session(engine::Options options) { Begin(std::move(options)); }
    // On the tree of MakeTree too, with the options as the test changes them.
    explicit Session(const std::function<void(engine::Options&)>& change)
    {
        engine::test::MakeTree(folder);
        engine::Options options = folder.Given();
        change(options);
        Begin(std::move(options));
    }
    ~Session()
    {
        Release();
        EXPECT_EQ(engine->LiveObjects(), m_before) << "engine objects are still held";
    }

    operator ObjectContext*() const { return m_context; }
    engine::Recorder& calls() const { return engine->Calls(); }
    long CallsOf(std::wstring_view start) const { return calls().Count(start); }

    void Release()
    {
        if (m_context)
            __ReleaseObjectContext(m_context);
        m_context = nullptr;
    }
    // Makes the context anew, for tests that want to see or fail its making.
    void Create()
    {
        Release();
        const auto host = engine->Host();
        const auto services = engine->Services();
        m_context = __CreateObjectContext(host.get(), services.get());
    }

    engine::test::SetupFolder folder;
    std::unique_ptr<engine::Engine> engine;

private:
    void Begin(engine::Options options)
    {
        engine = engine::Engine::Open(std::move(options));
        m_before = engine->LiveObjects();
        Create();
        calls().Reset();
        calls().Record(true);
    }

    ObjectContext* m_context = nullptr;
    long m_before = 0;
};

// Resource libraries with the tests' texts.
inline std::wstring StandardTexts() { return Beside(L"vhtexts_standard.dll"); }
inline std::wstring UserTexts() { return Beside(L"vhtexts_user.dll"); }

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

// An attribute as text, or "<code>" for a failure.
inline std::wstring TextAttribute(ObjectContext* context, const wchar_t* media, const wchar_t* item, int32_t code)
{
    wchar_t buffer[512] = L"";
    int32_t number = 0;
    const int32_t result = _ComponentGetData(context, media, item, code, &number, buffer, 512);
    return result == 0 ? buffer : L"<" + std::to_wstring(result) + L">";
}

// An attribute as number, or the failure.
inline int32_t NumberAttribute(ObjectContext* context, const wchar_t* media, const wchar_t* item, int32_t code)
{
    wchar_t buffer[512] = L"";
    int32_t number = -9999;
    const int32_t result = _ComponentGetData(context, media, item, code, &number, buffer, 512);
    return result == 0 ? number : result;
}

} // namespace vh::test
