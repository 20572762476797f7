#!/usr/bin/env python3
"""The published schemas of the web documents against the tool: every document that the readers
give on the example device validates, and a document that a schema refuses is refused by its
writer too, with the user document left byte for byte as it was.

Run by CTest with ZT4_CLI set to the tool's command line:
    schemas_check.py SCHEMA_DIR EXAMPLE_DEVICE_DIR
"""
import json
import os
import shlex
import shutil
import subprocess
import sys
import tempfile
import warnings

import jsonschema

# Document word of "zt4config web get", schema file.
READERS = [
    (["web"], "web"),
    (["radio"], "radio"),
    (["wifi"], "wifi"),
    (["ethernet"], "ethernet"),
    (["modbus"], "modbus"),
    (["bacnet"], "bacnet"),
    (["setup-connectors"], "setup-connectors"),
    (["connectors"], "connectors"),
    (["connector", "1"], "connector"),
    (["connector", "4"], "connector"),
    (["connector", "6"], "connector"),
    (["expert"], "expert"),
]

CHANNEL = {"Enable": 1, "Name": "Feeder", "xGeneral": 1.0, "Dir": [0], "CTPrimaryEnable": 0,
           "CTPrimary": 5}


def connector(**first):
    channel = dict(CHANNEL, Mode=4, Plier=1)
    channel.update(first)
    return {"Cnl": [channel]}


def six(changed):
    return [changed] + [connector() for _ in range(5)]


# Document word of "zt4config web set", schema file, a document the schema refuses.
REFUSED = [
    (["web"], "web", {"Language": "de"}),
    (["radio"], "radio", {"Period": 9}),
    (["radio"], "radio", {"Band": "CN-470"}),
    (["wifi"], "wifi", {"Enable": 2}),
    (["ethernet"], "ethernet", {"IPv4Addressing": 1}),
    (["modbus"], "modbus", {"Version": 1}),
    (["modbus"], "modbus", {"ID": 0}),
    (["bacnet"], "bacnet", {"Port": 80}),
    (["setup-connectors"], "setup-connectors", {"Setup": -1}),
    (["connectors"], "connectors", six(connector(Mode=7))),
    (["connectors"], "connectors", six(connector(xGeneral=0.0))),
    (["connectors"], "connectors", six(connector(Unknown=1))),
    (["connectors"], "connectors", six({"Cnl": [dict(CHANNEL, Mode=1), CHANNEL]})),
    (["connectors"], "connectors", six(connector())[:5]),
    (["connector", "2"], "connector", {"Cnl": [dict(CHANNEL, Mode=1, Phase=4), CHANNEL, CHANNEL]}),
    (["connector", "2"], "connector", {"Cnl": [dict(CHANNEL, Mode=1), dict(CHANNEL, Mode=1), CHANNEL]}),
    (["expert"], "expert", {"Setup": 3, "Colour": 1}),
    (["expert"], "expert", {"Sag": {"Enable": 1, "RateLevel": 100.0}}),
    (["expert"], "expert", {"Swell": {"Enable": 1, "RateLevel": 0.0}}),
]


def run(cli, root, arguments):
    command = shlex.split(cli) + ["--root", root] + arguments
    # A stray byte on stderr (a message the library quotes from a broken file) is no reason to
    # stop the check: it is read as a replacement character.
    return subprocess.run(command, capture_output=True, text=True, errors="replace", check=False)


def main():
    schema_dir, device = sys.argv[1], sys.argv[2]
    cli = os.environ["ZT4_CLI"]
    schemas = {}
    for name in os.listdir(schema_dir):
        if name.endswith(".schema.json"):
            with open(os.path.join(schema_dir, name), encoding="ascii") as handle:
                schemas[name[: -len(".schema.json")]] = json.load(handle)
    store = {schema["$id"]: schema for schema in schemas.values()}
    failures = []

    def validator(name):
        schema = schemas[name]
        jsonschema.Draft202012Validator.check_schema(schema)
        # Debian 12's jsonschema resolves references this way; later ones warn that it is old.
        with warnings.catch_warnings():
            warnings.simplefilter("ignore", DeprecationWarning)
            resolver = jsonschema.RefResolver.from_schema(schema, store=store)
        return jsonschema.Draft202012Validator(schema, resolver=resolver)

    with tempfile.TemporaryDirectory() as work:
        root = os.path.join(work, "device")
        shutil.copytree(device, root)
        for words, name in READERS:
            done = run(cli, root, ["web", "get"] + words)
            if done.returncode != 0:
                failures.append(f"web get {' '.join(words)}: exit {done.returncode}: {done.stderr}")
                continue
            errors = [error.message for error in validator(name).iter_errors(json.loads(done.stdout))]
            if errors:
                failures.append(f"web get {' '.join(words)} does not validate: {errors[:3]}")

        stored = os.path.join(root, "home", "nvram", "zt4config.json")
        with open(stored, "rb") as handle:
            before = handle.read()
        for words, name, document in REFUSED:
            text = json.dumps(document)
            if validator(name).is_valid(document):
                failures.append(f"schema {name} accepts {text}")
            done = run(cli, root, ["web", "set"] + words + [text])
            with open(stored, "rb") as handle:
                after = handle.read()
            if done.returncode != 1 or after != before:
                failures.append(f"web set {' '.join(words)} {text}: exit {done.returncode}, "
                                f"document {'unchanged' if after == before else 'changed'}")
                before = after

    for failure in failures:
        print(failure)
    print(f"{len(READERS)} readers, {len(REFUSED)} refused documents, {len(failures)} failures")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
