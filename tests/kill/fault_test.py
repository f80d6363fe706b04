#!/usr/bin/env python3
"""Damages the files of a home, fills its disk and closes its folder, and looks at what the next command does.

    fault_test.py PATH-TO-lotmere-cli

Whatever happens: the command says so in one line, and no draw, pick, condition, user or profile is lost."""

import collections
import contextlib
import os
import pathlib
import resource
import shutil
import signal
import sqlite3
import sys
import tempfile
import unittest

from kill_test import DRAWS, STORE, TEMPLATE, Prepared, copy_home, find_fault, make_home, read_home, \
    read_rows, read_settings, run, scenarios

PAGE = 4096


# What becomes of the store's bytes (None: the file goes), and whose unfinished change leaves a journal beside
# it.
DAMAGES = [("cut to nothing", lambda data: b"", None),
           ("cut in its first page", lambda data: data[:50], None),
           ("cut in half", lambda data: data[:len(data) // 2], None),
           ("without its last page", lambda data: data[:-PAGE], None),
           ("without its last byte", lambda data: data[:-1], None),
           ("with a page of zeros", lambda data: data[:PAGE * 9] + bytes(PAGE) + data[PAGE * 10:], None),
           ("not a database", lambda data: b"x" * len(data), None), ("removed", lambda data: None, None),
           ("removed, its journal left", lambda data: None, STORE),
           ("beside the journal of another file", lambda data: data, TEMPLATE)]


def unfinished_journal(path):
    other = shutil.copy(path, path.parent.parent / "other")
    with contextlib.closing(sqlite3.connect(other)) as store:
        store.execute("PRAGMA synchronous = OFF")  # else the journal counts its pages only at the end
        store.execute("UPDATE 过滤条件 SET Value=9")
        return shutil.copy(f"{other}-journal", f"{other}-left")


def fill_disk(limit):
    """No file may grow above the limit, which is what a full disk is for whoever writes it."""
    signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
    resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit))


class Faults(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = pathlib.Path(cls.enterClassContext(tempfile.TemporaryDirectory(prefix="lotmere-fault-")))
        (cls.folder / "password").write_text("pw\n")
        cls.program = [PROGRAM, "--password-file", cls.folder / "password"]
        # C(16,6) x 6 = 48,048 tickets for the work that is held in its middle.
        cls.home = make_home(cls.program, cls.folder / "template", [
            ["draws", "fetch", "--all", DRAWS.as_uri()], ["users", "mode", "multi"],
            ["users", "login", "--new", "乙"],
            ["--user", "乙", "conditions", "interval", "1", "1-5"], ["users", "login", "--new", "甲"],
            ["--user", "甲", "numbers", "pick", "--red-tuo", "1-16", "--blue-tuo", "1-6"]])
        cls.stored, cls.rows = read_home(cls.home), read_rows(cls.home / STORE)
        cls.settings = read_settings(cls.program, copy_home(cls.home, cls.folder / "settings"), "甲乙")

    def run_work(self, command, **options):
        return run(self.program, self.folder / "work", command, **options)

    def damaged_home(self, change):
        home = copy_home(self.home, self.folder / "work")
        data = change((home / STORE).read_bytes())
        (home / STORE).unlink() if data is None else (home / STORE).write_bytes(data)
        return home

    def assert_one_line(self, said):
        self.assertRegex(said, r"\A[^\n]*[\u4e00-\u9fff]{4}[^\n]*\n\Z")

    def test_a_damaged_store_comes_back_from_the_backup_and_the_next_command_says_so(self):
        for name, change, journal_of in DAMAGES:
            with self.subTest(name):
                home = self.damaged_home(change)
                if journal_of:
                    shutil.copy(unfinished_journal(self.home / journal_of), home / f"{STORE}-journal")
                status, said = self.run_work(["users", "list"])
                self.assertEqual((status, "已从备份恢复" in said), (0, True), said)
                self.assert_one_line(said)
                self.assertEqual(read_home(home), self.stored)
                self.assertEqual(read_settings(self.program, home, "甲乙"), self.settings)

    def test_a_flipped_byte_is_mended_or_changes_one_row(self):
        """A byte inside a stored value is nobody's to notice; of the others none may go unnoticed."""
        tally = collections.Counter()
        pages = range(1, (self.home / STORE).stat().st_size // PAGE, 2)
        # The file's header byte for byte; of every second page its own header, and a byte further in.
        for place in [*range(100), *(page * PAGE + page % 12 for page in pages),
                      *(page * PAGE + page * 97 % PAGE for page in pages)]:
            with self.subTest(byte=place):
                home = self.damaged_home(
                    lambda data: data[:place] + bytes([data[place] ^ 0xFF]) + data[place + 1:])
                flipped = (home / STORE).read_bytes()
                status, said = self.run_work(["users", "list"])
                if status:  # one byte turns the version into that of a newer program
                    self.assertEqual(("更新版本" in said, (home / STORE).read_bytes()), (True, flipped), said)
                    tally["refused"] += 1
                    continue
                rows = read_rows(home / STORE)
                changed = sum(a != b for table in rows
                              for a, b in zip(self.rows[table], rows[table], strict=True))
                self.assertEqual(rows["sqlite_master"], self.rows["sqlite_master"])
                self.assertLessEqual(changed, 0 if "已从备份恢复" in said else 1, said)
                self.assertEqual(self.run_work(["--user", "甲", "numbers", "clear"]), (0, ""))
                tally["mended" if said else "one row differs" if changed else "of no effect"] += 1
        print("flipped bytes:", dict(tally))

    def test_a_full_disk_costs_one_line_and_nothing_stored(self):
        tally = collections.Counter()
        wanted = ("first start", "draws add", "tickets init", "tickets import", "store compact",
                  "a known user's login", "a new user's login", "a user's command")
        for scenario in (scenario for scenario in scenarios(self.folder) if scenario.name in wanted):
            case = Prepared(self.program, scenario, self.folder / scenario.name)
            largest = max(file.stat().st_size for file in case.home.parent.glob("undisturbed/*"))
            for limit in [0, 600, 5000, *range(20000, largest + 99999, largest // 9)]:
                with self.subTest(scenario.name, limit=limit):
                    home = copy_home(case.home, self.folder / "work")
                    status, said = self.run_work(case.command, preexec_fn=lambda: fill_disk(limit))
                    # without the questions
                    said = "".join(line for line in said.splitlines(True) if not line.endswith("]\n"))
                    fault, state = find_fault(self.program, case, home)
                    self.assertEqual((fault, bool(said)), (None, status == 1 or state != case.after), said)
                    self.assertIn(state[STORE], (case.before[STORE] if status else None, case.after[STORE]))
                    self.assertEqual(list(home.glob("*.new*")), [])
                    if said:
                        self.assert_one_line(said)
                    if status:
                        self.assertEqual((self.run_work(case.command)[0], read_home(home)), (0, case.after))
                    tally["refused" if status else "a file not updated" if said else "done"] += 1
        print("full disks:", dict(tally))

    def test_a_home_that_cannot_be_written_costs_one_line_and_changes_nothing(self):
        # The system's owner may write anywhere, unless that right is given up.
        unprivileged = []
        if os.geteuid() == 0:
            unprivileged = ["setpriv", "--bounding-set=-dac_override,-dac_read_search"]
        home = copy_home(self.home, self.folder / "closed")
        for mode in (0o600, 0o400):  # of the second, not even the lock can be had
            for path in home.iterdir():
                path.chmod(mode)
            home.chmod(0o500)
            for command in (["--user", "甲", "conditions", "tolerance", "2"], ["users", "login", "乙"],
                            ["store", "compact"]):
                status, said = run(unprivileged + self.program, home, command)
                self.assert_one_line(said)
                self.assertEqual(status, 1)
            home.chmod(0o700)
            self.assertEqual(read_home(home), self.stored)


if __name__ == "__main__":
    PROGRAM = sys.argv.pop(1)
    unittest.main(verbosity=2)
