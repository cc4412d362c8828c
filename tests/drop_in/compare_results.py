#!/usr/bin/env python3
"""Compares the raw results of two runs of the digest program value by value and lists the functions that differ.

Usage: compare_results.py FIRST SECOND [--within COLUMN] [--table FILE]
  --within COLUMN  ends with 1 when a function differs that the table does not list in this column, or by more than is
                   listed there
  --table FILE     the document with the table; docs/testing.md unless given

A difference is measured in the result's own unit and in units of the last place of its type, each at its largest. The
two need not meet in one value: of a sum that nearly vanishes every digit may differ, and it is still small.
"""

import argparse
import array
import math
import pathlib
import re
import struct
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
UNITS = {"n": "", "d": "degrees", "m": "metres", "r": "radians", "i": "whole numbers"}
WHOLE_TURN = {"degrees": 360.0, "radians": 2 * math.pi}


def read_results(path):
    """{"kind function": (unit letters, bits of the values)}; a function that comes several times is joined."""
    results = {}
    with open(path, "rb") as file:
        while header := file.readline():
            function, count = header.decode().rstrip("\n").split("\t")
            units = file.read(int(count))
            bits = array.array("Q")
            bits.frombytes(file.read(8 * int(count)))
            results[function] = (units, bits)
    return results


def as_double(bits):
    return struct.unpack("<d", struct.pack("<Q", bits))[0]


def rank(value, is_float):
    """The number of the value in the order of all values of its type: neighbours differ by 1, -0 and +0 by none."""
    if is_float:
        bits = struct.unpack("<i", struct.pack("<f", value))[0]
        return bits if bits >= 0 else -0x80000000 - bits
    bits = struct.unpack("<q", struct.pack("<d", value))[0]
    return bits if bits >= 0 else -0x8000000000000000 - bits


class Differences:
    """Of one function: how many values differ, and the largest difference of each unit."""

    def __init__(self, first, second):
        self.count = 0
        self.largest = {}  # unit -> (difference in the unit, in units of the last place)
        self.fork = None  # what cannot be measured: other numbers of points, other decisions, NaN on one side
        if first == second:
            return
        if first[0] != second[0]:
            self.count = 1
            self.fork = "number of points"
            return
        for index, (a, b) in enumerate(zip(first[1], second[1])):
            if a != b:
                self.add(chr(first[0][index]), a, b)

    def add(self, letter, a, b):
        self.count += 1
        unit = UNITS[letter.lower()]
        if letter == "i":
            self.fork = "whole numbers"
            return
        x, y = as_double(a), as_double(b)
        if not (math.isfinite(x) and math.isfinite(y)):
            self.fork = "NaN or infinity on one side"
            return
        difference = abs(x - y)
        ulps = abs(rank(x, letter.isupper()) - rank(y, letter.isupper()))
        turn = WHOLE_TURN.get(unit)
        if turn and difference > turn / 2:  # two directions next to north
            difference = abs(difference - turn)
            ulps = 0
        old = self.largest.get(unit, (0.0, 0))
        self.largest[unit] = (max(old[0], difference), max(old[1], ulps))


def listed(table, column):
    """{(function, unit): (largest difference, largest ulps)} of a column of the table."""
    limits = {}
    names = None
    for line in table.splitlines():
        cells = [cell.strip() for cell in line.strip().strip("|").split("|")]
        if line.startswith("| Result |"):
            names = cells
        elif names and line.startswith("|---"):
            continue
        elif names and line.startswith("| ") and len(cells) == len(names):
            text = cells[names.index(column)]
            match = re.match(r"([-+.e\d]+), (\d+) ulp", text)
            if match:
                limits[(cells[0].strip("`"), cells[1])] = (float(match.group(1)), int(match.group(2)))
        elif names:
            names = None
    return limits


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("first")
    parser.add_argument("second")
    parser.add_argument("--within")
    parser.add_argument("--table", type=pathlib.Path, default=ROOT / "docs/testing.md")
    arguments = parser.parse_args()

    first, second = read_results(arguments.first), read_results(arguments.second)
    if not first or first.keys() != second.keys():
        sys.exit("compare_results.py: the two runs do not hold the same functions")
    limits = listed(arguments.table.read_text(), arguments.within) if arguments.within else {}
    failures = []
    equal = 0
    for name in first:
        kind, function = name.split(" ", 1)
        differences = Differences(first[name], second[name])
        if not differences.count:
            equal += 1
            continue
        if differences.fork:
            failures.append(f"{function}: {differences.fork} differ, {differences.count} of {len(first[name][1])} values")
        for unit, (difference, ulps) in differences.largest.items():
            print(f"  {function}: up to {difference:.1e} {unit}, {ulps} ulp in {differences.count} of {len(first[name][1])} values")
            limit = limits.get((function, unit))
            if kind == "exact":
                failures.append(f"{function} differs and is marked as exact")
            elif limit is None:
                failures.append(f"{function} differs and is not listed under {arguments.within} in {arguments.table.name}")
            elif difference > limit[0] or ulps > limit[1]:
                failures.append(f"{function} differs by more than the {limit[0]:.1e} {unit}, {limit[1]} ulp listed")
    print(f"  {equal} of {len(first)} digests equal")
    if arguments.within and failures:
        sys.exit("\n".join(failures))


if __name__ == "__main__":
    main()
