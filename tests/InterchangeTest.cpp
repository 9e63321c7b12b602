// A directory's way in and out: fields on any device, the import with its report, the export. Files and dialogs are
// real ones.
#include "interchange/DelimitedReader.h"
#include "interchange/DelimitedWriter.h"
#include "platform/ui/MsgBox.h"
#include "service/frmDIR.h"
#include "store/KELDARPlusFilesAndFolders.h"
#include "support/BoxScript.h"
#include "support/Cases.h"
#include "support/SampleDatabase.h"

#include <csignal>
#include <QBuffer>
#include <QDir>
#include <QPushButton>
#include <QScreen>
#include <QSettings>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace qor;

namespace {

constexpr qint64 unending = 8 << 20;

/// A device that knows no size. It hands out its data over and over, and fails where that is not the data's end.
class Stream : public QIODevice
{
public:
    Stream(QByteArray data, qint64 size, qint64 step) : mData(std::move(data)), mSize(size), mStep(step)
    {
        open(ReadOnly | Unbuffered);
    }
    bool isSequential() const override { return true; }
    qint64 Taken() const { return mTaken; }

protected:
    qint64 readData(char* to, qint64 room) override
    {
        const qint64 count = std::min({room, mStep, mSize - mTaken});
        for (qint64 i = 0; i < count; ++i)
            to[i] = mData[static_cast<qsizetype>(mTaken++ % mData.size())];
        return count > 0 || mSize == mData.size() ? count : -1;
    }
    qint64 writeData(const char* /*data*/, qint64 /*size*/) override { return -1; }

private:
    QByteArray mData;
    qint64 mSize;
    qint64 mStep;
    qint64 mTaken = 0;
};

/// As on a full disk, no file of this process grows beyond the size. Returns the old limit.
rlim_t LimitFileSize(rlim_t size)
{
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    const rlim_t old = std::exchange(limit.rlim_cur, size);
    setrlimit(RLIMIT_FSIZE, &limit);
    return old;
}

/// Every field in brackets, and what ended the reading.
QString FieldsOn(QIODevice& device)
{
    QString fields;
    const QString raised = RaisedBy([&] {
        for (DelimitedReader reader(device); !reader.AtEnd();)
            fields += u'[' + reader.ReadField() + u']';
    });
    return fields + raised.section(u':', 1);
}

QByteArray Utf16(QStringConverter::Encoding encoding, const QString& text)
{
    return QStringEncoder(encoding, QStringConverter::Flag::WriteBom)(text);
}

QByteArray Contents(const QString& fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void Write(const QString& fileName, const QByteArray& contents)
{
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size());
}

QByteArray Entries(int count)
{
    QByteArray lines;
    for (int i = 0; i < count; ++i)
        lines += "Name,First," + QByteArray::number(1000 + i) + "\r\n";
    return lines;
}

QString EntryOf(const ListItems& items, int row)
{
    QStringList texts;
    for (int subItem = 1; subItem <= 5; ++subItem)
        texts << items.Text(row, subItem);
    return texts.join(u'|');
}

const QString listHead = u"CSV File format: (LastName,FirstName,Extension)\n\nERROR IN FOLLOWING ENTRIES:\n"_s;
const QString badLine = u"(1,B,x) :\n     Invalid LastName\n     Invalid Extension\n"_s;
const QString tooMany = u"Too many errors in this CSV file.\n\n"_s;
const ExpectedBox limit = Notice(u"Limited to 500 names in Directory list "_s);
const ExpectedBox invalidFile{u"Invalid csv file format."_s, u"Error"_s, QMessageBox::Warning};

ExpectedBox Rejects(const QString& entries)
{
    return {listHead + entries, u"Error"_s, QMessageBox::Warning};
}

ExpectedBox Overwrite(QMessageBox::StandardButton answer)
{
    return {u"Do you want to overwrite the directory list?"_s, u"Question"_s, QMessageBox::Question, answer};
}

/// The save dialog's own question.
ExpectedBox Replace(QMessageBox::StandardButton answer)
{
    return {u"names.csv already exists.\nDo you want to replace it?"_s, u"Save"_s, QMessageBox::Warning, answer};
}

} // namespace

class InterchangeTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SampleDatabase> mSample;
    std::unique_ptr<QTemporaryDir> mFolder; // of the files and the user's settings
    std::unique_ptr<frmDIR> mForm;

    ListItems& Items() const { return mForm->LVDirectory->Items(); }
    QString Path(const QString& name) const { return mFolder->filePath(name); }
    static QString ReportFile() { return GetMiscFolder() + u"DIRNodeError.txt"_s; }

    void Append(int count, const DirectoryEntry& entry)
    {
        for (int i = 0; i < count; ++i)
            Items().Insert(Items().RowCount(), EntryRow(Items().RowCount() + 1, entry));
    }
    void Run(QPushButton* button, const QString& fileName, const QList<ExpectedBox>& boxes, bool thenCancel = false)
    {
        const QString title = button == mForm->cmdDirSaveList ? u"Save"_s : u"Open"_s;
        BoxScript script;
        script.Expect(ExpectedFileDialog{title, fileName});
        for (const ExpectedBox& box : boxes)
            script.Expect(box);
        if (thenCancel)
            script.Expect(ExpectedFileDialog{title});
        button->click();
    }
    void Import(const QByteArray& contents, const QList<ExpectedBox>& boxes)
    {
        Write(Path(u"names.csv"_s), contents);
        Run(mForm->cmdOpenCSVFilename, Path(u"names.csv"_s), boxes);
    }

private Q_SLOTS:
    void initTestCase()
    {
        InstallErrorBox();
        std::signal(SIGXFSZ, SIG_IGN);
        mSample = std::make_unique<SampleDatabase>();
    }
    void init()
    {
        mFolder = std::make_unique<QTemporaryDir>();
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, mFolder->path());
        QDir(GetMiscFolder()).removeRecursively();
        mForm = std::make_unique<frmDIR>();
        mForm->Load();
        mForm->SetConfigID(1);
        mForm->SetPartitionID(1);
        QVERIFY(BusinessRules().LoadPromptMSGNodeNumber(*mForm));
        mForm->show();
        QVERIFY(QTest::qWaitForWindowActive(mForm.get()));
        mForm->cmdApply->setEnabled(false);
    }
    void cleanup()
    {
        QVERIFY(!QGuiApplication::overrideCursor());
        QVERIFY(mForm->StatusBar1->isHidden() && mForm->Frame1->isEnabled());
        QCOMPARE(mForm->StatusBar1->PanelText(), QString());
    }

    void fields_data()
    {
        QTest::addColumn<QByteArray>("given");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char* name, const QByteArray& given, const QString& expected) {
            QTest::newRow(name) << given << expected;
        };
        const QString past = u" The file ends inside a quoted field."_s;
        const QString tooLong = u" A field is longer than 8192 bytes. Check that the file is a directory list."_s;
        const QByteArray longest(DelimitedReader::highestFieldLength, 'x');
        const QString accents = u"M\u00FCller,Zo\u00EB\r\n\U0001F600"_s;
        const QString accentFields = u"[M\u00FCller][Zo\u00EB][\U0001F600]"_s;
        row("CR LF", "a,b\r\nc,d\r\n", u"[a][b][c][d]"_s);
        row("LF", "a,b\nc,d\n", u"[a][b][c][d]"_s);
        row("CR", "a,b\rc,d\r", u"[a][b][c][d]"_s);
        row("no line end at the end", "a,b", u"[a][b]"_s);
        row("comma at the end", "a,b,", u"[a][b]"_s);
        row("blank lines", "a\r\n\r\n\n\rb\r\n\r\n", u"[a][][][][b][]"_s);
        row("blanks and tabs around", "  \ta b\t ,\t, c \r\n", u"[a b][][c]"_s);
        row("quoted", "\"a,b\r\nc\" , \" d \"\r\n\"\",\"\"\"\",\"e\"\"f\"", u"[a,b\r\nc][ d ][][\"][e\"f]"_s);
        row("quote inside an unquoted field", "a\"b,\"c\"d\"", u"[a\"b][cd\"]"_s);
        row("unterminated", "a,\"b,c\r\n", u"[a]"_s + past);
        row("unterminated after a doubled quote", "\"a\"\"", past);
        row("end-of-file character", "\"a\x1A,b\",c\x1A,d", u"[a\x1A,b][c]"_s);
        row("end-of-file character on its line", "a\r\n\x1A\r\n", u"[a]"_s);
        row("nothing but a mark", "\xEF\xBB\xBF", {});
        row("UTF-8", accents.toUtf8(), accentFields);
        row("UTF-8 mark", "\xEF\xBB\xBF" + accents.toUtf8(), accentFields);
        row("UTF-16 LE", Utf16(QStringConverter::Utf16LE, accents), accentFields);
        row("UTF-16 BE", Utf16(QStringConverter::Utf16BE, accents), accentFields);
        row("UTF-16 cut", Utf16(QStringConverter::Utf16LE, u"a,b"_s) + 'c', u"[a][b]"_s);
        row("Windows-1252", "M\xFCller,\x80\x9F,Zo\xC3\xAB,\xC3", u"[M\u00FCller][\u20AC\u0178][Zo\u00EB][\u00C3]"_s);
        row("across a chunk", QByteArray(65534, ',') + "\"a\"\"b\"", u"[]"_s.repeated(65534) + u"[a\"b]"_s);
        row("longest", longest + ",\"" + longest + '"', u"[%1][%1]"_s.arg(QString::fromLatin1(longest)));
        row("too long", "a," + longest + "x,c", u"[a]"_s + tooLong);
        row("too long, quoted", "\"" + longest + "x\"", tooLong);
    }
    void fields()
    {
        QFETCH(QByteArray, given);
        QBuffer buffer(&given);
        buffer.open(QIODevice::ReadOnly);
        QTEST(FieldsOn(buffer), "expected");
        Stream singleBytes(given, given.size(), 1);
        QTEST(FieldsOn(singleBytes), "expected");
    }

    void writing()
    {
        QBuffer buffer;
        buffer.open(QIODevice::ReadWrite);
        WriteDelimited(buffer, {u"M\u00FCller"_s, u"a\"b"_s, QString(), u" c,\r\nd"_s});
        QCOMPARE(buffer.data(), QByteArray("\"M\xC3\xBCller\",\"a\"\"b\",\"\",\" c,\r\nd\"\r\n"));
        buffer.seek(0);
        QCOMPARE(FieldsOn(buffer), u"[M\u00FCller][a\"b][][ c,\r\nd]"_s);
    }

    // What a device without an end repeats, or one that fails holds; what the import leaves.
    void devices_data()
    {
        AddCases({{"letters", u"A"_s, u"0 broken"_s},
                  {"blanks", u" "_s, u"0 broken"_s},
                  {"quotes", u"\""_s, u"0 broken"_s},
                  {"line ends", u"\r"_s, u"0 rejects"_s},
                  {"entries", u"A,B,1\n"_s, u"500 limit"_s},
                  {"some entries", u"A,B,1\n1,B,1\n"_s, u"21 rejects"_s},
                  {"fails in an entry", u"Adams,Anne,101\nBaker,Ben,102\nClark,..."_s, u"2 broken"_s}});
    }
    void devices()
    {
        QFETCH(QString, given);
        BusinessRules rules;
        Stream device(given.toLatin1(), given.size() > 35 ? 35 : unending, unending);
        const ImportReport report = ReadDirectory(*mForm, rules, device);
        QTEST(QString::number(Items().RowCount()) + (report.HadErrors ? u" rejects"_s : QString()) +
                  (report.LimitReached ? u" limit"_s : QString()) + (report.Broken ? u" broken"_s : QString()),
              "expected");
        QVERIFY2(device.Taken() <= 1 << 20, qPrintable(u"%1 bytes were taken"_s.arg(device.Taken())));
    }

    // Rows that are there, the file, the boxes; the number of rows and the last one.
    void imports_data()
    {
        QTest::addColumn<int>("before");
        QTest::addColumn<QByteArray>("given");
        QTest::addColumn<QList<ExpectedBox>>("boxes");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char* name, int before, const QByteArray& given, const QList<ExpectedBox>& boxes,
                            const QString& expected) { QTest::newRow(name) << before << given << boxes << expected; };
        const QByteArray adams("Adams,Anne,101\r\n");
        const QByteArray baker("Baker,Ben,102\r\n");
        const QByteArray bad("1,B,x\r\n");
        const QString first = u"1 Adams|Anne|101|13|1"_s;
        const QString both = u"2 Baker|Ben|102|27|1"_s;
        const QString full = u"500 Name|First|1499|*|1"_s;
        const QString last = u"LastName\n"_s;
        const QString none = u"     No Data in "_s;
        const QString invalid = u"     Invalid "_s;
        const ExpectedBox bad20 = Rejects(badLine.repeated(20));
        ExpectedBox invalidAfterRejects = Rejects(badLine);
        invalidAfterRejects.text.prepend(u"Invalid csv file format.\n\n"_s);
        row("empty", 0, "", {}, u"0"_s);
        row("header line", 0, "LastName,FirstName,Extension\r\n" + adams,
            {Rejects(u"(LastName,FirstName,Extension) :\n     Invalid Extension\n"_s)}, first);
        row("faults", 0, "Smith,,1\r\n\"Smith, Jr\",B2,1a\r\n, ,\r\n" + adams,
            {Rejects(u"(Smith,,1) :\n"_s + none + u"FirstName\n(Smith, Jr,B2,1a) :\n"_s + invalid + last + invalid +
                     u"FirstName\n"_s + invalid + u"Extension\n(,,) :\n"_s + none + last + none + u"FirstName\n"_s +
                     none + u"Extension\n"_s)},
            first);
        row("accents", 0, "M\xFCller,A,1\r\n", {Rejects(u"(M\u00FCller,A,1) :\n"_s + invalid + last)}, u"0"_s);
        row("UTF-16", 0, Utf16(QStringConverter::Utf16LE, QString::fromLatin1(adams + baker)), {}, both);
        row("long line", 0, "Adams,Anne,101,Baker\r\nBen,102\r\n", {}, both);
        row("short line", 0, "Adams\r\nAnne,101\r\n" + baker, {}, both);
        row("ends inside an entry", 0, adams + "Baker,Ben\r\n", {invalidFile}, first);
        row("trailing blank line", 0, adams + "\r\n", {invalidFile}, first);
        row("ends inside an entry after rejects", 0, bad + adams + "Baker,Ben", {invalidAfterRejects}, first);
        row("rubbish", 0, QByteArray::fromHex("7F454C460201010000FFFE").repeated(900), {invalidFile}, u"0"_s);
        row("20 rejects", 0, bad.repeated(20) + adams, {bad20}, first);
        row("30 rejects", 0, adams + bad.repeated(30) + adams, {Rejects(badLine.repeated(21) + tooMany)}, first);
        row("500 entries", 0, Entries(500), {}, full);
        row("600 entries", 0, Entries(600), {limit}, full);
        row("limit and rejects", 0, bad.repeated(20) + Entries(500) + bad, {limit, bad20}, full);
        row("beyond the limit", 501, adams, {Overwrite(QMessageBox::No)}, u"502 Adams|Anne|101|13|1"_s);
        row("overwrite", 2, adams, {Overwrite(QMessageBox::Yes)}, first);
        row("append", 499, adams + adams, {Overwrite(QMessageBox::No), limit}, u"500 Adams|Anne|101|13|1"_s);
        row("call off", 1, adams, {Overwrite(QMessageBox::Cancel)}, u"1 Old|Row|1|5|2"_s);
    }
    void imports()
    {
        QFETCH(QList<ExpectedBox>, boxes);
        QFETCH(QString, expected);
        QFETCH(int, before);
        QFETCH(QByteArray, given);
        Append(before, {u"Old"_s, u"Row"_s, u"1"_s, u"5"_s, u"2"_s});
        Import(given, boxes);
        const int count = Items().RowCount();
        QString shown = QString::number(count);
        for (int row = 0; row < count; ++row) {
            QCOMPARE(Items().Key(row), RowKey(row + 1));
            shown = QString::number(count) + u' ' + EntryOf(Items(), row);
        }
        QVERIFY2(QRegularExpression::fromWildcard(expected).match(shown).hasMatch(), qPrintable(shown));
        QCOMPARE(mForm->txtCSVFilename->text(), Path(u"names.csv"_s));
        QCOMPARE(mForm->cmdApply->isEnabled(), boxes.isEmpty() || boxes.first().answer != QMessageBox::Cancel);
        QString record;
        if (!boxes.isEmpty() && boxes.last().text.startsWith(listHead))
            record = QLocale::system().toString(QDate::currentDate(), QLocale::ShortFormat) +
                     u"\n============================\n"_s + boxes.last().text + u"\n\n"_s;
        QCOMPARE(Contents(ReportFile()), record.replace(u'\n', u"\r\n"_s).toUtf8());
    }

    // What becomes of the file after it was chosen.
    void unreadableFiles_data()
    {
        AddCases({{"gone", {}, {}}, {"folder", {}, {}}, {"pipe", {}, {}}, {"locked", {}, {}}});
    }
    void unreadableFiles()
    {
        const QString becomes = QString::fromLatin1(QTest::currentDataTag());
        if (becomes == u"locked"_s && geteuid() == 0)
            QSKIP("every file can be read here");
        const QString name = Path(u"names.txt"_s);
        Write(name, "Adams,Anne,101\r\n");
        ExpectedBox notice = Notice(u"Please select a csv file"_s);
        notice.inspect = [&](QMessageBox&) {
            QVERIFY(becomes == u"locked"_s ? QFile::setPermissions(name, {}) : QFile::remove(name));
            QVERIFY(becomes != u"folder"_s || QDir().mkdir(name));
            QVERIFY(becomes != u"pipe"_s || mkfifo(QFile::encodeName(name).constData(), 0600) == 0);
        };
        Run(mForm->cmdOpenCSVFilename, name, {notice, invalidFile});
        QVERIFY(Items().RowCount() == 0 && mForm->cmdApply->isEnabled());
    }

    void reportFile()
    {
        const QString folder = GetMiscFolder().chopped(1);
        Write(folder, {}); // so that the folder cannot be made
        Import("1,B,x\r\n", {Rejects(badLine)});
        QVERIFY(QFile::remove(folder) && QDir().mkpath(folder));
        Write(ReportFile(), QByteArray(5000, 'o'));
        QFile older(ReportFile());
        QVERIFY(older.open(QIODevice::ReadOnly));
        Import("1,B,x\r\n", {Rejects(badLine)});
        QCOMPARE(older.readAll(), QByteArray(5000, 'o')); // replaced, not written over
        QVERIFY(Contents(ReportFile()).endsWith("Invalid Extension\r\n\r\n\r\n"));
        QCOMPARE(QDir(folder).entryList(QDir::Files), QStringList(u"DIRNodeError.txt"_s));
    }

    void errorBoxFitsTheScreen_data()
    {
        const QString wide(4000, u'W');
        AddCases({{"long names", u"%1,2,1\n"_s.arg(wide).repeated(21), {}},
                  {"many lines", u"\"%1\",2,1\n"_s.arg(u"1\n"_s.repeated(100)).repeated(21), {}},
                  {"few wide names", u"%1,2,1\n"_s.arg(wide.first(100)).repeated(3), {}}});
    }
    void errorBoxFitsTheScreen()
    {
        QFETCH(QString, given);
        ExpectedBox box = Rejects(u"*"_s);
        box.inspect = [](QMessageBox& shown) {
            const QSize size = shown.frameGeometry().size();
            QVERIFY2(shown.screen()->availableGeometry().contains(shown.frameGeometry()),
                     qPrintable(QDebug::toString(size)));
            const QAbstractButton* ok = shown.button(QMessageBox::Ok);
            QVERIFY(ok->isVisible() && shown.rect().contains(QRect(ok->mapTo(&shown, QPoint()), ok->size())));
        };
        Import(given.toUtf8(), {box});
    }

    void exportedRows()
    {
        const QStringList rows{u"Adams|Anne|101"_s, u"|Ben|102"_s,       u"Clark||103"_s,
                               u"Davies|Ed|x"_s,    u"O\"B, C|D| 1e2"_s, u"Evans|Eve|"_s};
        for (const QString& row : rows)
            Append(1, {row.section(u'|', 0, 0), row.section(u'|', 1, 1), row.section(u'|', 2), u"5"_s, u"1"_s});
        Run(mForm->cmdDirSaveList, Path(u"names"_s),
            {{u"Error in entry. Invalid entry wouldn't be saved to the file."_s, u"ERROR"_s, QMessageBox::Warning}});
        QCOMPARE(Contents(Path(u"names.csv"_s)),
                 QByteArray("\"Adams\",\"Anne\",\"101\"\r\n\"O\"\"B, C\",\"D\",\" 1e2\"\r\n"));
        for (int row = 0; row < rows.size(); ++row) {
            QString red;
            for (int subItem = 0; subItem <= 5; ++subItem)
                red += Items().ForeColor(row, subItem) == invalidRowColour ? u'r' : u'-';
            QCOMPARE(red, row == 0 || row == 4 ? u"------"_s : u"-rrrr-"_s);
        }
        QVERIFY(!mForm->cmdApply->isEnabled());
    }

    void roundTrip()
    {
        Import(Entries(500), {});
        Run(mForm->cmdDirSaveList, Path(u"out"_s), {});
        const QByteArray written = Contents(Path(u"out.csv"_s));
        mForm->cmdDirEdit->click();
        Import(written, {Overwrite(QMessageBox::Yes)});
        QVERIFY(!mForm->InEditMode() && mForm->cmdDirSaveList->isEnabled());
        for (int row = 0; row < 500; ++row)
            QVERIFY(EntryOf(Items(), row).startsWith(u"Name|First|%1|"_s.arg(1000 + row)));
        QCOMPARE(EntryOf(Items(), 1), u"Name|First|1001|27|1"_s);
    }

    // What is typed, and the answer to the question that follows; the files then, with * if they were replaced.
    void saveNames_data()
    {
        AddCases({{"without ending", u"other"_s, u"names.csv,other.csv,text.txt.csv"_s},
                  {"upper case", u"other.CSV"_s, u"names.csv,other.CSV,text.txt.csv"_s},
                  {"other ending", u"other.txt"_s, u"names.csv,other.txt.csv,text.txt.csv"_s},
                  {"replaced", u"names Yes"_s, u"names.csv*,text.txt.csv"_s},
                  {"kept", u"names No"_s, u"names.csv,text.txt.csv"_s},
                  {"both endings, replaced", u"text.txt Yes"_s, u"names.csv,text.txt.csv*"_s},
                  {"both endings, kept", u"text.txt No"_s, u"names.csv,text.txt.csv"_s}});
    }
    void saveNames()
    {
        QFETCH(QString, given);
        const QString name = given.section(u' ', 0, 0);
        const auto answer = given.endsWith(u"Yes") ? QMessageBox::Yes : QMessageBox::No;
        const QStringList older{u"names.csv"_s, u"text.txt.csv"_s};
        for (const QString& file : older)
            Write(Path(file), "old");
        QList<ExpectedBox> boxes;
        if (name == u"names"_s)
            boxes = {Replace(answer)};
        else if (name == u"text.txt"_s)
            boxes = {{Path(u"text.txt.csv already exists.\nDo you want to replace it?"_s), u"Confirmation"_s,
                      QMessageBox::Question, answer}};
        Run(mForm->cmdDirSaveList, Path(name), boxes, given == u"names No"_s);
        QStringList files = QDir(mFolder->path()).entryList(QDir::Files);
        for (QString& file : files)
            file += older.contains(file) && Contents(Path(file)) != "old" ? u"*"_s : QString();
        QTEST(files.join(u','), "expected");
    }

    // How many rows, and the size that the disk still takes.
    void failedSaves_data()
    {
        AddCases({{"disk full at the end", u"10"_s, u"100"_s},
                  {"disk full on the way", u"500"_s, u"17000"_s},
                  {"locked", u"10"_s, {}}});
    }
    void failedSaves()
    {
        QFETCH(QString, given);
        QFETCH(QString, expected);
        if (expected.isEmpty() && geteuid() == 0)
            QSKIP("every folder can be written here");
        Append(given.toInt(), {QString(40, u'A'), u"Anne"_s, u"1"_s, u"5"_s, u"1"_s});
        const QString name = Path(u"names.csv"_s);
        Write(name, "old");
        if (expected.isEmpty())
            QVERIFY(QFile::setPermissions(mFolder->path(), QFile::ReadOwner | QFile::ExeOwner));
        const QString text =
            u"ERROR in saving entries... \nDESCRIPTION:%1 cannot be written: *. Choose another folder or "
            "free some space.\nLocation: [cmdDirSaveList]"_s.arg(name);
        const rlim_t old = LimitFileSize(expected.isEmpty() ? RLIM_INFINITY : expected.toUInt());
        Run(mForm->cmdDirSaveList, name, {Replace(QMessageBox::Yes), {text, u"ERROR"_s, QMessageBox::Warning}});
        LimitFileSize(old);
        QFile::setPermissions(mFolder->path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QCOMPARE(Contents(name), QByteArray("old"));
        QCOMPARE(QDir(mFolder->path()).entryList(QDir::Files), QStringList(u"names.csv"_s));
    }

    // The saved folder and the form's file; the folder in which the dialogs start.
    void startFolders_data()
    {
        AddCases({{"setting", u"a|b/x.csv"_s, Path(u"a"_s)},
                  {"file", u"|b/x.csv"_s, Path(u"b"_s)},
                  {"neither", u"|"_s, GetConfigsFolder({}).chopped(1)},
                  {"setting of no folder", u"gone|b/x.csv"_s, QDir::homePath()}});
    }
};

QTEST_MAIN(InterchangeTest)
#include "InterchangeTest.moc"
