#!/usr/bin/env python3
"""Compares what a module exports with the list of what it may export.

usage: check_symbols.py MODULE LIST
The list has one demangled name a line, with "*" for the rest of a name; "#" begins a comment. Every
symbol must fit a line, and every line must be met by a symbol.
"""
import fnmatch
import subprocess
import sys

module, list_file = sys.argv[1:]
with open(list_file, encoding="utf-8") as lines:
    allowed = [line.strip() for line in lines if line.strip() and not line.startswith("#")]

listing = subprocess.run(["nm", "-D", "--defined-only", "--demangle", module],
                         capture_output=True, text=True, check=True).stdout
# address, type and name; the name of a C++ function holds blanks
exported = [line.split(maxsplit=2)[2] for line in listing.splitlines()]

findings = [f"exported, but not in the list: {name}" for name in exported
            if not any(fnmatch.fnmatchcase(name, pattern) for pattern in allowed)]
findings += [f"in the list, but not exported: {pattern}" for pattern in allowed
             if not any(fnmatch.fnmatchcase(name, pattern) for name in exported)]
print("\n".join(findings) or f"{len(exported)} exported symbols, all of them listed")
sys.exit(1 if findings else 0)
