/* Program folders and shortcuts through the engine's shell service, and the folder picker.

   A folder text comes with its own ending: it and the item name are joined as they stand. Results are 0, -1 or the
   engine's failing code. */
#pragma once

#include "types.h"

/* Shortcut flags. */
enum {
    IconMinimized = 1,
    IconReplace = 2, /* change an existing shortcut; without it that is a failure */
    IconNormal = 4,
    IconMaximized = 8,
    IconStartPin = 32,
    IconNoPin = 64,
    IconNotNew = 128
};

/* Makes a shortcut. The command line is split into target and arguments; a target with blanks is in quotes. An
   empty icon file means the target. Traced as "AddFolderIcon". */
VHRT_FUNCTION(int64_t)
AddIcon(ObjectContext* context, const wchar_t* folder, const wchar_t* item, const wchar_t* commandLine,
        const wchar_t* workingDir, const wchar_t* iconFile, int32_t iconIndex, const wchar_t* shortcutKey,
        int32_t flags);

/* Changes a shortcut, and its name when `newItem` is not empty. Traced as "ReplaceFolderIcon". */
VHRT_FUNCTION(int64_t)
ReplaceIcon(ObjectContext* context, const wchar_t* folder, const wchar_t* item, const wchar_t* newItem,
            const wchar_t* commandLine, const wchar_t* workingDir, const wchar_t* iconFile, int32_t iconIndex,
            const wchar_t* shortcutKey, int32_t flags);

/* Reads a shortcut: the command line to a buffer of `size` units, the other texts to buffers of 1024 units. */
VHRT_FUNCTION(int64_t)
QueryIcon(ObjectContext* context, const wchar_t* folder, const wchar_t* item, wchar_t* commandLine, int32_t size,
          wchar_t* workingDir, wchar_t* iconFile, int32_t* iconIndex, wchar_t* shortcutKey, int32_t* flags);

/* Traced as "DeleteFolderIcon", "CreateProgramFolder" and "DeleteProgramFolder". */
VHRT_FUNCTION(int64_t) DeleteIcon(ObjectContext* context, const wchar_t* path);
VHRT_FUNCTION(int64_t) CreateFolder(ObjectContext* context, const wchar_t* folder);
VHRT_FUNCTION(int64_t) DeleteFolder(ObjectContext* context, const wchar_t* folder);

/* Opens the folder's window with a show command. */
VHRT_FUNCTION(int64_t) ShowFolder(ObjectContext* context, const wchar_t* folder, int32_t command);

/* Adds the names of a folder's shortcuts and of its folders to two text lists. */
VHRT_FUNCTION(int64_t)
EnumFoldersItems(ObjectContext* context, const wchar_t* folder, ListHandle items, ListHandle folders);

/* Sets a shell property, "{format identifier}, number", of an existing shortcut. Result: 0x80070002 when there is
   no such shortcut. */
VHRT_FUNCTION(int64_t)
_SetShortcutProperty(ObjectContext* context, const wchar_t* path, const wchar_t* key, const wchar_t* value);
