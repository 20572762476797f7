#!/usr/bin/env python3
"""Fails when a function that the headers export (ZT4_API ... ZT4_NOEXCEPT) has no row in the
bad-input table, or when a row names a function that is not exported.

usage: bad_input_rows_check.py <include dir> <bad_input_test.cpp>
"""
import pathlib
import re
import sys


def exported(include_dir):
    names = set()
    for header in sorted(pathlib.Path(include_dir).rglob("*.h")):
        text = header.read_text()
        for match in re.finditer(r"ZT4_API\s+[^;(]*?\b(\w+)\s*\([^;]*?\)\s*ZT4_NOEXCEPT\s*;", text, re.S):
            names.add(match.group(1))
    return names


def rows(test_source):
    text = "\n".join(line for line in pathlib.Path(test_source).read_text().splitlines()
                     if not line.startswith("#define"))
    named = re.findall(r"\bV?ROW\((\w+),", text)
    named += re.findall(r'\bBadCall\{"(\w+)"', text)
    return set(named)


def main():
    if len(sys.argv) != 3:
        print(__doc__, file=sys.stderr)
        return 2
    functions = exported(sys.argv[1])
    covered = rows(sys.argv[2])
    if len(functions) < 100:
        print(f"only {len(functions)} exported functions found: is the include folder right?")
        return 1
    missing = sorted(functions - covered)
    unknown = sorted(covered - functions)
    for name in missing:
        print(f"exported without a bad-input row: {name}")
    for name in unknown:
        print(f"row for a function that is not exported: {name}")
    print(f"{len(functions)} exported functions, {len(covered & functions)} with rows")
    return 1 if missing or unknown else 0


if __name__ == "__main__":
    sys.exit(main())
