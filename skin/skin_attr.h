// The record that the dialog logic hands to the skin painter: which window wants which section.
#pragma once

#include <cstdint>
#include <windows.h>

struct SkinAttr {
    HWND window = nullptr;
    char sectionName[100] = "";
    char fontName[100] = "";
    int32_t fontSize = 0;
    char brandText[100] = "";
    WNDPROC previousProcedure = nullptr;
    // From 2 on the language counts.
    int32_t version = 0;
    uint16_t language = 0;
};
