#!/usr/bin/env python3
"""Kills lotmere-cli at random moments and looks at the store that is left.

    kill_test.py PATH-TO-lotmere-cli [--rounds N] [--seed S]

Each round takes a prepared home, starts one command on it and kills it with SIGKILL. The store must then
open, pass the engine's integrity check, and hold in every table exactly what it held before the command or
what an undisturbed run of the command leaves; and the next command must start on it without a word. A kill
counts as "in the middle" when the process had taken the home's lock and had not ended."""

import argparse
import collections
import contextlib
import datetime
import hashlib
import pathlib
import random
import shutil
import signal
import sqlite3
import subprocess
import sys
import tempfile
import time

STORE = "Lotmere.db"
DRAWS_A_YEAR = 150
YEARS = range(2014, 2024)
NEXT_PERIOD = "2024001"
LAST_PERIOD = f"{YEARS[-1]}{DRAWS_A_YEAR:03}"


def write_draw_list(path):
    """An invented list; its own generator, so that the list is the same for every seed."""
    numbers = random.Random(336)
    lines = ["=336= invented"]
    for year in YEARS:
        for number in range(1, DRAWS_A_YEAR + 1):
            balls = sorted(numbers.sample(range(1, 34), 6)) + [numbers.randint(1, 16)]
            day = datetime.date(year, 1, 1) + datetime.timedelta(days=2 * number)
            lines.append(f"{year}{number:03} {day:%Y/%m/%d} " + " ".join(f"{ball:02}" for ball in balls))
    path.write_text("\n".join(lines) + "\n")


Scenario = collections.namedtuple("Scenario", "name setup command")


def scenarios(address):
    """Each: what prepares the home, and the command that is killed."""
    fetch = [["draws", "fetch", "--all", address]]
    # C(16,6) x 6 = 48,048 tickets.
    picked = [["numbers", "pick", "--red-tuo", "1-14,20,30", "--blue-tuo", "1-6"]]
    tickets = picked + [["tickets", "init", NEXT_PERIOD]]
    wide = [["conditions", "allow", "总和值", "21-120"], ["conditions", "use", "连号", "off"]]
    # The reference draw of a run keeps the figures against a removed draw, so the run writes it anew.
    stale = [["draws", "delete", str(int(LAST_PERIOD) - 1)]]
    last_draw = ["draws", "add", NEXT_PERIOD, "2024-01-02", "1", "2", "3", "14", "15", "16", "7"]
    return [
        Scenario("first start", [], ["numbers", "show"]),
        Scenario("draws fetch --all", [["numbers", "show"]], fetch[0]),
        Scenario("draws add", fetch, last_draw),
        Scenario("numbers pick", fetch, picked[0]),
        Scenario("conditions interval", fetch, ["conditions", "interval", "1", "1-20"]),
        Scenario("conditions reset", picked + wide, ["conditions", "reset"]),
        Scenario("tickets init", fetch + picked, ["tickets", "init", NEXT_PERIOD]),
        Scenario("tickets init again", tickets, ["tickets", "init", NEXT_PERIOD]),
        Scenario("tickets run", fetch + tickets + wide, ["tickets", "run", NEXT_PERIOD]),
        Scenario("tickets run on a stale draw", fetch + tickets + stale, ["tickets", "run", NEXT_PERIOD]),
        Scenario("tickets clear", fetch + tickets, ["tickets", "clear"]),
    ]


def start(program, home, command):
    return subprocess.Popen([program, "--home", str(home), *command], stdin=subprocess.DEVNULL,
                            stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)


def run(program, home, command):
    """Runs a command to its end; gives how long it took, how it ended and what it said on the way."""
    begin = time.monotonic()
    process = start(program, home, command)
    errors = process.communicate()[1].decode()
    return time.monotonic() - begin, process.returncode, errors


def read_state(home):
    """A figure of every table's rows and of the schema, None where no store stands. A store that doesn't open
    or isn't sound raises."""
    if not (home / STORE).exists():
        return None
    with contextlib.closing(sqlite3.connect(f"file:{home / STORE}?mode=rw", uri=True)) as store:
        verdict = store.execute("PRAGMA integrity_check").fetchone()[0]
        if verdict != "ok":
            raise sqlite3.DatabaseError(verdict)
        tables = [name for (name,) in store.execute("SELECT name FROM sqlite_master WHERE type='table'")]
        rows = {table: store.execute(f'SELECT * FROM "{table}" ORDER BY rowid').fetchall()
                for table in tables + ["sqlite_master"]}
        return {table: hashlib.sha256(repr(rows[table]).encode()).digest() for table in rows}


class Prepared:
    """A scenario with its home and what stands before and after its command."""

    def __init__(self, program, scenario, folder):
        self.name, self.command = scenario.name, scenario.command
        self.home = folder / "template"
        self.home.mkdir(parents=True)
        for step in scenario.setup:
            assert run(program, self.home, step)[1] == 0, step
        # Without a lock file a killed process shows whether it came as far as taking the lock.
        (self.home / "Lotmere.lock").unlink(missing_ok=True)
        self.before = read_state(self.home)
        home = copy_home(self.home, folder / "undisturbed")
        self.duration, status, _ = run(program, home, self.command)
        self.after = read_state(home)
        assert status == 0 and self.before != self.after, f"{self.name} does nothing, so a kill shows nothing"


def copy_home(template, home):
    shutil.rmtree(home, ignore_errors=True)
    shutil.copytree(template, home)
    return home


def find_fault(case, home):
    """What is wrong with a home after a kill, or None; and the state."""
    try:
        state = read_state(home)
    except sqlite3.DatabaseError as failure:
        return f"the store isn't sound: {failure}", None
    if state in (case.before, case.after):
        return None, state
    torn = [table for table in state or [] if state[table] != (case.before or {}).get(table)]
    return f"neither before nor after; differs from before in {torn}", state


def play_round(program, case, home, chance, tally):
    copy_home(case.home, home)
    process = start(program, home, case.command)
    # Commits stand near the end, so half of the kills go there.
    time.sleep(chance.uniform(chance.choice((0.0, 0.7)), 1.05) * case.duration)
    process.send_signal(signal.SIGKILL)
    process.communicate()
    fault, state = find_fault(case, home)
    if process.returncode == 0:
        tally["after the end"] += 1
        case.duration *= 0.85  # it follows what is seen, so that most kills go on coming in the middle
        if state != case.after:
            fault = fault or "done, but not the state after"
    elif process.returncode != -signal.SIGKILL:
        fault = fault or f"ended by itself with {process.returncode}"
    elif not (home / "Lotmere.lock").exists():
        tally["before the start"] += 1
    else:
        tally["in the middle"] += 1
        case.duration *= 1.04
    _, status, said = run(program, home, ["numbers", "show"])
    if status != 0 or said:
        fault = fault or f"the next start ends with {status} and says: {said}"
    return fault


def prove_comparison(case, folder):
    """One cell changed, and one row gone, must count as faults; else no round means anything."""
    for doctoring in ('UPDATE "历史记录" SET "和值"="和值"+1 WHERE "期号"=' + LAST_PERIOD,
                      'DELETE FROM "日志表" WHERE "序号"=9'):
        home = copy_home(case.home, folder / "doctored")
        with contextlib.closing(sqlite3.connect(home / STORE)) as store, store:
            assert store.execute(doctoring).rowcount == 1
        assert find_fault(case, home)[0] is not None, "a doctored store passes the comparison"


def main():
    arguments = argparse.ArgumentParser()
    arguments.add_argument("program")
    arguments.add_argument("--rounds", type=int, default=40)
    arguments.add_argument("--seed", type=int, default=random.SystemRandom().randrange(1_000_000))
    options = arguments.parse_args()
    chance = random.Random(options.seed)
    print(f"seed {options.seed}", flush=True)
    faults = []
    total = collections.Counter()
    with tempfile.TemporaryDirectory(prefix="lotmere-kill-") as name:
        folder = pathlib.Path(name)
        write_draw_list(folder / "list.txt")
        cases = [Prepared(options.program, scenario, folder / scenario.name)
                 for scenario in scenarios(f"file://{folder / 'list.txt'}")]
        prove_comparison(cases[-1], folder)
        for number in range(options.rounds):
            case = cases[number % len(cases)]
            if fault := play_round(options.program, case, folder / "work", chance, total):
                faults.append(f"round {number}, {case.name}: {fault}")
                print(faults[-1], flush=True)
    print(f"{options.rounds} rounds: {dict(sorted(total.items()))}, {len(faults)} faults")
    if total["in the middle"] < options.rounds / 10:
        sys.exit("too few kills came in the middle to show anything")
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
