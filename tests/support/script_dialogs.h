// Dialogs as a script has them: defined on the tests' own templates, driven by control number.
#pragma once

#include "dialog_driver.h"
#include "session.h"

namespace vh::test {

// A context whose author's library holds the tests' templates.
inline std::wstring DialogTemplates() { return Beside(L"vhtexts_dialogs.dll"); }

// A dialog that is defined, made too, or on the screen; released at the end.
enum class Stage { defined, created, shown };
class TestDialog : Pinned {
public:
    explicit TestDialog(ObjectContext* context, Stage stage = Stage::created, std::wstring name = L"d",
                        int32_t resource = 100, int32_t style = DialogStandardEvents, const std::wstring& library = {},
                        const std::wstring& template_name = {})
        : m_context(context), m_name(std::move(name))
    {
        EXPECT_EQ(_DefineDialog(context, m_name.c_str(), nullptr, library.c_str(), resource, template_name.c_str(), 0,
                                nullptr, style),
                  0);
        EXPECT_TRUE(stage == Stage::defined || Wait() == DialogCreated) << m_name;
        EXPECT_TRUE(stage != Stage::shown || WaitOrHelp() == 8) << m_name;
    }
    ~TestDialog()
    {
        End();
        _ReleaseDialog(m_context, m_name.c_str());
    }

    const wchar_t* name() const { return m_name.c_str(); }
    int32_t Wait() const { return _WaitOnDialog(m_context, name()); }
    int32_t End() const { return _EndDialog(m_context, name()); }
    HWND window() const { return reinterpret_cast<HWND>(_CmdGetHwndDlg(m_context, name())); }
    HWND Control(int id) const { return GetDlgItem(window(), id); }
    RECT Place(int id) const { return PlaceWithin(window(), Control(id)); }

    // Posts what a control of that number would send. A null control is one that nobody made.
    void Post(int id, UINT code) const
    {
        PostMessageW(window(), WM_COMMAND, MAKEWPARAM(id, code), reinterpret_cast<LPARAM>(Control(id)));
    }
    // The result of the wait; a help key that is posted behind ends it where nothing before did.
    int32_t WaitOrHelp() const
    {
        PostMessageW(window(), WM_KEYDOWN, VK_F1, 0);
        const int32_t result = Wait();
        EXPECT_TRUE(result == 8 || Wait() == 8);
        return result;
    }

private:
    ObjectContext* m_context;
    std::wstring m_name;
};

} // namespace vh::test
