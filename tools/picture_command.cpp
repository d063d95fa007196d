#include "picture_command.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>

#include <nlohmann/json.hpp>

#include "exit_codes.h"
#include "file_bytes.h"
#include "host/console.h"
#include "host/text.h"
#include "picture_sheet.h"
#include "picture_source.h"
#include "pictures/option_text.h"
#include "sha256.h"

namespace tools {

namespace {

bool EndsWith(std::string_view text, std::string_view end)
{
    return text.size() > end.size() && std::equal(end.rbegin(), end.rend(), text.rbegin(), [](char a, char b) {
               return a == (b >= 'A' && b <= 'Z' ? b - 'A' + 'a' : b);
           });
}

void ApplyOptions(SetupImage& image, const PictureSource& source, const DrawingOptions& options, SIZE sheet)
{
    const uint32_t flags = vh::ReadOptionText(options.text);
    // The picture has its own size, or that of the sheet when it is to be scaled.
    const SIZE size = flags & vh::option_scale ? sheet : source.size;
    image.SetOptions((flags & vh::drawing_options & ~uint32_t{vh::option_scale}) | vh::option_fixed_size);
    image.SetSize(static_cast<int32_t>(size.cx), static_cast<int32_t>(size.cy));
    image.SetPosition(flags & vh::option_center_across ? vh::centered_position : 0,
                      flags & vh::option_center_down ? vh::centered_position : 0);
}

} // namespace

bool ReadSize(const std::string& text, SIZE& size)
{
    constexpr int largest = 16384;
    int numbers[2] = {};
    const char* at = text.data();
    const char* const end = at + text.size();
    for (int i = 0; i < 2; ++i) {
        if (i == 1 && (at == end || *at++ != 'x'))
            return false;
        const auto [behind, error] = std::from_chars(at, end, numbers[i]);
        if (error != std::errc() || numbers[i] < 1 || numbers[i] > largest)
            return false;
        at = behind;
    }
    size = {numbers[0], numbers[1]};
    return at == end;
}

bool IsPictureOutput(const std::string& path) { return EndsWith(path, ".bmp") || EndsWith(path, ".png"); }

std::string UnknownOption(std::string_view text)
{
    // The library passes over them.
    while (!text.empty()) {
        const std::string_view token = text.substr(0, text.find(','));
        if (std::ranges::find(vh::option_tokens, token, &vh::option_token::name) == vh::option_tokens.end())
            return '"' + std::string(token) + '"';
        text.remove_prefix(std::min(token.size() + 1, text.size()));
    }
    return {};
}

int PrintPictureInfo(const std::wstring& file, unsigned frame)
{
    const PictureSource source(file, frame);
    nlohmann::ordered_json object;
    object["format"] = source.format;
    object["result"] = source.result;
    object["width"] = source.size.cx;
    object["height"] = source.size.cy;
    object["colors"] = source.colors;
    object["transparent"] = source.transparent ? nlohmann::ordered_json(*source.transparent) : nullptr;
    object["frames"] = source.frames;
    object["pixels"] = nullptr;
    if (source.result == 0) {
        Sha256 sum;
        const std::string pixels = source.Pixels();
        sum.Add(std::as_bytes(std::span(pixels)));
        object["pixels"] = sum.Finish();
    }
    host::Say(host::Wide(object.dump(2)));
    return source.result ? exit_found : exit_done;
}

int DrawPicture(const std::wstring& file, const std::wstring& output, const DrawingOptions& options)
{
    const PictureSource source(file, options.frame);
    SetupImage image;
    if (source.result == vh::gif_no_more)
        host::Complain(file + L": no frame " + std::to_wstring(options.frame) + L" of " +
                       std::to_wstring(source.frames));
    else if (source.result || !source.Load(image))
        host::Complain(file + L": no picture that can be drawn (" + std::to_wstring(source.result) + L")");
    else {
        const PictureSheet sheet(options.size.cx ? options.size : source.size);
        ApplyOptions(image, source, options, sheet.size());
        image.Draw(sheet.context(), sheet.size());
        SaveFile(output, EndsWith(host::Utf8(output), ".png") ? PngOf(sheet) : BitmapOf(sheet));
        return exit_done;
    }
    return exit_found;
}

} // namespace tools
