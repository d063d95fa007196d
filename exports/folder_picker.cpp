// The exported function that lets the user pick a folder.
#include "vhrt/folder_picker.h"

#include "../dialogs/folder_picker.h"
#include "../runtime/context.h"
#include "../runtime/frame.h"
#include "../scriptdata/results.h"
#include "vhrt/language.h"

namespace {

// Numbers of the texts in the resource libraries.
enum : uint32_t {
    text_error_title = 11115,
    text_message = 11626,
    text_bad_folder = 14002,
    text_title = 14003,
    text_label = 17600,
    text_status = 17601
};

// The given text, or the numbered one when there is none.
stringx TextOr(ObjectContext& context, const wchar_t* given, uint32_t number)
{
    if (!vh::IsEmpty(given))
        return given;
    wchar_t buffer[1024];
    const int32_t length = LangLoadString(&context, number, buffer, static_cast<int32_t>(std::size(buffer)));
    return stringx(std::wstring_view(buffer, static_cast<std::size_t>(length)));
}

// What the buffer holds, without one backslash at its end, which the buffer loses too.
stringx StartOf(wchar_t* path, int32_t size)
{
    std::size_t length = wcsnlen(path, static_cast<std::size_t>(size));
    if (length && path[length - 1] == L'\\')
        path[--length] = L'\0';
    return stringx(std::wstring_view(path, length));
}

} // namespace

int64_t _BrowseForFolder(ObjectContext* context, const wchar_t* title, const wchar_t* message, const wchar_t* editLabel,
                         const wchar_t* statusLabel, int32_t flags, wchar_t* path, int32_t size, int32_t verify)
{
    return vh::Framed(context, [&](ObjectContext& c) {
        constexpr int32_t picked = 1;
        constexpr int32_t cancelled = 2;
        if (!path || size <= 0)
            return -1;
        const vh::PickerTexts texts{TextOr(c, title, text_title),        TextOr(c, message, text_message),
                                    TextOr(c, editLabel, text_label),    TextOr(c, statusLabel, text_status),
                                    TextOr(c, nullptr, text_bad_folder), TextOr(c, nullptr, text_error_title)};
        vh::FolderPicker picker(texts, flags, verify != 0);
        if (!picker.Run(c.MainWindow(), StartOf(path, size)))
            return cancelled;
        return vh::CopyOut(picker.Path().view(), path, size) == 0 ? picked : -1;
    });
}
