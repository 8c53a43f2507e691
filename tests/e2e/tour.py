#!/usr/bin/env python3
"""Walks through the program as a user would. Prints a line a step; ends with 1 when one did not happen."""

import argparse
import sys
import time
import traceback

from driver.display import PrivateDisplay
from driver.pictures import emptied
from driver.waiting import StepFailed
from driver.world import World
from steps import (
    ask,
    boilerplates,
    file_drop,
    generate,
    history,
    inject,
    launcher,
    menu,
    onboarding,
    palette,
    privacy,
    projects,
    prompt,
    reports,
    service,
    settings,
    shortcuts,
    transform,
    transform_settings,
    uplink,
)
from steps.launcher import Skipped

STEPS = [
    *palette.STEPS,
    *launcher.STEPS,
    *history.STEPS,
    *inject.STEPS,
    *projects.STEPS,
    *boilerplates.STEPS,
    *file_drop.STEPS,
    *generate.STEPS,
    *menu.STEPS,
    *settings.STEPS,
    *shortcuts.STEPS,
    *service.STEPS,
    *uplink.STEPS,
    *prompt.STEPS,
    *ask.STEPS,
    *reports.STEPS,
    *transform_settings.STEPS,
    *transform.STEPS,
    *onboarding.STEPS,
    *privacy.STEPS,
]


def main():
    options = arguments()
    emptied(options.pictures)
    steps = [step for step in STEPS if not options.steps or any(word in step.__name__ for word in options.steps)]
    with PrivateDisplay(two_screens=True) as display:
        world = World(display, options.vantle, options.pictures)
        try:
            world.start_application()
            results = [walk(world, step) for step in steps]
        finally:
            world.close()
    failed = results.count("failed")
    print(f"{results.count('ok')} of {len(results)} steps happened, {results.count('skipped')} skipped, {failed} failed")
    return 1 if failed or not results else 0


def arguments():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--vantle", required=True, help="the program")
    parser.add_argument("--pictures", required=True, help="folder for the PNGs; emptied first")
    parser.add_argument("steps", nargs="*", help="parts of the names of the steps to walk; none: all")
    return parser.parse_args()


def walk(world, step):
    world.step_name = step.__name__.replace("_", "-")
    started = time.monotonic()
    taken = world.taken
    try:
        step(world)
        result, note = "ok", ""
        if world.taken == taken:
            world.picture()
    except Skipped as reason:
        result, note = "skipped", f": {reason}"
    except StepFailed as failure:
        result, note = "failed", f": {failure}"
    except Exception:  # a fault in the driver is a failed step as well, and the others still run
        result, note = "failed", ":\n" + traceback.format_exc()
    print(f"{result:8}{time.monotonic() - started:5.1f} s  {step.__doc__}{note}", flush=True)
    if result == "failed":
        recover(world)
    return result


def recover(world):
    """Shows what was on the screen, and leaves a clean start to the next step."""
    try:
        world.picture("FAILED", screens="both")
        log = world.application.log().strip()
        if log:
            print("    the program says: " + log[-600:].replace("\n", "\n    "))
        world.application.stop()
        world.application.start()
        world.application.wait_until_live()
    except StepFailed as failure:
        print(f"    and it does not start again: {failure}")


if __name__ == "__main__":
    sys.exit(main())
