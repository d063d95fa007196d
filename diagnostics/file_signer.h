// Signs data files, with a key in a file, in a store, or in a PFX file.
#pragma once

#include "signature_context.h"

namespace vh {

enum SignResult : DWORD {
    sign_done = 0,
    // The file can't be read, is none of these, or is signed already.
    sign_bad_file = 2,
    sign_write_failed = 3,
    sign_bad_key = 4,
    sign_bad_certificates = 5,
    sign_no_chain = 6,
    sign_invalid_chain = 7,
};

class FileSigner : public SignatureContext {
public:
    // A SignResult; `last_error` tells the cause. Certificates are read from any file that the system opens as a store.
    DWORD SignFile(const wchar_t* path, const wchar_t* key_file, const wchar_t* certificate_file,
                   const wchar_t* password);
    // 0, sign_bad_file, sign_write_failed, or the code of the failure. What text chooses a certificate stands in
    // certificate_choice.h.
    DWORD SignFileWithCertificate(const wchar_t* path, const wchar_t* specification, const wchar_t* password);

private:
    bool ReadUnsigned(const wchar_t* path, signed_parts& parts);
    // The provider that took the key, or 0.
    HCRYPTPROV ImportPrivateKey(const wchar_t* key_file, const wchar_t* password);
    bool ImportFrom(HCRYPTPROV provider, const struct pvk_file& pvk, const std::string& password);
    DWORD ChooseSigner(HCRYPTPROV provider, const wchar_t* certificate_file);
    // An open store and the certificate in it; 0 or the failure.
    DWORD Resolve(const wchar_t* specification, const wchar_t* password, unique_store& source,
                  unique_certificate& certificate);
    DWORD CollectIssuers(PCCERT_CONTEXT certificate, HCERTSTORE source);
    bool Sign(HCRYPTPROV provider, DWORD key_kind, signed_parts& parts);
    DWORD WriteTrailer(const wchar_t* path, signed_parts& parts);
};

} // namespace vh
