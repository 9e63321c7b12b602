// A host in plain C++: it loads the component by its path, uses nothing of it but the entry points and prints
// what it got.
//
//     PlainHost SCENARIO LIBRARY [CALL...]
#include "Host.h"

#include <array>
#include <clocale>
#include <csignal>
#include <fcntl.h>
#include <map>
#include <sys/resource.h>
#include <unistd.h>

namespace {

void* Open(const std::string& path)
{
    void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!library)
        std::fprintf(stderr, "%s\n", dlerror());
    return library;
}

GetClassObject ClassObject(void* library)
{
    return reinterpret_cast<GetClassObject>(dlsym(library, "DllGetClassObject"));
}

/// Calls an entry point that has no arguments.
HRESULT CallIn(void* library, const char* name)
{
    return reinterpret_cast<decltype(&DllCanUnloadNow)>(dlsym(library, name))();
}

void ShowAll(const std::string& path, const Calls& calls)
{
    ShowAll(ClassObject(Open(path)), calls);
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
    for (int round = 0; round < 2; ++round) {
        void* library = Open(path);
        const auto use = [&] { return CallIn(library, "DllCanUnloadNow"); };
        Expect("new", use(), S_OK);
        IUnknown* rules = NewRules(ClassObject(library));
        Expect("with an object", use(), S_FALSE);
        rules->Release();
        for (const std::int32_t lock : {1, 0}) {
            IClassFactory* factory = Factory(ClassObject(library));
            factory->LockServer(lock);
            factory->Release();
            Expect("lock", use(), lock == 1 ? S_FALSE : S_OK);
        }
        ShowAll(ClassObject(library), calls);
        Expect("left", use(), S_OK);
        dlclose(library);
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
    name[14] = 0;
    Expect("known member", rules.GetIDsOfNames({}, &names, 1, 0, &id), S_OK);
    VARIANT arguments[] = {Integer(VT_I2, 7), Integer(VT_I4, 40000), Integer(VT_BSTR, 0), Integer(VT_I2, 1)};
    VARIANT result{};
    std::uint32_t bad = 9;
    const auto invoke = [&](const char* what, HRESULT wanted, DISPPARAMS parameters, int flags = DISPATCH_METHOD) {
        Expect(what, rules.Invoke(id, {}, 0, static_cast<std::uint16_t>(flags), &parameters, &result, nullptr, &bad),
               wanted);
    };
    invoke("property", DISP_E_MEMBERNOTFOUND, {arguments, nullptr, 3, 0}, 2);
    for (const std::uint32_t count : {2U, 4U, 0xFFFFFFFFU})
        invoke("count", DISP_E_BADPARAMCOUNT, {arguments, nullptr, count, 0});
    invoke("named argument", DISP_E_NONAMEDARGS, {arguments, &id, 3, 1});
    invoke("no arguments", E_POINTER, {nullptr, nullptr, 3, 0});
    invoke("wrong type", DISP_E_TYPEMISMATCH, {arguments, nullptr, 3, 0});
    Expect("its place", static_cast<HRESULT>(bad), 2);
    arguments[2] = Integer(VT_I2, 1);
    invoke("too large", DISP_E_OVERFLOW, {arguments, nullptr, 3, 0});
    arguments[1] = Integer(VT_I4, 1);
    invoke("call", S_OK, {arguments, nullptr, 3, 0}, DISPATCH_METHOD | 2);
    Expect("its result", result.vt == VT_BOOL ? result.boolVal : -2, VARIANT_FALSE);
}

void Refuse(const std::string& path, const Calls& /*calls*/)
{
    const GetClassObject getClassObject = ClassObject(Open(path));
    IClassFactory* factory = Factory(getClassObject);
    void* const something = &factory;
    // A call that is refused leaves nothing in its place.
    void* object = something;
    Expect("wrong class", getClassObject(IID_IDispatch, IID_IUnknown, &object), CLASS_E_CLASSNOTAVAILABLE);
    Expect("no place", getClassObject(CLSID_BusinessRules, IID_IClassFactory, nullptr), E_POINTER);
    Expect("its object", object ? S_FALSE : S_OK, S_OK);
    for (const auto& [outer, wanted] : {std::pair(factory, CLASS_E_NOAGGREGATION), {nullptr, E_NOINTERFACE}}) {
        object = something;
        Expect("wrong object", factory->CreateInstance(outer, IID_IClassFactory, &object), wanted);
        Expect("its object", object ? S_FALSE : S_OK, S_OK);
    }
    Expect("no place", factory->CreateInstance(nullptr, IID_IUnknown, nullptr), E_POINTER);
    factory->Release();
    _BusinessRules* rules = NewRules(getClassObject);
    CallByName(*rules);
    rules->Release();
    std::printf("REFUSED\n");
}

/// A host may have changed its folder since it loaded the component.
void Enter(const std::string& path, const Calls& names)
{
    void* library = Open(path);
    if (chdir("/") == 0)
        std::printf("ENTERED %08X\n", static_cast<unsigned>(CallIn(library, names.at(0).c_str())));
}

/// Calls with few descriptors left, and once more when it has given them back.
void Crowd(const std::string& path, const Calls& calls)
{
    const GetClassObject getClassObject = ClassObject(Open(path));
    const rlimit limit{64, 64};
    setrlimit(RLIMIT_NOFILE, &limit);
    std::vector<int> files;
    for (int file = dup(STDIN_FILENO); file >= 0; file = dup(STDIN_FILENO))
        files.push_back(file);
    const std::size_t all = files.size();
    for (const std::size_t left : {0U, 3U, 7U, 15U, 40U}) {
        for (; files.size() + left > all; files.pop_back())
            close(files.back());
        ShowAll(getClassObject, calls);
    }
}

/// What it prints of the call is lost, and may be printed nowhere else. Nothing takes the places of what it has closed.
void CloseStandardFiles(const std::string& path, const Calls& calls)
{
    const GetClassObject getClassObject = ClassObject(Open(path));
    std::fflush(stdout);
    const int output = fcntl(STDOUT_FILENO, F_DUPFD, 10);
    for (const int file : {0, 1, 2})
        close(file);
    ShowAll(getClassObject, calls);
    const std::array isFree{close(0) != 0 ? 1 : 0, close(1) != 0 ? 1 : 0, close(2) != 0 ? 1 : 0};
    dprintf(output, "FREE %d%d%d\n", isFree[0], isFree[1], isFree[2]);
    dup2(output, STDOUT_FILENO);
}

void BreakStandardError(const std::string& path, const Calls& calls)
{
    int ends[2]{};
    if (pipe(ends) != 0)
        return;
    close(ends[0]);
    dup2(ends[1], STDERR_FILENO);
    std::signal(SIGPIPE, SIG_DFL);
    ShowAll(path, calls);
    std::signal(SIGPIPE, SIG_IGN);
}

void TakeOtherRights(const std::string& path, const Calls& calls)
{
    if (seteuid(65534) == 0)
        ShowAll(path, calls);
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

const std::map<std::string, void (*)(const std::string&, const Calls&)> scenarios{{"show", ShowAll},
                                                                                  {"unload", LoadAndUnload},
                                                                                  {"refuse", Refuse},
                                                                                  {"enter", Enter},
                                                                                  {"crowd", Crowd},
                                                                                  {"close-files", CloseStandardFiles},
                                                                                  {"break-error", BreakStandardError},
                                                                                  {"other-rights", TakeOtherRights}};

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
