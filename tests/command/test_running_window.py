# SPDX-License-Identifier: MIT
"""An edit warns when a window is running on the same file, and only then."""

import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

PROGRAM = pathlib.Path(sys.argv[1]).resolve()
HEADER = ":QvVisaConfigurationFileVersion01\n"


class RunningWindow(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="qvvisa-window-")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        for name in ("visa.conf", "other.conf"):
            (self.folder / name).write_text(HEADER)
        self.edits = 0

    def start(self, name, **environment):
        """A process of that name, which waits for its standard input to end."""
        program = self.folder / name
        shutil.copy(shutil.which("cat"), program)
        process = subprocess.Popen(
            [program], cwd=self.folder, env=environment, stdin=subprocess.PIPE
        )
        # Popen returns after exec(), so the process has its name and environment.
        self.addCleanup(process.wait)
        self.addCleanup(process.stdin.close)
        return process

    def edit(self, *options):
        self.edits += 1
        return subprocess.run(
            [PROGRAM, "-f", "visa.conf", *options, "set", "DMM", f"GPIB0::{self.edits}::INSTR"],
            cwd=self.folder,
            capture_output=True,
            text=True,
            check=True,
        ).stderr

    def test_on_this_file_is_warned_of(self):
        window = self.start("QvVisaConfigure", QVVISACONFFILE="visa.conf")
        self.assertEqual(
            self.edit(),
            "qvvisa: warning: QvVisaConfigure is running on this file "
            f"(process {window.pid}): its next Save writes its own table\n",
        )
        self.assertEqual(self.edit("-q"), "")

    def test_that_found_the_file_in_its_folder_is_warned_of(self):
        window = self.start("QvVisaConfigure", HOME="/nowhere")
        self.assertIn(f"(process {window.pid})", self.edit())

    def test_on_another_file_is_not(self):
        self.start("QvVisaConfigure", QVVISACONFFILE=str(self.folder / "other.conf"))
        self.assertEqual(self.edit(), "")

    def test_of_another_program_is_not(self):
        self.start("QvVisaConfigur", QVVISACONFFILE="visa.conf")
        self.assertEqual(self.edit(), "")


unittest.main(argv=sys.argv[:1])
