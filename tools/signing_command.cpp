#include "signing_command.h"

#include <algorithm>
#include <functional>
#include <stdexcept>

#include <nlohmann/json.hpp>

#include "diagnostics/certificate_choice.h"
#include "diagnostics/file_signer.h"
#include "exit_codes.h"
#include "file_bytes.h"
#include "host/command_line.h"
#include "host/console.h"
#include "host/text.h"
#include "scriptdata/last_failure.h"

namespace tools {

namespace {

// Wiped before its memory goes back; its room never moves while it is filled.
class Password {
public:
    static constexpr std::size_t longest = 1024;

    Password() = default;
    Password(const Password&) = delete;
    Password& operator=(const Password&) = delete;
    ~Password() { SecureZeroMemory(m_text, sizeof(m_text)); }

    wchar_t* text() { return m_text; }
    // The first line of a UTF-8 file, with a mark or without.
    void ReadFile(const std::wstring& file);
    bool ReadEnvironment();
    // Without echo. False where nobody sits at a console.
    bool Ask();

private:
    void CutLine() { m_text[std::wcscspn(m_text, L"\r\n")] = 0; }

    wchar_t m_text[longest + 1] = {};
};

void Password::ReadFile(const std::wstring& file)
{
    std::vector<std::byte> bytes = ReadBytes(file);
    std::string_view line(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    line = line.substr(line.starts_with("\xEF\xBB\xBF") ? 3 : 0);
    line = line.substr(0, line.find_first_of("\r\n"));
    const int units = line.empty()
                          ? 0
                          : MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, line.data(),
                                                static_cast<int>(line.size()), m_text, static_cast<int>(longest));
    const bool wrong = !line.empty() && !units;
    SecureZeroMemory(bytes.data(), bytes.size());
    if (wrong)
        throw std::runtime_error(host::Utf8(file) + ": the first line is no password");
    m_text[units] = 0;
}

bool Password::ReadEnvironment()
{
    const DWORD length = GetEnvironmentVariableW(L"VHTOOL_PASSWORD", m_text, static_cast<DWORD>(longest + 1));
    if (length > longest)
        throw std::runtime_error("VHTOOL_PASSWORD is too long");
    return length != 0;
}

bool Password::Ask()
{
    const HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
    DWORD mode = 0;
    if (!GetConsoleMode(input, &mode))
        return false;
    host::Say(L"Password of the key:");
    SetConsoleMode(input, (mode | ENABLE_LINE_INPUT) & ~DWORD{ENABLE_ECHO_INPUT});
    DWORD read = 0;
    const bool done = ReadConsoleW(input, m_text, static_cast<DWORD>(longest), &read, nullptr) != 0;
    SetConsoleMode(input, mode);
    m_text[read] = 0;
    CutLine();
    return done;
}

// One that is given is used; without one the key is tried without, and a person is asked where that was not enough.
DWORD WithPassword(const vh::FileSigner& signer, const std::string& file, const std::function<DWORD(wchar_t*)>& sign)
{
    Password password;
    bool given = !file.empty();
    if (given)
        password.ReadFile(host::PathOf(file));
    else
        given = password.ReadEnvironment();
    const DWORD result = sign(password.text());
    constexpr auto wrong = static_cast<DWORD>(HRESULT_FROM_WIN32(ERROR_INVALID_PASSWORD));
    if (!result || given || signer.last_error() != wrong || !password.Ask())
        return result;
    return sign(password.text());
}

const wchar_t* Reason(DWORD result)
{
    switch (result) {
    case vh::sign_bad_file:
        return L"no data file that can be signed";
    case vh::sign_write_failed:
        return L"the signature was not written";
    case vh::sign_bad_key:
        return L"the key can't be used";
    case vh::sign_bad_certificates:
        return L"no certificate of the key";
    case vh::sign_no_chain:
        return L"the certificates lead to no root of this machine";
    case vh::sign_invalid_chain:
        return L"a certificate is changed or not valid now";
    default:
        return L"the certificate can't be used";
    }
}

std::wstring ErrorText(DWORD error)
{
    switch (error) {
    case vh::no_signature_error:
        return L"not signed";
    case vh::chain_error:
        return L"the certificates lead to no root of this machine, or one of them is changed or not valid now";
    case vh::wrong_signature_error:
        return L"the signature is not that of this content";
    case static_cast<DWORD>(CRYPT_E_NOT_FOUND):
        return L"no such certificate";
    case static_cast<DWORD>(HRESULT_FROM_WIN32(ERROR_ALREADY_EXISTS)):
        return L"signed already";
    case static_cast<DWORD>(HRESULT_FROM_WIN32(ERROR_FILE_INVALID)):
        return L"another program has changed it meanwhile";
    default:
        return host::SystemText(HRESULT_FACILITY(error) == FACILITY_WIN32 ? HRESULT_CODE(error) : error);
    }
}

int Refuse(const std::wstring& file, const std::wstring& reason, DWORD error)
{
    host::Complain(file + L": " + reason + L" (" + host::Hex(error) + L", " + ErrorText(error) + L")");
    return exit_found;
}

} // namespace

int SignDataFile(const std::wstring& file, const SigningOptions& options)
{
    vh::FileSigner signer;
    std::wstring specification = host::Wide(options.specification);
    if (!specification.empty() && !specification.starts_with(L'*'))
        specification = host::LongPath(host::PathOf(options.specification));
    const std::wstring path = host::LongPath(file);
    const std::wstring key = host::LongPath(host::PathOf(options.key));
    const std::wstring certificate = host::LongPath(host::PathOf(options.certificate));
    const DWORD result = WithPassword(signer, options.password_file, [&](wchar_t* password) {
        return specification.empty() ? signer.SignFile(path.c_str(), key.c_str(), certificate.c_str(), password)
                                     : signer.SignFileWithCertificate(path.c_str(), specification.c_str(), password);
    });
    if (result) {
        std::wstring reason = Reason(result);
        if (const std::wstring& culprit = vh::last_file_failure().path; culprit != path)
            reason += L": " + culprit;
        return Refuse(file, reason, signer.last_error());
    }
    if (vh::ReadCertificateChoice(specification).hash > 1)
        host::Complain(file + L": signed with SHA-1, the only hash of these files");
    return exit_done;
}

int VerifyDataFile(const std::wstring& file, const std::wstring* expect)
{
    vh::SignatureContext context;
    vh::SignerInfo info;
    const std::wstring path = host::LongPath(file);
    bool result = context.VerifySignedFile(path.c_str(), info);
    DWORD error = info.last_error;
    if (result && expect) {
        error = context.VerifyFileAgainst(path.c_str(), *expect);
        result = error == 0;
    }
    const auto text = [](const stringx& wide) { return host::Utf8(std::wstring(wide.c_str())); };
    nlohmann::ordered_json object;
    object["signed"] = info.is_signed;
    object["trusted"] = info.trusted;
    object["result"] = result;
    object["error"] = host::Utf8(host::Hex(error));
    object["issuer"] = text(info.issuer);
    object["subject"] = text(info.subject);
    host::Say(host::Wide(object.dump(2, ' ', false, nlohmann::json::error_handler_t::replace)));
    return result ? exit_done : exit_found;
}

int TrustDataFile(const std::wstring& file)
{
    vh::SignatureContext context;
    vh::SignerInfo info;
    if (!context.VerifySignedFile(host::LongPath(file).c_str(), info))
        return Refuse(file, L"does not verify", info.last_error);
    if (!context.TrustSigner())
        return Refuse(file, L"the trust list can't be written", context.last_error());
    host::Say(L"trusted: " + std::wstring(info.subject.c_str()));
    return exit_done;
}

} // namespace tools
