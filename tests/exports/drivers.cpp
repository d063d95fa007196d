// Driver packages: with the driver library of the support directory, without it, and with one that lacks a function.
#include "../support/session.h"

namespace {

using vh::engine::test::WriteText;

std::wstring SupportFile(const Session& session)
{
    return Filled([&](auto... to) { _GetSupportDir(session, to...); }) + L"\\difxapi.dll";
}

// The last thing that the engine's host heard; "" when that is nothing new.
std::wstring Heard(const Session& session)
{
    static std::size_t before;
    const auto& messages = session.engine->Messages();
    const bool news = messages.size() != before;
    before = messages.size();
    return news ? messages.back().reason : L"";
}

TEST(Drivers, GoThroughTheLibraryOfTheSupportDirectory)
{
    const Session session;
    int32_t reboot = 0;
    uint32_t size = 0;
    const auto all = [&](int32_t answer) {
        EXPECT_EACH(answer, _DIFxDriverPackagePreinstall(session, L"p", 0),
                    _DIFxDriverPackageInstall(session, L"p", 0, nullptr, &reboot),
                    _DIFxDriverPackageUninstall(session, L"p", 0, nullptr, &reboot),
                    _DIFxDriverPackageGetPath(session, L"p", nullptr, &size));
    };
    all(static_cast<int32_t>(0x80029C4A));
    WriteText(SupportFile(session), "no library");
    all(static_cast<int32_t>(0x80029C4A));
    ASSERT_TRUE(CopyFileW(Beside(L"vhtest_difxapi.dll").c_str(), SupportFile(session).c_str(), FALSE));
    Heard(session);

    const INSTALLERINFO by{L"id", L"shown", L"product", L"maker"};
    const Table<const wchar_t*, const INSTALLERINFO*, int32_t, int32_t, const wchar_t*> cases = {
        {L"plain.inf", nullptr, 0, 0, L"plain.inf 5"},
        {L"five5", &by, static_cast<int32_t>(0x80070005), 0, L"five5 5 id,shown,product,maker"},
        {L"high-2147024891", &by, static_cast<int32_t>(0x80070005), 0, L"high-2147024891 5 id,shown,product,maker"},
        {L"large65541", nullptr, static_cast<int32_t>(0x80070005), 0, L"large65541 5"},
        {L"again77", nullptr, static_cast<int32_t>(0x8007004D), 1, L"again77 5"}};
    for (const auto& [package, installer, result, restart, told] : cases) {
        reboot = 0;
        EXPECT_GIVES(_DIFxDriverPackageInstall(session, package, 5, installer, &reboot), result, reboot, restart);
        const std::wstring code = std::to_wstring(wcstol(package + wcscspn(package, L"0123456789-"), nullptr, 10));
        EXPECT_EQ(Heard(session), std::wstring(L"OnDIFxLogCallbackImpl(install ") + told + L", " + code + L", 3)");
    }
    EXPECT_EQ(_DIFxDriverPackagePreinstall(session, L"p1", -1), static_cast<int32_t>(0x80070001));
    EXPECT_EQ(Heard(session), L"OnDIFxLogCallbackImpl(preinstall p1 4294967295, 1, 3)");
    EXPECT_EQ(_DIFxDriverPackageUninstall(session, L"p", 0, nullptr, &reboot), static_cast<int32_t>(0x80070001))
        << "this library has none";

    wchar_t path[8] = L"~";
    size = 3;
    EXPECT_GIVES(_DIFxDriverPackageGetPath(session, L"abc", path, &size), static_cast<int32_t>(0x8007007A), size, 4u);
    EXPECT_STREQ(path, L"~");
    EXPECT_GIVES(_DIFxDriverPackageGetPath(session, L"abc", path, &size), 0, std::wstring(path), L"abc");
    // A host that takes no events, or fails to, is no matter.
    session.calls().FailCall(L"ISetupScriptEvents.Raise", E_FAIL);
    EXPECT_EQ(_DIFxDriverPackagePreinstall(session, L"p", 0), 0);
    DeleteFileW(SupportFile(session).c_str());
    EXPECT_FALSE(GetModuleHandleW(L"difxapi.dll")) << "it is let go after each call";
}

} // namespace
