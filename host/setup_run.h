// One run of a setup: engine, library, script, and the end of it all; or the removal of what is installed.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "answers.h"
#include "engine/product/pack.h"
#include "exit_codes.h"
#include "plan.h"

namespace host {

struct RunOptions {
    // Empty for the removal of a product by its identifier.
    std::wstring setup_folder;
    std::wstring guid;
    // Empty takes the product file's target.
    std::wstring target;
    // Hears of text variables that the script sets: name and value; may be empty.
    std::function<void(const std::wstring&, const std::wstring&)> on_variable;
    // Empty leaves the trace as it is.
    std::wstring trace_file;
    // The log for people; empty for none.
    std::wstring log_file;
    // Where install logs lie; empty takes the user's local application data.
    std::wstring data_folder;
    // All registry roots lie below this key, such as "HKCU\\Software\\Test"; empty takes the machine's own.
    std::wstring registry_root;
    // The setup in one file that this program is; null for a setup folder.
    std::shared_ptr<const vh::engine::Pack> pack;
    // Where the library and what belongs to it lies; empty takes the program's folder.
    std::wstring library_folder;
    // Run in this order in one global scope; empty takes the product's own script.
    std::vector<std::wstring> scripts;
    std::map<std::wstring, std::wstring> variables;
    // What another run's user chose, and the file that told it; null to ask.
    std::shared_ptr<const Answers> answers;
    std::wstring answers_file;
    // Where this user's choices go; empty for nowhere.
    std::wstring save_answers;
    int language = 0;
    bool silent = false;
    // Only shows what would be done.
    PlanForm plan = PlanForm::none;
    // Brings back what is missing or damaged.
    bool repair = false;
    // Takes a version lower than the installed one.
    bool allow_downgrade = false;
    // Shows the engine's notes.
    bool notes = false;
    // A main window stands behind the dialogs.
    bool main_window = false;
    // Show at the end what is recorded for removal.
    bool show_log = false;
    // Show at the end what is installed, each file compared with its source.
    bool verify = false;
};

// How a run of a product of the machine ends where it is; nothing when it can go on.
std::optional<ExitCode> SeeToRights(bool for_machine, bool silent);

// Runs the setup's script. A run that fails or is stopped leaves the target as it was. This and the two below throw
// engine_error or another std::exception for what fails before anything is touched.
ExitCode RunSetup(const RunOptions& options);

// Removes what the install log of the setup or product lists, newest first.
ExitCode RemoveSetup(const RunOptions& options);

// Runs the setup of an installed product again, from where it was installed the last time.
ExitCode ModifyProduct(RunOptions options);

} // namespace host
