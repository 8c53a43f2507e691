"""The command line of a program of unittest's."""

import argparse
import sys


def take_options(*names):
    """The values of the options --name, which are needed; what else is said stays for unittest."""
    parser = argparse.ArgumentParser()
    for name in names:
        parser.add_argument(f"--{name}", required=True)
    options, sys.argv[1:] = parser.parse_known_args()
    return [getattr(options, name) for name in names]
