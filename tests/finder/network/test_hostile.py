#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""A peer that sends packets made to hurt, beside an instrument that behaves."""

import os
import sys
import unittest

import lab

GOOD = {"address": "198.51.100.3", "vxi11": 1024, "services": [["Scope", "_hislip._tcp.local", 4880, {}]]}
GOOD_STRINGS = ["TCPIP0::198.51.100.3::hislip0::INSTR", "TCPIP0::198.51.100.3::inst0::INSTR"]

# Each answers every packet that reaches port 5353 or 111 of 198.51.100.2. They import what they need
# from attack.py.
ATTACKS = ("garbage", "pointer_loops", "endless_counts", "many_records", "many_instances", "large_packets",
           "wrong_transactions", "spoofed_sources")


class Hostile(unittest.TestCase):
    def setUp(self):
        self.peer = lab.Peer()
        self.addCleanup(self.peer.remove)
        self.peer.instruments(GOOD)

    def test_attack_hides_no_instrument_and_lists_no_stranger(self):
        for attack in ATTACKS:
            with self.subTest(attack=attack):
                attacker = self.peer.start_until_ready(sys.executable, os.path.join(lab.HERE, "attack.py"), attack)
                result = lab.search()
                self.assertEqual([r for r in result.resources if "198.51.100.3:" in r], GOOD_STRINGS, result.log)
                strangers = [r for r in result.resources if "198.51.100.3:" not in r]
                allowed = 32 if attack == "many_instances" else 0
                self.assertLessEqual(len(strangers), allowed, strangers)
                self.assertLess(result.milliseconds, 1600)
                self.peer.end(attacker)

    def test_flood_ends_at_the_deadline(self):
        flood = self.peer.start_until_ready(sys.executable, os.path.join(lab.HERE, "attack.py"), "flood")
        result = lab.search()
        self.peer.end(flood)
        self.assertLess(result.milliseconds, 1600)


if __name__ == "__main__":
    lab.enter()
    unittest.main(verbosity=2)
