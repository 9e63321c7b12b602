// Entries over the clipboard: the text that spreadsheets exchange, and copy, cut and paste in the directory list, and
// the menu that offers them.
#include "rules/TabularText.h"
#include "store/KELDARPlusFilesAndFolders.h"
#include "support/Cases.h"
#include "support/ListFiles.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QMenu>

using namespace qor;

namespace {

/// "0,2" selects these rows, "=text" goes to the clipboard, other steps are keys.
void Do(Editor& editor, const QString& step)
{
    if (step.startsWith(u'='))
        return QGuiApplication::clipboard()->setText(step.sliced(1));
    if (!step.front().isDigit()) {
        editor.ListKeys(step.toLatin1().constData());
        return;
    }
    for (const QString& row : step.split(u','))
        editor.ClickRow(row.toInt(), row == step.section(u',', 0, 0) ? Qt::NoModifier : Qt::ControlModifier);
}

/// "1A5!* 2B6": number, last name, prompt, a password that no new entry has, * where it is selected; the last three
/// rows.
QString LastRows(const Editor& editor)
{
    QStringList rows;
    for (int row = qMax(0, editor.RowCount() - 3); row < editor.RowCount(); ++row)
        rows << editor.Cell(row, 0) + editor.Cell(row, 1) + editor.Cell(row, 4) + editor.Cell(row, 5).remove(u'1') +
                    (editor.Selected().contains(row) ? u"*"_s : QString());
    return rows.join(u' ');
}

} // namespace

class ClipboardTest : public QObject
{
    Q_OBJECT

    SampleDatabase mSample;

private Q_SLOTS:
    void tabularText_data()
    {
        const QString longest(TabularReader::highestFieldLength, u'x');
        AddCases(
            {{"line ends", u"a;b\t c,d \te\tf\r\ng\th\ti\rj\tk\tl\n"_s, u"[a;b][c,d][e] [g][h][i] [j][k][l]"_s},
             {"quoted", u"\"a\tb\"\t\"c\r\nd\" \t\"e\"\"\"\n\"\"\tf\t\"g\"h"_s, u"[a\tb][c\r\nd][e\"] [][f][gh]"_s},
             {"not closed", u"a\"b\t\"c\td\n\"\"\te\tf"_s, u"[a\"b][\"c][d] [][e][f]"_s},
             {"blank lines", u"\n\r\n \t\t \t\na\0\n\nb\t\n\t"_s, u"[a\0] [b][]"_s},
             {"captions", u" lastname;FirstName ;EXTENSION;Prompt\nLastName;b,; \"c;d\""_s, u"[LastName][b,][c;d]"_s},
             {"too long", longest + u",\u00A0b ,\""_s + longest + u"x\""_s, u"[%1][b][%1\u2026]"_s.arg(longest)},
             {"megabytes", u'"' + u"\"\"\t"_s.repeated(1 << 20), u"[\"\"\"][][]"_s}});
    }
    void tabularText()
    {
        QFETCH(QString, given);
        QStringList rows; // "[a][b]": the fields of each
        for (TabularReader reader(given); !reader.AtEnd();)
            rows << u'[' + reader.ReadRow().join(u"]["_s) + u']';
        QTEST(rows.join(u' '), "expected");
    }

    void written()
    {
        QCOMPARE(TabularText({{u"a\tb"_s, u"\n"_s, u"\""_s, u"7"_s, u"!"_s}}), u"\"a\tb\"\t\"\n\"\t\"\"\"\"\t7\n"_s);
    }

    // Names and steps; the rows, what can be undone and the box's text.
    void clipboard_data()
    {
        const QString two = u" =C\tCy\t1\nD\tDi\t2 Ctrl+V"_s;
        const QString undoOne = u"|Undo Paste 1 Entry"_s;
        const QString undo = u"|Undo Paste 2 Entries"_s;
        const QString fault = u"|"_s + listHead + u"(1,B,x) :\n     Invalid LastName\n     Invalid Extension\n"_s;
        const QString full = u"|Limited to 500 names in Directory list "_s;
        const QString none = u"||The clipboard holds no entries. Copy rows with LastName, FirstName and Extension."_s;
        AddCases({{"empty list", two, u"1C13* 2D27*"_s + undo},
                  {"one selected", u"A,B 0"_s + two, u"4D27* 1A5! 2B6!"_s + undo},
                  {"refused", u"A,B 0,1 =1\tB\tx\nC\tCy\t1 Ctrl+V"_s, u"1A5! 2B6! 3C13*"_s + undoOne + fault},
                  {"nothing usable", u"A =C\tCy\nD Ctrl+V"_s, u"1A5!"_s + none},
                  {"up to the limit", u"A,"_s.repeated(499) + two, u"498A502! 499A503! 500C13*"_s + undoOne + full},
                  {"at the limit", u"A,"_s.repeated(500) + two, u"498A502! 499A503! 500A504!|"_s + full},
                  {"copied", u"A,B,C 2,0 Ctrl+C Ctrl+V"_s, u"3C7! 4A13* 5C27*"_s + undo},
                  {"cut", u"A,B,C,D 0,2 Ctrl+X"_s, u"1B6!* 2D8!|Undo Cut 2 Entries"_s},
                  {"cut and pasted twice", u"A,B 0 Ctrl+X Ctrl+V Ctrl+V"_s, u"3A13* 2A5! 1B6!"_s + undoOne},
                  {"cut, then changed", u"A,B 0 Ctrl+X =A\tY\t1\t5 Ctrl+V"_s, u"2A13* 1B6!"_s + undoOne},
                  {"edit mode", u"A,B 1 =C\tCy\t1 Alt+E Ctrl+C Ctrl+X Ctrl+V Alt+E Ctrl+V"_s,
                   u"1A5! 3C13* 2B6!"_s + undoOne}});
    }
    void clipboard()
    {
        QFETCH(QString, given);
        QFETCH(QString, expected);
        QDir(GetMiscFolder()).removeRecursively();
        QStringList entries = given.section(u' ', 0, 0).split(u',', Qt::SkipEmptyParts);
        for (int i = 0; i < entries.size(); ++i)
            entries[i] += u"|Y|1|%1|!"_s.arg(5 + i);
        mSample.SetEntries(12, entries);
        Editor::Open(1, 1, 12, [&](Editor& editor) {
            const QStringList before = editor.Rows();
            const QString text = expected.section(u'|', 2);
            const bool refused = text.startsWith(u"CSV");
            if (!text.isEmpty())
                editor.Expect(refused ? ExpectedBox{text, u"Error"_s, QMessageBox::Warning} : Notice(text));
            for (const QString& step : given.split(u' ').sliced(1))
                Do(editor, step);
            QCOMPARE(editor.Expected().IsDirty(), expected.contains(u"|Undo "_s));
            QCOMPARE(LastRows(editor), expected.section(u'|', 0, 0));
            QCOMPARE(QFile::exists(GetMiscFolder() + u"DIRNodeError.txt"_s), refused);
            QVERIFY(!QGuiApplication::clipboard()->text().contains(u'!'));
            const int after = editor.RowCount();
            if (editor.IsDirty())
                QVERIFY(editor.ChooseInMenu(expected.section(u'|', 1, 1)).RowCount() != after);
            QCOMPARE(editor.ListKeys("Ctrl+Z").ListKeys("Ctrl+Z").ListKeys("Ctrl+Z").Rows(), before);
        });
    }

    void menuAndNotes()
    {
        mSample.SetEntries(7, {u"Smith|Anne|1|5|1"_s});
        Editor::Open(1, 1, 7, [](Editor& editor) {
            QGuiApplication::clipboard()->clear();
            editor.Click("cmdDirAdd");
            const QModelIndex added = editor.List().model()->index(1, 1);
            for (const int role : {int(Qt::ToolTipRole), int(Qt::AccessibleDescriptionRole)})
                QCOMPARE(added.data(role), u"Incomplete: No Data in LastName, No Data in FirstName"_s);
            QVERIFY(added.siblingAtRow(0).data(Qt::ToolTipRole).toString().isEmpty());
            QStringList items;
            QTimer timer;
            timer.callOnTimeout([&] {
                auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
                if (!menu)
                    return;
                const QAccessibleInterface* read = QAccessible::queryAccessibleInterface(menu);
                for (int i = 0; i < read->childCount(); ++i)
                    items << (read->child(i)->state().disabled ? u"-"_s : QString()) +
                                 read->child(i)->text(QAccessible::Name) + u' ' +
                                 read->child(i)->text(QAccessible::Accelerator);
                menu->close();
            });
            timer.start(1);
            QContextMenuEvent event(QContextMenuEvent::Keyboard, {}, {});
            QCoreApplication::sendEvent(editor.List().viewport(), &event);
            QCOMPARE(items.join(u';'),
                     u"Undo Add 1 Entry Ctrl+Z;-Redo Ctrl+Y;Cut Ctrl+X;Copy Ctrl+C;-Paste Ctrl+V;Remove Del;"
                     "Move Up Alt+Up;Move Down Alt+Down;Select All Ctrl+A;Find... Ctrl+F;-Earlier Versions... "_s);
        });
    }
};

QTEST_MAIN(ClipboardTest)
#include "ClipboardTest.moc"
