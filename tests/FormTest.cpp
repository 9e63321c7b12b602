// The form as it lies on screen and its directory list: what stands where, what the keys reach, how it sorts.
#include "form/Directory.h"
#include "form/DirectoryListEvents.h"
#include "platform/ui/ListItems.h"
#include "platform/ui/MsgBox.h"
#include "platform/ui/Screen.h"
#include "support/BareForm.h"
#include "support/BoxScript.h"
#include "support/Cases.h"

#include <cmath>
#include <QAccessible>
#include <QScopeGuard>

using namespace qor;

namespace {

struct Control
{
    const char* name;
    const char* caption;
    int left, top, width, height; ///< in twips, inside the frame that holds it
    int maxLength = 0;
};

/// In tab order, as far as the keys reach them.
constexpr Control controls[] = {
    {"Frame1", "", 0, 0, 6975, 6975},
    {"cmdFirst", "", 1800, 120, 375, 315},
    {"cmdPrevious", "", 2160, 120, 375, 315},
    {"cmbNode", "", 2520, 120, 1095, 315},
    {"lblRecordPosition", "n/m", 3600, 120, 855, 315},
    {"cmdNext", "", 4440, 120, 375, 315},
    {"cmdLast", "", 4800, 120, 375, 315},
    {"lblLabel", "Label:", 240, 600, 435, 195},
    {"txtDescription", "", 1560, 600, 3015, 285, 30},
    {"lblAccessCode", "Access Code:", 240, 960, 975, 195},
    {"txtAccessCode", "", 1560, 960, 2000, 285, 8},
    {"cmbMSGNodeNumber", "cmbMSGNodeNumber", 6120, 960, 735, 315},
    {"lblUsePasswords", "Use Passwords:", 4680, 600, 1140, 195},
    {"cmbUsePasswords", "", 6120, 600, 735, 315},
    {"lblStartingPrompt", "Starting Prompt:", 4440, 960, 1185, 195},
    {"lblMSG", "MSG", 5750, 980, 360, 210},
    {"fraDirectory", "Directory", 120, 1320, 6735, 4935},
    {"lblCSVFormat", "CSV File format:     LastName,FirstName,Extension", 1680, 240, 4575, 255},
    {"lblCSVFilename", "CSV Filename:", 120, 480, 1575, 255},
    {"txtCSVFilename", "", 1680, 480, 4335, 285, 32767},
    {"cmdOpenCSVFilename", "...", 6120, 480, 495, 285},
    {"LVDirectory", "", 120, 840, 6495, 3375},
    {"txtLastName", "", 240, 960, 1215, 315, 31},
    {"txtFirstName", "", 1560, 960, 1215, 315, 31},
    {"txtExtension", "", 2760, 960, 1215, 315, 15},
    {"cmbPromptNumber", "Combo1", 4080, 960, 1185, 315},
    {"txtPassword", "", 5280, 960, 1215, 315, 7},
    {"cmdDirAdd", "Add", 120, 4320, 855, 255},
    {"cmdDirInsert", "Insert", 960, 4320, 855, 255},
    {"cmdDirRemove", "Remove", 1800, 4320, 855, 255},
    {"cmdDirEdit", "Edit", 2640, 4320, 855, 255},
    {"cmdDirSaveList", "Save List", 3840, 4320, 1575, 255},
    {"cmdDirUp", "Up", 5760, 4320, 855, 255},
    {"cmdDirDown", "Down", 5760, 4560, 855, 255},
    {"cmdOK", "OK", 1680, 6480, 855, 375},
    {"cmdCancel", "Cancel", 3000, 6480, 855, 375},
    {"cmdApply", "Apply", 4320, 6480, 855, 372},
    {"lstPrompts", "", 7080, 240, 1215, 450},
    {"lstUniquePromptsForSaving", "", 7200, 1080, 1335, 2595},
};

QString WithoutMnemonic(const QVariant& text)
{
    return text.toString().remove(u'&');
}

QString CaptionOf(const QWidget& control)
{
    for (const char* property : {"title", "text", "currentText"}) {
        if (control.property(property).isValid())
            return WithoutMnemonic(control.property(property));
    }
    return {};
}

/// The controls that the Tab key reaches while all of them are shown and enabled.
QStringList FocusableNames()
{
    QStringList names;
    for (const Control& control : controls)
        names << QString::fromLatin1(control.name);
    return names.filter(QRegularExpression(u"^(txt|cmb|cmd|LV)"_s));
}

void Show(QWidget& form)
{
    form.show();
    QVERIFY(QTest::qWaitForWindowActive(&form));
}

/// Rows that have a text from "b,A,a" in all their sub-items.
void Fill(ListView& list, const QString& texts)
{
    ResetDirectoryListView(list);
    std::vector<ListRow> rows;
    for (const QString& text : texts.split(u',', Qt::SkipEmptyParts))
        rows.push_back(EntryRow(static_cast<int>(rows.size()) + 1, {text, text, text, text, text}));
    list.Items().Append(std::move(rows));
}

/// The rows in order, what they are sorted by and how many columns there are.
QString StateOf(const ListView& list)
{
    const ListItems& items = list.Items();
    QStringList texts;
    for (int row = 0; row < items.RowCount(); ++row)
        texts << EntryText(list, row, DirectoryColumn::LastName);
    const QString order = items.Order() == ListItems::SortOrder::Ascending ? u"up"_s : u"down"_s;
    const QString sorted = items.Sorted() ? u"%1 by %2"_s.arg(order).arg(items.SortKey()) : u"unsorted"_s;
    return u"%1 %2 of %3"_s.arg(texts.join(u','), sorted).arg(items.ColumnCount());
}

double Lightness(const QColor& colour)
{
    const auto linear = [](double part) { return part <= 0.04 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4); };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

/// How well one colour can be read on the other: from 1, not at all, to 21, black on white.
double Contrast(const QColor& one, const QColor& other)
{
    const auto [dark, light] = std::minmax({Lightness(one), Lightness(other)});
    return (light + 0.05) / (dark + 0.05);
}

} // namespace

class FormTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<BoxScript> mBoxes;

private Q_SLOTS:
    void initTestCase() { InstallErrorBox(); }
    void init() { mBoxes = std::make_unique<BoxScript>(); }
    void cleanup() { mBoxes.reset(); }

    void controlsLieInPlace()
    {
        const BareForm form;
        QCOMPARE(form.windowTitle(), u"DIR Editor"_s);
        for (const Control& expected : controls) {
            const auto* control = form.findChild<QWidget*>(QString::fromLatin1(expected.name));
            QVERIFY2(control, expected.name);
            const QRect place = control->geometry();
            const int twips[] = {expected.left, expected.top, expected.width, expected.height};
            const int pixels[] = {place.x(), place.y(), place.width(), place.height()};
            for (int i = 0; i < 4; ++i)
                QVERIFY2(std::abs(pixels[i] - twips[i] / 15.0) <= 1, expected.name);
            QVERIFY2(CaptionOf(*control) == QLatin1String(expected.caption), expected.name);
            const auto* text = qobject_cast<const TextBox*>(control);
            QVERIFY2(!text || text->maxLength() == expected.maxLength, expected.name);
        }
        QVERIFY(form.fraDirectory->isAncestorOf(form.LVDirectory));
        QVERIFY(form.lstPrompts->isHidden() && form.lstUniquePromptsForSaving->isHidden());
        QVERIFY(!form.cmdApply->isEnabled());
        QVERIFY(form.cmbMSGNodeNumber->isEditable() && form.cmbPromptNumber->isEditable());
        QVERIFY(!form.cmbNode->isEditable() && !form.cmbUsePasswords->isEditable());
        QCOMPARE(form.cmbUsePasswords->List(0) + form.cmbUsePasswords->List(1), u"YesNo"_s);
        QCOMPARE(form.cmbUsePasswords->ListIndex(), -1);
    }

    void nothingIsClipped()
    {
        BareForm form;
        form.lblRecordPosition->setText(u"100 of 100"_s);
        form.SetEditMode(true);
        for (const QLabel* label : form.Frame1->findChildren<QLabel*>()) {
            const QSize needed = label->sizeHint();
            QVERIFY2(needed.width() <= label->width() && needed.height() <= label->height(),
                     qPrintable(label->objectName()));
        }
        for (const QPushButton* button : form.findChildren<QPushButton*>()) {
            const QSize needed = button->fontMetrics().size(Qt::TextShowMnemonic, button->text());
            QVERIFY2(needed.width() + 6 <= button->width() && needed.height() <= button->height(),
                     qPrintable(button->objectName()));
        }
    }

    void keysReachEveryControl()
    {
        BareForm form;
        const QStringList names = FocusableNames();
        for (const QString& name : names) {
            auto* control = form.findChild<QWidget*>(name);
            control->setEnabled(true);
            control->show();
            QVERIFY2(!QAccessible::queryAccessibleInterface(control)->text(QAccessible::Name).isEmpty(),
                     qPrintable(name));
        }
        Show(form);
        form.cmdFirst->setFocus();
        QStringList visited;
        for (qsizetype i = 0; i <= names.size(); ++i) {
            visited << form.focusWidget()->objectName();
            QTest::keyClick(form.focusWidget(), Qt::Key_Tab);
        }
        QCOMPARE(visited, names + QStringList{u"cmdFirst"_s});
    }

    void enterEscapeAndTheCloseBox()
    {
        BareForm form;
        form.Load();
        Show(form);
        Fill(*form.LVDirectory, u"a"_s);
        form.LVDirectory->SetSelected(0, true);
        QString clicked;
        connect(form.cmdOK, &QPushButton::clicked, this, [&] { clicked += u"OK "_s; });
        connect(form.cmdCancel, &QPushButton::clicked, this, [&] { clicked += u"Cancel "_s; });
        for (const char* name : {"txtDescription", "cmbMSGNodeNumber", "cmbNode", "LVDirectory"}) {
            auto* control = form.findChild<QWidget*>(QLatin1String(name));
            control->setFocus();
            QTest::keyClick(control, Qt::Key_Return);
            QTest::keyClick(control, Qt::Key_Escape);
        }
        QCOMPARE(clicked, u"OK Cancel "_s.repeated(4));
        form.keepLoaded = true;
        form.close();
        QVERIFY(form.isVisible() && form.IsLoaded());
        form.keepLoaded = false;
        form.close();
        QVERIFY(!form.isVisible() && !form.IsLoaded());
    }

    void directoryColumns()
    {
        BareForm form;
        ListView& list = *form.LVDirectory;
        list.SetMultiSelect(false);
        list.setShowGrid(false);
        Fill(list, u"a,b"_s);
        ResetDirectoryListView(list);
        QStringList columns;
        for (int column = 0; column < list.Items().ColumnCount(); ++column) {
            const QString text = list.Items().headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
            const bool isHidden = list.isColumnHidden(column) || list.columnWidth(column) == 0;
            columns << text + QString::number(isHidden ? 0 : list.columnWidth(column));
        }
        QCOMPARE(columns.join(u' '), u"#0 LastName107 FirstName107 Extension97 Prompt97 Password0"_s);
        QCOMPARE(list.Items().RowCount(), 2);
        QCOMPARE(list.selectionBehavior(), QAbstractItemView::SelectRows);
        QCOMPARE(list.selectionMode(), QAbstractItemView::ExtendedSelection);
        QVERIFY(list.showGrid() && list.editTriggers() == QAbstractItemView::NoEditTriggers);
    }

    // The rows, and behind > the columns that are clicked one after the other.
    void columnClicksSort_data()
    {
        AddCases({{"text", u"b,A,a,B>1"_s, u"A,a,b,B up by 1 of 6"_s},
                  {"text twice", u"b,A,a,B>11"_s, u"b,B,A,a down by 1 of 6"_s},
                  {"text three times", u"b,A,a,B>111"_s, u"A,a,b,B up by 1 of 6"_s},
                  {"another text", u"b,A>112"_s, u"A,b up by 2 of 6"_s},
                  {"password", u"9,10>5"_s, u"10,9 up by 5 of 6"_s},
                  {"number", u"9,10,1>3"_s, u"10,9,1 down by 6 of 7"_s},
                  {"number twice", u"9,10,1>44"_s, u"10,9,1 down by 6 of 7"_s},
                  {"another number", u"9,10,1>34"_s, u"10,9,1 down by 6 of 7"_s},
                  {"lenient numbers", u"-1, 2 ,1e1,1.5,0>3"_s, u"1e1, 2 ,1.5,0,-1 down by 6 of 7"_s},
                  {"equal numbers", u"1,01,1.0>3"_s, u"1,01,1.0 down by 6 of 7"_s},
                  {"text after number", u"9,10,1>3131"_s, u"1,10,9 up by 1 of 7"_s},
                  {"row number", u"9,10>0"_s, u"9,10 unsorted of 6"_s},
                  {"row number, sorted", u"9,10>110"_s, u"9,10 down by 1 of 6"_s},
                  {"no rows", u">3"_s, u" down by 6 of 7"_s}});
    }
    void columnClicksSort()
    {
        QFETCH(QString, given);
        BareForm form;
        DirectoryListEvents events(form);
        Fill(*form.LVDirectory, given.section(u'>', 0, 0));
        for (const QChar column : given.section(u'>', 1))
            events.LVDirectory_ColumnClick(column.digitValue());
        QTEST(StateOf(*form.LVDirectory), "expected");
    }

    void textsThatAreNoNumber()
    {
        BareForm form;
        ListView& list = *form.LVDirectory;
        DirectoryListEvents events(form);
        Fill(list, u"1,x,20,3"_s);
        events.LVDirectory_ColumnClick(1);
        for (const QString& text : {u"x"_s, QString()}) {
            list.Items().SetText(3, 3, text);
            mBoxes->Expect(ErrorReport(u"LVDirectory_ColumnClick"_s,
                                       u"Extension of row 4 is \"%1\", which is not a number*"_s.arg(text)));
            events.LVDirectory_ColumnClick(3);
            QCOMPARE(StateOf(list), u"1,20,3,x unsorted of 7"_s);
        }
        list.Items().SetText(3, 3, u"2"_s);
        SortListByNumber(list, DirectoryColumn::Extension, ListItems::SortOrder::Ascending);
        QCOMPARE(StateOf(list), u"1,x,3,20 up by 6 of 7"_s);
    }

    void selection()
    {
        BareForm form;
        ListView& list = *form.LVDirectory;
        DirectoryListEvents events(form);
        Fill(list, u"1,2,3,4,5"_s);
        events.LVDirectory_KeyPress('a');
        QCOMPARE(GetSelectedCount(list), 0);
        events.LVDirectory_KeyPress(1);
        QCOMPARE(GetSelectedCount(list), 5);
        ClearSelectionFrom(list, 5);
        ClearSelectionFrom(list, 2);
        QCOMPARE(list.SelectedRows(), (std::vector{0, 1}));
        for (int i = 0; i < 2; ++i)
            events.LVDirectory_ColumnClick(3);
        QCOMPARE(list.SelectedRows(), (std::vector{3, 4}));
        Show(form);
        const QModelIndex shown = list.model()->index(4, static_cast<int>(DirectoryColumn::FirstName));
        QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::ControlModifier, list.visualRect(shown).center());
        QCOMPARE(list.SelectedRows(), std::vector{3});
        QVERIFY(list.IsSelected(3) && !list.IsSelected(4));
        ClearSelectionFrom(list, 0);
        QCOMPARE(GetSelectedCount(list), 0);
    }

    void layoutWithoutNavigation()
    {
        BareForm form;
        Show(form);
        form.HideNavigation();
        form.CompactLayoutWithoutNavigation();
        for (const char* name : {"cmdFirst", "cmdPrevious", "cmbNode", "lblRecordPosition", "cmdNext", "cmdLast"})
            QVERIFY2(!form.findChild<QWidget*>(QLatin1String(name))->isVisible(), name);
        QString tops;
        for (const char* name : {"lblLabel", "txtDescription", "lblAccessCode", "txtAccessCode", "lblStartingPrompt",
                                 "lblMSG", "cmbMSGNodeNumber", "fraDirectory", "cmdOK", "cmdCancel", "cmdApply"})
            tops += QString::number(form.findChild<QWidget*>(QLatin1String(name))->y()) + u' ';
        QCOMPARE(tops, u"8 8 32 32 32 32 32 56 400 400 400 "_s);
        QCOMPARE(form.height(), 487 - 32);
        QCOMPARE(form.StatusBar1->geometry().bottom(), form.rect().bottom());
    }

    void coloursCanBeRead_data()
    {
        QTest::addColumn<QColor>("background");
        QTest::newRow("light") << QColor(Qt::white);
        QTest::newRow("dark") << QColor(0x35, 0x35, 0x35);
        QTest::newRow("black") << QColor(Qt::black);
    }
    void coloursCanBeRead()
    {
        QFETCH(QColor, background);
        BareForm form;
        ListView& list = *form.LVDirectory;
        Fill(list, u"\u2588\u2588\u2588\u2588\u2588"_s); // full blocks: plain colour
        list.Items().SetForeColor(0, 1, invalidRowColour);
        list.Items().SetForeColor(0, 2, soundRowColour);
        Show(form);
        const auto restore = qScopeGuard([before = QApplication::palette()] { QApplication::setPalette(before); });
        QPalette palette(background, background);
        palette.setColor(QPalette::Base, background);
        QApplication::setPalette(palette);
        QTRY_COMPARE(list.palette().color(QPalette::Base), background);
        const QImage picture = list.viewport()->grab().toImage();
        const QPalette hint = form.lblCSVFormat->palette();
        QVERIFY(Contrast(hint.color(QPalette::WindowText), hint.color(QPalette::Window)) >= 3);
        for (const int column : {1, 2}) {
            const QRect cell = list.visualRect(list.model()->index(0, column));
            const QColor ink = picture.pixelColor(cell.left() + 12, cell.center().y());
            QVERIFY2(Contrast(ink, background) >= 3, qPrintable(ink.name()));
            QCOMPARE(ink.red() > ink.green() + 50, column == 1);
        }
    }
};

QTEST_MAIN(FormTest)
#include "FormTest.moc"
