# SPDX-License-Identifier: MIT
"""Parses the composed resource strings with PyVISA, an independent parser.

Usage: read_resource_strings.py PRINT-RESOURCE-STRINGS
"""
import collections
import os
import subprocess
import sys
import tempfile
import unittest

HOME = tempfile.TemporaryDirectory(prefix="qvvisa-pyvisa-")
# PyVISA reads the settings in the user's home when it is loaded.
os.environ["HOME"] = HOME.name

try:
    from pyvisa import rname
except ImportError as error:
    sys.exit(f"{error} in {sys.executable}: install python3-pyvisa (Debian) or pyvisa (pip)")

PROGRAM = sys.argv.pop(1) if len(sys.argv) > 1 else sys.exit(__doc__)
Line = collections.namedtuple("Line", "interface board host device port vendor product number text")
LINES = [Line(*line.split("\t")) for line in
         subprocess.run([PROGRAM], check=True, stdout=subprocess.PIPE, timeout=60)
         .stdout.decode("utf-8").splitlines()]
NO_HOST = "host_address is a required parameter"


def hislip_device(name):
    """The device and the port of the published grammar, which PyVISA leaves together."""
    device, _, port = name.lan_device_name.partition(",")
    return device, port or "4880"


class ReadResourceStrings(unittest.TestCase):
    """Each case: why PyVISA refuses a string, or None, and what it must find in all others."""

    def check(self, interface, kind, refusal, expected, found):
        """Returns how many strings were accepted and how many were refused."""
        counts = {True: 0, False: 0}
        for line in (line for line in LINES if line.interface == interface):
            reason = refusal(line)
            counts[reason is None] += 1
            with self.subTest(resource=line.text):
                if reason is not None:
                    with self.assertRaisesRegex(rname.InvalidResourceName, reason):
                        rname.ResourceName.from_string(line.text)
                    continue
                name = rname.ResourceName.from_string(line.text)
                self.assertEqual((name.interface_type, name.resource_class), kind)
                self.assertEqual((name.board, *found(name)), (line.board or "0", *expected(line)))
        return counts[True], counts[False]

    def test_vxi11(self):
        counts = self.check("VXI-11", ("TCPIP", "INSTR"),
                            lambda line: None if line.host else NO_HOST,
                            lambda line: (line.host, "inst" + line.device),
                            lambda name: (name.host_address, name.lan_device_name))
        self.assertEqual(counts, (480, 120))

    def test_hislip(self):
        counts = self.check("HiSlip", ("TCPIP", "INSTR"),
                            lambda line: None if line.host else NO_HOST,
                            lambda line: (line.host, "hislip" + line.device, line.port or "4880"),
                            lambda name: (name.host_address, *hislip_device(name)))
        self.assertEqual(counts, (480, 120))

    def test_socket(self):
        def refusal(line):
            if not line.port:
                # Without a host as well, PyVISA may name the host.
                return "port part is mandatory" if line.host else "part is mandatory"
            return None if line.host else NO_HOST

        counts = self.check("Socket", ("TCPIP", "SOCKET"), refusal,
                            lambda line: (line.host, line.port),
                            lambda name: (name.host_address, name.port))
        self.assertEqual(counts, (400, 200))

    def test_qvib(self):
        """The published grammar does not have this interface."""
        counts = self.check("QVIB", None, lambda line: "unknown interface type", None, None)
        self.assertEqual(counts, (0, 600))

    def test_usb(self):
        counts = self.check(
            "USB", ("USB", "INSTR"),
            lambda line: None if line.number else "serial_number part is mandatory",
            lambda line: (line.vendor, line.product, line.number, "0"),
            lambda name: (name.manufacturer_id, name.model_code, name.serial_number,
                          name.usb_interface_number))
        self.assertEqual(counts, (300, 75))

    def test_serial(self):
        counts = self.check("Serial", ("ASRL", "INSTR"), lambda line: None, lambda line: (),
                            lambda name: ())
        self.assertEqual(counts, (5, 0))


if __name__ == "__main__":
    unittest.main(verbosity=2)
