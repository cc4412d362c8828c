#!/usr/bin/env python3
"""Checks that the digest program calls every public function of the library.

Usage: check_coverage.py NM DIGEST_OBJECT; the functions are those that tests/fuzz/check_coverage.py finds.
"""

import importlib.util
import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]


def main():
    nm, digest_object = sys.argv[1:]
    specification = importlib.util.spec_from_file_location("fuzz_coverage", ROOT / "tests/fuzz/check_coverage.py")
    coverage = importlib.util.module_from_spec(specification)
    sys.dont_write_bytecode = True
    specification.loader.exec_module(coverage)

    functions = coverage.declared((ROOT / coverage.HEADER).read_text()) | set(coverage.OTHERS)
    missing = sorted(functions - coverage.called(nm, digest_object))
    for function in missing:
        print(f"{function}: not in tests/drop_in/digest.cpp")
    if not missing:
        print(f"all {len(functions)} functions are in the digests")
    sys.exit(1 if missing else 0)


if __name__ == "__main__":
    main()
