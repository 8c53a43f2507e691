"""A network of the program's own: a namespace whose one default route comes and goes."""

import ctypes
import os
import subprocess
from concurrent.futures import ThreadPoolExecutor

from .waiting import StepFailed

# A dummy device does where the kernel has one; the tap needs /dev/net/tun.
INSIDE = """
set -e
ip link set lo up
ip link add vantle0 type dummy 2>/dev/null || ip tuntap add vantle0 mode tap
ip addr add 192.0.2.2/24 dev vantle0
ip link set vantle0 up
echo ready
while read -r line; do if eval "$line"; then echo ok; else echo failed; fi; done
"""


class PrivateNetwork:
    """Owns the namespace through one shell that lives in it. Raises StepFailed where the machine allows none."""

    def __init__(self):
        own = [] if os.geteuid() == 0 else ["--user", "--map-current-user", "--keep-caps"]
        self.process = subprocess.Popen(
            ["unshare", *own, "--net", "bash", "-c", INSIDE],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            text=True,
        )
        if self.process.stdout.readline() != "ready\n":
            reason = self.process.stderr.read().strip()
            self.close()
            raise StepFailed(f"no network namespaces here: {reason}")

    def command(self, command):
        """The command line that runs `command` in this network."""
        user = [] if os.geteuid() == 0 else ["--user", "--preserve-credentials"]
        return ["nsenter", "--target", str(self.process.pid), *user, "--net", "--", *command]

    def inside(self, make):
        """What `make` makes while its thread stands in this network, such as a server that listens there."""

        def enter():
            with open(f"/proc/{self.process.pid}/ns/net") as namespace:
                if ctypes.CDLL(None, use_errno=True).setns(namespace.fileno(), 0) != 0:
                    raise StepFailed(f"the network cannot be entered: {os.strerror(ctypes.get_errno())}")

        with ThreadPoolExecutor(1, initializer=enter) as thread:
            return thread.submit(make).result()

    def go_online(self):
        self._ask("ip route add default via 192.0.2.1 dev vantle0")

    def go_offline(self):
        self._ask("ip route del default")

    def _ask(self, line):
        self.process.stdin.write(line + "\n")
        self.process.stdin.flush()
        if self.process.stdout.readline() != "ok\n":
            raise StepFailed(f"network: {line} failed")

    def close(self):
        if self.process.poll() is None:
            self.process.stdin.close()
            self.process.wait(5)
