#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Installs into a folder: the files are readable, complete, and accepted by desktops."""

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

    def test_everybody_may_read_them(self):
        for path in self.usr.rglob("*"):
            runs = path.is_dir() or path.parent.name == "bin"
            # A library is no program, but the build makes it executable; both are right.
            modes = (0o644, 0o755) if path.suffix == ".so" else (0o755 if runs else 0o644,)
            self.assertIn(path.stat().st_mode & 0o7777, modes, path)

    def test_programs_are_stripped_and_search_only_where_the_system_does(self):
        for file in (*self.usr.glob("bin/*"), *self.usr.rglob("libqvvisa.so")):
            self.assertNotRegex(staged.dynamic_section(file), r"\((RPATH|RUNPATH)\)")
            self.assertNotIn(".symtab", staged.run("readelf", "--wide", "--sections", file))

    def test_desktop_entry_is_valid(self):
        self.assertEqual(staged.run("desktop-file-validate", "--no-hints", self.desktop_file), "")

    def test_desktop_entry_starts_the_program(self):
        entry = self.desktop_entry()
        self.assertTrue(os.access(self.usr / "bin" / entry["Exec"], os.X_OK), entry["Exec"])

    def test_metainfo_is_valid(self):
        staged.run("appstreamcli", "validate", "--no-net", "--no-color", self.metainfo_file)

    def test_metainfo_names_the_version(self):
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
        pages = {page: page.read_text() for page in self.usr.rglob("doc/*/*.html")}
        links = [(page, *link) for page, text in pages.items()
                 for link in re.findall(r'(?:href|src)="(?!\w+:)([^"#]*)#?([^"]*)"', text)]
        self.assertTrue(links)
        for page, target, anchor in links:
            file = page.parent / target if target else page
            self.assertTrue(file.exists(), f"{page.name}: {target}")
            if anchor:
                self.assertIn(f'id="{anchor}"', pages[file])

    def test_links_name_installed_files(self):
        links = [path for path in self.usr.rglob("*") if path.is_symlink()]
        self.assertTrue(links)
        for link in links:
            self.assertTrue(link.resolve().is_file(), link)

    def test_manual_pages_render(self):
        for page in self.usr.rglob("man/man1/*.gz"):
            done = subprocess.run(
                ["man", "--warnings", "-E", "UTF-8", "-P", "cat", "-l", page], check=False,
                env={"PATH": os.environ["PATH"], "LC_ALL": "C.UTF-8", "MANWIDTH": "80"},
                stdin=subprocess.DEVNULL, capture_output=True, text=True)
            self.assertEqual((done.returncode, done.stderr), (0, ""))
            self.assertIn(VERSION, done.stdout)


class Bundle(unittest.TestCase):
    """The macOS bundle's Info.plist, which every build makes."""

    def test_has_the_keys_that_macos_needs(self):
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
