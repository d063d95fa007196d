#include "drive_costs.h"

#include "../scriptdata/variant.h"

namespace vh {

HRESULT MergeCosts(ISetupCosts* costs, merge how, drive_costs& map)
{
    if (!costs)
        return E_POINTER;
    variant holder;
    HRESULT code = costs->GetDrives(holder.put());
    if (FAILED(code))
        return code;
    safe_array drives(holder);
    const long last = drives.last();
    for (long index = drives.first(); index <= last; ++index) {
        const variant drive = drives.at(index);
        const bstr name(drive.text());
        unsigned long low = 0;
        unsigned long high = 0;
        if (FAILED(code = costs->GetDriveLow(name.get(), &low)) ||
            FAILED(code = costs->GetDriveHigh(name.get(), &high)))
            return code;
        uint64_t& bytes = map[stringx(name.view())];
        bytes = Combine(low, high) + (how == merge::add ? bytes : 0);
    }
    drives.destroy();
    return S_OK;
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
