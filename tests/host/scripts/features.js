// Features of the tiny product: walk, selection, setup types, costs, transfer, registry.
function List(item) {
    var list = ListCreate(0);
    Check("listing " + item, ComponentListItems("DATA", item, list), 0);
    var texts = Texts(list);
    ListDestroy(list);
    return texts;
}
function Selected(item) { return ComponentIsItemSelected("DATA", item); }

Check("features at the top", List(""), "Main|Extras");
Check("features below", List("Extras"), "Extras\\Deep|Extras\\Off");
Check("description", ComponentGetData("DATA", "Main", 0).text, "What is always there");
Check("display name by language", ComponentGetData("DATA", "Extras", 15).text, "Extras");
Check("unknown item", ComponentGetData("DATA", "None", 0).result, -105);
Check("unknown media", ComponentGetData("NONE", "Main", 0).result, -132);
Check("unknown attribute", ComponentGetData("DATA", "Main", 99).result, -137);

Check("selected as the product says", Selected("Extras\\Off"), 0);
Check("type Small", ComponentSetupTypeSet("DATA", "Small"), 0);
Check("Small leaves Deep out", Selected("Extras\\Deep"), 0);
Check("Small keeps Main", Selected("Main"), 1);
Check("a required item refuses", ComponentSelectItem("DATA", "Main", 0), -103);
Check("and stays", Selected("Main"), 1);
Check("select Deep", ComponentSelectItem("DATA", "Extras\\Deep", 1), 0);

Check("size of an item", ComponentGetItemSize("DATA", "Main").size, 28);
Check("cost in units of 1024", ComponentGetTotalCost("DATA", TargetFolder).cost >= 1, true);
Check("room enough", ComponentCompareSizeRequired("DATA").result, 0);
Check("a variable of the product file", GetTextSub(1).object.Substitute("<COLOUR>/<NOWHERE>"), "green/<NOWHERE>");
Check("a variable of the command line", Arguments("WHO"), "me");
Check("no such variable", Arguments("NOBODY"), undefined);

Check("moved", ComponentMoveData("DATA", 0), 0);
Check("a file of Main", ExistsFile(TargetFolder + "\\Gr\u00fc\u00dfe.txt"), 1);
Check("a file of Deep", ExistsFile(TargetFolder + "\\a\\b\\c\\one.bin"), 1);
Check("an empty file further down", ExistsFile(TargetFolder + "\\a\\b\\c\\sub\\empty.bin"), 1);
Check("nothing of Off", ExistsFile(TargetFolder + "\\again.txt"), 0);
Check("registry set", CreateRegistrySet("DATA", "Main"), 0);
Done();
