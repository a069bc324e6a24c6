#!/usr/bin/env python3
"""Runs the tests of a file but for those that are named: all_but.py [CLASS.TEST...] FILE"""

import importlib
import pathlib
import signal
import sys
import unittest

*names, file = sys.argv[1:]
path = pathlib.Path(file)
sys.path.insert(0, str(path.parent))
module = importlib.import_module(path.stem)
for name in names:
    owner, test = name.split(".")
    delattr(getattr(module, owner), test)  # fails for a test that is not there
signal.signal(signal.SIGINT, signal.default_int_handler)
unittest.main(module, argv=[file])
