# SPDX-License-Identifier: MIT
"""visa/PyVisaResourceName reads resource strings as PyVISA itself does.

  test_pyvisa_grammar.py PROGRAM    PROGRAM is PrintResourceReadings
"""
import subprocess
import sys

from pyvisa import rname

import resource_strings

COUNT = 40000


def pyvisa_reading(text):
    try:
        return rname.to_canonical_name(text)
    except rname.InvalidResourceName:
        return "-"


def main():
    strings = resource_strings.generate(COUNT)
    result = subprocess.run([sys.argv[1]], input="".join(text + "\n" for text in strings),
                            stdout=subprocess.PIPE, encoding="latin-1", check=True)
    readings = result.stdout.split("\n")[:-1]
    assert len(readings) == len(strings), (len(readings), len(strings))
    accepted = 0
    differences = []
    for text, ours in zip(strings, readings):
        theirs = pyvisa_reading(text)
        accepted += theirs != "-"
        if ours != theirs:
            differences.append((text, ours, theirs))
    for text, ours, theirs in differences[:20]:
        print("%r: read as %r, by PyVISA as %r" % (text, ours, theirs))
    print("%d strings, %d accepted by PyVISA, %d differences" %
          (len(strings), accepted, len(differences)))
    # Both answers have to be well represented, or the comparison says little.
    assert COUNT / 10 < accepted < COUNT * 9 / 10
    return 1 if differences else 0


if __name__ == "__main__":
    sys.exit(main())
