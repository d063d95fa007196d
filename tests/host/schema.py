#!/usr/bin/env python3
"""Holds docs/product.schema.json against the reader: neither may accept what the other refuses.

usage: schema.py SOURCE RUNNER VHTOOL WORK
Mutants of valid product files go to both; a mutant on which they differ is shown. Exit code 1 when there is one.
"""
import copy
import json
import os
import pathlib
import random
import re
import shutil
import subprocess
import sys

import jsonschema

# What the reader refuses and JSON Schema can't say: it is about the payload, about another value, or about bounds that
# count through the whole file. The last two are of the check alone.
ONLY_THE_READER = [
    r"payload file|payload is a folder|where no payload may lie|bytes instead of|stands for more than",
    r"at the target|has the target",
    r"exists already",
    r"there is no feature",
    r"there are more than|nested deeper than",
    r"the key .* comes twice",
    r"no variable",
    r"no setup type selects",
]
# Names that the schema refuses where they are no numbers, and the reader where they are no languages of the product.
EITHER = re.compile("is no language of the product")
# Values that go to every place of a product file, and what becomes of a text.
VALUES = [None, True, False, 0, 1, -1, 5, 1.5, 2.0, 40000, 2**31, 2**32, 2**63, "", "x", "16", {}, [], ["x"], {"a": "b"},
          "a" * 201, "a" * 1025, "a" * 32768, "{6F3C1C39-0C50-4C92-8B0D-5A1A4F3E1D0G}"]
TEXTS = [lambda text, extra=extra: text + extra for extra in
         ("\n", "\0", "\\", "/", "/x", "\\..\\x", "/.", ".", " ", ":", "<", ">", "*", "/*", "?", "|", "/nul", "/Com1.x",
          "/a ", "/CONIN$ .x", "\u00e9", "/<A>", "0", ".1", ".1.1.1.1")] + [
         lambda text, extra=extra: extra + text for extra in ("\\", "../", "C:", "con\\", "lpt\u00b2.", "<X>\\", " ")]
# Every key, so that each has mutants.
FULL = {
    "$schema": "x", "format": 1, "name": "Full", "version": "1.2.3.4", "company": "c", "key": "k", "skin": "a.skin",
    "guid": "{6F3C1C39-0C50-4C92-8B0D-5A1A4F3E1D01}", "installGuid": "{6f3c1c39-0c50-4c92-8b0d-5a1a4f3e1d02}",
    "languages": [1033, 1031], "strings": {"1033": {"A": "x"}}, "target": "<PROGRAMFILES>/x\\y", "payload": "p",
    "scope": "machine",
    "script": "a.js", "scripts": ["b/c.js"], "maintenanceOption": 4, "enabledServices": -5, "variables": {"A": "b"},
    "features": [{
        "name": "F", "displayName": "a", "description": "b", "longText": "c", "miscText": "d", "texts": {"16": "x"},
        "visible": True, "required": True, "selected": False, "target": "<TARGETDIR>\\x", "order": 3, "flags": 1,
        "status": 4, "key": "k", "languages": [1033], "systems": ["server"],
        "files": [{"name": "g", "target": "t", "languages": [1033], "systems": ["windows-8.1"], "flags": ["shared"],
                   "files": ["a/b.x", {"path": "a/*", "recurse": True, "target": "x", "flags": ["permanent"]},
                             {"path": "a", "name": "b", "size": 1, "version": "1.0", "language": 7}]}],
        "features": [{"name": "G"}]}],
    "setupTypes": [{"name": "T", "displayName": "t", "description": "u", "features": ["F", "*"]}],
    "support": [{"name": "s", "files": ["s.txt"]}],
    "registrySets": [{"name": "R", "feature": "F", "keys": [{"root": "HKCU", "key": "Software\\X", "values": [
        {"name": "a", "type": "text", "data": "x"}, {"type": "number", "data": 4294967295},
        {"type": "binary", "data": "0aFF"}, {"type": "texts", "data": ["a"]}, {"type": "expand", "data": ""}]}]}],
    "shellObjects": [{"name": "S", "folder": "f", "target": "<TARGETDIR>\\a.exe", "arguments": "x", "workingDir": "w",
                      "icon": "i", "iconIndex": -2, "feature": "F"}],
    "media": {"texts": ["a"], "number": 1, "truths": [True]},
}


def places(value, path=()):
    yield path
    members = value.items() if isinstance(value, dict) else enumerate(value) if isinstance(value, list) else ()
    for key, below in members:
        yield from places(below, path + (key,))


def changed(product, path, change):
    """A copy in which `change` got the object or list that holds the place, and the key or index in it."""
    product = copy.deepcopy(product)
    holder = product
    for key in path[:-1]:
        holder = holder[key]
    change(holder, path[-1])
    return product


def mutants(product):
    yield product
    for path in places(product):
        if not path:
            continue
        for value in VALUES:
            yield changed(product, path, lambda holder, key, value=value: holder.__setitem__(key, copy.deepcopy(value)))
        yield changed(product, path, lambda holder, key: holder.pop(key))
        yield changed(product, path, lambda holder, key: holder.extend([holder[key]] * 80) if isinstance(holder, list)
                      else holder.__setitem__("odd" if key != "data" else key, 1))

        def retext(holder, key, change):
            if isinstance(holder[key], str):
                holder[key] = change(holder[key])
            elif isinstance(holder, dict):
                holder[change(key)] = holder.pop(key)
        for change in TEXTS:
            yield changed(product, path, lambda holder, key, change=change: retext(holder, key, change))


def main(source, runner, tool, work):
    source, work = pathlib.Path(source), pathlib.Path(work)
    shutil.rmtree(work, ignore_errors=True)
    schema = json.loads((source / "docs/product.schema.json").read_text(encoding="utf-8"))
    jsonschema.Draft202012Validator.check_schema(schema)
    validator = jsonschema.Draft202012Validator(schema)
    seeds = [FULL] + [json.loads((source / name).read_text(encoding="utf-8"))
                      for name in ("samples/sdk/product.json", "tests/host/setup/product.json")]
    generator = random.Random(os.environ.get("VHRT_SEED", "12"))
    # A part of the mutants at random; 0 takes all.
    most = int(os.environ.get("VHRT_MUTANTS", "2000"))
    products = []
    for seed in seeds:
        all_of_them = list(mutants(seed))
        count = min(len(all_of_them), most if seed is FULL else most // 8)
        products += generator.sample(all_of_them, count) if most else all_of_them
    only_the_reader = re.compile("|".join(ONLY_THE_READER))
    refused, differences = 0, 0
    for start in range(0, len(products), 500):
        batch = products[start:start + 500]
        for number, product in enumerate(batch):
            (work / str(number)).mkdir(parents=True, exist_ok=True)
            text = json.dumps(product, ensure_ascii=False)
            (work / str(number) / "product.json").write_text(text, encoding="utf-8")
        run = subprocess.run([runner, tool, "product", "check", *(str(number) for number in range(len(batch)))],
                             cwd=work, stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=300, check=False)
        faults, excused = {}, set()
        for line in run.stdout.decode("utf-8").splitlines():
            if match := re.search(r"\\(\d+)\\product\.json(?:\([\d,]+\))?: (.*)", line):
                if EITHER.search(match[2]):
                    excused.add(int(match[1]))
                elif not only_the_reader.search(match[2]):
                    faults.setdefault(int(match[1]), match[2])
        if run.returncode != 1:
            sys.exit(f"vhtool: exit code {run.returncode}: {run.stderr.decode()}")
        for number, product in enumerate(batch):
            wrong = next(validator.iter_errors(product), None)
            refused += number in faults
            if (wrong is None) != (number not in faults) and not (wrong and number in excused):
                differences += 1
                print(f"schema: {wrong and wrong.json_path + ': ' + wrong.message[:200]}; reader: {faults.get(number)}")
    print(f"{len(products)} products, {refused} refused by both, {differences} differences")
    sys.exit(1 if differences or not 0 < refused < len(products) else 0)


main(*sys.argv[1:])
