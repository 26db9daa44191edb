# SPDX-License-Identifier: MIT
"""Completion in bash, zsh and fish: each shell completes a line and offers the expected words."""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

PROGRAM = pathlib.Path(sys.argv[1]).resolve()
COMPLETION = pathlib.Path(sys.argv[2]).resolve()

CONFIGURATION = """:QvVisaConfigurationFileVersion01
:SerialProperty[DeviceNo=3].Baudrate=19200
:GPIBProperty[DeviceNo=2].PrimaryAddress=1
GPIB0::12::INSTR
DMM=TCPIP0::10.0.0.5::INSTR
DVM=GPIB0::5::INSTR
"""
OTHER = ":QvVisaConfigurationFileVersion01\nSCOPE=GPIB0::9::INSTR\n"

# The line up to the cursor, words that must be offered, words that must not be.
ROWS = [
    ("qvvisa se", ["set", "serial"], ["get"]),
    ("qvvisa get D", ["DMM", "DVM"], ["SCOPE"]),
    ("qvvisa get d", ["DMM", "DVM"], []),
    ("qvvisa -f other.conf get ", ["SCOPE"], ["DMM"]),
    ("qvvisa unset DMM D", ["DVM"], []),
    ("qvvisa rename DV", ["DVM"], ["DMM"]),
    ("qvvisa remove ", ["GPIB0::12::INSTR"], ["GPIB0::5::INSTR"]),
    ("qvvisa serial ", ["3"], ["2"]),
    ("qvvisa serial 3 par", ["parity=even", "parity=none"], ["data-bits=8"]),
    ("qvvisa gpib ", ["2"], ["3"]),
    ("qvvisa gpib 2 sys", ["system-controller=yes"], ["primary-address="]),
    ("qvvisa set DMM x --ch", ["--check"], ["--lines"]),
    ("qvvisa list --li", ["--lines"], ["--check"]),
    ("qvvisa --color ", ["auto", "always", "never"], ["list"]),
    ("qvvisa apply lin", ["lines.txt"], []),
    ("qvvisa find --mi", ["--missing"], ["--check"]),
    ("qvvisa find --timeout 3 --id", ["--identify"], []),
]

BASH = r"""
source "$COMPLETION/qvvisa.bash"
line=$LINE_TO_COMPLETE
# Words as readline breaks them without : and =, which the completion asks for.
read -ra COMP_WORDS <<<"$line"
[[ $line == *' ' ]] && COMP_WORDS+=('')
COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
COMP_LINE=$line COMP_POINT=${#line}
_qvvisa
printf '%s\n' "${COMPREPLY[@]}"
"""

# Outside of the line editor compadd does not exist: this one prints what the editor would offer.
ZSH = r"""
setopt extendedglob
source_words=(${(z)LINE_TO_COMPLETE})
words=($source_words)
[[ $LINE_TO_COMPLETE == *' ' ]] && words+=('')
CURRENT=${#words}
current=${words[CURRENT]}
compadd() {
    while [[ $1 == -* ]]; do
        [[ $1 == -- ]] && { shift; break }
        [[ $1 == -M ]] && shift
        shift
    done
    local word
    for word in "$@"; do
        [[ $word == (#i)${(b)current}* ]] && print -r -- $word
    done
    return 0
}
_files() { print -rl -- ${current}*(N) }
source "$COMPLETION/_qvvisa"
"""

FISH = r"""
source "$COMPLETION/qvvisa.fish"
complete -C "$LINE_TO_COMPLETE"
"""


class Completion(unittest.TestCase):
    def offered(self, shell, script, line):
        with tempfile.TemporaryDirectory(prefix="qvvisa-completion-") as name:
            folder = pathlib.Path(name)
            (folder / "visa.conf").write_text(CONFIGURATION)
            (folder / "other.conf").write_text(OTHER)
            (folder / "lines.txt").write_text("")
            environment = {
                "PATH": f"{PROGRAM.parent}:{os.environ['PATH']}",
                "HOME": name,
                "QVVISACONFFILE": "visa.conf",
                "COMPLETION": str(COMPLETION),
                "LINE_TO_COMPLETE": line,
            }
            result = subprocess.run(
                [*shell, script],
                cwd=folder,
                env=environment,
                capture_output=True,
                text=True,
                timeout=60,
                check=True,
            )
        self.assertEqual(result.stderr, "")
        # fish adds a description after a tab.
        return [line.split("\t")[0].strip() for line in result.stdout.splitlines()]

    def check(self, shell, script):
        if shutil.which(shell[0]) is None:
            self.skipTest(f"{shell[0]} is not installed")
        for line, expected, unexpected in ROWS:
            with self.subTest(line=line):
                words = self.offered(shell, script, line)
                for word in expected:
                    self.assertIn(word, words)
                for word in unexpected:
                    self.assertNotIn(word, words)

    def test_bash(self):
        self.check(["bash", "--norc", "-c"], BASH)

    def test_zsh(self):
        self.check(["zsh", "-f", "-c"], ZSH)

    def test_fish(self):
        self.check(["fish", "--no-config", "-c"], FISH)


unittest.main(argv=sys.argv[:1])
