#!/usr/bin/env python3
"""Compares what the library reads of the versions of many real executables with an independent reader.

usage: check_versions.py TOP RUNNER PROGRAM WORK-FOLDER
PROGRAM, started by RUNNER, prints for each path of a list "path<TAB>version or code<TAB>words or code".
"""
import os
import pathlib
import struct
import subprocess
import sys

from version_reader import read_versions

LEAST_VERSIONS = 100
SUFFIXES = {".exe", ".dll", ".drv", ".sys", ".ocx", ".cpl", ".acm", ".tlb", ".ini", ".inf", ".txt"}


def real_files(top, program):
    """Files of the prefix's Windows, and our own."""
    prefix = pathlib.Path(os.environ.get("VHRT_PREFIX") or top / ".wine/prefix")
    for folder in (prefix / "drive_c/windows", pathlib.Path(program).parent):
        for path in sorted(folder.rglob("*")):
            if path.suffix.lower() in SUFFIXES and path.is_file() and not path.is_symlink():
                yield path


def expected_lines(path):
    """All answers that are right: a file may hold one resource for each of several languages."""
    try:
        versions = read_versions(path.read_bytes())
    except (ValueError, KeyError, struct.error):
        versions = []
    if not versions:
        return ["-8\t-8"], False
    return [version + "\t" + " ".join(f"{word:08x}" for word in words) for version, words in versions], True


def main(top, runner, program, work):
    top, work = pathlib.Path(top), pathlib.Path(work)
    work.mkdir(parents=True, exist_ok=True)
    subprocess.run([top / "scripts/wine-prefix"], check=True)
    files = list(real_files(top, program))
    listed = work / "paths.txt"
    listed.write_text("".join(f"Z:{str(path).replace('/', chr(92))}\n" for path in files), encoding="utf-8")
    # A file, not a pipe: services that start with the program would keep a pipe open.
    answered = work / "answers.txt"
    with answered.open("wb") as output:
        subprocess.run([runner, program, listed], check=True, stdout=output)
    answers = answered.read_text(encoding="utf-8").splitlines()
    if len(answers) != len(files):
        sys.exit(f"{len(files)} files, but {len(answers)} answers")
    problems = with_version = with_words = 0
    for path, answer in zip(files, answers):
        right, has_version = expected_lines(path)
        with_version += has_version
        with_words += has_version and any(not line.endswith("\t") for line in right)
        if answer not in right:
            problems += 1
            print(f"{path}: {answer!r} instead of {right}")
    print(f"{len(files)} files, {with_version} with a version, {with_words} with translations, {problems} differences")
    if problems or with_version < LEAST_VERSIONS or with_words < LEAST_VERSIONS or with_version == len(files):
        sys.exit("too few files of a kind" if not problems else 1)


main(*sys.argv[1:])
