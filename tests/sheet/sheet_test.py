#!/usr/bin/env python3
"""Exports a history and reads the spreadsheet back: sheet_test.py PATH-TO-lotmere-cli"""

import datetime
import functools
import os
import pathlib
import re
import sqlite3
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as xml
import zipfile

NS = "{http://schemas.openxmlformats.org/spreadsheetml/2006/main}"
WORK_COLUMNS = 3
STRANGE = "=1+1 <&\"'> \t号 "


def cells_of(archive, sheet):
    strings = [item.find(NS + "t").text for item in xml.fromstring(archive.read("xl/sharedStrings.xml"))]
    formats = xml.fromstring(archive.read("xl/styles.xml")).find(NS + "cellXfs")
    cells = {}
    for cell in sheet.iter(NS + "c"):
        letters, row = re.fullmatch(r"([A-Z]+)(\d+)", cell.get("r")).groups()
        value = float(cell.find(NS + "v").text)
        if cell.get("t") == "s":
            value = strings[int(value)]
        elif formats[int(cell.get("s", 0))].get("numFmtId") != "0":
            value = datetime.date(1899, 12, 30) + datetime.timedelta(days=value)
        cells[int(row), functools.reduce(lambda n, c: n * 26 + ord(c) - 64, letters, 0)] = value
    return cells


def stored_cells(store):
    rows = store.execute('SELECT * FROM "历史记录" ORDER BY "期号"')
    cells = {(1, i): column[0] for i, column in enumerate(rows.description[:-WORK_COLUMNS], 1)}
    for r, row in enumerate(rows, 2):
        for c, value in enumerate(row[:-WORK_COLUMNS], 1):
            if value is not None:
                cells[r, c] = datetime.date.fromisoformat(value) if c == 2 and value != STRANGE else value
    return cells


def main(cli, home):
    program = [cli, "--home", home, "draws"]
    target, temp = home / "out.xlsx", home / "temp"
    temp.mkdir()
    os.environ["TMPDIR"] = str(temp)
    call = functools.partial(subprocess.run, capture_output=True, text=True)
    (home / "list.txt").write_text("=336=" + "".join(
        f"\n2014{i:03} 2014/01/{i % 31 + 1:02} 01 {i % 9 + 2:02} 12 {i % 19 + 13} 32 33 {i % 16 + 1:02}"
        for i in range(1, 200)))
    assert call([*program, "fetch", "--all", f"file://{home}/list.txt"]).returncode == 0
    with sqlite3.connect(home / "Lotmere.db") as store:
        store.execute('UPDATE "历史记录" SET "连号"=?1,"开奖日期"=?1,"和值"=NULL WHERE "期号"=2014007',
                      [STRANGE])

    done = call([*program, "export", target])
    assert done.stdout == f"已导出 199 期到 {target}\n" and not list(temp.iterdir()), done
    before, names = target.read_bytes(), sorted(home.iterdir())
    with zipfile.ZipFile(target) as archive:
        sheet = xml.fromstring(archive.read("xl/worksheets/sheet1.xml"))
        assert cells_of(archive, sheet) == stored_cells(store)
        assert b'name="sheet1"' in archive.read("xl/workbook.xml")
        styles = xml.fromstring(archive.read("xl/styles.xml"))
    # The stored widths are those of characters and 0.71 of one for the margins.
    columns = [(column.get("min"), round(float(column.get("width")) - 0.71))
               for column in sheet.iter(NS + "col")]
    assert columns == [("1", 9), ("2", 18)], columns
    pane = sheet.find(f".//{NS}pane")
    assert (pane.get("state"), pane.get("ySplit"), pane.get("xSplit")) == ("frozen", "1", None)
    assert styles.find(f".//{NS}numFmt").get("formatCode") == "yyyy-mm-dd"
    fonts = [styles.find(NS + "cellXfs")[int(sheet.find(f".//{NS}c[@r='{cell}']").get("s", 0))].get("fontId")
             for cell in ("C1", "C2")]
    bold = [styles.find(NS + "fonts")[int(font)].find(NS + "b") is not None for font in fonts]
    assert bold == [True, False]

    # The interpreter ignores the signal of a file that grows too large, and so shall the program.
    refused = call(["prlimit", "--fsize=65536", *program, "export", target], restore_signals=False)
    assert refused.returncode == 1 and refused.stderr == "无法正常导出数据！ 磁盘已满\n", refused
    assert target.read_bytes() == before and sorted(home.iterdir()) == names


with tempfile.TemporaryDirectory() as folder:
    main(sys.argv[1], pathlib.Path(folder))
