// The directory list into a CSV file.
#pragma once

#include <optional>
#include <vector>

class QIODevice;
class QString;

namespace qor {

class EditorForm;
class ListView;

/// Writes the rows that have both names and a numeric extension, in their order, and returns the others; nothing when
/// the device fails.
std::optional<std::vector<int>> WriteDirectory(const ListView& list, QIODevice& device);

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
