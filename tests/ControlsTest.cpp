// The controls but for the list view, as the handlers rely on them: which events come, what code may set, what is
// answered; and the input that they drop.
#include "platform/ui/ComboBox.h"
#include "platform/ui/ListBox.h"
#include "platform/ui/MsgBox.h"
#include "platform/ui/PendingInput.h"
#include "platform/ui/TextBox.h"
#include "support/BoxScript.h"
#include "support/Cases.h"

#include <QAbstractItemView>
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

} // namespace

class ControlsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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
