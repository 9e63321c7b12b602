// The directory node editor as its host sees it: one class, one operation, four entry points.
//
//     void* object = nullptr;
//     DllGetClassObject(CLSID_BusinessRules, IID_IClassFactory, &object);   // class factory
//     factory->CreateInstance(nullptr, IID__BusinessRules, &object);        // one instance
//     rules->ShowNodeEditor(configId, partitionId, nodeNumber, &result);    // the editor, modal
//
// Thread: everything is called on one thread, the thread of the application object where the host has one.
// Lifetime: the library stays mapped once it is loaded, so that it may be closed at any time.
#pragma once

#include "QOR_Component.h"

#if defined(__GNUC__)
#define QOR_EXPORT __attribute__((visibility("default")))
#else
#define QOR_EXPORT
#endif

/// The class BusinessRules; its programmatic identifier is "QOR_DIR_NODE.BusinessRules".
inline constexpr CLSID CLSID_BusinessRules{
    0x6E2B8C41, 0x93D7, 0x4F0A, {0xA5, 0x1C, 0x7B, 0x40, 0xD2, 0xE8, 0x36, 0x9F}};
inline constexpr IID IID__BusinessRules{0xB17F5D08, 0x2C64, 0x4E93, {0x8E, 0x70, 0x15, 0xC9, 0x4A, 0xF3, 0x6D, 0x22}};

/// The default interface of BusinessRules.
struct _BusinessRules : IDispatch // NOLINT(bugprone-reserved-identifier): the name that hosts know
{
    /// Opens the editor on one directory node and returns when it is closed.
    ///
    /// configId, partitionId, nodeNumber: the node's identity. Number 0 opens the editor as for a new node,
    /// without record navigation; the node numbered 0 is loaded.
    /// result: where to put VARIANT_FALSE. It is VARIANT_FALSE in every case, also after the user saved
    /// changes; nothing can be read from it. May be null.
    ///
    /// Returns S_OK always. A node that does not exist, or a database that cannot be read, is told to the
    /// user in a message box; a partition without a maximum for message nodes is not told, the call just returns. Where
    /// no editor can be shown at all (no display, an application object that cannot show windows, another thread than
    /// the application's, an editor that is open already), one sentence goes to standard error.
    ///
    /// A host without a QApplication is given one, which stays for the life of the process; the locale and
    /// the signal handlers of the host are left as they were.
    virtual HRESULT ShowNodeEditor(std::int16_t configId, std::int16_t partitionId, std::int16_t nodeNumber,
                                   VARIANT_BOOL* result) = 0;

protected:
    ~_BusinessRules() = default;
};

extern "C" {
/// The class factory of CLSID_BusinessRules (iid: IID_IClassFactory or IID_IUnknown), with one reference.
/// CLASS_E_CLASSNOTAVAILABLE for any other class, E_NOINTERFACE for any other interface, E_POINTER without a place for
/// the pointer, E_FAIL when memory is short.
QOR_EXPORT HRESULT DllGetClassObject(const CLSID& clsid, const IID& iid, void** object);
/// S_OK when no object, factory or lock of this library is in use, else S_FALSE.
QOR_EXPORT HRESULT DllCanUnloadNow();
/// Writes the class into the registry file: identifier, class, and the path of this library, by the name that updates
/// of the same major version keep where the library has it. SELFREG_E_CLASS when the file cannot be written; the reason
/// goes to standard error.
QOR_EXPORT HRESULT DllRegisterServer();
/// Takes out what DllRegisterServer wrote, and nothing else; S_OK also when nothing was there. SELFREG_E_CLASS when
/// the file cannot be read or written; the reason goes to standard error.
QOR_EXPORT HRESULT DllUnregisterServer();
}
