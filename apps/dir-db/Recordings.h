// Prints the sheet for whoever speaks the names.
#pragma once

#include "ChosenNodes.h"

namespace qor {

struct RecordingsRequest
{
    QString fileName = {};
    NodeChoice nodes = {};
    QString missingIn = {}; ///< a folder, to print only the files that it lacks
};

/// Prints, as CSV, which file holds whose name: File, Say, Extension. The file is the one that the message node names;
/// if there is no node, or it names none, the one that the editor would give it. Several people on one file get a line
/// each; the same person in several directories gets one. Raises RuntimeError for a folder that cannot be read, for
/// nodes that do not exist and for a file that does not open.
void PrintRecordings(const RecordingsRequest& request);

} // namespace qor
