// A host in plain C++: it loads the component by its path, uses nothing of it but the entry points and prints
// what it got.
//
//     PlainHost SCENARIO LIBRARY [CALL...]
#include "Host.h"

#include <clocale>
#include <csignal>
#include <map>
#include <unistd.h>

namespace {

/// The component, for as long as it is in use.
class Library
{
public:
    explicit Library(const std::string& path) : mHandle(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL))
    {
        if (!mHandle)
            std::fprintf(stderr, "%s\n", dlerror());
    }
    ~Library() { dlclose(mHandle); }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    GetClassObject ClassObject() const { return Find<GetClassObject>("DllGetClassObject"); }
    /// Calls an entry point without arguments.
    HRESULT operator()(const char* name) const { return Find<decltype(&DllCanUnloadNow)>(name)(); }

private:
    template <typename EntryPoint>
    EntryPoint Find(const char* name) const
    {
        return reinterpret_cast<EntryPoint>(dlsym(mHandle, name));
    }

    void* mHandle;
};

void ShowAll(const std::string& path, const Calls& calls)
{
    const Library library(path);
    ShowAll(library.ClassObject(), calls);
}

VARIANT Integer(VARTYPE type, std::int32_t value)
{
    VARIANT variant{};
    variant.vt = type;
    if (type == VT_I2)
        variant.iVal = static_cast<std::int16_t>(value);
    else
        variant.lVal = value;
    return variant;
}

void Expect(const char* what, HRESULT found, HRESULT wanted)
{
    if (found != wanted)
        std::printf("FAULT %s: %08X\n", what, static_cast<unsigned>(found));
}

void LoadAndUnload(const std::string& path, const Calls& calls)
{
    for (int round = 0; round < 20; ++round) {
        const Library library(path);
        const auto use = [&] { return library("DllCanUnloadNow"); };
        Expect("new", use(), S_OK);
        _BusinessRules* rules = NewRules(library.ClassObject());
        Expect("with an object", use(), S_FALSE);
        rules->Release();
        for (const std::int32_t locks : {1, 0}) {
            IClassFactory* factory = Factory(library.ClassObject());
            factory->LockServer(locks);
            factory->Release();
            Expect("lock", use(), locks == 1 ? S_FALSE : S_OK);
        }
        ShowAll(library.ClassObject(), calls);
        Expect("left", use(), S_OK);
    }
    std::printf(dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD) ? "MAPPED\n" : "UNMAPPED\n");
}

/// What is refused, and in the end a call that is not.
void CallByName(_BusinessRules& rules)
{
    char16_t name[] = u"shownodeEDITORs";
    OLECHAR* names = name;
    DISPID id = 7;
    Expect("unknown member", rules.GetIDsOfNames({}, &names, 1, 0, &id), DISP_E_UNKNOWNNAME);
    Expect("its id", id, DISPID_UNKNOWN);
    name[14] = 0;
    Expect("known member", rules.GetIDsOfNames({}, &names, 1, 0, &id), S_OK);
    VARIANT arguments[] = {Integer(VT_I2, 7), Integer(VT_I4, 40000), Integer(VT_BSTR, 0), Integer(VT_I2, 1)};
    DISPID named = 0;
    std::uint32_t bad = 9;
    const auto invoke = [&](DISPID member, std::uint16_t flags, DISPPARAMS parameters) {
        return rules.Invoke(member, {}, 0, flags, &parameters, nullptr, nullptr, &bad);
    };
    Expect("unknown id", invoke(id + 1, DISPATCH_METHOD, {arguments, nullptr, 3, 0}), DISP_E_MEMBERNOTFOUND);
    Expect("property", invoke(id, 2, {arguments, nullptr, 3, 0}), DISP_E_MEMBERNOTFOUND);
    for (const std::uint32_t count : {0U, 2U, 4U, 0xFFFFFFFFU})
        Expect("count", invoke(id, DISPATCH_METHOD, {arguments, nullptr, count, 0}), DISP_E_BADPARAMCOUNT);
    Expect("named argument", invoke(id, DISPATCH_METHOD, {arguments, &named, 3, 1}), DISP_E_NONAMEDARGS);
    Expect("no arguments", invoke(id, DISPATCH_METHOD, {nullptr, nullptr, 3, 0}), E_POINTER);
    Expect("wrong type", invoke(id, DISPATCH_METHOD, {arguments, nullptr, 3, 0}), DISP_E_TYPEMISMATCH);
    Expect("its place", static_cast<HRESULT>(bad), 2);
    arguments[2] = Integer(VT_I2, 1);
    Expect("too large", invoke(id, DISPATCH_METHOD | 2, {arguments, nullptr, 3, 0}), DISP_E_OVERFLOW);
    Expect("its place", static_cast<HRESULT>(bad), 1);
    arguments[1] = Integer(VT_I4, 1);
    DISPPARAMS parameters{arguments, nullptr, 3, 0};
    VARIANT result = Integer(VT_I4, 1);
    Expect("call", rules.Invoke(id, {}, 0, DISPATCH_METHOD, &parameters, &result, nullptr, nullptr), S_OK);
    Expect("type of its result", result.vt, VT_BOOL);
    Expect("its result", result.boolVal, VARIANT_FALSE);
}

void Refuse(const std::string& path, const Calls& /*calls*/)
{
    const Library library(path);
    const GetClassObject getClassObject = library.ClassObject();
    int something = 0;
    void* object = nullptr;
    /// A call that is refused leaves nothing in its place.
    const auto expect = [&](const char* what, HRESULT wanted, const auto& call) {
        object = &something;
        const HRESULT outcome = call();
        Expect(what, object ? S_FALSE : outcome, wanted);
    };
    expect("wrong class", CLASS_E_CLASSNOTAVAILABLE,
           [&] { return getClassObject(IID_IDispatch, IID_IUnknown, &object); });
    expect("wrong factory", E_NOINTERFACE, [&] { return getClassObject(CLSID_BusinessRules, IID_IDispatch, &object); });
    Expect("no place", getClassObject(CLSID_BusinessRules, IID_IClassFactory, nullptr), E_POINTER);
    IClassFactory* factory = Factory(getClassObject);
    expect("aggregation", CLASS_E_NOAGGREGATION,
           [&] { return factory->CreateInstance(factory, IID_IUnknown, &object); });
    expect("wrong interface", E_NOINTERFACE,
           [&] { return factory->CreateInstance(nullptr, IID_IClassFactory, &object); });
    Expect("no place", factory->CreateInstance(nullptr, IID_IUnknown, nullptr), E_POINTER);
    factory->Release();
    _BusinessRules* rules = NewRules(getClassObject);
    CallByName(*rules);
    rules->Release();
    std::printf("REFUSED\n");
}

/// A host may have changed its folder since it loaded the component by a relative path.
void Register(const std::string& path, const Calls& /*calls*/)
{
    const Library library(path);
    if (chdir("/") == 0)
        std::printf("REGISTER %08X\n", static_cast<unsigned>(library("DllRegisterServer")));
}

void Unregister(const std::string& path, const Calls& /*calls*/)
{
    std::printf("UNREGISTER %08X\n", static_cast<unsigned>(Library(path)("DllUnregisterServer")));
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

const std::map<std::string, void (*)(const std::string&, const Calls&)> scenarios{
    {"show", ShowAll},      {"unload", LoadAndUnload},  {"refuse", Refuse},
    {"register", Register}, {"unregister", Unregister},
};

} // namespace

int main(int argc, char** argv)
{
    const Calls arguments(argv, argv + argc);
    // A locale of several parts and handlers of its own, so that there is something to lose.
    std::setlocale(LC_CTYPE, "C.UTF-8");
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGCHLD, [](int) {});
    PrintState();
    LoadDriver();
    scenarios.at(arguments.at(1))(arguments.at(2), {arguments.begin() + 3, arguments.end()});
    PrintState();
    return 0;
}
