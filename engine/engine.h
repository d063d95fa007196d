// The embedded setup engine as a host or a test sees it: open a setup folder, hand its two interfaces to
// __CreateObjectContext, run the script, then commit or roll back.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "../Src/inc/engine.h"
#include "../scriptdata/variant.h"
#include "decision.h"
#include "messages.h"
#include "recorder.h"

namespace vh::engine {

// How far a transfer has come. `file` is the target file in hand.
struct Progress {
    uint64_t done = 0;
    uint64_t total = 0;
    int percent = 0;
    std::wstring file;
};

enum class Windows {
    none,
    dialogs, // status window and wait message
    all,     // a main window too, made when it is first asked for, on that thread
};

// What the system's list of installed programs says about a product, beside what the product file tells.
struct ProgramEntry {
    // Command lines; without the first there is no entry, without the last no way to change what is installed.
    std::wstring uninstall;
    std::wstring quietUninstall;
    std::wstring modify;
};

class Pack;

struct Options {
    // Holds product.json, the payload and the script.
    std::wstring setupFolder;
    // Value of the variable TARGETDIR; empty takes the product file's target.
    std::wstring targetDir;
    // Holds one folder per install guid with the install log; empty takes DefaultDataDir.
    std::wstring dataDir;
    // Holds the payload, for a setup in one file; the setup folder then holds the rest. May be null.
    std::shared_ptr<const Pack> pack;
    // Where the next run finds the setup; empty takes the setup folder.
    std::wstring source;
    // All registry roots lie below this key, "HKCU\\Software\\Test" for example, each under its own name. Empty
    // takes the machine's own. A run that is removed finds its keys by the log.
    std::wstring registryRoot;
    // Language identifier; 0 takes the product file's default. One that the product lacks falls back to it too.
    int language = 0;
    bool silent = false;
    // The text of fact 12.
    std::wstring commandLine;
    // Set in the global text store after the product file's own variables.
    std::vector<std::pair<std::wstring, std::wstring>> variables;
    // Facts that win over what the engine works out, by number.
    std::map<long, variant> facts;
    // Main window handed out by ISetupUser; may be null. It gets its caption, but nothing is painted on it.
    HWND window = nullptr;
    // What the engine shows. A silent run shows nothing; with a window that is given, dialogs show at least.
    Windows windows = Windows::none;
    // Compares the content of what is installed, and brings back what is missing or damaged.
    bool repair = false;
    // Decides and tells, but changes nothing on the machine: no claim, no file, folder, key or value, and nothing of
    // what the run has noted outlives it. What a script does by itself is done.
    bool planOnly = false;
    // Takes a version that is lower than the installed one.
    bool allowDowngrade = false;
    // Called during a transfer, on the script's thread; false cancels.
    std::function<bool(const Progress&)> onProgress;
    // Hears each message as it comes; Engine::Messages keeps them as well.
    std::function<void(const Message&)> onMessage;
    // Hears what becomes of each file, folder, registry key, value and shortcut, and why; may be empty.
    DecisionNews onDecision;
    VariableNews onVariable;
};

// One file that the product has put on this machine.
struct InstalledFile {
    std::wstring target;
    std::wstring source;
    std::wstring feature;
    // Where it waits until what stands in its place is not in use any more; empty when it is there.
    std::wstring waiting;
};

enum class RemovalOutcome {
    removed,
    restored,       // what stood there before the installation is back
    absent,         // was gone already
    kept_changed,   // the user changed it since
    kept_not_empty, // a folder with other files in it
    kept_permanent, // marked as not to be removed
    kept_found,     // was there, the same, before the product
    kept_shared,    // another product has it too
    unreadable,     // damaged lines of a log: what they told of stays
    failed,
};

struct Removal {
    RemovalOutcome outcome;
    // "file", "folder", "key", "value", "shortcut", "line", "list".
    std::wstring kind;
    // The path, or root\key[\value].
    std::wstring what;
    // Reason of a failure, or what is put off; empty otherwise.
    std::wstring reason;
    // It is in use, and goes when the system starts again or with a later setup; counted as removed.
    bool later = false;
    // Bytes of the file that goes, by the log.
    uint64_t freed = 0;
};

// How many were done, not merely looked at.
std::size_t CountDone(const std::vector<Removal>& removals);
bool AnyFailed(const std::vector<Removal>& removals);

// What a run finds of the last one.
enum class RunKind { install, modify, repair, upgrade, downgrade };

// What a run wrote.
struct RunCounts {
    std::size_t files = 0;
    std::size_t values = 0;
    std::size_t shortcuts = 0;
};

// A product on this machine, as its log tells.
struct InstalledProduct {
    std::wstring guid;
    std::wstring logFile;
    // Empty where the log has lost them.
    std::wstring name;
    std::wstring version;
    std::wstring target;
    // The setup that installed it last: a folder, or a file that holds all.
    std::wstring source;
    bool forMachine = false;
    // A run of it was killed and is not undone yet.
    bool unfinished = false;
};

class Core;

class Engine {
public:
    // Reads and checks the product file and the payload, undoes a run that was killed half way, and opens the
    // install log. Throws engine_error, which names file and reason.
    static std::unique_ptr<Engine> Open(Options options);
    // Ends the run: neither committed nor rolled back, it is rolled back.
    ~Engine();

    // New references; a context keeps its own.
    com_ptr<ISetupHost> Host() const;
    com_ptr<IServiceProvider> Services() const;
    // A new, empty bag; it may be marshalled to another thread.
    com_ptr<ISetupPropertyBag> NewPropertyBag() const;

    // Calls so far, and calls to fail.
    Recorder& Calls() const;
    // Engine objects that somebody still holds.
    long LiveObjects() const;

    // Everything reported so far, oldest first.
    const std::vector<Message>& Messages() const;
    // Stops the transfer that runs, or the next one.
    void Cancel();

    // Keeps what this run did and drops the backups of replaced files. A run that did nothing leaves no log. Throws
    // engine_error while nothing is decided yet.
    void Commit(ProgramEntry entry = {});
    // Undoes what this run did, newest first. What fails stays recorded, and the next run tries it again.
    std::vector<Removal> Rollback();

    std::wstring ProductName() const;
    std::wstring ProductVersion() const;
    // Full paths of the scripts that the product file names, in the order in which they run.
    std::vector<std::wstring> ScriptFiles() const;
    // The identifier of the run's language.
    int Language() const;
    std::wstring TargetDir() const;
    std::wstring LogFile() const;
    // The identifier that the log belongs to, and the folder that holds it with the logs of other products.
    std::wstring InstallGuid() const;
    std::wstring DataDir() const;
    // Whether this run only says what it would do.
    bool IsPlan() const;
    // True when the product is installed already.
    bool Maintenance() const;
    RunKind Kind() const;
    // The version that was installed when this run began; empty for none.
    std::wstring InstalledVersion() const;
    // A file of the product is in use: once committed, something waits for the system to start again.
    bool NeedsRestart() const;
    // Paths of the features that are selected now.
    std::vector<std::wstring> Selected() const;
    // Selects exactly these features, what they need above them and what is required. Gives the paths that the product
    // does not have; with one of those nothing changes.
    std::vector<std::wstring> Select(const std::vector<std::wstring>& paths);
    // By this run, whether it is committed already or not.
    RunCounts Counts() const;
    // Files on the machine by the log, in the order of their installation.
    std::vector<InstalledFile> Installed() const;
    // The log's records as readable lines, oldest first.
    std::vector<std::wstring> LogLines() const;

private:
    explicit Engine(std::shared_ptr<Core> core);

    std::shared_ptr<Core> m_core;
};

// Where install logs lie when nobody says otherwise: "VHSetup" below the local application data of the user, or below
// that of all users for a product of the machine.
std::wstring DefaultDataDir(bool forMachine);
// Whether this process may write what belongs to all users.
bool HasMachineRights();
// Whether the product of a setup folder is one of the machine. Throws engine_error for a broken product file.
bool IsForMachine(const std::wstring& setupFolder);
// All products with a log in that folder, in the order of their identifiers. Logs that can't be read are left out.
std::vector<InstalledProduct> InstalledProducts(const std::wstring& dataDir);

// Where the install log of a setup folder lies. Throws engine_error for a broken product file.
std::wstring LogFileOf(const std::wstring& setupFolder, const std::wstring& dataDir = {});

// Tries again what files in use have put off, for all products with a log in that folder, whether they are installed
// still or not. Each start of a setup or removal does so by itself. Result: a warning about damaged lines of the list.
std::optional<Message> CarryOutPutOff(const std::wstring& dataDir);

// How many things an install log lists that no removal has taken away or left for good. Throws engine_error when
// another setup has the log.
std::size_t LeftForRemoval(const std::wstring& logFile);

// Undoes all that an install log lists, newest first, and removes the log when nothing is left to do. Each
// removal is noted in the log at once, so a killed removal goes on where it stopped. Throws engine_error when
// the log is missing or another setup has it. `onRemoval` hears each result as it comes and may be empty; an
// exception of it ends the removal, and the next one goes on.
std::vector<Removal> Uninstall(const std::wstring& logFile, const std::function<void(const Removal&)>& onRemoval = {});
// What Uninstall would come to; nothing is touched.
std::vector<Removal> PlanRemoval(const std::wstring& logFile);

} // namespace vh::engine
