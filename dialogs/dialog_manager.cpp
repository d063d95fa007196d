#include "dialog_manager.h"

#include "../files/exists.h"
#include "late_dialogs.h"

namespace {

// Holds the classes of rich edit controls; loaded once for the whole process.
constinit vh::late_library rich_edit(L"RICHED32.DLL");

bool ControlsAreThemed()
{
    constexpr DWORD controls = 2;
    return vh::late::get_theme_properties && (vh::late::get_theme_properties() & controls) != 0;
}

} // namespace

CDialogManager::CDialogManager(const vh::DialogScene& scene) : controls_themed(ControlsAreThemed()), m_scene(scene)
{
    rich_edit.load();
}

void CDialogManager::AbandonAll()
{
    // Messages of the windows' end find none any more; a wait that runs holds its own.
    for (const auto& [name, dialog] : std::exchange(m_dialogs, {}))
        if (dialog)
            dialog->Abandon();
}

int32_t CDialogManager::Define(const stringx& name, const DialogDefinition& definition)
{
    if (m_dialogs.contains(name))
        return name_taken;
    if (definition.library.empty() ? !m_scene.modules
                                   : vh::TestPath(definition.library.c_str(), vh::test_either, 1, 0, 0) != 1)
        return failed;
    m_dialogs.emplace(name, std::make_shared<CScriptDialog>(*this, name, definition));
    return done;
}

int32_t CDialogManager::Release(const stringx& name)
{
    const auto found = m_dialogs.find(name);
    if (found == m_dialogs.end() || !found->second)
        return unknown;
    // Its window lives before the creation is complete.
    if (found->second->is_created() || found->second->window())
        return still_open;
    m_dialogs.erase(found);
    return done;
}

std::shared_ptr<CScriptDialog> CDialogManager::Find(const stringx& name) const
{
    const auto found = m_dialogs.find(name);
    return found == m_dialogs.end() ? nullptr : found->second;
}

HWND CDialogManager::WindowOf(const stringx& name) const
{
    if (name == progress_dialog)
        return m_scene.statusDialog;
    const auto dialog = Find(name);
    return dialog ? dialog->window() : nullptr;
}

void CDialogManager::Enable(const stringx& name, bool on)
{
    if (name != progress_dialog)
        m_dialogs.try_emplace(name);
    const HWND window = WindowOf(name);
    if (!window || (on && !vh::late::is_window(window)))
        return;
    vh::late::enable_window(window, BOOL{on});
    if (on)
        vh::late::set_focus(window);
}

void CDialogManager::Push(const stringx& name)
{
    const stringx* below = CurrentName();
    m_active.push_back(name);
    // The messages of this may already end what has come.
    if (below)
        Enable(*below, false);
}

void CDialogManager::Pop()
{
    if (m_active.empty())
        return;
    m_active.pop_back();
    if (!m_active.empty())
        Enable(m_active.back(), true);
}

void CDialogManager::SetFont(const stringx& face, uint16_t size)
{
    m_fontName = face;
    m_fontSize = size;
    for (const auto& [name, dialog] : m_dialogs)
        if (dialog)
            dialog->SetFont(face, size);
    m_scene.status.font_name = face;
    m_scene.status.font_size = size;
}

void CDialogManager::SetMainImage(const stringx& text)
{
    m_mainImage = text;
    for (const auto& [name, dialog] : m_dialogs)
        if (dialog)
            dialog->SetMainImage(text);
}
