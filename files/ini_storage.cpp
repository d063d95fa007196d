// INI documents on disk.
#include <climits>
#include <optional>

#include "../diagnostics/file.h"
#include "../scriptdata/format.h"
#include "../scriptdata/unique.h"
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

// A file of a name that was free, in the folder of another; it goes at the end, unless it got another name. The name
// stays short: it fits wherever a folder does.
struct new_file {
    explicit new_file(const stringx& beside) : name(beside)
    {
        const std::size_t folder = name.view().find_last_of(L"\\/") + 1;
        error = ERROR_FILE_EXISTS;
        const DWORD start = GetTickCount();
        for (DWORD tries = 0; error == ERROR_FILE_EXISTS && tries <= 0xFFFF; ++tries) {
            wchar_t made[16];
            vh::FormatText(made, std::size(made), L"vh%04x.tmp", static_cast<unsigned>((start + tries) & 0xFFFF));
            name.resize(folder);
            name += made;
            error = file.open(name.c_str(), GENERIC_WRITE, FILE_SHARE_READ, FILE_ATTRIBUTE_NORMAL, CREATE_NEW);
        }
    }

    new_file(const new_file&) = delete;
    new_file& operator=(const new_file&) = delete;
    ~new_file()
    {
        // An open file can't be deleted.
        file = vh::file();
        if (!error && !stays)
            DeleteFileW(name.c_str());
    }

    void put(std::string_view bytes);
    // A folder may take no new file and still let those be written that it has.
    bool refused() const { return error == ERROR_ACCESS_DENIED; }

    stringx name;
    vh::file file;
    DWORD error = NO_ERROR;
    bool stays = false;
};

void WriteAll(vh::file& file, std::string_view bytes)
{
    while (!bytes.empty()) {
        const auto wanted = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), 1 << 20));
        const DWORD count = file.write_bytes(bytes.data(), wanted);
        if (count == 0)
            throw vh::win32_exception(ERROR_DISK_FULL);
        bytes.remove_prefix(count);
    }
}

void new_file::put(std::string_view bytes)
{
    if (error)
        throw vh::win32_exception(error);
    WriteAll(file, bytes);
    file.close();
}

// A file that exists under one name of its own, and that nobody keeps from going, so that a new one may take that name.
bool MayGo(const stringx& path)
{
    const vh::unique_file file(CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES | DELETE,
                                           FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                           OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    BY_HANDLE_FILE_INFORMATION facts{};
    return file && GetFileInformationByHandle(file.get(), &facts) && facts.nNumberOfLinks == 1 &&
           !(facts.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT);
}

// The new file takes the name, the attributes and the access list of the old one. False when that is refused, and
// the old file is untouched.
bool Exchange(new_file& made, const stringx& path, DWORD attributes)
{
    if (!MayGo(path))
        return false;
    SetFileAttributesW(made.name.c_str(), attributes);
    if (ReplaceFileW(path.c_str(), made.name.c_str(), nullptr, 0, nullptr, nullptr))
        return true;
    if (GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES)
        return false;
    // One of the failures leaves nothing under the old name; then the new file is all that there is.
    made.stays = true;
    return MoveFileExW(made.name.c_str(), path.c_str(), 0);
}

std::string ContentOf(const stringx& path)
{
    vh::file file;
    if (const DWORD error = file.open(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                      FILE_ATTRIBUTE_NORMAL, OPEN_EXISTING))
        throw vh::win32_exception(error);
    return ReadAll(file);
}

stringx TempFolder()
{
    wchar_t folder[MAX_PATH + 1] = L"";
    GetTempPathW(MAX_PATH + 1, folder);
    return folder;
}

// Puts the bytes into the file as it stands. What it held comes back when that fails; when not even that can be
// done, a copy of it stays beside the file, or in the temporary folder where the file's own takes none.
void WriteInPlace(const stringx& path, std::string_view bytes)
{
    const std::string before = ContentOf(path);
    std::optional<new_file> copy(path);
    if (copy->refused())
        copy.emplace(TempFolder());
    copy->put(before);
    vh::file file;
    if (const DWORD error =
            file.open(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, FILE_ATTRIBUTE_NORMAL, OPEN_EXISTING))
        throw vh::win32_exception(error);
    const auto put = [&](std::string_view content) {
        file.seek(0, FILE_BEGIN);
        WriteAll(file, content);
        file.set_end();
    };
    try {
        put(bytes);
    } catch (const vh::win32_exception&) {
        copy->stays = true;
        put(before);
        copy->stays = false;
        throw;
    }
    file.close();
}

// A complete new file takes the place of the old one. Where the old one has to stay, because it is open without
// leave to delete it, has other names or a folder that takes no new file, its content changes behind a complete copy.
void PutFile(const stringx& path, std::string_view bytes)
{
    // Not every system keeps a read-only file from being replaced.
    const DWORD attributes = GetFileAttributesW(path.c_str());
    const bool exists = attributes != INVALID_FILE_ATTRIBUTES;
    if (exists && attributes & FILE_ATTRIBUTE_READONLY)
        throw vh::win32_exception(ERROR_ACCESS_DENIED);
    new_file made(path);
    if (exists && made.refused()) {
        WriteInPlace(path, bytes);
        return;
    }
    made.put(bytes);
    if (!exists) {
        if (!MoveFileExW(made.name.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING))
            throw vh::win32_exception(GetLastError());
    } else if (!Exchange(made, path, attributes)) {
        WriteInPlace(path, bytes);
    }
}

} // namespace

bool inifilex::load(text path, text separator, bool keep_bare_keys)
{
    // Copies, in case they are texts of this document.
    const stringx wanted(path);
    const stringx behind_keys(separator);
    clear();
    assign(wanted, behind_keys);
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
    // A copy, as a text of this document moves with its section.
    const stringx target(path);
    m_saving = true;
    if (flags & inifile_set_encoding) {
        m_code_page = code_page;
        m_byte_order_mark = mark;
    }
    if (flags & inifile_sort)
        sort_sections();
    bool done = false;
    if (!target.empty()) {
        m_path = target;
        MakeFolderOf(target);
        const UINT used = m_code_page == no_code_page ? CP_ACP : m_code_page;
        try {
            PutFile(target, std::string(m_byte_order_mark ? vh::MarkOf(used) : std::string_view())
                                .append(vh::EncodeText(made_text(), used)));
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
