// A directory's way in from a file, with its report, and where the dialogs start. Files and dialogs are real ones.
#include "support/ListFiles.h"

#include <QLocale>
#include <sys/stat.h>

using namespace qor;

namespace {

const QByteArray adams("Adams,Anne,101\r\n");
const QByteArray bad("1,B,x\r\n");
const QString badLine = u"(1,B,x) :\n     Invalid LastName\n     Invalid Extension\n"_s;
const ExpectedBox limit = Notice(u"Limited to 500 names in Directory list "_s);
const ExpectedBox invalidFile{u"Invalid csv file format."_s, u"Error"_s, QMessageBox::Warning};

/// The last row with its number.
QString LastOf(const Editor& editor)
{
    const int last = editor.RowCount() - 1;
    return last < 0 ? u"none"_s : editor.Cell(last, 0) + u'|' + editor.Rows().last();
}

/// 480 people as a spreadsheet with semicolons writes them.
QByteArray SpreadsheetList()
{
    static const QStringList lastNames{u"M\u00FCller"_s,   u"Smith"_s, u"O'Neil"_s,
                                       u"Meyer-Landrut"_s, u"Clark"_s, u"Gro\u00DF"_s};
    static const QStringList firstNames{u"Anne"_s, u"Jos\u00E9 Luis"_s, u"Zo\u00EB"_s, u"Bob"_s};
    QString text = u"Last Name;First Name;Extension;Office\r\n"_s;
    for (int person = 0; person < 480; ++person) {
        text += u"%1;%2;%3;\"B; 4\"\r\n"_s.arg(
            lastNames[person % 6], firstNames[person % 4],
            QString::number(1000 + person).insert(2, person % 5 == 0 ? u" "_s : QString()));
    }
    return text.toUtf8();
}

} // namespace

class ImportTest : public ListFilesTest
{
    Q_OBJECT

    /// How many rows are there before, the file, the boxes; the last row. The report file is written when, and only
    /// when, the last box is a report.
    void Imports(int before, const QByteArray& given, const Boxes& boxes, const QString& expected,
                 int line = __builtin_LINE())
    {
        init();
        const QString reportFile = MiscFolder() + u"/DIRNodeError.txt"_s;
        if (before == 0) { // a link in place of the file; else there is not even a folder
            QVERIFY(QDir().mkpath(MiscFolder()));
            WriteFile(Path(u"other"_s), "old");
            QVERIFY(QFile::link(Path(u"other"_s), reportFile));
        }
        Open(QStringList(before, u"Old|Row|1|5|2"_s), [&](Editor& editor) {
            Import(editor, given, boxes);
            CompareAt(line, LastOf(editor), expected);
            QCOMPARE(editor.Text("txtCSVFilename"), Path(u"names.csv"_s));
            QCOMPARE(editor.IsDirty(), boxes.isEmpty() || boxes.first().answer != QMessageBox::Cancel);
        });
        QString record = before == 0 ? u"old"_s : QString();
        if (!boxes.isEmpty() && boxes.last().text.startsWith(listHead))
            record = QLocale::system().toString(QDate::currentDate(), QLocale::ShortFormat) +
                     u"\n============================\n"_s + boxes.last().text + u"\n\n"_s;
        QVERIFY(before != 0 || ReadFile(Path(u"other"_s)) == "old");
        CompareAt(line, QString::fromUtf8(ReadFile(reportFile)), record.replace(u'\n', u"\r\n"_s));
    }

private Q_SLOTS:
    void init() { StartAnew(); }

    // All are in after two rounds: the table, then what is suggested for the refused.
    void spreadsheetOf480People()
    {
        const QString question = u"This does not look like a plain LastName,FirstName,Extension file.\nRead as a table "
                                 "parted by semicolons, with the heading \"Last Name;First Name;Extension;Office\", "
                                 "* of 480 lines are entries.\nDo you want to read it so?"_s;
        const auto ask = [&](QMessageBox::StandardButton answer) { return Question(question, answer, u"Question"_s); };
        const QStringList files{u"DIRNodeError.txt"_s, u"DIRNodeRejected.csv"_s, u"DIRNodeSuggested.csv"_s};
        Open({u"Baker|Ben|1|1|1"_s}, [&](Editor& e) {
            Import(e, SpreadsheetList(), {ask(QMessageBox::Cancel)});
            QVERIFY(!e.IsDirty() && e.RowCount() == 1);
            Import(e, SpreadsheetList(), {ask(QMessageBox::Yes), Overwrite(QMessageBox::Yes), Rejects(u"*"_s)});
            QVERIFY(e.RowCount() > 0 && e.RowCount() < 100);
            QCOMPARE(EntriesOf(MiscFolder()).filter(QRegularExpression(u"^DIRNode"_s)), files);
            for (const QString& file : files)
                QCOMPARE(QFile::permissions(MiscFolder() + u'/' + file) & (QFile::ReadGroup | QFile::ReadOther), 0);
            // Unmended, the rejected are refused again, one by one the same.
            const QByteArray rejected = ReadFile(MiscFolder() + u'/' + files[1]);
            e.Expect(Overwrite(QMessageBox::No), Rejects(u"*"_s));
            e.ChooseInMenu(u"Import Rejected Entries"_s, "cmdOpenCSVFilename").Expected();
            QCOMPARE(e.Text("txtCSVFilename"), MiscFolder() + u'/' + files[1]);
            QVERIFY(rejected.endsWith(ReadFile(MiscFolder() + u'/' + files[1]).right(2000)));
            Run(e, "cmdOpenCSVFilename", FileDialog(u"Open"_s, MiscFolder() + u'/' + files[2]),
                {Overwrite(QMessageBox::No)});
            QCOMPARE(e.RowCount(), 480);
            QCOMPARE(EntriesOf(MiscFolder()).filter(QRegularExpression(u"^DIRNode"_s)), files.first(1));
            QCOMPARE(e.Rows().filter(QRegularExpression(u"^Meyer-?Landrut\\|"_s)).size(), 80);
        });
    }

    void importOneFile()
    {
        const QString one = u"1|Adams|Anne|101|13|1"_s;
        Imports(0, "", {}, u"none"_s);
        Imports(0, "\"Smith, Jr\",M\xFCller,1\r\n, ,1a\r\n" + adams,
                {Rejects(u"(Smith, Jr,M\u00FCller,1) :\n     Invalid LastName\n     Invalid FirstName\n(,,1a) :\n     "
                         "No Data in LastName\n     No Data in FirstName\n     Invalid Extension\n"_s)},
                one);
        Imports(0, bad + adams + "B", {Rejects(badLine, invalidFile.text + u"\n\n"_s)}, one);
    }

    void importManyEntries()
    {
        const QString full = u"500|Adams|Anne|101|162|1"_s;
        const QString line = u"(%1,2,1) :\n     Invalid FirstName\n"_s.arg(QString(400, u'W'));
        Imports(0, (QByteArray(400, 'W') + ",2,1\r\n").repeated(30),
                {Rejects(line.repeated(21), {}, u"Too many errors in this CSV file.\n\n"_s)}, u"none"_s);
        Imports(0, bad.repeated(20) + adams.repeated(500) + bad, {limit, Rejects(badLine.repeated(20))}, full);
    }

    void importOverRows()
    {
        Imports(501, adams, {Overwrite(QMessageBox::No)}, u"502|Adams|Anne|101|13|1"_s);
        Imports(499, bad + adams + adams, {Overwrite(QMessageBox::No), limit, Rejects(badLine)},
                u"500|Adams|Anne|101|13|1"_s);
        Imports(1, adams, {Overwrite(QMessageBox::Cancel)}, u"1|Old|Row|1|5|2"_s);
    }

    void numbersInUseCannotBeRead()
    {
        Open({}, [&](Editor& editor) {
            mSample->Run(u"ALTER TABLE Node_MSG RENAME TO gone"_s);
            Import(editor, adams.repeated(30), {ErrorReport(u"GetNextAvailableMSGNODENUMBER"_s, u"*dir-db check*"_s)});
            QCOMPARE(editor.Rows(), QStringList(30, u"Adams|Anne|101|1|1"_s));
        });
    }

    // A click that was meant for the rows before does not reach those that are read.
    void inputMeantForOlderRows()
    {
        Open({u"Old|Row|1|5|2"_s}, [&](Editor& editor) {
            ExpectedBox question = Overwrite(QMessageBox::No);
            question.inspect = [&](QMessageBox&) { editor.QueueRemoval(); };
            editor.ClickRow(0);
            Import(editor, adams, {question});
            QCoreApplication::processEvents();
            QCOMPARE(editor.Rows(), (QStringList{u"Old|Row|1|5|2"_s, u"Adams|Anne|101|13|1"_s}));
        });
    }

    // What a file became after it was chosen may never end.
    void pipeInPlaceOfTheFile()
    {
        const QString name = Path(u"names.txt"_s);
        WriteFile(name, adams);
        ExpectedBox notice = Notice(u"Please select a csv file"_s);
        notice.inspect = [&](QMessageBox&) { QVERIFY(QFile::remove(name) && mkfifo(qPrintable(name), 0600) == 0); };
        Open({}, [&](Editor& editor) {
            Run(editor, "cmdOpenCSVFilename", FileDialog(u"Open"_s, name), {notice, invalidFile});
            QVERIFY(editor.RowCount() == 0 && editor.IsDirty());
        });
    }

    void reportThatCannotBeWritten()
    {
        WriteFile(MiscFolder(), {}); // so that no folder can be made
        Open({}, [&](Editor& editor) { Import(editor, bad, {Rejects(badLine)}); });
    }

    // The saved folder and the form's file; the folder in which the dialogs start.
    void startFolders()
    {
        const auto check = [&](const QString& saved, const QString& file, const QString& expected) {
            init();
            const QString folder = Path(expected.isEmpty() ? mSample->ProductFolder() + u"/Configs"_s : expected);
            QVERIFY(QDir().mkpath(folder) && QDir().mkpath(Path(u"Quorvanta"_s)));
            if (!saved.isEmpty())
                WriteFile(Path(u"Quorvanta/KELDAR+.ini"_s), "[DialogDir]\nDialogDir=" + Path(saved).toUtf8() + '\n');
            Open({}, [&](Editor& editor) {
                if (!file.isEmpty())
                    editor.Paste("txtCSVFilename", Path(file));
                Run(editor, "cmdOpenCSVFilename", FileDialog(u"Open"_s, {}, folder));
                QVERIFY(editor.IsDirty()); // though nothing was read
            });
        };
        check(u"a"_s, u"b/x.csv"_s, u"a"_s);
        check({}, u"b/x.csv"_s, u"b"_s);
        check({}, {}, {});
        check(u"gone"_s, u"b/x.csv"_s, QDir::homePath());
    }
};

QTEST_MAIN(ImportTest)
#include "ImportTest.moc"
