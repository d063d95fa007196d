#!/usr/bin/env python3
"""Holds types/vhrt.d.ts and docs/script-constants.md against what vhtool makes, and looks at the declarations.

usage: declarations.py SOURCE RUNNER VHTOOL
Where the TypeScript compiler is on the path, it reads them with the samples too.
"""
import pathlib
import re
import shutil
import subprocess
import sys

source, runner, tool = pathlib.Path(sys.argv[1]), *sys.argv[2:]
problems = []


def made(*options):
    run = subprocess.run([runner, tool, "exports", *options], stdout=subprocess.PIPE, timeout=120, check=True)
    return run.stdout.decode("utf-8").replace("\r", "")


for file, options in (("types/vhrt.d.ts", ["--types", "--headers", str(source / "exports/vhrt")]),
                      ("docs/script-constants.md", ["--constants"])):
    if (source / file).read_text(encoding="utf-8") != made(*options):
        problems.append(f"{file} is not what vhtool exports {' '.join(options)} prints")

text = (source / "types/vhrt.d.ts").read_text(encoding="utf-8")
code = re.sub(r"/\*.*?\*/|//[^\n]*", "", text, flags=re.S)
KIND = r"(?:[\w.]+(?:\[\])?|Partial<\w+>|\{ result: \w+(?:; \w+: \w+)+ \})"
TYPE = rf"{KIND}(?: \| {KIND})*"
LINE = re.compile(rf"type (?P<type>\w+) = {TYPE};|interface \w+ {{|}}|\w+: {TYPE};|declare namespace VHRT {{|"
                  rf"function (?P<function>\w+)\((?:(?:, )?(?:\.\.\.)?(?!function\b)\w+: {TYPE})*\): {TYPE};|"
                  r"const (?P<constant>\w+): (?:string|boolean|-?\d+);|import (?P<alias>\w+) = VHRT\.(?P=alias);|")
found = {"function": [], "constant": [], "alias": []}
for number, line in enumerate(code.splitlines(), 1):
    match = LINE.fullmatch(line.strip())
    if not match:
        problems.append(f"vhrt.d.ts:{number}: no declaration: {line.strip()}")
        continue
    for kind, names in found.items():
        names.extend(filter(None, [match[kind]]))
exports = {name.lstrip("_") for name in re.findall(r"^ *(\w+) @", (source / "exports/VHRT.def").read_text(), flags=re.M)}
declared = found["function"] + found["constant"]
for name in exports - set(found["function"]):
    problems.append(f"vhrt.d.ts: {name} is missing")
for name in {name for name in declared if declared.count(name) > 1}:
    problems.append(f"vhrt.d.ts: {name} is declared twice")
if sorted(found["alias"]) != sorted(set(declared) - {"GetObject"}):
    problems.append("vhrt.d.ts: the global names are not the members")

if compiler := shutil.which("tsc"):
    run = subprocess.run([compiler, "--noEmit", "--lib", "es5,scripthost", "--allowJs", "--checkJs", "--strict", "false",
                          str(source / "types/vhrt.d.ts"), str(source / "samples/setup-ui/wizard.js")],
                         stdout=subprocess.PIPE, check=False)
    if run.returncode:
        problems.append(run.stdout.decode("utf-8"))
else:
    print("tsc is not on the path: the TypeScript compiler was not asked")
print(*problems, sep="\n")
print(f"{len(found['function'])} functions, {len(found['constant'])} constants and values")
sys.exit(1 if problems or len(exports) != 294 else 0)
