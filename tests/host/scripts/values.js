// Values on their way between scripts and exported functions.

// A list handle is an address: it has to survive as a number of the script.
var list = ListCreate(-1);
Check("a handle works", ListAddItem(list, 7, 0), 0);
Check("a handle is a number", typeof list, "number");
var other = ListCreate(0);
Check("a copy of a handle works", ListCount(eval(String(list))), 1);
Check("a destroyed handle comes back as 0", ListDestroy(list).list, 0);
Check("a destroyed handle is unknown", ListCount(list), -501);

// Constants by name.
Check("a constant", ListIndexFirst, -401);
Check("a root of the registry", HKEY_CURRENT_USER, -2147483647);
Check("a result", ListCount(list), VHRT_BAD_HANDLE);
Check("a member of VHRT", VHRT.SystemServer, 0x20);
Check("no constant", typeof SystemNone, "undefined");

// Long texts: the host asks again with the room that the library wants.
var long = new Array(3001).join("x");
Check("a long text goes in", ListAddString(other, long, 0), 0);
Check("a long text comes out", ListGetFirstString(other).text, long);
Check("undefined is the empty text", ListAddString(other, undefined, 0), 0);
Check("the empty text comes out", ListCurrentString(other).text, "");
Check("characters outside ASCII", (ListSetCurrentString(other, "\u00e4\u20ac\ud83d\ude00"), ListCurrentString(other).text),
      "\u00e4\u20ac\ud83d\ude00");

// Bytes cross as texts with one character for each.
var copy = CopyBytes(4, 1, "abc", 0, 3);
Check("bytes are copied", copy.destination, "\0abc");
Check("one byte is read", GetByte("a\u00ff", 1).value, -1);
Check("one byte is written", SetByte("abc", 1, 0x78).bytes, "axc");
Check("beyond the bytes", GetByte("abc", 4).result, -4);

// Counts end where the text or array does.
var root = 0x80000001, key = "Software\\VHHostValues", type, value;
Check("a list with a count beyond it", RegSetKeyValue(root, key, "L", 7, "a\0bb\0", 100000000), 0);
value = RegQueryKeyValue(root, key, "L");
Check("the list comes back whole", value.type + ":" + value.value, "7:a\0bb\0");
Check("a part of it", RegSetKeyValue(root, key, "L", 7, "a\0bb\0", 2), 0);
Check("the part", RegQueryKeyValue(root, key, "L").value, "a\0");
var lines = new Array(2001).join("line\0");
Check("a long list", RegSetKeyValue(root, key, "L", 7, lines, lines.length), 0);
Check("the long list", RegQueryKeyValue(root, key, "L").value, lines);
Check("a number", RegSetKeyValue(root, key, "N", 4, "5", 0), 0);
Check("the number", RegQueryKeyValue(root, key, "N").value, "5");
Check("the key goes", RegDeleteKey(root, key), 0);
var narrow = WCHARArrayToCHARArray(["one", "two"], 100000);
Check("narrow texts", new VBArray(CHARArrayToWCHARArray(2, narrow, 100000).destination).toArray().join("|"), "one|two");
DeleteCHARArray(narrow);
narrow = WCHARArrayToCHARArray([long + long + long], 1);
Check("a long narrow text", new VBArray(CHARArrayToWCHARArray(1, narrow, 1).destination).toArray()[0], long + long + long);
DeleteCHARArray(narrow);

// Sums go in and come back.
var sum = CalculateAndAddFileCost(0, 5000, 4096, 1, 100);
Check("a cost is added", sum.result + ":" + sum.highSum + ":" + sum.lowSum, "0:1:8292");

// Numbers above 31 bits are codes.
Check("an unsigned code compares", CompareDWORD(0x80000000, 1), 1);
Check("a negative number is the same code", CompareDWORD(-1, 0xffffffff), 0);

// Arrays of the script become arrays of the library.
Check("formatted", DoSprintf(100, "%d-%s-%d", [1, "two", 3]).text, "1-two-3");
Check("too small a buffer", DoSprintf(4, "%d", [123456]).result, -5);
Check("empty", IsEmpty(undefined), 1);
Check("an object is no empty value", IsEmpty(7), 0);
Check("an object", IsObject(GetInfo().object), 1);

// Mistakes are errors of the script and name the argument.
CheckThrows("too few arguments", function () { ListAddString(other); }, "ListAddString(list, text, mode) was called with 1");
CheckThrows("a text for a number", function () { ListCreate("list"); }, "type: a number is wanted");
CheckThrows("characters as bytes", function () { GetByte("\u0101", 0); }, "above 255");

// JScript has a GetObject of its own; the library's is a member of VHRT.
Check("the member", VHRT.GetObject("").result, 0);
Done();
