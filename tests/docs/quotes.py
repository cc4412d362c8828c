#!/usr/bin/env python3
"""Checks that the guides quote the examples as the tests compile and run them: a block of code behind the comment
<!-- examples/NAME --> is that file, to the letter. Also checks that links between the guides, and to pictures, lead
somewhere. Usage: quotes.py
"""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent


def main():
    failures, quotes, links = [], 0, 0
    pages = [ROOT / "README.md", ROOT / "CONTRIBUTING.md", ROOT / "CHANGELOG.md", *sorted((ROOT / "docs").glob("*.md"))]
    quoted = set()
    for page in pages:
        text = page.read_text()
        name = page.relative_to(ROOT)
        for file in re.findall(r"^<!-- (examples/\S+) -->$", text, re.M):
            block = re.search(rf"^<!-- {re.escape(file)} -->\n+```\w+\n(.*?)^```$", text, re.M | re.S)
            if not block:
                failures.append(f"{name}: no block of code behind the comment {file}")
            elif block.group(1) != (ROOT / file).read_text():
                failures.append(f"{name}: does not quote {file}")
            quoted.add(file)
            quotes += 1
        for link in re.findall(r"\]\(([^)#\s]+)(?:#[^)]*)?\)", re.sub(r"^```.*?^```$", "", text, flags=re.M | re.S)):
            links += 1
            if "://" not in link and not (page.parent / link).exists():
                failures.append(f"{name}: the link to {link} leads nowhere")
    for example in sorted((ROOT / "examples").glob("*.cpp")):
        if example.name != "first_steps.cpp" and f"examples/{example.name}" not in quoted:
            failures.append(f"{example.relative_to(ROOT)}: quoted on no page")
    print("\n".join(failures) if failures else f"{quotes} quotes as the tests compile them, {links} links")
    sys.exit(1 if failures else 0)


main()
