"""Drives the real program from outside: a display of its own, real key presses, and eyes on what is drawn."""
