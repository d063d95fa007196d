// A data set as an object: its items, setup types, filters, modes and media information.
#pragma once

#include "item.h"

namespace vh::engine {

class SetupTypesObject final : public engine_object<SetupTypesObject, ISetupTypes> {
public:
    SetupTypesObject(std::shared_ptr<Core> core, std::shared_ptr<DataSet> data)
        : engine_object(std::move(core)), m_data(std::move(data))
    {
    }

    HRESULT STDMETHODCALLTYPE Count(long* count) override;
    HRESULT STDMETHODCALLTYPE Item(VARIANT index, ISetupType** type) override;

private:
    std::shared_ptr<DataSet> m_data;
};

class SetupTypeObject final : public engine_object<SetupTypeObject, ISetupType> {
public:
    SetupTypeObject(std::shared_ptr<Core> core, std::shared_ptr<DataSet> data, const SetupType& type)
        : engine_object(std::move(core)), m_data(std::move(data)), m_type(type)
    {
    }

    HRESULT STDMETHODCALLTYPE GetName(BSTR* name) override;
    HRESULT STDMETHODCALLTYPE GetDisplayText(BSTR* text) override;
    HRESULT STDMETHODCALLTYPE GetDescription(BSTR* text) override;
    HRESULT STDMETHODCALLTYPE Activate() override;

private:
    std::shared_ptr<DataSet> m_data;
    const SetupType& m_type;
};

class DataObject final : public engine_object<DataObject, ISetupData, ISetupDataEx, ISetupDataModes,
                                              ISetupDataValidation, ISetupMediaInfo> {
public:
    DataObject(std::shared_ptr<Core> core, std::shared_ptr<DataSet> data)
        : engine_object(std::move(core)), m_data(std::move(data))
    {
    }

    HRESULT STDMETHODCALLTYPE GetRoot(ISetupComponents** root) override;
    HRESULT STDMETHODCALLTYPE GetSetupTypes(ISetupTypes** types) override;
    // True lets files and features of the language take part again, false takes them out.
    HRESULT STDMETHODCALLTYPE FilterLanguage(long language, VARIANT_BOOL flag) override;
    HRESULT STDMETHODCALLTYPE GetMaintenance(VARIANT_BOOL* maintenance) override;
    HRESULT STDMETHODCALLTYPE GetProductGuid(long reserved, BSTR* identifier) override;
    HRESULT STDMETHODCALLTYPE GetSourcePath(BSTR* path) override;
    HRESULT STDMETHODCALLTYPE GetErrorObject(IUnknown** error) override;
    HRESULT STDMETHODCALLTYPE Validate(BSTR key) override;
    HRESULT STDMETHODCALLTYPE SetLog(ISetupLog* log) override;
    // An empty name applies every set.
    HRESULT STDMETHODCALLTYPE CreateRegistrySet(BSTR name, ISetupLog* log) override;
    HRESULT STDMETHODCALLTYPE CreateShellObjects(ISetupLog* log) override;

    HRESULT STDMETHODCALLTYPE GetInstallGuid(BSTR* identifier) override;
    HRESULT STDMETHODCALLTYPE GetFlags(long* flags) override;
    HRESULT STDMETHODCALLTYPE GetUpdateMode(VARIANT_BOOL* on) override;
    HRESULT STDMETHODCALLTYPE SetUpdateMode(VARIANT_BOOL on) override;
    HRESULT STDMETHODCALLTYPE GetTargetState(long* flags) override;
    HRESULT STDMETHODCALLTYPE GetEnabledServices(long* services) override;
    HRESULT STDMETHODCALLTYPE GetRemoveAllMode(VARIANT_BOOL* on) override;
    // On: unselects everything, required items too.
    HRESULT STDMETHODCALLTYPE SetRemoveAllMode(VARIANT_BOOL on) override;
    // The two numbers are the lower and the upper half of the systems' bits.
    HRESULT STDMETHODCALLTYPE FilterOS(long first, long second, VARIANT_BOOL flag) override;

    HRESULT STDMETHODCALLTYPE GetReinstallMode(VARIANT_BOOL* on) override;
    HRESULT STDMETHODCALLTYPE SetReinstallMode(VARIANT_BOOL on) override;
    HRESULT STDMETHODCALLTYPE GetRootFiles(VARIANT* files) override;
    HRESULT STDMETHODCALLTYPE EnumRootFiles(BSTR directory, VARIANT_BOOL flag, VARIANT* files) override;
    HRESULT STDMETHODCALLTYPE RootFileInfo(BSTR group, BSTR file, long code, VARIANT* value) override;
    // Kind 0: languages that take part; 1: bits of systems that take part.
    HRESULT STDMETHODCALLTYPE GetFilteringNumbers(long kind, VARIANT* numbers) override;

    HRESULT STDMETHODCALLTYPE GetNeedsValidation(VARIANT_BOOL* needed) override;

    HRESULT STDMETHODCALLTYPE GetText1(BSTR* text) override { return MediaText(1, text); }
    HRESULT STDMETHODCALLTYPE GetText2(BSTR* text) override { return MediaText(2, text); }
    HRESULT STDMETHODCALLTYPE GetText3(BSTR* text) override { return MediaText(3, text); }
    HRESULT STDMETHODCALLTYPE GetText4(BSTR* text) override { return MediaText(4, text); }
    HRESULT STDMETHODCALLTYPE GetText5(BSTR* text) override { return MediaText(5, text); }
    HRESULT STDMETHODCALLTYPE GetText6(BSTR* text) override { return MediaText(6, text); }
    HRESULT STDMETHODCALLTYPE GetText7(BSTR* text) override { return MediaText(7, text); }
    HRESULT STDMETHODCALLTYPE GetText8(BSTR* text) override { return MediaText(8, text); }
    HRESULT STDMETHODCALLTYPE GetText9(BSTR* text) override { return MediaText(9, text); }
    HRESULT STDMETHODCALLTYPE GetText10(BSTR* text) override { return MediaText(10, text); }
    HRESULT STDMETHODCALLTYPE GetText11(BSTR* text) override { return MediaText(11, text); }
    HRESULT STDMETHODCALLTYPE GetText12(BSTR* text) override { return MediaText(12, text); }
    HRESULT STDMETHODCALLTYPE GetText13(BSTR* text) override { return MediaText(13, text); }
    HRESULT STDMETHODCALLTYPE GetText14(BSTR* text) override { return MediaText(14, text); }
    HRESULT STDMETHODCALLTYPE GetNumber(long* number) override;
    HRESULT STDMETHODCALLTYPE GetTruth1(VARIANT_BOOL* truth) override { return MediaTruth(1, truth); }
    HRESULT STDMETHODCALLTYPE GetTruth2(VARIANT_BOOL* truth) override { return MediaTruth(2, truth); }
    HRESULT STDMETHODCALLTYPE GetTruth3(VARIANT_BOOL* truth) override { return MediaTruth(3, truth); }
    HRESULT STDMETHODCALLTYPE GetTruth4(VARIANT_BOOL* truth) override { return MediaTruth(4, truth); }
    HRESULT STDMETHODCALLTYPE GetTruth5(VARIANT_BOOL* truth) override { return MediaTruth(5, truth); }

private:
    const Product& product() const { return *m_data->product; }
    HRESULT GetMode(const char* method, bool mode, VARIANT_BOOL* on) const;
    HRESULT SetMode(const char* method, bool& mode, VARIANT_BOOL on);
    HRESULT MediaText(int number, BSTR* text) const;
    HRESULT MediaTruth(int number, VARIANT_BOOL* truth) const;

    std::shared_ptr<DataSet> m_data;
};

// Opens header files.
class DataFactory final : public engine_object<DataFactory, ISetupDataFactory> {
public:
    using engine_object::engine_object;

    HRESULT STDMETHODCALLTYPE Open(BSTR headerPath, BSTR reserved, ISetupData** data) override;
};

} // namespace vh::engine
