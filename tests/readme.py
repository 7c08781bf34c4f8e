#!/usr/bin/env python3
"""Runs what README.md shows and compares it with what README.md says.

    readme.py SOURCE_DIR TOOL QUICKSTART

A ```cpp block is one of the programs of examples/, to the letter; the quick start is run. In a
```console block the lines behind "$ " are commands, run in a folder that holds shop.db, and the
lines below them are all that the command prints. Times are compared as "some time"; blanks at the
ends of lines do not count.
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

source, tool, quickstart = map(pathlib.Path, sys.argv[1:4])
readme = (source / "README.md").read_text(encoding="utf-8")
examples = {path.read_text(encoding="utf-8") for path in (source / "examples").glob("*.cpp")}
blocks = re.findall(r"^```(\w+)\n(.*?)^```$", readme, re.M | re.S)
failures = []
commands = 0


def normal(text):
    """The text with everything that depends on the clock replaced."""
    text = re.sub(r"[\d.,]+ m?s\b", "TIME", text)
    text = re.sub(r"[\d.,]+ rows/s", "RATE", text)
    return "\n".join(line.rstrip() for line in text.strip().splitlines())


with tempfile.TemporaryDirectory() as folder:
    binaries = pathlib.Path(folder, "bin")
    binaries.mkdir()
    (binaries / "norva").symlink_to(tool.resolve())
    (binaries / "quickstart").symlink_to(quickstart.resolve())
    work = pathlib.Path(folder, "work")
    work.mkdir()
    shutil.copy(source / "examples" / "shop.sql", work)
    with open(work / "shop.sql", encoding="utf-8") as script:
        subprocess.run(["sqlite3", "shop.db"], stdin=script, cwd=work, check=True)
    environment = dict(os.environ, PATH=f"{binaries}:{os.environ['PATH']}", LC_ALL="C")

    for language, text in blocks:
        if language == "cpp" and text not in examples:
            failures.append(f"this program is not in examples/:\n{text}")
        if language != "console":
            continue
        for command, expected in re.findall(r"^\$ (.*\n(?:> .*\n)*)((?:(?!\$ ).*\n)*)", text, re.M):
            commands += 1
            command = command.replace("\\\n> ", "").strip()
            run = subprocess.run(["bash", "-c", command], cwd=work, env=environment,
                                 stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
            if normal(run.stdout) != normal(expected):
                failures.append(f"$ {command}\nprints\n{run.stdout}\nREADME.md says\n{expected}")

if commands == 0:
    failures.append("README.md shows no command")
for failure in failures:
    print(failure, file=sys.stderr)
print(f"{commands} commands, {len(failures)} failures")
sys.exit(1 if failures else 0)
