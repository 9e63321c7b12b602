#include "Grants.h"

#include "Output.h"
#include "Schema.h"

#include <array>
#include <QStringList>

namespace qor {

namespace {

struct Right
{
    const char* verbs;
    TableId table;
};

/// What the commands of a save do.
constexpr std::array editorRights{
    Right{"UPDATE", TableId::Node_DIR},
    Right{"INSERT, DELETE", TableId::Detail_DIR},
    Right{"INSERT", TableId::Node_MSG},
    Right{"INSERT, UPDATE", TableId::Node_General_Pool},
};

QString QuotedRole(QString role)
{
    return u'"' + role.replace(u'"', u"\"\""_s) + u'"';
}

void PrintGrant(const QString& verbs, const QString& objects, const QString& role)
{
    PrintLine(u"GRANT %1 ON %2 TO %3;"_s.arg(verbs, objects, role));
}

void PrintReading(const QString& role)
{
    QStringList tables;
    for (const SchemaTable& table : Schema())
        tables << QString::fromLatin1(table.name);
    PrintGrant(u"USAGE"_s, u"SCHEMA public"_s, role);
    PrintGrant(u"SELECT"_s, tables.join(u", "_s), role);
}

void PrintWriting(const QString& role)
{
    for (const Right& right : editorRights)
        PrintGrant(QString::fromLatin1(right.verbs), QString::fromLatin1(SchemaEntry(right.table).name), role);
}

void PrintSilence(const QString& role)
{
    PrintLine(
        u"-- The server's log shows the values of a command that fails, and the row that it refused, with passwords."_s);
    PrintLine(u"-- These count for the role that signs in, not for those that it belongs to."_s);
    PrintLine(u"ALTER ROLE %1 SET log_min_error_statement = 'panic';"_s.arg(role));
    PrintLine(u"ALTER ROLE %1 SET log_error_verbosity = 'terse';"_s.arg(role));
}

void PrintRole(const QString& what, const QString& name, bool edits)
{
    if (name.isEmpty())
        return;
    const QString role = QuotedRole(name);
    PrintLine(u"-- "_s + what);
    PrintReading(role);
    if (edits)
        PrintWriting(role);
    PrintSilence(role);
}

} // namespace

void PrintGrants(const GrantsRequest& request)
{
    PrintRole(u"An editor"_s, request.editor, true);
    PrintRole(u"A reader"_s, request.reader, false);
}

} // namespace qor
