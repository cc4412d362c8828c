#!/usr/bin/env python3
"""Puts the results of the benchmark into one table, one JSON file and one chart.

    tools/bench_table.py build/bench/native.json [build/bench/node.json] --build build/bench --out out [--write-docs]

A candidate's figure is the median of its repetitions. The ratio says how many times as long a peer takes as the
library: the peer's fastest repetition over the library's median. Where the library's own parts stand beside a function
("vorel: ..."), the share says how many times as long the function takes as they do, median over median. --write-docs also renews what stands between the
markers in docs/performance.md, and docs/pictures/performance.svg.
"""

import argparse
import datetime
import json
import pathlib
import platform
import re
import statistics
import subprocess
import sys

OURS = "vorel"
ROOT = pathlib.Path(__file__).resolve().parent.parent
BEGIN, END = "<!-- measured: begin -->", "<!-- measured: end -->"
SECONDS_PER_UNIT = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}
DEBIAN_PACKAGES = ["libboost-dev", "libgeos-dev", "libgeographiclib-dev", "libs2-dev", "libproj-dev",
                   "libbenchmark-dev"]
# The cases of the chart: one typical input per job.
CHART = [
    ("DistanceTo", "near: 100 m"),
    ("GetDistance", "route of 10,000"),
    ("GetDistanceByVector, 3-D", "route of 10,000"),
    ("CalcPointsInPolyline", "50 m, route of 10,000"),
    ("CutPolyline", "small view, route of 10,000"),
    ("CutPolyline", "half the route of 10,000"),
    ("IsPointInPolygon", "star of 10"),
    ("IsPointInPolygon", "star of 100"),
    ("IsPointInPolygon", "star of 1,000"),
    ("ProjectionPosToLinesDistance", "lane of 100"),
    ("PanLinePoints", "lane of 100"),
    ("PreProcessRoutePoints", "200 m, route of 10,000"),
]


def fail(message):
    sys.exit(f"bench_table.py: {message}")


def load(path):
    try:
        return json.loads(pathlib.Path(path).read_text(encoding="utf-8"))
    except (OSError, ValueError) as problem:
        fail(f"{path}: {problem}")


def native_rows(results):
    """Rows of the C++ program: one per candidate, with the seconds of each repetition per item."""
    rows = {}
    for run in results["benchmarks"]:
        if run["run_type"] != "iteration":
            continue
        job, label, candidate = run["run_name"].split("|")
        row = rows.setdefault((job, label, candidate), {
            "job": job, "input": label, "candidate": candidate, "size": run["size"], "items": run["items"],
            "unit": run["label"], "difference": run["difference"], "order": run["family_index"], "seconds": []})
        row["seconds"].append(run["cpu_time"] * SECONDS_PER_UNIT[run["time_unit"]])
    return sorted(rows.values(), key=lambda row: row["order"])  # as registered: the runs come in random order


def with_figures(rows):
    """Adds nanoseconds per item and the ratio to the library's figure for the same case."""
    for row in rows:
        per_item = [1e9 * seconds / row["items"] for seconds in row["seconds"]]
        row["nanoseconds"] = statistics.median(per_item)
        row["fastest_nanoseconds"] = min(per_item)
    ours = {(row["job"], row["input"]): row["nanoseconds"] for row in rows if row["candidate"] == OURS}
    for row in rows:
        own = ours.get((row["job"], row["input"]))
        row["ratio"] = row["share"] = None
        if own and row["candidate"].startswith(OURS + ": "):
            row["share"] = own / row["nanoseconds"]
        elif own and row["candidate"] != OURS:
            row["ratio"] = row["fastest_nanoseconds"] / own
    return rows


def cases(rows):
    """The rows by job and input, in the order of their first appearance; the library stands first in each."""
    grouped = {}
    for row in rows:
        grouped.setdefault((row["job"], row["input"]), []).append(row)
    by_job = {}
    for (job, label), candidates in grouped.items():
        by_job.setdefault(job, []).append((label, candidates))
    return by_job


def figure(value):
    return f"{value:.3g}" if value < 100 else f"{value:,.0f}"


def ratio_text(ratio):
    return f"{ratio:.1f}" if ratio >= 1 else f"{ratio:.2f}"


def peers_texts(candidates):
    """What stands beside the library's figure, in words."""
    texts = []
    for row in candidates:
        if row["ratio"] is not None:
            texts.append(f"{row['candidate']}: {figure(row['nanoseconds'])} ({ratio_text(row['ratio'])})")
        elif row["share"] is not None:
            name = row["candidate"].split(": ")[1]
            texts.append(f"{name}: {figure(row['nanoseconds'])} (we take {row['share']:.2f} times that)")
    return texts


def growths(inputs):
    """Growth of the time per element of the input from the smallest to the largest size, of inputs whose names differ only in the
    number, under the largest one's name. Linear growth gives 1, slower growth less."""
    families = {}
    for label, candidates in inputs:
        ours = next((row for row in candidates if row["candidate"] == OURS), None)
        if ours:
            family = re.sub(r"(?<= of )[\d,]*\d|(?<=right angles, )[\d,]*\d", "N", label)
            families.setdefault(family, []).append((ours["size"], ours["nanoseconds"] * ours["items"], label))
    result = {}
    for members in families.values():
        members.sort()
        if len(members) > 1 and members[-1][0] > members[0][0]:
            # The time of the whole job over the growth of the input.
            (small, small_time, _), (large, large_time, label) = members[0], members[-1]
            result[label] = (large_time / large) / (small_time / small)
    return result


def print_table(by_job):
    print(f"{'input':<46}{'unit':<9}{'vorel ns':>10}   peer: ns (its time over ours)")
    for job, inputs in by_job.items():
        print(f"\n{job}")
        growth = growths(inputs)
        for label, candidates in inputs:
            own = next((row for row in candidates if row["candidate"] == OURS), None)
            peers = "; ".join(peers_texts(candidates))
            grown = f"; growth {growth[label]:.2f}" if label in growth else ""
            print(f"  {label:<44}{candidates[0]['unit']:<9}{figure(own['nanoseconds']) if own else '-':>10}   "
                  f"{peers}{grown}")


def markdown(by_job, facts):
    lines = [f"Measured {facts['date']} on {facts['machine']}, {facts['system']}; {facts['compiler']}, "
             f"{facts['flags']}; {facts['vector_path']}; {facts['data']}; load of the machine before the run "
             f"{facts['load'][0] if facts['load'] else 'unknown'}.", "",
             "Versions: " + ", ".join(f"{name} {version}" for name, version in facts["versions"].items()) + ".", "",
             "| job | input | per | ours, ns | peer: ns (ratio) | growth |", "|---|---|---|---:|---|---:|"]
    for job, inputs in by_job.items():
        growth = growths(inputs)
        for label, candidates in inputs:
            own = next((row for row in candidates if row["candidate"] == OURS), None)
            peers = "<br>".join(peers_texts(candidates))
            lines.append(f"| `{job}` | {label} | {candidates[0]['unit']} | "
                         f"{figure(own['nanoseconds']) if own else ''} | {peers} | "
                         f"{format(growth[label], '.2f') if label in growth else ''} |")
    return "\n".join(lines)


def draw(by_job, path):
    """One bar per candidate of each chosen case: its time over the library's, on a logarithmic axis."""
    try:
        import matplotlib
        matplotlib.use("Agg")
        from matplotlib import pyplot
    except ImportError:
        fail("the chart needs matplotlib (Debian package python3-matplotlib)")
    matplotlib.rcParams["svg.hashsalt"] = "performance"  # the same bytes for the same figures
    bars, ticks = [], []
    position = 0.0
    for job, wanted in CHART:
        candidates = next((rows for label, rows in by_job.get(job, []) if label == wanted), None)
        if not candidates:
            continue
        ours = next(row for row in candidates if row["candidate"] == OURS)
        ticks.append((position, f"{job}, {wanted}: {figure(ours['nanoseconds'])} ns per {ours['unit']}"))
        position += 1.0
        for row in sorted((row for row in candidates if row["ratio"]), key=lambda row: row["ratio"]):
            bars.append((position, row["ratio"], f"{row['candidate']}  {ratio_text(row['ratio'])}"))
            position += 1.0
        position += 0.6
    if not bars:
        fail("nothing to draw: no candidate stands beside the library")
    chart, axes = pyplot.subplots(figsize=(9, 0.19 * position + 1.2))
    axes.barh([at for at, _, _ in bars], [ratio - 1 for _, ratio, _ in bars], left=1,
              color=["#3b7dd8" if ratio >= 1 else "#c0504d" for _, ratio, _ in bars], height=0.75)
    for at, ratio, text in bars:
        axes.text(max(ratio, 1) * 1.04, at, text, va="center", fontsize=7)
    left = 0.8 * min([0.4] + [ratio for _, ratio, _ in bars])
    axes.axvline(1, color="#333333", linewidth=1)
    for at, text in ticks:
        axes.text(left, at, text, va="center", fontsize=7.5, fontweight="bold",
                  bbox={"facecolor": "white", "edgecolor": "none", "pad": 1})
    axes.set_xscale("log")
    axes.set_xlim(left, 3 * max(ratio for _, ratio, _ in bars))
    axes.set_ylim(position, -1)
    axes.set_yticks([])
    axes.xaxis.set_major_formatter(lambda value, _: f"{value:g}")
    axes.set_xlabel("time of the peer / time of this library (logarithmic; left of the line the peer is faster)",
                    fontsize=8)
    for side in ("top", "left", "right"):
        axes.spines[side].set_visible(False)
    chart.tight_layout()
    chart.savefig(path, metadata={"Date": None})
    pyplot.close(chart)


def first_line(command):
    try:
        return subprocess.run(command, capture_output=True, text=True, check=True).stdout.strip().splitlines()[0]
    except (OSError, subprocess.CalledProcessError, IndexError):
        return ""


def cached(build, name):
    """A variable of the build's CMake cache."""
    found = re.search(rf"^{name}:\w+=(.*)$", (build / "CMakeCache.txt").read_text(encoding="utf-8"), re.MULTILINE)
    return found.group(1) if found else ""


def facts_about(native, rows, build, has_node):
    cpu_file = pathlib.Path("/proc/cpuinfo")
    cpu = re.search(r"model name\s*:\s*(.*)", cpu_file.read_text() if cpu_file.exists() else "")
    versions = {"vorel": re.sub(r"\s+", " ", cached(build, "CMAKE_PROJECT_VERSION"))}
    for package in DEBIAN_PACKAGES:
        version = first_line(["dpkg-query", "-W", "-f", "${Version}", package])
        if version:
            versions[package] = version
    if has_node:
        versions["node"] = first_line(["node", "--version"]).lstrip("v")
        manifest = json.loads((build / "node" / "package.json").read_text(encoding="utf-8"))
        versions["turf"] = manifest["dependencies"]["@turf/length"]
        versions["cheap-ruler"] = manifest["dependencies"]["cheap-ruler"]
    paths = sorted({row["candidate"] for row in rows if row["candidate"].startswith(OURS + ", ")
                    and ":" not in row["candidate"]})
    real = any("real" in row["input"] for row in rows)
    return {
        "date": datetime.date.today().isoformat(),
        "machine": f"{cpu.group(1) if cpu else platform.machine()}, {native['context']['num_cpus']} cores",
        "load": native["context"].get("load_avg", []),
        "system": re.sub(r'.*="?([^"]*)"?$', r"\1", first_line(["grep", "PRETTY_NAME", "/etc/os-release"])),
        "compiler": first_line([cached(build, "CMAKE_CXX_COMPILER"), "--version"]),
        "flags": cached(build, "CMAKE_CXX_FLAGS_RELEASE") + " -ffp-contract=off -fno-math-errno",
        "vector_path": "the best vector path of the machine" + (" and " + ", ".join(paths) if paths else ""),
        "data": "generated lines" + (" and real ones" if real else ""),
        "versions": versions,
    }


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("results", nargs="+", help="JSON of peers_bench, then of node/bench.js")
    parser.add_argument("--build", type=pathlib.Path, required=True, help="build folder, for compiler and flags")
    parser.add_argument("--out", type=pathlib.Path, required=True, help="folder for bench.json and performance.svg")
    parser.add_argument("--write-docs", action="store_true")
    arguments = parser.parse_args()

    native = load(arguments.results[0])
    rows = native_rows(native)
    for path in arguments.results[1:]:
        rows += load(path)
    if not rows:
        fail(f"{arguments.results[0]}: no measurements")
    with_figures(rows)
    by_job = cases(rows)
    facts = facts_about(native, rows, arguments.build, len(arguments.results) > 1)

    arguments.out.mkdir(parents=True, exist_ok=True)
    (arguments.out / "bench.json").write_text(json.dumps({"facts": facts, "rows": rows}, indent=1) + "\n",
                                              encoding="utf-8")
    draw(by_job, arguments.out / "performance.svg")
    print_table(by_job)
    print(f"\nWritten: {arguments.out / 'bench.json'}, {arguments.out / 'performance.svg'}")
    if arguments.write_docs:
        page = ROOT / "docs" / "performance.md"
        text = page.read_text(encoding="utf-8")
        if text.count(BEGIN) != 1 or text.count(END) != 1:
            fail(f"{page}: the markers '{BEGIN}' and '{END}' must stand there once each")
        before, rest = text.split(BEGIN)
        after = rest.split(END)[1]
        picture = ROOT / "docs" / "pictures" / "performance.svg"
        picture.parent.mkdir(parents=True, exist_ok=True)
        draw(by_job, picture)
        page.write_text(f"{before}{BEGIN}\n{markdown(by_job, facts)}\n{END}{after}", encoding="utf-8")
        print(f"Renewed: {page.relative_to(ROOT)}, {picture.relative_to(ROOT)}")


if __name__ == "__main__":
    main()
