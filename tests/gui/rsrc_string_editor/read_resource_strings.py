# SPDX-License-Identifier: MIT
"""A reader that nobody here wrote, PyVISA's, takes the composed resource strings apart again.

Usage: read_resource_strings.py PROGRAM-THAT-PRINTS-THEM
"""
import json
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


def composed(interface):
    """All that the composer made for one interface, each with the fields it was made from."""
    output = subprocess.run([PROGRAM], check=True, stdout=subprocess.PIPE, timeout=60).stdout
    lines = [json.loads(line) for line in output.decode("utf-8").splitlines()]
    return [line for line in lines if line["interface"] == interface]


class ReadResourceStrings(unittest.TestCase):
    """Each case: which strings the reader refuses and why, and the parts of all others."""

    def parts_of(self, line, kind):
        """What the reader finds in a string, which has to be of that kind."""
        with self.subTest(resource=line["resource"]):
            name = rname.ResourceName.from_string(line["resource"])
            self.assertEqual((name.interface_type, name.resource_class), kind)
            return name

    def assert_refused(self, line, reason):
        with self.subTest(resource=line["resource"]):
            with self.assertRaisesRegex(rname.InvalidResourceName, reason):
                rname.ResourceName.from_string(line["resource"])

    def check(self, interface, kind, refusal, parts):
        """refusal(line): why the reader refuses the string, or None. parts(line): what it must
        find, {attribute: text}. Returns how many strings it accepted and how many it refused."""
        accepted = refused = 0
        for line in composed(interface):
            reason = refusal(line)
            if reason is not None:
                self.assert_refused(line, reason)
                refused += 1
                continue
            name = self.parts_of(line, kind)
            for attribute, text in parts(line).items():
                with self.subTest(resource=line["resource"], part=attribute):
                    self.assertEqual(getattr(name, attribute), text)
            accepted += 1
        self.assertGreater(accepted, 0)
        return accepted, refused

    def test_vxi11(self):
        def parts(line):
            return {
                "board": line["board"] or "0",
                "host_address": line["host"],
                "lan_device_name": "inst" + line["device"],
            }

        _, refused = self.check("VXI-11", ("TCPIP", "INSTR"), without_host, parts)
        self.assertGreater(refused, 0)

    def test_hislip(self):
        """The published grammar has the port behind a comma in the device's name. The reader does
        not part the two, so it is done here."""

        def parts(line):
            return {"board": line["board"] or "0", "host_address": line["host"]}

        _, refused = self.check("HiSlip", ("TCPIP", "INSTR"), without_host, parts)
        self.assertGreater(refused, 0)

        ports = set()
        for line in composed("HiSlip"):
            if without_host(line) is not None:
                continue
            name = self.parts_of(line, ("TCPIP", "INSTR"))
            device, comma, port = name.lan_device_name.partition(",")
            with self.subTest(resource=line["resource"]):
                self.assertEqual(device, "hislip" + line["device"])
                # Without one, a client takes the port that is HiSLIP's own.
                self.assertEqual(port if comma else "4880", line["port"] or "4880")
            ports.add(port)
        self.assertEqual(ports, {"", "5025", "1", "65535", "04880"})

    def test_socket(self):
        def refusal(line):
            if not line["port"]:
                # A socket has no port of its own that could be left out. Where the host lacks
                # too, the reader may miss that first.
                return "port part is mandatory" if line["host"] else "part is mandatory"
            return without_host(line)

        def parts(line):
            return {
                "board": line["board"] or "0",
                "host_address": line["host"],
                "port": line["port"],
            }

        _, refused = self.check("Socket", ("TCPIP", "SOCKET"), refusal, parts)
        self.assertGreater(refused, 0)

    def test_qvib(self):
        """The maker's own interface, which the published grammar does not have."""
        lines = composed("QVIB")
        self.assertGreater(len(lines), 0)
        for line in lines:
            self.assert_refused(line, "unknown interface type")

    def test_usb(self):
        def refusal(line):
            # The serial number may not be left out, nor be empty.
            return "serial_number part is mandatory" if not line["serialNumber"] else None

        def parts(line):
            return {
                "board": line["board"] or "0",
                "manufacturer_id": line["vendor"],
                "model_code": line["product"],
                "serial_number": line["serialNumber"],
                "usb_interface_number": "0",
            }

        _, refused = self.check("USB", ("USB", "INSTR"), refusal, parts)
        self.assertGreater(refused, 0)

    def test_serial(self):
        accepted, refused = self.check(
            "Serial",
            ("ASRL", "INSTR"),
            lambda line: None,
            lambda line: {"board": line["board"] or "0"},
        )
        self.assertEqual((accepted, refused), (5, 0))


def without_host(line):
    """Whom a resource is at has to be said."""
    return "host_address is a required parameter" if not line["host"] else None


if __name__ == "__main__":
    unittest.main(verbosity=2)
