#include "transfer_sink.h"

namespace vh::engine {

TransferSink::TransferSink(std::shared_ptr<Core> shared, uint64_t total) : engine_object(std::move(shared))
{
    core().progress = {0, total, 0, {}};
}

void TransferSink::Advance(uint64_t bytes, const std::wstring& file) { core().Advance(bytes, file); }

} // namespace vh::engine
