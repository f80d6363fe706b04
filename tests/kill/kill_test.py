#!/usr/bin/env python3
"""Kills lotmere-cli at random moments and looks at the store that is left.

    kill_test.py PATH-TO-lotmere-cli [--rounds N] [--seed S]

Each round takes a prepared home, starts one command on it and kills it with SIGKILL. The store must then
open, pass the engine's integrity check, and hold in every table exactly what it held before the command or
what an undisturbed run of the command leaves; and the next command must start on it without a word. A kill
counts as "in the middle" when the process had taken the home's lock and had not ended, so the report shows
how many of the rounds interrupted anything.
"""

import argparse
import collections
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
# How long a command takes changes with the load of the machine; the expected duration follows what is
# seen, so that most kills go on coming in the middle.
SHORTER = 0.85
LONGER = 1.04


def write_draw_list(path):
    """An invented list; its own generator, so that the list is the same for every seed."""
    numbers = random.Random(336)
    lines = ["=336= invented"]
    for year in YEARS:
        day = datetime.date(year, 1, 1)
        for number in range(1, DRAWS_A_YEAR + 1):
            reds = sorted(numbers.sample(range(1, 34), 6))
            day += datetime.timedelta(days=2)
            balls = " ".join(f"{ball:02}" for ball in reds + [numbers.randint(1, 16)])
            lines.append(f"{year}{number:03} {day:%Y/%m/%d} {balls}")
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
    """Runs a command to its end and returns how long it took."""
    begin = time.monotonic()
    process = start(program, home, command)
    _, errors = process.communicate()
    if process.returncode != 0:
        sys.exit(f"{' '.join(command)} ended with {process.returncode}: {errors.decode()}")
    return time.monotonic() - begin


def read_state(home):
    """A figure of every table's rows and of the schema, None where no store stands. A store that doesn't open
    or isn't sound raises."""
    if not (home / STORE).exists():
        return None
    store = sqlite3.connect(f"file:{home / STORE}?mode=rw", uri=True)
    try:
        verdict = store.execute("PRAGMA integrity_check").fetchone()[0]
        if verdict != "ok":
            raise sqlite3.DatabaseError(verdict)
        state = {"schema": repr(store.execute("SELECT * FROM sqlite_master ORDER BY name, type").fetchall())}
        tables = store.execute("SELECT name FROM sqlite_master WHERE type='table' ORDER BY name").fetchall()
        for (table,) in tables:
            figure = hashlib.sha256()
            for row in store.execute(f'SELECT * FROM "{table}" ORDER BY rowid'):
                figure.update(repr(row).encode())
            state[table] = figure.hexdigest()
        return state
    finally:
        store.close()


def changed_tables(a, b):
    if a is None or b is None:
        return "no store"
    return ", ".join(sorted(t for t in a.keys() | b.keys() if a.get(t) != b.get(t)))


class Prepared:
    """A scenario with its home and what stands before and after its command."""

    def __init__(self, program, scenario, folder):
        self.name, self.command = scenario.name, scenario.command
        self.home = folder / "template"
        self.home.mkdir(parents=True)
        for step in scenario.setup:
            run(program, self.home, step)
        # Without a lock file a killed process shows whether it came as far as taking the lock.
        (self.home / "Lotmere.lock").unlink(missing_ok=True)
        self.before = read_state(self.home)
        durations = []
        after = []
        for _ in range(2):
            home = copy_home(self.home, folder / "undisturbed")
            durations.append(run(program, home, self.command))
            after.append(read_state(home))
        if after[0] != after[1]:
            sys.exit(f"{self.name}: two undisturbed runs differ in {changed_tables(*after)}")
        self.after = after[0]
        self.duration = min(durations)
        if self.before == self.after:
            sys.exit(f"{self.name}: the command changes nothing, so a kill can't show anything")


def copy_home(template, home):
    shutil.rmtree(home, ignore_errors=True)
    shutil.copytree(template, home)
    return home


def find_fault(program, case, home):
    """What is wrong with a home after a kill, or None; and the state."""
    try:
        state = read_state(home)
    except sqlite3.DatabaseError as failure:
        return f"the store isn't sound: {failure}", None
    if state not in (case.before, case.after):
        return (f"neither before nor after: differs from before in [{changed_tables(state, case.before)}], "
                f"from after in [{changed_tables(state, case.after)}]"), state
    return None, state


def check_next_start(program, home):
    process = start(program, home, ["numbers", "show"])
    _, errors = process.communicate()
    if process.returncode != 0 or errors:
        return f"the next start ends with {process.returncode} and says: {errors.decode()}"
    return None


def pick_moment(chance, duration):
    # Commits stand near the end, so half of the kills go there.
    low = 0.0 if chance.random() < 0.5 else 0.7
    return chance.uniform(low, 1.05) * duration


def play_round(program, case, home, chance, tally):
    copy_home(case.home, home)
    process = start(program, home, case.command)
    time.sleep(pick_moment(chance, case.duration))
    process.send_signal(signal.SIGKILL)
    process.communicate()
    started = (home / "Lotmere.lock").exists()
    journal = any(home.glob("*-journal"))
    fault, state = find_fault(program, case, home)
    if process.returncode == 0:
        tally["after the end"] += 1
        case.duration *= SHORTER
        if fault is None and state != case.after:
            fault = "done, but not the state after"
    elif process.returncode != -signal.SIGKILL:
        fault = fault or f"ended by itself with {process.returncode}"
    elif not started:
        tally["before the start"] += 1
    else:
        tally["in the middle"] += 1
        case.duration *= LONGER
        tally["with an open change"] += journal
        if fault is None:
            tally["left before" if state == case.before else "left after"] += 1
    return fault or check_next_start(program, home)


def prove_comparison(program, case, folder):
    """One cell changed, and one row gone, must count as faults; else no round means anything."""
    newest = 'WHERE rowid=(SELECT max(rowid) FROM "{0}")'
    for doctoring in ('UPDATE "历史记录" SET "和值"="和值"+1 ' + newest.format("历史记录"),
                      'DELETE FROM "日志表" ' + newest.format("日志表")):
        home = copy_home(case.home, folder / "doctored")
        with sqlite3.connect(home / STORE) as store:
            if store.execute(doctoring).rowcount != 1:
                sys.exit("the doctored store is the same")
        store.close()
        if find_fault(program, case, home)[0] is None:
            sys.exit("a doctored store passes the comparison")


def main():
    arguments = argparse.ArgumentParser()
    arguments.add_argument("program")
    arguments.add_argument("--rounds", type=int, default=40)
    arguments.add_argument("--seed", type=int, default=None)
    options = arguments.parse_args()
    seed = options.seed if options.seed is not None else random.SystemRandom().randrange(1_000_000)
    print(f"seed {seed}", flush=True)
    chance = random.Random(seed)
    faults = []
    total = collections.Counter()
    with tempfile.TemporaryDirectory(prefix="lotmere-kill-") as name:
        folder = pathlib.Path(name)
        address = f"file://{folder / 'list.txt'}"
        write_draw_list(folder / "list.txt")
        cases = [Prepared(options.program, scenario, folder / str(i))
                 for i, scenario in enumerate(scenarios(address))]
        prove_comparison(options.program, cases[-1], folder)
        tallies = collections.defaultdict(collections.Counter)
        for number in range(options.rounds):
            case = cases[number % len(cases)]
            fault = play_round(options.program, case, folder / "work", chance, tallies[case.name])
            if fault is not None:
                faults.append(f"round {number}, {case.name}: {fault}")
                print(faults[-1], flush=True)
        for case in cases:
            total.update(tallies[case.name])
            counts = ", ".join(f"{count} {what}" for what, count in sorted(tallies[case.name].items()))
            print(f"{case.name} ({case.duration * 1000:.0f} ms): {counts}")
    print(f"{options.rounds} rounds: {dict(sorted(total.items()))}, {len(faults)} faults")
    if total["in the middle"] < options.rounds / 10:
        sys.exit("too few kills came in the middle to show anything")
    if faults:
        sys.exit(1)


if __name__ == "__main__":
    main()
