#!/usr/bin/env python3
"""Checks that every public function of the geometry class is called by a fuzz target and stands in the table of docs/testing.md.

The functions are read from the class header, the calls from the symbols that the targets' object files ask for, so that
overloads are told apart.
"""

import argparse
import pathlib
import re
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tools"))
from parameter_list import split_parameters

HEADER = "src/map_utils/vorel_geometry_algorithm.h"
TABLE = "docs/testing.md"
CLASS = "vorel::VorelGeometryAlgorithm::"
# Not in the class, and reached through their own headers.
OTHERS = {
    "GeoCoordinate::DistanceTo(GeoCoordinate)": "tarvo::GeoCoordinate::DistanceTo",
    "GeoUtils::GetRadianNorth(GeoCoordinate, GeoCoordinate)": "tarvo::kx::GeoUtils::GetRadianNorth",
    "CoordinateUtil::DistanceOfGcj02Pos(double, double, double, double)": "tarvo::CoordinateUtil::DistanceOfGcj02Pos",
}


def plain_type(text):
    """A type without its qualifiers, namespaces and allocators, so that header and symbols spell it alike."""
    text = re.sub(r"\bconst\b|\b(std|__cxx11|__debug|__1|tarvo|vorel|HAD)::|&", "", text)
    text = re.sub(r"\bunsigned int\b", "unsigned", text)
    text = re.sub(r"\s*([<>,*])\s*", r"\1", text).strip()
    text = text.replace("basic_string<char,char_traits<char>,allocator<char>>", "string")
    while ",allocator<" in text:  # its argument may hold templates of its own
        start = text.index(",allocator<")
        end, depth = start + len(",allocator<"), 1
        while depth:
            depth += {"<": 1, ">": -1}.get(text[end], 0)
            end += 1
        text = text[:start] + text[end:]
    return text


def declared(header):
    """name(types) of each public function that is not deleted; the one template counts by its specialisation."""
    text = re.sub(r"//[^\n]*", "", header)
    functions = set()
    pattern = r"(?:static|template <>\s+VOREL_EXPORT)\s+([\w:<>]+(?:<[^;{}()]*>)?)\s+(?:VorelGeometryAlgorithm::)?(\w+)(?:<[^()]*>)?\s*\(([^()]*)\)\s*(= delete)?;"
    for match in re.finditer(pattern, text):
        if match.group(4):
            continue
        types = [plain_type(re.sub(r"\s*\b\w+\s*$", "", parameter)) for parameter in split_parameters(match.group(3))]
        functions.add(f"{match.group(2)}({', '.join(types)})")
    return functions


def called(nm, target):
    """name(types) of each function of the class that an object file asks for."""
    symbols = subprocess.run([nm, "-C", "--undefined-only", target], check=True, capture_output=True, text=True).stdout
    functions = set()
    for line in symbols.splitlines():
        symbol = line.strip().removeprefix("U ")
        for name, start in OTHERS.items():
            if symbol.startswith(start):
                functions.add(name)
        if CLASS not in symbol:
            continue
        symbol = symbol[symbol.index(CLASS) + len(CLASS):]
        match = re.match(r"(\w+)(?:<.*?>)?\((.*)\)$", re.sub(r"(IsPointInPolygon)<.*?>(?=\()", r"\1", symbol))
        if match:
            functions.add(f"{match.group(1)}({', '.join(plain_type(each) for each in split_parameters(match.group(2)))})")
    return functions


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--nm", required=True)
    parser.add_argument("--root", required=True, type=pathlib.Path)
    parser.add_argument("--print-table", action="store_true", help="print the rows that docs/testing.md should have")
    parser.add_argument("objects", nargs="+")
    arguments = parser.parse_args()

    functions = declared((arguments.root / HEADER).read_text())
    if len(functions) < 60:
        sys.exit(f"only {len(functions)} functions found in {HEADER}: the check has to follow the header's form")
    functions |= set(OTHERS)
    calls = {}
    for target in arguments.objects:
        subject = re.sub(r"_fuzz\..*$", "", pathlib.Path(target).name)
        for function in called(arguments.nm, target):
            calls.setdefault(function, set()).add(subject)
    rows = {f"| `{function}` | {', '.join(sorted(calls[function]))} |" for function in functions if function in calls}
    if arguments.print_table:
        print("\n".join(sorted(rows)))
        return

    failures = [f"{function}: called by no fuzz target" for function in sorted(functions - set(calls))]
    table = {line for line in (arguments.root / TABLE).read_text().splitlines() if re.match(r"\| `\w+.*\(", line)}
    failures += [f"{TABLE} lacks the row {row}" for row in sorted(rows - table)]
    failures += [f"{TABLE} has a row that is not so: {row}" for row in sorted(table - rows)]
    print("\n".join(failures) if failures else f"{len(functions)} functions, each in a fuzz target and in {TABLE}")
    sys.exit(1 if failures else 0)


if __name__ == "__main__":
    main()
