#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Installs into a folder: which files there are, and that desktops accept them."""

import configparser
import os
import pathlib
import plistlib
import re
import subprocess
import tempfile
import unittest
import xml.etree.ElementTree

import staged
from staged import APPLICATION_ID, BUILD, SOURCES, VERSION

ICON_SIZES = [16, 24, 32, 48, 64, 128, 256, 512]

# Without the simulator's folder, which is named after the machine's architecture.
FILES = {
    "bin/QvVisaConfigure",
    f"share/applications/{APPLICATION_ID}.desktop",
    f"share/metainfo/{APPLICATION_ID}.metainfo.xml",
    "share/man/man1/QvVisaConfigure.1.gz",
    "share/doc/qvvisaconfigure/changelog.Debian.gz",
    "share/doc/qvvisaconfigure/changelog.gz",
    "share/doc/qvvisaconfigure/copyright",
    "share/doc/qvvisaconfigure/file-format.md",
    "share/doc/qvvisaconfigure/user-guide.md",
    *(f"share/doc/qvvisaconfigure/pictures/{picture.name}"
      for picture in (SOURCES / "docs/pictures").iterdir()),
    "share/doc/qvvisa-simulator/bench-file.md",
    "share/doc/qvvisa-simulator/changelog.Debian.gz",
    "share/doc/qvvisa-simulator/changelog.gz",
    "share/doc/qvvisa-simulator/copyright",
    "share/qvvisa-simulator/sample-bench.txt",
    f"share/icons/hicolor/scalable/apps/{APPLICATION_ID}.svg",
    *(f"share/icons/hicolor/{size}x{size}/apps/{APPLICATION_ID}.png" for size in ICON_SIZES),
}


class InstalledFiles(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory(prefix="qvvisa-install-")
        cls.addClassCleanup(folder.cleanup)
        cls.root = pathlib.Path(folder.name)
        cls.usr = staged.install(cls.root)
        cls.desktop_file = cls.usr / f"share/applications/{APPLICATION_ID}.desktop"
        cls.metainfo_file = cls.usr / f"share/metainfo/{APPLICATION_ID}.metainfo.xml"

    def desktop_entry(self):
        parser = configparser.ConfigParser(interpolation=None)
        parser.optionxform = str
        parser.read_string(self.desktop_file.read_text())
        return parser["Desktop Entry"]

    def metainfo(self, place):
        return xml.etree.ElementTree.parse(self.metainfo_file).getroot().find(place)

    def test_exactly_these_files(self):
        files = {str(path.relative_to(self.usr)) for path in self.root.rglob("*")
                 if not path.is_dir()}
        libraries = {name for name in files if name.endswith("/libqvvisa.so")}
        self.assertEqual(sorted(files - libraries), sorted(FILES))
        self.assertEqual([pathlib.Path(name).parent.name for name in libraries],
                         ["qvvisa-simulator"])

    def test_everybody_may_read_them(self):
        for path in self.usr.rglob("*"):
            runs = path.is_dir() or path.parent.name == "bin"
            # A library is no program, but the build makes it executable; both are right.
            modes = (0o644, 0o755) if path.suffix == ".so" else (0o755 if runs else 0o644,)
            self.assertIn(path.stat().st_mode & 0o7777, modes, path)

    def test_programs_are_stripped_and_search_only_where_the_system_does(self):
        library, = self.usr.rglob("libqvvisa.so")
        for file in (self.usr / "bin/QvVisaConfigure", library):
            self.assertNotRegex(staged.dynamic_section(file), r"\((RPATH|RUNPATH)\)")
            self.assertNotIn(".symtab", staged.run("readelf", "--wide", "--sections", file))

    def test_desktop_entry_is_valid(self):
        self.assertEqual(staged.run("desktop-file-validate", self.desktop_file), "")

    def test_desktop_entry_starts_the_program(self):
        entry = self.desktop_entry()
        self.assertTrue(os.access(self.usr / "bin" / entry["Exec"], os.X_OK), entry["Exec"])

    def test_metainfo_is_valid(self):
        staged.run("appstreamcli", "validate", "--no-net", "--no-color", self.metainfo_file)

    def test_metainfo_tells_the_version(self):
        self.assertEqual(self.metainfo("releases/release").get("version"), VERSION)

    def test_application_id_is_one_string(self):
        with open(BUILD / "packaging/Info.plist", "rb") as file:
            bundle = plistlib.load(file)
        seen = {
            "icon of the desktop entry": self.desktop_entry()["Icon"],
            "id of the metainfo": self.metainfo("id").text,
            "desktop entry of the metainfo": self.metainfo("launchable").text,
            "identifier of the bundle": bundle["CFBundleIdentifier"],
            "name of the icons": re.search(r'^APPLICATION_ID = "(.*)"$', (
                SOURCES / "tools/icons").read_text(), re.MULTILINE).group(1),
        }
        expected = dict.fromkeys(seen, APPLICATION_ID)
        expected["desktop entry of the metainfo"] += ".desktop"
        self.assertEqual(seen, expected)

    def test_icon_of_the_desktop_entry_is_there_in_all_sizes(self):
        icons = self.usr / "share/icons/hicolor"
        name = self.desktop_entry()["Icon"]
        for size in ICON_SIZES:
            with open(icons / f"{size}x{size}/apps/{name}.png", "rb") as file:
                start = file.read(24)
            self.assertEqual(start[:8], b"\x89PNG\r\n\x1a\n")
            self.assertEqual((start[16:20], start[20:24]), (size.to_bytes(4, "big"),) * 2)
        drawing = xml.etree.ElementTree.parse(icons / f"scalable/apps/{name}.svg").getroot()
        self.assertEqual(drawing.tag, "{http://www.w3.org/2000/svg}svg")

    def test_links_of_the_pages_lead_to_installed_files(self):
        links = [(page, target) for page in self.usr.rglob("*.md")
                 for target in re.findall(r"\]\(([^)#:]+)[)#]", page.read_text())]
        self.assertTrue(links)
        for page, target in links:
            self.assertTrue((page.parent / target).is_file(), f"{page.name}: {target}")

    def test_manual_page_renders(self):
        page = self.usr / "share/man/man1/QvVisaConfigure.1.gz"
        done = subprocess.run(
            ["man", "--warnings", "-E", "UTF-8", "-P", "cat", "-l", page], check=False,
            env={"PATH": os.environ["PATH"], "LC_ALL": "C.UTF-8", "MANWIDTH": "80"},
            stdin=subprocess.DEVNULL, capture_output=True, text=True)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        for heading in ("NAME", "SYNOPSIS", "DESCRIPTION", "ENVIRONMENT", "FILES", "SEE ALSO"):
            self.assertRegex(done.stdout, rf"(?m)^{heading}$")
        self.assertIn(f"QvVisaConfigure {VERSION}", done.stdout)


class Bundle(unittest.TestCase):
    """The macOS bundle's description, which every build makes."""

    def test_tells_what_macos_asks(self):
        with open(BUILD / "packaging/Info.plist", "rb") as file:
            bundle = plistlib.load(file)
        self.assertEqual(bundle["CFBundleShortVersionString"], VERSION)
        self.assertEqual(bundle["CFBundleVersion"], VERSION)
        self.assertEqual(bundle["CFBundleExecutable"], "QvVisaConfigure")
        self.assertIs(bundle["NSHighResolutionCapable"], True)
        self.assertTrue(bundle["LSApplicationCategoryType"].startswith("public.app-category."))
        icon = (SOURCES / "resources" / bundle["CFBundleIconFile"]).read_bytes()
        self.assertEqual(icon[:4], b"icns")


unittest.main()
