#!/usr/bin/env python3
"""Writes samples/draws.txt: two years of invented draws in the format of a draw list, the same at every run.

The reader of a draw list keeps digits and slashes and takes any run of other characters as one separator,
so the line that says what the file is may hold neither.
"""

import datetime
import pathlib
import random

SEED = 20240102
DRAW_DAYS = {6, 1, 3}  # Sunday, Tuesday, Thursday, as date.weekday() counts them
# First and last day of the pause in the new year's week of each year, in which nothing is drawn.
PAUSES = {
    2024: (datetime.date(2024, 2, 9), datetime.date(2024, 2, 18)),
    2025: (datetime.date(2025, 1, 28), datetime.date(2025, 2, 4)),
}
MARK = "虚构的示例数据：由随机数生成，并非真实开奖记录。 Invented sample data, not real draws."


def draw_days(year):
    """The days of a year on which a draw is held."""
    first_off, last_off = PAUSES[year]
    day = datetime.date(year, 1, 1)
    while day.year == year:
        if day.weekday() in DRAW_DAYS and not first_off <= day <= last_off:
            yield day
        day += datetime.timedelta(days=1)


def draw_numbers(rng):
    """Six different reds, ascending, and a blue."""
    # Of the generator only random() is used: its sequence stays the same from one version of Python to the
    # next.
    reds = sorted(sorted(range(1, 34), key=lambda _: rng.random())[:6])
    return [*reds, int(rng.random() * 16) + 1]


def draw_list():
    """The text of the whole file."""
    rng = random.Random(SEED)
    lines = ["=336=", MARK]
    for year in sorted(PAUSES):
        for number, day in enumerate(draw_days(year), start=1):
            balls = " ".join(f"{ball:02}" for ball in draw_numbers(rng))
            lines.append(f"{year}{number:03} {day:%Y/%m/%d} {balls}")
    lines.append(MARK)
    return "\n".join(lines) + "\n"


if __name__ == "__main__":
    target = pathlib.Path(__file__).resolve().parent.parent / "samples" / "draws.txt"
    target.write_bytes(draw_list().encode())
