#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""What a search sends, counted by the interface that it sends from."""

import socket
import threading
import unittest

import lab


class Capture:
    """The UDP packets that leave by an interface."""

    def __init__(self, interface):
        self.socket = socket.socket(socket.AF_PACKET, socket.SOCK_DGRAM, socket.htons(0x0003))
        self.socket.bind((interface, 0x0003))
        self.socket.settimeout(0.1)
        self.packets = []
        self.ends = False
        self.thread = threading.Thread(target=self.read)
        self.thread.start()

    def read(self):
        while True:
            try:
                packet, sender = self.socket.recvfrom(65536)
            except TimeoutError:
                if self.ends:
                    return
                continue
            if sender[2] == socket.PACKET_OUTGOING and sender[1] == 0x0800 and packet[9] == 17:
                self.packets.append(packet)

    def end(self):
        self.ends = True
        self.thread.join()
        self.socket.close()
        return self.packets


class Silence(unittest.TestCase):
    def setUp(self):
        self.peer = lab.Peer()
        self.addCleanup(self.peer.remove)

    def sent(self, *arguments, **environment):
        capture = Capture(self.peer.cable)
        result = lab.search(*arguments, **environment)
        return capture.end(), result

    def test_expression_that_cannot_match_tcpip_sends_nothing(self):
        for expression in ("ASRL?*", "USB?*::INSTR", "[^T]?*", "GPIB?*|ASRL?*"):
            with self.subTest(expression=expression):
                self.assertEqual(self.sent(expression)[0], [])

    def test_expression_that_can_match_tcpip_is_recognised_whatever_its_first_letter(self):
        for expression in ("?*", "(ASRL|tcp)?*", "[A-Z]CPIP?*", "?*INSTR"):
            with self.subTest(expression=expression):
                self.assertNotEqual(self.sent(expression)[0], [])

    def test_local_setting_sends_nothing(self):
        self.assertEqual(self.sent("?*", QVFIND="local")[0], [])

    def test_search_kinds_of_zero_send_nothing(self):
        self.assertEqual(self.sent("?*", "1000", "0")[0], [])
        self.assertNotEqual(self.sent("?*", "1000", "7")[0], [])

    def test_search_time_of_zero_sends_nothing_and_a_short_one_ends_early(self):
        packets, result = self.sent("?*", "0")
        self.assertEqual(packets, [])
        self.assertLess(result.milliseconds, 400)
        _, result = self.sent("?*", "100")
        self.assertLess(result.milliseconds, 500)

    def test_search_sends_twelve_packets_at_most(self):
        packets, _ = self.sent("?*")
        self.assertGreater(len(packets), 0)
        self.assertLessEqual(len(packets), 12)

    def test_search_with_port_5353_taken_sends_twenty_packets_at_most(self):
        taken = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        self.addCleanup(taken.close)
        taken.bind(("0.0.0.0", 5353))
        packets, result = self.sent("?*")
        self.assertIn("cannot receive multicast DNS", result.log)
        self.assertGreater(len(packets), 12)
        self.assertLessEqual(len(packets), 20)

    def test_named_hosts_are_asked_twice_at_most(self):
        services = [["Scope", "_hislip._tcp.local", 4880, {}]]
        self.peer.instruments(*({"address": f"198.51.100.{10 + i}", "services": services} for i in range(20)))
        packets, _ = self.sent("?*")
        to_hosts = [packet[16:20] for packet in packets if packet[19] not in (255, 251)]
        self.assertEqual(len(set(to_hosts)), 20)
        self.assertLessEqual(len(to_hosts), 40)
        self.assertLessEqual(len(packets) - len(to_hosts), 16)


if __name__ == "__main__":
    lab.enter()
    unittest.main(verbosity=2)
