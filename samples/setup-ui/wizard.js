// Wizards of script dialogs: pages of a resource library, one after the other, with Back, Next and Cancel.
//
// A page is an object:
//   name, number     of the dialog; the number is that of its template
//   focus            the control that has the focus at first; the template's first one otherwise
//   open(window)     fills the controls before anybody sees them
//   event(control, window)   another control than the three buttons sent something
//   leave(window)    takes over what was chosen when Next is pressed; false keeps the page
//   close()          gives back what open() made, however the page is left
//   skip()           true where the page is not wanted now
// All but the first two may be left out.

var IDOK = 1, IDCANCEL = 2, IDYES = 6, ID_BACK = 10;
var HELP = 8;                                                    // WaitOnDialog
var MAIN_WINDOW = -2;
var FORWARDS = 1, BACKWARDS = -1;

// Shows one dialog until answer(control, window) gives something else than undefined, and gives that.
function RunDialog(name, number, open, answer, close) {
    if (DefineDialog(name, 0, "", number, "", 0, MAIN_WINDOW, DialogStandardEvents + DialogCentered) != 0)
        throw new Error("The dialog " + name + " can't be defined.");
    try {
        for (;;) {
            var control = WaitOnDialog(name);
            var window = CmdGetHwndDlg(name);
            if (control == DialogCreated) {
                if (open)
                    open(window);
                continue;
            }
            if (control < 0 && control != DialogClosed)
                throw new Error("The dialog " + name + " can't be shown.");
            // The message loop ended, or the close box was used.
            if (control == 0 || control == DialogClosed)
                control = IDCANCEL;
            if (control == HELP)
                continue;
            var given = answer(control, window);
            if (given !== undefined)
                return given;
        }
    } finally {
        if (close)
            close();
        EndDialog(name);
        ReleaseDialog(name);
    }
}

// A message with one button.
function Tell(box, control, text) {
    RunDialog("Tell", box, function (window) { SetControlText(window, control, text); },
              function (pressed) { return pressed == IDOK || pressed == IDCANCEL ? true : undefined; });
}

// A question with Yes, and No for everything else.
function Ask(box) {
    return RunDialog("Ask", box, null, function (pressed) {
        return pressed == IDYES ? true : pressed == IDCANCEL ? false : undefined;
    });
}

// Runs the pages. True when the last one was left by Next, false when cancel() agreed to stop.
function RunWizard(pages, cancel) {
    var direction = FORWARDS;
    for (var at = 0; at < pages.length; at += direction) {
        var page = pages[at];
        if (page.skip && page.skip())
            continue;
        direction = RunDialog(page.name, page.number, function (window) {
            if (page.open)
                page.open(window);
            if (page.focus)
                FocusControl(window, page.focus);
        }, function (control, window) {
            if (control == IDOK)
                return page.leave && page.leave(window) === false ? undefined : FORWARDS;
            if (control == ID_BACK)
                return BACKWARDS;
            if (control == IDCANCEL) {
                if (cancel())
                    return null;
                // The question took the focus along.
                if (page.focus)
                    FocusControl(window, page.focus);
                return;
            }
            if (page.event)
                page.event(control, window);
        }, page.close);
        if (direction === null)
            return false;
    }
    return true;
}
