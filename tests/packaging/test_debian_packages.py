#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Makes the Debian packages and checks their dependencies, where the VISA libraries go, and that
lintian accepts them."""

import email
import hashlib
import os
import pathlib
import re
import tempfile
import unittest

import staged
from staged import BUILD, VERSION

REVISION = VERSION + "-1"


class Package:
    def __init__(self, file):
        self.file = file
        self.fields = email.message_from_string(staged.run("dpkg-deb", "--field", file))
        lines = [line.split() for line in
                 staged.run("dpkg-deb", "--contents", file).splitlines()]
        self.paths = [line[5] for line in lines]
        self.owners = {line[1] for line in lines}

    def dependencies(self):
        """The packages that it depends on, without their versions."""
        return {re.match(r"\s*([\w.+-]+)", part).group(1)
                for part in self.fields["Depends"].split(",")}


def make_packages(folder):
    """The package files, made in a folder with the times of a fixed day."""
    staged.run(os.environ["QVVISA_CPACK"], "-G", "DEB", "-B", folder, "--config",
               BUILD / "CPackConfig.cmake", env={**os.environ, "SOURCE_DATE_EPOCH": "1700000000"})
    return sorted(pathlib.Path(folder).glob("*.deb"))


class DebianPackages(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory(prefix="qvvisa-packages-")
        cls.addClassCleanup(folder.cleanup)
        cls.packages = {package.fields["Package"]: package
                        for package in map(Package, make_packages(folder.name))}
        cls.program = cls.packages["qvvisaconfigure"]
        cls.simulator = cls.packages["qvvisa-simulator"]

    def test_same_sources_give_the_same_bytes(self):
        with tempfile.TemporaryDirectory(prefix="qvvisa-packages-") as folder:
            again = {file.name: hashlib.sha256(file.read_bytes()).digest()
                     for file in make_packages(folder)}
        self.assertEqual(again, {package.file.name: hashlib.sha256(
            package.file.read_bytes()).digest() for package in self.packages.values()})

    def test_lintian_accepts_them(self):
        # They are not for Debian's own archive, where a first upload answers a request.
        staged.run("lintian", "--allow-root", "--fail-on", "error,warning",
                   "--suppress-tags", "initial-upload-closes-no-bugs",
                   *(package.file for package in self.packages.values()))

    def test_fields(self):
        for package in self.packages.values():
            fields = package.fields
            self.assertEqual(fields["Version"], REVISION)
            self.assertEqual(fields["Section"], "electronics")
            self.assertEqual(fields["Maintainer"],
                             "QvVisaConfigure maintainers <maintainers@quorvane.com>")
            self.assertGreater(len(fields["Description"].splitlines()), 3)

    def test_program_depends_on_its_libraries(self):
        self.assertLessEqual({"libc6", "libgcc-s1", "libqt5core5a", "libqt5gui5",
                              "libqt5widgets5", "libstdc++6"}, self.program.dependencies())

    def test_without_the_window_they_need_no_qt(self):
        for name in self.packages.keys() - {"qvvisaconfigure"}:
            self.assertNotIn("libqt", self.packages[name].fields["Depends"])

    def test_no_program_needs_a_library_of_ours(self):
        """The finder is recommended: the programs try it last."""
        for package in self.packages.values():
            for field in ("Depends", "Pre-Depends"):
                self.assertNotIn("qvvisa", package.fields.get(field, ""))
            self.assertNotIn("qvvisa-simulator", package.fields.get("Recommends", ""))

    def test_no_loader_finds_the_libraries(self):
        listed = staged.run("/sbin/ldconfig", "-v", "-N", "-X", env={**os.environ, "LC_ALL": "C"})
        searched = {os.path.realpath(name) for name in re.findall(r"(?m)^(/[^:]*):", listed)}
        self.assertIn("/usr/lib", searched)
        for name, package in self.packages.items():
            folders = {str(pathlib.PurePosixPath("/") / pathlib.PurePosixPath(path).parent)
                       for path in package.paths if "libqvvisa" in path}
            self.assertEqual(len(folders), name in ("qvvisa-simulator", "qvvisa-finder"))
            self.assertFalse(folders & searched)

    def test_they_only_bring_files(self):
        """No script runs that could add a folder to the loader's list."""
        for package in self.packages.values():
            with tempfile.TemporaryDirectory() as folder:
                staged.run("dpkg-deb", "--control", package.file, folder)
                self.assertEqual(sorted(os.listdir(folder)), ["control", "md5sums"])
            self.assertEqual({path.split("/")[1] for path in package.paths} - {""}, {"usr"})

    def test_files_are_roots(self):
        for package in self.packages.values():
            self.assertEqual(package.owners, {"root/root"})


unittest.main()
