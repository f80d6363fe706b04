#!/usr/bin/env python3
"""Kills lotmere-cli at random moments and looks at the home that is left.

    kill_test.py PATH-TO-lotmere-cli [--rounds N] [--seed S]

Each round starts one command on a prepared home and kills it with SIGKILL: half of the kills come at a random
moment, half when one of its passing files (a journal, a file under construction) shows up. Store, backup and
profiles must then pass the engine's integrity check and hold in every table what they held before the command
or what an undisturbed run leaves, the backup nothing that the store lacks; the next command must start
without a word; and every user must find the settings that were stored. A kill counts as "in the middle" when
the process had taken the home's lock and had not ended."""

import argparse
import collections
import contextlib
import os
import pathlib
import random
import shutil
import signal
import sqlite3
import subprocess
import sys
import tempfile
import time

STORE, BACKUP, TEMPLATE = "Lotmere.db", "Lotmere.backup.db", "TJmode.tjmod"
DRAWS = pathlib.Path(__file__).resolve().parents[2] / "samples" / "draws.txt"
LAST_PERIOD, NEXT_PERIOD = "2025152", "2026001"


def start(program, home, command, **options):
    return subprocess.Popen([*program, "--home", home, *command], stdin=subprocess.DEVNULL,
                            stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True, **options)


def run(program, home, command, **options):
    """Exit status, and what was said to the person."""
    with start(program, home, command, **options) as process:
        said = process.communicate()[1]
    return process.returncode, said


def execute(path, statement):
    with contextlib.closing(sqlite3.connect(path)) as store, store:
        assert store.execute(statement).rowcount >= 1, statement


def make_home(program, home, steps):
    """A step is a command, or a statement for the store."""
    home.mkdir(parents=True)
    for step in steps:
        if isinstance(step, str):
            execute(home / STORE, step)
        else:
            assert run(program, home, step)[0] == 0, step
    return home


def copy_home(template, home):
    shutil.rmtree(home, ignore_errors=True)
    return shutil.copytree(template, home)


def read_rows(path):
    """Every table's rows; a database that isn't sound raises. Without the days of logins (midnight may
    pass) and the salts of passwords."""
    with contextlib.closing(sqlite3.connect(path)) as store:
        store.text_factory = lambda text: text.decode(errors="backslashreplace")
        if (verdict := store.execute("PRAGMA integrity_check").fetchone()[0]) != "ok":
            raise sqlite3.DatabaseError(verdict)
        names = [name for (name,) in store.execute("SELECT name FROM sqlite_master WHERE type='table'")]
        columns = {"用户表": "用户名, 密码形式, substr(密码, 1, 10)", "sqlite_master": "name, sql"}
        return {name: store.execute(
            f'SELECT {columns.get(name, "*")} FROM "{name}" ORDER BY rowid').fetchall()
                for name in names + ["sqlite_master"]}


def read_file(path):
    """A figure of every table of a database file, None without one. An unfinished change is undone first."""
    return {table: hash(tuple(rows)) for table, rows in read_rows(path).items()} if path.exists() else None


def read_home(home):
    """The figures of store, backup and profiles. The template need only be sound: it holds what was saved
    last."""
    read_file(home / TEMPLATE)
    return {name: read_file(home / name)
            for name in sorted({STORE, BACKUP, *(file.name for file in home.glob("*.uLotmere"))})}


def read_settings(program, home, users):
    """The tables that each user finds after a login."""
    settings = {}
    for user in users:
        assert run(program, home, ["--answer", "yes", "users", "login", "--new", user])[0] == 0, user
        tables = read_file(home / STORE)
        settings[user] = [tables[name] for name in ("过滤条件", "过滤条件使用情况", "号码特性", "区间定义")]
    return settings


Scenario = collections.namedtuple("Scenario", "name setup command users", defaults=[()])


def scenarios(folder):
    """Each: what prepares the home, the command that is killed, and the users whose settings must stand."""
    fetch = [["draws", "fetch", "--all", DRAWS.as_uri()]]
    # C(16,6) x 6 = 48,048 tickets.
    picked = [["numbers", "pick", "--red-tuo", "1-14,20,30", "--blue-tuo", "1-6"]]
    tickets = picked + [["tickets", "init", NEXT_PERIOD]]
    exported = tickets + [["tickets", "export", folder / "tickets.txt"]]
    wide = [["conditions", "allow", "总和值", "21-120"], ["conditions", "use", "连号", "off"]]
    # The reference draw of a run keeps the figures against a removed draw, so the run writes it anew.
    stale = [["--answer", "yes", "draws", "delete", str(int(LAST_PERIOD) - 1)]]
    last_draw = ["draws", "add", NEXT_PERIOD, "2026-01-01", "1", "2", "3", "14", "15", "16", "7"]
    # A session that was cut short: the last settings of the first user stand in the store and in no profile.
    shop = [["users", "mode", "multi"], ["users", "login", "--new", "乙"], ["--user", "乙", *picked[0]],
            ["users", "login", "--new", "甲"], ["--user", "甲", "conditions", "interval", "1", "1-5"],
            'UPDATE "过滤条件" SET "Value"=1-"Value" WHERE "ID" BETWEEN 1000 AND 1100']
    # Other draws, and a user more than the file has.
    saved = [*shop[:-1], ["store", "save", folder / "shop.lotmere"],
             ["--user", "甲", *fetch[0]], ["users", "login", "--new", "丙"]]
    return [
        Scenario("first start", [], ["numbers", "show"]),
        Scenario("draws fetch --all", [["numbers", "show"]], fetch[0]),
        Scenario("draws import", [["draws", "add", "2024001", "2024-01-02", *last_draw[4:]]],
                 ["draws", "import", DRAWS, "--existing", "replace"]),
        Scenario("draws add", fetch, last_draw),
        Scenario("draws delete", fetch, ["--answer", "yes", "draws", "delete", LAST_PERIOD]),
        Scenario("numbers pick", fetch, picked[0]),
        Scenario("numbers hints", fetch, ["numbers", "hints"]),
        Scenario("conditions interval", fetch, ["conditions", "interval", "1", "1-20"]),
        Scenario("conditions reset", picked + wide, ["--answer", "yes", "conditions", "reset"]),
        Scenario("tickets init", fetch + picked, ["tickets", "init", NEXT_PERIOD]),
        Scenario("tickets init again", tickets, ["tickets", "init", NEXT_PERIOD, "--existing", "replace"]),
        Scenario("tickets run", fetch + tickets + wide, ["tickets", "run", NEXT_PERIOD]),
        Scenario("tickets run on a stale draw", fetch + tickets + stale, ["tickets", "run", NEXT_PERIOD]),
        Scenario("tickets check", fetch + tickets + [last_draw], ["tickets", "check", NEXT_PERIOD]),
        Scenario("tickets clear", fetch + tickets, ["--answer", "yes", "tickets", "clear"]),
        Scenario("tickets import", exported, ["tickets", "import", folder / "tickets.txt",
                                              "--existing", "replace", "--period", LAST_PERIOD]),
        Scenario("store restore", saved,
                 ["--answer", "yes", "store", "restore", folder / "shop.lotmere"], "甲乙"),
        Scenario("store compact", fetch + tickets, ["store", "compact"]),
        Scenario("a known user's login", shop, ["users", "login", "乙"], "甲乙"),
        Scenario("a new user's login", shop, ["users", "login", "--new", "丙"], "甲乙丙"),
        Scenario("a user's command", shop, ["--user", "甲", "--answer", "yes", "conditions", "reset"], "甲乙"),
        Scenario("another user's command", shop, ["--user", "乙", "numbers", "show"], "甲乙"),
    ]


class Prepared:
    """A scenario with its home and what stands before and after its command."""

    def __init__(self, program, scenario, folder):
        self.name, self.command, self.users = scenario.name, scenario.command, scenario.users
        self.home = make_home(program, folder / "template", scenario.setup)
        # Without a lock file a killed process shows whether it came as far as taking the lock.
        (self.home / "Lotmere.lock").unlink(missing_ok=True)
        self.before = read_home(self.home)
        home, begin, seen = copy_home(self.home, folder / "undisturbed"), time.monotonic(), set()
        with start(program, home, self.command) as process:
            while process.poll() is None:
                seen.update(os.listdir(home))
        self.duration = time.monotonic() - begin
        self.passing = sorted(seen - set(os.listdir(home)))
        self.after = read_home(home)
        assert process.returncode == 0 and self.before != self.after, \
            f"{self.name}: a kill would show nothing"
        self.settings_before = read_settings(program, copy_home(self.home, folder / "before"), self.users)
        self.settings_after = read_settings(program, home, self.users)


def is_unfinished(home):
    """Whether the next start has to finish a change that counts already: a restore, or a recount of the draws
    behind a change of the intervals."""
    if (home / "Lotmere.restore").exists():
        return True
    if not (home / STORE).exists():  # which a look at it would make
        return False
    with contextlib.closing(sqlite3.connect(home / STORE)) as store:
        tables = [name for (name,) in store.execute("SELECT name FROM sqlite_master WHERE type='table'")]
        return "用户模式" in tables and store.execute('SELECT sum("区间待统计") FROM "用户模式"').fetchone() == (1,)


def find_fault(program, case, home):
    """What is wrong with a home after a kill, or None; and what stands in it."""
    try:
        if is_unfinished(home):
            run(program, home, ["store", "check"])
        state = read_home(home)
    except sqlite3.DatabaseError as failure:
        return f"a database file isn't sound: {failure}", None
    for name in {*case.before, *case.after, *state}:
        tables, before = state.get(name), case.before.get(name)
        if tables not in (before, case.after.get(name)):
            torn = [table for table in tables or [] if tables[table] != (before or {}).get(table)]
            return f"{name} is neither as before nor as after; differs from before in {torn}", state
    ahead = state[BACKUP] != case.before[BACKUP] and state[STORE] != case.after[STORE]
    return "the backup is ahead of the store" if ahead else None, state


def play_round(program, case, home, chance, tally):
    copy_home(case.home, home)
    passing = chance.choice(case.passing) if case.passing and chance.random() < 0.5 else None
    process = start(program, home, case.command)
    if passing:
        while process.poll() is None and not (home / passing).exists():
            pass
        time.sleep(chance.choice((0, 0.002, 0.1 * case.duration)) * chance.random())
    else:
        # Commands stand near the end, so half of the kills go there.
        time.sleep(chance.uniform(chance.choice((0.0, 0.7)), 1.05) * case.duration)
    process.send_signal(signal.SIGKILL)
    process.communicate()
    caught = any((home / name).exists() for name in case.passing)
    fault, state = find_fault(program, case, home)
    if process.returncode == 0:
        tally["after the end"] += 1
        # It follows what is seen: most kills are to come in the middle.
        case.duration *= 1 if passing else 0.85
        if state != case.after:
            fault = fault or "done, but not the state after"
    elif process.returncode != -signal.SIGKILL:
        fault = fault or f"ended by itself with {process.returncode}"
    elif not (home / "Lotmere.lock").exists():
        tally["before the start"] += 1
    else:
        tally["in the middle"] += 1
        tally["of these with a passing file"] += caught
        case.duration *= 1 if passing else 1.04
    if fault or (said := run(program, home, ["store", "check"])) != (0, ""):
        return fault or f"the next start says {said}"
    expected = case.settings_after if state[STORE] == case.after[STORE] else case.settings_before
    return None if read_settings(program, home, case.users) == expected else "a user finds other settings"


def prove_comparison(program, cases, folder):
    """One cell changed, a row gone, or a file gone must count as faults; else no round means anything."""
    doctorings = [("tickets clear", STORE, 'UPDATE "历史记录" SET "和值"="和值"+1 WHERE "期号"=' + LAST_PERIOD),
                  ("tickets clear", STORE, 'DELETE FROM "日志表" WHERE "序号"=9'), ("tickets clear", BACKUP, None),
                  ("a user's command", "乙.uLotmere", 'UPDATE "号码特性" SET "区间1"=9 WHERE "号码"=9')]
    for scenario, name, statement in doctorings:
        case = next(case for case in cases if case.name == scenario)
        home = copy_home(case.home, folder / "doctored")
        execute(home / name, statement) if statement else (home / name).unlink()
        assert find_fault(program, case, home)[0] is not None, \
            f"{name}: a doctored home passes the comparison"


def main():
    arguments = argparse.ArgumentParser()
    arguments.add_argument("program")
    arguments.add_argument("--rounds", type=int, default=220)
    arguments.add_argument("--seed", type=int, default=random.SystemRandom().randrange(1_000_000))
    options = arguments.parse_args()
    print(f"seed {options.seed}", flush=True)
    chance, tally, faults = random.Random(options.seed), collections.Counter(), 0
    with tempfile.TemporaryDirectory(prefix="lotmere-kill-") as name:
        folder = pathlib.Path(name)
        (folder / "password").write_text("pw\n")
        program = [options.program, "--password-file", folder / "password"]
        cases = [Prepared(program, scenario, folder / scenario.name) for scenario in scenarios(folder)]
        prove_comparison(program, cases, folder)
        for number in range(options.rounds):
            case = cases[number % len(cases)]
            if fault := play_round(program, case, folder / "work", chance, tally):
                faults += 1
                print(f"round {number}, {case.name}: {fault}", flush=True)
    print(f"{options.rounds} rounds: {dict(sorted(tally.items()))}, {faults} faults")
    if tally["in the middle"] < options.rounds / 10:
        sys.exit("too few kills came in the middle to show anything")
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
