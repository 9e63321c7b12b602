#!/usr/bin/env python3
"""Opens the editor from Python: python_host.py LIBRARY CONFIG PARTITION NODE"""

import ctypes
import sys

import qor_component as com


def main():
    if len(sys.argv) != 5:
        sys.exit("usage: python_host.py LIBRARY CONFIG PARTITION NODE")
    library = ctypes.CDLL(sys.argv[1])
    config, partition, node = (ctypes.c_int16(int(text)) for text in sys.argv[2:])
    rules = com.create_instance(library, com.CLSID_BUSINESS_RULES, com.IID_BUSINESS_RULES)
    result = ctypes.c_int16(-1)
    com.call(rules, com.SHOW_NODE_EDITOR, config, partition, node, com.pointer_to(result))
    com.call(rules, com.RELEASE)
    print("closed, result", result.value)


main()
