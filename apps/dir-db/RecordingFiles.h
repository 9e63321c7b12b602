// The recordings of the message nodes, which are wave files in a folder.
#pragma once

#include "platform/runtime/Text.h"

#include <QSet>

namespace qor {

/// The files of a folder. Capital and small letters in their names make no difference here: they make none to the
/// system that plays them, and a copy of its folder may have changed them.
class RecordingFiles
{
public:
    /// Raises RuntimeError for a folder that cannot be read to its end.
    explicit RecordingFiles(const QString& folder);

    /// recording: the name that a message node has; folders in it do not count.
    bool Contains(const QString& recording) const;

private:
    QSet<QString> mNames;
};

} // namespace qor
