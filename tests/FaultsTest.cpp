// Processes that are killed, two that save at once, a lock, and a disk that fails.
#include "rules/EarlierVersions.h"
#include "support/Files.h"
#include "support/KeptFiles.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <QApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

using namespace qor;

namespace {

/// "Ab", "Ac", ...: names take letters only.
QString NameOf(int person)
{
    return u"A"_s + QChar(u'a' + person / 26 % 26) + QChar(u'a' + person % 26);
}

/// Types people into node 7, saves after every fifth, and tells how many are complete, until the process is killed.
void TypeAndSave(Editor& editor)
{
    editor.FocusOn("LVDirectory");
    for (int person = 0; person < 200; ++person) {
        editor.Keys("Ctrl+Return").Type("txtLastName", NameOf(person)).Type("txtFirstName", u"B"_s);
        editor.Type("txtExtension", QString::number(person + 1));
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

class FaultsTest : public KeptFilesTest
{
    Q_OBJECT

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
    /// No prompt stands twice.
    void FillSeventh(int entryCount) const
    {
        mSample->Run(u"DELETE FROM Detail_DIR WHERE NodeMasterID = 7"_s);
        mSample->Run(u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < %1) INSERT INTO "
                     "Detail_DIR SELECT 1, 1, 7, i, 'Smith', 'Anne', i, 1000 - i, 1 FROM n"_s.arg(entryCount));
    }

private Q_SLOTS:
    void init() { StartAnew(); }

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
        mSample->Run(u"PRAGMA journal_mode = DELETE"_s); // in which a lock keeps readers out, too
        mSample->Run(u"BEGIN EXCLUSIVE"_s);
        BoxScript boxes;
        boxes.Expect(ExpectedDialog{u"question \"DIR Editor\": "_s, [](QDialog& dialog) { dialog.reject(); }});
        CallLibrary(1, 1, 7);
        boxes.Verify();
        boxes.Expect(ExpectedDialog{u"question \"DIR Editor\": "_s, [&](QDialog&) { mSample->Run(u"COMMIT"_s); }});
        const auto user = [](Editor& e) { QCOMPARE(e.RowCount(), 4); };
        Editor::Open(1, 1, 7, user, boxes);
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
    FaultsTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "FaultsTest.moc"
