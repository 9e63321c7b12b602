// A directory's way out into a file, and back again. Files and dialogs are real ones.
#include "support/ListFiles.h"

#include <csignal>
#include <sys/resource.h>

using namespace qor;

class ExportTest : public ListFilesTest
{
    Q_OBJECT

    /// As on a full disk, no file of this process grows beyond the size.
    static void LimitFileSize(rlim_t size)
    {
        rlimit limit{};
        getrlimit(RLIMIT_FSIZE, &limit);
        limit.rlim_cur = std::min(size, limit.rlim_max);
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    /// What is typed, the boxes and the size that the disk still takes; the files that are there then, with * if they
    /// were replaced.
    void Saves(const QString& name, const Boxes& boxes, const char* expected, rlim_t size = RLIM_INFINITY,
               int line = __builtin_LINE())
    {
        init();
        const QStringList older{u"names.csv"_s, u"text.txt.csv"_s};
        for (const QString& file : older)
            WriteFile(Path(file), "old");
        Open(QStringList(10, QString(40, u'A') + u"|Anne|1|5|1"_s), [&](Editor& editor) {
            LimitFileSize(size);
            Run(editor, "cmdDirSaveList", FileDialog(u"Save"_s, Path(name)), boxes);
            LimitFileSize(RLIM_INFINITY);
        });
        QStringList files = QDir(mFolder->path()).entryList(QDir::Files);
        for (QString& file : files)
            file += older.contains(file) && ReadFile(Path(file)) != "old" ? u"*"_s : QString();
        CompareAt(line, files.join(u' '), QString::fromLatin1(expected));
    }

private Q_SLOTS:
    void initTestCase() { std::signal(SIGXFSZ, SIG_IGN); }
    void init() { StartAnew(); }

    void thereAndBack()
    {
        const QString odd = u"M\u00FC\"l ;|D| 1e2|5|2"_s;
        Open({u"Evans|Eve|9|5|2"_s, u"Davies|Ed|x|5|2"_s, odd, u"Adams|Anne|101|5|2"_s}, [&](Editor& editor) {
            const ExpectedBox notice{u"Error in entry. Invalid entry wouldn't be saved to the file."_s, u"ERROR"_s,
                                     QMessageBox::Warning};
            Run(editor, "cmdDirSaveList", FileDialog(u"Save"_s, Path(u"names.csv"_s)), {notice});
            const QByteArray written("\"Evans\",\"Eve\",\"9\"\r\n\"M\xC3\xBC\"\"l ;\",\"D\",\" 1e2\"\r\n"
                                     "\"Adams\",\"Anne\",\"101\"\r\n");
            QCOMPARE(ReadFile(Path(u"names.csv"_s)), written);
            QCOMPARE(editor.Red(0) + editor.Red(1), u"-------rrrr-"_s);
            QVERIFY(!editor.IsDirty());

            const QString line = u"(M\u00FC\"l ;,D, 1e2) :\n     Invalid LastName\n     Invalid Extension\n"_s;
            Import(editor.Click("cmdDirEdit"), written, {Overwrite(QMessageBox::Yes), Rejects(line)});
            QVERIFY(editor.Find("txtLastName").isHidden() && editor.Find("cmdDirSaveList").isEnabled());
            QCOMPARE(editor.Rows(), (QStringList{u"Evans|Eve|9|13|1"_s, u"Adams|Anne|101|27|1"_s}));
        });
    }

    void saves()
    {
        const QString exists = u"%1 already exists.\nDo you want to replace it?"_s;
        const ExpectedBox replace{exists.arg(u"names.csv"_s), u"Save"_s, QMessageBox::Warning, QMessageBox::Yes};
        const QString replaceText = exists.arg(u"*/text.txt.csv"_s);
        Saves(u"other.CSV"_s, {}, "names.csv other.CSV text.txt.csv");
        Saves(u"text.txt"_s, {Question(replaceText, QMessageBox::Yes)}, "names.csv text.txt.csv*");
        Saves(u"text.txt"_s, {Question(replaceText, QMessageBox::No)}, "names.csv text.txt.csv");
        const ExpectedBox full{
            u"ERROR in saving entries... \nDESCRIPTION:*/names.csv cannot be written: File too large. Choose "
            "another folder or free some space.\nLocation: [cmdDirSaveList]"_s,
            u"ERROR"_s, QMessageBox::Warning};
        Saves(u"names"_s, {replace, full}, "names.csv text.txt.csv", 100);
    }
};

QTEST_MAIN(ExportTest)
#include "ExportTest.moc"
