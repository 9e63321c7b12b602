#include "platform/com/Registration.h"

#include "platform/shell/Registry.h"

#include <QUuid>

namespace qor {

namespace {

QString ClassKey(const CLSID& clsid)
{
    return u"CLSID\\"_s + GuidText(clsid);
}

} // namespace

QString GuidText(const GUID& guid)
{
    const auto& tail = guid.Data4;
    return QUuid(guid.Data1, guid.Data2, guid.Data3, tail[0], tail[1], tail[2], tail[3], tail[4], tail[5], tail[6],
                 tail[7])
        .toString()
        .toUpper();
}

void RegisterClass(const RegisteredClass& registered)
{
    const QString key = ClassKey(registered.clsid);
    ChangeClassKeys(
        {registered.programId, key},
        {
            {registered.programId, {{QString(), registered.programId}}},
            {registered.programId + u"\\Clsid"_s, {{QString(), GuidText(registered.clsid)}}},
            {key, {{QString(), registered.programId}}},
            {key + u"\\InprocServer32"_s, {{QString(), registered.libraryPath}, {u"ThreadingModel"_s, u"Apartment"_s}}},
            {key + u"\\ProgID"_s, {{QString(), registered.programId}}},
        });
}

void UnregisterClass(const CLSID& clsid, const QString& programId)
{
    ChangeClassKeys({programId, ClassKey(clsid)}, {});
}

} // namespace qor
