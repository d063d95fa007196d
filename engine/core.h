// What all objects of one engine share.
#pragma once

#include <atomic>
#include <memory>
#include <optional>

#include "engine.h"
#include "product/data_set.h"
#include "support_folder.h"
#include "text_table.h"
#include "transfer/install_log.h"

namespace vh::engine {

class Screen;

class Core : public std::enable_shared_from_this<Core> {
public:
    explicit Core(Options given);
    ~Core();
    Core(const Core&) = delete;
    Core& operator=(const Core&) = delete;

    void Report(Message message);
    void Note(std::wstring file, std::wstring reason)
    {
        Report({Severity::note, std::move(file), std::move(reason), S_OK});
    }

    // Variables of the local store win over global ones.
    std::wstring Substitute(std::wstring_view text, bool local = true) const;
    // The string of the run's language, or of the default language.
    const std::wstring* FindString(std::wstring_view id) const;
    // Text for people: variables and string ids in patterns.
    std::wstring DisplayText(std::wstring_view text) const;
    // Bytes that came: shows how far the transfer is; throws when somebody wants to stop.
    void Advance(uint64_t bytes, const std::wstring& file);
    // The path of a library or picture: a name without a drive is looked for in the support folder, then in the setup
    // folder.
    std::wstring FindFile(std::wstring_view name) const;

    Options options;
    Recorder calls;
    std::atomic<long> live{0};
    std::vector<Message> messages;
    bool cancelled = false;

    std::shared_ptr<DataSet> product;
    WORD language = 0;
    RunKind kind = RunKind::install;
    bool IsOtherVersion() const { return kind == RunKind::upgrade || kind == RunKind::downgrade; }
    std::wstring installedVersion;
    std::wstring installedTarget; // of the last run; empty before the first
    bool moved = false;           // this run has moved its data
    ProgramEntry entry;
    RunCounts counts; // of the run, once it is committed
    TextTable localTexts;
    TextTable globalTexts;
    std::unique_ptr<InstallLog> log;
    std::unique_ptr<SupportFolder> support;
    std::wstring supportDir;
    std::wstring contextGuid;
    bool registryTexts = true;
    long registryOptions = 0;
    Progress progress;
    std::unique_ptr<Screen> screen;
    std::vector<std::array<std::wstring, 3>> rebootTexts;
    // What the last failing engine call had to say.
    Message lastError;
    long nextCookie = 1;

private:
    std::optional<std::wstring> Variable(std::wstring_view name, bool local) const;
    void ReportDamage();
    void SetVariables();
};

} // namespace vh::engine
