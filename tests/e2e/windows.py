#!/usr/bin/env python3
"""Opens every window in both appearances at both scales, takes its picture, and looks whether everybody can use it."""

import argparse
import sys
import time

from audit import changes, presses, rules, views
from audit.stage import LOOKS, Stage
from audit.walk import Walk
from driver.display import PrivateDisplay
from driver.pictures import emptied
from driver.waiting import StepFailed

# The keyboard's way is the same at each scale, but its mark must be seen in both appearances.
WALKED = [LOOKS[0], LOOKS[3]]
USES = {
    "every switch and list changes something, is saved, and is kept over a restart": changes,
    "buttons that are pressed do what they say": presses,
}


def main():
    options = arguments()
    pictures = emptied(options.pictures)
    with PrivateDisplay(screen="3840x2160") as display:
        faults = [fault for look in LOOKS for fault in examine_all(display, options.vantle, pictures, look)]
        for what, way in USES.items():
            faults += use_all(display, options.vantle, pictures, what, way)
    print(f"{len(faults)} faults" if faults else "Every window is as it should be")
    return 1 if faults else 0


def arguments():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--vantle", required=True, help="the program")
    parser.add_argument("--pictures", required=True, help="folder for the PNGs; emptied first")
    return parser.parse_args()


def examine_all(display, binary, pictures, look):
    """The faults of all windows in one look."""
    started = time.monotonic()
    stage = Stage(display, binary, pictures, look)
    examined, faults = 0, []
    try:
        stage.start()
        for way in views.ALL:
            for view in way(stage):
                faults += [f"{view.name}: {fault}" for fault in examine(stage, view)]
                examined += 1
    except StepFailed as failure:
        faults.append(f"after {examined} windows and pages: {failure}")
    finally:
        stage.close()
    report(started, f"{stage.name}: {examined} windows and pages", faults)
    return faults


def use_all(display, binary, pictures, what, way):
    started = time.monotonic()
    stage = Stage(display, binary, pictures, LOOKS[0])
    stage.application.write_settings()
    try:
        faults = way.faults(stage)
    except StepFailed as failure:
        faults = [str(failure)]
    finally:
        stage.close()
    report(started, what, faults)
    return faults


def report(started, what, faults):
    print(f"{'failed' if faults else 'ok':8}{time.monotonic() - started:5.1f} s  {what}", flush=True)
    for fault in faults:
        print(f"    {fault}", flush=True)


def examine(stage, view):
    stage.picture(view.name, stage.shape(view.title))
    window = stage.tree(view.title)
    faults = list(rules.faults(window))
    if view.has_tab and stage.look in WALKED:
        faults += Walk(stage, window).take()
    return faults


if __name__ == "__main__":
    sys.exit(main())
