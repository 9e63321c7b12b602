#include "Picture.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QTableView>
#include <QTextStream>

namespace {

using namespace Qt::StringLiterals;

/// What the editor shows of the node, but for its access code.
QString HeaderText(const QDialog& editor)
{
    const auto comboText = [&](const QString& name) {
        const auto* combo = editor.findChild<QComboBox*>(name);
        return combo ? combo->currentText() : QString();
    };
    const auto* position = editor.findChild<QLabel*>(u"lblRecordPosition"_s);
    const auto* label = editor.findChild<QLineEdit*>(u"txtDescription"_s);
    return u"%1 (%2)\nLabel: %3\nStarting prompt: MSG %4\n"_s.arg(
        comboText(u"cmbNode"_s), position ? position->text() : QString(), label ? label->text() : QString(),
        comboText(u"cmbMSGNodeNumber"_s));
}

/// The columns that can be seen, so no passwords.
QString EntriesText(const QTableView& list)
{
    const QAbstractItemModel& model = *list.model();
    QString text = u"Entries: %1\n"_s.arg(model.rowCount());
    for (int row = 0; row < model.rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < model.columnCount(); ++column) {
            if (!list.isColumnHidden(column))
                cells << model.index(row, column).data().toString();
        }
        text += cells.join(u'\t') + u'\n';
    }
    return text;
}

} // namespace

Picture::Picture(QString fileName) : mFileName(std::move(fileName))
{
    constexpr int lookEvery = 50; // ms
    connect(&mTimer, &QTimer::timeout, this, &Picture::Watch);
    mTimer.start(lookEvery);
}

void Picture::Watch()
{
    QWidget* modal = QApplication::activeModalWidget();
    if (auto* box = qobject_cast<QMessageBox*>(modal))
        Report(*box);
    else if (auto* dialog = qobject_cast<QDialog*>(modal))
        Take(*dialog);
}

void Picture::Take(QDialog& editor)
{
    mTimer.stop();
    QTextStream out(stdout);
    out << HeaderText(editor);
    if (const auto* list = editor.findChild<QTableView*>(u"LVDirectory"_s))
        out << EntriesText(*list);
    mTaken = editor.grab().save(mFileName);
    if (mTaken)
        out << "Picture: " << mFileName << '\n';
    else
        QTextStream(stderr) << "dir-host: the picture " << mFileName << " cannot be written; name another file.\n";
    editor.close();
}

void Picture::Report(QMessageBox& box)
{
    QTextStream(stderr) << box.windowTitle() << ": " << box.text() << '\n';
    box.reject();
}
