#!/usr/bin/python3
"""XML, checked by xmllint and read by lxml.

Readers make blanks of the tabs and line breaks in an attribute's value, so the texts are compared
with those made blanks, too.
"""

import re
import subprocess
import unittest

from lxml import etree

from norva_client import (PROJ, REGISTRY, SHOP, ClientTest, boolean, date, date_time, integer,
                          money, number, registry_texts, text, time)

TYPES = {text: "String", integer: "Integer", number: "Float", money: "Currency", date: "Date",
         time: "Time", date_time: "DateTime", boolean: "Boolean"}


def lint(path):
    """What xmllint has to say; nothing is good."""
    run = subprocess.run(["xmllint", "--noout", path], capture_output=True, check=False)
    return run.stderr.decode(errors="replace") + ("" if run.returncode == 0 else "failed")


class Xml(ClientTest):
    def check(self, path, columns, wanted, captions=None):
        self.assertEqual(lint(path), "")
        packet = etree.parse(path).getroot()
        self.assertEqual((packet.tag, packet.items()), ("DATAPACKET", [("Version", "2.0")]))
        self.assertEqual([child.tag for child in packet], ["METADATA", "ROWDATA"])
        self.assertEqual([field.items() for field in packet.iterfind("METADATA/FIELDS/FIELD")],
                         [[("FieldName", name), ("DisplayLabel", (captions or {}).get(name, name)),
                           ("FieldType", TYPES[kind]), ("FieldClass", "TField")]
                          for name, kind in columns.items()])
        self.check_rows([row.items() for row in packet.iterfind("ROWDATA/ROW")],
                        [list(zip(columns, (re.sub("\r\n|[\t\r\n]", " ", cell) for cell in row)))
                         for row in wanted])

    def test_shop(self):
        for table, columns in SHOP.items():
            with self.subTest(table):
                path = self.export(self.shop, "o.xml", "--table", table)
                self.check(path, columns, self.shop_texts(table))

    def test_code_page_and_caption(self):
        path = self.export(self.shop, "o.xml", "--table", "products", "--code-page", "1252", "--set",
                           "Options.Encoding=windows-1252", "--caption", "title=Möbel &amp; more")
        with open(path, "rb") as file:
            self.assertIn(b"M\xf6bel", file.read())
        self.check(path, SHOP["products"], self.shop_texts("products"), {"title": "Möbel & more"})

    def test_registry(self):
        for table, columns in REGISTRY.items():
            with self.subTest(table):
                path = self.export(PROJ, "o.xml", "--table", table)
                self.check(path, columns, registry_texts(table))

    def test_awkward_texts(self):
        # But for the one with control characters, which XML cannot hold.
        path = self.export(self.awkward, "o.xml", "--query", "SELECT id, note FROM t"
                           " WHERE instr(coalesce(note, ''), char(1)) = 0")
        self.check(path, {"id": integer, "note": text},
                   [row for row in self.awkward_texts() if "\x01" not in row[1]])

    def test_warns_once_of_what_breaks(self):
        for query, warning in (
                ('SELECT 1 AS "a b", 2 AS "c d"', 'the name or caption "a b"'),
                ("SELECT 'ok' AS a UNION ALL SELECT char(7) UNION ALL SELECT char(8)",
                 'column "a", record 2: "?"')):
            with self.subTest(query):
                path = self.path("o.xml")
                run = self.norva("export", self.shop, "--query", query, "-o", path)
                self.assertEqual(run.returncode, 0, run.stderr)
                self.assertEqual(re.findall(f"Warning: ({re.escape(warning)})?", run.stderr),
                                 [warning])
                self.assertNotEqual(lint(path), "")


if __name__ == "__main__":
    unittest.main()
