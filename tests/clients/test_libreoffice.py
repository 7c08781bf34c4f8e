#!/usr/bin/python3
"""CSV, DIF and SYLK, opened by LibreOffice and read back from the CSV that it writes.

What version 7.4 makes of them:

CSV   Every cell comes back. Only the kind of a line break within a text is not kept: a cell knows
      but one. Imported as values instead of texts, the quoted and grouped numbers are numbers.

SYLK  Norva puts the captions and the first record both on row 1, where the record wins: every
      record is there, the captions are not. Without captions the first record stands on row 0,
      and is lost. Texts are not escaped: one ends at its first line break, and ";;" is read as
      ";". Double quotes inside a text do no harm. Every cell is a text, numbers too. Bytes are
      taken to be in the character set of the environment.
      A host that wants everything exports a query whose first record repeats the captions, which
      doubles the semicolons and has no line breaks.

DIF   Norva writes no third line behind DATA, where this reader wants one; it takes "-1,0" for it,
      pairs the lines from then on wrongly and finds no cell, until a line break within a text puts
      it in step. A host can do that at once with a first caption such as IN_STEP: then every
      record is there, and all captions but the first. The count of 0 behind TUPLES does no harm.
      Numbers, money, dates and booleans are values. A null among them is the error value "null";
      right behind a text it is taken for a second line of that text, and the record is lost from
      there on. A host that has nulls chooses --null 0, or a query that casts all to text.
      Of a text that is two double quotes one is left. The character set is an import option.
"""

import csv
import datetime
import io
import os
import re
import subprocess
import unittest

from norva_client import (AWKWARD, PROJ, REGISTRY, SHOP, ClientTest, as_texts, boolean, date_time,
                          integer, money, number, registry_texts, rows, text, time)

# Comma, double quote, UTF-8, from line 1; then every column as text, or en-US and quoted fields
# read as values.
AS_TEXTS = "CSV:44,34,76,1," + "/".join(f"{column}/2" for column in range(1, 21))
AS_VALUES = "CSV:44,34,76,1,,1033,false,true"
UTF8_DIF = "DIF:76"
# The same, then texts in double quotes, values not, and as they are rather than as shown.
OUTPUT = "csv:Text - txt - csv (StarCalc):44,34,76,1,,0,true,false"

DIF_NULL = "#ERR: null (V)"
# In front of the first caption of a DIF file.
IN_STEP = '\n\n1,0\n"'


def one_line_break(cell):
    return re.sub("\r\n|\r", "\n", cell)


def same(kind, cell):
    """A cell in a form that is the same for Norva's text and LibreOffice's value."""
    if cell in ("", "null", DIF_NULL):
        return cell
    if kind in (integer, number, money):
        return f"{float(re.sub('[$,]', '', cell)):.15g}"  # a cell holds a double; 15 digits show
    if kind is boolean:
        return cell.title()
    if kind is date_time:
        return cell[:len("2024-01-31 13:45")]
    if kind is time and cell.endswith("M"):
        return f"{datetime.datetime.strptime(cell, '%I:%M:%S %p'):%H:%M}"
    return one_line_break(cell)


def same_rows(kinds, cells):
    return [[same(kind, cell) for kind, cell in zip(kinds, row, strict=True)] for row in cells]


class LibreOffice(ClientTest):
    starts = 0

    def convert(self, paths, infilter=None):
        """Opens all files in one start; returns what is written for each, by its name."""
        LibreOffice.starts += 1
        folder = self.path(f"converted{self.starts}")
        command = ["soffice", f"-env:UserInstallation=file://{self.path('profile')}", "--headless"]
        command += [f"--infilter={infilter}"] if infilter else []
        subprocess.run([*command, "--convert-to", OUTPUT, "--outdir", folder, *paths.values()],
                       capture_output=True, check=True,
                       env={**os.environ, "LC_ALL": "C.UTF-8", "HOME": self.folder})
        written = {}
        for name, path in paths.items():
            stem = os.path.splitext(os.path.basename(path))[0]
            with open(os.path.join(folder, f"{stem}.csv"), newline="", encoding="utf-8") as file:
                written[name] = file.read()
        return written

    @staticmethod
    def cells(written):
        return list(csv.reader(io.StringIO(written, newline=""), strict=True))

    def test_csv_as_texts(self):
        paths = {table: self.export(self.shop, f"{table}.csv", "--table", table) for table in SHOP}
        wanted = {table: [list(SHOP[table]), *self.shop_texts(table)] for table in SHOP}
        for table, columns in REGISTRY.items():
            paths[table] = self.export(PROJ, f"{table}.csv", "--table", table)
            wanted[table] = [list(columns), *registry_texts(table)]
        paths["awkward"] = self.export(self.awkward, "awkward.csv", "--table", "t")
        wanted["awkward"] = [["id", "note"], *self.awkward_texts()]
        for table, written in self.convert(paths, AS_TEXTS).items():
            with self.subTest(table):
                self.check_rows(self.cells(written),
                                [[one_line_break(cell) for cell in row] for row in wanted[table]])

    def test_csv_as_values(self):
        paths = {table: self.export(self.shop, f"{table}.csv", "--table", table) for table in SHOP}
        for table, written in self.convert(paths, AS_VALUES).items():
            with self.subTest(table):
                captions, *records = self.cells(written)
                kinds = SHOP[table].values()
                self.assertEqual(captions, list(SHOP[table]))
                self.check_rows(same_rows(kinds, records), same_rows(kinds, self.shop_texts(table)))

    def test_sylk(self):
        paths = {table: self.export(self.shop, f"{table}.slk", "--table", table) for table in SHOP}
        paths["bare"] = self.export(self.shop, "bare.slk", "--table", "orders", "--no-captions")
        paths["awkward"] = self.export(self.awkward, "awkward.slk", "--table", "t")
        paths["ellipsoid"] = self.export(PROJ, "ellipsoid.slk", "--table", "ellipsoid")
        escaped = as_texts("customers",
                           "replace(replace(CAST({} AS TEXT), ';', ';;'), char(13, 10), ' / ')")
        captions = ", ".join(f"'{name}' AS {name}" for name in SHOP["customers"])
        paths["escaped"] = self.export(self.shop, "escaped.slk", "--query",
                                       f"SELECT {captions} UNION ALL {escaped}")

        def first_line(cell):
            return re.split("[\r\n]", cell)[0].replace(";;", ";")

        # On purpose, no captions: the first record stands on the same row, and wins.
        wanted = {table: self.shop_texts(table) for table in SHOP}
        wanted["ellipsoid"] = registry_texts("ellipsoid")
        wanted["bare"] = wanted["orders"][1:]  # the first record stood on row 0
        wanted["awkward"] = self.awkward_texts()
        wanted = {name: [[first_line(cell) for cell in row] for row in wanted[name]]
                  for name in wanted}
        wanted["escaped"] = [list(SHOP["customers"])] + [
            ["null" if cell is None else cell.replace("\r\n", " / ") for cell in row]
            for row in rows(self.shop, as_texts("customers"))]
        for name, written in self.convert(paths).items():
            with self.subTest(name):
                self.check_rows(self.cells(written), wanted[name])
                # Values would be written without quotes.
                self.assertEqual(re.sub('"([^"]|"")*"', "", written).strip(",\n"), "")

    def test_dif(self):
        def export(name, table, *options):
            first = next(iter(SHOP[table]))
            return self.export(self.shop, f"{name}.dif", "--table", table, "--caption",
                               f"{first}={IN_STEP}{first}", *options)

        paths = {table: export(table, table) for table in SHOP}
        paths["zeros"] = export("zeros", "customers", "--null", "0")
        for name, written in self.convert(paths, UTF8_DIF).items():
            with self.subTest(name):
                table = name if name in SHOP else "customers"
                kinds = list(SHOP[table].values())
                captions, *records = self.cells(written)
                self.assertEqual(captions, ["", *list(SHOP[table])[1:]])
                if name == "zeros":
                    wanted = same_rows(kinds, self.shop_texts(table, null="0"))
                else:
                    wanted = [self.with_nulls(kinds, row)
                              for row in same_rows(kinds, self.shop_texts(table))]
                self.check_rows(same_rows(kinds, records), wanted)

    @staticmethod
    def with_nulls(kinds, row):
        """What is left of a DIF record because of its nulls that are no texts."""
        for at, (kind, cell) in enumerate(zip(kinds, row)):
            if kind is not text and cell == "null":
                if kinds[at - 1] is text:
                    return row[:at - 1] + [""] * (len(row) - at + 1)
                row[at] = DIF_NULL
        return row

    def test_dif_texts(self):
        first = f"--caption=id={IN_STEP}id"
        paths = {table: self.export(self.shop, f"{table}.dif", "--query", as_texts(table), "--null",
                                    "", first) for table in ("customers", "orders")}
        paths["awkward"] = self.export(self.awkward, "awkward.dif", "--query",
                                       "SELECT CAST(id AS TEXT) AS id, note FROM t", first)
        # Left as they are: out of step to the end, and to the first line break within a text.
        paths["lost"] = self.export(self.shop, "lost.dif", "--table", "orders")
        paths["half lost"] = self.export(self.shop, "half.dif", "--query", as_texts("customers"))
        found = {name: self.cells(written)
                 for name, written in self.convert(paths, UTF8_DIF).items()}

        def shown(table):
            return [[one_line_break(cell or "") for cell in row]
                    for row in rows(self.shop, as_texts(table))]

        for table in ("customers", "orders"):
            with self.subTest(table):
                self.check_rows(found[table][1:], shown(table))
        with self.subTest("awkward"):
            notes = ["null" if note is None else one_line_break(note) for note in AWKWARD]
            notes[AWKWARD.index('""')] = '"'
            self.check_rows(found["awkward"][1:],
                            [[str(at), note] for at, note in enumerate(notes, 1)])
        with self.subTest("lost"):
            self.assertEqual(found["lost"], [[]])
        with self.subTest("half lost"):
            # The line break stands in the last cell of the third customer.
            self.check_rows(found["half lost"],
                            [["null" if cell is None else cell for cell in row]
                             for row in rows(self.shop, as_texts("customers"))[3:]])


if __name__ == "__main__":
    unittest.main()
