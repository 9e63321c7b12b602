// The platform's dialogs for choosing a file.
#pragma once

#include "platform/runtime/Text.h"

#include <optional>
#include <QStringList>

namespace qor {

inline constexpr int OFN_OVERWRITEPROMPT = 2;  ///< ask before an existing file is chosen for saving
inline constexpr int OFN_FILEMUSTEXIST = 4096; ///< only a file that exists can be chosen

struct FileDialogRequest
{
    QString title;
    /// Pairs of a caption and its patterns, which blanks separate.
    QList<std::pair<QString, QString>> filters;
    int flags = 0;
    QString defaultExtension; ///< for a name that is typed without one
    QString startFolder;      ///< if it does not exist, the user's home folder is taken
    bool save = false;
};

/// The absolute path of the chosen file, or nothing when the dialog was cancelled.
std::optional<QString> ChooseFile(const FileDialogRequest& request);

} // namespace qor
