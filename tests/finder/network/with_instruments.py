#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs a command on a simulated machine that has a network with two instruments, an instrument on
USB and two serial ports.

usage: with_instruments.py COMMAND...

Ends with the exit status of the command, or with 77 where network namespaces are not allowed. The
files of /sys are made by hand, so any program can read them, also under the sanitizers.
"""

import os
import pathlib
import subprocess
import sys

import lab

INSTRUMENTS = [
    {"address": "198.51.100.2", "vxi11": 1024, "identity": "Quorvane,Scope,S1,1.0",
     "services": [["Scope", "_hislip._tcp.local", 4880, {"Manufacturer": "Quorvane", "Model": "Scope"}]]},
    {"address": "198.51.100.3", "services": [["Meter", "_scpi-raw._tcp.local", 5025, {}]]},
]
FILES = {
    "/sys/bus/usb/devices/1-2/idVendor": "0957",
    "/sys/bus/usb/devices/1-2/idProduct": "56a0",
    "/sys/bus/usb/devices/1-2/serial": "MY1234",
    "/sys/bus/usb/devices/1-2:1.0/bInterfaceClass": "fe",
    "/sys/bus/usb/devices/1-2:1.0/bInterfaceSubClass": "03",
    "/sys/bus/usb/devices/1-2:1.0/bInterfaceNumber": "00",
    "/sys/class/tty/ttyS0/type": "4",
}
DRIVERS = {"ttyS0": "serial", "ttyUSB0": "ftdi_sio"}


def add_devices():
    for name, text in FILES.items():
        path = pathlib.Path(name)
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text + "\n", encoding="ascii")
    for port, driver in DRIVERS.items():
        device = pathlib.Path("/sys/class/tty", port, "device")
        device.mkdir(parents=True)
        (device / "driver").symlink_to(f"../../../bus/drivers/{driver}")


def main():
    lab.enter()
    add_devices()
    peer = lab.Peer()
    peer.instruments(*INSTRUMENTS)
    environment = {key: value for key, value in os.environ.items() if not key.startswith("QVFIND_LAB")}
    sys.exit(subprocess.run(sys.argv[1:], env=environment, check=False).returncode)


if __name__ == "__main__":
    main()
