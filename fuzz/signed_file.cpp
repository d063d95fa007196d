// Reads arbitrary bytes as a signed file, its trailer and store, a key file, and a text that names a certificate.
#include "../diagnostics/signed_file.h"
#include "../diagnostics/certificate_choice.h"
#include "../diagnostics/pvk_file.h"
#include "fuzz.h"

namespace {

void ReadAsStore(std::span<const std::byte> bytes)
{
    const auto elements = vh::ReadStore(bytes);
    if (!elements)
        return;
    // A store that is read is made of its elements and nothing else.
    std::size_t size = 8 + 12;
    for (const vh::store_element& element : *elements)
        size += 12 + element.content.size();
    Require(size == bytes.size());
}

} // namespace

void Fuzz(const std::uint8_t* data, std::size_t size)
{
    const auto bytes = std::as_bytes(std::span(data, size));
    ReadAsStore(bytes);
    if (const auto header = vh::ReadSignedHeader(bytes); header && header->content_end <= size) {
        const auto content = bytes.first(header->content_end);
        const auto number_at = [content](std::uint32_t place) {
            Require(std::size_t{place} + 4 <= content.size());
            return vh::ReadNumber(content, place);
        };
        if (content.size() >= vh::signed_header::size && vh::IsContentWhole(*header, number_at))
            Require(header->descriptor_at + std::size_t{header->descriptor_size} <= content.size());
        if (const auto trailer = vh::ReadSignedTrailer(bytes.subspan(header->content_end))) {
            Require(4 + trailer->signature.size() + trailer->store.size() == size - header->content_end);
            ReadAsStore(trailer->store);
        }
    }
    if (const auto key = vh::ReadPvk(bytes))
        Require(key->salt.size() + key->key.size() + vh::pvk_file::header_size <= size);
    const std::wstring text(data, data + size);
    const vh::certificate_choice choice = vh::ReadCertificateChoice(text);
    Require(choice.path.size() + choice.certificate.size() <= size);
    if (const auto thumbprint = vh::ReadThumbprint(text))
        Require(!thumbprint->empty() && thumbprint->size() <= size / 2);
}
