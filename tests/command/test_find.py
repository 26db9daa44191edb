# SPDX-License-Identifier: MIT
"""qvvisa find in terminals of several widths, with a library that misbehaves, and with the finder as
the library.

    test_find.py PROGRAM SIMULATOR-FOLDER FINDER-FOLDER MISBEHAVING-LIBRARY
"""

import fcntl
import json
import os
import pathlib
import pty
import struct
import subprocess
import sys
import tempfile
import termios
import unittest

PROGRAM, SIMULATOR, FINDER, MISBEHAVING = (str(pathlib.Path(argument).resolve()) for argument in sys.argv[1:5])
WITH_INSTRUMENTS = pathlib.Path(__file__).resolve().parents[1] / "finder/network/with_instruments.py"
SKIPPED = 77
BENCH = """resource TCPIP0::10.0.0.5::inst0::INSTR idn="Quorvane,Multimeter,1001,2.3"
resource ASRL1::INSTR
"""
CONFIGURATION = """:QvVisaConfigurationFileVersion01
DMM=TCPIP0::10.0.0.5::INSTR
SCOPE=TCPIP0::198.51.100.2::inst0::INSTR
RAW_SCOPE=TCPIP0::198.51.100.2::5025::SOCKET
USB_SCOPE=USB0::2391::22176::MY1234
"""
ON_THE_NETWORK = [
    "TCPIP0::198.51.100.2::hislip0::INSTR",
    "TCPIP0::198.51.100.2::inst0::INSTR",
    "TCPIP0::198.51.100.3::5025::SOCKET",
    "USB0::0x0957::0x56A0::MY1234::INSTR",
    "ASRL1::INSTR",
    "ASRL101::INSTR",
]


class Find(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="qvvisa-find-")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        (self.folder / "bench").write_text(BENCH)
        (self.folder / "visa.conf").write_text(CONFIGURATION)
        self.environment = {key: value for key, value in os.environ.items() if not key.startswith("QV")}
        self.environment.update(HOME=folder.name, QVVISACONFFILE=str(self.folder / "visa.conf"),
                                QVVISA_BENCH=str(self.folder / "bench"), LD_LIBRARY_PATH=SIMULATOR)
        self.environment.pop("COLUMNS", None)


class Terminal(Find):
    def printed(self, width, *arguments):
        """What the program prints on a terminal of that width."""
        here, there = pty.openpty()
        fcntl.ioctl(there, termios.TIOCSWINSZ, struct.pack("HHHH", 24, width, 0, 0))
        process = subprocess.Popen([PROGRAM, "find", *arguments], env=self.environment, stdin=subprocess.DEVNULL,
                                   stdout=there, stderr=subprocess.DEVNULL)
        os.close(there)
        text = b""
        try:
            while block := os.read(here, 4096):
                text += block
        except OSError:
            pass  # the end of a terminal
        os.close(here)
        self.assertEqual(process.wait(60), 0)
        return text.decode().replace("\r\n", "\n")

    def test_wide_terminal_has_a_row_for_each_instrument(self):
        for width in (80, 300):
            self.assertEqual(self.printed(width), "TCPIP0::10.0.0.5::inst0::INSTR  DMM\n"
                                                  "ASRL1::INSTR                    -\n")

    def test_narrow_terminal_has_a_line_for_each_cell(self):
        self.assertEqual(self.printed(20), "TCPIP0::10.0.0.5::inst0::INSTR\n  DMM\nASRL1::INSTR\n  -\n")

    def test_pipe_has_a_row_for_each_instrument(self):
        process = subprocess.run([PROGRAM, "find"], env={**self.environment, "COLUMNS": "20"}, check=True,
                                 stdout=subprocess.PIPE, text=True)
        self.assertEqual(len(process.stdout.splitlines()), 2)


    def test_notes_follow_the_list(self):
        with open(self.folder / "bench", "a", encoding="ascii") as bench:
            bench.write("status viFindRsrc 0x3FFF0085\n")
        process = subprocess.run([PROGRAM, "find"], env=self.environment, check=True, stdout=subprocess.PIPE,
                                 stderr=subprocess.STDOUT, text=True)
        self.assertRegex(process.stdout, r"ASRL1::INSTR +-\nqvvisa: note: the window lists 0 of these 2")


class MisbehavingLibrary(Find):
    """tests/visa/misbehaving: three resources, and what it does in which call."""

    FOUND = ["GPIB0::1::INSTR", "ASRL3::INSTR", "TCPIP0::198.51.100.2::inst0::INSTR"]
    # What it does, how many resources are printed, the beginning of the message.
    ROWS = [
        ("load hang", 0, "dlopen libqvvisa.so did not return within 2 seconds"),
        ("load throw", 0, "this machine has no VISA library that can be used: libqvvisa.so threw an exception"),
        ("viOpenDefaultRM crash", 0, "viOpenDefaultRM of libqvvisa.so crashed: Segmentation fault"),
        ("viFindRsrc throw", 0, "viFindRsrc of libqvvisa.so failed with VI_ERROR_SYSTEM_ERROR"),
        ("viFindNext abort", 1, "viFindNext of libqvvisa.so crashed: Aborted"),
        ("viFindNext exit", 1, "viFindNext of libqvvisa.so ended the program with exit status 3"),
        ("viFindNext close-all", 1, "viFindNext of libqvvisa.so closed the program's files"),
        ("viFindNext block-signals hang", 1, "viFindNext of libqvvisa.so did not return within 2 seconds"),
        ("viClose crash", 3, "viClose of libqvvisa.so crashed: Segmentation fault"),
    ]

    def setUp(self):
        super().setUp()
        (self.folder / "libqvvisa.so").symlink_to(MISBEHAVING)
        self.environment["LD_LIBRARY_PATH"] = str(self.folder)

    def run_find(self, deed, *arguments):
        return subprocess.run([PROGRAM, "find", *arguments], env={**self.environment, "QVVISA_MISBEHAVES": deed},
                              capture_output=True, text=True, timeout=60, check=False)

    def test_message_names_the_call_and_what_was_found_is_printed(self):
        for deed, count, message in self.ROWS:
            with self.subTest(deed=deed):
                result = self.run_find(deed, "--timeout", "2" if "hang" in deed else "30")
                found = [line.split()[0] for line in result.stdout.splitlines()]
                self.assertEqual((result.returncode, found), (6, self.FOUND[:count]), result.stderr)
                self.assertEqual(result.stderr.splitlines()[-1][: len(message) + 15], "qvvisa: error: " + message)

    def test_output_of_the_library_is_not_mixed_with_the_list(self):
        result = self.run_find("viFindNext print")
        self.assertEqual([line.split()[0] for line in result.stdout.splitlines()], self.FOUND)
        self.assertRegex(result.stderr, r'(?m)^qvvisa: note: the library printed: the first line\\x0Ammm.*\.\.\.$')


class OnTheFinder(Find):
    def run_find(self, *arguments, **environment):
        result = subprocess.run(
            [sys.executable, WITH_INSTRUMENTS, "env", f"LD_LIBRARY_PATH={FINDER}", PROGRAM, *arguments],
            env={**self.environment, **environment}, capture_output=True, text=True, timeout=60, check=False)
        if result.returncode == SKIPPED:
            self.skipTest(result.stdout.strip())
        return result

    def test_lists_instruments_and_says_what_the_finder_did(self):
        result = self.run_find("find")
        self.assertEqual(result.returncode, 0, result.stderr)
        rows = [line.split(maxsplit=1) for line in result.stdout.splitlines()]
        self.assertEqual([row[0] for row in rows], ON_THE_NETWORK)
        self.assertEqual([row[1] for row in rows], ["-", "SCOPE", "-", "USB_SCOPE", "-", "-"])
        self.assertIn("note: ASRL101::INSTR is /dev/ttyUSB0\n", result.stderr)
        self.assertRegex(result.stderr, r"note: asked 1 interface \([^)]+\) with \d+ packets, \d+ answers\n")
        self.assertNotIn("found 198", result.stderr)

    def test_quiet_prints_the_list_alone(self):
        result = self.run_find("-q", "find")
        self.assertEqual((len(result.stdout.splitlines()), result.stderr), (6, ""))

    def test_json_has_the_whole_log(self):
        found = json.loads(self.run_find("--json", "find").stdout)
        self.assertEqual(found["finderLog"][0], "search for ?*")
        self.assertTrue(any(line.startswith("found 198.51.100.2 (Quorvane, Scope)") for line in found["finderLog"]))

    def test_log_of_the_user_gets_the_lines_too(self):
        log = self.folder / "log"
        log.write_text("before\n")
        self.run_find("-q", "find", QVFIND_LOG=str(log))
        lines = log.read_text().splitlines()
        self.assertEqual(lines[:2], ["before", "qvfind: search for ?*"])
        self.assertIn("qvfind: search for ?*\n", self.run_find("-q", "find", QVFIND_LOG="-").stderr)

    def test_missing_lists_instruments_that_are_not_there(self):
        result = self.run_find("-q", "find", "--missing")
        self.assertEqual((result.returncode, result.stdout), (1, "DMM  TCPIP0::10.0.0.5::INSTR\n"))

    def test_says_that_the_finder_cannot_ask_instruments(self):
        result = self.run_find("find", "--identify")
        self.assertEqual(result.returncode, 0)
        self.assertIn("note: libqvvisa.so cannot ask instruments: it lacks viWrite, viRead\n", result.stderr)


unittest.main(argv=sys.argv[:1])
