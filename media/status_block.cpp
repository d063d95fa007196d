#include "status_block.h"

namespace vh {

HRESULT StatusBlock::FetchProgress()
{
    if (progress)
        return S_OK;
    if (!services)
        return E_POINTER;
    const HRESULT code = services->QueryService(null_service, ISetupProgress::iid, progress.put_void());
    return SUCCEEDED(code) && !progress ? E_NOINTERFACE : code;
}

HRESULT StatusBlock::BeginTransfer(uint64_t bytes, com_ptr<IUnknown>& sink)
{
    if (const HRESULT code = FetchProgress(); FAILED(code))
        return code;
    short position = stop_at;
    if (!linked) {
        position = 0;
        progress->ReadPosition(&position);
    }
    const HRESULT code = progress->BeginTransfer(static_cast<unsigned long>(bytes & 0xFFFFFFFF),
                                                 static_cast<unsigned long>(bytes >> 32), position, sink.put());
    return code > 0 ? S_OK : code;
}

HRESULT BeginTransfer(ObjectContext& context, uint64_t bytes, com_ptr<IUnknown>& sink)
{
    return IsSuite(context) ? S_OK : StatusOf(context).BeginTransfer(bytes, sink);
}

} // namespace vh
