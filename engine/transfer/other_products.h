// What other products of a data folder have on the machine.
#pragma once

#include <optional>
#include <set>
#include <string>

#include "log_record.h"

namespace vh::engine {

class OtherProducts {
public:
    explicit OtherProducts(std::wstring logFile) : m_logFile(std::move(logFile)) {}

    // Another product recorded this file or folder. The first question reads their logs, as they are at that moment.
    bool Have(LogKind kind, const std::wstring& path);

private:
    const std::set<std::wstring>& Places();

    std::wstring m_logFile; // of the product that asks
    std::optional<std::set<std::wstring>> m_places;
};

} // namespace vh::engine
