// The list view as the handlers rely on it: its rows and their keys, what is selected, what crosses as a message.
#include "platform/ui/ListView.h"
#include "platform/ui/ListItems.h"
#include "support/Cases.h"

#include <QAbstractItemModelTester>
#include <QAccessible>
#include <QHeaderView>

using namespace qor;

namespace {

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

class ListViewTest : public QObject
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
};

QTEST_MAIN(ListViewTest)
#include "ListViewTest.moc"
