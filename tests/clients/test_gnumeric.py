#!/usr/bin/python3
"""CSV, DIF and SYLK, opened by Gnumeric and read back from the CSV that it writes.

What version 1.12 makes of them:

CSV   Every cell comes back. Quoted or not, each is taken as if somebody had typed it: numbers with
      grouping, money, dates and booleans are values, and so is a text that looks like one of them.

SYLK  The captions and the first record both stand on row 1, where the record wins: every record is
      there, the captions are not. Without captions the first record stands on row 0, and is lost.
      Every cell is a text. Texts are not escaped: one ends at its first line break or semicolon,
      what follows the semicolon is obeyed where it makes sense, and ";;" is read as ";". Double
      quotes inside a text do no harm. Bytes are taken to be Latin-1.

DIF   Norva writes no third line behind DATA, where this reader wants one; it takes "-1,0" and BOT
      of the first row for something else, and that row is lost: the captions, or without captions
      the first record. The count of 0 behind TUPLES does no harm. What is no text is read up to
      the first character that is part of no number: grouping, dates and times are cut short,
      booleans and nulls are 0. Texts are taken as if typed, and end at a line break, the opening
      quote in front. Bytes are taken to be Latin-1.

So a host that wants everything in SYLK or DIF exports texts in code page 1252 by a query whose
first record repeats the captions, and which has no line breaks; for SYLK it doubles the semicolons,
for DIF it puts an apostrophe in front of each text, as a user would. Only what 1252 has between 80
and 9F, where Latin-1 has control characters, is lost then.
"""

import csv
import datetime
import decimal
import os
import re
import subprocess
import unittest

from norva_client import (AWKWARD, PROJ, REGISTRY, SHOP, ClientTest, as_texts, boolean, integer,
                          money, number, registry_texts, rows, text, time)

# Texts that, typed into a cell, are something else: numbers, formulas, a mark for texts.
TYPED = {"'": "", "','": ",'", "=1+1": "2", "+1": "1", "True": "TRUE", "007": "7",
         "1e5": "100000", "2024-01-31": "45322"}
# Told, as a file with control characters is not taken for CSV by its name alone.
CSV = ("--import-type=Gnumeric_stf:stf_csvtab", "-E", "UTF-8")
# The records whose texts are all in code page 1252.
LATIN = {"customers": "WHERE id NOT IN (6, 7)", "sales": "WHERE id NOT IN (1005, 1008)"}


def serial(moment):
    """The day number of a cell. Its calendar has a 29 February 1900: days before are one less."""
    days = (moment - datetime.datetime(1899, 12, 30)) / datetime.timedelta(days=1)
    return days if days > 60 else days - 1


def same(kind, cell):
    """A cell in a form that is the same for Norva's text and Gnumeric's value."""
    if cell == "null" or kind is text:
        return cell
    if kind is boolean:
        return cell.title()
    if kind in (integer, number, money):
        # A cell holds more than a double, and shows all of its binary digits in decimal.
        return decimal.Context(prec=18).create_decimal(re.sub("[$,]", "", cell))
    # Days, to the second.
    if kind is time and ":" in cell:
        return f"{(int(cell[:2]) * 60 + int(cell[3:])) / 1440:.5f}"
    if "-" in cell:
        return f"{serial(datetime.datetime.fromisoformat(cell)):.5f}"
    return f"{float(cell):.5f}"


def same_rows(kinds, cells):
    return [[same(kind, cell) for kind, cell in zip(kinds, row, strict=True)] for row in cells]


def as_latin(cell, page="utf-8"):
    """What text of another code page looks like when it is taken to be Latin-1."""
    return cell.encode(page).decode("latin-1")


def sylk_text(cell):
    """What is left of a text in SYLK."""
    kept, *more = re.split("[\r\n]", cell)
    kept = kept.rstrip() if more else kept
    return as_latin(re.match("([^;]|;;)*", kept).group().replace(";;", ";"))


def dif_text(cell):
    """What is left of a text in DIF."""
    kept, *more = re.split("[\r\n]", cell)
    return as_latin('"' + kept if more else kept)


def dif_value(kind, cell):
    """What is left of a cell in DIF: of one that is no text, the number at its beginning."""
    if kind is text:
        return dif_text(cell)
    digits = re.match(r"-?[\d.]+", cell)
    return f"{decimal.Decimal(digits.group()).normalize():f}" if digits else "0"


class Gnumeric(ClientTest):
    def convert(self, path, *options):
        """The rows of the sheet. What the reader complains of, on standard error, shows in them."""
        output = self.path("converted.csv")
        subprocess.run(["ssconvert", *options, "-T", "Gnumeric_stf:stf_assistant", "-O",
                        "separator=, quoting-mode=always format=raw charset=UTF-8", path, output],
                       check=True, capture_output=True,
                       env={**os.environ, "LC_ALL": "C.UTF-8", "HOME": self.folder})
        with open(output, newline="", encoding="utf-8") as file:
            return list(csv.reader(file, strict=True))

    def check_values(self, found, columns, wanted):
        captions, *records = found
        kinds = columns.values()
        self.assertEqual(captions, list(columns))
        self.check_rows(same_rows(kinds, records), same_rows(kinds, wanted))

    def check_awkward(self, found, changed):
        """`changed` holds what those texts come out as that come out differently."""
        notes = ["null" if note is None else note for note in AWKWARD]
        self.assertLessEqual(changed.keys(), set(notes))
        self.check_rows(found, [changed.get(note, note) for note in notes])

    def test_csv(self):
        for table, columns in SHOP.items():
            with self.subTest(table):
                path = self.export(self.shop, f"{table}.csv", "--table", table)
                self.check_values(self.convert(path, *CSV), columns,
                                  self.shop_texts(table))
        for table, columns in REGISTRY.items():
            with self.subTest(table):
                path = self.export(PROJ, f"{table}.csv", "--table", table)
                self.check_values(self.convert(path, *CSV), columns, registry_texts(table))

    def test_csv_awkward(self):
        path = self.export(self.awkward, "awkward.csv", "--table", "t")
        found = [row[1] for row in self.convert(path, *CSV)[1:]]
        self.check_awkward(found, TYPED)

    def test_sylk(self):
        for table in SHOP:
            with self.subTest(table):
                path = self.export(self.shop, f"{table}.slk", "--table", table)
                self.check_rows(self.convert(path),  # without the captions
                                [[sylk_text(cell) for cell in row]
                                 for row in self.shop_texts(table)])
        path = self.export(self.shop, "bare.slk", "--table", "orders", "--no-captions")
        self.check_rows(self.convert(path), self.shop_texts("orders")[1:])

    def test_sylk_awkward(self):
        found = self.convert(self.export(self.awkward, "awkward.slk", "--table", "t"))
        # The text C;X1;Y1;K"x" has written to row 1, column 1.
        self.assertEqual([row[0] for row in found],
                         ['x"', *(str(at) for at in range(2, len(AWKWARD) + 1))])
        self.check_rows([row[1] for row in found],
                        ["null" if note is None else "" if note.startswith("C;") else
                         sylk_text(note) for note in AWKWARD])

    def test_dif(self):
        def wanted(table):
            return [[dif_value(kind, cell) for kind, cell in zip(SHOP[table].values(), row)]
                    for row in self.shop_texts(table)]

        for table in SHOP:
            with self.subTest(table):
                path = self.export(self.shop, f"{table}.dif", "--table", table)
                self.check_rows(self.convert(path), wanted(table))  # without the captions
        path = self.export(self.shop, "bare.dif", "--table", "orders", "--no-captions")
        self.check_rows(self.convert(path), wanted("orders")[1:])

    def test_dif_awkward(self):
        found = self.convert(self.export(self.awkward, "awkward.dif", "--table", "t"))
        changed = {note: dif_text(note) for note in AWKWARD if note}
        self.check_awkward([row[1] for row in found],
                           {**changed, **TYPED, "=1+1": "", "@x": ""})  # formulas are not computed

    def test_everything(self):
        for table, columns in SHOP.items():
            captions = ", ".join(f"'{name}' AS {name}" for name in columns)
            only = LATIN.get(table, "")
            for extension, escape in (("slk", "replace({}, ';', ';;')"), ("dif", "'''' || {}")):
                with self.subTest(table, format=extension):
                    cell = escape.format("replace(CAST({} AS TEXT), char(13, 10), ' / ')")
                    path = self.export(self.shop, f"o.{extension}", "--code-page", "1252",
                                       "--query", f"SELECT {captions} UNION ALL "
                                       f"{as_texts(table, cell)} {only}")
                    wanted = [["null" if cell is None else
                               as_latin(cell.replace("\r\n", " / "), "cp1252") for cell in row]
                              for row in rows(self.shop, f"{as_texts(table)} {only}")]
                    self.check_rows(self.convert(path), [list(columns), *wanted])


if __name__ == "__main__":
    unittest.main()
