// Node 7 on a server: with some entries, as it is stored, and what saving it tells.
#pragma once

#include "rules/NodeLoading.h"
#include "rules/NodeSaving.h"
#include "store/DataBase.h"
#include "store/KELDARPlusFilesAndFolders.h"
#include "support/Cases.h"
#include "support/SampleDatabase.h"
#include "support/Tool.h"

namespace qor {

constexpr NodeIdentity node7{{1, 1}, 7};
constexpr int highestNode = 250;

inline DirectoryNode NodeWith(int entryCount, const QString& lastName = u"Smith"_s, const QString& prompt = u"1"_s)
{
    DirectoryNode node{node7, {u"Staff"_s, {}, false, u"1"_s}, {}};
    for (int i = 1; i <= entryCount; ++i)
        node.entries.push_back({lastName, u"Anne"_s, QString::number(i), prompt, u"1"_s});
    return node;
}

inline DirectoryNode StoredNode()
{
    DataBase dataBase;
    return LoadNode(dataBase, node7, highestNode).value();
}

/// What it raises in a session of its own.
inline QString SavingRaises(const DirectoryNode& node)
{
    DataBase dataBase;
    return RaisedBy([&] { SaveNode(dataBase, node); });
}

/// The server's pg_ctl.
inline Outcome Control(const QStringList& arguments)
{
    return RunProgram(qEnvironmentVariable("QOR_SERVER") + u"/control"_s, arguments);
}

/// Nothing, or one clear sentence about this database, without a password; behind it what became of a save.
inline void CompareTold(QString told, const QString& expected, int line = __builtin_LINE())
{
    told.replace(GetDatabaseFolder() + u"NewDB.mdb"_s, u"FILE"_s);
    const bool isClear = told.isEmpty() || (told.contains(u"FILE"_s) && !told.contains(u"secret"_s) &&
                                            !told.section(u"\r\n"_s, 0, 0).contains(u'\n'));
    QVERIFY2(isClear && Matches(told, expected), qPrintable(u"line %1: "_s.arg(line) + told));
}

} // namespace qor
