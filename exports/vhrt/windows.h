/* The main window, its title, bitmaps and colours, the wait message, and fonts. */
#pragma once

#include "types.h"

/* Shows a wait message, or takes it away. In silent mode it stays hidden. Result: 0 or the engine's failing code; -1
   without a main window. */
VHRT_FUNCTION(int32_t) _SdShowMsg(ObjectContext* context, const wchar_t* text, int32_t show);

/* Whether the wait message shows in silent mode too. Result: 0. */
VHRT_FUNCTION(int32_t) _SetSilentSdShowMsg(ObjectContext* context, int32_t on);

/* Style 0xFF000100 sets the window's caption; any other paints a title of `size` points, and the engine says what the
   style means (the embedded one takes its low 24 bits as the colour). The face is that of _SetFont, to begin with
   "Times New Roman", bold and italic with a shadow. Result: 0 or the engine's failing code; 0 without a main window, -1
   where the engine brings its own windows. */
VHRT_FUNCTION(int32_t) _SetTitle(ObjectContext* context, const wchar_t* text, int32_t size, int32_t style);

/* The title's face; selector 1. Style bits 0x40 bold, 0x1000 italic, 0x2000 underlined, 0x4000 shadow at the next
   title, 8 none of them; without any of these the style before stays. Result: 0 or the engine's failing code; -1 for
   another selector and without a main window. */
VHRT_FUNCTION(int32_t) _SetFont(ObjectContext* context, int32_t selector, int32_t style, const wchar_t* face);

/* A font of `size` points with the style bits 0x40 bold, 0x1000 italic, 0x2000 underlined, 4 struck out; "Arial" for a
   face that is not there. Result: its handle, which the context deletes at its release; -1 on failure. */
VHRT_FUNCTION(int64_t) _GetFont(ObjectContext* context, const wchar_t* face, int32_t size, int32_t style);

/* Selector 12 sets the main window's colour, which fades to black when all the bits 0xC2000000 are set; 4 does nothing.
   Result: 0 or the engine's failing code; -1 for others, and without a main window. */
VHRT_FUNCTION(int32_t) _SetColor(ObjectContext* context, int32_t selector, int32_t color);

/* How pictures open, 0 to 7. Result: 0 or the engine's failing code; -1 for another number. */
VHRT_FUNCTION(int32_t) _SetDisplayEffect(ObjectContext* context, int32_t effect);

/* Places a bitmap on the main window under a number, in the place of one with that number; 0x8000 removes it. The text
   is a file, or a library with ";" and a number. Flags: 1, 2, 4, 8 at x and y from the top right, top left, bottom
   right, bottom left corner; 16384 centred; 16 stretched; 64 tiled; 128 full; 32 the text ends in ";r,g,b", the colour
   that is left out, otherwise magenta. Result: 0 or the engine's failing code; 0x80004005 without a main window. */
VHRT_FUNCTION(int32_t)
_PlaceBitmap(ObjectContext* context, const wchar_t* text, int32_t id, int32_t x, int32_t y, int32_t flags);

/* Size of the progress bar; selector 36. Result: 0; -1 for another selector. */
VHRT_FUNCTION(int32_t) _SizeWindow(ObjectContext* context, int32_t selector, int32_t width, int32_t height);

/* Result: the query's code; 0x80004003 without a window. */
VHRT_FUNCTION(int32_t) __GetMainWindow(ObjectContext* context, VARIANT* window);

/* The content of a file in the system's code page as text; empty when it can't be opened. No context. Result: 0. */
VHRT_FUNCTION(int32_t) _SendRequest(const wchar_t* path, VARIANT* text);

/* Takes the brand text off the status window and off dialogs that are defined from now on; the text counts for nothing.
   Result: 0 or the engine's failing code; -1 where the engine brings its own windows. */
VHRT_FUNCTION(int32_t) _DisableBranding(ObjectContext* context, const wchar_t* text);

/* Result: not 0 when there is such a face, else 0; -1 for an empty name. No context. */
VHRT_FUNCTION(int32_t) _IsFontTypefaceNameAvailable(const wchar_t* face);

/* A name of a TrueType file by name and language number. *size is the buffer's size on entry, in bytes of the
   stored name, and its units on return. No context. Result: 0; -1; -5 with the size needed in *size. */
VHRT_FUNCTION(int32_t)
_GetTrueTypeFontFileInfo(const wchar_t* path, int32_t name, int32_t language, wchar_t* buffer, int32_t* size);

/* The font substitution text of the resource libraries (512 units). Result: 1; 0 when there is none,
   or when it has 1024 bytes or more. */
VHRT_FUNCTION(int32_t) GetFontSub(ObjectContext* context, wchar_t* buffer);

/* The wait cursor. Result: the engine's; 0x80004005 without a main window. */
VHRT_FUNCTION(int32_t) EnableHourGlass(ObjectContext* context, int32_t on);

/* Plays a system sound. No context. Result: as MessageBeep. */
VHRT_FUNCTION(int32_t) MessageBeepP(uint32_t sound);
