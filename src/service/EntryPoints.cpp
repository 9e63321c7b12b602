// The exported entry points and the class factory behind them. No exception leaves them.
//
// A host need not be built together with this library, nor be written in C++: it knows a class identifier, finds the
// library in the registry and calls through tables of functions. So four C functions are exported and no C++ class.
#include "platform/com/Registration.h"
#include "platform/runtime/ErrorReport.h"
#include "platform/runtime/StandardError.h"
#include "QOR_DIR_Node.h"
#include "service/BusinessRulesObject.h"

#include <functional>
#include <QDir>
#include <QFileInfo>

namespace qor {

namespace {

int locks = 0;

QString ProgramId()
{
    return u"QOR_DIR_NODE.BusinessRules"_s;
}

/// Does what an entry point is for. An exception becomes one sentence on standard error and the result `failure`.
template <typename Body>
HRESULT Answer(HRESULT failure, Body&& body)
{
    try {
        return std::invoke(std::forward<Body>(body));
    } catch (...) {
        Tell(CurrentRuntimeError().Description());
        return failure;
    }
}

/// A new object's interface; the object goes again when it does not offer it.
template <typename Object>
HRESULT Make(const IID& iid, void** object)
{
    return Answer(E_FAIL, [&] {
        auto* made = new Object;
        const HRESULT outcome = made->QueryInterface(iid, object);
        made->Release();
        return outcome;
    });
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
        return Make<BusinessRulesObject>(iid, object);
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

/// Whether the address lies in the range at the start of a line of the process's mappings.
bool IsMapped(const QByteArray& line, quintptr address)
{
    const QByteArray range = line.left(line.indexOf(' '));
    const quintptr start = range.left(range.indexOf('-')).toULongLong(nullptr, 16);
    const quintptr end = range.mid(range.indexOf('-') + 1).toULongLong(nullptr, 16);
    return start <= address && address < end;
}

/// The absolute path of the library that this code was loaded from. The loader remembers the path as the host gave it,
/// which may be relative to a folder that the host has left since; the kernel knows the file. Raises RuntimeError for a
/// file that was replaced or removed since it was loaded.
QString OwnLibraryPath()
{
    const auto own = reinterpret_cast<quintptr>(&OwnLibraryPath);
    QFile maps(u"/proc/self/maps"_s);
    QByteArray line = maps.open(QIODevice::ReadOnly) ? maps.readLine() : QByteArray();
    while (!line.isEmpty() && !IsMapped(line, own))
        line = maps.readLine();
    QString path = QString::fromLocal8Bit(line.mid(line.indexOf('/')).trimmed());
    if (!QFileInfo(path).isFile())
        throw RuntimeError(ErrorNumber::FileAccess, u"The library's own path cannot be found. Install it again."_s);
    return path;
}

/// The path to register: the name that an update of the same major version keeps, where it leads to the same file.
QString LastingPath(const QString& library)
{
    const QString lasting = QFileInfo(library).dir().filePath(QStringLiteral(LIBRARY_SONAME));
    const bool isSameFile = QFileInfo(lasting).canonicalFilePath() == QFileInfo(library).canonicalFilePath();
    return isSameFile ? lasting : library;
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
    return qor::Make<qor::BusinessRulesFactory>(iid, object);
}

HRESULT DllCanUnloadNow()
{
    return qor::IsServerInUse() ? S_FALSE : S_OK;
}

HRESULT DllRegisterServer()
{
    return qor::Answer(SELFREG_E_CLASS, [] {
        qor::RegisterClass({CLSID_BusinessRules, qor::ProgramId(), qor::LastingPath(qor::OwnLibraryPath())});
        return S_OK;
    });
}

HRESULT DllUnregisterServer()
{
    return qor::Answer(SELFREG_E_CLASS, [] {
        qor::UnregisterClass(CLSID_BusinessRules, qor::ProgramId());
        return S_OK;
    });
}
