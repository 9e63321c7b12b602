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
#include <QClipboard>
#include <QHeaderView>
#include <QPushButton>

using namespace qor;

namespace {

/// Presses keys by their names, "Down,Return".
void Press(QWidget* widget, const QString& keys)
{
    for (const QString& key : keys.split(u','))
        QTest::keyClick(widget, static_cast<Qt::Key>(QKeySequence(key)[0].key()));
}

void Wheel(QWidget* over)
{
    const QPointF place = over->rect().center();
    QWheelEvent event(place, over->mapToGlobal(place), {}, {0, -120}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                      false);
    QCoreApplication::sendEvent(over, &event);
}

/// One step of a case, "verb:value".
void Do(ComboBox& box, const QString& step)
{
    using Verb = void (*)(ComboBox&, const QString&);
    static const QHash<QString, Verb> verbs{
        {u"type"_s, [](ComboBox& it, const QString& text) { QTest::keyClicks(&it, text); }},
        {u"press"_s, [](ComboBox& it, const QString& keys) { Press(&it, keys); }},
        {u"text"_s, [](ComboBox& it, const QString& text) { it.SetText(text); }},
        {u"index"_s, [](ComboBox& it, const QString& index) { it.SetListIndex(index.toInt()); }},
        {u"fillText"_s, [](ComboBox& it, const QString& text) { it.FillText(text); }},
        {u"fillIndex"_s, [](ComboBox& it, const QString& index) { it.FillListIndex(index.toInt()); }},
        {u"numbers"_s, [](ComboBox& it, const QString& last) { it.SetNumbers(1, last.toInt()); }},
        {u"clear"_s, [](ComboBox& it, const QString&) { it.Clear(); }},
        {u"wheel"_s, [](ComboBox& it, const QString&) { Wheel(it.childAt(5, 5) ? it.childAt(5, 5) : &it); }},
        {u"popup"_s, [](ComboBox& it, const QString&) { it.showPopup(); }},
        {u"popupPress"_s, [](ComboBox& it, const QString& keys) { Press(it.view(), keys); }},
        {u"popupClick"_s, [](ComboBox& it, const QString& row) {
             const QRect item = it.view()->visualRect(it.model()->index(row.toInt(), 0));
             QTest::mouseClick(it.view()->viewport(), Qt::LeftButton, {}, item.center());
         }}};
    verbs[step.section(u':', 0, 0)](box, step.section(u':', 1));
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

void ClickRow(ListView& list, int row, Qt::KeyboardModifiers keys = {})
{
    const int y = list.RowRect(row).center().y() - list.viewport()->y();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, keys, {20, y});
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
    void initTestCase() { InstallErrorBox(); }

    // A box with the numbers 1 to 250 of which 5 is chosen: the events that come, and text@index at the end.
    void comboBoxEvents_data()
    {
        AddCases({{"typed, then Down", u"type:30 press:Down"_s, u"Change(3) Change(30) Click(31) 31@30"_s},
                  {"deleted", u"press:Backspace"_s, u"Change() @-1"_s},
                  {"odd text typed and left", u"type:x press:Return,Tab"_s, u"Change(x) x@-1"_s},
                  {"set and left", u"text:30 press:Tab"_s, u"Change(30) 30@29"_s},
                  {"empty text set", u"text:"_s, u"Change() @-1"_s},
                  {"index set", u"index:6"_s, u"Click(7) 7@6"_s},
                  {"no index set", u"index:-1"_s, u"Click() @-1"_s},
                  {"clicked", u"popup popupClick:6"_s, u"Click(7) 7@6"_s},
                  {"same clicked", u"popup popupClick:4"_s, u"Click(5) 5@4"_s},
                  {"not chosen", u"popup popupPress:Down,Esc"_s, u"5@4"_s},
                  {"wheel", u"wheel"_s, u"5@4"_s},
                  {"filled", u"fillText:30 fillIndex:-1 fillIndex:6 fillText:8"_s, u"8@7"_s},
                  {"odd text filled", u"fillText:x"_s, u"x@-1"_s},
                  {"emptied", u"clear press:Down"_s, u"5@-1"_s},
                  {"list: Down", u"press:Down"_s, u"Click(6) 6@5"_s},
                  {"list: same chosen", u"popup popupPress:Return"_s, u"Click(5) 5@4"_s},
                  {"list: wheel", u"wheel"_s, u"5@4"_s},
                  {"list: emptied", u"clear numbers:3"_s, u"@-1"_s}});
    }
    void comboBoxEvents()
    {
        QFETCH(QString, given);
        QWidget window;
        const QLineEdit other(&window);
        ComboBox box(&window);
        box.SetDropdownCombo(!QByteArray(QTest::currentDataTag()).startsWith("list: "));
        box.SetNumbers(1, 250);
        box.SetListIndex(4);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        box.setFocus(Qt::TabFocusReason);
        QString events;
        connect(&box, &ComboBox::Change, this, [&] { events += u"Change(%1) "_s.arg(box.Text()); });
        connect(&box, &ComboBox::Click, this, [&] { events += u"Click(%1) "_s.arg(box.Text()); });
        for (const QString& step : given.split(u' '))
            Do(box, step);
        QTRY_VERIFY(!box.view()->isVisible());
        QTEST(events + u"%1@%2"_s.arg(box.Text()).arg(box.ListIndex()), "expected");
    }

    void comboBoxItems()
    {
        ComboBox box;
        box.setObjectName(u"cmbBox"_s);
        const auto state = [&] { return u"%1@%2"_s.arg(box.Text()).arg(box.ListIndex()); };
        box.AddItem(u"a"_s, 7);
        QCOMPARE(state(), u"@-1"_s);
        box.SetDropdownCombo(true);
        box.SetText(u"typed"_s);
        box.AddItem(u"b"_s, 8);
        QCOMPARE(state(), u"typed@-1"_s);
        box.SetListIndex(1);
        box.AddItem(u"c"_s);
        QCOMPARE(state(), u"b@1"_s);
        QCOMPARE(box.itemData(1).toInt(), 8);
        for (const int index : {-2, 3}) {
            const QString raised = RaisedBy([&] { box.SetListIndex(index); });
            QVERIFY2(raised.startsWith(u"9: "_s) && raised.contains(u"cmbBox"_s), qPrintable(raised));
        }
        QVERIFY(RaisedBy([&] { box.List(-1); }).startsWith(u"9: "_s));
        QCOMPARE(state(), u"b@1"_s);
    }

    void textBoxEvents()
    {
        TextBox box;
        QString events;
        connect(&box, &TextBox::Change, this, [&] { events += box.text() + u' '; });
        box.setMaxLength(4);
        box.setText(u"ab"_s);
        box.setText(u"ab"_s);
        QTest::keyClicks(&box, u"xyz"_s);
        box.setText(u"abxyzz"_s); // is cut to what it was
        box.Fill(u"filled"_s);
        QCOMPARE(box.text(), u"fill"_s);
        box.setText(u"123456"_s);
        box.setMaxLength(2);
        QCOMPARE(events, u"ab abx abxy 1234 12 "_s);
    }

    void textBoxKeepsWholeCharacters()
    {
        TextBox box;
        box.setMaxLength(4);
        const QString text = u"abc\U0001F600"_s;
        box.setText(text);
        QCOMPARE(box.text(), u"abc"_s);
        for (const QString& unit : {text.sliced(3, 1), text.sliced(4, 1)}) {
            QKeyEvent key(QEvent::KeyPress, 0, Qt::NoModifier, unit);
            QCoreApplication::sendEvent(&box, &key);
            QCOMPARE(box.text(), u"abc"_s);
        }
        QGuiApplication::clipboard()->setText(text.sliced(3));
        box.paste();
        QCOMPARE(box.text(), u"abc"_s);
        box.Fill(text.sliced(1));
        box.home(false);
        QTest::keyClicks(&box, u"xy"_s);
        QCOMPARE(box.text(), text.sliced(1));
    }

    void rowsComeAndGo()
    {
        FiveRows items;
        items.Insert(0, RowOf(u"6x"_s));
        items.Insert(3, RowOf(u"7x"_s));
        items.Insert(7, RowOf(u"8x"_s));
        QCOMPARE(Keys(items), u"61273458"_s);
        items.Remove({1, 2, 3});
        items.Remove({0, 2, 4});
        QCOMPARE(Keys(items), u"35"_s);
        items.Append(RowsOf(u"6x 1x"_s)); // keys that went are free again
        items.SetKey(0, u"3"_s);
        items.SetKey(0, u"9"_s);
        items.Insert(0, RowOf(u"3x"_s));
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
        items.SetSorted(true);
        QCOMPARE(Keys(items), u"52314"_s);
        items.SetOrder(ListItems::SortOrder::Descending);
        QCOMPARE(Keys(items), u"14235"_s);
        items.Append(RowsOf(u"6a"_s));
        items.Insert(0, RowOf(u"7z"_s));
        items.SetText(1, 1, u"z"_s);
        QCOMPARE(Keys(items), u"7142356"_s);
    }

    void rowsThatAreRefused()
    {
        FiveRows items;
        const auto raisedBy = [&](auto&& change) {
            const QString raised = RaisedBy(change);
            [&] { QCOMPARE(Keys(items), u"12345"_s); }();
            return raised.section(u':', 0, 0).toInt();
        };
        QCOMPARE(raisedBy([&] { items.Insert(0, RowOf(u"5x"_s)); }), 457);
        QCOMPARE(raisedBy([&] { items.SetKey(0, u"5"_s); }), 457);
        for (const QString& rows : {u"6x 5x"_s, u"6x 6x"_s})
            QCOMPARE(raisedBy([&] { items.Append(RowsOf(rows)); }), 457);
        QCOMPARE(raisedBy([&] { items.Insert(6, RowOf(u"6x"_s)); }), 91);
        QCOMPARE(raisedBy([&] { items.Remove({0, 5}); }), 91);
        QCOMPARE(raisedBy([&] { items.SetKey(5, u"6"_s); }), 91);
        for (const int row : {-1, 5})
            QCOMPARE(raisedBy([&] { items.SetText(row, 1, u"x"_s); }), 91);
        items.Append(RowsOf(u"6x"_s)); // its key was not taken by what was refused
        QCOMPARE(Keys(items), u"123456"_s);
    }

    void listViewSelection()
    {
        ListView list;
        Show(list);
        list.SelectRows(1, 3);
        list.SetSelected(30, true);
        list.SetSelectedItem(2);
        QCOMPARE(Selection(list), u"1 2 3 30 @2"_s);
        QCOMPARE(SendMessageA(list.Handle(), LVM_GETSELECTEDCOUNT, 0, 0), 4);
        list.Items().SetSortKey(1);
        list.Items().SetSorted(true);
        for (int row = 0; row < list.Items().RowCount(); ++row)
            QCOMPARE(list.Items().Key(row).toInt() % 2, row % 2); // equal names stay in their order
        QCOMPARE(Selection(list), u"30 2 3 1 @36"_s);
        list.DeselectFrom(38);
        QCOMPARE(Selection(list), u"30 2 3 @36"_s);
        list.AddColumn(u"hidden"_s, 0);
        list.EnsureVisible(36);
        ClickRow(list, 36, Qt::ControlModifier);
        QCOMPARE(Selection(list), u"30 3 @36"_s);
        list.Items().Remove({0, 9});
        QCOMPARE(SendMessageA(list.Handle(), LVM_GETSELECTEDCOUNT, 0, 0), 0);
        list.SetMultiSelect(false);
        list.SetSelected(4, true);
        list.SetSelected(5, true);
        QCOMPARE(list.SelectedRows(), std::vector{5});
    }

    void listViewEvents()
    {
        ListView list;
        Show(list);
        QString events;
        const auto log = [&](const char* name) {
            return [&events, name](int value) { events += QLatin1String(name) + QString::number(value) + u' '; };
        };
        connect(&list, &ListView::ItemClick, this, log("Item"));
        connect(&list, &ListView::ColumnClick, this, log("Column"));
        connect(&list, &ListView::KeyPress, this, log("Press"));
        connect(&list, &ListView::KeyDown, this, log("Key"));
        connect(&list, &ListView::MouseUp, this, [&] { events += u"Up "_s; });
        ClickRow(list, 2);
        ClickRow(list, 2);
        QCOMPARE(std::exchange(events, {}), u"Item2 Up Item2 Up "_s);
        Press(&list, u"Down,Delete"_s);
        QCOMPARE(std::exchange(events, {}), u"Key%1 Item3 Key%2 "_s.arg(Qt::Key_Down).arg(Qt::Key_Delete));
        QTest::keyClick(&list, Qt::Key_A, Qt::ControlModifier);
        QVERIFY(std::exchange(events, {}).endsWith(u"Key%1 Press1 "_s.arg(Qt::Key_A)));
        QTest::mouseClick(list.horizontalHeader()->viewport(), Qt::LeftButton, {}, {20, 5});
        QCOMPARE(events, u"Column1 "_s);
        QCOMPARE(Selection(list), u"3 @3"_s);
    }

    void windowMessages()
    {
        ListView list;
        Show(list);
        const WindowHandle handle = list.Handle();
        QVERIFY(!SetWindowLongA(handle, GWL_WNDPROC + 1, Hook));
        hookedProcedure = SetWindowLongA(handle, GWL_WNDPROC, Hook);
        list.SelectRows(0, 6);
        QCOMPARE(SendMessageA(handle, LVM_GETSELECTEDCOUNT, 0, 0), 7);
        Wheel(list.viewport());
        list.EnsureVisible(39);
        QTest::mousePress(list.horizontalHeader()->viewport(), Qt::LeftButton, {}, {20, 5});
        QCOMPARE(seenMessages, u"1032 115 115 210 "_s);
        QVERIFY(SetWindowLongA(handle, GWL_WNDPROC, hookedProcedure) == Hook);
        list.EnsureVisible(0);

        auto box = std::make_unique<ListBox>();
        const WindowHandle gone = box->Handle();
        SetWindowLongA(gone, GWL_WNDPROC, Hook);
        box.reset();
        QVERIFY(ListBox().Handle() != gone);
        QCOMPARE(SendMessageA(gone, LB_FINDSTRING, 0, 0), 0);
        QCOMPARE(SendMessageA(0, LB_FINDSTRING, 0, 0), 0);
        QVERIFY(!SetWindowLongA(gone, GWL_WNDPROC, Hook));
        QCOMPARE(CallWindowProcA(nullptr, handle, LVM_GETSELECTEDCOUNT, 0, 0), 0);
        QCOMPARE(seenMessages, u"1032 115 115 210 "_s);
    }

    void listBoxSearches()
    {
        ListBox box;
        QCOMPARE(box.Find({}), LB_ERR);
        for (const QString& text : {u"12"_s, u"Abc"_s, u"1"_s, u"ABC"_s, u"abcd"_s})
            box.AddItem(text);
        QCOMPARE(box.ListCount(), 5);
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
        QCoreApplication::postEvent(&window, new QCloseEvent);
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
        struct Box
        {
            int style;
            QMessageBox::Icon icon;
            QMessageBox::StandardButton press; // none is Escape
            int answer;
        };
        for (const auto& [style, icon, press, answer] :
             {Box{64, QMessageBox::Information, QMessageBox::Ok, 1}, Box{48, QMessageBox::Warning, QMessageBox::Ok, 1},
              Box{36, QMessageBox::Question, QMessageBox::NoButton, 7},
              Box{35, QMessageBox::Question, QMessageBox::Yes, 6},
              Box{35, QMessageBox::Question, QMessageBox::NoButton, 2}}) {
            const BoxScript script{{u"<b>1 & 2</b>\n\nthree"_s, u"Title"_s, icon, press}};
            QCOMPARE(static_cast<int>(MsgBox(u"<b>1 & 2</b>\r\n\r\nthree"_s, style, u"Title"_s)), answer);
        }
    }

    void messageBoxThatNobodyAnswers()
    {
        QTimer::singleShot(10, [] { qobject_cast<QDialog*>(QApplication::activeModalWidget())->done(0); });
        QCOMPARE(MsgBox(u"Save?"_s, MsgBoxStyle::YesNoCancel, u"Title"_s), MsgBoxAnswer::Cancel);
    }
};

QTEST_MAIN(ControlsTest)
#include "ControlsTest.moc"
