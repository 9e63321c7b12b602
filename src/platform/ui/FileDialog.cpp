#include "platform/ui/FileDialog.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>

namespace qor {

namespace {

QStringList NameFilters(const FileDialogRequest& request)
{
    QStringList filters;
    for (const auto& [caption, patterns] : request.filters)
        filters << caption + u" ("_s + patterns + u')';
    return filters;
}

} // namespace

std::optional<QString> ChooseFile(const FileDialogRequest& request)
{
    QFileDialog dialog(QApplication::activeWindow(), request.title);
    dialog.setAttribute(Qt::WA_QuitOnClose, false);
    dialog.setAcceptMode(request.save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode((request.flags & OFN_FILEMUSTEXIST) != 0 ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
    dialog.setOption(QFileDialog::DontConfirmOverwrite, (request.flags & OFN_OVERWRITEPROMPT) == 0);
    dialog.setOption(QFileDialog::HideNameFilterDetails); // the captions name the patterns already
    dialog.setNameFilters(NameFilters(request));
    dialog.setDefaultSuffix(request.defaultExtension);
    dialog.setDirectory(QDir(request.startFolder).exists() ? request.startFolder : QDir::homePath());
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return std::nullopt;
    return QDir(dialog.selectedFiles().constFirst()).absolutePath();
}

} // namespace qor
