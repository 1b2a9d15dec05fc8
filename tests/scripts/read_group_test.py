#!/usr/bin/env python3
"""docs/read_group.py, which shows others how to read a database, must see what the command line sees."""
import json
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
VELQUORNE = str(pathlib.Path(sys.argv.pop(1)).resolve())


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


class ReadGroupTest(unittest.TestCase):
    def test_sees_what_the_command_line_sees(self):
        with tempfile.TemporaryDirectory() as folder:
            drawing, database, group = f"{folder}/sample.svg", f"{folder}/db", f"{folder}/db/Folder/Group.AID"
            run(VELQUORNE, "sample", "--out", drawing)
            for name in ("Sample", "三角形"):
                run(VELQUORNE, "register", drawing, "--db", database, "--group", "Folder/Group", "--name", name)
            reader = str(ROOT / "docs" / "read_group.py")

            listed = json.loads(run(VELQUORNE, "list", "--db", database, "Folder/Group", "--json"))["records"]
            read = json.loads(run(reader, group))
            self.assertEqual([{"group": "\\Folder\\Group", "number": n, **r} for n, r in enumerate(read)], listed)

            shown = json.loads(run(VELQUORNE, "show", "--db", database, "Folder/Group", "1", "--json"))["objects"]
            lines = run(reader, group, "1").splitlines()
            self.assertEqual([line.split(" ")[:2] for line in lines],
                             [[o["object"], str(o["size"])] for o in shown])
            self.assertEqual([line.split(" ", 2)[2] for line in lines],
                             [o.get("text", "").replace("\r", " | ") for o in shown])
            self.assertGreater(len({line.split(" ")[0] for line in lines}), 4)

    def test_the_example_of_the_page_is_what_the_command_line_writes(self):
        page = (ROOT / "docs" / "file-format.md").read_text(encoding="utf-8")
        drawing = re.search(r"cat >triangle.svg <<'END'\n(.*?)^    END\n", page, re.S | re.M)[1]
        with tempfile.TemporaryDirectory() as folder:
            pathlib.Path(f"{folder}/triangle.svg").write_text(drawing)
            run(VELQUORNE, "register", f"{folder}/triangle.svg", "--db", f"{folder}/db", "--group", "Shapes/Flat",
                "--kind", "sign", "--comment", "三角形")
            written = bytearray(pathlib.Path(f"{folder}/db/Shapes/Flat.AID").read_bytes())
        written[0x19C:0x1A4] = bytes.fromhex("e729d031") * 2  # the day's
        self.assertEqual(len(written), 8855)
        rows = re.findall(r"^    ([0-9a-f]{8}):((?: [0-9a-f]{4})+)", page, re.M)
        self.assertGreater(len(rows), 10)
        for place, text in rows:
            told = bytes.fromhex(text)
            self.assertEqual(written[int(place, 16):][:len(told)], told, place)


if __name__ == "__main__":
    unittest.main()
