// What is kept beside the database: drafts of failed saves, earlier versions, and the form that shows no node.
#include "rules/DraftFiles.h"
#include "rules/EarlierVersions.h"
#include "support/Files.h"
#include "support/KeptFiles.h"

#include <QComboBox>
#include <QTreeWidget>

using namespace qor;

class KeptTest : public KeptFilesTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { StartAnew(); }

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
            e.ClickRow(1).Click("cmdDirRemove").Click("cmdDirAdd").ClickRow(0).Click("cmdDirDown");
            e.Expect(Notice(u"Invalid*"_s)).Click("cmdApply").ClickRow(3).Click("cmdDirRemove").Click("cmdOK");
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
};

QTEST_MAIN(KeptTest)
#include "KeptTest.moc"
