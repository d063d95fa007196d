// The three media on engine data: the product's features, its support files, and further data sets.
#pragma once

#include "../Src/inc/engine_host.h"
#include "file_media.h"

// "DATA": the host's features.
class CVHFileMedia final : public CVHFileMediaImpl<ISetupFeature, ISetupFeatures> {
public:
    // Without a feature host every operation fails with E_POINTER.
    CVHFileMedia(vh::com_ptr<ISetupHost> host, vh::com_ptr<ISetupData> data);

    int32_t MoveData(int32_t value, ObjectContext* context) override;
    int32_t TransferData(ObjectContext* context) override;
    int32_t RemoveAll() override;
    int32_t Reinstall() override;
    int32_t RemoveAllInLogOnly() override;
    int32_t Patch(bool flag) override;
    int32_t SelectNew(bool flag) override;
    int32_t GetErrorObject(IUnknown** error) override;
    int32_t GetFilteringInfo(int32_t kind, CVHList& list) override;
    int32_t GetInfo(ObjectContext* context, VHRTMediaInfo* record) override;
    int32_t SelectAll(bool flag) override;
    int32_t GetDriveCosts(text item, vh::drive_costs& costs) override;

private:
    // A move and a transfer announce the same bytes to the same status display.
    HRESULT BeginProgress(ObjectContext& context, vh::com_ptr<IUnknown>& progress);

    vh::com_ptr<ISetupHost> m_host;
    vh::com_ptr<ISetupFeatureHost> m_featureHost;
};

// "VHSUPPORTFILES": the components below the root item "<Support>". Display orders are absolute here.
class CVHSupportFilesMedia final : public CVHFileMediaImpl<ISetupComponent, ISetupComponents> {
public:
    explicit CVHSupportFilesMedia(vh::com_ptr<ISetupData> data);
};

// A root item of a data set that a script opened.
class CVHSecondaryFileMedia final : public CVHFileMediaImpl<ISetupComponent, ISetupComponents> {
public:
    CVHSecondaryFileMedia(text name, vh::com_ptr<ISetupData> data);

    int32_t MoveData(int32_t value, ObjectContext* context) override;
    int32_t TransferData(ObjectContext*) override { return -1; }
    int32_t Reinstall() override;
    int32_t GetErrorObject(IUnknown** error) override;
    int32_t SelectAll(bool flag) override;
    int32_t GetDriveCosts(text item, vh::drive_costs& costs) override;
};
