#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Answers multicast DNS queries and GETPORT calls with packets made to hurt; test_hostile.py names
the attacks. Prints "ready" once it listens. The packets stay in the test's network namespace."""

import os
import random
import select
import socket
import struct
import sys

GROUP = "224.0.0.251"
ADDRESS = "198.51.100.2"
UDP_SEGMENT = 103  # the socket option that sets the length of each packet of a burst


def name(text):
    return b"".join(bytes([len(label)]) + label for label in text.encode().split(b".")) + b"\0"


def record(owner, kind, data, ttl=120):
    return owner + struct.pack(">HHIH", kind, 1, ttl, len(data)) + data


def response(records, count=None):
    return struct.pack(">HHHHHH", 0, 0x8400, 0, len(records) if count is None else count, 0, 0) + b"".join(records)


def announcement(number, service="_hislip._tcp.local", target="evil.local", address="203.0.113.1"):
    instance = bytes([len(str(number))]) + str(number).encode() + name(service)
    return [record(name(service), 12, instance), record(instance, 33, struct.pack(">HHH", 0, 0, 4880) + name(target)),
            record(name(target), 1, socket.inet_aton(address))]


def garbage():
    return [os.urandom(random.randrange(1, 1400)) for _ in range(50)]


def pointer_loops():
    header = struct.pack(">HHHHHH", 0, 0x8400, 1, 1, 0, 0)
    return [header + b"\xc0\x0c" * 100, header + b"\xc0\x0e\xc0\x0c" + b"\0" * 20,
            header + b"\x01a\xc0\x0c" * 50, header + b"\x3f" * 1000]


def endless_counts():
    return [struct.pack(">HHHHHH", 0, 0x8400, 0, 0xFFFF, 0xFFFF, 0xFFFF),
            struct.pack(">HHHHHH", 0, 0x8400, 0xFFFF, 0xFFFF, 0, 0) + b"\0" * 1200]


def many_records():
    return [response([record(name("h.local"), 1, os.urandom(4))] * 60) for _ in range(50)]


def many_instances():
    return [response(announcement(random.randrange(10**9), address=ADDRESS)) for _ in range(200)]


def large_packets():
    return [response(announcement(1)) + b"x" * 60000, b"\xff" * 60000]


def wrong_transactions():
    return [os.urandom(4) + struct.pack(">IIIIII", 1, 0, 0, 0, 0, 1024) for _ in range(100)]


def flood():
    """Packets of equal length, which main() sends in bursts that the kernel cuts into packets: one by
    one Python is too slow."""
    return [response(announcement(number)) for number in random.sample(range(10**8, 10**9), 20000)]


def socket_for(port, address=""):
    opened = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
    opened.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
    opened.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEPORT, 1)
    opened.bind((address, port))
    return opened


def send_spoofed(packet, receiver):
    """From addresses that nobody has, outside the subnet and in it."""
    raw = socket.socket(socket.AF_INET, socket.SOCK_RAW, socket.IPPROTO_RAW)
    for i in range(200):
        source = socket.inet_aton(f"203.0.113.{i}" if i % 2 else f"127.0.0.{i}")
        datagram = struct.pack(">HHHH", 5353, receiver[1], 8 + len(packet), 0) + packet
        header = struct.pack(">BBHHHBBH4s4s", 0x45, 0, 20 + len(datagram), 0, 0, 64, 17, 0, source,
                             socket.inet_aton(receiver[0]))
        raw.sendto(header + datagram, (receiver[0], 0))


def main():
    attack = sys.argv[1]
    group = socket_for(5353, GROUP)
    group.setsockopt(socket.IPPROTO_IP, socket.IP_ADD_MEMBERSHIP,
                     struct.pack("4s4si", socket.inet_aton(GROUP), b"\0" * 4, socket.if_nametoindex("eth0")))
    portmap = socket_for(111, "198.51.100.255")
    answers = socket_for(5353, ADDRESS)
    answers.setsockopt(socket.IPPROTO_IP, socket.IP_MULTICAST_IF, socket.inet_aton(ADDRESS))
    bursts = []
    if attack == "flood":
        packets = flood()
        answers.setsockopt(socket.IPPROTO_UDP, UDP_SEGMENT, len(packets[0]))
        bursts = [b"".join(packets[i:i + 50]) for i in range(0, len(packets), 50)]
    print("ready", flush=True)
    while True:
        for readable in select.select([group, portmap], [], [])[0]:
            _, sender = readable.recvfrom(9000)
            if attack == "spoofed_sources":
                send_spoofed(response(announcement(1)), sender)
                continue
            for packet in bursts or globals()[attack]():
                try:
                    answers.sendto(packet, sender if sender[1] != 5353 else (GROUP, 5353))
                except OSError:
                    pass  # too large for the interface


main()
