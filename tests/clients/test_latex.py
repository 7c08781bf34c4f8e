#!/usr/bin/python3
"""LaTeX documents, typeset by pdflatex and read back from the pages by pdftotext.

What TeX Live 2022 makes of them:

Every value comes back from a font encoding that has its letters, which a header line chooses: T1 for
European languages. A single quote comes back as an apostrophe, and runs of blanks and line ends as
one blank. In the encoding that LaTeX starts with, OT1, a double quote is a closing one and "_" is a
rule, which is no text.

A table neither breaks over pages nor shrinks to them: what is off the page is lost. LaTeX code in
front of the document, on the command line, makes the page larger (LARGE); lines of the preamble make
the table one that breaks (LONG). They can define the command \\Rus, too, which the file has for the
language russian and nothing else knows; Cyrillic fonts come with bulgarian and ukrainian as well.

The characters of REFUSED are errors; \\ ^ ~ are errors or accents.
"""

import pathlib
import subprocess
import unicodedata
import unittest
import xml.etree.ElementTree

from norva_client import SHOP, ClientTest, rows

T1 = ("--header", r"\fontencoding{T1}\selectfont")
# The last command of both turns page numbers off.
LARGE = r"\AddToHook{begindocument}{\pdfpagewidth=100cm\pdfpageheight=60cm\pagestyle{empty}}"
LONG = [part for line in (r"\usepackage{longtable}",
                          r"\let\tabular\longtable\let\endtabular\endlongtable",
                          r"\pagestyle{empty}") for part in ("--set", f"Preambula={line}")]

# Of code page 1252: control characters, and what only a formula may hold.
REFUSED = [chr(code) for code in range(1, 32) if chr(code) not in "\t\n\f\r"] + [*"\x7f¬±²³µ¹×÷"]

CELL_GAP = 8  # points between two words of two cells; a blank has at most 5, two cells 12 and more


def shown(cell):
    return " ".join(cell.split()).replace("'", "’")


class Latex(ClientTest):
    def typeset(self, path, prelude=""):
        pathlib.Path(self.path("page.aux")).unlink(missing_ok=True)  # may be of another language
        return subprocess.run(
            ["pdflatex", "-interaction=nonstopmode", "-halt-on-error", "-jobname=page",
             rf"{prelude}\input{{{path}}}"], cwd=self.folder, capture_output=True,
            encoding="latin-1", check=False)

    def read(self, path, prelude=LARGE):
        """The lines of the pages, each a list of its cells that are not empty."""
        run = self.typeset(path, prelude)
        self.assertEqual(run.returncode, 0, run.stdout[-2000:])
        html = subprocess.run(["pdftotext", "-bbox", self.path("page.pdf"), "-"],
                              capture_output=True, encoding="utf-8", check=True).stdout
        lines = []
        for page in xml.etree.ElementTree.fromstring(html).iterfind(".//{*}page"):
            words = [(float(word.get("yMin")) + float(word.get("yMax")), float(word.get("xMin")),
                      float(word.get("xMax")), composed(word.text))
                     for word in page]
            lines += lines_of(sorted(words))
        return lines

    def cells(self, table, page="cp1252"):
        """The captions and records of a shop table, as `read` should find them."""
        lines = [list(SHOP[table]), *self.shop_texts(table)]
        lines = [[shown(cell.encode(page, "replace").decode(page)) for cell in line]
                 for line in lines]
        return [[cell for cell in line if cell] for line in lines]

    def test_shop(self):
        for table in SHOP:
            for style in ("dsArticle", "dsBook"):
                with self.subTest(table, style=style):
                    path = self.export(self.shop, f"{table}.tex", "--table", table, *T1, "--set",
                                       f"Options.DocumentStyle={style}", "--on-unmappable",
                                       "replace")
                    self.check_rows(self.read(path), self.cells(table))

    def test_without_any_option(self):
        path = self.export(self.shop, "plain.tex", "--query",
                           "SELECT id, name, notes FROM customers WHERE id NOT IN (6, 7)")
        wanted = [[cell for cell in (line[0], line[1], line[-1])]
                  for line in self.cells("customers") if line[0] not in "67"]
        wanted[4] = wanted[4][:2]  # an empty text
        wanted = [[cell.replace('"', "”").replace("_", " ") for cell in line] for line in wanted]
        self.check_rows(self.read(path, prelude=""), [*wanted, ["1"]])  # the page's number

    def test_latex209(self):
        for style in ("dsArticle", "dsBook"):
            path = self.export(self.shop, "old.tex", "--table", "orders", *T1, "--set",
                               "Options.LaTeXVersion=LaTeX209", "--set", "Options.DocumentParams=",
                               "--set", f"Options.DocumentStyle={style}")
            self.check_rows(self.read(path), self.cells("orders"))

    def test_code_pages(self):
        polish, russian = "Zażółć gęślą jaźń; Őű, Ţ ĄĘŁŚŹĆ", "Съешь ещё этих мягких булок"
        language = "Options.Languages="
        cases = [
            (polish, ["--code-page", "1250", *T1]),
            (russian, ["--code-page", "1251", "--set", language + "ukrainian"]),
            (russian, ["--code-page", "866", "--set", language + "bulgarian"]),
            (russian, ["--code-page", "1251", "--set", language + "russian",
                       "--set", r"Preambula=\newcommand{\Rus}{}"]),
            (f"{polish} € ½ ±µ²",
             ["--code-page", "65001", "--set", "Options.CodePage=1252",
              "--set", r"Preambula=\inputencoding{utf8}", *T1]),
        ]
        for value, options in cases:
            with self.subTest(options=options):
                path = self.export(self.shop, "page.tex", "--query", f"SELECT '{value}' AS v",
                                   *options)
                self.assertEqual(self.read(path), [["v"], [value]])

    def test_every_character(self):
        every = [bytes([code]).decode("cp1252", "ignore") for code in range(33, 256)]
        good = [c for c in every if c and c not in "\\^~\xa0\xad" and c not in REFUSED]
        texts = self.database("good.db", "CREATE TABLE t (v TEXT)", ((f"ab{c}yz",) for c in good))
        path = self.export(texts, "good.tex", "--table", "t", *T1, *LONG, "--no-captions")
        glyphs = {"'": "’", "`": "‘", "…": ". . ."}
        self.check_rows([["".join(line).replace(" ", "")] for line in self.read(path, "")],
                        [[f"ab{glyphs.get(c, c)}yz".replace(" ", "")] for c in good])

    def test_characters_that_latex_refuses(self):
        for text in [*REFUSED, "\\", r"C:\temp", "^^", "~^", "~"]:
            with self.subTest(text):
                texts = self.database("bad.db", "DROP TABLE IF EXISTS t; CREATE TABLE t (v TEXT)",
                                      ((text,),))
                path = self.path("bad.tex")
                run = self.norva("export", texts, "-o", path)
                self.assertIn('Warning: column "v", record 1', run.stderr)
                self.assertNotEqual(self.typeset(path).returncode, 0)

    def test_accents(self):
        path = self.export(self.shop, "accents.tex", "--query", "SELECT 'a^o~n' AS v", *T1)
        self.assertEqual(self.read(path), [["v"], ["aôñ"]])

    def test_long_table(self):
        query = ("WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n LIMIT 300)"
                 " SELECT i FROM n")
        numbers = [[str(number)] for number in range(1, 301)]
        path = self.export(self.shop, "long.tex", "--query", query)
        self.assertLess(len(self.read(path)), 200)
        path = self.export(self.shop, "long.tex", "--query", query, *LONG)
        found = [line for line in self.read(path, "") if line in numbers]
        self.assertEqual(found[:1] + found[-1:], numbers[:1] + numbers[-1:])


def composed(text):
    """Letters of OT1 come back in parts, i without its dot."""
    return unicodedata.normalize("NFC", text.replace("ı\u0301", "í"))


def lines_of(words):
    """Words sorted from top to bottom, as lines of cells."""
    lines, last = [], None
    for word in words:
        if last is None or word[0] - last[0] > 12:  # twice the 6 points that letters may differ
            lines.append([])
        lines[-1].append(word[1:])
        last = word
    return [cells_of(sorted(line)) for line in lines]


def cells_of(words):
    cells, end = [], None
    for start, stop, text in words:
        if end is None or start - end > CELL_GAP:
            cells.append(text)
        else:
            cells[-1] += (" " if start - end > 1 else "") + text
        end = stop
    return cells


if __name__ == "__main__":
    unittest.main()
