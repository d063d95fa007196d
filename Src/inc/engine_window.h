// The engine's main window and the objects that it shows.
#pragma once

#include <oaidl.h>

#include "identifiers.h"
#include "slots.h"

// A title painted on the main window. Nothing is seen before Show.
struct ISetupTitle : IDispatch {
    static constexpr GUID iid = vh::Guid("{5B0D3C84-4E0B-4D0B-9C39-0B8A51D7C1F2}");
    VH_SLOTS_FROM(7);
    // Kind 10 is the only one in use.
    VH_SLOT(7) SetKind(long kind) = 0;
    VH_SLOT(8) SetText(BSTR text) = 0;
    // The style value of the script's call, as given.
    VH_SLOT(9) SetStyle(long style) = 0;
    // Points.
    VH_SLOT(10) SetSize(long size) = 0;
    VH_SLOT(11) SetFace(BSTR face) = 0;
    // Bold 0x40, italic 0x1000, underlined 0x2000, shadow 0x4000.
    VH_SLOT(12) SetFontStyle(long style) = 0;
    VH_SLOT(13) SetShadow(VARIANT_BOOL on) = 0;
    VH_SLOT(14) Show(long on) = 0;
};

// A bitmap placed on the main window; it goes when its last reference does.
struct ISetupBitmap : IDispatch {
    static constexpr GUID iid = vh::Guid("{0E6E2C61-64B5-4C0F-8D5C-8E1D19BA50A7}");
    VH_SLOTS_FROM(7);
    // Pixels from the edges that the placement names.
    VH_SLOT(7) SetPosition(long x, long y) = 0;
};

// The wait message.
struct ISetupMessage : IDispatch {
    static constexpr GUID iid = vh::Guid("{7C57B9E5-32F3-4E5F-BB0C-9B0E6AB0F2D3}");
    VH_SLOTS_FROM(7);
    VH_SLOT(7) SetText(BSTR text) = 0;
    VH_SLOT(8) Show(VARIANT_BOOL on) = 0;
};

// The progress bar in a status window.
struct ISetupProgressBar : IDispatch {
    static constexpr GUID iid = vh::Guid("{3F0A7D19-8B1C-4B55-A3E1-6D5D0E1F7A48}");
    VH_SLOTS_FROM(7);
    VH_SLOT(7) SetWidth(long width) = 0;
    VH_SLOT(8) SetHeight(long height) = 0;
};

struct ISetupWindow : IDispatch {
    VH_SLOTS_FROM(7);
    VH_UNNAMED(7)
    VH_UNNAMED(8)
    VH_SLOT(9) GetHandle(HWND* window) = 0;
    VH_SLOT(10) SetCaption(BSTR text) = 0;
    // `gradient` paints from the colour to black.
    VH_SLOT(11) SetColor(long color, VARIANT_BOOL gradient) = 0;
    VH_SLOT(12) SetWaitCursor(VARIANT_BOOL on) = 0;
    VH_SLOT(13) CreateTitle(ISetupTitle** title) = 0;
    // `file` is a picture's path, or a library's with ";" and a resource number; `placement` one of the placement
    // flags; a transparent colour of -1 means none.
    VH_SLOT(14) CreateBitmap(BSTR file, long placement, long transparent, ISetupBitmap** bitmap) = 0;
    // A message from a dialog template, with the number of the control that takes the text.
    VH_SLOT(15) CreateMessage(BSTR library, long dialog, long control, ISetupMessage** message) = 0;
    VH_SLOT(16)
    CreateMessageFor(HWND parent, BSTR library, long dialog, long control, ISetupMessage** message) = 0;
    VH_SLOT(17) CreateBar(BSTR supportDirectory, ISetupProgressBar** bar) = 0;
};

// What dialogs tell the main window.
struct ISetupWindowEx1 : vh::unnamed_slots<IDispatch, 7, 17> {
    static constexpr GUID iid = vh::Guid("{3E906893-7A1C-42EF-841C-FA3D7E4609C6}");
    VH_SLOTS_FROM(18);
    // Whether the picture of a closed dialog stays until the next one; the truth is in the low 16 bits.
    VH_SLOT(18) SetCache(long on) = 0;
    VH_SLOT(19) DialogClosing(HWND dialog) = 0;
    VH_SLOT(20) DropPicture() = 0;
};

// Behind the former; scripts get it as an object.
struct ISetupWindowEx2 : vh::unnamed_slots<IDispatch, 7, 20> {
    static constexpr GUID iid = vh::Guid("{0817F488-2943-4CA3-9E24-53EEDA4C1AFB}");
};

// How pictures open, 0 to 7.
struct ISetupWindowEffect : IUnknown {
    static constexpr GUID iid = vh::Guid("{47719D94-8EFC-42FF-95F9-654986EF4448}");
    VH_SLOTS_FROM(3);
    VH_SLOT(3) SetEffect(long effect) = 0;
};

struct ISetupUser : IDispatch {
    static constexpr GUID iid = vh::Guid("{9428A859-6DA5-4B68-B599-3751B6C6B281}");
    VH_SLOTS_FROM(7);
    VH_SLOT(7) GetWindow(ISetupWindow** window) = 0;
};
