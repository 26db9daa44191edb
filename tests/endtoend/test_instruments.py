#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Instruments by the composer and by the search."""

import program
import scenario

HEADER = b":QvVisaConfigurationFileVersion01\n:Provider=3674\n"
BENCH = """
resource TCPIP0::192.168.10.21::inst0::INSTR
resource USB0::0x1234::0x5678::102764::INSTR
resource GPIB0::9::INSTR
"""
HISLIP = 1
IP, DEVICE, PORT = 2, 3, 4  # tab stops behind the interface type


def composed_added_and_found(desktop):
    user = program.from_environment(
        desktop, content=HEADER + b"GPIB0::12::INSTR\nASRL1::INSTR\n", bench=BENCH)
    user.start()
    user.wait_scanned()
    user.press("add")
    user.compose(HISLIP, "METER", {IP: "meter1.lab", PORT: "5000"})
    user.select(0)
    user.press("find")
    user.choose_found(1)
    user.save()
    user.wait_file(HEADER + b"TCPIP0::192.168.10.21::inst0::INSTR\nASRL1::INSTR\n"
                   b"METER=TCPIP0::meter1.lab::hislip0,5000::INSTR\n")
    user.close()
    user.wait_ended()


def an_edit_replaces_the_selected_row(desktop):
    user = program.from_environment(
        desktop, content=HEADER + b"GPIB0::12::INSTR\nDMM=ASRL1::INSTR\n", bench=BENCH)
    user.start()
    user.select(1)
    user.press("edit")
    user.compose(HISLIP, None, {IP: "10.0.0.7", DEVICE: "3"})
    user.save()
    user.wait_file(HEADER + b"GPIB0::12::INSTR\nDMM=TCPIP0::10.0.0.7::hislip3::INSTR\n")
    user.close()
    user.wait_ended()


def cancelled_dialogs_change_nothing(desktop):
    before = HEADER + b"GPIB0::12::INSTR\n"
    user = program.from_environment(desktop, content=before, bench=BENCH)
    user.start()
    user.wait_scanned()
    user.select(0)
    for button, title in (("add", program.COMPOSER), ("edit", program.COMPOSER),
                          ("find", program.FIND), ("properties", program.PROPERTIES)):
        user.press(button)
        user.cancel(title)
    assert not user.can_save()
    user.close()
    user.wait_ended()
    user.expect_file(before)


scenario.run(composed_added_and_found, an_edit_replaces_the_selected_row,
             cancelled_dialogs_change_nothing)
