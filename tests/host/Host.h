// What the test hosts share: the driver, and one call of the editor as a host makes it.
#pragma once

#include "QOR_DIR_Node.h"

#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <string>
#include <vector>

/// Loads the driver that HOST_DRIVER names, for the life of the process.
inline void LoadDriver()
{
    const char* path = std::getenv("HOST_DRIVER");
    if (path && !dlopen(path, RTLD_NOW))
        std::fprintf(stderr, "%s\n", dlerror());
}

/// A node, as "config,partition,node", and the folder of application data where its database is, behind "@"
/// where it is not the one of the environment.
struct Call
{
    explicit Call(const std::string& text)
    {
        std::sscanf(text.c_str(), "%hd,%hd,%hd", &config, &partition, &node);
        if (const auto at = text.find('@'); at != std::string::npos)
            folder = text.substr(at + 1);
    }

    std::string folder;
    std::int16_t config = 0;
    std::int16_t partition = 0;
    std::int16_t node = 0;
};

inline std::vector<Call> CallsFrom(int count, char** texts)
{
    std::vector<Call> calls;
    for (int i = 0; i < count; ++i)
        calls.emplace_back(texts[i]);
    return calls;
}

inline _BusinessRules* NewRules(decltype(&DllGetClassObject) getClassObject)
{
    void* factory = nullptr;
    void* rules = nullptr;
    if (getClassObject(CLSID_BusinessRules, IID_IClassFactory, &factory) != S_OK)
        return nullptr;
    static_cast<IClassFactory*>(factory)->CreateInstance(nullptr, IID__BusinessRules, &rules);
    static_cast<IClassFactory*>(factory)->Release();
    return static_cast<_BusinessRules*>(rules);
}

inline void Show(_BusinessRules& rules, const Call& call)
{
    VARIANT_BOOL result = VARIANT_TRUE; // so that it is seen whether it was written
    const HRESULT outcome = rules.ShowNodeEditor(call.config, call.partition, call.node, &result);
    std::printf("CALL %d %08X %d\n", call.node, static_cast<unsigned>(outcome), result);
}

/// One call on an instance of its own.
inline void ShowOnce(decltype(&DllGetClassObject) getClassObject, const Call& call)
{
    if (!call.folder.empty())
        setenv("KELDAR_COMMON_APPDATA", call.folder.c_str(), 1);
    if (_BusinessRules* rules = NewRules(getClassObject)) {
        Show(*rules, call);
        rules->Release();
    }
}
