"""The folder of a walk's pictures."""

from pathlib import Path


def emptied(folder):
    """Makes it and removes the pictures of the last walk; those of others, in folders below, stay."""
    pictures = Path(folder)
    pictures.mkdir(parents=True, exist_ok=True)
    for old in pictures.glob("*.png"):
        old.unlink()
    return pictures
