// Finding entries in the list, and the sizes that the form takes: keys and sizes go in, what is shown comes out.
#include "editor/DirectoryListEvents.h"
#include "editor/FindEntries.h"
#include "editor/History.h"
#include "form/ModuleState.h"
#include "platform/shell/SavedSettings.h"
#include "platform/ui/Events.h"
#include "service/ListViewHook.h"
#include "support/BareForm.h"

#include <QHelpEvent>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QToolTip>

using namespace qor;

/// Shown with these last names, the second row chosen and the hook on its list.
struct FindForm : BareForm
{
    explicit FindForm(const QString& names)
    {
        OnEvent(fraFind, &FindLine::TextChanged, &find, &FindEntries::TextChanged);
        OnEvent(fraFind, &FindLine::Next, &find, &FindEntries::FindNext);
        OnEvent(fraFind, &FindLine::Previous, &find, &FindEntries::FindPrevious);
        OnEvent(fraFind, &FindLine::Closed, &find, &FindEntries::Close);
        ResetDirectoryListView(list);
        HideEntryEditors();
        for (int number = 600; const QString& name : names.split(u','))
            list.Items().Append({EntryRow(number++, {name, u"Anne"_s, u"101"_s, u"5"_s, u"77"_s})});
        list.SetSelected(1, true);
        Module().LoadedForm = this;
        Module().OldListViewProc = SetWindowLongA(list.Handle(), GWL_WNDPROC, ListViewWindowProc);
        show();
        QTRY_VERIFY(isActiveWindow());
    }
    /// Types a text. Its answer is the row that is then selected alone, and the count.
    QString Find(const QString& keys, Qt::KeyboardModifiers modifiers = {})
    {
        find.Open();
        QTest::keyClicks(focusWidget(), keys, modifiers);
        return Found();
    }
    QString Found() const
    {
        const QString count = fraFind->findChild<QLabel*>(u"lblFindCount"_s)->text();
        return u"%1: "_s.arg(list.SelectedRows().size() == 1 ? list.SelectedRows().front() : -1) + count;
    }

    ListView& list = *LVDirectory;
    History history{*this};
    DirectoryListEvents events{*this, history};
    FindEntries find{*this, events};
};

class FindTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsAndLeavesTheButtonsAlone()
    {
        FindForm form(u"Adams,Baker,Clark,BARNES,Zabel"_s);
        const QSignalSpy pressed(form.cmdOK, &QPushButton::clicked);
        const QSignalSpy cancelled(form.cmdCancel, &QPushButton::clicked);
        QCOMPARE(form.Find(u"b"_s), u"1: 1 of 3"_s);
        QCOMPARE(form.Find(u"b\r\r\r"_s), u"1: 1 of 3"_s);
        QCOMPARE(form.Find(u"\r"_s, Qt::ShiftModifier), u"4: 3 of 3"_s);
        QCOMPARE(form.Find(u"101"_s), u"4: 5 of 5"_s);
        QCOMPARE(form.Find(u"77"_s) + form.Find(u"60"_s), u"4: 0 of 04: 0 of 0"_s); // passwords, row numbers
        QCOMPARE(form.Find(u"b"_s), u"4: 3 of 3"_s);
        form.list.Items().Remove({0});
        QTRY_COMPARE(form.Found(), u"3: 3 of 3"_s);
        QTest::keyClick(form.focusWidget(), Qt::Key_Escape);
        QVERIFY(pressed.isEmpty() && cancelled.isEmpty() && form.fraFind->isHidden() && form.list.hasFocus());
        form.find.FindNext();
        QCOMPARE(form.list.SelectedRows(), std::vector{0});
    }

    void fieldsFollowWhatIsFoundAndTheSize()
    {
        FindForm form(u"Adams,Baker"_s + u",Clark"_s.repeated(60) + u",Young"_s);
        form.SetEditMode(true);
        form.events.LVDirectory_ItemClick(1);
        QCOMPARE(form.Find(u"you"_s), u"62: 1 of 1"_s);
        for (const QSize size : {QSize(700, 700), QSize(1, 1)}) {
            form.resize(size);
            QCOMPARE(form.list.columnWidth(1) + form.list.columnWidth(2), 2 * 107 + form.width() - 465);
            QVERIFY(form.EntryEditorsShown() && form.txtLastName->text() == u"Young");
            QCOMPARE(form.txtLastName->y(), form.list.y() + form.list.RowRect(62).y());
            QVERIFY(form.txtLastName->geometry().bottom() < form.fraFind->y());
            QCOMPARE(form.focusWidget()->objectName(), u"txtFind"_s);
        }
    }

    void sizesComeBack()
    {
        const QTemporaryDir folder;
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, folder.path());
        const auto use = [](bool isNewNode, const QSize& size = {}) {
            BareForm form;
            if (isNewNode)
                form.CompactLayoutWithoutNavigation();
            form.show();
            const QString opened = u"%1x%2+%3 "_s.arg(form.width()).arg(form.height()).arg(form.LVDirectory->height());
            form.resize(size.isValid() ? size : form.size());
            form.hide();
            return opened + GetSetting(u"KELDAR+"_s, u"DIREditor"_s, u"FormSize"_s);
        };
        QCOMPARE(use(false), u"465x487+225 "_s);
        QCOMPARE(use(true), u"465x455+225 "_s);
        QCOMPARE(use(false, {600, 700}), u"465x487+225 600x700"_s);
        QCOMPARE(use(true, {500, 668}), u"600x668+438 500x700"_s);
        SaveSetting(u"KELDAR+"_s, u"DIREditor"_s, u"FormSize"_s, u"1x9999"_s);
        QVERIFY(use(false).startsWith(u"465x%1+"_s.arg(QGuiApplication::primaryScreen()->availableSize().height())));
    }

    void cutTextsAndTheFirstFocus()
    {
        BareForm form;
        form.txtDescription->Fill(u"W"_s.repeated(30));
        QHelpEvent hover(QEvent::ToolTip, {5, 5}, {5, 5});
        QCoreApplication::sendEvent(form.txtDescription, &hover);
        QCOMPARE(QToolTip::text(), form.txtDescription->text());
        form.ShowPosition(u"1150 of 1200"_s);
        QVERIFY(form.lblRecordPosition->sizeHint().width() <= form.lblRecordPosition->width());
        form.cmdFirst->setEnabled(false);
        form.FocusFirstControl();
        QCOMPARE(form.focusWidget(), form.cmdPrevious);
    }
};

QTEST_MAIN(FindTest)
#include "FindTest.moc"
