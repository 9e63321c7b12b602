// Reads tables of a Jet database with the library; it trusts neither the file nor the library.
#pragma once

#include "JetFile.h"

namespace qor {

/// descriptor: the file, open for reading. Raises RuntimeError with the reason alone ("it is damaged; ..."). Whatever
/// the library writes on standard error is a fault as well, which the caller has to notice.
JetDatabase ReadJetTables(int descriptor, const QList<JetWish>& wishes);

} // namespace qor
