"""The whole table, for the terminal and for Markdown."""

from results import BASELINE, OURS, growths, part_of, path_of
from targets import figure


def ratio_text(ratio):
    return f"{ratio:.1f}" if ratio >= 1 else f"{ratio:.2f}"


def own_figures(candidates):
    """Nanoseconds on the best path and on the baseline; empty where not measured."""
    found = {row["candidate"]: figure(row["nanoseconds"]) for row in candidates}
    return found.get(OURS, ""), found.get(BASELINE, "")


def peers_texts(candidates):
    """What stands beside the library's figures, in words."""
    texts = []
    for row in candidates:
        part = part_of(row["candidate"])
        if part:
            path = "SSE2 " if path_of(row["candidate"]) == BASELINE else ""
            texts.append(f"{path}{part}: {figure(row['nanoseconds'])} (we take {row['share']:.2f} times that)")
        elif row["ratio"] is not None:
            ratios = [row["ratio"]] + ([row["baseline_ratio"]] if row["baseline_ratio"] is not None else [])
            texts.append(f"{row['candidate']}: {figure(row['nanoseconds'])} ({'; '.join(map(ratio_text, ratios))})")
    return texts


def metres_text(metres):
    for factor, unit in ((1e-3, "km"), (1, "m"), (1e3, "mm"), (1e6, "µm")):
        if metres * factor >= 1:
            return f"{metres * factor:.3g} {unit}"
    return f"{metres * 1e9:.3g} nm"


def accuracy_markdown(run):
    """How far single distances lie from the exact ones at most."""
    errors = {}
    labels = []
    for row in run.rows:
        if "largest_error" in row and row["candidate"] != BASELINE:
            errors.setdefault(row["candidate"], {})[row["input"]] = metres_text(row["largest_error"])
            if row["input"] not in labels:
                labels.append(row["input"])
    if not errors:
        return []
    lines = ["### Accuracy", "", "Largest deviation of the 1024 distances of each input from GeographicLib's `GeodesicExact`.", "",
             "| candidate | " + " | ".join(labels) + " |", "|---|" + "---:|" * len(labels)]
    for candidate, by_input in errors.items():
        lines.append(f"| {candidate} | " + " | ".join(by_input.get(label, "") for label in labels) + " |")
    return lines + [""]


def growth_text(growth, label):
    if label not in growth:
        return ""
    per_element, order = growth[label]
    return f"{per_element:.2f}, size^{order:.2f}"


def print_table(run):
    print(f"{'input':<46}{'unit':<9}{'vorel ns':>10}{'SSE2 ns':>10}   peer: ns (its time over ours; over SSE2)")
    for job, inputs in run.by_job().items():
        print(f"\n{job}")
        growth = growths(inputs)
        for label, candidates in inputs:
            best, baseline = own_figures(candidates)
            texts = peers_texts(candidates)
            if label in growth:
                texts.append("growth " + growth_text(growth, label))
            print(f"  {label:<44}{candidates[0]['unit']:<9}{best:>10}{baseline:>10}   {'; '.join(texts)}")


def table_markdown(run):
    lines = ["| job | input | per | ours, ns | on SSE2, ns | peer: ns (ratio; to SSE2) | growth |",
             "|---|---|---|---:|---:|---|---:|"]
    for job, inputs in run.by_job().items():
        growth = growths(inputs)
        for label, candidates in inputs:
            best, baseline = own_figures(candidates)
            lines.append(f"| `{job}` | {label} | {candidates[0]['unit']} | {best} | {baseline} | "
                         f"{'<br>'.join(peers_texts(candidates))} | {growth_text(growth, label)} |")
    return lines
