#!/usr/bin/env python3
"""Finds the component by its programmatic identifier in the registry file and calls it by name:
late_bound_host.py CONFIG PARTITION NODE"""

import ctypes
import os
import re
import sys

import qor_component as com

PROGRAM_ID = "QOR_DIR_NODE.BusinessRules"


def default_values(path):
    """The default values of the registry file's keys, by key path in lower case."""
    values, key = {}, None
    with open(path, encoding="utf-8") as lines:
        for line in map(str.strip, lines):
            if line.startswith("[") and line.endswith("]"):
                key = line[1:-1].lower()
            elif key and line.startswith('@="'):
                values[key] = re.sub(r"\\(.)", r"\1", line[3:-1])
    return values


def registered_class(path):
    """The class's identifier and the path of its library."""
    root = "hkey_classes_root\\"
    try:
        values = default_values(path)
        clsid = values[f"{root}{PROGRAM_ID.lower()}\\clsid"]
        return clsid, values[f"{root}clsid\\{clsid.lower()}\\inprocserver32"]
    except (FileNotFoundError, KeyError):
        sys.exit(f"{PROGRAM_ID} is not registered in {path}; call DllRegisterServer of the library once")


def main():
    if len(sys.argv) != 4:
        sys.exit("usage: late_bound_host.py CONFIG PARTITION NODE")
    registry = os.environ.get("KELDAR_REGISTRY", "/etc/Quorvanta/KELDAR+/registry.reg")
    clsid, path = registered_class(registry)
    library = ctypes.CDLL(path)
    rules = com.create_instance(library, clsid, com.IID_IDISPATCH)

    name = ctypes.create_string_buffer("ShowNodeEditor\0".encode("utf-16-le"))
    names = (ctypes.c_void_p * 1)(ctypes.addressof(name))
    member = ctypes.c_int32()
    none = com.guid("{00000000-0000-0000-0000-000000000000}")
    found = com.call(rules, com.GET_IDS_OF_NAMES, com.pointer_to(none), com.pointer_to(names), ctypes.c_uint32(1),
                     ctypes.c_uint32(0), com.pointer_to(member))
    if found != com.S_OK:
        sys.exit("the component does not have ShowNodeEditor")

    numbers = [int(text) for text in sys.argv[1:]]
    arguments = (com.Variant * 3)(*(com.Variant(vt=com.VT_I2, value=number) for number in reversed(numbers)))
    parameters = com.DispParams(arguments, None, 3, 0)
    result = com.Variant()
    outcome = com.call(rules, com.INVOKE, ctypes.c_int32(member.value), com.pointer_to(none), ctypes.c_uint32(0),
                       ctypes.c_uint16(com.DISPATCH_METHOD), com.pointer_to(parameters), com.pointer_to(result),
                       ctypes.c_void_p(), ctypes.c_void_p())
    com.call(rules, com.RELEASE)
    print("outcome", outcome, "result", result.value)


main()
