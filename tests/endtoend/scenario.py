# SPDX-License-Identifier: MIT
"""Runs the scenarios of one end-to-end test, each on a desktop of its own."""

import os
import pathlib
import sys
import time
import traceback

from desktop import Desktop


def run(*scenarios, **options):
    """Calls each scenario with a new desktop; ends the process with 1 if one of them failed.

    options: of the desktop.

    A screenshot of the failure goes to a folder below QVVISA_RESULTS that is named after it."""
    failed = 0
    for scenario in scenarios:
        name = f"{pathlib.Path(sys.argv[0]).stem}.{scenario.__name__}"
        failures = pathlib.Path(os.environ["QVVISA_RESULTS"]) / name
        start = time.monotonic()
        try:
            with Desktop(failures, **options) as desktop:
                scenario(desktop)
        except Exception:
            failed += 1
            traceback.print_exc()
            print(f"FAILED {name}; see {failures}/failure.png", flush=True)
        else:
            print(f"passed {name} ({time.monotonic() - start:.1f} s)", flush=True)
    sys.exit(1 if failed or not scenarios else 0)
