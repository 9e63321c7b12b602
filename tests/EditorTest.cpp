// The editor's form under the hands of its user: the commands on entries, the fields that edit them in place, the
// node's header. Keys and clicks go in; what the list, the fields and the mark of changes show comes out.
#include "support/Editor.h"
#include "support/SampleDatabase.h"

#include <QAccessible>
#include <QApplication>
#include <QMouseEvent>
#include <QScopeGuard>
#include <QScrollBar>
#include <QTest>

using namespace qor;

namespace {

const QString abc = u"A,B,C"_s;
const QString abcd = u"A,B,C,D"_s;
constexpr auto ctrl = Qt::ControlModifier;

/// "2Baker* 3!13": the number and the last name of each row, * where it is selected, ! and the prompt of a red one.
QString ListOf(const Editor& editor)
{
    QStringList rows;
    for (int row = 0; row < editor.RowCount(); ++row) {
        const bool isRed = editor.Red(row) == u"-rrrr-"_s;
        rows << editor.Cell(row, 0) + (isRed ? u'!' + editor.Cell(row, 4) : QString()) + editor.Cell(row, 1) +
                    (editor.Selected().contains(row) ? u"*"_s : QString());
    }
    return rows.join(u' ') + (editor.IsDirty() ? u" dirty"_s : u" clean"_s);
}

/// The in-place fields lie over the selected row's cells and show it.
void CompareFields(const Editor& editor)
{
    QCOMPARE(editor.Selected().size(), 1);
    const int row = editor.Selected().first();
    int column = 1;
    for (const char* name : {"txtLastName", "txtFirstName", "txtExtension", "cmbPromptNumber"}) {
        const QWidget& field = editor.Find(name);
        const QWidget* list = editor.List().viewport();
        QRect place = editor.CellRect(row, column) & list->rect();
        place.moveTopLeft(list->mapTo(field.parentWidget(), place.topLeft()));
        QVERIFY2(field.isVisible(), name);
        QVERIFY2(field.geometry().adjusted(-1, -1, 1, 1).contains(place), name);
        QVERIFY2(place.adjusted(-1, -1, 1, 1).contains(field.geometry()), name);
        QCOMPARE(editor.Field(name).text(), editor.Cell(row, column++));
    }
    QLineEdit& password = editor.Field("txtPassword");
    QVERIFY(password.isHidden() && !password.text().isEmpty());
    QCOMPARE(QAccessible::queryAccessibleInterface(&password)->text(QAccessible::Value), QString());
}

/// The cells of the first row that are not "Adams, Anne, 101, 5, 1", the text that has the focus with | for the caret
/// or the selection in brackets, and the mark.
QString FieldsOf(const Editor& editor)
{
    const QStringList before{u"Adams"_s, u"Anne"_s, u"101"_s, u"5"_s, u"1"_s};
    QString state;
    for (int column = 1; column <= 5; ++column) {
        if (const QString text = editor.Cell(0, column); text != before[column - 1])
            state += QString::number(column) + text;
    }
    const QLineEdit& field = editor.Field(editor.Focus().toLatin1().constData());
    const QString selected = u'[' + field.selectedText() + u']';
    const QString text = field.hasSelectedText() ? selected : field.text().insert(field.cursorPosition(), u'|');
    return state + u' ' + text + (editor.IsDirty() ? u" dirty"_s : u" clean"_s);
}

} // namespace

class EditorTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SampleDatabase> mSample;

    /// Opens the editor on a directory that has these last names.
    void Open(const QString& names, const Editor::User& user) const
    {
        QStringList entries;
        for (const QString& name : names.split(u',', Qt::SkipEmptyParts))
            entries << name + u"|Anne|101|5|1"_s;
        mSample->SetEntries(12, entries);
        Editor::Open(1, 1, 12, user);
    }
    void Commands(const QString& names, const char* expected, const Editor::User& user, int line = __builtin_LINE())
    {
        Open(names, [&](Editor& editor) {
            user(editor);
            CompareAt(line, ListOf(editor), QString::fromLatin1(expected));
        });
    }
    /// In edit mode on the first of two equal rows, as if its beginning was saved.
    void Fields(const QString& expected, const Editor::User& user, int line = __builtin_LINE())
    {
        Open(u"Adams,Adams"_s, [&](Editor& editor) {
            editor.ClickRow(0).Click("cmdDirEdit").Find("cmdApply").setEnabled(false);
            user(editor);
            CompareAt(line, FieldsOf(editor), expected);
        });
    }
    void Pasted(const char* field, const QString& text, const QString& expected, int line = __builtin_LINE())
    {
        Fields(
            expected, [=](auto& e) { e.Paste(field, text); }, line);
    }
    /// In edit mode on the second of four rows: fields that are shown belong to the row that typing changes.
    void Follows(const char* expected, const Editor::User& user, int line = __builtin_LINE())
    {
        Open(abcd, [&](Editor& editor) {
            user(editor.ClickRow(1).Click("cmdDirEdit"));
            CompareAt(line, editor.Cell(editor.Selected().value(0), 1), QString::fromLatin1(expected));
            CompareFields(editor);
        });
    }

private Q_SLOTS:
    void init() { mSample = std::make_unique<SampleDatabase>(); }

    void addAndInsert()
    {
        Commands(u"A"_s, "1A 2!13 3!27 4!41* dirty",
                 [](auto& e) { e.ClickRow(0).Click("cmdDirAdd").Click("cmdDirAdd").Keys("Alt+A"); });
        Commands({}, "1!13* dirty", [](auto& e) {
            e.Click("cmdDirAdd").Click("cmdDirAdd").ListKeys("Ctrl+A").Keys("Del").Keys("Alt+A");
        }); // the first row of an empty list counts anew
        Commands(u"A"_s, "1A 2!41* dirty", [](auto& e) { e.Type("cmbMSGNodeNumber", u"41x"_s).Click("cmdDirAdd"); });
        Commands(abc, "1A 5!27* 4!13 2B 3C dirty", [](auto& e) { e.ClickRow(1).Click("cmdDirInsert").Keys("Alt+I"); });
        Commands(abc, "1A 2B 3C 4!13* dirty", [](auto& e) { e.ClickRow(0).ClickRow(0, ctrl).Click("cmdDirInsert"); });
        Commands(abc, "1A 2B 3C 4!13* dirty", [](auto& e) { e.ClickRow(0).ClickRow(2, ctrl).Click("cmdDirInsert"); });
    }

    void moveAndSort()
    {
        Commands(abc, "1!13* 2A 3B 4C dirty", [](auto& e) { e.ClickRow(0).Click("cmdDirInsert").Click("cmdDirUp"); });
        Commands(abc, "1C* 2A 3B dirty", [](auto& e) { e.ClickRow(2).Click("cmdDirUp").Keys("Alt+U"); });
        Commands(abc, "1A 2C 3B* dirty", [](auto& e) { e.ClickRow(1).Click("cmdDirDown").Click("cmdDirDown"); });
        Commands(u"B,C,A"_s, "1A 2C* 3B dirty", [](auto& e) { e.ClickHeader(1).ClickRow(2).Click("cmdDirUp"); });
        Commands(u"B,C,A"_s, "2C 1B 3A clean", [](auto& e) { e.ClickHeader(1).ClickHeader(1, true); });
    }

    // Sorting belongs to the node on display.
    void anotherNodeIsNotSorted()
    {
        mSample->SetEntries(7, {u"B|Bo|2|1|1"_s, u"C|Cy|3|2|1"_s, u"A|Al|1|3|1"_s});
        for (const int column : {1, 3}) {
            Open(abc, [&](Editor& editor) {
                QCOMPARE(ListOf(editor.ClickHeader(column).Click("cmdFirst")), u"1B 2C 3A clean"_s);
                QCOMPARE(ListOf(editor.ClickHeader(1)), u"3A 1B 2C clean"_s);
            });
        }
    }

    void remove()
    {
        Commands(abc, "1A 2C* dirty", [](auto& e) { e.ClickRow(1).Click("cmdDirRemove"); });
        Commands(abcd, "1A* 2C dirty", [](auto& e) { e.ClickRow(1).ClickRow(3, ctrl).ListKeys("Del"); });
        Commands(abc, "1A 2B 3C clean", [](auto& e) { e.Click("cmdDirRemove").ListKeys("Del"); });
        Commands(abc, "1A 2B 3C* dirty",
                 [](auto& e) { e.ClickRow(0).ClickRow(2, ctrl).Keys("Alt+E").ListKeys("Del"); });
        Commands(abc, "1B* dirty",
                 [](auto& e) { e.ClickRow(1).Keys("Alt+E").Keys("Alt+E").ClickRow(0).ClickRow(2, ctrl).Keys("Del"); });
    }

    void fullList()
    {
        for (const int before : {500, 501}) {
            Open(u"A,"_s.repeated(before), [&](Editor& editor) {
                for (const char* command : {"cmdDirAdd", "cmdDirInsert"}) {
                    if (before == 500)
                        editor.Expect(Notice(u"Limited to 500 names in Directory list "_s));
                    editor.ClickRow(0).Click(command).Expected();
                    QCOMPARE(editor.IsDirty(), before != 500);
                    QVERIFY(editor.IsInView(editor.Selected().value(0)));
                }
                if (before == 500) { // refused, it goes on editing the same row
                    editor.Expect(Notice(u"Limited to 500 names in Directory list "_s));
                    editor.ClickRow(3).ListKeys("Alt+E").Keys("Ctrl+Return").Expected();
                    QCOMPARE(editor.Selected(), {3});
                    CompareFields(editor);
                }
            });
        }
    }

    void fieldsLieOverTheRow()
    {
        Open(u"A,"_s.repeated(60), [](Editor& editor) {
            QTableView& list = editor.List();
            editor.ClickRow(3).Click("cmdDirEdit");
            CompareFields(editor);
            QVERIFY(!editor.Find("cmdDirUp").isEnabled());
            list.setColumnWidth(1, 30); // so that the last name can go out of sight
            list.setColumnWidth(4, 300);
            QScrollBar& sideways = *list.horizontalScrollBar();
            QTRY_VERIFY(sideways.maximum() > 60);
            editor.ClickRow(5);
            for (const int offset : {0, 20, 60, 0}) {
                sideways.setValue(offset);
                if (offset < 60)
                    CompareFields(editor);
            }
            list.verticalScrollBar()->setValue(37);
            QVERIFY(!editor.Find("txtFirstName").isVisible());
            const int row = list.rowAt(list.viewport()->height() - 1);
            QVERIFY(editor.CellRect(row, 2).bottom() >= list.viewport()->height());
            const auto restore = qScopeGuard(
                [before = QApplication::doubleClickInterval()] { QApplication::setDoubleClickInterval(before); });
            QApplication::setDoubleClickInterval(0); // after which the list scrolls to a clicked row
            QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                              list.viewport()->rect().bottomLeft() + QPoint(40, 0));
            QCoreApplication::processEvents();
            QCOMPARE(editor.Selected(), {row});
            CompareFields(editor);
            editor.ClickHeader(1);
            QVERIFY(!editor.Find("txtFirstName").isVisible());
            editor.Click("cmdDirEdit").Click("cmdDirEdit").Click("cmdDirEdit");
            QVERIFY(!editor.Find("txtFirstName").isVisible() && editor.Find("cmdDirUp").isEnabled());
        });
    }

    void fieldsFollowWhatIsFoundAndTheSize()
    {
        Open(u"A,"_s.repeated(62) + u"Young"_s, [](Editor& editor) {
            editor.ClickRow(1).Click("cmdDirEdit").Keys("Ctrl+F").Type("txtFind", u"you"_s);
            QCOMPARE(editor.Selected(), {62});
            QWidget& form = *editor.List().window();
            for (const QSize size : {QSize(700, 700), QSize(1, 1)}) {
                form.resize(size);
                CompareFields(editor);
                QCOMPARE(editor.List().columnWidth(1) + editor.List().columnWidth(2), 2 * 107 + form.width() - 465);
                QVERIFY(editor.Find("txtLastName").geometry().bottom() < editor.Find("fraFind").y());
                QCOMPARE(editor.Focus(), u"txtFind"_s);
            }
        });
    }

    void fieldsFollowTheRow()
    {
        Follows("C", [](auto& e) { e.ClickRow(2); });
        Follows("D", [](auto& e) { e.ListKeys("Ctrl+A"); });
        Follows("B", [](auto& e) { e.ClickRow(1, ctrl); });
        Follows("C", [](auto& e) { e.ClickRow(2, {}, Qt::RightButton); });
        Follows("D", [](Editor& e) {
            QWidget* list = e.List().viewport();
            const QPoint end = e.CellRect(3, 2).center();
            QMouseEvent move(QEvent::MouseMove, end, list->mapToGlobal(end), Qt::NoButton, Qt::LeftButton, {});
            QTest::mousePress(list, Qt::LeftButton, {}, e.CellRect(2, 2).center());
            QCoreApplication::sendEvent(list, &move);
            QTest::mouseRelease(list, Qt::LeftButton, {}, end);
        });
    }

    void typing()
    {
        Fields(u"430 30| clean"_s, [](auto& e) { e.Type("cmbPromptNumber", u"300"_s); });
        Fields(u" Adams| clean"_s, [](auto& e) { e.ClickRow(0); });
        Fields(u" [Adams] clean"_s, [](auto& e) { e.ListKeys("Down").ListKeys("Up"); });
        Fields(u" Adams| dirty"_s, [](auto& e) { e.Type("txtLastName", {}).ClickRow(0); });
        Fields(u" [101] dirty"_s,
               [](auto& e) { e.Type("txtExtension", {}).FocusOn("txtLastName").FocusOn("txtExtension"); });
        Fields(u"1Adxams Adx|ams dirty"_s, [](auto& e) {
            e.FocusOn("txtLastName").Field("txtLastName").setCursorPosition(2);
            QTest::keyClicks(&e.Field("txtLastName"), u"1x2"_s);
        });
    }

    // A text is cut to the field's length before what it may not hold is taken out.
    void pasting()
    {
        const QString letters = u"\"'\u05D0"_s + QString(40, u'W');
        Pasted("txtLastName", u"aB3"_s.repeated(3334), u"1%1 %1| dirty"_s.arg(u"aB"_s.repeated(10) + u'a'));
        Pasted("txtFirstName", u"O'N\U0001F600e\u05D0\r\nil\t"_s + QString(40, u'x'),
               u"2%1 %1| dirty"_s.arg(u"ONeil"_s + QString(19, u'x')));
        Pasted("txtExtension", u"\u0663\uFF13-1234567890123456"_s, u"3123456789012 123456789012| dirty"_s);
        Pasted("txtPassword", u"a12345678"_s, u"5123456 123456| dirty"_s);
        Pasted("txtAccessCode", u"1x23456789"_s, u" 1234567| dirty"_s);
        Pasted("txtDescription", letters, u" %1| dirty"_s.arg(letters.first(30)));
        Pasted("cmbPromptNumber", u"x"_s, u"41 1| clean"_s);
        Pasted("cmbMSGNodeNumber", u"12x"_s, u" 12x| dirty"_s);
        Pasted("cmbMSGNodeNumber", u"x"_s, u" 1| dirty"_s);
    }

    void redRowsTurnBlack()
    {
        Open({}, [](Editor& editor) {
            editor.Click("cmdDirAdd").Click("cmdDirEdit").Type("txtPassword", u"12"_s).Type("txtExtension", u"12"_s);
            QCOMPARE(editor.Type("txtFirstName", u"Ab12"_s).Red(0), u"-rrrr-"_s);
            QCOMPARE(editor.Type("txtLastName", u"Ab12"_s).Red(0), u"------"_s);
        });
    }
};

QTEST_MAIN(EditorTest)
#include "EditorTest.moc"
