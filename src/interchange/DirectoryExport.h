// The directory list into a CSV file.
#pragma once

#include <vector>

class QString;

namespace qor {

class EditorForm;

class DirectoryExport
{
public:
    explicit DirectoryExport(EditorForm& form) : mForm(form) {}

    /// Asks for a file and writes the list into it; rows that cannot be written are painted red and told
    /// once. A file that was there is left as it was when the new one cannot be written.
    void cmdDirSaveList_Click();

private:
    void Save(const QString& fileName);
    std::vector<int> WriteFile(const QString& fileName);

    EditorForm& mForm;
};

} // namespace qor
