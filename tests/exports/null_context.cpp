// What every export answers for a null context.
#include "../support/bare_context.h"

namespace {

int64_t CallWithNothing(const char* name) { return CallExport(name, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0); }

std::vector<std::string> Words(const char* text)
{
    std::istringstream words(text);
    return {std::istream_iterator<std::string>(words), {}};
}

TEST(NullContext, GivesMinus1In32Bits)
{
    constexpr const char* names = R"(
        __GetInfo __GetLog __GetLogEx __GetReboot __GetUser __GetTextSub __GetFileRegistrar __GetLogDB __GetProgress
        __GetContextGUID __GetProductGuid __GetInstallGuid _GetSupportDir __GetMaintenanceMode __GetMaintOption
        __GetEnabledIServices __PutEnabledIServices _GetGlobalFlags _SetGlobalFlags __GetUpdateMode __SetUpdateMode
        __GetRemoveAllMode __GetReinstallMode __GetCmdLineOptions _InitInstall _ExitInstall _CCPSearch _AppSearch
        _Preprogram _Postprogram _OnUninstPriv _Rebooted _ShowWizardPages _RebootPutString _GetObject
        _GetObjectByIndex _GetObjectCount __GetObjects _ComponentGetData _ComponentSetData _ComponentSelectItem
        _ComponentSelectNew _ComponentFilterOS _ComponentFilterLanguage _ComponentCompareSizeRequired
        _ComponentSetupTypeGetData _ComponentSetupTypeSet _ComponentIsItemSelected _ComponentGetItemSize
        _ComponentTotalSize _ComponentListItems _ComponentSetupTypeEnum _ComponentValidate _ComponentAddItem
        _ComponentGetTotalCost _ComponentGetTotalCostEx _ComponentGetCost _ComponentGetCostEx _FeatureGetCost
        _ComponentError _ComponentErrorInfo _ComponentFileEnum _ComponentFileInfo _ComponentMoveData
        _ComponentTransferData _CreateRegistrySet _CreateShellObjects _ComponentReinstall _ComponentUpdate
        _ComponentPatch _ComponentRemoveAll _ComponentRemoveAllInLogOnly _FeatureInitialize _ComponentInitialize
        _ComponentLoadTarget _ComponentSaveTarget _FileCopy _CreateDir _DefineDialog _WaitOnDialog _EndDialog
        _ReleaseDialog _EnablePrevDialog _EnableDialogCache _GetCurrentDialogName _DialogSetFont _EnableSkins
        _IsSkinLoaded _CmdGetMsg _CtrlGetNotificationCode _CtrlGetSubCommand _CtrlGetUrlForLinkClicked
        _CtrlSetHtmlContent _CtrlSetMLERichText _CtrlSetMLERichTextEx _EnableStatus _DisableStatus _StatusUpdate
        _FeatureSpendCost _FeatureSpendUninstallCost ComponentViewSetInfoEx _SdShowMsg _SetSilentSdShowMsg _SetTitle
        _SetFont _SetColor _SetDisplayEffect _PlaceBitmap _SizeWindow __GetMainWindow _DisableBranding GetFontSub
        EnableHourGlass _SetAltMainImage _SetAltMainImageEx _SetPaletteFile AddIcon ReplaceIcon QueryIcon DeleteIcon
        CreateFolder DeleteFolder ShowFolder EnumFoldersItems _BrowseForFolder _SetObjectPermissions
        _DIFxDriverPackagePreinstall _DIFxDriverPackageInstall _DIFxDriverPackageUninstall _DIFxDriverPackageGetPath
        __LoadString)";
    for (const std::string& name : Words(names))
        EXPECT_EQ(static_cast<int32_t>(CallWithNothing(name.c_str())), -1) << name;
}

TEST(NullContext, GivesMinus1In64BitsWhereResultsAreWide)
{
    constexpr const char* names = R"(
        _ListCreate _ListDestroy _ListCount _ListGetType _ListAddItem _ListAddString _ListCurrentItem
        _ListCurrentString _ListSetCurrentItem _ListSetCurrentString _ListDeleteItem _ListDeleteString
        _ListDeleteAll _ListGetFirstItem _ListGetFirstString _ListGetNextItem _ListGetNextString _ListFindItem
        _ListFindString _ListSetIndex _ListGetIndex _ListReadFromFile _ListWriteToFile _OpenFile _CloseFile _GetLine
        _GetLineSize _WriteLine _ReadBytes _SeekBytes _WriteBytes _RegConnectRegistry _RegDisConnectRegistry
        _RegCreateKey _RegDeleteKey _RegDeleteValue _RegExistsKey _RegEnum _RegQueryKeyValue _RegQueryKeyBinaryValue
        _RegSetKeyValue _RegSetKeyBinaryValue _RegEnableTextSubs TextSubSubstitute _CmdGetHwndDlg _CmdGetParam1
        _CmdGetParam2 _CtrlGetParentWindowHelper _GetFont)";
    for (const std::string& name : Words(names))
        EXPECT_EQ(CallWithNothing(name.c_str()), -1) << name;
}

TEST(NullContext, GivesAnotherAnswerWhereTheFamilySaysSo)
{
    const std::map<const char*, int64_t> answers = {
        {"GetHandle", 0},           {"_DoInstall", static_cast<int32_t>(0x80004001)},
        {"_ShowObjWizardPages", 0}, {"_SetupInet", 0},
        {"_CleanupInet", 0},        {"_InetGetNextDisk", 3},
        {"_InetGetLastError", 0},   {"_ComponentViewCreate", 0},
        {"_TreeViewCreate", 0},     {"__CreateObjectContextSuiteExt", 0}};
    for (const auto& [name, answer] : answers)
        EXPECT_EQ(static_cast<int32_t>(CallWithNothing(name)), answer) << name;
    // These take null quietly and answer nothing.
    for (const char* name : {"__ReleaseObjectContextSuiteExt", "__RestoreMainLog", "_InetEndofTransfer"})
        CallWithNothing(name);
}

} // namespace
