// What the pages of a wizard have in common: the frame, in dialog units, and the control numbers with a meaning.
// A template file is read once for each language, with T(english, german) taking its pick.
#include <commctrl.h>
#include <windows.h>

#define ID_BRAND 7
#define ID_BACK 10
#define ID_TITLE 50
#define ID_SUBTITLE 51
#define ID_BANNER 52
#define ID_WAIT_TEXT 710
#define ID_PICTURE 1200
#define ID_SEPARATOR 1300
#define ID_BANNER_LINE 1301
#define ID_STATUS_TEXT 1400
#define ID_STATUS_FILE 1401
#define ID_STATUS_LEFT 1402
#define ID_STATUS_BAR 1403
#define ID_WARNING 17808

#define PAGE_WIDTH 460
#define PAGE_HEIGHT 305
#define PAGE_STYLE DS_SHELLFONT | DS_MODALFRAME | WS_POPUP | WS_CAPTION | WS_SYSMENU
#define PAGE_FONT FONT 8, "MS Shell Dlg", 400, 0, 1

// Windows paints siblings in their order: the banner comes before the texts that stand on it, and ends where the
// picture begins, since a picture has the controls painted again that lie over it. The picture's control gives place
// and text to the picture and is never seen itself; the brand's only marks where the library paints.
#define PAGE_BANNER(title, subtitle, width)                                                                            \
    LTEXT "", ID_BANNER, 0, 0, width, 38 LTEXT title, ID_TITLE, 14, 8, 380, 10, SS_NOPREFIX LTEXT subtitle,            \
        ID_SUBTITLE, 22, 20, 372, 10, SS_NOPREFIX CONTROL "", ID_BANNER_LINE, "Static", SS_ETCHEDHORZ, 0, 38,          \
        PAGE_WIDTH, 1

#define PICTURE_LEFT 412
#define PAGE_PICTURE LTEXT "@@10700;200", ID_PICTURE, PICTURE_LEFT, 0, 48, 38, SS_NOPREFIX | NOT WS_VISIBLE

#define PAGE_FOOT                                                                                                      \
    LTEXT "", ID_BRAND, 10, 273, 0, 0, NOT WS_VISIBLE CONTROL "", ID_SEPARATOR, "Static", SS_LEFT, 50, 277, 402, 1

#define PAGE_BUTTON_BACK PUSHBUTTON T("< &Back", "< &Zurück"), ID_BACK, 276, 284, 56, 14
#define PAGE_BUTTON_NEXT(text) DEFPUSHBUTTON text, IDOK, 332, 284, 56, 14
#define PAGE_BUTTON_CANCEL PUSHBUTTON T("Cancel", "Abbrechen"), IDCANCEL, 396, 284, 56, 14
#define PAGE_BUTTONS                                                                                                   \
    PAGE_BUTTON_BACK                                                                                                   \
    PAGE_BUTTON_NEXT(T("&Next >", "&Weiter >"))                                                                        \
    PAGE_BUTTON_CANCEL
