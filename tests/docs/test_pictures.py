#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The pictures of the pages are those of the windows as they are now.

tools/screenshots takes them again, elsewhere. Another machine's fonts may be drawn a little
differently, so each is compared in cells of some pixels.

usage: test_pictures.py BUILD-FOLDER
"""

import pathlib
import subprocess
import sys
import tempfile

SOURCES = pathlib.Path(__file__).resolve().parents[2]
CELL = 12  # pixels
TOLERANCE = 0.15  # of the way from black to white, in the mean of a cell


def magick(*words):
    return subprocess.run(["convert", *map(str, words)], check=True, capture_output=True,
                          text=True).stdout


def size(picture):
    return tuple(map(int, magick(picture, "-format", "%w %h", "info:").split()))


def difference(old, new):
    """How two pictures differ, or None."""
    if size(old) != size(new):
        return f"has {size(old)} pixels, the window {size(new)}"
    cells = "{}x{}!".format(*(max(1, side // CELL) for side in size(old)))
    worst = float(magick("(", old, "-scale", cells, ")", "(", new, "-scale", cells, ")", "-compose",
                         "difference", "-composite", "-format", "%[fx:maxima]", "info:"))
    return f"is off by {worst:.2f} in a part" if worst > TOLERANCE else None


def main():
    faults = []
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run([sys.executable, SOURCES / "tools/screenshots", "--into", folder, "--build",
                        sys.argv[1]], check=True)
        committed = {path.name: path for path in (SOURCES / "docs/pictures").iterdir()}
        taken = {path.name: path for path in pathlib.Path(folder).iterdir()}
        faults += [f"{name} is not taken by tools/screenshots" for name in committed.keys() - taken]
        faults += [f"{name} is not in docs/pictures" for name in taken.keys() - committed]
        for name in sorted(committed.keys() & taken):
            fault = difference(committed[name], taken[name])
            faults += [f"{name} {fault}"] if fault else []
    for fault in faults:
        print(fault)
    print(f"{len(taken)} pictures, {len(faults)} faults; tools/screenshots takes them again")
    sys.exit(1 if faults or not taken else 0)


main()
