#!/usr/bin/python3
"""Pages, read by Chromium: it gives back its document, in which Python's parser finds the cells.

A script among the footer lines has the browser note, in each cell, how it shows it, so that the
style sheets count and not only their text.
"""

import functools
import http.server
import os
import re
import subprocess
import tempfile
import threading
import unittest
from html.parser import HTMLParser

from norva_client import AWKWARD, PROJ, SHOP, ClientTest, registry_texts

LOOK = """<script>
for (const cell of document.querySelectorAll("td")) {
  const look = getComputedStyle(cell);
  cell.dataset.look = [look.backgroundColor, look.color, look.textAlign.replace("-webkit-", ""),
    look.fontFamily, look.fontSize, look.fontWeight, look.fontStyle, look.textDecorationLine
  ].join("/");
}
</script>"""
LOOK_OF = ("--footer", LOOK)
UTF8 = ("--header", "<meta charset=\"utf-8\">")


class Page(HTMLParser):
    """Title, rows of cells and links of a document."""

    def __init__(self, document):
        super().__init__()
        self.title, self.rows, self.looks, self.links, self.text = "", [], {}, [], None
        self.feed(document)

    def handle_starttag(self, tag, attrs):
        attrs = dict(attrs)
        if tag == "tr":
            self.rows.append([])
        elif tag in ("td", "title"):
            self.text = ""
            self.looks.setdefault(attrs.get("class"), []).append(attrs.get("data-look"))
        elif tag == "br" and self.text is not None:
            self.text += "\n"
        elif tag == "a":
            self.links.append(attrs["href"])

    def handle_data(self, data):
        if self.text is not None:
            self.text += data

    def handle_endtag(self, tag):
        if tag == "td":
            self.rows[-1].append(self.text)
        elif tag == "title":
            self.title = self.text
        if tag in ("td", "title"):
            self.text = None


def shown(value):
    """A line break is dropped when one stands before it, however far, that is not."""
    breaks = iter(range(len(value)))
    lines = re.sub("[\r\n]", lambda _: "" if next(breaks) % 2 else "\n", value)
    return lines or "\u00a0"


class Html(ClientTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        profile = tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
        cls.addClassCleanup(profile.cleanup)
        cls.profile = profile.name

    def read(self, address):
        """What Chromium makes of a file or an address."""
        run = subprocess.run(
            ["chromium", "--headless", "--no-sandbox", "--disable-gpu",
             f"--user-data-dir={self.profile}", "--dump-dom",
             address if "://" in address else "file://" + address],
            capture_output=True, encoding="utf-8", timeout=120, check=True)
        return Page(run.stdout)

    def check_page(self, page, captions, records):
        self.assertEqual(page.rows[0], captions)
        self.check_rows(page.rows[1:], [[shown(cell) for cell in row] for row in records])

    def test_shop(self):
        for table, columns in SHOP.items():
            with self.subTest(table):
                page = self.read(self.export(self.shop, f"{table}.html", "--table", table,
                                             "--title", f"The {table}", *UTF8))
                self.assertEqual(page.title, f"The {table}")
                self.check_page(page, list(columns), self.shop_texts(table))

    def test_registry(self):
        page = self.read(self.export(PROJ, "extent.html", "--table", "extent", *UTF8))
        self.check_rows(page.rows[1:], [[shown(cell) for cell in row]
                                        for row in registry_texts("extent")])

    def test_awkward_texts(self):
        page = self.read(self.export(self.awkward, "a.html", "--table", "t", "--null", "<&>", *UTF8,
                                     "--caption", "note=\"<b>\" & 'c'"))
        self.check_page(page, ["id", "\"<b>\" & 'c'"],
                        [[str(at), "<&>" if note is None else note]
                         for at, note in enumerate(AWKWARD, 1)])

    def test_parts(self):
        index = self.read(self.export(
            self.shop, "parts.htm", "--table", "customers", *LOOK_OF, "--set", "MaxRecords=3",
            "--set", "GenerateIndex=true", "--set", "UsingCSS=usExternal",
            "--set", "HTMLTemplate=htMurky"))
        self.assertEqual(index.links, ["parts01.htm", "parts02.htm", "parts03.htm", "parts04.htm"])
        pages = [self.read(self.path(link)) for link in index.links]
        self.assertEqual([len(page.rows) - 1 for page in pages], [1, 3, 3, 1])
        self.check_page(pages[0], list(SHOP["customers"]), self.shop_texts("customers")[:1])
        for page in pages[1:]:
            pages[0].rows += page.rows[1:]
        self.check_page(pages[0], list(SHOP["customers"]), self.shop_texts("customers"))
        # The footer, and with it the script, stands in the last part only.
        self.assertTrue(pages[-1].looks["ThRows"][0].startswith("rgb(58, 147, 147)/"))

    def test_style_sheet(self):
        page = self.read(self.export(
            self.shop, "s.html", "--table", "orders", "--field", "id", *LOOK_OF,
            "--set", "HTMLTemplate=htOlive", "--set", "HTMLOptions.TextFont.Name=Verdana",
            "--set", "HTMLOptions.TextFont.Size=9", "--set", "HTMLOptions.DefaultOptions=[]",
            "--set", "TableOptions.HeadersRowBgColor=#123456",
            "--set", "TableOptions.BorderColor=$0000FF"))
        self.assertEqual({kind: set(looks) for kind, looks in page.looks.items() if kind}, {
            "ThRows": {"rgb(18, 52, 86)/rgb(0, 0, 0)/center/Verdana/12px/700/normal/none"},
            "TrRows": {"rgb(255, 255, 255)/rgb(95, 96, 95)/right/Verdana/12px/400/normal/none"},
            "TrOdd": {"rgb(255, 255, 207)/rgb(95, 96, 95)/right/Verdana/12px/400/normal/none"},
        })

    def test_standard_output(self):
        path = self.export(self.shop, "o.html", "--table", "orders")
        run = self.norva("export", self.shop, "--table", "orders", "--locale", "invariant",
                         "--format", "html", "-o", "-", "--quiet")
        with open(path, encoding="utf-8") as file:
            self.assertEqual(run.stdout, file.read())

    def test_cell_styles(self):
        path = self.path("cells.html")
        subprocess.run([os.environ["NORVA_MAKE_PAGE"], path], check=True)
        with open(path, "a", encoding="utf-8") as file:
            file.write(LOOK)
        blue, white = "rgb(0, 122, 236)", "rgb(255, 255, 255)"
        self.assertEqual(self.read(path).looks["TrRows"], [
            f"rgb(17, 34, 51)/{white}/center/Arial/16px/400/normal/none",
            f"{blue}/{white}/left/\"Courier New\"/26.6667px/400/normal/none",
            f"{blue}/rgb(0, 255, 0)/left/Arial/16px/400/normal/none",
            f"{blue}/{white}/left/Arial/16px/700/normal/none",
            f"{blue}/{white}/left/Arial/16px/400/italic/underline",
            f"{blue}/{white}/left/Arial/16px/400/normal/none",
        ])

    def test_character_sets(self):
        # A page does not name its own, and browsers guess: a short file right, a long one in which
        # the first letter beyond ASCII comes late wrong, and what comes from a server wrong.
        handler = functools.partial(http.server.SimpleHTTPRequestHandler, directory=self.folder)
        handler.log_message = lambda *_: None
        server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), handler)
        self.addCleanup(server.server_close)
        threading.Thread(target=server.serve_forever, daemon=True).start()
        self.addCleanup(server.shutdown)
        for page, query, header, name in (
                ("65001", "SELECT name FROM customers", "utf-8", "Łukasz"),
                ("1252", "SELECT name FROM customers WHERE id < 6", "windows-1252", "Søren")):
            with self.subTest(page):
                path = self.export(self.shop, f"{page}.html", "--query", query, "--code-page", page,
                                   "--header", f"<meta charset=\"{header}\">")
                for address in path, f"http://127.0.0.1:{server.server_port}/{page}.html":
                    rows = self.read(address).rows
                    self.assertIn(name, " ".join(row[0] for row in rows), address)


if __name__ == "__main__":
    unittest.main()
