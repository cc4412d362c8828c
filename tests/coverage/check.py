#!/usr/bin/env python3
"""Prints the coverage of each file from gcovr's JSON, and fails when it is below what is asked.

Asked is every line, and 98 % of the branches that can be reached. The list of what may stay names each place by its file and
the text of its line, the number of branches, and the reason:

    src/map_utils/some_file.cpp: if (a && b) {
      1 unreachable: a is always true here

`unreachable` branches, which no input can take, leave the count. `left` ones stay in it. A line that never runs stands with
0 branches. An entry that excuses nothing any more is reported.
"""

import argparse
import json
import pathlib
import re
import sys

LEAST_BRANCHES = 98.0


class Excuse:
    def __init__(self, file, source, where):
        self.file, self.source, self.where = file, source, where
        self.branches, self.kind, self.reason = 0, "", ""
        self.used = 0
        self.used_for_line = False

    def matches(self, file, source):
        return self.file == file and self.source == source.strip()


def read_excuses(path):
    excuses = []
    for number, line in enumerate(path.read_text().splitlines(), 1):
        if not line.strip() or line.startswith("#"):
            continue
        if not line.startswith(" "):
            file, _, source = line.partition(": ")
            excuses.append(Excuse(file, source.strip(), f"{path}:{number}"))
            continue
        match = re.match(r"\s+(\d+) (unreachable|left): (\S.*)$", line)
        if match:
            excuses[-1].branches, excuses[-1].kind, excuses[-1].reason = int(match[1]), match[2], match[3]
        elif excuses and excuses[-1].reason:
            excuses[-1].reason += " " + line.strip()
        else:
            sys.exit(f"{path}:{number}: neither a place nor a number of branches with a reason")
    for excuse in excuses:
        if not excuse.reason:
            sys.exit(f"{excuse.where}: without a reason")
    return excuses


class Count:
    def __init__(self):
        self.lines = self.lines_run = self.branches = self.branches_taken = 0

    def add(self, other):
        for name in vars(self):
            setattr(self, name, getattr(self, name) + getattr(other, name))

    def row(self, name):
        return (f"{name:<62} {self.lines_run:>6}/{self.lines:<6} {self.branches_taken:>6}/{self.branches:<6}"
                f" {percent(self.branches_taken, self.branches):>7.2f} %")


def percent(part, whole):
    return 100.0 if whole == 0 else 100.0 * part / whole


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("coverage", type=pathlib.Path)
    parser.add_argument("excuses", type=pathlib.Path)
    arguments = parser.parse_args()
    excuses = read_excuses(arguments.excuses)

    files, folders, total, missing = {}, {}, Count(), []
    for file in json.loads(arguments.coverage.read_text())["files"]:
        name = file["file"]
        source = pathlib.Path(name).read_text().splitlines()
        count = files.setdefault(name, Count())
        for line in file["lines"]:
            if line.get("gcovr/noncode"):
                continue
            text = source[line["line_number"] - 1]
            branches = [branch for branch in line["branches"] if not branch.get("throw")]
            left = sum(branch["count"] == 0 for branch in branches)
            excuse = next((each for each in excuses if each.matches(name, text)), None)
            runs = line["count"] > 0
            if not runs and excuse:
                excuse.used_for_line = True
                runs = True
            unreachable = 0
            if excuse and left:
                excused = min(left, excuse.branches - excuse.used)
                excuse.used += excused
                unreachable = excused if excuse.kind == "unreachable" else 0
            count.lines += 1
            count.lines_run += runs
            count.branches += len(branches) - unreachable
            count.branches_taken += len(branches) - left
            if not runs or left > unreachable:
                note = f"{excuse.reason}" if excuse else "not listed"
                what = "line never runs" if not runs else f"{left - unreachable} of {len(branches)} branches"
                missing.append(f"{name}:{line['line_number']}: {what}: {text.strip()}\n    {note}")
    for name, count in files.items():
        folders.setdefault(name.split("/")[0], Count()).add(count)
        total.add(count)

    print(f"{'':<62} {'lines':>10} {'branches':>16}")
    for name in sorted(files):
        print(files[name].row(name))
    for name in sorted(folders):
        print(folders[name].row(name + "/"))
    print(total.row("all"))
    if missing:
        print("\nNot covered:\n" + "\n".join(missing))
    for excuse in excuses:
        if excuse.used < excuse.branches or (excuse.branches == 0 and not excuse.used_for_line):
            print(f"{excuse.where}: excuses more than is needed ({excuse.used} of {excuse.branches} branches)")

    is_low = total.lines_run < total.lines or percent(total.branches_taken, total.branches) < LEAST_BRANCHES
    if is_low:
        print(f"\ncoverage: FAILED, asked are all lines and {LEAST_BRANCHES:g} % of the branches", file=sys.stderr)
    sys.exit(1 if is_low or not files else 0)


if __name__ == "__main__":
    main()
