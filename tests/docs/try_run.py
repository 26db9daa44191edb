#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""./run without a display, and with --mine on one. For ./check, which has
built the release by then; not a test among the others, as ./run builds."""

import pathlib
import subprocess
import sys

SOURCES = pathlib.Path(__file__).resolve().parents[2]
sys.dont_write_bytecode = True
sys.path.insert(0, str(SOURCES / "tests/endtoend"))

import desktop  # noqa: E402
import program  # noqa: E402


def without_a_display():
    with desktop.Desktop() as display:
        environment = {name: value for name, value in display.environment().items()
                       if name != "DISPLAY"}
        subprocess.run([SOURCES / "run"], env=environment, stdin=subprocess.DEVNULL, check=True)


def with_mine():
    with desktop.Desktop() as display:
        file = display.folder / ".quorvane/visa.conf"
        file.parent.mkdir()
        file.write_bytes(program.BEFORE)
        process = display.start([str(SOURCES / "run"), "--mine"], display.environment())
        display.window(program.MAIN)
        display.key("F2")
        display.retype("ASRL2::INSTR")
        display.key("Return", "alt+F4")
        display.window(program.UNSAVED)
        display.key("alt+y")
        desktop.wait_for(lambda: process.poll() is not None, "the program to end")
        print(display.output_of("run"))
        desktop.expect_equal(process.returncode, 0, "exit code")
        desktop.expect_equal(file.read_bytes(), program.HEADER + b"A=ASRL2::INSTR\n", "the file")


without_a_display()
with_mine()
