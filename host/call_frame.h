// One call of an exported function for a script: arguments to slots, the call, outputs to properties.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>
#include <windows.h>

#include "call_record.h"
#include "call_signature.h"

namespace host {

// What the host itself gives to calls.
struct CallSite {
    void* context;
    void* host;
    void* services;
};

class CallFrame {
public:
    // The arguments stand in the script's order. Throws script_error for wrong ones.
    CallFrame(const Call& call, const CallSite& site, std::span<const VARIANT> arguments);

    // Calls, and calls again with more room as long as the function asks for it.
    vh::variant Run(FARPROC entry);

private:
    // The storage behind one argument.
    struct Cell {
        const Argument* argument;
        int64_t number;
        // Size of a buffer in units, or in bytes.
        int32_t size;
        std::vector<wchar_t> text;
        std::vector<char> bytes;
        std::vector<std::vector<wchar_t>> texts;
        std::vector<wchar_t*> pointers;
        vh::variant value;
        std::unique_ptr<RecordBlock> record;
        bool absent;
    };

    void Prepare(Cell& cell, const CallSite& site, const VARIANT* given);
    void MakeRoomForArrays();
    void Place();
    const Cell& CellOf(const std::string& name) const;
    uint64_t SizeOf(const std::string& name) const;
    int64_t AtMost(const Cell& cell) const;
    bool Grow(int64_t result);
    vh::variant Output(const Cell& cell) const;
    vh::variant Outcome(int64_t result) const;

    const Call& m_call;
    std::vector<Cell> m_cells;
    std::array<uint64_t, max_slots> m_slots{};
};

} // namespace host
