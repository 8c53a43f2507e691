"""Feedback and Suggest a Tool: words and snips of the screen reach the service, by panel and by command line."""

import json
import subprocess
from pathlib import Path

from driver import clipboard
from driver.provider import png
from driver.waiting import expect, until

from .uplink import covers, inside

FEEDBACK = "Feedback"
SUGGEST = "Suggest a Tool"


def sends_feedback_with_a_snip(world):
    """Ctrl+Alt+B, words, a region of the screen, Ctrl+Return: the panel steps aside, comes back, thanks"""
    world.terminal.focus()
    world.desktop.press("Ctrl+Alt+b")
    until("the panel is shown", lambda: world.titled(FEEDBACK))
    world.see("What's on your mind?")
    world.picture("empty")
    world.desktop.press("Tab")
    world.desktop.type("It works")
    world.desktop.press("Ctrl+s")
    until("the overlay covers the screen", lambda: covers(world))
    expect("the panel has stepped aside", not world.titled(FEEDBACK))
    world.desktop.drag((300, 200), (620, 410))
    world.keyed(FEEDBACK)
    expect("the overlay has gone", not covers(world))
    world.see("Snip 1")
    world.desktop.type(" well")
    world.picture("written")
    world.desktop.press("Ctrl+Return")
    world.see("Thanks — feedback sent!", 20)
    world.see("Ctrl+N to send another · esc to close")
    world.picture("sent")
    report = exported(world, "feedback")[-1]
    expect(f"the service has it: {report}", report["category"] == "feedback" and report["message"] == "It works well")
    expect("with the versions", report["appVersion"] and report["osVersion"])
    [image] = report["images"]
    expect(f"with the snip: {image}", image["name"] == "snip-1.png" and image["type"] == "image/png")
    world.desktop.press("Ctrl+n")
    until("Ctrl+N begins a new one", lambda: not world.shows("Snip 1") and world.shows("What's on your mind?"))
    world.desktop.press("Escape")
    until("Escape closes it", lambda: not world.titled(FEEDBACK))
    world.expect_terminal_active("afterwards")


def suggests_a_tool_again_after_a_failure(world):
    """Ctrl+Alt+F to a service that nobody is: everything stays, an image is pasted, Ctrl+Return sends it again"""
    override = world.application.folder / "SuggestTool/config.json"
    world.application.write_json("SuggestTool/config.json", {"endpoint": "http://127.0.0.1:9/", "token": ""})
    clipboard.copy(png(320, 200, (30, 90, 200)), "image/png")
    world.desktop.press("Ctrl+Alt+f")
    until("the panel is shown", lambda: world.titled(SUGGEST))
    world.desktop.type("A tool that waters plants")
    world.desktop.press("Ctrl+v")
    world.see("Snip 1")
    world.desktop.press("Ctrl+Return")
    world.see(" — Ctrl+↩ to retry", 20)
    world.picture("failed")
    override.unlink()
    world.desktop.press("Ctrl+Return")
    world.see("Thanks — suggestion sent!", 20)
    world.picture("sent")
    idea = exported(world, "suggestions")[-1]
    expect(f"the service has it: {idea}", idea["suggestion"] == "A tool that waters plants" and len(idea["images"]) == 1)
    world.desktop.press("Ctrl+Alt+f")
    until("the shortcut closes it", lambda: not world.titled(SUGGEST))


def exported(world, what):
    """What the operator of the built-in service sees, oldest first."""
    program = str(Path(world.application.binary).with_name("vantle-service"))
    words = [program, "export", what, "--data", str(world.application.folder / "service")]
    answer = subprocess.run(inside(world, *words), env=world.application.environment, capture_output=True, text=True)
    expect(f"{' '.join(words)}: {answer.stderr}", answer.returncode == 0)
    return [json.loads(line) for line in answer.stdout.splitlines()]


STEPS = [sends_feedback_with_a_snip, suggests_a_tool_again_after_a_failure]
