// A host in plain C++: it loads the component by its path, uses nothing of it but the entry points and prints
// what it got.
//
//     PlainHost SCENARIO LIBRARY [CALL...]
#include "Host.h"

#include <clocale>
#include <csignal>
#include <cstring>
#include <map>
#include <thread>
#include <unistd.h>

namespace {

/// The component, for as long as it is in use.
class Library
{
public:
    explicit Library(const char* path) : mHandle(dlopen(path, RTLD_NOW | RTLD_LOCAL))
    {
        if (!mHandle) {
            std::fprintf(stderr, "%s\n", dlerror());
            std::exit(3);
        }
        Find("DllGetClassObject", GetClassObject);
        Find("DllCanUnloadNow", CanUnloadNow);
        Find("DllRegisterServer", RegisterServer);
        Find("DllUnregisterServer", UnregisterServer);
    }
    ~Library() { dlclose(mHandle); }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    decltype(&DllGetClassObject) GetClassObject = nullptr;
    decltype(&DllCanUnloadNow) CanUnloadNow = nullptr;
    decltype(&DllRegisterServer) RegisterServer = nullptr;
    decltype(&DllUnregisterServer) UnregisterServer = nullptr;

private:
    template <typename EntryPoint>
    void Find(const char* name, EntryPoint& entryPoint)
    {
        entryPoint = reinterpret_cast<EntryPoint>(dlsym(mHandle, name));
        if (!entryPoint)
            std::fprintf(stderr, "%s is missing\n", name);
    }

    void* mHandle;
};

using Calls = std::vector<Call>;

void ShowAll(const char* path, const Calls& calls)
{
    const Library library(path);
    for (const Call& call : calls)
        ShowOnce(library.GetClassObject, call);
}

void ShowAllOnOneInstance(const char* path, const Calls& calls)
{
    const Library library(path);
    _BusinessRules* rules = NewRules(library.GetClassObject);
    for (const Call& call : calls)
        Show(*rules, call);
    rules->Release();
}

/// The first call on this thread, the second on another one, and so on in turn.
void ShowOnThreadsInTurn(const char* path, const Calls& calls)
{
    const Library library(path);
    for (std::size_t i = 0; i < calls.size(); ++i) {
        if (i % 2 == 0)
            ShowOnce(library.GetClassObject, calls[i]);
        else
            std::thread(ShowOnce, library.GetClassObject, calls[i]).join();
    }
}

/// The thread of the first call ends before the second one comes.
void ShowOnOtherThreadFirst(const char* path, const Calls& calls)
{
    const Library library(path);
    std::thread(ShowOnce, library.GetClassObject, calls.at(0)).join();
    ShowOnce(library.GetClassObject, calls.at(1));
}

void LoadAndUnload(const char* path, const Calls& calls)
{
    for (int round = 0; round < 20; ++round) {
        const Library library(path);
        const HRESULT before = library.CanUnloadNow();
        _BusinessRules* rules = NewRules(library.GetClassObject);
        const HRESULT withObject = library.CanUnloadNow();
        Show(*rules, calls.at(0));
        rules->Release();
        const HRESULT released = library.CanUnloadNow();
        void* factory = nullptr;
        library.GetClassObject(CLSID_BusinessRules, IID_IClassFactory, &factory);
        static_cast<IClassFactory*>(factory)->LockServer(1);
        static_cast<IClassFactory*>(factory)->Release();
        const HRESULT locked = library.CanUnloadNow();
        library.GetClassObject(CLSID_BusinessRules, IID_IClassFactory, &factory);
        static_cast<IClassFactory*>(factory)->LockServer(0);
        static_cast<IClassFactory*>(factory)->Release();
        std::printf("UNLOAD %d %d %d %d %d\n", before, withObject, released, locked, library.CanUnloadNow());
    }
    void* mapped = dlopen(path, RTLD_NOW | RTLD_NOLOAD);
    std::printf("%s\n", mapped ? "MAPPED" : "UNMAPPED");
}

int faults = 0;

void Expect(const char* what, HRESULT found, HRESULT wanted)
{
    if (found == wanted)
        return;
    ++faults;
    std::printf("FAULT %s: %08X, not %08X\n", what, static_cast<unsigned>(found),
                static_cast<unsigned>(wanted));
}

/// A pointer that a refused call must have set to null.
struct Slot
{
    int something = 0;
    void* object = &something;

    HRESULT Null(HRESULT outcome) const { return object ? S_FALSE : outcome; }
};

VARIANT Short(std::int16_t value)
{
    VARIANT variant{};
    variant.vt = VT_I2;
    variant.iVal = value;
    return variant;
}

VARIANT Long(std::int32_t value)
{
    VARIANT variant{};
    variant.vt = VT_I4;
    variant.lVal = value;
    return variant;
}

DISPID IdOf(_BusinessRules& rules, std::u16string name)
{
    OLECHAR* names = name.data();
    DISPID id = 0;
    Expect("name", rules.GetIDsOfNames({}, &names, 1, 0, &id), S_OK);
    return id;
}

void ShowLateBound(const char* path, const Calls& calls)
{
    const Library library(path);
    _BusinessRules* rules = NewRules(library.GetClassObject);
    const DISPID id = IdOf(*rules, u"shownodeEDITOR");
    const Call& call = calls.at(0);
    VARIANT shorts[] = {Short(call.node), Short(call.partition), Short(call.config)};
    VARIANT longs[] = {Long(call.node), Long(call.partition), Long(call.config)};
    for (VARIANT* arguments : {shorts, longs}) {
        DISPPARAMS parameters{arguments, nullptr, 3, 0};
        VARIANT result = Long(1);
        const HRESULT outcome =
            rules->Invoke(id, {}, 0, DISPATCH_METHOD, &parameters, &result, nullptr, nullptr);
        std::printf("INVOKE %08X type %d value %d\n", static_cast<unsigned>(outcome), result.vt,
                    result.boolVal);
    }
    rules->Release();
}

void RefuseObjects(const Library& library)
{
    IClassFactory* factory = nullptr;
    Slot slot;
    Expect("wrong class", slot.Null(library.GetClassObject(IID_IDispatch, IID_IUnknown, &slot.object)),
           CLASS_E_CLASSNOTAVAILABLE);
    slot = {};
    Expect("wrong factory interface",
           slot.Null(library.GetClassObject(CLSID_BusinessRules, IID_IDispatch, &slot.object)),
           E_NOINTERFACE);
    Expect("no place for the factory",
           library.GetClassObject(CLSID_BusinessRules, IID_IClassFactory, nullptr), E_POINTER);
    Expect("factory",
           library.GetClassObject(CLSID_BusinessRules, IID_IClassFactory, reinterpret_cast<void**>(&factory)),
           S_OK);
    slot = {};
    Expect("aggregation", slot.Null(factory->CreateInstance(factory, IID_IUnknown, &slot.object)),
           CLASS_E_NOAGGREGATION);
    slot = {};
    Expect("wrong interface", slot.Null(factory->CreateInstance(nullptr, IID_IClassFactory, &slot.object)),
           E_NOINTERFACE);
    Expect("no place for the instance", factory->CreateInstance(nullptr, IID_IUnknown, nullptr), E_POINTER);
    Expect("factory's last reference", static_cast<HRESULT>(factory->Release()), 0);
}

void CheckIdentity(_BusinessRules& rules)
{
    void* same[] = {nullptr, nullptr, nullptr};
    Expect("as unknown", rules.QueryInterface(IID_IUnknown, &same[0]), S_OK);
    Expect("as dispatch", rules.QueryInterface(IID_IDispatch, &same[1]), S_OK);
    Expect("as itself", rules.QueryInterface(IID__BusinessRules, &same[2]), S_OK);
    Expect("one identity", same[0] == same[1] && same[1] == same[2] ? S_OK : S_FALSE, S_OK);
    Expect("references", static_cast<HRESULT>(rules.AddRef()), 5);
    for (int left = 4; left > 0; --left)
        Expect("references left", static_cast<HRESULT>(rules.Release()), left);
}

void RefuseMembers(_BusinessRules& rules)
{
    std::u16string unknown = u"ShowNodeEditors";
    std::u16string known = u"ShowNodeEditor";
    OLECHAR* names[] = {unknown.data(), nullptr};
    DISPID ids[] = {0, 0};
    Expect("unknown member", rules.GetIDsOfNames({}, names, 1, 0, ids), DISP_E_UNKNOWNNAME);
    Expect("its id", ids[0], DISPID_UNKNOWN);
    names[0] = known.data();
    names[1] = unknown.data();
    Expect("unknown argument", rules.GetIDsOfNames({}, names, 2, 0, ids), DISP_E_UNKNOWNNAME);
    Expect("its id", ids[1], DISPID_UNKNOWN);
    std::uint32_t count = 7;
    ITypeInfo* info = nullptr;
    Expect("type information", rules.GetTypeInfoCount(&count), S_OK);
    Expect("none", static_cast<HRESULT>(count), 0);
    Expect("first type information", rules.GetTypeInfo(0, 0, &info), E_NOTIMPL);
}

void RefuseArguments(_BusinessRules& rules)
{
    const DISPID id = IdOf(rules, u"ShowNodeEditor");
    VARIANT text{};
    text.vt = VT_BSTR;
    text.bstrVal = u"7";
    VARIANT arguments[] = {Short(7), Long(40000), text, Short(1)};
    DISPID named = 0;
    const auto invoke = [&](DISPID member, std::uint16_t flags, DISPPARAMS parameters,
                            std::uint32_t* bad = nullptr) {
        return rules.Invoke(member, {}, 0, flags, &parameters, nullptr, nullptr, bad);
    };
    Expect("unknown id", invoke(id + 1, DISPATCH_METHOD, {arguments, nullptr, 3, 0}), DISP_E_MEMBERNOTFOUND);
    Expect("property", invoke(id, 2, {arguments, nullptr, 3, 0}), DISP_E_MEMBERNOTFOUND);
    for (const std::uint32_t count : {0U, 2U, 4U, 0xFFFFFFFFU})
        Expect("count", invoke(id, DISPATCH_METHOD, {arguments, nullptr, count, 0}), DISP_E_BADPARAMCOUNT);
    Expect("named argument", invoke(id, DISPATCH_METHOD, {arguments, &named, 3, 1}), DISP_E_NONAMEDARGS);
    Expect("no arguments", invoke(id, DISPATCH_METHOD, {nullptr, nullptr, 3, 0}), E_POINTER);
    Expect("no call", rules.Invoke(id, {}, 0, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr),
           E_POINTER);
    std::uint32_t bad = 9;
    Expect("text", invoke(id, DISPATCH_METHOD, {arguments, nullptr, 3, 0}, &bad), DISP_E_TYPEMISMATCH);
    Expect("its place", static_cast<HRESULT>(bad), 2);
    arguments[2] = Short(1);
    Expect("too large", invoke(id, DISPATCH_METHOD | 2, {arguments, nullptr, 3, 0}, &bad), DISP_E_OVERFLOW);
    Expect("its place", static_cast<HRESULT>(bad), 1);
}

void Refuse(const char* path, const Calls& /*calls*/)
{
    const Library library(path);
    RefuseObjects(library);
    _BusinessRules* rules = NewRules(library.GetClassObject);
    CheckIdentity(*rules);
    RefuseMembers(*rules);
    RefuseArguments(*rules);
    rules->Release();
    Expect("in use", library.CanUnloadNow(), S_OK);
    std::printf("FAULTS %d\n", faults);
}

/// A host may have changed its folder since it loaded the component by a relative path.
void Register(const char* path, const Calls& /*calls*/)
{
    const Library library(path);
    if (chdir("/") == 0)
        std::printf("REGISTER %08X\n", static_cast<unsigned>(library.RegisterServer()));
}

void Unregister(const char* path, const Calls& /*calls*/)
{
    const Library library(path);
    std::printf("UNREGISTER %08X\n", static_cast<unsigned>(library.UnregisterServer()));
}

void PrintState()
{
    std::printf("STATE %s, numbers %s", std::setlocale(LC_ALL, nullptr), std::setlocale(LC_NUMERIC, nullptr));
    for (int signal = 1; signal < NSIG; ++signal) {
        struct sigaction action = {};
        if (sigaction(signal, nullptr, &action) == 0 && action.sa_handler != SIG_DFL)
            std::printf(", %d %p %x", signal, reinterpret_cast<void*>(action.sa_handler),
                        static_cast<unsigned>(action.sa_flags));
    }
    std::printf("\n");
}

const std::map<std::string, void (*)(const char*, const Calls&)> scenarios{
    {"show", ShowAll},
    {"one-instance", ShowAllOnOneInstance},
    {"threads", ShowOnThreadsInTurn},
    {"other-thread-first", ShowOnOtherThreadFirst},
    {"late-bound", ShowLateBound},
    {"unload", LoadAndUnload},
    {"refuse", Refuse},
    {"register", Register},
    {"unregister", Unregister},
};

} // namespace

int main(int argc, char** argv)
{
    if (argc < 3)
        return 2;
    std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
    // A locale of several parts and a handler of its own, so that there is something to lose.
    std::setlocale(LC_CTYPE, "C.UTF-8");
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGCHLD, [](int) {});
    PrintState();
    LoadDriver();
    scenarios.at(argv[1])(argv[2], CallsFrom(argc - 3, argv + 3));
    PrintState();
    return 0;
}
