// The sheet for whoever speaks the names.
#pragma once

#include "ChosenNodes.h"

namespace qor {

struct RecordingsRequest
{
    QString fileName = {};
    NodeChoice nodes = {};
    QString missingIn = {}; ///< a folder: only the files that it does not have; empty: all
};

/// Prints, as CSV, which file holds whose name: File, Say, Extension. The file is the one that the message node names.
/// Where there is no node, or it names no file, it is the one that the editor gives to a node that it makes. Several
/// people on one file are as many lines; the same person in several directories is one. Raises RuntimeError for a
/// folder that cannot be read, for nodes that do not exist and for a file that does not open.
void PrintRecordings(const RecordingsRequest& request);

} // namespace qor
