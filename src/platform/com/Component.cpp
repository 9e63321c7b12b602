#include "platform/com/Component.h"

#include "platform/runtime/RuntimeError.h"
#include "platform/shell/Registry.h"
#include "platform/shell/TrustedPath.h"

#include <algorithm>
#include <QFileInfo>
#include <QHash>
#include <QLibrary>
#include <QUuid>
#include <vector>

namespace qor {

namespace {

QHash<QString, MakeObject>& BuiltInClasses()
{
    static QHash<QString, MakeObject> classes;
    return classes;
}

[[noreturn]] void FailCreation(const QString& programId, const QString& why)
{
    throw RuntimeError(ErrorNumber::CannotCreateObject,
                       u"The component %1 cannot be created: %2"_s.arg(programId, why));
}

/// The default value of a class key, without its terminating zero; empty when it is not there.
QString ClassKeyText(const Registry& registry, const QString& path)
{
    const auto value = registry.Query(RegistryRoot::ClassesRoot, path, {});
    return value ? QString::fromUtf8(value->data.constData()) : QString();
}

/// The path of the registered library with its links resolved. Raises RuntimeError when it may not be loaded.
QString TrustedLibrary(const QString& programId, const QString& path)
{
    const QFileInfo info(path);
    if (!info.isAbsolute())
        FailCreation(programId, u"its registered library \"%1\" is not an absolute path."_s.arg(path));
    if (const auto problem = TrustProblem(path))
        FailCreation(programId, u"its registered library %1 is not loaded: "_s.arg(path) + *problem);
    if (!info.isFile())
        FailCreation(programId, u"its registered library %1 does not exist. Register it again."_s.arg(path));
    return info.canonicalFilePath();
}

CLSID ClsidFromText(const QString& text)
{
    const QUuid uuid(text);
    CLSID clsid{uuid.data1, uuid.data2, uuid.data3, {}};
    std::ranges::copy(uuid.data4, clsid.Data4);
    return clsid;
}

ComReference<IDispatch> LoadRegistered(const QString& programId, const CLSID& clsid, const QString& path)
{
    QLibrary library(TrustedLibrary(programId, path));
    using GetClassObject = HRESULT (*)(const CLSID&, const IID&, void**);
    const auto getClassObject = reinterpret_cast<GetClassObject>(library.resolve("DllGetClassObject"));
    if (!library.isLoaded())
        FailCreation(programId, library.errorString());
    if (!getClassObject)
        FailCreation(programId, u"its library %1 has no DllGetClassObject. Register another one."_s.arg(path));

    ComReference<IClassFactory> factory;
    ComReference<IDispatch> object;
    if (getClassObject(clsid, IID_IClassFactory, factory.Receive()) != S_OK || !factory ||
        factory->CreateInstance(nullptr, IID_IDispatch, object.Receive()) != S_OK || !object)
        FailCreation(programId, u"its library %1 does not make it."_s.arg(path));
    return object;
}

} // namespace

void AddBuiltInClass(QLatin1String programId, MakeObject make)
{
    BuiltInClasses().insert(QString(programId).toLower(), make);
}

ComReference<IDispatch> CreateObject(const QString& programId)
{
    const Registry registry;
    const QString clsid = ClassKeyText(registry, programId + u"\\Clsid"_s);
    if (!clsid.isEmpty()) {
        const QString path = ClassKeyText(registry, u"CLSID\\%1\\InprocServer32"_s.arg(clsid));
        return LoadRegistered(programId, ClsidFromText(clsid), path);
    }
    const MakeObject make = BuiltInClasses().value(programId.toLower());
    if (!make)
        FailCreation(programId, u"it is not registered. Install and register it."_s);
    ComReference<IDispatch> object;
    *object.Receive() = make();
    return object;
}

VARIANT TextArgument(const QString& text)
{
    VARIANT variant{};
    variant.vt = VT_BSTR;
    variant.bstrVal = reinterpret_cast<const OLECHAR*>(text.utf16());
    return variant;
}

VARIANT IntegerResult(std::int32_t value)
{
    VARIANT variant{};
    variant.vt = VT_I4;
    variant.lVal = value;
    return variant;
}

VARIANT BooleanResult(bool value)
{
    VARIANT variant{};
    variant.vt = VT_BOOL;
    variant.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
    return variant;
}

std::int32_t IntegerIn(const VARIANT& result)
{
    switch (result.vt) {
    case VT_I4:
        return result.lVal;
    case VT_I2:
        return result.iVal;
    default:
        throw RuntimeError(
            ErrorNumber::TypeMismatch,
            u"The component answers with the type %1 instead of a number. Register another one."_s.arg(result.vt));
    }
}

bool BooleanIn(const VARIANT& result)
{
    return result.vt == VT_BOOL ? result.boolVal != VARIANT_FALSE : IntegerIn(result) != 0;
}

VARIANT CallByName(IDispatch& object, const QString& method, std::initializer_list<VARIANT> arguments)
{
    std::u16string name = method.toStdU16String();
    OLECHAR* names[] = {name.data()};
    DISPID id = DISPID_UNKNOWN;
    // A call carries its arguments last to first.
    std::vector<VARIANT> reversed(std::rbegin(arguments), std::rend(arguments));
    DISPPARAMS parameters{reversed.data(), nullptr, static_cast<std::uint32_t>(reversed.size()), 0};
    VARIANT result{};
    const IID none{};
    HRESULT outcome = object.GetIDsOfNames(none, names, 1, 0, &id);
    if (outcome == S_OK)
        outcome = object.Invoke(id, none, 0, DISPATCH_METHOD, &parameters, &result, nullptr, nullptr);
    if (outcome != S_OK) {
        throw RuntimeError(ErrorNumber::CannotCreateObject,
                           u"The component does not run %1 (result %2). Register a component that does."_s.arg(
                               method, QString::number(static_cast<quint32>(outcome), 16)));
    }
    return result;
}

} // namespace qor
