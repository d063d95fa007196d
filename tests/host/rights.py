#!/usr/bin/env python3
"""A product of the machine in the hands of a user without rights: silent runs say so, others start themselves again
by the shell's verb, with all their words and in their folder. Here that gives no rights, so the second process says so.

Arguments: the program that starts Windows programs, vhhost, vhtool, the program that takes the rights away, a folder of
the test's own.
"""
import json
import os
import pathlib
import shutil
import sys

import checks
from checks import expect, windows

RUNNER, HOST, TOOL, WITHOUT, WORK = sys.argv[1:]
WORK = pathlib.Path(WORK) / "a b"
GUID = "{0B8F6C52-4D0E-4B07-9C53-6A1D7F20E9C4}"
ROOT = "HKCU\\Software\\VHRT rights"
SILENT = "wants the rights of an administrator"
ASKED = "can't get the rights of an administrator"


def start(program, *words, rights=False, folder=WORK):
    line = [RUNNER, *([] if rights else [WITHOUT]), program, *words]
    return checks.start(*line, folder=folder)


def log_of(name):
    text = (WORK / name).read_bytes().decode().replace("\r", "")
    return [line[24:] for line in text.splitlines() if line]


def installed():
    return (WORK / "target/one.txt").exists()


def setup(scope):
    folder = WORK / f"setup {scope}"
    folder.mkdir(parents=True)
    (folder / "one.txt").write_text("one")
    (folder / "setup.js").write_text('if (ComponentMoveData("DATA", 0) < 0) throw new Error("not moved");')
    (folder / "product.json").write_text(json.dumps({
        "format": 1, "name": "Rights", "version": "1.0", "guid": GUID, "scope": scope, "target": windows(WORK / "target"),
        "features": [{"name": "All", "files": [{"name": "all", "files": ["one.txt"]}]}]}))
    return folder


def asks(name, program, *words):
    """A run that shows windows asks; the one that it starts has the same words and no rights either."""
    log = f"{name} log.txt"
    code, out = start(program, *words, "--log", log)
    expect(f"{name}: exit code ({out})", code, 10)
    lines = log_of(log)
    begins = [line for line in lines if line.startswith("INFO ") and line.endswith(" ".join([*words, "--log", log]))]
    expect(f"{name}: started twice ({lines})", len(begins), 2)
    expect(f"{name}: where the second one goes", f" --rights-asked-in {windows(WORK)} " in begins[-1], True)
    expect(f"{name}: what is told", [line for line in lines if ASKED in line][:1] != [], True)
    expect(f"{name}: ends", [line for line in lines if "exit code 10" in line] != [] and len(lines) >= 6, True)


def main():
    shutil.rmtree(WORK, ignore_errors=True)
    place = ["--data", "data", "--registry-root", ROOT]
    code, out = start(HOST, windows(setup("user")), "--silent", *place)
    expect(f"a user's product needs no rights ({out})", (code, installed()), (0, True))
    code, out = start(HOST, "--uninstall", GUID, "--silent", *place)
    expect(f"nor does its removal ({out})", (code, installed()), (0, False))

    folder = setup("machine").name
    code, out = start(HOST, folder, "--silent", *place)
    expect(f"silent ({out})", (code, SILENT in out, installed(), (WORK / "data").exists()), (10, True, False, False))
    code, out = start(HOST, folder, "--plan", *place)
    expect(f"a plan needs no rights ({out})", (code, "one.txt" in out), (0, True))
    asks("install", HOST, folder, *place, "--var", "A=b c")
    expect("nothing was installed", (installed(), (WORK / "data").exists()), (False, False))
    code, out = start(TOOL, "pack", folder, "packed.exe", rights=True)
    expect(f"pack ({out})", code, 0)
    packed = WORK / "packed.exe"
    code, out = start(packed, "--silent", *place)
    expect(f"packed, silent ({out})", (code, SILENT in out, installed()), (10, True, False))
    asks("packed", packed, *place)

    # What was asked for, with the rights, from wherever the system starts it.
    taken = ["--rights-asked-in", windows(WORK)]
    code, out = start(HOST, *taken, folder, "--silent", *place, rights=True, folder="/")
    expect(f"with rights ({out})", (code, installed(), (WORK / "data" / GUID).exists()), (0, True, True))
    code, out = start(HOST, "--rights-asked-in", "C:\\nowhere", folder, "--silent", *place, rights=True, folder="/")
    expect(f"a folder that is not there with them ({out})", code, 10)
    code, out = start(HOST, "--list", *place)
    expect(f"the list needs no rights ({out})", (code, "for all users" in out), (0, True))
    for word in ("--modify", "--uninstall"):
        code, out = start(HOST, word, GUID, "--silent", *place)
        expect(f"{word} ({out})", (code, SILENT in out, installed()), (10, True, True))
        asks(word[2:], HOST, word, GUID, *place)
    code, out = start(HOST, "--uninstall", folder, "--silent", *place)
    expect(f"--uninstall by the folder ({out})", (code, SILENT in out, installed()), (10, True, True))
    code, out = start(HOST, *taken, "--uninstall", GUID, "--silent", *place, rights=True, folder="/")
    expect(f"removed with rights ({out})", (code, installed(), (WORK / "data").exists()), (0, False, False))

    # Where nobody names a folder, the machine's own one.
    machine = pathlib.Path(os.environ.get("VHRT_PREFIX") or pathlib.Path(RUNNER).parent.parent / ".wine/prefix")
    machine /= "drive_c/ProgramData/VHSetup"
    own = ["--silent", "--registry-root", ROOT]
    code, out = start(HOST, folder, *own)
    expect(f"silent, the machine's folder ({out})", (code, machine.exists()), (10, False))
    code, out = start(HOST, folder, *own, rights=True)
    expect(f"the machine's folder ({out})", (code, installed(), (machine / GUID / "install.log").exists(),
                                             (machine / "host/vhhost.exe").exists()), (0, True, True, True))
    code, out = start(HOST, "--uninstall", GUID, *own)
    expect(f"its removal without rights ({out})", (code, SILENT in out, installed()), (10, True, True))
    code, out = start(HOST, "--uninstall", GUID, *own, rights=True)
    expect(f"its removal ({out})", (code, installed(), machine.exists()), (0, False, False))
    checks.finish()


main()
