"""Texts to type: reproducible, with a line end every 97 characters."""

import random

ASCII = [chr(code) for code in range(0x20, 0x7F)]
ACCENTS = list("äöüßÄÖÜéèêàçñøåœŒæ€«»–—“”…·№")
CJK = [chr(code) for code in range(0x4E00, 0x4E00 + 800)] + [chr(code) for code in range(0x3041, 0x3097)]
EMOJI = [chr(code) for code in range(0x1F600, 0x1F650)] + list("🚀🧪🦀🪐")

KINDS = {
    "ascii": ASCII,
    "accents": ASCII + ACCENTS,
    # Few enough to be borrowed at once.
    "few": ASCII + CJK[:40] + EMOJI[:20],
    # A thousand of them: the borrowed keys change hands all the time.
    "many": ASCII + ACCENTS + CJK + EMOJI,
    "cjk": CJK,
}


def text(kind, length, seed=1):
    choose = random.Random(seed)
    characters = choose.choices(KINDS[kind], k=length)
    for index in range(97, length, 98):
        characters[index] = "\n"
    # Editors drop blanks at line ends, or add line ends at the end.
    characters[-1] = "."
    return "".join(characters)


def difference(wanted, got):
    """What is wrong, in one line; empty when nothing is."""
    if wanted == got:
        return ""
    at = next((i for i, (a, b) in enumerate(zip(wanted, got)) if a != b), min(len(wanted), len(got)))
    return f"{len(got)} of {len(wanted)} characters, the first fault at {at}: {wanted[at : at + 12]!r} is {got[at : at + 12]!r}"
