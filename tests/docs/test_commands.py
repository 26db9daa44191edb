#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Every command in the pages works, every link and every path that they name is there.

A command is run here, or COMMANDS says what runs it. One that COMMANDS does not know fails the
test, and so does an entry that no page has any more.

usage: test_pages.py BUILD-FOLDER
"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile

SOURCES = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(SOURCES / "tests/endtoend"))

import desktop  # noqa: E402
import pages  # noqa: E402
import program  # noqa: E402

BUILD = None
HOME = None  # of the one who types the commands


def environment():
    """What a command sees: the program under test is installed, the home is a scratch folder."""
    result = {**os.environ, "HOME": str(HOME), "QVVISA_RESULTS": str(HOME),
              "PATH": f"{BUILD}:{os.environ['PATH']}", "PYTHONDONTWRITEBYTECODE": "1"}
    for name in "QVVISACONFFILE", "DISPLAY", "LD_LIBRARY_PATH":
        result.pop(name, None)
    return result


def run(command):
    """Runs a command as a reader would, from the project's folder, but on the build under test."""
    done = subprocess.run(["bash", "-c", here(command)], cwd=SOURCES, env=environment(),
                          stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False)
    if done.returncode != 0:
        raise AssertionError(f"ended with {done.returncode}:\n{done.stdout}{done.stderr}")
    return done.stdout


def here(command):
    """The command on the build under test and on files that are there."""
    command = command.replace("QVVISA_RESULTS=/tmp ", "")
    command = command.replace("--preset release", "--test-dir build/release")
    command = re.sub(r"(\$PWD/)?\bbuild/release\b", str(BUILD), command)
    return re.sub(r"\bFILE\b", "tests/config/format/specimens/hand-written.conf", command)


def opens_the_window(command, says=""):
    """Runs it on a display of its own; the main window comes up and is closed again.

    says: an expression that what it prints has to match."""
    with desktop.Desktop() as display:
        its_environment = {**environment(), **display.environment(), "HOME": str(HOME),
                           "PATH": environment()["PATH"]}
        process = display.start(["bash", "-c", here(command)], its_environment, cwd=SOURCES)
        display.window(program.MAIN)
        display.key("alt+F4")
        desktop.wait_for(lambda: process.poll() is not None, "the program to end")
        printed = "\n".join(program.own_words(display.output_of("bash")))
        if process.returncode != 0 or not (re.search(says, printed) if says else printed == ""):
            raise AssertionError(f"ended with {process.returncode} and printed {printed!r}")


def tells_of_libraries(command):
    opens_the_window("LD_LIBRARY_PATH=build/release/simulator " + command,
                     r"calling init: .*/libqvvisa\.so")


def selects_tests(command):
    """For ctest: running tests within a test would only run them again."""
    count = re.search(r"^Total Tests: (\d+)$", run(command + " -N"), flags=re.MULTILINE)
    if count is None or int(count[1]) == 0:
        raise AssertionError("selects no test")


def in_a_new_repository(command):
    """For git: this one stays as it is."""
    run("git init -q ~/new && cd ~/new && git config user.name me && git config user.email me@here && "
        f"git commit -q --allow-empty -m first && GIT_EDITOR='echo first >' {command}")


def by(file, line):
    """Another file runs it: a line of it begins like this."""
    def is_there(_):
        if not re.search(rf"^\s*{re.escape(line)}", (SOURCES / file).read_text(),
                         flags=re.MULTILINE):
            raise AssertionError(f"no line of {file} begins with {line}")
    return is_there


def by_check(stage):
    return by("check", stage)


def by_test(name):
    """A test of that name runs it."""
    def is_there(_):
        if not re.search(rf": {re.escape(name)}$", run("ctest --preset release -N"),
                         flags=re.MULTILINE):
            raise AssertionError(f"there is no test {name}")
    return is_there


WITH_STAND_IN = ("LD_LIBRARY_PATH=build/release/simulator QVVISA_BENCH=simulator/sample-bench.txt "
                 "build/release/QvVisaConfigure")

COMMANDS = {
    "README.md": {
        "./run": by_check("stage run tests/docs/try_run.py"),
        "./run --mine": by_check("stage run tests/docs/try_run.py"),
        "./check": by_check("tests release"),
        WITH_STAND_IN: opens_the_window,
        "tools/install-packages check": by_check("stage install tools/install-packages check"),
        "cmake --preset release": by_check("stage release-build build release"),
        "ninja -C build/release packages": by("tests/packaging/test_debian_packages.py",
                                              '"--config", BUILD / "CPackConfig.cmake"'),
        "sudo apt install ./build/release/packages/qvvisaconfigure_*.deb":
            by("tools/try-package",
               'arrived = debian.install("/root/" + packages["qvvisaconfigure"].name'),
        "sudo apt remove qvvisaconfigure":
            by("tools/try-package", 'debian.run("apt-get", action'),
        "man QvVisaConfigure":
            by("tests/packaging/test_installed_files.py", '["man", "--warnings"'),
        "ninja -C build/release && sudo cmake --install build/release":
            by("tests/packaging/staged.py", 'run(os.environ["QVVISA_CMAKE"], "--install", BUILD'),
        "cpack --config build/release/CPackConfig.cmake":
            by("tests/packaging/test_debian_packages.py", '"--config", BUILD / "CPackConfig.cmake"'),
        "LD_LIBRARY_PATH=/usr/lib/x86_64-linux-gnu/qvvisa-simulator "
        "QVVISA_BENCH=/usr/share/qvvisa-simulator/sample-bench.txt QvVisaConfigure":
            by("tools/try-package",
               'QVVISA_BENCH="/usr/share/qvvisa-simulator/sample-bench.txt"'),
    },
    "HACKING.md": {
        "tools/install-packages check": by_check("stage install tools/install-packages check"),
        "cmake --preset release": by_check("stage release-build build release"),
        "ninja -C build/release": by_check("stage release-build build release"),
        "./check": by_check("tests release"),
        "./check --full": by_check("--full) full=true"),
        "ctest --preset release -N": selects_tests,
        "ctest --preset release -R gui.main_window": selects_tests,
        "ctest --preset release -L endtoend -j2": selects_tests,
        "ninja -C build/tsan thread_tests && ctest --preset tsan -L threads":
            by_check("stage tsan-build threads_build"),
        "QVVISA_PROGRAM=$PWD/build/release/QvVisaConfigure "
        "QVVISA_SIMULATOR=$PWD/build/release/simulator QVVISA_RESULTS=/tmp "
        "tests/endtoend/test_editing.py": run,
        "tools/fuzz 60": by_check("stage fuzz tools/fuzz 20"),
        "tools/fuzz --help": run,
        "build/release/fuzz/fuzz_reader FILE": run,
        "tools/bench": by_check("stage benchmarks tools/bench"),
        "tools/bench-startup": by_check("stage startup tools/bench-startup"),
        "git tag -a 5.12.1": in_a_new_repository,
        "ninja -C build/release packages": by("tests/packaging/test_debian_packages.py",
                                              '"--config", BUILD / "CPackConfig.cmake"'),
        "ctest --preset release -L packaging": selects_tests,
        "tools/check-layers && tools/check-spdx && tools/icons --check":
            by_check("stage layers tools/check-layers"),
        "clang-format -i FILES": by_check("stage format format_is_right"),
        "clang-tidy -p build/release FILES": by_check("stage lint lint"),
        "tools/screenshots": by_test("docs.pictures"),
        "tools/screenshots --looks build/looks": by_check("stage looks tools/screenshots --looks"),
    },
    "docs/bench-file.md": {
        WITH_STAND_IN: opens_the_window,
    },
    "docs/performance.md": {
        "tools/bench": by_check("stage benchmarks tools/bench"),
        "tools/bench-startup": by_check("stage startup tools/bench-startup"),
    },
    "docs/robustness.md": {
        "ctest --preset release -R NAME": by_check("tests release"),
        "tools/fuzz 1800": by_check("stage fuzz tools/fuzz 300"),
        "./check --full": by_check("--full) full=true"),
        "cmake --preset tsan && ninja -C build/tsan && ctest --preset tsan":
            by_check("stage tsan-build build tsan && tests tsan"),
    },
    "docs/user-guide.md": {
        "mkdir -p ~/.quorvane": run,
        "echo ':QvVisaConfigurationFileVersion01' > ~/.quorvane/visa.conf": run,
        "QVVISACONFFILE=$HOME/bench-3.conf QvVisaConfigure": opens_the_window,
        "LD_DEBUG=libs QvVisaConfigure 2>&1 | grep visa": tells_of_libraries,
    },
}


def check_commands(page, text):
    known = COMMANDS.get(str(page), {})
    found = pages.commands(text)
    for command in dict.fromkeys(found):
        if command not in known:
            yield (f"{command}\n    is in no table of commands: run it in tests/docs/test_pages.py, "
                   "or say there what does; a block that is no command is ```text")
            continue
        try:
            known[command](command)
        except AssertionError as fault:
            yield f"{command}\n    {fault}"
    for command in known.keys() - set(found):
        yield f"{command}\n    is in tests/docs/test_pages.py and not in the page any more"


def check_links(page, text):
    for link in pages.links(text):
        if re.match(r"\w+:", link):
            continue
        target, _, anchor = link.partition("#")
        file = SOURCES / page.parent / target if target else SOURCES / page
        if not file.exists():
            yield f"the link {link} leads nowhere"
        elif anchor and anchor not in pages.anchors(file.read_text()):
            yield f"the link {link} names no heading"


def check_paths(text):
    folders = {path.name for path in SOURCES.iterdir() if path.is_dir()} - {"build"}
    for path in pages.named_paths(text, folders):
        if not (SOURCES / path).exists():
            yield f"`{path}` is not there"


def check_nothing_is_lost(texts):
    """Each page and each picture is linked from somewhere."""
    linked = {os.path.normpath(page.parent / link.partition("#")[0])
              for page, text in texts.items() for link in pages.links(text)}
    parts = [path.relative_to(SOURCES) for path in sorted((SOURCES / "docs").rglob("*.*"))]
    for part in parts:
        if str(part) not in linked:
            yield f"{part}: no page leads there"


def main():
    global BUILD, HOME
    BUILD = pathlib.Path(sys.argv[1]).resolve()
    with tempfile.TemporaryDirectory() as scratch:
        HOME = pathlib.Path(scratch)
        sys.exit(1 if faults_of_all_pages() else 0)


def faults_of_all_pages():
    """Prints every fault; gives their number."""
    texts = {page: (SOURCES / page).read_text() for page in pages.all_pages(SOURCES)}
    faults = [f"{page}: there is no such page" for page in COMMANDS
              if pathlib.Path(page) not in texts]
    for page, text in texts.items():
        for check in (check_commands(page, text), check_links(page, text), check_paths(text)):
            faults += [f"{page}: {fault}" for fault in check]
    faults += check_nothing_is_lost(texts)
    for fault in faults:
        print(fault)
    print(f"{len(texts)} pages, {sum(len(pages.commands(text)) for text in texts.values())} commands, "
          f"{sum(len(pages.links(text)) for text in texts.values())} links, {len(faults)} faults")
    return len(faults) + (not texts)


main()
