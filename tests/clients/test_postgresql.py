#!/usr/bin/python3
"""SQL scripts, run by psql in a PostgreSQL server of the test's own and read back as JSON."""

import glob
import itertools
import json
import os
import pwd
import shutil
import socket
import subprocess
import tempfile
import unittest

from norva_client import (PROJ, REGISTRY, SHOP, ClientTest, boolean, date, date_time, integer,
                          money, number, text, time)
from test_sql import INTEGERS, RAW, TEXTS, doubles, values

BIN = sorted(glob.glob("/usr/lib/postgresql/*/bin"), key=lambda path: int(path.split("/")[4]))[-1]

# The column types of tables that are made beforehand, to hold everything of the kind.
TYPES = {text: "TEXT", integer: "BIGINT", number: "DOUBLE PRECISION", money: "DOUBLE PRECISION",
         boolean: "BOOLEAN", date: "DATE", time: "TIME", date_time: "TIMESTAMP"}

HOST = "127.0.0.1"


def free_port():
    with socket.create_server((HOST, 0)) as listener:
        return listener.getsockname()[1]


class PostgreSQL(ClientTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.server = tempfile.mkdtemp(prefix="norva-pg-")
        cls.addClassCleanup(shutil.rmtree, cls.server)
        user = {}
        if os.geteuid() == 0:  # the server refuses to run as root
            owner = pwd.getpwnam("postgres")
            os.chown(cls.server, owner.pw_uid, owner.pw_gid)
            user = {"user": owner.pw_uid, "group": owner.pw_gid, "extra_groups": []}

        def run(*command):
            subprocess.run(command, check=True, stdout=subprocess.DEVNULL, cwd=cls.server, **user)

        data = os.path.join(cls.server, "data")
        log = os.path.join(cls.server, "log")
        control = [os.path.join(BIN, "pg_ctl"), "-D", data, "-w"]

        def start():
            cls.port = free_port()
            run(*control, "-l", log, "-o",
                f"-F -c listen_addresses={HOST} -c port={cls.port} -k ''", "start")

        run(os.path.join(BIN, "initdb"), "-D", data, "-U", "norva", "-A", "trust", "-N", "-E",
            "UTF8", "--locale=C")
        try:
            start()
        except subprocess.CalledProcessError:  # another program may have taken the port
            start()
        cls.addClassCleanup(run, *control, "-m", "immediate", "stop")

    def psql(self, *arguments):
        run = subprocess.run(
            ["psql", "-X", "-q", "-A", "-t", "-h", HOST, "-p", str(self.port), "-U", "norva", "-d",
             "postgres", "-v", "ON_ERROR_STOP=1", *arguments], capture_output=True, encoding="utf-8",
            env={**os.environ, "PGCLIENTENCODING": "UTF8"}, check=False)
        self.assertEqual((run.returncode, run.stderr), (0, ""))
        return run.stdout

    def make(self, statement=""):
        self.psql("-c", f"SET client_min_messages = warning; DROP TABLE IF EXISTS t; {statement}")

    def load(self, *options):
        """The records of table t after the script has filled it."""
        self.psql("-f", self.export(*options, "--set", "TableName=t"))
        return [list(record.values())
                for record in json.loads(self.psql("-c", "SELECT json_agg(t) FROM t"))]

    def check(self, database, table, columns, *options):
        """Through a table made beforehand."""
        made = ", ".join(f"{name} {TYPES[kind]}" for name, kind in columns.items())
        self.make(f"CREATE TABLE t ({made})")
        convert = {**RAW, date_time: lambda value: RAW[date_time](value).replace(" ", "T")}
        # The server gives them in the order in which it found room for them.
        self.check_rows(sorted(self.load(database, "o.sql", "--table", table, *options), key=repr),
                        sorted(values(database, table, columns, convert), key=repr))

    def test_shop(self):
        for table, columns in SHOP.items():
            with self.subTest(table):
                self.check(self.shop, table, columns)

    def test_registry_in_one_transaction(self):
        for table, columns in REGISTRY.items():
            with self.subTest(table):
                self.check(PROJ, table, columns, "--header", "BEGIN;", "--set",
                           "CommitAfterScript=true")

    def test_awkward_texts(self):
        database = self.database("awkward2.db", "CREATE TABLE t (id INTEGER, note TEXT);",
                                 enumerate(TEXTS, 1))
        # With a commit now and then.
        self.check(database, "t", {"id": integer, "note": text}, "--header", "BEGIN;", "--set",
                   "CommitRecCount=10", "--set", "CommitStatement=COMMIT; BEGIN;", "--footer",
                   "COMMIT;")

    def test_numbers(self):
        database = self.database("numbers.db", "CREATE TABLE t (whole BIGINT, real DOUBLE);",
                                 zip(itertools.cycle(INTEGERS), doubles()))
        self.check(database, "t", {"whole": integer, "real": number})

    def test_create_table(self):
        # Booleans become INTEGER there, and CHAR columns are padded with blanks.
        self.make()
        loaded = self.load(self.shop, "o.sql", "--table", "customers", "--set", "CreateTable=true",
                           "--set", "Formats.BooleanTrue=1", "--set", "Formats.BooleanFalse=0")
        self.check_rows([[cell.rstrip(" ") if isinstance(cell, str) else cell for cell in record]
                         for record in loaded], values(self.shop, "customers", SHOP["customers"]))


if __name__ == "__main__":
    unittest.main()
