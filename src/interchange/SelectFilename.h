// The two dialogs for the CSV file.
#pragma once

#include "platform/runtime/Text.h"

#include <optional>

namespace qor {

class EditorForm;

/// The absolute path of the chosen file, which is taken after a notice if it is not called *.csv. Nothing when no file
/// was chosen, or after an error, which is reported.
std::optional<QString> SelectOpenFilename(const EditorForm& form);

/// The same for saving; a name that does not end in ".csv" gets that ending.
std::optional<QString> SelectSaveFilename(const EditorForm& form);

} // namespace qor
