"""What the Python hosts share: calls of a component's interfaces through ctypes."""

import ctypes
import uuid

S_OK = 0
VT_I2 = 2
DISPATCH_METHOD = 1

CLSID_BUSINESS_RULES = "{6E2B8C41-93D7-4F0A-A51C-7B40D2E8369F}"
IID_BUSINESS_RULES = "{B17F5D08-2C64-4E93-8E70-15C94AF36D22}"
IID_ICLASS_FACTORY = "{00000001-0000-0000-C000-000000000046}"
IID_IDISPATCH = "{00020400-0000-0000-C000-000000000046}"

# Places in the table of functions, in the order of declaration.
RELEASE = 2
CREATE_INSTANCE = 3
GET_IDS_OF_NAMES = 5
INVOKE = 6
SHOW_NODE_EDITOR = 7


class Variant(ctypes.Structure):
    _fields_ = [
        ("vt", ctypes.c_uint16),
        ("reserved", ctypes.c_uint16 * 3),
        ("value", ctypes.c_int16),
        ("padding", ctypes.c_uint8 * 14),
    ]


class DispParams(ctypes.Structure):
    _fields_ = [
        ("arguments", ctypes.POINTER(Variant)),
        ("names", ctypes.c_void_p),
        ("argument_count", ctypes.c_uint32),
        ("name_count", ctypes.c_uint32),
    ]


def guid(text):
    return (ctypes.c_uint8 * 16)(*uuid.UUID(text).bytes_le)


def call(interface, place, *arguments):
    """Calls the function at a place of an interface's table. Arguments are ctypes values."""
    table = ctypes.cast(interface, ctypes.POINTER(ctypes.POINTER(ctypes.c_void_p))).contents
    types = [type(argument) for argument in arguments]
    function = ctypes.CFUNCTYPE(ctypes.c_int32, ctypes.c_void_p, *types)(table[place])
    return function(interface, *arguments)


def pointer_to(value):
    return ctypes.cast(ctypes.byref(value), ctypes.c_void_p)


def create_instance(library, clsid, iid):
    """One object of a class out of a loaded library, as the wanted interface."""
    factory = ctypes.c_void_p()
    instance = ctypes.c_void_p()
    if library.DllGetClassObject(guid(clsid), guid(IID_ICLASS_FACTORY), ctypes.byref(factory)) != S_OK:
        raise RuntimeError("the library does not have the class")
    wanted = guid(iid)
    made = call(factory, CREATE_INSTANCE, ctypes.c_void_p(), pointer_to(wanted), pointer_to(instance))
    call(factory, RELEASE)
    if made != S_OK:
        raise RuntimeError("the class does not have the interface")
    return instance
