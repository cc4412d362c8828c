"""Reads what the benchmark measured and works out the figures."""

import dataclasses
import json
import math
import pathlib
import re
import statistics
import sys

OURS = "vorel"
BASELINE = "vorel, SSE2"  # the path of a machine without AVX2


def fail(message):
    sys.exit(f"report.py: {message}")


def load(path):
    try:
        return json.loads(pathlib.Path(path).read_text(encoding="utf-8"))
    except (OSError, ValueError) as problem:
        fail(f"{path}: {problem}")


@dataclasses.dataclass
class Run:
    """One measurement of everything: a row per job, input and candidate."""
    rows: list
    load_before: list
    load_after: list

    def find(self, job, label, candidate):
        for row in self.rows:
            if (row["job"], row["input"], row["candidate"]) == (job, label, candidate):
                return row
        return None

    def by_job(self):
        """For each job its inputs in the order of their first appearance, each with its rows."""
        jobs = {}
        for row in self.rows:
            jobs.setdefault(row["job"], {}).setdefault(row["input"], []).append(row)
        return {job: list(inputs.items()) for job, inputs in jobs.items()}


def read_run(paths):
    """The first path is the JSON of peers_bench, a second one that of node/bench.js."""
    native = load(paths[0])
    rows = native["rows"]
    for path in paths[1:]:
        rows += load(path)
    if not rows:
        fail(f"{paths[0]}: no measurements")
    add_figures(rows)
    return Run(rows, native["load_before"] or [], native["load_after"] or [])


def path_of(candidate):
    """The library's path that a row was measured on; None for a peer."""
    start = candidate.split(": ")[0]
    return start if start in (OURS, BASELINE) else None


def part_of(candidate):
    """What part of a function's work a row of the library measures: "bare length" of "vorel: bare length"."""
    return candidate.split(": ")[1] if path_of(candidate) and ": " in candidate else None


def add_figures(rows):
    """Adds nanoseconds per item, and how they compare with those of the library for the same case.

    ratio and baseline_ratio of a peer: its fastest repetition over the library's median. share of a part: how many times
    as long as it the whole function takes, median over median, on the same path.
    """
    for row in rows:
        per_item = [1e9 * seconds / row["items"] for seconds in row["seconds"]]
        row["nanoseconds"] = statistics.median(per_item)
        row["fastest_nanoseconds"] = min(per_item)
    own = {(row["job"], row["input"], row["candidate"]): row["nanoseconds"] for row in rows
           if row["candidate"] in (OURS, BASELINE)}
    for row in rows:
        row["ratio"] = row["baseline_ratio"] = row["share"] = None
        case = (row["job"], row["input"])
        if part_of(row["candidate"]):
            row["share"] = own[(*case, path_of(row["candidate"]))] / row["nanoseconds"]
        elif not path_of(row["candidate"]):
            for name, path in (("ratio", OURS), ("baseline_ratio", BASELINE)):
                if (*case, path) in own:
                    row[name] = row["fastest_nanoseconds"] / own[(*case, path)]


def growths(inputs):
    """How the time of a whole job grows from the smallest to the largest of the inputs whose names differ only in their
    size: under the largest one's name (per element, order).

    per element: the time per element of the largest over that of the smallest. order: the k for which the time grows as
    size^k between them: 1 is linear. Of the fastest repetitions: the largest inputs lie in memory, which is shared with all
    that runs beside.
    """
    families = {}
    for label, candidates in inputs:
        ours = next((row for row in candidates if row["candidate"] == OURS), None)
        if ours:
            family = re.sub(rf"(?<![\d,]){int(ours['size']):,}(?![\d,])", "N", label)
            families.setdefault(family, []).append(
                (ours["size"], ours["fastest_nanoseconds"] * ours["items"], label))
    result = {}
    for members in families.values():
        (small, small_time, _), (large, large_time, label) = min(members), max(members)
        if large > small:
            result[label] = ((large_time / large) / (small_time / small),
                             math.log(large_time / small_time) / math.log(large / small))
    return result
