// The media on an engine data set: what concerns the set as a whole, its files and its costs.
#pragma once

#include "../Src/inc/engine_data.h"
#include "../scriptdata/com_ptr.h"
#include "drive_costs.h"
#include "media.h"

class CVHDataMedia : public CVHRTMedia {
public:
    int32_t IsScriptMedia() override { return 0; }
    int32_t MoveData(int32_t, ObjectContext*) override { return 0; }
    int32_t GetCost(text item, text target, uint64_t& bytes) override;
    int32_t CompareSizeRequired(wchar_t* drive, int32_t* size) override;
    int32_t CreateRegistrySet(text name, ISetupLog* log) override;
    int32_t CreateShellObjects(ISetupLog* log) override;
    int32_t FilterOS(int32_t first, int32_t second, bool flag) override;
    int32_t FilterLanguage(int32_t language, bool flag) override;
    int32_t SetupTypeGetData(text type, int32_t code, int32_t* number, wchar_t* buffer, int32_t length) override;
    int32_t SetupTypeEnum(std::vector<stringx>& names) override;
    int32_t SetupTypeSet(text type) override;
    int32_t Update() override;
    int32_t FileEnumIn(text item, text directory, bool flag, VARIANT* names) override;
    int32_t FileEnum(text item, VARIANT* names) override;
    int32_t FileInfo(text item, text group, text file, int32_t code, VARIANT* value) override;
    int32_t AddCost(text item, text path, int32_t low, int32_t high) override;
    int32_t AddUninstallCost(text item, int32_t low, int32_t high) override;

    // Beyond the media interface; a media of this kind alone costs nothing.
    virtual int32_t GetDriveCosts(text, vh::drive_costs&) { return 0; }

protected:
    explicit CVHDataMedia(vh::com_ptr<ISetupData> data) : m_data(std::move(data)) {}

    HRESULT GetRoot(vh::com_ptr<ISetupComponents>& root);
    // Walks from the data set's root to "head\tail".
    static HRESULT WalkRoot(ISetupComponents* root, text path, vh::com_ptr<ISetupComponent>& found);
    // The item of this media in the data set.
    HRESULT WalkToOwnItem(text item, vh::com_ptr<ISetupComponent>& found);

    vh::com_ptr<ISetupData> m_data;

private:
    // Runs one of the two: at the root for an empty item, or on the item's own extension.
    template <class Extension, class AtRoot, class OnItem>
    int32_t OnFiles(text item, AtRoot&& at_root, OnItem&& on_item);
    HRESULT WalkToCostItem(text item, vh::com_ptr<ISetupComponent>& found);
    HRESULT FindSetupType(text type, vh::com_ptr<ISetupType>& found);
};
