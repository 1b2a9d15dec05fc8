#!/usr/bin/env python3
"""A check of the layers that finds nothing would look just like a clean tree: plant each offence once."""
import pathlib
import subprocess
import sys
import tempfile
import unittest

SCRIPT = pathlib.Path(__file__).resolve().parent.parent.parent / "scripts" / "check_layers"

# File, line, allowed?
CASES = [
    ("plugin/store/record.cpp", '#include "workbench/document/document.h"', False),
    ("plugin/store/record.cpp", '#include "win32/path_names.h"', False),
    ("plugin/store/record.cpp", '#include "plugin/capture/post_art.h"', False),
    ("plugin/store/record.cpp", '#include "plugin/rebuild/load_art.h"', False),
    ("plugin/store/record.cpp", '#include "record.h"', False),
    ("plugin/store/record.cpp", '#include "plugin/objects/byte_order.h"', True),
    ("plugin/store/record.cpp", "#include <windows.h>", True),
    ("plugin/store/record.cpp", "#include <vector>", True),
    ("plugin/store/record.cpp", "#include <unistd.h>", False),
    ("plugin/store/record.cpp", "#include <pugixml.hpp>", False),
    ("plugin/placement/geometry.cpp", '#include "plugin/panel/panel_layout.h"', False),
    ("plugin/capture/post_art.cpp", '#include "plugin/rebuild/load_art.h"', False),
    ("plugin/capture/post_art.cpp", '  #  include   "plugin/rebuild/load_art.h"', False),
    ("plugin/capture/post_art.cpp", '#include "plugin/placement/geometry.h"', True),
    ("plugin/rebuild/load_art.cpp", '#include "plugin/capture/post_art.h"', False),
    ("plugin/rebuild/load_art.cpp", '#include "plugin/host/suite_slots.h"', False),
    ("plugin/rebuild/load_art.cpp", "extern const void* AIArtSlot;", False),
    ("plugin/rebuild/load_art.cpp", "#include HEADER", False),
    ("plugin/host/suites.cpp", '#include "plugin/host/suite_slots.h"', True),
    ("plugin/frame/globals.h", "#ifdef _WIN32", False),
    ("plugin/frame/globals.h", "#if defined(__linux__)", False),
    ("workbench/shell/progress.cpp", '#include "plugin/store/record.h"', False),
    ("workbench/shell/progress.cpp", "#include <cairo.h>", True),
    ("workbench/document/document.h", '#include "workbench/suites/host.h"', False),
    ("workbench/document/document.h", "#include <windows.h>", False),
    ("workbench/document/document.h", '#include "suites/host_types.h"', True),
    ("workbench/suites/host.cpp", "#include <windows.h>", True),
    ("workbench/suites/host.cpp", "#include <cairo.h>", False),
    ("workbench/suites/host.cpp", '#include "workbench/svg/svg_reader.h"', False),
    ("suites/art.h", '#include "plugin/frame/globals.h"', False),
    ("suites/art.h", "#include <vector>", False),
    ("suites/art.h", "#include <stdint.h>", True),
    ("win32/files.cpp", "#include <unistd.h>", True),
    ("win32/files.cpp", "#include <zlib.h>", False),
    ("win32/files.cpp", '#include "plugin/store/cp932.h"', False),
    ("app/main.cpp", '#include "plugin/store/record.h"', True),
]


class CheckLayersTest(unittest.TestCase):
    def test_each_offence_is_found_at_its_line(self):
        for file, line, allowed in CASES:
            with self.subTest(file=file, line=line), tempfile.TemporaryDirectory() as folder:
                path = pathlib.Path(folder, file)
                path.parent.mkdir(parents=True)
                path.write_text(f"// first\n{line}\n", encoding="utf-8")
                result = subprocess.run([SCRIPT, folder], capture_output=True, text=True, check=False)
                if allowed:
                    self.assertEqual((result.returncode, result.stdout), (0, ""))
                else:
                    self.assertEqual(result.returncode, 1)
                    self.assertTrue(result.stdout.startswith(f"{file}:2: "), result.stdout)

    def test_a_tree_without_sources_is_no_clean_tree(self):
        with tempfile.TemporaryDirectory() as folder:
            self.assertEqual(subprocess.run([SCRIPT, folder], capture_output=True, check=False).returncode, 2)


if __name__ == "__main__":
    sys.exit(unittest.main())
