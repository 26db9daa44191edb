#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""20 instruments with three services each on a network that loses one packet in 20."""

import unittest

import lab

SERVICES = (("_hislip._tcp.local", 4880), ("_scpi-raw._tcp.local", 5025), ("_vxi-11._tcp.local", 1024))
RUNS = 10
LOSE_ONE_IN_20 = "add rule inet loss in numgen random mod 100 < 5 drop"


def lose(run):
    run("nft", "add table inet loss")
    run("nft", "add chain inet loss in { type filter hook input priority 0; }")
    run("nft", LOSE_ONE_IN_20)


class Loss(unittest.TestCase):
    def test_nearly_all_services_are_found(self):
        peer = lab.Peer()
        self.addCleanup(peer.remove)
        peer.instruments(*({"address": f"198.51.100.{10 + i}", "vxi11": 1024,
                            "services": [[f"Instrument {i}", name, port, {}] for name, port in SERVICES]}
                           for i in range(20)))
        self.assertEqual(len(lab.search().resources), 60, "without loss")
        lose(lab.run)
        lose(peer.run)
        results = [lab.search() for _ in range(RUNS)]
        found = [len(result.resources) for result in results]
        self.assertGreaterEqual(sum(found), 0.98 * 60 * RUNS, found)
        self.assertLess(max(result.milliseconds for result in results), 1600)


if __name__ == "__main__":
    lab.enter()
    unittest.main(verbosity=2)
