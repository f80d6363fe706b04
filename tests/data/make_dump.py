#!/usr/bin/env python3
"""Makes a home of invented settings with a program and keeps its store and a profile as dumps.

    make_dump.py PATH-TO-lotmere-cli A-NEW-HOME"""

import gzip
import http.server
import pathlib
import sqlite3
import subprocess
import sys
import tempfile
import threading

FOLDER = pathlib.Path(__file__).resolve().parent
# The oldest draws: more than a year behind any clock, so that no user ever goes for being idle.
DRAWS = (FOLDER.parents[1] / "samples" / "draws.txt").read_text().splitlines()[:14]
PASSWORDS = {"甲": "first word", "乙": "second word"}
SETTINGS = {
    "甲": """numbers pick --red-tuo 4,8,15,17,21,29,32 --red-dan 11,26 --blue-tuo 3,9
        conditions allow 总和值 70-99,105
        conditions allow AC值 6-8
        conditions allow 连号 0;3
        conditions allow 重叠号 1,2
        conditions allow 尾数形式 2,1,1,1,1;2,2,1,1
        conditions allow 间距3 2,2,2;4,2
        conditions allow 前2期和值相同组 尾数和值相同组;总和值相同组
        conditions allow 温度5 3-7
        conditions allow 自定义组3 1-2
        conditions allow 六区间2 0-3
        conditions use AC值 off
        conditions use 温度5 on
        conditions use 尾数形式 on
        conditions use 间距七（具体） on
        conditions use 六区间2 on
        conditions use 自定义组3 on
        conditions use 前2期和值相同组 on
        conditions interval 1 1-9,12
        conditions interval 4 30-33
        conditions group 3 1,4,9,16,25
        conditions group 10 33
        conditions position 2 3-12,20
        conditions position 7 1-8
        conditions use 号码定位2 on
        conditions tolerance 2
        conditions tolerance-all 3
        conditions shrink 5 --fewer on --effort 2
        sets save 平日""",
    "乙": """numbers pick --red-tuo 1-6,13,19,33 --red-dan 22 --blue-dan 12
        conditions allow 总和值 80-120
        conditions allow AC值 4,9
        conditions allow 连号 2;2+2
        conditions allow 尾数形式 3,1,1,1
        conditions allow 温度5 5
        conditions allow 小数和值 11-30
        conditions allow 自定义组3 0-4
        conditions allow 十二区间12 0,6
        conditions use 总和值 off
        conditions use 小数和值 on
        conditions use 连号 off
        conditions use 智能优化 on
        conditions use 大小奇偶尾（具体） on
        conditions use 十二区间12 on
        conditions interval 2 13-20
        conditions group 3 2,3,5,7,11,13
        conditions group 4 31,32,33
        conditions position 1 1-4
        conditions position 6 28-33
        conditions use 号码定位6 on
        conditions tolerance 1
        conditions shrink 4 --effort 8
        sets save 周末 --with-numbers"""}
COMMON = """conditions division 六区间2 5,6,7,33
        conditions division 十二区间12 1,17
        conditions match 2024002 2024009 4
        tickets init 2024012
        tickets check 2024012"""  # everybody's
LATER = """
        numbers hints
        conditions use 历史数据过滤 off"""


class DrawList(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        self.send_response(200)
        self.end_headers()
        self.wfile.write("\n".join(DRAWS).encode())

    def log_message(self, *_):
        pass


def make_home(program, home):
    def call(*command, may_fail=False):
        result = subprocess.run([program, "--home", home, *command], capture_output=True, text=True)
        if result.returncode and not may_fail:
            raise SystemExit(f"{command}: {result.stdout}{result.stderr}")
        return result.returncode == 0

    server = http.server.HTTPServer(("127.0.0.1", 0), DrawList)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    call("draws", "fetch", "--all", f"http://127.0.0.1:{server.server_port}/draws.txt")
    server.shutdown()
    call("draws", "address", "page", "https://draws.example/page/", may_fail=True)
    with tempfile.TemporaryDirectory() as folder:
        for user, password in PASSWORDS.items():
            (pathlib.Path(folder) / user).write_text(password)

        def call_as(user, commands):
            login = []
            if has_users:
                word = ["--answer", "yes", "--password-file", f"{folder}/{user}", "users", "login", user]
                if not call(*word, may_fail=True):
                    call(*word, "--new")
                login = [*word[:4], "--user", user]
            for command in commands.splitlines():
                call(*login, *command.split())

        has_users = call("users", "mode", "multi", may_fail=True)  # the first version has none
        call_as("甲", SETTINGS["甲"])
        if has_users:
            call_as("乙", SETTINGS["乙"])
        call_as("甲", COMMON + (LATER if has_users else ""))


def keep(database, name):
    with sqlite3.connect(database) as db:
        version = db.execute("PRAGMA user_version").fetchone()[0]
        text = "\n".join(db.iterdump()) + f"\nPRAGMA user_version = {version};\n"
    packed = gzip.compress(text.encode(), 9, mtime=0)
    (FOLDER / f"{name}-v{version}.sql.gz").write_bytes(packed)
    print(name, version, len(text), len(packed))


def main(program, home):
    make_home(program, home)
    keep(home / "Lotmere.db", "store")
    if (home / "乙.uLotmere").exists():
        keep(home / "乙.uLotmere", "profile")


if __name__ == "__main__":
    main(sys.argv[1], pathlib.Path(sys.argv[2]))
