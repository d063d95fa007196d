// What a run or a removal would do, collected from the engine's decisions and told as text or JSON.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "call_watch.h"
#include "engine/engine.h"
#include "exit_codes.h"

namespace host {

enum class PlanForm { none, text, json };

class Plan : public CallWatch {
public:
    void Take(const vh::engine::Decision& decision);
    void Take(const vh::engine::Removal& removal);
    // Notes are left out.
    void Take(const vh::engine::Message& message);
    // A call that changes the machine beside the engine is noted, and gives what it does when all goes well.
    std::optional<vh::variant> Instead(std::wstring_view call, std::span<const VARIANT> arguments) override;
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
