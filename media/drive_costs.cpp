#include "drive_costs.h"

#include "../scriptdata/variant.h"

namespace vh {

HRESULT MergeCosts(ISetupCosts* costs, merge how, drive_costs& map)
{
    if (!costs)
        return E_POINTER;
    variant holder;
    if (const HRESULT code = costs->GetDrives(holder.put()); FAILED(code))
        return code;
    safe_array drives(holder);
    const HRESULT code = drives.for_each([&](const variant& drive) -> HRESULT {
        const bstr name(drive.text());
        unsigned long low = 0;
        unsigned long high = 0;
        HRESULT read = costs->GetDriveLow(name.get(), &low);
        if (SUCCEEDED(read))
            read = costs->GetDriveHigh(name.get(), &high);
        if (FAILED(read))
            return read;
        uint64_t& bytes = map[stringx(name.view())];
        bytes = Combine(low, high) + (how == merge::add ? bytes : 0);
        return S_OK;
    });
    drives.destroy();
    return code;
}

HRESULT ReadTotal(ISetupCosts* costs, uint64_t& bytes)
{
    if (!costs)
        return E_POINTER;
    unsigned long low = 0;
    unsigned long high = 0;
    HRESULT code = costs->GetTotalLow(&low);
    if (SUCCEEDED(code))
        code = costs->GetTotalHigh(&high);
    if (SUCCEEDED(code))
        bytes = Combine(low, high);
    return code;
}

} // namespace vh
