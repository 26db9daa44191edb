#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The installed program passes the end-to-end tests of the built one."""

import os
import pathlib
import subprocess
import sys
import tempfile

import staged

SKIPPED = 77

failed = []
with tempfile.TemporaryDirectory(prefix="qvvisa-install-") as folder:
    program = staged.install(pathlib.Path(folder)) / "bin/QvVisaConfigure"
    tests = sorted((staged.SOURCES / "tests/endtoend").glob("test_*.py"))
    for test in tests:
        done = subprocess.run([sys.executable, test], stdin=subprocess.DEVNULL, check=False,
                              env={**os.environ, "QVVISA_PROGRAM": str(program)})
        if done.returncode not in (0, SKIPPED):
            failed.append(test.name)
if not tests:
    sys.exit("there are no end-to-end tests")
if failed:
    sys.exit("failed with the installed program: " + ", ".join(failed))
