#!/usr/bin/env python3
"""What the pages in docs/ say of layouts and suites is what the headers say, and their links lead somewhere."""
import pathlib
import re
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent


def read(path):
    return (ROOT / path).read_text(encoding="utf-8")


class DocsTest(unittest.TestCase):
    def test_layouts_are_those_of_the_headers(self):
        headers = read("plugin/objects/object_layout.h") + read("plugin/store/record_layout.h")
        structs = dict(re.findall(r"^struct (\w+) \{\n(.*?)^\};", headers, re.S | re.M))
        stored = {name for name, body in structs.items() if re.search(r"; +// \d", body)}
        sizes = dict(re.findall(r"sizeof\((\w+)\) == (\w+)", headers))
        constants = dict(re.findall(r"constexpr uint32_t (\w+) = (\d+);", headers))
        sizes = {name: constants.get(size, size) for name, size in sizes.items()}
        told = set()
        for name, size, text in re.findall(r"^### `(\w+)`, (\d+) bytes\n(.*?)(?=^##)", read("docs/file-format.md"),
                                           re.S | re.M):
            told.add(name)
            fields = re.findall(r"^ +\w+ (\w+)(?:\[\w+\])?; +// (\d+)", structs[name], re.M)
            rows = re.findall(r"^\| (\d+) \| [^|]+ \| `(\w+)` \|", text, re.M)
            self.assertEqual(rows, [(offset, field) for field, offset in fields], name)
            if name in sizes:
                self.assertEqual(size, sizes[name], name)
        self.assertEqual(told, stored)

    def test_suites_are_those_of_the_contract(self):
        rows = re.findall(r'ROW\((\w+), "([^"]+)", (\d+)\)', read("plugin/host/suite_slots.h"))
        contract = {}
        for header in sorted((ROOT / "suites").glob("*.h")):
            for name, body in re.findall(r"^typedef struct (\w+)Suite \{(.*?)^\} \1Suite;", header.read_text(),
                                         re.S | re.M):
                contract[name] = (str(body.count("(*")), header.name)
        expected = {name: (version, *contract[slot]) for slot, name, version in rows if slot in contract}
        self.assertEqual(len(expected), len(contract))
        page = re.findall(r"^\| (\w[\w ]+ Suite) \| (\d+) \| (\d+) \| `(\w+\.h)` \|", read("docs/porting.md"), re.M)
        self.assertEqual({name: tuple(rest) for name, *rest in page}, expected)

    def test_keys_are_those_of_the_settings_and_notes(self):
        page = read("docs/file-format.md")
        keys = re.findall(r'\{"(\w+)", Kind::', read("plugin/frame/preferences.cpp"))
        keys += re.findall(r'constexpr char k\w+\[\] = "([a-z_]+)";', read("plugin/store/intent_note.cpp"))
        self.assertGreater(len(keys), 30)
        for key in keys:
            if not re.fullmatch(r"aidbfpathEx[2-4]", key):
                self.assertTrue(f"`{key}`" in page or f"`{key} = 1`" in page, key)

    def test_links_lead_somewhere(self):
        for page in [ROOT / "README.md", *sorted((ROOT / "docs").glob("*.md"))]:
            for target in re.findall(r"\]\(([^)#]+)", page.read_text(encoding="utf-8")):
                if "://" not in target:
                    self.assertTrue((page.parent / target).exists(), f"{page.name}: {target}")


if __name__ == "__main__":
    unittest.main()
