#!/usr/bin/python3
"""The benchmark's rows as a workbook through xlwt.

    peer_xlwt.py FILE OUT.xls
"""
import sqlite3
import sys

import xlwt

database = sqlite3.connect(f"file:{sys.argv[1]}?mode=ro", uri=True)
rows = database.execute("SELECT * FROM bench LIMIT 65000")
book = xlwt.Workbook(encoding="utf-8")
sheet = book.add_sheet("bench")
for column, description in enumerate(rows.description):
    sheet.write(0, column, description[0])
for number, row in enumerate(rows, 1):
    for column, value in enumerate(row):
        if value is not None:
            sheet.write(number, column, value)
book.save(sys.argv[2])
