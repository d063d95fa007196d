/// <reference path="../../types/vhrt.d.ts" />
// Installs the VHRT SDK with windows: the pages of vhuser.dll in a wizard, the progress page while the data moves,
// and the same steps without a window in a silent run.
//
// --var SETUPTYPE=Compact is the choice that a silent run takes and a wizard begins with.

var MEDIA = "DATA";
var GLOBAL = 1;                                                  // GetTextSub
var PROGRESS_PAGE = 5, WHOLE_BAR = 100;                          // EnableStatus, StatusUpdate
var KILOBYTES = 10, MEGABYTES = 20, TO_USER = 1;                 // GetDiskSpaceEx

// The dialogs and controls of vhuser.dll.
var WELCOME = 20001, DOCUMENTS = 20002, LICENCE = 20003, TYPE = 20004, FEATURES = 20005, FOLDER = 20006,
    READY = 20007, FINISH = 20008, TREE = 20009, BOX_ASK = 20020, BOX_TELL = 20021;
var ID_LICENCE = 1030, ID_ACCEPT = 1032, ID_REFUSE = 1033, ID_FIRST_TYPE = 1040, ID_FEATURES = 1050,
    ID_FEATURE_INFO = 1052, ID_FEATURE_NEED = 1053, ID_FEATURE_FREE = 1054, ID_PARTS = 1055, ID_CHANGE = 1056,
    ID_TREE = 1057, ID_FOLDER = 1060, ID_BROWSE = 1062, ID_FOLDER_NEED = 1063,
    ID_SUMMARY = 1070, ID_FINISH_TEXT = 1080, ID_SHOW_README = 1081, ID_START_PROGRAM = 1082, ID_BOX_TEXT = 1090;
// In the order of the buttons on the page; the last one leaves the selection to the user.
var TYPES = ["Typical", "Compact", "Complete"], CUSTOM = TYPES.length;

// Messages of Windows' controls.
var BM_GETCHECK = 0xF0, BM_SETCHECK = 0xF1;
var TVM_EXPAND = 0x1102, TVE_EXPAND = 2, TVM_GETNEXTITEM = 0x110A, TVGN_ROOT = 0;
// ComponentViewSetInfo and its kin.
var VIEW_UNIT = 2, VIEW_DECIMALS = 3, VIEW_PARENT = 20, VIEW_CHILD = 21, VIEW_DESCRIPTION = 22, VIEW_NEED = 23,
    VIEW_FREE = 24, VIEW_TARGET = 25, VIEW_MEDIA = 26, VIEW_ITEM = 27, VIEW_CHANGE = 28;

var chosen = {type: CUSTOM, accepted: false, folder: TargetFolder};

// Results as the host writes them: small numbers plain, codes in hexadecimal.
function ResultText(result) {
    return Math.abs(result) <= 0xFFFF ? String(result) : "0x" + (result >>> 0).toString(16).toUpperCase();
}

function Need(result, what) {
    if (result < 0)
        throw new Error(what + " failed (" + ResultText(result) + ")");
    return result;
}

// A text of the string table in the run's language; %1, %2 ... stand for what follows.
function Text(name) {
    var text = LoadString(name).text;
    for (var i = 1; i < arguments.length; i++)
        text = text.split("%" + i).join(arguments[i]);
    return text;
}

function Say(text) {
    if (Silent)
        Print(text);
    else
        Tell(BOX_TELL, ID_BOX_TEXT, text);
}

function IsChecked(window, control) {
    return SendControl(window, control, BM_GETCHECK, 0, 0) == 1;
}

function Check(window, control, on) {
    SendControl(window, control, BM_SETCHECK, on ? 1 : 0, 0);
}

function TakeTexts(list) {
    var texts = [];
    for (var at = ListGetFirstString(list); at.result == 0; at = ListGetNextString(list))
        texts.push(at.text);
    ListDestroy(list);
    return texts;
}

// All visible features as {path, depth}, parents first.
function AllFeatures(item, depth, into) {
    var list = ListCreate(ListTypeString);
    Need(ComponentListItems(MEDIA, item, list), "listing the features");
    var paths = TakeTexts(list);
    for (var i = 0; i < paths.length; i++) {
        if (ComponentGetData(MEDIA, paths[i], AttributeVisible).number == 0)
            continue;
        into.push({path: paths[i], depth: depth});
        AllFeatures(paths[i], depth + 1, into);
    }
    return into;
}

function NameOf(path) {
    return ComponentGetData(MEDIA, path, AttributeDisplayName).text;
}

function IsSelected(path) {
    return ComponentIsItemSelected(MEDIA, path) == 1;
}

function NeededRoom() {
    var cost = ComponentGetTotalCostEx(MEDIA, chosen.folder);
    return cost.text + (cost.unit == MEGABYTES ? " MB" : cost.unit == KILOBYTES ? " KB" : " GB");
}

function FreeRoom() {
    var free = GetDiskSpaceEx(chosen.folder, MEGABYTES, TO_USER);
    return free.result < 0 ? "?" : free.low < 10240 ? free.low + " MB" : Math.floor(free.low / 1024) + " GB";
}

// Takes over where to install. False for a folder that can't be.
function ChooseFolder(path) {
    path = path.replace(/^\s+|[\s\\]+$/g, "");
    if (!/^[A-Za-z]:\\[^<>]/.test(path) || PathIsValidSyntax(path) != 1 || ExistsDisk(path) != 0)
        return false;
    chosen.folder = path;
    GetTextSub(GLOBAL).object.Value("TARGETDIR") = path;
    return true;
}

// A cancelled setup is rolled back by the host.
function Cancel() {
    return Ask(BOX_ASK);
}

function Summary() {
    var lines = [Text("SUMMARY_FOLDER"), "    " + chosen.folder, "", Text("SUMMARY_FEATURES")];
    var features = AllFeatures("", 1, []);
    for (var i = 0; i < features.length; i++)
        if (IsSelected(features[i].path))
            lines.push(Indent(features[i].depth) + NameOf(features[i].path));
    lines.push("", Text("ROOM", NeededRoom(), FreeRoom()));
    return lines.join("\r\n");
}

// By hard blanks: a list takes the space bar for a search when its lines begin with blanks.
function Indent(depth) {
    return new Array(depth + 1).join("\u00A0\u00A0\u00A0\u00A0");
}

// The views of the feature page: the features, and below them the parts of the one that is current.
var views = [];

function MakeView(window, control, infos) {
    var view = ComponentViewCreate(window, control);
    if (!view)
        throw new Error("the view " + control + " can't be made");
    views.push(view);
    ComponentViewSetInfo(view, VIEW_MEDIA, 0, MEDIA);
    ComponentViewSetInfo(view, VIEW_TARGET, 0, chosen.folder);
    ComponentViewSetInfo(view, VIEW_DESCRIPTION, ID_FEATURE_INFO, "");
    for (var info in infos)
        ComponentViewSetInfo(view, Number(info), infos[info], "");
    return view;
}

function MakeViews(window) {
    // Megabytes with one decimal place.
    ComponentViewSetInfoEx(VIEW_UNIT, 0);
    ComponentViewSetInfoEx(VIEW_DECIMALS, 1);
    var infos = {};
    infos[VIEW_NEED] = ID_FEATURE_NEED;
    infos[VIEW_FREE] = ID_FEATURE_FREE;
    infos[VIEW_CHANGE] = ID_CHANGE;
    var whole = MakeView(window, ID_FEATURES, infos);
    var parts = MakeView(window, ID_PARTS, {});
    ComponentViewSetInfo(whole, VIEW_CHILD, parts, "");
    ComponentViewSetInfo(parts, VIEW_PARENT, whole, "");
    ComponentViewSetInfo(parts, VIEW_ITEM, 0, AllFeatures("", 0, [])[0].path);
    Need(ComponentViewCreateWindow(parts), "showing the parts");
    Need(ComponentViewCreateWindow(whole), "showing the features");
}

// What the tree page says of the feature that is current there; of the root nothing but the room.
function ShowFeature(window, path) {
    SetControlText(window, ID_FEATURE_INFO, path && (ComponentGetData(MEDIA, path, AttributeDescription).text || NameOf(path)));
    SetControlText(window, ID_FEATURE_NEED, NeededRoom());
    SetControlText(window, ID_FEATURE_FREE, FreeRoom());
}

// --var FEATURE_VIEW=tree shows the features in one tree.
function WantsTree() {
    return Arguments("FEATURE_VIEW") == "tree";
}

var tree;

var pages = [
    {name: "Welcome", number: WELCOME},
    {
        name: "Documents", number: DOCUMENTS, focus: IDOK,
        event: function (control) {
            var link = CtrlGetUrlForLinkClicked("Documents", control);
            if (link.result == 0 && !OpenInShell(SetupFolder + "\\payload\\" + link.text))
                Say(Text("NO_READER", link.text));
        }
    },
    {
        name: "Licence", number: LICENCE,
        open: function (window) {
            CtrlSetMLERichTextEx("Licence", ControlWindow(window, ID_LICENCE), SetupFolder + "\\" + Text("LICENCE_FILE"));
            Check(window, chosen.accepted ? ID_ACCEPT : ID_REFUSE, true);
            this.event(0, window);
        },
        event: function (control, window) {
            chosen.accepted = IsChecked(window, ID_ACCEPT);
            EnableControl(window, IDOK, chosen.accepted);
        }
    },
    {
        name: "Type", number: TYPE,
        open: function (window) { Check(window, ID_FIRST_TYPE + chosen.type, true); },
        leave: function (window) {
            for (var i = 0; i <= CUSTOM; i++)
                if (IsChecked(window, ID_FIRST_TYPE + i))
                    ChooseType(i);
        }
    },
    {
        name: "Features", number: FEATURES, focus: ID_FEATURES,
        skip: function () { return chosen.type != CUSTOM || WantsTree(); },
        open: MakeViews,
        event: function (control, window) {
            if (control == ID_CHANGE)
                FocusControl(window, ID_PARTS);
        },
        close: function () {
            while (views.length)
                ComponentViewDestroy(views.pop());
        }
    },
    {
        name: "Tree", number: TREE,
        skip: function () { return chosen.type != CUSTOM || !WantsTree(); },
        open: function (window) {
            tree = TreeViewCreate(window, ID_TREE, MEDIA, "", 2);
            SendControl(window, ID_TREE, TVM_EXPAND, TVE_EXPAND, SendControl(window, ID_TREE, TVM_GETNEXTITEM, TVGN_ROOT, 0));
            ShowFeature(window, "");
        },
        event: function (control, window) {
            var current = GetSelectedTreeComponent(tree);
            if (control == ID_TREE && current.result == 0)
                ShowFeature(window, current.item);
        }
    },
    {
        name: "Folder", number: FOLDER,
        open: function (window) {
            SetControlText(window, ID_FOLDER, chosen.folder);
            SetControlText(window, ID_FOLDER_NEED, Text("ROOM", NeededRoom(), FreeRoom()));
        },
        event: function (control, window) {
            if (control != ID_BROWSE)
                return;
            var picked = BrowseForFolder("", "", "", "", 0, ControlText(window, ID_FOLDER), 0);
            if (picked.result == 1)
                SetControlText(window, ID_FOLDER, picked.path);
        },
        leave: function (window) {
            var typed = ControlText(window, ID_FOLDER);
            if (ChooseFolder(typed))
                return true;
            Say(Text("NO_FOLDER", typed));
            FocusControl(window, ID_FOLDER);
            return false;
        }
    },
    {name: "Ready", number: READY, open: function (window) { SetControlText(window, ID_SUMMARY, Summary()); }}
];

var finish = {
    name: "Finish", number: FINISH, focus: IDOK,
    open: function (window) {
        SetControlText(window, ID_FINISH_TEXT, Text("FINISHED", chosen.folder));
        EnableControl(window, ID_SHOW_README, IsSelected("Documents\\Guides"));
        EnableControl(window, ID_START_PROGRAM, IsSelected("Tools\\Tool"));
    },
    leave: function (window) {
        Follow(window, ID_SHOW_README, "\\README.md");
        Follow(window, ID_START_PROGRAM, "\\bin\\vhtool.exe");
    }
};

function Follow(window, control, file) {
    if (IsChecked(window, control) && !OpenInShell(chosen.folder + file))
        Say(Text("NO_READER", file.substr(1)));
}

function ChooseType(number) {
    chosen.type = number;
    if (number != CUSTOM)
        Need(ComponentSetupTypeSet(MEDIA, TYPES[number]), "choosing the setup type");
}

// What a silent run takes, and a wizard begins with. An installed product keeps its selection.
function ChooseAtStart() {
    var wanted = Arguments("SETUPTYPE") || (Maintenance ? "" : TYPES[0]);
    for (var i = 0; i < TYPES.length; i++)
        if (TYPES[i] == wanted)
            return ChooseType(i);
    if (wanted)
        throw new Error("There is no setup type \"" + wanted + "\"; known are " + TYPES.join(", ") + ".");
}

function Install() {
    Need(EnableStatus(PROGRESS_PAGE), "opening the progress page");
    try {
        StatusUpdate(1, WHOLE_BAR);
        Need(ComponentMoveData(MEDIA, 0), "moving the data");
        Need(CreateRegistrySet(MEDIA, "Main"), "writing the registry");
        Need(CreateRegistrySet(MEDIA, "Tools"), "writing the registry of the tools");
        Need(CreateShellObjects(MEDIA), "making the shortcuts");
    } finally {
        DisableStatus();
    }
}

ChooseAtStart();
if (!Silent && !RunWizard(pages, Cancel))
    CancelSetup();
Install();
if (!Silent)
    RunWizard([finish], Cancel);
Print(Text("DONE"), " ", chosen.folder);
