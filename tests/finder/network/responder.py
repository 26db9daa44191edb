#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Instruments on one network interface: multicast DNS responders and port mappers.

usage: responder.py DESCRIPTION

The description is JSON: {"instruments": [...], "broadcasts": [ADDRESS]}; an instrument has
  address   its IPv4 address; this machine must have it
  vxi11     the answer of its port mapper, 0 for "no"; without it, it has no port mapper
  identity  its answer to *IDN?, which it gives at that TCP port; without it, nothing listens there
  services  [[instance, service, port, {key: value}], ...]
  host      the host name in its SRV records; by default named after the address
  records   the addresses of its host, by default its own; [] for none
  ttl       of its records, by default 120
  multicastOnly  true: answers from and to port 5353 only
  directOnly     true: keeps silent to port 5353, as for a second after an announcement
  silentAnswers  true: PTR records only, the rest when it is asked for
"ready" is printed once all sockets are open.
"""

import json
import select
import socket
import struct
import sys

import vxi11

GROUP = "224.0.0.251"


def name(text):
    if isinstance(text, bytes):
        return text
    labels = text.encode("latin-1").split(b".")
    return b"".join(bytes([len(label)]) + label for label in labels) + b"\0"


def instance_name(instance, service):
    label = instance.encode("latin-1")
    return bytes([len(label)]) + label + name(service)


def record(owner, kind, data, ttl):
    return owner + struct.pack(">HHIH", kind, 1, ttl, len(data)) + data


def read_name(packet, at):
    result = b""
    after = None
    while packet[at] != 0:
        if packet[at] >= 0xC0:
            after = after or at + 2
            target = (packet[at] & 0x3F) << 8 | packet[at + 1]
            if target >= at:
                raise IndexError("a pointer that does not point backwards")
            at = target
            continue
        if len(result) > 255:
            raise IndexError("a name that is too long")
        result += packet[at : at + packet[at] + 1]
        at += packet[at] + 1
    return result + b"\0", after or at + 1


def questions_and_known(packet):
    (_, flags, question_count, answer_count) = struct.unpack(">HHHH", packet[:8])
    if flags & 0x8000:
        return [], set()
    at = 12
    questions = []
    for _ in range(question_count):
        owner, at = read_name(packet, at)
        questions.append((owner.lower(), struct.unpack(">H", packet[at : at + 2])[0]))
        at += 4
    known = set()
    for _ in range(answer_count):
        _, at = read_name(packet, at)
        length = struct.unpack(">H", packet[at + 8 : at + 10])[0]
        known.add(read_name(packet, at + 10)[0].lower())
        at += 10 + length
    return questions, known


class Instrument:
    def __init__(self, description):
        self.address = description["address"]
        self.vxi11 = description.get("vxi11")
        self.services = description.get("services", [])
        self.ttl = description.get("ttl", 120)
        self.multicast_only = description.get("multicastOnly", False)
        self.direct_only = description.get("directOnly", False)
        self.silent = description.get("silentAnswers", False)
        self.host = name(description.get("host", "host-" + self.address.replace(".", "-") + ".local"))
        self.host_records = description.get("records", [self.address])
        self.mdns = self.open(5353)
        self.mdns.setsockopt(socket.IPPROTO_IP, socket.IP_MULTICAST_IF, socket.inet_aton(self.address))
        self.mdns.setsockopt(socket.IPPROTO_IP, socket.IP_MULTICAST_TTL, 255)
        self.portmap = self.open(111) if self.vxi11 is not None else None
        if "identity" in description:
            vxi11.serve(self.address, self.vxi11, description["identity"])

    def open(self, port):
        opened = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        opened.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
        opened.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEPORT, 1)
        opened.bind((self.address, port))
        return opened

    def addresses(self):
        return [record(self.host, 1, socket.inet_aton(a), self.ttl) for a in self.host_records]

    def service_records(self, instance, service, port, texts):
        owner = instance_name(instance, service)
        server = record(owner, 33, struct.pack(">HHH", 0, 0, port) + self.host, self.ttl)
        entries = [(k + "=" + v).encode("latin-1") for k, v in texts.items()] or [b""]
        text = record(owner, 16, b"".join(bytes([len(e)]) + e for e in entries), self.ttl)
        return server, text

    def answers(self, owner, kind, known):
        for instance, service, port, texts in self.services:
            full = instance_name(instance, service)
            server, text = self.service_records(instance, service, port, texts)
            if owner == name(service).lower() and full.lower() not in known:
                pointer = record(name(service), 12, full, self.ttl)
                yield [pointer] if self.silent else [pointer, server, text, *self.addresses()]
            elif owner == full.lower() and kind == 33:
                yield [server]
            elif owner == full.lower() and kind == 16:
                yield [text]
        if owner == self.host.lower() and kind == 1 and self.host_records:
            yield self.addresses()

    def answer_mdns(self, packet, sender):
        try:
            questions, known = questions_and_known(packet)
        except (IndexError, struct.error):
            return  # a packet that breaks off: an attacker's
        direct = sender[1] != 5353
        if self.multicast_only if direct else self.direct_only:
            return
        for owner, kind in questions:
            for records in self.answers(owner, kind, known):
                response = struct.pack(">HHHHHH", 0, 0x8400, 0, len(records), 0, 0) + b"".join(records)
                self.mdns.sendto(response, sender if direct else (GROUP, 5353))

    def answer_portmap(self, packet, sender):
        if self.portmap is not None and len(packet) == 56:
            self.portmap.sendto(packet[:4] + struct.pack(">IIIIII", 1, 0, 0, 0, 0, self.vxi11), sender)


def listener(address, port):
    opened = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
    opened.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
    opened.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEPORT, 1)
    opened.bind((address, port))
    return opened


def main():
    description = json.loads(sys.argv[1])
    instruments = [Instrument(each) for each in description["instruments"]]
    group = listener(GROUP, 5353)
    request = struct.pack("4s4si", socket.inet_aton(GROUP), b"\0" * 4, socket.if_nametoindex("eth0"))
    group.setsockopt(socket.IPPROTO_IP, socket.IP_ADD_MEMBERSHIP, request)
    broadcasts = [listener(each, 111) for each in description["broadcasts"]]
    print("ready", flush=True)
    sockets = [group, *broadcasts, *(i.mdns for i in instruments), *(i.portmap for i in instruments if i.portmap)]
    while True:
        for readable in select.select(sockets, [], [])[0]:
            packet, sender = readable.recvfrom(9000)
            for instrument in instruments:
                if readable is group or readable is instrument.mdns:
                    instrument.answer_mdns(packet, sender)
                elif readable in broadcasts or readable is instrument.portmap:
                    instrument.answer_portmap(packet, sender)


main()
