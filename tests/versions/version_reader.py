"""Version resources of Windows images, read from the bytes of the file with nothing but struct."""
import struct

RT_VERSION, VS_VERSION_INFO = 16, 1
FIXED_PART = 52


class Image:
    def __init__(self, data):
        self.data = data
        header = self.number("I", 0x3C)
        if data[:2] != b"MZ" or data[header:header + 4] != b"PE\0\0":
            raise ValueError("no Windows image")
        optional = header + 24
        directories = {0x10B: 96, 0x20B: 112}[self.number("H", optional)]
        self.resources = self.number("I", optional + directories + 2 * 8)
        first = optional + self.number("H", header + 20)
        self.sections = [struct.unpack_from("<IIII", data, first + 40 * index + 8)
                         for index in range(self.number("H", header + 6))]

    def number(self, kind, offset):
        return struct.unpack_from("<" + kind, self.data, offset)[0]

    def offset_of(self, address):
        for _, start, size, raw in self.sections:
            if start <= address < start + size:
                return raw + address - start
        raise ValueError(f"address {address:#x} lies in no section")

    def entries(self, directory):
        """Numbered entries of one folder of resources, as number and offset within the resources."""
        base = self.offset_of(self.resources) + directory
        named, numbered = struct.unpack_from("<HH", self.data, base + 12)
        for index in range(named, named + numbered):
            yield struct.unpack_from("<II", self.data, base + 16 + 8 * index)

    def version_resources(self):
        """The bytes of the version resource, once for each language."""
        if not self.resources:
            return
        for kind, names in self.entries(0):
            if kind != RT_VERSION:
                continue
            for name, languages in self.entries(names & 0x7FFFFFFF):
                if name != VS_VERSION_INFO:
                    continue
                for _, leaf in self.entries(languages & 0x7FFFFFFF):
                    address, size = struct.unpack_from("<II", self.data, self.offset_of(self.resources) + leaf)
                    start = self.offset_of(address)
                    yield self.data[start:start + size]


def block(data, offset):
    """Key, value and children's place of the block at an offset."""
    length, value_length, is_text = struct.unpack_from("<HHH", data, offset)
    end = offset + 6
    while data[end:end + 2] != b"\0\0":
        if end >= offset + length:
            raise ValueError("a key without end")
        end += 2
    key = data[offset + 6:end].decode("utf-16-le")
    value = (end + 2 + 3) & ~3
    size = value_length * 2 if is_text else value_length
    return key, data[value:value + size], (value + size + 3) & ~3, offset + length


def children(data, offset):
    _, _, at, end = block(data, offset)
    while at + 6 <= end:
        yield at
        length = struct.unpack_from("<H", data, at)[0]
        if length == 0:
            return
        at = (at + length + 3) & ~3


def read_versions(data):
    """Version text and translation words, one pair for each language that has a fixed part."""
    found = []
    for resource in Image(data).version_resources():
        _, fixed, _, _ = block(resource, 0)
        if len(fixed) < FIXED_PART:
            continue
        high, low = struct.unpack_from("<II", fixed, 8)
        words = []
        for child in children(resource, 0):
            if block(resource, child)[0] != "VarFileInfo":
                continue
            for variable in children(resource, child):
                key, value, _, _ = block(resource, variable)
                if key == "Translation":
                    words += struct.unpack(f"<{len(value) // 4}I", value[:len(value) // 4 * 4])
        found.append((f"{high >> 16}.{high & 0xFFFF}.{low >> 16}.{low & 0xFFFF}", words))
    return found
