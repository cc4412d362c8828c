#!/usr/bin/env python3
"""Gathers the contracts that the headers' comments state into the table of docs/contracts.md.

A comment states its contract in uniform lines: `@param` and `@return`, which begin with a unit, `@throws`, and at its end
the labels below. `--check` says which comment lacks what it must have, and whether the table is the headers' own;
`--write` renews the table.
"""

import argparse
import pathlib
import re
import sys

from parameter_list import split_parameters

ROOT = pathlib.Path(__file__).resolve().parent.parent
PAGE = "docs/contracts.md"
BEGIN = "<!-- The table is written by tools/contracts.py from the headers' comments. -->"
END = "<!-- End of the table. -->"
HEADERS = [
    ("src/map_utils/vorel_geometry_algorithm.h", "VorelGeometryAlgorithm"),
    ("base/geo_coordinate.h", "GeoCoordinate"),
    ("base/geo_utils.h", "kx::GeoUtils"),
    ("base/coordinate_util.h", "CoordinateUtil"),
]
COLLABORATORS = "Distance and direction of two points"
LABELS = ["Ends", "Output", "NaN", "Unchecked", "Aliasing", "Allocates", "Cost", "Formula"]
COLUMNS = ["Function", "Units", "Ends and clamping", "Output", "NaN gives", "Throws", "Unchecked", "Aliasing", "Allocates", "Cost"]
# How a unit begins. "flag" and "text" have none, and say so.
UNITS = ("degrees", "metres", "radians", "square degrees", "index", "indices", "number", "fraction", "position code",
         "unit of", "any unit", "flag", "text", "enumerator")
OUTPUT_VERBS = ("appended", "cleared", "overwritten", "grows", "not modified")


class Function:
    def __init__(self, family, name, parameters, returns, comment, header, line):
        self.family, self.name, self.parameters, self.returns = family, name, parameters, returns
        self.place = f"{header}:{line}: {name}"
        self.same = comment[0].startswith("The same for") and not any(line.startswith("@param") for line in comment)
        self.documented = {}  # parameter name -> text
        self.result, self.throws, self.labels = "", "", {}
        self.read(comment)

    def read(self, comment):
        target = None
        for line in comment:
            command = re.match(r"@(param|return|throws)\s+(.*)", line)
            label = re.match(rf"({'|'.join(LABELS)}): (.*)", line)
            if command and command.group(1) == "param":
                names = re.match(r"(\w+(?:, \w+)*)\s+(.*)", command.group(2))
                target = ("param", names.group(1).split(", "))
                text = names.group(2)
            elif command:
                target, text = (command.group(1), None), command.group(2)
            elif label:
                target, text = ("label", label.group(1)), label.group(2)
            elif not line.strip():
                target = None
                continue
            else:
                text = line.strip()
            if target is None:
                continue
            kind, key = target
            if kind == "param":
                for name in key:
                    self.documented[name] = (self.documented.get(name, "") + " " + text).strip()
            elif kind == "return":
                self.result = (self.result + " " + text).strip()
            elif kind == "throws":
                self.throws = (self.throws + " " + text).strip()
            else:
                self.labels[key] = (self.labels.get(key, "") + " " + text).strip()

    def outputs(self):
        return [name for kind, name in self.parameters if kind.endswith("&") and not kind.startswith("const ")]

    def growing(self):
        """The types of the containers that the function may make longer."""
        types = [kind for kind, name in self.parameters if name in self.outputs()] + [self.returns]
        return [kind for kind in types if "not modified" not in self.labels.get("Output", "")
                and ("vector" in kind or "BoundaryData" in kind)]

    def may_share(self):
        """Whether a container that grows could be, or hold, an argument that is read."""
        inner = [re.sub(r"std::vector|[<>&*]|const |unsigned int|int", "", kind).strip() for kind in self.growing()]
        read = " ".join(kind + " " for kind, name in self.parameters if name not in self.outputs() and kind.endswith(("&", "*")))
        return any(kind and re.search(rf"\b{kind}[ >&*]", read) for kind in inner)

    def complaints(self):
        for name in [name for kind, name in self.parameters if name not in self.documented]:
            yield f"no @param for {name}"
        for name in self.documented:
            if name not in [parameter for kind, parameter in self.parameters]:
                yield f"@param for {name}, which is no parameter"
            elif not self.documented[name].startswith(UNITS):
                yield f"@param {name} does not begin with a unit"
        if self.returns not in ("bool", "void") and not self.result.startswith(UNITS):
            yield "@return does not begin with a unit"
        for label in ["NaN", "Cost"]:
            if label not in self.labels:
                yield f"no line '{label}:'"
        if self.outputs():
            output = self.labels.get("Output", "")
            for name in self.outputs():
                if f"`{name}`" not in output:
                    yield f"'Output:' does not name {name}"
            if not any(verb in output for verb in OUTPUT_VERBS):
                yield f"'Output:' has none of: {', '.join(OUTPUT_VERBS)}"
        elif "Output" in self.labels:
            yield "'Output:' without an output"
        if self.growing() and "Allocates" not in self.labels:
            yield "makes a container longer without a line 'Allocates:'"
        if self.outputs() and self.may_share() and "Aliasing" not in self.labels:
            yield "makes a container longer without a line 'Aliasing:'"
        for name, text in self.labels.items():
            if not text.endswith("."):
                yield f"'{name}:' has no full stop at its end"

    def units(self):
        names_of = {}  # unit -> the parameters that have it, in the order of the first ones
        for kind, name in self.parameters:
            names_of.setdefault(short_unit(self.documented[name]), []).append(f"`{name}`")
        texts = [f"{', '.join(names)} {unit}" for unit, names in names_of.items()]
        if self.returns not in ("bool", "void"):
            texts.append("result " + short_unit(self.result))
        return "; ".join(texts) or "—"

    def title(self, functions):
        prefix = "" if self.family != COLLABORATORS else self.owner + "::"
        names = [name for kind, name in self.parameters]
        twins = [other for other in functions
                 if other is not self and other.name == self.name and [name for kind, name in other.parameters] == names]
        text = f"`{prefix}{self.name}({', '.join(names)})`"
        if twins:
            text += " with heights" if any("GeoCoordinateZ" in kind for kind, name in self.parameters) else " without heights"
        return text

    def row(self, functions):
        def label(name, default="—"):
            return self.labels.get(name, default).rstrip(".")

        cells = [self.title(functions), self.units(), label("Ends"), label("Output", "the result"), label("NaN"),
                 self.throws or "nothing", label("Unchecked", "nothing"), label("Aliasing", "free"),
                 label("Allocates", "nothing"), label("Cost")]
        return "| " + " | ".join(cell.replace("|", "\\|") for cell in cells) + " |"


def first_phrase(text):
    """The unit: what stands before the first mark of punctuation outside of brackets."""
    depth = 0
    for i, character in enumerate(text):
        depth += {"(": 1, "[": 1, ")": -1, "]": -1}.get(character, 0)
        if depth == 0 and (character in ",;:" or text[i:].startswith((". ", " ("))):
            return text[:i].rstrip()
    return text.rstrip(".")


def short_unit(text):
    """The unit alone, without what it is measured from."""
    unit = first_phrase(text)
    match = re.match(r"flag|(?:index|indices)(?: in `[^`]+`)?|number of (?:points|vertices|segments|edges)|number|fraction|metres|"
                     r"radians|degrees(?: from north| in \[[^\])]*[\])])?(?! times)", unit)
    return match.group(0).replace("indices", "index") if match else unit


def functions_of(header, owner):
    """The functions that are declared in a class, in order, with the comments above them."""
    lines = (ROOT / header).read_text().split("\n")
    functions, family, comment, found = [], COLLABORATORS, [], False
    i = 0
    while i < len(lines):
        line = lines[i].strip()
        if lines[i] == "};":
            found = False
        i += 1
        if re.match(r"(class|struct) VOREL_EXPORT", line):
            found = bool(re.match(rf"(class|struct) VOREL_EXPORT {owner.split('::')[-1]} ", line))
            comment = []
            continue
        if line.startswith("///"):
            comment.append(line[3:].removeprefix(" "))
            continue
        heading = re.match(r"// ---- (.*?) -+$", line)
        if heading:
            family = heading.group(1)
        if not line or line.startswith("//") or not found:
            comment = []
            continue
        first = i
        declaration = line
        while not re.search(r"[;{]|^};?$|:$", declaration):
            declaration += " " + lines[i].strip()
            i += 1
        match = re.match(r"(?:template <class Polygon[^(]*> )?(?:static )?([\w:<>, ]+?) (\w+)\(([^()]*)\)( const)?( = delete)?;", declaration)
        if match and not declaration.startswith(("constexpr", "template <class Point,")) and match.group(2) != "operator":
            if not comment:
                sys.exit(f"{header}:{first}: {match.group(2)} has no comment")
            # (type, name) of each
            parameters = [tuple(each.rsplit(" ", 1)) for each in split_parameters(match.group(3))]
            function = Function(family, match.group(2), parameters, match.group(1), comment, header, first)
            function.owner = owner
            if function.same:  # what it does not say itself is as above
                above = [other for other in functions if other.name == function.name][-1]
                function.documented = {**above.documented, **function.documented}
                function.labels = {**above.labels, **function.labels}
                function.result = function.result or above.result
                function.throws = function.throws or above.throws
            functions.append(function)
        comment = []
    return functions


def checked_in_debug():
    """The functions in whose bodies a precondition is stated: name -> place."""
    places = {}
    for source in sorted((ROOT / "src/map_utils").glob("*.cpp")):
        name = None
        for number, line in enumerate(source.read_text().split("\n"), 1):
            match = re.match(r"\S.*\bVorelGeometryAlgorithm::(\w+)(?:<.*?>)?\(", line)
            if match:
                name = match.group(1)
            if "VOREL_PRECONDITION" in line and name:
                places.setdefault(name, f"{source.relative_to(ROOT)}:{number}")
    return places


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    action = parser.add_mutually_exclusive_group(required=True)
    action.add_argument("--check", action="store_true")
    action.add_argument("--write", action="store_true")
    arguments = parser.parse_args()

    functions = [function for header, owner in HEADERS for function in functions_of(header, owner)]
    if len(functions) < 60:
        sys.exit(f"only {len(functions)} functions found: the script has to follow the headers' form")
    failures = [f"{function.place}: {complaint}" for function in functions for complaint in function.complaints()]
    for name, place in checked_in_debug().items():
        if not any("Unchecked" in function.labels or "(unchecked)" in function.labels.get("Aliasing", "")
                   for function in functions if function.name == name):
            failures.append(f"{place}: states a precondition that the comment of {name} does not")

    rows = ["| " + " | ".join(COLUMNS) + " |", "|" + "---|" * len(COLUMNS)] if not failures else []
    family = None
    for function in functions if not failures else []:
        if function.family != family:
            family = function.family
            rows.append(f"| **{family}** |" + " |" * (len(COLUMNS) - 1))
        rows.append(function.row(functions))
    table = "\n".join([BEGIN, "", *rows, "", END])

    page = (ROOT / PAGE).read_text()
    if BEGIN not in page or END not in page:
        sys.exit(f"{PAGE}: the marks of the table are missing")
    renewed = page[:page.index(BEGIN)] + table + page[page.index(END) + len(END):]
    if arguments.write and not failures:
        (ROOT / PAGE).write_text(renewed)
    elif not failures and renewed != page:
        old, new = set(page.split("\n")), set(renewed.split("\n"))
        failures += [f"{PAGE}: not what the headers say: {line[:100]}" for line in page.split("\n") if line not in new]
        failures += [f"{PAGE}: missing: {line[:100]}" for line in renewed.split("\n") if line not in old]
        failures.append(f"{PAGE}: run tools/contracts.py --write")
    print("\n".join(failures) if failures else f"{len(functions)} functions, all with their contracts, as in {PAGE}")
    sys.exit(1 if failures else 0)


if __name__ == "__main__":
    main()
