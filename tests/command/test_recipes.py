# SPDX-License-Identifier: MIT
"""Runs the recipes of docs/command-line.md as they are written there."""

import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

PROGRAM = pathlib.Path(sys.argv[1]).resolve()
PAGE = pathlib.Path(sys.argv[2]).read_text()
RECIPES = dict(
    re.findall(r"<!-- recipe: ([a-z-]+) -->\n```[a-z]+\n(.*?)^```", PAGE, re.DOTALL | re.MULTILINE)
)
HEADER = ":QvVisaConfigurationFileVersion01\n"
# Runs the command here, with the other machine's home.
SSH = """#!/bin/sh
shift
HOME=$OTHER_HOME exec "$@"
"""


class Recipes(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="qvvisa-recipes-")
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)
        self.home = self.root / "home"
        self.other = self.root / "other"
        for home in (self.home, self.other):
            (home / ".quorvane").mkdir(parents=True)
        programs = self.root / "programs"
        programs.mkdir()
        (programs / "ssh").write_text(SSH)
        (programs / "ssh").chmod(0o755)
        self.work = self.root / "work"
        self.work.mkdir()
        self.environment = {
            "PATH": f"{programs}:{PROGRAM.parent}:{os.environ['PATH']}",
            "HOME": str(self.home),
            "OTHER_HOME": str(self.other),
            "GIT_CONFIG_NOSYSTEM": "1",
            "GIT_AUTHOR_NAME": "Ada",
            "GIT_AUTHOR_EMAIL": "ada@example.com",
            "GIT_COMMITTER_NAME": "Ada",
            "GIT_COMMITTER_EMAIL": "ada@example.com",
        }

    def run_shell(self, script, status=0):
        result = subprocess.run(
            ["sh", "-e", "-c", script],
            cwd=self.work,
            env=self.environment,
            capture_output=True,
            text=True,
            timeout=60,
            check=False,
        )
        self.assertEqual(result.returncode, status, result.stdout + result.stderr)
        return result.stdout

    def file(self, home):
        return home / ".quorvane" / "visa.conf"

    def test_every_recipe_has_a_test(self):
        tested = {name[5:].replace("_", "-") for name in dir(self) if name.startswith("test_")}
        self.assertEqual(set(RECIPES) - tested, set())

    def test_first_file(self):
        output = self.run_shell(RECIPES["first-file"])
        self.assertIn("serial    1    baud-rate=19200", output)
        self.assertEqual(
            self.file(self.home).read_text(),
            HEADER
            + ":SerialProperty[DeviceNo=1].Baudrate=19200\n:SerialProperty[DeviceNo=1].Parity=2\n"
            + "DMM=TCPIP0::10.0.0.5::INSTR\nGPIB0::12::INSTR\n",
        )

    def test_over_ssh(self):
        self.file(self.other).write_text(HEADER + "# comment\n")
        self.run_shell(RECIPES["over-ssh"])
        self.assertEqual(
            self.file(self.other).read_text(),
            HEADER + "# comment\nSCOPE=TCPIP0::10.0.0.6::INSTR\n",
        )

    def test_copy_over_ssh(self):
        self.file(self.home).write_text(HEADER + "DMM=GPIB0::1::INSTR\n")
        self.file(self.other).write_text(HEADER + "# comment\nOLD=GPIB0::9::INSTR\n")
        self.run_shell(RECIPES["copy-over-ssh"])
        other = self.file(self.other).read_text()
        self.assertIn("# comment\n", other)
        self.assertIn("DMM=GPIB0::1::INSTR\n", other)
        self.assertNotIn("OLD", other)

    def test_ansible(self):
        validate = re.search(r"validate: (.*)", RECIPES["ansible"]).group(1)
        for text, status in (("DMM=GPIB0::1::INSTR\n", 0), ("DMM=GPIB0::1::INSTR # old\n", 1)):
            (self.work / "copied").write_text(HEADER + text)
            self.run_shell(validate.replace("%s", "copied"), status)

    def test_ansible_set(self):
        self.file(self.home).write_text(HEADER)
        command = re.search(r"ansible.builtin.command: (.*)", RECIPES["ansible-set"]).group(1)
        self.assertTrue(json.loads(self.run_shell(command))["changed"])
        self.assertFalse(json.loads(self.run_shell(command))["changed"])

    def commit(self, text, message):
        (self.work / "visa.conf").write_text(text)
        self.run_shell(f"git add -A && git commit -q -m {message}")

    def test_merge_driver(self):
        self.run_shell("git init -q -b main")
        self.run_shell(RECIPES["merge-driver"])
        base = HEADER + "# bench\nA=GPIB0::1::INSTR\n"
        self.commit(base, "base")
        self.run_shell("git checkout -q -b other")
        self.commit(base + "B=GPIB0::2::INSTR\n", "other")
        self.run_shell("git checkout -q main")
        self.commit(base + "C=GPIB0::3::INSTR\n", "ours")
        self.run_shell("git merge -q other")
        merged = (self.work / "visa.conf").read_text()
        for line in ("# bench\n", "A=GPIB0::1", "B=GPIB0::2", "C=GPIB0::3"):
            self.assertIn(line, merged)

    def test_pre_commit(self):
        self.run_shell("git init -q")
        self.run_shell(RECIPES["pre-commit"])
        self.commit(HEADER + "A=GPIB0::1::INSTR\n", "good")
        (self.work / "visa.conf").write_text(HEADER + "A=GPIB0::1::INSTR # old\n")
        self.run_shell("git add -A; git commit -q -m bad", status=1)

    def test_bench_complete(self):
        bench = self.work / "bench"
        bench.write_text("resource GPIB0::1::INSTR\nresource GPIB0::2::INSTR\n")
        self.environment.update(LD_LIBRARY_PATH=os.environ["QVVISA_SIMULATOR"], QVVISA_BENCH=str(bench))
        (self.work / "visa.conf").write_text(HEADER + "A=GPIB0::1::INSTR\nB=GPIB::2\n")
        self.assertEqual(self.run_shell(RECIPES["bench-complete"]), "")
        bench.write_text("resource GPIB0::1::INSTR\n")
        self.assertEqual(self.run_shell(RECIPES["bench-complete"], status=1), "B  GPIB::2\n")

    def test_annotations(self):
        (self.work / "visa.conf").write_text(HEADER + "A=GPIB0::1::INSTR # old\n")
        output = self.run_shell(RECIPES["annotations"], status=1)
        self.assertRegex(output, r"(?m)^::error file=visa.conf,line=2")


unittest.main(argv=sys.argv[:1])
