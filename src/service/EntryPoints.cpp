// The exported entry points and the class factory behind them. No exception leaves them.
#include "platform/com/Registration.h"
#include "platform/runtime/ErrorReport.h"
#include "QOR_DIR_Node.h"
#include "service/BusinessRulesObject.h"

#include <cstdio>
#include <dlfcn.h>
#include <QFileInfo>

namespace qor {

namespace {

QString ProgramId()
{
    return u"QOR_DIR_NODE.BusinessRules"_s;
}

class BusinessRulesFactory final : public ComObject<IClassFactory>
{
public:
    BusinessRulesFactory() : ComObject(IID_IClassFactory) {}

    HRESULT CreateInstance(IUnknown* outer, const IID& iid, void** object) override
    {
        if (!object)
            return E_POINTER;
        *object = nullptr;
        if (outer)
            return CLASS_E_NOAGGREGATION;
        try {
            auto* instance = new BusinessRulesObject;
            const HRESULT outcome = instance->QueryInterface(iid, object);
            instance->Release();
            return outcome;
        } catch (...) {
            return E_FAIL;
        }
    }

    HRESULT LockServer(std::int32_t lock) override
    {
        if (lock)
            AddServerUse();
        else
            ReleaseServerUse();
        return S_OK;
    }
};

/// The absolute path of the library that this code was loaded from.
QString OwnLibraryPath()
{
    Dl_info info{};
    if (dladdr(reinterpret_cast<void*>(&OwnLibraryPath), &info) == 0)
        return {};
    return QFileInfo(QString::fromLocal8Bit(info.dli_fname)).canonicalFilePath();
}

HRESULT Outcome(const std::optional<QString>& problem)
{
    if (!problem)
        return S_OK;
    std::fprintf(stderr, "QOR_DIR_NODE: %s\n", qUtf8Printable(*problem));
    return SELFREG_E_CLASS;
}

} // namespace

} // namespace qor

HRESULT DllGetClassObject(const CLSID& clsid, const IID& iid, void** object)
{
    if (!object)
        return E_POINTER;
    *object = nullptr;
    if (clsid != CLSID_BusinessRules)
        return CLASS_E_CLASSNOTAVAILABLE;
    try {
        auto* factory = new qor::BusinessRulesFactory;
        const HRESULT outcome = factory->QueryInterface(iid, object);
        factory->Release();
        return outcome;
    } catch (...) {
        return E_FAIL;
    }
}

HRESULT DllCanUnloadNow()
{
    return qor::IsServerInUse() ? S_FALSE : S_OK;
}

HRESULT DllRegisterServer()
{
    try {
        return qor::Outcome(qor::RegisterClass({CLSID_BusinessRules, qor::ProgramId(), qor::OwnLibraryPath()}));
    } catch (...) {
        return SELFREG_E_CLASS;
    }
}

HRESULT DllUnregisterServer()
{
    try {
        return qor::Outcome(qor::UnregisterClass(CLSID_BusinessRules, qor::ProgramId()));
    } catch (...) {
        return SELFREG_E_CLASS;
    }
}
