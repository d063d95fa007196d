// What readers hold, and what becomes of it: handles of the system, sessions, requests that are given up.
#include <atomic>

#include "../../diagnostics/inet_session.h"
#include "../support/handle_counts.h"
#include "server_access.h"

namespace {

namespace late = vh::late;

// What WinInet tells of a request.
void Tell(DWORD_PTR context, DWORD status, DWORD_PTR result, DWORD error = 0)
{
    INTERNET_ASYNC_RESULT news{result, error};
    vh::inet_status_callback(nullptr, context, status, &news, sizeof(news));
}

std::atomic<int> sessions;
std::atomic<int> handles;

// Counts WinInet's handles: those that it announces, and those that are closed.
struct Lifetime : testing::Test {
    Lifetime()
    {
        sessions = handles = 0;
        open = late::internet_open.get();
        close = late::internet_close_handle.get();
        late::internet_open.replace([](auto... arguments) {
            const HINTERNET made = open(arguments...);
            sessions += made != nullptr;
            handles += made != nullptr;
            return made;
        });
        late::internet_close_handle.replace([](HINTERNET handle) {
            const BOOL closed = close(handle);
            handles -= closed != FALSE;
            return closed;
        });
    }
    ~Lifetime() override
    {
        late::internet_open.show();
        late::internet_close_handle.show();
    }

    static inline decltype(&InternetOpenW) open;
    static inline decltype(&InternetCloseHandle) close;
};

TEST_F(Lifetime, OfAThousandReadersLeavesNothing)
{
    const std::wstring kinds[] = {Address(L"size=2000", L"flat"), Address(L"status=404", L"flat"),
                                  Address(L"size=2000&length=none", L"flat")};
    const auto use = [&](int times) {
        for (int i = 0; i < times; ++i) {
            Reader reader(kinds[i % 3], 0);
            EXPECT_EQ(reader.Read(2000), i % 3 != 1);
        }
    };
    use(30);
    const int before = OpenHandles();
    use(1000);
    EXPECT_LE(OpenHandles(), before + 10);
    EXPECT_EQ(sessions, 1030);
}

// The server holds each answer back until the reader and its buffer have gone, then sends.
TEST_F(Lifetime, EndsWhileWinInetStillReads)
{
    for (int round = 0; round < 20; ++round) {
        Reader reader(Address(L"size=100000&drip=60", L"late"), 0, 30);
        EXPECT_FALSE(reader.Read(100000));
        EXPECT_EQ(reader.error, static_cast<DWORD>(ERROR_INTERNET_TIMEOUT));
    }
    // The late bytes arrive during this.
    Reader reader(Address(L"size=20000&drip=60", L"late too"), 0);
    ASSERT_TRUE(reader.Read(20000));
    EXPECT_TRUE(IsContent(reader.bytes.data(), 20000));
}

// Without a connection WinInet makes the handle late or never.
TEST_F(Lifetime, EndsBeforeAHandleIsMade)
{
    static std::function<void()> news;
    const Replaced opening(
        late::internet_open_url,
        [](HINTERNET, const wchar_t*, const wchar_t*, DWORD, DWORD, DWORD_PTR context) -> HINTERNET {
            news = [context] {
                const auto made = reinterpret_cast<DWORD_PTR>(open(L"orphan", 0, nullptr, nullptr, 0));
                ++handles;
                Tell(context, INTERNET_STATUS_HANDLE_CREATED, made);
                Tell(context, INTERNET_STATUS_HANDLE_CLOSING, made);
                Tell(context, INTERNET_STATUS_REQUEST_COMPLETE, 0, ERROR_INTERNET_OPERATION_CANCELLED);
            };
            SetLastError(ERROR_IO_PENDING);
            return nullptr;
        });
    {
        Reader reader(Address(L"", L"never"), 0, 20);
        EXPECT_FALSE(reader.Read(10));
        EXPECT_EQ(reader.error, static_cast<DWORD>(ERROR_INTERNET_TIMEOUT));
        news();
        EXPECT_EQ(handles, 1) << "only the session: the request is given up, its handle closed";
        EXPECT_EQ(reader->handle(), nullptr);
        const auto first = news;
        EXPECT_FALSE(reader.Read(10));
        first();
        EXPECT_EQ(handles, 2) << "news of a request that is over reach nobody";
        --handles;
    }
    EXPECT_EQ(handles, 0) << "the session has gone with its reader";
    news();
    EXPECT_EQ(handles, 0) << "the orphan is closed";
}

int pins;
BOOL WINAPI CountPins(DWORD flags, const wchar_t*, HMODULE*)
{
    pins += (flags & GET_MODULE_HANDLE_EX_FLAG_PIN) != 0;
    return TRUE;
}

// Code that late news may come to has to stay; after a read that completed at once none come.
TEST_F(Lifetime, KeepsTheModuleOnlyForNewsThatMayStillCome)
{
    const Patched pinned("GetModuleHandleExW", CountPins);
    static BOOL at_once;
    static DWORD_PTR request;
    const Replaced opening(late::internet_open_url,
                           [](HINTERNET, const wchar_t*, const wchar_t*, DWORD, DWORD, DWORD_PTR context) -> HINTERNET {
                               request = context;
                               const HINTERNET made = open(L"request", 0, nullptr, nullptr, 0);
                               Tell(context, INTERNET_STATUS_HANDLE_CREATED, reinterpret_cast<DWORD_PTR>(made));
                               return made;
                           });
    const Replaced closing(late::internet_close_handle, [](HINTERNET handle) {
        vh::inet_status_callback(nullptr, request, INTERNET_STATUS_HANDLE_CLOSING, &handle, sizeof(handle));
        return close(handle);
    });
    const Replaced reading(late::internet_read_file, [](HINTERNET, void*, DWORD, DWORD* count) -> BOOL {
        *count = 0;
        SetLastError(at_once ? ERROR_SUCCESS : ERROR_IO_PENDING);
        return at_once;
    });
    for (const BOOL done : {TRUE, FALSE}) {
        at_once = done;
        pins = 0;
        {
            Reader reader(Address(L"", L"pinned"), 0, 20);
            EXPECT_EQ(reader.Read(10), done == TRUE);
        }
        EXPECT_EQ(pins, done ? 0 : 1) << done;
    }
}

// What a server says is asked for with one error only.
TEST_F(Lifetime, OfAServersWordsIsThatOfTheReader)
{
    const Replaced telling(late::internet_get_last_response_info, [](DWORD* error, wchar_t* text, DWORD* size) -> BOOL {
        *error = 550;
        EXPECT_EQ(*size, 1024u);
        lstrcpyW(text, L"no such file");
        return TRUE;
    });
    Reader reader(Address(L"", L"words"));
    const DWORD_PTR context = reader->new_context();
    const auto complete = [&](DWORD_PTR result, DWORD error) {
        Tell(context, INTERNET_STATUS_REQUEST_COMPLETE, result, error);
    };
    complete(0, ERROR_INTERNET_TIMEOUT);
    EXPECT_STREQ(reader->response_text(), L"");
    EXPECT_EQ(reader->last_error(), static_cast<DWORD>(ERROR_INTERNET_TIMEOUT));
    complete(0, ERROR_INTERNET_EXTENDED_ERROR);
    EXPECT_STREQ(reader->response_text(), L"no such file");
    complete(1, ERROR_INTERNET_TIMEOUT);
    EXPECT_EQ(reader->last_error(), 0u) << "a result of 1 is a success";
}

TEST_F(Lifetime, OfOneSessionInAProcessOnWinInetOneOne)
{
    const Replaced version(late::internet_query_option, [](HINTERNET, DWORD, void* data, DWORD*) -> BOOL {
        *static_cast<INTERNET_VERSION_INFO*>(data) = {1, 1};
        return TRUE;
    });
    for (int round = 1; round <= 2; ++round) {
        {
            Reader first(Address(L"size=1000", L"shared"));
            for (int others = 0; others < 2; ++others) {
                Reader second(Address(L"size=1000", L"shared"));
                EXPECT_TRUE(second.Read(1000));
            }
            EXPECT_TRUE(first.Read(1000));
        }
        EXPECT_EQ(sessions, round);
    }
}

TEST_F(Lifetime, OfAFlagEndsWhereWinInetDoesNotKnowIt)
{
    static std::vector<DWORD> asked;
    asked.clear();
    static decltype(&InternetOpenUrlW) open_url;
    open_url = late::internet_open_url.get();
    const Replaced opening(late::internet_open_url,
                           [](HINTERNET session, const wchar_t* url, const wchar_t* headers, DWORD length, DWORD flags,
                              DWORD_PTR context) -> HINTERNET {
                               asked.push_back(flags);
                               if (flags & INTERNET_FLAG_PRAGMA_NOCACHE) {
                                   SetLastError(ERROR_INVALID_PARAMETER);
                                   return nullptr;
                               }
                               return open_url(session, url, headers, length, flags, context);
                           });
    Reader reader(Address(L"size=1000", L"flag"));
    EXPECT_TRUE(reader.Read(100));
    reader->seek(0, FILE_BEGIN);
    EXPECT_TRUE(reader.Read(100));
    EXPECT_EQ(asked, (std::vector<DWORD>{0x80400100, 0x80400000, 0x80400000}));
}

TEST_F(Lifetime, OfADialUpLineBeginsWithTheFirstRead)
{
    static DWORD state, dialled;
    const Replaced connected(late::internet_get_connected_state, [](DWORD* flags, DWORD) -> BOOL {
        *flags = state;
        return FALSE;
    });
    const Replaced dialling(late::internet_autodial, [](DWORD flags, HWND) -> BOOL {
        dialled = flags;
        SetLastError(ERROR_NO_NETWORK);
        return FALSE;
    });
    state = INTERNET_CONNECTION_LAN;
    Reader reader(Address(L"size=1000", L"dial"));
    EXPECT_TRUE(reader.Read(1000)) << "no modem to dial with";
    state = INTERNET_CONNECTION_MODEM;
    EXPECT_TRUE(reader->set(vh::inet_file::autodial_flags_setting, INTERNET_AUTODIAL_FORCE_UNATTENDED));
    EXPECT_TRUE(reader.Read(1000)) << "a request that is open has its line";
    reader->seek(0, FILE_BEGIN);
    EXPECT_FALSE(reader.Read(1000));
    EXPECT_EQ(reader.patience.errors, (std::vector<DWORD>{ERROR_NO_NETWORK}));
    EXPECT_EQ(dialled, static_cast<DWORD>(INTERNET_AUTODIAL_FORCE_UNATTENDED));
    EXPECT_FALSE(reader->set(2, 0));
    EXPECT_TRUE(reader->set(vh::inet_file::max_retries_setting, static_cast<DWORD>(-1)));
    EXPECT_FALSE(reader.Read(1000)) << "no try at all";
    EXPECT_EQ(reader.patience.errors.size(), 1u);
}

} // namespace
