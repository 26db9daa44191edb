# SPDX-License-Identifier: MIT
"""The manual page says what --help says, and every JSON object of the golden cases fits the schema
that it names."""

import json
import os
import pathlib
import re
import subprocess
import sys
import unittest

import jsonschema

PROGRAM = pathlib.Path(sys.argv[1]).resolve()
SOURCES = pathlib.Path(sys.argv[2]).resolve()
PAGE = (SOURCES / "packaging" / "qvvisa.1.in").read_text()
COMPLETION = SOURCES / "packaging" / "completion"


def help_of(*command):
    return subprocess.run(
        [PROGRAM, *command, "--help"], capture_output=True, text=True, check=True
    ).stdout


def commands():
    text = help_of()
    return re.findall(r"^  ([a-z]+) ", text[text.index("\nCommands:") :], re.MULTILINE)


def options(text):
    return set(re.findall(r"(?<![\w-])--[a-z][a-z-]*", text)) | set(
        re.findall(r"(?<![\w-])-[a-z]\b(?=,)", text)
    )


def plain(roff):
    return roff.replace("\\-", "-").replace("\\fR", "").replace("\\fB", "").replace("\\fI", "")


class ManualPage(unittest.TestCase):
    def section(self, command):
        """The command's own part of the page."""
        parts = re.split(r"^\.S[SH] ", PAGE, flags=re.MULTILINE)
        return plain(next(part for part in parts if re.match(rf'"?{command}\b', part)))

    def test_names_every_command_and_no_other(self):
        headings = re.findall(r'^\.SS "?([a-z]+)', PAGE, re.MULTILINE)
        self.assertEqual(sorted(headings), sorted(commands()))

    def test_names_every_option_and_no_other(self):
        editing = options(plain(PAGE[PAGE.index('"COMMANDS THAT EDIT"') : PAGE.index('.SS "set')]))
        everywhere = options(plain(PAGE[PAGE.index(".SH OPTIONS") : PAGE.index(".SS where")]))
        self.assertEqual(everywhere, options(help_of()))
        for command in commands():
            with self.subTest(command=command):
                found = options(help_of(command)) - {"-h", "--help"}
                if "--check" in found:
                    self.assertLessEqual(editing, found)
                    found -= editing
                self.assertEqual(options(self.section(command)), found)

    def test_has_no_fault(self):
        result = subprocess.run(
            ["man", "--warnings", "-E", "UTF-8", "-l", "-Tutf8", "-Z", "-"],
            input=PAGE,
            env={**os.environ, "LC_ALL": "C.UTF-8", "MANROFFSEQ": "", "MANWIDTH": "80"},
            capture_output=True,
            text=True,
            check=False,
        )
        self.assertEqual((result.returncode, result.stderr), (0, ""))


class Completion(unittest.TestCase):
    def test_knows_every_command_and_option(self):
        for name in ("qvvisa.bash", "_qvvisa", "qvvisa.fish"):
            text = (COMPLETION / name).read_text()
            for command in commands():
                self.assertRegex(text, rf"\b{command}\b", name)
                for option in options(help_of(command)):
                    if option.startswith("--"):
                        word = option[2:]
                        self.assertRegex(text, rf"(--|-l ){word}\b|\b{word}\b", (name, option))


class Schemas(unittest.TestCase):
    def test_cases_fit(self):
        used = set()
        for case in sorted((SOURCES / "tests" / "command" / "cases").iterdir()):
            path = case / "stdout"
            text = path.read_text(encoding="latin-1") if path.exists() else ""
            if not text.startswith('{"schema"'):
                continue
            with self.subTest(case=case.name):
                instance = json.loads(path.read_text(encoding="utf-8"))
                name, version = re.fullmatch(r"qvvisa-([a-z]+)/(\d+)", instance["schema"]).groups()
                self.assertEqual(version, "1")
                schema = json.loads((SOURCES / "docs" / "schemas" / f"{name}.json").read_text())
                jsonschema.Draft7Validator.check_schema(schema)
                jsonschema.validate(instance, schema)
                used.add(name)
        schemas = {path.stem for path in (SOURCES / "docs" / "schemas").glob("*.json")}
        self.assertEqual(schemas - used, set(), "a schema that no case uses")


unittest.main(argv=sys.argv[:1])
