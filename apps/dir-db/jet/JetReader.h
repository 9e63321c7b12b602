// Reads tables of a Jet database with the library; it trusts neither the file nor the library.
#pragma once

#include "JetFile.h"

namespace qor {

/// descriptor: the file, open for reading. Raises RuntimeError with the reason alone ("it is damaged; ...").
/// What the library writes on standard error are faults as well; seeing to them is the caller's part.
JetDatabase ReadJetTables(int descriptor, const QList<JetWish>& wishes);

} // namespace qor
