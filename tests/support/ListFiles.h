// Directory lists in files, as the editor's dialogs read and write them: the boxes that come, the folder of the files.
#pragma once

#include "support/Editor.h"
#include "support/Files.h"
#include "support/SampleDatabase.h"

#include <QPushButton>
#include <QScreen>
#include <QSettings>

namespace qor {

using Boxes = QList<ExpectedBox>;

inline const QString listHead = u"CSV File format: (LastName,FirstName,Extension)\n\nERROR IN FOLLOWING ENTRIES:\n"_s;

/// Whatever a box says, its buttons stay in reach.
inline void FitsTheScreen(QMessageBox& box)
{
    const QRect frame = box.frameGeometry();
    QVERIFY2(box.screen()->availableGeometry().contains(frame), qPrintable(QDebug::toString(frame)));
    const QAbstractButton* button = box.buttons().constFirst();
    QVERIFY(button->isVisible() && box.rect().contains(QRect(button->mapTo(&box, QPoint()), button->size())));
}

/// The lines of rejected entries, and what comes before and behind.
inline ExpectedBox Rejects(const QString& lines, const QString& before = {}, const QString& after = {})
{
    return {before + listHead + lines + after, u"Error"_s, QMessageBox::Warning, QMessageBox::Ok, FitsTheScreen};
}

inline ExpectedBox Overwrite(QMessageBox::StandardButton answer)
{
    return Question(u"Do you want to overwrite the directory list?"_s, answer, u"Question"_s);
}

/// A sample database, and a folder of the files and the user's settings.
class ListFilesTest : public FileTest
{
protected:
    std::unique_ptr<SampleDatabase> mSample;

    void StartAnew()
    {
        mSample = std::make_unique<SampleDatabase>();
        FileTest::StartAnew();
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, mFolder->path());
    }
    QString MiscFolder() const { return mSample->ProductFolder() + u"/Misc"_s; }

    /// Opens the editor on a directory that has these entries.
    void Open(const QStringList& entries, const Editor::User& user) const
    {
        mSample->SetEntries(12, entries);
        Editor::Open(1, 1, 12, user);
    }
    /// Clicks a button, which brings up the dialog and then these boxes.
    static void Run(Editor& editor, const char* button, const ExpectedDialog& dialog, const Boxes& boxes = {})
    {
        editor.Expect(dialog);
        for (const ExpectedBox& box : boxes)
            editor.Expect(box);
        editor.Click(button).Expected();
        QCOMPARE(editor.Focus(), QString::fromLatin1(button));
    }
    void Import(Editor& editor, const QByteArray& contents, const Boxes& boxes = {}) const
    {
        WriteFile(Path(u"names.csv"_s), contents);
        Run(editor, "cmdOpenCSVFilename", FileDialog(u"Open"_s, Path(u"names.csv"_s)), boxes);
    }
};

} // namespace qor
