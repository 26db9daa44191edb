# SPDX-License-Identifier: MIT
"""Generates resource strings: right ones, near misses and noise."""
import random

INTERFACES = ["GPIB", "ASRL", "TCPIP", "USB", "PXI", "VXI", "GPIB-VXI", "FIREWIRE", "RIO", "QVIB",
              "gpib", "Tcpip", "asrl", "LPT", "GPI", ""]
CLASSES = ["INSTR", "SOCKET", "INTFC", "RAW", "BACKPLANE", "MEMACC", "SERVANT",
           "instr", "socket", "Instr", "INST", "XINSTR", ""]
BOARDS = ["", "0", "1", "12", "65535", "65536", "-1", "x", "/dev/ttyUSB0", "COM1", " 1"]
PARTS = ["", "0", "1", "5", "30", "31", "126", "inst0", "hislip0", "hislip0,4881", "inst", "gpib0,5",
         "10.0.0.5", "10.0.0.256", "meter-1.lab", "[::1]", "[fe80::1%eth0]", "5025", "99999", "0x1234",
         "0x5678", "4660", "MY 123", "SN:1", "a:", ":", "INSTR", "\xe4", "#", "*"]
FORMS = [("GPIB", "{b}::{n}::INSTR"), ("GPIB", "{b}::{n}::{n}::INSTR"), ("GPIB", "{b}::INTFC"),
         ("ASRL", "{b}::INSTR"), ("TCPIP", "{b}::{h}::{d}::INSTR"), ("TCPIP", "{b}::{h}::INSTR"),
         ("TCPIP", "{b}::{h}::{p}::SOCKET"), ("USB", "{b}::{i}::{i}::{s}::INSTR"),
         ("USB", "{b}::{i}::{i}::{s}::{n}::RAW"), ("VXI", "{b}::{n}::INSTR"), ("VXI", "{b}::MEMACC"),
         ("PXI", "{b}::{n}::BACKPLANE"), ("PXI", "{b}::{n}::INSTR"), ("QVIB", "::{h}")]


def right(random_):
    name, form = random_.choice(FORMS)
    choose = {"b": ["", "0", "1", "2"], "n": ["0", "1", "7", "30"],
              "h": ["10.0.0.5", "scope", "meter-1.lab", "[fe80::1]"],
              "d": ["inst0", "inst1", "hislip0", "hislip0,4881", "gpib0,5"],
              "p": ["1", "5025", "65535"], "i": ["0x1234", "0xAB", "4660"],
              "s": ["MY1", "102764", "a b"]}
    while "{" in form:
        start = form.index("{")
        form = form[:start] + random_.choice(choose[form[start + 1]]) + form[start + 3:]
    if random_.random() < 0.2 and form.count("::") > 1 and form.endswith("::INSTR"):
        form = form[:-len("::INSTR")]
    return name + form


def made_up(random_):
    parts = [random_.choice(PARTS) for _ in range(random_.choice([0, 1, 1, 2, 2, 3, 4, 5, 6]))]
    if random_.random() < 0.7:
        parts.append(random_.choice(CLASSES))
    return "::".join([random_.choice(INTERFACES) + random_.choice(BOARDS)] + parts)


def changed(random_):
    text = right(random_)
    for _ in range(random_.choice([1, 1, 1, 2, 3])):
        place = random_.randrange(len(text) + 1)
        what = random_.random()
        if what < 0.3:
            text = text[:place] + text[place + 1:]
        elif what < 0.6:
            text = text[:place] + random_.choice(":0159 axIRS/.,-[]\t\x00\xdf") + text[place:]
        elif what < 0.8:
            text = text[:place] + text[place:].lower()
        else:
            parts = text.split("::")
            parts.insert(random_.randrange(len(parts) + 1), random_.choice(PARTS))
            text = "::".join(parts)
    return text


def generate(count, seed=1):
    random_ = random.Random(seed)
    strings = set()
    while len(strings) < count:
        maker = random_.choice([right, made_up, made_up, changed, changed, changed])
        text = maker(random_)
        if "\n" not in text:
            strings.add(text)
    return sorted(strings)
