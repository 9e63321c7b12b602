// The recordings of the message nodes, which are wave files in a folder.
#pragma once

#include "platform/runtime/Text.h"

#include <QSet>

namespace qor {

/// The files of a folder. The system knows no difference between capital and small letters in their names, and a copy
/// of its folder may have them otherwise, so there is none here.
class RecordingFiles
{
public:
    /// Raises RuntimeError for a folder that cannot be read to its end.
    explicit RecordingFiles(const QString& folder);

    /// recording: as a message node names it; folders before its name do not count.
    bool Contains(const QString& recording) const;

private:
    QSet<QString> mNames;
};

} // namespace qor
