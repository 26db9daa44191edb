#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The installed program passes an end-to-end test of the built one."""

import os
import pathlib
import subprocess
import sys
import tempfile

import staged

with tempfile.TemporaryDirectory(prefix="qvvisa-install-") as folder:
    program = staged.install(pathlib.Path(folder)) / "bin/QvVisaConfigure"
    done = subprocess.run(
        [sys.executable, staged.SOURCES / "tests/endtoend/test_editing.py"],
        env={**os.environ, "QVVISA_PROGRAM": str(program)}, stdin=subprocess.DEVNULL, check=False)
sys.exit(done.returncode)
