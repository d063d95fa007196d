// Lists, text files and binary files through the exports.
var folder = GetSupportDir().text;
var path = folder + "\\list.txt";

var list = ListCreate(0);
ListAddString(list, "b", 0);
ListAddString(list, "c", 0);
ListSetIndex(list, -401);
ListAddString(list, "a", 1);
Check("order of adding", Texts(list), "a|b|c");
Check("find from the current one", ListFindString(list, "a"), 1);
Check("find from the first", (ListSetIndex(list, 0), ListFindString(list, "c")), 0);
Check("index of the hit", ListGetIndex(list).index, 2);
Check("next at the end", ListGetNextString(list).result, -502);
Check("item of a text list", ListCurrentItem(list).result, -500);

Check("written as UTF-16", ListWriteToFile(list, path, 2), 0);
var file = OpenFile(path, 4, 0);
var bytes = ReadBytes(file, 8, 0, 8);
Check("bytes read", bytes.result, 8);
Check("mark, letter, line end", bytes.bytes, "\u00ff\u00fea\0\r\0\n\0");
Check("a line of a binary file", GetLineSize(file).result, -500);
Check("closed", CloseFile(file), 0);
Check("closed once", CloseFile(file), -501);

var back = ListCreate(0);
Check("read back", ListReadFromFile(back, path), 0);
Check("the same texts", Texts(back), "a|b|c");

var text = OpenFile(SetupFolder + "\\payload\\readme.txt", 2, 0);
Check("size of the first line", GetLineSize(text).size, 5);
Check("the first line", GetLine(text, 6).line, "first");
Check("cut to the size", GetLine(text, 3).line, "sec");
Check("a blank line at the very end is none", GetLineSize(text).result, -1);
CloseFile(text);
Check("a missing file", OpenFile(folder + "\\nothing.txt", 2, 0), -1);

Check("existence of a file", ExistsFile(path), 1);
Check("existence of a folder", ExistsDir(folder), 0);
Check("MD5", GenerateFileMD5SignatureHex(SetupFolder + "\\payload\\data\\one.bin").text, "F97C5D29941BFB1B2FDAB0874906AB82");
Check("file part of a path", PathGetFile("c:\\a\\b.txt").text, "b.txt");
var disk = GetDiskInfo({path: folder, request: 1 | 4 | 8});
Check("disk information", disk.result, 0);
Check("a fixed drive", disk.info.driveType, 3);
Check("a cluster size", disk.info.clusterSize > 0, true);
ListDestroy(list);
ListDestroy(back);
Done();
