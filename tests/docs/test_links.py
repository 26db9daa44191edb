#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Every link and every path in the pages leads to a file, and every file in docs/ is linked.

usage: test_links.py BUILD-FOLDER
"""

import os
import pathlib
import re
import sys

import pages

SOURCES = pathlib.Path(__file__).resolve().parents[2]


def check_links(page, text):
    for link in pages.links(text):
        if re.match(r"\w+:", link):
            continue
        target, _, anchor = link.partition("#")
        file = SOURCES / page.parent / target if target else SOURCES / page
        if not file.exists():
            yield f"the link {link} leads to no file"
        elif anchor and anchor not in pages.anchors(file.read_text()):
            yield f"the link {link} names no heading"


def check_paths(text):
    folders = {path.name for path in SOURCES.iterdir() if path.is_dir()} - {"build"}
    for path in pages.named_paths(text, folders):
        if not (SOURCES / path).exists():
            yield f"`{path}` does not exist"


def check_nothing_is_lost(texts):
    linked = {os.path.normpath(page.parent / link.partition("#")[0])
              for page, text in texts.items() for link in pages.links(text)}
    for part in sorted(path.relative_to(SOURCES) for path in (SOURCES / "docs").rglob("*.*")):
        if str(part) not in linked:
            yield f"{part}: no page links to it"


texts = {page: (SOURCES / page).read_text() for page in pages.all_pages(SOURCES)}
faults = [f"{page}: {fault}" for page, text in texts.items()
          for fault in (*check_links(page, text), *check_paths(text))]
faults += check_nothing_is_lost(texts)
print("\n".join(faults))
print(f"{len(texts)} pages, {sum(len(pages.links(text)) for text in texts.values())} links, "
      f"{len(faults)} faults")
sys.exit(1 if faults or not texts else 0)
