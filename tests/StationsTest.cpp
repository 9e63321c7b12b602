// What other stations do to a node and its message nodes while it is open at this one, up to the middle of a save.
#include "support/Editor.h"
#include "support/SampleDatabase.h"

using namespace qor;

class StationsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void changedAtAnotherStation()
    {
        const SampleDatabase sample;
        const QStringList entries = sample.Entries(7).first(4);
        sample.SetEntries(7, entries);
        const QString question =
            u"DIR 7 has been changed at another station.\n*\nDo you want to overwrite these changes?"_s;
        Editor::Open(1, 1, 7, [&](Editor& editor) {
            sample.SetEntries(7, entries.first(3));
            editor.Type("txtDescription", u"x"_s);
            if (SampleDatabase::IsOnServer()) {
                editor.Expect(Question(question, QMessageBox::No)).Click("cmdApply").Expected();
                QVERIFY(editor.IsDirty() && sample.Entries(7).size() == 3);
                editor.Expect(Question(question, QMessageBox::Yes));
            }
            QVERIFY(!editor.Click("cmdApply").Expected().IsDirty());
            editor.Save();
        });
        QCOMPARE(sample.Entries(7), entries);
    }

    // A message node that somebody else makes before the save and another one while the question is asked.
    void numbersTakenAtAnotherStation()
    {
        const SampleDatabase sample;
        sample.SetEntries(7, {u"Adams|Anne|1|1|1"_s});
        const auto make = [&](int number) {
            sample.Run(u"INSERT INTO Node_MSG (ConfigID, PartID, NodeNumber) VALUES (1, 1, %1)"_s.arg(number));
            sample.Run(u"INSERT INTO Node_General_Pool (ConfigID, PartID, NodeTypeID, NodeNumber) "
                       "VALUES (1, 1, 0, %1)"_s.arg(number));
        };
        ExpectedDialog question = MissingNode(27, u"cmdYes"_s);
        question.answer = [&, answer = question.answer](QDialog& dialog) { make(27), answer(dialog); };
        Editor::Open(1, 1, 7, [&](Editor& editor) {
            editor.ClickRow(0).Keys("Ctrl+Return").Type("txtLastName", u"Berg"_s).Type("txtFirstName", u"Bea"_s);
            editor.Type("txtExtension", u"2"_s).Click("cmdDirEdit");
            QCOMPARE(editor.Cell(1, 4), u"13"_s);
            make(13);
            if (SampleDatabase::IsOnServer())
                editor.Expect(question, Notice(u"Another station*\nBerg Bea: MSG 27 in place of MSG 13\n"
                                               "Berg Bea: MSG 41 in place of MSG 27"_s));
            editor.Click("cmdApply").Expected();
            QCOMPARE(sample.Entries(7), editor.Rows());
        });
        const QString made = SampleDatabase::IsOnServer() ? u"41"_s : QString();
        QCOMPARE(sample.Entries(7)[1], u"Berg|Bea|2|%1|1"_s.arg(made.isEmpty() ? u"13"_s : made));
        QCOMPARE(sample.Run(u"SELECT NodeNumber FROM Node_MSG WHERE NodeDescription = 'Bea Berg'"_s).join(u';'), made);
    }
};

QTEST_MAIN(StationsTest)
#include "StationsTest.moc"
