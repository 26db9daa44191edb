# SPDX-License-Identifier: MIT
"""An independent client, PyVISA, lists the bench, asks instruments and closes.

Usage: pyvisa_client.py LIBRARY
"""
import os
import subprocess
import sys
import tempfile
import unittest
import warnings

HOME = tempfile.TemporaryDirectory(prefix="qvvisa-pyvisa-")
# PyVISA reads the settings in the user's home when it is loaded.
os.environ["HOME"] = HOME.name

try:
    import pyvisa
    from pyvisa import constants
except ImportError as error:
    sys.exit(f"{error} in {sys.executable}: install python3-pyvisa (Debian) or pyvisa (pip)")

LIBRARY = sys.argv.pop(1) if len(sys.argv) > 1 else sys.exit(__doc__)

# With interface type, board number and class.
BUILT_IN = {
    "TCPIP0::192.0.2.10::inst0::INSTR": ("tcpip", 0, "INSTR"),
    "TCPIP0::192.0.2.11::hislip0::INSTR": ("tcpip", 0, "INSTR"),
    "TCPIP0::192.0.2.12::5025::SOCKET": ("tcpip", 0, "SOCKET"),
    "USB0::0x1234::0x5678::100004::INSTR": ("usb", 0, "INSTR"),
    "GPIB0::20::INSTR": ("gpib", 0, "INSTR"),
    "ASRL1::INSTR": ("asrl", 1, "INSTR"),
    "ASRL2::INSTR": ("asrl", 2, "INSTR"),
}
ALL_CALLS = {
    "viOpenDefaultRM", "viFindRsrc", "viFindNext", "viParseRsrc", "viParseRsrcEx",
    "viOpen", "viClose", "viSetAttribute", "viGetAttribute", "viStatusDesc",
    "viWrite", "viRead", "viDisableEvent", "viDiscardEvents",
}  # fmt: skip


class PyVisaClient(unittest.TestCase):
    def setUp(self):
        # A warning of PyVISA, for example about an unexpected status, is a failure.
        warnings.simplefilter("error")
        self.addCleanup(warnings.resetwarnings)
        folder = tempfile.TemporaryDirectory(dir=HOME.name)
        self.addCleanup(folder.cleanup)
        self.bench = os.path.join(folder.name, "bench.txt")
        self.log = os.path.join(folder.name, "calls.txt")
        os.environ.pop("QVVISA_BENCH", None)
        os.environ["QVVISA_BENCH_LOG"] = self.log

    def manager(self, bench=None):
        if bench is not None:
            with open(self.bench, "w", encoding="ascii") as file:
                file.write(bench)
            os.environ["QVVISA_BENCH"] = self.bench
        manager = pyvisa.ResourceManager(LIBRARY)
        self.addCleanup(manager.close)
        return manager

    def test_lists_what_matches(self):
        manager = self.manager()
        self.assertEqual(manager.list_resources("?*"), tuple(BUILT_IN))
        self.assertEqual(manager.list_resources("ASRL?*"), ("ASRL1::INSTR", "ASRL2::INSTR"))
        # By default the instruments.
        instruments = tuple(name for name in BUILT_IN if "SOCKET" not in name)
        self.assertEqual(manager.list_resources(), instruments)

    def test_lists_nothing_on_an_empty_bench(self):
        self.assertEqual(self.manager("").list_resources("?*"), ())

    def test_lists_with_details(self):
        details = self.manager().list_resources_info("?*")
        kinds = {
            name: (info.interface_type.name, info.interface_board_number, info.resource_class)
            for name, info in details.items()
        }
        self.assertEqual(kinds, BUILT_IN)
        for name, info in details.items():
            self.assertEqual((info.resource_name, info.alias), (name, None))

    def test_describes_the_library_as_a_whole(self):
        """What `pyvisa-info` prints of a library."""
        settings = os.path.join(HOME.name, ".pyvisarc")
        with open(settings, "w", encoding="ascii") as file:
            file.write(f"[Paths]\nvisa library={LIBRARY}\n")
        self.addCleanup(os.remove, settings)
        text = subprocess.run(
            [sys.executable, "-c", "import pyvisa.util; print(pyvisa.util.get_debug_info(False))"],
            check=True, capture_output=True, text=True,
        ).stdout  # fmt: skip
        self.assertIn("Quorvane (simulator)", text)
        self.assertNotIn("Could not get more info", text)

    def test_asks_every_instrument(self):
        manager = self.manager()
        for name in BUILT_IN:
            with self.subTest(name), manager.open_resource(name) as instrument:
                maker, model, serial, version = instrument.query("*IDN?").strip().split(",")
                self.assertEqual(maker, "Quorvane")
                self.assertTrue(model.startswith("Simulated "), model)
                self.assertTrue(serial.isdigit(), serial)
                self.assertEqual(version, "1.0")

    def test_asks_what_the_bench_file_says(self):
        manager = self.manager('resource ASRL3::INSTR idn="Acme,Balance,1,2"\n')
        self.assertEqual(manager.list_resources(), ("ASRL3::INSTR",))
        port = manager.open_resource("ASRL3::INSTR")
        self.assertEqual(port.interface_type, constants.InterfaceType.asrl)
        self.assertEqual(port.interface_number, 3)
        self.assertEqual(port.query("*IDN?"), "Acme,Balance,1,2\n")
        self.assertEqual((port.baud_rate, port.data_bits), (9600, 8))
        port.baud_rate = 115200
        self.assertEqual(port.baud_rate, 115200)
        port.read_termination = "\n"
        self.assertEqual(port.query("*IDN?"), "Acme,Balance,1,2")
        port.write("*RST")
        with self.assertRaises(pyvisa.VisaIOError) as caught:
            port.read()
        self.assertEqual(caught.exception.error_code, constants.StatusCode.error_timeout)
        port.close()

    def test_sees_failing_calls(self):
        manager = self.manager(
            "resource ASRL{n}::INSTR repeat=3\nstatus viFindNext VI_ERROR_IO at=2\n"
        )
        for expression, code in (
            ("ASRL[", constants.StatusCode.error_invalid_expression),
            ("?*", constants.StatusCode.error_io),
        ):
            with self.assertRaises(pyvisa.VisaIOError) as caught:
                manager.list_resources(expression)
            self.assertEqual(caught.exception.error_code, code)

    def test_uses_every_exported_call(self):
        manager = self.manager()
        manager.resource_info(manager.list_resources()[0], extended=False)
        text, _ = manager.visalib.status_description(
            manager.session, constants.StatusCode.error_timeout
        )
        self.assertEqual(text, "The time limit expired before the operation completed.")
        with manager.open_resource("GPIB0::20::INSTR") as instrument:
            instrument.timeout = 500
            self.assertEqual(instrument.timeout, 500)
            instrument.query("*IDN?")
        manager.close()
        with open(self.log, encoding="ascii") as log:
            lines = log.read().splitlines()
        self.assertEqual({line.split("(")[0] for line in lines}, ALL_CALLS)
        failed = [line for line in lines if "-> VI_ERROR" in line]
        self.assertEqual(failed, [])


if __name__ == "__main__":
    unittest.main(verbosity=2)
