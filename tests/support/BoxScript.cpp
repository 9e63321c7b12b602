#include "BoxScript.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

namespace qor {

namespace {

QString Told(const QString& text, const QString& title, const QString& kind)
{
    return u"%1 \"%2\": %3"_s.arg(kind, title, text);
}

QString KindOf(QMessageBox::Icon icon)
{
    return u"box with icon %1"_s.arg(icon);
}

const QString fileDialog = u"file dialog"_s;
const QString question = u"question"_s;

/// What a dialog says, as the expected ones are told.
QString Told(const QDialog& dialog)
{
    if (const auto* box = qobject_cast<const QMessageBox*>(&dialog))
        return Told(box->text(), box->windowTitle(), KindOf(box->icon()));
    if (const auto* files = qobject_cast<const QFileDialog*>(&dialog))
        return Told(files->directory().absolutePath(), files->windowTitle(), fileDialog);
    const auto* text = dialog.findChild<QLabel*>(u"lblQuestion"_s);
    return Told(text ? text->text() : QString(), dialog.windowTitle(), question);
}

void FailTest(const QString& reason)
{
    QTest::qFail(qUtf8Printable(reason), __FILE__, __LINE__);
}

/// A dialog whose button cannot be pressed must not stay open.
void Press(QDialog& dialog, QAbstractButton* button, bool isEscape)
{
    if (button && button->isEnabled())
        return button->click();
    if (!isEscape)
        FailTest(u"This dialog has no such button to press: "_s + Told(dialog));
    QTest::keyClick(&dialog, Qt::Key_Escape);
}

} // namespace

ExpectedBox Notice(const QString& text)
{
    return {text, u"Information"_s, QMessageBox::Information};
}

ExpectedBox Question(const QString& text, QMessageBox::StandardButton answer, const QString& title)
{
    return {text, title, QMessageBox::Question, answer};
}

ExpectedBox SaveQuestion(QMessageBox::StandardButton answer)
{
    return Question(u"Do you want to save changes?"_s, answer);
}

ExpectedDialog FileDialog(const QString& title, const QString& fileName, const QString& folder)
{
    return {Told(folder, title, fileDialog), [fileName](QDialog& dialog) {
                if (fileName.isEmpty())
                    return dialog.reject();
                dialog.findChild<QLineEdit*>(u"fileNameEdit"_s)->setText(fileName);
                dialog.accept();
            }};
}

ExpectedDialog MissingNode(int number, const QString& button)
{
    const QString text =
        u"MSG %1 is referenced but it does not exist.\nDo you want to auto create node 'MSG %1'?"_s.arg(number);
    return {Told(text, u"Confirmation"_s, question), [button](QDialog& dialog) {
                Press(dialog, button.isEmpty() ? nullptr : dialog.findChild<QAbstractButton*>(button),
                      button.isEmpty());
            }};
}

ExpectedBox ErrorReport(const QString& procedure, const QString& description)
{
    return {u"Source: QOR_DIR_NODE - %1 \nDescription: %2"_s.arg(procedure, description), u"Error"_s,
            QMessageBox::Warning};
}

BoxScript::BoxScript(std::initializer_list<ExpectedBox> boxes)
{
    for (const ExpectedBox& box : boxes)
        Expect(box);
    QObject::connect(&mTimer, &QTimer::timeout, &mTimer, [this] { ServeModalWidget(); });
    mTimer.start(1);
}

void BoxScript::Expect(const ExpectedBox& box)
{
    Expect({Told(box.text, box.title, KindOf(box.icon)), [box](QDialog& dialog) {
                auto& shown = dynamic_cast<QMessageBox&>(dialog);
                if (box.inspect)
                    box.inspect(shown);
                Press(shown, shown.button(box.answer), box.answer == QMessageBox::NoButton);
            }});
}

void BoxScript::ServeModalWidget()
{
    auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    const bool isForm = dialog != nullptr && dialog->inherits("qor::Form"); // shown modally, it is for the test itself
    if (dialog == nullptr || isForm)
        return;
    mTimer.start(1); // again, so that it comes within an answer that brings up the next box
    const ExpectedDialog expected = mExpected.empty() ? ExpectedDialog{u"none"_s, {}} : mExpected.front();
    if (!mExpected.empty())
        mExpected.pop_front();
    if (Matches(Told(*dialog), expected.told))
        return expected.answer(*dialog);
    FailTest(u"A dialog came: %1. Expected: %2"_s.arg(Told(*dialog), expected.told));
    QTest::keyClick(dialog, Qt::Key_Escape);
    if (dialog->isVisible())
        dialog->done(0);
}

void BoxScript::Verify()
{
    for (const ExpectedDialog& expected : std::exchange(mExpected, {}))
        FailTest(u"A dialog did not come: "_s + expected.told);
}

} // namespace qor
