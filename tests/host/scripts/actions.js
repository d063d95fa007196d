// Texts, directories, copies, targets, further data sets and a media of the script's own.
var root = TargetFolder + "\\actions";

Check("a text of the string table", LoadString("EXTRAS").text, "Extras");
Check("no such text", LoadString("NOTHING").result, -1);
Check("variables in a text", TextSubSubstitute("<COLOUR>-<NOWHERE>").text, "green-<NOWHERE>");

Check("a directory with those above it", CreateDir(root + "\\a\\b"), 0);
Check("it is there", ExistsDir(root + "\\a\\b"), 0);
Check("copied by pattern", FileCopy(SetupFolder + "\\payload\\*.txt", root, 0), 0);
Check("the first", ExistsFile(root + "\\readme.txt"), 1);
Check("the second", ExistsFile(root + "\\Gr\u00fc\u00dfe.txt"), 1);
Check("nothing of that name", FileCopy(SetupFolder + "\\payload\\none.xyz", root, 0) < 0, true);

var texts = GetTextSub(0).object;
texts.Value("PLACE") = "here";
Check("saved", ComponentSaveTarget("Actions"), 0);
texts.Value("PLACE") = "there";
Check("loaded", ComponentLoadTarget("Actions"), 0);
Check("the saved value is back", texts.Value("PLACE"), "here");

Check("a further data set", FeatureInitialize("MORE", "<Data>", SetupFolder + "\\more.dat"), 0);
Check("its name is taken", FeatureInitialize("MORE", "<Data>", SetupFolder + "\\more.hdr"), -127);
Check("no such header", FeatureInitialize("LESS", "<Data>", SetupFolder + "\\less.hdr") < 0, true);

Check("the first item makes a media", ComponentAddItem("OWN", "one", 100, 1), 0);
Check("the next joins it", ComponentAddItem("OWN", "one\\two", 200, 0), 0);
Check("an item comes once", ComponentAddItem("OWN", "one", 1, 1) < 0, true);
var list = ListCreate(0);
Check("its items", (ComponentListItems("OWN", "", list), Texts(list)), "one");
ListDestroy(list);
Check("its size", ComponentGetItemSize("OWN", "one").size >= 100, true);
Check("no item for the product", ComponentAddItem("DATA", "one", 1, 1), -2147159938);
Check("not built", DoInstall(), -2147467263);

Check("rights of a file", SetObjectPermissions(root + "\\readme.txt", 0, "", "Everyone", 0x1200A9, 0), 0);
Check("nobody's", SetObjectPermissions(root + "\\readme.txt", 0, "", "Nobody At All", 1, 0), 1332);
var made = CreateObject("Scripting.Dictionary");
made.object.Add("key", "value");
Check("an object by its name", made.result + made.object.Item("key"), "0value");
Check("none runs", CoGetObject("", "Scripting.Dictionary").result, -2147221021);
var raised = "";
try {
    DotNetCoCreateObject("No.Assembly", "No.Class", "");
} catch (error) {
    raised = error.message;
}
Check("no managed code", raised.indexOf("DotNetCoCreateObject") >= 0, true);
Check("no driver library", DIFxDriverPackagePreinstall("p.inf", 0), -2147312566);
Check("no such service", ServiceStopDependentServices("no such service"), 0);
Done();
