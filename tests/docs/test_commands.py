#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The commands in the pages work.

Each is run with a home of its own, as far as a test may: see RULES. A command that no rule knows
fails the test.

usage: test_commands.py BUILD-FOLDER
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

SOURCES = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(SOURCES / "tests/endtoend"))

import desktop  # noqa: E402
import pages  # noqa: E402
import program  # noqa: E402

BUILD = pathlib.Path(sys.argv[1]).resolve()
HOME = None  # a scratch folder


def environment():
    """The programs under test are installed, the home is a scratch folder."""
    # The finder, if the machine has it, must not ask the network.
    result = {**os.environ, "HOME": str(HOME), "QVVISA_RESULTS": str(HOME), "QVFIND": "local",
              "PATH": f"{BUILD}:{os.environ['PATH']}", "PYTHONDONTWRITEBYTECODE": "1"}
    for name in "QVVISACONFFILE", "DISPLAY", "LD_LIBRARY_PATH":
        result.pop(name, None)
    return result


def here(command):
    """The command on the build under test and on files that exist."""
    command = command.replace("QVVISA_RESULTS=/tmp ", "")
    command = command.replace("--preset release", "--test-dir build/release")
    command = re.sub(r"(\$PWD/)?\bbuild/release\b", str(BUILD), command)
    command = command.replace("-R NAME", "-R .")
    return re.sub(r"\bFILE\b", str(HOME / "visa.conf"), command)


def run(command, folder=SOURCES, results=(0,)):
    done = subprocess.run(["bash", "-c", here(command)], cwd=folder, env=environment(), timeout=120,
                          stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False)
    if done.returncode not in results:
        raise AssertionError(f"ended with {done.returncode}:\n{done.stdout}{done.stderr}")
    return done.stdout


def runs_in_home(command):
    run(command, HOME)


def runs_qvvisa(command):
    """1 says that it found something, 6 that there is no VISA library."""
    if (BUILD / "qvvisa").exists():
        run(command, HOME, (0, 1, 6) if " find" in command else (0, 1))


def is_known_to_qvvisa(command):
    """For what a sentence names: the command and its options exist."""
    words = command.split()[1:]
    name = [] if words[0].startswith("-") or words[0].isupper() else words[:1]
    known = run(" ".join(["qvvisa", *name, "--help"])) + run("qvvisa --help")
    for word in words:
        option = word.split("=")[0]
        if option.startswith("--") and not re.search(rf"{option}\b", known):
            raise AssertionError(f"there is no option {option}")


def runs_in_an_empty_home(command):
    if (BUILD / "qvvisa").exists():
        run(f"HOME=$(mktemp -d -p $PWD) {command}", HOME)


def opens_the_window(command, prints=""):
    """Runs it on a display of its own; the main window comes up and is closed again.

    prints: an expression that its output has to match; without one it has to print nothing."""
    with desktop.Desktop() as display:
        its_environment = {**environment(), **display.environment(), "HOME": str(HOME),
                           "PATH": environment()["PATH"]}
        process = display.start(["bash", "-c", here(command)], its_environment, cwd=SOURCES)
        display.window(program.MAIN)
        display.key("alt+F4")
        desktop.wait_for(lambda: process.poll() is not None, "the program to end")
        printed = "\n".join(program.own_words(display.output_of("bash")))
        matches = re.search(prints, printed) if prints else printed == ""
        if process.returncode != 0 or not matches:
            raise AssertionError(f"ended with {process.returncode} and printed {printed!r}")


def prints_libraries(command):
    opens_the_window("LD_LIBRARY_PATH=build/release/simulator " + command,
                     r"calling init: .*/libqvvisa\.so")


def selects_tests(command):
    """For ctest: a test does not run the tests."""
    if re.search(r"^Total Tests: 0$", run(command + " -N"), flags=re.MULTILINE):
        raise AssertionError("selects no test")


def exists(command):
    """For what is long, or changes the machine, and is run by ./check or tools/try-package: the
    file exists and knows the options."""
    for part in re.split(r"&&|\|", command):
        words = part.split()
        file = SOURCES / words[0]
        if words[0].startswith(("./", "tools/")):
            if not os.access(file, os.X_OK):
                raise AssertionError(f"{words[0]} is no program")
            for word in words[1:]:
                if word.startswith("--") and word[2:].split("=")[0] not in file.read_text():
                    raise AssertionError(f"{words[0]} has no option {word}")


def names_a_preset(command):
    for preset in re.findall(r"--preset (\w+)|build/(\w+)", command):
        if f'"name": "{preset[0] or preset[1]}"' not in (SOURCES / "CMakePresets.json").read_text():
            raise AssertionError("names no preset")


def has_a_manual_page(command):
    pages_in_lower_case = {path.name.lower() for path in (SOURCES / "packaging").glob("*.1.in")}
    if f"{command.split()[-1].lower()}.1.in" not in pages_in_lower_case:
        raise AssertionError("there is no such page")


# The first pattern that matches the whole command decides.
RULES = [
    (r"\S+ --help", run),
    (r"LD_DEBUG=libs QvVisaConfigure .*", prints_libraries),
    (r"([A-Z_]+=\S+ )*(build/release/)?(QvVisaConfigure|qvvisaconfigure)", opens_the_window),
    (r"(\./check|\./run|tools/[\w-]+).*", exists),
    (r"ctest .*", selects_tests),
    (r"(cmake|ninja|cpack) .*", names_a_preset),
    (r"clang-format -i FILES", lambda command: None),
    (r"(sudo )?(apt|apt-get|dnf|zypper|pacman|brew) .*", lambda command: None),
    (r"sudo (chattr|usermod) .*", lambda command: None),
    (r"git (tag|clone|config|log|diff|archive) .*", lambda command: None),
    (r".*(\bssh\b|\.git/|\bgit show\b).*", lambda command: None),  # other machines and repositories
    (r"man \S+", has_a_manual_page),
    (r"(QVVISA_\w+=\S+ )+tests/endtoend/\w+\.py", run),
    (r"build/release/fuzz/\w+ FILE", run),
    (r"(mkdir|echo|printf|cp|ls|cat) .*", runs_in_home),
    (r"qvvisa init", runs_in_an_empty_home),
    (r"([A-Z_]+=\S+ )*(build/release/)?qvvisa .*", runs_qvvisa),
]


def check(command):
    for pattern, action in RULES:
        if re.fullmatch(pattern, command):
            action(command)
            return
    raise AssertionError("no rule of this test knows it; a block that is no command is ```text")


faults = []
named = [(page, command) for page in pages.all_pages(SOURCES)
         for command in pages.named_commands((SOURCES / page).read_text(), "qvvisa")]
commands = [(page, command) for page in pages.all_pages(SOURCES)
            for command in dict.fromkeys(pages.commands((SOURCES / page).read_text()))]
with tempfile.TemporaryDirectory() as scratch:
    HOME = pathlib.Path(scratch)
    (HOME / ".quorvane").mkdir()
    for name in "visa.conf", "bench.conf", ".quorvane/visa.conf":
        shutil.copy(SOURCES / "tools/demo/visa.conf", HOME / name)
    for page_, command_, check_ in ([(*one, check) for one in commands]
                                    + [(*one, is_known_to_qvvisa) for one in named]):
        try:
            check_(command_)
        except (AssertionError, desktop.Failure, subprocess.TimeoutExpired) as fault_:
            faults.append(f"{page_}: {command_}\n    {fault_}")
print("\n".join(faults))
print(f"{len(commands)} commands, {len(faults)} faults")
sys.exit(1 if faults or not commands else 0)
