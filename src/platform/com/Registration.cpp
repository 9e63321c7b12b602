#include "platform/com/Registration.h"

#include "platform/shell/Registry.h"

#include <QUuid>

namespace qor {

namespace {

/// "{6E2B8C41-93D7-...}", in upper case.
QString GuidText(const GUID& guid)
{
    const auto& tail = guid.Data4;
    return QUuid(guid.Data1, guid.Data2, guid.Data3, tail[0], tail[1], tail[2], tail[3], tail[4], tail[5], tail[6],
                 tail[7])
        .toString()
        .toUpper();
}

QString ClassesKey(const QString& path)
{
    return RegistryKeyPath(RegistryRoot::ClassesRoot, path);
}

QList<RegistryEntry> EntriesOf(const RegisteredClass& registered)
{
    const QString& programId = registered.programId;
    const QString clsid = GuidText(registered.clsid);
    const QString program = ClassesKey(programId);
    const QString cls = ClassesKey(u"CLSID\\"_s + clsid);
    return {
        {program, {{{}, programId}}},
        {program + u"\\Clsid"_s, {{{}, clsid}}},
        {cls, {{{}, programId}}},
        {cls + u"\\InprocServer32"_s, {{{}, registered.libraryPath}, {u"ThreadingModel"_s, u"Apartment"_s}}},
        {cls + u"\\ProgID"_s, {{{}, programId}}},
    };
}

} // namespace

void RegisterClass(const RegisteredClass& registered)
{
    AddToRegistry(EntriesOf(registered));
}

void UnregisterClass(const CLSID& clsid, const QString& programId)
{
    RemoveFromRegistry(EntriesOf({clsid, programId, {}}));
}

} // namespace qor
