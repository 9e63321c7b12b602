// A configuration database of a test's own: the sample that dir-db makes, where the component looks for it. In a
// program that scripts/with-server runs it lies on the server, and a link file stands there.
#pragma once

#include "platform/runtime/Text.h"

#include <QStringList>
#include <QTemporaryDir>

namespace qor {

class SampleDatabase
{
public:
    /// Makes the folders and the database and lets the environment name them; without a sample it ends the
    /// test program.
    SampleDatabase();

    ~SampleDatabase();
    Q_DISABLE_COPY_MOVE(SampleDatabase)

    /// The product's folder of application data and of documents, which are one here; no separator behind it.
    QString ProductFolder() const { return mFolder.filePath(u"Quorvanta/KELDAR+"_s); }
    /// The database, or the link file to it.
    QString FileName() const { return ProductFolder() + u"/Database/NewDB.mdb"_s; }

    /// Lets the environment name this one, when there are several.
    void Use() const;

    /// What is about files alone is skipped there.
    static bool IsOnServer();
    /// From now on the database refuses what is done to a table: "UPDATE ON Node_DIR", also under a condition on the
    /// new row; and no longer.
    void Refuse(const QString& event, const QString& condition = {}) const;
    void RefuseNoMore() const;

    /// Runs one statement as another program would, on a connection of its own. The rows of its answer, their values
    /// with | in between.
    QStringList Run(const QString& statement) const;
    /// The entries of a node in partition 1 of configuration 1: "Smith|Anne|101|1|1".
    QStringList Entries(int node) const;
    void SetEntries(int node, const QStringList& entries) const;
    /// Another number after every commit that did not come through Run: equal ones say that nothing was written.
    int DataVersion() const;

private:
    QTemporaryDir mFolder;
    mutable int mOwnCommits = 0; ///< on a server, those that came through Run
};

} // namespace qor
