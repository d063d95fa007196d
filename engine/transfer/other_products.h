// What other products of a data folder have on the machine.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "log_record.h"

namespace vh::engine {

class OtherProducts {
public:
    explicit OtherProducts(std::wstring logFile) : m_logFile(std::move(logFile)) {}

    // Another product recorded this. The first question reads their logs, as they are at that moment.
    bool Have(const LogRecord& record);
    // Another product wrote the value with these data.
    bool Wrote(const LogRecord& record, long type, const std::wstring& data);
    // Another product's shortcut is the one with this size and time.
    bool Placed(const LogRecord& record, uint64_t size, uint64_t time);

    // Marks the record of a value or shortcut whose old form is that of another product.
    void Share(LogRecord& record);
    // What a removal puts in the place of a shared value or shortcut: what another product has there, or behind the
    // last of them what stood there before all.
    void SettleOld(LogRecord& record);
    // A shortcut that came back for another product gets the time by which that one knows it.
    void SettleTime(const LogRecord& record);

private:
    void Read();
    // Null when no other product has it.
    const std::vector<LogRecord>* Of(const LogRecord& record);

    std::wstring m_logFile; // of the product that asks
    bool m_read = false;
    std::set<std::wstring> m_things;
    // Values and shortcuts, one record for each product: the newest, with what the oldest found as the first.
    std::map<std::wstring, std::vector<LogRecord>> m_written;
};

} // namespace vh::engine
