#!/usr/bin/env python3
"""What only a process of its own shows: how often a command flushes, and what it does without its standard
streams.

    process_test.py PATH-TO-lotmere-cli PATH-TO-the-counting-library"""

import functools
import itertools
import os
import pathlib
import signal
import subprocess
import sys
import tempfile
import time
import unittest

DRAWS = pathlib.Path(__file__).resolve().parents[2] / "samples" / "draws.txt"
FIRST, OTHER, SAME_USER, NEW_USER = 40, 15, 20, 30  # the most flushes of a command
PICK = ["numbers", "pick", "--red-tuo", "1-14,20,30", "--blue-tuo", "1-6"]


class Processes(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = pathlib.Path(
            cls.enterClassContext(tempfile.TemporaryDirectory(prefix="lotmere-process-")))
        (cls.folder / "password").write_text("pw\n")
        cls.home = cls.folder / "home"

    def run_command(self, *command, home=None, **options):
        return subprocess.run([PROGRAM, "--home", home or self.home, "--password-file",
                               self.folder / "password", *map(str, command)],
                              text=True, timeout=120, **options)

    def count_flushes(self, command):
        counted = self.folder / "count"
        counted.unlink(missing_ok=True)
        # The sanitizer's own library would rather come first.
        environment = {**os.environ, "LD_PRELOAD": LIBRARY, "LOTMERE_SYNC_COUNT": str(counted),
                       "ASAN_OPTIONS": "verify_asan_link_order=0"}
        result = self.run_command(*command, capture_output=True, env=environment)
        self.assertEqual(result.returncode, 0, result.stderr)
        return int(counted.read_text())

    def test_a_command_flushes_a_few_times(self):
        file, everything = self.folder / "tickets.txt", self.folder / "all.lotmere"
        table = [
            (FIRST, ["numbers", "show"]), (OTHER, ["draws", "fetch", "--all", DRAWS.as_uri()]),
            (OTHER, ["draws", "add", "2026001", "2026-01-01", *"1 2 3 14 15 16 7".split()]),
            (OTHER, ["--answer", "yes", "draws", "delete", "2026001"]),
            (OTHER, ["draws", "stats", "2024001", "2025152"]), (OTHER, ["omission", "red"]), (OTHER, PICK),
            (OTHER, ["numbers", "hints"]), (OTHER, ["conditions", "use", "AC值", "off"]),
            (OTHER, ["conditions", "interval", "1", "1-5"]),
            (OTHER, ["conditions", "match", "2024001", "2025152", "5"]),
            (OTHER, ["--answer", "yes", "conditions", "reset"]), (OTHER, PICK),
            (OTHER, ["tickets", "init", "2026001"]),
            (OTHER, ["tickets", "run", "2026001"]), (OTHER, ["tickets", "export", file]),
            (OTHER, ["--answer", "yes", "tickets", "import", file, "--period", "2026001"]),
            (OTHER, ["--answer", "yes", "tickets", "clear"]), (OTHER, ["store", "compact"]),
            (OTHER, ["store", "check"]),
            (OTHER, ["users", "mode", "multi"]), (NEW_USER, ["users", "login", "甲", "--new"]),
            (NEW_USER, ["--answer", "yes", "users", "login", "乙", "--new"]),
            (NEW_USER, ["--answer", "yes", "users", "login", "甲"]),
            (SAME_USER, ["--user", "甲", *PICK]), (SAME_USER, ["--user", "甲", "numbers", "show"]),
            (NEW_USER, ["--answer", "yes", "--user", "乙", *PICK]),
            (NEW_USER, ["--answer", "yes", "--user", "甲", "numbers", "show"]),
            (OTHER, ["store", "save", everything]),
            (OTHER, ["--answer", "yes", "store", "restore", everything])]
        counts = []
        for most, command in table:
            with self.subTest(command):
                counts.append(self.count_flushes(command))
                self.assertLessEqual(counts[-1], most)
        print("flushes:", counts)
        self.assertGreaterEqual(min(counts[:2]), 3, "what is counted must be there")

    def test_without_its_standard_streams_it_writes_into_no_file_of_its_own(self):
        home = self.folder / "closed"
        self.assertEqual(self.run_command("draws", "fetch", "--all", DRAWS.as_uri(), home=home,
                                          capture_output=True).returncode, 0)
        stored = {file.name: file.read_bytes() for file in home.iterdir()}
        for closed in ((0,), (1,), (2,), (0, 1, 2)):
            with self.subTest(closed=closed):
                result = self.run_command("draws", "status", home=home, close_fds=False,
                                          stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                          preexec_fn=lambda: [os.close(fd) for fd in closed])
                self.assertEqual(result.returncode, 1 if 1 in closed else 0,
                                 "what nobody can read wasn't done")
                self.assertEqual({file.name: file.read_bytes() for file in home.iterdir()}, stored)

    def test_what_is_no_file_is_refused_by_name_and_not_waited_for(self):
        home = self.folder / "pipes"
        for command in (["users", "mode", "multi"], ["users", "login", "甲", "--new"],
                        ["users", "login", "乙", "--new"]):
            self.run_command(*command, home=home, capture_output=True)
        device = functools.partial(os.symlink, "/dev/zero")
        for name, put in itertools.product(("Lotmere.lock", "Lotmere.db", "Lotmere.db-journal",
                                            "Lotmere.backup.db",
                                            "TJmode.tjmod", "甲.uLotmere", "乙.uLotmere"), (os.mkfifo, device)):
            with self.subTest(name, put=put):
                kept = home / "kept"
                if (home / name).exists():
                    (home / name).rename(kept)
                put(home / name)
                result = self.run_command("users", "login", "甲", home=home, capture_output=True)
                self.assertEqual((result.returncode, f"{name}”（不是普通文件）" in result.stderr), (1, True),
                                 result.stderr)
                (home / name).unlink()
                if kept.exists():
                    kept.rename(home / name)
        everything = self.folder / "pipe.lotmere"
        os.mkfifo(everything)
        for command in ("save", "restore"):
            result = self.run_command("--answer", "yes", "store", command, everything, home=home,
                                      capture_output=True)
            self.assertEqual((result.returncode, "不是普通文件" in result.stderr), (1, True), result.stderr)

    def test_a_wait_for_a_password_can_be_stopped(self):
        pipe = self.folder / "silent"
        os.mkfifo(pipe)
        for file, number in itertools.product(("-", pipe), (signal.SIGINT, signal.SIGTERM)):
            with self.subTest(file, number=number):
                waiting = subprocess.Popen([PROGRAM, "--home", self.home, "--user", "甲", "--password-file",
                                            file, "numbers", "show"],
                                           stdin=subprocess.PIPE, stderr=subprocess.PIPE)
                time.sleep(0.3)
                self.assertIsNone(waiting.poll(), "it waits")
                waiting.send_signal(number)
                self.assertEqual(waiting.wait(10), 130)
                waiting.communicate()


if __name__ == "__main__":
    LIBRARY = sys.argv.pop(2)
    PROGRAM = sys.argv.pop(1)
    unittest.main(verbosity=2)
