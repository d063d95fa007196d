// The dialogs that the resource libraries bring along, in each language: nothing cut or covered, all of it to be used
// by keys and named for screen readers. The densities of other displays come with the runner.
#include "tests/support/script_dialogs.h"

#include <commctrl.h>

namespace {

constexpr LANGID languages[] = {MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN)};
enum { brand = 7, title = 50, second_title = 51, banner = 52, separator = 1300 };

const std::vector<int> of_authors = {10305, 20001, 20002, 20003, 20004, 20005,
                                     20006, 20007, 20008, 20009, 20020, 20021};
const std::map<std::wstring, std::vector<int>> templates = {{L"vhres.dll", {10301, 10302, 10303, 10305, 10306, 12012}},
                                                            {L"vhuser.dll", of_authors},
                                                            {L"vhskin.dll", of_authors}};
bool IsPage(int number) { return number == 10305 || (number > 20000 && number < 20010); }

// Windows chooses resources by the language of the thread, Wine by its locale.
void Speak(LANGID language)
{
    SetThreadUILanguage(language);
    SetThreadLocale(MAKELCID(language, SORT_DEFAULT));
}

struct Control {
    HWND window;
    int id;
    std::wstring type, text;
    LONG_PTR style;
    RECT place;

    bool Is(const wchar_t* name) const { return lstrcmpiW(type.c_str(), name) == 0; }
    LONG_PTR Kind(LONG_PTR mask) const { return style & mask; }
    bool IsFrame() const { return Is(WC_BUTTONW) && Kind(BS_TYPEMASK) == BS_GROUPBOX; }
    bool IsLine() const { return Is(WC_STATICW) && Kind(SS_TYPEMASK) == SS_ETCHEDHORZ; }
    bool IsPicture() const { return Is(L"VHWndImgCls"); }
    bool IsPushed() const { return Is(WC_BUTTONW) && Kind(BS_TYPEMASK) <= BS_DEFPUSHBUTTON; }
    bool IsDefault() const { return Is(WC_BUTTONW) && Kind(BS_TYPEMASK) == BS_DEFPUSHBUTTON; }
    bool IsText() const { return Is(WC_STATICW) && Kind(SS_TYPEMASK) == SS_LEFT && id != separator; }
    std::wstring Name() const { return std::to_wstring(id) + L" " + type + L" \"" + text + L"\""; }
};

Control ControlOf(HWND window)
{
    return {window,
            GetDlgCtrlID(window),
            ClassOf(window),
            TextOf(window),
            GetWindowLongPtrW(window, GWL_STYLE),
            PlaceOnScreen(window)};
}

// Whether the first is made to stand on the other, which comes before it. A line may run out of the dialog.
bool MayShare(HWND first, HWND second)
{
    const Control one = ControlOf(first), other = ControlOf(second);
    if (second == GetParent(first))
        return one.IsLine();
    return one.IsFrame() || other.IsFrame() || (other.id == banner && (one.id == title || one.id == second_title));
}

// The text without a link's marks.
std::wstring PlainText(const Control& control)
{
    std::wstring plain = control.text;
    for (std::size_t mark; control.Is(WC_LINK) && (mark = plain.find(L'<')) != plain.npos;)
        plain.erase(mark, plain.find(L'>') + 1 - mark);
    return plain;
}

// What the controls of Windows take for their frame or mark, with some air.
int WidthBesideText(HWND dialog, const Control& control)
{
    RECT units{0, 0, control.IsPushed() ? 6 : control.Is(WC_BUTTONW) ? 12 : 0, 0};
    MapDialogRect(dialog, &units);
    return static_cast<int>(units.right);
}

void ExpectRoom(HWND dialog, const std::vector<Control>& controls)
{
    const HDC device = GetDC(dialog);
    for (const Control& control : controls) {
        if (!control.IsText() && !control.Is(WC_BUTTONW) && !control.Is(WC_LINK))
            continue;
        const auto font = reinterpret_cast<HFONT>(SendMessageW(control.window, WM_GETFONT, 0, 0));
        const HGDIOBJ before = SelectObject(device, font);
        const int room = static_cast<int>(control.place.right - control.place.left) - WidthBesideText(dialog, control);
        RECT needed{0, 0, room, 0};
        const UINT prefix = control.Is(WC_LINK) || control.Kind(SS_NOPREFIX) ? DT_NOPREFIX : 0;
        DrawTextW(device, PlainText(control).c_str(), -1, &needed,
                  DT_CALCRECT | (control.IsText() ? DT_WORDBREAK : DT_SINGLELINE) | prefix);
        EXPECT_LE(needed.right, room) << control.Name();
        EXPECT_LE(needed.bottom, control.place.bottom - control.place.top) << control.Name();
        SelectObject(device, before);
    }
    ReleaseDC(dialog, device);
}

void ExpectMnemonics(const std::vector<Control>& controls)
{
    std::map<wchar_t, std::wstring> taken;
    for (const Control& control : controls) {
        const std::size_t mark = control.text.find(L'&');
        if (mark == std::wstring::npos || (control.IsText() && control.Kind(SS_NOPREFIX)) || control.Is(WC_LINK))
            continue;
        const auto letter = static_cast<wchar_t>(towlower(control.text[mark + 1]));
        EXPECT_TRUE(taken.emplace(letter, control.Name()).second) << control.Name() << " and " << taken[letter];
    }
}

// The tab key reaches everything that takes keys, from the top to the bottom and from the left to the right.
void ExpectTabOrder(HWND dialog, const std::vector<Control>& controls)
{
    std::vector<std::pair<LONG, LONG>> wanted;
    for (const Control& control : controls)
        if (control.style & WS_TABSTOP)
            wanted.emplace_back(control.place.top, control.place.left);
    std::vector<std::pair<LONG, LONG>> reached;
    HWND at = nullptr;
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        at = GetNextDlgTabItem(dialog, at, FALSE);
        const auto control = std::ranges::find(controls, at, &Control::window);
        ASSERT_NE(control, controls.end());
        reached.emplace_back(control->place.top, control->place.left);
    }
    std::sort(wanted.begin(), wanted.end());
    EXPECT_EQ(reached, wanted);
}

// A button says what it is; anything else that holds something has a text right before it.
void ExpectNames(const std::vector<Control>& controls)
{
    for (auto control = controls.begin(); control != controls.end(); ++control) {
        if (control->Is(WC_BUTTONW) || control->Is(WC_LINK)) {
            EXPECT_FALSE(PlainText(*control).empty()) << control->Name();
        } else if (!control->Is(WC_STATICW) && !control->IsPicture()) {
            ASSERT_NE(control, controls.begin());
            EXPECT_TRUE((control - 1)->IsText() && !(control - 1)->text.empty()) << control->Name();
        }
    }
}

void ExpectKeys(HWND dialog, const std::vector<Control>& controls)
{
    const auto pushed = std::ranges::count_if(controls, &Control::IsPushed);
    const auto marked = std::ranges::count_if(controls, &Control::IsDefault);
    // A status window has nothing but its Cancel.
    EXPECT_EQ(marked, pushed > 0 && !GetDlgItem(dialog, 1403) ? 1 : 0);
    EXPECT_TRUE(!(GetWindowLongPtrW(dialog, GWL_STYLE) & WS_SYSMENU) || GetDlgItem(dialog, IDCANCEL) || pushed == 1)
        << "the close box does nothing";
}

TEST(ResourceLibraries, HaveDialogsThatFitInEachLanguage)
{
    SetProcessDPIAware();
    const char* density = std::getenv("VHRT_DPI");
    EXPECT_EQ(GetDpiForSystem(), static_cast<UINT>(std::stoi(density ? density : "96"))) << "the runner's display";
    const TextSession session(Beside(L"vhuser.dll"), Beside(L"vhres.dll"));
    for (const auto& [library, templates_in_it] : templates)
        for (const int number : templates_in_it) {
            std::vector<std::wstring> texts;
            std::vector<std::vector<int>> numbers;
            for (const LANGID language : languages) {
                SCOPED_TRACE(std::to_string(number) + " in language " + std::to_string(language));
                Speak(language);
                const TestDialog made(session, Stage::created, L"d", number, DialogStandardEvents, Beside(library));
                const HWND dialog = made.window();
                ASSERT_TRUE(dialog);
                std::vector<Control> controls;
                std::ranges::transform(VisibleChildren(dialog), std::back_inserter(controls), ControlOf);
                ExpectApart(dialog, MayShare);
                ExpectRoom(dialog, controls);
                ExpectMnemonics(controls);
                ExpectTabOrder(dialog, controls);
                ExpectNames(controls);
                ExpectKeys(dialog, controls);
                RECT page{0, 0, 460, 305}, client{};
                MapDialogRect(dialog, &page);
                GetClientRect(dialog, &client);
                EXPECT_EQ(page == client, IsPage(number));
                texts.push_back(TextOf(dialog));
                numbers.emplace_back();
                for (const Control& control : controls) {
                    texts.back() += control.text;
                    numbers.back().push_back(control.id);
                }
            }
            EXPECT_EQ(numbers[0], numbers[1]) << number;
            EXPECT_NE(texts[0], texts[1]) << number << " is not translated";
        }
    Speak(languages[0]);
}

TEST(ResourceLibraries, HaveTheTextsAndPicturesThatTheLibraryAsksFor)
{
    const TextSession session(L"", Beside(L"vhres.dll"));
    Table<uint32_t, int, bool> texts = {{11113, 1, true},  {11115, 0, true}, {11511, 0, false},
                                        {11512, 0, false}, {14002, 1, true}, {14003, 0, true},
                                        {11626, 0, true},  {17600, 0, true}, {17601, 0, true}};
    for (const auto& [number, places, translated] : texts) {
        std::wstring in[2];
        for (std::size_t i = 0; i < 2; ++i) {
            Speak(languages[i]);
            wchar_t buffer[200] = L"";
            EXPECT_GT(LangLoadString(session, number, buffer, 200), 0) << number;
            in[i] = buffer;
            int found = 0;
            for (std::size_t at = in[i].find(L'%'); at != std::wstring::npos; at = in[i].find(L'%', at + 1)) {
                EXPECT_EQ(in[i].substr(at, 2), L"%s") << number;
                ++found;
            }
            EXPECT_EQ(found, places) << number;
        }
        EXPECT_EQ(in[0] != in[1], translated) << number;
    }
    Speak(languages[0]);
    const HMODULE library = LoadLibraryExW(Beside(L"vhres.dll").c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    for (const int number : {10700, 10777})
        EXPECT_NE(FindResourceW(library, MAKEINTRESOURCEW(number), L"PNG"), nullptr) << number;
    FreeLibrary(library);
}

} // namespace
