// A silent run shows no dialog and waits for nobody, whatever the script knows of it.
var library = Arguments("DIALOGS").replace(/^\//, "Z:/");

Check("defined", DefineDialog("Any", 0, library, 100, "", 0, -2, 1), 0);
Check("created", WaitOnDialog("Any"), -100);
Check("answered", WaitOnDialog("Any"), 1);
Check("answered again", WaitOnDialog("Any"), 1);
Check("no status window", EnableStatus(5) || CmdGetHwndDlg("ProgressDlg"), 0);

var window = CmdGetHwndDlg("Any");
SetControlText(window, 0, "named");
Check("its caption", ControlText(window, 0), "named");
CheckThrows("no control", function () { ControlText(window, 4711); }, "ControlText: the window has no control 4711");
Check("ended", EndDialog("Any"), 0);
CheckThrows("no window", function () { SetControlText(window, 0, ""); }, "SetControlText: there is no window " + window);
Done();
