// Lets the administrator choose an earlier version of a directory node.
#pragma once

#include <optional>
#include <QDialog>
#include <QStringList>

class QTreeWidget;

namespace qor {

class VersionsDialog : public QDialog
{
    Q_OBJECT
public:
    /// versions: the texts under Saved, By, Entries and Changes of each, the newest first.
    VersionsDialog(const QString& node, const QList<QStringList>& versions, QWidget* parent);

    /// The position of the version to restore; nothing when none was chosen.
    std::optional<int> Choose();

private:
    QTreeWidget* lstVersions;
};

} // namespace qor
