# SPDX-License-Identifier: MIT
"""What the tests of the installation share: the build under test, and an installation of it."""

import os
import pathlib
import subprocess

SOURCES = pathlib.Path(__file__).resolve().parents[2]
BUILD = pathlib.Path(os.environ["QVVISA_BUILD"])
APPLICATION_ID = os.environ["QVVISA_APPLICATION_ID"]
VERSION = os.environ["QVVISA_VERSION"]


def run(*command, **options):
    """Both outputs of a command, which must end with 0."""
    done = subprocess.run([str(word) for word in command], stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          check=False, **options)
    if done.returncode != 0:
        raise AssertionError(f"{' '.join(map(str, command))} ended with {done.returncode}:\n"
                             + done.stdout)
    return done.stdout


def install(folder):
    """Installs everything as root would, as if folder were the root of the system; gives its usr."""
    run(os.environ["QVVISA_CMAKE"], "--install", BUILD, "--prefix", "/usr", "--strip",
        env={**os.environ, "DESTDIR": str(folder)}, umask=0o022)
    return pathlib.Path(folder) / "usr"


def dynamic_section(file):
    """What the loader reads in a program or library."""
    return run("readelf", "--wide", "--dynamic", file)
