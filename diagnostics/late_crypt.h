// The functions of keys, hashes and certificates, bound on first use, and the holders of what they give.
#pragma once

#include <windows.h>

#include <wincrypt.h>

#include "../scriptdata/late_libraries.h"
#include "../scriptdata/unique.h"

namespace vh::late {

inline constinit late_function<decltype(CryptAcquireContextW)> crypt_acquire(advapi32, "CryptAcquireContextW");
inline constinit late_function<decltype(CryptReleaseContext)> crypt_release(advapi32, "CryptReleaseContext");
inline constinit late_function<decltype(CryptCreateHash)> crypt_create_hash(advapi32, "CryptCreateHash");
inline constinit late_function<decltype(CryptHashData)> crypt_hash_data(advapi32, "CryptHashData");
inline constinit late_function<decltype(CryptDestroyHash)> crypt_destroy_hash(advapi32, "CryptDestroyHash");
inline constinit late_function<decltype(CryptDeriveKey)> crypt_derive_key(advapi32, "CryptDeriveKey");
inline constinit late_function<decltype(CryptDecrypt)> crypt_decrypt(advapi32, "CryptDecrypt");
inline constinit late_function<decltype(CryptImportKey)> crypt_import_key(advapi32, "CryptImportKey");
inline constinit late_function<decltype(CryptDestroyKey)> crypt_destroy_key(advapi32, "CryptDestroyKey");
inline constinit late_function<decltype(CryptSignHashW)> crypt_sign_hash(advapi32, "CryptSignHashW");
inline constinit late_function<decltype(CryptVerifySignatureW)> crypt_verify_signature(advapi32,
                                                                                       "CryptVerifySignatureW");

inline constinit late_library crypt32(L"crypt32.dll");
inline constinit late_function<decltype(CertOpenStore)> cert_open_store(crypt32, "CertOpenStore");
inline constinit late_function<decltype(CertCloseStore)> cert_close_store(crypt32, "CertCloseStore");
inline constinit late_function<decltype(CertSaveStore)> cert_save_store(crypt32, "CertSaveStore");
inline constinit late_function<decltype(CertEnumCertificatesInStore)> cert_enum(crypt32, "CertEnumCertificatesInStore");
inline constinit late_function<decltype(CertFindCertificateInStore)> cert_find(crypt32, "CertFindCertificateInStore");
inline constinit late_function<decltype(CertGetIssuerCertificateFromStore)>
    cert_get_issuer(crypt32, "CertGetIssuerCertificateFromStore");
inline constinit late_function<decltype(CertAddEncodedCertificateToStore)>
    cert_add_encoded(crypt32, "CertAddEncodedCertificateToStore");
inline constinit late_function<decltype(CertCreateCertificateContext)> cert_create(crypt32,
                                                                                   "CertCreateCertificateContext");
inline constinit late_function<decltype(CertDuplicateCertificateContext)>
    cert_duplicate(crypt32, "CertDuplicateCertificateContext");
inline constinit late_function<decltype(CertFreeCertificateContext)> cert_free(crypt32, "CertFreeCertificateContext");
inline constinit late_function<decltype(CertGetCertificateContextProperty)>
    cert_property(crypt32, "CertGetCertificateContextProperty");
inline constinit late_function<decltype(CertGetNameStringW)> cert_name(crypt32, "CertGetNameStringW");
inline constinit late_function<decltype(CertCompareCertificateName)> cert_compare_name(crypt32,
                                                                                       "CertCompareCertificateName");
inline constinit late_function<decltype(CertComparePublicKeyInfo)> cert_compare_key(crypt32,
                                                                                    "CertComparePublicKeyInfo");
inline constinit late_function<decltype(CryptVerifyCertificateSignature)>
    cert_verify_signature(crypt32, "CryptVerifyCertificateSignature");
inline constinit late_function<decltype(CryptDecodeObject)> crypt_decode(crypt32, "CryptDecodeObject");
inline constinit late_function<decltype(CryptEncodeObject)> crypt_encode(crypt32, "CryptEncodeObject");
inline constinit late_function<decltype(CryptImportPublicKeyInfo)> crypt_import_public(crypt32,
                                                                                       "CryptImportPublicKeyInfo");
inline constinit late_function<decltype(CryptExportPublicKeyInfo)> crypt_export_public(crypt32,
                                                                                       "CryptExportPublicKeyInfo");
inline constinit late_function<decltype(CryptAcquireCertificatePrivateKey)>
    crypt_acquire_private(crypt32, "CryptAcquireCertificatePrivateKey");
inline constinit late_function<decltype(PFXImportCertStore)> pfx_import(crypt32, "PFXImportCertStore");

} // namespace vh::late

namespace vh {

struct provider_traits {
    using value_type = HCRYPTPROV;
    static HCRYPTPROV none() { return 0; }
    static void close(HCRYPTPROV provider) { late::crypt_release(provider, DWORD{0}); }
};
struct crypt_key_traits {
    using value_type = HCRYPTKEY;
    static HCRYPTKEY none() { return 0; }
    static void close(HCRYPTKEY key) { late::crypt_destroy_key(key); }
};
struct crypt_hash_traits {
    using value_type = HCRYPTHASH;
    static HCRYPTHASH none() { return 0; }
    static void close(HCRYPTHASH hash) { late::crypt_destroy_hash(hash); }
};
struct certificate_traits {
    using value_type = PCCERT_CONTEXT;
    static PCCERT_CONTEXT none() { return nullptr; }
    static void close(PCCERT_CONTEXT certificate) { late::cert_free(certificate); }
};
struct store_traits {
    using value_type = HCERTSTORE;
    static HCERTSTORE none() { return nullptr; }
    static void close(HCERTSTORE store) { late::cert_close_store(store, DWORD{0}); }
};

using unique_provider = unique<provider_traits>;
using unique_crypt_key = unique<crypt_key_traits>;
using unique_crypt_hash = unique<crypt_hash_traits>;
using unique_certificate = unique<certificate_traits>;
using unique_store = unique<store_traits>;

} // namespace vh
