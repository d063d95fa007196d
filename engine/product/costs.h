// Space that a selection or an item needs, in plain bytes, in all and per drive.
#pragma once

#include "../object.h"

namespace vh::engine {

using DriveCosts = std::map<std::wstring, uint64_t>;

enum class CostOf {
    selected, // what a transfer would write now: selected and not installed yet
    wanted,   // the item itself in any case, below it what is selected; all of it while it is unselected
};

// Full path of the folder that the item's files go to. Throws engine_error when its pattern gives no absolute path.
std::wstring TargetOf(const Core& core, const Item& item);

void AddCosts(const Core& core, const DataSet& data, const Item& item, CostOf what, DriveCosts& costs);

class CostsObject final : public engine_object<CostsObject, ISetupCosts> {
public:
    CostsObject(std::shared_ptr<Core> core, DriveCosts costs)
        : engine_object(std::move(core)), m_costs(std::move(costs))
    {
    }

    HRESULT STDMETHODCALLTYPE GetTotalLow(unsigned long* low) override;
    HRESULT STDMETHODCALLTYPE GetTotalHigh(unsigned long* high) override;
    HRESULT STDMETHODCALLTYPE GetDrives(VARIANT* drives) override;
    // A drive without costs has 0.
    HRESULT STDMETHODCALLTYPE GetDriveLow(BSTR drive, unsigned long* low) override;
    HRESULT STDMETHODCALLTYPE GetDriveHigh(BSTR drive, unsigned long* high) override;

private:
    uint64_t Total() const;
    uint64_t On(BSTR drive) const;

    DriveCosts m_costs;
};

} // namespace vh::engine
