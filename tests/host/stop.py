#!/usr/bin/env python3
"""Ctrl+C in runs and in a removal: exit code, message, and what is left on the disk.

usage: stop.py RUNNER VHHOST WORK
"""
import json
import pathlib
import shutil
import signal
import subprocess
import sys

RUNNER, HOST, WORK = sys.argv[1], sys.argv[2], pathlib.Path(sys.argv[3])
FILES = 400
MOVED = 'ComponentMoveData("DATA", 0);\nPrint("moved");\n'
# The script behind the transfer; how many times Ctrl+C comes; exit code and what is said at the end.
RUNS = {
    "nothing is called": ("var i = 0; while (true) i++;", 1, 6, "rolled back, "),
    "an error is caught": ("while (true) try { ListCreate(0); } catch (e) {}", 1, 6, "rolled back, "),
    "the library is called": ("while (true) IsEmpty(1);", 1, 6, "stopped by the user"),
    "an object is called": ('var o = GetTextSub(1).object; while (true) try { o.Substitute("<A>"); } catch (e) {}', 1, 6,
                            "stopped by the user"),
    "Ctrl+C comes again": ("var i = 0; while (true) i++;", 2, 9, "ended at once; the next run undoes this one"),
}
problems = []


def run(name, words, signals=0, when=None):
    """The exit code and all that was said. Ctrl+C comes when a line holds `when`, and again when the first is told."""
    command = [RUNNER, HOST, str(WORK / "setup"), "--data", str(WORK / "data"), *words]
    process = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    said = ""
    for line in process.stdout:
        said += line.decode("utf-8").replace("\r", "")
        if signals and (when if isinstance(when, str) else "") in said:
            signals -= 1
            process.send_signal(signal.SIGINT)
            when = "stopping; Ctrl+C once more"
    return process.wait(timeout=60), said


def expect(name, result, code, text, files):
    left = sum(1 for path in (WORK / "target").rglob("*") if path.is_file())
    if result[0] != code or text not in result[1] or (files is not None and left != files):
        problems.append(f"{name}: exit code {result[0]}, {left} files\n{result[1][-2000:]}")


shutil.rmtree(WORK, ignore_errors=True)
(WORK / "setup/payload").mkdir(parents=True)
for number in range(FILES):
    (WORK / f"setup/payload/{number}.txt").write_text(str(number))
product = {"format": 1, "name": "Stopped", "version": "1.0", "guid": "{3B7E0B55-5C1C-4E0B-9D4B-0E6C7C1B2A12}",
           "features": [{"name": "All", "files": [{"name": "all", "files": [{"path": "payload/*"}]}]}]}
(WORK / "setup/product.json").write_text(json.dumps(product))
(WORK / "setup/setup.js").write_text(MOVED)
target = ["--target", str(WORK / "target")]
for name, (script, signals, code, text) in RUNS.items():
    (WORK / "loop.js").write_text(MOVED + script)
    result = run(name, [*target, "--silent", "--script", str(WORK / "loop.js")], signals, "moved\n")
    expect(name, result, code, text, 0 if code == 6 else None)
expect("the run after an ended one", run("", target), 0, "an unfinished installation was undone", FILES)
stopped = run("", ["--uninstall"], 1, "removed: file")
expect("a removal", stopped, 6, " records are left, and the next removal goes on with them", None)
if not any((WORK / "target").iterdir()):
    problems.append("a removal: nothing was left")
expect("the removal after it", run("", ["--uninstall"]), 0, "removed", 0)
print(*problems, sep="\n")
sys.exit(1 if problems else 0)
