#!/usr/bin/python3
"""RTF, opened by LibreOffice and read back from the flat XML that it writes, and read by unrtf.

What they make of it:

LibreOffice 7.4   Every cell comes back, widths and page too; of a table wider than the page the
                  rest is cut off. There are no borders: it wants a width with each. A CR LF within
                  a text is a new paragraph; a CR or LF alone, and every other control character
                  but the tab, is lost. So are pairs of braces, which group their text. In a text
                  of blanks alone each gets a six-per-em space (U+2006) in front of it.
                  Bytes are read as 1252 or as a header line `\\ansicpg1250` says.

unrtf 0.21        Every cell comes back, but without its bytes above 127: in any code page it wants
                  \\'e9 for them. A tab is a blank, blanks in a row are one.
"""

import html
import os
import re
import subprocess
import unittest
from xml.etree import ElementTree

from norva_client import PROJ, REGISTRY, SHOP, ClientTest, registry_texts

URN = "{urn:oasis:names:tc:opendocument:xmlns:%s:1.0}"
TEXT, TABLE, STYLE, FO = (URN % name for name in ("text", "table", "style",
                                                  "xsl-fo-compatible"))


def shown(cell, code_page="cp1252"):
    """A cell as a reader shows it."""
    cell = cell.encode(code_page, "replace").decode(code_page)
    return " \n".join(re.sub("[{}\x01-\x08\n-\x1f]", "", line) for line in cell.split("\r\n"))


def paragraph(element):
    text = element.text or ""
    for child in element:
        text += {TEXT + "s": " " * int(child.get(TEXT + "c", 1)), TEXT + "tab": "\t"}.get(
            child.tag, "") + paragraph(child) + (child.tail or "")
    return text


class RTF(ClientTest):

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.paths, cls.wanted = {}, {}  # the rows with their captions
        texts = cls().shop_texts
        for table, columns in SHOP.items():
            cls.add(table, cls.shop, table, columns, texts(table))
        for table in ("unit_of_measure", "ellipsoid"):
            cls.add(table, PROJ, table, REGISTRY[table], registry_texts(table))
        cls.add("awkward", cls.awkward, "t", ("id", "note"), cls().awkward_texts())
        for page, note in (("1250", "Łódź Říčany ąęőű €"), ("1251", "Щука Їжак Ђ €")):
            database = cls.database(f"{page}.db", "CREATE TABLE t (note TEXT);", [(note,)])
            cls.add(page, database, "t", ["note"], [[note]], "--code-page", page,
                    "--header", rf"\ansicpg{page}", code_page=f"cp{page}")

    @classmethod
    def add(cls, name, database, table, captions, records, *options, code_page="cp1252"):
        cls.paths[name] = cls.export(database, f"{name}.rtf", "--table", table,
                                     "--on-unmappable", "replace", *options)
        cls.wanted[name] = [[shown(cell, code_page) for cell in row]
                            for row in [captions, *records]]

    def open(self, *paths):
        """The documents that LibreOffice makes of the files, by name."""
        subprocess.run(["soffice", f"-env:UserInstallation=file://{self.path('profile')}",
                        "--headless", "--convert-to", "fodt", "--outdir", self.folder, *paths],
                       capture_output=True, check=True,
                       env={**os.environ, "LC_ALL": "C.UTF-8", "HOME": self.folder})
        return {os.path.basename(path)[:-4]: ElementTree.parse(path[:-3] + "fodt")
                for path in paths}

    def test_libreoffice(self):
        for name, document in self.open(*self.paths.values()).items():
            with self.subTest(name):
                tables = list(document.iter(TABLE + "table"))
                self.assertEqual(len(tables), 1)
                rows = [["\n".join(map(paragraph, cell.iter(TEXT + "p"))).replace("\u2006", "")
                         for cell in row.iter(TABLE + "table-cell")]
                        for row in tables[0].iter(TABLE + "table-row")]
                self.check_rows(rows, self.wanted[name])

    def test_page_and_columns(self):
        inches = {"portrait": (8.27, 11.69), "landscape": (11.69, 8.27)}
        paths = [self.export(self.shop, f"{orientation}.rtf", "--query",
                             "SELECT id, sku, quantity FROM orders", "--width", "id=10",
                             "--width", "sku=20", "--width", "quantity=1",
                             "--header", r"{\b All} orders", "--footer", "The end",
                             "--set", f"Options.PageOrientation=po{orientation}")
                 for orientation in inches]
        for name, document in self.open(*paths).items():
            with self.subTest(name):
                page = document.find(f".//{STYLE}page-layout-properties[@{FO}page-width]")
                size = [float(page.get(FO + side)[:-2]) for side in ("page-width", "page-height")]
                self.assertEqual([round(side, 2) for side in size], list(inches[name]))
                self.assertEqual(page.get(STYLE + "print-orientation"), name)
                widths = [float(column.get(STYLE + "column-width")[:-2]) * 1440
                          for column in document.iter(STYLE + "table-column-properties")]
                for width, characters in zip(widths, (10, 20, 1), strict=True):
                    self.assertAlmostEqual(width, characters * 9 * 15 + 10, delta=2)  # twips
                body = [paragraph(text) for text in document.find(f".//{TEXT}sequence-decls/..")
                        if text.tag == TEXT + "p"]
                self.assertEqual([text for text in body if text], ["All orders", "The end"])

    def test_unrtf(self):
        self.addCleanup(self.paths.pop, "extent")  # too long for LibreOffice: it takes a minute
        self.add("extent", PROJ, "extent", REGISTRY["extent"], registry_texts("extent"))
        for name, path in self.paths.items():
            with self.subTest(name):
                written = subprocess.run(["unrtf", "--quiet", "--html", path], check=True,
                                         capture_output=True, encoding="ascii").stdout
                rows = [[html.unescape(re.sub("<[^>]*>", "", cell))
                         for cell in re.findall("<td>(.*?)</td>", row, re.S)]
                        for row in re.findall("<tr>(.*?)</tr>", written, re.S)]
                self.check_rows(*([[re.sub(r"\s+", " ", re.sub("[^\0-\x7f]", "", cell), flags=re.A)
                                    for cell in row] for row in table]
                                  for table in (rows, self.wanted[name])))


if __name__ == "__main__":
    unittest.main()
