#!/usr/bin/python3
"""Compound documents, read by olefile and by gsf.

Every stream must come out of both readers as it went in, and olefile, at its strictest, must find
nothing to complain of.

Environment: NORVA_MAKE_COMPOUND, the path of the program made from make_compound.cpp.
"""

import os
import random
import subprocess
import tempfile
import unittest

import olefile

MAKE_COMPOUND = os.environ["NORVA_MAKE_COMPOUND"]

# One document a line, as the sizes of its streams by name.
DOCUMENTS = [
    {},
    {"Workbook": 0},
    {"Workbook": 1},
    {"Workbook": 63},
    {"Workbook": 64},
    {"Workbook": 65},
    {"Workbook": 4095},
    {"Workbook": 4096},
    {"Workbook": 4097},
    {"Workbook": 64512},  # a full FAT sector
    {"Workbook": 64513},
    {"Workbook": 7087104},  # 109 full FAT sectors: all that the header names
    {"Workbook": 7087105},
    {"Workbook": 15344640},  # as many as one DIFAT sector names, too
    {"Workbook": 15344641},
    {"Workbook": 100000000},
    {"a": 4095, "B": 4095, "c": 0},  # a full mini FAT sector
    {"a": 4095, "B": 1, "c": 4095, "dd": 5000},
    {"Workbook": 9000000, "\x05SummaryInformation": 216, "\x01CompObj": 107, "D\u00e9j\u00e0": 4096,
     "\u65e5\u672c\U0001F600": 300, "x": 0, "A name of thirty-one characters": 77},
    {f"Stream {i}": i * i * 5 for i in range(60)},
]


def gsf(command, *arguments):
    return subprocess.run(["gsf", command, *arguments], check=True, capture_output=True,
                          env={**os.environ, "LC_ALL": "C.UTF-8"})


class CompoundDocuments(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name

    def make(self, contents):
        """Returns the path of a document with `contents`, bytes by stream name."""
        arguments = []
        for number, (name, content) in enumerate(contents.items()):
            path = os.path.join(self.folder, f"{number}.bin")
            with open(path, "wb") as file:
                file.write(content)
            arguments += [name, path]
        document = os.path.join(self.folder, "document.ole")
        subprocess.run([MAKE_COMPOUND, document, *arguments], check=True)
        return document

    def check_olefile(self, document, contents):
        with olefile.OleFileIO(document, raise_defects=olefile.DEFECT_UNSURE) as ole:
            self.assertEqual(sorted(ole.listdir()), sorted([name] for name in contents))
            for name, content in contents.items():
                self.assertEqual(ole.get_size(name), len(content), name)
                self.assertTrue(ole.openstream(name).read() == content, f"{name!r} differs")
            self.assertEqual(ole.parsing_issues, [])

    def check_gsf(self, document, contents):
        # A line for the document, the root, and each stream.
        listed = gsf("list", document).stdout.decode().splitlines()
        self.assertEqual(len(listed), 2 + len(contents), listed)
        for name, content in contents.items():
            result = gsf("cat", document, name)
            self.assertTrue(result.stdout == content, f"{name!r} differs")
            self.assertEqual(result.stderr, b"", name)

    def test_every_stream_comes_out_as_it_went_in(self):
        generator = random.Random(1)
        for sizes in DOCUMENTS:
            contents = {name: generator.randbytes(size) for name, size in sizes.items()}
            with self.subTest(sizes):
                document = self.make(contents)
                self.check_olefile(document, contents)
                self.check_gsf(document, contents)


if __name__ == "__main__":
    unittest.main()
