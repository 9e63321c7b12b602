// Entries over the clipboard: the text that spreadsheets exchange, and copy, cut and paste in the directory list.
#include "interchange/DirectoryClipboard.h"
#include "rules/TabularText.h"
#include "service/frmDIR.h"
#include "store/KELDARPlusFilesAndFolders.h"
#include "support/BoxScript.h"
#include "support/Cases.h"
#include "support/SampleDatabase.h"

#include <QClipboard>
#include <QDir>

using namespace qor;

namespace {

/// The editor on a directory that has these last names. The prompts count from 5.
struct Directory
{
    explicit Directory(const QString& names)
    {
        form.Load();
        form.SetConfigID(1);
        form.SetPartitionID(1);
        ResetDirectoryListView(*form.LVDirectory);
        rules.LoadPromptMSGNodeNumber(form);
        for (const QString& name : names.split(u',', Qt::SkipEmptyParts))
            items.Append({EntryRow(items.RowCount() + 1,
                                   {name, u"Y"_s, u"1"_s, QString::number(items.RowCount() + 5), u"!"_s})});
        form.MarkUnchanged();
    }
    /// "0,2" selects these rows, "=text" goes to the clipboard.
    void Do(const QString& step)
    {
        if (step.startsWith(u'c'))
            return step == u"cut"_s ? clipboard.Cut() : clipboard.Copy();
        if (step == u"edit"_s || step == u"paste"_s)
            return step == u"edit"_s ? commands.cmdDirEdit_Click() : clipboard.Paste();
        if (step.startsWith(u'='))
            return QGuiApplication::clipboard()->setText(step.sliced(1));
        for (const QString& row : step.split(u','))
            form.LVDirectory->SetSelected(row.toInt(), true);
    }
    /// "1aA5!* 2aB6": key, last name, prompt, a password that no new entry has, * where it is selected; the last three
    /// rows.
    QString Rows() const
    {
        QString rows;
        for (int row = qMax(0, items.RowCount() - 3); row < items.RowCount(); ++row)
            rows += items.Key(row) + items.Text(row, 1) + items.Text(row, 4) + items.Text(row, 5).remove(u'1') +
                    (form.LVDirectory->IsSelected(row) ? u"* "_s : u" "_s);
        return rows.trimmed();
    }

    frmDIR form;
    ListItems& items = form.LVDirectory->Items();
    BusinessRules rules;
    History history{form};
    DirectoryListEvents events{form, history};
    EntryCommands commands{form, rules, events, history};
    DirectoryClipboard clipboard{form, rules, commands, history};
};

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
        const QString two = u" =C\tCy\t1\nD\tDi\t2 paste"_s;
        const QString undoOne = u"|Undo Paste 1 Entry"_s;
        const QString undo = u"|Undo Paste 2 Entries"_s;
        const QString head = u"CSV File format: (LastName,FirstName,Extension)\n\nERROR IN FOLLOWING ENTRIES:\n"_s;
        const QString fault = u"|"_s + head + u"(1,B,x) :\n     Invalid LastName\n     Invalid Extension\n"_s;
        const QString full = u"|Limited to 500 names in Directory list "_s;
        const QString none =
            u"|Undo|The clipboard holds no entries. Copy rows with LastName, FirstName and Extension."_s;
        AddCases(
            {{"empty list", two, u"1aC13* 2aD27*"_s + undo},
             {"one selected", u"A,B 0"_s + two, u"4aD27* 1aA5! 2aB6!"_s + undo},
             {"refused", u"A,B 0,1 =1\tB\tx\nC\tCy\t1 paste"_s, u"1aA5! 2aB6! 3aC13*"_s + undoOne + fault},
             {"nothing usable", u"A =C\tCy\nD paste"_s, u"1aA5!"_s + none},
             {"up to the limit", u"A,"_s.repeated(499) + two, u"498aA502! 499aA503! 500aC13*"_s + undoOne + full},
             {"at the limit", u"A,"_s.repeated(500) + two, u"498aA502! 499aA503! 500aA504!|Undo"_s + full},
             {"copied", u"A,B,C 2,0 copy paste"_s, u"3aC7! 4aA13* 5aC27*"_s + undo},
             {"cut", u"A,B,C,D 0,2 cut"_s, u"1aB6!* 2aD8!|Undo Cut 2 Entries"_s},
             {"cut and pasted twice", u"A,B 0 cut paste paste"_s, u"3aA13* 2aA5! 1aB6!"_s + undoOne},
             {"cut, then changed", u"A,B 0 cut =A\tY\t1\t5 paste"_s, u"2aA13* 1aB6!"_s + undoOne},
             {"edit mode", u"A,B 1 =C\tCy\t1 edit copy cut paste edit paste"_s, u"1aA5! 3aC13* 2aB6!"_s + undoOne}});
    }
    void clipboard()
    {
        QFETCH(QString, given);
        QFETCH(QString, expected);
        QDir(GetMiscFolder()).removeRecursively();
        Directory directory(given.section(u' ', 0, 0));
        const std::vector<ListRow> before = directory.items.Rows();
        BoxScript boxes;
        const QString text = expected.section(u'|', 2);
        const bool refused = text.startsWith(u"CSV");
        if (!text.isEmpty())
            boxes.Expect(refused ? ExpectedBox{text, u"Error"_s, QMessageBox::Warning} : Notice(text));
        for (const QString& step : given.split(u' ').sliced(1))
            directory.Do(step);
        QCOMPARE(directory.Rows() + u'|' + directory.history.UndoText(), expected.section(u'|', 0, 1));
        QCOMPARE(directory.form.cmdApply->isEnabled(), directory.history.CanUndo());
        QCOMPARE(QFile::exists(GetMiscFolder() + u"DIRNodeError.txt"_s), refused);
        QVERIFY(!QGuiApplication::clipboard()->text().contains(u'!'));
        while (directory.history.CanUndo())
            directory.history.Undo();
        QVERIFY(directory.items.Rows() == before);
    }
};

QTEST_MAIN(ClipboardTest)
#include "ClipboardTest.moc"
