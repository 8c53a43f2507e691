"""Programs that end with the block that has started them."""

import os
import signal
import subprocess


class Processes:
    def __init__(self):
        self.processes = []

    def start(self, command, **options):
        """A client of this session that ends with it."""
        options.setdefault("stdout", subprocess.DEVNULL)
        options.setdefault("stderr", subprocess.DEVNULL)
        process = subprocess.Popen(command, **options)
        self.processes.append(process)
        return process

    def end_all(self):
        """The last one first; what the first of a group of its own has started ends with it."""
        for process in reversed(self.processes):
            is_group = process.returncode is None and os.getpgid(process.pid) == process.pid
            process.terminate()
            try:
                process.wait(5)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
            if is_group:
                end_group(process.pid)


def end_group(group):
    """Nothing in it has anything to save."""
    try:
        os.killpg(group, signal.SIGKILL)
    except ProcessLookupError:
        pass
