// Carries a node between the form and its value.
#pragma once

#include "rules/DirectoryNode.h"

namespace qor {

class EditorForm;

/// The node that the form shows, under this number.
DirectoryNode NodeOn(const EditorForm& form, qint16 number);

/// Fills header and list with a node as it was read from the database, without raising events. The list forgets what it
/// was sorted by.
void ShowNode(EditorForm& form, DirectoryNode node);

/// Empties header and list, which cannot be used until a node is shown.
void ShowNoNode(EditorForm& form);

/// Fills the header alone.
void ShowHeader(EditorForm& form, const NodeHeader& header);

/// Replaces the entries in the list, numbering them from 1.
void ShowEntries(EditorForm& form, std::vector<DirectoryEntry> entries);

} // namespace qor
