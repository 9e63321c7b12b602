// The controls as the handlers rely on them: which events come, what code may set, what crosses as a message.
#include "platform/ui/ComboBox.h"
#include "platform/ui/ListBox.h"
#include "platform/ui/ListItems.h"
#include "platform/ui/ListView.h"
#include "platform/ui/MsgBox.h"
#include "platform/ui/PendingInput.h"
#include "platform/ui/TextBox.h"
#include "support/BoxScript.h"
#include "support/Cases.h"

#include <QAbstractItemModelTester>
#include <QAccessible>
#include <QHeaderView>
#include <QPushButton>

using namespace qor;

namespace {

void Wheel(QWidget* over)
{
    const QPointF place = over->rect().center();
    QWheelEvent event(place, over->mapToGlobal(place), {}, {0, -120}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                      false);
    QCoreApplication::sendEvent(over, &event);
}

/// "6x" is a row with the key and text 6 and the sub-item x.
ListRow RowOf(const QString& text)
{
    return {text.first(1), {text.first(1), text.sliced(1)}, {}};
}

std::vector<ListRow> RowsOf(const QString& texts)
{
    std::vector<ListRow> rows;
    for (const QString& text : texts.split(u' '))
        rows.push_back(RowOf(text));
    return rows;
}

/// The keys in the order of their rows.
QString Keys(const ListItems& items)
{
    QString keys;
    for (int row = 0; row < items.RowCount(); ++row) {
        keys += items.Key(row);
        [&] { QCOMPARE(items.RowOfKey(items.Key(row)), row); }();
    }
    return keys;
}

/// Rows 1 to 5 with the sub-items b A a B and an empty one.
struct FiveRows : ListItems
{
    FiveRows()
    {
        AddColumn(u"#"_s);
        AddColumn(u"Name"_s);
        Append(RowsOf(u"1b 2A 3a 4B 5"_s));
    }
    const QAbstractItemModelTester tester{this};
};

/// A list of 40 rows, their second column falling by one every other row; the first few can be seen.
void Show(ListView& list)
{
    list.AddColumn(u"#"_s, 0);
    list.AddColumn(u"Name"_s, 100);
    list.SetMultiSelect(true);
    std::vector<ListRow> rows(40);
    for (int i = 0; i < 40; ++i)
        rows.at(i) = {QString::number(i), {QString::number(i), QString::number(99 - i / 2)}, {}};
    list.Items().Append(std::move(rows));
    list.resize(300, 200);
    list.show();
    QVERIFY(QTest::qWaitForWindowActive(&list));
}

/// The keys of the selected rows, and the chosen row behind them.
QString Selection(const ListView& list)
{
    QString text;
    for (const int row : list.SelectedRows())
        text += list.Items().Key(row) + u' ';
    return text + u'@' + QString::number(list.SelectedItem());
}

QString seenMessages;
WindowProcedure hookedProcedure = nullptr;

MessageResult Hook(WindowHandle window, quint32 message, quintptr wParam, qintptr lParam)
{
    seenMessages += QString::number(message, 16) + u' ';
    return CallWindowProcA(hookedProcedure, window, message, wParam, lParam);
}

} // namespace

class ControlsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hiddenColumnsAreNotRead()
    {
        ListView list;
        Show(list);
        QAccessibleTableInterface* table = QAccessible::queryAccessibleInterface(&list)->tableInterface();
        const auto read = [&](int column) { return table->cellAt(3, column)->text(QAccessible::Name); };
        QCOMPARE(read(0) + u'|' + read(1), u"|98"_s);
        QCOMPARE(list.Items().index(3, 0).data(plainTextRole), QVariant(u"3"_s));
    }

    // A box with the numbers 1 to 250 of which 5 is chosen: the events that come, and text@index at the end.
    void comboBoxEvents()
    {
        using Act = void (*)(ComboBox & box);
        const auto check = [](bool isEditable, const QString& expected, Act act, int line = __builtin_LINE()) {
            QWidget window;
            const QLineEdit other(&window);
            ComboBox box(&window);
            box.SetDropdownCombo(isEditable);
            box.SetNumbers(1, 250);
            box.SetListIndex(4);
            window.show();
            QVERIFY(QTest::qWaitForWindowActive(&window));
            box.setFocus(Qt::TabFocusReason);
            QString events;
            connect(&box, &ComboBox::Change, &box, [&] { events += u"Change(%1) "_s.arg(box.Text()); });
            connect(&box, &ComboBox::Click, &box, [&] { events += u"Click(%1) "_s.arg(box.Text()); });
            act(box);
            QTRY_VERIFY(!box.view()->isVisible());
            events += u"%1@%2"_s.arg(box.Text()).arg(box.ListIndex());
            QVERIFY2(events == expected, qPrintable(u"line %1: %2"_s.arg(line).arg(events)));
        };
        const QString typed = u"Change(3) Change(30) Click(31) 31@30"_s;
        check(true, typed, [](auto& box) { QTest::keyClicks(&box, u"30"_s), QTest::keyClick(&box, Qt::Key_Down); });
        check(true, u"Change(30) 30@29"_s, [](auto& box) { box.SetText(u"30"_s), QTest::keyClick(&box, Qt::Key_Tab); });
        check(true, u"Click(7) 7@6"_s, [](auto& box) { box.SetListIndex(6); });
        check(true, u"8@7"_s, [](auto& box) { box.FillText(u"30"_s), box.FillListIndex(6), box.FillText(u"8"_s); });
        check(true, u"5@-1"_s, [](auto& box) { box.Clear(), QTest::keyClick(&box, Qt::Key_Down); });
        check(true, u"Click(5) 5@4"_s, [](auto& box) { box.showPopup(), QTest::keyClick(box.view(), Qt::Key_Return); });
        check(true, u"5@4"_s, [](auto& box) { Wheel(box.lineEdit()); });
        check(false, u"5@4"_s, [](auto& box) { Wheel(&box); });
        check(false, u"Click(6) 6@5"_s, [](auto& box) { QTest::keyClick(&box, Qt::Key_Down); });
        check(false, u"@-1"_s, [](auto& box) { box.Clear(), box.SetNumbers(1, 3); });
    }

    void comboBoxItems()
    {
        ComboBox box;
        box.SetDropdownCombo(true);
        box.SetText(u"typed"_s);
        for (const QString& text : {u"a"_s, u"b"_s})
            box.AddItem(text);
        QVERIFY(box.Text() == u"typed"_s && box.ListIndex() == -1);
        box.SetListIndex(1);
        box.AddItem(u"c"_s);
        for (const int index : {-2, 3})
            QVERIFY(RaisedBy([&] { box.SetListIndex(index); }).startsWith(u"9: "_s));
        QVERIFY(RaisedBy([&] { box.List(-1); }).startsWith(u"9: "_s));
        QVERIFY(box.Text() == u"b"_s && box.ListIndex() == 1);
    }

    void textBoxes()
    {
        TextBox box;
        QString events;
        connect(&box, &TextBox::Change, this, [&] { events += box.text() + u' '; });
        box.setMaxLength(4);
        box.setText(u"ab"_s);
        QTest::keyClicks(&box, u"xyz"_s);
        box.setText(u"abxyzz"_s); // is cut to what it was
        const QString text = u"abc\U0001F600"_s;
        box.Fill(text);
        for (const QString& unit : {text.sliced(3, 1), text.sliced(4, 1)}) {
            QKeyEvent key(QEvent::KeyPress, 0, Qt::NoModifier, unit);
            QCoreApplication::sendEvent(&box, &key);
            QCOMPARE(box.text(), u"abc"_s);
        }
        QCOMPARE(events, u"ab abx abxy "_s);
        box.Fill(text.sliced(1));
        box.home(false);
        QTest::keyClicks(&box, u"xy"_s);
        QCOMPARE(box.text(), text.sliced(1));
    }

    void rowsComeAndGo()
    {
        FiveRows items;
        items.Insert(0, {RowOf(u"6x"_s)});
        items.Insert(3, {RowOf(u"7x"_s)});
        items.Insert(7, {RowOf(u"8x"_s)});
        QCOMPARE(Keys(items), u"61273458"_s);
        items.Remove({1, 2, 3});
        items.Remove({0, 2, 4});
        QCOMPARE(Keys(items), u"35"_s);
        items.Append(RowsOf(u"6x 1x"_s)); // keys that went are free again
        items.SetKey(0, u"9"_s);
        items.Insert(0, {RowOf(u"3x"_s)});
        QCOMPARE(Keys(items), u"39561"_s);
        items.Clear();
        items.Append(RowsOf(u"9x"_s));
        QCOMPARE(Keys(items), u"9"_s);
    }

    void rowsAreSorted()
    {
        FiveRows items;
        items.SetSortKey(9);
        items.SetSorted(true);
        QCOMPARE(Keys(items), u"12345"_s);
        items.SetSortKey(1);
        QCOMPARE(Keys(items), u"52314"_s);
        items.SetOrder(SortOrder::Descending);
        items.Append(RowsOf(u"6a"_s));
        items.Insert(0, {RowOf(u"7z"_s)});
        items.SetText(1, 1, u"z"_s);
        QCOMPARE(Keys(items), u"7142356"_s);
    }

    void rowsThatAreRefused()
    {
        FiveRows items;
        const auto raised = [&](auto&& change) {
            const QString number = RaisedBy(change).section(u':', 0, 0);
            return number + u' ' + Keys(items);
        };
        QCOMPARE(raised([&] { items.Insert(0, {RowOf(u"5x"_s)}); }), u"457 12345"_s);
        QCOMPARE(raised([&] { items.SetKey(0, u"5"_s); }), u"457 12345"_s);
        for (const QString& rows : {u"6x 5x"_s, u"6x 6x"_s})
            QCOMPARE(raised([&] { items.Append(RowsOf(rows)); }), u"457 12345"_s);
        QCOMPARE(raised([&] { items.Insert(6, {RowOf(u"6x"_s)}); }), u"91 12345"_s);
        QCOMPARE(raised([&] { items.Remove({0, 5}); }), u"91 12345"_s);
        for (const int row : {-1, 5})
            QCOMPARE(raised([&] { items.SetText(row, 1, u"x"_s); }), u"91 12345"_s);
        QCOMPARE(raised([&] { items.Append(RowsOf(u"6x"_s)); }), u" 123456"_s); // its key was not taken before
    }

    void listViewSelection()
    {
        ListView list;
        Show(list);
        list.SelectRows(1, 3);
        list.SetSelected(30, true);
        list.SetSelectedItem(2);
        QCOMPARE(Selection(list), u"1 2 3 30 @2"_s);
        list.Items().SetSortKey(1);
        list.Items().SetSorted(true);
        for (int row = 0; row < list.Items().RowCount(); ++row)
            QCOMPARE(list.Items().Key(row).toInt() % 2, row % 2); // equal names stay in their order
        QCOMPARE(Selection(list), u"30 2 3 1 @36"_s);
        list.DeselectFrom(38);
        QCOMPARE(Selection(list), u"30 2 3 @36"_s);
        list.Items().Remove({0, 9});
        QCOMPARE(list.SelectedRows(), std::vector<int>());
        list.SetMultiSelect(false);
        list.SetSelected(4, true);
        list.SelectRows(0, 5);
        QCOMPARE(list.SelectedRows(), std::vector{5});
    }

    void windowMessages()
    {
        auto list = std::make_unique<ListView>();
        Show(*list);
        const WindowHandle handle = list->Handle();
        QVERIFY(!SetWindowLongA(handle, GWL_WNDPROC + 1, Hook));
        hookedProcedure = SetWindowLongA(handle, GWL_WNDPROC, Hook);
        list->SelectRows(0, 6);
        QCOMPARE(SendMessageA(handle, LVM_GETSELECTEDCOUNT, 0, 0), 7);
        list->EnsureVisible(39);
        QTest::mousePress(list->horizontalHeader()->viewport(), Qt::LeftButton, {}, {20, 5});
        QVERIFY(SetWindowLongA(handle, GWL_WNDPROC, hookedProcedure) == Hook);
        list->EnsureVisible(0);
        SetWindowLongA(handle, GWL_WNDPROC, Hook);
        list.reset();
        QVERIFY(ListView().Handle() != handle);
        for (const WindowHandle gone : {handle, WindowHandle{0}})
            QVERIFY(SendMessageA(gone, WM_VSCROLL, 0, 0) == 0 && !SetWindowLongA(gone, GWL_WNDPROC, Hook));
        QCOMPARE(CallWindowProcA(nullptr, handle, WM_VSCROLL, 0, 0), 0);
        QCOMPARE(seenMessages, u"1032 115 210 "_s);
    }

    void listBoxSearches()
    {
        ListBox box;
        for (const QString& text : {u"12"_s, u"Abc"_s, u"1"_s, u"ABC"_s, u"abcd"_s})
            box.AddItem(text);
        QVERIFY(box.Find(u"1"_s) == 0 && box.FindExact(u"1"_s) == 2);
        QVERIFY(box.Find(u"aBCD"_s) == 4 && box.FindExact(u"abC"_s) == 1);
        QVERIFY(box.Find(u"123"_s) == LB_ERR && box.FindExact(u"ab"_s) == LB_ERR);
        box.Clear();
        QCOMPARE(box.Find(u"1"_s), LB_ERR);
        box.AddItem(u"12"_s);
        QCOMPARE(box.FindExact(u"12"_s), 0);
    }

    // What waits for a window's button, for a button elsewhere and for both; what arrives.
    void pendingInput()
    {
        QWidget window;
        QWidget elsewhere;
        QPushButton dropped(&window);
        QPushButton served(&elsewhere);
        QString arrived;
        connect(&dropped, &QPushButton::clicked, this, [&] { arrived += u"dropped "_s; });
        connect(&served, &QPushButton::clicked, this, [&] { arrived += u"served "_s; });
        window.show();
        const auto post = [](QWidget& to) {
            for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease})
                QCoreApplication::postEvent(
                    &to, new QMouseEvent(type, {2, 2}, to.mapToGlobal(QPointF(2, 2)), Qt::LeftButton, {}, {}));
            for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease})
                QCoreApplication::postEvent(&to, new QKeyEvent(type, Qt::Key_Space, {}));
        };
        post(dropped);
        post(served);
        QCoreApplication::postEvent(window.windowHandle(), new QCloseEvent);
        QMetaObject::invokeMethod(
            &dropped, [&] { arrived += u"call "_s; }, Qt::QueuedConnection);
        DropPendingInput(window);
        QCOMPARE(arrived, u"served served call "_s);
        QVERIFY(window.isVisible());
        post(dropped);
        QCoreApplication::processEvents();
        QCOMPARE(arrived, u"served served call dropped dropped "_s);
    }

    void messageBoxes()
    {
        const QString text = u"<b>1 & 2</b>\n\nthree"_s;
        for (const auto& [style, answer] :
             {std::pair(MsgBoxStyle::YesNo, MsgBoxAnswer::No), {MsgBoxStyle::YesNoCancel, MsgBoxAnswer::Cancel}}) {
            const BoxScript script{{text, u"Title"_s, QMessageBox::Question, QMessageBox::NoButton,
                                    [](auto& box) { QCOMPARE(box.textFormat(), Qt::PlainText); }}};
            QCOMPARE(MsgBox(QString(text).replace(u'\n', u"\r\n"_s), style | MsgBoxStyle::Question, u"Title"_s),
                     answer);
        }
        // As the host's leaving ends it.
        BoxScript leaving;
        leaving.Expect(ExpectedDialog{u"*"_s, [](QDialog& box) { box.done(0); }});
        QCOMPARE(MsgBox(text, MsgBoxStyle::YesNoCancel, u"Title"_s), MsgBoxAnswer::Cancel);
    }
};

QTEST_MAIN(ControlsTest)
#include "ControlsTest.moc"
