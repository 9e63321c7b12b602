#include "form/VersionsDialog.h"

#include "platform/runtime/Text.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace qor {

namespace {

constexpr QSize dialogSize(440, 300);
constexpr int columnGap = 12;

QTreeWidget* VersionList(const QList<QStringList>& versions, QWidget* parent)
{
    auto* list = new QTreeWidget(parent);
    list->setObjectName(u"lstVersions"_s);
    list->setAccessibleName(u"Earlier versions"_s);
    list->setHeaderLabels({u"Saved"_s, u"By"_s, u"Entries"_s, u"Changes"_s});
    list->headerItem()->setToolTip(0, u"When a save replaced this version"_s);
    list->headerItem()->setToolTip(3, u"What restoring it adds to the list, removes and changes"_s);
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    list->setAllColumnsShowFocus(true);
    for (const QStringList& version : versions)
        list->addTopLevelItem(new QTreeWidgetItem(version));
    for (int column = 0; column < list->columnCount(); ++column) {
        list->resizeColumnToContents(column);
        list->setColumnWidth(column, list->columnWidth(column) + columnGap);
    }
    list->setCurrentItem(list->topLevelItem(0));
    return list;
}

} // namespace

VersionsDialog::VersionsDialog(const QString& node, const QList<QStringList>& versions, QWidget* parent)
    : QDialog(parent), lstVersions(VersionList(versions, this))
{
    setObjectName(u"dlgVersions"_s);
    setAttribute(Qt::WA_QuitOnClose, false);
    setWindowTitle(u"Earlier Versions of %1"_s.arg(node));
    auto* explanation = new QLabel(u"Restoring puts a version into the list. Apply stores it."_s, this);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    auto* restore = buttons->addButton(u"&Restore"_s, QDialogButtonBox::AcceptRole);
    restore->setObjectName(u"cmdRestore"_s);
    restore->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(lstVersions, &QTreeWidget::itemDoubleClicked, this, &QDialog::accept);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(explanation);
    layout->addWidget(lstVersions);
    layout->addWidget(buttons);
    resize(dialogSize);
    lstVersions->setFocus();
}

std::optional<int> VersionsDialog::Choose()
{
    if (exec() != Accepted || !lstVersions->currentItem())
        return std::nullopt;
    return lstVersions->indexOfTopLevelItem(lstVersions->currentItem());
}

} // namespace qor
