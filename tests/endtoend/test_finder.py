#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The finder as the window's VISA library, on a simulated machine with instruments."""

import os
import subprocess
import sys

import program
import scenario
from desktop import SOURCES, wait_for
from program import HEADER

SKIPPED = 77
WITH_INSTRUMENTS = [sys.executable, str(SOURCES / "tests/finder/network/with_instruments.py")]

# The find dialog's list: ASRL1, ASRL101, HiSLIP and VXI-11 of one instrument, another's socket, USB.
HISLIP, USB = 2, 5


def started(desktop):
    return program.started(desktop, content=HEADER + b"GPIB0::1::INSTR\nGPIB0::2::INSTR\n",
                           libraries=os.environ["QVVISA_FINDER"], around=WITH_INSTRUMENTS)


def find_dialog_lists_network_and_usb_instruments(desktop):
    user = started(desktop)
    for row, place in ((0, HISLIP), (1, USB)):
        user.select(row)
        user.press("find")
        user.choose_found(place)
    user.save()
    user.wait_file(HEADER + b"TCPIP0::198.51.100.2::hislip0::INSTR\n"
                   b"USB0::0x0957::0x56A0::MY1234::INSTR\n")
    user.end()


def serial_page_lists_ports_by_the_finders_numbers(desktop):
    user = started(desktop)
    user.open_properties()
    desktop.key("Tab", "End", "Tab", "Home")  # the last port; the slowest baud rate
    user.accept_properties()
    user.save()
    wait_for(lambda: b":SerialProperty[DeviceNo=101].Baudrate=300\n" in user.file.read_bytes(),
             lambda: f"the baud rate of port 101 in {user.file.read_bytes()!r}")
    user.end()


if subprocess.run([*WITH_INSTRUMENTS, "true"], check=False).returncode == SKIPPED:
    sys.exit(SKIPPED)
scenario.run(find_dialog_lists_network_and_usb_instruments,
             serial_page_lists_ports_by_the_finders_numbers)
