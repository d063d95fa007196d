// Gives the answers of a file to the dialogs of a script, which are made and never shown.
#pragma once

#include <deque>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "answers.h"
#include "call_watch.h"
#include "dialog_calls.h"
#include "engine/engine.h"

namespace host {

class AnswerReplay : public CallWatch {
public:
    // The file's name goes before what is wrong. All references have to outlive the object.
    AnswerReplay(const DialogCalls& dialogs, vh::engine::Engine& engine, const Answers& answers,
                 const std::wstring& file);

    std::optional<vh::variant> Instead(std::wstring_view call, std::span<const VARIANT> arguments) override;

    // What was wrong, whether the script went on or not; empty when nothing was.
    const std::wstring& Fault() const { return m_fault; }
    // Warns of each answer that nobody asked for.
    void WarnOfUnasked() const;

private:
    // How far the answer of one dialog has come.
    struct Turn {
        const Answer* answer = nullptr;
        ControlValues::const_iterator next;
        // Its values are set, and what was used at last is given.
        bool ends = false;
        // The event that was given to the dialog and did not come out of a wait yet.
        std::optional<DialogUse> given;
    };

    int32_t Wait(const std::wstring& dialog);
    void Begin(const std::wstring& dialog, Turn& turn);
    // The next event of the answer, its value being set already.
    DialogUse EventOf(HWND window, Turn& turn);
    DialogUse UseOf(HWND window, const Answer& answer);
    const Answer& Next(const std::wstring& dialog);
    vh::variant Browse();
    ControlValue WithTarget(const ControlValue& value) const;
    void Select(const std::vector<std::wstring>& paths, const std::wstring& place);
    [[noreturn]] void Fail(const std::wstring& reason);

    DialogCalls m_dialogs;
    vh::engine::Engine& m_engine;
    const Answers& m_answers;
    const std::wstring& m_file;
    std::wstring m_target;
    std::map<std::wstring, std::deque<const Answer*>> m_waiting; // by dialog
    std::set<std::wstring> m_asked;
    std::map<std::wstring, Turn> m_turns;
    bool m_moved = false;
    std::wstring m_fault;
};

} // namespace host
