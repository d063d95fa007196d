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

// A data file, open while its content is looked at: it may be larger than the memory.
struct signed_parts {
    file source;
    signed_header header;
    // What stands behind the content.
    std::vector<std::byte> trailer;

    // Raises file_exception.
    bool is_whole();
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
    // Reads what stands around the content of an open file. An exception names the failure: file_exception, or
    // win32_exception with 13.
    static void ReadParts(signed_parts& parts);
    // Keeps the code here and for the process; the result is the code.
    DWORD Fail(DWORD code, const stringx& path);
    bool FindChain();
    // Raises what reading raises.
    bool Hash(HCRYPTPROV provider, signed_parts& parts);
    bool IsTrusted() const;
    DWORD OpenTrailer(byte_span trailer);
    bool ImportPublicKey(HCRYPTPROV provider);
    bool VerifySignature(signed_parts& parts);
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
