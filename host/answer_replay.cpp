#include "answer_replay.h"

#include <stdexcept>

#include "console.h"
#include "named_values.h"
#include "script_value.h"
#include "text.h"
#include "wording.h"

namespace host {

AnswerReplay::AnswerReplay(const DialogCalls& dialogs, vh::engine::Engine& engine, const Answers& answers,
                           const std::wstring& file)
    : m_dialogs(dialogs), m_engine(engine), m_answers(answers), m_file(file), m_target(engine.TargetDir())
{
    if (m_answers.dialogs)
        for (const Answer& answer : *m_answers.dialogs)
            m_waiting[answer.dialog].push_back(&answer);
}

std::optional<vh::variant> AnswerReplay::Instead(std::wstring_view call, std::span<const VARIANT> arguments)
{
    if (MovesData(call) && !m_moved) {
        m_moved = true;
        if (m_answers.selection)
            Select(*m_answers.selection, L"/selection");
    }
    if (!m_answers.dialogs)
        return std::nullopt;
    if (call == L"WaitOnDialog" && arguments.size() == 1)
        return FromInt64(Wait(ToText(arguments[0])));
    if (call == browse_function)
        return Browse();
    // Nobody is there to look at what is opened.
    if (call == L"OpenInShell")
        return vh::variant(true);
    return std::nullopt;
}

void AnswerReplay::WarnOfUnasked() const
{
    for (const auto& [dialog, answers] : m_waiting)
        for (const Answer* answer : answers)
            Complain(m_file + L": " + answer->place + L": the setup did not ask for this answer of \"" + dialog + L"\"",
                     Level::warning);
}

int32_t AnswerReplay::Wait(const std::wstring& dialog)
{
    const HWND window = m_dialogs.WindowOf(dialog);
    Turn& turn = m_turns[dialog];
    if (!window) {
        turn = {};
        return m_dialogs.Wait(dialog);
    }
    if (!turn.given) {
        if (!turn.answer)
            Begin(dialog, turn);
        if (turn.answer->control == Answer::help && turn.next == turn.answer->values.end()) {
            turn = {};
            return wait_help;
        }
        turn.given = EventOf(window, turn);
        SendMessageW(window, turn.given->message, turn.given->first, turn.given->second);
    }
    // A dialog that has an event does not look for messages; one that has not would wait for a user for ever.
    PostQuitMessage(0);
    const int32_t result = m_dialogs.Wait(dialog);
    MSG quit{};
    PeekMessageW(&quit, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);
    if (result == wait_loop_ended)
        Fail(turn.answer->place + L": the dialog \"" + dialog + L"\" does not take control " +
             std::to_wstring(LOWORD(turn.given->first)) + L" with code " + std::to_wstring(HIWORD(turn.given->first)));
    // What the script itself has set off comes before it.
    if (m_dialogs.UseOf(dialog) != *turn.given)
        return result;
    turn.given.reset();
    if (turn.ends)
        turn = {};
    return result;
}

void AnswerReplay::Begin(const std::wstring& dialog, Turn& turn)
{
    turn.answer = &Next(dialog);
    turn.next = turn.answer->values.begin();
    if (turn.answer->selection)
        Select(*turn.answer->selection, turn.answer->place);
}

DialogUse AnswerReplay::EventOf(HWND window, Turn& turn)
{
    const Answer& answer = *turn.answer;
    try {
        const ControlValues shown = ValuesOf(window);
        while (turn.next != answer.values.end()) {
            const auto& [control, value] = *turn.next++;
            const ControlValue wanted = WithTarget(value);
            if (const auto found = shown.find(control); found != shown.end() && found->second == wanted)
                continue;
            const int code = SetValue(window, control, wanted);
            return {WM_COMMAND, static_cast<WPARAM>(MAKELONG(control, code)),
                    reinterpret_cast<LPARAM>(GetDlgItem(window, control))};
        }
        turn.ends = true;
        return UseOf(window, answer);
    } catch (const std::invalid_argument& error) {
        Fail(answer.place + L": the dialog \"" + answer.dialog + L"\": " + Wide(error.what()));
    }
}

DialogUse AnswerReplay::UseOf(HWND window, const Answer& answer)
{
    const HWND control = GetDlgItem(window, answer.control);
    const std::string name = "control " + std::to_string(answer.control);
    // The Enter and Escape keys stand for buttons that need not be there.
    if (!control && answer.control != IDOK && answer.control != IDCANCEL)
        throw std::invalid_argument(name + " is none of the dialog's");
    if (control && !IsWindowEnabled(control))
        throw std::invalid_argument(name + " is disabled");
    return {WM_COMMAND, static_cast<WPARAM>(MAKELONG(answer.control, answer.code)), reinterpret_cast<LPARAM>(control)};
}

const Answer& AnswerReplay::Next(const std::wstring& dialog)
{
    std::deque<const Answer*>& waiting = m_waiting[dialog];
    if (waiting.empty())
        Fail(L"the setup asks in \"" + dialog + L"\", and there is no answer" +
             (m_asked.contains(dialog) ? L" any more" : L""));
    m_asked.insert(dialog);
    const Answer& answer = *waiting.front();
    waiting.pop_front();
    Mention(L"\"" + dialog + L"\" is answered by " + answer.place);
    return answer;
}

vh::variant AnswerReplay::Browse()
{
    const Answer& answer = Next(browse_function);
    const auto given = vh::make_object<NamedValues>();
    given->Add(L"result", FromInt64(answer.result));
    given->Add(L"path", vh::variant(std::wstring_view(std::get<std::wstring>(WithTarget(answer.path)))));
    return ObjectValue(given);
}

ControlValue AnswerReplay::WithTarget(const ControlValue& value) const
{
    const std::wstring* text = std::get_if<std::wstring>(&value);
    return text && *text == target_word ? ControlValue(m_target) : value;
}

void AnswerReplay::Select(const std::vector<std::wstring>& paths, const std::wstring& place)
{
    const std::vector<std::wstring> unknown = m_engine.Select(paths);
    if (!unknown.empty())
        Fail(place + L": the product has no feature " + Joined(unknown));
}

void AnswerReplay::Fail(const std::wstring& reason)
{
    m_fault = m_file + L": " + reason;
    throw script_error(m_fault);
}

} // namespace host
