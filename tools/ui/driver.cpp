// Runs a program with windows and uses it as a person does: waits for a page, looks at it, presses keys.
//
// usage: vhrt_ui_driver PLAN PROGRAM [ARGUMENT...]
// docs/dialogs.md has the plans. The exit code is the program's, or 90 for a step that did not come to pass, a plan
// that can't be read, or a wrong command line; the program is ended then.
#include <cstdio>
#include <functional>
#include <sstream>
#include <stdexcept>

#include "scriptdata/unique.h"
#include "tools/ui/screen.h"

namespace {

using vh::ui::TextOf;

constexpr int failed_step = 90;
constexpr DWORD poll_ms = 20;
constexpr ULONGLONG patience_ms = 60000;

struct NamedKey {
    const wchar_t* name;
    WORD code;
};
constexpr NamedKey named_keys[] = {{L"Tab", VK_TAB},     {L"Enter", VK_RETURN},  {L"Escape", VK_ESCAPE},
                                   {L"Space", VK_SPACE}, {L"Down", VK_DOWN},     {L"Up", VK_UP},
                                   {L"Left", VK_LEFT},   {L"Right", VK_RIGHT},   {L"Home", VK_HOME},
                                   {L"End", VK_END},     {L"PageUp", VK_PRIOR},  {L"PageDown", VK_NEXT},
                                   {L"F1", VK_F1},       {L"Delete", VK_DELETE}, {L"Backspace", VK_BACK},
                                   {L"Alt", VK_MENU},    {L"Shift", VK_SHIFT},   {L"Control", VK_CONTROL}};

WORD KeyNamed(const std::wstring& name)
{
    for (const NamedKey& key : named_keys)
        if (name == key.name)
            return key.code;
    if (name.size() != 1)
        throw std::runtime_error("there is no key \"" + std::string(name.begin(), name.end()) + "\"");
    return LOBYTE(VkKeyScanW(name[0]));
}

INPUT KeyStroke(WORD code, wchar_t letter, DWORD flags)
{
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = code;
    input.ki.wScan = letter ? letter : static_cast<WORD>(MapVirtualKeyW(code, MAPVK_VK_TO_VSC));
    input.ki.dwFlags = flags;
    return input;
}

void Send(std::vector<INPUT> strokes)
{
    if (SendInput(static_cast<UINT>(strokes.size()), strokes.data(), sizeof(INPUT)) != strokes.size())
        throw std::runtime_error("the keys were not taken");
}

// "Shift+Tab": all down in their order, all up in the reverse one.
void Press(const std::wstring& chord)
{
    std::vector<WORD> codes;
    std::wstringstream parts(chord);
    for (std::wstring part; std::getline(parts, part, L'+');)
        codes.push_back(KeyNamed(part));
    std::vector<INPUT> strokes;
    for (const WORD code : codes)
        strokes.push_back(KeyStroke(code, 0, 0));
    for (auto code = codes.rbegin(); code != codes.rend(); ++code)
        strokes.push_back(KeyStroke(*code, 0, KEYEVENTF_KEYUP));
    Send(strokes);
}

void Type(const std::wstring& text)
{
    for (const wchar_t letter : text)
        Send({KeyStroke(0, letter, KEYEVENTF_UNICODE), KeyStroke(0, letter, KEYEVENTF_UNICODE | KEYEVENTF_KEYUP)});
}

class Program {
public:
    explicit Program(std::wstring command)
    {
        STARTUPINFOW start{};
        start.cb = sizeof(start);
        PROCESS_INFORMATION made{};
        if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &made))
            throw std::runtime_error("the program does not start");
        m_process.reset(made.hProcess);
        m_first_thread.reset(made.hThread);
    }
    ~Program() { TerminateProcess(m_process.get(), failed_step); }

    // Asks until the answer is true; the program's end or its silence ends it too.
    void Until(const std::function<bool()>& answer) const
    {
        for (const ULONGLONG deadline = GetTickCount64() + patience_ms; !answer();) {
            const DWORD ended = WaitForSingleObject(m_process.get(), poll_ms);
            if (ended == WAIT_OBJECT_0)
                throw std::runtime_error("the program has ended");
            if (GetTickCount64() > deadline)
                throw std::runtime_error("nothing happens");
        }
    }
    HWND Front() const
    {
        const HWND front = GetForegroundWindow();
        DWORD owner = 0;
        GetWindowThreadProcessId(front, &owner);
        return owner == GetProcessId(m_process.get()) && IsWindowVisible(front) && IsWindowEnabled(front) ? front
                                                                                                          : nullptr;
    }
    HWND Focus() const
    {
        GUITHREADINFO facts{};
        facts.cbSize = sizeof(facts);
        return GetGUIThreadInfo(GetThreadId(m_first_thread.get()), &facts) ? facts.hwndFocus : nullptr;
    }
    int Ended() const
    {
        if (WaitForSingleObject(m_process.get(), patience_ms) != WAIT_OBJECT_0)
            throw std::runtime_error("the program does not end");
        DWORD code = 0;
        GetExitCodeProcess(m_process.get(), &code);
        return static_cast<int>(code);
    }

private:
    vh::unique_handle m_process, m_first_thread;
};

class Plan {
public:
    explicit Plan(const Program& program) : m_program(program) {}

    void Do(const std::wstring& verb, const std::wstring& rest)
    {
        std::wistringstream words(rest);
        int id = 0;
        if (verb == L"page" && words >> id) {
            m_program.Until([&] {
                m_page = m_program.Front();
                return m_page && GetDlgItem(m_page, id);
            });
        } else if (verb == L"picture") {
            Look(rest);
        } else if (verb == L"snap") {
            vh::ui::Keep(vh::ui::PictureOf(m_page), rest);
        } else if (verb == L"keys") {
            for (std::wstring chord; words >> chord;)
                Press(chord);
        } else if (verb == L"text") {
            Type(rest);
        } else if (verb == L"focus" && words >> id) {
            m_program.Until([&] { return m_program.Focus() && GetDlgCtrlID(m_program.Focus()) == id; });
        } else if (verb == L"value" && words >> id) {
            std::wstring wanted;
            std::getline(words >> std::ws, wanted);
            m_program.Until([&] { return TextOf(GetDlgItem(m_page, id)).find(wanted) != std::wstring::npos; });
        } else {
            throw std::runtime_error("no such step");
        }
    }

private:
    // A page is painted when a few looks at it are the same; one that moves is taken as it is.
    void Look(const std::wstring& name) const
    {
        std::vector<std::byte> before;
        int looks = 0;
        int alike = 0;
        m_program.Until([&] {
            DWORD_PTR ignored = 0;
            SendMessageTimeoutW(m_page, WM_NULL, 0, 0, SMTO_NORMAL, 1000, &ignored);
            std::vector<std::byte> now = vh::ui::PictureOf(m_page);
            alike = now == before ? alike + 1 : 0;
            before = std::move(now);
            return alike == 5 || ++looks == 50;
        });
        vh::ui::Keep(before, name);
    }

    const Program& m_program;
    HWND m_page = nullptr;
};

std::wstring Wide(const std::string& text)
{
    std::wstring wide(text.size(), L'\0');
    wide.resize(static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()),
                                                             wide.data(), static_cast<int>(wide.size()))));
    return wide;
}

std::wstring CommandOf(int count, wchar_t** words)
{
    std::wstring command;
    for (int i = 0; i < count; ++i)
        command += (i ? L" \"" : L"\"") + std::wstring(words[i]) + L"\"";
    return command;
}

} // namespace

int wmain(int count, wchar_t** words)
{
    std::string line = "the command line";
    try {
        if (count < 3)
            throw std::runtime_error("wanted are PLAN PROGRAM [ARGUMENT...]");
        std::ifstream plan{std::filesystem::path(words[1])};
        line = "the plan";
        if (!plan)
            throw std::runtime_error("can't be read");
        const Program program(CommandOf(count - 2, words + 2));
        Plan steps(program);
        while (std::getline(plan, line)) {
            if (line.empty() || line[0] == '#')
                continue;
            const std::size_t blank = std::min(line.find(' '), line.size());
            steps.Do(Wide(line.substr(0, blank)), Wide(line.substr(std::min(blank + 1, line.size()))));
        }
        line = "the end of the plan";
        return program.Ended();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vhrt_ui_driver: %s: %s\n", line.c_str(), error.what());
        return failed_step;
    }
}
