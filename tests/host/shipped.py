#!/usr/bin/env python3
"""What the programs hold that are handed out: each one's manifest, and the libraries that the system loads for it by
name; and that a packed setup loads none that lies beside it.

Arguments: the source folder, the program that starts Windows programs, the folder of what was built, a folder of the
test's own.
"""
import pathlib
import shutil
import struct
import sys
import xml.etree.ElementTree

import checks
from checks import expect, windows

SOURCE, RUNNER, BIN, WORK = sys.argv[1:]
SOURCE, BIN, WORK = map(pathlib.Path, (SOURCE, BIN, WORK))
PROGRAMS = ["vhhost.exe", "vhtool.exe", "vhrt_ui_driver.exe"]
LIBRARIES = ["VHRT.dll", "vhres.dll", "vhuser.dll", "vhskin.dll"]
# Every supported Windows takes these from its own folder, whatever lies beside the program ("KnownDLLs").
KNOWN = {"kernel32.dll", "msvcrt.dll", "advapi32.dll", "shell32.dll", "user32.dll", "gdi32.dll", "ole32.dll",
         "oleaut32.dll", "shlwapi.dll"}
# What is loaded by name at run time, by the product or by the system itself. Wine has no known libraries: those that
# its shell imports (version, shcore) would come from beside the program there, whatever that does.
LATE = ["bcrypt", "rstrtmgr", "uxtheme", "comctl32", "dwmapi", "cryptbase", "propsys", "winspool.drv", "wininet",
        "mlang", "jscript", "vhres", "VHRT"]
SYSTEMS = {"{35138b9a-5d96-4fbd-8e2d-a2440225f93a}", "{4a2f28e3-53b9-4441-ba9c-d69d4a4a6e38}",
           "{1f676c76-80e1-4239-95bb-83d0f6d0da78}", "{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a}"}
MANIFEST = {"dpiAware": "true", "dpiAwareness": "PerMonitorV2, System", "longPathAware": "true"}


class Image:
    """As much of a program file as the loader reads for it."""

    def __init__(self, file):
        self.data = file.read_bytes()
        self.head = self.number(0x3C)
        sections, optional = self.number(self.head + 6, "<H"), self.number(self.head + 20, "<H")
        at = self.head + 24 + optional
        # Address, size, place in the file.
        self.sections = [(self.number(row + 12), max(self.number(row + 8), self.number(row + 16)), self.number(row + 20))
                         for row in range(at, at + 40 * sections, 40)]

    def number(self, at, form="<I"):
        return struct.unpack_from(form, self.data, at)[0]

    def place(self, address):
        return next(place + address - start for start, size, place in self.sections if start <= address < start + size)

    def table(self, number):
        """The place of a table that the header names; None for none."""
        address = self.number(self.head + 24 + 112 + 8 * number)
        return self.place(address) if address else None

    def imports(self, number, step, name):
        at = self.table(number)
        while at is not None and (address := self.number(at + name)):
            start = self.place(address)
            yield self.data[start:self.data.index(b"\0", start)].decode().lower()
            at += step

    def resources(self, wanted):
        root = self.table(2)

        def below(at):
            count = self.number(at + 12, "<H") + self.number(at + 14, "<H")
            for row in range(at + 16, at + 16 + 8 * count, 8):
                yield self.number(row), self.number(row + 4)

        for kind, names in below(root) if root is not None else ():
            for name, languages in below(root + (names & 0x7FFFFFFF)) if kind == wanted else ():
                for _, leaf in below(root + (languages & 0x7FFFFFFF)):
                    start = self.place(self.number(root + leaf))
                    yield name, self.data[start:start + self.number(root + leaf + 4)]


def check_manifest(name, image):
    found = list(image.resources(24))
    expect(f"{name}: manifests", [number for number, _ in found], [1])
    for _, text in found:
        items = [(item.tag.split("}")[1], item) for item in xml.etree.ElementTree.fromstring(text).iter()]
        expect(f"{name}: systems", {item.get("Id") for tag, item in items if tag == "supportedOS"}, SYSTEMS)
        expect(f"{name}: settings", {tag: item.text for tag, item in items if tag in MANIFEST}, MANIFEST)
        expect(f"{name}: rights", [item.attrib for tag, item in items if tag == "requestedExecutionLevel"],
               [{"level": "asInvoker", "uiAccess": "false"}])
        expect(f"{name}: controls", [item.get("version") for tag, item in items if item.get("name", "").endswith(
            "Common-Controls")], ["6.0.0.0"])


def check_imports(name, image):
    # Import table, and the one of imports that wait for their first call.
    expect(f"{name}: imports", sorted({*image.imports(1, 20, 12), *image.imports(13, 32, 4)} - KNOWN), [])


def start(program, *words):
    return checks.start(RUNNER, program, *words)


def main():
    shutil.rmtree(WORK, ignore_errors=True)
    download = WORK / "download"
    download.mkdir(parents=True)
    setup = download / "setup.exe"
    code, out = start(BIN / "vhtool.exe", "pack", windows(SOURCE / "tests/host/setup"), windows(setup))
    expect(f"pack ({out})", code, 0)
    for name in PROGRAMS + LIBRARIES:
        image = Image(BIN / name)
        check_imports(name, image)
        if name in PROGRAMS:
            check_manifest(name, image)
    check_imports("the packed setup", Image(setup))
    check_manifest("the packed setup", Image(setup))
    # No loader takes these for a library: whoever asks for one of them gets an error.
    for name in LATE:
        (download / (name if "." in name else name + ".dll")).write_text("planted")
    place = ["--silent", "--data", windows(WORK / "data")]
    code, out = start(setup, *place, "--target", windows(WORK / "target"))
    expect(f"a setup among planted libraries ({out})", code, 0)
    expect("what it installed", (WORK / "target/readme.txt").exists(), True)
    code, out = start(setup, *place, "--uninstall")
    expect(f"its removal ({out})", code, 0)
    expect("what it left", (WORK / "target").exists(), False)
    checks.finish()


main()
