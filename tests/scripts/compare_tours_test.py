#!/usr/bin/env python3
"""A comparison that finds nothing would look just like two equal tours: change each thing once."""
import json
import pathlib
import subprocess
import tempfile
import unittest

SCRIPT = pathlib.Path(__file__).resolve().parent.parent.parent / "scripts" / "compare_tours"
RECORD = bytearray(440)
RECORD[4:8] = len(RECORD).to_bytes(4, "big")
GROUP = (2).to_bytes(4, "big") + bytes(RECORD) * 2
DUMP = {"width": 1.5, "count": 2, "name": "a", "closed": False, "points": [[0.25, 1.0]]}
SECOND = 4 + len(RECORD)


def group_with(at, value):
    return GROUP[:at] + bytes([value]) + GROUP[at + 1 :]


def dump_with(**fields):
    return json.dumps({**DUMP, **fields}).encode()


# What stands in the other tour instead, equal?
CASES = [
    ({}, True),
    ({"database/g.AID": group_with(4 + 408, 9)}, True),
    ({"database/g.AID": group_with(SECOND + 415, 9)}, True),
    ({"database/g.AID": group_with(SECOND + 407, 9)}, False),
    ({"database/g.AID": group_with(SECOND + 416, 9)}, False),
    ({"database/g.AID": group_with(SECOND + 6, 0)}, False),
    ({"database/g.AID": GROUP + b"\0"}, False),
    ({"database/g.DAT/0/note.lnk": b"other"}, False),
    ({"database/more": b""}, False),
    ({"dumps/1.json": dump_with(width=1.5 + 1e-10)}, True),
    ({"dumps/1.json": dump_with(width=1.5 + 1e-8)}, False),
    ({"dumps/1.json": dump_with(count=2.0)}, False),
    ({"dumps/1.json": dump_with(name="b")}, False),
    ({"dumps/1.json": dump_with(closed=0)}, False),
    ({"dumps/1.json": dump_with(points=[[0.25]])}, False),
    ({"dumps/1.json": dump_with(more=1)}, False),
    ({"dumps/2.json": dump_with()}, False),
]


class CompareToursTest(unittest.TestCase):
    def write(self, tour, changes):
        files = {"database/g.AID": GROUP, "database/g.DAT/0/note.lnk": b"note", "dumps/1.json": dump_with()}
        for name, content in {**files, **changes}.items():
            file = tour / "english" / name
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_bytes(content)

    def test_each_change(self):
        for changes, equal in CASES:
            with self.subTest(changes=list(changes), equal=equal), tempfile.TemporaryDirectory() as folder:
                one, other = pathlib.Path(folder, "one"), pathlib.Path(folder, "other")
                self.write(one, {})
                self.write(other, changes)
                done = subprocess.run([SCRIPT, one, other], capture_output=True, text=True)
                self.assertEqual(done.returncode, 0 if equal else 1, done.stdout + done.stderr)

    def test_nothing_is_not_equal(self):
        with tempfile.TemporaryDirectory() as folder:
            self.assertEqual(subprocess.run([SCRIPT, folder, folder], capture_output=True).returncode, 1)


if __name__ == "__main__":
    unittest.main()
