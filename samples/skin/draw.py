#!/usr/bin/env python3
"""Draws the pictures of the sample skin into the folder "quiet", as GIF and BMP.

usage: draw.py
Shapes are told by their distance to a point, so that edges come out smooth. Corners of a GIF are left out; what is
next to them is mixed with the ground that the picture will stand on.
"""
import math
import pathlib
import struct

PLACE = pathlib.Path(__file__).parent / "quiet"
STEPS = 8  # of an edge, so that a picture has few colours

BODY, FOOT, WHITE = (240, 240, 240), (228, 232, 238), (255, 255, 255)
INK, BLUE, DEEP, PALE, LINE = (38, 50, 66), (43, 103, 172), (30, 76, 130), (214, 226, 240), (186, 195, 207)
AMBER = (232, 148, 52)


def mix(one, other, part):
    return tuple(round(a + (b - a) * part) for a, b in zip(one, other))


# Shapes: functions of a point that give the distance to their edge, negative inside.
def box(left, top, right, bottom, radius=0):
    def distance(x, y):
        dx = abs(x - (left + right) / 2) - (right - left) / 2 + radius
        dy = abs(y - (top + bottom) / 2) - (bottom - top) / 2 + radius
        return math.hypot(max(dx, 0), max(dy, 0)) + min(max(dx, dy), 0) - radius

    return distance


def disc(x, y, radius):
    return lambda px, py: math.hypot(px - x, py - y) - radius


def polygon(*points):
    def distance(x, y):
        nearest, inside = math.inf, False
        for (ax, ay), (bx, by) in zip(points, points[1:] + points[:1]):
            nearest = min(nearest, to_segment(x, y, ax, ay, bx, by))
            if (ay > y) != (by > y) and x < (bx - ax) * (y - ay) / (by - ay) + ax:
                inside = not inside
        return -nearest if inside else nearest

    return distance


def to_segment(x, y, ax, ay, bx, by):
    length = (bx - ax) ** 2 + (by - ay) ** 2
    along = max(0, min(1, ((x - ax) * (bx - ax) + (y - ay) * (by - ay)) / length)) if length else 0
    return math.hypot(x - ax - along * (bx - ax), y - ay - along * (by - ay))


def stroke(width, *points):
    def distance(x, y):
        return min(to_segment(x, y, *a, *b) for a, b in zip(points, points[1:])) - width / 2

    return distance


class Picture:
    def __init__(self, width, height, ground, left_out=True):
        self.size = (width, height)
        # None is left out, and mixed as the ground.
        self.ground = ground
        self.pixels = [[None if left_out else ground] * width for _ in range(height)]

    def add(self, color, shape):
        """A colour, or a function of the point that gives one."""
        for row in range(self.size[1]):
            for column in range(self.size[0]):
                x, y = column + 0.5, row + 0.5
                part = round(max(0, min(1, 0.5 - shape(x, y))) * STEPS) / STEPS
                if part:
                    here = color(x, y) if callable(color) else color
                    self.pixels[row][column] = mix(self.pixels[row][column] or self.ground, here, part)
        return self

    def table(self):
        colors = sorted({pixel for row in self.pixels for pixel in row if pixel})
        assert len(colors) < 256, f"{len(colors)} colours"
        return colors

    def gif(self, name):
        colors = self.table()
        bits = max(2, len(colors).bit_length())
        number = {color: i for i, color in enumerate(colors)} | {None: len(colors)}
        table = b"".join(map(bytes, colors)).ljust(3 << bits, b"\0")
        data = compress(bits, [number[pixel] for row in self.pixels for pixel in row])
        blocks = b"".join(bytes([len(data[i:i + 255])]) + data[i:i + 255] for i in range(0, len(data), 255))
        (PLACE / name).write_bytes(b"GIF89a" + struct.pack("<HHBBB", *self.size, 0xF0 | bits - 1, 0, 0) + table +
                                   b"\x21\xF9\4" + struct.pack("<BHBB", 1, 0, len(colors), 0) +
                                   b"," + struct.pack("<HHHHB", 0, 0, *self.size, 0) + bytes([bits]) + blocks + b"\0;")

    def bmp(self, name):
        colors = self.table()
        width, height = self.size
        rows = b"".join(bytes(map(colors.index, row)).ljust((width + 3) // 4 * 4, b"\0")
                        for row in reversed(self.pixels))
        table = b"".join(struct.pack("<BBBB", *reversed(color), 0) for color in colors)
        start = 54 + len(table)
        (PLACE / name).write_bytes(b"BM" + struct.pack("<IIIIiiHHIIiiII", start + len(rows), 0, start, 40, width, height,
                                                       1, 8, 0, len(rows), 3780, 3780, len(colors), 0) + table + rows)


def compress(bits, numbers):
    """The codes of a GIF: each the longest string that came before, with a letter more."""
    clear, total, count, out = 1 << bits, 0, 0, bytearray()

    def put(code, width):
        nonlocal total, count
        total |= code << count
        count += width
        while count >= 8:
            out.append(total & 255)
            total >>= 8
            count -= 8

    known, width, before = {}, bits + 1, None
    put(clear, width)
    for letter in numbers:
        string = letter if before is None else known.get((before, letter))
        if string is not None:
            before = string
            continue
        put(before, width)
        code = clear + 2 + len(known)
        known[before, letter] = code
        if code == 4095:
            put(clear, width)
            known, width = {}, bits + 1
        elif code >> width:
            width += 1
        before = letter
    put(before, width)
    put(clear + 1, width)
    put(0, 7)
    return bytes(out)


def button(name, top, bottom, edge):
    """As large as a button of 56 by 14 dialog units is on a usual display."""
    width, height = 84, 23
    picture = Picture(width, height, FOOT)
    picture.add(edge, box(0, 0, width, height, 4))
    picture.add(lambda x, y: mix(top, bottom, round(y / height * 6) / 6), box(1, 1, width - 1, height - 1, 3))
    picture.gif(name)


def buttons():
    button("button-up.gif", (255, 255, 255), (244, 246, 249), LINE)
    button("button-down.gif", (214, 221, 230), (224, 229, 236), (150, 162, 178))
    button("next-up.gif", mix(BLUE, WHITE, 0.1), BLUE, DEEP)
    button("next-down.gif", DEEP, mix(DEEP, BLUE, 0.4), mix(DEEP, INK, 0.5))


def head():
    """The right half of the head: white that becomes pale, with a few arcs."""
    width, height = 345, 60
    picture = Picture(width, height, WHITE, left_out=False)
    shade = lambda x, part: mix(WHITE, mix(PALE, BLUE, part), round(min(1, x / width * 1.1) * 24) / 24)
    picture.add(lambda x, y: shade(x, 0), box(-9, -9, width + 9, height + 9))
    for radius, part in ((150, 0.06), (105, 0.12), (62, 0.2)):
        picture.add(lambda x, y, part=part: shade(x, part), disc(width + 6, height + 18, radius))
    picture.bmp("head.bmp")


def parcel(picture, left, top, size):
    at = lambda *points: [(left + x * size / 100, top + y * size / 100) for x, y in points]
    light, middle, dark = mix(BLUE, WHITE, 0.55), BLUE, DEEP
    picture.add(middle, polygon(*at((4, 52), (50, 70), (50, 100), (4, 82))))
    picture.add(dark, polygon(*at((96, 52), (96, 82), (50, 100), (50, 70))))
    picture.add(light, polygon(*at((50, 34), (96, 52), (50, 70), (4, 52))))
    picture.add(mix(DEEP, INK, 0.6), polygon(*at((50, 40), (81, 52), (50, 64), (19, 52))))
    picture.add(AMBER, polygon(*at((42, 0), (58, 0), (58, 28), (70, 28), (50, 54), (30, 28), (42, 28))))


def emblem():
    picture = Picture(44, 44, mix(PALE, BLUE, 0.1))
    parcel(picture, 2, 2, 40)
    picture.gif("emblem.gif")


def welcome():
    picture = Picture(300, 180, BODY)
    picture.add(mix(BODY, PALE, 0.8), disc(150, 92, 86))
    picture.add(mix(BODY, PALE, 0.8), disc(40, 128, 26))
    picture.add(mix(BODY, PALE, 0.8), disc(262, 60, 20))
    picture.add(mix(BODY, INK, 0.12), lambda x, y: (math.hypot((x - 150) / 78, (y - 150) / 12) - 1) * 12)
    parcel(picture, 95, 34, 110)
    picture.gif("welcome.gif")


def done():
    picture = Picture(180, 150, BODY)
    picture.add(mix(BODY, PALE, 0.8), disc(90, 75, 72))
    picture.add(WHITE, disc(90, 75, 46))
    picture.add(mix(BLUE, WHITE, 0.1), lambda x, y: abs(math.hypot(x - 90, y - 75) - 46) - 3)
    picture.add(AMBER, stroke(9, (70, 77), (85, 92), (113, 61)))
    picture.gif("done.gif")


# Letters of strokes on 4 by 6 units, as those of a sign.
LETTERS = {
    "C": [[(4, 1), (3, 0), (1, 0), (0, 1), (0, 5), (1, 6), (3, 6), (4, 5)]],
    "E": [[(4, 0), (0, 0), (0, 6), (4, 6)], [(0, 3), (3, 3)]],
    "G": [[(4, 1), (3, 0), (1, 0), (0, 1), (0, 5), (1, 6), (3, 6), (4, 5), (4, 3.4), (2.4, 3.4)]],
    "H": [[(0, 0), (0, 6)], [(4, 0), (4, 6)], [(0, 3), (4, 3)]],
    "I": [[(0, 0), (0, 6)]],
    "N": [[(0, 6), (0, 0), (4, 6), (4, 0)]],
    "P": [[(0, 6), (0, 0), (3, 0), (4, 1), (4, 2.4), (3, 3.4), (0, 3.4)]],
    "R": [[(0, 6), (0, 0), (3, 0), (4, 1), (4, 2.2), (3, 3.2), (0, 3.2)], [(2, 3.2), (4, 6)]],
    "S": [[(4, 1), (3, 0), (1, 0), (0, 1), (0, 2), (1, 3), (3, 3), (4, 4), (4, 5), (3, 6), (1, 6), (0, 5)]],
    "T": [[(0, 0), (5, 0)], [(2.5, 0), (2.5, 6)]],
    "U": [[(0, 0), (0, 5), (1, 6), (3, 6), (4, 5), (4, 0)]],
}


def sign(name, word):
    """A word in letters far apart; a word is what a picture has to have in each language."""
    unit, gap = 1.5, 5
    widths = [max(x for line in LETTERS[letter] for x, _ in line) * unit for letter in word]
    picture = Picture(math.ceil(sum(widths) + gap * (len(word) - 1)) + 3, 12, FOOT)
    left = 1.5
    for letter, width in zip(word, widths):
        for line in LETTERS[letter]:
            picture.add(mix(INK, FOOT, 0.35), stroke(1.3, *((left + x * unit, 1.5 + y * unit) for x, y in line)))
        left += width + gap
    picture.gif(name)


buttons()
head()
emblem()
welcome()
done()
sign("sign-setup.gif", "SETUP")
sign("sign-einrichtung.gif", "EINRICHTUNG")
