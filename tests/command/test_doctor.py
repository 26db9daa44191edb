# SPDX-License-Identifier: MIT
"""What qvvisa doctor prints on a terminal of 80 columns, and that it never waits."""

import os
import pathlib
import pty
import struct
import subprocess
import sys
import tempfile
import fcntl
import termios
import time
import unittest

PROGRAM = pathlib.Path(sys.argv[1]).resolve()
SIMULATOR = pathlib.Path(sys.argv[2]).resolve()
LIBRARY_PATH = "DYLD_LIBRARY_PATH" if sys.platform == "darwin" else "LD_LIBRARY_PATH"
BENCH = """resource TCPIP0::10.0.0.5::INSTR
resource USB0::0x1AB1::0x04CE::DS1::INSTR
resource GPIB0::12::INSTR
resource ASRL1::INSTR
resource ASRL101::INSTR
"""
HEADER = ":QvVisaConfigurationFileVersion01\n"


class Doctor(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="qvvisa-doctor-")
        self.addCleanup(folder.cleanup)
        self.home = pathlib.Path(folder.name)
        self.file = self.home / ".quorvane" / "visa.conf"
        self.file.parent.mkdir()
        self.file.write_text(
            HEADER + "# bench 3\nDMM=TCPIP0::10.0.0.5::INSTR\nSCOPE=USB0::0x1AB1::0x04CE::DS1::INSTR\n"
            ":SerialProperty[DeviceNo=1].Baudrate=19200\n:GPIBProperty[DeviceNo=0].PrimaryAddress=0\n"
        )
        self.environment = {"PATH": os.environ["PATH"], "HOME": str(self.home), "TERM": "xterm",
                            "TMPDIR": str(self.home), "QVFIND": "local"}

    def on_terminal(self, *arguments, columns=80):
        """The lines on a terminal, without colours."""
        parent, child = pty.openpty()
        fcntl.ioctl(child, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))
        with subprocess.Popen([PROGRAM, *arguments], cwd=self.home, env=self.environment,
                              stdin=child, stdout=child, stderr=child) as process:
            os.close(child)
            output = b""
            while True:
                try:
                    piece = os.read(parent, 4096)
                except OSError:  # The last one has closed the terminal.
                    break
                output += piece
                if not piece:
                    break
        os.close(parent)
        self.assertIn(process.returncode, (0, 1))
        text = output.decode()
        for sequence in ("\x1b[1;31m", "\x1b[1;35m", "\x1b[1;36m", "\x1b[0m"):
            text = text.replace(sequence, "")
        return text.splitlines()

    def test_usual_machine_takes_40_lines_of_80_columns(self):
        (self.home / "bench").write_text(BENCH)
        self.environment.update(
            {LIBRARY_PATH: str(SIMULATOR), "QVVISA_BENCH": str(self.home / "bench")})
        lines = self.on_terminal("doctor")
        self.assertLessEqual(len(lines), 40, "\n".join(lines))
        self.assertIn("ok       instruments.missing: The instruments of all 2 aliases were found.", lines)
        for line in lines:
            self.assertLessEqual(len(line), 80, line)

    def test_lines_are_wrapped_below_the_text(self):
        lines = self.on_terminal("doctor", "file.loses", columns=40)
        result = lines[: lines.index("")]
        self.assertGreater(len(result), 4)
        for line in result[1:]:
            self.assertRegex(line, "^ {9}", lines)

    def test_pipe_gets_whole_lines(self):
        output = subprocess.run([PROGRAM, "doctor", "file.loses"], env=self.environment,
                                capture_output=True, text=True, check=True).stdout
        self.assertEqual(len(output.splitlines()), 4, output)
        self.assertNotIn("\x1b", output)

    def test_pipe_as_file_is_not_waited_for(self):
        os.mkfifo(self.home / "pipe")
        self.environment["QVVISACONFFILE"] = str(self.home / "pipe")
        start = time.monotonic()
        for options in (["doctor", "file"], ["-f", str(self.home / "pipe"), "doctor", "file"]):
            subprocess.run([PROGRAM, *options], env=self.environment, stdout=subprocess.DEVNULL,
                           timeout=30, check=False)
        self.assertLess(time.monotonic() - start, 30)


unittest.main(argv=sys.argv[:1])
