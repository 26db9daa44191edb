#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Makes the Debian packages: what lintian says, what they depend on, and where the stand-in library
goes."""

import email
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


class DebianPackages(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory(prefix="qvvisa-packages-")
        cls.addClassCleanup(folder.cleanup)
        cls.output = staged.run(os.environ["QVVISA_CPACK"], "-G", "DEB", "-B", folder.name,
                                "--config", BUILD / "CPackConfig.cmake")
        files = sorted(pathlib.Path(folder.name).glob("*.deb"))
        cls.names = [file.name for file in files]
        cls.packages = {package.fields["Package"]: package for package in map(Package, files)}
        cls.program = cls.packages.get("qvvisaconfigure")
        cls.simulator = cls.packages.get("qvvisa-simulator")

    def test_two_packages(self):
        architecture = staged.run("dpkg", "--print-architecture").strip()
        self.assertEqual(self.names, [f"{name}_{REVISION}_{architecture}.deb"
                                      for name in ("qvvisa-simulator", "qvvisaconfigure")])

    def test_lintian_has_nothing_to_say_against_them(self):
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

    def test_simulator_needs_no_display(self):
        self.assertLessEqual(self.simulator.dependencies(), {"libc6", "libgcc-s1", "libstdc++6"})

    def test_neither_brings_the_other(self):
        """The stand-in library must come only to whoever asks for it."""
        for package in self.packages.values():
            for field in ("Depends", "Recommends", "Pre-Depends"):
                self.assertNotIn("qvvisa", package.fields.get(field, ""))
        self.assertEqual(self.program.fields["Suggests"], "qvvisa-simulator")
        self.assertEqual(self.simulator.fields["Enhances"], "qvvisaconfigure")

    def test_no_loader_finds_the_stand_in_library(self):
        places = [path for path in self.simulator.paths if "libqvvisa" in path]
        self.assertEqual(len(places), 1, places)
        folder = pathlib.PurePosixPath("/") / pathlib.PurePosixPath(places[0]).parent
        listed = staged.run("/sbin/ldconfig", "-v", "-N", "-X", env={**os.environ, "LC_ALL": "C"})
        searched = {os.path.realpath(name) for name in re.findall(r"(?m)^(/[^:]*):", listed)}
        self.assertIn("/usr/lib", searched)
        self.assertNotIn(str(folder), searched)
        self.assertNotIn("libqvvisa", " ".join(self.program.paths))

    def test_they_only_bring_files(self):
        """No script of theirs runs, so none can add a folder to the loader's list."""
        for package in self.packages.values():
            with tempfile.TemporaryDirectory() as folder:
                staged.run("dpkg-deb", "--control", package.file, folder)
                self.assertEqual(sorted(os.listdir(folder)), ["control", "md5sums"])
            self.assertEqual({path.split("/")[1] for path in package.paths} - {""}, {"usr"})

    def test_files_are_roots(self):
        for package in self.packages.values():
            self.assertEqual(package.owners, {"root/root"})


unittest.main()
