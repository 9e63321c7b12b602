// Text literals: u"..."_s is a QString without allocation.
#pragma once

#include <QString>

namespace qor {

using namespace Qt::StringLiterals;

} // namespace qor
