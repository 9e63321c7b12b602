// Hands that stay on the keyboard: keys that come quickly, the fields walked over the rows, undo and redo, find.
#include "support/Cases.h"
#include "support/Editor.h"
#include "support/SampleDatabase.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QTest>

using namespace qor;

namespace {

constexpr int quick = 5; ///< ms before a key goes down and before it comes up: a key every 10 ms

void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
{
    QTest::keyClick(QApplication::focusWidget(), key, modifiers, quick);
}

void Type(const QString& text)
{
    for (const QChar c : text)
        QTest::keyClick(QApplication::focusWidget(), c.toLatin1(), {}, quick);
}

/// All that undo has to bring back: number, texts and colours of each row.
QStringList StateOf(const Editor& editor)
{
    QStringList rows = editor.Rows();
    for (int row = 0; row < editor.RowCount(); ++row)
        rows[row] += editor.Cell(row, 0) + editor.Red(row);
    return rows;
}

/// The next state that differs to the eye: a sort of what is in order already is a step, too.
QStringList StepTo(Editor& editor, const char* key)
{
    const QStringList before = StateOf(editor);
    for (int i = 0; i < 50 && StateOf(editor) == before; ++i)
        editor.ListKeys(key);
    return StateOf(editor);
}

/// One thing that a person does to the list, chosen by chance.
void DoAnything(Editor& editor, QRandomGenerator& chance)
{
    const auto oneOf = [&](std::initializer_list<const char*> names) {
        return names.begin()[chance.bounded(int(names.size()))];
    };
    if (editor.RowCount() > 0)
        editor.ClickRow(chance.bounded(editor.RowCount()),
                        chance.bounded(3) == 0 ? Qt::ControlModifier : Qt::NoModifier);
    const int deed = chance.bounded(10);
    if (deed < 4) {
        editor.Click(oneOf({"cmdDirAdd", "cmdDirInsert", "cmdDirAdd", "cmdDirInsert", "cmdDirRemove", "cmdDirRemove",
                            "cmdDirUp", "cmdDirDown"}));
    } else if (deed == 4) {
        editor.ClickHeader(1 + chance.bounded(2));
    } else if (deed < 8) {
        const bool canPaste = editor.RowCount() < 25 && !QGuiApplication::clipboard()->text().isEmpty();
        editor.ListKeys(oneOf({"Alt+Up", "Alt+Down", "Ctrl+X", "Ctrl+X", canPaste ? "Ctrl+V" : "Ctrl+X"}));
    } else if (editor.RowCount() > 0) {
        editor.Click("cmdDirEdit");
        if (editor.Find("txtLastName").isVisible())
            editor.Type(oneOf({"txtLastName", "txtFirstName"}), QString(QChar(u'a' + chance.bounded(26))));
        editor.Click("cmdDirEdit");
    }
}

} // namespace

class KeysTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SampleDatabase> mSample;

    void Open(const QStringList& entries, const Editor::User& user) const
    {
        mSample->SetEntries(7, entries);
        Editor::Open(1, 1, 7, user);
    }

private Q_SLOTS:
    void init() { mSample = std::make_unique<SampleDatabase>(); }

    void fortyPeople()
    {
        QStringList people;
        for (int i = 0; i < 40; ++i)
            people << u"L%1|F%1|%2"_s.arg(QChar(u'a' + i % 26) + QString(i / 26, u'x')).arg(10 + i);
        int strokes = 0;
        Open({}, [&](Editor& editor) {
            editor.FocusOn("LVDirectory");
            const auto stroke = [&](Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
                Press(key, modifiers);
                ++strokes;
            };
            for (const QString& person : people) {
                stroke(Qt::Key_Return, Qt::ControlModifier);
                Type(person.section(u'|', 0, 0));
                stroke(Qt::Key_Tab);
                Type(person.section(u'|', 1, 1));
                stroke(Qt::Key_Tab);
                Type(person.section(u'|', 2));
            }
            QStringList entered;
            for (const QString& row : editor.Rows())
                entered << row.section(u'|', 0, 2);
            QCOMPARE(entered, people);
            editor.FocusOn("cmdOK").Keys("Ctrl+Return");
            QCOMPARE(editor.RowCount(), people.size() + 1);
        });
        qInfo("%d strokes for %d people", strokes, static_cast<int>(people.size()));
        QCOMPARE(strokes, 3 * people.size());
    }

    void altLetters()
    {
        Open({u"Baker|Ben|1|5|1"_s, u"Smith|Anne|2|6|1"_s}, [](Editor& editor) {
            const QStringList before = editor.Rows();
            editor.ClickRow(0).Click("cmdDirEdit");
            for (const char* field : {"txtLastName", "cmbPromptNumber", "LVDirectory"}) {
                editor.FocusOn(field);
                for (const Qt::Key key : {Qt::Key_A, Qt::Key_I, Qt::Key_R, Qt::Key_S, Qt::Key_U, Qt::Key_D})
                    Press(key, Qt::AltModifier);
            }
            QCOMPARE(editor.Rows(), before);
            for (const Qt::Key key : {Qt::Key_E, Qt::Key_A, Qt::Key_E}) // each finds what the one before did
                Press(key, Qt::AltModifier);
            Type(u"Smythe"_s);
            QCOMPARE(editor.Rows().mid(0, 2), before);
            QCOMPARE(editor.Cell(2, 1), u"Smythe"_s);
        });
    }

    // In edit mode a letter for the list is for nobody; outside it finds a row.
    void lettersInTheList()
    {
        Open({u"Baker|Ben|1|5|1"_s, u"Smith|Anne|2|6|1"_s}, [](Editor& editor) {
            const QStringList before = editor.Rows();
            editor.ClickRow(0).Click("cmdDirEdit").FocusOn("LVDirectory");
            Type(u"Smith"_s);
            QCOMPARE(editor.Rows(), before);
            QCOMPARE(editor.Selected(), QList{0});
            editor.Click("cmdDirEdit").ClickRow(0).FocusOn("LVDirectory");
            QTest::mouseClick(editor.List().viewport(), Qt::LeftButton, {}, editor.CellRect(0, 1).center());
            Type(u"sm"_s);
            QCOMPARE(editor.Selected(), QList{1});
        });
    }

    void firstFocus()
    {
        for (const auto& [node, focus] : {std::pair(7, "cmbNode"), {12, "cmdFirst"}, {0, "txtDescription"}}) {
            Editor::Open(1, 1, node, [&, focus = focus](Editor& editor) {
                QCOMPARE(editor.Focus(), QLatin1String(focus));
                if (editor.Focus() == u"cmbNode")
                    return;
                Press(Qt::Key_Space);
                QVERIFY(editor.IsOpen());
            });
        }
    }

    void walkTheRows()
    {
        Open({u"A|Anne|1|5|1"_s, u"B|Ben|2|6|1"_s, u"C|Cy|3|7|1"_s}, [](Editor& editor) {
            editor.ClickRow(1).ListKeys("Home");
            QCOMPARE(editor.Selected(), QList{0});
            editor.Keys("End");
            QCOMPARE(editor.Selected(), QList{2});
            editor.Keys("F2");
            for (const auto& [field, text] : {std::pair("txtLastName", u"A"_s), {"txtFirstName", u"Anne"_s}}) {
                editor.FocusOn(field).Keys("Down").Keys("Down").Keys("Down"); // at the ends nothing happens
                QCOMPARE(editor.Selected(), QList{2});
                editor.Keys("Up").Keys("Up").Keys("Up");
                QCOMPARE(editor.Selected(), QList{0});
                QCOMPARE(editor.Focus(), QLatin1String(field));
                QCOMPARE(editor.Field(field).selectedText(), text);
            }
            editor.FocusOn("cmbPromptNumber").Keys("Down").Keys("Ctrl+Down");
            QCOMPARE(editor.Cell(0, 4), u"6"_s);
            QCOMPARE(editor.Selected(), QList{1});
            QCOMPARE(editor.Focus(), u"cmbPromptNumber"_s);
        });
    }

    void blocksMove()
    {
        Open({u"A|Anne|1|5|1"_s, u"B|Ben|2|6|2"_s, u"C|Cy|3|7|3"_s, u"D|Di|4|8|4"_s}, [](Editor& editor) {
            const QStringList before = editor.Rows();
            editor.ClickRow(1).ClickRow(3, Qt::ControlModifier).ListKeys("Alt+Down"); // the last one is at the end
            QCOMPARE(editor.Rows(), before);
            editor.Keys("Alt+Up");
            QCOMPARE(editor.Rows(), (QStringList{before[1], before[0], before[3], before[2]}));
            QCOMPARE(editor.Selected(), (QList{0, 2}));
            editor.Keys("Ctrl+Z");
            QCOMPARE(editor.Rows(), before);
            QCOMPARE(editor.Selected(), (QList{1, 3}));
        });
    }

    // Whatever is done can be undone step by step, and done again, keys and colours included.
    void undoBringsBack()
    {
        QRandomGenerator chance(Seed("QOR_UNDO_SEED"));
        QStringList entries;
        for (int i = 0; i < 12; ++i)
            entries << u"L%1|F|%2|%3|%3"_s.arg(QChar(u'a' + i)).arg(100 - i).arg(i + 1);
        QGuiApplication::clipboard()->clear();
        Open(entries, [&](Editor& editor) {
            for (int done = 0; done < 1000; done += 50) {
                QList<QStringList> states{StateOf(editor)};
                for (int i = 0; i < 50; ++i) {
                    DoAnything(editor, chance);
                    if (QStringList state = StateOf(editor); state != states.last())
                        states << state;
                }
                for (qsizetype i = states.size() - 2; i >= 0; --i)
                    QCOMPARE(StepTo(editor, "Ctrl+Z"), states[i]);
                for (qsizetype i = 1; i < states.size(); ++i)
                    QCOMPARE(StepTo(editor, "Ctrl+Y"), states[i]);
            }
        });
    }

    void undoAndTheForm()
    {
        Open({u"Smith|Anne|1|5|1"_s}, [this](Editor& editor) {
            editor.ClickRow(0).Click("cmdDirEdit").Type("txtLastName", u"Jones"_s).Click("cmdApply");
            QVERIFY(!editor.IsDirty());
            editor.ListKeys("Ctrl+Z"); // a save does not forget
            QCOMPARE(editor.Cell(0, 1), u"Smith"_s);
            QVERIFY(editor.IsDirty());
            editor.Type("txtDescription", u"Label"_s).Keys("Ctrl+Z"); // the field's own
            QCOMPARE(editor.Cell(0, 1), u"Smith"_s);
            editor.Click("cmdApply").Click("cmdNext").Click("cmdPrevious").ListKeys("Ctrl+Y");
            QCOMPARE(editor.Cell(0, 1), u"Smith"_s); // another node does
            QVERIFY(!editor.IsDirty());
        });
    }

    // In the shown columns only; the keys of the find line press no button.
    void find()
    {
        QStringList entries;
        for (const char* name : {"Adams", "Baker", "Clark", "BARNES", "Zabel"})
            entries << QLatin1String(name) + u"|Anne|101|6|77"_s;
        Open(entries, [](Editor& editor) {
            const auto found = [&] { // the row that is selected alone, and the count
                return QString::number(editor.Selected().size() == 1 ? editor.Selected().first() : -1) +
                       QAccessible::queryAccessibleInterface(&editor.Find("lblFindCount"))->text(QAccessible::Name);
            };
            editor.ClickRow(1).Keys("Ctrl+F");
            QCOMPARE(editor.Focus(), u"txtFind"_s);
            QCOMPARE(editor.Type("txtFind", u"b"_s).Keys("Return").Keys("Shift+Return").Text("txtFind"), u"b"_s);
            QCOMPARE(found(), u"1Found: 1 of 3"_s);
            editor.Keys("Shift+Return");
            for (const auto& [text, expected] : {std::pair(u"b"_s, u"4Found: 3 of 3"_s),
                                                 {u"101"_s, u"4Found: 5 of 5"_s},
                                                 {u"77"_s, u"4Found: 0 of 0"_s},
                                                 {u"3"_s, u"4Found: 0 of 0"_s},
                                                 {u"B"_s, u"4Found: 3 of 3"_s}}) {
                editor.ListKeys("Ctrl+F").Type("txtFind", text);
                QCOMPARE(found(), expected);
            }
            editor.ClickRow(0).ListKeys("Del");
            QTRY_COMPARE(found(), u"0Found: 1 of 3"_s);
            editor.FocusOn("txtFind").Keys("Shift+Return"); // over the list's beginning
            QCOMPARE(found(), u"3Found: 3 of 3"_s);
            editor.Keys("Esc");
            QVERIFY(editor.IsOpen() && editor.Find("fraFind").isHidden());
            QCOMPARE(editor.Focus(), u"LVDirectory"_s);
            QCOMPARE(editor.Keys("F3").Selected(), QList{0});
        });
    }
};

QTEST_MAIN(KeysTest)
#include "KeysTest.moc"
