// Verifies signed data files, and keeps the list of signers that this user trusts.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "certificates.h"
#include "file.h"

namespace vh {

struct SignerInfo {
    bool is_signed = false;
    // The trust list holds the top of the chain, or the signer. Anybody can make a file that verifies; this is what
    // tells a friend from a stranger.
    bool trusted = false;
    DWORD last_error = 0;
    stringx issuer;
    stringx subject;
};

enum ChainResult : int { chain_good = 0, chain_not_valid_now = 1, chain_no_root = 2 };

// The content of a data file, and what stands behind it.
struct signed_parts {
    std::vector<std::byte> content;
    std::vector<std::byte> trailer;
    signed_header header;
};

class SignatureContext {
public:
    // Acquires the providers that this system has.
    SignatureContext();
    SignatureContext(const SignatureContext&) = delete;
    SignatureContext& operator=(const SignatureContext&) = delete;

    bool VerifySignedFile(const wchar_t* path, SignerInfo& info);
    // 0 or an error code. The expected certificate is a part of its subject, or "|" and the digits of its thumbprint.
    DWORD VerifyFileAgainst(const wchar_t* path, const std::wstring& expected);
    // Adds the signer of the file that was verified last. False with `last_error` set.
    bool TrustSigner();
    ChainResult CheckChain(PCCERT_CONTEXT certificate, bool check_time);

    DWORD last_error() const { return m_last_error; }

protected:
    // Reads a data file. An exception names the failure: file_exception, or win32_exception with 13.
    static signed_parts ReadParts(file& source);
    // Keeps the code here and for the process; the result is the code.
    DWORD Fail(DWORD code, const stringx& path);
    bool FindChain();
    bool Hash(HCRYPTPROV provider, byte_span content);
    bool IsTrusted() const;
    DWORD OpenTrailer(byte_span trailer);
    bool ImportPublicKey(HCRYPTPROV provider);
    bool VerifySignature(byte_span content);
    bool AreStoredExact() const;

    // Freed in reverse: keys and hashes before their provider, certificates before their store.
    std::vector<unique_provider> m_providers;
    unique_crypt_key m_signing_key;
    unique_crypt_key m_public_key;
    unique_store m_certificates;
    unique_crypt_hash m_hash;
    unique_certificate m_chain_top;
    unique_certificate m_signer;
    std::vector<BYTE> m_signature;
    DWORD m_last_error = 0;

private:
    ChainResult CheckChain(PCCERT_CONTEXT certificate, bool check_time, std::set<std::string>& seen);
    DWORD Verify(const wchar_t* path, SignerInfo& info);
};

// Of all signed files.
constexpr ALG_ID signed_hash = CALG_SHA;
constexpr wchar_t trust_key[] = L"SOFTWARE\\Varnholt\\Cryptography\\Trust";

} // namespace vh
