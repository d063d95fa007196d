#include "in_use.h"

#include <iterator>
#include <vector>

#include "../files.h"

namespace vh::engine {

namespace {

// One question to the system's restart manager.
class Session {
public:
    Session()
    {
        wchar_t key[CCH_RM_SESSION_KEY + 1] = {};
        m_open = late::start_session && late::register_resources && late::get_list && late::end_session &&
                 late::start_session(&m_session, DWORD{0}, key) == ERROR_SUCCESS;
    }
    ~Session()
    {
        if (m_open)
            late::end_session(m_session);
    }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    std::vector<RM_PROCESS_INFO> HoldersOf(const std::wstring& path) const
    {
        const wchar_t* names[] = {path.c_str()};
        if (!m_open || late::register_resources(m_session, UINT{1}, static_cast<const wchar_t**>(names), UINT{0},
                                                static_cast<RM_UNIQUE_PROCESS*>(nullptr), UINT{0},
                                                static_cast<const wchar_t**>(nullptr)) != ERROR_SUCCESS)
            return {};
        constexpr UINT most = 16;
        std::vector<RM_PROCESS_INFO> holders(most);
        UINT needed = 0;
        UINT count = most;
        DWORD reasons = 0;
        const DWORD code = late::get_list(m_session, &needed, &count, holders.data(), &reasons);
        holders.resize(code == ERROR_SUCCESS ? std::min(count, most) : 0);
        return holders;
    }

private:
    DWORD m_session = 0;
    bool m_open = false;
};

} // namespace

bool IsInUse(const std::wstring& path, DWORD code)
{
    if (code == ERROR_SHARING_VIOLATION || code == ERROR_LOCK_VIOLATION || code == ERROR_USER_MAPPED_FILE)
        return true;
    if (code != ERROR_ACCESS_DENIED || !FactsOf(path).file())
        return false;
    // The system calls it want of access where somebody has the file open. A program that runs can't be opened for
    // writing, and what was opened without leave to delete it not for that.
    for (const DWORD access : {DWORD{GENERIC_WRITE}, DWORD{DELETE}}) {
        const unique_file file(CreateFileW(LongPath(path).c_str(), access,
                                           FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                           OPEN_EXISTING, 0, nullptr));
        if (!file && GetLastError() == ERROR_SHARING_VIOLATION)
            return true;
    }
    return false;
}

std::wstring InUseWords(const std::wstring& path)
{
    std::wstring words = L"is in use";
    const wchar_t* before = L" by ";
    for (const RM_PROCESS_INFO& holder : Session().HoldersOf(path)) {
        words += before + std::wstring(holder.strAppName) + L" (process " + Number(holder.Process.dwProcessId) + L")";
        before = L", ";
    }
    return words;
}

} // namespace vh::engine
