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

    def run_program(self, *arguments):
        return subprocess.run(
            [PROGRAM, *arguments], cwd=self.folder, capture_output=True, text=True, check=True
        ).stderr

    def edit(self, *options):
        self.edits += 1
        return self.run_program(
            "-f", "visa.conf", *options, "set", "DMM", f"GPIB0::{self.edits}::INSTR"
        )

    def warning(self, window):
        return (
            "qvvisa: warning: QvVisaConfigure is running on this file "
            f"(process {window.pid}): its next Save writes its own table\n"
        )

    def test_on_this_file_is_warned_of(self):
        window = self.start("QvVisaConfigure", QVVISACONFFILE="visa.conf")
        self.assertEqual(self.edit(), self.warning(window))
        self.assertEqual(self.edit("-q"), "")

    def test_is_warned_of_by_lint_and_merge_when_they_write(self):
        window = self.start("QvVisaConfigure", QVVISACONFFILE="visa.conf")
        (self.folder / "visa.conf").write_text(HEADER + "[aliases]\n")
        repair = ("lint", "--fix", "visa.conf")
        self.assertEqual(
            self.run_program(*repair), "qvvisa: note: visa.conf: repaired\n" + self.warning(window)
        )
        self.assertEqual(self.run_program(*repair), "")
        (self.folder / "theirs.conf").write_text(HEADER + "DMM=GPIB0::1::INSTR\n")
        merge = ("merge", "other.conf", "visa.conf", "theirs.conf")
        self.assertEqual(self.run_program(*merge), self.warning(window))
        self.assertEqual(self.run_program(*merge), "")

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
