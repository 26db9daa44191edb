# SPDX-License-Identifier: MIT
"""A private network for one test: this process's own network namespace, and peers beside it.

Nothing leaves the machine: the namespaces have no way out. The addresses are those reserved for
documentation."""

import json
import os
import shutil
import subprocess
import sys
import tempfile
import time

SKIPPED = 77  # what ctest takes for "skipped"
HERE = os.path.dirname(os.path.abspath(__file__))


def enter():
    """Runs this script again in namespaces of its own; ends the process with the script's result."""
    if os.environ.get("QVFIND_LAB") == "inside":
        # An empty /sys: this machine has no USB instruments and serial ports here.
        for folder in ("/run", "/sys"):
            subprocess.run(["mount", "-t", "tmpfs", "tmpfs", folder], check=True)
        subprocess.run(["ip", "link", "set", "lo", "up"], check=True)
        return
    command = ["unshare", "--net", "--mount", "--propagation", "private", "--mount-proc", "--pid",
               "--fork", "--kill-child"]
    if os.getuid() != 0:
        command += ["--user", "--map-root-user"]
    if shutil.which("unshare") is None or subprocess.run(
            [*command, "true"], stderr=subprocess.DEVNULL, check=False).returncode != 0:
        print("skipped: network namespaces are not allowed here")
        sys.exit(SKIPPED)
    environment = dict(os.environ, QVFIND_LAB="inside", PYTHONDONTWRITEBYTECODE="1")
    environment["QVFIND_LAB_ROOT"] = "yes" if os.getuid() == 0 else "no"
    sys.exit(subprocess.run([*command, sys.executable, *sys.argv], env=environment, check=False).returncode)


def is_root():
    """True outside a user namespace, where daemons such as rpcbind can run."""
    return os.environ.get("QVFIND_LAB_ROOT") == "yes"


def run(*command):
    subprocess.run(command, check=True)


def wait_for(condition, what, seconds=30):
    end = time.monotonic() + seconds
    while not condition():
        if time.monotonic() > end:
            raise TimeoutError(what)
        time.sleep(0.01)


class Peer:
    """Another machine, with one cable to this one."""

    number = 0

    def __init__(self, address="198.51.100.2/24", own="198.51.100.1/24"):
        Peer.number += 1
        self.processes = []
        self.addresses = set()
        self.cable = f"v{Peer.number}"
        self.holder = subprocess.Popen(["unshare", "--net", "--mount", "--propagation", "private", "sh", "-c",
                                        "mount -t tmpfs tmpfs /run && touch /run/ready && exec sleep 1000"])
        ready = f"/proc/{self.holder.pid}/root/run/ready"
        wait_for(lambda: os.path.exists(ready), "the peer's namespace")
        run("ip", "link", "add", self.cable, "type", "veth", "peer", "name", "eth0", "netns", str(self.holder.pid))
        if own:
            run("ip", "address", "add", own, "brd", "+", "dev", self.cable)
        run("ip", "link", "set", self.cable, "up")
        self.run("ip", "link", "set", "lo", "up")
        self.run("ip", "link", "set", "eth0", "up")
        if address:
            self.add_address(address)

    def add_address(self, address):
        self.addresses.add(address.split("/")[0])
        self.run("ip", "address", "add", address, "brd", "+", "dev", "eth0")

    def inside(self, *command):
        return ["nsenter", "-t", str(self.holder.pid), "-n", "-m", *command]

    def run(self, *command):
        subprocess.run(self.inside(*command), check=True)

    def start(self, *command, **options):
        process = subprocess.Popen(self.inside(*command), **options)
        self.processes.append(process)
        return process

    def start_until_ready(self, *command):
        process = self.start(*command, stdout=subprocess.PIPE, text=True)
        line = process.stdout.readline()
        if line.strip() != "ready":
            raise RuntimeError(f"{command} printed {line!r}")
        return process

    def instruments(self, *instruments):
        """Starts responder.py with these instruments, in one subnet of 24 bits."""
        for instrument in instruments:
            if instrument["address"] not in self.addresses:
                self.add_address(instrument["address"] + "/24")
        net = instruments[0]["address"].rpartition(".")[0]
        description = json.dumps({"instruments": instruments, "broadcasts": [net + ".255"]})
        return self.start_until_ready(sys.executable, os.path.join(HERE, "responder.py"), description)

    def end(self, process):
        self.processes.remove(process)
        process.kill()
        process.communicate()

    def stop(self):
        while self.processes:
            self.end(self.processes[-1])

    def remove(self):
        self.stop()
        self.holder.kill()
        self.holder.wait()
        subprocess.run(["ip", "link", "delete", self.cable], stderr=subprocess.DEVNULL, check=False)


class Result:
    def __init__(self, output):
        lines = output.splitlines()
        self.resources = [line[2:] for line in lines if line.startswith("- ")]
        self.status = int(lines[-2].split()[1], 16)
        self.milliseconds = int(lines[-1].split()[1])
        self.log = ""


def search(expression="?*", *attributes, **environment):
    """One search with the finder in a process of its own."""
    with tempfile.TemporaryDirectory() as folder:
        log = os.path.join(folder, "log")
        variables = {k: v for k, v in os.environ.items() if not k.startswith("QVFIND")}
        variables.update({"QVFIND_LOG": log, "HOME": folder, **environment})
        process = subprocess.run([os.environ["QVVISA_FINDER_CLIENT"], os.environ["QVVISA_FINDER_LIBRARY"],
                                  expression, *attributes], env=variables, stdout=subprocess.PIPE, text=True, check=True)
        result = Result(process.stdout)
        if os.path.exists(log):
            with open(log, encoding="ascii") as file:
                result.log = file.read()
        return result


