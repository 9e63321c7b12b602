#include "platform/data/LinkFile.h"

#include "platform/runtime/RuntimeError.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

namespace qor {

std::optional<QString> ServiceIn(const QString& fileName)
{
    constexpr qint64 smallestDatabase = 512; // bytes, the smallest page of the embedded engine
    if (!QFileInfo(fileName).isFile())       // a pipe would wait for a writer
        return std::nullopt;
    QFile file(fileName);
    // Leave a database alone: closing it would drop the locks that its engine holds in this process.
    if (file.size() >= smallestDatabase || !file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray text = file.read(smallestDatabase);
    if (!text.startsWith("Provider="))
        return std::nullopt;
    static const QRegularExpression link(uR"(\AProvider=PostgreSQL;Service=([A-Za-z0-9_.-]+)\r?\n?\z)"_s);
    const QRegularExpressionMatch match = link.match(QString::fromLatin1(text));
    if (!match.hasMatch()) {
        throw RuntimeError(
            ErrorNumber::Provider,
            u"The file %1 is no proper link to a shared database. It must hold one line, "
            "\"Provider=PostgreSQL;Service=NAME\", with letters, digits, \"_\", \".\" and \"-\" in the name; host, "
            "database, user and password belong into the files of the database's client (pg_service.conf, .pgpass)."_s
                .arg(fileName));
    }
    return match.captured(1);
}

} // namespace qor
