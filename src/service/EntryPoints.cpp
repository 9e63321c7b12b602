// The exported entry points and the class factory behind them. No exception leaves them.
#include "platform/com/Registration.h"
#include "platform/runtime/ErrorReport.h"
#include "QOR_DIR_Node.h"
#include "service/BusinessRulesObject.h"

#include <cstdio>
#include <QFileInfo>

namespace qor {

namespace {

int locks = 0;

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
            std::fprintf(stderr, "QOR_DIR_NODE: the class cannot be made: %s\n",
                         qUtf8Printable(CurrentRuntimeError().Description()));
            return E_FAIL;
        }
    }

    HRESULT LockServer(std::int32_t lock) override
    {
        if (lock) {
            ++locks;
            AddServerUse();
        } else if (locks > 0) { // one too many takes no object's use back
            --locks;
            ReleaseServerUse();
        }
        return S_OK;
    }
};

/// Nothing for a file that was replaced or removed since it was loaded.
QString ExistingFile(const QString& path)
{
    return QFileInfo(path).isFile() ? path : QString();
}

/// The absolute path of the library that this code was loaded from. The loader remembers the path as the host gave it,
/// which may be relative to a folder that the host has left since; the kernel knows the file.
QString OwnLibraryPath()
{
    const auto own = reinterpret_cast<quintptr>(&OwnLibraryPath);
    QFile maps(u"/proc/self/maps"_s);
    if (!maps.open(QIODevice::ReadOnly))
        return {};
    for (QByteArray line = maps.readLine(); !line.isEmpty(); line = maps.readLine()) {
        const QByteArray range = line.left(line.indexOf(' '));
        const quintptr start = range.left(range.indexOf('-')).toULongLong(nullptr, 16);
        const quintptr end = range.mid(range.indexOf('-') + 1).toULongLong(nullptr, 16);
        if (start <= own && own < end)
            return ExistingFile(QString::fromLocal8Bit(line.mid(line.indexOf('/')).trimmed()));
    }
    return {};
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
        const QString path = qor::OwnLibraryPath();
        if (path.isEmpty())
            return qor::Outcome(QStringLiteral("The library's own path cannot be found. Install it again."));
        return qor::Outcome(qor::RegisterClass({CLSID_BusinessRules, qor::ProgramId(), path}));
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
