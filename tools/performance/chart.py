"""The chart: for one typical input of each job the time of every candidate over the library's."""

from results import BASELINE, OURS, fail
from tables import ratio_text
from targets import figure

CASES = [
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


def draw(run, path):
    """One bar per candidate of each case, on a logarithmic axis; a mark in it where the bar ends on the baseline path."""
    try:
        import matplotlib
        matplotlib.use("Agg")
        from matplotlib import pyplot
    except ImportError:
        fail("the chart needs matplotlib (Debian package python3-matplotlib)")
    matplotlib.rcParams["svg.hashsalt"] = "performance"  # the same bytes for the same figures
    bars, ticks = [], []
    position = 0.0
    by_job = run.by_job()
    for job, wanted in CASES:
        candidates = next((rows for label, rows in by_job.get(job, []) if label == wanted), None)
        if not candidates:
            continue
        own = {row["candidate"]: row for row in candidates}
        text = f"{job}, {wanted}: {figure(own[OURS]['nanoseconds'])} ns per {own[OURS]['unit']}"
        if BASELINE in own:
            text += f", SSE2 {figure(own[BASELINE]['nanoseconds'])}"
        ticks.append((position, text))
        position += 1.0
        for row in sorted((row for row in candidates if row["ratio"]), key=lambda row: row["ratio"]):
            bars.append((position, row))
            position += 1.0
        position += 0.6
    if not bars:
        fail("nothing to draw: no candidate stands beside the library")
    ratios = [row["ratio"] for _, row in bars]
    chart, axes = pyplot.subplots(figsize=(9, 0.19 * position + 1.2))
    axes.barh([at for at, _ in bars], [ratio - 1 for ratio in ratios], left=1,
              color=["#3b7dd8" if ratio >= 1 else "#c0504d" for ratio in ratios], height=0.75)
    for at, row in bars:
        axes.text(max(row["ratio"], row["baseline_ratio"] or 1, 1) * 1.06, at,
                  f"{row['candidate']}  {ratio_text(row['ratio'])}", va="center", fontsize=7)
    marked = [(at, row["baseline_ratio"]) for at, row in bars if row["baseline_ratio"]]
    if marked:
        axes.scatter([ratio for _, ratio in marked], [at for at, _ in marked], marker="D", s=9, color="#f2b134",
                     edgecolors="#333333", linewidths=0.4, zorder=3, label="the same over our SSE2 path")
        axes.legend(loc="lower right", fontsize=7.5, frameon=False)
    left = 0.8 * min([0.4] + ratios + [ratio for _, ratio in marked])
    axes.axvline(1, color="#333333", linewidth=1)
    for at, text in ticks:
        axes.text(left, at, text, va="center", fontsize=7.5, fontweight="bold", zorder=4,
                  bbox={"facecolor": "white", "edgecolor": "none", "pad": 1})
    axes.set_xscale("log")
    axes.set_xlim(left, 3 * max(ratios))
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
