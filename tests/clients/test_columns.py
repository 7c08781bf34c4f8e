#!/usr/bin/python3
"""Fixed-width text, cut by column positions.

A column is as wide as the widest of three: what `norva columns` says, its caption, its longest
text; TXTSpacing blanks follow. All lengths count characters. Line breaks inside a value stay, so a
record may span lines, but it has the same number of characters as every other one: this reader
cuts the text by lengths and not by lines.
"""

import unittest

from norva_client import (PROJ, REGISTRY, SHOP, ClientTest, boolean, integer, money, number,
                          registry_texts)

PAD = {
    "left": str.ljust,
    "right": str.rjust,
    "center": lambda text, width: (" " * ((width - len(text)) // 2) + text).ljust(width),
}


class Columns(ClientTest):
    def columns(self, database, *source):
        """Width and alignment by column name, as the tool says."""
        run = self.norva("columns", database, *source)
        self.assertEqual(run.returncode, 0, run.stderr)
        fields = [line.split() for line in run.stdout.splitlines()]
        self.assertEqual(fields[0][:6], ["no", "name", "type", "caption", "width", "align"])
        return {row[1]: (int(row[4]), row[5]) for row in fields[1:]}

    def check(self, path, layout, wanted, spacing=1, encoding="utf-8", head="", foot=""):
        """`layout` holds the alignment of each column by its caption, `wanted` the texts."""
        with open(path, newline="", encoding=encoding) as file:
            content = file.read()
        self.assertTrue(content.startswith(head))
        content = content[len(head):]
        widths = [max(width, len(caption), *(len(row[at]) for row in wanted))
                  for at, (caption, (width, _)) in enumerate(layout.items())]
        gap = " " * spacing
        record = sum(width + len(gap) for width in widths) + len("\r\n")
        for row in [list(layout), *wanted]:
            line, content = content[:record], content[record:]
            self.assertEqual(line[-2:], "\r\n")
            begin = 0
            for text, width, (_, align) in zip(row, widths, layout.values()):
                end = begin + width + len(gap)
                self.assertEqual(line[begin:end], PAD[align](text, width) + gap)
                begin = end
        self.assertEqual(content, "\r\n" + foot)

    def test_alignment_is_by_type(self):
        for table, columns in SHOP.items():
            with self.subTest(table):
                layout = self.columns(self.shop, "--table", table)
                for name, kind in columns.items():
                    align = ("right" if kind in (integer, number, money) else
                             "center" if kind is boolean else "left")
                    self.assertEqual(layout[name][1], align, name)

    def test_shop(self):
        for table, columns in SHOP.items():
            for spacing in (1, 0, 4, -2):
                with self.subTest(table, spacing=spacing):
                    layout = self.columns(self.shop, "--table", table)
                    path = self.export(self.shop, "o.txt", "--table", table, "--set",
                                       f"TXTSpacing={spacing}")
                    self.check(path, {name: layout[name] for name in columns},
                               self.shop_texts(table), spacing)

    def test_alignments_and_widths(self):
        path = self.export(self.shop, "o.txt", "--table", "products", "--align", "sku=right",
                           "--align", "title=center", "--align", "price=left", "--width", "sku=20",
                           "--width", "stock=0")
        layout = self.columns(self.shop, "--table", "products")
        del layout["picture"]
        layout |= {"sku": (20, "right"), "title": (60, "center"), "price": (10, "left"),
                   "stock": (0, "right")}
        self.check(path, layout, self.shop_texts("products"))

    def test_title_header_and_footer(self):
        path = self.export(self.shop, "o.txt", "--table", "sales", "--title", "Säles", "--header",
                           "Line 1", "--header", "", "--footer", "The end")
        self.check(path, self.columns(self.shop, "--table", "sales"), self.shop_texts("sales"),
                   head="Säles\r\n" + "-" * 80 + "\r\n\r\n" + "Line 1\r\n\r\n\r\n",
                   foot="The end\r\n")

    def test_code_page(self):
        path = self.export(self.shop, "o.txt", "--code-page", "1252", "--table", "products")
        layout = self.columns(self.shop, "--table", "products")
        del layout["picture"]
        self.check(path, layout, self.shop_texts("products"), encoding="cp1252")

    def test_registry(self):
        for table in REGISTRY:
            with self.subTest(table):
                path = self.export(PROJ, "o.txt", "--table", table)
                self.check(path, self.columns(PROJ, "--table", table), registry_texts(table))

    def test_too_narrow_columns_shift_the_rest(self):
        # On purpose, a text is never cut: without the widths from the data, a longer one moves
        # what follows it in its line.
        path = self.export(self.shop, "o.txt", "--query", "SELECT title, stock FROM products",
                           "--set", "AutoCalcColWidth=false", "--width", "title=6")
        with open(path, newline="", encoding="utf-8") as file:
            lines = file.read().split("\r\n")
        self.assertEqual(lines[:3], ["title   stock ", 'Tea, "Earl Grey", 100 g    250 ',
                                     'Cup 3" wide      0 '])
        self.assertEqual(lines[6], "Sample 32,767 ")


if __name__ == "__main__":
    unittest.main()
