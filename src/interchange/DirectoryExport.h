// Writes the directory list to a CSV file.
#pragma once

#include <vector>

class QString;

namespace qor {

class EditorForm;

class DirectoryExport
{
public:
    explicit DirectoryExport(EditorForm& form) : mForm(form) {}

    /// Asks for a file and writes the list to it; rows that cannot be written are painted red, which is told once. An
    /// older file stays as it was if the new one cannot be written.
    void cmdDirSaveList_Click();

private:
    void Save(const QString& fileName);
    std::vector<int> WriteFile(const QString& fileName);

    EditorForm& mForm;
};

} // namespace qor
