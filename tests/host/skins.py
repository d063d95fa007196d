#!/usr/bin/env python3
"""Containers of skins by another hand than the library's, and a look at pictures of vhtool.

usage: skins.py make FOLDER             containers that no tool would write
       skins.py compare FILE FOLDER     the entries of a container are the files of a folder
       skins.py pictures FOLDER NAME... a picture for each name and no other, all of a page with the sample's foot
       skins.py same ONE OTHER          two pictures that show the same below the titles
"""
import pathlib
import struct
import sys
import zlib

NUMBER = 0x5AC3961F
KEY = [letter ^ NUMBER.to_bytes(4, "little")[i % 4] for i, letter in enumerate(b"OLD TIDE")]


def turned(byte):
    return byte >> 4 | byte << 4 & 0xF0


def scramble(data):
    return bytes(turned(byte ^ 0xFF ^ KEY[i % 8]) for i, byte in enumerate(data))


def descramble(data):
    return bytes(turned(byte) ^ KEY[i % 8] ^ 0xFF for i, byte in enumerate(data))


def make(folder):
    names = [rb"..\x.gif", b"../x.gif", b"C:x.gif", rb"a\b.gif", rb"\\server\x", b"NUL.gif", b"com1", b"CONIN$", b"aux .b",
             b"x.", b"x ", b"", b"a\x07b", b"SKIN.INI", b"x?", b"x" * 256, b"\xff"]
    text = b"skin.ini\0" + b"5\0[ALL]"
    for i, name in enumerate(names):
        (folder / f"name{i}.skin").write_bytes(scramble(text + name + b"\0" + b"1\0x"))
    (folder / "cut.skin").write_bytes(scramble(text + b"a.gif\0" + b"9\0x"))
    (folder / "bare.skin").write_bytes(scramble(b"a.gif\0" + b"1\0x"))
    (folder / "plain.skin").write_bytes(text)
    print(len(names))


def compare(file, folder):
    data, found = descramble(file.read_bytes()), {}
    while data:
        name, size, data = data.split(b"\0", 2)
        found[name.decode()], data = data[:int(size)], data[int(size):]
    wanted = {one.name: one.read_bytes() for one in folder.iterdir()}
    assert found == wanted, [name for name in found | wanted if found.get(name) != wanted.get(name)]
    assert list(found) == ["skin.ini", *sorted(wanted.keys() - {"skin.ini"})], list(found)


def pixels(file):
    data = file.read_bytes()
    width, height = struct.unpack(">II", data[16:24])
    # 460 by 305 dialog units of 6 by 13 pixels.
    assert (width, height) == (690, 496), (file, width, height)
    start = data.index(b"IDAT") + 4
    return width, zlib.decompress(data[start:start + int.from_bytes(data[start - 8:start - 4], "big")])


def pictures(folder, *names):
    assert sorted(one.name for one in folder.iterdir()) == sorted(name + ".png" for name in names)
    for name in names:
        width, rows = pixels(folder / (name + ".png"))
        at = lambda x, y: tuple(rows[(1 + width * 3) * y + 1 + 3 * x:][:3])
        assert at(2, 492) == (228, 232, 238), (name, at(2, 492))
        assert min(at(2, 300)) == max(at(2, 300)) >= 200, (name, at(2, 300))
        # In the middle of the button that goes on, above its text.
        assert at(520, 466)[2] > at(520, 466)[0] + 60, (name, at(520, 466))


def same(one, other):
    width, first = pixels(one)
    below = (1 + width * 3) * 62
    assert first[below:] == pixels(other)[1][below:], f"{one} and {other} differ"


command, *words = sys.argv[1:]
if command == "pictures":
    pictures(pathlib.Path(words[0]), *words[1:])
else:
    {"make": make, "compare": compare, "same": same}[command](*map(pathlib.Path, words))
