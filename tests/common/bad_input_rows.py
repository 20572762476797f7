#!/usr/bin/env python3
"""Writes the rows of the bad-input test (C++) from the exported declarations of the headers.

Each declaration `ZT4_API <type> name(params) ZT4_NOEXCEPT;` gets one row: every pointer is null
and every number is out of its range (a value chosen by the parameter's name); the failure result
is read from the comment above the declaration or its group's heading ("..., or -1", "0 or 1",
"else 0", "or NULL", "Same operation as f"), and an error line ("error.") is expected in the log,
or none where the comment says the failure is silent. A function of one JSON argument gets a
second row with a JSON text in its place. The override file adds rows and replaces
the generated row of the same arguments; a function whose result the comment does not give
plainly must have an override row, and a declaration that cannot be read fails the generator too
(so that no new export goes unchecked).

usage: bad_input_rows.py <include dir> <override file> <output .inc>
"""
import pathlib
import re
import sys

# Out-of-range numbers, by parameter name (a number not listed here makes the function need an
# override row).
BAD_NUMBER = {"size": "16", "length": "16", "index": "200", "enable": "2", "id": "7", "connector": "7",
              "channel": "200", "count": "7", "plier": "9", "connectorId": "99", "fd": "-1",
              "version": "3", "semid": "-1", "timestamp": "-1", "phase": "4", "mode": "7", "x": "0",
              "addr": "844", "direction": "2", "value": "999999", "groups": "8", "minimum": "-1",
              "maximum": "-1", "expected": "-1", "moment": "-1", "operation": "-1", "defaultVersion": "200"}
DECLARATION = re.compile(r"ZT4_API\s+(?!extern)([^;(]*?)\b(\w+)\s*\(([^;]*?)\)\s*ZT4_NOEXCEPT\s*;", re.S)
TOKEN = re.compile(r"/\*.*?\*/|^[ \t]*ZT4_API\b[^;]*;|\n[ \t]*\n", re.S | re.M)
FAILURE = [(re.compile(r"\bor NULL\b|NULL (?:on failure|otherwise)"), "NULL"),
           (re.compile(r"\bor -1\b|-1 (?:on failure|otherwise)|[:,] -1\.$"), "-1"),
           (re.compile(r"(?<![\w.-])0,? or 1\b(?!\))|, or 1\.$|\bor 1 \(failure\)|\b1 on failure"), "1")]
KNOWN = set()


def declarations(include_dir):
    """(name, return type, [(type, name)], [comments, nearest first]) of every exported function.

    A function's comments are the one just above it (or above the run of declarations it ends),
    then the headings of its group: a comment followed by another comment, in force until the
    next heading after a blank line."""
    found = []
    for header in sorted(pathlib.Path(include_dir).rglob("*.h")):
        headings, last, previous, fresh = [], None, None, True
        for token in TOKEN.finditer(header.read_text()):
            text = token.group(0)
            if text.startswith("/*"):
                if previous == "comment":
                    headings = (headings if not fresh else []) + [last]
                    fresh = False
                elif previous != "comment" and last is None:
                    fresh = True
                last, previous = " ".join(text[2:-2].replace("*", " ").split()), "comment"
            elif text.lstrip().startswith("ZT4_API"):
                text = text.strip()
                match = DECLARATION.match(text)
                params = [p.strip().rsplit(None, 1) for p in " ".join(match.group(3).split()).split(",")] if match else []
                if (not match and not re.match(r"ZT4_API\s+extern\b", text)) or any(
                        len(p) != 2 and p not in (["void"], []) for p in params):
                    sys.exit(f"{header}: declaration not understood: {' '.join(text.split())}")
                if match:
                    params = [] if params in ([], [[]], [["void"]]) else params
                    found.append((match.group(2), " ".join(match.group(1).split()),
                                  [(t + ("*" if n.startswith("*") else ""), n.lstrip("*")) for t, n in params],
                                  ([last] if last else []) + headings[::-1]))
                previous, fresh = "declaration", False
            else:
                last, previous = None, None
    return found


def failure(kind, comments, results_of):
    """The failure result that the nearest comment giving one gives plainly, or None."""
    if kind == "void":
        return "void"
    for comment in comments:
        otherwise = re.search(r"\belse (-1|0|1)\b", comment)
        results = {otherwise.group(1)} if otherwise else {value for pattern, value in FAILURE if pattern.search(comment)}
        if kind == "json_t*" and "NULL" in results:
            return "NULL"
        results.discard("NULL")
        if kind != "json_t*" and results:
            return results.pop() if len(results) == 1 else None
        same = re.match(r"(?:Same operation as|Version 0 of) (\w+)[.:]", comment)
        if same and same.group(1) in KNOWN:
            return results_of(same.group(1))
    return None


def bad_arguments(params):
    values = []
    for kind, name in params:
        if "*" in kind:
            values.append("nullptr")
        elif name in BAD_NUMBER:
            values.append(BAD_NUMBER[name] + (".0f" if kind == "float" else ""))
        else:
            return None
    return ", ".join(values)


def overrides(path):
    rows = []
    for number, line in enumerate(pathlib.Path(path).read_text().splitlines(), 1):
        if line.strip() and not line.lstrip().startswith("#"):
            cells = [cell.strip() for cell in line.split("|")]
            if len(cells) not in (4, 5):
                sys.exit(f"{path}:{number}: expected 'function | arguments | result | log [| directory]'")
            rows.append((cells + [""])[:5])
    return rows


def quote(text):
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"') + '"'


def row(name, kind, arguments, result, log, directory):
    log = {"error.": "ERR", "silent": "SILENT"}.get(log, quote(log))
    call = f"{name}({arguments})"
    body = f"{call}; return std::string(\"void\");" if kind == "void" else f"return show({call});"
    return (f"    BadCall{{{quote(name)}, {quote(arguments)}, {quote(result)}, {log}, "
            f"{quote(directory) if directory else 'nullptr'}, []() {{ {body} }}}},")


def main():
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    functions = declarations(sys.argv[1])
    if len(functions) < 100:
        sys.exit(f"only {len(functions)} exported functions found in {sys.argv[1]}")
    kinds = {name: kind for name, kind, _, _ in functions}
    extra = overrides(sys.argv[2])
    unknown = sorted({name for name, *_ in extra} - set(kinds))
    given = {(name, arguments) for name, arguments, *_ in extra}
    named = {name for name, *_ in extra}
    rows, unchecked = [], []
    functions_by_name = {name: (kind, comments) for name, kind, _, comments in functions}
    KNOWN.update(functions_by_name)

    def results_of(name):
        return failure(*functions_by_name[name], results_of) if name in functions_by_name else None

    for name, kind, params, comments in functions:
        arguments, result = bad_arguments(params), failure(kind, comments, results_of)
        if arguments is None or result is None:
            if name not in named:
                unchecked.append(name)
        elif (name, arguments) not in given:
            quiet = any(re.search(r"(?:-1|NULL),? \(?silently|\blogs? nothing\b", comment) for comment in comments[:1])
            rows.append(row(name, kind, arguments, result, "silent" if quiet else "error.", ""))
            # A JSON text where the one JSON argument should be a container: refused the same way.
            if len(params) == 1 and params[0][0] in ("json_t*", "const json_t*") and (name, "text()") not in given:
                rows.append(row(name, kind, "text()", result, "silent" if quiet else "error.", ""))
    rows += [row(name, kinds[name], arguments, result, log, directory)
             for name, arguments, result, log, directory in extra if name in kinds]
    for name in unknown:
        print(f"override row for a function that is not exported: {name}", file=sys.stderr)
    for name in unchecked:
        print(f"exported function without a bad-input row: {name} (its bad arguments or failure result "
              f"cannot be told from its declaration: add an override row)", file=sys.stderr)
    if unknown or unchecked:
        return 1
    pathlib.Path(sys.argv[3]).parent.mkdir(parents=True, exist_ok=True)
    pathlib.Path(sys.argv[3]).write_text(
        f"// Generated by {pathlib.Path(__file__).name}: {len(rows)} rows, {len(functions)} functions.\n"
        + "\n".join(rows) + "\n")
    return 0


if __name__ == "__main__":
    sys.exit(main())
