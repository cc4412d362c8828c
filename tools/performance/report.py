#!/usr/bin/env python3
"""Puts the results of the benchmark into one table, a list of targets, one JSON file and one chart.

    tools/performance/report.py --run native-1.json node-1.json [--run native-2.json node-2.json] --build build/bench \
        --out out [--write-docs]

Each --run is one measurement of everything: the JSON of peers_bench, and where Node took part the one of node/bench.js. The
chart shows the first. --write-docs also renews what stands between the markers in docs/performance.md, and
docs/pictures/performance.svg.
"""

import argparse
import datetime
import json
import os
import pathlib
import platform
import re
import subprocess

from chart import draw
from results import BASELINE, fail, load, read_run
from tables import accuracy_markdown, print_table, table_markdown
from targets import judged, outcome, print_targets, targets_markdown, yardstick

ROOT = pathlib.Path(__file__).resolve().parents[2]
BEGIN, END = "<!-- measured: begin -->", "<!-- measured: end -->"
DEBIAN_PACKAGES = ["libboost-dev", "libgeos-dev", "libgeographiclib-dev", "libs2-dev", "libproj-dev",
                   "libbenchmark-dev"]


def first_line(command):
    try:
        return subprocess.run(command, capture_output=True, text=True, check=True).stdout.strip().splitlines()[0]
    except (OSError, subprocess.CalledProcessError, IndexError):
        return ""


def cached(build, name):
    """A variable of the build's CMake cache."""
    found = re.search(rf"^{name}:\w+=(.*)$", (build / "CMakeCache.txt").read_text(encoding="utf-8"), re.MULTILINE)
    return found.group(1) if found else ""


def load_text(run):
    texts = [f"{name} {load[0]:.2f}" for name, load in (("before", run.load_before), ("after", run.load_after)) if load]
    return ", ".join(texts) or "unknown"


def facts_about(runs, build, has_node):
    cpu_file = pathlib.Path("/proc/cpuinfo")
    cpu = re.search(r"model name\s*:\s*(.*)", cpu_file.read_text() if cpu_file.exists() else "")
    versions = {"vorel": cached(build, "CMAKE_PROJECT_VERSION")}
    for package in DEBIAN_PACKAGES:
        version = first_line(["dpkg-query", "-W", "-f", "${Version}", package])
        if version:
            versions[package] = version
    if has_node:
        versions["node"] = first_line(["node", "--version"]).lstrip("v")
        manifest = load(build / "node" / "package.json")
        versions["turf"] = manifest["dependencies"]["@turf/length"]
        versions["cheap-ruler"] = manifest["dependencies"]["cheap-ruler"]
    rows = runs[0].rows
    return {
        "date": datetime.date.today().isoformat(),
        "machine": f"{cpu.group(1) if cpu else platform.machine()}, {os.cpu_count()} cores",
        "load": [load_text(run) for run in runs],
        "repetitions": max(len(row["seconds"]) for row in rows),
        "system": re.sub(r'.*="?([^"]*)"?$', r"\1", first_line(["grep", "PRETTY_NAME", "/etc/os-release"])),
        "compiler": first_line([cached(build, "CMAKE_CXX_COMPILER"), "--version"]),
        "flags": cached(build, "CMAKE_CXX_FLAGS_RELEASE") + " -ffp-contract=off -fno-math-errno"
                 " (and those that keep the library small, see cmake/VorelTarget.cmake and src/map_utils/CMakeLists.txt)",
        "vector_path": "the best vector path of the machine"
                       + (" and SSE2" if any(row["candidate"] == BASELINE for row in rows) else ""),
        "data": "generated lines" + (" and real ones" if any("real" in row["input"] for row in rows) else ""),
        "versions": versions,
    }


def markdown(runs, facts):
    loads = facts["load"]
    load_sentence = (loads[0] if len(loads) == 1
                     else "; ".join(f"run {number}: {text}" for number, text in enumerate(loads, 1)))
    lines = [f"Measured {facts['date']} on {facts['machine']}, {facts['system']}; {facts['compiler']}, "
             f"{facts['flags']}; {facts['vector_path']}; {facts['data']}; medians of {facts['repetitions']} repetitions. "
             f"Load of the machine (a run itself adds 1): {load_sentence}.", "",
             "Versions: " + ", ".join(f"{name} {version}" for name, version in facts["versions"].items()) + ".", ""]
    lines += targets_markdown(runs) + accuracy_markdown(runs[0])
    for number, run in enumerate(runs, 1):
        lines += ["### Everything" + ("" if len(runs) == 1 else f", run {number}"), ""] + table_markdown(run) + [""]
    return "\n".join(lines).rstrip()


def write_docs(runs, facts):
    page = ROOT / "docs" / "performance.md"
    text = page.read_text(encoding="utf-8")
    if text.count(BEGIN) != 1 or text.count(END) != 1:
        fail(f"{page}: the markers '{BEGIN}' and '{END}' must stand there once each")
    before, rest = text.split(BEGIN)
    after = rest.split(END)[1]
    picture = ROOT / "docs" / "pictures" / "performance.svg"
    picture.parent.mkdir(parents=True, exist_ok=True)
    draw(runs[0], picture)
    page.write_text(f"{before}{BEGIN}\n{markdown(runs, facts)}\n{END}{after}", encoding="utf-8")
    print(f"Renewed: {page.relative_to(ROOT)}, {picture.relative_to(ROOT)}")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--run", nargs="+", action="append", required=True, dest="runs", metavar="JSON",
                        help="one measurement: JSON of peers_bench, then of node/bench.js")
    parser.add_argument("--build", type=pathlib.Path, required=True, help="build folder, for compiler and flags")
    parser.add_argument("--out", type=pathlib.Path, required=True, help="folder for bench.json and performance.svg")
    parser.add_argument("--write-docs", action="store_true")
    arguments = parser.parse_args()

    runs = [read_run(paths) for paths in arguments.runs]
    facts = facts_about(runs, arguments.build, any(len(paths) > 1 for paths in arguments.runs))
    results = [{"job": target.job, "input": target.label, "what": target.subject(),
                "target": target.limit(), "outcome": outcome(verdicts),
                "measured": [text for _, text in verdicts]} for target, verdicts in judged(runs)]
    arguments.out.mkdir(parents=True, exist_ok=True)
    (arguments.out / "bench.json").write_text(
        json.dumps({"facts": facts, "targets": results,
                    "runs": [{"yardstick_nanoseconds": yardstick(run), "load_before": run.load_before,
                              "load_after": run.load_after, "rows": run.rows} for run in runs]}, indent=1) + "\n",
        encoding="utf-8")
    draw(runs[0], arguments.out / "performance.svg")
    for number, run in enumerate(runs, 1):
        if len(runs) > 1:
            print(f"==== Run {number} of {len(runs)}")
        print_table(run)
        print(f"\nLoad of the machine (the run itself adds 1): {load_text(run)}\n")
    print(f"Written: {arguments.out / 'bench.json'}, {arguments.out / 'performance.svg'}")
    if arguments.write_docs:
        write_docs(runs, facts)
    print_targets(runs)


if __name__ == "__main__":
    main()
