// Costs of items and of the selection, as numbers and as text.
#include "vhrt/costs.h"

#include <array>

#include "../runtime/context.h"
#include "../runtime/frame.h"
#include "../scriptdata/format.h"
#include "../scriptdata/results.h"

namespace {

// Reads the bytes on the target's drive and hands them to `use`; a null target is a failure of its own.
template <class Use>
int32_t WithCost(ObjectContext* context, const wchar_t* media, const wchar_t* item, const wchar_t* target, Use&& use)
{
    return vh::Framed(context, [&](ObjectContext& c) -> int32_t {
        if (!target)
            return -1;
        uint64_t bytes = 0;
        const int32_t code = c.media.Find(media ? media : L"").GetCost(item ? item : L"", target, bytes);
        if (code < 0)
            return vh::MapResult(code);
        use(bytes);
        return 0;
    });
}

// Units of 1024 bytes: rounded to the nearest, but never 0 for something.
constexpr int32_t RoundToKilobytes(uint64_t bytes)
{
    uint64_t units = bytes / 1024;
    const uint64_t rest = bytes % 1024;
    if (rest >= 512 || (units == 0 && rest > 0))
        ++units;
    return units > INT32_MAX ? INT32_MAX : static_cast<int32_t>(units);
}

struct size_unit {
    int32_t shift;
    double divisor;
    // What the high 32 bits count for.
    double high_factor;
};

constexpr size_unit UnitFor(uint64_t bytes)
{
    if (bytes < 0x100000)
        return {10, 1024.0, 4194304.0};
    if (bytes < 0x40000000)
        return {20, 1048576.0, 4096.0};
    return {30, 1073741824.0, 4.0};
}

} // namespace

int32_t _ComponentGetCost(ObjectContext* context, const wchar_t* media, const wchar_t* item, const wchar_t* target,
                          int32_t* cost)
{
    return WithCost(context, media, item, target, [&](uint64_t bytes) { *cost = RoundToKilobytes(bytes); });
}

int32_t _ComponentGetTotalCost(ObjectContext* context, const wchar_t* media, const wchar_t* target, int32_t* cost)
{
    return _ComponentGetCost(context, media, L"", target, cost);
}

int32_t _ComponentGetCostEx(ObjectContext* context, const wchar_t* media, const wchar_t* item, const wchar_t* target,
                            wchar_t* text, int32_t* unit)
{
    return WithCost(context, media, item, target, [&](uint64_t bytes) {
        if (bytes == 0) {
            vh::CopyOutUnlimited({}, text);
            return;
        }
        const size_unit chosen = UnitFor(bytes);
        const auto low = static_cast<double>(bytes & 0xFFFFFFFF);
        const auto high = static_cast<double>(bytes >> 32);
        std::array<wchar_t, 32> formatted;
        vh::FormatText(formatted.data(), formatted.size(), L"%.2f", low / chosen.divisor + high * chosen.high_factor);
        vh::CopyOutUnlimited(formatted.data(), text);
        *unit = chosen.shift;
    });
}

int32_t _ComponentGetTotalCostEx(ObjectContext* context, const wchar_t* media, const wchar_t* target, wchar_t* text,
                                 int32_t* unit)
{
    return _ComponentGetCostEx(context, media, L"", target, text, unit);
}

int32_t _FeatureGetCost(ObjectContext* context, const wchar_t* media, const wchar_t* item, const wchar_t* target,
                        int32_t* high, int32_t* low)
{
    return WithCost(context, media, item, target, [&](uint64_t bytes) {
        *high = static_cast<int32_t>(bytes >> 31 & 0x7FFFFFFF);
        *low = static_cast<int32_t>(bytes & 0x7FFFFFFF);
    });
}

int32_t _FeatureAddCost(ObjectContext* context, const wchar_t* media, const wchar_t* item, const wchar_t* path,
                        int32_t low, int32_t high)
{
    return vh::Framed(context, [&](ObjectContext& c) {
        try {
            return c.media.Find(vh::View(media)).AddCost(vh::View(item), vh::View(path), low, high) < 0 ? -1 : 0;
        } catch (const vh::com_exception& failure) {
            if (failure.code() == E_OUTOFMEMORY)
                throw;
            return -1;
        }
    });
}

int32_t _FeatureAddUninstallCost(ObjectContext* context, const wchar_t* media, const wchar_t* item, int32_t low,
                                 int32_t high)
{
    return vh::Framed(context, [&](ObjectContext& c) {
        try {
            return c.media.Find(vh::View(media)).AddUninstallCost(vh::View(item), low, high) < 0 ? -1 : 0;
        } catch (const vh::com_exception& failure) {
            if (failure.code() == E_OUTOFMEMORY)
                throw;
            return -1;
        }
    });
}
