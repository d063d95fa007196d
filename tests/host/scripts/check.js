// Runs in front of every test script.
var checks = 0;

function Check(what, is, wanted) {
    checks++;
    if (is !== wanted)
        throw new Error(what + ": " + is + " instead of " + wanted);
}

function CheckThrows(what, action, text) {
    checks++;
    try {
        action();
    } catch (error) {
        if (error.description.indexOf(text) < 0)
            throw new Error(what + " said: " + error.description);
        return;
    }
    throw new Error(what + " went through");
}

function Texts(list) {
    var all = [];
    for (var at = ListGetFirstString(list); at.result == 0; at = ListGetNextString(list))
        all.push(at.text);
    return all.join("|");
}

function Done() {
    if (checks == 0)
        throw new Error("nothing was checked");
    Print(checks, " checks");
}
