#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The programs that instruments and computers really run: rpcbind, avahi, zeroconf."""

import os
import shutil
import socket
import struct
import subprocess
import sys
import tempfile
import unittest

import lab

AVAHI = """[server]
host-name={host}
use-ipv6=no
enable-dbus=no
allow-interfaces={interface}
[wide-area]
enable-wide-area=no
[publish]
publish-workstation=no
[rlimits]
"""
SERVICE = """<?xml version="1.0" standalone='no'?><!DOCTYPE service-group SYSTEM "avahi-service.dtd">
<service-group><name>{host}</name>
<service><type>_hislip._tcp</type><port>4881</port><txt-record>Model=M1</txt-record></service>
<service><type>_scpi-raw._tcp</type><port>5025</port></service></service-group>
"""
ZEROCONF = """
import asyncio, socket, sys
from zeroconf import ServiceInfo
from zeroconf.asyncio import AsyncZeroconf
async def main():
    zeroconf = AsyncZeroconf(interfaces=["198.51.100.2"])
    for kind, port in (("_hislip._tcp.local.", 4880), ("_scpi-raw._tcp.local.", 5025), ("_lxi._tcp.local.", 80)):
        await zeroconf.async_register_service(ServiceInfo(kind, "Scope." + kind, port, server="scope.local.",
            addresses=[socket.inet_aton("198.51.100.2")], properties={"Model": "M1"}), cooperating_responders=True)
    print("ready", flush=True)
    await asyncio.sleep(1000)
asyncio.run(main())
"""
REGISTER = """
import socket, struct, sys
call = struct.pack(">IIIIIIIIII", 1, 0, 2, 100000, 2, 1, 0, 0, 0, 0) + struct.pack(">IIII", 395183, 1, 6, 1024)
s = socket.socket(socket.AF_INET, socket.SOCK_DGRAM); s.settimeout(0.2)
s.sendto(call, ("127.0.0.1", 111))
sys.exit(0 if struct.unpack(">IIIIIII", s.recv(100))[-1] == 1 else 1)
"""


def mdns_answers(address, instance, own="198.51.100.1"):
    """True when a direct question of a fourth program is answered from there: the one for the
    instance's server record, which avahi publishes last, once it has found the name unused."""
    labels = (instance, "_hislip", "_tcp", "local")
    question = struct.pack(">HHHHHH", 0, 0, 1, 0, 0, 0) + b"".join(
        bytes([len(label)]) + label.encode() for label in labels) + b"\0" + struct.pack(">HH", 33, 0x8001)
    asker = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
    asker.settimeout(0.2)
    asker.bind((own, 0))
    asker.setsockopt(socket.IPPROTO_IP, socket.IP_MULTICAST_IF, socket.inet_aton(own))
    asker.sendto(question, ("224.0.0.251", 5353))
    try:
        while True:
            if asker.recvfrom(9000)[1][0] == address:
                return True
    except TimeoutError:
        return False
    finally:
        asker.close()


def avahi_files(folder, host, interface, services=True):
    os.makedirs(f"{folder}/services", exist_ok=True)
    with open(f"{folder}/avahi-daemon.conf", "w", encoding="ascii") as file:
        file.write(AVAHI.format(host=host, interface=interface))
    if services:
        with open(f"{folder}/services/scope.service", "w", encoding="ascii") as file:
            file.write(SERVICE.format(host=host))


class Daemons(unittest.TestCase):
    def setUp(self):
        self.peer = lab.Peer()
        self.addCleanup(self.peer.remove)

    def start_avahi(self, start, host, interface):
        """avahi-daemon reads /etc/avahi: a private copy is mounted there for it alone."""
        folder = tempfile.mkdtemp()  # not in /run, which each namespace has for itself
        self.addCleanup(shutil.rmtree, folder)
        avahi_files(folder, host, interface)
        return start("unshare", "--mount", "sh", "-c",
                     f"mkdir -p /run/avahi-daemon && mount --bind {folder} /etc/avahi && "
                     "exec avahi-daemon --no-drop-root --no-chroot --no-rlimits", stderr=subprocess.DEVNULL)

    @unittest.skipUnless(lab.is_root(), "rpcbind does not start in a user namespace")
    def test_instrument_with_rpcbind_is_found(self):
        self.peer.start("rpcbind", "-f")
        register = self.peer.inside(sys.executable, "-c", REGISTER)
        lab.wait_for(lambda: subprocess.run(register, stderr=subprocess.DEVNULL, check=False).returncode == 0, "rpcbind")
        result = lab.search()
        self.assertEqual(result.resources, ["TCPIP0::198.51.100.2::inst0::INSTR"])

    def test_instrument_with_zeroconf_is_found(self):
        self.peer.start_until_ready("/usr/bin/python3", "-c", ZEROCONF)
        result = lab.search()
        self.assertEqual(result.resources, ["TCPIP0::198.51.100.2::hislip0::INSTR",
                                            "TCPIP0::198.51.100.2::5025::SOCKET"])
        self.assertIn("(M1)", result.log)

    @unittest.skipUnless(lab.is_root(), "avahi-daemon does not start in a user namespace")
    def test_instrument_with_avahi_is_found_beside_an_avahi_on_this_machine(self):
        self.start_avahi(self.peer.start, "scope", "eth0")
        own = []

        def start_here(*command, **options):
            own.append(subprocess.Popen(command, **options))
            self.addCleanup(own[0].wait)
            self.addCleanup(own[0].kill)

        self.start_avahi(start_here, "computer", self.peer.cable)
        lab.wait_for(lambda: mdns_answers("198.51.100.2", "scope"), "the instrument's avahi")
        lab.wait_for(lambda: mdns_answers("198.51.100.1", "computer"), "this machine's avahi")
        for attempt in ("just announced", "just asked"):
            with self.subTest(attempt):
                result = lab.search()
                self.assertIn("TCPIP0::198.51.100.2::hislip0,4881::INSTR", result.resources, result.log)
                self.assertIn("TCPIP0::198.51.100.2::5025::SOCKET", result.resources)
        self.assertTrue(mdns_answers("198.51.100.1", "computer"), "avahi no longer answers others")


if __name__ == "__main__":
    lab.enter()
    unittest.main(verbosity=2)
