// Twins of the file signature: the loop of RFC 1321, unrolled, and the system's own digest.
#include <bit>
#include <cstring>
#include <utility>

#include <windows.h>

#include <wincrypt.h>

#include "../../exports/vhrt/disks.h"
#include "../../scriptdata/unique.h"

namespace {

constexpr DWORD block_bytes = 16384;

using word = uint32_t;

// The sines of 1 to 64, times 2^32.
constexpr word sines[64] = {
    0xD76AA478, 0xE8C7B756, 0x242070DB, 0xC1BDCEEE, 0xF57C0FAF, 0x4787C62A, 0xA8304613, 0xFD469501,
    0x698098D8, 0x8B44F7AF, 0xFFFF5BB1, 0x895CD7BE, 0x6B901122, 0xFD987193, 0xA679438E, 0x49B40821,
    0xF61E2562, 0xC040B340, 0x265E5A51, 0xE9B6C7AA, 0xD62F105D, 0x02441453, 0xD8A1E681, 0xE7D3FBC8,
    0x21E1CDE6, 0xC33707D6, 0xF4D50D87, 0x455A14ED, 0xA9E3E905, 0xFCEFA3F8, 0x676F02D9, 0x8D2A4C8A,
    0xFFFA3942, 0x8771F681, 0x6D9D6122, 0xFDE5380C, 0xA4BEEA44, 0x4BDECFA9, 0xF6BB4B60, 0xBEBFBC70,
    0x289B7EC6, 0xEAA127FA, 0xD4EF3085, 0x04881D05, 0xD9D4D039, 0xE6DB99E5, 0x1FA27CF8, 0xC4AC5665,
    0xF4292244, 0x432AFF97, 0xAB9423A7, 0xFC93A039, 0x655B59C3, 0x8F0CCC92, 0xFFEFF47D, 0x85845DD1,
    0x6FA87E4F, 0xFE2CE6E0, 0xA3014314, 0x4E0811A1, 0xF7537E82, 0xBD3AF235, 0x2AD7D2BB, 0xEB86D391};
constexpr int shifts[4][4] = {{7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};
constexpr int first_word[4] = {0, 1, 5, 0};
constexpr int word_step[4] = {1, 5, 3, 7};

template <std::size_t Index>
inline void Step(word (&s)[4], const word* x)
{
    constexpr std::size_t round = Index / 16;
    word& a = s[(64 - Index) % 4];
    const word b = s[(65 - Index) % 4];
    const word c = s[(66 - Index) % 4];
    const word d = s[(67 - Index) % 4];
    word f;
    if constexpr (round == 0)
        f = (b & c) | (~b & d);
    else if constexpr (round == 1)
        f = (b & d) | (c & ~d);
    else if constexpr (round == 2)
        f = b ^ c ^ d;
    else
        f = c ^ (b | ~d);
    constexpr auto at =
        static_cast<std::size_t>(first_word[round]) + static_cast<std::size_t>(word_step[round]) * (Index % 16);
    a = b + std::rotl(a + f + x[at % 16] + sines[Index], shifts[round][Index % 4]);
}

template <std::size_t... Index>
inline void AllSteps(word (&s)[4], const word* x, std::index_sequence<Index...>)
{
    (Step<Index>(s, x), ...);
}

void Transform(word (&state)[4], const unsigned char* block)
{
    word x[16];
    std::memcpy(x, block, sizeof(x));
    word s[4] = {state[0], state[1], state[2], state[3]};
    AllSteps(s, x, std::make_index_sequence<64>());
    for (int i = 0; i < 4; ++i)
        state[i] += s[i];
}

vh::unique_file OpenForReading(const wchar_t* path)
{
    return vh::unique_file(
        CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
}

void WriteHex(const unsigned char* digest, wchar_t* text)
{
    constexpr wchar_t digits[] = L"0123456789ABCDEF";
    for (int i = 0; i < 16; ++i) {
        *text++ = digits[digest[i] >> 4];
        *text++ = digits[digest[i] & 15];
    }
    *text = L'\0';
}

} // namespace

// For files of whole blocks of 64 bytes.
int32_t _GenerateFileMD5SignatureHex(const void*, const wchar_t* path, wchar_t* text)
{
    const vh::unique_file file = OpenForReading(path);
    word state[4] = {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476};
    static unsigned char block[block_bytes];
    uint64_t total = 0;
    for (DWORD count = 0; ReadFile(file.get(), block, block_bytes, &count, nullptr) && count; total += count)
        for (DWORD at = 0; at < count; at += 64)
            Transform(state, block + at);
    unsigned char last[64] = {0x80};
    total *= 8;
    std::memcpy(last + 56, &total, sizeof(total));
    Transform(state, last);
    WriteHex(reinterpret_cast<const unsigned char*>(state), text);
    return 0;
}

extern "C" int32_t GenerateMD5ByCryptoApi(const void*, const wchar_t* path, wchar_t* text)
{
    HCRYPTPROV provider = 0;
    HCRYPTHASH hash = 0;
    if (!CryptAcquireContextW(&provider, nullptr, nullptr, PROV_RSA_FULL, CRYPT_VERIFYCONTEXT) ||
        !CryptCreateHash(provider, CALG_MD5, 0, 0, &hash))
        return -1;
    const vh::unique_file file = OpenForReading(path);
    static unsigned char block[block_bytes];
    for (DWORD count = 0; ReadFile(file.get(), block, block_bytes, &count, nullptr) && count;)
        CryptHashData(hash, block, count, 0);
    unsigned char digest[16];
    DWORD size = sizeof(digest);
    CryptGetHashParam(hash, HP_HASHVAL, digest, &size, 0);
    CryptDestroyHash(hash);
    CryptReleaseContext(provider, 0);
    WriteHex(digest, text);
    return 0;
}
