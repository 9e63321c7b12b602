// The keys with which a caller spells a name on a telephone: ABC 2, DEF 3, GHI 4, JKL 5, MNO 6, PQRS 7, TUV 8, WXYZ 9.
#pragma once

#include "rules/DirectoryNode.h"

#include <QStringList>

namespace qor {

/// Whether telephones have a key for every character of a name: A to Z and the digits.
bool HasKeys(QStringView name);

/// The keys for a name as SpelledOut writes it: a letter with an accent counts as the letter without it, ß as ss. What
/// has no key (blanks, hyphens, apostrophes) is skipped.
QString TelephoneKeys(const QString& name);

/// The name that callers spell.
enum class SpelledName { Last, First, Either };

/// The first `digits` keys of each name that may be spelled, each once; a name without keys has none.
QStringList KeyCodes(const DirectoryEntry& entry, SpelledName spelled, int digits);

/// Whether these keys begin a name that may be spelled.
bool IsReachedBy(const QString& keys, const DirectoryEntry& entry, SpelledName spelled);

} // namespace qor
