/// <reference path="../../types/vhrt.d.ts" />
// Installs the VHRT SDK: a tour through the functions that a usual setup needs.
//
// The host gives every function of VHRT.dll by its name without leading underscores. A function with outputs
// returns an object: `result`, and each output under its own name.

var MEDIA = "DATA";

// Results as the host writes them: small numbers plain, codes in hexadecimal.
function ResultText(result) {
    return Math.abs(result) <= 0xFFFF ? String(result) : "0x" + (result >>> 0).toString(16).toUpperCase();
}

function Fail(what, result) {
    throw new Error(what + " failed (" + ResultText(result) + ")");
}

// Every call that has to work goes through here.
function Need(result, what) {
    if (result < 0)
        Fail(what, result);
    return result;
}

function Trace(step, details) {
    // The details are a format: a percent sign stands twice.
    SetupTraceWrite("Script", step, String(details).replace(/%/g, "%%"));
}

// A text of the string table in the run's language.
function Text(name, otherwise) {
    var found = LoadString(name);
    return found.result == 0 ? found.text : otherwise;
}

// All elements of a text list as an array; the list is destroyed.
function TakeTexts(list) {
    var texts = [];
    for (var at = ListGetFirstString(list); at.result == 0; at = ListGetNextString(list))
        texts.push(at.text);
    ListDestroy(list);
    return texts;
}

function Children(item) {
    var list = ListCreate(ListTypeString);
    Need(ComponentListItems(MEDIA, item, list), "listing the features of \"" + item + "\"");
    return TakeTexts(list);
}

// Calls visit(path, depth) for each feature, parents first.
function Walk(item, depth, visit) {
    var names = Children(item);
    for (var i = 0; i < names.length; i++) {
        visit(names[i], depth);
        Walk(names[i], depth + 1, visit);
    }
}

function NameOf(item) {
    return ComponentGetData(MEDIA, item, AttributeDisplayName).text;
}

function Indent(depth) {
    return new Array(depth + 1).join("    ");
}

function Kilobytes(bytes) {
    return Math.ceil(bytes / 1024) + " KB";
}

// Reads the check list line by line and does what it says.
function CheckMachine() {
    var file = Need(OpenFile(SetupFolder + "\\checklist.txt", 2, 0), "opening the check list");
    var done = 0;
    for (var size = GetLineSize(file); size.result == 0; size = GetLineSize(file)) {
        var words = GetLine(file, size.size + 1).line.split(" ");
        if (words[0].charAt(0) == "#")
            continue;
        if (words[0] == "system" && IsOSTypeNT() != 1)
            throw new Error("This system is too old.");
        if (words[0] == "machine" && GetProcessorInfo(null).info.architecture == 0)
            throw new Error("This is no 64-bit machine.");
        if (words[0] == "free") {
            var space = GetDiskSpaceEx(TargetFolder, 20, 1);
            Need(space.result, "asking for free space");
            if (space.low < Number(words[1]))
                throw new Error("Too little room: " + space.low + " MB free, " + words[1] + " MB wanted.");
        }
        done++;
    }
    CloseFile(file);
    Trace("CheckMachine", "Checks=" + done);
    Print(done, " checks passed");
}

// What a failed read from an address says: the server's answer, or the number of the system's error.
function Reason(result) {
    var status = (result >>> 0) - 0x8004D3C0;
    return status >= 100 && status < 1000 ? "the server answers " + status : "system error " + ResultText(result);
}

// Shows the read-me behind the address README_URL, if there is one. It is news, not part of the product: a setup
// goes on without it.
function ShowReadMe() {
    var address = Arguments("README_URL");
    if (!address)
        return;
    var file = OpenFile(address, 2, 0);
    if (file < 0) {
        Print("The read-me can't be opened: README_URL has to be like http://server/readme.txt, not ", address);
        return;
    }
    var lines = 0;
    var next = GetLineSize(file);
    for (; next.result == 0; next = GetLineSize(file)) {
        Print(lines++ == 0 ? "read-me:\n    " : "    ", GetLine(file, next.size + 1).line);
    }
    CloseFile(file);
    // -1 is the end of the text; any other result is the network's.
    if (next.result != -1)
        Print("The read-me can't be shown: ", Reason(next.result), ". The setup goes on without it; ", address,
              " may work in a browser or later.");
    else if (lines == 0)
        Print("There is no text at ", address, ", or its server doesn't tell how long it is.");
    Trace("ReadMe", "Lines=" + lines + "|Result=" + next.result);
}

function ShowFeatures() {
    Print("features:");
    Walk("", 1, function (item, depth) {
        var selected = ComponentIsItemSelected(MEDIA, item) == 1;
        var size = ComponentGetItemSize(MEDIA, item).size;
        Print(Indent(depth), selected ? "[x] " : "[ ] ", NameOf(item), size > 0 ? "  " + Kilobytes(size) : "");
    });
}

function ChooseSetupType() {
    var list = ListCreate(ListTypeString);
    Need(ComponentSetupTypeEnum(MEDIA, list), "listing the setup types");
    var types = TakeTexts(list);
    var wanted = Arguments("SETUPTYPE") || "Typical";
    var known = false;
    Print("setup types:");
    for (var i = 0; i < types.length; i++) {
        known = known || types[i] == wanted;
        Print("    ", types[i] == wanted ? "(o) " : "( ) ",
              ComponentSetupTypeGetData(MEDIA, types[i], SetupTypeDisplayName).text, ": ",
              ComponentSetupTypeGetData(MEDIA, types[i], SetupTypeDescription).text);
    }
    if (!known)
        throw new Error("There is no setup type \"" + wanted + "\"; known are " + types.join(", ") + ".");
    Need(ComponentSetupTypeSet(MEDIA, wanted), "choosing the setup type");
    Trace("SetupType", "Name=" + wanted);
}

// WITH and WITHOUT name features, separated by commas.
function ChangeSelection() {
    function Each(argument, selected) {
        var names = Arguments(argument);
        names = names ? names.split(",") : [];
        for (var i = 0; i < names.length; i++) {
            var result = ComponentSelectItem(MEDIA, names[i], selected);
            Print("    ", selected ? "with " : "without ", names[i], result < 0 ? ": refused (" + ResultText(result) + ")" : "");
        }
    }
    Each("WITH", 1);
    Each("WITHOUT", 0);
    // The runtime is required: the engine keeps it.
    if (ComponentSelectItem(MEDIA, "Runtime", 0) >= 0)
        throw new Error("The runtime could be left out.");
}

function CheckSpace() {
    var cost = ComponentGetTotalCost(MEDIA, TargetFolder);
    Need(cost.result, "asking for the cost");
    var shown = ComponentGetTotalCostEx(MEDIA, TargetFolder);
    var free = GetDiskSpaceEx(TargetFolder, 10, 1);
    var room = ComponentCompareSizeRequired(MEDIA);
    if (room.result < 0)
        throw new Error("Drive " + room.drive + " has too little room: " + Kilobytes(room.size) + " wanted.");
    Print("cost ", shown.text, shown.unit == 20 ? " MB" : shown.unit == 10 ? " KB" : " GB", ", free ",
          free.low == 0x7FFFFFFF ? "plenty" : free.low + " KB");
    Trace("CheckSpace", "Cost=" + cost.cost);
}

function SelectedFeatures() {
    var names = [];
    Walk("", 0, function (item) {
        if (ComponentIsItemSelected(MEDIA, item) == 1)
            names.push(item);
    });
    return names;
}

// A list of what was chosen, as UTF-16 text, made in the support folder and copied by the engine, which
// records it for removal.
function WriteFeatureList(names) {
    var list = ListCreate(ListTypeString);
    ListAddString(list, Text("WELCOME", "Setup of the VHRT SDK"), ListAddAfter);
    for (var i = 0; i < names.length; i++)
        Need(ListAddString(list, names[i] + "\t" + NameOf(names[i]), ListAddAfter), "adding to a list");
    var draft = GetSupportDir().text + "\\features.txt";
    Need(ListWriteToFile(list, draft, ListWriteUnicode), "writing " + draft);
    var count = ListCount(list);
    ListDestroy(list);
    Need(FileCopy(draft, TargetFolder, 0), "copying the feature list");
    return count;
}

// What a later run needs goes to the install log with the local variables, and comes back from there.
function SaveAndLoadTarget() {
    var variables = GetTextSub(0).object;
    var chosen = variables.Substitute("<TARGETDIR>");
    variables.Value("SDKFOLDER") = chosen;
    Need(ComponentSaveTarget("SDK"), "saving the target");
    variables.Value("SDKFOLDER") = "lost";
    Need(ComponentLoadTarget("SDK"), "loading the target");
    if (variables.Value("SDKFOLDER") != TargetFolder)
        throw new Error("The loaded target is " + variables.Value("SDKFOLDER") + ", not " + TargetFolder + ".");
}

function Install() {
    Trace("Start", "Target=" + TargetFolder);
    Print(Text("WELCOME", "Setup of the VHRT SDK"));
    CheckMachine();
    ShowReadMe();
    ChooseSetupType();
    ChangeSelection();
    ShowFeatures();
    CheckSpace();

    Need(CreateDir(TargetFolder + "\\work\\logs"), "making the work folder");
    Need(ComponentMoveData(MEDIA, 0), "moving the data");
    Need(CreateRegistrySet(MEDIA, "Main"), "writing the registry");
    Need(CreateRegistrySet(MEDIA, "Tools"), "writing the registry of the tools");
    Need(CreateShellObjects(MEDIA), "making the shortcuts");

    var names = SelectedFeatures();
    WriteFeatureList(names);
    SaveAndLoadTarget();
    Trace("Done", "Features=" + names.length);
    Print(Text("DONE", "The SDK is ready."), " ", names.length, " features");
}

Install();
