"""Ask AI and Screen ask: questions in a panel, about words, images and parts of the screen, answered as one looks on."""

import struct
from contextlib import contextmanager
from pathlib import Path

from driver import clipboard
from driver.provider import Provider, png
from driver.waiting import expect, stays, until

ASK = "Ctrl+Alt+k"
SCREEN_ASK = "Ctrl+Alt+i"
CHOOSER = "Choose image(s) to attach to your question"
CODE = "std::ranges::sort(tools, {}, &Tool::name);"
ANSWER = f"""Use `std::ranges::sort` with a **projection**:

```cpp
{CODE}
```

- it compares the names alone
- equal ones lose their order: `stable_sort` keeps it"""


@contextmanager
def asking(world, answer, pause=0.02, appearance="light"):
    """A program whose AI provider says `answer`, a word every `pause` seconds."""

    def make():
        return Provider(answer, pause)

    provider = world.network.inside(make) if world.network else make()
    try:
        with world.another_application() as application:
            application.write_settings()
            application.write_json("app-settings.json", {"appearance": appearance})
            application.write_json("ai-provider.json", provider.settings)
            application.start()
            application.wait_until_live()
            yield provider
    finally:
        provider.close()


def answers_a_question(world):
    """Ctrl+Alt+K, a question and Return: the answer grows in the panel, its code is copied, and a follow-up knows it"""
    with asking(world, ANSWER, pause=0.5) as provider:
        open_panel(world)
        world.desktop.type("How do I sort by name?")
        world.see("Press ↩ to ask")
        world.desktop.press("Return")
        world.see("with a projection")
        expect("it has not come to its end yet", not world.shows("keeps it"))
        world.picture("growing")
        provider.pause = 0.02
        world.see("keeps it", 10)
        wait_for_its_end(world)
        world.expect_terminal_active("while the panel answers")
        world.picture("answered")
        world.click_on("Copy code block 1")
        until("the code is on the clipboard", lambda: clipboard.text() == CODE)
        world.desktop.press("Ctrl+c")
        until("Ctrl+C copies the whole answer", lambda: clipboard.text() == ANSWER)
        copies_from_the_menu(world)
        provider.answer = "Yes, with `stable_sort`."
        world.desktop.type("And in a stable way?")
        world.desktop.press("Return")
        world.see("Yes, with stable_sort")
        texts = "\n".join(provider.requests[-1].texts)
        expect(f"the provider was told what was said before: {texts}", "How do I sort by name?" in texts and CODE in texts)
        wait_for_its_end(world)
        close(world, "Ask AI")
        open_panel(world)
        world.see("Yes, with stable_sort")
        world.desktop.press("Ctrl+n")
        world.see("Short answers, right here.")
        close(world, "Ask AI")


def copies_from_the_menu(world):
    entry = "Copy Answer as Markdown"
    clipboard.copy(b"something else")
    world.desktop.press("Menu")
    world.see(entry)
    world.picture("menu")
    world.desktop.press("Escape")
    until("the menu is closed", lambda: not world.shows(entry))
    expect("the panel is not", world.titled("Ask AI"))
    world.click_on("Question", button=3)
    world.see("Copy Question")
    world.desktop.press("Escape")
    world.desktop.press("Shift+F10")
    world.see(entry)
    world.desktop.press("Return")
    until("the answer is on the clipboard", lambda: clipboard.text() == ANSWER)


def breaks_an_answer_off(world):
    """Escape while an answer arrives: the panel is gone, nothing comes later, and the question waits in the field"""
    with asking(world, " ".join(f"word{number}" for number in range(200)), pause=0.1) as provider:
        open_panel(world)
        world.desktop.type("Count for me")
        world.desktop.press("Return")
        world.see("word3")
        world.desktop.press("Escape")
        until("the panel is gone", lambda: not world.titled("Ask AI"))
        until("the provider notices", lambda: provider.cut == 1, 5)
        open_panel(world)
        world.see("Count for me")
        stays("nothing arrives any more", lambda: not world.shows("word"), 0.5)
        world.picture("back")
        close(world, "Ask AI")


def attaches_files(world):
    """Attach…: Escape leaves everything as it was; a chosen PNG is attached, goes with the question and stays beside it"""
    with asking(world, "Both are of one colour.") as provider:
        pictures = [Path(world.application.home.name) / name for name in ("blue sky.png", "rouge.png")]
        for path, colour in zip(pictures, ((47, 111, 237), (200, 30, 30))):
            path.write_bytes(png(320, 200, colour))
        open_panel(world)
        world.desktop.type("What are these?")
        open_chooser(world)
        world.picture("chooser")
        world.desktop.press("Escape")
        until("the chooser is gone", lambda: not world.titled(CHOOSER))
        until("the panel is back", lambda: world.titled("Ask AI"))
        world.see("What are these?")
        expect("nothing is attached", not world.shows("Remove attached image"))

        for number, path in enumerate(pictures, 1):
            open_chooser(world)
            world.desktop.type(str(path))
            until("the path is typed", lambda path=path: world.shows(str(path)))
            world.desktop.press("Return")
            until("the panel is back", lambda: world.titled("Ask AI"))
            world.see(f"Remove attached image {number}")
        world.see("Press ↩ to ask about your image")
        world.picture("attached")
        world.desktop.press("Return")
        world.see("2 images attached")
        world.see("Both are of one colour.")
        world.picture("answered")
        request = provider.requests[-1]
        expect("the files went along, in their order", request.images == [path.read_bytes() for path in pictures])
        expect("with the question", "What are these?" in "\n".join(request.texts))
        close(world, "Ask AI")


def asks_about_a_region(world):
    """Ctrl+Alt+I and a dragged region: questions about it are answered beside it, until the shortcut closes the panel"""
    with asking(world, "A terminal with a prompt.") as provider:
        world.quiet()
        world.desktop.press(SCREEN_ASK)
        drag_region(world)
        until("the panel is shown", lambda: world.titled("Image Ask"))
        world.see("Captured area, 320 × 210")
        world.desktop.type("What is this?")
        world.desktop.press("Return")
        world.see("A terminal with a prompt.")
        world.see("Ask a follow-up…")
        world.picture("answered")
        world.desktop.type("And its colour?")
        world.desktop.press("Return")
        until("it is asked", lambda: len(provider.requests) == 2)
        sizes = [struct.unpack(">II", image[16:24]) for image in provider.requests[-1].images]
        expect(f"with the same picture: {sizes}", sizes == [(320, 210)])
        said = "\n".join(provider.requests[-1].texts)
        expect(f"and what was said: {said}", "What is this?" in said)
        world.desktop.press(SCREEN_ASK)
        until("the shortcut closes the panel", lambda: not world.titled("Image Ask"))
        world.desktop.press(SCREEN_ASK)
        until("and begins anew", lambda: covers(world))
        until("the overlay has the keyboard", world.desktop.is_keyboard_taken, 5, 0.05)
        world.desktop.press("Escape")
        until("Escape leaves it", lambda: not covers(world))
        expect("without a panel", not world.titled("Image Ask"))


def open_panel(world):
    world.quiet()
    world.desktop.press(ASK)
    until("the panel is shown", lambda: world.titled("Ask AI"))


def wait_for_its_end(world):
    """Its last word is seen a moment before it is known to be the last."""
    until("the answer is whole", lambda: world.shows("esc close"))


def open_chooser(world):
    world.click_on("Attach image files")
    until("the file chooser is shown", lambda: world.titled(CHOOSER))
    until("it has the keyboard", lambda: world.desktop.active_window() == world.titled(CHOOSER).id)


def close(world, title):
    world.desktop.press("Escape")
    until(f"{title} is closed", lambda: not world.titled(title))


def drag_region(world):
    until("the overlay covers the screen", lambda: covers(world))
    world.desktop.drag((300, 200), (620, 410))
    until("the overlay is gone", lambda: not covers(world))


def covers(world):
    """Our window over the whole left screen."""
    return any((window.width, window.height) == (1920, 1080) for window in world.windows())


STEPS = [answers_a_question, breaks_an_answer_off, attaches_files, asks_about_a_region]
