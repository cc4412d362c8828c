#!/usr/bin/env python3
"""Checks a built site: no page loads anything from another host, and every link and picture leads to a file, and to a
place in it, that is there. Usage: check_site.py FOLDER
"""

import html.parser
import pathlib
import re
import sys
import urllib.parse

# What a browser fetches by itself; a link that somebody may follow (<a href>) is no load.
LOADING = {("script", "src"), ("img", "src"), ("link", "href"), ("object", "data"), ("iframe", "src"), ("embed", "src"),
           ("source", "src"), ("video", "src"), ("audio", "src"), ("use", "href"), ("image", "href")}


class Page(html.parser.HTMLParser):
    def __init__(self):
        super().__init__()
        self.loads, self.links, self.places = [], [], set()

    def handle_starttag(self, tag, attributes):
        for name, value in attributes:
            value = value or ""
            if (tag, name) in LOADING:
                self.loads.append(value)
            elif (tag, name) == ("a", "href"):
                self.links.append(value)
            elif name == "id" or (tag, name) == ("a", "name"):
                self.places.add(value)
            elif name == "style":
                self.loads += re.findall(r"url\(['\"]?([^)'\"]+)", value)


def is_elsewhere(address):
    return re.match(r"(?:[a-z][a-z0-9+.-]*:)?//", address, re.I) is not None


def main():
    folder = pathlib.Path(sys.argv[1])
    failures, pages = [], {}
    for path in sorted(folder.rglob("*.html")):
        pages[path] = Page()
        pages[path].feed(path.read_text(encoding="utf-8"))
    links = 0
    for path, page in pages.items():
        for address in page.loads + page.links:
            where = f"{path.relative_to(folder)}: {address}"
            if is_elsewhere(address) or address.startswith(("mailto:", "javascript:", "data:")):
                if address in page.loads and is_elsewhere(address):
                    failures.append(f"{where}: is loaded from elsewhere")
                continue
            links += 1
            file, _, place = address.partition("#")
            target = (path.parent / urllib.parse.unquote(file.partition("?")[0])) if file else path
            if not target.exists():
                failures.append(f"{where}: is not there")
            elif place and target in pages and urllib.parse.unquote(place) not in pages[target].places:
                failures.append(f"{where}: there is no such place")
    # Style sheets and programs: whole addresses that they would fetch.
    for path in [*folder.rglob("*.css"), *folder.rglob("*.js"), *folder.rglob("*.svg")]:
        text = path.read_text(encoding="utf-8", errors="replace")
        loading = re.findall(r"@import\s+(?:url\()?['\"]?([^'\");]+)", text) + re.findall(r"url\(\s*['\"]?([^)'\"]+)", text)
        loading += re.findall(r"(?:\.src\s*=\s*|\bfetch\(\s*|importScripts\(\s*|\.open\(\s*['\"]GET['\"]\s*,\s*)['\"]([^'\"]+)", text)
        loading += re.findall(r"<(?:script|img|link|image|use)\b[^>]*?(?:src|href)=\\?['\"]([^'\"]+)", text)
        failures += [f"{path.relative_to(folder)}: {address}: is loaded from elsewhere"
                     for address in loading if is_elsewhere(address)]
    if len(pages) < 20:
        failures.append(f"only {len(pages)} pages")
    print("\n".join(failures) if failures else f"{len(pages)} pages, {links} links, nothing from elsewhere")
    sys.exit(1 if failures else 0)


main()
