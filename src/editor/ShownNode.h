// Between the form and the node as a value.
#pragma once

#include "rules/DirectoryNode.h"

namespace qor {

class EditorForm;

/// The node that the form shows, under this number.
DirectoryNode NodeOn(const EditorForm& form, qint16 number);

/// Fills header and list; the list forgets what it was sorted by. No control raises an event.
void ShowNode(EditorForm& form, DirectoryNode node);

} // namespace qor
