#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""PyVISA on the finder, on a machine that umockdev simulates.

usage: umockdev-run -d machine.umockdev -- test_pyvisa.py LIBRARY
"""

import os
import sys
import tempfile
import unittest

HOME = tempfile.TemporaryDirectory()
os.environ.update(HOME=HOME.name, QVFIND="local")

import pyvisa  # noqa: E402 the environment comes first

LIBRARY = sys.argv.pop()
USB = "USB0::0x0957::0x56A0::MY1234::INSTR"


class PyVisa(unittest.TestCase):
    def setUp(self):
        self.manager = pyvisa.ResourceManager(LIBRARY)
        self.addCleanup(self.manager.close)

    def test_default_search_lists_instruments_of_all_buses(self):
        self.assertEqual(self.manager.list_resources(), (USB, "ASRL1::INSTR", "ASRL101::INSTR"))

    def test_search_for_everything_lists_the_same(self):
        self.assertEqual(self.manager.list_resources("?*"), (USB, "ASRL1::INSTR", "ASRL101::INSTR"))

    def test_search_for_serial_ports_lists_them_alone(self):
        self.assertEqual(self.manager.list_resources("ASRL?*"), ("ASRL1::INSTR", "ASRL101::INSTR"))

    def test_search_without_a_match_gives_an_empty_tuple(self):
        self.assertEqual(self.manager.list_resources("GPIB?*"), ())

    def test_information_has_the_device_node_as_alias(self):
        information = self.manager.list_resources_info("ASRL?*")["ASRL101::INSTR"]
        self.assertEqual(information.interface_type, pyvisa.constants.InterfaceType.asrl)
        self.assertEqual(information.interface_board_number, 101)
        self.assertEqual(information.resource_class, "INSTR")
        self.assertEqual(information.alias, "/dev/ttyUSB0")

    def test_opening_answers_that_it_is_not_supported(self):
        with self.assertRaises(pyvisa.VisaIOError) as raised:
            self.manager.open_resource(USB)
        self.assertEqual(raised.exception.error_code, pyvisa.constants.StatusCode.error_nonsupported_operation)


if __name__ == "__main__":
    unittest.main(verbosity=2)
