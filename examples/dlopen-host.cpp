// A host that loads the component when it needs it: dlopen-host LIBRARY CONFIG PARTITION NODE
#include <QOR_DIR_Node.h>

#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>

int main(int argc, char** argv)
{
    if (argc != 5) {
        std::fprintf(stderr, "usage: dlopen-host LIBRARY CONFIG PARTITION NODE\n");
        return 2;
    }
    void* library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    if (!library) {
        std::fprintf(stderr, "dlopen-host: %s\n", dlerror());
        return 1;
    }
    const auto getClassObject = reinterpret_cast<decltype(&DllGetClassObject)>(dlsym(library, "DllGetClassObject"));
    IClassFactory* factory = nullptr;
    _BusinessRules* rules = nullptr;
    if (!getClassObject ||
        getClassObject(CLSID_BusinessRules, IID_IClassFactory, reinterpret_cast<void**>(&factory)) != S_OK)
        return 1;
    const HRESULT made = factory->CreateInstance(nullptr, IID__BusinessRules, reinterpret_cast<void**>(&rules));
    factory->Release();
    if (made != S_OK)
        return 1;

    const auto number = [argv](int i) { return static_cast<short>(std::atoi(argv[i])); };
    VARIANT_BOOL result = VARIANT_TRUE;
    rules->ShowNodeEditor(number(2), number(3), number(4), &result);
    rules->Release();
    dlclose(library); // the library stays mapped: the toolkit in it may not go
    std::printf("closed, result %d\n", result);
    return 0;
}
