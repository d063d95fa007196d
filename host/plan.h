// What a run or a removal would do, collected from the engine's decisions and told as text or JSON.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "engine/engine.h"
#include "exit_codes.h"

namespace host {

enum class PlanForm { none, text, json };

class Plan {
public:
    void Take(const vh::engine::Decision& decision);
    void Take(const vh::engine::Removal& removal);
    // Notes are left out.
    void Take(const vh::engine::Message& message);
    // Whether a call of the script changes the machine beside the engine: then it is noted and not to be done.
    bool HoldsBack(std::wstring_view call);
    // The script has ended: what is decided from now on is the setup's own.
    void EndScript() { m_asker = L"setup"; }
    void Describe(const vh::engine::Engine& engine);

    // On standard output.
    void Show(PlanForm form, ExitCode code) const;

private:
    struct Step {
        std::wstring act, kind, what, reason, by;
        uint64_t size = 0;
        uint64_t freed = 0;
    };
    struct Bytes {
        uint64_t written = 0;
        uint64_t freed = 0;
    };

    void Add(Step step);
    void ShowText() const;
    void ShowJson(ExitCode code) const;

    std::wstring m_asker = L"script";
    std::wstring m_product, m_version, m_target, m_kind = L"remove";
    std::vector<std::wstring> m_selected;
    std::vector<Step> m_steps;
    std::vector<std::wstring> m_messages;
    std::map<std::wstring, Bytes> m_drives;
    std::map<std::wstring, std::size_t> m_counts; // by act
};

} // namespace host
