# SPDX-License-Identifier: MIT
"""Runs the program on each case of a folder and compares all that can be observed.

    run_cases.py PROGRAM CASES [NAME...]

A case is a folder with these files; only argv is required:

  argv      the arguments, one on each line
  in.conf   visa.conf in the working folder, which QVVISACONFFILE names, before the run
  out.conf  the same after the run; without it the file must be unchanged
  bench     a bench file: the VISA simulator is the library; without it there is none
  stdin     standard input; empty without it
  stdout    standard output; empty without it
  stderr    standard error; empty without it
  exit      the exit status; 0 without it
  env       NAME=VALUE lines; a line NAME= unsets the variable
  limit     the process's limit on file sizes, in bytes; none without it
  files/    further files of the working folder
  after/    files that the working folder must have after the run, with these contents

FOLDER in env, stdout and stderr is the working folder's path, SIMULATOR the simulator's folder, which
the environment variable QVVISA_SIMULATOR names. Every other file of the working
folder must be as before, and none may be added.
"""

import os
import pathlib
import resource
import shutil
import subprocess
import sys
import tempfile
import unittest

PROGRAM = pathlib.Path(sys.argv[1]).resolve()
CASES = pathlib.Path(sys.argv[2]).resolve()
FILE = "visa.conf"
LIBRARY_PATH = "DYLD_LIBRARY_PATH" if sys.platform == "darwin" else "LD_LIBRARY_PATH"


def content(path, default=b""):
    return path.read_bytes() if path.exists() else default


def tree(folder):
    return {
        str(path.relative_to(folder)): path.read_bytes()
        for path in sorted(folder.rglob("*"))
        if path.is_file()
    }


class Case(unittest.TestCase):
    maxDiff = None

    def check(self, case):
        with tempfile.TemporaryDirectory(prefix="qvvisa-case-") as name:
            folder = pathlib.Path(name)
            if (case / "files").is_dir():
                shutil.copytree(case / "files", folder, dirs_exist_ok=True)
            if (case / "in.conf").exists():
                shutil.copyfile(case / "in.conf", folder / FILE)
                # Some output depends on whether the file was changed in this very second.
                os.utime(folder / FILE, (1_000_000_000, 1_000_000_000))
            if (case / "bench").exists():
                shutil.copyfile(case / "bench", folder / "bench")
            expected_files = tree(folder)
            environment = {"PATH": os.environ["PATH"], "HOME": name, "QVVISACONFFILE": FILE}
            for option in ("ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS", "GCOV_ERROR_FILE"):
                if option in os.environ:
                    environment[option] = os.environ[option]
            simulator = os.environ["QVVISA_SIMULATOR"]
            if (case / "bench").exists():
                environment.update({LIBRARY_PATH: simulator, "QVVISA_BENCH": f"{name}/bench"})
            here = name.encode()
            for line in content(case / "env").replace(b"FOLDER", here).splitlines():
                variable, _, value = os.fsdecode(line).partition("=")
                environment.pop(variable, None)
                if value:
                    environment[variable] = value
            arguments = content(case / "argv").split(b"\n")[:-1]
            limit = int(content(case / "limit", str(resource.RLIM_INFINITY)))
            result = subprocess.run(
                [os.fsencode(PROGRAM), *arguments],
                cwd=folder,
                env=environment,
                input=content(case / "stdin"),
                capture_output=True,
                preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit)),
                timeout=60,
                check=False,
            )
            if (case / "out.conf").exists():
                expected_files[FILE] = (case / "out.conf").read_bytes()
            if (case / "after").is_dir():
                expected_files.update(tree(case / "after"))
            expected_exit = int(content(case / "exit", b"0"))
            self.assertEqual(
                (
                    result.returncode,
                    result.stdout.replace(here, b"FOLDER").replace(simulator.encode(), b"SIMULATOR"),
                    result.stderr.replace(here, b"FOLDER").replace(simulator.encode(), b"SIMULATOR"),
                    tree(folder),
                ),
                (
                    expected_exit,
                    content(case / "stdout"),
                    content(case / "stderr"),
                    expected_files,
                ),
            )


def add_case(case):
    setattr(Case, "test_" + case.name, lambda self: self.check(case))


def main():
    names = sys.argv[3:]
    cases = [path for path in sorted(CASES.iterdir()) if not names or path.name in names]
    for case in cases:
        add_case(case)
    if not cases:
        sys.exit(f"{CASES}: no case")
    unittest.main(argv=sys.argv[:1])


main()
