#include "signature_context.h"

#include <algorithm>

#include "../scriptdata/last_failure.h"

namespace vh {

namespace {

// The issuers of `certificate` in a store, one after another, until `seen` gives a result or there are no more: then
// the result is -1. `seen` gets null at the end of a self-signed certificate's walk.
template <class Seen>
int ForEachIssuer(HCERTSTORE store, PCCERT_CONTEXT certificate, DWORD wanted, Seen&& seen)
{
    unique_certificate issuer;
    for (;;) {
        DWORD flags = wanted;
        // Frees the one before, whatever comes.
        const PCCERT_CONTEXT before = issuer.release();
        issuer.reset(late::cert_get_issuer(store, certificate, before, &flags));
        if (!issuer)
            return GetLastError() == static_cast<DWORD>(CRYPT_E_SELF_SIGNED) ? seen(nullptr, flags) : -1;
        if (const int result = seen(issuer.get(), flags); result >= 0)
            return result;
    }
}

unique_store OpenTrustList(bool writable)
{
    const REGSAM rights = writable ? KEY_ALL_ACCESS : KEY_READ;
    unique_key key;
    const LSTATUS status =
        writable ? RegCreateKeyExW(HKEY_CURRENT_USER, trust_key, 0, nullptr, 0, rights, nullptr, key.put(), nullptr)
                 : RegOpenKeyExW(HKEY_CURRENT_USER, trust_key, 0, rights, key.put());
    if (status != ERROR_SUCCESS) {
        SetLastError(static_cast<DWORD>(status));
        return unique_store();
    }
    // The store has its own handle to the key.
    return unique_store(late::cert_open_store(CERT_STORE_PROV_REG, DWORD{0}, HCRYPTPROV{0},
                                              DWORD{writable ? 0u : CERT_STORE_READONLY_FLAG},
                                              static_cast<const void*>(key.get())));
}

// Data about the certificate, which the system works out anew from the certificate alone.
bool IsOwnProperty(PCCERT_CONTEXT fresh, const store_element& property)
{
    DWORD size = 0;
    if (!late::cert_property(fresh, DWORD{property.kind}, static_cast<void*>(nullptr), &size) ||
        size != property.content.size())
        return false;
    std::vector<std::byte> value(size);
    return late::cert_property(fresh, DWORD{property.kind}, static_cast<void*>(value.data()), &size) &&
           std::ranges::equal(value, property.content);
}

// A stored property that the certificate does not bear out could be changed unseen.
bool HoldsOnlyCertificates(byte_span store)
{
    const auto elements = ReadStore(store);
    if (!elements || elements->empty())
        return false;
    for (auto at = elements->rbegin(); at != elements->rend();) {
        const unique_certificate fresh(late::cert_create(certificate_encoding,
                                                         reinterpret_cast<const BYTE*>(at->content.data()),
                                                         static_cast<DWORD>(at->content.size())));
        if (!fresh || fresh.get()->cbCertEncoded != at->content.size())
            return false;
        for (++at; at != elements->rend() && at->kind != store_element::certificate; ++at)
            if (!IsOwnProperty(fresh.get(), *at))
                return false;
    }
    return true;
}

// Fills `bytes`; a file that ends before is damaged.
void ReadAt(file& source, uint32_t place, std::span<std::byte> bytes)
{
    LONG high = 0;
    source.seek(static_cast<LONG>(place), FILE_BEGIN, &high);
    while (!bytes.empty()) {
        const DWORD done = source.read_bytes(bytes.data(), static_cast<DWORD>(bytes.size()));
        if (!done)
            throw win32_exception(ERROR_INVALID_DATA);
        bytes = bytes.subspan(done);
    }
}

} // namespace

SignatureContext::SignatureContext()
{
    constexpr const wchar_t* names[] = {MS_DEF_PROV_W, MS_ENHANCED_PROV_W, MS_STRONG_PROV_W};
    for (const wchar_t* name : names) {
        unique_provider provider;
        // Keys live in the object only: no container of the user is touched.
        if (late::crypt_acquire(provider.put(), static_cast<const wchar_t*>(nullptr), name, DWORD{PROV_RSA_FULL},
                                DWORD{CRYPT_VERIFYCONTEXT}))
            m_providers.push_back(std::move(provider));
    }
}

DWORD SignatureContext::Fail(DWORD code, const stringx& path)
{
    m_last_error = code;
    last_file_failure() = {code, std::wstring(path.view())};
    return code;
}

bool signed_parts::is_whole()
{
    return IsContentWhole(header, [this](uint32_t place) {
        std::byte number[4];
        ReadAt(source, place, number);
        return ReadNumber(number, 0);
    });
}

void SignatureContext::ReadParts(signed_parts& parts)
{
    // Signature and certificates of far more signers than one.
    constexpr DWORD longest_trailer = 16u << 20;
    DWORD high = 0;
    const DWORD low = parts.source.size(&high);
    const uint64_t size = uint64_t{high} << 32 | low;
    if (size < signed_header::size)
        throw win32_exception(ERROR_INVALID_DATA);
    std::byte start[signed_header::size];
    ReadAt(parts.source, 0, start);
    parts.header = *ReadSignedHeader(start);
    const DWORD end = parts.header.content_end;
    if (end < signed_header::size || end > size || size - end > longest_trailer)
        throw win32_exception(ERROR_INVALID_DATA);
    parts.trailer.resize(static_cast<std::size_t>(size - end));
    ReadAt(parts.source, end, parts.trailer);
}

bool SignatureContext::FindChain()
{
    const std::vector<unique_certificate> all = AllCertificates(m_certificates.get());
    m_signer.reset();
    m_chain_top.reset();
    for (const unique_certificate& one : all) {
        const bool issues = std::ranges::any_of(all, [&one](const unique_certificate& other) {
            return !SameCertificate(one.get(), other.get()) && IsNamedIssuer(one.get(), other.get());
        });
        if (issues)
            continue;
        // Two signers: one of them would be there for nothing.
        if (m_signer)
            return false;
        m_signer = Duplicate(one.get());
    }
    if (!m_signer)
        return false;
    m_chain_top = Duplicate(m_signer.get());
    // A ring of issuers ends after as many steps as there are certificates.
    for (std::size_t step = 0; step < all.size(); ++step) {
        const auto next = std::ranges::find_if(all, [this](const unique_certificate& one) {
            return !SameCertificate(one.get(), m_chain_top.get()) && IsNamedIssuer(one.get(), m_chain_top.get());
        });
        if (next == all.end() || IsNamedIssuer(m_chain_top.get(), m_chain_top.get()))
            break;
        m_chain_top = Duplicate(next->get());
    }
    return true;
}

// The store is looked through only after its bytes were found exact.
DWORD SignatureContext::OpenTrailer(byte_span bytes)
{
    const auto trailer = ReadSignedTrailer(bytes);
    if (!trailer || !HoldsOnlyCertificates(trailer->store))
        return ERROR_INVALID_DATA;
    m_signature.resize(trailer->signature.size());
    std::ranges::copy(std::as_bytes(trailer->signature), reinterpret_cast<std::byte*>(m_signature.data()));
    CRYPT_DATA_BLOB blob{static_cast<DWORD>(trailer->store.size()),
                         reinterpret_cast<BYTE*>(const_cast<std::byte*>(trailer->store.data()))};
    m_signer.reset();
    m_chain_top.reset();
    m_certificates.reset(late::cert_open_store(CERT_STORE_PROV_SERIALIZED, certificate_encoding, HCRYPTPROV{0},
                                               DWORD{0}, static_cast<const void*>(&blob)));
    if (!m_certificates)
        return LastFailureCode();
    return FindChain() ? 0 : ERROR_INVALID_DATA;
}

bool SignatureContext::ImportPublicKey(HCRYPTPROV provider)
{
    return late::crypt_import_public(provider, DWORD{X509_ASN_ENCODING},
                                     &m_signer.get()->pCertInfo->SubjectPublicKeyInfo, m_public_key.put()) != FALSE;
}

bool SignatureContext::Hash(HCRYPTPROV provider, signed_parts& parts)
{
    if (!late::crypt_create_hash(provider, signed_hash, HCRYPTKEY{0}, DWORD{0}, m_hash.put()))
        return false;
    std::vector<std::byte> piece(1u << 16);
    for (uint32_t at = 0; at < parts.header.content_end; at += static_cast<uint32_t>(piece.size())) {
        piece.resize(std::min<std::size_t>(piece.size(), parts.header.content_end - at));
        ReadAt(parts.source, at, piece);
        if (!late::crypt_hash_data(m_hash.get(), reinterpret_cast<const BYTE*>(piece.data()),
                                   static_cast<DWORD>(piece.size()), DWORD{0}))
            return false;
    }
    return true;
}

bool SignatureContext::VerifySignature(signed_parts& parts)
{
    return std::ranges::any_of(m_providers, [&](const unique_provider& provider) {
        m_public_key.reset();
        m_hash.reset();
        return ImportPublicKey(provider.get()) && Hash(provider.get(), parts) &&
               late::crypt_verify_signature(m_hash.get(), static_cast<const BYTE*>(m_signature.data()),
                                            static_cast<DWORD>(m_signature.size()), m_public_key.get(),
                                            static_cast<const wchar_t*>(nullptr), DWORD{0}) != FALSE;
    });
}

// Every stored certificate is signed by an issuer that is here or on this machine, or is on this machine itself.
bool SignatureContext::AreStoredExact() const
{
    for (const unique_certificate& one : AllCertificates(m_certificates.get())) {
        if (!IsExact(one.get()))
            return false;
        const auto vouched = [&one](const unique_certificate& issuer) {
            return IsNamedIssuer(issuer.get(), one.get()) && IsSignedBy(one.get(), issuer.get());
        };
        bool sure = std::ranges::any_of(AllCertificates(m_certificates.get()), vouched);
        for (const wchar_t* name : {L"ROOT", L"CA"})
            if (const unique_store store = sure ? unique_store() : OpenSystemStore(name))
                sure = std::ranges::any_of(AllCertificates(store.get()), [&](const auto& known) {
                    return SameCertificate(known.get(), one.get()) || vouched(known);
                });
        if (!sure)
            return false;
    }
    return true;
}

ChainResult SignatureContext::CheckChain(PCCERT_CONTEXT certificate, bool check_time)
{
    std::set<std::string> seen;
    return certificate ? CheckChain(certificate, check_time, seen) : chain_no_root;
}

ChainResult SignatureContext::CheckChain(PCCERT_CONTEXT certificate, bool check_time, std::set<std::string>& seen)
{
    // Issuers that lead to each other end here, and no certificate is walked twice.
    if (!seen.emplace(reinterpret_cast<const char*>(certificate->pbCertEncoded), certificate->cbCertEncoded).second)
        return chain_no_root;
    const DWORD wanted = CERT_STORE_SIGNATURE_FLAG | (check_time ? DWORD{CERT_STORE_TIME_VALIDITY_FLAG} : 0);
    int remembered = chain_no_root;
    for (const wchar_t* name : {L"ROOT", L"CA"}) {
        const unique_store store = OpenSystemStore(name);
        if (!store)
            continue;
        const int result = ForEachIssuer(store.get(), certificate, wanted, [&](PCCERT_CONTEXT issuer, DWORD flags) {
            if (!issuer || flags == 0)
                return int{chain_good};
            if (flags & CERT_STORE_TIME_VALIDITY_FLAG)
                remembered = chain_not_valid_now;
            return -1;
        });
        if (result >= 0)
            return static_cast<ChainResult>(result);
    }
    if (!m_certificates)
        return static_cast<ChainResult>(remembered);
    const int result =
        ForEachIssuer(m_certificates.get(), certificate, wanted, [&](PCCERT_CONTEXT issuer, DWORD flags) {
            if (!issuer)
                return int{chain_good};
            if (flags & CERT_STORE_TIME_VALIDITY_FLAG)
                return int{chain_not_valid_now};
            if (flags & CERT_STORE_NO_ISSUER_FLAG)
                return int{chain_no_root};
            // A namesake of the issuer, which did not sign it.
            if (flags & CERT_STORE_SIGNATURE_FLAG)
                return -1;
            const ChainResult above = CheckChain(issuer, check_time, seen);
            if (above == chain_not_valid_now)
                remembered = above;
            return above == chain_good ? int{chain_good} : -1;
        });
    return static_cast<ChainResult>(result >= 0 ? result : remembered);
}

// A namesake with another key is no friend.
bool SignatureContext::IsTrusted() const
{
    const unique_store list = OpenTrustList(false);
    return list && std::ranges::any_of(AllCertificates(list.get()), [this](const unique_certificate& one) {
               const CERT_INFO& top = *m_chain_top.get()->pCertInfo;
               return SameCertificate(one.get(), m_signer.get()) ||
                      (late::cert_compare_name(certificate_encoding, &one.get()->pCertInfo->Subject,
                                               const_cast<CERT_NAME_BLOB*>(&top.Subject)) &&
                       SameKey(one.get(), top.SubjectPublicKeyInfo));
           });
}

bool SignatureContext::TrustSigner()
{
    const stringx place(trust_key);
    if (!m_signer) {
        Fail(no_signature_error, place);
        return false;
    }
    const unique_store list = OpenTrustList(true);
    if (list && AddCertificate(list.get(), m_signer.get(), CERT_STORE_ADD_REPLACE_EXISTING))
        return true;
    Fail(LastFailureCode(), place);
    return false;
}

bool SignatureContext::VerifySignedFile(const wchar_t* path, SignerInfo& info)
{
    info = SignerInfo();
    m_last_error = 0;
    try {
        info.last_error = Verify(path, info);
    } catch (const win32_exception& failure) {
        info.last_error = failure.code() == ERROR_INVALID_DATA ? failure.code() : FailureCode(failure.code());
    }
    if (!info.last_error)
        return true;
    // Who could not be verified can't be trusted later on.
    m_signer.reset();
    Fail(info.last_error, path);
    return false;
}

DWORD SignatureContext::Verify(const wchar_t* path, SignerInfo& info)
{
    m_signer.reset();
    signed_parts parts;
    if (const DWORD error =
            parts.source.open(path, GENERIC_READ, FILE_SHARE_READ, FILE_ATTRIBUTE_NORMAL, OPEN_EXISTING))
        return FailureCode(error);
    ReadParts(parts);
    if (parts.trailer.empty())
        return no_signature_error;
    const DWORD error = OpenTrailer(parts.trailer);
    info.is_signed = error == 0;
    if (!parts.header.is_known())
        return ERROR_INVALID_DATA;
    if (error)
        return error;
    if (!parts.is_whole())
        return wrong_signature_error;
    if (CheckChain(m_signer.get(), true) != chain_good || !AreStoredExact())
        return chain_error;
    if (!VerifySignature(parts))
        return wrong_signature_error;
    info.trusted = IsTrusted();
    info.issuer = NameText(m_signer.get(), true);
    info.subject = NameText(m_signer.get(), false);
    return 0;
}

DWORD SignatureContext::VerifyFileAgainst(const wchar_t* path, const std::wstring& expected)
{
    constexpr auto wrong_data = 0x8007000D;
    constexpr auto expired = static_cast<DWORD>(CERT_E_EXPIRED);
    constexpr auto no_match = static_cast<DWORD>(TRUST_E_NOSIGNATURE);
    m_last_error = 0;
    m_signer.reset();
    const auto verify = [&]() -> DWORD {
        signed_parts parts;
        if (const DWORD error = parts.source.open(path, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ,
                                                  FILE_ATTRIBUTE_NORMAL, OPEN_EXISTING))
            return FailureCode(error);
        ReadParts(parts);
        if (!parts.header.is_known())
            return wrong_data;
        if (parts.trailer.empty())
            return no_match;
        if (const DWORD error = OpenTrailer(parts.trailer))
            return FailureCode(error);
        if (const ChainResult chain = CheckChain(m_signer.get(), true); chain != chain_good)
            return chain == chain_not_valid_now ? expired : chain_error;
        if (!AreStoredExact())
            return chain_error;
        if (!VerifySignature(parts))
            return wrong_signature_error;
        // Looked for where the signer stands alone: another stored certificate is no match.
        const unique_store alone = OpenMemoryStore();
        const bool thumbprint = expected.starts_with(L'|');
        const bool found = alone && AddCertificate(alone.get(), m_signer.get()) &&
                           FindCertificate(alone.get(), thumbprint ? expected.substr(1) : expected, thumbprint);
        return found ? 0 : no_match;
    };
    DWORD error = 0;
    try {
        error = verify();
    } catch (const win32_exception& failure) {
        error = FailureCode(failure.code());
    }
    if (error) {
        m_signer.reset();
        Fail(error, path);
    }
    return error;
}

} // namespace vh
