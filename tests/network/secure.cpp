// https: a certificate that the system trusts, and one that it does not.
#include "server_access.h"

#include <wincrypt.h>

namespace {

// The test's authority among those that the system trusts, while this lives.
class TrustedAuthority : Pinned {
public:
    TrustedAuthority()
    {
        const std::wstring path = Wide(std::getenv("VHRT_TEST_CA"));
        const std::string bytes = BytesOf(path[0] == L'/' ? L"Z:" + path : path);
        m_certificate.assign(bytes.begin(), bytes.end());
        InStore([this](HCERTSTORE store) {
            EXPECT_TRUE(CertAddEncodedCertificateToStore(store, X509_ASN_ENCODING, m_certificate.data(), Size(),
                                                         CERT_STORE_ADD_REPLACE_EXISTING, nullptr));
        });
    }
    ~TrustedAuthority()
    {
        InStore([this](HCERTSTORE store) {
            const PCCERT_CONTEXT wanted = CertCreateCertificateContext(X509_ASN_ENCODING, m_certificate.data(), Size());
            CertDeleteCertificateFromStore(
                CertFindCertificateInStore(store, X509_ASN_ENCODING, 0, CERT_FIND_EXISTING, wanted, nullptr));
            CertFreeCertificateContext(wanted);
        });
    }

private:
    DWORD Size() const { return static_cast<DWORD>(m_certificate.size()); }
    // Others see what is done when the store is closed.
    template <class Step>
    static void InStore(Step&& step)
    {
        const HCERTSTORE store = CertOpenSystemStoreW(0, L"ROOT");
        step(store);
        CertCloseStore(store, 0);
    }

    std::vector<BYTE> m_certificate;
};

TEST(Secure, ReadsFromAServerThatTheSystemTrusts)
{
    const TrustedAuthority authority;
    Reader reader(Address(L"size=300000", L"secure", server::https), 5);
    ASSERT_TRUE(reader.Read(300000)) << reader.error;
    EXPECT_TRUE(reader.count == 300000 && IsContent(reader.bytes.data(), 300000));
    EXPECT_EQ(reader->seek(1000, FILE_BEGIN), 1000u);
    ASSERT_TRUE(reader.Read(1000)) << "over the same connection";
    EXPECT_TRUE(IsContent(reader.bytes.data(), 1000, 1000));
    EXPECT_EQ(Requests(L"secure"), "-|bytes=1000-");

    Reader dropped(Address(L"size=300000&drop=99000&times=1", L"secure drop", server::https), 5);
    ASSERT_TRUE(dropped.Read(300000)) << dropped.error;
    EXPECT_TRUE(dropped.count == 300000 && IsContent(dropped.bytes.data(), 300000));
    EXPECT_EQ(Requests(L"secure drop").substr(0, 8), "-|bytes=");

    Reader user(Address(L"user=anna&password=secret", L"secure user", server::https, L"anna:secret@"));
    EXPECT_TRUE(user.Read(1000)) << user.error;
    Reader missing(Address(L"status=404", L"secure 404", server::https), 1);
    EXPECT_FALSE(missing.Read(1000));
    EXPECT_EQ(missing.error, 0x8004D554u);
    EXPECT_EQ(Requests(L"secure 404"), "-|-");
}

TEST(Secure, RefusesAServerThatNobodyVouchesFor)
{
    Reader reader(Address(L"size=1000", L"untrusted", server::untrusted), 1);
    EXPECT_FALSE(reader.Read(1000));
    EXPECT_EQ(reader.error, static_cast<DWORD>(ERROR_INTERNET_INVALID_CA));
    EXPECT_EQ(reader.patience.errors.size(), 2u);
    EXPECT_EQ(reader.count, 0u);
    EXPECT_EQ(Requests(L"untrusted"), "") << "no request went out";
}

} // namespace
