// What people should know of the contents of a sound database or of an import: a few kinds, each with its places.
#pragma once

#include <QStringList>

namespace qor {

struct Finding
{
    QString kind;       ///< "entries whose message node is missing"
    QStringList places; ///< one line for each
};
using Findings = QList<Finding>;

/// Prints those that have places; of the places of a kind the first ones and a count.
void PrintFindings(const Findings& findings);

/// Whether there is any place.
bool HasPlaces(const Findings& findings);

} // namespace qor
