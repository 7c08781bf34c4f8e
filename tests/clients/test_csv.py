#!/usr/bin/python3
"""CSV, read by Python's csv module.

Every line ends with the separator, so this reader finds one more field in each row, an empty one;
`read` checks that it is there and takes it off. The other thing to know: null texts and booleans
are not quoted, but the module does not tell a quoted field from a bare one, so a text "null" and a
null are alike unless --null chooses a text that does not occur.
"""

import csv
import datetime
import sys
import unittest

from norva_client import (AWKWARD, PROJ, REGISTRY, SHOP, ClientTest, general, integer, number,
                          registry_texts, rows, texts)


class Csv(ClientTest):
    def read(self, path, delimiter=",", encoding="utf-8"):
        """The captions, and the records, without the empty field at the end of each."""
        csv.field_size_limit(sys.maxsize)
        with open(path, newline="", encoding=encoding) as file:
            lines = list(csv.reader(file, delimiter=delimiter, strict=True))
        for line in lines:
            self.assertEqual(line[-1], "")
        return lines[0][:-1], [line[:-1] for line in lines[1:]]

    def test_shop(self):
        for table, columns in SHOP.items():
            with self.subTest(table):
                captions, records = self.read(
                    self.export(self.shop, f"{table}.csv", "--table", table))
                self.assertEqual(captions, list(columns))
                self.check_rows(records, self.shop_texts(table))

    def test_separators_null_and_captions(self):
        for option, delimiter in ((";", ";"), ("#9", "\t"), ("|", "|")):
            with self.subTest(option):
                path = self.export(self.shop, "o.csv", "--table", "customers", "--null", "(none)",
                                   "--caption", f"name=A {delimiter} \"b\"", "--set",
                                   f"CSVComma={option}")
                captions, records = self.read(path, delimiter)
                self.assertEqual(captions[:3], ["id", f"A {delimiter} \"b\"", "city"])
                self.check_rows(records, self.shop_texts("customers", "(none)"))

    def test_without_quotes(self):
        # Nothing is quoted then, so it is for texts without separators, quotes and line breaks.
        path = self.export(self.shop, "o.csv", "--table", "orders",
                           "--set", "CSVQuoteStrings=false", "--set", "CSVComma=;")
        with open(path, encoding="utf-8") as file:
            self.assertNotIn('"', file.read())
        self.check_rows(self.read(path, ";")[1], self.shop_texts("orders"))

    def test_code_page(self):
        path = self.export(self.shop, "o.csv", "--code-page", "1252", "--query",
                           "SELECT * FROM customers WHERE id NOT IN (6, 7)")  # Polish and Japanese
        wanted = [row for row in self.shop_texts("customers") if row[0] not in "67"]
        self.check_rows(self.read(path, encoding="cp1252")[1], wanted)
        path = self.export(self.shop, "p.csv", "--code-page", "1252", "--table", "products")
        self.check_rows(self.read(path, encoding="cp1252")[1], self.shop_texts("products"))

    def test_registry(self):
        for table, columns in REGISTRY.items():
            with self.subTest(table):
                captions, records = self.read(self.export(PROJ, f"{table}.csv", "--table", table))
                self.assertEqual(captions, list(columns))
                self.check_rows(records, registry_texts(table))

    def test_registry_numbers_in_full(self):
        # Two decimals are not enough for factors from 3E-17 to 3E+7: a picture with an exponent
        # and 17 places gives every double back. The empty picture stops at 15 digits.
        for picture, same in (("0.################E+0", lambda text, value: float(text) == value),
                              ("", lambda text, value: text == general(value))):
            with self.subTest(picture):
                path = self.export(PROJ, "u.csv", "--table", "unit_of_measure", "--user-format",
                                   f"conv_factor={picture}")
                values = [value for value, in rows(PROJ, "SELECT conv_factor FROM unit_of_measure")]
                found = [record[4] for record in self.read(path)[1]]
                self.assertEqual(len(found), len(values))
                for text, value in zip(found, values):
                    self.assertTrue(text == "null" if value is None else same(text, value),
                                    f"{text} is not {value!r}")

    def test_awkward_texts(self):
        path = self.export(self.awkward, "o.csv", "--table", "t", "--null", "(none)")
        wanted = [[str(at), "(none)" if note is None else note]
                  for at, note in enumerate(AWKWARD, 1)]
        self.check_rows(self.read(path)[1], wanted)

    def test_null_is_not_told_from_the_text_null(self):
        path = self.export(self.awkward, "o.csv", "--query",
                           "SELECT note FROM t WHERE note IS NULL OR note = 'null' OR note = ''")
        # An empty text, the text "null", a null.
        self.assertEqual(self.read(path)[1], [[""], ["null"], ["null"]])
        with open(path, "rb") as file:
            self.assertEqual(file.read(), b'"note",\r\n,\r\n"null",\r\nnull,\r\n')

    def test_numbers(self):
        values = [0.0, -0.0, 0.1 + 0.2, 1 / 3, -2.675, 1.005, 0.005, 1e300, -1e300, 1e18, 1e15,
                  999999999999999.9, 9007199254740993.0, 123456789.123456789, 1e-5, 9.9999e-6,
                  5e-324, 2.2250738585072014e-308, 1.7976931348623157e308, float("inf"),
                  float("-inf")]
        integers = [-2**63, 2**63 - 1, -1, 0, 999, 1000, -1000, 2**53 + 1, 2**31, -2**31]
        integers += [0] * (len(values) - len(integers))
        database = self.database("numbers.db", "CREATE TABLE t (whole BIGINT, real DOUBLE);",
                                 zip(integers, values))

        def exported(*options):
            return self.read(self.export(database, "o.csv", "--table", "t", *options))[1]

        self.check_rows(exported(), texts(database, "t", {"whole": integer, "real": number}))
        self.check_rows(exported("--user-format", "whole=", "--user-format", "real="),
                        [[str(whole), general(real)] for whole, real in zip(integers, values)])
        # In full. Only the sign of zero is lost, to which == is blind.
        for (whole, real), record in zip(zip(integers, values), exported(
                "--user-format", "whole=0", "--user-format", "real=0.################E+0")):
            self.assertEqual((int(record[0]), float(record[1])), (whole, real))

    def test_dates(self):
        moments = ["0001-01-01 00:00:00", "0099-12-31 23:59:59", "1582-10-10 11:59:58",
                   "1899-12-29 06:00:00", "1899-12-30 00:00:00", "1899-12-30 18:30:15",
                   "1970-01-01 00:00:00", "2000-02-29 12:34:56", "2024-12-31 23:59:59",
                   "9999-12-31 23:59:59"]
        unix = [int(datetime.datetime.fromisoformat(moment + "+00:00").timestamp())
                for moment in moments]
        julian = [row[0] for row in rows(":memory:", " UNION ALL ".join(
            f"SELECT julianday('{moment}')" for moment in moments))]
        database = self.database(
            "dates.db",
            "CREATE TABLE t (day DATE, clock TIME, iso DATETIME, t DATETIME, unix TIMESTAMP,"
            " julian DATETIME);",
            [(moment[:10], moment[11:], moment, moment.replace(" ", "T"), seconds, days)
             for moment, seconds, days in zip(moments, unix, julian)])
        path = self.export(database, "o.csv", "--table", "t",
                           "--set", "Formats.TimeFormat=hh:nn:ss",
                           "--set", "Formats.DateTimeFormat=yyyy-mm-dd hh:nn:ss")
        self.check_rows(self.read(path)[1],
                        [[moment[:10], moment[11:]] + [moment] * 4 for moment in moments])

    def test_julian_day_at_noon(self):
        # It is whole, so SQLite stores it as an integer in a column declared so, and integers are
        # Unix seconds. A query of the real gives the date.
        database = self.database("noon.db", "CREATE TABLE t (day DATETIME);", [(2460000.0,)])
        self.assertEqual(self.read(self.export(database, "o.csv", "--table", "t"))[1],
                         [["1970-01-29 11:20"]])
        query = "SELECT strftime('%Y-%m-%d %H:%M', CAST(day AS REAL)) AS day FROM t"
        self.assertEqual(self.read(self.export(database, "o.csv", "--query", query))[1],
                         [["2023-02-24 12:00"]])


if __name__ == "__main__":
    unittest.main()
