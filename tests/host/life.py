#!/usr/bin/env python3
"""The life of a made-up product: installed, changed in three orders, damaged, repaired, upgraded twice, an upgrade that
fails, a downgrade, removed by its identifier with the setup gone; the tree is compared with its source after each step.

Arguments: the program that starts Windows programs, vhhost, a folder of the test's own, a number to begin at random,
and for the same with setups in one file vhtool. With "kills=N" in its place N runs of the product are killed instead.
"""
import hashlib
import json
import os
import pathlib
import random
import shutil
import struct
import subprocess
import sys
import time
import zlib

import checks
from checks import expect, faults, windows

RUNNER, HOST, WORK, SEED, *PACKER = sys.argv[1:]
KILLS = int(PACKER.pop()[6:]) if PACKER and PACKER[0].startswith("kills=") else 0
WORK = pathlib.Path(WORK)
GUID = "{2D7C3B55-9C11-4E0A-8E3F-0A6B7D15C4E2}"
ROOT = "HKCU\\Software\\VHRT life"
KEY = f"{ROOT}\\HKCU\\Software\\Life"
ENTRY = f"{ROOT}\\HKCU\\Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\{GUID}"
CONFIG = "config/app.ini"
ALIKE = "lib/three.dll"  # of one size and time in all versions
SHORTCUT = "%APPDATA%\\Microsoft\\Windows\\Start Menu\\Programs\\VHRT life\\Life.lnk"
chance = random.Random(int(SEED))

SCRIPT = """
Print("mode=", GetTextSub(0).object.Substitute("<MAINTENANCE_MODE>"),
      " from=", GetTextSub(0).object.Substitute("<INSTALLED_VERSION>"));
function Each(argument, selected) {
    var names = Arguments(argument);
    names = names ? names.split(",") : [];
    for (var i = 0; i < names.length; i++)
        if (ComponentSelectItem("DATA", names[i], selected) < 0)
            throw new Error("can't select " + names[i]);
}
Each("WITH", 1);
Each("WITHOUT", 0);
if (ComponentMoveData("DATA", 0) < 0)
    throw new Error("the data was not moved");
if (CreateRegistrySet("DATA", "Main") < 0 || CreateShellObjects("DATA") < 0)
    throw new Error("registry or shortcuts");
if (Arguments("FAIL"))
    throw new Error("asked to fail");
"""


def start(*words, program=HOST):
    return checks.start(RUNNER, program, *words)


def run(name, *words, code=0, says="", program=HOST):
    rc, out = start(*words, program=program)
    expect(f"{name}: exit code ({out.strip()[-300:]})", rc, code)
    if says and says not in out:
        faults.append(f"{name}: no {says!r} in {out}")
    return out


def registry(key, *words):
    """Values of a key by name; nothing for a key that is not there."""
    rc, out = start("query", key, *words, program="reg")
    rows = [line.split("    ") for line in out.splitlines() if line.startswith("    ")]
    return {row[1]: row[3] for row in rows if len(row) > 3} if rc == 0 else None


class Product:
    """A version of the product in a setup folder: which feature brings which files."""

    def __init__(self, version, features, before=None):
        self.folder = WORK / f"setup-{version}"
        self.version = version
        self.features = features
        self.content = {}
        self.stamps = before.stamps if before else {}
        for files in features.values():
            for name in files:
                old = before.content.get(name) if before else None
                change = old is None or chance.random() < 0.5 or name == CONFIG
                self.content[name] = chance.randbytes(chance.randrange(3, 9000)) if change else old
                if old and name == ALIKE:
                    self.content[name] = bytes(byte ^ 1 for byte in old)
        for name, data in self.content.items():
            file = self.folder / name
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_bytes(data)
            same = before and (before.content.get(name) == data or name == ALIKE)
            os.utime(file, self.time(name, same))
        values = [{"name": f"v{version}", "type": "text", "data": "<TARGETDIR>"},
                  {"name": "Always", "type": "number", "data": 7}]
        (self.folder / "product.json").write_text(json.dumps({
            "format": 1, "name": "Life", "version": version, "company": "Makers", "guid": GUID, "target": windows(WORK / "target"),
            "features": [{"name": name, "required": name == "Base", "files": [{"name": "all", "files": [
                {"path": path, "target": os.path.dirname(path), "flags": ["keep-changed"] if path == CONFIG else []}
                for path in files]}]} for name, files in features.items()],
            "registrySets": [{"name": "Main", "keys": [{"root": "HKCU", "key": "Software\\Life", "values": values}]}],
            "shellObjects": [{"name": "Life", "folder": "VHRT life", "target": "<TARGETDIR>\\run.exe"}]}))
        (self.folder / "setup.js").write_text(SCRIPT)
        if PACKER:
            self.pack()

    def pack(self):
        """The folder goes as soon as the file is there; two packs are the same."""
        self.file = WORK / f"setup-{self.version}.exe"
        for compress in ("none", "best", "best"):
            before = self.file.read_bytes() if self.file.exists() else b""
            run("pack", "pack", windows(self.folder), windows(self.file), "--compress", compress, program=PACKER[0])
        expect("two packs", self.file.read_bytes() == before, True)
        alone = WORK / "alone"
        alone.mkdir(exist_ok=True)
        for program in (PACKER[0], HOST):
            shutil.copy(program, alone)
        run("no library", "pack", windows(self.folder), windows(self.file), code=4, says="VHRT.dll: is missing",
            program=alone / "vhtool.exe")
        (self.folder / "a:b").write_text("")
        run("impossible name", "pack", windows(self.folder), windows(self.file), code=4, says="a:b: can't be packed", program=PACKER[0])
        shutil.rmtree(self.folder)

    def gone(self):
        self.file.unlink() if PACKER else shutil.rmtree(self.folder)

    def time(self, name, same):
        """A whole number of seconds: the same for files that stay the same."""
        if not same:
            Product.clock += 10
            self.stamps[name] = Product.clock
        return (self.stamps[name],) * 2

    def tree(self, *without):
        return {name: self.content[name] for feature, files in self.features.items() if feature not in without
                for name in files}


Product.clock = int(time.time()) - 1_000_000


def on_disk(folder):
    return {str(file.relative_to(folder)): file.read_bytes() for file in folder.rglob("*") if file.is_file()}


def compare(name, wanted):
    there = on_disk(WORK / "target")
    expect(f"{name}: names", sorted(there), sorted(wanted))
    expect(f"{name}: contents", [file for file in wanted if there.get(file) != wanted[file]], [])


def empty_machine(name):
    expect(f"{name}: target", (WORK / "target").exists(), False)
    # The kept host ends itself once its process is gone.
    for _ in range(100):
        if not (WORK / "data").exists():
            break
        time.sleep(0.1)
    expect(f"{name}: data", sorted(map(str, (WORK / "data").rglob("*"))), [])
    expect(f"{name}: key", registry(KEY), None)
    expect(f"{name}: entry", registry(ENTRY), None)


def features(version):
    # A folder that is a file in between, and a name that is written otherwise.
    turns = ["turn", "lib/CASE.txt"] if version == "2.0" else ["turn/in/file", "lib/Case.txt"]
    layout = {"Base": ["run.exe", CONFIG, "lib/one.dll", *turns], "Tools": ["tools/a.bin", "tools/deep/b.bin", "lib/two.dll"],
              "Help": ["help/index.htm", "help/pictures/c.png"], "More": ["tools/deep/d.bin", "lib/three.dll"]}
    if version == "2.0":
        layout["Base"].append("lib/new.dll")
        layout["Tools"].remove("tools/deep/b.bin")
        layout["Extra"] = ["extra/e.bin"]
        del layout["Help"]
    if version == "3.0":
        layout["Help"].append("help/late.htm")
    return layout


def place(product):
    return [*([] if PACKER else [windows(product.folder)]), "--silent", "--data", windows(WORK / "data"), "--registry-root", ROOT]


def with_setup(product, name, *words, **more):
    return run(name, *place(product), *words, program=product.file if PACKER else HOST, **more)


def damaged_packs(product):
    """A cut or changed file is refused before the target is touched; a signature behind it changes nothing."""
    whole = product.file.read_bytes()
    program = whole.rindex(b"VHPACK01")
    index = int.from_bytes(whole[program + 16:program + 24], "little")
    rows = json.loads(zlib.decompress(whole[index:]))
    next(row for row in rows if row["path"] == "setup.js")["size"] += 1
    text = json.dumps(rows).encode()
    lies = zlib.compress(text)
    lies = whole[:program + 8] + struct.pack("<QQQ", index + len(lies), index, len(text)) + \
        hashlib.sha256(text).digest() + whole[program + 64:index] + lies
    for name, data in (("cut", whole[:-1]), ("cut in two", whole[:program + 200]), ("cut behind the program", whole[:program]),
                       ("other size", lies),
                       *((f"changed at {at}", whole[:at] + bytes([whole[at] ^ 0x40]) + whole[at + 1:])
                         for at in (program, program + 9, program + 30, program + 40, index - 1, index + 5,
                                    *(chance.randrange(program + 64, index) for _ in range(8))))):
        product.file.write_bytes(data)
        rc, out = start(*place(product), program=product.file)
        expect(f"{name}: refused ({out.strip()[-200:]})", rc in (1, 4) and ("cut" in out or "damaged" in out), True)
        expect(f"{name}: what is left", [(WORK / folder).exists() for folder in ("target", "data")], [False, False])
    layout = int.from_bytes(whole[60:64], "little")
    signed = bytearray(whole + b"signature" * 100)
    signed[layout + 24 + 144:layout + 24 + 152] = len(whole).to_bytes(4, "little") + (900).to_bytes(4, "little")
    product.file.write_bytes(signed)
    with_setup(product, "with a signature behind it")
    compare("with a signature behind it", product.tree())
    with_setup(product, "its removal", "--uninstall")
    empty_machine("its removal")


def kill(words, after):
    """Starts the host, and ends it at once that many seconds later. Result: whether it was still there."""
    process = subprocess.Popen([RUNNER, HOST, *map(str, words)], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL)
    try:
        process.wait(after)
        return False
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()
        return True


def duration(*words):
    begin = time.monotonic()
    kill(words, 300)
    return time.monotonic() - begin


def state(name, *allowed):
    """Which of the trees stands at the target; there may be no other."""
    there = on_disk(WORK / "target") if (WORK / "target").exists() else {}
    found = [tree for tree in allowed if tree == there]
    if not found:
        expect(f"{name}: neither state", sorted(there), [sorted(tree) for tree in allowed])
    return found[0] if found else None


def kill_runs():
    """Each killed run is followed by one that does nothing: it undoes, or tidies up behind the commit."""
    many = {"Base": ["run.exe", CONFIG] + [f"lib/{i // 20}/{i}.dll" for i in range(120)],
            "Tools": [f"tools/{i}.bin" for i in range(60)]}
    fewer = {**many, "Tools": [f"tools/{i}.bin" for i in range(30)] + [f"news/{i}.bin" for i in range(30)]}
    one = Product("1.0", many)
    two = Product("2.0", fewer, one)
    nothing = WORK / "nothing.js"
    nothing.write_text("")
    look = ["--script", windows(nothing)]
    remove = ["--uninstall", GUID, "--silent", "--data", windows(WORK / "data")]
    # The shortest of three: most kills have to come before the end.
    times = list(map(min, *([duration(*words) for words in (place(one), place(two), remove)] for _ in range(3))))
    done = [0, 0, 0]
    for turn in range(KILLS):
        step = turn % 3
        if step == 0:
            done[0] += kill(place(one), chance.uniform(0.05, times[0]))
            with_setup(one, f"{turn}: behind a killed installation", *look)
            state(f"{turn}: installation", {}, one.tree())
            with_setup(one, f"{turn}: whole installation")
        elif step == 1:
            done[1] += kill(place(two), chance.uniform(0.05, times[1]))
            with_setup(two, f"{turn}: behind a killed upgrade", *look)
            was_old = state(f"{turn}: upgrade", one.tree(), two.tree()) == one.tree()
            expect(f"{turn}: version", registry(ENTRY).get("DisplayVersion"), "1.0" if was_old else "2.0")
        else:
            done[2] += kill(remove, chance.uniform(0.05, times[2]))
            # Gone already when the kill came late.
            rc, out = start(*remove)
            expect(f"{turn}: second removal ({out.strip()[-200:]})", rc in (0, 4), True)
            state(f"{turn}: removal", {})
            empty_machine(f"{turn}: removal")
            expect(f"{turn}: folders", (WORK / "target").exists(), False)
    print(f"killed {done[0]} installations, {done[1]} upgrades, {done[2]} removals of {KILLS} runs")


def main():
    shutil.rmtree(WORK, ignore_errors=True)
    WORK.mkdir(parents=True)
    start("delete", ROOT, "/f", program="reg")
    if KILLS:
        kill_runs()
    else:
        live()
    start("delete", ROOT, "/f", program="reg")


def live():
    one = Product("1.0", features("1.0"))
    two = Product("2.0", features("2.0"), one)
    three = Product("3.0", features("3.0"), two)
    kept = WORK / "data" / "host" / "vhhost.exe"
    data = ["--data", windows(WORK / "data")]

    with_setup(one, "install", says="mode= from=")
    compare("install", one.tree())
    with_setup(one, "nothing differs", "--verify", says=", 0 not,")
    entry = registry(ENTRY)
    expect("entry", {name: entry.get(name) for name in ("DisplayName", "DisplayVersion", "Publisher", "InstallLocation",
                                                        "EstimatedSize", "NoRepair")},
           {"DisplayName": "Life", "DisplayVersion": "1.0", "Publisher": "Makers",
            "InstallLocation": windows(WORK / "target"),
            "EstimatedSize": hex((sum(map(len, one.content.values())) + 1023) // 1024), "NoRepair": "0x1"})
    host = f"\"{windows(kept)}\""
    words = f"{GUID} --data \"{windows(WORK / 'data')}\""
    expect("commands", [entry.get(name) for name in ("UninstallString", "QuietUninstallString", "ModifyPath")],
           [f"{host} --uninstall {words}", f"{host} --uninstall {words} --silent", f"{host} --modify {words}"])
    run("list", "--list", *data, says=f"{GUID}  Life 1.0  in {windows(WORK / 'target')}\n1 product installed")

    orders = [["Tools", "Help", "More"], ["More", "Tools", "Help"], ["Help", "More", "Tools"]]
    for order in orders:
        gone = []
        for feature in order:
            gone.append(feature)
            with_setup(one, f"without {gone}", "--var", f"WITHOUT={feature}", says="mode=modify from=1.0")
            compare(f"without {gone}", one.tree(*gone))
        for feature in reversed(order):
            gone.remove(feature)
            with_setup(one, f"with {feature} again", "--var", f"WITH={feature}")
            compare(f"with {feature} again", one.tree(*gone))

    run("modify by its identifier", "--modify", GUID, "--silent", *data, "--registry-root", ROOT, program=kept,
        says="maintenance")
    run("modify elsewhere", "--modify", GUID, "--silent", *data, "--target", windows(WORK / "elsewhere"), code=4,
        says="is installed in")
    kept.with_name("VHRT.dll").unlink()
    with_setup(one, "with a damaged kept host")
    expect("the kept host is whole", kept.with_name("VHRT.dll").exists(), True)
    with_setup(one, "another target", "--target", windows(WORK / "elsewhere"), code=4, says="is installed in")

    damaged = WORK / "target" / "lib" / "one.dll"
    stamp = os.stat(damaged)
    damaged.write_bytes(bytes(byte ^ 1 for byte in damaged.read_bytes()))
    os.utime(damaged, ns=(stamp.st_atime_ns, stamp.st_mtime_ns))
    (WORK / "target" / "tools" / "a.bin").unlink()
    shutil.rmtree(WORK / "target" / "help")
    start("delete", KEY, "/v", "Always", "/f", program="reg")
    start("/c", "del", SHORTCUT, program="cmd")
    with_setup(one, "repair", "--repair", says="repaired: 4 files, 1 registry value, 1 shortcut")
    compare("repair", one.tree())
    expect("value is back", registry(KEY).get("Always"), "0x7")
    with_setup(one, "repair of what is whole", "--repair", says="repaired: 0 files, 0 registry values, 0 shortcuts")

    with_setup(two, "upgrade that fails", "--var", "FAIL=1", code=1, says="rolled back")
    compare("upgrade that fails", one.tree())
    expect("its entry", registry(ENTRY).get("DisplayVersion"), "1.0")
    expect("its values", sorted(registry(KEY)), ["Always", "v1.0"])

    (WORK / "target" / CONFIG).write_bytes(b"changed by the user")
    config = {CONFIG: b"changed by the user"}
    with_setup(two, "upgrade", says="mode=upgrade from=1.0")
    compare("upgrade", {**two.tree(), **config})
    expect("upgraded entry", registry(ENTRY).get("DisplayVersion"), "2.0")
    expect("upgraded values", sorted(registry(KEY)), ["Always", "v2.0"])
    expect("empty folders went", (WORK / "target" / "help").exists(), False)

    with_setup(one, "downgrade", code=4, says="version 2.0 is installed, which is higher than 1.0")
    with_setup(one, "allowed downgrade", "--allow-downgrade", says="mode=downgrade from=2.0")
    compare("allowed downgrade", {**one.tree(), **config})
    with_setup(three, "second upgrade", says="mode=upgrade from=1.0")
    compare("second upgrade", {**three.tree(), **config})

    for product in (one, two, three):
        product.gone()
    run("modify without the setup", "--modify", GUID, *data, program=kept, code=4, says="not there any more")
    run("removal", "--uninstall", GUID, "--silent", *data, program=kept, says="removal:")
    compare("removal", config)
    shutil.rmtree(WORK / "target")
    empty_machine("removal")
    run("nothing is left to remove", "--uninstall", GUID, *data, code=4, says="no such product")

    if PACKER:
        damaged_packs(Product("1.0", features("1.0")))

    # A user's own file in the way comes back.
    one = Product("1.0", features("1.0"))
    mine = WORK / "target" / "run.exe"
    mine.parent.mkdir(exist_ok=True)
    mine.write_bytes(b"mine")
    with_setup(one, "over a file of the user")
    compare("over a file of the user", one.tree())
    with_setup(Product("2.0", features("2.0"), one), "upgrade over it")
    run("removal with a file of the user", "--uninstall", GUID, "--silent", *data, program=HOST)
    expect("it is back", on_disk(WORK / "target"), {"run.exe": b"mine"})

    # Kills at random moments are the engine's own test; here a damaged line of the log.
    shutil.rmtree(WORK / "target", ignore_errors=True)
    with_setup(one, "install again")
    log = WORK / "data" / GUID / "install.log"
    lines = log.read_bytes().split(b"\n")
    lines[len(lines) // 2] = b"{damaged" + lines[len(lines) // 2][8:]
    log.write_bytes(b"\n".join(lines))
    log.write_bytes(b"\n".join(line for line in log.read_bytes().split(b"\n") if b'"do":"features"' not in line))
    run("modify by a damaged log", "--modify", GUID, *data, code=4, says=f"where the setup of {GUID} is")
    run("removal by a damaged log", "--uninstall", GUID, "--silent", *data, says="1 unreadable in the log")


main()
checks.finish(f" (seed {SEED})")
