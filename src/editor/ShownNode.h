// Between the form and the node as a value.
#pragma once

#include "rules/DirectoryNode.h"

namespace qor {

class EditorForm;

/// The node that the form shows, under this number.
DirectoryNode NodeOn(const EditorForm& form, qint16 number);

/// Fills header and list with a node as it was read from the database; the list forgets what it was sorted by. No
/// control raises an event.
void ShowNode(EditorForm& form, DirectoryNode node);

/// Empties header and list, which cannot be used until a node is shown.
void ShowNoNode(EditorForm& form);

/// Fills the header alone.
void ShowHeader(EditorForm& form, const NodeHeader& header);

/// Puts these entries into the list in place of those that are there, numbered from 1.
void ShowEntries(EditorForm& form, std::vector<DirectoryEntry> entries);

} // namespace qor
