#!/usr/bin/python3
"""DBF, read back by dbfread, LibreOffice and GDAL, in UTF-8 and in code page 1252.

What the format does to values, and so is expected of every reader here: a null number is 0, a null
text is empty, a date-time is its date and a time alone is 30 December 1899; numbers have four
decimals and texts 254 bytes; an integer of more than eleven characters is `*`, which readers take
for nothing (LibreOffice for 0). Blanks at the end of a text are the field's.

LibreOffice shows two digits of a year and one kind of line break; GDAL drops leading blanks, too.
"""

import csv
import datetime
import decimal
import io
import os
import re
import subprocess
import unittest

import dbfread
from norva_client import (PROJ, REGISTRY, SHOP, ClientTest, boolean, date, date_time, integer,
                          money, number, rows, text, time)

# By the name of a code page: what LibreOffice's filter and GDAL call it.
PAGES = {"utf-8": ("65001", "76", "UTF-8"), "cp1252": ("1252", "1", "CP1252")}

# Columns that would have the same name after ten characters.
CAPTIONS = {"celestial_body_code": "cel_code"}


def stored(kind, value, page):
    """The value as a table holds it; numbers as Decimal, dates as date."""
    if kind in (number, money):
        return decimal.Decimal(repr(value or 0)).quantize(decimal.Decimal("0.0001"),
                                                          decimal.ROUND_HALF_UP)
    if kind is text:
        return str(value or "").encode(page)[:254].decode(page, "ignore").rstrip(" ")
    if value is None:
        return None
    if kind is integer:
        return decimal.Decimal(value) if len(str(value)) <= 11 else None
    if kind is boolean:
        return bool(value)
    if kind is time:
        return datetime.date(1899, 12, 30)
    return datetime.datetime.fromisoformat(value).date()


def one_line_break(cell):
    return re.sub("\r\n|\r", "\n", cell).strip(" ")


class Dbf(ClientTest):
    def setUp(self):
        self.files = []  # (path, page, kinds, the values that it should hold)

    def add(self, database, name, kinds, query, page="utf-8"):
        options = [f"--caption={name}={caption}" for name, caption in CAPTIONS.items()
                   if name in kinds]
        path = self.export(database, f"{name}.dbf", "--query", query, "--code-page",
                           PAGES[page][0], *options)
        wanted = [[stored(kind, value, page) for kind, value in zip(kinds.values(), row)]
                  for row in rows(database, query)]
        self.files.append((path, page, kinds, wanted))

    def add_all(self):
        for table, kinds in SHOP.items():
            columns = ", ".join(kinds)
            self.add(self.shop, table, kinds, f"SELECT {columns} FROM {table}")
            latin = " WHERE id NOT IN (6, 7)" if table == "customers" else ""
            if table != "sales":
                self.add(self.shop, f"{table}-1252", kinds, f"SELECT {columns} FROM {table}{latin}",
                         "cp1252")
        for table, kinds in REGISTRY.items():
            self.add(PROJ, table, kinds, f"SELECT {', '.join(kinds)} FROM {table}")
        self.add(self.awkward, "awkward", {"id": integer, "note": text}, "SELECT id, note FROM t")

    def check_files(self, read, same=lambda kind, value: value):
        """`read` gives the records of a file as texts or values; `same` is what is left of them."""
        for path, page, kinds, wanted in self.files:
            with self.subTest(os.path.basename(path)):
                names = [CAPTIONS.get(name, name).upper()[:10] for name in kinds]
                captions, records = read(path, page, list(kinds.values()))
                self.assertEqual(captions, names)
                self.check_rows(records, [[same(kind, value) for kind, value in
                                           zip(kinds.values(), row)] for row in wanted])

    def test_dbfread(self):
        def read(path, page, kinds):
            table = dbfread.DBF(path, encoding=page)
            records = [[decimal.Decimal(repr(value)) if type(value) in (int, float) else value
                        for value in record.values()] for record in table]
            return table.field_names, records

        self.add_all()
        self.check_files(read)

    def test_libreoffice(self):
        def convert(page):
            folder = self.path(page)
            subprocess.run(["soffice", f"-env:UserInstallation=file://{self.path('profile')}",
                            "--headless", f"--infilter=dBase:{PAGES[page][1]}", "--convert-to",
                            "csv:Text - txt - csv (StarCalc):44,34,76,1,,0,true,false", "--outdir",
                            folder, *[file[0] for file in self.files if file[1] == page]],
                           capture_output=True, check=True,
                           env={**os.environ, "LC_ALL": "C.UTF-8", "HOME": self.folder})

        def read(path, page, kinds):
            name = os.path.splitext(os.path.basename(path))[0]
            with open(os.path.join(self.path(page), f"{name}.csv"), newline="",
                      encoding="utf-8") as file:
                captions, *records = csv.reader(file, strict=True)
            return ([caption.split(",")[0] for caption in captions],
                    [[shown(kind, cell) for kind, cell in zip(kinds, row)] for row in records])

        def shown(kind, cell):
            if kind in (integer, number, money) and cell:
                return decimal.Decimal(cell)
            return one_line_break(cell)

        def same(kind, value):
            if kind is integer and value is None:
                return decimal.Decimal(0)
            if kind in (date, date_time, time):
                return f"{value:%m/%d/%y}" if value else ""
            if kind is boolean:
                return "" if value is None else str(value).upper()
            return one_line_break(value) if kind is text else value

        self.add_all()
        for page in PAGES:
            convert(page)
        self.check_files(read, same)

    def test_gdal(self):
        def read(path, page, kinds):
            output = subprocess.run(["ogr2ogr", "-f", "CSV", "/vsistdout/", path, "-oo",
                                     f"ENCODING={PAGES[page][2]}"], capture_output=True, check=True)
            captions, *records = csv.reader(io.StringIO(output.stdout.decode(), newline=""))
            return captions, [[shown(kind, cell) for kind, cell in zip(kinds, row)]
                              for row in records]

        def shown(kind, cell):
            if kind in (integer, number, money) and cell:
                return decimal.Decimal(cell)
            return cell.strip(" ")

        def same(kind, value):
            if value is None:
                return ""
            if kind in (date, date_time, time):
                return f"{value:%Y/%m/%d}"
            if kind is boolean:
                return "T" if value else "F"
            return value.strip(" ") if kind is text else value

        self.add_all()
        self.check_files(read, same)

    def test_what_did_not_fit_is_said(self):
        run = self.norva("export", self.shop, "--query",
                         "SELECT 123456789012 AS n, 1e11 AS f, 'long' AS s UNION ALL "
                         "SELECT -12345678901, 0.00005, 'ok'", "--length", "s=2", "-o",
                         self.path("o.dbf"))
        self.assertIn("norva: Warning: 3 values did not fit their N fields and are shown as *\n",
                      run.stderr)
        self.assertIn("norva: Warning: 1 text did not fit its C field and is cut; ", run.stderr)
        with open(self.path("o.dbf"), "rb") as file:
            self.assertEqual(file.read()[-2 * 29 - 1:],
                             b" " + 26 * b"*" + b"lo " + 11 * b"*" + b"         0.0001ok\x1a")

    def test_an_old_file_stays_when_the_export_fails(self):
        path = self.path("old.dbf")
        with open(path, "wb") as file:
            file.write(b"old")
        run = self.norva("export", self.shop, "--table", "customers", "-o", path)
        self.assertEqual(run.returncode, 1)
        self.assertIn("Character U+0141 cannot be written in code page 1252", run.stderr)
        with open(path, "rb") as file:
            self.assertEqual(file.read(), b"old")


if __name__ == "__main__":
    unittest.main()
