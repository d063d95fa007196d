// The engine's progress service.
#pragma once

#include <oaidl.h>

#include "engine_window.h"
#include "identifiers.h"
#include "slots.h"

struct ISetupProgress : IDispatch {
    static constexpr GUID iid = vh::Guid("{E0B44102-1247-43FB-931B-94127CC6EC2E}");
    VH_SLOTS_FROM(7);
    VH_SLOT(7) ArmWindow(short value) = 0;
    VH_SLOT(8) ReadPosition(short* position) = 0;
    VH_SLOT(9) SetTitle(BSTR title) = 0;
    VH_SLOT(10) SetMainImage(BSTR image) = 0;
    VH_SLOT(11) GetWindow(long index, HWND* window) = 0;
    VH_SLOT(12) GetBar(ISetupProgressBar** bar) = 0;
    VH_SLOT(13) SetBar(ISetupProgressBar* bar) = 0;
    // Announces the bytes to come, as two halves; gives the progress object that a transfer reports to.
    VH_SLOT(14) BeginTransfer(unsigned long low, unsigned long high, short stopAt, IUnknown** progress) = 0;
    VH_SLOT(15) Open(HWND parent, BSTR templateFile, long resource) = 0;
    VH_SLOT(16) Close() = 0;
    VH_SLOT(17) SetOption(long option, short value) = 0;
};

struct ISetupProgressOpen : vh::unnamed_slots<IDispatch, 7, 17> {
    static constexpr GUID iid = vh::Guid("{AB153510-4F71-4B11-9D3A-EF59057E9C25}");
    VH_SLOTS_FROM(18);
    VH_SLOT(18) OpenEx(HWND parent, BSTR templateFile, long resource, long flags) = 0;
};

struct ISetupProgressLink : vh::unnamed_slots<IDispatch, 7, 18> {
    static constexpr GUID iid = vh::Guid("{B6882594-9C3B-4E75-A5C8-06DF14344FD0}");
    VH_SLOTS_FROM(19);
    VH_SLOT(19) SetLink(VARIANT_BOOL on) = 0;
};

struct ISetupProgressCost : vh::unnamed_slots<IDispatch, 7, 19> {
    static constexpr GUID iid = vh::Guid("{3EF8A58B-7FAC-468D-B8A3-DCDEC7FA548E}");
    VH_SLOTS_FROM(20);
    VH_SLOT(20) SpendCost(long first, long second) = 0;
};
