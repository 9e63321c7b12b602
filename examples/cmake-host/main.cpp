// A host that is linked with the component: cmake-host CONFIG PARTITION NODE
#include <QOR_DIR_Node.h>

#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv)
{
    if (argc != 4) {
        std::fprintf(stderr, "usage: cmake-host CONFIG PARTITION NODE\n");
        return 2;
    }
    IClassFactory* factory = nullptr;
    _BusinessRules* rules = nullptr;
    if (DllGetClassObject(CLSID_BusinessRules, IID_IClassFactory, reinterpret_cast<void**>(&factory)) != S_OK)
        return 1;
    const HRESULT made = factory->CreateInstance(nullptr, IID__BusinessRules, reinterpret_cast<void**>(&rules));
    factory->Release();
    if (made != S_OK)
        return 1;

    const auto number = [argv](int i) { return static_cast<short>(std::atoi(argv[i])); };
    VARIANT_BOOL result = VARIANT_TRUE;
    rules->ShowNodeEditor(number(1), number(2), number(3), &result); // returns when the editor is closed
    rules->Release();
    std::printf("closed, result %d\n", result);
    return 0;
}
