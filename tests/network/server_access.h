// The test server's addresses, and what it sends.
#pragma once

#include "../../diagnostics/file.h"
#include "../../diagnostics/http_file.h"
#include "../support/test.h"

namespace vh::test {

inline std::wstring Wide(const char* text) { return text ? std::wstring(text, text + strlen(text)) : std::wstring(); }

enum class server { http, https, untrusted };

// `query` is what goes wrong; `key` is where the server writes it down.
inline std::wstring Address(const std::wstring& query, const std::wstring& key, server kind = server::http,
                            const std::wstring& credentials = {}, const std::wstring& name = L"/file.bin")
{
    const char* const port = std::getenv(kind == server::http    ? "VHRT_HTTP_PORT"
                                         : kind == server::https ? "VHRT_HTTPS_PORT"
                                                                 : "VHRT_UNTRUSTED_PORT");
    return (kind == server::http ? L"http://" : L"https://") + credentials + L"127.0.0.1:" + Wide(port) + name + L"?" +
           query + L"&key=" + key;
}

// What the server was asked under a key: "-|bytes=99000-".
inline std::string Requests(const std::wstring& key)
{
    file log;
    const std::wstring address = Address(L"", key, server::http, {}, L"/log");
    EXPECT_EQ(log.open(address.c_str(), GENERIC_READ, 0, 0, OPEN_EXISTING), 0u);
    std::string text(10000, '\0');
    text.resize(log.read_bytes(text.data(), 10000));
    if (!text.empty())
        text.pop_back();
    for (char& unit : text)
        if (unit == '\n')
            unit = '|';
    return text;
}

inline std::uint8_t ByteAt(std::size_t at) { return static_cast<std::uint8_t>(7 * at + at / 251); }

// The bytes are those of the server's file from `from` on.
inline bool IsContent(const std::uint8_t* bytes, std::size_t count, std::size_t from = 0)
{
    for (std::size_t i = 0; i < count; ++i)
        if (bytes[i] != ByteAt(from + i))
            return false;
    return true;
}

// Retries for as often as told, then gives up.
class Patience final : public inet_retry_handler {
public:
    explicit Patience(int retries) : m_left(retries) {}
    DWORD on_error(inet_file& reader) override
    {
        errors.push_back(reader.last_error());
        return m_left-- > 0 ? ERROR_INTERNET_FORCE_RETRY : ERROR_CANCELLED;
    }
    std::vector<DWORD> errors;

private:
    int m_left;
};

// A reader as vh::file has it, with a short time-out where a test waits for it.
class Reader {
public:
    explicit Reader(const std::wstring& address, int retries = 0,
                    DWORD timeout_ms = wininet_async_handle::default_timeout_ms, const wchar_t* headers = nullptr)
        : patience(retries), m_reader(new http_file(http_file::default_settings(), timeout_ms))
    {
        m_reader->set_retry_handler(&patience);
        EXPECT_TRUE(
            m_reader->open(address.c_str(), headers,
                           INTERNET_FLAG_RELOAD | INTERNET_FLAG_KEEP_CONNECTION | INTERNET_FLAG_PRAGMA_NOCACHE));
    }
    http_file* operator->() const { return m_reader.get(); }

    // One read into a buffer with guards behind it.
    bool Read(DWORD size)
    {
        constexpr DWORD guards = 64;
        bytes.assign(size + guards, guard);
        count = 0;
        const bool done = m_reader->read(bytes.data(), size, &count);
        error = done ? 0 : GetLastError();
        for (DWORD i = size; i < size + guards; ++i)
            EXPECT_EQ(bytes[i], guard) << "written behind the buffer";
        return done;
    }

    static constexpr std::uint8_t guard = 0xA5;
    Patience patience;
    std::vector<std::uint8_t> bytes;
    DWORD count = 0, error = 0;

private:
    inet_ptr<http_file> m_reader;
};

} // namespace vh::test
