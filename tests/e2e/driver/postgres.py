"""A PostgreSQL of the test's own: its data, its socket and its end are in one temporary folder."""

import os
import pwd
import shutil
import subprocess
import tempfile
from pathlib import Path


def programs():
    """The folder of its programs, or nothing."""
    found = [path.parent for path in sorted(Path("/usr/lib/postgresql").glob("*/bin/initdb"))]
    on_path = shutil.which("initdb")
    return found[-1] if found else Path(on_path).parent if on_path else None


class Postgres:
    def __init__(self):
        self.folder = tempfile.TemporaryDirectory(prefix="vantle-postgres-")
        self.databases = 0
        # It refuses to run as root.
        self.user = "postgres" if os.geteuid() == 0 else None
        if self.user:
            account = pwd.getpwnam(self.user)
            os.chown(self.folder.name, account.pw_uid, account.pw_gid)
        self.data = f"{self.folder.name}/data"
        self._run("initdb", "--pgdata", self.data, "--username", "vantle", "--auth", "trust", "--no-sync")
        self.start()

    def _run(self, program, *arguments):
        command = [str(programs() / program), *arguments]
        return subprocess.run(
            command, user=self.user, cwd=self.folder.name, check=True, capture_output=True, text=True
        ).stdout

    def start(self):
        options = f"-c listen_addresses='' -c unix_socket_directories='{self.folder.name}'"
        log = f"{self.folder.name}/log"
        self._run("pg_ctl", "start", "--wait", "--pgdata", self.data, "--log", log, "--options", options)

    def stop(self):
        self._run("pg_ctl", "stop", "--wait", "--pgdata", self.data, "--mode", "fast")

    def new_database(self):
        """Its URL."""
        self.databases += 1
        name = f"service{self.databases}"
        self._run("createdb", "--host", self.folder.name, "--username", "vantle", name)
        return f"postgresql://vantle@/{name}?host={self.folder.name}"

    def execute(self, url, statement):
        return self._run("psql", "--quiet", "--tuples-only", "--no-align", "--command", statement, url)

    def close(self):
        self.stop()
        self.folder.cleanup()
