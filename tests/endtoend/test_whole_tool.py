#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""An edit of every kind in one run, saved, and read back by the next run."""

import program
import scenario
from desktop import wait_for

BENCH = """
resource GPIB0::9::INSTR
resource ASRL3::INSTR
resource TCPIP0::192.168.10.21::inst0::INSTR
"""
BEFORE = b""":QvVisaConfigurationFileVersion01 by hand
:Provider=3674
:GPIBProperty[DeviceNo=0].PrimaryAddress=4
# three unnamed, one named
:Unknown=1

GPIB0::12::INSTR
ASRL1::INSTR
TCPIP0::10.0.0.6::5025::SOCKET
dmm=TCPIP0::10.0.0.5::inst0::INSTR
"""
FIXED_LINES = b""":QvVisaConfigurationFileVersion01
:Provider=4086
:SerialProperty[DeviceNo=3].Baudrate=300
:SerialProperty[DeviceNo=3].DataBits=8
:SerialProperty[DeviceNo=3].StopBits=0
:SerialProperty[DeviceNo=3].Parity=0
:SerialProperty[DeviceNo=3].FlowControl=0
GPIB0::13::INSTR
TCPIP0::192.168.10.21::inst0::INSTR
"""
# The table of aliases is unordered.
ALIAS_LINES = {b"MY_DMM2=TCPIP0::10.0.0.8::inst0::INSTR\n",
               b"STAGE=USB1::0x1234::0x5680::SN7::INSTR\n"}
VXI_11, USB = 0, 4
IP, VENDOR, PRODUCT, SERIAL, BOARD = 2, 2, 3, 4, 1  # tab stops after the interface type


def holds_the_edits(user):
    content = user.file.read_bytes()
    rest = content[len(FIXED_LINES):].splitlines(keepends=True)
    return (content.startswith(FIXED_LINES) and len(rest) == len(ALIAS_LINES)
            and set(rest) == ALIAS_LINES)


def edit_properties(user):
    user.open_properties()
    user.desktop.key("Tab", "Tab", "Home")
    user.desktop.key("shift+Tab", "shift+Tab", "Right", "Tab")
    user.desktop.retype("4086")
    user.accept_properties()


def every_kind_of_edit_is_saved_and_read_back(desktop):
    user = program.started(desktop, content=BEFORE, bench=BENCH)
    assert not user.can_save()
    user.edit_cell(0, "resource", "GPIB0::13::INSTR")
    user.wait_can_save()
    user.edit_cell(3, "alias", " MY DMM:2# ")
    user.select(1)
    user.press("find")
    user.choose_found(2)
    user.select(3)
    user.press("edit")
    user.compose(VXI_11, None, {IP: "10.0.0.8"})
    user.press("add")
    user.compose(USB, "STAGE", {BOARD: "1", VENDOR: "0x1234", PRODUCT: "0x5680", SERIAL: "SN7"})
    user.select(2)
    user.press("remove")
    edit_properties(user)
    user.expect_file(BEFORE)
    user.save()
    wait_for(lambda: holds_the_edits(user), lambda: f"the edits in {user.file.read_bytes()!r}")
    user.end()

    saved = user.file.read_bytes()
    user.start()
    user.open_properties()
    user.accept_properties()
    # The window may not be repainted yet where the dialog was.
    wait_for(lambda: not user.can_save(), "Save to be disabled")
    # A change there and back must save the same file.
    user.edit_cell(0, "resource", "GPIB0::14::INSTR")
    user.save()
    user.edit_cell(0, "resource", "GPIB0::13::INSTR")
    user.save()
    wait_for(lambda: holds_the_edits(user), lambda: f"the edits in {user.file.read_bytes()!r}")
    assert sorted(user.file.read_bytes()) == sorted(saved)
    user.end()


scenario.run(every_kind_of_edit_is_saved_and_read_back)
