#!/usr/bin/env python3
"""Shows Doxygen a header's conventions in its own words: the contract's labelled lines as one small table, and the
headings between the families of functions, with what is said there, as groups. Usage: doxygen_filter.py HEADER
"""

import re
import sys

LABELS = "Ends|Output|NaN|Unchecked|Aliasing|Allocates|Cost|Formula"


def main():
    lines = open(sys.argv[1], encoding="utf-8").read().split("\n")
    output, in_table, in_group, in_heading = [], False, False, False
    for line in lines:
        comment = re.match(r"(\s*)/// ?(.*)$", line)
        label = comment and re.match(rf"({LABELS}): (.*)$", comment.group(2))
        if in_table and (not comment or not comment.group(2).strip() or comment.group(2).startswith(("@", " "))):
            output.append(f"{indent}/// </td></tr></table>")
            in_table = False
        line = re.sub(r"^(\s*)/// Throws (std::\w+); ", r"\1/// @throws \2 ", line)
        heading = re.match(r"(\s*)// ---- (.*?) -+$", line)
        plain = re.match(r"(\s*)//(?!/) ?(.*)$", line)
        if heading:
            if in_group:
                output.append(f"{heading.group(1)}/// @}}")
            output.append(f"{heading.group(1)}/// @name {heading.group(2)}")
            in_group, in_heading = True, True
        elif in_heading and plain:
            output.append(f"{plain.group(1)}/// {plain.group(2)}")
        else:
            if in_heading:
                output.append("  /// @{")
                in_heading = False
            if in_group and line == "};":
                output.append("  /// @}")
                in_group = False
            if label:
                indent = comment.group(1)
                start = "</td></tr>" if in_table else '<table class="contract">'
                output.append(f"{indent}/// {start}<tr><th>{label.group(1)}</th><td>{label.group(2)}")
                in_table = True
            else:
                output.append(line)
    sys.stdout.write("\n".join(output))


main()
