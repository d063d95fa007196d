// Reading from a server that misbehaves.
#include <thread>

#include "server_access.h"

namespace {

constexpr DWORD size = 300000;
// Resets come between two passes of 1500 bytes: in the midst of one, what had come of it may be lost or kept.
constexpr DWORD refused_range = 0x8004D560;

// One read of the whole, small reads, and what the server saw.
TEST(Reading, GetsTheWholeThroughFaults)
{
    Table<const wchar_t*, const wchar_t*, const char*> cases = {
        {L"once", L"drop=99000&times=1", "-|bytes=99000-"}, {L"plain", L"", "-"},
        {L"first", L"drop=1500&times=1", "-|bytes=1500-"},  {L"nolength", L"length=none", "-"},
        {L"status", L"status=503&times=1", "-|-"},          {L"chunked", L"chunked=1", "-"}};
    for (const auto& [key, query, requests] : cases) {
        Reader whole(Address(std::wstring(query) + L"&size=300000", key), 5);
        ASSERT_TRUE(whole.Read(size)) << key << " " << whole.error;
        EXPECT_EQ(whole.count, size) << key;
        EXPECT_TRUE(IsContent(whole.bytes.data(), whole.count)) << key;
        EXPECT_EQ(Requests(key), requests);

        const std::wstring small = std::wstring(key) + L"2";
        Reader reader(Address(std::wstring(query) + L"&size=300000", small), 5);
        DWORD all = 0;
        do {
            ASSERT_TRUE(reader.Read(3000)) << small;
            ASSERT_TRUE(IsContent(reader.bytes.data(), reader.count, all)) << small << " at " << all;
            all += reader.count;
        } while (reader.count == 3000);
        EXPECT_EQ(all, size) << small;
        EXPECT_TRUE(reader.Read(3000)) << "the end stays the end";
        EXPECT_EQ(reader.count, 0u);
    }
    EXPECT_EQ(Requests(L"once2"), "-|bytes=99000-");

    const std::wstring there = Address(L"size=300000", L"redirected");
    Reader redirected(Address(L"to=" + std::wstring(L"/file.bin%3Fsize%3D300000%26key%3Dredirected"), L"redirect"), 0);
    ASSERT_TRUE(redirected.Read(size)) << redirected.error;
    EXPECT_TRUE(redirected.count == size && IsContent(redirected.bytes.data(), size));
    EXPECT_EQ(Requests(L"redirected"), "-");
}

TEST(Reading, FailsWhenTheServerDoes)
{
    Table<const wchar_t*, const wchar_t*, int, DWORD, std::size_t, DWORD> cases = {
        {L"404", L"status=404", 0, 0x8004D554, 1, 0},
        {L"500", L"status=500", 2, 0x8004D5B4, 3, 0},
        {L"forever", L"status=404", 100, 0x8004D554, 6, 0},
        {L"dropped", L"drop=99000", 0, WSAECONNRESET, 1, 99000},
        {L"ignored", L"drop=99000&times=1&range=ignore", 5, refused_range, 6, 99000},
        {L"shifted", L"drop=99000&times=1&range=shift", 1, refused_range, 2, 99000}};
    for (const auto& [key, query, retries, error, tries, count] : cases) {
        Reader reader(Address(std::wstring(query) + L"&size=300000", key), retries);
        EXPECT_FALSE(reader.Read(size)) << key;
        EXPECT_EQ(reader.error, error) << key;
        EXPECT_EQ(reader.patience.errors.size(), tries) << key;
        EXPECT_EQ(reader.count, count) << key;
        EXPECT_TRUE(IsContent(reader.bytes.data(), count)) << key;
        EXPECT_EQ(reader.bytes[count], Reader::guard) << "nothing behind what has come: " << key;
    }
}

// What a failed request leaves behind is no data.
TEST(Reading, FailsAgainAfterItHasGivenUp)
{
    Reader missing(Address(L"status=404", L"again"));
    EXPECT_FALSE(missing.Read(100) || missing.Read(100));
    EXPECT_EQ(missing.error, 0x8004D554u);
    Reader dropped(Address(L"drop=99000&times=1&size=300000", L"later"));
    EXPECT_FALSE(dropped.Read(size));
    ASSERT_TRUE(dropped.Read(size)) << dropped.error;
    EXPECT_EQ(dropped.count, 201000u);
    EXPECT_TRUE(IsContent(dropped.bytes.data(), dropped.count, 99000));

    const Table<const wchar_t*, DWORD> wrong = {{L"http:///file.bin", ERROR_INTERNET_INVALID_URL},
                                                {L"gopherx://127.0.0.1/file.bin", ERROR_INTERNET_UNRECOGNIZED_SCHEME}};
    for (const auto& [url, error] : wrong) {
        Reader reader(url);
        EXPECT_FALSE(reader.Read(100));
        EXPECT_EQ(reader.error, error) << url;
        EXPECT_EQ(reader.patience.errors, std::vector<DWORD>{error}) << url;
    }
}

// The place for the next bytes moves by all that has come, not by what came last: after a second failure a gap stays
// in the buffer, and a buffer without room for it makes the read fail.
TEST(Reading, LeavesAGapAfterASecondFailureInOneCall)
{
    Reader reader(Address(L"drop=100000&times=2&size=300000", L"twice"), 5);
    ASSERT_TRUE(reader.Read(size)) << reader.error;
    EXPECT_EQ(Requests(L"twice"), "-|bytes=99000-|bytes=99000-");
    EXPECT_EQ(reader.count, 201000u);
    EXPECT_TRUE(IsContent(reader.bytes.data(), 99000));
    EXPECT_EACH(Reader::guard, reader.bytes[99000], reader.bytes[197999]);
    EXPECT_TRUE(IsContent(reader.bytes.data() + 198000, 102000, 99000));

    Reader tight(Address(L"drop=100000&times=2&size=300000", L"tight"), 5);
    EXPECT_FALSE(tight.Read(150000));
    EXPECT_EQ(tight.error, static_cast<DWORD>(WSAECONNRESET));
    EXPECT_EQ(Requests(L"tight"), "-|bytes=99000-");
}

// An end in order is the end of the data, whatever length was told.
TEST(Reading, TakesAnEndInOrderForTheEnd)
{
    Table<const wchar_t*, DWORD> cases = {{L"close=100000", 100000}, {L"length=400000", 300000}};
    for (const auto& [query, count] : cases) {
        Reader reader(Address(std::wstring(query) + L"&size=300000", L"end"));
        EXPECT_TRUE(reader.Read(400000)) << query << " " << reader.error;
        EXPECT_EQ(reader.count, count) << query;
        EXPECT_TRUE(IsContent(reader.bytes.data(), reader.count)) << query;
    }
}

TEST(Reading, GoesWhereASeekPoints)
{
    static int round = 0;
    const std::wstring key = L"seek" + std::to_wstring(++round);
    Reader reader(Address(L"size=300000", key));
    ASSERT_TRUE(reader.Read(10000)) << reader.error;
    EXPECT_EACH(10000u, reader->seek(0, FILE_CURRENT), reader->seek(10000, FILE_BEGIN));
    ASSERT_TRUE(reader.Read(1000)) << reader.error;
    EXPECT_TRUE(IsContent(reader.bytes.data(), 1000, 10000));
    EXPECT_EQ(reader->seek(-1000, FILE_CURRENT), 10000u);
    ASSERT_TRUE(reader.Read(1000)) << reader.error;
    EXPECT_TRUE(IsContent(reader.bytes.data(), 1000, 10000));
    EXPECT_EQ(reader->seek(-500, FILE_END), 299500u);
    ASSERT_TRUE(reader.Read(1000)) << reader.error;
    EXPECT_EQ(reader.count, 500u);
    EXPECT_TRUE(IsContent(reader.bytes.data(), 500, 299500));
    EXPECT_EQ(reader->seek(7, 99), 7u) << "an unknown whence counts from the start";
    EXPECT_EQ(Requests(key), "-|bytes=10000-|bytes=299500-");

    Reader unknown(Address(L"size=300000&length=none", L"seekend"));
    EXPECT_EQ(unknown->seek(-1, FILE_END), INVALID_SET_FILE_POINTER);

    Reader distant(Address(L"size=1000", L"far" + key));
    EXPECT_EQ(distant->seek(static_cast<LONG>(0x80000000), FILE_BEGIN), 0x80000000u);
    EXPECT_FALSE(distant.Read(10));
    // The system repeats a request of its own accord where a connection that it kept has gone meanwhile.
    EXPECT_TRUE(Requests(L"far" + key).starts_with("bytes=-2147483648-")) << "offsets show as signed numbers";
}

TEST(Reading, SendsTheCallersHeadersAlsoWithARange)
{
    Reader reader(Address(L"size=3000&header=X-Own", L"headers"), 0, 30000, L"X-Own: yes");
    ASSERT_TRUE(reader.Read(100));
    reader->seek(1000, FILE_BEGIN);
    ASSERT_TRUE(reader.Read(100));
    EXPECT_TRUE(IsContent(reader.bytes.data(), 100, 1000));
    EXPECT_EQ(Requests(L"headers"), "yes|yes");
}

TEST(Reading, AnswersQuestionsWithARequestOfTheirOwn)
{
    Reader reader(Address(L"size=300000", L"asked"));
    EXPECT_EQ(reader->size(), size);
    FILETIME time{};
    EXPECT_TRUE(reader->last_modified(&time));
    EXPECT_EQ(time.dwHighDateTime, 0x01D10BD2u);
    ASSERT_TRUE(reader.Read(3000));
    EXPECT_EQ(reader->size(), size);
    ASSERT_TRUE(reader.Read(3000)) << reader.error;
    EXPECT_TRUE(IsContent(reader.bytes.data(), 3000, 3000)) << "a question does not move the position";
    EXPECT_EQ(Requests(L"asked"), "-|-|-|bytes=3000-");

    Reader silent(Address(L"size=300000&chunked=1", L"silent"));
    EXPECT_EQ(silent->size(), INVALID_FILE_SIZE);
    Reader missing(Address(L"status=404", L"missing"));
    EXPECT_EQ(missing->size(), INVALID_FILE_SIZE);
    EXPECT_EQ(GetLastError(), 0x8004D554u);
    EXPECT_FALSE(missing->last_modified(&time));
}

TEST(Reading, TakesCredentialsAlsoOfADomain)
{
    Table<const wchar_t*, const wchar_t*, DWORD> cases = {
        {L"user=anna&password=secret", L"anna:secret@", 0},
        {L"domain=dom&user=anna&password=secret", L"dom\\anna:secret@", 0},
        {L"user=anna&password=secret", L"anna:wrong@", 0x8004D551}};
    for (const auto& [query, credentials, error] : cases) {
        Reader reader(Address(query, L"user", server::http, credentials));
        reader.Read(1000);
        EXPECT_EQ(reader.error, error) << credentials << " as " << reader->url().c_str();
    }
}

// Waiting for a slow server, a window of the thread gets its messages.
TEST(Reading, KeepsTheThreadsWindowsAlive)
{
    const HWND window = NewWindow(L"STATIC", WS_POPUP);
    static int ticks;
    ticks = 0;
    SetTimer(window, 1, 20, [](HWND, UINT, UINT_PTR, DWORD) { ++ticks; });
    PostQuitMessage(3);
    Reader reader(Address(L"size=20000&drip=100", L"drip"));
    ASSERT_TRUE(reader.Read(20000)) << reader.error;
    EXPECT_TRUE(reader.count == 20000 && IsContent(reader.bytes.data(), 20000));
    EXPECT_GE(ticks, 5);
    MSG message;
    ASSERT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE)) << "the program's end is its own matter";
    EXPECT_EQ(message.wParam, 3u);
    DestroyWindow(window);
}

TEST(Reading, EndsAfterSilenceButNotUnderMessages)
{
    Reader reader(Address(L"size=300000&stall=100000", L"stall"), 1, 300);
    EXPECT_FALSE(reader.Read(size));
    EXPECT_EQ(reader.error, static_cast<DWORD>(ERROR_INTERNET_TIMEOUT));
    EXPECT_EQ(reader.patience.errors, (std::vector<DWORD>{ERROR_INTERNET_TIMEOUT, ERROR_INTERNET_TIMEOUT}));

    // Each message starts the time anew.
    const DWORD thread = GetCurrentThreadId();
    MSG message;
    PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE);
    std::atomic<bool> over = false;
    std::atomic<int> posted = 0;
    std::thread flood([&] {
        const vh::unique_handle never(CreateEventW(nullptr, TRUE, FALSE, nullptr));
        while (posted < 15 && !over) {
            WaitForSingleObject(never.get(), 100);
            PostThreadMessageW(thread, WM_NULL, 0, 0);
            ++posted;
        }
    });
    Reader patient(Address(L"size=300000&stall=100000", L"flood"), 0, 300);
    EXPECT_FALSE(patient.Read(size));
    EXPECT_EQ(posted, 15) << "ended before the flood";
    over = true;
    flood.join();
}

} // namespace
