// Functions, values and constants of setup scripts that vhhost.exe runs. An editor takes them from here by a first line
// of the script: /// <reference path="vhrt.d.ts" />
// Made by "vhtool exports --types"; do not change it by hand.

declare namespace VHRT {
    /** A number; a truth counts as 1 or 0. */
    type Int = number | boolean;
    /** A number; beyond 2^53 a decimal text. */
    type Int64 = number | string;
    /** null and undefined pass a null pointer. */
    type Text = string | null | undefined;
    /** An array of the system, for new VBArray(...). */
    type SafeArrayValue = any;
    interface DiskInfo {
        path: string;
        request: number;
        clusterSize: number;
        totalHigh: number;
        totalLow: number;
        freeHigh: number;
        freeLow: number;
        driveType: number;
        result: number;
    }
    interface InstallerInfo {
        applicationId: string;
        displayName: string;
        productName: string;
        manufacturerName: string;
    }
    interface MediaInfo {
        number: number;
        text1: string;
        text2: string;
        text3: string;
        text4: string;
        text5: string;
        text6: string;
        text7: string;
        text8: string;
        text9: string;
        text10: string;
        text11: string;
        text12: string;
        text13: string;
        text14: string;
        truths: SafeArrayValue;
    }
    interface ProcessorInfo {
        architecture: number;
        processorCount: number;
        processorType: number;
        processorLevel: number;
        processorRevision: number;
    }
    interface UrlParts {
        scheme: string;
        schemeType: number;
        host: string;
        port: number;
        user: string;
        password: string;
        path: string;
        extra: string;
    }

    // What the host adds.

    /** Prints the values as one line. */
    function Print(...values: any[]): void;
    /** The value of --var name=value. */
    function Arguments(name: string): string | undefined;
    /** The setup folder, without a backslash at the end. */
    const SetupFolder: string;
    /** The target folder, without a backslash at the end. */
    const TargetFolder: string;
    /** --silent was given. */
    const Silent: boolean;
    /** The product is installed already. */
    const Maintenance: boolean;
    /** Stops the run as Ctrl+C does. */
    function CancelSetup(): never;
    /** The text of a control; 0 is the dialog itself. */
    function ControlText(window: Int64, control: Int): string;
    /** Changes the text of a control. */
    function SetControlText(window: Int64, control: Int, text: Text): void;
    /** Lets a control be used, or not. */
    function EnableControl(window: Int64, control: Int, on: Int): void;
    /** Gives the keyboard to a control. */
    function FocusControl(window: Int64, control: Int): void;
    /** The control's own window. */
    function ControlWindow(window: Int64, control: Int): number;
    /** The answer to a message of Windows. */
    function SendControl(window: Int64, control: Int, message: Int, number: Int64, last: Int64 | Text): number;
    /** Opens a document, a program or an address; false where the system knows no way. */
    function OpenInShell(path: string): boolean;

    // bags.h: Property bags: named values that belong to the engine and may live on another thread. None of these takes
    // the object context. Reads and writes give 0 or the bag's own failure. A null name counts as empty.

    /**
     * Takes the bag out of the marshalled stream and sets *stream to null. Result: 0; 0x80004003 for a null argument;
     * the failure of the unmarshalling, with a null bag. The caller owns the bag.
     */
    function VHRTGetPropertyBag(stream: Int64): { result: number; stream: Int64; bag: Int64 };
    /** Gives the bag back. Result: the references that are left. */
    function VHRTReleasePropertyBag(bag: Int64): number;
    /** Values are changed to the wanted type where that can be done. Truth is 1 or 0. */
    function ReadNumberProperty(bag: Int64, name: Text): { result: number; value: number };
    /** Values are changed to the wanted type where that can be done. Truth is 1 or 0. */
    function ReadBoolProperty(bag: Int64, name: Text): { result: number; value: number };
    /** *size is the buffer's size in units. Result: 0; 0x80070057 with the size that is needed in *size. */
    function ReadStringProperty(bag: Int64, name: Text): { result: number; text: string };
    /** *value is cleared and takes the value over; null gives 0x80004003. */
    function ReadArrayProperty(bag: Int64, name: Text): { result: number; value: any };
    function WriteNumberProperty(bag: Int64, name: Text, value: Int): number;
    function WriteBoolProperty(bag: Int64, name: Text, value: Int): number;
    function WriteStringProperty(bag: Int64, name: Text, text: Text): number;
    function WriteArrayProperty(bag: Int64, name: Text, value: any): number;

    // calls.h: Calls out of the script: foreign libraries and processes. None of these takes the object context.

    /**
     * Calls function(value, pointer, third) of a library, which is loaded for the call. The name is narrow text.
     * Result: the function's 32-bit result; -1 when library or function is missing.
     */
    function CallDLLFn(library: Text, function_: Text, value: Int, pointer: Text, third: Int): { result: number; pointer: string };
    /**
     * The first child of a process, by rising id. `parent` is an open handle of that process, or null. Result: the
     * child's id, or 0.
     */
    function GetRunningChildProcess(process: Int): number;
    /**
     * The first child of a process, by rising id. `parent` is an open handle of that process, or null. Result: the
     * child's id, or 0.
     */
    function GetRunningChildProcessEx(process: Int, parent: Int64): number;
    /**
     * The same with all descendants on demand. Result: a handle with all process rights, which the caller closes; null
     * when there is none.
     */
    function GetRunningChildProcessEx2(process: Int, parent: Int64, descendants: Int): number;
    /** Ends every process that has one of the executable names, which ";" separates. Result: 0 or a system error code. */
    function KillProcesses(names: Text): number;
    /**
     * Sets the folder that library loads search, as SetDllDirectoryW; null and the empty text take the current folder
     * out of the search. Result: that function's; 1 where the system lacks it.
     */
    function SetDllDirectory(path: Text): number;

    // component_view.h: The hand-painted selection list of a media inside a script dialog.

    /** Makes the view for a placeholder control. Result: null on failure. */
    function ComponentViewCreate(dialog: Int64, control: Int): number;
    /** Puts the view's window in the placeholder's place. Result: 0 or -1. */
    function ComponentViewCreateWindow(view: Int64): number;
    /**
     * `number` is a control id, a flag or, for parent and child, a view; `text` a directory, media or item. Result: 1;
     * for the target directory and the parent item 0 or -1; 0 for another info number.
     */
    function ComponentViewSetInfo(view: Int64, info: Int, number: Int64, text: Text): number;
    /** Unit and decimals, for all views of the process. Result: 1; 0 for another info number. */
    function ComponentViewSetInfoEx(info: Int, number: Int): number;
    /** Texts go to a buffer of `size` units; a null output is left out. Result: 0; -1 for another info number. */
    function ComponentViewQueryInfo(view: Int64, info: Int): { result: number; number: Int64; text: string };
    /** Result: 0 or -1. */
    function ComponentViewRefresh(view: Int64): number;
    /** Result: 0; -1 when an exclusive view should select several items. */
    function ComponentViewSelectAll(view: Int64, select: Int): number;
    /** Frees the view; its window ends with the dialog. Result: 0; -1 for null. */
    function ComponentViewDestroy(view: Int64): number;

    // components.h: Components and features: items of a named media, their attributes, selection, sizes and costs.
    // `media` names the media ("DATA" is the product's features, "VHSUPPORTFILES" the support files), `item` an item by
    // its path with backslashes; case counts in both. Results are 0 or a failure that scripts know: -102 exists
    // already, -103 selection refused, -105 no such item, -108 not enough space, -126 not supported by this media, -132
    // no such media, -137 unknown attribute, -140 attribute can't be written.

    /** Attributes: numbers go to *number, texts to a buffer of `size` units by the length rule. */
    function ComponentGetData(media: Text, item: Text, attribute: Int): { result: number; number: number; text: string };
    /** Attributes: numbers go to *number, texts to a buffer of `size` units by the length rule. */
    function ComponentSetData(media: Text, item: Text, attribute: Int, number: Int, text: Text): number;
    /** Selects or unselects an item; the empty item stands for all. */
    function ComponentSelectItem(media: Text, item: Text, selected: Int): number;
    /** Selects what is new in an update. */
    function ComponentSelectNew(media: Text, selected: Int): number;
    /** Result: 1 or 0, or a failure. */
    function ComponentIsItemSelected(media: Text, item: Text): number;
    /**
     * Leave out what is for these operating systems (a set of the engine's bits, its low and high half), or for this
     * language, and for nothing else that takes part. A `flag` of 0 lets them take part again.
     */
    function ComponentFilterOS(media: Text, first: Int, second: Int, flag: Int): number;
    /**
     * Leave out what is for these operating systems (a set of the engine's bits, its low and high half), or for this
     * language, and for nothing else that takes part. A `flag` of 0 lets them take part again.
     */
    function ComponentFilterLanguage(media: Text, language: Int, flag: Int): number;
    /** Adds the children's paths, or the setup types' names, to a text list. The parent "" is the root. */
    function ComponentListItems(media: Text, parent: Text, list: Int64): number;
    /** Adds the children's paths, or the setup types' names, to a text list. The parent "" is the root. */
    function ComponentSetupTypeEnum(media: Text, list: Int64): number;
    /** Attribute 1 is the description, 2 the display name. Failures: -3 no such type, -5 unknown attribute. */
    function ComponentSetupTypeGetData(media: Text, setupType: Text, attribute: Int): { result: number; number: number; text: string };
    /** Attribute 1 is the description, 2 the display name. Failures: -3 no such type, -5 unknown attribute. */
    function ComponentSetupTypeSet(media: Text, setupType: Text): number;
    /** Size of an item in bytes, at most 0x7FFFFFFF; -1 in *size on failure. */
    function ComponentGetItemSize(media: Text, item: Text): { result: number; size: number };
    /** Result: the size in bytes with all below, at most 0x7FFFFFFF; or a failure. `shift` has no effect. */
    function ComponentTotalSize(media: Text, item: Text, wholeTree: Int, flag2: Int, shift: Int): number;
    /**
     * Looks for a drive without room for the selection. Result: 0 with *size 0; -108 with the drive's root in a buffer
     * of 260 units and the bytes needed, as far as 32 bits hold them, in *size.
     */
    function ComponentCompareSizeRequired(media: Text): { result: number; drive: string; size: number };
    /** Checks a key for an item that asks for one. Result: 0; -139 wrong key; -141 none is needed. */
    function ComponentValidate(media: Text, item: Text, key: Text): number;
    /** Adds an item to a script media, which the first item makes. Other media: 0x8004F07E as it stands. */
    function ComponentAddItem(media: Text, item: Text, size: Int, selected: Int): number;
    /**
     * The last error of a media: its code, the item or text in a buffer of `size` units, and two details without a
     * limit (1024 units each will do). Result: 0; length + 1 when the text does not fit.
     */
    function ComponentError(media: Text): { result: number; text: string; detail1: string; detail2: string; code: number };
    /** The engine's error object of the media that was used last, whose name goes to `media` (260 units). */
    function ComponentErrorInfo(): { result: number; error: any; media: string };
    /** Result: the code as it stands. The context is not tested. */
    function MediaGetInfo(media: Text, info: Partial<MediaInfo> | null): { result: number; info: MediaInfo };
    /** Adds the filtering numbers of a kind to a number list. Result: the code as it stands. The context is not tested. */
    function MediaGetFilteringInfo(media: Text, kind: Int, list: Int64): number;

    // context.h: The object context: one per script run. A context belongs to the thread that made it.

    /**
     * Makes the context of a script run and fills it from the engine. A service that is missing leaves its part empty
     * and is no error. Never null; exhausted memory is raised (see exceptions.h). The context keeps references on both
     * objects until its release.
     */
    function CreateObjectContext(): number;
    /**
     * A light context without media, objects, log and status display, for a caller that has no data set. `directory`
     * serves as support and engine directory; null counts as empty. Null when `services` is null.
     */
    function CreateObjectContextSuiteExt(directory: Text): number;
    /** Releases a context and all that it owns. The first must not be given null; the second ignores it. */
    function ReleaseObjectContext(other: Int64): void;
    /** Releases a context and all that it owns. The first must not be given null; the second ignores it. */
    function ReleaseObjectContextSuiteExt(other: Int64): void;
    /**
     * Takes a marshalled ISetupLog out of *stream and sets *stream to null; on success it becomes the current log and
     * the component log, and the log before it is kept for the two functions below.
     */
    function SetComponentLog(stream: Int64): { result: void; stream: Int64 };
    /**
     * Puts the kept log back as the current one; a null context is ignored. Ex: a flag that is not 0 also drops the
     * component log. Without a component log before, the current log becomes null.
     */
    function RestoreMainLog(): void;
    /**
     * Puts the kept log back as the current one; a null context is ignored. Ex: a flag that is not 0 also drops the
     * component log. Without a component log before, the current log becomes null.
     */
    function RestoreMainLogEx(flag: Int): void;
    /** Result: the window or module as a number; 0 for another selector, for what is absent and for a null context. */
    function GetHandle(selector: Int): number;

    // costs.h: Costs of items and of the selection: what they need on a drive. Media, items and failures as in
    // components.h.

    /**
     * Cost on the drive of `target` in units of 1024 bytes, rounded, never 0 for what is not empty; the total is that
     * of the whole selection. A null target gives -1.
     */
    function ComponentGetCost(media: Text, item: Text, target: Text): { result: number; cost: number };
    /**
     * Cost on the drive of `target` in units of 1024 bytes, rounded, never 0 for what is not empty; the total is that
     * of the whole selection. A null target gives -1.
     */
    function ComponentGetTotalCost(media: Text, target: Text): { result: number; cost: number };
    /**
     * The same as text with two decimals (32 units), in kilobytes, megabytes or gigabytes: *unit is 10, 20 or 30. No
     * cost gives the empty text.
     */
    function ComponentGetCostEx(media: Text, item: Text, target: Text): { result: number; text: string; unit: number };
    /**
     * The same as text with two decimals (32 units), in kilobytes, megabytes or gigabytes: *unit is 10, 20 or 30. No
     * cost gives the empty text.
     */
    function ComponentGetTotalCostEx(media: Text, target: Text): { result: number; text: string; unit: number };
    /** The cost in bytes, in 31-bit halves. */
    function FeatureGetCost(media: Text, item: Text, target: Text): { result: number; high: number; low: number };
    /** Adds bytes to an item's cost, at a path or for removal. The context is not tested. Result: 0 or -1. */
    function FeatureAddCost(media: Text, item: Text, path: Text, low: Int, high: Int): number;
    /** Adds bytes to an item's cost, at a path or for removal. The context is not tested. Result: 0 or -1. */
    function FeatureAddUninstallCost(media: Text, item: Text, low: Int, high: Int): number;

    // dialog_messages.h: The event that WaitOnDialog returned for, and special controls of a dialog. An unknown dialog
    // gives -1.

    /**
     * Result: the dialog's window as a number; 0 when it has none or is unknown. The empty name means the current
     * dialog, "ProgressDlg" the status window.
     */
    function CmdGetHwndDlg(dialog: Text): number;
    /** Result: message, wParam and lParam of the current event. */
    function CmdGetMsg(dialog: Text): number;
    /** Result: message, wParam and lParam of the current event. */
    function CmdGetParam1(dialog: Text): number;
    /** Result: message, wParam and lParam of the current event. */
    function CmdGetParam2(dialog: Text): number;
    /** Result: an event code; the first also gives raw notification codes. */
    function CtrlGetNotificationCode(dialog: Text): number;
    /** Result: an event code; the first also gives raw notification codes. */
    function CtrlGetSubCommand(dialog: Text): number;
    /**
     * The URL of the link clicked last in a control. The buffer needs one unit more than *size says. Result: 0; 111
     * with the length needed in *size; -1 when the control is no link control.
     */
    function CtrlGetUrlForLinkClicked(dialog: Text, control: Int): { result: number; text: string };
    /**
     * Turns a static control into a link, or sets its content: text that starts with "[html]" or "[hyperlink]". Result:
     * 0, also for other kinds of control; -1 for other text.
     */
    function CtrlSetHtmlContent(dialog: Text, control: Int, text: Text): number;
    /**
     * Streams a text (RTF when it begins with "{\rtf1") or a file (RTF when its name ends in ".rtf") into a rich edit
     * control, also a read-only one. Result: 0; of the second also the stream's error, -4 for a null path, or the
     * system error when the file can't be opened; the last two leave the control writable.
     */
    function CtrlSetMLERichText(dialog: Text, edit: Int64, text: Text): number;
    /**
     * Streams a text (RTF when it begins with "{\rtf1") or a file (RTF when its name ends in ".rtf") into a rich edit
     * control, also a read-only one. Result: 0; of the second also the stream's error, -4 for a null path, or the
     * system error when the file can't be opened; the last two leave the control writable.
     */
    function CtrlSetMLERichTextEx(dialog: Text, edit: Int64, path: Text): number;
    /**
     * Result: the window that fits as parent of a further dialog, as a number: the current dialog's, or the installer's
     * where setup fact 40 is not 0; 0 for none.
     */
    function CtrlGetParentWindowHelper(): number;

    // dialogs.h: Script dialogs: defined by name, run by a loop around WaitOnDialog, ended and released; and skins.
    // Where the engine brings its own windows, DefineDialog, EndDialog, ReleaseDialog and DialogSetFont answer -1.

    /**
     * Defines a dialog. The template is the resource name, or the number when the name is empty: in `library`, which
     * has to be there; in `module` when that is empty or can't be loaded; without both in the context's resource
     * library that has the number. Parent -2 means the main window. Result: 0; -1 also when the name is taken, or
     * without a library in a context that has none.
     */
    function DefineDialog(name: Text, module: Int64, library: Text, resource: Int, resourceName: Text, reserved: Int, parent: Int64, style: Int): number;
    /**
     * Creates the dialog (DialogCreated), then shows it and waits for its next event. Result: the number of the
     * control; 1 in silent mode; 8 for F1; 0 when the thread's message loop ends; -1 on failure.
     */
    function WaitOnDialog(name: Text): number;
    /**
     * Closes the dialog's window and takes the top name off the stack of active dialogs; the dialog stays defined.
     * "ProgressDlg" is the status window. Result: 0; -1 when it is unknown; the engine's failing code.
     */
    function EndDialog(name: Text): number;
    /** Removes the definition. Result: 0; -4 unknown; -2 still open. */
    function ReleaseDialog(name: Text): number;
    /**
     * 0 puts a name on the stack of active dialogs, which disables the window that was current; any other number takes
     * the top name off, whatever `name` says, and enables the window below. Result: 0.
     */
    function EnablePrevDialog(enable: Int, name: Text): number;
    /** Whether the engine keeps the picture of a closed dialog until the next one shows. Result: 0. */
    function EnableDialogCache(enable: Int): number;
    /** The current dialog's name. Result: 0; length + 1 when it does not fit; -1 when there is none. */
    function GetCurrentDialogName(): { result: number; name: string };
    /**
     * Font of all dialogs that are created from now on, size in points; an empty face leaves the templates' own.
     * Result: 0.
     */
    function DialogSetFont(face: Text, size: Int): number;
    /** Switches a loaded skin. Result: 0. */
    function EnableSkins(enable: Int): number;
    /** Result: 1 or 0. */
    function IsSkinLoaded(): number;

    // disks.h: Existence, disk sizes and file signatures. None of these takes the object context; a null path counts as
    // empty. Sizes in 31-bit halves: the low field holds the low 31 bits, the high field the rest.

    /**
     * Result: 1 there is such a file, 0 there is not (a directory is none), or a system error code. URLs are tested by
     * opening them.
     */
    function ExistsFile(path: Text): number;
    /** Result: 0 there is such a directory, -1 there is not, or a system error code. */
    function ExistsDir(path: Text): number;
    /** Tests the root of the path. Result: 0 it exists, -1 it does not, -2 the drive isn't ready. */
    function ExistsDisk(path: Text): number;
    /**
     * Fills what was requested and leaves the rest alone. Result: -1 for a null record; the size query's result; 0 when
     * no size was wanted.
     */
    function GetDiskInfo(info: Partial<DiskInfo> | null): { result: number; info: DiskInfo };
    /**
     * Free bytes (`which` not 0) or total bytes, shifted right by `shift`. A value of 0x80000000 or more is stored as
     * 0x7FFFFFFF. Result: 0 or -1.
     */
    function GetDiskSpaceEx(path: Text, shift: Int, which: Int): { result: number; high: number; low: number };
    /**
     * The same as text with two decimals (32 units). With `keep` 0 the shift is chosen and stored: 30, 20 or 10 for
     * gigabytes, megabytes, kilobytes. Result: 0 or -1.
     */
    function GetDiskSpaceExEx(path: Text, shift: Int, keep: Int, which: Int): { result: number; text: string; shift: number };
    /**
     * MD5 (RFC 1321) of a file's content as 32 upper-case digits, in a buffer of 33 units. Result: 0 or a negative
     * code. A file that can't be opened also gives 0, with no valid signature in the text: test its existence first.
     */
    function GenerateFileMD5SignatureHex(path: Text): { result: number; text: string };

    // drivers.h: Driver packages, through difxapi.dll of the support directory. Result: the driver library's code,
    // positive ones as 0x8007xxxx; -1 for a null context; 0x80029C4A when the library is missing; 0x80070001 when it
    // has no such function.

    function DIFxDriverPackagePreinstall(package: Text, flags: Int): number;
    /** *reboot becomes 1 when the system has to be restarted. */
    function DIFxDriverPackageInstall(package: Text, flags: Int, installer: Partial<InstallerInfo> | null): { result: number; installer: InstallerInfo; reboot: number };
    /** *reboot becomes 1 when the system has to be restarted. */
    function DIFxDriverPackageUninstall(package: Text, flags: Int, installer: Partial<InstallerInfo> | null): { result: number; installer: InstallerInfo; reboot: number };
    /** *size counts units: the buffer's on entry, the needed ones on return. */
    function DIFxDriverPackageGetPath(package: Text): { result: number; text: string };

    // facts.h: Facts about the machine and the user. None of these takes the object context.

    /** Result: 386, 486 or 586; 0 for every other processor type, 64-bit ones included. */
    function GetCPUType(): number;
    /** Result: 0; -1 for a null record. */
    function GetProcessorInfo(info: Partial<ProcessorInfo> | null): { result: number; info: ProcessorInfo };
    /**
     * Physical memory in bytes, shifted right by `shift`, in 32-bit halves. A limit that is not 0 caps its half; a low
     * half above its limit also clears the high one. Result: 0.
     */
    function GetGlobalMemorySize(shift: Int, highLimit: Int, lowLimit: Int): { result: number; high: number; low: number };
    /** Printer and serial ports. Result: 0; -1 with both counts 0 when they can't be listed. */
    function GetPorts(): { result: number; printerPorts: number; serialPorts: number };
    /** Result: dots per inch of the main monitor. */
    function GetSystemDpi(): number;
    /** Result: 1 or 0: administrator, power user, member of the administrators also when only to deny. */
    function IsNTAdmin(): number;
    /** Result: 1 or 0: administrator, power user, member of the administrators also when only to deny. */
    function IsPowerUser(): number;
    /** Result: 1 or 0: administrator, power user, member of the administrators also when only to deny. */
    function IsInAdminGroup(): number;
    /** Result: 1 or 0: the system library is version 4.90; a 32-bit process on a 64-bit system; an ARM64 machine. */
    function IsWindowsME(): number;
    /** Result: 1 or 0: the system library is version 4.90; a 32-bit process on a 64-bit system; an ARM64 machine. */
    function IsWow64(): number;
    /** Result: 1 or 0: the system library is version 4.90; a 32-bit process on a 64-bit system; an ARM64 machine. */
    function IsArm64(): number;
    /**
     * Flag 0 switches redirection of the system folder off, another puts it back as before; calls nest. Result: 0; -1
     * on failure and outside a 32-bit process on a 64-bit system.
     */
    function EnableWow64FsRedirection(on: Int): number;
    /** Result: 1 or 0; the kind of virtual machine, 0 for none. */
    function IsVirtualMachine(): number;
    /** Result: 1 or 0; the kind of virtual machine, 0 for none. */
    function GetVirtualMachineType(): number;

    // file_copy.h: File copy and directories through the engine, and small queries on files that may lie on the
    // internet.

    /**
     * Copies files; wildcards, URL sources and most flags are the engine's. Traced as "XCopyFile". Result: 0, -1
     * without services, or the engine's failing code.
     */
    function FileCopy(source: Text, target: Text, flags: Int): number;
    /** Makes a directory, logged for removal. Traced as "CreateDir". Results as above. */
    function CreateDir(path: Text): number;
    /**
     * Size in bytes, low 32 bits, and last-write time of a local file or URL. Result: 0; -1 or, for a URL, the
     * failure's code, with nothing written. No context.
     */
    function GetInetFileSize(path: Text): { result: number; size: number };
    /**
     * Size in bytes, low 32 bits, and last-write time of a local file or URL. Result: 0; -1 or, for a URL, the
     * failure's code, with nothing written. No context.
     */
    function GetInetFileTime(path: Text): { result: number; time: Int64 };
    /**
     * Rounds a size, given in 31-bit halves, up to whole clusters and adds it to a sum in the same form; no carry goes
     * from low to high. The cluster size must not be 0. Result: 0. No context.
     */
    function CalculateAndAddFileCost(high: Int, low: Int, cluster: Int, highSum: Int, lowSum: Int): { result: number; highSum: number; lowSum: number };

    // file_info.h: Files of an item. Media, items and failures as in components.h.

    /** Adds the item's files that fit the pattern to a text list. A pattern may start with a directory. */
    function ComponentFileEnum(media: Text, item: Text, pattern: Text, list: Int64, flag: Int): number;
    /**
     * One fact of a file of the item. *number takes a number; for the facts that give several it holds a number list on
     * entry, which gets them. Text (1024 units) takes texts, dates and times. Result: 0; -1 for a file fact without a
     * file; or a failure.
     */
    function ComponentFileInfo(media: Text, item: Text, group: Text, path: Text, fact: Int, number: Int64): { result: number; number: Int64; text: string };

    // files.h: Script files: text read and written by lines, and bytes. Paths that start with http:// or https:// can
    // be read. Results are 32-bit values, sign-extended: -1 for failures and the end of the file, -500 when the
    // operation does not belong to the mode, -501 when no file has the handle.

    /**
     * Opens a file; `create` makes it, or empties it, and opens it for writing too. Text is UTF-16 with its mark, or in
     * the system's code page; FileAppendUnicodeText writes the mark on creation. Result: the handle; -1; -2 for a URL
     * in a mode that writes.
     */
    function OpenFile(path: Text, mode: Int, create: Int): number;
    /** Result: 0; -1 with the file still open. */
    function CloseFile(file: Int): number;
    /**
     * Takes the next line without its end, cut at `size` units or padded with zeros up to it: a line of `size` units or
     * more arrives without a terminator.
     */
    function GetLine(file: Int, line: number): { result: number; line: string };
    /** The length of the next line in units, without terminator; the line stays the next one. */
    function GetLineSize(file: Int): { result: number; size: number };
    /** Adds a line at the end of the file. */
    function WriteLine(file: Int, text: Text): number;
    /**
     * Reads to, or writes from, buffer + offset: the smaller of `count` and size - offset bytes. Result: the bytes
     * done; -1 also for an offset not below the size.
     */
    function ReadBytes(file: Int, bytes: string | number, offset: Int, count: Int): { result: number; bytes: string };
    /**
     * Reads to, or writes from, buffer + offset: the smaller of `count` and size - offset bytes. Result: the bytes
     * done; -1 also for an offset not below the size.
     */
    function WriteBytes(file: Int, bytes: string | number, offset: Int, count: Int): { result: number; bytes: string };
    /** Result: 0; -1 also for another origin. */
    function SeekBytes(file: Int, distance: Int, origin: Int): number;

    // folder_picker.h: The platform's dialog in which the user picks a folder.

    /**
     * Lets the user pick a folder in the platform's dialog, over the main window. Null or empty texts mean the numbered
     * ones of the resource libraries: title 14003, message 11626, `editLabel` 17600, `statusLabel` 17601. With an edit
     * control `editLabel` stands above it and `statusLabel` below, and what is typed is the answer: blanks at its ends
     * and one backslash behind it are dropped. OK refuses a folder whose disk is not there, whose syntax is wrong or,
     * with `verify`, which is there already or can't be made: text 14002, with %s for the folder, under the title
     * 11115. The folder is not made. Without an edit control `statusLabel` is the status line, and the answer is the
     * path of the selected item, which may be empty; its display name when it has no path and a flag of 0x300A is set.
     * `path`, of `size` units, holds the starting folder; it loses one backslash at its end at once, and after OK it
     * holds the answer. On a thread that is in a multithreaded apartment the dialog has its old style. Result: 1
     * picked, 2 cancelled, -1 for a null `path`, no room, or an answer that does not fit.
     */
    function BrowseForFolder(title: Text, message: Text, editLabel: Text, statusLabel: Text, flags: Int, path: Text, verify: Int): { result: number; path: string };

    // folders.h: Program folders and shortcuts through the engine's shell service, and the folder picker. A folder text
    // comes with its own ending: it and the item name are joined as they stand. Results are 0, -1 or the engine's
    // failing code.

    /**
     * Makes a shortcut. The command line is split into target and arguments; a target with blanks is in quotes. An
     * empty icon file means the target. Traced as "AddFolderIcon".
     */
    function AddIcon(folder: Text, item: Text, commandLine: Text, workingDir: Text, iconFile: Text, iconIndex: Int, shortcutKey: Text, flags: Int): number;
    /** Changes a shortcut, and its name when `newItem` is not empty. Traced as "ReplaceFolderIcon". */
    function ReplaceIcon(folder: Text, item: Text, newItem: Text, commandLine: Text, workingDir: Text, iconFile: Text, iconIndex: Int, shortcutKey: Text, flags: Int): number;
    /** Reads a shortcut: the command line to a buffer of `size` units, the other texts to buffers of 1024 units. */
    function QueryIcon(folder: Text, item: Text): { result: number; commandLine: string; workingDir: string; iconFile: string; iconIndex: number; shortcutKey: string; flags: number };
    /** Traced as "DeleteFolderIcon", "CreateProgramFolder" and "DeleteProgramFolder". */
    function DeleteIcon(path: Text): number;
    /** Traced as "DeleteFolderIcon", "CreateProgramFolder" and "DeleteProgramFolder". */
    function CreateFolder(folder: Text): number;
    /** Traced as "DeleteFolderIcon", "CreateProgramFolder" and "DeleteProgramFolder". */
    function DeleteFolder(folder: Text): number;
    /** Opens the folder's window with a show command. */
    function ShowFolder(folder: Text, command: Int): number;
    /** Adds the names of a folder's shortcuts and of its folders to two text lists. */
    function EnumFoldersItems(folder: Text, items: Int64, folders: Int64): number;
    /**
     * Sets a shell property, "{format identifier}, number", of an existing shortcut. Result: 0x80070002 when there is
     * no such shortcut.
     */
    function SetShortcutProperty(path: Text, key: Text, value: Text): number;

    // language.h: Texts of the resource libraries and of the string table, and language identifiers.

    /**
     * A numbered text of the user's or the standard resource library, to a buffer of `size` units, cut to fit. The
     * context must not be null. Result: its length; 0 when there is none.
     */
    function LangLoadString(id: Int): { result: number; text: string };
    /**
     * A named text of the string table. Result: 0; length + 1 when it does not fit; -1 when there is none; the engine's
     * failing code.
     */
    function LoadString(name: Text): { result: number; text: string };
    /** Result: the identifier with sublanguage 1 when it has none. No context. */
    function GetStandardLangId(language: Int): number;
    /** Result: 1 when the configuration file lists the language as supported, else 0. No context. */
    function IsLangSupported(language: Int, path: Text): number;

    // lists.h: Script lists: numbered sequences of 32-bit integers or of texts with one current position. All results
    // but that of ListCreate are 32-bit values, sign-extended. Beyond the results told with each function: -501 when no
    // list has the handle, -500 when the operation does not belong to the list's type.

    /** Makes an empty list of the type. Result: its handle, -1 for another type or without memory. */
    function ListCreate(type: Int): number;
    /** Destroys the list and sets the variable to 0. Result: 0; -501 with the variable left alone. */
    function ListDestroy(list: Int64): { result: number; list: Int64 };
    /** Result: the number of elements. */
    function ListCount(list: Int64): number;
    /** Result: -1 for a number list, 0 for a string list. */
    function ListGetType(list: Int64): number;
    /**
     * Inserts behind (ListAddAfter) or in front of (ListAddBefore) the current element; the new element becomes
     * current. Result: 0; -1 for another mode.
     */
    function ListAddItem(list: Int64, value: Int, mode: Int): number;
    /**
     * Inserts behind (ListAddAfter) or in front of (ListAddBefore) the current element; the new element becomes
     * current. Result: 0; -1 for another mode.
     */
    function ListAddString(list: Int64, text: Text, mode: Int): number;
    /** The current element. Result: 0; 1 when the list is empty, with the output unchanged. */
    function ListCurrentItem(list: Int64): { result: number; value: number };
    /**
     * Copies the current text to a buffer of `size` units. Result: 0; length + 1 when it does not fit; -502 when the
     * list is empty.
     */
    function ListCurrentString(list: Int64): { result: number; text: string };
    /** Replaces the current element. Result: 0; 1 when the list is empty. */
    function ListSetCurrentItem(list: Int64, value: Int): number;
    /** Replaces the current element. Result: 0; 1 when the list is empty. */
    function ListSetCurrentString(list: Int64, text: Text): number;
    /**
     * Removes the current element; the one behind it becomes current, or the new last one. Result: 0; 1 when the list
     * is empty.
     */
    function ListDeleteItem(list: Int64): number;
    /**
     * Removes the current element; the one behind it becomes current, or the new last one. Result: 0; 1 when the list
     * is empty.
     */
    function ListDeleteString(list: Int64): number;
    /** Removes all elements. Result: 0. */
    function ListDeleteAll(list: Int64): number;
    /**
     * Moves to the first or next element and delivers it. Result: 0; 1 when there is none, with the position and the
     * output unchanged.
     */
    function ListGetFirstItem(list: Int64): { result: number; value: number };
    /**
     * Moves to the first or next element and delivers it. Result: 0; 1 when there is none, with the position and the
     * output unchanged.
     */
    function ListGetNextItem(list: Int64): { result: number; value: number };
    /**
     * The same for texts, into a buffer of `size` units. Result: 0; -502 when there is no element; length + 1 when the
     * text does not fit: "next" has then not moved, so a retry gets the same element.
     */
    function ListGetFirstString(list: Int64): { result: number; text: string };
    /**
     * The same for texts, into a buffer of `size` units. Result: 0; -502 when there is no element; length + 1 when the
     * text does not fit: "next" has then not moved, so a retry gets the same element.
     */
    function ListGetNextString(list: Int64): { result: number; text: string };
    /**
     * Searches from the current element, which is included, to the end; texts compare exactly. Result: 0 with the hit
     * current; 1 with the position unchanged. ListFindItem answers -500 for an unknown handle.
     */
    function ListFindItem(list: Int64, value: Int): number;
    /**
     * Searches from the current element, which is included, to the end; texts compare exactly. Result: 0 with the hit
     * current; 1 with the position unchanged. ListFindItem answers -500 for an unknown handle.
     */
    function ListFindString(list: Int64, text: Text): number;
    /**
     * Moves to a zero-based index or by one of the special indices. Result: 0; 1 when there is no such element; -1 for
     * ListIndexPrevious on the first element.
     */
    function ListSetIndex(list: Int64, index: Int): number;
    /** The zero-based index of the current element. Result: 0; 1 when the list is empty. */
    function ListGetIndex(list: Int64): { result: number; index: number };
    /**
     * Adds the lines of a text file behind the current element; the last line becomes current. Result: 0; the result of
     * OpenFile when the file can't be opened.
     */
    function ListReadFromFile(list: Int64, path: Text): number;
    /**
     * Writes one line per element. Without ListWriteUnicode and ListWriteAnsi an existing file keeps its encoding; with
     * ListWriteAppend it always does. Result: 0 or -1.
     */
    function ListWriteToFile(list: Int64, path: Text, flags: Int): number;

    // main_image.h: The picture in a dialog's image control, and the palette.

    /**
     * Sets the picture of the status window and of all dialogs from their next creation on. Result: 0, also for another
     * kind, which changes nothing; 0x80070004 when there is no such file; the engine's failing code; -1 where the
     * engine brings its own windows.
     */
    function SetAltMainImage(kind: Int, text: Text): number;
    /**
     * The same by file and scale in percent, at least 25; -1 means the picture before, 0 none. Result: also -2 for a
     * smaller scale.
     */
    function SetAltMainImageEx(scale: Int, path: Text): number;
    /**
     * Reads a palette file (RIFF) for pictures on displays of 8 bits or fewer; one that can't be used clears the
     * palette. Result: 0.
     */
    function SetPaletteFile(path: Text): number;

    // objects.h: COM objects and managed objects for scripts. None of these takes the object context. The VARIANT is
    // cleared and gets type VT_DISPATCH with one reference. Null texts count as empty. Result: 0 or the failing code.
    // Traced.

    /** A new object by ProgID. */
    function CreateObject(progId: Text): { result: number; object: any };
    /**
     * The object that a moniker or file names or, with an empty name, the running object of a ProgID. Result:
     * 0x80070057 for a null VARIANT.
     */
    function CoGetObject(name: Text, progId: Text): { result: number; object: any };
    /**
     * A managed object in an application domain of the given name, or in the default one. Failures are raised as
     * vh::com_exception or vh::win32_exception.
     */
    function DotNetCoCreateObject(assembly: Text, className: Text, domain: Text): { result: number; object: any };
    /** Unloads all domains of the name. Result: 0; -1 when there was none. */
    function DotNetUnloadAppDomain(domain: Text): number;

    // paths.h: Paths and URLs taken apart. None of these takes the object context; a null text counts as empty. Text
    // results go to a buffer of `size` units with the terminator. Result: 0; length + 1 with nothing written when it
    // does not fit; -1 for a null buffer.

    /** "c:" of "c:\a\b.txt", "\\server\share" of a network path. */
    function PathGetDrive(path: Text): { result: number; text: string };
    /** "\a\" of "c:\a\b.txt": the path part without the root. */
    function PathGetDir(path: Text): { result: number; text: string };
    /** "c:\a\" of "c:\a\b.txt", with the last backslash. */
    function PathGetPath(path: Text): { result: number; text: string };
    /** "b.txt", "b" and "txt" of "c:\a\b.txt". */
    function PathGetFile(path: Text): { result: number; text: string };
    /** "b.txt", "b" and "txt" of "c:\a\b.txt". */
    function PathGetFileName(path: Text): { result: number; text: string };
    /** "b.txt", "b" and "txt" of "c:\a\b.txt". */
    function PathGetFileExt(path: Text): { result: number; text: string };
    /** Every short name replaced by its long one; the path as it stands when one of its parts can't be found. */
    function PathGetLongFromShort(path: Text): { result: number; text: string };
    /**
     * Replaces folders by "..." until the text fits the width of the window's client area, or no folder is left.
     * Result: also -1 when the window gives no device context.
     */
    function PathCompactPathPixel(window: Int64, path: Text): { result: number; text: string };
    /**
     * Result: 0; -1 at the first component that does not fit, with the earlier ones written and no numbers. A text that
     * is no URL gives empty texts, leaves the numbers alone and answers 0.
     */
    function PathCrackUrl(url: Text, parts: Partial<UrlParts> | null): { result: number; parts: UrlParts };
    /** Result: 1 for a path or URL that could be valid, 0 for another, or a system error code. */
    function PathIsValidSyntax(text: Text): number;

    // permissions.h: Access rights of files, folders and registry keys.

    /**
     * Adds one entry to the object's access list; on folders and keys what lies in them inherits it. A key's name
     * begins with "MACHINE", "CURRENT_USER", "CLASSES_ROOT" or "USERS". `account` is a well-known name, a SID as text
     * or an account, of `domain` when that is not empty. `access` is an access mask. A key with the flags 2, 4 or 16 is
     * left to the engine's helper. Each step is a line in the engine's log for scripts. Result: 0 or the code of the
     * step that failed, a system error as it is or an HRESULT; a list that can't be written back at the end is not
     * reported. -1 for a null context.
     */
    function SetObjectPermissions(object: Text, kind: Int, domain: Text, account: Text, access: Int, flags: Int): number;

    // phases.h: Install phases that go on to the host, and the host's objects. Without a host the phases answer
    // 0x80004003.

    /** Result: what the host answers. */
    function InitInstall(): number;
    /** Result: what the host answers. */
    function ExitInstall(): number;
    /** Result: what the host answers. */
    function CCPSearch(): number;
    /** Result: what the host answers. */
    function AppSearch(): number;
    /** Phases that a host may leave out. Result: what the host answers; 0 when it has no such phase. */
    function Preprogram(): number;
    /** Phases that a host may leave out. Result: what the host answers; 0 when it has no such phase. */
    function Postprogram(): number;
    /** Phases that a host may leave out. Result: what the host answers; 0 when it has no such phase. */
    function OnUninstPriv(): number;
    /** Result: 0 or the host's failure. */
    function Rebooted(): number;
    /** Result: 0 or the host's failure. */
    function ShowWizardPages(value: Int): number;
    /**
     * Shows the wizard pages of the host's objects, backward with value 12: each answers the value that the next one
     * gets. Result: the last value, or the failure of a page; the value itself without context or objects.
     */
    function ShowObjWizardPages(value: Int): number;
    /** Leaves three texts for the run after a restart; null texts stay null. Result: the reboot service's. */
    function RebootPutString(text1: Text, text2: Text, text3: Text): number;
    /**
     * An object of the host by name or 1-based index; the empty name and index 0 stand for the host. Result: 0, the
     * code of the failing step, or -1 without objects or host.
     */
    function GetObject(name: Text): { result: number; object: any };
    /**
     * An object of the host by name or 1-based index; the empty name and index 0 stand for the host. Result: 0, the
     * code of the failing step, or -1 without objects or host.
     */
    function GetObjectByIndex(index: Int): { result: number; object: any };
    /**
     * An object of the host by name or 1-based index; the empty name and index 0 stand for the host. Result: 0, the
     * code of the failing step, or -1 without objects or host.
     */
    function GetObjectCount(): { result: number; count: number };
    /** All objects of the host as one. Results as above. */
    function GetObjects(): { result: number; object: any };

    // printing.h: Printing of files by the application that belongs to them.

    /**
     * Shows the print dialog over `window` and has the file printed; waits up to 10 s. No context. Result: 0; -1 when
     * cancelled or failed.
     */
    function PrintFile(window: Int64, path: Text): number;

    // registry.h: The registry, through the engine's service, which records for removal what is written. `root` is a
    // predefined key as a sign-extended number; while a remote registry is connected it is replaced by that one. One
    // leading backslash of a key is dropped; an empty key gives -1 but for RegEnum. Results are 32-bit values,
    // sign-extended: 0, -1, or the engine's failing code.

    /**
     * Connects to another machine; root is 0x80000002, 0x80000003 or 0x80000004. Result: also -2 the connection failed,
     * -3 the name is no machine name, -4 the key is unusable, -6 connected already.
     */
    function RegConnectRegistry(root: Int64, machine: Text): number;
    /**
     * Connects to another machine; root is 0x80000002, 0x80000003 or 0x80000004. Result: also -2 the connection failed,
     * -3 the name is no machine name, -4 the key is unusable, -6 connected already.
     */
    function RegDisConnectRegistry(): number;
    /** Result: 1 or 0; 0 without a context. */
    function RegIsRemoteRegConnected(): number;
    /** `shared` marks the key as shared with other products. Traced as "RegDBCreateKeyEx". */
    function RegCreateKey(root: Int64, key: Text, keyClass: Text, shared: Int): number;
    /** Result: -1 also when the key is not there. Traced as "RegDBDeleteKey" and "RegDBDeleteValue". */
    function RegDeleteKey(root: Int64, key: Text): number;
    /** Result: -1 also when the key is not there. Traced as "RegDBDeleteKey" and "RegDBDeleteValue". */
    function RegDeleteValue(root: Int64, key: Text, name: Text): number;
    /** Result: 1 it exists, 0 it does not, -1 on failure. */
    function RegExistsKey(root: Int64, key: Text): number;
    /** Adds the names to a text list. Result: -1 also for another kind and for a list that can't take them. */
    function RegEnum(root: Int64, key: Text, kind: Int, list: Int64): number;
    /**
     * A value as text; *type is its registry type. *size counts units: on entry the buffer's, on return the text's
     * without terminator, or 4 for a number, which comes as decimal text (12 units are always enough). Result: -5 with
     * the size needed in *size; -10 for a binary value.
     */
    function RegQueryKeyValue(root: Int64, key: Text, name: Text): { result: number; type: number; value: string };
    /** A binary value; *size counts bytes, and the buffer needs one more than the value has. Result: -5 as above. */
    function RegQueryKeyBinaryValue(root: Int64, key: Text, name: Text): { result: number; value: string };
    /**
     * Writes a value given as text: REG_SZ and REG_EXPAND_SZ up to the terminator, REG_MULTI_SZ by `size` units,
     * REG_DWORD read as a decimal number. Result: -10 for REG_BINARY. Traced as "RegDBSetKeyValueEx".
     */
    function RegSetKeyValue(root: Int64, key: Text, name: Text, type: Int, value: Text, size: Int): number;
    /**
     * Writes a value given as text: REG_SZ and REG_EXPAND_SZ up to the terminator, REG_MULTI_SZ by `size` units,
     * REG_DWORD read as a decimal number. Result: -10 for REG_BINARY. Traced as "RegDBSetKeyValueEx".
     */
    function RegSetKeyBinaryValue(root: Int64, key: Text, name: Text, bytes: string | number): { result: number; bytes: string };
    /**
     * Switches text substitution on registry values, 1 or 0. Result: -1 when the engine has no such switch; the flag is
     * kept all the same.
     */
    function RegEnableTextSubs(on: Int): number;
    /** The engine's option word, registry view included. */
    function RegGetOptions(): { result: number; options: number };
    /** The engine's option word, registry view included. */
    function RegSetOptions(options: Int): number;

    // scalars.h: Bytes, numbers, arrays and formatted text. None of these takes the object context.

    /**
     * Copies `count` bytes between two buffers, from the lowest index up, so that an overlapping copy repeats bytes.
     * Result: 0; offset + count, the size needed, when the destination is too small; -3 when the source is. Arithmetic
     * is unsigned 32-bit and wraps.
     */
    function CopyBytes(destination: string | number, destinationOffset: Int, source: string | number, sourceOffset: Int, count: Int): { result: number; destination: string; source: string };
    /**
     * One byte of a buffer; a byte is read sign-extended. Result: 0; -4 when the index exceeds the size. An index equal
     * to the size is accepted, so the buffer has to hold one byte more than `size` says.
     */
    function GetByte(bytes: string | number, index: Int): { result: number; bytes: string; value: number };
    /**
     * One byte of a buffer; a byte is read sign-extended. Result: 0; -4 when the index exceeds the size. An index equal
     * to the size is accepted, so the buffer has to hold one byte more than `size` says.
     */
    function SetByte(bytes: string | number, index: Int, value: Int): { result: number; bytes: string };
    /**
     * The quotient with `precision` decimals, and the locale's decimal point. A zero denominator gives the text for an
     * infinity or no number. Buffers are not limited. Result: 0.
     */
    function Divide(numerator: Int, denominator: Int, precision: Int): { result: number; quotient: string; decimalPoint: string };
    /**
     * Two numbers given as text, combined by * + - or /; the result has two decimals, its buffer is not limited.
     * Result: 0; 0x80070057 for another operator, with nothing written.
     */
    function FloatingPointOperation(first: Text, second: Text, operation: Int): { result: number; value: string };
    /** Result: 1 when the first is larger, -1 when it is smaller, else 0. */
    function CompareDWORD(first: Int, second: Int): number;
    /**
     * Widens `count` narrow texts into buffers of the caller, each zero-filled and with at least as many units as its
     * text has bytes, plus one. Result: 0.
     */
    function CHARArrayToWCHARArray(destination: number, source: Int64, count: Int): { result: number; destination: SafeArrayValue };
    /** A new array of narrow copies, never null. DeleteCHARArray frees the array; the copies stay allocated. */
    function WCHARArrayToCHARArray(source: string[], count: Int): number;
    /** A new array of narrow copies, never null. DeleteCHARArray frees the array; the copies stay allocated. */
    function DeleteCHARArray(array: Int64): number;
    /**
     * Formats up to 16 arguments, the elements of a one-dimensional array: numbers as 32-bit integers, all else as
     * text. `size` counts units with the terminator. Result: the units written; -5 when they do not fit; -1 for
     * arguments that can't be used.
     */
    function DoSprintf(text: number, format: Text, arguments: any): { result: number; text: string };
    /** Result: 1 or 0: nothing in it; a dispatch object that is not null in it. */
    function IsEmpty(value: any): number;
    /** Result: 1 or 0: nothing in it; a dispatch object that is not null in it. */
    function IsObject(value: any): number;

    // services.h: Windows services.

    /**
     * Stops a service and first all that depend on it; each wait is limited to 30 s. Traced as "StopDependentServices".
     * No context. Result: 1 stopped, also when it was before; 0 failed.
     */
    function ServiceStopDependentServices(service: Text): number;

    // state.h: Facts that the context keeps, engine objects for scripts, and modes of the data set. Functions that fill
    // a VARIANT clear it first and give it type VT_DISPATCH with one reference.

    /** The context's own objects. Result: 0; the code of the failing step; 0x80004005 when there is none. */
    function GetInfo(): { result: number; object: any };
    /** The context's own objects. Result: 0; the code of the failing step; 0x80004005 when there is none. */
    function GetLog(): { result: number; object: any };
    /** The context's own objects. Result: 0; the code of the failing step; 0x80004005 when there is none. */
    function GetLogEx(): { result: number; object: any };
    /** The context's own objects. Result: 0; the code of the failing step; 0x80004005 when there is none. */
    function GetReboot(): { result: number; object: any };
    /** The context's own objects. Result: 0; the code of the failing step; 0x80004005 when there is none. */
    function GetUser(): { result: number; object: any };
    /** Selector 0: the local text variables; any other: the global ones. Results as above. */
    function GetTextSub(selector: Int): { result: number; object: any };
    /**
     * Services asked for at each call. Result: 0 or the code of the failing step. The last one does not test the
     * context.
     */
    function GetFileRegistrar(): { result: number; object: any };
    /**
     * Services asked for at each call. Result: 0 or the code of the failing step. The last one does not test the
     * context.
     */
    function GetLogDB(): { result: number; object: any };
    /**
     * Services asked for at each call. Result: 0 or the code of the failing step. The last one does not test the
     * context.
     */
    function GetProgress(): { result: number; object: any };
    /**
     * Services asked for at each call. Result: 0 or the code of the failing step. The last one does not test the
     * context.
     */
    function GetVHMSIStringTableObj(): { result: number; object: any };
    /** Identifiers, copied without a limit: 39 units hold one in braces. Result: 0; -1 for a null buffer. */
    function GetContextGUID(): { result: number; identifier: string };
    /** Identifiers, copied without a limit: 39 units hold one in braces. Result: 0; -1 for a null buffer. */
    function GetProductGuid(): { result: number; identifier: string };
    /** Identifiers, copied without a limit: 39 units hold one in braces. Result: 0; -1 for a null buffer. */
    function GetInstallGuid(): { result: number; identifier: string };
    /** The support directory, to a buffer of `size` units. Result: 0; length + 1 when it does not fit. */
    function GetSupportDir(): { result: number; text: string };
    /** 1 in a maintenance run, else 0. Result: 0. */
    function GetMaintenanceMode(): { result: number; maintenance: number };
    /** 4, 8 or 1, from the data set. Result: 0. */
    function GetMaintOption(): { result: number; option: number };
    /** The enabled services as a bit set. Result: 0. */
    function GetEnabledIServices(): { result: number; services: number };
    /** The enabled services as a bit set. Result: 0. */
    function PutEnabledIServices(services: Int): number;
    /** Result: the flags; for the second the flags before. */
    function GetGlobalFlags(): number;
    /** Result: the flags; for the second the flags before. */
    function SetGlobalFlags(flags: Int): number;
    /**
     * Modes in the data set, as 1 or 0. Result: 0; -1 without a data set; the reinstall mode gives the engine's code,
     * or 0x80004005 when the data set has no such mode.
     */
    function GetUpdateMode(): { result: number; on: number };
    /**
     * Modes in the data set, as 1 or 0. Result: 0; -1 without a data set; the reinstall mode gives the engine's code,
     * or 0x80004005 when the data set has no such mode.
     */
    function SetUpdateMode(on: Int): number;
    /**
     * Modes in the data set, as 1 or 0. Result: 0; -1 without a data set; the reinstall mode gives the engine's code,
     * or 0x80004005 when the data set has no such mode.
     */
    function GetRemoveAllMode(): { result: number; on: number };
    /**
     * Modes in the data set, as 1 or 0. Result: 0; -1 without a data set; the reinstall mode gives the engine's code,
     * or 0x80004005 when the data set has no such mode.
     */
    function GetReinstallMode(): { result: number; on: number };
    /**
     * The facts of the command line; any output may be null. Flags are 1 or 0: the first, silent mode, second silent
     * mode, the fourth, the fifth. The five texts are copied without a limit (1024 units each will do); the command
     * line goes to a buffer of `size` units. Silent modes are read afresh in any case. Result: 0; length + 1 when the
     * command line does not fit; -1 when a fact can't be read.
     */
    function GetCmdLineOptions(): { result: number; flag1: number; silent: number; silentEx: number; flag4: number; flag5: number; text1: string; text2: string; text3: string; text4: string; text5: string; commandLine: string };

    // status.h: The status window, which the engine's progress service owns. In a suite context all of these answer -1.

    /**
     * Opens the status window; a second call changes nothing, and in silent mode nothing opens. Result: 0 or the
     * engine's failing code; -1 for another style.
     */
    function EnableStatus(style: Int): number;
    /** Closes it. Result: 0 or the engine's failing code; -1 where the engine brings its own windows. */
    function DisableStatus(): number;
    /**
     * Links the bar to the file transfer, which moves it up to a position in percent. Result: the engine's; -1 without
     * a progress service; both values are kept all the same.
     */
    function StatusUpdate(link: Int, position: Int): number;
    /**
     * Moves the bar by a cost: two halves of a number of bytes; for removal their product. Result: 0; -1 on failure,
     * and before another of these asked for the progress service.
     */
    function FeatureSpendCost(first: Int, second: Int): number;
    /**
     * Moves the bar by a cost: two halves of a number of bytes; for removal their product. Result: 0; -1 on failure,
     * and before another of these asked for the progress service.
     */
    function FeatureSpendUninstallCost(first: Int, second: Int): number;

    // text_sub.h: Substitution of named text variables; see also GetTextSub.

    /**
     * Replaces the variables in *text by their local values, in place; the text is a BSTR of the caller's. Result: the
     * engine's, sign-extended.
     */
    function TextSubSubstitute(text: Text): { result: number; text: string };

    // trace.h: The trace log, which the registry key HKEY_CURRENT_USER\VHlogit switches on when the library loads.

    /**
     * Writes one line. `text` is a format without arguments: a percent sign in it is written twice. Null counts as
     * empty. No context. Result: 0, also when tracing is off.
     */
    function SetupTraceWrite(category: Text, subcategory: Text, text: Text): number;

    // transfer.h: The large actions: moving data, removal, updates, registry sets, further data sets, saved targets.

    /**
     * Installs what is selected, on the calling thread, with progress in the status display. `value` goes on to the
     * host. Traced as "FeatureMoveData" and "FeatureTransferData". Result: 0 or a failure of the media.
     */
    function ComponentMoveData(media: Text, value: Int): number;
    /**
     * Installs what is selected, on the calling thread, with progress in the status display. `value` goes on to the
     * host. Traced as "FeatureMoveData" and "FeatureTransferData". Result: 0 or a failure of the media.
     */
    function ComponentTransferData(media: Text): number;
    /** Writes a registry set, or the shell objects, of the media with the current log. Traced. */
    function CreateRegistrySet(media: Text, set: Text): number;
    /** Writes a registry set, or the shell objects, of the media with the current log. Traced. */
    function CreateShellObjects(media: Text): number;
    /**
     * Actions on the media "DATA". The first three leave reinstall mode on, also when they fail; ComponentRemoveAll
     * leaves remove-all mode on. Result: 0, the mapped failure of the action, or that of the mode.
     */
    function ComponentReinstall(): number;
    /**
     * Actions on the media "DATA". The first three leave reinstall mode on, also when they fail; ComponentRemoveAll
     * leaves remove-all mode on. Result: 0, the mapped failure of the action, or that of the mode.
     */
    function ComponentUpdate(): number;
    /**
     * Actions on the media "DATA". The first three leave reinstall mode on, also when they fail; ComponentRemoveAll
     * leaves remove-all mode on. Result: 0, the mapped failure of the action, or that of the mode.
     */
    function ComponentPatch(): number;
    /**
     * Actions on the media "DATA". The first three leave reinstall mode on, also when they fail; ComponentRemoveAll
     * leaves remove-all mode on. Result: 0, the mapped failure of the action, or that of the mode.
     */
    function ComponentRemoveAll(): number;
    /**
     * Actions on the media "DATA". The first three leave reinstall mode on, also when they fail; ComponentRemoveAll
     * leaves remove-all mode on. Result: 0, the mapped failure of the action, or that of the mode.
     */
    function ComponentRemoveAllInLogOnly(): number;
    /** Does nothing. Result: 0x80004001, whatever the context. */
    function DoInstall(): number;
    /**
     * Opens the header file of a data set as a media; its extension becomes ".hdr". `target` is the root item that the
     * media shows. ComponentInitialize uses the media name "<Data>". Result: 0; -127 when the media exists; the
     * engine's failure as it stands.
     */
    function FeatureInitialize(media: Text, target: Text, header: Text): number;
    /**
     * Opens the header file of a data set as a media; its extension becomes ".hdr". `target` is the root item that the
     * media shows. ComponentInitialize uses the media name "<Data>". Result: 0; -127 when the media exists; the
     * engine's failure as it stands.
     */
    function ComponentInitialize(target: Text, header: Text): number;
    /**
     * Reads the text variables back from the log, or writes them to it, under a name. Traced as "FeatureLoadTarget" and
     * "FeatureSaveTarget", with an end record on success only. Result: 0 or the failure as it stands.
     */
    function ComponentLoadTarget(name: Text): number;
    /**
     * Reads the text variables back from the log, or writes them to it, under a name. Traced as "FeatureLoadTarget" and
     * "FeatureSaveTarget", with an end record on success only. Result: 0 or the failure as it stands.
     */
    function ComponentSaveTarget(name: Text): number;

    // tree_view.h: A tree control of a dialog that shows the items of a media with check pictures.

    /** Fills the control to a depth from a root item. Result: null on failure. */
    function TreeViewCreate(dialog: Int64, control: Int, media: Text, root: Text, depth: Int): number;
    /** The selected item's path. Result: 0; length + 1 when it does not fit; -121 when none is selected. */
    function GetSelectedTreeComponent(tree: Int64): { result: number; item: string };
    /** The state that the last click gave: 0 none, 1 clear, 2 checked, 3 locked. Result: 0. */
    function GetSelectedItemState(tree: Int64): { result: number; state: number };

    // versions.h: Version resources of files, and the system's kind.

    /** The file version as "1.2.3.4" (24 units). No context. Result: 0; -2 no such file; -8 no version. */
    function VerGetFileVersion(path: Text): { result: number; version: string };
    /** Adds the translation words of the file to a number list. Result: as above, or the list's failure. */
    function VerGetFileLanguages(path: Text, list: Int64): number;
    /** Copies a file as FileCopy does; on success the target goes to `buffer`, without a limit. */
    function VerUpdateFile(source: Text, target: Text, flags: Int): { result: number; text: string };
    /** Result: 1 on a system of the NT line, else 0. No context. */
    function IsOSTypeNT(): number;

    // web_disks.h: Setup disks fetched over the web by a download agent, a window with the title "FetchOnDemand".

    /** Registers with the agent. Result: 1 ready; 0 without an agent. */
    function SetupInet(): number;
    /** Ends the link with the agent. Result: 1; 0 for a null context. */
    function CleanupInet(): number;
    /** Asks for the disk whose number ends the file's name, and waits for it. Result: 4 it is there; 3 it is not. */
    function InetGetNextDisk(file: Text): number;
    /** Tells the agent that the transfer is over. */
    function InetEndofTransfer(): void;
    /** Result: 0; -2 the agent reported a failure; -3 the agent went away. */
    function InetGetLastError(): number;

    // windows.h: The main window, its title, bitmaps and colours, the wait message, and fonts.

    /**
     * Shows a wait message, or takes it away. In silent mode it stays hidden. Result: 0 or the engine's failing code;
     * -1 without a main window.
     */
    function SdShowMsg(text: Text, show: Int): number;
    /** Whether the wait message shows in silent mode too. Result: 0. */
    function SetSilentSdShowMsg(on: Int): number;
    /**
     * Style 0xFF000100 sets the window's caption; any other paints a title of `size` points, and the engine says what
     * the style means (the embedded one takes its low 24 bits as the colour). The face is that of SetFont, to begin
     * with "Times New Roman", bold and italic with a shadow. Result: 0 or the engine's failing code; 0 without a main
     * window, -1 where the engine brings its own windows.
     */
    function SetTitle(text: Text, size: Int, style: Int): number;
    /**
     * The title's face; selector 1. Style bits 0x40 bold, 0x1000 italic, 0x2000 underlined, 0x4000 shadow at the next
     * title, 8 none of them; without any of these the style before stays. Result: 0 or the engine's failing code; -1
     * for another selector and without a main window.
     */
    function SetFont(selector: Int, style: Int, face: Text): number;
    /**
     * A font of `size` points with the style bits 0x40 bold, 0x1000 italic, 0x2000 underlined, 4 struck out; "Arial"
     * for a face that is not there. Result: its handle, which the context deletes at its release; -1 on failure.
     */
    function GetFont(face: Text, size: Int, style: Int): number;
    /**
     * Selector 12 sets the main window's colour, which fades to black when all the bits 0xC2000000 are set; 4 does
     * nothing. Result: 0 or the engine's failing code; -1 for others, and without a main window.
     */
    function SetColor(selector: Int, color: Int): number;
    /** How pictures open, 0 to 7. Result: 0 or the engine's failing code; -1 for another number. */
    function SetDisplayEffect(effect: Int): number;
    /**
     * Places a bitmap on the main window under a number, in the place of one with that number; 0x8000 removes it. The
     * text is a file, or a library with ";" and a number. Flags: 1, 2, 4, 8 at x and y from the top right, top left,
     * bottom right, bottom left corner; 16384 centred; 16 stretched; 64 tiled; 128 full; 32 the text ends in ";r,g,b",
     * the colour that is left out, otherwise magenta. Result: 0 or the engine's failing code; 0x80004005 without a main
     * window.
     */
    function PlaceBitmap(text: Text, id: Int, x: Int, y: Int, flags: Int): number;
    /** Size of the progress bar; selector 36. Result: 0; -1 for another selector. */
    function SizeWindow(selector: Int, width: Int, height: Int): number;
    /** Result: the query's code; 0x80004003 without a window. */
    function GetMainWindow(): { result: number; window: any };
    /** The content of a file in the system's code page as text; empty when it can't be opened. No context. Result: 0. */
    function SendRequest(path: Text): { result: number; text: any };
    /**
     * Takes the brand text off the status window and off dialogs that are defined from now on; the text counts for
     * nothing. Result: 0 or the engine's failing code; -1 where the engine brings its own windows.
     */
    function DisableBranding(text: Text): number;
    /** Result: not 0 when there is such a face, else 0; -1 for an empty name. No context. */
    function IsFontTypefaceNameAvailable(face: Text): number;
    /**
     * A name of a TrueType file by name and language number. *size is the buffer's size on entry, in bytes of the
     * stored name, and its units on return. No context. Result: 0; -1; -5 with the size needed in *size.
     */
    function GetTrueTypeFontFileInfo(path: Text, name: Int, language: Int): { result: number; text: string };
    /**
     * The font substitution text of the resource libraries (512 units). Result: 1; 0 when there is none, or when it has
     * 1024 bytes or more.
     */
    function GetFontSub(): { result: number; text: string };
    /** The wait cursor. Result: the engine's; 0x80004005 without a main window. */
    function EnableHourGlass(on: Int): number;
    /** Plays a system sound. No context. Result: as MessageBeep. */
    function MessageBeepP(sound: Int): number;

    // Results.

    /** done */
    const VHRT_OK: 0;
    /** failed */
    const VHRT_FAILED: -1;
    /** the operation does not belong to the list's type or the file's mode */
    const VHRT_WRONG_TYPE: -500;
    /** no list or file has the handle */
    const VHRT_BAD_HANDLE: -501;
    /** the list has no such element */
    const VHRT_NO_ITEM: -502;
    /** the item exists already */
    const VHRT_ITEM_EXISTS: -102;
    /** the selection is refused, by a required item for example */
    const VHRT_SELECTION_REFUSED: -103;
    /** there is no such item */
    const VHRT_UNKNOWN_ITEM: -105;
    /** there is not enough space */
    const VHRT_DISK_FULL: -108;
    /** this media does not support it */
    const VHRT_NOT_SUPPORTED: -126;
    /** there is no such media */
    const VHRT_UNKNOWN_MEDIA: -132;
    /** there is no such attribute */
    const VHRT_UNKNOWN_ATTRIBUTE: -137;
    /** the validation key is wrong */
    const VHRT_WRONG_KEY: -139;
    /** the attribute can't be written */
    const VHRT_READ_ONLY_ATTRIBUTE: -140;
    /** the item needs no validation key */
    const VHRT_NO_KEY_NEEDED: -141;

    // Attributes of ComponentGetData and ComponentSetData.

    /** text: the description */
    const AttributeDescription: 0;
    /** text: a longer one */
    const AttributeLongText: 1;
    /** truth: whether the item is shown */
    const AttributeVisible: 2;
    /** number: the status */
    const AttributeStatus: 5;
    /** truth, only read: whether the item asks for a key */
    const AttributeNeedsValidation: 6;
    /** truth: whether the item is selected */
    const AttributeSelected: 8;
    /** number: the size in bytes */
    const AttributeSize: 10;
    /** text: a further one */
    const AttributeMiscText: 11;
    /** truth: a bit of the flags */
    const AttributeFlagBit: 13;
    /** number: the display order */
    const AttributeDisplayOrder: 14;
    /** text: the name for people */
    const AttributeDisplayName: 15;
    /** text: "16" of "texts" in the product file */
    const AttributeText16: 16;
    /** text: "17" */
    const AttributeText17: 17;
    /** text: "18" */
    const AttributeText18: 18;
    /** text: "19" */
    const AttributeText19: 19;
    /** text: "20" */
    const AttributeText20: 20;
    /** text: "21" */
    const AttributeText21: 21;
    /** text: "22" */
    const AttributeText22: 22;
    /** text: "23" */
    const AttributeText23: 23;
    /** number: the flags */
    const AttributeFlags: 24;

    // Attributes of ComponentSetupTypeGetData.

    /** text: the description */
    const SetupTypeDescription: 1;
    /** text: the name for people */
    const SetupTypeDisplayName: 2;

    // Systems of ComponentFilterOS.

    /** windows-7 of the product file */
    const SystemWindows7: 1;
    /** windows-8 */
    const SystemWindows8: 2;
    /** windows-8.1 */
    const SystemWindows8_1: 4;
    /** windows-10 */
    const SystemWindows10: 8;
    /** windows-11 */
    const SystemWindows11: 16;
    /** server */
    const SystemServer: 32;

    // Flag of ComponentFilterOS and ComponentFilterLanguage.

    /** lets the language or the systems take part again */
    const FilterLetIn: 0;
    /** takes them out */
    const FilterTakeOut: 1;

    // Kinds of MediaGetFilteringInfo.

    /** languages that take part */
    const FilteringLanguages: 0;
    /** bits of systems that take part */
    const FilteringSystems: 1;

    // Facts of ComponentFileInfo.

    /** number: the low half of the size, 31 bits */
    const FileFactSizeLow: 1;
    /** number: its high half */
    const FileFactSizeHigh: 2;
    /** text: the date, MM-DD-YY */
    const FileFactDate: 3;
    /** text: the time, HH:MM */
    const FileFactTime: 4;
    /** number: the attributes */
    const FileFactAttributes: 5;
    /** text: the version */
    const FileFactVersion: 6;
    /** text: the language */
    const FileFactLanguage: 7;
    /** text: the payload file */
    const FileFactSource: 8;
    /** text: the date, MM-DD-YYYY */
    const FileFactLongDate: 9;
    /** a list of the bits of its systems */
    const FileFactSystems: 10;
    /** text: the MD5 sum */
    const FileFactSignature: 11;
    /** number: as FileFactSizeLow */
    const FileFactPlainSizeLow: 12;
    /** number: as FileFactSizeHigh */
    const FileFactPlainSizeHigh: 13;
    /** number: how many files its group has */
    const FileFactGroupFiles: 14;
    /** text: the group's name */
    const FileFactGroup: 15;
    /** text: the folder at the target */
    const FileFactTargetFolder: 16;
    /** text: the folder of the payload */
    const FileFactSourceFolder: 17;
    /** number: the low half of the group's size */
    const FileFactGroupSizeLow: 18;
    /** text: the item's path */
    const FileFactItem: 19;
    /** number: the high half of the group's size */
    const FileFactGroupSizeHigh: 20;
    /** truth: shared with other products */
    const FileFactShared: 21;
    /** truth: stays at removal */
    const FileFactPermanent: 22;
    /** truth: an existing file stays */
    const FileFactNeverOverwritten: 23;
    /** a list of its languages */
    const FileFactLanguages: 65536;
    /** a list of the bits of its systems */
    const FileFactSystemBits: 131072;

    // Types of ListCreate.

    /** a list of numbers */
    const ListTypeNumber: -1;
    /** a list of texts */
    const ListTypeString: 0;

    // Modes of ListAddItem and ListAddString.

    /** behind the current element */
    const ListAddAfter: 0;
    /** before it */
    const ListAddBefore: 1;

    // Indices of ListSetIndex.

    /** the next element */
    const ListIndexNext: -101;
    /** the previous one */
    const ListIndexPrevious: -201;
    /** the last one */
    const ListIndexLast: -301;
    /** the first one */
    const ListIndexFirst: -401;

    // Flags of ListWriteToFile.

    /** in the system's code page */
    const ListWriteAnsi: 1;
    /** as UTF-16; wins over ListWriteAnsi */
    const ListWriteUnicode: 2;
    /** behind what the file holds, in its encoding */
    const ListWriteAppend: 4;

    // Modes of OpenFile.

    /** bytes, to read and write */
    const FileReadWriteBytes: 1;
    /** text, to read */
    const FileReadText: 2;
    /** text, to write behind the end */
    const FileAppendText: 3;
    /** bytes, to read */
    const FileReadBytes: 4;
    /** UTF-16 text, to write behind the end */
    const FileAppendUnicodeText: 5;

    // Origins of SeekBytes.

    /** from the start */
    const SeekFromStart: 1;
    /** from the current position */
    const SeekFromCurrent: 2;
    /** from the end */
    const SeekFromEnd: 3;

    // Flags of FileCopy.

    /** folders below too */
    const CopySubfolders: 1;
    /** existing files stay */
    const CopyExistingStay: 4;
    /** a higher version stays */
    const CopyByVersion: 16;
    /** only newer files are written */
    const CopyNewerOnly: 32;
    /** not recorded for removal */
    const CopyUnlogged: 256;
    /** stays at removal */
    const CopyPermanent: 512;
    /** read-only files are replaced */
    const CopyOverReadOnly: 16384;

    // Requests of GetDiskInfo.

    /** the cluster size */
    const DiskClusterSize: 1;
    /** the total size */
    const DiskTotalSize: 2;
    /** the free space */
    const DiskFreeSpace: 4;
    /** the type of the drive */
    const DiskDriveType: 8;

    // Styles of DefineDialog.

    /** events of controls as scripts know them */
    const DialogStandardEvents: 1;
    /** centred */
    const DialogCentered: 2;
    /** every command is an event */
    const DialogAllCommands: 4;

    // Results of WaitOnDialog.

    /** the dialog is made and not shown yet */
    const DialogCreated: -100;
    /** the dialog is closed */
    const DialogClosed: -200;

    // Events of CtrlGetSubCommand and CtrlGetNotificationCode.

    /** no event of a control */
    const EventNone: -999;
    /** the text of a combo box changed */
    const EventComboBoxChanged: -1004;
    /** the selection of a combo box changed */
    const EventComboBoxSelection: -1005;
    /** the text of an edit control changed */
    const EventEditChanged: -1007;
    /** a double click in a list box */
    const EventListBoxDoubleClick: -1008;
    /** the selection of a list box changed */
    const EventListBoxSelection: -1009;
    /** a button was pressed */
    const EventButton: -1010;

    // Styles of EnableStatus.

    /** style 4 */
    const StatusStyle4: 4;
    /** style 5 */
    const StatusStyle5: 5;
    /** style 6 */
    const StatusStyle6: 6;
    /** style 57 */
    const StatusStyle57: 57;
    /** style 58 */
    const StatusStyle58: 58;

    // Kinds of SetAltMainImage.

    /** a text */
    const ImageText: 1;
    /** a text that starts with the path of a file */
    const ImageFile: -2;
    /** what was shown before */
    const ImagePrevious: -1;
    /** no picture */
    const ImageNone: 0;

    // Numbers of ComponentViewSetInfo and ComponentViewQueryInfo.

    /** unit of sizes */
    const ViewUnit: 2;
    /** decimals of sizes */
    const ViewDecimals: 3;
    /** kept and not used */
    const ViewReserved: 5;
    /** whether sizes are shown */
    const ViewShowSizes: 6;
    /** whether one item at most is selected */
    const ViewExclusive: 7;
    /** the view above */
    const ViewParent: 20;
    /** the view below */
    const ViewChild: 21;
    /** control of the description */
    const ViewDescription: 22;
    /** control of the space that is needed */
    const ViewSpaceRequired: 23;
    /** control of the free space */
    const ViewSpaceFree: 24;
    /** the target folder */
    const ViewTargetDirectory: 25;
    /** the media */
    const ViewMedia: 26;
    /** the item whose children are shown */
    const ViewParentItem: 27;
    /** control of the change button */
    const ViewChangeButton: 28;
    /** control of the first path */
    const ViewPath1: 29;
    /** control of the second path */
    const ViewPath2: 30;

    // Flags of BrowseForFolder.

    /** a status line; not together with an edit control */
    const PickStatus: 4;
    /** an edit control above the tree */
    const PickEdit: 16;
    /** a computer */
    const PickComputer: 4096;
    /** a printer */
    const PickPrinter: 8192;

    // Flags of AddIcon and ReplaceIcon.

    /** starts minimized */
    const IconMinimized: 1;
    /** changes an existing shortcut */
    const IconReplace: 2;
    /** starts in a normal window */
    const IconNormal: 4;
    /** starts maximized */
    const IconMaximized: 8;
    /** pinned to the start screen */
    const IconStartPin: 32;
    /** not to be pinned */
    const IconNoPin: 64;
    /** not shown as newly installed */
    const IconNotNew: 128;

    // Roots of the registry.

    /** classes */
    const HKEY_CLASSES_ROOT: -2147483648;
    /** the user's own */
    const HKEY_CURRENT_USER: -2147483647;
    /** the machine's */
    const HKEY_LOCAL_MACHINE: -2147483646;
    /** all users' */
    const HKEY_USERS: -2147483645;

    // Types of registry values.

    /** a text */
    const REG_SZ: 1;
    /** a text with %VARIABLES% */
    const REG_EXPAND_SZ: 2;
    /** bytes */
    const REG_BINARY: 3;
    /** a number */
    const REG_DWORD: 4;
    /** a list of texts */
    const REG_MULTI_SZ: 7;

    // Kinds of RegEnum.

    /** keys */
    const RegEnumKeys: 1;
    /** values */
    const RegEnumValues: 2;

    // Objects of SetObjectPermissions.

    /** a file */
    const ObjectFile: 0;
    /** a folder */
    const ObjectFolder: 1;
    /** a registry key */
    const ObjectRegistryKey: 2;

    // Flags of SetObjectPermissions.

    /** deny instead of grant */
    const PermissionDeny: 1;
    /** the entry goes no further than one level down */
    const PermissionLimitInheritance: 2;
    /** the key of the 64-bit registry */
    const PermissionKey64: 4;

    // Selectors of GetHandle.

    /** the main window */
    const HandleMainWindow: -2;
    /** the resource library */
    const HandleResourceModule: -3;
    /** the user's resource library */
    const HandleUserModule: -4;
}

import Print = VHRT.Print;
import Arguments = VHRT.Arguments;
import SetupFolder = VHRT.SetupFolder;
import TargetFolder = VHRT.TargetFolder;
import Silent = VHRT.Silent;
import Maintenance = VHRT.Maintenance;
import CancelSetup = VHRT.CancelSetup;
import ControlText = VHRT.ControlText;
import SetControlText = VHRT.SetControlText;
import EnableControl = VHRT.EnableControl;
import FocusControl = VHRT.FocusControl;
import ControlWindow = VHRT.ControlWindow;
import SendControl = VHRT.SendControl;
import OpenInShell = VHRT.OpenInShell;
import VHRTGetPropertyBag = VHRT.VHRTGetPropertyBag;
import VHRTReleasePropertyBag = VHRT.VHRTReleasePropertyBag;
import ReadNumberProperty = VHRT.ReadNumberProperty;
import ReadBoolProperty = VHRT.ReadBoolProperty;
import ReadStringProperty = VHRT.ReadStringProperty;
import ReadArrayProperty = VHRT.ReadArrayProperty;
import WriteNumberProperty = VHRT.WriteNumberProperty;
import WriteBoolProperty = VHRT.WriteBoolProperty;
import WriteStringProperty = VHRT.WriteStringProperty;
import WriteArrayProperty = VHRT.WriteArrayProperty;
import CallDLLFn = VHRT.CallDLLFn;
import GetRunningChildProcess = VHRT.GetRunningChildProcess;
import GetRunningChildProcessEx = VHRT.GetRunningChildProcessEx;
import GetRunningChildProcessEx2 = VHRT.GetRunningChildProcessEx2;
import KillProcesses = VHRT.KillProcesses;
import SetDllDirectory = VHRT.SetDllDirectory;
import ComponentViewCreate = VHRT.ComponentViewCreate;
import ComponentViewCreateWindow = VHRT.ComponentViewCreateWindow;
import ComponentViewSetInfo = VHRT.ComponentViewSetInfo;
import ComponentViewSetInfoEx = VHRT.ComponentViewSetInfoEx;
import ComponentViewQueryInfo = VHRT.ComponentViewQueryInfo;
import ComponentViewRefresh = VHRT.ComponentViewRefresh;
import ComponentViewSelectAll = VHRT.ComponentViewSelectAll;
import ComponentViewDestroy = VHRT.ComponentViewDestroy;
import ComponentGetData = VHRT.ComponentGetData;
import ComponentSetData = VHRT.ComponentSetData;
import ComponentSelectItem = VHRT.ComponentSelectItem;
import ComponentSelectNew = VHRT.ComponentSelectNew;
import ComponentIsItemSelected = VHRT.ComponentIsItemSelected;
import ComponentFilterOS = VHRT.ComponentFilterOS;
import ComponentFilterLanguage = VHRT.ComponentFilterLanguage;
import ComponentListItems = VHRT.ComponentListItems;
import ComponentSetupTypeEnum = VHRT.ComponentSetupTypeEnum;
import ComponentSetupTypeGetData = VHRT.ComponentSetupTypeGetData;
import ComponentSetupTypeSet = VHRT.ComponentSetupTypeSet;
import ComponentGetItemSize = VHRT.ComponentGetItemSize;
import ComponentTotalSize = VHRT.ComponentTotalSize;
import ComponentCompareSizeRequired = VHRT.ComponentCompareSizeRequired;
import ComponentValidate = VHRT.ComponentValidate;
import ComponentAddItem = VHRT.ComponentAddItem;
import ComponentError = VHRT.ComponentError;
import ComponentErrorInfo = VHRT.ComponentErrorInfo;
import MediaGetInfo = VHRT.MediaGetInfo;
import MediaGetFilteringInfo = VHRT.MediaGetFilteringInfo;
import CreateObjectContext = VHRT.CreateObjectContext;
import CreateObjectContextSuiteExt = VHRT.CreateObjectContextSuiteExt;
import ReleaseObjectContext = VHRT.ReleaseObjectContext;
import ReleaseObjectContextSuiteExt = VHRT.ReleaseObjectContextSuiteExt;
import SetComponentLog = VHRT.SetComponentLog;
import RestoreMainLog = VHRT.RestoreMainLog;
import RestoreMainLogEx = VHRT.RestoreMainLogEx;
import GetHandle = VHRT.GetHandle;
import ComponentGetCost = VHRT.ComponentGetCost;
import ComponentGetTotalCost = VHRT.ComponentGetTotalCost;
import ComponentGetCostEx = VHRT.ComponentGetCostEx;
import ComponentGetTotalCostEx = VHRT.ComponentGetTotalCostEx;
import FeatureGetCost = VHRT.FeatureGetCost;
import FeatureAddCost = VHRT.FeatureAddCost;
import FeatureAddUninstallCost = VHRT.FeatureAddUninstallCost;
import CmdGetHwndDlg = VHRT.CmdGetHwndDlg;
import CmdGetMsg = VHRT.CmdGetMsg;
import CmdGetParam1 = VHRT.CmdGetParam1;
import CmdGetParam2 = VHRT.CmdGetParam2;
import CtrlGetNotificationCode = VHRT.CtrlGetNotificationCode;
import CtrlGetSubCommand = VHRT.CtrlGetSubCommand;
import CtrlGetUrlForLinkClicked = VHRT.CtrlGetUrlForLinkClicked;
import CtrlSetHtmlContent = VHRT.CtrlSetHtmlContent;
import CtrlSetMLERichText = VHRT.CtrlSetMLERichText;
import CtrlSetMLERichTextEx = VHRT.CtrlSetMLERichTextEx;
import CtrlGetParentWindowHelper = VHRT.CtrlGetParentWindowHelper;
import DefineDialog = VHRT.DefineDialog;
import WaitOnDialog = VHRT.WaitOnDialog;
import EndDialog = VHRT.EndDialog;
import ReleaseDialog = VHRT.ReleaseDialog;
import EnablePrevDialog = VHRT.EnablePrevDialog;
import EnableDialogCache = VHRT.EnableDialogCache;
import GetCurrentDialogName = VHRT.GetCurrentDialogName;
import DialogSetFont = VHRT.DialogSetFont;
import EnableSkins = VHRT.EnableSkins;
import IsSkinLoaded = VHRT.IsSkinLoaded;
import ExistsFile = VHRT.ExistsFile;
import ExistsDir = VHRT.ExistsDir;
import ExistsDisk = VHRT.ExistsDisk;
import GetDiskInfo = VHRT.GetDiskInfo;
import GetDiskSpaceEx = VHRT.GetDiskSpaceEx;
import GetDiskSpaceExEx = VHRT.GetDiskSpaceExEx;
import GenerateFileMD5SignatureHex = VHRT.GenerateFileMD5SignatureHex;
import DIFxDriverPackagePreinstall = VHRT.DIFxDriverPackagePreinstall;
import DIFxDriverPackageInstall = VHRT.DIFxDriverPackageInstall;
import DIFxDriverPackageUninstall = VHRT.DIFxDriverPackageUninstall;
import DIFxDriverPackageGetPath = VHRT.DIFxDriverPackageGetPath;
import GetCPUType = VHRT.GetCPUType;
import GetProcessorInfo = VHRT.GetProcessorInfo;
import GetGlobalMemorySize = VHRT.GetGlobalMemorySize;
import GetPorts = VHRT.GetPorts;
import GetSystemDpi = VHRT.GetSystemDpi;
import IsNTAdmin = VHRT.IsNTAdmin;
import IsPowerUser = VHRT.IsPowerUser;
import IsInAdminGroup = VHRT.IsInAdminGroup;
import IsWindowsME = VHRT.IsWindowsME;
import IsWow64 = VHRT.IsWow64;
import IsArm64 = VHRT.IsArm64;
import EnableWow64FsRedirection = VHRT.EnableWow64FsRedirection;
import IsVirtualMachine = VHRT.IsVirtualMachine;
import GetVirtualMachineType = VHRT.GetVirtualMachineType;
import FileCopy = VHRT.FileCopy;
import CreateDir = VHRT.CreateDir;
import GetInetFileSize = VHRT.GetInetFileSize;
import GetInetFileTime = VHRT.GetInetFileTime;
import CalculateAndAddFileCost = VHRT.CalculateAndAddFileCost;
import ComponentFileEnum = VHRT.ComponentFileEnum;
import ComponentFileInfo = VHRT.ComponentFileInfo;
import OpenFile = VHRT.OpenFile;
import CloseFile = VHRT.CloseFile;
import GetLine = VHRT.GetLine;
import GetLineSize = VHRT.GetLineSize;
import WriteLine = VHRT.WriteLine;
import ReadBytes = VHRT.ReadBytes;
import WriteBytes = VHRT.WriteBytes;
import SeekBytes = VHRT.SeekBytes;
import BrowseForFolder = VHRT.BrowseForFolder;
import AddIcon = VHRT.AddIcon;
import ReplaceIcon = VHRT.ReplaceIcon;
import QueryIcon = VHRT.QueryIcon;
import DeleteIcon = VHRT.DeleteIcon;
import CreateFolder = VHRT.CreateFolder;
import DeleteFolder = VHRT.DeleteFolder;
import ShowFolder = VHRT.ShowFolder;
import EnumFoldersItems = VHRT.EnumFoldersItems;
import SetShortcutProperty = VHRT.SetShortcutProperty;
import LangLoadString = VHRT.LangLoadString;
import LoadString = VHRT.LoadString;
import GetStandardLangId = VHRT.GetStandardLangId;
import IsLangSupported = VHRT.IsLangSupported;
import ListCreate = VHRT.ListCreate;
import ListDestroy = VHRT.ListDestroy;
import ListCount = VHRT.ListCount;
import ListGetType = VHRT.ListGetType;
import ListAddItem = VHRT.ListAddItem;
import ListAddString = VHRT.ListAddString;
import ListCurrentItem = VHRT.ListCurrentItem;
import ListCurrentString = VHRT.ListCurrentString;
import ListSetCurrentItem = VHRT.ListSetCurrentItem;
import ListSetCurrentString = VHRT.ListSetCurrentString;
import ListDeleteItem = VHRT.ListDeleteItem;
import ListDeleteString = VHRT.ListDeleteString;
import ListDeleteAll = VHRT.ListDeleteAll;
import ListGetFirstItem = VHRT.ListGetFirstItem;
import ListGetNextItem = VHRT.ListGetNextItem;
import ListGetFirstString = VHRT.ListGetFirstString;
import ListGetNextString = VHRT.ListGetNextString;
import ListFindItem = VHRT.ListFindItem;
import ListFindString = VHRT.ListFindString;
import ListSetIndex = VHRT.ListSetIndex;
import ListGetIndex = VHRT.ListGetIndex;
import ListReadFromFile = VHRT.ListReadFromFile;
import ListWriteToFile = VHRT.ListWriteToFile;
import SetAltMainImage = VHRT.SetAltMainImage;
import SetAltMainImageEx = VHRT.SetAltMainImageEx;
import SetPaletteFile = VHRT.SetPaletteFile;
import CreateObject = VHRT.CreateObject;
import CoGetObject = VHRT.CoGetObject;
import DotNetCoCreateObject = VHRT.DotNetCoCreateObject;
import DotNetUnloadAppDomain = VHRT.DotNetUnloadAppDomain;
import PathGetDrive = VHRT.PathGetDrive;
import PathGetDir = VHRT.PathGetDir;
import PathGetPath = VHRT.PathGetPath;
import PathGetFile = VHRT.PathGetFile;
import PathGetFileName = VHRT.PathGetFileName;
import PathGetFileExt = VHRT.PathGetFileExt;
import PathGetLongFromShort = VHRT.PathGetLongFromShort;
import PathCompactPathPixel = VHRT.PathCompactPathPixel;
import PathCrackUrl = VHRT.PathCrackUrl;
import PathIsValidSyntax = VHRT.PathIsValidSyntax;
import SetObjectPermissions = VHRT.SetObjectPermissions;
import InitInstall = VHRT.InitInstall;
import ExitInstall = VHRT.ExitInstall;
import CCPSearch = VHRT.CCPSearch;
import AppSearch = VHRT.AppSearch;
import Preprogram = VHRT.Preprogram;
import Postprogram = VHRT.Postprogram;
import OnUninstPriv = VHRT.OnUninstPriv;
import Rebooted = VHRT.Rebooted;
import ShowWizardPages = VHRT.ShowWizardPages;
import ShowObjWizardPages = VHRT.ShowObjWizardPages;
import RebootPutString = VHRT.RebootPutString;
import GetObjectByIndex = VHRT.GetObjectByIndex;
import GetObjectCount = VHRT.GetObjectCount;
import GetObjects = VHRT.GetObjects;
import PrintFile = VHRT.PrintFile;
import RegConnectRegistry = VHRT.RegConnectRegistry;
import RegDisConnectRegistry = VHRT.RegDisConnectRegistry;
import RegIsRemoteRegConnected = VHRT.RegIsRemoteRegConnected;
import RegCreateKey = VHRT.RegCreateKey;
import RegDeleteKey = VHRT.RegDeleteKey;
import RegDeleteValue = VHRT.RegDeleteValue;
import RegExistsKey = VHRT.RegExistsKey;
import RegEnum = VHRT.RegEnum;
import RegQueryKeyValue = VHRT.RegQueryKeyValue;
import RegQueryKeyBinaryValue = VHRT.RegQueryKeyBinaryValue;
import RegSetKeyValue = VHRT.RegSetKeyValue;
import RegSetKeyBinaryValue = VHRT.RegSetKeyBinaryValue;
import RegEnableTextSubs = VHRT.RegEnableTextSubs;
import RegGetOptions = VHRT.RegGetOptions;
import RegSetOptions = VHRT.RegSetOptions;
import CopyBytes = VHRT.CopyBytes;
import GetByte = VHRT.GetByte;
import SetByte = VHRT.SetByte;
import Divide = VHRT.Divide;
import FloatingPointOperation = VHRT.FloatingPointOperation;
import CompareDWORD = VHRT.CompareDWORD;
import CHARArrayToWCHARArray = VHRT.CHARArrayToWCHARArray;
import WCHARArrayToCHARArray = VHRT.WCHARArrayToCHARArray;
import DeleteCHARArray = VHRT.DeleteCHARArray;
import DoSprintf = VHRT.DoSprintf;
import IsEmpty = VHRT.IsEmpty;
import IsObject = VHRT.IsObject;
import ServiceStopDependentServices = VHRT.ServiceStopDependentServices;
import GetInfo = VHRT.GetInfo;
import GetLog = VHRT.GetLog;
import GetLogEx = VHRT.GetLogEx;
import GetReboot = VHRT.GetReboot;
import GetUser = VHRT.GetUser;
import GetTextSub = VHRT.GetTextSub;
import GetFileRegistrar = VHRT.GetFileRegistrar;
import GetLogDB = VHRT.GetLogDB;
import GetProgress = VHRT.GetProgress;
import GetVHMSIStringTableObj = VHRT.GetVHMSIStringTableObj;
import GetContextGUID = VHRT.GetContextGUID;
import GetProductGuid = VHRT.GetProductGuid;
import GetInstallGuid = VHRT.GetInstallGuid;
import GetSupportDir = VHRT.GetSupportDir;
import GetMaintenanceMode = VHRT.GetMaintenanceMode;
import GetMaintOption = VHRT.GetMaintOption;
import GetEnabledIServices = VHRT.GetEnabledIServices;
import PutEnabledIServices = VHRT.PutEnabledIServices;
import GetGlobalFlags = VHRT.GetGlobalFlags;
import SetGlobalFlags = VHRT.SetGlobalFlags;
import GetUpdateMode = VHRT.GetUpdateMode;
import SetUpdateMode = VHRT.SetUpdateMode;
import GetRemoveAllMode = VHRT.GetRemoveAllMode;
import GetReinstallMode = VHRT.GetReinstallMode;
import GetCmdLineOptions = VHRT.GetCmdLineOptions;
import EnableStatus = VHRT.EnableStatus;
import DisableStatus = VHRT.DisableStatus;
import StatusUpdate = VHRT.StatusUpdate;
import FeatureSpendCost = VHRT.FeatureSpendCost;
import FeatureSpendUninstallCost = VHRT.FeatureSpendUninstallCost;
import TextSubSubstitute = VHRT.TextSubSubstitute;
import SetupTraceWrite = VHRT.SetupTraceWrite;
import ComponentMoveData = VHRT.ComponentMoveData;
import ComponentTransferData = VHRT.ComponentTransferData;
import CreateRegistrySet = VHRT.CreateRegistrySet;
import CreateShellObjects = VHRT.CreateShellObjects;
import ComponentReinstall = VHRT.ComponentReinstall;
import ComponentUpdate = VHRT.ComponentUpdate;
import ComponentPatch = VHRT.ComponentPatch;
import ComponentRemoveAll = VHRT.ComponentRemoveAll;
import ComponentRemoveAllInLogOnly = VHRT.ComponentRemoveAllInLogOnly;
import DoInstall = VHRT.DoInstall;
import FeatureInitialize = VHRT.FeatureInitialize;
import ComponentInitialize = VHRT.ComponentInitialize;
import ComponentLoadTarget = VHRT.ComponentLoadTarget;
import ComponentSaveTarget = VHRT.ComponentSaveTarget;
import TreeViewCreate = VHRT.TreeViewCreate;
import GetSelectedTreeComponent = VHRT.GetSelectedTreeComponent;
import GetSelectedItemState = VHRT.GetSelectedItemState;
import VerGetFileVersion = VHRT.VerGetFileVersion;
import VerGetFileLanguages = VHRT.VerGetFileLanguages;
import VerUpdateFile = VHRT.VerUpdateFile;
import IsOSTypeNT = VHRT.IsOSTypeNT;
import SetupInet = VHRT.SetupInet;
import CleanupInet = VHRT.CleanupInet;
import InetGetNextDisk = VHRT.InetGetNextDisk;
import InetEndofTransfer = VHRT.InetEndofTransfer;
import InetGetLastError = VHRT.InetGetLastError;
import SdShowMsg = VHRT.SdShowMsg;
import SetSilentSdShowMsg = VHRT.SetSilentSdShowMsg;
import SetTitle = VHRT.SetTitle;
import SetFont = VHRT.SetFont;
import GetFont = VHRT.GetFont;
import SetColor = VHRT.SetColor;
import SetDisplayEffect = VHRT.SetDisplayEffect;
import PlaceBitmap = VHRT.PlaceBitmap;
import SizeWindow = VHRT.SizeWindow;
import GetMainWindow = VHRT.GetMainWindow;
import SendRequest = VHRT.SendRequest;
import DisableBranding = VHRT.DisableBranding;
import IsFontTypefaceNameAvailable = VHRT.IsFontTypefaceNameAvailable;
import GetTrueTypeFontFileInfo = VHRT.GetTrueTypeFontFileInfo;
import GetFontSub = VHRT.GetFontSub;
import EnableHourGlass = VHRT.EnableHourGlass;
import MessageBeepP = VHRT.MessageBeepP;
import VHRT_OK = VHRT.VHRT_OK;
import VHRT_FAILED = VHRT.VHRT_FAILED;
import VHRT_WRONG_TYPE = VHRT.VHRT_WRONG_TYPE;
import VHRT_BAD_HANDLE = VHRT.VHRT_BAD_HANDLE;
import VHRT_NO_ITEM = VHRT.VHRT_NO_ITEM;
import VHRT_ITEM_EXISTS = VHRT.VHRT_ITEM_EXISTS;
import VHRT_SELECTION_REFUSED = VHRT.VHRT_SELECTION_REFUSED;
import VHRT_UNKNOWN_ITEM = VHRT.VHRT_UNKNOWN_ITEM;
import VHRT_DISK_FULL = VHRT.VHRT_DISK_FULL;
import VHRT_NOT_SUPPORTED = VHRT.VHRT_NOT_SUPPORTED;
import VHRT_UNKNOWN_MEDIA = VHRT.VHRT_UNKNOWN_MEDIA;
import VHRT_UNKNOWN_ATTRIBUTE = VHRT.VHRT_UNKNOWN_ATTRIBUTE;
import VHRT_WRONG_KEY = VHRT.VHRT_WRONG_KEY;
import VHRT_READ_ONLY_ATTRIBUTE = VHRT.VHRT_READ_ONLY_ATTRIBUTE;
import VHRT_NO_KEY_NEEDED = VHRT.VHRT_NO_KEY_NEEDED;
import AttributeDescription = VHRT.AttributeDescription;
import AttributeLongText = VHRT.AttributeLongText;
import AttributeVisible = VHRT.AttributeVisible;
import AttributeStatus = VHRT.AttributeStatus;
import AttributeNeedsValidation = VHRT.AttributeNeedsValidation;
import AttributeSelected = VHRT.AttributeSelected;
import AttributeSize = VHRT.AttributeSize;
import AttributeMiscText = VHRT.AttributeMiscText;
import AttributeFlagBit = VHRT.AttributeFlagBit;
import AttributeDisplayOrder = VHRT.AttributeDisplayOrder;
import AttributeDisplayName = VHRT.AttributeDisplayName;
import AttributeText16 = VHRT.AttributeText16;
import AttributeText17 = VHRT.AttributeText17;
import AttributeText18 = VHRT.AttributeText18;
import AttributeText19 = VHRT.AttributeText19;
import AttributeText20 = VHRT.AttributeText20;
import AttributeText21 = VHRT.AttributeText21;
import AttributeText22 = VHRT.AttributeText22;
import AttributeText23 = VHRT.AttributeText23;
import AttributeFlags = VHRT.AttributeFlags;
import SetupTypeDescription = VHRT.SetupTypeDescription;
import SetupTypeDisplayName = VHRT.SetupTypeDisplayName;
import SystemWindows7 = VHRT.SystemWindows7;
import SystemWindows8 = VHRT.SystemWindows8;
import SystemWindows8_1 = VHRT.SystemWindows8_1;
import SystemWindows10 = VHRT.SystemWindows10;
import SystemWindows11 = VHRT.SystemWindows11;
import SystemServer = VHRT.SystemServer;
import FilterLetIn = VHRT.FilterLetIn;
import FilterTakeOut = VHRT.FilterTakeOut;
import FilteringLanguages = VHRT.FilteringLanguages;
import FilteringSystems = VHRT.FilteringSystems;
import FileFactSizeLow = VHRT.FileFactSizeLow;
import FileFactSizeHigh = VHRT.FileFactSizeHigh;
import FileFactDate = VHRT.FileFactDate;
import FileFactTime = VHRT.FileFactTime;
import FileFactAttributes = VHRT.FileFactAttributes;
import FileFactVersion = VHRT.FileFactVersion;
import FileFactLanguage = VHRT.FileFactLanguage;
import FileFactSource = VHRT.FileFactSource;
import FileFactLongDate = VHRT.FileFactLongDate;
import FileFactSystems = VHRT.FileFactSystems;
import FileFactSignature = VHRT.FileFactSignature;
import FileFactPlainSizeLow = VHRT.FileFactPlainSizeLow;
import FileFactPlainSizeHigh = VHRT.FileFactPlainSizeHigh;
import FileFactGroupFiles = VHRT.FileFactGroupFiles;
import FileFactGroup = VHRT.FileFactGroup;
import FileFactTargetFolder = VHRT.FileFactTargetFolder;
import FileFactSourceFolder = VHRT.FileFactSourceFolder;
import FileFactGroupSizeLow = VHRT.FileFactGroupSizeLow;
import FileFactItem = VHRT.FileFactItem;
import FileFactGroupSizeHigh = VHRT.FileFactGroupSizeHigh;
import FileFactShared = VHRT.FileFactShared;
import FileFactPermanent = VHRT.FileFactPermanent;
import FileFactNeverOverwritten = VHRT.FileFactNeverOverwritten;
import FileFactLanguages = VHRT.FileFactLanguages;
import FileFactSystemBits = VHRT.FileFactSystemBits;
import ListTypeNumber = VHRT.ListTypeNumber;
import ListTypeString = VHRT.ListTypeString;
import ListAddAfter = VHRT.ListAddAfter;
import ListAddBefore = VHRT.ListAddBefore;
import ListIndexNext = VHRT.ListIndexNext;
import ListIndexPrevious = VHRT.ListIndexPrevious;
import ListIndexLast = VHRT.ListIndexLast;
import ListIndexFirst = VHRT.ListIndexFirst;
import ListWriteAnsi = VHRT.ListWriteAnsi;
import ListWriteUnicode = VHRT.ListWriteUnicode;
import ListWriteAppend = VHRT.ListWriteAppend;
import FileReadWriteBytes = VHRT.FileReadWriteBytes;
import FileReadText = VHRT.FileReadText;
import FileAppendText = VHRT.FileAppendText;
import FileReadBytes = VHRT.FileReadBytes;
import FileAppendUnicodeText = VHRT.FileAppendUnicodeText;
import SeekFromStart = VHRT.SeekFromStart;
import SeekFromCurrent = VHRT.SeekFromCurrent;
import SeekFromEnd = VHRT.SeekFromEnd;
import CopySubfolders = VHRT.CopySubfolders;
import CopyExistingStay = VHRT.CopyExistingStay;
import CopyByVersion = VHRT.CopyByVersion;
import CopyNewerOnly = VHRT.CopyNewerOnly;
import CopyUnlogged = VHRT.CopyUnlogged;
import CopyPermanent = VHRT.CopyPermanent;
import CopyOverReadOnly = VHRT.CopyOverReadOnly;
import DiskClusterSize = VHRT.DiskClusterSize;
import DiskTotalSize = VHRT.DiskTotalSize;
import DiskFreeSpace = VHRT.DiskFreeSpace;
import DiskDriveType = VHRT.DiskDriveType;
import DialogStandardEvents = VHRT.DialogStandardEvents;
import DialogCentered = VHRT.DialogCentered;
import DialogAllCommands = VHRT.DialogAllCommands;
import DialogCreated = VHRT.DialogCreated;
import DialogClosed = VHRT.DialogClosed;
import EventNone = VHRT.EventNone;
import EventComboBoxChanged = VHRT.EventComboBoxChanged;
import EventComboBoxSelection = VHRT.EventComboBoxSelection;
import EventEditChanged = VHRT.EventEditChanged;
import EventListBoxDoubleClick = VHRT.EventListBoxDoubleClick;
import EventListBoxSelection = VHRT.EventListBoxSelection;
import EventButton = VHRT.EventButton;
import StatusStyle4 = VHRT.StatusStyle4;
import StatusStyle5 = VHRT.StatusStyle5;
import StatusStyle6 = VHRT.StatusStyle6;
import StatusStyle57 = VHRT.StatusStyle57;
import StatusStyle58 = VHRT.StatusStyle58;
import ImageText = VHRT.ImageText;
import ImageFile = VHRT.ImageFile;
import ImagePrevious = VHRT.ImagePrevious;
import ImageNone = VHRT.ImageNone;
import ViewUnit = VHRT.ViewUnit;
import ViewDecimals = VHRT.ViewDecimals;
import ViewReserved = VHRT.ViewReserved;
import ViewShowSizes = VHRT.ViewShowSizes;
import ViewExclusive = VHRT.ViewExclusive;
import ViewParent = VHRT.ViewParent;
import ViewChild = VHRT.ViewChild;
import ViewDescription = VHRT.ViewDescription;
import ViewSpaceRequired = VHRT.ViewSpaceRequired;
import ViewSpaceFree = VHRT.ViewSpaceFree;
import ViewTargetDirectory = VHRT.ViewTargetDirectory;
import ViewMedia = VHRT.ViewMedia;
import ViewParentItem = VHRT.ViewParentItem;
import ViewChangeButton = VHRT.ViewChangeButton;
import ViewPath1 = VHRT.ViewPath1;
import ViewPath2 = VHRT.ViewPath2;
import PickStatus = VHRT.PickStatus;
import PickEdit = VHRT.PickEdit;
import PickComputer = VHRT.PickComputer;
import PickPrinter = VHRT.PickPrinter;
import IconMinimized = VHRT.IconMinimized;
import IconReplace = VHRT.IconReplace;
import IconNormal = VHRT.IconNormal;
import IconMaximized = VHRT.IconMaximized;
import IconStartPin = VHRT.IconStartPin;
import IconNoPin = VHRT.IconNoPin;
import IconNotNew = VHRT.IconNotNew;
import HKEY_CLASSES_ROOT = VHRT.HKEY_CLASSES_ROOT;
import HKEY_CURRENT_USER = VHRT.HKEY_CURRENT_USER;
import HKEY_LOCAL_MACHINE = VHRT.HKEY_LOCAL_MACHINE;
import HKEY_USERS = VHRT.HKEY_USERS;
import REG_SZ = VHRT.REG_SZ;
import REG_EXPAND_SZ = VHRT.REG_EXPAND_SZ;
import REG_BINARY = VHRT.REG_BINARY;
import REG_DWORD = VHRT.REG_DWORD;
import REG_MULTI_SZ = VHRT.REG_MULTI_SZ;
import RegEnumKeys = VHRT.RegEnumKeys;
import RegEnumValues = VHRT.RegEnumValues;
import ObjectFile = VHRT.ObjectFile;
import ObjectFolder = VHRT.ObjectFolder;
import ObjectRegistryKey = VHRT.ObjectRegistryKey;
import PermissionDeny = VHRT.PermissionDeny;
import PermissionLimitInheritance = VHRT.PermissionLimitInheritance;
import PermissionKey64 = VHRT.PermissionKey64;
import HandleMainWindow = VHRT.HandleMainWindow;
import HandleResourceModule = VHRT.HandleResourceModule;
import HandleUserModule = VHRT.HandleUserModule;
