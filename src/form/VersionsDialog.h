// The earlier versions of a directory node, to choose one from.
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
    /// versions: for each one, the youngest first, what it says under Saved, By, Entries and Changes.
    VersionsDialog(const QString& node, const QList<QStringList>& versions, QWidget* parent);

    /// The position of the version that was chosen to be restored; nothing when none was.
    std::optional<int> Choose();

private:
    QTreeWidget* lstVersions;
};

} // namespace qor
