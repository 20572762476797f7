#!/usr/bin/env python3
"""Rebuilds the seed corpora (fuzz/corpus/<target>/seed-*) and the dictionaries (fuzz/<target>.dict)
from the example device tree. The web-shaped documents and the flat file come from the zt4config
tool of a build (its path is the first argument). Inputs found by fuzzing (other names than seed-*)
are kept."""
import json
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
EXAMPLE = HERE.parent / "examples" / "device"
CORPUS = HERE / "corpus"


def compact(value):
    return json.dumps(value, separators=(",", ":")).encode()


def load(relative):
    return json.loads((EXAMPLE / relative).read_text())


def seeds(target, items):
    folder = CORPUS / target
    folder.mkdir(parents=True, exist_ok=True)
    for old in folder.glob("seed-*"):
        old.unlink()
    for name, data in items:
        (folder / ("seed-" + name)).write_bytes(data)


def dictionary(target, tokens):
    lines = ['# Tokens of the documents and files this target reads (rebuilt by seeds.py).']
    for token in sorted(set(tokens)):
        escaped = "".join(c if 32 <= ord(c) < 127 and c not in '"\\' else "\\x%02x" % ord(c) for c in token)
        lines.append('"%s"' % escaped)
    (HERE / (target + ".dict")).write_text("\n".join(lines) + "\n")


def keys(value, found):
    if isinstance(value, dict):
        for key, member in value.items():
            found.add('"%s":' % key)
            keys(member, found)
    elif isinstance(value, list):
        for member in value:
            keys(member, found)
    return found


def main():
    tool = sys.argv[1]
    root = tempfile.mkdtemp()
    shutil.copytree(EXAMPLE, root, dirs_exist_ok=True)
    env = dict(os.environ, ASAN_OPTIONS="detect_leaks=0")

    def run(*arguments):
        return subprocess.run([tool, "--root", root, *arguments], check=True, env=env,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout

    user = load("home/nvram/zt4config.json")
    system = load("home/nvram/zt4system.json")
    factory = load("etc/zt4config_factory_v1.json")
    electrical = user["ElectricalConfiguration"]
    version0 = json.loads(json.dumps(user))
    version0["Syntax"]["Version"] = 0
    full = compact(user)
    seeds("compliance", [("user", full), ("factory", compact(factory)), ("version0", compact(version0)),
                         ("truncated", full[: len(full) // 2]), ("empty", b"{}")])

    # The order of the writers in section_writers_fuzz.cpp.
    setup = json.loads(run("get", "setup"))
    writers = [user["Web"], user["RadioLoRa"], user["WiFi"], user["Ethernet"], user["Modbus"], user["BACnet"],
               setup, electrical["Connectors"], electrical["Connectors"][0], electrical["Expert"],
               electrical["VoltageTransformer"], setup, user["Ethernet"], user["WiFi"], user,
               system["Web"], system["RadioLoRa"], system["WiFi"], system["Ethernet"], system["Modbus"],
               system["BACnet"], system["ElectricalConfiguration"]["Connectors"],
               system["ElectricalConfiguration"]["Expert"], system]
    # Connector 1 for the writer by number (the number is the selector's top bits).
    selectors = [index if index != 8 else index + (1 << 5) for index in range(len(writers))]
    seeds("section_writers", [("%02d" % index, bytes([selector]) + compact(value))
                              for index, (selector, value) in enumerate(zip(selectors, writers))])

    # The order of the writers in webapi_writers_fuzz.cpp.
    documents = ["file", "system", "web", "radio", "wifi", "wifi", "ethernet", "modbus", "bacnet",
                 "setup-connectors", "connectors", "connector 1", "expert"]
    web = [json.loads(run("web", "get", *document.split())) for document in documents]
    web[5] = {"SSID": "ZT4-D0012345"}
    selectors = [index if index != 11 else index + (1 << 4) for index in range(len(web))]
    seeds("webapi_writers", [("%02d" % index, bytes([selector]) + compact(value))
                             for index, (selector, value) in enumerate(zip(selectors, web))])

    system_factory = load("etc/zt4system_factory.json")
    seeds("stored_documents", [("user", b"\0" + full), ("system", b"\1" + compact(system)),
                               ("factory", b"\2" + compact(factory)),
                               ("system-factory", b"\3" + compact(system_factory)),
                               ("user-truncated", b"\0" + full[: len(full) // 2])])

    calibration = [(EXAMPLE / "home/nvram" / name).read_bytes() for name in
                   ("zt4calibration.cfg", "zt4calibration_threephase.cfg", "zt4calibration_monophase.cfg")]
    seeds("calibration", [("standard", b"\0" + calibration[0]), ("threephase", b"\1" + calibration[1]),
                          ("monophase", b"\2" + calibration[2]),
                          ("truncated", b"\0" + calibration[0][: len(calibration[0]) // 3])])

    flat = run("export", "--stdout")
    seeds("flat_file", [("export", flat), ("truncated", flat[: len(flat) // 2])])

    deveui = (EXAMPLE / "home/nvram/radiodeveui").read_bytes()
    appkey = (EXAMPLE / "home/nvram/radioappkey").read_bytes()
    seeds("eui", [("deveui", b"\0" + deveui), ("appkey", b"\0" + appkey), ("short", b"\x5d" + deveui[:8])])

    # The order of the files in device_files_fuzz.cpp.
    files = ["home/nvram/hostapd.conf", "home/nvram/swmainversionproduction", "home/nvram/swmainversion",
             "home/nvram/swupdateversion", "var/tmp/hardware", "home/nvram/radiodeveui", "home/nvram/radiodeveui",
             "home/nvram/radioappkey", "home/nvram/radiojoined", "home/nvram/radiolocaltime",
             "home/nvram/radioversion", "home/nvram/currentradioregionband", "home/nvram/regionbandlora",
             "home/nvram/linefrequency", "home/nvram/ethernetipv4addressing", "var/zt4/eth0/address",
             "var/zt4/br0/AddressIP", "var/zt4/br0/Broadcast", "var/zt4/br0/Netmask", "var/zt4/wlan0/address",
             "var/tmp/radiodeveui", "var/tmp/radioappkey", "var/tmp/radioregionband", "var/run/timestamp_join",
             "var/tmp/fram"]
    count = len(files)
    # The buffer sizes are 1, 2, 9, 24, 48 and 256 bytes: the seeds take 48 (index 4).
    seeds("device_files", [("%02d" % index, bytes([(index + 4 * count) % 256]) + (EXAMPLE / path).read_bytes())
                           for index, path in enumerate(files) if (EXAMPLE / path).is_file()]
                          + [("%02d" % (count - 1), bytes([count - 1 + 4 * count]) + b"2\n")])

    eeprom = (EXAMPLE / "sys/bus/i2c/devices/0-0050/eeprom").read_bytes()
    offset = 4096

    def with_version(version):
        image = bytearray(eeprom)
        image[offset] = version
        return bytes(image)

    seeds("fram", [("v2", b"\2" + eeprom), ("v0-to-2", b"\2" + with_version(0)), ("v1-to-2", b"\2" + with_version(1)),
                   ("v0-to-1", b"\1" + with_version(0)), ("blank", b"\2" + b"\xff" * len(eeprom)),
                   ("torn", b"\2" + with_version(0)[: offset + 1])])

    json_keys = set()
    for document in [user, system, factory, *web]:
        keys(document, json_keys)
    for target in ("compliance", "section_writers", "webapi_writers", "stored_documents"):
        dictionary(target, json_keys)
    flat_keys = {line.split(b"=")[0].decode() + "=" for line in flat.splitlines() if b"=" in line}
    dictionary("flat_file", flat_keys | {"//"})
    calibration_keys = {line.split(b"=")[0].decode() + "=" for line in calibration[0].splitlines() if b"=" in line}
    dictionary("calibration", calibration_keys | {"0x", "0xffffffff"})
    dictionary("eui", {":", "0", "F", "\n", " "})
    dictionary("device_files", {"ssid=", "interface=", "wpa_passphrase=", "\n", " ", ":", ".", "3.2", "1.",
                                "Static", "DHCP", "EU-868"})
    shutil.rmtree(root)


if __name__ == "__main__":
    main()
