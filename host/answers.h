// The answers of a user to a setup, as a file that another run takes.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "control_values.h"

namespace host {

// In the place of a text that is the target folder.
inline constexpr const wchar_t* target_word = L"<TARGETDIR>";

// Asks for a folder, in a dialog of its own.
inline constexpr const wchar_t* browse_function = L"BrowseForFolder";

// What was done in a dialog before the script heard of it.
struct Answer {
    // F1, in the place of a control.
    enum : int { help = -1 };

    // The dialog's name, or that of the function that asks.
    std::wstring dialog;
    // What was used at last, and the notification code that came with it.
    int control = 0;
    int code = 0;
    // What differs from what the dialog showed by itself.
    ControlValues values;
    // Paths of all features that were selected then, where the dialog changed that.
    std::optional<std::vector<std::wstring>> selection;
    // Of BrowseForFolder.
    int result = 0;
    std::wstring path;
    // Where it stands in its file.
    std::wstring place;
};

struct Answers {
    std::wstring guid;
    std::wstring name;
    std::wstring version;
    int language = 0;
    std::wstring target;
    // Features that are selected when the data is moved first; nothing leaves that to the setup.
    std::optional<std::vector<std::wstring>> selection;
    // Without a value for secret ones.
    std::map<std::wstring, std::optional<std::wstring>> variables;
    // In the order of time; nothing for a silent run.
    std::optional<std::vector<Answer>> dialogs;
};

// Throws engine_error, which names file, line and reason.
Answers ReadAnswers(const std::wstring& file);
// UTF-8, with what is secret left out.
std::string TextOf(const Answers& answers);

} // namespace host
