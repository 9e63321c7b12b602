// A file that is built out of sight and appears under its name complete, or not at all.
#pragma once

#include "BuildFolder.h"

namespace qor {

/// Raises RuntimeError when the file exists already, or a log that an earlier database of this name left: it
/// would be played into the new one.
void RequireFreeName(const QString& fileName);

/// Everything that a folder names is on disk when it returns. Raises RuntimeError when the disk refuses.
void SyncFolderOf(const QString& fileName);

/// The file is built in a folder of its own beside its future place, of which nothing is left however the program ends.
/// There can be one at a time.
class NewFile
{
public:
    /// Raises RuntimeError when the folder cannot be made.
    explicit NewFile(const QString& fileName);

    /// The name that it will have.
    const QString& Name() const { return mName; }
    /// Where it is built: a database of this name may have its logs beside it.
    const QString& BuiltName() const { return mFolder.BuiltName(); }

    /// Brings the file to the disk and under its name; it is on disk when it returns. Raises RuntimeError when that
    /// fails or the name is taken.
    void Appear();
    /// The same in place of what has the name now, in one step.
    void Replace();

private:
    QString mName;
    BuildFolder mFolder;
};

} // namespace qor
