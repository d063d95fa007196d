// The install log and its database as objects.
#pragma once

#include "../marshaler.h"
#include "text_store.h"

namespace vh::engine {

// Texts that are saved here lie in the install log under their name.
class LogObject final : public engine_object<LogObject, ISetupLog, IEngineTextArchive> {
public:
    explicit LogObject(std::shared_ptr<Core> core) : engine_object(std::move(core)) {}

    void SaveTexts(const std::wstring& name, const TextTable& texts) override;
    bool LoadTexts(const std::wstring& name, TextTable& texts) override;

    static const dispatch_entry<LogObject> names[3];

private:
    HRESULT QueryMore(REFIID id, void** object) override
    {
        return m_marshaler.Query(static_cast<ISetupLog*>(this), id, object);
    }

    Marshaler m_marshaler;
};

class LogDatabase final : public engine_object<LogDatabase, ISetupLogDB> {
public:
    using engine_object::engine_object;

    HRESULT STDMETHODCALLTYPE GetStore(IUnknown** store) override;

    static const dispatch_entry<LogDatabase> names[2];
};

} // namespace vh::engine
