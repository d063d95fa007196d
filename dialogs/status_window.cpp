#include "status_window.h"

#include <algorithm>

#include "../Src/inc/engine_data.h"
#include "../scriptdata/facts.h"
#include "../scriptdata/results.h"

namespace vh {

namespace {

struct StyleTemplate {
    int32_t style;
    int32_t resource;
};
constexpr StyleTemplate templates[] = {{4, 10301}, {5, 10305}, {6, 10306}, {57, 10302}, {58, 10303}};

int32_t TemplateOf(int32_t style)
{
    const auto found = std::find_if(std::begin(templates), std::end(templates),
                                    [style](const StyleTemplate& row) { return row.style == style; });
    return found == std::end(templates) ? 0 : found->resource;
}

} // namespace

int32_t StatusWindow::Open(int32_t style)
{
    if (m_scene.silent || m_scene.silentEx)
        return 0;
    if (m_scene.windowEx1)
        m_scene.windowEx1->DropPicture();
    if (m_scene.externalUi) {
        if (const HRESULT code = m_scene.status.FetchProgress(); FAILED(code))
            return code;
        return FailureOnly(m_scene.status.progress->Open(nullptr, m_scene.Variable(L"VHRES").get(), 0));
    }
    if (m_scene.statusDialog)
        return 0;
    // Without a template there is no window, and its name would lie on the dialog below for nothing.
    if (!TemplateOf(style))
        return -1;
    if (const HRESULT code = Create(style); FAILED(code))
        return code;
    if (const HRESULT code = m_scene.status.progress->GetWindow(-1, &m_scene.statusDialog); FAILED(code))
        return code;
    m_dialogs.Push(progress_dialog);
    return 0;
}

HRESULT StatusWindow::Create(int32_t style)
{
    if (const HRESULT code = m_scene.status.FetchProgress(); FAILED(code))
        return code;
    HWND parent = nullptr;
    if (m_scene.window)
        if (const HRESULT code = m_scene.window->GetHandle(&parent); FAILED(code))
            return code;
    if (const HRESULT code = OpenTemplate(parent, style); FAILED(code))
        return code;
    const com_ptr<ISetupProgress>& progress = m_scene.status.progress;
    HWND window = nullptr;
    if (const HRESULT code = progress->GetWindow(-1, &window); FAILED(code))
        return code;
    SkinFor(window, style);
    m_scene.CallHook(window);
    if (const HRESULT code = progress->ArmWindow(-1); FAILED(code))
        return code;
    return EquipBar();
}

// One template alone is drawn for skins.
void StatusWindow::SkinFor(HWND window, int32_t style) const
{
    constexpr int32_t skinned_template = 10305;
    if (!m_dialogs.skin.enabled() || TemplateOf(style) != skinned_template)
        return;
    SkinAttr attr = m_dialogs.skin.Record(window, L"Progress", L"Varnholt");
    attr.fontSize = 8;
    m_dialogs.skin.Apply(attr);
}

HRESULT StatusWindow::OpenTemplate(HWND parent, int32_t style)
{
    const com_ptr<ISetupProgress>& progress = m_scene.status.progress;
    const int32_t resource = TemplateOf(style);
    const bstr library = m_scene.LibraryOf(resource);
    const long flags = OpenFlags();
    if (const auto extended = progress.query<ISetupProgressOpen>())
        return extended->OpenEx(parent, library.get(), resource, flags);
    return progress->Open(parent, library.get(), resource);
}

HRESULT StatusWindow::EquipBar()
{
    const com_ptr<ISetupProgress>& progress = m_scene.status.progress;
    com_ptr<ISetupProgressBar> bar;
    if (const HRESULT code = progress->GetBar(bar.put()); FAILED(code))
        return code;
    if (!bar && m_scene.window) {
        if (const HRESULT code = m_scene.window->CreateBar(m_scene.supportDir.AsBstr(), bar.put()); FAILED(code))
            return code;
        if (const HRESULT code = progress->SetBar(bar.get()); FAILED(code))
            return code;
    }
    if (!bar)
        return S_OK;
    if (const HRESULT code = bar->SetHeight(m_scene.status.height); FAILED(code))
        return code;
    return bar->SetWidth(m_scene.status.width);
}

long StatusWindow::OpenFlags() const
{
    constexpr long from_fact = 1;
    constexpr long from_data = 2;
    long flags = fact(m_scene.info.get(), fact_status_option).truth() ? from_fact : 0;
    long data_flags = 0;
    if (const auto data = m_scene.Ask<ISetupData>().query<ISetupDataEx>())
        data->GetFlags(&data_flags);
    if (data_flags & 2)
        flags |= from_data;
    return flags;
}

int32_t StatusWindow::Close()
{
    if (const HRESULT code = m_scene.status.FetchProgress(); FAILED(code))
        return code;
    if (const HRESULT code = m_scene.status.progress->Close(); FAILED(code))
        return code;
    m_scene.statusDialog = nullptr;
    m_dialogs.Pop();
    return 0;
}

int32_t StatusWindow::Link(bool on, int16_t stop_at)
{
    m_scene.status.linked = on;
    m_scene.status.stop_at = stop_at;
    if (!m_scene.status.progress)
        return -1;
    const auto link = m_scene.status.progress.query<ISetupProgressLink>();
    return link ? link->SetLink(on ? VARIANT_TRUE : VARIANT_FALSE) : 0;
}

int32_t StatusWindow::SpendCost(long first, long second)
{
    const auto cost = m_scene.status.progress.query<ISetupProgressCost>();
    return cost && SUCCEEDED(cost->SpendCost(first, second)) ? 0 : -1;
}

int32_t StatusWindow::SetTitle(const stringx& text)
{
    const HRESULT code = m_scene.status.FetchProgress();
    return FAILED(code) ? code : m_scene.status.progress->SetTitle(text.AsBstr());
}

int32_t StatusWindow::SetMainImage(const stringx& text)
{
    const HRESULT code = m_scene.status.FetchProgress();
    return FAILED(code) ? code : m_scene.status.progress->SetMainImage(text.AsBstr());
}

int32_t StatusWindow::SetOption(long option, short value)
{
    const HRESULT code = m_scene.status.FetchProgress();
    return FAILED(code) ? code : m_scene.status.progress->SetOption(option, value);
}

void StatusWindow::SetBarSize(int32_t width, int32_t height)
{
    m_scene.status.width = width;
    m_scene.status.height = height;
    com_ptr<ISetupProgressBar> bar;
    if (!m_scene.status.progress || FAILED(m_scene.status.progress->GetBar(bar.put())) || !bar)
        return;
    bar->SetHeight(height);
    bar->SetWidth(width);
}

} // namespace vh
