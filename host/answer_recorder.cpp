#include "answer_recorder.h"

#include "script_object.h"
#include "script_value.h"

namespace host {

namespace {

// Takes over into `base` what a script has changed since the last look.
void TakeOver(ControlValues& base, const ControlValues& last, const ControlValues& now)
{
    for (const auto& [control, value] : now) {
        const auto before = last.find(control);
        if (before == last.end() || before->second != value)
            base[control] = value;
    }
}

} // namespace

std::optional<vh::variant> AnswerRecorder::Instead(std::wstring_view call, std::span<const VARIANT> arguments)
{
    m_dialog.clear();
    if (call == L"WaitOnDialog" && arguments.size() == 1) {
        m_dialog = ToText(arguments[0]);
        LookBefore();
    } else if (MovesData(call) && !m_selection) {
        m_selection = m_engine.Selected();
    }
    return std::nullopt;
}

void AnswerRecorder::After(std::wstring_view call, const VARIANT& result)
{
    if (call == L"WaitOnDialog" && !m_dialog.empty())
        return LookAfter(ToInt(result));
    if (call != browse_function || result.vt != VT_DISPATCH)
        return;
    Answer answer;
    answer.dialog = call;
    if (const auto given = Property(result.pdispVal, L"result"))
        answer.result = ToInt(given->get());
    if (const auto path = Property(result.pdispVal, L"path"); path && answer.result == 1)
        answer.path = ToText(path->get());
    m_given.push_back(std::move(answer));
}

void AnswerRecorder::LookBefore()
{
    const HWND window = m_dialogs.WindowOf(m_dialog);
    if (!window)
        return;
    Visit& visit = m_visits[m_dialog];
    TakeOver(visit.base, visit.last, ValuesOf(window));
    Paths selected = m_engine.Selected();
    if (selected != visit.last_selection)
        visit.base_selection = std::move(selected);
}

void AnswerRecorder::LookAfter(int32_t result)
{
    const HWND window = m_dialogs.WindowOf(m_dialog);
    if (!window || result == wait_failed || result == wait_loop_ended)
        return;
    Visit& visit = m_visits[m_dialog];
    if (result == wait_created)
        visit = {};
    visit.last = ValuesOf(window);
    visit.last_selection = m_engine.Selected();
    if (result == wait_created) {
        visit.base = visit.last;
        visit.base_selection = visit.last_selection;
        return;
    }
    const DialogUse use = m_dialogs.UseOf(m_dialog);
    const bool told = use.message == WM_COMMAND && LOWORD(use.first) == static_cast<WORD>(result);
    if (result == wait_help && !(told && GetDlgItem(window, result)))
        return Note(window, Answer::help, 0);
    const auto control = reinterpret_cast<HWND>(use.second);
    const int code = HIWORD(use.first);
    // The Enter and Escape keys stand for buttons that need not be there.
    if (told && (!control || TellsOfUse(control, code)))
        Note(window, result, code);
}

void AnswerRecorder::Note(HWND window, int control, int code)
{
    Visit& visit = m_visits[m_dialog];
    Answer answer;
    answer.dialog = m_dialog;
    answer.control = control;
    answer.code = code;
    // Of a row of radio buttons the chosen one says it all.
    for (const auto& [number, value] : visit.last)
        if (const auto base = visit.base.find(number); base == visit.base.end() || base->second != value)
            if (!IsRadioButton(GetDlgItem(window, number)) || value == ControlValue(true))
                answer.values.emplace(number, value);
    if (visit.last_selection != visit.base_selection)
        answer.selection = visit.last_selection;
    visit.base = visit.last;
    visit.base_selection = visit.last_selection;
    m_given.push_back(std::move(answer));
}

} // namespace host
