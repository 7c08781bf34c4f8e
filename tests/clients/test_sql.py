#!/usr/bin/python3
"""SQL scripts, run by sqlite3 and read back as typed values.

What SQLite does to values, and another reader does not: the shell drops the CR of a CR LF from
every line that it reads, also inside a quoted text, where a script that is run through the library
keeps it; and some decimal numbers are read one bit off, one in thousands.
"""

import datetime
import itertools
import math
import os
import random
import sqlite3
import struct
import subprocess
import unittest

from norva_client import (AWKWARD, PROJ, REGISTRY, SHOP, ClientTest, boolean, date, date_time,
                          integer, money, number, rows, text, time)

# What scripts, or the programs that run them, may stumble over besides.
TEXTS = AWKWARD + ["\\", "a\\'b", "\\n", "''", "');--", "/* a", "--", "$$", ":name", "?1", "a\n;\n",
                   "\n.quit\n", "\ngo\n", "\n\\q\n", "q'[x]'"]

# What a cell of each kind holds after the way through a script; dates as the texts written.
RAW = {text: str, integer: int, number: float, money: float, boolean: bool, date: str,
       time: lambda value: f"{datetime.time.fromisoformat(value)}",
       date_time: lambda value: str(datetime.datetime.fromisoformat(value))}


def values(database, table, columns, convert=RAW):
    """The records with each cell as `convert` says for its kind."""
    return [[None if value is None else convert[kind](value)
             for kind, value in zip(columns.values(), row)]
            for row in rows(database, f"SELECT {', '.join(columns)} FROM {table}")]


def doubles():
    """Doubles of every size: some with awkward digits, and 2,000 by a chance that never changes."""
    fixed = [0.0, 0.1 + 0.2, 1 / 3, -2.675, 1e300, -1e18, 1e15, 999999999999999.9, 1e-5, 9.9999e-6,
             9007199254740993.0, 5e-324, 2.2250738585072014e-308, 1.7976931348623157e308]
    source = random.Random(1)
    drawn = (struct.unpack("d", source.randbytes(8))[0] for _ in range(2000))
    return fixed + [value for value in drawn if math.isfinite(value)]


INTEGERS = [-2**63, 2**63 - 1, -1, 0, 2**53 + 1, 2**31, -2**31]


class Sql(ClientTest):
    def load(self, script):
        """A new database in which the shell has run the script."""
        database = self.path("loaded.db")
        if os.path.exists(database):
            os.remove(database)
        with open(script, encoding="utf-8") as file:
            run = subprocess.run(["sqlite3", "-bail", "-cmd", "PRAGMA synchronous=OFF", database],
                                 stdin=file, capture_output=True, encoding="utf-8", check=False)
        self.assertEqual((run.returncode, run.stdout, run.stderr), (0, "", ""))
        return database

    def check(self, database, table, columns, *options):
        script = self.export(database, "o.sql", "--table", table, "--set", "CreateTable=true",
                             "--set", "TableName=t", *options)
        convert = {**RAW, text: lambda value: str(value).replace("\r\n", "\n"),
                   date_time: lambda value: RAW[date_time](value).removesuffix(" 00:00:00")}
        self.check_rows(values(self.load(script), "t", columns, dict.fromkeys(RAW, lambda v: v)),
                        values(database, table, columns, convert))

    def test_shop(self):
        for table, columns in SHOP.items():
            with self.subTest(table):
                self.check(self.shop, table, columns)

    def test_registry_in_one_transaction(self):
        for table, columns in REGISTRY.items():
            with self.subTest(table):
                self.check(PROJ, table, columns, "--header", "BEGIN;", "--set",
                           "CommitAfterScript=true", "--set", "CommitStatement=COMMIT;")

    def test_transactions_of_some_records(self):
        self.check(self.shop, "customers", SHOP["customers"], "--header", "BEGIN;", "--set",
                   "CommitRecCount=3", "--set", "CommitStatement=COMMIT; BEGIN;", "--footer",
                   "COMMIT;")

    def test_awkward_texts(self):
        database = self.database("awkward2.db", "CREATE TABLE t (id INTEGER, note TEXT);",
                                 enumerate(TEXTS, 1))
        self.check(database, "t", {"id": integer, "note": text})
        with open(self.export(database, "o.sql", "--table", "t"), newline="",
                  encoding="utf-8") as file:
            script = file.read()
        connection = sqlite3.connect(":memory:")
        connection.executescript("CREATE TABLE t (id INTEGER, note TEXT);" + script)
        self.check_rows(connection.execute("SELECT * FROM t").fetchall(),
                        list(enumerate(TEXTS, 1)))  # with every CR LF

    def test_numbers(self):
        records = list(zip(itertools.cycle(INTEGERS), doubles()))
        database = self.database("numbers.db", "CREATE TABLE t (whole BIGINT, real DOUBLE);",
                                 records)
        script = self.export(database, "o.sql", "--table", "t", "--set", "CreateTable=true")
        connection = sqlite3.connect(":memory:")
        read = [(whole, *connection.execute(f"SELECT {real!r}").fetchone())
                for whole, real in records]
        self.check_rows(rows(self.load(script), "SELECT * FROM t"), read)

    def test_names(self):
        script = self.export(self.shop, "o.sql", "--query",
                             "SELECT 1 AS größe, 2 AS \"\"\"a b\"\"\"", "--set", "CreateTable=true",
                             "--set", "TableName=main.\"my table\"")
        self.assertEqual(rows(self.load(script), "SELECT größe, \"a b\" FROM \"my table\""),
                         [(1, 2)])

    def test_warnings(self):
        run = self.norva("export", self.shop, "-o", self.path("o.sql"), "--query",
                         "SELECT 1e999 AS big", "--set", "TableName=t")
        self.assertIn("Warning: column \"big\", record 1: \"INF\" is written as it stands",
                      run.stderr)


if __name__ == "__main__":
    unittest.main()
