#!/usr/bin/env python3
"""Reads group files without Velquorne; docs/file-format.md explains each number.

read_group.py GROUP.AID           the records, as JSON
read_group.py GROUP.AID NUMBER    the objects of one record, a line each: type, bytes, and the text of a note
"""
import json
import struct
import sys

KINDS = {2: "path", 4: "text", 7: "note", 9: "raster", 11: "mesh"}


def unpack(packed):
    ring, place, plain, at = bytearray(4096), 4078, bytearray(), 0
    while at < len(packed):
        flags, at = packed[at], at + 1
        for bit in range(8):
            if at >= len(packed) - (not flags >> bit & 1):  # the packed bytes may end within a group
                return bytes(plain)
            if flags >> bit & 1:
                start, count, ring[place], at = place, 1, packed[at], at + 1
            else:
                start = packed[at] | (packed[at + 1] & 0xF0) << 4
                count, at = (packed[at + 1] & 0x0F) + 3, at + 2
            for _ in range(count):  # one by one: what is copied may be what was just written
                ring[place] = ring[start % 4096]
                plain.append(ring[place])
                start, place = start + 1, (place + 1) % 4096
    return bytes(plain)


def records(data):
    """Each record's header, packed preview and packed objects."""
    at = 4
    for _ in range(struct.unpack_from(">I", data)[0] if len(data) >= 4 else 0):
        if len(data) - at < 428:
            return  # damage: where a size word is wrong, nothing behind it can be found
        objects, size, _, height, width, _ = struct.unpack_from(">IIiiii", data, at)
        created, modified, preview, stream = struct.unpack_from(">IIII", data, at + 408)
        if not 428 <= size <= len(data) - at:
            return
        texts = (data[at + begin:at + end].split(b"\0")[0].decode("cp932", "replace")
                 for begin, end in ((24, 88), (88, 152), (152, 408)))
        header = dict(zip(("name", "kind", "comment"), texts), created=created, modified=modified,
                      width=width / 65536, height=height / 65536, objects=objects, bytes=size)
        body = at + 424
        yield header, data[body:body + preview], data[body + preview:body + preview + stream]
        at += size


def objects(stream):
    """Each object's type and bytes, its 24 bytes of header included."""
    at = 0
    while len(stream) - at >= 24:
        kind, size = struct.unpack_from(">II", stream, at)
        if size < 24 or size > len(stream) - at:
            return
        yield kind, stream[at:at + size]
        at += size


if __name__ == "__main__":
    found = list(records(open(sys.argv[1], "rb").read()))
    if len(sys.argv) < 3:
        print(json.dumps([header for header, _, _ in found], indent=1, ensure_ascii=False))
    else:
        for kind, bytes_ in objects(unpack(found[int(sys.argv[2])][2])):
            text = bytes_[24:].split(b"\0")[0].decode("cp932", "replace") if kind == 7 else ""
            print(KINDS.get(kind, kind), len(bytes_), text.replace("\r", " | "))
