// Committing, leaving and closing: what is asked in which order, what stands in the database afterwards, and what a
// failure leaves.
#include "form/EditorForm.h"
#include "service/BusinessRulesObject.h"
#include "support/BoxScript.h"
#include "support/Cases.h"
#include "support/SampleDatabase.h"

#include <QApplication>
#include <QPushButton>
#include <QTemporaryFile>

using namespace qor;

namespace {

const QString storedRows =
    u"SELECT LastName, FirstName, Extension, NamePrompt, Password FROM Detail_DIR WHERE ConfigID = 1 AND PartID = 1 "
    "AND NodeMasterID = 7 ORDER BY SequenceNo"_s;
const QString storedHeader =
    u"SELECT d.NodeDescription, p.NodeDescription, AccessCode, UsePasswords, StartingPromptNumber FROM Node_DIR d "
    "JOIN Node_General_Pool p USING (ConfigID, PartID, NodeTypeID, NodeNumber) WHERE ConfigID = 1 AND PartID = 1 AND "
    "NodeNumber = 7"_s;

/// Expects a box by its short name and the button behind a colon; "13:cmdYes" is the question about message node 13.
void Expect(BoxScript& script, const QString& step)
{
    const QString name = step.section(u':', 0, 0);
    const QString button = step.section(u':', 1);
    const auto ask = [&](const QString& text) {
        const auto answer = button == u"Yes"_s  ? QMessageBox::Yes
                            : button == u"No"_s ? QMessageBox::No
                                                : QMessageBox::Cancel;
        script.Expect(ExpectedBox{text, u"Confirmation"_s, QMessageBox::Question, answer});
    };
    if (name == u"few"_s)
        script.Expect(Notice(u"Too Few Characters."_s));
    else if (name == u"invalid"_s)
        script.Expect(Notice(u"Invalid Entry. Please update the directory."_s));
    else if (name == u"label"_s)
        script.Expect(Notice(u"Double quotes and continuous single quotes are not allowed in the Label field"_s));
    else if (name == u"same"_s)
        ask(u"Duplicate prompts in Directory. Continue saving?"_s);
    else if (name == u"save"_s)
        ask(u"Do you want to save changes?"_s);
    else
        script.Expect(ExpectedQuestion{
            u"MSG %1 is referenced but it does not exist.\nDo you want to auto create node 'MSG %1'?"_s.arg(name),
            button});
}

/// One step: a button, "Esc", "close", "row:2" to select a row, "node:12" for the selector, "label:x", "code:1", or
/// "2.1:x" for a cell of a row.
void Do(EditorForm& form, const QString& step)
{
    const QString name = step.section(u':', 0, 0);
    const QString value = step.section(u':', 1);
    if (auto* button = form.findChild<QPushButton*>(name)) {
        button->setEnabled(button->isEnabled() || value == u"enabled"_s);
        QTest::mouseClick(button, Qt::LeftButton);
    } else if (name == u"Esc"_s) {
        QTest::keyClick(form.focusWidget(), Qt::Key_Escape);
    } else if (name == u"close"_s) {
        form.close();
    } else if (name == u"row"_s) {
        form.LVDirectory->SetSelected(value.toInt() - 1, true);
    } else if (name == u"node"_s) {
        form.cmbNode->SetListIndex(form.cmbNode->findText(u"DIR "_s + value));
    } else if (name == u"label"_s) {
        form.txtDescription->setText(value);
    } else if (name == u"code"_s) {
        form.txtAccessCode->setText(value);
    } else {
        form.LVDirectory->Items().SetText(name.section(u'.', 0, 0).toInt() - 1, name.section(u'.', 1).toInt(), value);
        form.cmdApply->setEnabled(true);
    }
}

QStringList ShownRows(const EditorForm& form)
{
    QStringList rows;
    const ListItems& items = form.LVDirectory->Items();
    for (int row = 0; row < items.RowCount(); ++row) {
        QStringList texts;
        for (int subItem = 1; subItem <= 5; ++subItem)
            texts << items.Text(row, subItem);
        rows << texts.join(u'|');
    }
    return rows;
}

QString StateOf(EditorForm& form)
{
    if (!form.isVisible())
        return u"closed"_s;
    QStringList state{form.cmbNode->Text(), QString::number(form.NodeNumber()), form.lblRecordPosition->text(),
                      form.cmdApply->isEnabled() ? u"dirty"_s : u"clean"_s};
    for (const int row : form.LVDirectory->SelectedRows())
        state << u"row %1"_s.arg(row + 1);
    const QString focus = form.focusWidget() ? form.focusWidget()->objectName() : QString();
    if (focus.startsWith(u"txt") || focus.startsWith(u"LV"))
        state << focus;
    return state.join(u' ');
}

} // namespace

class CommitTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SampleDatabase> mSample;

    /// Opens node 7 as the host does and hands over its form once it is shown; closes it if the user did not.
    void Edit(const std::function<void(EditorForm& form)>& user)
    {
        QTimer timer;
        connect(&timer, &QTimer::timeout, this, [&] {
            auto* form = qobject_cast<EditorForm*>(QApplication::activeModalWidget());
            if (!form)
                return;
            timer.stop();
            user(*form);
            form->cmdApply->setEnabled(false);
            form->Unload();
        });
        timer.start(1);
        auto* rules = new BusinessRulesObject;
        rules->ShowNodeEditor(1, 1, 7, nullptr);
        rules->Release();
    }
    QStringList Stored() const { return mSample->Run(storedHeader) + mSample->Run(storedRows); }

private Q_SLOTS:
    void init()
    {
        mSample = std::make_unique<SampleDatabase>(); // four entries with the prompts 1, 8, 15 and 22
        mSample->Run(u"DELETE FROM Detail_DIR WHERE ConfigID = 1 AND NodeMasterID = 7 AND SequenceNo > 4"_s);
    }
    void cleanup() { QVERIFY(!QGuiApplication::overrideCursor()); }

    // What is done and which boxes are answered how; the state, and whether the node was written.
    void walks_data()
    {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("boxes");
        QTest::addColumn<QString>("expected");
        const auto add = [](const char* name, const char* steps, const char* boxes, const char* expected) {
            QString state = QString::fromLatin1(expected);
            state.replace(u"@7"_s, u"DIR 7 7 1 of 4"_s).replace(u"@12"_s, u"DIR 12 12 2 of 4"_s);
            QTest::newRow(name) << QString::fromLatin1(steps) << QString::fromLatin1(boxes) << state;
        };
        add("apply", "label:New cmdApply", "", "@7 clean, written");
        add("order of questions",
            "code:12 2.1: 3.4:1 4.4:13 label:a\" row:1 cmdDirEdit cmdApply code:1234 cmdApply 2.1:B cmdApply label:x "
            "cmdApply",
            "few invalid same:Yes label same:Yes 13:cmdYes", "@7 clean row 2, written");
        add("last name missing", "3.1: cmdApply", "invalid", "@7 dirty row 3 LVDirectory, kept");
        add("no number", "1.3:1x cmdApply", "invalid", "@7 dirty row 1 LVDirectory, kept");
        add("same prompts, No", "2.4:1 3.4:1 cmdApply", "same:No", "@7 dirty row 3 LVDirectory, kept");
        add("same prompts, Yes", "2.4:1 3.4:1 cmdOK", "same:Yes", "closed, written");
        add("out of view", "node:12 480.1: cmdApply", "invalid", "@12 dirty row 480 LVDirectory, kept");
        add("same prompts, invalid", "2.4:1 4.1: cmdApply", "invalid", "@7 dirty row 4 LVDirectory, kept");
        add("double quote", "label:a\"b cmdApply", "label", "@7 dirty, kept");
        add("two quotes", "label:a''b close", "save:Yes label", "@7 dirty txtDescription, kept");
        add("short code", "code:1 Esc", "save:Yes few", "@7 dirty txtAccessCode, kept");
        add("apply in edit mode", "row:2 cmdDirEdit cmdApply", "", "@7 clean row 2, kept");

        add("OK, clean", "cmdOK", "", "closed, kept");
        add("OK", "label:x cmdOK", "", "closed, written");
        add("Cancel, Yes", "label:x cmdCancel", "save:Yes", "closed, written");
        add("Cancel, No", "label:x cmdCancel", "save:No", "closed, kept");
        add("Cancel, refused", "3.1: cmdCancel", "save:Yes invalid", "@7 dirty row 3 LVDirectory, kept");
        add("Escape, Cancel", "label:x Esc", "save:Cancel", "@7 dirty LVDirectory, kept");
        add("Escape in edit mode", "row:2 cmdDirEdit Esc", "save:Cancel", "@7 dirty row 2, kept");
        add("close, Yes", "label:x close", "save:Yes", "closed, written");
        add("close, No", "row:2 cmdDirEdit close", "save:No", "closed, kept");
        add("close twice", "3.1: close close", "save:Yes invalid save:No", "closed, kept");

        add("next", "cmdNext", "", "@12 clean, kept");
        add("next, Yes", "label:x cmdNext", "save:Yes", "@12 clean, written");
        add("next, No", "row:2 cmdDirEdit label:x cmdNext", "save:No", "@12 clean, kept");
        add("next, Cancel", "label:x cmdNext", "save:Cancel", "@7 dirty, kept");
        add("next, refused", "3.1: cmdNext", "save:Yes invalid", "@7 dirty row 3 LVDirectory, kept");
        add("last and previous", "cmdLast cmdPrevious", "", "DIR 20 20 3 of 4 clean, kept");
        add("last at the end", "cmdLast label:x cmdNext:enabled", "save:No", "DIR 31 31 4 of 4 clean, kept");
        add("first at the end", "label:x cmdFirst:enabled label:x cmdOK", "save:No", "closed, kept");
        add("selector, No", "label:x node:12", "save:No", "@12 clean LVDirectory, kept");
        add("selector, Cancel", "label:x node:31", "save:Cancel", "@7 dirty LVDirectory, kept");
        add("selector, refused", "code:1 node:31", "save:Yes few", "@7 dirty txtAccessCode, kept");
    }
    void walks()
    {
        QFETCH(QString, steps);
        QFETCH(QString, boxes);
        const QStringList before = Stored();
        QString state;
        Edit([&](EditorForm& form) {
            BoxScript script;
            for (const QString& box : boxes.split(u' ', Qt::SkipEmptyParts))
                Expect(script, box);
            form.LVDirectory->setFocus();
            for (const QString& step : steps.split(u' '))
                Do(form, step);
            state = StateOf(form);
            QVERIFY(form.Frame1->isEnabled() && form.StatusBar1->isHidden());
            const ListView& list = *form.LVDirectory;
            for (const int row : list.SelectedRows())
                QVERIFY(list.viewport()->rect().contains(list.visualRect(list.Items().index(row, 1)).center()));
        });
        QTEST(state + (Stored() == before ? u", kept"_s : u", written"_s), "expected");
    }

    void whatASaveWrites()
    {
        const QString others = u"SELECT * FROM Detail_DIR WHERE ConfigID <> 1 OR NodeMasterID <> 7"_s;
        const QString dates = u"SELECT DateModified FROM Node_General_Pool WHERE NodeNumber = 7 AND ConfigID = 1 AND "
                              "PartID = 1 AND NodeTypeID = 16"_s;
        const QStringList othersBefore = mSample->Run(others);
        const QStringList datesBefore = mSample->Run(dates);
        Edit([&](EditorForm& form) {
            QCOMPARE(mSample->Run(storedRows), ShownRows(form));
            form.cmbUsePasswords->SetListIndex(-1);
            for (const char* step :
                 {"label:", "code:", "1.1:O'Neil", "2.2:\" --", "3.3: 1.0 ", "4.5:", "row:4", "cmdDirUp", "cmdApply"})
                Do(form, QString::fromLatin1(step));
            QCOMPARE(mSample->Run(storedRows), ShownRows(form));
            QCOMPARE(mSample->Run(storedHeader), QStringList{u"|||0|5"_s});
            SortListByNumber(*form.LVDirectory, DirectoryColumn::Extension, ListItems::SortOrder::Descending);
            QVERIFY(mSample->Run(storedRows) != ShownRows(form));
            Do(form, u"label:Staff"_s);
            Do(form, u"cmdApply"_s);
            QCOMPARE(mSample->Run(storedRows), ShownRows(form));
            form.LVDirectory->SelectRows(0, 3);
            Do(form, u"cmdDirRemove"_s);
            Do(form, u"cmdApply"_s);
        });
        QCOMPARE(Stored(), QStringList{u"Staff|Staff||0|5"_s});
        QCOMPARE(mSample->Run(others), othersBefore);
        QVERIFY(mSample->Run(dates) != datesBefore);
    }

    // The entries' prompts, and for each of several saves in one session what is answered; the nodes created.
    void missingMessageNodes_data()
    {
        QTest::addColumn<QString>("prompts");
        QTest::addColumn<QString>("saves");
        QTest::addColumn<QString>("expected");
        const auto add = [](const char* name, const QString& prompts, const QString& saves, const QString& created) {
            QTest::newRow(name) << prompts << saves << created;
        };
        add("yes", u"13,1,27,2"_s, u"13:cmdYes 27:cmdYes;"_s, u"13P01M013.wav;27P01M027.wav"_s);
        add("yes to all", u"13,27,1234,55"_s, u"13:cmdYesToAll"_s,
            u"13P01M013.wav;27P01M027.wav;55P01M055.wav;1234P01M1234.wav"_s);
        add("no", u"13,27,41,42"_s, u"13:cmdNo 27:cmdYes 41:cmdNo 42:cmdNo;"_s, u"27P01M027.wav"_s);
        add("stop", u"13,27,41,1"_s, u"13:cmdYes 27:cmdStop;27:cmdNo 41:cmdYes;"_s, u"13P01M013.wav;41P01M041.wav"_s);
        add("closed", u"13,27,1,2"_s, u"13:;13:cmdYes 27:;27:cmdNo"_s, u"13P01M013.wav"_s);
        add("all is for one save", u"13,1,2,3"_s, u"13:cmdYesToAll;27:cmdNo>27,1,2,3"_s, u"13P01M013.wav"_s);
        add("same prompt", u"13,13,1,2"_s, u"same:Yes 13:cmdYes"_s, u"13P01M013.wav"_s);
        add("beginnings", u"130,13,41,2"_s, u"130:cmdNo 41:cmdNo"_s, {});
        add("longer than checked", u"13,130,1,2"_s, u"13:cmdNo 130:cmdNo"_s, {});
        add("no template", u"13,1,2,3"_s, u"13:cmdYes"_s, {});
    }
    void missingMessageNodes()
    {
        QFETCH(QString, prompts);
        QFETCH(QString, saves);
        if (QLatin1String(QTest::currentDataTag()) == QLatin1String("no template"))
            mSample->Run(u"DELETE FROM Node_MSG WHERE NodeNumber = 0"_s);
        const QString created = u"SELECT m.NodeNumber || KELFilename FROM Node_MSG m JOIN Node_General_Pool p USING "
                                "(ConfigID, PartID, NodeTypeID, NodeNumber) WHERE m.Comment = 'Sample' AND "
                                "m.NodeDescription = p.NodeDescription AND m.NodeDescription IN ('Anne "
                                "Abcdefghijklmnopqrstuvwxyz', 'Bo Baker', 'Cy Clark', 'Di Davies') ORDER BY 1 + "
                                "m.NodeNumber"_s;
        Edit([&](EditorForm& form) {
            const QStringList names{u"Anne|Abcdefghijklmnopqrstuvwxyzabcde"_s, u"Bo|Baker"_s, u"Cy|Clark"_s,
                                    u"Di|Davies"_s};
            for (const QString& save : saves.split(u';')) {
                const QStringList rows = (save.contains(u'>') ? save.section(u'>', 1) : prompts).split(u',');
                for (int row = 0; row < 4; ++row) {
                    Do(form, u"%1.2:%2"_s.arg(row + 1).arg(names[row].section(u'|', 0, 0)));
                    Do(form, u"%1.1:%2"_s.arg(row + 1).arg(names[row].section(u'|', 1)));
                    Do(form, u"%1.4:%2"_s.arg(row + 1).arg(rows[row]));
                }
                BoxScript script;
                for (const QString& box : save.section(u'>', 0, 0).split(u' ', Qt::SkipEmptyParts))
                    Expect(script, box);
                Do(form, u"cmdApply"_s);
                script.Verify();
                QCOMPARE(mSample->Run(storedRows), ShownRows(form));
            }
        });
        QTEST(mSample->Run(created).join(u';'), "expected");
    }

    // What makes a save fail, what mends it, and the number of entries that the failure leaves.
    void failures_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<QString>("repair");
        QTest::addColumn<int>("left");
        const auto trigger = [](const QString& event) {
            return u"CREATE TRIGGER fault BEFORE "_s + event + u" BEGIN SELECT RAISE(ABORT, 'refused'); END"_s;
        };
        const QString insert = u"INSERT ON Detail_DIR WHEN NEW.SequenceNo = %1"_s;
        const QString drop = u"DROP TRIGGER fault"_s;
        QTest::newRow("first command") << trigger(u"DELETE ON Detail_DIR"_s) << drop << 4;
        QTest::newRow("node") << trigger(u"UPDATE ON Node_DIR"_s) << drop << 0;
        QTest::newRow("pool") << trigger(u"UPDATE ON Node_General_Pool"_s) << drop << 0;
        QTest::newRow("first entry") << trigger(insert.arg(1)) << drop << 0;
        QTest::newRow("an entry") << trigger(insert.arg(3)) << drop << 2;
        QTest::newRow("last entry") << trigger(insert.arg(4)) << drop << 3;
        QTest::newRow("no table") << u"ALTER TABLE Detail_DIR RENAME TO refused"_s
                                  << u"ALTER TABLE refused RENAME TO Detail_DIR"_s << 4;
    }
    void failures()
    {
        QFETCH(QString, fault);
        QFETCH(QString, repair);
        QFETCH(int, left);
        Edit([&](EditorForm& form) {
            Do(form, u"1.4:13"_s);
            Do(form, u"label:x"_s);
            mSample->Run(fault);
            BoxScript script;
            Expect(script, u"13:cmdYes"_s);
            script.Expect(
                ErrorReport(u"SaveChanges"_s, fault.contains(u"TRIGGER") ? u"*refused*"_s : u"*dir-db check*"_s));
            Do(form, u"cmdApply"_s);
            script.Verify();
            QCOMPARE(StateOf(form), u"DIR 7 7 1 of 4 clean"_s);
            QVERIFY(form.Frame1->isEnabled() && form.StatusBar1->isHidden() && !QGuiApplication::overrideCursor());
            QCOMPARE(form.LVDirectory->Items().RowCount(), 4);
            mSample->Run(repair);
            QCOMPARE(mSample->Run(storedRows).size(), left);
            Do(form, u"label:y"_s);
            Do(form, u"cmdApply"_s);
            QCOMPARE(mSample->Run(storedRows), ShownRows(form));
            QCOMPARE(mSample->Run(storedHeader).first().section(u'|', 0, 1), u"y|y"_s);
        });
        QCOMPARE(mSample->Run(u"SELECT COUNT(*) FROM Node_MSG WHERE NodeNumber = 13"_s), QStringList{u"1"_s});
    }

    // The library that is registered for the label check, and what the report says of it.
    void labelCheckIsRegistered_data()
    {
        AddCases({{"relative path", u"check.so"_s, u"*\"check.so\" is not an absolute path*"_s},
                  {"no file", u"/nowhere/check.so"_s, u"*/nowhere/check.so does not exist*"_s},
                  {"writable by others", u"@"_s, u"*can be written by others*"_s}});
    }
    void labelCheckIsRegistered()
    {
        QFETCH(QString, given);
        QFETCH(QString, expected);
        QTemporaryFile library;
        QVERIFY(library.open() && library.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::WriteOther));
        QFile registry(QFile::decodeName(qgetenv("KELDAR_REGISTRY")));
        QVERIFY(registry.open(QIODevice::WriteOnly));
        const QString clsid = u"{6E2B8C41-93D7-4F0A-A51C-7B40D2E83600}"_s;
        registry.write(u"Windows Registry Editor Version 5.00\r\n\r\n"
                       "[HKEY_CLASSES_ROOT\\QOR_Validate_TEXTField.Business_Rules\\Clsid]\r\n@=\"%1\"\r\n\r\n"
                       "[HKEY_CLASSES_ROOT\\CLSID\\%1\\InprocServer32]\r\n@=\"%2\"\r\n"_s
                           .arg(clsid, given == u"@"_s ? library.fileName() : given)
                           .toUtf8());
        registry.close();
        const QStringList before = Stored();
        Edit([&](EditorForm& form) {
            Do(form, u"label:x"_s);
            BoxScript script{ErrorReport(u"cmdApply_Click"_s, expected)};
            Do(form, u"cmdApply"_s);
            QCOMPARE(StateOf(form), u"DIR 7 7 1 of 4 dirty"_s);
        });
        QCOMPARE(Stored(), before);
    }
};

QTEST_MAIN(CommitTest)
#include "CommitTest.moc"
