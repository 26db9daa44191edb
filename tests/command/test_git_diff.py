# SPDX-License-Identifier: MIT
"""Twenty edits of a file with comments, GPIB settings and lines of all kinds: git shows the edited
lines and no other."""

import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

PROGRAM = pathlib.Path(sys.argv[1]).resolve()

BEFORE = b""":QvVisaConfigurationFileVersion01
# Laboratory 3, kept by the administrator
:Provider=3674

# The old rack \xb5V
:GPIBProperty[DeviceNo=0].PrimaryAddress=0
:GPIBProperty[DeviceNo=0].SecondaryAddress=65535
:GPIBProperty[DeviceNo=0].SystemController=1
:GPIBProperty[DeviceNo=1].PrimaryAddress= 21\t
:GPIBProperty[DeviceNo=1].primaryaddress=3
:SerialProperty[DeviceNo=1].Baudrate=9600
:SerialProperty[DeviceNo=1].Parity=0
  :SerialProperty[DeviceNo=1].Parity=2
:SerialProperty[DeviceNo=2].Baudrate=19200\r
#DMM=GPIB0::1::INSTR
DMM=GPIB0::1::INSTR
Scope = TCPIP0::10.0.0.5::INSTR  \r
psu=GPIB0::5::INSTR
PSU =\tGPIB0::6::INSTR
LOAD=GPIB0::7::INSTR
COUNTER=GPIB0::8::INSTR
source=GPIB0::9::INSTR
MY METER=GPIB0::10::INSTR
RELAY=USB0::0x1234::0x5678::A1::INSTR

GPIB0::20::INSTR
GPIB0::21::INSTR\t
gpib0::22::instr
=
; spare
GPIB0::23::INSTR"""

# The arguments of an edit, the lines that go and those that come.
EDITS = [
    ("set DMM GPIB0::2::INSTR", [b"DMM=GPIB0::1::INSTR"], [b"DMM=GPIB0::2::INSTR"]),
    ("set scope TCPIP0::10.0.0.6::INSTR", [b"Scope = TCPIP0::10.0.0.5::INSTR  \r"],
     [b"Scope = TCPIP0::10.0.0.6::INSTR  \r"]),
    ("set PSU GPIB0::16::INSTR", [b"PSU =\tGPIB0::6::INSTR"], [b"PSU =\tGPIB0::16::INSTR"]),
    ("set load GPIB0::7::INSTR", [], []),
    ("set AMP GPIB0::11::INSTR", [], [b"AMP=GPIB0::11::INSTR"]),
    ("set chamber TCPIP0::chamber::INSTR", [], [b"CHAMBER=TCPIP0::chamber::INSTR"]),
    ("unset COUNTER", [b"COUNTER=GPIB0::8::INSTR"], []),
    ("unset NOSUCH", [], []),
    ("rename SOURCE GENERATOR", [b"source=GPIB0::9::INSTR"], [b"GENERATOR=GPIB0::9::INSTR"]),
    ("rename relay SWITCH", [b"RELAY=USB0::0x1234::0x5678::A1::INSTR"],
     [b"SWITCH=USB0::0x1234::0x5678::A1::INSTR"]),
    ("add GPIB0::22::INSTR", [], []),
    ("remove GPIB0::20::INSTR", [b"GPIB0::20::INSTR"], []),
    ("remove GPIB0::22::INSTR", [b"gpib0::22::instr"], []),
    ("serial 1 baud-rate=115200", [b":SerialProperty[DeviceNo=1].Baudrate=9600"],
     [b":SerialProperty[DeviceNo=1].Baudrate=115200"]),
    ("serial 2 parity=even", [], [b":SerialProperty[DeviceNo=2].Parity=2\r"]),
    ("serial 2 baud-rate=300", [b":SerialProperty[DeviceNo=2].Baudrate=19200\r"],
     [b":SerialProperty[DeviceNo=2].Baudrate=300\r"]),
    ("gpib 1 primary-address=4", [b":GPIBProperty[DeviceNo=1].PrimaryAddress= 21\t"],
     [b":GPIBProperty[DeviceNo=1].PrimaryAddress= 4\t"]),
    ("gpib 0 system-controller=no", [b":GPIBProperty[DeviceNo=0].SystemController=1"],
     [b":GPIBProperty[DeviceNo=0].SystemController=0"]),
    ("gpib 2 primary-address=9", [], [b":GPIBProperty[DeviceNo=2].PrimaryAddress=9"]),
    ("provider 0x0E5B", [b":Provider=3674"], [b":Provider=3675"]),
]


class GitDiff(unittest.TestCase):
    def test_shows_the_lines_of_twenty_edits_and_no_other(self):
        folder = tempfile.TemporaryDirectory(prefix="qvvisa-diff-")
        self.addCleanup(folder.cleanup)
        path = pathlib.Path(folder.name)

        # A user's own settings of git have no say.
        environment = dict(os.environ, HOME=folder.name, GIT_CONFIG_NOSYSTEM="1")

        def git(*arguments):
            command = ["git", "-c", "user.name=test", "-c", "user.email=test@example.com"]
            return subprocess.run([*command, *arguments], cwd=path, env=environment, check=True,
                                  stdout=subprocess.PIPE).stdout

        (path / "visa.conf").write_bytes(BEFORE)
        git("init", "-q")
        git("add", ".")
        git("commit", "-q", "-m", "Before")
        for arguments, _, _ in EDITS:
            subprocess.run([PROGRAM, "-q", "-f", "visa.conf", *arguments.split()], cwd=path,
                           check=True)
        lines = git("diff", "-U0").split(b"\n")[4:]
        changed = [line for line in lines if line[:1] in (b"+", b"-")]
        expected = [b"-" + line for _, gone, _ in EDITS for line in gone]
        expected += [b"+" + line for _, _, come in EDITS for line in come]
        self.assertEqual(sorted(changed), sorted(expected))


unittest.main(argv=sys.argv[:1])
