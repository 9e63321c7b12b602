// Edits the text of a registry file: our own values come and go, every other line stays as it is.
#pragma once

#include "platform/runtime/Text.h"

#include <QList>
#include <utility>

namespace qor {

/// Named texts of one key, in the order in which they are written; the empty name is the key's default value.
struct RegistryEntry
{
    QString key; ///< its path, root included
    QList<std::pair<QString, QString>> texts;
};

/// The text with the entries' values. A value that exists is changed in its place.
QString WithEntries(const QString& text, const QList<RegistryEntry>& entries);

/// The text without the entries' values, whatever they are by now. Keys that are left with nothing go as well, which
/// undoes WithEntries; a text that was empty before keeps its header.
QString WithoutEntries(const QString& text, const QList<RegistryEntry>& entries);

} // namespace qor
