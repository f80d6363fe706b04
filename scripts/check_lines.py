#!/usr/bin/env python3
"""Refuses lines of code, comments included, that are longer than the format's limit: one line each, and exit
status 1. clang-format measures code and leaves comments, scripts and build files alone."""
import pathlib
import re
import subprocess
import sys

ENDINGS = {".cpp", ".hpp", ".py", ".sh", ".cmake"}
NAMES = {"CMakeLists.txt", "run"}

root = pathlib.Path(__file__).resolve().parent.parent
limit = int(re.search(r"^ColumnLimit: *(\d+)$", (root / ".clang-format").read_text(), re.MULTILINE)[1])
listed = subprocess.run(["git", "ls-files", "-z"], cwd=root, capture_output=True, text=True,
                        check=True).stdout
looked_at = long = 0
for name in filter(None, listed.split("\0")):
    path = root / name
    if (path.suffix not in ENDINGS and path.name not in NAMES) or not path.is_file():
        continue
    looked_at += 1
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        if len(line) > limit:
            print(f"{name}:{number}: {len(line)} characters, at most {limit}", file=sys.stderr)
            long += 1
if looked_at == 0:
    sys.exit("check_lines: nothing to look at")
sys.exit(1 if long else 0)
