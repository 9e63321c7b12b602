// What people should know about the contents of a sound database or of an import: kinds of findings with their places.
#pragma once

#include <QStringList>

namespace qor {

struct Finding
{
    QString kind;            ///< "entries whose message node is missing"
    QStringList places = {}; ///< a line for each of the first ones
    qsizetype count = 0;

    /// place: makes the line; not called once there are enough.
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

/// Prints the kinds that were found, with their first places and how many there are.
void PrintFindings(const Findings& findings);

/// Whether there is any place.
bool HasPlaces(const Findings& findings);

} // namespace qor
