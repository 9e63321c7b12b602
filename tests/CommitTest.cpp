// Committing, leaving and closing: what is asked in which order, what stands in the database afterwards, and what a
// failure leaves.
#include "support/Editor.h"
#include "support/Files.h"
#include "support/SampleDatabase.h"

#include <dlfcn.h>
#include <QLocale>
#include <QTemporaryFile>
#include <QTest>

using namespace qor;

namespace {

const char* const label = "txtDescription";
const char* const code = "txtAccessCode";

const ExpectedBox few = Notice(u"Too Few Characters."_s);
const ExpectedBox invalid = Notice(u"Invalid Entry. Please update the directory."_s);
const ExpectedBox quotes = Notice(u"Double quotes and continuous single quotes are not allowed in the Label field"_s);
const QString duplicates = u"Duplicate prompts in Directory. Continue saving?"_s;
const ExpectedBox sameYes = Question(duplicates, QMessageBox::Yes);
const ExpectedBox sameNo = Question(duplicates, QMessageBox::No);
const ExpectedBox saveYes = SaveQuestion(QMessageBox::Yes);
const ExpectedBox saveNo = SaveQuestion(QMessageBox::No);
const ExpectedBox saveCancel = SaveQuestion(QMessageBox::Cancel);

/// Changes of entries before a walk.
const QString badThird = u"Extension = '1x' WHERE NodeMasterID = 7 AND SequenceNo = 3"_s;
const QString sameSecondAndThird = u"NamePrompt = 1 WHERE NodeMasterID = 7 AND SequenceNo IN (2, 3)"_s;

const QString at7 = u"DIR 7 1 of 4 "_s;
const QString at12 = u"DIR 12 2 of 4 "_s;
const QString bad3 = at7 + u"dirty row 3 LVDirectory, kept"_s;

const QString header = u"SELECT d.NodeDescription, p.NodeDescription, AccessCode, UsePasswords, StartingPromptNumber "
                       "FROM Node_DIR d JOIN Node_General_Pool p USING (ConfigID, PartID, NodeTypeID, NodeNumber) "
                       "WHERE ConfigID = 1 AND PartID = 1 AND NodeNumber = 7"_s;

const QString pool = u"Node_General_Pool"_s;
const QString renamed = u"ALTER TABLE %1 RENAME TO %2"_s;

QString StateOf(const Editor& editor)
{
    if (!editor.IsOpen())
        return u"closed"_s;
    QStringList state{editor.Text("cmbNode"), editor.Text("lblRecordPosition"),
                      editor.IsDirty() ? u"dirty"_s : u"clean"_s};
    for (const int row : editor.Selected())
        state << (editor.IsInView(row) ? u"row %1"_s : u"hidden row %1"_s).arg(row + 1);
    return state.join(u' ') + u' ' + editor.Focus();
}

Editor& Changed(Editor& editor)
{
    return editor.Type(label, u"x"_s);
}

} // namespace

class CommitTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SampleDatabase> mSample;

    /// What is done in node 7 of a fresh sample, whose entries are changed before; the state, and whether anything was
    /// written.
    void Walk(const QString& expected, const QString& change, const Editor::User& user, int line = __builtin_LINE())
    {
        init();
        if (!change.isEmpty())
            mSample->Run(u"UPDATE Detail_DIR SET "_s + change);
        const int before = mSample->DataVersion();
        QString state;
        Editor::Open(1, 1, 7, [&](Editor& editor) {
            user(editor);
            state = StateOf(editor);
        });
        CompareAt(line, state + (mSample->DataVersion() == before ? u", kept"_s : u", written"_s), expected);
    }
    /// What makes a save fail, a table that is gone or an event that the database refuses, and the number of entries
    /// that the failure leaves.
    void Fails(const QString& fault, int left, const QString& condition = {}, int line = __builtin_LINE())
    {
        init();
        mSample->Run(u"UPDATE Detail_DIR SET NamePrompt = 13 WHERE NodeMasterID = 7 AND SequenceNo = 1"_s);
        const ExpectedDialog question = MissingNode(13, u"cmdYes"_s);
        const bool isRefused = fault.contains(u' ');
        const QString told = isRefused ? u"*refused*"_s : u"*dir-db check*"_s;
        Editor::Open(1, 1, 7, [&](Editor& editor) {
            isRefused ? mSample->Refuse(fault, condition) : void(mSample->Run(renamed.arg(fault, u"gone"_s)));
            fault == pool ? editor.Expect(ErrorReport(u"CheckForUnReferencedNodes"_s, told)) : editor.Expect(question);
            editor.Save(ErrorReport(u"SaveChanges"_s, told));
            CompareAt(line, StateOf(editor), at7 + u"clean cmdOK"_s);
            isRefused ? mSample->RefuseNoMore() : void(mSample->Run(renamed.arg(u"gone"_s, fault)));
            CompareAt(line, QString::number(mSample->Entries(7).size()), QString::number(left));
            fault == pool ? editor.Save(question) : editor.Save();
            QCOMPARE(mSample->Entries(7), editor.Rows());
            QCOMPARE(Value(header).section(u'|', 0, 1), u"x|x"_s);
        });
        CompareAt(line, Value(u"SELECT COUNT(*) FROM Node_MSG WHERE NodeNumber = 13"_s), u"1"_s);
    }
    QString Value(const QString& query) const { return mSample->Run(query).join(u';'); }

private Q_SLOTS:
    void init()
    {
        mSample = std::make_unique<SampleDatabase>(); // four entries with the prompts 1, 8, 15 and 22
        mSample->SetEntries(7, mSample->Entries(7).first(4));
    }

    // Apply, and what it asks in which order.
    void applying()
    {
        Walk(at7 + u"clean cmdOK, written"_s, {}, [](auto& e) { Changed(e).Click("cmdApply"); });
        Walk(bad3, badThird, [](auto& e) { Changed(e).Expect(invalid).Click("cmdApply"); });
        Walk(bad3, sameSecondAndThird, [](auto& e) { Changed(e).Expect(sameNo).Click("cmdApply"); });
        Walk(u"closed, written"_s, sameSecondAndThird, [](auto& e) { Changed(e).Expect(sameYes).Click("cmdOK"); });
        Walk(at7 + u"dirty row 5 LVDirectory, kept"_s, sameSecondAndThird,
             [](auto& e) { e.Click("cmdDirAdd").ClickRow(0).Expect(invalid).Click("cmdApply"); });
        Walk(at12 + u"dirty row 480 LVDirectory, kept"_s, u"Extension = '1x' WHERE SequenceNo = 480"_s,
             [](auto& e) { Changed(e.Click("cmdNext")).Expect(invalid).Click("cmdApply"); });
        Walk(at7 + u"clean row 2 cmdOK, written"_s, u"NamePrompt = 13 WHERE NodeMasterID = 7 AND SequenceNo = 4"_s,
             [](auto& e) {
                 e.Type(code, u"12"_s).Type(label, u"a\""_s).ClickRow(1).Click("cmdDirInsert").ClickRow(0);
                 e.Click("cmdDirEdit").Expect(few).Click("cmdApply").Type(code, u"1234"_s);
                 e.Expect(invalid).Click("cmdApply").Click("cmdDirEdit");
                 e.Type("txtLastName", u"B"_s).Type("txtFirstName", u"B"_s);
                 e.Expect(sameYes, quotes).Click("cmdApply").Type(label, u"x"_s);
                 e.Expect(sameYes, MissingNode(13, u"cmdYes"_s)).Click("cmdApply");
             });
    }

    void closing()
    {
        Walk(u"closed, kept"_s, {}, [](auto& e) { e.Click("cmdOK"); });
        Walk(u"closed, written"_s, {}, [](auto& e) { Changed(e).Keys("Return"); });
        Walk(u"closed, kept"_s, {}, [](auto& e) { Changed(e).Expect(saveNo).Click("cmdCancel"); });
        Walk(bad3, badThird, [](auto& e) { Changed(e).Expect(saveYes, invalid).Click("cmdCancel"); });
        Walk(at7 + u"dirty txtDescription, kept"_s, {}, [](auto& e) { Changed(e).Expect(saveCancel).Keys("Esc"); });
        Walk(at7 + u"dirty row 1 txtAccessCode, kept"_s, {},
             [](auto& e) { e.Type(code, u"1"_s).ClickRow(0).Expect(saveYes, few).Keys("Esc"); });
        Walk(u"closed, written"_s, {}, [](auto& e) { Changed(e).Expect(saveYes).Close(); });
        Walk(u"closed, kept"_s, {}, [](auto& e) { e.ClickRow(1).Click("cmdDirEdit").Expect(saveNo).Close(); });
        Walk(at7 + u"dirty row 1 txtDescription, kept"_s, {},
             [](auto& e) { e.Type(label, u"a''b"_s).ClickRow(0).Expect(saveYes, quotes).Close(); });
    }

    void moving()
    {
        Walk(u"DIR 20 3 of 4 clean cmdPrevious, kept"_s, {}, [](auto& e) { e.Click("cmdLast").Click("cmdPrevious"); });
        Walk(at12 + u"clean cmdNext, written"_s, {}, [](auto& e) { Changed(e).Expect(saveYes).Click("cmdNext"); });
        Walk(at12 + u"clean cmdNext, kept"_s, {}, [](auto& e) { Changed(e).Expect(saveNo).Click("cmdNext"); });
        Walk(at7 + u"dirty cmdNext, kept"_s, {}, [](auto& e) { Changed(e).Expect(saveCancel).Click("cmdNext"); });
        Walk(at12 + u"clean cmbNode, kept"_s, {},
             [](auto& e) { Changed(e).Expect(saveNo).FocusOn("cmbNode").Keys("Down"); });
        Walk(at7 + u"dirty cmbNode, kept"_s, {},
             [](auto& e) { Changed(e).Expect(saveCancel).FocusOn("cmbNode").Keys("Down"); });
    }

    void whatASaveWrites()
    {
        const QString others = u"SELECT * FROM Detail_DIR WHERE ConfigID <> 1 OR NodeMasterID <> 7"_s;
        const QString othersBefore = Value(others);
        mSample->SetEntries(7, {u"O'Neil|\" --| 1.0 |13|12"_s, u"Baker|Ben|102|8|1"_s, u"Clark|Cy|103|15|7"_s});
        Editor::Open(1, 1, 7, [&](Editor& editor) {
            editor.Type(label, {}).Type(code, {}).ClickRow(1).Click("cmdDirUp");
            editor.Expect(MissingNode(13, u"cmdNo"_s)).Click("cmdApply").Expected();
            QCOMPARE(editor.Rows().last(), u"Clark|Cy|103|15|7"_s);
            QCOMPARE(editor.Rows(), mSample->Entries(7));
            QCOMPARE(Value(header), u"|||1|5"_s);
            editor.ClickHeader(3).Type(label, u"Staff"_s).Click("cmdApply");
            QCOMPARE(editor.Rows().first(), u"Clark|Cy|103|15|7"_s);
            QCOMPARE(editor.Rows(), mSample->Entries(7));
            editor.ListKeys("Ctrl+A").Click("cmdDirRemove").Click("cmdApply");
        });
        QCOMPARE(Value(header) + mSample->Entries(7).join(u';'), u"Staff|Staff||1|5"_s);
        QCOMPARE(Value(others), othersBefore);
        const QString date =
            Value(u"SELECT DateModified FROM Node_General_Pool WHERE NodeNumber = 7 AND NodeTypeID = 16"_s);
        QVERIFY(date.startsWith(QLocale::system().toString(QDate::currentDate(), QLocale::ShortFormat)));
    }

    // Looking at entries in edit mode changes none of them, whatever they hold.
    void walkingChangesNothing()
    {
        mSample->SetEntries(7, {u"O'Neil|Anne|1234567890123456|1|1"_s, u"M\u00FCller|Jos\u00E9|12|999|12345678901"_s,
                                u"A B|\U0001F600| 1e2|3|x"_s, u"Clark|Cy|3|4|1"_s});
        const QStringList before = mSample->Entries(7);
        Editor::Open(1, 1, 7, [&](Editor& editor) {
            editor.ClickRow(0).Click("cmdDirEdit").ListKeys("Down").ListKeys("Down").ListKeys("Down");
            editor.Expect(MissingNode(999, u"cmdNo"_s)).Click("cmdApply").Expected();
            QCOMPARE(mSample->Entries(7), before);
            editor.Click("cmdDirEdit").Type("txtLastName", u"O'X"_s).ListKeys("Up").ListKeys("Down");
            QCOMPARE(editor.Cell(3, 1), u"OX"_s);
        });
    }

    void numbersBelow0()
    {
        mSample->Run(u"INSERT INTO Node_DIR SELECT ConfigID, PartID, NodeTypeID, -3, 'Below', 0, '', 1 FROM Node_DIR "
                     "WHERE NodeNumber = 7"_s);
        mSample->SetEntries(-3, {u"Baker|Ben|102|1|1"_s});
        const QString seventh = Value(header) + mSample->Entries(7).join(u';');
        Editor::Open(1, 1, -3, [&](Editor& editor) {
            QCOMPARE(editor.Text(label) + u' ' + editor.Rows().join(u';'), u"Below Baker|Ben|102|1|1"_s);
            editor.Type(label, u"x"_s).ClickRow(0).Click("cmdDirRemove").Click("cmdApply");
        });
        QCOMPARE(Value(u"SELECT NodeDescription FROM Node_DIR WHERE NodeNumber = -3"_s), u"x"_s);
        QCOMPARE(mSample->Entries(-3), QStringList());
        QCOMPARE(Value(header) + mSample->Entries(7).join(u';'), seventh);
    }

    // A number that is none costs the others nothing.
    void numberOfNoNode()
    {
        mSample->Run(u"INSERT INTO Node_DIR (ConfigID, PartID, NodeTypeID, NodeNumber) VALUES (1, 1, 16, 40000)"_s);
        const auto user = [](Editor& e) { QCOMPARE(StateOf(e.Click("cmdLast")).left(13), u"DIR 31 4 of 4"_s); };
        Editor::Open(1, 1, 7, user, {ErrorReport(u"LoadExistingNodesInRecordSelector"_s, u"*left out: 40000.*"_s)});
    }

    // In one session: what was answered is not asked again, and 13 counts as answered when 130 is.
    void missingMessageNodes()
    {
        QStringList entries;
        for (const int prompt : {130, 13, 27, 41, 42, 999})
            entries << u"Adams|Anne|1|%1|1"_s.arg(prompt);
        mSample->SetEntries(7, entries);
        Editor::Open(1, 1, 7, [&](Editor& editor) {
            editor.Save(MissingNode(130));
            editor.Save(MissingNode(130, u"cmdNo"_s), MissingNode(27, u"cmdYes"_s), MissingNode(41, u"cmdStop"_s));
            editor.Save(MissingNode(41, u"cmdYesToAll"_s));
            editor.ClickRow(0).Click("cmdDirEdit").Type("cmbPromptNumber", u"61"_s);
            editor.Save(MissingNode(61, u"cmdNo"_s)); // all were all of one save
            editor.Save();
            QCOMPARE(mSample->Entries(7), editor.Rows());
        });
        QCOMPARE(Value(u"SELECT NodeNumber FROM Node_MSG WHERE NodeDescription = 'Anne Adams' ORDER BY 1"_s),
                 u"27;41;42;999"_s);
    }

    void failures()
    {
        Fails(u"UPDATE ON Node_DIR"_s, 0);
        Fails(u"UPDATE ON Node_General_Pool"_s, 0);
        Fails(u"INSERT ON Detail_DIR"_s, 2, u"NEW.SequenceNo = 3"_s);
        Fails(pool, 0);
        if (!SampleDatabase::IsOnServer()) // where the entries are read first, and nothing is saved
            Fails(u"Detail_DIR"_s, 4);
    }

    void inputMeantForTheSavedRows()
    {
        Editor::Open(1, 1, 7, [&](Editor& editor) {
            Changed(editor.ClickRow(0)).QueueRemoval().Click("cmdApply");
            QCoreApplication::processEvents();
            QCOMPARE(editor.RowCount(), 4);
        });
    }

    void labelCheckIsRegistered()
    {
        QTemporaryFile library;
        QVERIFY(library.open() && library.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::WriteOther));
        Dl_info other{}; // a library that may be loaded and holds no component
        QVERIFY(dladdr(dlsym(RTLD_DEFAULT, "gnu_get_libc_version"), &other));
        const int before = mSample->DataVersion();
        for (const auto& [path, fault] : {std::pair(u"check.so"_s, u"*\"check.so\" is not an absolute path*"_s),
                                          {QFile::decodeName(other.dli_fname), u"*has no DllGetClassObject*"_s},
                                          {library.fileName(), u"*can be written by others*"_s}}) {
            WriteFile(qEnvironmentVariable("KELDAR_REGISTRY"),
                      u"[HKEY_CLASSES_ROOT\\QOR_Validate_TEXTField.Business_Rules\\Clsid]\n@=\"{C}\"\n"
                      "[HKEY_CLASSES_ROOT\\CLSID\\{C}\\InprocServer32]\n@=\"%1\"\n"_s.arg(path)
                          .toUtf8());
            Editor::Open(1, 1, 7, [report = ErrorReport(u"cmdApply_Click"_s, fault)](Editor& editor) {
                QVERIFY(Changed(editor).Expect(report).Click("cmdApply").IsDirty());
            });
        }
        QCOMPARE(mSample->DataVersion(), before);
    }
};

QTEST_MAIN(CommitTest)
#include "CommitTest.moc"
