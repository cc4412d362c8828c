#!/usr/bin/env python3
"""Checks that the table of calls in every_call.cpp calls every public function of the geometry class."""

import argparse
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "fuzz"))
import check_coverage  # reads the functions from the header and the calls from an object file


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--nm", required=True)
    parser.add_argument("--root", required=True, type=pathlib.Path)
    parser.add_argument("object")
    arguments = parser.parse_args()

    functions = check_coverage.declared((arguments.root / check_coverage.HEADER).read_text()) | set(check_coverage.OTHERS)
    missing = sorted(functions - check_coverage.called(arguments.nm, arguments.object))
    print("\n".join(f"{function}: not called" for function in missing) or f"{len(functions)} functions, each called")
    sys.exit(1 if missing or len(functions) < 60 else 0)


if __name__ == "__main__":
    main()
