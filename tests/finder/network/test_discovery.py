#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""What a search lists, with responders that behave."""

import unittest

import lab

HISLIP = "_hislip._tcp.local"
VXI11 = "_vxi-11._tcp.local"
SOCKET = "_scpi-raw._tcp.local"
LXI = "_lxi._tcp.local"
TELNET = "_scpi-telnet._tcp.local"


def strings(address, *ends):
    return [f"TCPIP0::{address}::{end}" for end in ends]


class OneCable(unittest.TestCase):
    def setUp(self):
        self.peer = lab.Peer()
        self.addCleanup(self.peer.remove)

    def found(self, *instruments, **environment):
        self.peer.instruments(*instruments)
        result = lab.search(**environment)
        self.assertLess(result.milliseconds, 1600, result.log)
        return result

    def test_nothing_there_gives_an_empty_list(self):
        result = lab.search()
        self.assertEqual(result.resources, [])
        self.assertLess(result.milliseconds, 1600)
        self.assertIn(f"asked 1 interface ({self.peer.cable}) with 10 packets, 0 answers", result.log)

    def test_port_mapper_alone_gives_vxi11(self):
        result = self.found({"address": "198.51.100.2", "vxi11": 1024})
        self.assertEqual(result.resources, strings("198.51.100.2", "inst0::INSTR"))

    def test_port_mapper_without_vxi11_gives_nothing(self):
        self.assertEqual(self.found({"address": "198.51.100.2", "vxi11": 0}).resources, [])

    def test_port_mappers_no_counts_more_than_an_announcement(self):
        services = [["Scope", VXI11, 1024, {}]]
        self.assertEqual(self.found({"address": "198.51.100.2", "vxi11": 0, "services": services}).resources, [])

    def test_announced_vxi11_with_a_silent_port_mapper_is_listed(self):
        result = self.found({"address": "198.51.100.2", "services": [["Scope", VXI11, 1024, {}]]})
        self.assertEqual(result.resources, strings("198.51.100.2", "inst0::INSTR"))

    def test_services_of_one_instrument_are_listed_best_first(self):
        services = [["Scope", SOCKET, 5025, {}], ["Scope", VXI11, 1024, {}], ["Scope", HISLIP, 4880, {}],
                    ["Scope 2", HISLIP, 4881, {}], ["Scope 2", SOCKET, 9221, {}]]
        result = self.found({"address": "198.51.100.2", "vxi11": 1024, "services": services})
        self.assertEqual(result.resources, strings("198.51.100.2", "hislip0::INSTR", "hislip0,4881::INSTR",
                                                   "inst0::INSTR", "5025::SOCKET", "9221::SOCKET"))

    def test_services_that_name_a_host_lead_to_its_port_mapper(self):
        for service in (LXI, TELNET):
            # A firewall that hides the answers to broadcasts.
            self.peer.run("nft", "add table inet f")
            self.peer.run("nft", "add chain inet f in { type filter hook input priority 0; }")
            self.peer.run("nft", "add rule inet f in ip daddr 198.51.100.255 drop")
            with self.subTest(service=service):
                result = self.found({"address": "198.51.100.2", "vxi11": 1024,
                                     "services": [["Scope", service, 80, {}]]})
                self.assertEqual(result.resources, strings("198.51.100.2", "inst0::INSTR"))
            self.peer.stop()

    def test_instruments_are_sorted_by_the_value_of_their_address(self):
        result = self.found({"address": "198.51.100.18", "vxi11": 1}, {"address": "198.51.100.3", "vxi11": 1})
        self.assertEqual(result.resources, strings("198.51.100.3", "inst0::INSTR") +
                         strings("198.51.100.18", "inst0::INSTR"))

    def test_incomplete_answers_are_followed_up(self):
        for answers_only in ("directOnly", "multicastOnly"):
            with self.subTest(answers_only=answers_only):
                result = self.found({"address": "198.51.100.2", "silentAnswers": True, answers_only: True,
                                     "services": [["Scope", HISLIP, 4881, {"Model": "M1"}]]})
                self.assertEqual(result.resources, strings("198.51.100.2", "hislip0,4881::INSTR"))
                self.assertIn("found 198.51.100.2 (M1)", result.log)
            self.peer.stop()

    def test_responder_that_only_uses_multicast_is_found(self):
        result = self.found({"address": "198.51.100.2", "multicastOnly": True,
                             "services": [["Scope", HISLIP, 4880, {}]]})
        self.assertEqual(result.resources, strings("198.51.100.2", "hislip0::INSTR"))

    def test_host_without_address_record_has_its_packets_source(self):
        result = self.found({"address": "198.51.100.2", "records": [], "services": [["Scope", HISLIP, 4880, {}]]})
        self.assertEqual(result.resources, strings("198.51.100.2", "hislip0::INSTR"))

    def test_address_outside_the_subnets_is_neither_listed_nor_asked(self):
        result = self.found({"address": "198.51.100.2", "records": ["203.0.113.9"],
                             "services": [["Scope", HISLIP, 4880, {}]]})
        self.assertEqual(result.resources, [])
        self.assertIn("found but not reachable: scope", result.log)

    def test_addresses_that_no_host_has_are_not_listed(self):
        records = ["127.0.0.1", "0.0.0.0", "224.0.0.1", "255.255.255.255", "198.51.100.0", "198.51.100.255"]
        result = self.found({"address": "198.51.100.2", "records": records[:5],
                             "services": [["Scope", HISLIP, 4880, {}]]},
                            {"address": "198.51.100.3", "records": records[5:],
                             "services": [["Meter", HISLIP, 4880, {}]]})
        self.assertEqual(result.resources, [])

    def test_instrument_in_another_subnet_on_the_wire_is_reported_as_not_reachable(self):
        for interface in ("all", self.peer.cable):
            with open(f"/proc/sys/net/ipv4/conf/{interface}/rp_filter", "w", encoding="ascii") as file:
                file.write("0")
        self.peer.run("ip", "route", "add", "default", "dev", "eth0")
        result = self.found({"address": "203.0.113.9", "services": [["Scope", HISLIP, 4880, {}]]})
        self.assertEqual(result.resources, [])
        self.assertIn("not reachable", result.log)

    def test_same_names_from_two_instruments_are_two_instruments(self):
        twins = [{"address": f"198.51.100.{n}", "host": "scope.local", "services": [["Scope", HISLIP, 4880, {}]]}
                 for n in (2, 3)]
        self.assertEqual(self.found(*twins).resources, strings("198.51.100.2", "hislip0::INSTR") +
                         strings("198.51.100.3", "hislip0::INSTR"))

    def test_announcements_without_life_or_port_are_absent(self):
        result = self.found({"address": "198.51.100.2", "ttl": 0, "services": [["Scope", HISLIP, 4880, {}]]},
                            {"address": "198.51.100.3", "services": [["Meter", HISLIP, 0, {}], ["Meter", SOCKET, 0, {}]]})
        self.assertEqual(result.resources, [])

    def test_names_from_the_network_stay_out_of_resource_strings_and_are_escaped_in_the_log(self):
        result = self.found({"address": "198.51.100.2",
                             "services": [["\x1b[31m\n::\xe9", HISLIP, 4880, {"Model": "\x07\xff"}]]})
        self.assertEqual(result.resources, strings("198.51.100.2", "hislip0::INSTR"))
        self.assertIn("(\\x07\\xff)", result.log)

    def test_instrument_that_is_gone_is_gone_from_the_next_list(self):
        self.assertEqual(len(self.found({"address": "198.51.100.2", "vxi11": 1}).resources), 1)
        self.peer.stop()
        self.assertEqual(lab.search().resources, [])

    def test_one_that_accepts_and_never_answers_does_not_hide_another(self):
        self.peer.instruments({"address": "198.51.100.2", "vxi11": 1024})
        silent = lab.Peer("192.0.2.2/24", "192.0.2.1/24")
        self.addCleanup(silent.remove)
        silent.start("python3", "-c", "import socket,time; s=[socket.create_server(('', p)) for p in (111, 1024, 4880)]; time.sleep(1000)")
        result = lab.search()
        self.assertEqual(result.resources, strings("198.51.100.2", "inst0::INSTR"))
        self.assertLess(result.milliseconds, 1600)


class TwoCables(unittest.TestCase):
    def setUp(self):
        self.first = lab.Peer()
        self.addCleanup(self.first.remove)

    def second(self, address, own):
        peer = lab.Peer(address, own)
        self.addCleanup(peer.remove)
        return peer

    def test_instruments_on_both_interfaces_are_listed(self):
        second = self.second("192.0.2.2/24", "192.0.2.1/24")
        self.first.instruments({"address": "198.51.100.2", "services": [["Scope", HISLIP, 4880, {}]]})
        second.instruments({"address": "192.0.2.7", "vxi11": 1, "services": [["Meter", HISLIP, 4880, {}]]})
        self.assertEqual(lab.search().resources, strings("192.0.2.7", "hislip0::INSTR", "inst0::INSTR") +
                         strings("198.51.100.2", "hislip0::INSTR"))

    def test_only_the_named_interfaces_are_asked(self):
        second = self.second("192.0.2.2/24", "192.0.2.1/24")
        self.first.instruments({"address": "198.51.100.2", "vxi11": 1})
        second.instruments({"address": "192.0.2.7", "vxi11": 1})
        result = lab.search(QVFIND_INTERFACES=f"{second.cable},nosuch0")
        self.assertEqual(result.resources, strings("192.0.2.7", "inst0::INSTR"))
        self.assertIn("no usable interface nosuch0", result.log)
        self.assertEqual(len(lab.search(QVFIND_INTERFACES="").resources), 2)

    def test_two_interfaces_on_one_subnet_are_both_asked(self):
        second = self.second("198.51.100.3/24", "198.51.100.9/24")
        self.first.instruments({"address": "198.51.100.2", "vxi11": 1024})
        second.instruments({"address": "198.51.100.4", "vxi11": 1024, "services": [["Meter", HISLIP, 4880, {}]]})
        self.assertEqual(lab.search().resources, strings("198.51.100.2", "inst0::INSTR") +
                         strings("198.51.100.4", "hislip0::INSTR", "inst0::INSTR"))


if __name__ == "__main__":
    lab.enter()
    unittest.main(verbosity=2)
