#!/usr/bin/env python3
"""Runs tests by pytest; exits with 77 where a package that they need is missing.

usage: run.py MODULE... -- ARGUMENT_OF_PYTEST..."""

import importlib.util
import sys

dashes = sys.argv.index("--")
missing = [name for name in ("pytest", "hypothesis", *sys.argv[1:dashes])
           if importlib.util.find_spec(name) is None]
if missing:
    print(f"{sys.executable} has no {', '.join(missing)}")
    sys.exit(77)

import pytest  # noqa: E402

sys.exit(pytest.main(["-q", "-p", "no:cacheprovider", "--import-mode=importlib",
                      *sys.argv[dashes + 1:]]))
