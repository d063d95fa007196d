#include "certificates.h"

#include <cstring>

#include "certificate_choice.h"

namespace vh {

namespace {

bool SameBlob(const CRYPT_DATA_BLOB& one, const CRYPT_DATA_BLOB& other)
{
    return one.cbData == other.cbData && (!one.cbData || std::memcmp(one.pbData, other.pbData, one.cbData) == 0);
}

bool SameAlgorithm(const CRYPT_ALGORITHM_IDENTIFIER& one, const CRYPT_ALGORITHM_IDENTIFIER& other)
{
    return one.pszObjId && other.pszObjId && std::strcmp(one.pszObjId, other.pszObjId) == 0 &&
           SameBlob(one.Parameters, other.Parameters);
}

} // namespace

// Some failures of the system name no cause; they stay failures.
DWORD FailureCode(DWORD system_code)
{
    return static_cast<DWORD>(system_code ? HRESULT_FROM_WIN32(system_code) : E_FAIL);
}

unique_store OpenSystemStore(const wchar_t* name, DWORD location)
{
    // Not everybody may write the machine's, and a name that is misspelt makes no store.
    location |= CERT_STORE_READONLY_FLAG | CERT_STORE_OPEN_EXISTING_FLAG;
    return unique_store(late::cert_open_store(CERT_STORE_PROV_SYSTEM_W, DWORD{0}, HCRYPTPROV{0}, location,
                                              static_cast<const void*>(name)));
}

unique_store OpenMemoryStore()
{
    return unique_store(late::cert_open_store(CERT_STORE_PROV_MEMORY, DWORD{0}, HCRYPTPROV{0}, DWORD{0},
                                              static_cast<const void*>(nullptr)));
}

bool AddCertificate(HCERTSTORE store, PCCERT_CONTEXT certificate, DWORD disposition)
{
    return late::cert_add_encoded(store, DWORD{X509_ASN_ENCODING}, static_cast<const BYTE*>(certificate->pbCertEncoded),
                                  certificate->cbCertEncoded, disposition,
                                  static_cast<PCCERT_CONTEXT*>(nullptr)) != FALSE;
}

unique_certificate Duplicate(PCCERT_CONTEXT certificate)
{
    return unique_certificate(late::cert_duplicate(certificate));
}

bool SameCertificate(PCCERT_CONTEXT one, PCCERT_CONTEXT other)
{
    return one->cbCertEncoded == other->cbCertEncoded &&
           std::memcmp(one->pbCertEncoded, other->pbCertEncoded, one->cbCertEncoded) == 0;
}

bool SameKey(PCCERT_CONTEXT one, const CERT_PUBLIC_KEY_INFO& key)
{
    auto other = key;
    return late::cert_compare_key(certificate_encoding, &one->pCertInfo->SubjectPublicKeyInfo, &other) != FALSE;
}

bool IsNamedIssuer(PCCERT_CONTEXT issuer, PCCERT_CONTEXT subject)
{
    return late::cert_compare_name(certificate_encoding, &issuer->pCertInfo->Subject, &subject->pCertInfo->Issuer) !=
           FALSE;
}

bool IsSignedBy(PCCERT_CONTEXT certificate, PCCERT_CONTEXT issuer)
{
    return late::cert_verify_signature(HCRYPTPROV_LEGACY{0}, DWORD{X509_ASN_ENCODING},
                                       static_cast<const BYTE*>(certificate->pbCertEncoded), certificate->cbCertEncoded,
                                       &issuer->pCertInfo->SubjectPublicKeyInfo) != FALSE;
}

bool IsExact(PCCERT_CONTEXT certificate)
{
    DWORD size = 0;
    const auto decode = [&](BYTE* buffer) {
        return late::crypt_decode(DWORD{X509_ASN_ENCODING}, X509_CERT,
                                  static_cast<const BYTE*>(certificate->pbCertEncoded), certificate->cbCertEncoded,
                                  DWORD{0}, static_cast<void*>(buffer), &size);
    };
    if (!decode(nullptr))
        return false;
    std::vector<BYTE> decoded(size);
    if (!decode(decoded.data()))
        return false;
    const auto& content = *reinterpret_cast<const CERT_SIGNED_CONTENT_INFO*>(decoded.data());
    if (content.Signature.cUnusedBits ||
        !SameAlgorithm(content.SignatureAlgorithm, certificate->pCertInfo->SignatureAlgorithm))
        return false;
    const auto encode = [&](BYTE* buffer) {
        return late::crypt_encode(DWORD{X509_ASN_ENCODING}, X509_CERT, static_cast<const void*>(&content), buffer,
                                  &size);
    };
    if (!encode(nullptr) || size != certificate->cbCertEncoded)
        return false;
    std::vector<BYTE> encoded(size);
    return encode(encoded.data()) && std::memcmp(encoded.data(), certificate->pbCertEncoded, size) == 0;
}

std::vector<unique_certificate> AllCertificates(HCERTSTORE store)
{
    std::vector<unique_certificate> all;
    // Each call frees the one before.
    for (PCCERT_CONTEXT one = nullptr; (one = late::cert_enum(store, one)) != nullptr;)
        all.push_back(Duplicate(one));
    return all;
}

unique_certificate FindCertificate(HCERTSTORE store, const std::wstring& text, bool thumbprint)
{
    const auto find = [store](DWORD kind, const void* what) {
        return unique_certificate(
            late::cert_find(store, certificate_encoding, DWORD{0}, kind, what, PCCERT_CONTEXT{nullptr}));
    };
    if (thumbprint)
        if (auto bytes = ReadThumbprint(text)) {
            CRYPT_HASH_BLOB hash{static_cast<DWORD>(bytes->size()), bytes->data()};
            for (const DWORD kind : {CERT_FIND_SHA1_HASH, CERT_FIND_MD5_HASH})
                if (unique_certificate found = find(kind, &hash))
                    return found;
        }
    // Every subject holds the empty text.
    if (text.empty()) {
        SetLastError(static_cast<DWORD>(CRYPT_E_NOT_FOUND));
        return unique_certificate();
    }
    return find(CERT_FIND_SUBJECT_STR_W, text.c_str());
}

stringx NameText(PCCERT_CONTEXT certificate, bool issuer)
{
    constexpr std::size_t longest = 1023;
    std::wstring text;
    for (const char* field :
         {szOID_COMMON_NAME, szOID_ORGANIZATIONAL_UNIT_NAME, szOID_ORGANIZATION_NAME, szOID_RSA_emailAddr}) {
        wchar_t value[longest + 1] = {};
        // Counts the terminator, and an absent field is the terminator alone.
        const DWORD length =
            late::cert_name(certificate, DWORD{CERT_NAME_ATTR_TYPE}, DWORD{issuer ? CERT_NAME_ISSUER_FLAG : 0u},
                            const_cast<void*>(static_cast<const void*>(field)), value, static_cast<DWORD>(longest + 1));
        if (length > 1)
            text.append(text.empty() ? L"" : L", ").append(value);
    }
    return stringx(text.substr(0, longest));
}

} // namespace vh
