// The controls as the handlers rely on them: which events come, what code may set, what crosses as a message.
#include "platform/ui/ComboBox.h"
#include "platform/ui/ListBox.h"
#include "platform/ui/ListItems.h"
#include "platform/ui/ListView.h"
#include "platform/ui/MsgBox.h"
#include "platform/ui/TextBox.h"
#include "support/BoxScript.h"
#include "support/Cases.h"

#include <QAbstractItemModelTester>
#include <QHeaderView>

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

int ToInt(const QString& text)
{
    return text.toInt();
}

/// One step of a case, "verb:value,value".
void Do(ListItems& items, const QString& step)
{
    using Verb = void (*)(ListItems&, const QStringList&);
    static const QHash<QString, Verb> verbs{
        {u"append"_s,
         [](ListItems& it, const QStringList& texts) {
             std::vector<ListRow> rows;
             std::transform(texts.begin(), texts.end(), std::back_inserter(rows), RowOf);
             it.Append(std::move(rows));
         }},
        {u"remove"_s,
         [](ListItems& it, const QStringList& texts) {
             std::vector<int> rows;
             std::transform(texts.begin(), texts.end(), std::back_inserter(rows), &ToInt);
             it.Remove(rows);
         }},
        {u"insert"_s, [](ListItems& it, const QStringList& to) { it.Insert(to[0].toInt(), RowOf(to[1])); }},
        {u"clear"_s, [](ListItems& it, const QStringList&) { it.Clear(); }},
        {u"key"_s, [](ListItems& it, const QStringList& to) { it.SetKey(to[0].toInt(), to[1]); }},
        {u"text"_s, [](ListItems& it, const QStringList& to) { it.SetText(to[0].toInt(), 1, to[1]); }},
        {u"sortKey"_s, [](ListItems& it, const QStringList& to) { it.SetSortKey(to[0].toInt()); }},
        {u"sorted"_s, [](ListItems& it, const QStringList&) { it.SetSorted(true); }},
        {u"order"_s, [](ListItems& it, const QStringList& to) { it.SetOrder(ListItems::SortOrder(to[0].toInt())); }}};
    verbs[step.section(u':', 0, 0)](items, step.section(u':', 1).split(u','));
}

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

MessageResult Find(const ListBox& box, quint32 message, const QString& text)
{
    return SendMessageA(box.Handle(), message, 0, reinterpret_cast<qintptr>(&text));
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
                  {"Up", u"press:Up"_s, u"Click(4) 4@3"_s},
                  {"Up at the first", u"index:0 press:Up"_s, u"Click(1) 1@0"_s},
                  {"deleted", u"press:Backspace"_s, u"Change() @-1"_s},
                  {"typed and left", u"type:7 press:Return,Tab"_s, u"Change(7) 7@6"_s},
                  {"odd text typed and left", u"type:x press:Return,Tab"_s, u"Change(x) x@-1"_s},
                  {"set and left", u"text:30 press:Tab"_s, u"Change(30) 30@29"_s},
                  {"same text set", u"text:5"_s, u"5@4"_s},
                  {"odd text set", u"text:005"_s, u"Change(005) 005@-1"_s},
                  {"empty text set", u"text:"_s, u"Change() @-1"_s},
                  {"index set", u"index:6"_s, u"Click(7) 7@6"_s},
                  {"same index set", u"index:4"_s, u"5@4"_s},
                  {"index set over a text", u"text:x index:4"_s, u"Change(x) Click(5) 5@4"_s},
                  {"no index set", u"index:-1"_s, u"Click() @-1"_s},
                  {"clicked", u"popup popupClick:6"_s, u"Click(7) 7@6"_s},
                  {"same clicked", u"popup popupClick:4"_s, u"Click(5) 5@4"_s},
                  {"chosen by key", u"popup popupPress:Down,Return"_s, u"Click(6) 6@5"_s},
                  {"not chosen", u"popup popupPress:Down,Esc"_s, u"5@4"_s},
                  {"wheel", u"wheel"_s, u"5@4"_s},
                  {"other numbers", u"text:x numbers:3 numbers:2"_s, u"Change(x) x@-1"_s},
                  {"emptied", u"clear press:Down"_s, u"5@-1"_s},
                  {"list: Down", u"press:Down"_s, u"Click(6) 6@5"_s},
                  {"list: digit", u"type:8"_s, u"Click(8) 8@7"_s},
                  {"list: same chosen", u"popup popupPress:Return"_s, u"Click(5) 5@4"_s},
                  {"list: index set", u"index:0"_s, u"Click(1) 1@0"_s},
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
        box.setText(u"123456"_s);
        box.setMaxLength(2);
        QCOMPARE(events, u"ab abx abxy 1234 12 "_s);
    }

    // Rows 1 to 5 with the sub-items b A a B and an empty one: what is raised, and the keys at the end.
    void listItems_data()
    {
        AddCases({{"inserted", u"insert:0,6x insert:3,7x insert:7,8x"_s, u"61273458"_s},
                  {"last removed", u"remove:4"_s, u"1234"_s},
                  {"span removed", u"remove:1,2,3"_s, u"15"_s},
                  {"scattered removed", u"remove:0,2,4"_s, u"24"_s},
                  {"keys used again", u"remove:0,4 append:5x,1x"_s, u"23451"_s},
                  {"keys of scattered", u"remove:0,2 insert:0,3x"_s, u"3245"_s},
                  {"cleared", u"clear clear insert:0,1x"_s, u"1"_s},
                  {"sorted", u"sortKey:1 sorted"_s, u"52314"_s},
                  {"sorted down", u"sortKey:1 order:1 sorted"_s, u"14235"_s},
                  {"turned while sorted", u"sortKey:1 sorted order:1"_s, u"14235"_s},
                  {"sorted by nothing", u"sortKey:9 sorted"_s, u"12345"_s},
                  {"added to sorted", u"sortKey:1 sorted append:6a insert:0,7z text:1,z"_s, u"7523146"_s},
                  {"sorted again", u"sortKey:1 sorted append:6a sorted"_s, u"523614"_s},
                  {"keys exchanged", u"key:0,9 key:1,1 key:0,2 key:0,2"_s, u"21345"_s},
                  {"key in use, inserted", u"insert:0,5x"_s, u"!457 12345"_s},
                  {"key in use, changed", u"key:0,5 append:6x"_s, u"!457 123456"_s},
                  {"key in use, appended", u"append:6x,5x append:6x"_s, u"!457 123456"_s},
                  {"key twice, appended", u"append:6x,6x append:6x"_s, u"!457 123456"_s},
                  {"no such place", u"insert:6,6x insert:5,6x"_s, u"!91 123456"_s},
                  {"no such row", u"text:-1,x text:5,x key:5,6"_s, u"!91 !91 !91 12345"_s},
                  {"no such row, removed", u"remove:0,5 append:1x"_s, u"!91 !457 12345"_s}});
    }
    void listItems()
    {
        QFETCH(QString, given);
        ListItems items;
        const QAbstractItemModelTester tester(&items);
        items.AddColumn(u"#"_s);
        items.AddColumn(u"Name"_s);
        Do(items, u"append:1b,2A,3a,4B,5"_s);
        QString outcome;
        for (const QString& step : given.split(u' ')) {
            const QString raised = RaisedBy([&] { Do(items, step); });
            outcome += raised.isEmpty() ? raised : u'!' + raised.section(u':', 0, 0) + u' ';
        }
        for (int row = 0; row < items.RowCount(); ++row) {
            outcome += items.Key(row);
            QCOMPARE(items.RowOfKey(items.Key(row)), row);
        }
        QTEST(outcome, "expected");
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
        for (const char* step : {"sortKey:1", "sorted"})
            Do(list.Items(), QString::fromLatin1(step));
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
        for (const QString& text : {u"12"_s, u"Abc"_s, u"1"_s, u"ABC"_s, u"abcd"_s})
            box.AddItem(text);
        QCOMPARE(box.ListCount(), 5);
        QCOMPARE(Find(box, LB_FINDSTRING, u"1"_s), 0);
        QCOMPARE(Find(box, LB_FINDSTRINGEXACT, u"1"_s), 2);
        QCOMPARE(Find(box, LB_FINDSTRINGEXACT, u"abC"_s), 1);
        QCOMPARE(Find(box, LB_FINDSTRING, u"aBCD"_s), 4);
        QCOMPARE(Find(box, LB_FINDSTRINGEXACT, u"ab"_s), LB_ERR);
        QCOMPARE(Find(box, LB_FINDSTRING, u"123"_s), LB_ERR);
        box.Clear();
        QCOMPARE(Find(box, LB_FINDSTRING, u"1"_s), LB_ERR);
        box.AddItem(u"12"_s);
        QCOMPARE(Find(box, LB_FINDSTRINGEXACT, u"12"_s), 0);
    }

    void messageBoxes_data()
    {
        QTest::addColumn<int>("style");
        QTest::addColumn<QMessageBox::Icon>("icon");
        QTest::addColumn<QMessageBox::StandardButton>("press"); // none is Escape
        QTest::addColumn<int>("answer");
        QTest::newRow("notice") << 64 << QMessageBox::Information << QMessageBox::Ok << 1;
        QTest::newRow("error") << 48 << QMessageBox::Warning << QMessageBox::Ok << 1;
        QTest::newRow("two, Escape") << 36 << QMessageBox::Question << QMessageBox::NoButton << 7;
        QTest::newRow("three, yes") << 35 << QMessageBox::Question << QMessageBox::Yes << 6;
        QTest::newRow("three, cancel") << 35 << QMessageBox::Question << QMessageBox::Cancel << 2;
        QTest::newRow("three, Escape") << 35 << QMessageBox::Question << QMessageBox::NoButton << 2;
    }
    void messageBoxes()
    {
        QFETCH(int, style);
        QFETCH(QMessageBox::Icon, icon);
        QFETCH(QMessageBox::StandardButton, press);
        BoxScript script{{u"<b>1 & 2</b>\n\nthree"_s, u"Title"_s, icon, press}};
        QTEST(static_cast<int>(MsgBox(u"<b>1 & 2</b>\r\n\r\nthree"_s, style, u"Title"_s)), "answer");
    }

    void messageBoxThatNobodyAnswers()
    {
        QTimer::singleShot(10, [] { qobject_cast<QDialog*>(QApplication::activeModalWidget())->done(0); });
        QCOMPARE(MsgBox(u"Save?"_s, MsgBoxStyle::YesNoCancel, u"Title"_s), MsgBoxAnswer::Cancel);
    }
};

QTEST_MAIN(ControlsTest)
#include "ControlsTest.moc"
