#include "Findings.h"

#include "Output.h"
#include "platform/runtime/Text.h"

#include <algorithm>

namespace qor {

void PrintFindings(const Findings& findings)
{
    constexpr qsizetype shownPlaces = 20;
    for (const Finding& finding : findings) {
        if (finding.places.isEmpty())
            continue;
        PrintLine(u"Warning: %1: %2"_s.arg(finding.kind).arg(finding.places.size()));
        for (const QString& place : finding.places.first(std::min(shownPlaces, finding.places.size())))
            PrintLine(u"  "_s + place);
        if (finding.places.size() > shownPlaces)
            PrintLine(u"  and %1 more"_s.arg(finding.places.size() - shownPlaces));
    }
}

bool HasPlaces(const Findings& findings)
{
    return std::ranges::any_of(findings, [](const Finding& finding) { return !finding.places.isEmpty(); });
}

} // namespace qor
