#!/usr/bin/env python3
"""Draws the pictures of the resource libraries, as PNG beside this file, at twice the size of a usual display.

usage: draw.py
The library makes them smaller where a display shows less, so they stay crisp at each density.
"""
import math
import pathlib
import struct
import zlib

SAMPLES = 4  # by axis, for each pixel


class Picture:
    """Shapes on 100 units in height, painted one over the other; a point without one has the background."""

    def __init__(self, background=None):
        self.shapes = [(background, lambda x, y: True)]

    def polygon(self, color, *points):
        def inside(x, y):
            hit = False
            for (ax, ay), (bx, by) in zip(points, points[1:] + points[:1]):
                if (ay > y) != (by > y) and x < (bx - ax) * (y - ay) / (by - ay) + ax:
                    hit = not hit
            return hit

        self.shapes.append((color, inside))

    def ring(self, color, x, y, outer, inner=0):
        self.shapes.append((color, lambda px, py: inner <= math.hypot(px - x, py - y) <= outer))

    def pixel(self, column, row, scale):
        total = [0, 0, 0, 0]
        for i in range(SAMPLES * SAMPLES):
            x = (column + (i % SAMPLES + 0.5) / SAMPLES) * scale
            y = (row + (i // SAMPLES + 0.5) / SAMPLES) * scale
            color = next(color for color, inside in reversed(self.shapes) if inside(x, y))
            if color:
                total = [total[0] + color[0], total[1] + color[1], total[2] + color[2], total[3] + 1]
        covered = total[3]
        if not covered:
            return bytes(4)
        return bytes([part // covered for part in total[:3]] + [covered * 255 // SAMPLES**2])

    def write(self, name, width, height):
        rows = b"".join(b"\0" + b"".join(self.pixel(column, row, 100 / height) for column in range(width))
                        for row in range(height))

        def chunk(kind, data):
            return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

        header = struct.pack(">IIBBBBB", width, height, 8, 6, 0, 0, 0)
        place = pathlib.Path(__file__).parent / name
        place.write_bytes(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(rows, 9)) +
                          chunk(b"IEND", b""))


def banner():
    """A parcel that something goes into, on the white of the banner that it ends."""
    picture = Picture((255, 255, 255))
    light, middle, dark, arrow = (126, 178, 221), (64, 124, 183), (36, 84, 138), (236, 140, 42)
    picture.polygon(light, (50, 42), (88, 56), (50, 70), (12, 56))
    picture.polygon(middle, (12, 56), (50, 70), (50, 94), (12, 80))
    picture.polygon(dark, (88, 56), (88, 80), (50, 94), (50, 70))
    picture.polygon((24, 58, 98), (50, 47), (75, 56), (50, 65), (25, 56))
    picture.polygon(arrow, (42, 8), (58, 8), (58, 34), (70, 34), (50, 58), (30, 34), (42, 34))
    return picture


def disk():
    """A disk with a shine."""
    picture = Picture()
    picture.ring((150, 160, 172), 50, 50, 47, 12)
    picture.ring((214, 220, 228), 50, 50, 44, 17)
    picture.polygon((240, 244, 249), (50, 50), (24, 15), (48, 6))
    picture.polygon((240, 244, 249), (50, 50), (76, 85), (52, 94))
    picture.ring((150, 160, 172), 50, 50, 17, 14)
    return picture


banner().write("banner.png", 200, 128)
disk().write("disk.png", 96, 96)
