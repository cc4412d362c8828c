"""The project's own targets and whether the measurements meet them.

Ratios are what counts. The times were set on a machine whose haversine loop takes 32.6 ns per pair: that loop is measured
in every run, and a time is also shown scaled by it. Such a conversion is rough, for machines differ in more than one factor.
"""

import dataclasses

from results import BASELINE, OURS, growths

YARDSTICK = ("DistanceTo", "near: 100 m", "haversine")
YARDSTICK_NANOSECONDS = 32.6

LINEAR_ORDER = 1.1  # a linear job that leaves the caches on its way to a million vertices stays below; n log n does not


def figure(value):
    return f"{value:.3g}" if value < 100 else f"{value:,.0f}"


@dataclasses.dataclass
class Time:
    """Scaled nanoseconds per item at most."""
    job: str
    label: str
    at_most: float
    stretch: float = None
    path: str = OURS

    def measure(self, run):
        """What it came to, met or missed, in words; None when it was not measured."""
        row, loop = run.find(self.job, self.label, self.path), yardstick(run)
        if not row or not loop:
            return None
        scaled = row["nanoseconds"] * YARDSTICK_NANOSECONDS / loop
        return scaled <= self.at_most, f"{figure(row['nanoseconds'])} ns, scaled {figure(scaled)}"

    def subject(self):
        return "time" if self.path == OURS else "time on SSE2"

    def limit(self):
        return f"at most {figure(self.at_most)}" + (f", stretch {figure(self.stretch)}" if self.stretch else "")


@dataclasses.dataclass
class Ratio:
    """The fastest run of the best of some peers takes at least so many times as long as the library."""
    job: str
    label: str
    at_least: float
    name: str
    peers: tuple = None

    def measure(self, run):
        rows = [row for row in (run.find(self.job, self.label, peer) for peer in self.peers or (self.name,))
                if row and row["ratio"] is not None]
        if not rows:
            return None
        best = min(rows, key=lambda row: row["ratio"])
        notes = [best["candidate"]] if self.peers and best["candidate"] != self.name else []
        if best["baseline_ratio"] is not None:
            notes.append(f"on SSE2 {best['baseline_ratio']:.3g}")
        return best["ratio"] >= self.at_least, f"{best['ratio']:.3g}" + (f" ({', '.join(notes)})" if notes else "")

    def subject(self):
        return f"times as fast as {self.name}"

    def limit(self):
        return f"at least {self.at_least:g}"


@dataclasses.dataclass
class Share:
    """The function takes at most so many times as long as its parts."""
    job: str
    label: str
    at_most: float
    part: str

    def measure(self, run):
        own = run.find(self.job, self.label, f"{OURS}: {self.part}")
        if own is None:
            return None
        base = run.find(self.job, self.label, f"{BASELINE}: {self.part}")
        return own["share"] <= self.at_most, f"{own['share']:.2f}" + (f" (on SSE2 {base['share']:.2f})" if base else "")

    def subject(self):
        return f"times as long as the {self.part}"

    def limit(self):
        return f"at most {self.at_most:g}"


@dataclasses.dataclass
class Linear:
    """No job grows faster than linear with the size of its input."""
    job: str = "every job"
    label: str = "smallest to largest size"

    def measure(self, run):
        orders = [(order, f"{job}, {label}") for job, inputs in run.by_job().items()
                  for label, (_, order) in growths(inputs).items()]
        if not orders:
            return None
        order, case = max(orders)
        return order <= LINEAR_ORDER, f"size^{order:.2f} ({case})"

    def subject(self):
        return "growth"

    def limit(self):
        return "linear"


def all_targets():
    route = "route of 10,000"
    targets = [
        Time("DistanceTo", "near: 100 m", 11),
        Ratio("DistanceTo", "near: 100 m", 3, "haversine"),
        Ratio("DistanceTo", "near: 100 m", 16, "Boost vincenty"),
        Ratio("DistanceTo", "near: 100 m", 40, "GeographicLib"),
        Time("GetDistance", route, 2.7),
        Time("GetDistance", route, 5.2, path=BASELINE),
        Ratio("GetDistance", route, 12, "Boost haversine"),
        Ratio("GetDistance", route, 65, "Boost vincenty"),
        Ratio("GetDistance", route, 160, "GeographicLib"),
        Ratio("GetDistance", route, 5, "S2"),
        Ratio("GetDistance", route, 1, "GEOS planar"),
        Time("GetDistanceByVector, 3-D", route, 3.7),
        Time("GetDistanceByVector, 3-D", route, 7.2, path=BASELINE),
        Ratio("GetDistanceByVector, 3-D", route, 7, "haversine"),
        Time("CalcPointsInPolyline", "50 m, " + route, 6.5),
        Time("CalcPointsInPolyline", "50 m, " + route, 10.5, path=BASELINE),
        Ratio("CalcPointsInPolyline", "50 m, " + route, 13, "Boost haversine"),
        Ratio("CalcPointsInPolyline", "50 m, " + route, 6, "S2 walk"),
    ]
    for label, best, baseline in (("small view, " + route, 0.35, 0.7), ("half the " + route, 0.7, 0.85)):
        targets += [Time("CutPolyline", label, best), Time("CutPolyline", label, baseline, path=BASELINE),
                    Ratio("CutPolyline", label, 2.8, "GEOS"),
                    Ratio("CutPolyline", label, 7, "Boost")]
    targets += [
        Share("GetInterpolateShapePoints", "city view, " + route, 1.2, "sum of its parts"),
        Time("IsPointInPolygon", "star of 10", 12),
        Ratio("IsPointInPolygon", "star of 10", 1, "Boost", ("Boost within", "Boost covered_by")),
        Time("IsPointInPolygon", "star of 100", 45),
        Ratio("IsPointInPolygon", "star of 100", 1, "GEOS indexed"),
        Time("IsPointInPolygon", "star of 1,000", 330),
        Ratio("IsPointInPolygon", "star of 1,000", 1.4, "the best index", ("GEOS indexed", "S2 loop", "S2 index")),
    ]
    for label in ("lane of 10", "lane of 100"):
        targets += [Time("ProjectionPosToLinesDistance", label, 12, stretch=5),
                    Ratio("ProjectionPosToLinesDistance", label, 2.5, "GEOS project"),
                    Ratio("ProjectionPosToLinesDistance", label, 3, "S2", ("S2 polyline",))]
    targets += [
        Time("PanLinePoints", "lane of 100", 108, stretch=55),
        Ratio("PanLinePoints", "lane of 100", 8, "GEOS offset curve"),
        Ratio("PanLinePoints", "lane of 100", 22, "Boost buffer"),
        Time("PreProcessRoutePoints", "200 m, " + route, 8),
        Ratio("PreProcessRoutePoints", "200 m, " + route, 4, "plain on haversine"),
    ]
    for job in ("GetDistanceAndCache", "ChoosePointsInPolyline, cut half way", "ChoosePointsInPolyline, cut at the far end",
                "ChoosePointsInPolylineWithMaxLength, half way", "ChoosePointsInPolylineWithMaxLength, far end",
                "HandleBoundaryDataByDistance, half", "HandleBoundaryDataByDistance, whole, all marked"):
        targets.append(Share(job, route, 1.5, "bare length"))
    return targets + [Linear()]


def yardstick(run):
    """Nanoseconds of the loop by which times are scaled."""
    row = run.find(*YARDSTICK)
    return row["nanoseconds"] if row else None


def judged(runs):
    """(target, [(met, text) of each run]) of every target that could be measured."""
    results = [(target, [target.measure(run) for run in runs]) for target in all_targets()]
    return [(target, verdicts) for target, verdicts in results if all(verdicts)]


def outcome(verdicts):
    met = [str(number) for number, (is_met, _) in enumerate(verdicts, 1) if is_met]
    if len(met) == len(verdicts):
        return "met"
    return "met in run " + ", ".join(met) + " only" if met else "missed"


def scale_text(runs):
    values = " and ".join(figure(yardstick(run)) for run in runs)
    return (f"Times were set on a machine whose haversine loop takes {YARDSTICK_NANOSECONDS} ns per pair; here it took "
            f"{values} ns. A time counts as met when it is so after scaling by that factor: a rough conversion, for "
            f"machines differ in more than one. Ratios need none and count more; they are those of the best path.")


def summary(results):
    kinds = [outcome(verdicts) for _, verdicts in results]
    return ", ".join(f"{kinds.count(kind)} {kind}" for kind in sorted(set(kinds)))


def print_targets(runs):
    """Ends the run: what is missed, then what is met, one line per input."""
    results = judged(runs)
    if not results:
        return
    print(f"\n{scale_text(runs)}")
    for title, is_wanted in (("Targets missed", lambda kind: kind != "met"), ("Targets met", lambda kind: kind == "met")):
        lines = {}
        for target, verdicts in results:
            kind = outcome(verdicts)
            if is_wanted(kind):
                values = " and ".join(text for _, text in verdicts)
                note = f", {kind}" if kind not in ("met", "missed") else ""
                lines.setdefault(f"{target.job}, {target.label}", []).append(
                    f"{target.subject()} {values} [{target.limit()}{note}]")
        if lines:
            print(f"\n{title}, with the limit in brackets:")
            for case, texts in lines.items():
                print(f"  {case}: {'; '.join(texts)}")
    print(f"\nTargets: {summary(results)}")


def targets_markdown(runs):
    results = judged(runs)
    if not results:
        return []
    heads = ["measured"] if len(runs) == 1 else [f"run {number}" for number in range(1, len(runs) + 1)]
    lines = ["### Targets", "", scale_text(runs), "", f"{summary(results).capitalize()}.", "",
             "| job | input | what | target | " + " | ".join(heads) + " | |",
             "|---|---|---|---|" + "---|" * (len(runs) + 1)]
    for target, verdicts in results:
        job = target.job if isinstance(target, Linear) else f"`{target.job}`"
        lines.append(f"| {job} | {target.label} | {target.subject()} | {target.limit()} | "
                     + " | ".join(text for _, text in verdicts) + f" | {outcome(verdicts)} |")
    return lines + [""]
