// Changes the text of a registry file: values of one's own come and go, every other line stays as it is.
#pragma once

#include "platform/runtime/Text.h"

#include <QList>
#include <utility>

namespace qor {

/// Named texts of one key, in the order in which they are written; the empty name is the key's default value.
struct RegistryEntry
{
    QString key; ///< its path from the root on
    QList<std::pair<QString, QString>> texts;
};

/// The text with the entries' values. A value that is there already changes where it stands.
QString WithEntries(const QString& text, const QList<RegistryEntry>& entries);

/// The text without the entries' values, whatever they are. A key that holds nothing after that goes as well, so that
/// the text is again what it was before WithEntries; an empty one keeps the header.
QString WithoutEntries(const QString& text, const QList<RegistryEntry>& entries);

} // namespace qor
