"""Waiting for conditions, never for time."""

import time


class StepFailed(Exception):
    """What should have happened did not."""


def until(what, condition, seconds=5.0, interval=0.01):
    """Polls until condition() is true and returns its value; fails with `what` after the deadline."""
    deadline = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > deadline:
            raise StepFailed(f"{what}: not within {seconds:g} s")
        time.sleep(interval)


def stays(what, condition, seconds):
    """Fails when condition() turns false within `seconds`."""
    deadline = time.monotonic() + seconds
    while time.monotonic() < deadline:
        if not condition():
            raise StepFailed(f"{what}: no longer so")
        time.sleep(0.02)


def expect(what, condition):
    if not condition:
        raise StepFailed(what)
