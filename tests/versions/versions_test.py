#!/usr/bin/env python3
"""What older programs left opens with everything that a user had set: versions_test.py PATH-TO-lotmere-cli"""

import gzip
import pathlib
import sqlite3
import subprocess
import sys
import tempfile
import unittest
from unittest import mock

DATA = pathlib.Path(__file__).resolve().parents[1] / "data"
sys.path.insert(0, str(DATA))
sys.dont_write_bytecode = True
from make_dump import PASSWORDS  # noqa: E402

STORES, PROFILES = (
    sorted(int(file.name[len(kind) + 2:-len(".sql.gz")]) for file in DATA.glob(f"{kind}-v*.sql.gz"))
    for kind in ("store", "profile"))
FIRST_USERS = 2  # the version whose program could tell users apart
# What the two users set, as the commands tell it. Every other condition stands as in a new home.
CONDITIONS = {
    "甲": ["1\t总和值\ton\t７０～９９ 或 １０５", "6\t连号\ton\t0;3", "7\t重叠号\toff\t１～２",
          "9\tAC值\toff\t６～８", "22\t自定义组3\ton\t１～２",
          "31\t号码定位2\ton\t03,04,05,06,07,08,09,10,11,12,20",
          "36\t号码定位7\ton\t01,02,03,04,05,06,07,08", "37\t尾数形式\ton\t2,1,1,1,1;2,2,1,1",
          "46\t间距3\toff\t2,2,2;4,2", "101\t间距七（具体）\ton\t",
          "266\t前2期和值相同组\ton\t尾数和值相同组;总和值相同组", "301\t温度5\ton\t３～７",
          "402\t六区间2\ton\t０～３"],
    "乙": ["1\t总和值\toff\t８０～１２０", "6\t连号\toff\t2;2+2", "9\tAC值\ton\t４ 或 ９",
          "22\t自定义组3\toff\t０～４", "30\t号码定位1\ton\t01,02,03,04",
          "35\t号码定位6\ton\t28,29,30,31,32,33", "37\t尾数形式\toff\t3,1,1,1",
          "65\t小数和值\ton\t１１～３０", "130\t大小奇偶尾（具体）\ton\t", "300\t智能优化\ton\t",
          "301\t温度5\toff\t５", "463\t十二区间12\ton\t０ 或 ６"]}
SHOWN = {
    "甲": {"缩 水 类 型： 保五型", "号码定位容错值： ２",
          "自定义组3　号码：（０１,０４,０９,１６,２５） —— 允许开出个数（1个,2个）",
          "六区间2　号码：（０５,０６,０７,３３） —— 允许开出个数（0个,1个,2个,3个）"},
    "乙": {"缩 水 类 型： 保四型", "号码定位容错值： １", "智能优化： 使 用",
          "十二区间12　号码：（０１,１７） —— 允许开出个数（0个,6个）"}}
PICKED = {"甲": ["04 08 15 17 21 29 32", "11 26", "03 09", "", "70"],
          "乙": ["01 02 03 04 05 06 13 19 33", "22", "", "12", "126"]}


def read_dump(kind, version, path=":memory:"):
    db = sqlite3.connect(path)
    db.executescript(gzip.decompress((DATA / f"{kind}-v{version}.sql.gz").read_bytes()).decode())
    return db


def rows_of(db):
    """Every row of every table by its key, as a dict of its columns."""
    db.row_factory, rows = sqlite3.Row, {}
    for (table,) in db.execute("SELECT name FROM sqlite_master WHERE type='table'").fetchall():
        columns = db.execute(f'PRAGMA table_info("{table}")')
        keys = [column["name"] for column in columns if column["pk"]] or ["rowid"]
        for row in db.execute(f'SELECT rowid AS "rowid", * FROM "{table}"'):
            values = {name: row[name] for name in row.keys() if name != "rowid"}
            rows[table, *(row[key] for key in keys)] = values
    return rows


def bring_up(version, rows):
    """What the upgrade and the first command change of older rows."""
    mode, match = rows["用户模式", 1], rows["历史数据过滤", 1]
    if version < 2:
        mode["当前用户"] = ""
    if version < 3:
        match["自选范围"] = match["使用状态"]
        mode["区间待统计"] = 0
        for key, user in rows.items():
            if key[0] == "用户表":
                user["密码形式"] = 1 if user["密码"] else 0
                user["密码"] = mock.ANY if user["密码"] else ""  # a hash, tried by the logins


def count_intervals(rows):
    for key, draw in rows.items():
        for k in range(1, 5) if key[0] == "历史记录" else ():
            draw[f"区间{k}"] = sum(rows["号码特性", draw[f"红球{i}"]][f"区间{k}"] for i in range(1, 7))


class Versions(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        temporary = tempfile.TemporaryDirectory(prefix="lotmere-versions-")
        cls.folder = pathlib.Path(cls.enterClassContext(temporary))
        for user, password in PASSWORDS.items():
            (cls.folder / user).write_text(password)
        cls.fresh = cls.folder / "fresh"
        cls.new_list = cls.run_command(cls, cls.fresh, None, "conditions", "list").stdout.splitlines()
        cls.new_rows, cls.today = cls.stored(cls, cls.fresh / "Lotmere.db")

    def run_command(self, home, user, *command, password=None):
        login = ["--user", user, "--password-file", self.folder / (password or user)] if user else []
        return subprocess.run([PROGRAM, "--home", home, "--answer", "yes", *login, *command],
                              capture_output=True, text=True, timeout=120)

    def stored(self, path):
        db = sqlite3.connect(f"file:{path}?mode=ro", uri=True)
        return rows_of(db), db.execute("PRAGMA user_version").fetchone()[0]

    def told(self, home, user, *command):
        result = self.run_command(home, user, *command)
        self.assertEqual((result.returncode, result.stderr), (0, ""), command)
        return result.stdout.splitlines()

    def expect_rows(self, expected, got, tables=None):
        """Rows and columns that the kept file lacks hold what a new home holds."""
        keys = {key for key in {**self.new_rows, **expected} if not tables or key[0] in tables}
        self.assertEqual(got.keys() ^ keys, set())
        wrong = []
        for key in keys:
            row = {**self.new_rows.get(key, {}), **expected.get(key, {})}
            wrong += [(key, name, row.get(name), got[key].get(name))
                      for name in {**row, **got[key]} if row.get(name) != got[key].get(name)]
        self.assertEqual(wrong, [])

    def expect_settings(self, home, user, name):
        self.assertEqual([line for line in self.told(home, user, "conditions", "list")
                          if line not in self.new_list and not line.startswith("-")], CONDITIONS[name])
        shown = {line.strip() for line in self.told(home, user, "conditions", "show")}
        self.assertLessEqual(SHOWN[name], shown)
        picked = self.told(home, user, "numbers", "show")
        self.assertEqual([line.partition(":")[2].strip() for line in picked], PICKED[name])

    def test_every_version_is_kept(self):
        self.assertEqual((STORES, PROFILES),
                         ([*range(1, self.today + 1)], [*range(FIRST_USERS, self.today + 1)]))

    def test_a_kept_store_and_profile_hold_what_their_users_set(self):
        for version in STORES:
            with self.subTest(version=version):
                self.open_kept(version)

    def open_kept(self, version):
        home, user = self.folder / f"v{version}", "甲" if version >= FIRST_USERS else None
        home.mkdir()
        rows = rows_of(read_dump("store", version, home / "Lotmere.db"))
        if user:
            profile = rows_of(read_dump("profile", version, home / "乙.uLotmere"))
        draws = [row for key, row in rows.items() if key[0] == "历史记录"]
        tickets = [row for key, row in rows.items() if key[0] == "日志表"]
        self.assertEqual((len(draws), len(tickets)), (12, 70))

        self.told(home, user, "numbers", "show")
        bring_up(version, rows)
        if user:
            rows["用户表", user]["最后登陆时间"] = mock.ANY  # today
        count_intervals(rows)
        got, now = self.stored(home / "Lotmere.db")
        self.assertEqual(now, self.today)
        self.expect_rows(rows, got)
        first = {file.name: file.read_bytes() for file in home.iterdir()}
        self.assertEqual({*first} - {"甲.uLotmere", "乙.uLotmere"},
                         {"Lotmere.db", "Lotmere.backup.db", "Lotmere.lock", "TJmode.tjmod"})

        self.expect_settings(home, user, "甲")
        state = "on" if rows["历史数据过滤", 1]["使用状态"] else "off"
        self.assertRegex(self.told(home, user, "conditions", "list")[-1],
                         f"^-\t历史数据过滤\t{state}\t２０２４００２～２０２４００９，最大匹配值 ４")
        reds = [f"红球{i}" for i in range(1, 7)]
        balls = [" ".join(f"{row[red]:02}" for red in reds) + f"+{row['蓝球']:02}"
                 for row in [*draws, *tickets]]
        self.assertEqual([line.split(maxsplit=2)[2] for line in self.told(home, user, "draws", "list")
                          + self.told(home, user, "tickets", "list")], balls)
        self.assertEqual([line.split("\t")[1] for line in self.told(home, None, "store", "check")[:3]],
                         ["正常", "正常", "不需要"])
        self.assertEqual({file.name: file.read_bytes() for file in home.iterdir()}, first, "opened again")
        if user:
            self.log_in(home, rows, profile)

    def log_in(self, home, rows, profile):
        self.assertEqual(self.run_command(home, "乙", "numbers", "show", password="甲").returncode, 1)
        self.assertEqual(self.run_command(home, "乙", "numbers", "show").returncode, 0)
        own = {key[0] for key in profile}
        gone = {"日志表", "号码步骤", "运行条件", "设置步骤"}  # with the login
        everybody = {key: row for key, row in rows.items() if key[0] not in own | gone}
        for user, tables in (("乙", profile), ("甲", {key: rows[key] for key in rows if key[0] in own})):
            self.run_command(home, user, "numbers", "show")
            self.expect_settings(home, user, user)
            expected = {**everybody, **tables}
            expected["用户模式", 1]["当前用户"] = user
            expected["用户表", user]["最后登陆时间"] = mock.ANY
            count_intervals(expected)
            self.expect_rows(expected, self.stored(home / "Lotmere.db")[0])
            saved, now = self.stored(home / f"{user}.uLotmere")
            self.assertEqual(now, self.today)
            self.expect_rows(tables, saved, own)
        self.assertEqual({file.suffix for file in home.iterdir()}, {".db", ".lock", ".tjmod", ".uLotmere"})


if __name__ == "__main__":
    PROGRAM = sys.argv.pop(1)
    unittest.main(verbosity=2)
