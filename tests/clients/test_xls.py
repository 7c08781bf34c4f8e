#!/usr/bin/python3
"""Workbooks, opened by xlrd, LibreOffice and Gnumeric, and their container by olefile and gsf.

What the readers make of them:

xlrd         1.2. Every cell comes back, with its type. It cannot open a string table whose very
             first string is over 4,106 characters, a fault of its own.

LibreOffice  7.4. Every cell comes back, numbers with the 15 digits that it writes. Only the kind of
             a line break within a text is not kept: a cell knows but one.

Gnumeric     1.12. Every cell comes back, numbers to the last bit.
"""

import csv
import datetime
import math
import os
import re
import struct
import subprocess
import unittest

import olefile
import xlrd
from xlrd import XL_CELL_BLANK, XL_CELL_BOOLEAN, XL_CELL_NUMBER, XL_CELL_TEXT

from norva_client import (PROJ, REGISTRY, SHOP, ClientTest, boolean, date, date_time,
                          integer, money, number, rows, text, time)

# Texts in double quotes, values not, and as they are rather than as shown.
LIBRE_OFFICE_CSV = "csv:Text - txt - csv (StarCalc):44,34,76,1,,0,true,false"
GNUMERIC_CSV = "separator=, quoting-mode=always format=raw charset=UTF-8"
FIFTEEN_DIGITS = 5.1e-15  # what LibreOffice writes of a number; relative

NULL = (XL_CELL_TEXT, "null")
MAX_ROWS, MAX_COLUMNS, MAX_TEXT = 65536, 256, 32767
HEADER, FOOTER, COLINFO, SST, CONTINUE = 0x14, 0x15, 0x7D, 0xFC, 0x3C  # records

# Around the longest texts that fit into one record, and the longest of all.
LONG = [*range(4106, 4113), 8222, 8223, 8224, 8225, MAX_TEXT]

# The colours' numbers in the workbook's palette, in the order of TxlsColor.
PALETTE = [8, 60, 59, 58, 56, 18, 62, 63, 16, 53, 19, 17, 21, 12, 54, 23, 10, 52, 50, 57, 49, 48,
           20, 55, 14, 51, 13, 11, 15, 40, 61, 22, 45, 47, 43, 42, 41, 44, 46, 9]


def day_number(moment):
    """Days since 30 December 1899; the time of day is a fraction to the millisecond."""
    days = (moment - datetime.datetime(1899, 12, 30)).days
    midnight = moment.replace(hour=0, minute=0, second=0)
    return days + (moment - midnight).total_seconds() / 86400


def cell(kind, value):
    """The type of a cell, and its value."""
    if value is None:
        return NULL
    if value == "":
        return (XL_CELL_BLANK, "")
    if kind in (integer, number, money):
        return (XL_CELL_NUMBER, float(value))
    if kind is boolean:
        return (XL_CELL_BOOLEAN, int(value))
    if kind is date:
        return (XL_CELL_NUMBER, day_number(datetime.datetime.fromisoformat(value)))
    if kind is date_time:
        return (XL_CELL_NUMBER, day_number(datetime.datetime.fromisoformat(value)))
    if kind is time:
        return (XL_CELL_NUMBER, day_number(datetime.datetime.fromisoformat(f"1899-12-30 {value}")))
    return (XL_CELL_TEXT, str(value))


def cells(database, table, columns):
    """The captions and the records as their cells."""
    found = rows(database, f"SELECT {', '.join(columns)} FROM {table}")
    return [[(XL_CELL_TEXT, name) for name in columns],
            *([cell(kind, value) for kind, value in zip(columns.values(), row)] for row in found)]


def as_read(wanted, value, precision):
    """A cell of a CSV file as a cell of a workbook, of the type of the one expected; a number that
    is as near to it as the reader's digits go is the same."""
    kind, number_wanted = wanted
    if kind == XL_CELL_NUMBER:
        found = float(value)
        same = math.isclose(found, number_wanted, rel_tol=precision)
        return (kind, number_wanted if same else found)
    if kind == XL_CELL_BOOLEAN:
        return (kind, {"TRUE": 1, "FALSE": 0, "1": 1, "0": 0}[value])
    return (kind, value)


def one_line_break(wanted):
    kind, value = wanted
    return (kind, re.sub("\r\n|\r", "\n", value)) if kind == XL_CELL_TEXT else wanted


def records(path):
    """The records of the stream: number, body."""
    with olefile.OleFileIO(path) as document:
        stream = document.openstream("Workbook").read()
    found, at = [], 0
    while at < len(stream):
        record, length = struct.unpack_from("<HH", stream, at)
        found.append((record, stream[at + 4:at + 4 + length]))
        at += 4 + length
    return found


def long_texts():
    """Texts of the lengths that matter, each twice: ASCII, and other letters."""
    found = []
    for at, length in enumerate(LONG):
        for letters in ("abcdefghij", "äöü€ß日本語字ж"):
            note = (f"{at}{letters[0]}:" + letters * (length // 10 + 1))[:length]
            if len(note.encode()) <= MAX_TEXT:
                found.append(note)
    # Supplementary characters count two each, and stand on both sides of the cuts.
    found += ["😀" * 2055, "x" + "😀" * 2055, "𝄞" * 4112, "x" + "𝄞" * 4112]
    return found


class Xls(ClientTest):
    """The workbooks of the tool; those in `self.books` are read by every reader."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.books, cls.wanted = {}, {}

        def add(name, database, table, columns, *options):
            cls.books[name] = cls.export(database, f"{name}.xls", "--table", table, *options)
            cls.wanted[name] = cells(database, table, columns)

        for table, columns in SHOP.items():
            add(table, cls.shop, table, columns)
        for table, columns in REGISTRY.items():
            add(table, PROJ, table, columns)
        add("awkward", cls.awkward, "t", {"id": integer, "note": text})
        note = "CREATE TABLE t (note TEXT);"
        for name, texts in (("long", long_texts()),
                            ("many", [f"{at} " + "aé€日😀"[at % 5] * (at % 37)
                                      for at in range(20000)])):
            add(name, cls.database(f"{name}.db", note, ((value,) for value in texts)), "t",
                {"note": text})
        # Without captions the longest text is the first string.
        add("longfirst", cls.database("longfirst.db", note, (
            (value,) for value in sorted(long_texts(), key=len, reverse=True))), "t",
            {"note": text}, "--no-captions")
        del cls.wanted["longfirst"][0]
        cls.wide = {f"c{at}": integer for at in range(MAX_COLUMNS)}
        add("wide", cls.database(
            "wide.db", f"CREATE TABLE t ({', '.join(f'{name} INTEGER' for name in cls.wide)});",
            [range(MAX_COLUMNS), range(-MAX_COLUMNS, 0)]), "t", cls.wide)

    def read(self, path):
        return xlrd.open_workbook(path, formatting_info=True)

    def sheet_cells(self, path):
        sheet = self.read(path).sheet_by_index(0)
        return [[(cell.ctype, cell.value) for cell in row] for row in sheet.get_rows()]

    def check_csv(self, path, name, precision=0.0, change=lambda cell: cell):
        """The CSV file that a reader wrote has the cells of the book; `change` is what the reader
        makes of a cell."""
        csv.field_size_limit(1 << 20)
        wanted = [[change(cell) for cell in row] for row in self.wanted[name]]
        with open(path, newline="", encoding="utf-8") as file:
            found = list(csv.reader(file, strict=True))
        self.assertEqual([len(row) for row in found], [len(row) for row in wanted])
        self.check_rows([[as_read(cell, value, precision) for cell, value in zip(*pair)]
                         for pair in zip(wanted, found)], wanted)

    # --- The three readers.

    def test_xlrd(self):
        for name, path in self.books.items():
            with self.subTest(name):
                if name == "longfirst":
                    with self.assertRaises(struct.error):  # see above
                        self.read(path)
                else:
                    self.check_rows(self.sheet_cells(path), self.wanted[name])

    def test_libreoffice(self):
        folder = self.path("converted")
        subprocess.run(["soffice", f"-env:UserInstallation=file://{self.path('profile')}",
                        "--headless", "--convert-to", LIBRE_OFFICE_CSV, "--outdir", folder,
                        *self.books.values()], capture_output=True, check=True,
                       env={**os.environ, "LC_ALL": "C.UTF-8", "HOME": self.folder})
        for name in self.books:
            with self.subTest(name):
                self.check_csv(os.path.join(folder, f"{name}.csv"), name, FIFTEEN_DIGITS,
                               one_line_break)

    def test_gnumeric(self):
        for name, path in self.books.items():
            with self.subTest(name):
                output = self.path("gnumeric.csv")
                subprocess.run(["ssconvert", "-T", "Gnumeric_stf:stf_assistant", "-O",
                                GNUMERIC_CSV, path, output], check=True, capture_output=True,
                               env={**os.environ, "LC_ALL": "C.UTF-8", "HOME": self.folder})
                self.check_csv(output, name)

    # --- The container.

    def test_container(self):
        for name, path in self.books.items():
            with self.subTest(name):
                with olefile.OleFileIO(path, raise_defects=olefile.DEFECT_UNSURE) as document:
                    self.assertEqual(document.listdir(storages=True), [["Workbook"]])
                    self.assertEqual(document.parsing_issues, [])
                    size = document.get_size("Workbook")
                listing = subprocess.run(["gsf", "list", path], capture_output=True, check=True,
                                         encoding="utf-8").stdout
                self.assertRegex(listing, rf"(?m)^f +{size} Workbook$")
                got = subprocess.run(["gsf", "cat", path, "Workbook"], capture_output=True,
                                     check=True).stdout
                self.assertEqual(len(got), size)

    # --- What a sheet is made of.

    def test_records(self):
        """Page texts, widths and the cuts of the string table, as they stand in the file."""
        path = self.export(self.shop, "page.xls", "--table", "orders", "--width", "id=31",
                           "--set", "Options.SheetTitle=Größe & 日本 😀", "--set",
                           "Options.PageHeader=&LKöln &P", "--set", "Options.PageFooter=")
        self.assertEqual(self.read(path).sheet_names(), ["Größe & 日本 😀"])
        found = dict(records(path))
        note = "&LKöln &P".encode("latin-1")
        self.assertEqual(found[HEADER], bytes([len(note), 0, 0]) + note + b"\0\0")
        self.assertEqual(found[FOOTER], b"")
        widths = [struct.unpack_from("<HHH", body) for record, body in records(path)
                  if record == COLINFO]
        self.assertEqual(widths[0], (0, 0, 31 * 256))
        self.assertEqual([column for column, _, _ in widths], list(range(len(SHOP["orders"]))))
        for name in ("long", "longfirst", "many"):
            with self.subTest(name):
                pieces = [len(body) for record, body in records(self.books[name])
                          if record in (SST, CONTINUE)]
                self.assertGreater(len(pieces), 1)
                self.assertLessEqual(max(pieces), 8224)

    def test_captions_are_bold(self):
        book = self.read(self.books["orders"])
        sheet = book.sheet_by_index(0)
        weights = [[book.font_list[book.xf_list[cell.xf_index].font_index].weight
                    for cell in sheet.row(row)] for row in (0, 1)]
        self.assertEqual(weights, [[700] * sheet.ncols, [400] * sheet.ncols])
        data = book.xf_list[sheet.cell_xf_index(1, 0)]
        font = book.font_list[data.font_index]
        self.assertEqual((font.name, font.height, font.italic), ("arial", 200, 0))

    def test_dates_before_the_calendar(self):
        moments = ["0001-01-01 00:00:00", "1899-12-30 18:30:15", "1900-02-28 00:00:00",
                   "1900-03-01 12:00:00", "2000-02-29 12:34:56", "9999-12-31 23:59:59"]
        database = self.database("dates.db", "CREATE TABLE t (day DATE, moment DATETIME);",
                                 [(moment[:10], moment) for moment in moments])
        path = self.export(database, "dates.xls", "--table", "t")
        self.check_rows(self.sheet_cells(path),
                        cells(database, "t", {"day": date, "moment": date_time}))

    def test_numbers(self):
        values = [0.0, 0.1 + 0.2, 1 / 3, -2.675, 1e300, -1e300, 1e15, 9007199254740993.0, 1e-5,
                  5e-324, 2.2250738585072014e-308, 1.7976931348623157e308, 123456789.123456789]
        database = self.database("numbers.db", "CREATE TABLE t (real DOUBLE);",
                                 ((value,) for value in values))
        path = self.export(database, "numbers.xls", "--table", "t")
        self.check_rows(self.sheet_cells(path), cells(database, "t", {"real": number}))

    # --- Limits.

    def check_refused(self, database, error, *options, code=1):
        path = self.path(f"{self.id()}.xls")
        if os.path.exists(path):
            os.remove(path)  # what a case before this one should not have left
        run = self.norva("export", database, "-o", path, "--quiet", "--table", "t", *options)
        self.assertEqual((run.returncode, os.path.exists(path)), (code, False))
        self.assertRegex(run.stderr, error)

    def test_most_rows(self):
        def numbers(name, count):
            return self.database(name, "CREATE TABLE t (id INTEGER);",
                                 ((at,) for at in range(count)))

        path = self.export(numbers("full.db", MAX_ROWS - 1), "full.xls", "--table", "t")
        sheet = self.read(path).sheet_by_index(0)
        self.assertEqual(sheet.nrows, MAX_ROWS)
        self.assertEqual(sheet.col_values(0), ["id", *range(MAX_ROWS - 1)])
        over = numbers("over.db", MAX_ROWS)
        self.check_refused(over, "^norva: Record 65536 does not fit: a sheet has 65536 rows;")
        self.export(over, "bare.xls", "--table", "t", "--no-captions")

    def test_too_many_columns(self):
        names = ", ".join(f"c{at} INTEGER" for at in range(MAX_COLUMNS + 1))
        self.check_refused(self.database("columns.db", f"CREATE TABLE t ({names});",
                                         [range(MAX_COLUMNS + 1)]),
                           '^norva: Column "c256" does not fit: a sheet has 256 columns;')

    def test_too_long_a_text(self):
        for note in ("x" * (MAX_TEXT + 1), "ä" * (MAX_TEXT // 2 + 1)):
            database = self.database(f"text{len(note)}.db", "CREATE TABLE t (note TEXT);",
                                     [("short",), (note,)])
            self.check_refused(database, "^norva: Cell R2,C0: String length more than 32767 bytes")

    def test_sheet_titles(self):
        self.export(self.awkward, "title.xls", "--table", "t", "--set",
                    f"Options.SheetTitle={'ä' * 31}")
        for title in ("a" * 32, "😀" * 16, "a/b", "a\\b", "a:b", "a*b", "a?b", "[a", "a]"):
            with self.subTest(title):
                self.check_refused(self.awkward, re.escape(title), "--set",
                                   f"Options.SheetTitle={title}", code=2)



class Made(ClientTest):
    """The workbooks of make_workbooks.cpp, which states their rules."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        subprocess.run([os.environ["NORVA_MAKE_WORKBOOKS"], cls.folder], check=True)

    def read(self, name):
        return xlrd.open_workbook(self.path(name), formatting_info=True)

    def test_formats(self):
        book = self.read("formats.xls")
        sheet = book.sheet_by_index(0)
        self.assertEqual((sheet.nrows, sheet.colinfo_map[0].width), (600, 31 * 256))
        fonts = set()
        for row in range(600):
            xf = book.xf_list[sheet.cell_xf_index(row, 0)]
            font = book.font_list[xf.font_index]
            fonts.add(xf.font_index)
            picture = "yyyy-mm-dd" if row % 11 == 0 else "0." + "0" * (1 + row % 11)
            underline = (0, 1, 2, 0x21, 0x22)[row % 5]
            got = {
                "value": sheet.cell_value(row, 0),
                "type": sheet.cell_type(row, 0),
                "picture": book.format_map[xf.format_key].format_str,
                "font": (font.name, font.height, font.colour_index, font.weight, font.italic,
                         font.underline_type, font.escapement),
                "borders": (xf.border.left_line_style, xf.border.bottom_line_style,
                            xf.border.right_line_style, xf.border.top_line_style),
                "border colours": (xf.border.left_colour_index, xf.border.bottom_colour_index),
                "fill": (xf.background.fill_pattern, xf.background.pattern_colour_index,
                         xf.background.background_colour_index),
                "alignment": (xf.alignment.hor_align, xf.alignment.vert_align,
                              xf.alignment.text_wrapped),
            }
            lines = row % 14, (row + 5) % 14
            wanted = {
                "value": 40000 + row / 4,
                "type": xlrd.XL_CELL_DATE if row % 11 == 0 else XL_CELL_NUMBER,
                "picture": picture,
                "font": (f"Font {row // 100}", 20 * (1 + row % 100), PALETTE[row % 40],
                         700 if row % 2 else 400, 0 if row % 2 else 1, underline, row % 3),
                "borders": (*lines, 0, 0),
                "border colours": tuple(PALETTE[(row + shift) % 40] if line else 0
                                        for line, shift in zip(lines, (1, 2))),
                "fill": (row % 19, PALETTE[(row + 3) % 40], PALETTE[(row + 4) % 40]),
                "alignment": (row % 5, row % 4, 1 if row % 3 == 0 else 0),
            }
            self.assertEqual(got, wanted, f"row {row}")
        self.assertEqual(len(fonts), 600)

    def test_rows(self):
        """The file is so large that its container needs sectors for its own tables."""
        sheet = self.read("rows.xls").sheet_by_index(0)
        self.assertEqual((sheet.nrows, sheet.ncols), (MAX_ROWS, 8))
        for row in range(MAX_ROWS):
            self.assertEqual(sheet.row_values(row), list(range(row * 8, row * 8 + 8)))
        with olefile.OleFileIO(self.path("rows.xls")) as document:
            self.assertGreater(document.num_difat_sectors, 0)
            self.assertEqual(document.parsing_issues, [])

    def test_aggregates(self):
        """The formulas are calculated, over the data below the three header rows."""
        values = [4.0, -2.5, 10.0, 1.0]
        wanted = [["left", "right", "", "", ""], ["second"] + [""] * 4, [""] * 5,
                  ["", "aggSum", "aggAvg", "aggMin", "aggMax"],
                  *(["", *[value] * 4] for value in values),
                  ["", sum(values), sum(values) / 4, min(values), max(values)],
                  ["", "footer", "", "", ""]]
        path, output = self.path("aggregates.xls"), self.path("aggregates.csv")
        environment = {**os.environ, "LC_ALL": "C.UTF-8", "HOME": self.folder}
        for command in (
                ["soffice", f"-env:UserInstallation=file://{self.path('profile')}", "--headless",
                 "--convert-to", LIBRE_OFFICE_CSV, "--outdir", self.folder, path],
                ["ssconvert", "--recalc", "-T", "Gnumeric_stf:stf_assistant", "-O", GNUMERIC_CSV,
                 path, output]):
            with self.subTest(command[0]):
                subprocess.run(command, check=True, capture_output=True, env=environment)
                with open(output, newline="", encoding="utf-8") as file:
                    found = list(csv.reader(file, strict=True))
                os.remove(output)
                self.check_rows([[float(value) if isinstance(at, float) else value
                                  for value, at in zip(row, wanted_row, strict=True)]
                                 for row, wanted_row in zip(found, wanted, strict=True)], wanted)


if __name__ == "__main__":
    unittest.main()
