// The two dialogs for the CSV file.
#pragma once

#include "platform/runtime/Text.h"

namespace qor {

class EditorForm;

/// True, with the absolute path in fileName, when a file was chosen. One that is not called *.csv is taken all the
/// same, after a notice. False after an error, which is reported.
bool SelectOpenFilename(const EditorForm& form, QString& fileName);

/// The same for saving; a name that does not end in ".csv" gets that ending.
bool SelectSaveFilename(const EditorForm& form, QString& fileName);

} // namespace qor
