// Addresses in the place of paths, through the exported functions.
#include "../support/bare_context.h"
#include "../support/session.h"
#include "server_access.h"

namespace {

namespace late = vh::late;

// No dialog may come up in a test: it would wait for somebody. Answers in its place, and counts.
struct Dialogs : Replaced<decltype(late::internet_error_dialog)> {
    Dialogs()
        : Replaced(late::internet_error_dialog, [](HWND, HINTERNET, DWORD, DWORD, void**) -> DWORD {
              ++shown;
              return ERROR_CANCELLED;
          })
    {
        shown = 0;
    }

    static inline int shown;
};

const std::wstring no_server = L"http://127.0.0.1:1/file.bin";

TEST(Addresses, TellSizeTimeAndExistence)
{
    const Dialogs dialogs;
    const std::wstring there = Address(L"size=300000", L"facts");
    uint32_t size = 0;
    EXPECT_GIVES(_GetInetFileSize(there.c_str(), &size), 0, size, 300000u);
    FILETIME time{};
    EXPECT_GIVES(_GetInetFileTime(there.c_str(), &time), 0, time.dwHighDateTime, 0x01D10BD2u);
    EXPECT_EQ(_ExistsFile(there.c_str()), 1);
    EXPECT_EQ(Requests(L"facts"), "-|-") << "existence asks no server";

    size = 7;
    time = {7, 7};
    const std::wstring missing = Address(L"status=404", L"facts");
    EXPECT_EQ(_GetInetFileSize(missing.c_str(), &size), static_cast<int32_t>(0x8004D554));
    EXPECT_EQ(_GetInetFileTime(missing.c_str(), &time), static_cast<int32_t>(0x8004D554));
    EXPECT_EQ(_GetInetFileSize(no_server.c_str(), &size), ERROR_INTERNET_CANNOT_CONNECT);
    EXPECT_EQ(_GetInetFileSize(Address(L"length=none&size=10", L"facts").c_str(), &size), ERROR_HTTP_HEADER_NOT_FOUND);
    EXPECT_EACH(7u, size, time.dwLowDateTime);
    EXPECT_EQ(Dialogs::shown, 3) << "a header that is missing is nothing to retry";
}

TEST(Addresses, ReadLikeFiles)
{
    const Dialogs dialogs;
    const TempFolder folder;
    std::string content(100000, '\0');
    for (std::size_t i = 0; i < content.size(); ++i)
        content[i] = static_cast<char>(ByteAt(i));
    const std::wstring local = folder.Write(L"copy", content);
    const std::wstring there = Address(L"size=100000&drop=99000&times=1", L"hash");
    wchar_t of_file[33] = L"", of_address[33] = L"";
    EXPECT_EQ(_GenerateFileMD5SignatureHex(nullptr, local.c_str(), of_file), 0);
    EXPECT_EQ(_GenerateFileMD5SignatureHex(nullptr, there.c_str(), of_address), 0) << "only negative codes are told";
    EXPECT_STREQ(of_address, L"");
    EXPECT_EQ(Dialogs::shown, 1);
    EXPECT_EQ(_GenerateFileMD5SignatureHex(nullptr, Address(L"status=404", L"hash").c_str(), of_address),
              static_cast<int32_t>(0x8004D554));
    EXPECT_GIVES_TEXT(_GenerateFileMD5SignatureHex(nullptr, there.c_str(), of_address), 0, of_address, of_file);

    const BareContext context;
    const auto file = static_cast<FileHandle>(_OpenFile(context, there.c_str(), FileReadBytes, 0));
    std::vector<uint8_t> bytes(5000);
    EXPECT_EQ(_ReadBytes(context, file, bytes.data(), 5000, 1000, 9999), 4000);
    EXPECT_TRUE(IsContent(bytes.data() + 1000, 4000));
    EXPECT_EQ(_SeekBytes(context, file, -100, 3), 0);
    EXPECT_EQ(_ReadBytes(context, file, bytes.data(), 5000, 0, 5000), 100);
    EXPECT_TRUE(IsContent(bytes.data(), 100, 99900));
    _CloseFile(context, file);

    const auto missing =
        static_cast<FileHandle>(_OpenFile(context, Address(L"status=404", L"bytes").c_str(), FileReadBytes, 0));
    EXPECT_EQ(_ReadBytes(context, missing, bytes.data(), 5000, 0, 5000), static_cast<int32_t>(0x8004D554));
    _CloseFile(context, missing);
}

// An INI file of more than 64 KB, whose last section counts.
TEST(Addresses, AreReadAsIniFiles)
{
    const Dialogs dialogs;
    const std::wstring text = L"text=[x]~key=value~&repeat=5000&tail=[Languages]~Supported=1041~";
    const std::wstring address = Address(text, L"ini");
    EXPECT_EQ(_IsLangSupported(1041, address.c_str()), 1);
    EXPECT_EQ(_IsLangSupported(1033, address.c_str()), 0);
    EXPECT_EQ(_IsLangSupported(1041, Address(text + L"&drop=70000", L"ini").c_str()), 0);
}

TEST(Addresses, GiveTheirLines)
{
    const Dialogs dialogs;
    const BareContext context;
    Table<const wchar_t*, const wchar_t*> cases = {
        {L"text=one~two~~four", L"one|two||four"},
        {L"text=one~two&drip=1", L"one|two"},
        {L"wide=one~two", L"one|two"},
        // Without a length the content is taken for wide text, and a narrow one ends at its first unit.
        {L"text=one~two&chunked=1", L""}};
    for (const auto& [query, lines] : cases) {
        const std::wstring address = Address(query, L"lines");
        const auto list = static_cast<ListHandle>(_ListCreate(context, 0));
        EXPECT_EQ(_ListReadFromFile(context, list, address.c_str()), 0) << query;
        EXPECT_EQ(ListText(context, list), lines) << query;

        const auto file = static_cast<FileHandle>(_OpenFile(context, address.c_str(), FileReadText, 0));
        std::wstring all;
        wchar_t line[100];
        while (_GetLine(context, file, line, 100) == 0)
            all += (all.empty() ? L"" : L"|") + std::wstring(line);
        EXPECT_EQ(all, lines) << query;
        _CloseFile(context, file);
    }
    EXPECT_EQ(_OpenFile(context, Address(L"", L"lines").c_str(), FileAppendText, 0), -2);
}

// In a silent run nobody answers a dialog: the library retries what the network did and gives up what a server said.
TEST(Addresses, InASilentRunShowNoDialog)
{
    const Dialogs dialogs;
    Table<const wchar_t*, const wchar_t*, bool, bool, const char*, int> cases = {
        {L"silent drop", L"drop=1500&times=1&size=3000", true, true, "-|bytes=1500-", 0},
        {L"silent 404", L"status=404", true, false, "-", 0},
        {L"loud 404", L"status=404", false, false, "-", 1}};
    for (const auto& [key, query, silent, done, requests, shown] : cases) {
        const Session session([quiet = silent](vh::engine::Options& options) { options.silent = quiet; });
        Dialogs::shown = 0;
        const std::wstring address = Address(query, key);
        const auto file = static_cast<FileHandle>(_OpenFile(session, address.c_str(), FileReadBytes, 0));
        std::vector<uint8_t> bytes(3000);
        EXPECT_EQ(_ReadBytes(session, file, bytes.data(), 3000, 0, 3000) == 3000, done) << key;
        EXPECT_EQ(Requests(key), requests);
        EXPECT_EQ(Dialogs::shown, shown) << key;
    }
}

} // namespace
