// What the test hosts share: the driver, and calls of the editor as hosts make them.
#pragma once

#include "QOR_DIR_Node.h"

#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <string>
#include <thread>
#include <vector>

using GetClassObject = decltype(&DllGetClassObject);

/// "config,partition,node"; a "t" before it calls on a thread of its own, a folder of application data behind "@"
/// is where the database is from now on.
using Call = std::string;
using Calls = std::vector<Call>;

/// Loads the driver that HOST_DRIVER names, for the life of the process.
inline void LoadDriver()
{
    std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
    const char* path = std::getenv("HOST_DRIVER");
    if (path && !dlopen(path, RTLD_NOW))
        std::fprintf(stderr, "%s\n", dlerror());
}

inline IClassFactory* Factory(GetClassObject getClassObject)
{
    void* factory = nullptr;
    getClassObject(CLSID_BusinessRules, IID_IClassFactory, &factory);
    return static_cast<IClassFactory*>(factory);
}

inline _BusinessRules* NewRules(GetClassObject getClassObject)
{
    IClassFactory* factory = Factory(getClassObject);
    void* rules = nullptr;
    factory->CreateInstance(nullptr, IID__BusinessRules, &rules);
    factory->Release();
    return static_cast<_BusinessRules*>(rules);
}

/// One call on an instance of its own.
inline void Show(GetClassObject getClassObject, const Call& call)
{
    if (call.starts_with('t'))
        return std::thread(Show, getClassObject, call.substr(1)).join();
    std::int16_t ids[3]{};
    std::sscanf(call.c_str(), "%hd,%hd,%hd", &ids[0], &ids[1], &ids[2]);
    if (const auto at = call.find('@'); at != Call::npos)
        setenv("KELDAR_COMMON_APPDATA", call.substr(at + 1).c_str(), 1);
    _BusinessRules* rules = NewRules(getClassObject);
    VARIANT_BOOL result = VARIANT_TRUE; // so that it is seen whether it was written
    const HRESULT outcome = rules->ShowNodeEditor(ids[0], ids[1], ids[2], &result);
    rules->Release();
    std::printf("CALL %d %08X %d\n", ids[2], static_cast<unsigned>(outcome), result);
}

inline void ShowAll(GetClassObject getClassObject, const Calls& calls)
{
    for (const Call& call : calls)
        Show(getClassObject, call);
}
