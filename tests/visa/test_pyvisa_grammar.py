# SPDX-License-Identifier: MIT
"""Compares both grammars of resource strings with PyVISA over generated strings.

  test_pyvisa_grammar.py PROGRAM    PROGRAM is PrintResourceReadings

visa/PyVisaResourceName has to read every string as PyVISA does. visa/ResourceName reads the
published forms; where it and PyVISA do not agree on whether a string is a resource string, one of
the reasons in the tables below has to apply, and each reason has to occur.
"""
import collections
import re
import subprocess
import sys

from pyvisa import rname

import resource_strings

COUNT = 40000

# What PyVISA accepts and the published forms do not have, by the problem that is found.
ACCEPTED_BY_PYVISA_ALONE = {
    "OutOfRange": "PyVISA does not look at numbers: GPIB0::31::INSTR",
    "NotANumber": "nor at whether a part is a number: GPIB0::x::INSTR",
    "BadHost": "nor at hosts: TCPIP0::-::INSTR",
    "BadLanDevice": "nor at LAN devices: TCPIP0::host::inst0x::INSTR",
    "BadCharacter": "nor at white space and colons in a part: USB0::1::2::a b::INSTR",
    "NotAscii": "nor at characters outside ASCII",
    "TrailingWhiteSpace": "white space at the end is part of the last field: GPIB0::1::1 ",
    "UnknownClass": "a class that it does not know is a field: GPIB0::1::1::INST",
    "UnknownInterface": "what follows the interface is the board, whatever it is: ASRLx",
    "ExtraPart": "a class that it does not have for the interface is a field: GPIB0::1::intfc",
    "MissingPart": "a class in lower case is a field: GPIB0::instr",
}

# What the published forms have and PyVISA refuses: a pattern for the string.
REFUSED_BY_PYVISA_ALONE = [
    (r"(?i)(QVIB|RIO|FIREWIRE)", "interfaces that PyVISA does not know"),
    (r"(?i)PXI\d*(::.*)?$", "PXI instruments"),
    (r"(?i)(GPIB|TCPIP)\d*(::.*)?::SERVANT$", "class SERVANT but for VXI"),
    (r"(?i)(VXI|GPIB-VXI)\d*(::.*)?", "VXI forms that PyVISA does not have"),
    (r".*\[.*::.*\]", "an IPv6 address, which PyVISA cuts at its '::'"),
    (r".*::(?=[^:]*[a-z])(?i:INSTR|SOCKET|INTFC|RAW|BACKPLANE|MEMACC|SERVANT)$",
     "a class in lower case, which is one part too many"),
]


def pyvisa_reading(text):
    try:
        return rname.to_canonical_name(text)
    except rname.InvalidResourceName:
        return "-"


def main():
    strings = resource_strings.generate(COUNT)
    result = subprocess.run([sys.argv[1]], input="".join(text + "\n" for text in strings),
                            stdout=subprocess.PIPE, encoding="latin-1", check=True)
    lines = result.stdout.split("\n")[:-1]
    readings = list(zip(lines[::2], lines[1::2]))
    assert len(readings) == len(strings), (len(readings), len(strings))
    failures = 0
    reasons = collections.Counter()
    accepted = collections.Counter()
    for text, (copy, ours) in zip(strings, readings):
        theirs = pyvisa_reading(text)
        accepted["PyVISA"] += theirs != "-"
        accepted["published"] += not ours.startswith("-")
        reason = None
        if copy != theirs:
            print("%r: read as %r, by PyVISA as %r" % (text, copy, theirs))
            failures += 1
        elif theirs != "-" and ours.startswith("-"):
            reason = ours[1:] if ours[1:] in ACCEPTED_BY_PYVISA_ALONE else "?"
        elif theirs == "-" and not ours.startswith("-"):
            reason = next((why for pattern, why in REFUSED_BY_PYVISA_ALONE
                           if re.match(pattern, text)), "?")
        if reason == "?":
            print("%r: %r, by PyVISA %r: no reason explains it" % (text, ours, theirs))
            failures += 1
        elif reason:
            reasons[reason] += 1
    for reason in [*ACCEPTED_BY_PYVISA_ALONE, *(why for _, why in REFUSED_BY_PYVISA_ALONE)]:
        print("%6d  %s" % (reasons[reason], reason))
        if reasons[reason] == 0:
            print("the reason never applies")
            failures += 1
    print("%d strings; accepted: %s" % (len(strings), dict(accepted)))
    # Both answers have to be well represented, or the comparison says little.
    assert all(COUNT / 10 < count < COUNT * 9 / 10 for count in accepted.values())
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
