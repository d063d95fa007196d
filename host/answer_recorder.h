// Notes what a user does in the dialogs of a script, and what is chosen at the end.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "answers.h"
#include "call_watch.h"
#include "dialog_calls.h"
#include "engine/engine.h"

namespace host {

class AnswerRecorder : public CallWatch {
public:
    AnswerRecorder(const DialogCalls& dialogs, const vh::engine::Engine& engine) : m_dialogs(dialogs), m_engine(engine)
    {
    }

    std::optional<vh::variant> Instead(std::wstring_view call, std::span<const VARIANT> arguments) override;
    void After(std::wstring_view call, const VARIANT& result) override;

    const std::vector<Answer>& Given() const { return m_given; }
    // The features that were selected when data was moved first; nothing when none was.
    const std::optional<std::vector<std::wstring>>& Selection() const { return m_selection; }

private:
    using Paths = std::vector<std::wstring>;
    // One stay of a dialog on the screen. What differs from `base` is the user's doing.
    struct Visit {
        ControlValues base, last;
        Paths base_selection, last_selection;
    };

    void LookBefore();
    void LookAfter(int32_t result);
    void Note(HWND window, int control, int code);

    DialogCalls m_dialogs;
    const vh::engine::Engine& m_engine;
    std::wstring m_dialog; // that is waited for
    std::map<std::wstring, Visit> m_visits;
    std::vector<Answer> m_given;
    std::optional<Paths> m_selection;
};

} // namespace host
