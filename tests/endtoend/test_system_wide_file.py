#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The system-wide file, in a root folder that only the program sees."""

import subprocess
import sys
import tempfile

import program
import scenario
from desktop import expect_equal
from program import BEFORE, EDITED

SKIPPED = 77

# new-root ROOT PREFERENCES COMMAND...: runs the command in namespaces of its own, with the machine's
# root folder at ROOT and PREFERENCES mounted as /Library/Preferences.
IN_NEW_ROOT = ["unshare", "--user", "--map-root-user", "--mount", "sh", "-euc", """
root=$1
mount -t tmpfs new-root "$root"
for entry in /*; do
    if [ -L "$entry" ]; then
        cp -P "$entry" "$root$entry"
    elif [ -d "$entry" ] && [ "$entry" != /Library ]; then
        mkdir "$root$entry"
        mount --rbind "$entry" "$root$entry"
    fi
done
mkdir -p "$root/Library/Preferences"
mount --bind "$2" "$root/Library/Preferences"
shift 2
exec chroot "$root" sh -c 'cd "$0" && exec "$@"' "$PWD" "$@"
""", "new-root"]


def can_create_a_root():
    with tempfile.TemporaryDirectory() as root, tempfile.TemporaryDirectory() as preferences:
        return subprocess.run([*IN_NEW_ROOT, root, preferences, "true"], check=False).returncode == 0


def prepared(desktop):
    root, preferences = desktop.folder / "root", desktop.folder / "preferences"
    root.mkdir()
    preferences.mkdir()
    file = preferences / "com.quorvane.visa.conf"
    file.write_bytes(BEFORE)
    return file, program.from_environment(
        desktop, around=[*IN_NEW_ROOT, str(root), str(preferences)])


def edit_and_save(user):
    user.start()
    user.edit()
    user.save()
    user.end()


def file_is_saved(desktop):
    file, user = prepared(desktop)
    edit_and_save(user)
    expect_equal(file.read_bytes(), EDITED, "the system-wide file")
    expect_equal(user.files(), [], "other files")


def home_folder_comes_first(desktop):
    file, user = prepared(desktop)
    in_home = user.write_in_home(BEFORE)
    edit_and_save(user)
    expect_equal(in_home.read_bytes(), EDITED, str(in_home))
    expect_equal(file.read_bytes(), BEFORE, "the system-wide file")


if not can_create_a_root():
    print("skipped: this machine does not allow user namespaces with mounts")
    sys.exit(SKIPPED)
scenario.run(file_is_saved, home_folder_comes_first)
