#include "call_frame.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "script_object.h"
#include "script_value.h"
#include "text.h"

namespace host {

namespace {

constexpr int32_t first_room = 512;
// Some functions need a unit more than the size says.
constexpr std::size_t spare_room = 2;
// Room for texts whose function does not know the buffer's size.
constexpr std::size_t blind_room = 32768;
constexpr std::size_t element_room = 4096;
constexpr int32_t most_room = 1 << 26;

template <std::size_t... Slot>
int64_t CallWith(FARPROC entry, const std::array<uint64_t, max_slots>& slots, std::index_sequence<Slot...>)
{
    // On 64-bit Windows each argument takes one slot and the caller cleans up, so surplus slots do no harm.
    using Function = int64_t(__stdcall*)(decltype(static_cast<uint64_t>(Slot))...);
    return reinterpret_cast<Function>(reinterpret_cast<void*>(entry))(slots[Slot]...);
}

std::vector<wchar_t> Terminated(const std::wstring& text, std::size_t room = 0)
{
    std::vector<wchar_t> buffer(text.begin(), text.end());
    buffer.resize(std::max(text.size() + 1, room));
    return buffer;
}

std::wstring_view UpToTerminator(const std::vector<wchar_t>& buffer)
{
    return {buffer.data(), static_cast<std::size_t>(std::find(buffer.begin(), buffer.end(), L'\0') - buffer.begin())};
}

// Bytes as scripts hold them: one character for each. A number stands for so many zero bytes.
std::vector<char> BytesOf(const VARIANT& given)
{
    const VARIANT& value = Plain(given);
    if (value.vt != VT_BSTR) {
        const int32_t count = ToInt(value);
        if (count < 0 || count > most_room)
            throw script_error(L"a count of bytes is out of range");
        return std::vector<char>(static_cast<std::size_t>(count));
    }
    std::vector<char> bytes;
    for (const wchar_t unit : ToText(value)) {
        if (unit > 0xFF)
            throw script_error(L"a text of bytes has a character above 255");
        bytes.push_back(static_cast<char>(unit));
    }
    return bytes;
}

std::vector<char> NarrowOf(const std::wstring& text)
{
    const int units = static_cast<int>(text.size()) + 1;
    std::vector<char> narrow(
        static_cast<std::size_t>(WideCharToMultiByte(CP_ACP, 0, text.c_str(), units, nullptr, 0, nullptr, nullptr)));
    WideCharToMultiByte(CP_ACP, 0, text.c_str(), units, narrow.data(), static_cast<int>(narrow.size()), nullptr,
                        nullptr);
    return narrow;
}

vh::variant CharactersOf(const char* bytes, std::size_t count)
{
    std::wstring text(count, L'\0');
    std::transform(bytes, bytes + count, text.begin(),
                   [](char byte) { return static_cast<wchar_t>(static_cast<unsigned char>(byte)); });
    return vh::variant(std::wstring_view(text));
}

template <class Pointer>
uint64_t SlotOf(Pointer* pointer)
{
    return reinterpret_cast<uint64_t>(pointer);
}

} // namespace

CallFrame::CallFrame(const Call& call, const CallSite& site, std::span<const VARIANT> arguments) : m_call(call)
{
    if (arguments.size() != call.ScriptArguments()) {
        std::wstring wanted;
        for (const Argument& argument : call.arguments)
            if (InfoOf(argument.kind).from_script)
                wanted += (wanted.empty() ? L"" : L", ") + Wide(argument.name);
        throw script_error(Wide(call.ScriptName()) + L"(" + wanted + L") was called with " +
                           std::to_wstring(arguments.size()) + L" arguments");
    }
    m_cells.resize(call.arguments.size());
    std::size_t next = 0;
    for (std::size_t i = 0; i < m_cells.size(); ++i) {
        m_cells[i].argument = &call.arguments[i];
        const VARIANT* given = InfoOf(call.arguments[i].kind).from_script ? &arguments[next++] : nullptr;
        try {
            Prepare(m_cells[i], site, given);
        } catch (const script_error& error) {
            throw script_error(Wide(call.ScriptName()) + L", " + Wide(call.arguments[i].name) + L": " +
                               Wide(error.what()));
        }
    }
}

void CallFrame::Prepare(Cell& cell, const CallSite& site, const VARIANT* given)
{
    switch (cell.argument->kind) {
    case Kind::Context:
        cell.number = static_cast<int64_t>(SlotOf(site.context));
        break;
    case Kind::Host:
        cell.number = static_cast<int64_t>(SlotOf(site.host));
        break;
    case Kind::Services:
        cell.number = static_cast<int64_t>(SlotOf(site.services));
        break;
    case Kind::Int:
    case Kind::AtMost:
    case Kind::InOutInt:
        cell.number = ToInt(*given);
        break;
    case Kind::Int64:
    case Kind::NarrowArray:
    case Kind::InOutInt64:
        cell.number = ToInt64(*given);
        break;
    case Kind::Text:
        cell.absent = IsAbsent(*given);
        cell.text = Terminated(ToText(*given));
        break;
    case Kind::Narrow:
        cell.absent = IsAbsent(*given);
        cell.bytes = NarrowOf(ToText(*given));
        break;
    case Kind::InOutText:
        cell.text = Terminated(ToText(*given), blind_room);
        break;
    case Kind::Variant:
        if (const auto elements = ArrayOf(*given))
            cell.value = SafeArrayOf(*elements);
        else
            cell.value = CopyOf(*given);
        break;
    case Kind::Texts:
        if (const auto elements = ArrayOf(*given))
            for (const vh::variant& element : *elements)
                cell.texts.push_back(Terminated(ToText(element.get())));
        break;
    case Kind::OutTexts:
        cell.texts.resize(static_cast<std::size_t>(std::clamp(ToInt(*given), 0, 4096)));
        for (std::vector<wchar_t>& text : cell.texts)
            text.resize(element_room);
        break;
    case Kind::InOutBstr:
        cell.value = vh::variant(std::wstring_view(ToText(*given)));
        break;
    case Kind::Block:
        cell.bytes = BytesOf(*given);
        cell.size = static_cast<int32_t>(cell.bytes.size());
        // Functions may touch the byte behind the block.
        cell.bytes.push_back('\0');
        break;
    case Kind::Record: {
        const VARIANT& value = Plain(*given);
        IDispatch* object = value.vt == VT_DISPATCH ? value.pdispVal : nullptr;
        cell.record = std::make_unique<RecordBlock>(RecordNamed(cell.argument->detail), object);
        break;
    }
    case Kind::OutText:
        cell.text.resize(blind_room);
        break;
    case Kind::BufferOf:
        cell.size = std::clamp(ToInt(*given), 0, most_room);
        cell.text.resize(static_cast<std::size_t>(cell.size) + spare_room);
        break;
    case Kind::Buffer:
    case Kind::BufferInOut:
    case Kind::ValueOf:
        cell.size = first_room;
        cell.text.resize(first_room + spare_room);
        break;
    case Kind::BytesInOut:
        cell.size = first_room;
        cell.bytes.resize(first_room + spare_room);
        break;
    case Kind::Null:
    case Kind::SizeOf:
    case Kind::OutInt:
    case Kind::OutInt64:
    case Kind::OutVariant:
        break;
    }
}

// A widened text takes no more units than it has bytes.
void CallFrame::MakeRoomForArrays()
{
    for (const Cell& source : m_cells)
        for (const Cell& count : m_cells)
            for (Cell& target : m_cells)
                if (source.argument->kind == Kind::NarrowArray && count.argument->kind == Kind::AtMost &&
                    target.argument->kind == Kind::OutTexts)
                    for (int64_t i = 0; i < AtMost(count); ++i) {
                        const char* text = reinterpret_cast<const char* const*>(source.number)[i];
                        std::vector<wchar_t>& room = target.texts[static_cast<std::size_t>(i)];
                        room.resize(std::max(room.size(), std::strlen(text) + 1));
                    }
}

void CallFrame::Place()
{
    std::size_t next = 0;
    const auto put = [&](uint64_t slot) { m_slots[next++] = slot; };
    for (Cell& cell : m_cells) {
        switch (cell.argument->kind) {
        case Kind::Text:
            put(cell.absent ? 0 : SlotOf(cell.text.data()));
            break;
        case Kind::Narrow:
            put(cell.absent ? 0 : SlotOf(cell.bytes.data()));
            break;
        case Kind::InOutText:
        case Kind::OutText:
            put(SlotOf(cell.text.data()));
            break;
        case Kind::Variant:
        case Kind::OutVariant:
            put(SlotOf(&cell.value.get()));
            break;
        case Kind::Texts:
        case Kind::OutTexts:
            cell.pointers.clear();
            for (std::vector<wchar_t>& text : cell.texts)
                cell.pointers.push_back(text.data());
            put(SlotOf(cell.pointers.data()));
            break;
        case Kind::Record:
            put(SlotOf(cell.record->data()));
            break;
        case Kind::InOutInt:
        case Kind::InOutInt64:
        case Kind::OutInt:
        case Kind::OutInt64:
            put(SlotOf(&cell.number));
            break;
        case Kind::InOutBstr:
            put(SlotOf(&cell.value.get().bstrVal));
            break;
        case Kind::Block:
            put(SlotOf(cell.bytes.data()));
            break;
        case Kind::SizeOf:
            put(SizeOf(cell.argument->detail));
            break;
        case Kind::AtMost:
            put(static_cast<uint64_t>(AtMost(cell)));
            break;
        case Kind::Buffer:
        case Kind::BufferOf:
            put(SlotOf(cell.text.data()));
            put(static_cast<uint64_t>(cell.size));
            break;
        case Kind::BufferInOut:
        case Kind::ValueOf:
            put(SlotOf(cell.text.data()));
            put(SlotOf(&cell.size));
            break;
        case Kind::BytesInOut:
            put(SlotOf(cell.bytes.data()));
            put(SlotOf(&cell.size));
            break;
        default:
            put(static_cast<uint64_t>(cell.number));
            break;
        }
    }
}

const CallFrame::Cell& CallFrame::CellOf(const std::string& name) const
{
    for (const Cell& cell : m_cells)
        if (cell.argument->name == name)
            return cell;
    throw std::logic_error("an argument that is not there: " + name);
}

uint64_t CallFrame::SizeOf(const std::string& name) const
{
    const Cell& cell = CellOf(name);
    return cell.argument->kind == Kind::Block ? static_cast<uint64_t>(cell.size) : cell.text.size();
}

// Scripts may count too far: what lies behind a text or an array is the host's.
int64_t CallFrame::AtMost(const Cell& cell) const
{
    const Cell& counted = CellOf(cell.argument->detail);
    if (counted.absent)
        return cell.number;
    const std::size_t there = counted.argument->kind == Kind::Text ? counted.text.size() - 1 : counted.texts.size();
    return std::min(cell.number, static_cast<int64_t>(there));
}

bool CallFrame::Grow(int64_t result)
{
    bool grown = false;
    for (Cell& cell : m_cells) {
        const Kind kind = cell.argument->kind;
        if (kind == Kind::Buffer && result > cell.size && result <= most_room)
            cell.size = static_cast<int32_t>(result);
        const auto wanted = static_cast<std::size_t>(std::clamp(cell.size, 0, most_room)) + spare_room;
        if ((kind == Kind::Buffer || kind == Kind::BufferInOut || kind == Kind::ValueOf) && wanted > cell.text.size()) {
            cell.text.assign(wanted, L'\0');
            grown = true;
        }
        if (kind == Kind::BytesInOut && wanted > cell.bytes.size()) {
            cell.bytes.assign(wanted, '\0');
            grown = true;
        }
    }
    return grown;
}

vh::variant CallFrame::Output(const Cell& cell) const
{
    switch (cell.argument->kind) {
    case Kind::InOutInt:
    case Kind::OutInt:
        return vh::variant(static_cast<long>(static_cast<int32_t>(cell.number)));
    case Kind::InOutInt64:
    case Kind::OutInt64:
        return FromInt64(cell.number);
    case Kind::OutVariant:
        return cell.value;
    case Kind::InOutBstr:
        return vh::variant(cell.value.text());
    case Kind::Block:
        return CharactersOf(cell.bytes.data(), static_cast<std::size_t>(cell.size));
    case Kind::BytesInOut: {
        const auto count = static_cast<std::size_t>(std::max(cell.size, 0));
        return CharactersOf(cell.bytes.data(), std::min(count, cell.bytes.size()));
    }
    case Kind::ValueOf:
        if (CellOf(cell.argument->detail).number == REG_MULTI_SZ && cell.size >= 0 &&
            static_cast<std::size_t>(cell.size) < cell.text.size())
            return vh::variant(std::wstring_view(cell.text.data(), static_cast<std::size_t>(cell.size)));
        return vh::variant(UpToTerminator(cell.text));
    case Kind::OutTexts: {
        std::vector<vh::variant> elements;
        for (const std::vector<wchar_t>& text : cell.texts)
            elements.emplace_back(UpToTerminator(text));
        return SafeArrayOf(elements);
    }
    case Kind::Record:
        return ObjectValue(cell.record->Values());
    default:
        return vh::variant(UpToTerminator(cell.text));
    }
}

// The plain result, or an object that holds it as `result` beside the outputs.
vh::variant CallFrame::Outcome(int64_t result) const
{
    vh::variant plain;
    if (m_call.result == Result::Int)
        plain = vh::variant(static_cast<long>(static_cast<int32_t>(result)));
    else if (m_call.result == Result::Int64)
        plain = FromInt64(result);
    if (!m_call.HasOutputs())
        return plain;
    const auto values = vh::make_object<NamedValues>();
    values->Add(L"result", plain);
    for (const Cell& cell : m_cells)
        if (InfoOf(cell.argument->kind).to_script)
            values->Add(Wide(cell.argument->name), Output(cell));
    return ObjectValue(values);
}

vh::variant CallFrame::Run(FARPROC entry)
{
    int64_t result = 0;
    MakeRoomForArrays();
    do {
        Place();
        result = CallWith(entry, m_slots, std::make_index_sequence<max_slots>());
        if (m_call.result == Result::Int)
            result = static_cast<int32_t>(result);
    } while (Grow(result));
    return Outcome(result);
}

} // namespace host
