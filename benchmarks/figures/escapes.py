"""Ask AI while an answer arrives: Escape pressed → the panel gone, and the question taken back at the provider."""

import time

from driver.application import Application
from driver.provider import Provider
from driver.waiting import until
from Xlib import X, error

from .figure import Figure, p95

ROUNDS = 20
TARGET_MS = 100
# A provider notices at its next word, or the one after.
PAUSE_S = 0.002
WORDS = 10_000


def figures(desktop, vantle):
    provider = Provider(" ".join(["word"] * WORDS), PAUSE_S)
    application = Application(vantle, accessible=False)
    try:
        application.write_settings()
        application.write_json("ai-provider.json", provider.settings)
        application.start()
        application.wait_until_live()
        gone, cut = zip(*[escape(desktop, application, provider) for _ in range(ROUNDS)])
    finally:
        application.close()
        provider.close()
    yield Figure("Escape while an answer arrives → panel gone, 95th percentile", p95(gone), "ms", TARGET_MS)
    yield Figure("the same, to the provider's end of it", p95(cut), "ms", TARGET_MS)


def escape(desktop, application, provider):
    before = len(provider.requests)
    desktop.press("Ctrl+Alt+k")
    panel = until("the panel is shown", lambda: desktop.windows_of(application.pid))[-1]
    # What was asked before waits in the field.
    if not before:
        desktop.type("why")
    desktop.press("Return")
    until("the provider is asked", lambda: len(provider.requests) == before + 1, 15)
    # Into the middle of it.
    time.sleep(0.2)
    window = desktop.display.create_resource_object("window", panel.id)
    pressed = time.perf_counter()
    desktop.press("Escape")
    until("the panel is gone", lambda: not is_seen(window), interval=0.0005)
    gone = time.perf_counter()
    until("the provider notices", lambda: provider.cut == before + 1, interval=0.0005)
    return 1000 * (gone - pressed), 1000 * (time.perf_counter() - pressed)


def is_seen(window):
    try:
        return window.get_attributes().map_state == X.IsViewable
    except error.BadWindow:
        return False
