// Moves the files of selected items to their targets, all or nothing.
#pragma once

#include "../object.h"

namespace vh::engine {

// The progress object that a transfer reports to.
struct IEngineProgress : IUnknown {
    static constexpr GUID iid = Guid("{76683031-9C3E-4D57-8C0A-1B9D7E605A11}");
    // Throws when the transfer is to stop.
    virtual void Advance(uint64_t bytes, const std::wstring& file) = 0;
};

// Moves what is selected and not installed yet, in these items and below. A failure undoes this transfer and is
// thrown on. A null or foreign progress object is replaced by one of the transfer's own.
void Transfer(Core& core, DataSet& data, const std::vector<Item*>& items, IUnknown* progress);
// The same for all features; afterwards removes what unselected features had installed.
void TransferFeatures(Core& core, DataSet& data, IUnknown* progress);

} // namespace vh::engine
