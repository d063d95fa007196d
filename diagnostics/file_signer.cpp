#include "file_signer.h"

#include <algorithm>

#include "certificate_choice.h"
#include "pvk_file.h"

namespace vh {

namespace {

constexpr DWORD wrong_password = ERROR_INVALID_PASSWORD;

// Bytes that are wiped before their memory goes back.
template <class Container>
class wiped : public Container {
public:
    using Container::Container;
    wiped(const wiped&) = delete;
    wiped& operator=(const wiped&) = delete;
    ~wiped() { SecureZeroMemory(this->data(), this->size() * sizeof(typename Container::value_type)); }
};
using wiped_bytes = wiped<std::vector<std::byte>>;
using wiped_text = wiped<std::string>;

BYTE* Bytes(std::byte* bytes) { return reinterpret_cast<BYTE*>(bytes); }

void ReadWhole(const wchar_t* path, wiped_bytes& bytes)
{
    constexpr DWORD longest = 1u << 24;
    file source;
    if (const DWORD error = source.open(path, GENERIC_READ, FILE_SHARE_READ, FILE_ATTRIBUTE_NORMAL, OPEN_EXISTING))
        throw file_exception(error, stringx(path));
    DWORD high = 0;
    const DWORD size = source.size(&high);
    if (high || size > longest)
        throw file_exception(ERROR_INVALID_DATA, stringx(path));
    bytes.resize(size);
    if (size && source.read_bytes(bytes.data(), size) != size)
        throw file_exception(ERROR_INVALID_DATA, stringx(path));
}

// The password in the system's code page, as the makers of key files take it.
void ToNarrow(const wchar_t* password, wiped_text& narrow)
{
    const int wide = password ? lstrlenW(password) : 0;
    const int size = wide ? WideCharToMultiByte(CP_ACP, 0, password, wide, nullptr, 0, nullptr, nullptr) : 0;
    narrow.resize(static_cast<std::size_t>(size));
    if (size)
        WideCharToMultiByte(CP_ACP, 0, password, wide, narrow.data(), size, nullptr, nullptr);
}

// Decrypts in place, behind the header of the key's blob; the provider's own import of encrypted blobs is not to be had
// everywhere. `bits` 0 is the provider's own strength.
bool Decrypt(HCRYPTPROV provider, const pvk_file& pvk, const std::string& password, DWORD bits, wiped_bytes& key)
{
    unique_crypt_hash hash;
    unique_crypt_key cipher;
    const auto add = [&hash](const void* bytes, std::size_t size) {
        return late::crypt_hash_data(hash.get(), static_cast<const BYTE*>(bytes), static_cast<DWORD>(size), DWORD{0});
    };
    if (!late::crypt_create_hash(provider, ALG_ID{CALG_SHA}, HCRYPTKEY{0}, DWORD{0}, hash.put()) ||
        !add(pvk.salt.data(), pvk.salt.size()) || !add(password.data(), password.size()) ||
        !late::crypt_derive_key(provider, ALG_ID{CALG_RC4}, hash.get(), DWORD{bits << 16}, cipher.put()))
        return false;
    key.assign(pvk.key.begin(), pvk.key.end());
    auto size = static_cast<DWORD>(key.size() - pvk_file::blob_header_size);
    return late::crypt_decrypt(cipher.get(), HCRYPTHASH{0}, BOOL{TRUE}, DWORD{0},
                               Bytes(key.data()) + pvk_file::blob_header_size, &size) &&
           IsPrivateKey(key);
}

// Whether the provider's key of a kind belongs to the certificate.
bool HasKeyOf(HCRYPTPROV provider, DWORD kind, PCCERT_CONTEXT certificate)
{
    DWORD size = 0;
    if (!late::crypt_export_public(provider, kind, DWORD{X509_ASN_ENCODING}, PCERT_PUBLIC_KEY_INFO{nullptr}, &size))
        return false;
    std::vector<BYTE> buffer(size);
    auto* key = reinterpret_cast<PCERT_PUBLIC_KEY_INFO>(buffer.data());
    return late::crypt_export_public(provider, kind, DWORD{X509_ASN_ENCODING}, key, &size) &&
           SameKey(certificate, *key);
}

// A provider with the certificate's key. Given back only where the system says so.
struct private_key {
    HCRYPTPROV provider = 0;
    DWORD kind = 0;
    unique_provider owned;
};

bool AcquireKey(PCCERT_CONTEXT certificate, private_key& key)
{
    BOOL ours = FALSE;
    HCRYPTPROV_OR_NCRYPT_KEY_HANDLE provider = 0;
    if (!late::crypt_acquire_private(certificate, DWORD{0}, static_cast<void*>(nullptr), &provider, &key.kind, &ours))
        return false;
    key.provider = provider;
    if (ours)
        key.owned.reset(provider);
    // What is told about the kind is not always one of the two.
    for (const DWORD kind : {AT_SIGNATURE, AT_KEYEXCHANGE})
        if (HasKeyOf(provider, kind, certificate)) {
            key.kind = kind;
            return true;
        }
    SetLastError(static_cast<DWORD>(NTE_NO_KEY));
    return false;
}

bool HasKeyProperty(PCCERT_CONTEXT certificate)
{
    DWORD size = 0;
    return std::ranges::any_of(
        std::initializer_list<DWORD>{CERT_KEY_CONTEXT_PROP_ID, CERT_KEY_PROV_INFO_PROP_ID}, [&](DWORD property) {
            return late::cert_property(certificate, DWORD{property}, static_cast<void*>(nullptr), &size) != FALSE;
        });
}

// The first certificate whose key is there.
unique_certificate FirstWithKey(HCERTSTORE store)
{
    for (unique_certificate& one : AllCertificates(store)) {
        private_key key;
        if (HasKeyProperty(one.get()) && AcquireKey(one.get(), key))
            return std::move(one);
    }
    return unique_certificate();
}

} // namespace

bool FileSigner::ReadUnsigned(const wchar_t* path, signed_parts& parts)
{
    m_last_error = 0;
    DWORD error = 0;
    try {
        error = parts.source.open(path, GENERIC_READ, FILE_SHARE_READ, FILE_ATTRIBUTE_NORMAL, OPEN_EXISTING);
        if (!error) {
            ReadParts(parts);
            if (!parts.header.is_known() || !parts.is_whole())
                error = ERROR_INVALID_DATA;
            else if (!parts.trailer.empty())
                error = ERROR_ALREADY_EXISTS;
        }
    } catch (const win32_exception& failure) {
        error = failure.code();
    }
    if (error)
        Fail(FailureCode(error), path);
    return error == 0;
}

bool FileSigner::ImportFrom(HCRYPTPROV provider, const pvk_file& pvk, const std::string& password)
{
    constexpr DWORD weak_bits = 40;
    wiped_bytes key;
    if (!pvk.encrypted)
        key.assign(pvk.key.begin(), pvk.key.end());
    else if (!Decrypt(provider, pvk, password, 0, key) && !Decrypt(provider, pvk, password, weak_bits, key)) {
        SetLastError(wrong_password);
        return false;
    }
    // A key for exchange signs as well.
    constexpr ALG_ID kind = CALG_RSA_SIGN;
    for (unsigned i = 0; i < sizeof(kind); ++i)
        key[pvk_file::algorithm_at + i] = static_cast<std::byte>(kind >> 8 * i);
    return late::crypt_import_key(provider, static_cast<const BYTE*>(Bytes(key.data())), static_cast<DWORD>(key.size()),
                                  HCRYPTKEY{0}, DWORD{0}, m_signing_key.put()) != FALSE;
}

HCRYPTPROV FileSigner::ImportPrivateKey(const wchar_t* key_file, const wchar_t* password)
{
    wiped_bytes bytes;
    ReadWhole(key_file, bytes);
    const auto pvk = ReadPvk(bytes);
    SetLastError(ERROR_INVALID_DATA);
    if (!pvk)
        return 0;
    wiped_text narrow;
    ToNarrow(password, narrow);
    for (const unique_provider& provider : m_providers)
        if (ImportFrom(provider.get(), *pvk, narrow))
            return provider.get();
    return 0;
}

// The signer is the certificate of the key, and its chain what leads on from there.
DWORD FileSigner::ChooseSigner(HCRYPTPROV provider, const wchar_t* certificate_file)
{
    const unique_store source(late::cert_open_store(CERT_STORE_PROV_FILENAME_W, certificate_encoding, HCRYPTPROV{0},
                                                    DWORD{CERT_STORE_READONLY_FLAG | CERT_STORE_OPEN_EXISTING_FLAG},
                                                    static_cast<const void*>(certificate_file)));
    if (!source)
        return LastFailureCode();
    std::vector<unique_certificate> all = AllCertificates(source.get());
    const auto signer = std::ranges::find_if(
        all, [provider](const unique_certificate& one) { return HasKeyOf(provider, AT_SIGNATURE, one.get()); });
    if (signer == all.end())
        return static_cast<DWORD>(NTE_BAD_PUBLIC_KEY);
    m_certificates = OpenMemoryStore();
    if (!m_certificates)
        return LastFailureCode();
    unique_certificate last = Duplicate(signer->get());
    for (std::size_t step = 0; step < all.size(); ++step) {
        if (!AddCertificate(m_certificates.get(), last.get()) && GetLastError() != static_cast<DWORD>(CRYPT_E_EXISTS))
            return LastFailureCode();
        const auto issuer = std::ranges::find_if(all, [&last](const unique_certificate& one) {
            return !SameCertificate(one.get(), last.get()) && IsNamedIssuer(one.get(), last.get()) &&
                   IsSignedBy(last.get(), one.get());
        });
        if (issuer == all.end() || IsNamedIssuer(last.get(), last.get()))
            break;
        last = Duplicate(issuer->get());
    }
    return FindChain() ? 0 : static_cast<DWORD>(CERT_E_CHAINING);
}

bool FileSigner::Sign(HCRYPTPROV provider, DWORD key_kind, signed_parts& parts)
try {
    DWORD size = 0;
    const auto sign = [&](BYTE* signature) {
        return late::crypt_sign_hash(m_hash.get(), key_kind, static_cast<const wchar_t*>(nullptr), DWORD{0}, signature,
                                     &size) != FALSE;
    };
    if (!Hash(provider, parts) || !sign(nullptr))
        return false;
    m_signature.resize(size);
    if (!sign(m_signature.data()))
        return false;
    m_signature.resize(size);
    // A key of another certificate would sign as gladly.
    return VerifySignature(parts);
} catch (const win32_exception& failure) {
    SetLastError(failure.code());
    return false;
}

// All in one piece, so that a write that fails is undone by cutting the file back.
DWORD FileSigner::WriteTrailer(const wchar_t* path, signed_parts& parts)
{
    const uint32_t end = parts.header.content_end;
    CRYPT_DATA_BLOB blob{};
    // Certificates that were looked at carry what the system has noted about them.
    const unique_store fresh = OpenMemoryStore();
    const auto save = [&] {
        return late::cert_save_store(fresh.get(), certificate_encoding, DWORD{CERT_STORE_SAVE_AS_STORE},
                                     DWORD{CERT_STORE_SAVE_TO_MEMORY}, static_cast<void*>(&blob), DWORD{0}) != FALSE;
    };
    const bool copied =
        fresh && std::ranges::all_of(AllCertificates(m_certificates.get()), [&fresh](const unique_certificate& one) {
            return AddCertificate(fresh.get(), one.get());
        });
    if (!copied || !save()) {
        Fail(LastFailureCode(), path);
        return sign_write_failed;
    }
    std::vector<std::byte> trailer;
    AppendNumber(trailer, static_cast<uint32_t>(m_signature.size()));
    const byte_span signature = std::as_bytes(std::span(m_signature));
    trailer.insert(trailer.end(), signature.begin(), signature.end());
    const std::size_t store_at = trailer.size();
    trailer.resize(store_at + blob.cbData);
    blob.pbData = Bytes(trailer.data() + store_at);
    file target;
    try {
        parts.source.close();
        DWORD error = save() ? 0 : GetLastError();
        if (!error)
            error = target.open(path, GENERIC_WRITE, FILE_SHARE_READ, FILE_ATTRIBUTE_NORMAL, OPEN_EXISTING);
        if (error)
            throw file_exception(error, stringx(path));
        LONG high = 0;
        // Whoever has written since then has made another file of it.
        if (target.seek(0, FILE_END, &high) != end || high)
            throw file_exception(ERROR_FILE_INVALID, stringx(path));
        try {
            if (target.write_bytes(trailer.data(), static_cast<DWORD>(trailer.size())) != trailer.size())
                throw file_exception(ERROR_HANDLE_DISK_FULL, stringx(path));
        } catch (const win32_exception&) {
            high = 0;
            target.seek(static_cast<LONG>(end), FILE_BEGIN, &high);
            target.set_end();
            throw;
        }
        target.close();
    } catch (const win32_exception& failure) {
        Fail(FailureCode(failure.code()), path);
        return sign_write_failed;
    }
    return sign_done;
}

DWORD FileSigner::SignFile(const wchar_t* path, const wchar_t* key_file, const wchar_t* certificate_file,
                           const wchar_t* password)
{
    signed_parts parts;
    if (!ReadUnsigned(path, parts))
        return sign_bad_file;
    HCRYPTPROV provider = 0;
    DWORD error = 0;
    try {
        provider = ImportPrivateKey(key_file, password);
        error = provider ? 0 : LastFailureCode();
    } catch (const win32_exception& failure) {
        error = FailureCode(failure.code());
    }
    if (!provider) {
        Fail(error, key_file);
        return sign_bad_key;
    }
    if ((error = ChooseSigner(provider, certificate_file)) != 0) {
        Fail(error, certificate_file);
        return sign_bad_certificates;
    }
    if (const ChainResult chain = CheckChain(m_chain_top.get(), true); chain != chain_good) {
        Fail(chain == chain_not_valid_now ? static_cast<DWORD>(CERT_E_EXPIRED) : chain_error, certificate_file);
        return chain == chain_not_valid_now ? sign_invalid_chain : sign_no_chain;
    }
    // A certificate that vouches for itself passes so far, whatever became of its bytes.
    if (!AreStoredExact()) {
        Fail(chain_error, certificate_file);
        return sign_invalid_chain;
    }
    if (!Sign(provider, AT_SIGNATURE, parts)) {
        Fail(LastFailureCode(), path);
        return sign_no_chain;
    }
    return WriteTrailer(path, parts);
}

DWORD FileSigner::Resolve(const wchar_t* specification, const wchar_t* password, unique_store& source,
                          unique_certificate& certificate)
{
    const certificate_choice choice = ReadCertificateChoice(specification);
    if (choice.path.empty() && choice.certificate.empty())
        return FailureCode(ERROR_INVALID_PARAMETER);
    if (choice.path.empty()) {
        const bool machine = lstrcmpiW(choice.location.c_str(), L"Machine") == 0;
        if (!machine && lstrcmpiW(choice.location.c_str(), L"User") != 0)
            return FailureCode(ERROR_INVALID_PARAMETER);
        source = OpenSystemStore(choice.store.c_str(),
                                 machine ? CERT_SYSTEM_STORE_LOCAL_MACHINE : CERT_SYSTEM_STORE_CURRENT_USER);
        if (source)
            certificate = FindCertificate(source.get(), choice.certificate, choice.thumbprint);
        return certificate ? 0 : LastFailureCode();
    }
    wiped_bytes bytes;
    ReadWhole(choice.path.c_str(), bytes);
    CRYPT_DATA_BLOB blob{static_cast<DWORD>(bytes.size()), Bytes(bytes.data())};
    // A key that stays in memory leaves nothing behind; where that can't be used, the system keeps it for the user.
    for (const DWORD flags : {DWORD{PKCS12_NO_PERSIST_KEY}, DWORD{0}}) {
        certificate.reset();
        SetLastError(NO_ERROR);
        source.reset(late::pfx_import(&blob, password, flags));
        // A system that names no cause was not able to decrypt.
        if (!source)
            return GetLastError() ? LastFailureCode() : FailureCode(ERROR_INVALID_PASSWORD);
        if ((certificate = FirstWithKey(source.get())))
            return 0;
    }
    return FailureCode(ERROR_OBJECT_NOT_FOUND);
}

// The certificate and all that vouch for it, as far as they are on this machine or in the file.
DWORD FileSigner::CollectIssuers(PCCERT_CONTEXT certificate, HCERTSTORE source)
{
    constexpr DWORD not_by_issuer = 0x8009202B;
    constexpr int longest_chain = 32;
    m_certificates = OpenMemoryStore();
    if (!m_certificates)
        return LastFailureCode();
    const unique_store systems[] = {OpenSystemStore(L"CA"), OpenSystemStore(L"ROOT")};
    const HCERTSTORE stores[] = {systems[0].get(), systems[1].get(), source};
    unique_certificate last = Duplicate(certificate);
    for (int step = 0; step < longest_chain; ++step) {
        if (!AddCertificate(m_certificates.get(), last.get())) {
            if (GetLastError() != static_cast<DWORD>(CRYPT_E_EXISTS))
                return LastFailureCode();
            break; // issuers that lead to each other
        }
        if (IsNamedIssuer(last.get(), last.get()))
            return IsSignedBy(last.get(), last.get()) ? 0 : not_by_issuer;
        bool named = false;
        unique_certificate issuer;
        for (const HCERTSTORE store : stores)
            if (store && !issuer)
                for (const unique_certificate& one : AllCertificates(store))
                    if (!issuer && IsNamedIssuer(one.get(), last.get())) {
                        named = true;
                        if (IsSignedBy(last.get(), one.get()))
                            issuer = Duplicate(one.get());
                    }
        if (!issuer)
            return named ? not_by_issuer : 0;
        last = std::move(issuer);
    }
    return 0;
}

DWORD FileSigner::SignFileWithCertificate(const wchar_t* path, const wchar_t* specification, const wchar_t* password)
{
    signed_parts parts;
    if (!ReadUnsigned(path, parts))
        return sign_bad_file;
    unique_store source;
    unique_certificate certificate;
    DWORD error = 0;
    try {
        error = Resolve(specification, password, source, certificate);
    } catch (const win32_exception& failure) {
        error = FailureCode(failure.code());
    }
    if (!error)
        error = CollectIssuers(certificate.get(), source.get());
    private_key key;
    if (!error && (!FindChain() || !AcquireKey(certificate.get(), key)))
        error = LastFailureCode();
    if (!error && !Sign(key.provider, key.kind, parts))
        error = LastFailureCode();
    // The hash goes before its provider.
    m_hash.reset();
    if (error)
        return Fail(error, specification);
    return WriteTrailer(path, parts);
}

} // namespace vh
