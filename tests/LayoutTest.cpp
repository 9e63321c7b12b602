// The form as it lies on screen: what stands where, what the keys reach, its sizes, texts and colours.
#include "form/DirectoryRows.h"
#include "platform/shell/SavedSettings.h"
#include "support/BareForm.h"

#include <QAccessible>
#include <QHelpEvent>
#include <QScopeGuard>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QToolTip>

using namespace qor;

namespace {

/// In the order in which the Tab key reaches them while all of them are shown and enabled.
const QStringList tabOrder =
    u"cmdFirst cmdPrevious cmbNode cmdNext cmdLast txtDescription txtAccessCode cmbMSGNodeNumber cmbUsePasswords "
    "txtCSVFilename cmdOpenCSVFilename LVDirectory txtLastName txtFirstName txtExtension cmbPromptNumber txtPassword "
    "cmdDirAdd cmdDirInsert cmdDirRemove cmdDirEdit cmdDirSaveList cmdDirUp cmdDirDown cmdOK cmdCancel cmdApply"_s
        .split(u' ');

void Show(QWidget& form)
{
    form.show();
    QVERIFY(QTest::qWaitForWindowActive(&form));
}

bool CanBeRead(const QColor& ink, const QColor& background)
{
    return std::abs(qGray(ink.rgb()) - qGray(background.rgb())) >= 80;
}

} // namespace

class LayoutTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Nothing lies over another control or beyond its frame, but for the fields that are laid over a row.
    void nothingIsCovered()
    {
        BareForm form;
        form.HideEntryEditors();
        Show(form);
        for (const QWidget* frame : QList<QWidget*>{form.Frame1->parentWidget(), form.Frame1, form.fraDirectory}) {
            const auto children = frame->findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
            for (const QWidget* one : children) {
                QVERIFY2(one->isHidden() || frame->rect().contains(one->geometry()), qPrintable(one->objectName()));
                for (const QWidget* other : children) {
                    const QRect common = one->geometry() & other->geometry();
                    const bool meet = one < other && one->isVisible() && other->isVisible() &&
                                      std::min(common.width(), common.height()) > 1; // edges may lie on one line
                    QVERIFY2(!meet, qPrintable(one->objectName() + u' ' + other->objectName()));
                }
            }
        }
    }

    void nothingIsClipped()
    {
        BareForm form;
        form.lblRecordPosition->setText(u"100 of 100"_s);
        form.SetEditMode(true);
        const auto check = [](const QWidget& control, const QSize& needed) {
            QVERIFY2(needed.boundedTo(control.size()) == needed, qPrintable(control.objectName()));
        };
        for (const QLabel* label : form.Frame1->findChildren<QLabel*>())
            check(*label, label->sizeHint());
        for (const QPushButton* button : form.findChildren<QPushButton*>())
            check(*button, button->fontMetrics().size(Qt::TextShowMnemonic, button->text()) + QSize(6, 0));
    }

    void keysReachEveryControl()
    {
        BareForm form;
        for (const QString& name : tabOrder) {
            auto* control = form.findChild<QWidget*>(name);
            control->setEnabled(true);
            control->show();
            QVERIFY2(!QAccessible::queryAccessibleInterface(control)->text(QAccessible::Name).isEmpty(),
                     qPrintable(name));
        }
        Show(form);
        form.cmdFirst->setFocus();
        QStringList visited;
        for (qsizetype i = 0; i <= tabOrder.size(); ++i) {
            visited << form.focusWidget()->objectName();
            QTest::keyClick(form.focusWidget(), Qt::Key_Tab);
        }
        QCOMPARE(visited, tabOrder + QStringList{u"cmdFirst"_s});
    }

    // From controls that use these keys themselves, too.
    void enterAndEscape()
    {
        BareForm form;
        Show(form);
        form.FillList(u"a"_s);
        form.LVDirectory->SetSelected(0, true);
        QString clicked;
        connect(form.cmdOK, &QPushButton::clicked, this, [&] { clicked += u"OK "_s; });
        connect(form.cmdCancel, &QPushButton::clicked, this, [&] { clicked += u"Cancel "_s; });
        for (QWidget* control : QList<QWidget*>{form.cmbMSGNodeNumber, form.cmbNode, form.LVDirectory}) {
            control->setFocus();
            QTest::keyClick(control, Qt::Key_Return);
            QTest::keyClick(control, Qt::Key_Escape);
        }
        QCOMPARE(clicked, u"OK Cancel "_s.repeated(3));
    }

    void sizesComeBack()
    {
        const QTemporaryDir folder;
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, folder.path());
        const auto use = [](bool isNewNode, const QSize& size = {}) {
            BareForm form;
            if (isNewNode)
                form.CompactLayoutWithoutNavigation();
            form.show();
            const QString opened = u"%1x%2+%3 "_s.arg(form.width()).arg(form.height()).arg(form.LVDirectory->height());
            form.resize(size.isValid() ? size : form.size());
            form.hide();
            return opened + GetSetting(u"KELDAR+"_s, u"DIREditor"_s, u"FormSize"_s);
        };
        QCOMPARE(use(false), u"465x487+225 "_s);
        QCOMPARE(use(true), u"465x455+225 "_s);
        QCOMPARE(use(false, {600, 700}), u"465x487+225 600x700"_s);
        QCOMPARE(use(true, {500, 668}), u"600x668+438 500x700"_s);
        SaveSetting(u"KELDAR+"_s, u"DIREditor"_s, u"FormSize"_s, u"1x9999"_s);
        QVERIFY(use(false).startsWith(u"465x%1+"_s.arg(QGuiApplication::primaryScreen()->availableSize().height())));
    }

    void cutTexts()
    {
        BareForm form;
        form.txtDescription->Fill(u"W"_s.repeated(30));
        QHelpEvent hover(QEvent::ToolTip, {5, 5}, {5, 5});
        QCoreApplication::sendEvent(form.txtDescription, &hover);
        QCOMPARE(QToolTip::text(), form.txtDescription->text());
        form.ShowPosition(u"1150 of 1200"_s);
        QVERIFY(form.lblRecordPosition->sizeHint().width() <= form.lblRecordPosition->width());
    }

    void coloursCanBeRead()
    {
        BareForm form;
        ListView& list = *form.LVDirectory;
        form.FillList(u"\u2588\u2588\u2588\u2588\u2588"_s); // full blocks: plain colour
        list.Items().SetForeColor(0, 1, invalidRowColour);
        list.Items().SetForeColor(0, 2, soundRowColour);
        Show(form);
        const auto restore = qScopeGuard([before = QApplication::palette()] { QApplication::setPalette(before); });
        for (const QColor& background : {QColor(Qt::white), QColor(0x35, 0x35, 0x35)}) {
            QPalette palette(background, background);
            palette.setColor(QPalette::Base, background);
            QApplication::setPalette(palette);
            QTRY_COMPARE(list.palette().color(QPalette::Base), background);
            const QImage picture = list.viewport()->grab().toImage();
            const QPalette hint = form.lblCSVFormat->palette();
            QVERIFY(CanBeRead(hint.color(QPalette::WindowText), hint.color(QPalette::Window)));
            for (const int column : {1, 2}) {
                const QRect cell = list.visualRect(list.model()->index(0, column));
                const QColor ink = picture.pixelColor(cell.left() + 12, cell.center().y());
                QVERIFY2(CanBeRead(ink, background), qPrintable(ink.name()));
                QCOMPARE(ink.red() > ink.green() + 50, column == 1);
            }
        }
    }
};

QTEST_MAIN(LayoutTest)
#include "LayoutTest.moc"
