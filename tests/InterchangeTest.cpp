// A directory's way in and out: fields on any device, the import with its report, the export, the file dialogs. Files
// and dialogs are real ones.
#include "interchange/DelimitedReader.h"
#include "interchange/DelimitedWriter.h"
#include "service/frmDIR.h"
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

/// A device that knows no size: it hands out its data over and over, in steps, up to an end or a failure.
class Stream : public QIODevice
{
public:
    Stream(QByteArray data, qint64 size, qint64 step, bool fails)
        : mData(std::move(data)), mSize(size), mStep(step), mFails(fails)
    {
        open(ReadOnly | Unbuffered);
    }
    bool isSequential() const override { return true; }
    qint64 Taken() const { return mTaken; }

protected:
    qint64 readData(char* to, qint64 room) override
    {
        const qint64 count = qMin(qMin(room, mStep), mSize - mTaken);
        for (qint64 i = 0; i < count; ++i)
            to[i] = mData[static_cast<qsizetype>(mTaken++ % mData.size())];
        if (count > 0 || !mFails)
            return count;
        setErrorString(u"it was pulled out"_s);
        return -1;
    }
    qint64 writeData(const char* /*data*/, qint64 /*size*/) override { return -1; }

private:
    QByteArray mData;
    qint64 mSize;
    qint64 mStep;
    qint64 mTaken = 0;
    bool mFails;
};

/// No file of this process grows beyond a size, as on a full disk.
class FullDisk
{
public:
    explicit FullDisk(rlim_t size)
    {
        getrlimit(RLIMIT_FSIZE, &mOld);
        const rlimit limit{size, mOld.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk()
    {
        setrlimit(RLIMIT_FSIZE, &mOld);
        std::signal(SIGXFSZ, mOldHandler);
    }
    Q_DISABLE_COPY_MOVE(FullDisk)

private:
    rlimit mOld{};
    sighandler_t mOldHandler = std::signal(SIGXFSZ, SIG_IGN);
};

/// Every field in brackets, and what ended the reading.
QString FieldsOn(QIODevice& device)
{
    QString fields;
    fields += RaisedBy([&] {
        DelimitedReader reader(device);
        while (!reader.AtEnd())
            fields += u'[' + reader.ReadField() + u']';
    });
    return fields;
}

QByteArray Utf16(QStringConverter::Encoding encoding, const QString& text)
{
    return QStringEncoder(encoding, QStringConverter::Flag::WriteBom)(text);
}

QByteArray Contents(const QString& fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
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
    QStringList texts{items.Key(row)};
    for (int subItem = 0; subItem <= 5; ++subItem)
        texts << items.Text(row, subItem);
    return texts.join(u'|');
}

/// How many rows, the first and the last.
QString Shown(const ListItems& items)
{
    const int count = items.RowCount();
    return QString::number(count) + (count > 0 ? u' ' + EntryOf(items, 0) : QString()) +
           (count > 1 ? u' ' + EntryOf(items, count - 1) : QString());
}

const QString listHead = u"CSV File format: (LastName,FirstName,Extension)\n\nERROR IN FOLLOWING ENTRIES:\n"_s;
const QString headerRejected = u"(LastName,FirstName,Extension) :\n     Invalid Extension\n"_s;
const QString invalidFile = u"Invalid csv file format."_s;
const QString tooMany = u"Too many errors in this CSV file.\n\n"_s;
const QString badEntry = u"(1,B,x) :\n     Invalid LastName\n     Invalid Extension\n"_s;
const ExpectedBox limitNotice = Notice(u"Limited to 500 names in Directory list "_s);

ExpectedBox Error(const QString& text)
{
    return {text, u"Error"_s, QMessageBox::Warning};
}

ExpectedBox Overwrite(QMessageBox::StandardButton answer)
{
    return {u"Do you want to overwrite the directory list?"_s, u"Question"_s, QMessageBox::Question, answer};
}

ExpectedBox SaveError(const QString& description)
{
    return {u"ERROR in saving entries... \nDESCRIPTION:%1\nLocation: [cmdDirSaveList]"_s.arg(description), u"ERROR"_s,
            QMessageBox::Warning};
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
    std::unique_ptr<QTemporaryDir> mFolder; // of the files, and of the user's settings
    std::unique_ptr<SampleDatabase> mSample;
    std::unique_ptr<frmDIR> mForm;

    /// Shows the form on a node of the sample.
    void Open(qint16 node)
    {
        mSample = std::make_unique<SampleDatabase>();
        mForm = std::make_unique<frmDIR>();
        mForm->Load();
        mForm->SetConfigID(1);
        mForm->SetPartitionID(1);
        BusinessRules rules;
        QVERIFY(rules.LoadPromptMSGNodeNumber(*mForm) && rules.LoadData(*mForm, node));
        mForm->cmbMSGNodeNumber->SetListIndex(0);
        mForm->show();
        QVERIFY(QTest::qWaitForWindowActive(mForm.get()));
        mForm->cmdApply->setEnabled(false);
    }
    void Append(int count)
    {
        for (int i = 0; i < count; ++i)
            Items().Insert(Items().RowCount(),
                           EntryRow(Items().RowCount() + 1, {u"Old"_s, u"Row"_s, u"1"_s, u"5"_s, u"2"_s}));
    }
    ListItems& Items() const { return mForm->LVDirectory->Items(); }
    QString Path(const QString& name) const { return mFolder->filePath(name); }
    static QString ReportFile() { return GetMiscFolder() + u"DIRNodeError.txt"_s; }

    void Import(const QString& fileName, const QList<ExpectedBox>& boxes)
    {
        BoxScript script;
        script.Expect(ExpectedFileDialog{u"Open"_s, fileName});
        for (const ExpectedBox& box : boxes)
            script.Expect(box);
        mForm->cmdOpenCSVFilename->click();
    }
    void Export(const QString& fileName, const QList<ExpectedBox>& boxes, bool cancel = false)
    {
        BoxScript script;
        script.Expect(ExpectedFileDialog{u"Save"_s, fileName});
        for (const ExpectedBox& box : boxes)
            script.Expect(box);
        if (cancel)
            script.Expect(ExpectedFileDialog{u"Save"_s});
        mForm->cmdDirSaveList->click();
    }

private Q_SLOTS:
    void init()
    {
        InstallErrorBox();
        mFolder = std::make_unique<QTemporaryDir>();
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, mFolder->path());
    }
    void cleanup()
    {
        QVERIFY(!QGuiApplication::overrideCursor());
        if (mForm)
            QVERIFY(mForm->StatusBar1->isHidden() && mForm->StatusBar1->PanelText().isEmpty() &&
                    mForm->Frame1->isEnabled());
        mForm.reset();
    }

    void fields_data()
    {
        QTest::addColumn<QByteArray>("given");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char* name, const QByteArray& given, const QString& expected) {
            QTest::newRow(name) << given << expected;
        };
        const QString past = u"62: The file ends inside a quoted field."_s;
        const QString tooLong = u"62: A field is longer than 8192 bytes. Check that the file is a directory list."_s;
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
        row("unterminated doubled", "\"a\"\"", past);
        row("end-of-file character", "a,b\x1A,c", u"[a][b]"_s);
        row("end-of-file character of a quoted field", "\"a\x1A,b\",c\r\n\x1A\r\n", u"[a\x1A,b][c]"_s);
        row("nothing", "", {});
        row("only a mark", "\xEF\xBB\xBF", {});
        row("UTF-8", accents.toUtf8(), accentFields);
        row("UTF-8 mark", "\xEF\xBB\xBF" + accents.toUtf8(), accentFields);
        row("UTF-16 LE", Utf16(QStringConverter::Utf16LE, accents), accentFields);
        row("UTF-16 BE", Utf16(QStringConverter::Utf16BE, accents), accentFields);
        row("UTF-16 cut", Utf16(QStringConverter::Utf16LE, u"a,b"_s) + 'c', u"[a][b]"_s);
        row("Windows-1252", "M\xFCller,\x80\x9F\x81,Zo\xC3\xAB,\xC3",
            u"[M\u00FCller][\u20AC\u0178\u0081][Zo\u00EB][\u00C3]"_s);
        row("across a chunk", QByteArray(65534, ',') + "\"a\"\"b\"\r\n", u"[]"_s.repeated(65534) + u"[a\"b]"_s);
        row("longest", longest + ",\"" + longest + '"', u"[%1][%1]"_s.arg(QString::fromLatin1(longest)));
        row("too long", "a," + longest + "x,c", u"[a]"_s + tooLong);
        row("quoted too long", "\"" + longest + "x\"", tooLong);
    }
    void fields()
    {
        QFETCH(QByteArray, given);
        QBuffer buffer(&given);
        buffer.open(QIODevice::ReadOnly);
        QTEST(FieldsOn(buffer), "expected");
        Stream bytes(given, given.size(), 1, false);
        QTEST(FieldsOn(bytes), "expected");
    }

    void writing()
    {
        QByteArray written;
        QBuffer buffer(&written);
        buffer.open(QIODevice::ReadWrite);
        WriteDelimited(buffer, {u"M\u00FCller"_s, u"a\"b"_s, QString(), u" c,\r\nd"_s});
        QCOMPARE(written, QByteArray("\"M\xC3\xBCller\",\"a\"\"b\",\"\",\" c,\r\nd\"\r\n"));
        buffer.seek(0);
        QCOMPARE(FieldsOn(buffer), u"[M\u00FCller][a\"b][][ c,\r\nd]"_s);
        Stream readOnly("x", 1, 1, false);
        QVERIFY(!RaisedBy([&] { WriteDelimited(readOnly, {u"a"_s}); }).isEmpty());
    }

    // The data of a device without an end, and how many rows it leaves and what ends the import.
    void devices_data()
    {
        AddCases({{"letters", u"A"_s, u"0 broken"_s},
                  {"blanks", u" "_s, u"0 broken"_s},
                  {"quotes", u"\""_s, u"0 broken"_s},
                  {"zeros", QString(QChar(0)), u"0 broken"_s},
                  {"commas", u","_s, u"0 rejects"_s},
                  {"line ends", u"\r"_s, u"0 rejects"_s},
                  {"entries", u"A,B,1\n"_s, u"500 limit"_s},
                  {"some entries", u"A,B,1\n1,B,1\n"_s, u"20 rejects"_s}});
    }
    void devices()
    {
        QFETCH(QString, given);
        Open(20);
        BusinessRules rules;
        Stream device(given.toLatin1(), unending, unending, true);
        const ImportReport report = ReadDirectory(*mForm, rules, device);
        QTEST(QString::number(Items().RowCount()) + (report.HadErrors ? u" rejects"_s : QString()) +
                  (report.LimitReached ? u" limit"_s : QString()) + (report.Broken ? u" broken"_s : QString()),
              "expected");
        QVERIFY2(device.Taken() <= 1 << 20, qPrintable(u"%1 bytes were taken"_s.arg(device.Taken())));
    }

    void deviceThatFails()
    {
        Open(20);
        BusinessRules rules;
        Stream device("Adams,Anne,101\nBaker,Ben,102\nClark,", 35, 10, true);
        QVERIFY(ReadDirectory(*mForm, rules, device).Broken);
        QCOMPARE(Shown(Items()), u"2 1a|1|Adams|Anne|101|13|1 2a|2|Baker|Ben|102|27|1"_s);
    }

    void imports_data()
    {
        QTest::addColumn<int>("before");
        QTest::addColumn<QByteArray>("given");
        QTest::addColumn<QList<ExpectedBox>>("boxes");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char* name, int before, const QByteArray& given, const QList<ExpectedBox>& boxes,
                            const QString& expected) { QTest::newRow(name) << before << given << boxes << expected; };
        const QByteArray adams("Adams,Anne,101\r\n");
        const QByteArray bad("1,B,x\r\n");
        const QString one = u"1 1a|1|Adams|Anne|101|13|1"_s;
        const QString old = u"1a|1|Old|Row|1|5|2"_s;
        const QString full = u"500 1a|1|Name|First|1000|13|1 500a|500|Name|First|1499|%1|1"_s;
        row("empty", 0, "", {}, u"0"_s);
        row("header line", 0, "LastName,FirstName,Extension\r\n" + adams, {Error(listHead + headerRejected)}, one);
        row("what is wrong", 0, "Smith,,1\r\n\"Smith, Jr\",B2,1a\r\n, ,\r\n" + adams,
            {Error(listHead + u"(Smith,,1) :\n     No Data in FirstName\n(Smith, Jr,B2,1a) :\n     Invalid LastName\n"
                              "     Invalid FirstName\n     Invalid Extension\n(,,) :\n     No Data in LastName\n"
                              "     No Data in FirstName\n     No Data in Extension\n"_s)},
            one);
        row("accents", 0, "M\xFCller,Zo\xC3\xAB,1\r\n",
            {Error(listHead + u"(M\u00FCller,Zo\u00EB,1) :\n     Invalid LastName\n     Invalid FirstName\n"_s)},
            u"0"_s);
        row("UTF-16", 0, Utf16(QStringConverter::Utf16LE, QString::fromLatin1(adams)), {}, one);
        row("long line", 0, "Adams,Anne,101,Baker\r\nBen,102\r\n", {},
            u"2 1a|1|Adams|Anne|101|13|1 2a|2|Baker|Ben|102|27|1"_s);
        row("short line", 0, adams + "Baker,102\r\nClark,Cid,103\r\nDavies\r\n",
            {Error(listHead + u"(Baker,102,Clark) :\n     Invalid FirstName\n     Invalid Extension\n"
                              "(Cid,103,Davies) :\n     Invalid FirstName\n     Invalid Extension\n"_s)},
            one);
        row("ends inside an entry", 0, adams + "Baker,Ben\r\n", {Error(invalidFile)}, one);
        row("trailing blank line", 0, adams + "\r\n", {Error(invalidFile)}, one);
        row("ends inside an entry after rejects", 0, bad + adams + "Baker,Ben",
            {Error(invalidFile + u"\n\n"_s + listHead + badEntry)}, one);
        row("rubbish", 0, QByteArray::fromHex("7F454C460201010000FFFE").repeated(900), {Error(invalidFile)}, u"0"_s);
        row("20 rejects", 0, bad.repeated(20) + adams, {Error(listHead + badEntry.repeated(20))}, one);
        row("30 rejects", 0, adams + bad.repeated(30) + adams, {Error(listHead + badEntry.repeated(21) + tooMany)},
            one);
        row("500 entries", 0, Entries(500), {}, full);
        row("600 entries", 0, Entries(600), {limitNotice}, full);
        row("limit and rejects", 0, bad.repeated(20) + Entries(500) + bad,
            {limitNotice, Error(listHead + badEntry.repeated(20))}, full);
        row("limit before the 21st reject", 499, bad.repeated(20) + adams + bad,
            {Overwrite(QMessageBox::No), limitNotice, Error(listHead + badEntry.repeated(20))},
            u"500 "_s + old + u" 500a|500|Adams|Anne|101|13|1"_s);
        row("beyond the limit", 501, adams, {Overwrite(QMessageBox::No)},
            u"502 "_s + old + u" 502a|502|Adams|Anne|101|13|1"_s);
        row("overwrite", 2, adams, {Overwrite(QMessageBox::Yes)}, one);
        row("append", 1, adams, {Overwrite(QMessageBox::No)}, u"2 "_s + old + u" 2a|2|Adams|Anne|101|13|1"_s);
        row("call off", 1, adams, {Overwrite(QMessageBox::Cancel)}, u"1 "_s + old);
    }
    void imports()
    {
        QFETCH(int, before);
        QFETCH(QByteArray, given);
        QFETCH(QList<ExpectedBox>, boxes);
        QFETCH(QString, expected);
        Open(20);
        Append(before);
        Write(Path(u"names.csv"_s), given);
        Import(Path(u"names.csv"_s), boxes);
        const int lastPrompt = Items().RowCount() == 500 ? Items().Text(499, 4).toInt() : 0;
        QCOMPARE(Shown(Items()), expected.contains(u'%') ? expected.arg(lastPrompt) : expected);
        QCOMPARE(mForm->txtCSVFilename->text(), Path(u"names.csv"_s));
        const bool calledOff = !boxes.isEmpty() && boxes.first().answer == QMessageBox::Cancel;
        QCOMPARE(mForm->cmdApply->isEnabled(), !calledOff);
        QByteArray record("(no file)");
        if (!boxes.isEmpty() && boxes.last().text.startsWith(listHead)) {
            QString text = QLocale::system().toString(QDate::currentDate(), QLocale::ShortFormat) +
                           u"\n============================\n"_s + boxes.last().text + u"\n\n"_s;
            record = text.replace(u'\n', u"\r\n"_s).toUtf8();
        }
        QCOMPARE(Contents(ReportFile()), record);
    }

    void importEndsEditMode()
    {
        Open(7);
        mForm->cmdDirEdit->click();
        QVERIFY(mForm->InEditMode());
        Import({}, {});
        QVERIFY(!mForm->InEditMode() && mForm->cmdDirSaveList->isEnabled());
        QCOMPARE(Items().RowCount(), 40);
    }

    // What becomes of the file after it was chosen.
    void unreadableFiles_data()
    {
        AddCases({{"gone", {}, {}}, {"folder", {}, {}}, {"pipe", {}, {}}, {"no permission", {}, {}}});
    }
    void unreadableFiles()
    {
        const QString becomes = QString::fromLatin1(QTest::currentDataTag());
        if (becomes == u"no permission"_s && geteuid() == 0)
            QSKIP("every file can be read here");
        Open(20);
        Append(1);
        const QString name = Path(u"names.txt"_s);
        Write(name, "Adams,Anne,101\r\n");
        ExpectedBox notice = Notice(u"Please select a csv file"_s);
        notice.inspect = [&](QMessageBox&) {
            if (becomes == u"no permission"_s)
                QVERIFY(QFile::setPermissions(name, {}));
            else
                QVERIFY(QFile::remove(name));
            if (becomes == u"folder"_s)
                QVERIFY(QDir().mkdir(name));
            if (becomes == u"pipe"_s)
                QCOMPARE(mkfifo(QFile::encodeName(name).constData(), 0600), 0);
        };
        Import(name, {notice, Overwrite(QMessageBox::No), Error(invalidFile)});
        QCOMPARE(Items().RowCount(), 1);
        QVERIFY(mForm->cmdApply->isEnabled());
    }

    void reportFile()
    {
        Open(20);
        const QString name = Path(u"names.CSV"_s);
        Write(name, "1,B,x\r\n");
        const ExpectedBox rejects = Error(listHead + badEntry);
        Write(GetMiscFolder().chopped(1), {}); // no folder can be made here
        Import(name, {rejects});
        QVERIFY(QFile::remove(GetMiscFolder().chopped(1)) && QDir().mkpath(GetMiscFolder()));
        Write(ReportFile(), QByteArray(5000, 'o'));
        QFile older(ReportFile());
        QVERIFY(older.open(QIODevice::ReadOnly));
        Import(name, {rejects});
        QCOMPARE(older.readAll(), QByteArray(5000, 'o')); // replaced, never seen half written
        QVERIFY(Contents(ReportFile()).endsWith("Invalid Extension\r\n\r\n\r\n"));
        QCOMPARE(QDir(GetMiscFolder()).entryList(QDir::Files), QStringList(u"DIRNodeError.txt"_s));
    }

    void errorBoxFitsTheScreen_data()
    {
        AddCases({{"long names", QString(4000, u'W') + u",B,1\n"_s, {}},
                  {"many lines", u"\"%1\",B,1\n"_s.arg(u"1\n"_s.repeated(100)), {}},
                  {"wide names", QString(110, u'W') + u",2,1\n"_s, {}}});
    }
    void errorBoxFitsTheScreen()
    {
        QFETCH(QString, given);
        Open(20);
        Write(Path(u"names.csv"_s), given.replace(u",B,"_s, u",2,"_s).repeated(21).toUtf8());
        ExpectedBox box = Error(listHead + u'*' + tooMany);
        box.inspect = [](QMessageBox& shown) {
            const QRect screen = shown.screen()->availableGeometry();
            const QRect frame = shown.frameGeometry();
            QVERIFY2(screen.contains(frame), qPrintable(u"%1 x %2"_s.arg(frame.width()).arg(frame.height())));
            const QAbstractButton* ok = shown.button(QMessageBox::Ok);
            QVERIFY(shown.rect().contains(QRect(ok->mapTo(&shown, QPoint()), ok->size())) && ok->isVisible());
        };
        Import(Path(u"names.csv"_s), {box});
    }

    void exportedRows()
    {
        Open(20);
        const QStringList rows{u"Adams|Anne|101"_s, u"|Ben|102"_s,       u"Clark||103"_s,
                               u"Davies|Ed|x"_s,    u"O\"B, C|D| 1e2"_s, u"Evans|Eve|"_s};
        for (const QString& row : rows) {
            const QStringList texts = row.split(u'|');
            const int number = Items().RowCount() + 1;
            Items().Insert(number - 1, EntryRow(number, {texts[0], texts[1], texts[2], u"5"_s, u"1"_s}));
        }
        Export(Path(u"names"_s),
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
        Open(12);
        const auto names = [&] {
            QStringList texts;
            for (int row = 0; row < Items().RowCount(); ++row)
                texts << EntryOf(Items(), row).section(u'|', 0, 4);
            return texts;
        };
        const QStringList before = names();
        Export(Path(u"names.csv"_s), {});
        Import(Path(u"names.csv"_s), {Overwrite(QMessageBox::Yes)});
        QCOMPARE(before.size(), 500);
        QCOMPARE(names(), before);
        QCOMPARE(Items().Text(1, 4) + Items().Text(1, 5), u"271"_s);
    }

    // What is typed, with the answer to the question that follows; what the files then are.
    void saveNames_data()
    {
        AddCases({{"without ending", u"other"_s, u"names.csv,other.csv,text.txt.csv"_s},
                  {"upper case", u"other.CSV"_s, u"names.csv,other.CSV,text.txt.csv"_s},
                  {"other ending", u"other.txt"_s, u"names.csv,other.txt.csv,text.txt.csv"_s},
                  {"there", u"names.csv Yes"_s, u"names.csv*,text.txt.csv"_s},
                  {"there without ending", u"names Yes"_s, u"names.csv*,text.txt.csv"_s},
                  {"there, kept", u"names No"_s, u"names.csv,text.txt.csv"_s},
                  {"there with both endings", u"text.txt Yes"_s, u"names.csv,text.txt.csv*"_s},
                  {"both endings, kept", u"text.txt No"_s, u"names.csv,text.txt.csv"_s},
                  {"cancelled", {}, u"names.csv,text.txt.csv"_s}});
    }
    void saveNames()
    {
        QFETCH(QString, given);
        Open(7);
        const QString name = given.section(u' ', 0, 0);
        const QString answer = given.section(u' ', 1);
        const auto button = answer == u"Yes"_s ? QMessageBox::Yes : QMessageBox::No;
        const QStringList older{u"names.csv"_s, u"text.txt.csv"_s};
        for (const QString& file : older)
            Write(Path(file), "old");
        QList<ExpectedBox> boxes;
        if (name.startsWith(u"names"_s))
            boxes = {Replace(button)};
        else if (name == u"text.txt"_s)
            boxes = {{Path(u"text.txt.csv"_s) + u" already exists.\nDo you want to replace it?"_s, u"Confirmation"_s,
                      QMessageBox::Question, button}};
        Export(name.isEmpty() ? name : Path(name), boxes, given == u"names No"_s);
        QStringList files = QDir(mFolder->path()).entryList(QDir::Files);
        for (QString& file : files)
            file += older.contains(file) && Contents(Path(file)) != "old" ? u"*"_s : QString();
        QTEST(files.join(u','), "expected");
        QVERIFY(!mForm->cmdApply->isEnabled());
    }

    // Why the file cannot be written, and the size that the disk still takes.
    void failedSaves_data()
    {
        AddCases({{"disk full at the end", u"100"_s, u"File too large"_s},
                  {"disk full on the way", u"17000"_s, u"File too large"_s},
                  {"no permission", {}, u"Permission denied"_s}});
    }
    void failedSaves()
    {
        QFETCH(QString, given);
        QFETCH(QString, expected);
        if (given.isEmpty() && geteuid() == 0)
            QSKIP("every folder can be written here");
        Open(7);
        for (int row = 0; given == u"17000"_s && row < 40; ++row)
            Items().SetText(row, 1, QString(1000, u'W'));
        const QString name = Path(u"names.csv"_s);
        Write(name, "old");
        if (given.isEmpty())
            QVERIFY(QFile::setPermissions(mFolder->path(), QFile::ReadOwner | QFile::ExeOwner));
        const QList<ExpectedBox> boxes{
            Replace(QMessageBox::Yes),
            SaveError(u"%1 cannot be written: %2. Choose another folder or free some space."_s.arg(name, expected))};
        {
            const FullDisk disk(given.isEmpty() ? RLIM_INFINITY : given.toUInt());
            Export(name, boxes);
        }
        QFile::setPermissions(mFolder->path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QCOMPARE(Contents(name), QByteArray("old"));
        QCOMPARE(QDir(mFolder->path()).entryList(QDir::Files), QStringList(u"names.csv"_s));
        QVERIFY(Items().ForeColor(0, 1) != invalidRowColour);
    }

    // The saved folder and the form's file; the folder in which the dialogs start.
    void startFolders_data()
    {
        AddCases({{"setting", u"a|b/x.csv"_s, u"a"_s},
                  {"file", u"|b/x.csv"_s, u"b"_s},
                  {"neither", u"|"_s, u"configurations"_s},
                  {"setting of no folder", u"gone|b/x.csv"_s, u"home"_s}});
    }
    void startFolders()
    {
        QFETCH(QString, given);
        QFETCH(QString, expected);
        Open(7);
        QString folder = Path(expected);
        if (expected == u"configurations"_s)
            folder = GetConfigsFolder({}).chopped(1);
        if (expected == u"home"_s)
            folder = QDir::homePath();
        QVERIFY(QDir().mkpath(folder) && QDir().mkpath(Path(u"Quorvanta"_s)));
        const QString saved = given.section(u'|', 0, 0);
        const QString named = given.section(u'|', 1);
        if (!saved.isEmpty())
            Write(Path(u"Quorvanta/KELDAR+.ini"_s), "[DialogDir]\nDialogDir=" + Path(saved).toUtf8() + '\n');
        mForm->txtCSVFilename->setText(named.isEmpty() ? named : Path(named));
        BoxScript script;
        script.Expect(ExpectedFileDialog{u"Save"_s, {}, folder});
        mForm->cmdDirSaveList->click();
        QVERIFY(!mForm->cmdApply->isEnabled());
        script.Expect(ExpectedFileDialog{u"Open"_s, {}, folder});
        mForm->cmdOpenCSVFilename->click();
        QVERIFY(mForm->cmdApply->isEnabled()); // though nothing was read
        QCOMPARE(Items().RowCount(), 40);
    }
};

QTEST_MAIN(InterchangeTest)
#include "InterchangeTest.moc"
