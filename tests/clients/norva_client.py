"""What the readers' tests share: the tool, the databases, and the text that each cell should have.

The texts are worked out here from what Python's sqlite3 reads, with decimal and datetime, and owe
nothing to Norva but its default pictures in the invariant locale. Which kind a column is stands
here, too: a tool that takes a column for something else writes other texts.

Environment: NORVA_TOOL, the tool's path; NORVA_EXAMPLES, the folder that holds shop.sql.
"""

import datetime
import decimal
import os
import sqlite3
import subprocess
import tempfile
import unittest

TOOL = os.environ["NORVA_TOOL"]
PROJ = "/usr/share/proj/proj.db"  # Debian's proj-data


# --- One function a kind of column: the stored value, and its text by the default picture.

def text(value):
    return str(value)


def integer(value):  # #,###,##0
    return f"{value:,}"


def number(value):  # #,###,##0.00
    if abs(value) >= 1e18:
        return general(value)
    return f"{cents(value):,}"


def money(value):  # 00.00$
    return f"{'-' if cents(value) < 0 else ''}{abs(cents(value)):05}$"


def boolean(value):
    return "True" if value else "False"


def date(value):  # yyyy-mm-dd
    return f"{datetime.date.fromisoformat(value)}"


def time(value):  # hh:mm; seconds are cut
    return f"{datetime.time.fromisoformat(value):%H:%M}"


def date_time(value):  # yyyy-mm-dd hh:mm
    return datetime.datetime.fromisoformat(value).isoformat(" ", "minutes")


def cents(value):
    """Two decimals, halves away from zero on the shortest digits, and never a negative zero."""
    with decimal.localcontext() as context:
        context.prec = 400
        rounded = decimal.Decimal(repr(value)).quantize(decimal.Decimal("0.01"),
                                                        decimal.ROUND_HALF_UP)
        return abs(rounded) if rounded == 0 else rounded


def general(value):
    """The empty picture: 15 digits, an exponent for the very large and the very small."""
    if value in (float("inf"), float("-inf")):
        return "INF" if value > 0 else "-INF"
    context = decimal.Context(prec=15, rounding=decimal.ROUND_HALF_UP)
    digits = context.create_decimal(repr(value)).normalize()
    if digits == 0:
        return "0"
    if decimal.Decimal("0.00001") <= abs(digits) < decimal.Decimal("1E15"):
        return f"{digits:f}"
    exponent = digits.adjusted()
    return f"{digits.scaleb(-exponent):f}E{exponent}"


# --- Tables: the columns with their kinds, in order.

SHOP = {
    "customers": {"id": integer, "name": text, "city": text, "country": text, "born": date,
                  "vip": boolean, "discount": number, "notes": text},
    # Without its blob column, picture.
    "products": {"sku": text, "title": text, "price": money, "weight_kg": number, "stock": integer,
                 "sold": integer, "rating": number, "in_catalog": boolean, "opens_at": time},
    "orders": {"id": integer, "customer": integer, "sku": text, "quantity": integer,
               "total": money, "ordered": date_time, "shipped": date_time, "paid": boolean},
    "sales": {"id": integer, "customer": text, "product": text, "quantity": integer,
              "total": money, "ordered": date_time, "paid": boolean},
}

# The codes are declared INTEGER_OR_TEXT; the tool takes such columns for texts.
REGISTRY = {
    "unit_of_measure": {"auth_name": text, "code": text, "name": text, "type": text,
                        "conv_factor": number, "proj_short_name": text, "deprecated": boolean},
    "ellipsoid": {"auth_name": text, "code": text, "name": text, "description": text,
                  "celestial_body_auth_name": text, "celestial_body_code": text,
                  "semi_major_axis": number, "uom_auth_name": text, "uom_code": text,
                  "inv_flattening": number, "semi_minor_axis": number, "deprecated": boolean},
    "extent": {"auth_name": text, "code": text, "name": text, "description": text,
               "south_lat": number, "north_lat": number, "west_lon": number, "east_lon": number,
               "deprecated": boolean},
    "crs_view": {"table_name": text, "auth_name": text, "code": text, "name": text, "type": text,
                 "description": text, "deprecated": boolean},
}


def as_texts(table, cell="CAST({} AS TEXT)"):
    """A query that gives every column of a shop table as SQLite's own text for it."""
    names = ", ".join(f"{cell.format(name)} AS {name}" for name in SHOP[table])
    return f"SELECT {names} FROM {table}"


# Texts that readers of one format or another stumble over.
AWKWARD = [
    "plain", '"', '""', 'a"b"c', "a,b,c", ";", "tab\there", "two\r\nlines", "lf\nonly", "cr\ronly",
    "\n", "\r\n", " lead", "trail ", "  ", "", "null", None, '"null"', ",", "','", "'", "=1+1",
    "+1", "-1", "@x", "True", "007", "1e5", "2024-01-31", "€ ß İ ﬁ", "𝄞 clef 😀", "e\u0301",
    "\u00a0nbsp\u00a0", "\ufeffmark", "\u2028separator", "x" * 5000, 'C;X1;Y1;K"x"', "-1,0", "EOD",
    "BOT", "E", "".join(map(chr, range(1, 32))) + "\x7f", "\x80\x9f", "a;;b", "\ufffd",
]


def rows(database, query):
    """The records as SQLite gives them."""
    connection = sqlite3.connect(database)
    try:
        return connection.execute(query).fetchall()
    finally:
        connection.close()


def texts(database, table, columns, null="null"):
    """The records as the texts of their cells; `columns` maps the names to the kinds."""
    return [[null if value is None else kind(value) for kind, value in zip(columns.values(), row)]
            for row in rows(database, f"SELECT {', '.join(columns)} FROM {table}")]


def registry_texts(table):
    return texts(PROJ, table, REGISTRY[table])


class ClientTest(unittest.TestCase):
    """A test in a folder of its own, with the shop in `self.shop`."""

    maxDiff = 4000

    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = folder.name
        with open(os.path.join(os.environ["NORVA_EXAMPLES"], "shop.sql"), encoding="utf-8") as file:
            cls.shop = cls.database("shop.db", file.read())
        cls.awkward = cls.database("awkward.db", "CREATE TABLE t (id INTEGER, note TEXT);",
                                   enumerate(AWKWARD, 1))

    @classmethod
    def path(cls, name):
        return os.path.join(cls.folder, name)

    @classmethod
    def database(cls, name, script, records=()):
        """The path of a database made by `script`; `records` go into its table t."""
        connection = sqlite3.connect(cls.path(name))
        connection.executescript(script)
        for record in records:
            places = ",".join("?" * len(record))
            connection.execute(f"INSERT INTO t VALUES ({places})", record)
        connection.commit()
        connection.close()
        return cls.path(name)

    @staticmethod
    def norva(*arguments):
        return subprocess.run([TOOL, *arguments], capture_output=True, encoding="utf-8",
                              env={**os.environ, "LC_ALL": "C"}, check=False)

    @classmethod
    def export(cls, database, name, *options):
        """Exports to the file `name`, whose extension is the format; returns its path."""
        run = cls.norva("export", database, "-o", cls.path(name), "--locale", "invariant",
                        "--quiet", *options)
        if run.returncode != 0:
            raise AssertionError(f"norva {' '.join(options)}: {run.stderr}")
        return cls.path(name)

    def shop_texts(self, table, null="null"):
        return texts(self.shop, table, SHOP[table], null)

    def awkward_texts(self):
        return texts(self.awkward, "t", {"id": text, "note": text})

    def check_rows(self, got, expected):
        """Equal rows; a difference names the row, as two long lists side by side do not."""
        for at, (row, wanted) in enumerate(zip(got, expected)):
            self.assertEqual(row, wanted, f"row {at}")
        self.assertEqual(len(got), len(expected))
