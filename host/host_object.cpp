#include "host_object.h"

#include <algorithm>
#include <iterator>

#include "constants.h"
#include "script_value.h"
#include "text.h"
#include "window_services.h"

namespace host {

namespace {

vh::variant Print(const HostServices& services, std::span<const VARIANT> arguments)
{
    std::wstring line;
    for (const VARIANT& argument : arguments)
        line += ToText(argument);
    services.print(line);
    return {};
}

vh::variant Argument(const HostServices& services, std::span<const VARIANT> arguments)
{
    if (arguments.size() != 1)
        throw script_error(L"Arguments(name) takes one name");
    const auto found = services.arguments.find(ToText(arguments[0]));
    return found == services.arguments.end() ? vh::variant() : vh::variant(found->second.c_str());
}

using Arguments = std::span<const VARIANT>;

vh::variant CancelSetup(const HostServices& services, Arguments)
{
    services.cancel();
    throw script_error(L"cancelled");
}

// A service's number is its place behind the first one; so is that of a constant.
constexpr DISPID first_service = 10000;
constexpr DISPID first_constant = 20000;
constexpr Service service_table[] = {
    {L"Print", &Print, "function Print(...values: any[]): void", "Prints the values as one line."},
    {L"Arguments", &Argument, "function Arguments(name: string): string | undefined", "The value of --var name=value."},
    {L"SetupFolder", [](const HostServices& s, Arguments) { return vh::variant(s.setup_folder.c_str()); },
     "const SetupFolder: string", "The setup folder, without a backslash at the end."},
    {L"TargetFolder", [](const HostServices& s, Arguments) { return vh::variant(s.target_folder.c_str()); },
     "const TargetFolder: string", "The target folder, without a backslash at the end."},
    {L"Silent", [](const HostServices& s, Arguments) { return vh::variant(s.silent); }, "const Silent: boolean",
     "--silent was given."},
    {L"Maintenance", [](const HostServices& s, Arguments) { return vh::variant(s.maintenance); },
     "const Maintenance: boolean", "The product is installed already."},
    {L"CancelSetup", &CancelSetup, "function CancelSetup(): never", "Stops the run as Ctrl+C does."},
    {L"ControlText", [](const HostServices&, Arguments given) { return ControlText(given); },
     "function ControlText(window: Int64, control: Int): string", "The text of a control; 0 is the dialog itself."},
    {L"SetControlText", [](const HostServices&, Arguments given) { return SetControlText(given); },
     "function SetControlText(window: Int64, control: Int, text: Text): void", "Changes the text of a control."},
    {L"EnableControl", [](const HostServices&, Arguments given) { return EnableControl(given); },
     "function EnableControl(window: Int64, control: Int, on: Int): void", "Lets a control be used, or not."},
    {L"FocusControl", [](const HostServices&, Arguments given) { return FocusControl(given); },
     "function FocusControl(window: Int64, control: Int): void", "Gives the keyboard to a control."},
    {L"ControlWindow", [](const HostServices&, Arguments given) { return ControlWindow(given); },
     "function ControlWindow(window: Int64, control: Int): number", "The control's own window."},
    {L"SendControl", [](const HostServices&, Arguments given) { return SendControl(given); },
     "function SendControl(window: Int64, control: Int, message: Int, number: Int64, last: Int64 | Text): number",
     "The answer to a message of Windows."},
    {L"OpenInShell", [](const HostServices&, Arguments given) { return OpenInShell(given); },
     "function OpenInShell(path: string): boolean",
     "Opens a document, a program or an address; false where the system knows no way."},
};

void Explain(EXCEPINFO* exception, HRESULT code, const std::wstring& text)
{
    if (!exception)
        return;
    *exception = {};
    exception->bstrSource = vh::bstr(L"VHRT").detach();
    exception->bstrDescription = vh::bstr(text).detach();
    exception->scode = code;
}

void Refuse(const std::atomic<bool>& cancelled)
{
    if (cancelled)
        throw script_error(L"cancelled");
}

// Counts a call while it goes on.
class Inside {
public:
    explicit Inside(std::atomic<int>& count) : m_count(count) { ++m_count; }
    Inside(const Inside&) = delete;
    Inside& operator=(const Inside&) = delete;
    ~Inside() { --m_count; }

private:
    std::atomic<int>& m_count;
};

// Arguments arrive last first.
std::vector<VARIANT> InOrder(const DISPPARAMS* parameters)
{
    std::vector<VARIANT> arguments;
    if (parameters)
        std::reverse_copy(parameters->rgvarg, parameters->rgvarg + parameters->cArgs, std::back_inserter(arguments));
    return arguments;
}

} // namespace

HostObject::HostObject(const Library& library, const CallSite& site, const HostServices& services,
                       const std::atomic<bool>& cancelled)
    : m_library(library), m_site(site), m_services(services), m_cancelled(cancelled)
{
    for (const CallRow& row : CallTable()) {
        Function function{ParseCall(row)};
        function.moves_data = MovesData(Wide(function.call.ScriptName()));
        m_functions.push_back(std::move(function));
        m_names.emplace(Wide(m_functions.back().call.ScriptName()), static_cast<DISPID>(m_functions.size()));
    }
    DISPID id = first_service;
    for (const Service& service : service_table)
        m_names.emplace(service.name, id++);
}

std::span<const Service> ServiceTable() { return service_table; }

HRESULT HostObject::GetTypeInfoCount(UINT* count)
{
    *count = 0;
    return S_OK;
}

HRESULT HostObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids)
{
    std::fill_n(ids, count, DISPID_UNKNOWN);
    const auto found = m_names.find(std::wstring_view(names[0]));
    const std::optional<std::size_t> constant =
        found == m_names.end() ? FindConstant(names[0]) : std::optional<std::size_t>();
    if ((found == m_names.end() && !constant) || count != 1)
        return DISP_E_UNKNOWNNAME;
    ids[0] = constant ? first_constant + static_cast<DISPID>(*constant) : found->second;
    return S_OK;
}

// What a script called; only failures and watches ask.
std::wstring HostObject::NameOf(DISPID id) const
{
    const auto found = std::ranges::find(m_names, id, [](const auto& entry) { return entry.second; });
    return found == m_names.end() ? L"" : std::wstring(found->first);
}

HRESULT HostObject::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                           EXCEPINFO* exception, UINT*)
{
    if (!(flags & (DISPATCH_METHOD | DISPATCH_PROPERTYGET)))
        return DISP_E_MEMBERNOTFOUND;
    try {
        // Looked at on both sides of the count: a call that is refused is none that somebody waits for.
        Refuse(m_cancelled);
        const Inside inside(m_inside);
        Refuse(m_cancelled);
        const std::vector<VARIANT> arguments = InOrder(parameters);
        if (IsFunction(id) && !(flags & DISPATCH_METHOD))
            return DISP_E_MEMBERNOTFOUND;
        vh::variant value = m_services.watches.empty() ? Called(id, arguments) : Watched(id, arguments);
        if (result)
            value.detach(result);
        return S_OK;
    } catch (const vh::com_exception& error) {
        Explain(exception, error.code(), NameOf(id) + L": " + SystemText(static_cast<uint32_t>(error.code())));
    } catch (const vh::win32_exception& error) {
        Explain(exception, HRESULT_FROM_WIN32(error.code()), NameOf(id) + L": " + SystemText(error.code()));
    } catch (const std::exception& error) {
        Explain(exception, E_INVALIDARG, Wide(error.what()));
    }
    return DISP_E_EXCEPTION;
}

bool HostObject::IsFunction(DISPID id) const { return id >= 1 && static_cast<std::size_t>(id) <= m_functions.size(); }

vh::variant HostObject::Watched(DISPID id, std::span<const VARIANT> arguments)
{
    const std::wstring name = NameOf(id);
    for (CallWatch* watch : m_services.watches)
        if (std::optional<vh::variant> value = watch->Instead(name, arguments))
            return std::move(*value);
    vh::variant value = Called(id, arguments);
    for (CallWatch* watch : m_services.watches)
        watch->After(name, value.get());
    return value;
}

vh::variant HostObject::Called(DISPID id, std::span<const VARIANT> arguments)
{
    if (IsFunction(id))
        return CallFunction(m_functions[static_cast<std::size_t>(id) - 1], arguments);
    if (id >= first_constant && static_cast<std::size_t>(id - first_constant) < ConstantCount())
        return FromInt64(ConstantValue(static_cast<std::size_t>(id - first_constant)));
    return CallService(id, arguments);
}

vh::variant HostObject::CallFunction(Function& function, std::span<const VARIANT> arguments)
{
    if (!function.entry)
        function.entry = m_library.Entry(function.call.name.c_str());
    vh::variant value = CallFrame(function.call, m_site, arguments).Run(function.entry);
    if (function.moves_data)
        m_last_transfer = ToInt(value.get());
    return value;
}

vh::variant HostObject::CallService(DISPID id, std::span<const VARIANT> arguments) const
{
    const auto place = static_cast<std::size_t>(id - first_service);
    if (id < first_service || place >= std::size(service_table))
        throw vh::com_exception(DISP_E_MEMBERNOTFOUND);
    return service_table[place].call(m_services, arguments);
}

} // namespace host
