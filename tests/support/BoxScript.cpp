#include "BoxScript.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>

namespace qor {

bool Matches(const QString& text, const QString& pattern)
{
    const QString expression = QRegularExpression::escape(pattern).replace(u"\\*"_s, u".*"_s);
    return QRegularExpression(QRegularExpression::anchoredPattern(expression),
                              QRegularExpression::DotMatchesEverythingOption)
        .match(text)
        .hasMatch();
}

namespace {

QString Described(const QString& text, const QString& title, int icon)
{
    return u"\"%1\", title \"%2\", icon %3"_s.arg(text, title).arg(icon);
}

QString Serve(QWidget& dialog, const ExpectedBox& expected)
{
    auto* box = qobject_cast<QMessageBox*>(&dialog);
    if (box == nullptr || !Matches(box->text(), expected.text) || box->windowTitle() != expected.title ||
        box->icon() != expected.icon)
        return u"another was expected"_s;
    if (expected.inspect)
        expected.inspect(*box);
    if (expected.answer == QMessageBox::NoButton) {
        QTest::keyClick(box, Qt::Key_Escape);
        return {};
    }
    QAbstractButton* button = box->button(expected.answer);
    if (!button)
        return u"it has no such button"_s;
    button->click();
    return {};
}

QString Serve(QWidget& widget, const ExpectedFileDialog& expected)
{
    auto* dialog = qobject_cast<QFileDialog*>(&widget);
    if (dialog == nullptr || dialog->windowTitle() != expected.title)
        return u"another was expected"_s;
    if (!expected.folder.isEmpty() && dialog->directory().absolutePath() != expected.folder)
        return u"it starts in "_s + dialog->directory().absolutePath();
    const bool opens = dialog->acceptMode() == QFileDialog::AcceptOpen;
    auto button = opens ? QDialogButtonBox::Open : QDialogButtonBox::Save;
    if (expected.fileName.isEmpty())
        button = QDialogButtonBox::Cancel;
    else
        dialog->findChild<QLineEdit*>(u"fileNameEdit"_s)->setText(expected.fileName);
    QPushButton* pressed = dialog->findChild<QDialogButtonBox*>()->button(button);
    if (!pressed->isEnabled())
        return u"its button is disabled"_s;
    pressed->click();
    return {};
}

QString QuestionOf(const QWidget& dialog)
{
    const auto* question = dialog.findChild<QLabel*>(u"lblQuestion"_s);
    return question ? question->text() : QString();
}

QString Serve(QWidget& dialog, const ExpectedQuestion& expected)
{
    if (QuestionOf(dialog) != expected.text || dialog.windowTitle() != u"Confirmation"_s)
        return u"another was expected"_s;
    QWidget* answer = expected.button.isEmpty() ? &dialog : dialog.findChild<QWidget*>(expected.button);
    QTest::keyClick(answer, expected.button.isEmpty() ? Qt::Key_Escape : Qt::Key_Space);
    return {};
}

QString Described(QWidget& dialog)
{
    if (const auto* box = qobject_cast<QMessageBox*>(&dialog))
        return Described(box->text(), box->windowTitle(), box->icon());
    if (QString question = QuestionOf(dialog); !question.isEmpty())
        return question;
    return u"file dialog, title \"%1\""_s.arg(dialog.windowTitle());
}

void FailTest(const QString& reason)
{
    QTest::qFail(qUtf8Printable(reason), __FILE__, __LINE__);
}

} // namespace

ExpectedBox Notice(const QString& text)
{
    return {text, u"Information"_s, QMessageBox::Information};
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
    mSteps.push_back({Described(box.text, box.title, box.icon), [box](QWidget& dialog) { return Serve(dialog, box); }});
}

void BoxScript::Expect(const ExpectedFileDialog& dialog)
{
    mSteps.push_back({u"file dialog, title \"%1\", folder \"%2\""_s.arg(dialog.title, dialog.folder),
                      [dialog](QWidget& shown) { return Serve(shown, dialog); }});
}

void BoxScript::Expect(const ExpectedQuestion& question)
{
    mSteps.push_back({question.text, [question](QWidget& shown) { return Serve(shown, question); }});
}

void BoxScript::ServeModalWidget()
{
    auto* box = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    const bool isForm = box != nullptr && box->inherits("qor::Form"); // shown modally, it is for the test itself
    if (box == nullptr || isForm)
        return;
    mTimer.start(1); // again, so that it comes within an answer that brings up the next box
    const Step step = mSteps.empty() ? Step{u"none"_s, {}} : mSteps.front();
    if (!mSteps.empty())
        mSteps.pop_front();
    const QString shown = Described(*box);
    const QString fault = step.serve ? step.serve(*box) : u"it was not expected"_s;
    if (fault.isEmpty())
        return;
    FailTest(u"A dialog came: %1; %2. Expected: %3"_s.arg(shown, fault, step.name));
    QTest::keyClick(box, Qt::Key_Escape);
    if (box->isVisible())
        box->done(0);
}

void BoxScript::Verify()
{
    for (const Step& step : std::exchange(mSteps, {}))
        FailTest(u"A dialog did not come: "_s + step.name);
}

} // namespace qor
