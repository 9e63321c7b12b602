// Prints which names callers reach with which keys of their telephones.
#pragma once

#include "ChosenNodes.h"
#include "rules/TelephoneKeys.h"

namespace qor {

struct KeysRequest
{
    QString fileName = {};
    NodeChoice nodes = {};
    SpelledName spelled = SpelledName::Last;
    qint16 digits = 3; ///< of the codes
    QString keys = {}; ///< empty for the codes that several people share
};

/// Prints the people whom the keys reach, in the order of their directories; without keys the codes that several people
/// of a directory share, with these people. Raises RuntimeError for keys that are no digits, for less than one digit,
/// for nodes that do not exist and for a file that does not open.
void ShowKeys(const KeysRequest& request);

} // namespace qor
