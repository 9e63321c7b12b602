#include "Findings.h"

#include "Output.h"
#include "platform/runtime/Text.h"

#include <algorithm>

namespace qor {

void PrintFindings(const Findings& findings)
{
    for (const Finding& finding : findings) {
        if (finding.count == 0)
            continue;
        PrintLine(u"Warning: %1: %2"_s.arg(finding.kind).arg(finding.count));
        for (const QString& place : finding.places)
            PrintLine(u"  "_s + place);
        if (finding.count > finding.places.size())
            PrintLine(u"  and %1 more"_s.arg(finding.count - finding.places.size()));
    }
}

bool HasPlaces(const Findings& findings)
{
    return std::ranges::any_of(findings, [](const Finding& finding) { return finding.count > 0; });
}

} // namespace qor
