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

namespace {

const QString onePrompt = u"Please check the \"Max Number of each Node\" in Partition Settings."_s;

/// A row per name: "Adams" gives Adams, Anne, 101, 5, 1.
std::vector<ListRow> RowsOf(const QString& names)
{
    std::vector<ListRow> rows;
    for (const QString& name : names.split(u',', Qt::SkipEmptyParts))
        rows.push_back(EntryRow(static_cast<int>(rows.size()) + 1, {name, u"Anne"_s, u"101"_s, u"5"_s, u"1"_s}));
    return rows;
}

bool IsRed(const ListItems& items, int row)
{
    int red = 0;
    for (int subItem = 0; subItem <= 5; ++subItem)
        red += items.ForeColor(row, subItem) == invalidRowColour ? 1 << subItem : 0;
    return red == 0b11110;
}

} // namespace

class EditorTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SampleDatabase> mSample;
    std::unique_ptr<frmDIR> mForm;

    /// Shows the form as the service does, on a node of the sample.
    void Open(qint16 node)
    {
        mForm = std::make_unique<frmDIR>();
        mForm->Load();
        mForm->SetConfigID(1);
        mForm->SetPartitionID(1);
        mForm->SetNodeNumber(node);
        ResetDirectoryListView(List());
        mForm->HideEntryEditors();
        BusinessRules rules;
        rules.LoadExistingNodesInRecordSelector(*mForm, node);
        QVERIFY(rules.LoadPromptMSGNodeNumber(*mForm) && rules.LoadData(*mForm, node));
        mForm->cmbMSGNodeNumber->SetListIndex(0);
        mForm->show();
        QVERIFY(QTest::qWaitForWindowActive(mForm.get()));
        mForm->MarkUnchanged();
    }
    void Open(const QString& names)
    {
        Open(20);
        Items().Append(RowsOf(names));
    }
    void Edit(const QString& names, int row)
    {
        Open(names);
        Do(u"row:%1"_s.arg(row));
        Do(u"cmdDirEdit"_s);
    }

    ListView& List() const { return *mForm->LVDirectory; }
    ListItems& Items() const { return List().Items(); }
    bool IsDirty() const { return mForm->cmdApply->isEnabled(); }
    QLineEdit* Field(const QString& name) const
    {
        const auto* combo = mForm->findChild<ComboBox*>(name);
        return combo ? combo->lineEdit() : mForm->findChild<QLineEdit*>(name);
    }
    QPoint Centre(int row) const
    {
        return List().visualRect(List().model()->index(row, static_cast<int>(DirectoryColumn::FirstName))).center();
    }

    /// A button by its name, "row:2" and "+row:2" for a click and a click with Ctrl, "head:1" for a column's header,
    /// else keys for the list.
    void Do(const QString& step) const
    {
        const int number = step.section(u':', 1).toInt();
        if (auto* button = mForm->findChild<QPushButton*>(step)) {
            QTest::mouseClick(button, Qt::LeftButton);
        } else if (step.contains(u"row:")) {
            const auto modifier = step.startsWith(u'+') ? Qt::ControlModifier : Qt::NoModifier;
            QTest::mouseClick(List().viewport(), Qt::LeftButton, modifier, Centre(number));
        } else if (step.startsWith(u"head:")) {
            QHeaderView* header = List().horizontalHeader();
            QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                              {header->sectionViewportPosition(number) + 20, 8});
        } else {
            List().setFocus();
            QTest::keySequence(&List(), QKeySequence(step));
        }
    }

    /// The rows as "2aBaker": the key, ! for a red row with its prompt, the last name, * for a selected one.
    QString Rows() const
    {
        QStringList rows;
        for (int row = 0; row < Items().RowCount(); ++row) {
            const QString prompt = IsRed(Items(), row) ? u'!' + Items().Text(row, 4) : QString();
            const QString mark = List().IsSelected(row) ? u"*"_s : QString();
            const QString wrong = Items().Key(row) == RowKey(Items().Text(row, 0).toInt()) ? QString() : u"?"_s;
            rows << Items().Key(row) + wrong + prompt + Items().Text(row, 1) + mark;
        }
        return rows.join(u' ') + (IsDirty() ? u" dirty"_s : u" clean"_s);
    }
    /// The in-place fields lie over the selected row's cells and show it.
    void CompareEditors() const
    {
        const int row = List().SelectedItem();
        int column = 1;
        for (const QWidget* editor : std::initializer_list<QWidget*>{mForm->txtLastName, mForm->txtFirstName,
                                                                     mForm->txtExtension, mForm->cmbPromptNumber}) {
            const QRect cell = List().visualRect(Items().index(row, column)) & List().viewport()->rect();
            const QRect place = cell.translated(List().viewport()->mapTo(mForm->fraDirectory, QPoint()));
            QVERIFY2(editor->isVisible(), qPrintable(editor->objectName()));
            for (const int distance :
                 {editor->x() - place.x(), editor->y() - place.y(), editor->geometry().right() - place.right()})
                QVERIFY2(std::abs(distance) <= 1, qPrintable(editor->objectName()));
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
    void cleanup()
    {
        mForm.reset();
        QVERIFY(!QGuiApplication::overrideCursor());
    }

    // The names of the rows, and what is done to them.
    void entryCommands_data()
    {
        const QString abc = u"A,B,C|"_s;
        AddCases({{"add to none", u"|cmdDirAdd"_s, u"1a!13* dirty"_s},
                  {"add thrice", u"A|row:0 cmdDirAdd cmdDirAdd Alt+A"_s, u"1aA 2a!13 3a!27 4a!41* dirty"_s},
                  {"insert first", abc + u"row:0 cmdDirInsert"_s, u"4a!13* 1aA 2aB 3aC dirty"_s},
                  {"insert twice", abc + u"row:1 cmdDirInsert Alt+I"_s, u"1aA 5a!27* 4a!13 2aB 3aC dirty"_s},
                  {"insert, none selected", abc + u"cmdDirInsert"_s, u"1aA 2aB 3aC 4a!13* dirty"_s},
                  {"insert, two selected", abc + u"row:0 +row:2 cmdDirInsert"_s, u"1aA 2aB 3aC 4a!13* dirty"_s},
                  {"insert, deselected", abc + u"row:0 +row:0 cmdDirInsert"_s, u"1aA 2aB 3aC 4a!13* dirty"_s},
                  {"up after insert", abc + u"row:0 cmdDirInsert cmdDirUp"_s, u"1a!13* 2aA 3aB 4aC dirty"_s},
                  {"down after insert", abc + u"row:0 cmdDirInsert Alt+D"_s, u"1aA 2a!13* 3aB 4aC dirty"_s},
                  {"up", abc + u"row:2 cmdDirUp Alt+U"_s, u"1aC* 2aA 3aB dirty"_s},
                  {"down, last", abc + u"row:2 cmdDirDown"_s, u"1aA 2aB 3aC* dirty"_s},
                  {"up, two selected", abc + u"row:1 +row:2 cmdDirUp"_s, u"1aA 2aB* 3aC* clean"_s},
                  {"up, none selected", abc + u"cmdDirUp cmdDirDown"_s, u"1aA 2aB 3aC clean"_s},
                  {"up after sort", u"B,C,A|head:1 row:2 cmdDirUp"_s, u"1aA 2aC* 3aB dirty"_s},
                  {"remove", abc + u"row:1 cmdDirRemove"_s, u"1aA 2aC* dirty"_s},
                  {"remove last", abc + u"row:2 Alt+R"_s, u"1aA 2aB* dirty"_s},
                  {"remove scattered", u"A,B,C,D|row:1 +row:3 Del"_s, u"1aA* 2aC dirty"_s},
                  {"remove neighbours", abc + u"row:1 Shift+Down Del"_s, u"1aA* dirty"_s},
                  {"remove all", abc + u"Ctrl+A Del"_s, u" dirty"_s},
                  {"remove none", abc + u"cmdDirRemove Del"_s, u"1aA 2aB 3aC clean"_s},
                  {"remove after insert", abc + u"row:0 cmdDirInsert row:1 Del"_s, u"1a!13 2aB* 3aC dirty"_s},
                  {"remove after scrolling away", abc + u"row:0 Down Del Del Del Del"_s, u" dirty"_s}});
    }
    void entryCommands()
    {
        QFETCH(QString, given);
        Open(given.section(u'|', 0, 0));
        for (const QString& step : given.section(u'|', 1).split(u' '))
            Do(step);
        QTEST(Rows(), "expected");
        const int row = List().SelectedItem();
        QVERIFY(GetSelectedCount(List()) == 0 || List().viewport()->rect().contains(Centre(row)));
        QCOMPARE(Module().DirectoryChanged,
                 given.contains(u"Remove") || given.contains(u"Del") || given.contains(u"Alt+R"));
    }

    void refusals_data()
    {
        QTest::addColumn<int>("rowCount");
        QTest::addColumn<int>("prompts");
        QTest::addColumn<QString>("box");
        QTest::newRow("499") << 499 << 250 << QString();
        QTest::newRow("500") << 500 << 250 << u"Limited to 500 names in Directory list "_s;
        QTest::newRow("501") << 501 << 250 << QString();
        QTest::newRow("no prompts") << 1 << 0 << onePrompt;
    }
    void refusals()
    {
        QFETCH(int, rowCount);
        QFETCH(int, prompts);
        QFETCH(QString, box);
        for (const QString& command : {u"cmdDirAdd"_s, u"cmdDirInsert"_s}) {
            Open(u"A,"_s.repeated(rowCount));
            mForm->cmbPromptNumber->SetNumbers(1, prompts);
            Do(u"row:0"_s);
            BoxScript script;
            if (!box.isEmpty())
                script.Expect(Notice(box));
            Do(command);
            QCOMPARE(Items().RowCount(), box.isEmpty() ? rowCount + 1 : rowCount);
            QCOMPARE(IsDirty(), box.isEmpty());
        }
    }

    void keysInUse()
    {
        Open(u"A,B"_s);
        Items().SetKey(1, u"3a"_s);
        Do(u"row:1"_s);
        BoxScript script{ErrorReport(u"cmdDirInsert_Click : RowNumber3 -- index : 2"_s, u"*\"3a\"*"_s),
                         ErrorReport(u"cmdDirAdd_Click"_s, u"*\"3a\"*"_s)};
        Do(u"cmdDirInsert"_s);
        Do(u"cmdDirAdd"_s);
        script.Verify();
        QCOMPARE(Items().RowCount(), 2);
    }

    void editMode()
    {
        Open(u"A,B,C"_s);
        for (const char* steps : {"row:0 +row:2 Alt+E", "cmdDirEdit", "+row:2 +row:0 Alt+E"}) {
            for (const QString& step : QString::fromLatin1(steps).split(u' '))
                Do(step);
            const bool on = mForm->InEditMode();
            QCOMPARE(mForm->cmdDirEdit->text().remove(u'&'), on ? u"Edit Off"_s : u"Edit"_s);
            for (const char* name :
                 {"cmdDirAdd", "cmdDirInsert", "cmdDirRemove", "cmdDirUp", "cmdDirDown", "cmdDirSaveList"})
                QVERIFY2(mForm->findChild<QWidget*>(QLatin1String(name))->isEnabled() == !on, name);
            QCOMPARE(List().selectionMode(),
                     on ? QAbstractItemView::SingleSelection : QAbstractItemView::ExtendedSelection);
            QVERIFY(IsDirty());
            if (on)
                CompareEditors();
            else
                QVERIFY(!mForm->EntryEditorsShown());
        }
        Do(u"Del"_s);
        QCOMPARE(Items().RowCount(), 3);
    }

    void editorsLieOverTheRow()
    {
        Open(12);
        Do(u"row:3"_s);
        Do(u"cmdDirEdit"_s);
        CompareEditors();
        List().setColumnWidth(1, 260);
        List().setColumnWidth(3, 60);
        Do(u"row:5"_s);
        CompareEditors();
        for (const int offset : {40, 90, 0}) {
            List().horizontalScrollBar()->setValue(offset);
            CompareEditors();
        }
        List().verticalScrollBar()->setValue(37);
        QVERIFY(!mForm->EntryEditorsShown());
        Do(u"row:40"_s);
        CompareEditors();
        QTest::mousePress(List().horizontalHeader()->viewport(), Qt::LeftButton, {}, {20, 8});
        QVERIFY(!mForm->EntryEditorsShown());
        QTest::mouseRelease(List().horizontalHeader()->viewport(), Qt::LeftButton, {}, {20, 8});
        QVERIFY(!mForm->EntryEditorsShown());
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
                  {"drag", u"drag"_s, u"D"_s},
                  {"sort", u"head:1"_s, u"B"_s}});
    }
    void editorsFollowTheRow()
    {
        QFETCH(QString, given);
        Edit(u"A,B,C,D"_s, 1);
        if (given == u"drag"_s) {
            QTest::mousePress(List().viewport(), Qt::LeftButton, {}, Centre(2));
            QTest::mouseMove(List().viewport(), Centre(3));
            QMouseEvent move(QEvent::MouseMove, Centre(3), List().viewport()->mapToGlobal(Centre(3)), Qt::NoButton,
                             Qt::LeftButton, Qt::NoModifier);
            QCoreApplication::sendEvent(List().viewport(), &move);
            QTest::mouseRelease(List().viewport(), Qt::LeftButton, {}, Centre(3));
        } else {
            Do(given);
        }
        QTEST(Items().Text(List().SelectedItem(), 1), "expected");
        if (mForm->EntryEditorsShown())
            CompareEditors();
        QVERIFY(mForm->EntryEditorsShown() || given.startsWith(u"head"));
    }

    void caretAfterClickAndKey()
    {
        Edit(u"Adams,Baker"_s, 0);
        QCOMPARE(mForm->txtLastName->selectedText(), u"Adams"_s);
        Do(u"row:1"_s);
        QVERIFY(mForm->txtLastName->hasFocus() && !mForm->txtLastName->hasSelectedText());
        QTest::keyClicks(mForm->txtLastName, u"x"_s);
        QCOMPARE(Items().Text(1, 1), u"Bakerx"_s);
        Do(u"Up"_s);
        QTest::keyClicks(mForm->txtLastName, u"y"_s);
        QCOMPARE(Items().Text(0, 1), u"y"_s);
    }

    // The text put into a field by typing, pasting or an input method, over its whole text or at a caret.
    void fieldFilters_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("way");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected"); // the field with | for the caret, and the cell where it differs
        const auto add = [](const char* name, const char* field, const char* way, const QString& text,
                            const QString& expected) {
            QTest::newRow(name) << QString::fromLatin1(field) << QString::fromLatin1(way) << text << expected;
        };
        const QString letters = u"aB"_s.repeated(10) + u"a|"_s;
        add("digit", "txtLastName", "type", u"Smith3"_s, u"Smith|"_s);
        add("apostrophe", "txtFirstName", "type", u"O'Neil"_s, u"ONeil|"_s);
        add("pasted", "txtLastName", "paste", u"O'Neil"_s, u"ONeil|"_s);
        add("long", "txtLastName", "paste", u"aB3"_s.repeated(3334), letters);
        add("emoji", "txtLastName", "paste", u"A\U0001F600b"_s, u"Ab|"_s);
        add("accent", "txtLastName", "type", u"Müller"_s, u"Mller|"_s);
        add("right to left", "txtLastName", "paste", u"\u05D0\u05D1"_s, u"|>Adams"_s);
        add("right to left among", "txtFirstName", "paste", u"A\u202E\u05D0b"_s, u"Ab|"_s);
        add("NUL", "txtLastName", "paste", u"A\0b"_s, u"Ab|"_s);
        add("lines", "txtLastName", "paste", u"Al\r\nBe\t"_s, u"AlBe|"_s);
        add("input method", "txtLastName", "commit", u"Sm\u00EFth3"_s, u"Smth|"_s);
        add("nothing", "txtLastName", "paste", u"3"_s, u"|>Adams"_s);
        add("refused inside", "txtLastName", "type2", u"3"_s, u"Ad|ams"_s);
        add("pasted inside", "txtLastName", "paste2", u"1x2"_s, u"Adx|ams"_s);
        add("extension", "txtExtension", "type", u"12a4"_s, u"124|"_s);
        add("extension, long", "txtExtension", "type", u"12345678901234567"_s, u"123456789012345|"_s);
        add("other digits", "txtExtension", "paste", u"\u0663\uFF13-1"_s, u"1|"_s);
        add("password", "txtPassword", "type", u"a12345678"_s, u"1234567|"_s);
        add("access code", "txtAccessCode", "type", u"1x234567890"_s, u"12345678|>-"_s);
        add("label", "txtDescription", "type", u"O'Neil 3 \u05D0"_s + u"x"_s.repeated(30),
            u"O'Neil 3 \u05D0"_s + u"x"_s.repeated(20) + u"|>-"_s);
    }
    void fieldFilters()
    {
        QFETCH(QString, field);
        QFETCH(QString, way);
        QFETCH(QString, text);
        QFETCH(QString, expected);
        Edit(u"Adams"_s, 0);
        QLineEdit* box = Field(field);
        box->show();
        box->setFocus(Qt::TabFocusReason);
        box->selectAll();
        if (way.endsWith(u'2'))
            box->setCursorPosition(2);
        mForm->MarkUnchanged();
        if (way.startsWith(u"type")) {
            QTest::keyClicks(box, text);
        } else if (way.startsWith(u"paste")) {
            QGuiApplication::clipboard()->setText(text);
            QTest::keySequence(box, QKeySequence::Paste);
        } else {
            for (const QString& committed : {QString(), text}) {
                QInputMethodEvent event(committed.isEmpty() ? u"pre"_s : QString(), {});
                event.setCommitString(committed);
                QCoreApplication::sendEvent(box, &event);
            }
        }
        QString shown = box->text();
        QCOMPARE(shown.insert(box->cursorPosition(), u'|'), expected.section(u'>', 0, 0));
        const QStringList fields{u"txtLastName"_s, u"txtFirstName"_s, u"txtExtension"_s, {}, u"txtPassword"_s};
        const auto column = static_cast<int>(fields.indexOf(field)) + 1;
        const QString cell = expected.contains(u'>') ? expected.section(u'>', 1) : box->text();
        QCOMPARE(column == 0 ? u"-"_s : Items().Text(0, column), cell);
        QVERIFY(IsDirty());
        QVERIFY(!Items().ForeColor(0, 5));
    }

    void emptyFieldsAreRestored()
    {
        Edit(u"Adams"_s, 0);
        for (const char* name : {"txtLastName", "txtFirstName", "txtExtension", "txtPassword"}) {
            QLineEdit* field = Field(QLatin1String(name));
            field->show();
            field->setFocus();
            const QString text = field->text();
            QTest::keyClick(field, Qt::Key_Backspace);
            QVERIFY(field->text().isEmpty());
            QTest::keyClick(field, Qt::Key_Tab);
            QCOMPARE(field->text(), text);
        }
        mForm->txtLastName->setFocus();
        QTest::keyClick(mForm->txtLastName, Qt::Key_Backspace);
        Do(u"cmdDirEdit"_s);
        QCOMPARE(Rows(), u"1aAdams* dirty"_s);
    }

    void redRowsTurnBlack_data()
    {
        AddCases({{"first name last", u"txtExtension txtLastName txtFirstName"_s, {}},
                  {"last name last", u"txtFirstName txtExtension txtLastName"_s, {}},
                  {"extension last", u"txtLastName txtFirstName txtExtension"_s, {}}});
    }
    void redRowsTurnBlack()
    {
        QFETCH(QString, given);
        Open(QString());
        Do(u"cmdDirAdd"_s);
        Items().SetText(0, 3, u"x"_s);
        Do(u"cmdDirEdit"_s);
        for (const QString& name : given.split(u' ')) {
            QVERIFY(IsRed(Items(), 0));
            mForm->txtPassword->setText(u"12"_s);
            QVERIFY(IsRed(Items(), 0));
            QTest::keyClicks(Field(name), u"Ab12"_s);
        }
        for (int subItem = 1; subItem <= 4; ++subItem)
            QCOMPARE(Items().ForeColor(0, subItem), std::optional(soundRowColour));
        QVERIFY(!Items().ForeColor(0, 5));
    }

    // The list's numbers and what is typed into a combo: _ stands for a deleted text.
    void numberCombos_data()
    {
        AddCases({{"prompt", u"cmbPromptNumber 1 250 300"_s, u"30"_s},
                  {"prompt, letter", u"cmbPromptNumber 1 250 x"_s, u"1"_s},
                  {"prompt, letter behind", u"cmbPromptNumber 1 250 12x"_s, u"12"_s},
                  {"prompt, empty", u"cmbPromptNumber 1 250 _"_s, u"1"_s},
                  {"prompt, 0", u"cmbPromptNumber 1 250 0"_s, u"1"_s},
                  {"prompt, many digits", u"cmbPromptNumber 1 32767 99999999999"_s, u"9999"_s},
                  {"prompt below", u"cmbPromptNumber 5 40 3"_s, u"5"_s},
                  {"prompt in two digits", u"cmbPromptNumber 5 40 12"_s, u"5"_s},
                  {"prompt within", u"cmbPromptNumber 5 40 72"_s, u"7"_s},
                  {"prompt, empty list", u"cmbPromptNumber 1 0 3"_s, u"3>5"_s},
                  {"start", u"cmbMSGNodeNumber 1 250 12x"_s, u"12x"_s},
                  {"start above", u"cmbMSGNodeNumber 1 250 300"_s, u"300"_s},
                  {"start, letter", u"cmbMSGNodeNumber 1 250 x"_s, u"1"_s},
                  {"start, empty", u"cmbMSGNodeNumber 1 250 _"_s, u"1"_s},
                  {"start below", u"cmbMSGNodeNumber 5 40 3"_s, u"5"_s}});
    }
    void numberCombos()
    {
        QFETCH(QString, given);
        QFETCH(QString, expected);
        const QStringList parts = given.split(u' ');
        Edit(u"Adams"_s, 0);
        auto* combo = mForm->findChild<ComboBox*>(parts[0]);
        combo->SetNumbers(parts[1].toInt(), parts[2].toInt());
        mForm->MarkUnchanged();
        combo->setFocus();
        combo->lineEdit()->selectAll();
        if (parts[3] == u"_"_s)
            QTest::keyClick(combo, Qt::Key_Backspace);
        else
            QTest::keyClicks(combo, parts[3]);
        QCOMPARE(combo->Text(), expected.section(u'>', 0, 0));
        const bool isPrompt = combo == mForm->cmbPromptNumber;
        QCOMPARE(Items().Text(0, 4), isPrompt ? expected.section(u'>', -1) : u"5"_s);
        QCOMPARE(IsDirty(), !isPrompt);
        QCOMPARE(combo->lineEdit()->cursorPosition(), combo->Text().size());
    }

    void startingPromptWithoutList()
    {
        Open(QString());
        mForm->cmbMSGNodeNumber->Clear();
        BoxScript script{ErrorReport(u"cmbMSGNodeNumber_Change"_s, u"The list of cmbMSGNodeNumber has no item*"_s)};
        mForm->cmbMSGNodeNumber->lineEdit()->selectAll();
        QTest::keyClicks(mForm->cmbMSGNodeNumber, u"7"_s);
        script.Verify();
        QVERIFY(mForm->Frame1->isEnabled());
    }

    void noRowIsSelected_data()
    {
        AddCases({{"last name", u"txtLastName"_s, u"A"_s},
                  {"first name", u"txtFirstName"_s, u"A"_s},
                  {"extension", u"txtExtension"_s, u"1"_s},
                  {"password", u"txtPassword"_s, u"1"_s}});
    }
    void noRowIsSelected()
    {
        QFETCH(QString, given);
        QFETCH(QString, expected);
        Edit(u"Adams"_s, 0);
        QLineEdit* field = Field(given);
        field->show();
        ClearSelectionFrom(List(), 0);
        List().SetSelectedItem(-1);
        field->setFocus();
        BoxScript script{ErrorReport(given + u"_Change"_s, u"No row*selected*"_s),
                         ErrorReport(given + u"_LostFocus"_s, u"No row*selected*"_s)};
        field->selectAll();
        QTest::keyClicks(field, expected);
        QTest::keyClick(field, Qt::Key_Backspace);
        QTest::keyClick(field, Qt::Key_Tab);
        script.Verify();
        Do(u"row:0"_s);
        CompareEditors();
    }

    // What is done in a clean form, the prompt's combo laid over a row.
    void dirtyMark_data()
    {
        AddCases({{"label", u"txtDescription:x"_s, u"dirty"_s},
                  {"access code", u"txtAccessCode:1"_s, u"dirty"_s},
                  {"start typed", u"cmbMSGNodeNumber:7"_s, u"dirty"_s},
                  {"start chosen", u"cmbMSGNodeNumber:"_s, u"dirty"_s},
                  {"prompt typed", u"cmbPromptNumber:7"_s, u"clean"_s},
                  {"prompt chosen", u"cmbPromptNumber:"_s, u"clean"_s},
                  {"row", u"row:1"_s, u"clean"_s},
                  {"sort", u"head:3"_s, u"clean"_s},
                  {"edit off", u"cmdDirEdit"_s, u"dirty"_s}});
    }
    void dirtyMark()
    {
        QFETCH(QString, given);
        Edit(u"A,A"_s, 1);
        mForm->MarkUnchanged();
        if (QLineEdit* field = Field(given.section(u':', 0, 0)); field && given.endsWith(u':'))
            QTest::keyClick(field->parentWidget(), Qt::Key_Down);
        else if (field)
            QTest::keyClicks(field, given.section(u':', 1));
        else
            Do(given);
        QTEST(IsDirty() ? u"dirty"_s : u"clean"_s, "expected");
    }

    void tabOrder_data()
    {
        const QString head = u"cmdFirst cmdPrevious cmbNode cmdNext cmdLast txtDescription txtAccessCode "
                             "cmbMSGNodeNumber txtCSVFilename cmdOpenCSVFilename LVDirectory "_s;
        AddCases({{"list mode", u"row:0"_s,
                   head + u"cmdDirAdd cmdDirInsert cmdDirRemove cmdDirEdit cmdDirSaveList "
                          "cmdDirUp cmdDirDown cmdOK cmdCancel"_s},
                  {"edit mode", u"cmdDirEdit"_s,
                   head + u"txtLastName txtFirstName txtExtension cmbPromptNumber "
                          "cmdDirEdit cmdOK cmdCancel cmdApply"_s}});
    }
    void tabOrder()
    {
        QFETCH(QString, given);
        Open(12);
        Do(u"row:0"_s);
        Do(given);
        mForm->cmdFirst->setFocus();
        QStringList visited;
        do {
            visited << mForm->focusWidget()->objectName();
            QTest::keyClick(mForm->focusWidget(), Qt::Key_Tab);
        } while (mForm->focusWidget() != mForm->cmdFirst && visited.size() < 50);
        QTEST(visited.join(u' '), "expected");
    }

    // Last name, first name and extension; the lines, joined by ;.
    void entryValidation_data()
    {
        const QString names = u"     No Data in LastName;     No Data in FirstName"_s;
        AddCases({{"sound", u"Smith|John|1234"_s, {}},
                  {"nothing", u"||"_s, names + u";     No Data in Extension"_s},
                  {"bad", u"O'Neil|Mary Ann|12a"_s,
                   u"     Invalid LastName;     Invalid FirstName;     Invalid Extension"_s},
                  {"accent", u"Müller|José|1"_s, u"     Invalid LastName;     Invalid FirstName"_s},
                  {"16 digits", u"A|z|1234567890123456"_s, {}},
                  {"17 digits", u"A|z|12345678901234567"_s, u"     Invalid Extension"_s},
                  {"beside the letters", u"@|[|1"_s, u"     Invalid LastName;     Invalid FirstName"_s},
                  {"lenient number", u"A|z| 1"_s, u"     Invalid Extension"_s}});
    }
    void entryValidation()
    {
        QFETCH(QString, given);
        const QStringList texts = given.split(u'|');
        QTEST(ValidateData(texts[0], texts[1], texts[2]).replace(u"\r\n"_s, u";"_s), "expected");
    }

    void accessCodes()
    {
        Open(QString());
        for (const QString& code : {u""_s, u"1"_s, u"123"_s, u"1234"_s}) {
            mForm->txtAccessCode->setText(code);
            mForm->cmdOK->setFocus();
            const bool isSound = code.isEmpty() || code.size() > 3;
            BoxScript script;
            if (!isSound)
                script.Expect(Notice(u"Too Few Characters."_s));
            QCOMPARE(CheckAccessCode(*mForm), isSound ? u"OK"_s : u""_s);
            QCOMPARE(mForm->txtAccessCode->hasFocus(), !isSound);
            QCOMPARE(mForm->txtAccessCode->selectedText(), isSound ? QString() : code);
        }
    }
};

QTEST_MAIN(EditorTest)
#include "EditorTest.moc"
