// What is kept beside the database: drafts after a dead process or a failed save, earlier versions, and the form that
// shows no node.
#include "rules/DraftFiles.h"
#include "rules/EarlierVersions.h"
#include "support/Cases.h"
#include "support/Editor.h"
#include "support/Files.h"
#include "support/SampleDatabase.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <QApplication>
#include <QComboBox>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QPushButton>
#include <QRandomGenerator>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTest>
#include <QTreeWidget>
#include <sys/stat.h>

using namespace qor;

namespace {

const NodeIdentity node7{{1, 1}, 7};
const char* const label = "txtDescription";

const QString changed = u"Changes to DIR 7 of * were not saved.\nDo you want to restore them?"_s;
const QString savedSince = changed + u"\nThe directory was saved since then."_s;

ExpectedBox Offer(const QString& text, QMessageBox::StandardButton answer)
{
    return Question(text, answer, u"Question"_s);
}

/// "Ab", "Ac", ...: names take letters only.
QString NameOf(int person)
{
    return u"A"_s + QChar(u'a' + person / 26 % 26) + QChar(u'a' + person % 26);
}

void TypePerson(Editor& editor, int person)
{
    editor.Keys("Ctrl+Return").Type("txtLastName", NameOf(person)).Type("txtFirstName", u"B"_s);
    editor.Type("txtExtension", QString::number(person + 1));
}

/// Types people into node 7, saves after every fifth, and tells how many are complete, until the process is killed.
void TypeAndSave(Editor& editor)
{
    editor.FocusOn("LVDirectory");
    for (int person = 0; person < 200; ++person) {
        TypePerson(editor, person);
        if (person % 5 == 4)
            editor.Click("cmdApply").FocusOn("LVDirectory");
        std::cout << person << std::endl; // the one before is complete
    }
}

void FailWhileSaving(Editor& editor)
{
    editor.ClickRow(0).Click("cmdDirRemove");
    qputenv("QOR_FAULTS", qgetenv("QOR_FAULT"));
    editor.Click("cmdApply");
    qunsetenv("QOR_FAULTS");
}

void LeaveChanged(Editor& editor)
{
    editor.Type(label, u"Changed"_s).Click("cmdDirAdd").ClickRow(0).Click("cmdDirUp");
    std::cout << "ready" << std::endl;
    QTest::qWait(60'000);
}

/// Saves another half of the list when it is told to.
void SaveHalf(Editor& editor, bool firstHalf)
{
    editor.ClickRow(firstHalf ? 250 : 0);
    editor.ClickRow(firstHalf ? 499 : 249, Qt::ShiftModifier).Click("cmdDirRemove");
    std::cout << "ready" << std::endl;
    std::cin.get();
    editor.Click("cmdApply");
}

const std::map<QString, Editor::User> users{{u"--type"_s, TypeAndSave},
                                            {u"--fail"_s, FailWhileSaving},
                                            {u"--leave"_s, LeaveChanged},
                                            {u"--first"_s, [](Editor& e) { SaveHalf(e, true); }},
                                            {u"--last"_s, [](Editor& e) { SaveHalf(e, false); }}};

} // namespace

class KeptTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SampleDatabase> mSample;

    QString Misc() const { return mSample->ProductFolder() + u"/Misc/"_s; }
    /// What lies in the Misc folder of drafts, without the number of the process.
    QStringList Files() const
    {
        QStringList names = QDir(Misc()).entryList({u"DIRUnsaved*"_s}, QDir::AllEntries | QDir::System);
        return names.replaceInStrings(QRegularExpression(u"\\.\\d+\\.json"_s), u".json"_s);
    }
    /// Whether a draft is there whose list is not stored.
    bool HasUnsavedDraft() const
    {
        for (const QString& name : QDir(Misc()).entryList({u"DIRUnsaved-1-1-7.*.json"_s})) {
            const auto draft = QJsonDocument::fromJson(ReadFile(Misc() + name)).object();
            QStringList entries;
            for (const auto& entry : draft[u"entries"].toArray())
                entries << QVariant(entry.toArray().toVariantList()).toStringList().join(u'|');
            const QStringList header = mSample->Run(u"SELECT NodeDescription FROM Node_DIR WHERE NodeNumber = 7"_s);
            if (entries != mSample->Entries(7) || draft[u"label"].toString() != header.value(0))
                return true;
        }
        return false;
    }
    static std::unique_ptr<QProcess> Start(const QString& user, const QStringList& environment = {})
    {
        auto child = std::make_unique<QProcess>();
        child->setEnvironment(QProcess::systemEnvironment() + environment);
        child->start(QCoreApplication::applicationFilePath(), {user});
        return child;
    }
    static void KillLeaver()
    {
        const auto child = Start(u"--leave"_s);
        QVERIFY(child->waitForReadyRead() && child->readAll().contains("ready"));
        child->kill();
        QVERIFY(child->waitForFinished());
    }
    void Open7(const Editor::User& user, std::initializer_list<ExpectedBox> before = {})
    {
        Editor::Open(1, 1, 7, user, before);
    }
    /// No prompt stands twice.
    void FillSeventh(int entryCount) const
    {
        mSample->Run(u"DELETE FROM Detail_DIR WHERE NodeMasterID = 7"_s);
        mSample->Run(u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < %1) INSERT INTO "
                     "Detail_DIR SELECT 1, 1, 7, i, 'Smith', 'Anne', i, 1000 - i, 1 FROM n"_s.arg(entryCount));
    }

private Q_SLOTS:
    void init()
    {
        mSample = std::make_unique<SampleDatabase>();
        mSample->SetEntries(7, mSample->Entries(7).first(4));
        // No message node is missing.
        mSample->Run(
            u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 999) INSERT "
            "INTO Node_General_Pool SELECT 1, 1, 0, i, 'MSG', '', '' FROM n WHERE true ON CONFLICT DO NOTHING"_s);
    }

    void cleanRunKeepsNothing()
    {
        Open7([&](Editor& e) {
            e.Type(label, u"x"_s).Click("cmdDirAdd").Click("cmdDirRemove").Click("cmdDirEdit").Click("cmdApply");
            QCOMPARE(Files(), QStringList());
            e.Click("cmdDirAdd");
            QCOMPARE(Files(), QStringList{u"DIRUnsaved-1-1-7.json"_s});
            e.Expect(SaveQuestion(QMessageBox::No)).Click("cmdNext");
            e.Click("cmdPrevious").ClickRow(0).Click("cmdDirRemove").Click("cmdOK");
        });
        Open7([&](Editor& e) { e.Type(label, u"y"_s).Expect(SaveQuestion(QMessageBox::No)).Close(); });
        QCOMPARE(Files(), QStringList());
        Open7([](Editor& e) { QVERIFY(!e.IsDirty() && e.RowCount() == 3); });
    }

    void draftOfADeadProcess()
    {
        KillLeaver();
        const QStringList stored = mSample->Entries(7);
        const auto draft = QDir(Misc()).entryInfoList({u"DIRUnsaved*"_s}).value(0);
        QCOMPARE(draft.permissions() & (QFile::ReadGroup | QFile::ReadOther), 0);
        QStringList restored;
        Open7(
            [&](Editor& e) {
                restored = e.Rows();
                QVERIFY(e.IsDirty() && e.RowCount() == 5 && e.Red(4).contains(u'r'));
                QCOMPARE(e.Text(label), u"Changed"_s);
                e.ListKeys("Ctrl+Z");
                QCOMPARE(e.Rows(), stored);
                e.Keys("Ctrl+Y").ClickRow(4).Click("cmdDirRemove").Click("cmdOK");
            },
            {Offer(changed, QMessageBox::Yes)});
        QCOMPARE(mSample->Entries(7), restored.first(4));
        QCOMPARE(Files(), QStringList());
        Open7([](Editor&) {});

        KillLeaver();
        mSample->SetEntries(7, {u"Other|Olga|1|1|1"_s});
        Open7([](Editor& e) { QVERIFY(!e.IsDirty() && e.RowCount() == 1); }, {Offer(savedSince, QMessageBox::No)});
        QCOMPARE(Files(), QStringList{u"DIRUnsaved-1-1-7.json.discarded"_s});
        KillLeaver();
        // Met on the way from another node as well. Without an answer, as when the host quits, it is offered again.
        Editor::Open(1, 1, 12, [](Editor& e) {
            const auto end = [](QDialog& box) { box.done(QDialog::Rejected); };
            e.Expect(ExpectedDialog{u"*Changes to DIR 7 *"_s, end}).Click("cmdPrevious").Expected().Click("cmdNext");
            e.Expect(Offer(changed, QMessageBox::NoButton)).Click("cmdPrevious").Expected();
        });
        QCOMPARE(Files(), QStringList{u"DIRUnsaved-1-1-7.json.discarded"_s});
    }

    // A save that fails leaves the draft, also for the same process and the same form.
    void draftOfAFailedSave()
    {
        const auto refuse = [&] { mSample->Refuse(u"INSERT ON Detail_DIR"_s, u"NEW.SequenceNo = 3"_s); };
        const auto fails = ErrorReport(u"SaveChanges"_s, u"*refused*\nThe database now holds 2 of 5 entries of DIR 7.\n"
                                                         "Your list is kept in */Misc/DIRUnsaved-1-1-7.*.json and is "
                                                         "offered when DIR 7 is opened again."_s);
        QStringList list;
        refuse();
        const auto fail = [&](Editor& e) {
            e.Click("cmdDirAdd").Click("cmdDirEdit").Type("txtLastName", u"New"_s).Type("txtFirstName", u"N"_s);
            list = e.Expect(fails).Click("cmdApply").Expected().Rows();
        };
        Open7([&](Editor& e) {
            fail(e);
            e.Click("cmdNext").Expect(Offer(savedSince, QMessageBox::Yes)).Click("cmdPrevious").Expected();
            QCOMPARE(e.Rows(), list);
            e.Expect(fails).Click("cmdOK").Expected();
        });
        QCOMPARE(mSample->Entries(7).size(), 2);
        mSample->RefuseNoMore();
        Open7([&](Editor& e) { QCOMPARE(e.Click("cmdApply").Rows(), list); }, {Offer(changed, QMessageBox::Yes)});
        QCOMPARE(mSample->Entries(7), list);
        QCOMPARE(Files(), QStringList());
        // Who declines it all the same may think better of it.
        mSample->SetEntries(7, list.first(4));
        refuse();
        Open7([&](Editor& e) {
            fail(e);
            e.Click("cmdDirAdd").Expect(SaveQuestion(QMessageBox::No)).Click("cmdCancel");
        });
        QCOMPARE(Files(), QStringList{u"DIRUnsaved-1-1-7.json.discarded"_s});
    }

    void draftsThatAreNone()
    {
        QVERIFY(QDir().mkpath(Misc()));
        KeptNode kept = KeptNow({node7, {}, {{u"A"_s, u"B"_s, u"1"_s, u"1"_s, u"1"_s}}});
        kept.writer = {1, u"gone"_s};
        const QByteArray sound = KeptText(kept);
        const auto without = [&](const char* what, const char* instead) {
            return QByteArray(sound).replace(what, instead);
        };
        const auto put = [&](int process, const QByteArray& text) {
            WriteFile(Misc() + u"DIRUnsaved-1-1-7.%1.json"_s.arg(process), text);
        };
        put(1, sound.chopped(20));
        put(2, "{}");
        put(3, without("\"node\":7", "\"node\":8"));
        put(4, without("\"format\":1", "\"format\":2"));
        put(5, without("[\"A\",", "["));
        put(6, {});
        put(7, without("gone", qPrintable(ProcessNumbered(1).start))); // of a process that runs
        QVERIFY(mkfifo(qPrintable(Misc() + u"DIRUnsaved-1-1-7.8.json"_s), 0600) == 0);
        QVERIFY(QDir().mkpath(Misc() + u"DIRUnsaved-1-1-7.9.json"_s));
        QFile large(Misc() + u"DIRUnsaved-1-1-7.10.json"_s);
        QVERIFY(large.open(QIODevice::WriteOnly) && large.resize(65LL << 20));
        Open7([](Editor& e) { QVERIFY(!e.IsDirty()); });
        QCOMPARE(Files().filter(u".bad"_s).size(), 6);
        QCOMPARE(Files().size(), 10);
        // A hundred that are sound: each opening asks once.
        for (int process = 100; process < 200; ++process)
            put(process, sound);
        Open7([](Editor& e) { QCOMPARE(e.RowCount(), 4); }, {Offer(savedSince, QMessageBox::No)});
        QCOMPARE(Files().filter(u".discarded"_s).size(), 1);
        Open7([](Editor& e) { QCOMPARE(e.RowCount(), 1); }, {Offer(savedSince, QMessageBox::Yes)});
    }

    // Nothing can be kept: saving goes on as if it need not.
    void noFolderToKeepIn()
    {
        WriteFile(mSample->ProductFolder() + u"/Misc"_s, "in the way");
        Open7([](Editor& e) { e.ClickRow(0).Click("cmdDirRemove").Click("cmdOK"); });
        QCOMPARE(mSample->Entries(7).size(), 3);
    }

    void earlierVersions()
    {
        const QStringList first = mSample->Entries(7);
        const QString folder = VersionFolder(Misc(), node7);
        Open7([&](Editor& e) {
            for (int save = 0; save < 22; ++save)
                e.Type(label, QString::number(save)).Click("cmdApply");
        });
        QCOMPARE(ReadVersions(Misc(), node7).size(), std::size_t{highestVersionCount});
        QCOMPARE(QFile::permissions(folder + EntriesOf(folder).first()) & (QFile::ReadGroup | QFile::ReadOther), 0);
        // The clock went back; a damaged file is left out.
        QDir(folder).removeRecursively();
        QVERIFY(QDir().mkpath(folder));
        WriteFile(folder + u"29990101T000000000.json"_s, "damaged");
        Open7([&](Editor& e) {
            e.ClickRow(1)
                .Click("cmdDirRemove")
                .Click("cmdDirAdd")
                .ClickRow(0)
                .Click("cmdDirDown")
                .Expect(Notice(u"Invalid*"_s))
                .Click("cmdApply")
                .ClickRow(3)
                .Click("cmdDirRemove")
                .Click("cmdOK");
        });
        QVERIFY(EntriesOf(folder).last() > u"29990101T000000000.json"_s);
        const auto restore = [&](QDialog& dialog) {
            const auto* list = dialog.findChild<QTreeWidget*>(u"lstVersions"_s);
            QCOMPARE(list->topLevelItemCount(), 1);
            QCOMPARE(list->topLevelItem(0)->text(1), OwnUserName());
            QCOMPARE(list->topLevelItem(0)->text(2) + list->topLevelItem(0)->text(3), u"4+1 -0 ~0"_s);
            QTest::keyClick(&dialog, Qt::Key_Return);
        };
        Open7([&](Editor& e) {
            e.FocusOn("LVDirectory").Expect(ExpectedDialog{u"question \"Earlier Versions of DIR 7\": *"_s, restore});
            e.ChooseInMenu(u"Earlier Versions..."_s).Expected();
            QCOMPARE(e.Rows(), first);
            QVERIFY(e.IsDirty());
            e.ListKeys("Ctrl+Z");
            QCOMPARE(e.RowCount(), 3);
        });
    }

    // A move to a node that cannot be read: nothing of another one may be saved under its number.
    void noNodeIsShown()
    {
        const QString away = u"ALTER TABLE Detail_DIR RENAME TO gone"_s;
        const QStringList stored = mSample->Entries(12);
        Open7([&](Editor& e) {
            e.ClickRow(0).Click("cmdDirEdit").Expect(SaveQuestion(QMessageBox::No));
            mSample->Run(away);
            e.Expect(ErrorReport(u"LoadData"_s, u"*lacks a table*"_s)).Click("cmdNext").Expected();
            QCOMPARE(e.Text("cmbNode") + u' ' + e.Text("lblRecordPosition") + e.Text(label), u"DIR 12 2 of 4"_s);
            for (const char* control : {"txtDescription", "txtAccessCode", "cmbMSGNodeNumber", "cmdDirAdd",
                                        "cmdOpenCSVFilename", "LVDirectory", "cmdOK", "cmdApply"})
                QVERIFY2(!e.Find(control).isEnabled(), control);
            e.FocusOn("cmdCancel").Keys("Ctrl+V").Keys("Ctrl+Z").Keys("Ctrl+F");
            QVERIFY(!e.IsDirty() && e.RowCount() == 0 && e.Find("fraFind").isHidden());
            mSample->Run(u"ALTER TABLE gone RENAME TO Detail_DIR"_s);
            auto& nodes = e.Find<QComboBox>("cmbNode");
            nodes.showPopup();
            QTest::keyClick(nodes.view(), Qt::Key_Return); // the same one again
            QCOMPARE(e.Rows(), stored);
            mSample->Run(u"DELETE FROM Node_DIR WHERE NodeNumber = 20"_s);
            e.Expect(Notice(u"DIR 20 doesn't exist."_s)).Click("cmdNext").Expected();
            QVERIFY(!e.Find("cmdOK").isEnabled() && e.Find("cmdPrevious").isEnabled());
            QVERIFY(e.Click("cmdPrevious").Type(label, u"x"_s).IsDirty());
            e.Expect(Question(u"Duplicate prompts*"_s, QMessageBox::Yes)).Click("cmdApply").Expected();
        });
        QCOMPARE(mSample->Entries(12), stored);
    }

    // One list or the other stays whole. QOR_SAVERS says how often.
    void twoSaversAtOnce()
    {
        if (SampleDatabase::IsOnServer())
            QSKIP("There the second one is asked: SharedTest::savesAtOnce.");
        for (int round = 0; round < qMax(3, qEnvironmentVariableIntValue("QOR_SAVERS")); ++round) {
            FillSeventh(500);
            const QStringList all = mSample->Entries(7);
            std::array children{Start(u"--first"_s), Start(u"--last"_s)};
            for (const auto& child : children)
                QVERIFY(child->waitForReadyRead());
            for (const auto& child : children)
                child->write("\n");
            for (const auto& child : children)
                QVERIFY(child->waitForFinished());
            const QStringList left = mSample->Entries(7);
            QVERIFY(left == all.first(250) || left == all.last(250));
            QCOMPARE(ReadVersions(Misc(), node7).front().node.entries.size(), std::size_t{250});
        }
    }

    // Something is on screen before long, and the editor comes once the lock has gone.
    void lockedWhileOpening()
    {
        if (SampleDatabase::IsOnServer())
            QSKIP("About a file.");
        QSqlDatabase other = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"other"_s);
        other.setDatabaseName(mSample->FileName());
        QVERIFY(other.open());
        mSample->Run(u"PRAGMA journal_mode = DELETE"_s); // in which a lock keeps readers out, too
        QVERIFY(QSqlQuery(other).exec(u"BEGIN EXCLUSIVE"_s));
        BoxScript boxes;
        boxes.Expect(ExpectedDialog{u"question \"DIR Editor\": "_s, [](QDialog& dialog) { dialog.reject(); }});
        CallLibrary(1, 1, 7);
        boxes.Verify();
        boxes.Expect(ExpectedDialog{u"question \"DIR Editor\": "_s, [&](QDialog&) { other.close(); }});
        Editor::Open(
            1, 1, 7, [](Editor& e) { QCOMPARE(e.RowCount(), 4); }, boxes);
        other = {};
        QSqlDatabase::removeDatabase(u"other"_s);
    }

    // At chance moments of typing and saving; QOR_KILLS says how many.
    void killedAtAnyMoment()
    {
        QRandomGenerator moments(Seed("QOR_KILL_SEED"));
        const int kills = qMax(12, qEnvironmentVariableIntValue("QOR_KILLS"));
        FillSeventh(250); // saves that take as long as the typing between them
        const QStringList before = mSample->Entries(7);
        int offered = 0;
        int cutShort = 0;
        // On a slow machine the first moments may all come too early.
        for (int kill = 0; kill < kills || ((offered == 0 || cutShort == 0) && kill < 200); ++kill) {
            FillSeventh(250);
            const auto child = Start(u"--type"_s);
            QVERIFY(child->waitForReadyRead());
            QTest::qSleep(static_cast<int>(moments.bounded(300)));
            child->kill();
            QVERIFY(child->waitForFinished());
            const int complete = child->readAll().trimmed().split('\n').last().toInt();

            QStringList people = before;
            for (int person = 0; person < 200; ++person)
                people << u"%1|B|%2|"_s.arg(NameOf(person)).arg(person + 1);
            const auto isBeginning = [&](const QStringList& list) {
                return std::equal(list.begin(), list.end(), people.begin(), people.begin() + list.size(),
                                  [](const QString& one, const QString& all) { return one.startsWith(all); });
            };
            if (!SampleDatabase::IsOnServer())
                QCOMPARE(mSample->Run(u"PRAGMA integrity_check"_s).join(u';'), u"ok"_s);
            QVERIFY2(isBeginning(mSample->Entries(7)), qPrintable(mSample->Entries(7).join(u'\n')));
            cutShort += mSample->Entries(7).size() < before.size() ? 1 : 0;
            const bool isOffered = HasUnsavedDraft();
            offered += isOffered ? 1 : 0;
            const auto user = [&](Editor& e) {
                QVERIFY2(e.RowCount() >= before.size() + complete, qPrintable(e.Rows().join(u'\n')));
                QVERIFY2(isBeginning(e.Rows().first(before.size() + complete)), qPrintable(e.Rows().join(u'\n')));
                if (isOffered)
                    e.Expect(SaveQuestion(QMessageBox::No)).Click("cmdCancel");
            };
            if (isOffered)
                Open7(user, {Offer(u"Changes to DIR 7*"_s, QMessageBox::Yes)});
            else
                Open7(user);
            QCOMPARE(Files().filter(QRegularExpression(u"json$"_s)), QStringList());
        }
    }

    // The disk fails or is full from each write of a save on; QOR_FAULT_STEP says how many are left out in between.
    void faultsOfTheDisk()
    {
        if (SampleDatabase::IsOnServer())
            QSKIP("About a file.");
        const int step = qMax(1, qEnvironmentVariable("QOR_FAULT_STEP", u"5"_s).toInt());
        const QStringList before = mSample->Entries(7);
        const QString log = mSample->ProductFolder() + u"/fault"_s;
        for (const auto& [error, once] : {std::pair(ENOSPC, false), {EIO, true}, {EIO, false}}) {
            bool struck = true;
            for (int from = 1; struck; from += step) {
                mSample->SetEntries(7, before);
                QFile::remove(log);
                QStringList environment{QStringLiteral("LD_PRELOAD=" FAULTS),
                                        u"ASAN_OPTIONS=verify_asan_link_order=0"_s, u"QOR_FAULT=%1"_s.arg(error),
                                        u"QOR_FAULT_FROM=%1"_s.arg(from), u"QOR_FAULT_LOG="_s + log};
                if (once)
                    environment << u"QOR_FAULT_ONCE=1"_s;
                const auto child = Start(u"--fail"_s, environment);
                QVERIFY(child->waitForFinished());
                QCOMPARE(child->exitStatus(), QProcess::NormalExit);
                struck = QFile::exists(log);
                QStringList list;
                const auto user = [&](Editor& e) { list = e.Click("cmdOK").Rows(); };
                if (HasUnsavedDraft())
                    Open7(user, {Offer(u"Changes to DIR 7*"_s, QMessageBox::Yes)});
                else
                    Open7(user);
                QVERIFY2(mSample->Entries(7) == before.mid(1), qPrintable(u"from write %1"_s.arg(from)));
            }
        }
    }
};

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const auto user = users.find(QCoreApplication::arguments().last());
    if (user != users.end()) {
        Editor::Open(1, 1, 7, user->second);
        return 0;
    }
    KeptTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "KeptTest.moc"
