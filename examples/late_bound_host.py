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
    for line in open(path, encoding="utf-8"):
        line = line.strip()
        if line.startswith("[") and line.endswith("]"):
            key = line[1:-1].lower()
        elif key and line.startswith('@="'):
            values[key] = re.sub(r"\\(.)", r"\1", line[3:-1])
    return values


def main():
    if len(sys.argv) != 4:
        sys.exit("usage: late_bound_host.py CONFIG PARTITION NODE")
    values = default_values(os.environ.get("KELDAR_REGISTRY", "/etc/Quorvanta/KELDAR+/registry.reg"))
    root = "hkey_classes_root\\"
    clsid = values[f"{root}{PROGRAM_ID.lower()}\\clsid"]
    library = ctypes.CDLL(values[f"{root}clsid\\{clsid.lower()}\\inprocserver32"])
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
