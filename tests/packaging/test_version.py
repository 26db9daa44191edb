#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The version stands in the build's project() line and, as a text that is not computed, in a few
sources. They must agree."""

import re
import unittest

from staged import SOURCES, VERSION

# Where a version stands, and what stands around its numbers.
PLACES = [
    ("gui/MainWindow.cpp", r'setWindowTitle\(QStringLiteral\("QvVisaConfigure - ([\d.]+)"\)\)'),
    ("gui/main.cpp", r"const int number : \{([\d, ]+)\}"),
    ("tests/endtoend/program.py", r'MAIN = "QvVisaConfigure - ([\d.]+)"'),
    ("CHANGELOG.md", r"(?m)^## ([\d.]+) \("),
]


class Version(unittest.TestCase):
    def test_is_one(self):
        for file, pattern in PLACES:
            with self.subTest(file=file):
                found = re.search(pattern, (SOURCES / file).read_text())
                self.assertIsNotNone(found, f"no version in {file}")
                self.assertEqual(found.group(1).replace(", ", "."), VERSION)


unittest.main()
