#!/usr/bin/env python3
"""A check of the file calls that finds nothing would look just like a clean tree: plant each offence once."""
import pathlib
import subprocess
import sys
import tempfile
import unittest

SCRIPT = pathlib.Path(__file__).resolve().parent.parent.parent / "scripts" / "check_file_calls"

# File, line, allowed?
CASES = [
    ("plugin/store/record.cpp", "std::ifstream file(path);", False),
    ("plugin/store/record.cpp", "#include <fstream>", False),
    ("plugin/store/record.cpp", 'FILE* file = fopen(path, "rb");', False),
    ("plugin/store/record.cpp", "const HANDLE file = CreateFileA(path, 0, 0, nullptr, 0, 0, nullptr);", True),
    ("win32/files.cpp", "const int file = ::open(path, O_RDONLY);", False),
    ("win32/files.cpp", "const int file = open(path, O_RDONLY);", False),
    ("win32/files.cpp", "const int file = systemCalls->open(path, O_RDONLY, 0);", True),
    ("win32/files.cpp", "else unlink(path);", False),
    ("win32/files.cpp", "if (::stat(path, &status) == 0) return; // systemCalls->status", False),
    ("win32/files.cpp", "struct stat status;", True),
    ("win32/files.cpp", "// not ::open(path) itself", True),
    ("win32/files.cpp", "if (std::filesystem::exists(path)) return;", False),
    ("win32/files.cpp", "namespace fs = std::filesystem;", False),
    ("win32/files.cpp", "const std::filesystem::path full = std::filesystem::absolute(path);", True),
    ("win32/memory.cpp", "::mmap(nullptr, length, PROT_READ, MAP_PRIVATE, file, 0);", False),
    ("win32/memory.cpp", "::mmap(nullptr, length, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);", True),
    ("win32/system_calls.cpp", "return ::open(path, flags, mode);", True),
]


class CheckFileCallsTest(unittest.TestCase):
    def test_each_line(self):
        for file, line, allowed in CASES:
            with self.subTest(line), tempfile.TemporaryDirectory() as root:
                path = pathlib.Path(root, file)
                path.parent.mkdir(parents=True)
                path.write_text(line + "\n", encoding="utf-8")
                pathlib.Path(root, "plugin").mkdir(exist_ok=True)
                pathlib.Path(root, "plugin/other.cpp").write_text("")
                result = subprocess.run([sys.executable, SCRIPT, root], capture_output=True, text=True)
                self.assertEqual(result.returncode, 0 if allowed else 1, result.stdout)
                self.assertEqual(result.stdout.startswith(f"{file}:1: "), not allowed)


if __name__ == "__main__":
    unittest.main()
