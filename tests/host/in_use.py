#!/usr/bin/env python3
"""Files in use: a program that runs, and a file that is held without sharing, when their product is upgraded, repaired
or removed. Looks at the tree, at what is scheduled with the system, and at what the next start makes of it.

usage: in_use.py RUNNER VHHOST PROGRAM WORK
"""
import contextlib
import hashlib
import json
import os
import pathlib
import shutil
import subprocess
import sys

import checks
from checks import expect, windows

RUNNER, HOST, PROGRAM, WORK = *sys.argv[1:4], pathlib.Path(sys.argv[4])
GUID = "{7C1E5A0B-34D2-4E0C-9B51-0F2E6D8A9C31}"
ROOT = "HKCU\\Software\\VHRT in use"
SESSION = "HKLM\\System\\CurrentControlSet\\Control\\Session Manager"
RESTART = 3010 % 256  # exit codes are cut here
TARGET, DATA = WORK / "target", WORK / "data"


def start(*words, program=HOST):
    return checks.start(RUNNER, program, *words)


def run(name, *words, code=0, says=()):
    rc, out = start(*words, "--silent", "--data", windows(DATA), "--registry-root", ROOT)
    expect(f"{name}: exit code ({out.strip()[-500:]})", rc, code)
    for text in says:
        expect(f"{name}: says {text!r} ({out.strip()[-500:]})", text in out, True)


class Held:
    """A program that runs until the end of the block: the product's own, or one that keeps a file from everybody."""

    def __init__(self, program, *words, how="hold"):
        self.process = subprocess.Popen([RUNNER, str(program), how, *words], stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE)

    def __enter__(self):
        expect("the holder", self.process.stdout.readline().strip(), b"ready")

    def __exit__(self, *_):
        self.process.stdin.close()
        expect("end of the holder", self.process.wait(timeout=60), 0)


def running():
    return Held(TARGET / "app.exe")


def held():
    return Held(PROGRAM, windows(TARGET / "data.bin"))


def being_read():
    """As most readers have a file: all is shared but its end."""
    return Held(PROGRAM, windows(TARGET / "data.bin"), how="read")


def scheduled():
    """Pairs of source and target below the test's folder, as paths here; an empty target is a deletion."""
    file = WORK / "session.reg"
    start("export", SESSION, windows(file), "/y", program="reg")
    text = file.read_text("utf-16").replace("\\\n", "")
    pairs = []
    for line in text.splitlines():
        if line.startswith('"PendingFileRenameOperations"=hex(7):'):
            raw = bytes(int(byte, 16) for byte in line.split(":", 1)[1].split(",") if byte.strip())
            names = raw.decode("utf-16-le").split("\0")
            pairs = list(zip(names[0::2], names[1::2]))
    there = "\\??\\" + windows(WORK) + "\\"

    def here(name):
        return name.lstrip("!").removeprefix("\\??\\Z:").replace("\\", "/") if name else ""
    return [(here(source), here(target)) for source, target in pairs if source.startswith(there)]


def restart():
    """What the system does with the list when it starts, and then empties it."""
    for source, target in scheduled():
        path = pathlib.Path(source)
        if target and path.exists():
            path.replace(target)
        elif path.is_dir() and not any(path.iterdir()):
            path.rmdir()
        elif path.is_file():
            path.unlink()
    start("delete", SESSION, "/v", "PendingFileRenameOperations", "/f", program="reg")


def tree():
    return {str(path.relative_to(TARGET)): digest(path.read_bytes()) for path in TARGET.rglob("*") if path.is_file()}


def digest(data):
    return hashlib.sha256(data).hexdigest()[:8]


def make(version):
    """A setup folder, and what its target holds when all is well."""
    folder = WORK / f"setup-{version}"
    (folder / "lib").mkdir(parents=True)
    content = {"app.exe": pathlib.Path(PROGRAM).read_bytes() + version.encode(), "data.bin": version.encode() * 100,
               "lib/other.bin": b"the same"}
    for name, data in content.items():
        (folder / name).write_bytes(data)
        os.utime(folder / name, (1_700_000_000 + int(version[0]),) * 2)
    (folder / "product.json").write_text(json.dumps({
        "format": 1, "name": "In use", "version": version, "guid": GUID, "target": windows(TARGET),
        "features": [{"name": "All", "files": [{"name": "all", "files": [
            {"path": "app.exe"}, {"path": "data.bin"}, {"path": "lib/other.bin", "target": "lib"}]}]}]}))
    (folder / "setup.js").write_text('if (ComponentMoveData("DATA", 0) < 0) throw new Error("not moved");\n'
                                     'Print("restart=", GetReboot().object.Needed);\n'
                                     'if (Arguments("FAIL")) throw new Error("asked to fail");\n')
    return windows(folder), {name: digest(data) for name, data in content.items()}


def clean(name, content):
    expect(f"{name}: the tree", tree(), content)
    expect(f"{name}: nothing is scheduled", scheduled(), [])
    expect(f"{name}: no list", (DATA / "in-use.log").exists(), False)


def empty(name):
    clean(name, {})
    expect(f"{name}: folders", [folder.exists() for folder in (TARGET, DATA)], [False, False])


@contextlib.contextmanager
def upgraded(name, hold):
    """While something is held: an upgrade that fails, one that does not, and the same again."""
    file, ending = ("app.exe", ".old") if hold is running else ("data.bin", ".new")
    run(f"{name}: install", one[0])
    with hold():
        run(f"{name}: fails", two[0], "--var", "FAIL=1", code=1, says=["rolled back"])
        clean(f"{name}: fails", one[1])
        run(f"{name}: upgrade", two[0], code=RESTART, says=[
            f"{file}: is in use", "the system has to start again", f"restart={'false' if hold is running else 'true'}"])
        for step in ("upgrade", "again"):
            aside = next(TARGET.rglob(".~vh*"), TARGET)
            expect(f"{name}: {step}: aside", aside.suffix, ending)
            expect(f"{name}: {step}: in place", digest((TARGET / file).read_bytes()), (two if hold is running else one)[1][file])
            expect(f"{name}: {step}: scheduled", scheduled(), [(str(aside), "" if hold is running else str(TARGET / file))])
            plan = start(two[0], "--plan", "--data", windows(DATA), "--registry-root", ROOT)[1]
            expect(f"{name}: {step}: planned bytes in {plan}", "bytes written" in plan, False)
            if step == "upgrade":
                run(f"{name}: again", two[0], code=RESTART)
        yield


def removed(name):
    run(f"{name}: removal", "--uninstall", GUID)
    empty(f"{name}: removal")


def nothing_to_remove(name):
    run(f"{name}: nothing to remove", "--uninstall", GUID, code=4, says=["no such product"])
    empty(f"{name}: in the end")


def remove_held(name):
    run(f"{name}: removal", "--uninstall", GUID, code=RESTART, says=["the system has to start again"])
    expect(f"{name}: its log", (DATA / GUID).exists(), False)
    expect(f"{name}: its other files", (TARGET / "lib").exists(), False)
    expect(f"{name}: scheduled", sorted(scheduled()), sorted((str(path), "") for path in (TARGET, *TARGET.iterdir())))


def live(hold):
    name = hold.__name__
    with upgraded(f"{name}, next start", hold):
        pass
    run(f"{name}: next start", two[0])
    clean(f"{name}: next start", two[1])
    removed(name)

    with upgraded(f"{name}, restart", hold):
        pass
    restart()
    expect(f"{name}, restart: tree", tree(), two[1])
    removed(f"{name}, restart")

    with upgraded(f"{name}, removal", hold):
        remove_held(f"{name}, removal")
    nothing_to_remove(f"{name}, removal")

    with upgraded(f"{name}, free removal", hold):
        pass
    removed(f"{name}, free removal")

    run(f"{name}: install", one[0])
    with hold():
        remove_held(f"{name}, plain removal")
    restart()
    expect(f"{name}: after the restart", TARGET.exists(), False)
    nothing_to_remove(f"{name}, plain removal")

    # Installed again while what has to go is still there.
    run(f"{name}: install", one[0])
    with hold():
        remove_held(f"{name}, installed again")
        run(f"{name}: installed again", one[0], code=RESTART if hold is running else 0)
    restart()
    expect(f"{name}: installed again", tree(), one[1])
    removed(f"{name}, installed again")


def live_read():
    """What differs from a file that nobody shares: the system calls it want of access."""
    with upgraded("being read", being_read):
        pass
    run("being read: next start", two[0])
    clean("being read: next start", two[1])
    with being_read():
        run("being read: removal", "--uninstall", GUID, code=RESTART)
    nothing_to_remove("being read")


shutil.rmtree(WORK, ignore_errors=True)
WORK.mkdir(parents=True)
one, two = make("1.0"), make("2.0")
live(running)
live(held)
live_read()
start("delete", ROOT, "/f", program="reg")
checks.finish()
