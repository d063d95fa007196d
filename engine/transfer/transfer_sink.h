// What a transfer reports to; the bytes to come were announced.
#pragma once

#include "../object.h"
#include "transfer.h"

namespace vh::engine {

class TransferSink final : public engine_object<TransferSink, IEngineProgress> {
public:
    TransferSink(std::shared_ptr<Core> core, uint64_t total);

    void Advance(uint64_t bytes, const std::wstring& file) override;
};

} // namespace vh::engine
