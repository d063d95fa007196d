// File copy and directories through the engine's service.
#include "vhrt/file_copy.h"

#include "../diagnostics/file.h"
#include "../diagnostics/trace.h"
#include "../media/drive_costs.h"
#include "../runtime/context.h"
#include "../runtime/frame.h"
#include "../scriptdata/bstr.h"
#include "../scriptdata/halves.h"
#include "../scriptdata/results.h"

namespace {

// Bits of the script that imply bits of the engine; the rest passes unread.
constexpr uint32_t TranslateFlags(uint32_t flags)
{
    if (flags & 0x2) {
        flags &= ~uint32_t{0x2};
        if (flags & 0x200)
            flags |= 0x100;
        if (flags & 0x20)
            flags |= 0x10;
    }
    if (flags & 0x2000)
        flags |= 0x4000;
    return flags;
}

HRESULT RunCopy(ObjectContext& context, const wchar_t* source, const wchar_t* target, uint32_t flags)
{
    vh::com_ptr<ISetupFileOps> operations;
    if (const HRESULT code = context.Ask(operations); FAILED(code))
        return code;
    vh::com_ptr<ISetupCopyJob> job;
    const HRESULT made = operations->CreateCopyJob(vh::bstr(source).get(), vh::bstr(target).get(), flags, job.put());
    if (const HRESULT code = vh::Given(made, job); FAILED(code))
        return code;
    vh::com_ptr<ISetupCopyTotals> totals;
    unsigned long low = 0;
    unsigned long high = 0;
    const HRESULT told = job->GetTotals(totals.put());
    if (const HRESULT code = vh::Given(told, totals); FAILED(code))
        return code;
    if (const HRESULT code = totals->GetLow(&low); FAILED(code))
        return code;
    if (const HRESULT code = totals->GetHigh(&high); FAILED(code))
        return code;
    vh::com_ptr<IUnknown> sink;
    if (const HRESULT code = vh::BeginTransfer(context, vh::Combine(low, high), sink); FAILED(code))
        return code;
    return vh::FailureOnly(job->Run(context.log.get(), sink.get()));
}

HRESULT MakeDirectory(ObjectContext& context, const wchar_t* path)
{
    vh::com_ptr<ISetupFileOps> operations;
    if (const HRESULT code = context.Ask(operations); FAILED(code))
        return code;
    return vh::FailureOnly(operations->MakeDirectory(vh::TextOrEmpty(path).get(), context.log.get()));
}

} // namespace

int32_t _FileCopy(ObjectContext* context, const wchar_t* source, const wchar_t* target, int32_t flags)
{
    const vh::TracedCall call(L"XCopyFile", L"Source=%s\tTarget=%s\tFlags=0x%08lx", source, target,
                              static_cast<long>(flags));
    return vh::Framed(context, [&](ObjectContext& c) -> int32_t {
        const auto end = [&](int32_t code, uint32_t shown_flags) {
            return call.End(code, L"Result=%s\t\tError=0x%08lx\t\tSource=%s\tTarget=%s\tFlags=0x%08lx",
                            L"Result=%s\t\tSource=%s\tTarget=%s\tFlags=0x%08lx", source, target,
                            static_cast<unsigned long>(shown_flags));
        };
        if (!c.services)
            return end(-1, static_cast<uint32_t>(flags));
        const uint32_t translated = TranslateFlags(static_cast<uint32_t>(flags));
        return end(RunCopy(c, source, target, translated), translated);
    });
}

int32_t _CreateDir(ObjectContext* context, const wchar_t* path)
{
    const vh::TracedCall call(L"CreateDir", L"Dir=%s", path);
    return vh::Framed(context, [&](ObjectContext& c) -> int32_t {
        return call.End(c.services ? MakeDirectory(c, path) : -1, L"Result=%s\t\tError=0x%08lx\t\tDir=%s",
                        L"Result=%s\t\tDir=%s", path);
    });
}

namespace {

// Opens the path and lets `ask` look at it. Result: 0; the code of a failure on an address, else -1.
template <class Ask>
int32_t AskFile(const wchar_t* path, Ask&& ask)
{
    try {
        vh::file file;
        if (file.open(path, GENERIC_READ, FILE_SHARE_READ, FILE_ATTRIBUTE_NORMAL, OPEN_EXISTING))
            return -1;
        ask(file);
        return 0;
    } catch (const vh::internet_file_exception& failure) {
        return static_cast<int32_t>(failure.code());
    } catch (const std::exception&) {
        return -1;
    }
}

} // namespace

int32_t _GetInetFileSize(const wchar_t* path, uint32_t* size)
{
    return AskFile(path, [&](vh::file& file) { *size = file.size(); });
}

int32_t _GetInetFileTime(const wchar_t* path, FILETIME* time)
{
    return AskFile(path, [&](vh::file& file) { *time = file.last_write_time(); });
}

int32_t _CalculateAndAddFileCost(int32_t high, int32_t low, int32_t cluster, int32_t* highSum, int32_t* lowSum)
{
    const auto wide = [](int32_t number) { return static_cast<uint64_t>(int64_t{number}); };
    uint64_t total = (wide(high) << 31) + wide(low) + wide(cluster) - 1;
    total -= total % wide(cluster);
    const vh::halves31 rounded = vh::ToHalves31(total);
    *highSum = static_cast<int32_t>(static_cast<uint32_t>(*highSum) + static_cast<uint32_t>(rounded.high));
    *lowSum = static_cast<int32_t>(static_cast<uint32_t>(*lowSum) + static_cast<uint32_t>(rounded.low));
    return 0;
}
