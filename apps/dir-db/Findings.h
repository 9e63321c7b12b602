// What people should know of the contents of a sound database or of an import: a few kinds, each with its places.
#pragma once

#include <QStringList>

namespace qor {

struct Finding
{
    QString kind;            ///< "entries whose message node is missing"
    QStringList places = {}; ///< a line for each of the first ones
    qsizetype count = 0;

    /// place: makes the line; not called when there are enough of them.
    template <typename Place>
    void AddPlace(const Place& place)
    {
        constexpr qsizetype shownPlaces = 20;
        if (count < shownPlaces)
            places << place();
        ++count;
    }
    void Add(const QString& place)
    {
        AddPlace([&] { return place; });
    }
};
using Findings = QList<Finding>;

/// Prints those that have places; of the places of a kind the first ones and a count.
void PrintFindings(const Findings& findings);

/// Whether there is any place.
bool HasPlaces(const Findings& findings);

} // namespace qor
