# SPDX-License-Identifier: MIT
"""qvvisa merge as git's merge driver.

  test_git_merge.py PROGRAM
"""

import os
import pathlib
import shlex
import subprocess
import sys
import tempfile
import unittest

PROGRAM = pathlib.Path(sys.argv.pop(1)).resolve()
HEADER = ":QvVisaConfigurationFileVersion01\n"
FILE = "visa.conf"


class GitMerge(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="qvvisa-git-")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        # A user's own settings of git have no say.
        self.environment = dict(os.environ, HOME=folder.name, GIT_CONFIG_NOSYSTEM="1")
        self.git("init", "--quiet", "--initial-branch=main")
        self.git("config", "user.name", "test")
        self.git("config", "user.email", "test@example.com")
        self.git("config", "merge.visa.driver", shlex.quote(str(PROGRAM)) + " -q merge %O %A %B")
        (self.folder / ".gitattributes").write_text("*.conf merge=visa\n")

    def git(self, *arguments, exit_status=0):
        result = subprocess.run(["git", *arguments], cwd=self.folder, env=self.environment,
                                stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                                check=False)
        self.assertEqual(result.returncode, exit_status, result.stdout)

    def commit(self, lines):
        (self.folder / FILE).write_text(HEADER + lines)
        self.git("add", ".")
        self.git("commit", "--quiet", "--message=change")

    def merged(self, base, ours, theirs, exit_status):
        self.commit(base)
        self.git("checkout", "--quiet", "-b", "theirs")
        self.commit(theirs)
        self.git("checkout", "--quiet", "main")
        self.commit(ours)
        self.git("merge", "--message=merge", "theirs", exit_status=exit_status)
        return (self.folder / FILE).read_text()

    def test_aliases_that_both_branches_append_are_both_in_the_result(self):
        base = "DMM=GPIB0::1::INSTR\n"
        text = self.merged(base, base + "PSU=GPIB0::2::INSTR\n", base + "SCOPE=GPIB0::3::INSTR\n",
                           0)
        self.assertEqual(text, HEADER + base + "PSU=GPIB0::2::INSTR\nSCOPE=GPIB0::3::INSTR\n")

    def test_an_alias_that_both_branches_change_is_a_conflict_to_git(self):
        text = self.merged("DMM=GPIB0::1::INSTR\n", "DMM=GPIB0::2::INSTR\n",
                           "DMM=GPIB0::3::INSTR\n", 1)
        self.assertEqual(text, HEADER + "<<<<<<< ours\nDMM=GPIB0::2::INSTR\n=======\n"
                                        "DMM=GPIB0::3::INSTR\n>>>>>>> theirs\n")
        status = subprocess.run(["git", "status", "--short", FILE], cwd=self.folder,
                                env=self.environment, stdout=subprocess.PIPE, text=True,
                                check=True)
        self.assertEqual(status.stdout, "UU visa.conf\n")


unittest.main()
