// The editor's form under the hands of its user: the commands on entries, the fields that edit them in place, the
// node's header. Keys and clicks go in; what the list, the fields and the mark of changes hold comes out.
#include "form/ModuleState.h"
#include "platform/ui/MsgBox.h"
#include "rules/Validation.h"
#include "service/frmDIR.h"
#include "support/BoxScript.h"
#include "support/Cases.h"
#include "support/SampleDatabase.h"

#include <QClipboard>
#include <QHeaderView>
#include <QLineEdit>
#include <QScrollBar>

using namespace qor;

class EditorTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SampleDatabase> mSample;
    std::unique_ptr<frmDIR> mForm;

    /// Shows the form as the service does, on a directory that has these last names; "*500" makes that many.
    void Open(const QString& names)
    {
        mForm = std::make_unique<frmDIR>();
        mForm->Load();
        mForm->SetConfigID(1);
        mForm->SetPartitionID(1);
        ResetDirectoryListView(List());
        mForm->HideEntryEditors();
        BusinessRules rules;
        rules.LoadExistingNodesInRecordSelector(*mForm, 12);
        QVERIFY(rules.LoadPromptMSGNodeNumber(*mForm) && rules.LoadData(*mForm, 12));
        Items().Clear();
        std::vector<ListRow> rows;
        const QString all = names.startsWith(u'*') ? u"A,"_s.repeated(names.sliced(1).toInt()) : names;
        for (const QString& name : all.split(u',', Qt::SkipEmptyParts))
            rows.push_back(EntryRow(static_cast<int>(rows.size()) + 1, {name, u"Anne"_s, u"101"_s, u"5"_s, u"1"_s}));
        Items().Append(std::move(rows));
        mForm->show();
        QVERIFY(QTest::qWaitForWindowActive(mForm.get()));
        mForm->MarkUnchanged();
    }
    void Do(const QString& steps)
    {
        for (const QString& step : steps.split(u' ', Qt::SkipEmptyParts))
            DoOne(step);
    }
    /// A button by its name; "row:2", "+row:2" (with Ctrl), "rightrow:2" and "head:1" for clicks;
    /// "txtLastName=x", "<x" and "^x" to type, paste or compose over a field's text and "_x" at its third character;
    /// else keys for the list.
    void DoOne(const QString& step)
    {
        static const QRegularExpression input(u"^(txt\\w+|cmb\\w+)([=<^_])(.*)"_s,
                                              QRegularExpression::DotMatchesEverythingOption);
        const int number = step.section(u':', 1).toInt();
        if (const auto match = input.match(step); match.hasMatch()) {
            Enter(*Field(match.captured(1)), match.captured(2).front(), match.captured(3));
        } else if (auto* button = mForm->findChild<QPushButton*>(step)) {
            QTest::mouseClick(button, Qt::LeftButton);
        } else if (step.contains(u"row:")) {
            const auto modifier = step.startsWith(u'+') ? Qt::ControlModifier : Qt::NoModifier;
            const auto mouse = step.startsWith(u"right") ? Qt::RightButton : Qt::LeftButton;
            QTest::mouseClick(List().viewport(), mouse, modifier, Centre(number));
        } else if (step.startsWith(u"head:")) {
            QHeaderView* header = List().horizontalHeader();
            QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                              {header->sectionViewportPosition(number) + 20, 8});
        } else {
            List().setFocus();
            QTest::keySequence(&List(), QKeySequence(step));
            const auto buttons = mForm->findChildren<QPushButton*>(); // a mnemonic presses its button for a moment
            QTRY_VERIFY(std::none_of(buttons.begin(), buttons.end(), [](auto* pressed) { return pressed->isDown(); }));
        }
    }
    static void Enter(QLineEdit& field, QChar way, const QString& text)
    {
        field.show();
        field.setFocus(Qt::TabFocusReason);
        field.selectAll();
        if (way == u'_')
            field.setCursorPosition(2);
        if (text.isEmpty())
            QTest::keyClick(&field, Qt::Key_Backspace);
        if (way == u'<') {
            QGuiApplication::clipboard()->setText(text);
            QTest::keySequence(&field, QKeySequence::Paste);
        } else if (way == u'^') {
            for (const QString& committed : {QString(), text}) {
                QInputMethodEvent event(committed.isEmpty() ? u"pre"_s : QString(), {});
                event.setCommitString(committed);
                QCoreApplication::sendEvent(&field, &event);
            }
        } else {
            QTest::keyClicks(&field, text);
        }
    }

    ListView& List() const { return *mForm->LVDirectory; }
    ListItems& Items() const { return List().Items(); }
    QString Mark() const { return mForm->cmdApply->isEnabled() ? u" dirty"_s : u" clean"_s; }
    QLineEdit* Field(const QString& name) const
    {
        const auto* combo = mForm->findChild<ComboBox*>(name);
        return combo ? combo->lineEdit() : mForm->findChild<QLineEdit*>(name);
    }
    QPoint Centre(int row) const { return List().visualRect(Items().index(row, 2)).center(); }
    bool IsRed(int row) const
    {
        int red = 0;
        for (int subItem = 0; subItem <= 5; ++subItem)
            red |= Items().ForeColor(row, subItem) == invalidRowColour ? 1 << subItem : 0;
        return red == 0b11110;
    }
    /// "2aBaker*": the key, ! and the prompt of a red row, the last name, * where it is selected.
    QString Rows() const
    {
        QString rows;
        for (int row = 0; row < Items().RowCount(); ++row) {
            rows += Items().Key(row) + (IsRed(row) ? u'!' + Items().Text(row, 4) : QString());
            rows += Items().Text(row, 1) + (List().IsSelected(row) ? u"* "_s : u" "_s);
        }
        return rows.trimmed() + Mark();
    }
    /// The in-place fields lie over the selected row's cells and show it.
    void CompareEditors() const
    {
        const int row = List().SelectedItem();
        int column = 1;
        for (const char* name : {"txtLastName", "txtFirstName", "txtExtension", "cmbPromptNumber"}) {
            const auto* editor = mForm->findChild<QWidget*>(QLatin1String(name));
            QRect place = List().visualRect(Items().index(row, column)) & List().viewport()->rect();
            place.moveTopLeft(List().viewport()->mapTo(mForm->fraDirectory, place.topLeft()));
            QVERIFY2(editor->isVisible(), name);
            QVERIFY2(editor->geometry().adjusted(-1, -1, 1, 1).contains(place), name);
            QVERIFY2(place.adjusted(-1, -1, 1, 1).contains(editor->geometry()), name);
            QCOMPARE(Field(editor->objectName())->text(), Items().Text(row, column++));
        }
        QVERIFY(mForm->txtPassword->isHidden());
        QCOMPARE(List().SelectedRows(), std::vector{row});
    }

private Q_SLOTS:
    void initTestCase()
    {
        InstallErrorBox();
        mSample = std::make_unique<SampleDatabase>();
    }
    void cleanup() { QVERIFY(!QGuiApplication::overrideCursor()); }

    void entryCommands_data()
    {
        const QString abc = u"A,B,C|"_s;
        AddCases({{"add to none", u"|cmdDirAdd"_s, u"1a!13* dirty"_s},
                  {"add", u"A|row:0 cmdDirAdd cmdDirAdd Alt+A"_s, u"1aA 2a!13 3a!27 4a!41* dirty"_s},
                  {"insert twice", abc + u"row:1 cmdDirInsert Alt+I"_s, u"1aA 5a!27* 4a!13 2aB 3aC dirty"_s},
                  {"insert, none selected", abc + u"row:0 +row:0 cmdDirInsert"_s, u"1aA 2aB 3aC 4a!13* dirty"_s},
                  {"insert, two selected", abc + u"row:0 +row:2 cmdDirInsert"_s, u"1aA 2aB 3aC 4a!13* dirty"_s},
                  {"up after insert", abc + u"row:0 cmdDirInsert cmdDirUp"_s, u"1a!13* 2aA 3aB 4aC dirty"_s},
                  {"down after insert", abc + u"row:0 cmdDirInsert Alt+D"_s, u"1aA 2a!13* 3aB 4aC dirty"_s},
                  {"up twice", abc + u"row:2 cmdDirUp Alt+U"_s, u"1aC* 2aA 3aB dirty"_s},
                  {"down, last", abc + u"row:2 cmdDirDown"_s, u"1aA 2aB 3aC* dirty"_s},
                  {"up after sort", u"B,C,A|head:1 row:2 cmdDirUp"_s, u"1aA 2aC* 3aB dirty"_s},
                  {"remove", abc + u"row:1 cmdDirRemove"_s, u"1aA 2aC* dirty"_s},
                  {"remove scattered", u"A,B,C,D|row:1 +row:3 Del"_s, u"1aA* 2aC dirty"_s},
                  {"remove neighbours", abc + u"row:1 Shift+Down Del"_s, u"1aA* dirty"_s},
                  {"remove all", abc + u"Ctrl+A Del"_s, u" dirty"_s},
                  {"remove none", abc + u"cmdDirRemove Del"_s, u"1aA 2aB 3aC clean"_s},
                  {"remove after insert", abc + u"row:0 cmdDirInsert row:1 Del"_s, u"1a!13 2aB* 3aC dirty"_s},
                  {"keys in edit mode", abc + u"row:0 +row:2 Alt+E Del"_s, u"1aA 2aB 3aC* dirty"_s},
                  {"edit mode off", abc + u"row:1 cmdDirEdit cmdDirEdit row:0 +row:2 Del"_s, u"1aB* dirty"_s}});
    }
    void entryCommands()
    {
        QFETCH(QString, given);
        Open(given.section(u'|', 0, 0));
        Do(given.section(u'|', 1));
        QTEST(Rows(), "expected");
        const bool removes = given.contains(u"Remove") || given.contains(u"Del") || given.contains(u"Alt+R");
        QCOMPARE(Module().DirectoryChanged, removes && !given.contains(u"Alt+E"));
    }

    void refusals_data()
    {
        AddCases({{"500", u"*500"_s, u"Limited to 500 names in Directory list "_s},
                  {"501", u"*501"_s, {}},
                  {"no prompts", u"A"_s, u"Please check the \"Max Number of each Node\" in Partition Settings."_s}});
    }
    void refusals()
    {
        QFETCH(QString, given);
        QFETCH(QString, expected);
        for (const QString& command : {u"cmdDirAdd"_s, u"cmdDirInsert"_s}) {
            Open(given);
            if (given == u"A"_s)
                mForm->cmbPromptNumber->Clear();
            BoxScript script;
            if (!expected.isEmpty())
                script.Expect(Notice(expected));
            Do(u"row:0 "_s + command);
            QCOMPARE(Mark(), expected.isEmpty() ? u" dirty"_s : u" clean"_s);
            if (expected.isEmpty())
                QVERIFY(List().viewport()->rect().contains(Centre(List().SelectedItem())));
        }
    }

    void editorsLieOverTheRow()
    {
        Open(u"*60"_s);
        Do(u"row:3 cmdDirEdit"_s);
        CompareEditors();
        for (const char* name :
             {"cmdDirAdd", "cmdDirInsert", "cmdDirRemove", "cmdDirUp", "cmdDirDown", "cmdDirSaveList"})
            QVERIFY2(!mForm->findChild<QWidget*>(QLatin1String(name))->isEnabled(), name);
        List().setColumnWidth(1, 200);
        List().setColumnWidth(3, 60);
        QScrollBar& sideways = *List().horizontalScrollBar();
        QTRY_VERIFY(sideways.maximum() > 40);
        Do(u"row:5"_s);
        CompareEditors();
        for (const int offset : {20, 40, 0}) {
            sideways.setValue(offset);
            CompareEditors();
        }
        List().setColumnWidth(1, 30); // so that the last name can go out of sight
        List().setColumnWidth(4, 300);
        QTRY_VERIFY(sideways.maximum() > 60);
        for (const int offset : {60, 0})
            sideways.setValue(offset);
        CompareEditors();
        List().verticalScrollBar()->setValue(37);
        QVERIFY(!mForm->EntryEditorsShown());
        Do(u"row:40"_s);
        CompareEditors();
        QTest::mousePress(List().horizontalHeader()->viewport(), Qt::LeftButton, {}, {20, 8});
        QVERIFY(!mForm->EntryEditorsShown());
        QTest::mouseRelease(List().horizontalHeader()->viewport(), Qt::LeftButton, {}, {20, 8});
        Do(u"cmdDirEdit cmdDirEdit cmdDirEdit"_s);
        QVERIFY(!mForm->EntryEditorsShown() && mForm->cmdDirUp->isEnabled());
    }

    void editorsStayOverAPartialRow()
    {
        Open(u"*60"_s);
        Do(u"cmdDirEdit"_s);
        const int row = List().rowAt(List().viewport()->height() - 1);
        QVERIFY(List().visualRect(Items().index(row, 2)).bottom() >= List().viewport()->height());
        QTest::mouseClick(List().viewport(), Qt::LeftButton, {},
                          List().viewport()->rect().bottomLeft() + QPoint(40, 0));
        QCOMPARE(List().SelectedItem(), row);
        QTest::qWait(QApplication::doubleClickInterval() + 100); // the list scrolls to a clicked row that late
        CompareEditors();
    }

    void quickHeaderClicks()
    {
        Open(u"B,C,A"_s);
        Do(u"head:1"_s);
        QTest::mouseDClick(List().horizontalHeader()->viewport(), Qt::LeftButton, {}, {20, 8}); // the second press
        QCOMPARE(Rows(), u"2aC 1aB 3aA clean"_s);
    }

    // In edit mode on the second of four rows: fields that are shown belong to the row that typing changes.
    void editorsFollowTheRow_data()
    {
        AddCases({{"click", u"row:2"_s, u"C"_s},
                  {"arrow", u"Down"_s, u"C"_s},
                  {"page", u"PgDown"_s, u"D"_s},
                  {"end", u"Ctrl+End"_s, u"D"_s},
                  {"first letter", u"A"_s, u"A"_s},
                  {"select all", u"Ctrl+A"_s, u"D"_s},
                  {"click with Ctrl", u"+row:1"_s, u"B"_s},
                  {"click with another button", u"rightrow:2"_s, u"C"_s},
                  {"drag", {}, u"D"_s},
                  {"sort", u"head:1"_s, u"B"_s}});
    }
    void editorsFollowTheRow()
    {
        QFETCH(QString, given);
        Open(u"A,B,C,D"_s);
        Do(u"row:1 cmdDirEdit "_s + given);
        if (given.isEmpty()) {
            QMouseEvent move(QEvent::MouseMove, Centre(3), List().viewport()->mapToGlobal(Centre(3)), Qt::NoButton,
                             Qt::LeftButton, Qt::NoModifier);
            QTest::mousePress(List().viewport(), Qt::LeftButton, {}, Centre(2));
            QCoreApplication::sendEvent(List().viewport(), &move);
            QTest::mouseRelease(List().viewport(), Qt::LeftButton, {}, Centre(3));
        }
        QTEST(Items().Text(List().SelectedItem(), 1), "expected");
        if (mForm->EntryEditorsShown() || !given.startsWith(u"head"))
            CompareEditors();
    }

    // What is done in edit mode on a row "Adams, Anne, 101, 5, 1"; its cells that changed, the text that has the focus
    // with | for the caret or the selection in brackets, and the mark.
    void fields_data()
    {
        const QString letters = u"aB"_s.repeated(10) + u'a';
        AddCases({{"digit", u"txtLastName=Smith3"_s, u"1Smith Smith| dirty"_s},
                  {"pasted", u"txtLastName<O'Neil"_s, u"1ONeil ONeil| dirty"_s},
                  {"long", u"txtLastName<"_s + u"aB3"_s.repeated(3334), u"1%1 %1| dirty"_s.arg(letters)},
                  {"emoji", u"txtLastName<A\U0001F600b"_s, u"1Ab Ab| dirty"_s},
                  {"accent", u"txtLastName^Mu\u0308\u00FCller3"_s, u"1Muller Muller| dirty"_s},
                  {"right to left", u"txtLastName<\u05D0\u05D1"_s, u" | dirty"_s},
                  {"NUL", u"txtLastName<A\0b"_s, u"1Ab Ab| dirty"_s},
                  {"lines", u"txtLastName<Al\r\nBe\t"_s, u"1AlBe AlBe| dirty"_s},
                  {"refused inside", u"txtLastName_3"_s, u" Ad|ams dirty"_s},
                  {"refused among", u"txtLastName_1x2"_s, u"1Adxams Adx|ams dirty"_s},
                  {"extension", u"txtExtension=12a4"_s, u"3124 124| dirty"_s},
                  {"long extension", u"txtExtension=12345678901234567"_s, u"3123456789012345 123456789012345| dirty"_s},
                  {"other digits", u"txtExtension<\u0663\uFF13-7"_s, u"37 7| dirty"_s},
                  {"password", u"txtPassword=a12345678"_s, u"51234567 1234567| dirty"_s},
                  {"access code", u"txtAccessCode=1x234567890"_s, u" 12345678| dirty"_s},
                  {"label", u"txtDescription<\"O'Neil\"\u05D0"_s, u" \"O'Neil\"\u05D0| dirty"_s},
                  {"last name emptied", u"txtLastName= txtFirstName=Bo"_s, u"2Bo Bo| dirty"_s},
                  {"extension emptied", u"txtExtension= txtPassword= txtExtension=7"_s, u"37 7| dirty"_s},
                  {"emptied and left", u"txtLastName= row:0"_s, u" Adams| dirty"_s},
                  {"caret after click", u"row:0"_s, u" Adams| clean"_s},
                  {"selection after key", u"Down Up"_s, u" [Adams] clean"_s},
                  {"prompt above", u"cmbPromptNumber=300"_s, u"430 30| clean"_s},
                  {"prompt, letter", u"cmbPromptNumber=x"_s, u"41 1| clean"_s},
                  {"prompt emptied", u"cmbPromptNumber="_s, u"41 1| clean"_s},
                  {"prompt, many digits", u"cmbPromptNumber<99999999999"_s, u"499 99| clean"_s},
                  {"prompt below", u"list:7-40 cmbPromptNumber=3"_s, u"47 7| clean"_s},
                  {"prompt in two digits", u"list:7-40 cmbPromptNumber=12"_s, u"47 7| clean"_s},
                  {"prompt, no list", u"list:1-0 cmbPromptNumber=3"_s, u" 3| clean"_s},
                  {"start", u"cmbMSGNodeNumber=12x"_s, u" 12x| dirty"_s},
                  {"start, letter", u"cmbMSGNodeNumber=x"_s, u" 1| dirty"_s},
                  {"start emptied", u"cmbMSGNodeNumber="_s, u" 1| dirty"_s},
                  {"start below", u"list:5-40 cmbMSGNodeNumber=3"_s, u" 5| dirty"_s}});
    }
    void fields()
    {
        QFETCH(QString, given);
        Open(u"Adams,Adams"_s);
        Do(u"row:0 cmdDirEdit"_s);
        mForm->MarkUnchanged();
        if (given.startsWith(u"list:")) {
            const QStringList range = given.section(u' ', 0, 0).sliced(5).split(u'-');
            for (ComboBox* combo : {mForm->cmbPromptNumber, mForm->cmbMSGNodeNumber})
                combo->SetNumbers(range[0].toInt(), range[1].toInt());
        }
        Do(given.startsWith(u"list:") ? given.section(u' ', 1) : given);
        const QStringList before{u"1"_s, u"Adams"_s, u"Anne"_s, u"101"_s, u"5"_s, u"1"_s};
        QString state;
        for (int column = 1; column <= 5; ++column)
            state += Items().Text(0, column) == before[column] ? QString()
                                                               : QString::number(column) + Items().Text(0, column);
        const QLineEdit* field = Field(mForm->focusWidget()->objectName());
        QString text = field->text();
        if (field->hasSelectedText())
            text = u'[' + field->selectedText() + u']';
        else
            text.insert(field->cursorPosition(), u'|');
        QTEST(state + u' ' + text + Mark(), "expected");
        QVERIFY(!Items().ForeColor(0, 5));
    }

    void redRowsTurnBlack()
    {
        for (const QString& fields :
             {u"txtExtension txtLastName txtFirstName"_s, u"txtFirstName txtExtension txtLastName"_s,
              u"txtLastName txtFirstName txtExtension"_s}) {
            Open(QString());
            Do(u"cmdDirAdd"_s);
            Items().SetText(0, 3, u"x"_s);
            Do(u"cmdDirEdit"_s);
            for (const QString& field : fields.split(u' ')) {
                Do(u"txtPassword=12"_s);
                QVERIFY2(IsRed(0), qPrintable(fields));
                Do(field + u"=Ab12"_s);
            }
            for (int subItem = 1; subItem <= 4; ++subItem)
                QCOMPARE(Items().ForeColor(0, subItem), std::optional(soundRowColour));
            QVERIFY(!Items().ForeColor(0, 5));
        }
    }

    void reportsNameTheHandler()
    {
        Open(u"Adams"_s);
        Do(u"row:0 cmdDirEdit"_s);
        List().SetSelectedItem(-1);
        for (const QString& field : {u"txtLastName"_s, u"txtFirstName"_s, u"txtExtension"_s, u"txtPassword"_s}) {
            BoxScript script{ErrorReport(field + u"_Change"_s, u"No row*selected*"_s),
                             ErrorReport(field + u"_LostFocus"_s, u"No row*selected*"_s)};
            Do(field + (field.endsWith(u"Name") ? u"=A"_s : u"=1"_s));
            mForm->activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(mForm.get()));
            Do(field + u'=');
            mForm->cmdOK->setFocus();
        }
        mForm->cmbMSGNodeNumber->Clear();
        Items().SetKey(0, u"2a"_s); // the next number's key is in use
        BoxScript script{ErrorReport(u"cmbMSGNodeNumber_Change"_s, u"The list of cmbMSGNodeNumber has no item*"_s),
                         ErrorReport(u"cmdDirInsert_Click : RowNumber2 -- index : 1"_s, u"*\"2a\"*"_s)};
        Do(u"cmbMSGNodeNumber=7 row:0"_s);
        mForm->txtPassword->hide();
        CompareEditors();
        Do(u"cmdDirEdit cmdDirInsert"_s);
    }

    void tabOrder()
    {
        Open(u"A"_s);
        Do(u"row:0 cmdDirEdit"_s);
        mForm->cmdFirst->setFocus();
        for (const QString& name :
             u"cmdFirst cmdPrevious cmbNode cmdNext cmdLast txtDescription txtAccessCode cmbMSGNodeNumber "
             u"txtCSVFilename "
             "cmdOpenCSVFilename LVDirectory txtLastName txtFirstName txtExtension cmbPromptNumber cmdDirEdit cmdOK "
             "cmdCancel cmdApply cmdFirst"_s.split(u' ')) {
            QCOMPARE(mForm->focusWidget()->objectName(), name);
            QTest::keyClick(mForm->focusWidget(), Qt::Key_Tab);
        }
    }

    // Last name, first name and extension; what is wrong with them.
    void entryValidation_data()
    {
        const QString names = u"     Invalid LastName\r\n     Invalid FirstName"_s;
        AddCases({{"sound", u"Smith|John|1234567890123456"_s, {}},
                  {"nothing", u"||"_s,
                   u"     No Data in LastName\r\n     No Data in FirstName\r\n     No Data in Extension"_s},
                  {"bad", u"O'Neil|Mary Ann|12a"_s, names + u"\r\n     Invalid Extension"_s},
                  {"accents", u"Müller|José|1"_s, names},
                  {"beside the letters", u"@|[|1"_s, names},
                  {"17 digits", u"A|z|12345678901234567"_s, u"     Invalid Extension"_s},
                  {"lenient number", u"A|z| 1"_s, u"     Invalid Extension"_s}});
    }
    void entryValidation()
    {
        QFETCH(QString, given);
        QTEST(ValidateData(given.section(u'|', 0, 0), given.section(u'|', 1, 1), given.section(u'|', 2)), "expected");
    }
};

QTEST_MAIN(EditorTest)
#include "EditorTest.moc"
