// Files that take the place of older ones in one step.
#pragma once

class QSaveFile;

namespace qor {

/// Puts what was written in place. False when any of it could not be written, and then the older file stays as it was;
/// the toolkit itself takes no notice of a failure in the last block.
bool CommitFile(QSaveFile& file);

} // namespace qor
