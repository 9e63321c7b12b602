// A configuration database of a test's own: the sample that dir-db makes, where the component looks for it.
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

    QString FileName() const;

    /// Runs one statement as another program would. The rows of its answer, their values with | in between.
    QStringList Run(const QString& statement) const;

private:
    QTemporaryDir mFolder;
};

} // namespace qor
