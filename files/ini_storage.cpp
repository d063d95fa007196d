// INI documents on disk.
#include <climits>

#include "../diagnostics/file.h"
#include "../scriptdata/format.h"
#include "ini_encoding.h"
#include "ini_file.h"
#include "ini_text.h"

namespace {

std::string ReadAll(vh::file& file)
{
    // An address may not tell its length, and its reads end early.
    constexpr DWORD block = 1 << 16;
    std::size_t expected = 0;
    if (!file.is_url()) {
        DWORD high = 0;
        expected = file.size(&high);
        if (high || expected > INT_MAX)
            throw vh::file_exception(ERROR_FILE_TOO_LARGE, file.name());
    }
    std::string bytes;
    for (;;) {
        const std::size_t had = bytes.size();
        const std::size_t wanted = had < expected ? expected - had : block;
        if (had + wanted > INT_MAX)
            throw vh::file_exception(ERROR_FILE_TOO_LARGE, file.name());
        bytes.resize(had + wanted);
        const DWORD count = file.read_bytes(bytes.data() + had, static_cast<DWORD>(wanted));
        bytes.resize(had + count);
        if (count == 0 || (expected && bytes.size() >= expected))
            return bytes;
    }
}

// Each missing folder above the file; a failure shows when the file is made.
void MakeFolderOf(std::wstring_view path)
{
    std::vector<stringx> missing;
    for (std::size_t end = path.find_last_of(L"\\/"); end != path.npos && end > 0;
         end = path.find_last_of(L"\\/", end - 1)) {
        stringx folder(path.substr(0, end));
        if (GetFileAttributesW(folder.c_str()) != INVALID_FILE_ATTRIBUTES)
            break;
        missing.push_back(std::move(folder));
    }
    for (; !missing.empty(); missing.pop_back())
        CreateDirectoryW(missing.back().c_str(), nullptr);
}

// A file of a name that was free, in the folder of another. The name stays short: it fits wherever a folder does.
struct new_file {
    explicit new_file(const stringx& beside) : name(beside)
    {
        const std::size_t folder = name.view().find_last_of(L"\\/") + 1;
        DWORD error = ERROR_FILE_EXISTS;
        const DWORD start = GetTickCount();
        for (DWORD tries = 0; error == ERROR_FILE_EXISTS && tries <= 0xFFFF; ++tries) {
            wchar_t made[16];
            vh::FormatText(made, std::size(made), L"vh%04x.tmp", static_cast<unsigned>((start + tries) & 0xFFFF));
            name.resize(folder);
            name += made;
            error = file.open(name.c_str(), GENERIC_WRITE, FILE_SHARE_READ, FILE_ATTRIBUTE_NORMAL, CREATE_NEW);
        }
        if (error)
            throw vh::win32_exception(error);
    }

    stringx name;
    vh::file file;
};

// Takes the place of the old file only when it is complete.
void PutFile(const stringx& path, std::string_view mark_bytes, std::string_view bytes)
{
    // Not every system keeps a read-only file from being replaced.
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && attributes & FILE_ATTRIBUTE_READONLY)
        throw vh::win32_exception(ERROR_ACCESS_DENIED);
    new_file made(path);
    try {
        for (std::string_view rest : {mark_bytes, bytes})
            while (!rest.empty()) {
                const auto wanted = static_cast<DWORD>(std::min<std::size_t>(rest.size(), 1 << 20));
                const DWORD count = made.file.write_bytes(rest.data(), wanted);
                if (count == 0)
                    throw vh::win32_exception(ERROR_DISK_FULL);
                rest.remove_prefix(count);
            }
        made.file.close();
        if (!MoveFileExW(made.name.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING))
            throw vh::win32_exception(GetLastError());
    } catch (const vh::win32_exception&) {
        // An open file can't be deleted.
        made.file = vh::file();
        DeleteFileW(made.name.c_str());
        throw;
    }
}

} // namespace

bool inifilex::load(text path, text separator, bool keep_bare_keys)
{
    const stringx wanted(path);
    clear();
    assign(wanted, separator);
    m_keep_bare_keys = keep_bare_keys;
    m_last_error = NO_ERROR;
    try {
        return parse(read_text());
    } catch (const vh::win32_exception& failure) {
        m_last_error = failure.code();
        return false;
    }
}

std::wstring inifilex::read_text()
{
    vh::file file;
    if (const DWORD error =
            file.open(m_path.c_str(), GENERIC_READ, FILE_SHARE_READ, FILE_ATTRIBUTE_NORMAL, OPEN_EXISTING))
        throw vh::win32_exception(error);
    const bool marked = file.has_byte_order_mark();
    // A mark says more than what was asked for.
    const UINT code_page = marked || m_code_page == no_code_page ? file.code_page() : m_code_page;
    const std::string bytes = ReadAll(file);
    std::wstring content =
        vh::DecodeText(std::string_view(bytes).substr(marked ? vh::MarkOf(code_page).size() : 0), code_page);
    m_code_page = code_page;
    m_byte_order_mark = marked;
    return content;
}

bool inifilex::parse(text content)
{
    vh::ini_reader<wchar_t> reader(content, m_separator);
    uint32_t current = 0;
    for (;;) {
        switch (reader.next()) {
        case vh::ini_line::end:
            m_dirty = false;
            return true;
        case vh::ini_line::section:
            current = insert(reader.name());
            break;
        case vh::ini_line::entry: {
            inifilesectionx& owner = at(current);
            const uint32_t before = owner.size();
            const uint32_t position = owner.insert(reader.name());
            // The first of several keeps its value.
            if (position == before)
                owner.at(position).value = reader.value();
            break;
        }
        case vh::ini_line::broken:
            m_last_error = ERROR_INVALID_DATA;
            return false;
        }
    }
}

bool inifilex::save(uint32_t flags, uint32_t code_page, bool mark) { return save_as(m_path, flags, code_page, mark); }

bool inifilex::save_as(text path, uint32_t flags, uint32_t code_page, bool mark)
{
    if (flags & inifile_skip_empty && empty())
        return true;
    m_saving = true;
    if (flags & inifile_set_encoding) {
        m_code_page = code_page;
        m_byte_order_mark = mark;
    }
    if (flags & inifile_sort)
        sort_sections();
    bool done = false;
    if (!path.empty()) {
        const stringx target(path);
        m_path = target;
        MakeFolderOf(target);
        const UINT used = m_code_page == no_code_page ? CP_ACP : m_code_page;
        try {
            PutFile(target, m_byte_order_mark ? vh::MarkOf(used) : std::string_view(),
                    vh::EncodeText(made_text(), used));
            m_last_error = NO_ERROR;
            m_dirty = false;
            done = true;
        } catch (const vh::win32_exception& failure) {
            m_last_error = failure.code();
            m_error_path = target;
        }
    }
    m_saving = false;
    return done;
}

std::wstring inifilex::made_text() const
{
    std::wstring made;
    const auto add = [&](auto... pieces) { ((made += text(pieces)), ...); };
    for (const auto& [name, section] : *this) {
        add(made.empty() ? L"" : L"\r\n", L"[", name.view(), L"]\r\n");
        for (const auto& [key, entry] : section) {
            add(key.view());
            if (!m_keep_bare_keys || !entry.value.empty())
                add(m_separator.view(), entry.value.view());
            add(L"\r\n");
        }
    }
    return made;
}
