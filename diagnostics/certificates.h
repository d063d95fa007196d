// Questions about certificates and stores that signing and verifying share.
#pragma once

#include <vector>

#include "../scriptdata/stringx.h"
#include "late_crypt.h"
#include "signed_file.h"

namespace vh {

constexpr DWORD certificate_encoding = X509_ASN_ENCODING | PKCS_7_ASN_ENCODING;
constexpr DWORD no_signature_error = 0x80042328;
constexpr DWORD chain_error = 0x80042329;
constexpr DWORD wrong_signature_error = 0x8004232A;

// A system code as an HRESULT; negative ones stand as they are.
DWORD FailureCode(DWORD system_code);
inline DWORD LastFailureCode() { return FailureCode(GetLastError()); }

// "ROOT", "CA", "MY", and the like, for reading. Empty when it can't be opened.
unique_store OpenSystemStore(const wchar_t* name, DWORD location = CERT_SYSTEM_STORE_CURRENT_USER);
unique_store OpenMemoryStore();
// Without the properties that go with it, such as the place of a key.
bool AddCertificate(HCERTSTORE store, PCCERT_CONTEXT certificate, DWORD disposition = CERT_STORE_ADD_NEWER);
unique_certificate Duplicate(PCCERT_CONTEXT certificate);
bool SameCertificate(PCCERT_CONTEXT one, PCCERT_CONTEXT other);
bool SameKey(PCCERT_CONTEXT one, const CERT_PUBLIC_KEY_INFO& key);
bool IsNamedIssuer(PCCERT_CONTEXT issuer, PCCERT_CONTEXT subject);
bool IsSignedBy(PCCERT_CONTEXT certificate, PCCERT_CONTEXT issuer);
// The bytes are exactly those that the system would write, and both places name one algorithm: nothing in them is out
// of the signature's reach.
bool IsExact(PCCERT_CONTEXT certificate);

// Its own contexts, for a walk that ends early.
std::vector<unique_certificate> AllCertificates(HCERTSTORE store);
// As a person names one: "|" and the digits of a SHA-1 or MD5 thumbprint, or a part of the subject.
unique_certificate FindCertificate(HCERTSTORE store, const std::wstring& text, bool thumbprint);

// Common name, unit, organisation, e-mail, as far as the name has them.
stringx NameText(PCCERT_CONTEXT certificate, bool issuer);

} // namespace vh
