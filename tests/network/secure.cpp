// https: a certificate that the system trusts, and one that it does not.
#include <windows.h>

#include <wincrypt.h>

#include "server_access.h"

namespace {

using namespace vh::test;

// The test's authority among those that the system trusts, while this lives.
class TrustedAuthority {
public:
    TrustedAuthority() : m_store(CertOpenSystemStoreW(0, L"ROOT"))
    {
        const std::wstring path = Wide(std::getenv("VHRT_TEST_CA"));
        vh::file certificate;
        EXPECT_EQ(certificate.open((path[0] == L'/' ? L"Z:" + path : path).c_str(), GENERIC_READ, FILE_SHARE_READ, 0,
                                   OPEN_EXISTING),
                  0u);
        std::vector<BYTE> bytes(certificate.size());
        certificate.read_bytes(bytes.data(), static_cast<DWORD>(bytes.size()));
        EXPECT_TRUE(CertAddEncodedCertificateToStore(m_store, X509_ASN_ENCODING, bytes.data(),
                                                     static_cast<DWORD>(bytes.size()), CERT_STORE_ADD_REPLACE_EXISTING,
                                                     &m_certificate));
    }
    TrustedAuthority(const TrustedAuthority&) = delete;
    TrustedAuthority& operator=(const TrustedAuthority&) = delete;
    ~TrustedAuthority()
    {
        // Ends the certificate in the store and this reference to it.
        CertDeleteCertificateFromStore(m_certificate);
        CertCloseStore(m_store, 0);
    }

private:
    HCERTSTORE m_store;
    PCCERT_CONTEXT m_certificate = nullptr;
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
