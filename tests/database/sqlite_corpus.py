#!/usr/bin/env python3
"""Runs the statement/result corpus against SQLite: the `query` blocks must
give the listed rows, the `query differs` blocks must not."""
import sqlite3
import sys
from pathlib import Path


def text(value):
    if value is None:
        return "NULL"
    if isinstance(value, float):
        return str(int(value)) if value.is_integer() else format(value, ".15g")
    return str(value)


def blocks(path):
    lines = path.read_text().split("\n")
    i = 0
    while i < len(lines):
        head = lines[i].strip()
        i += 1
        if not head or head.startswith("#"):
            continue
        sql = lines[i]
        i += 1
        expected = []
        if head != "statement ok":
            assert lines[i] == "----", f"{path}:{i}: ---- expected"
            i += 1
            while i < len(lines) and lines[i] != "":
                expected.append(lines[i])
                i += 1
        yield head, sql, expected


def main(folder):
    failures = 0
    for path in sorted(Path(folder).glob("*.test")):
        if "# sqlite: skip" in path.read_text():
            continue
        db = sqlite3.connect(":memory:")
        for head, sql, expected in blocks(path):
            if head.startswith("statement error"):
                continue  # error codes and texts are this dialect's own
            if head == "statement ok":
                db.execute(sql)
                continue
            got = ["|".join(text(v) for v in row) for row in db.execute(sql)]
            differs = head == "query differs"
            if (got == expected) == differs:
                failures += 1
                print(f"{path.name}: {sql}\n  sqlite: {got}\n  listed: {expected}")
    print("sqlite corpus:", "failed" if failures else "ok")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
