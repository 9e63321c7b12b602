#include "BoxScript.h"

#include <QAbstractButton>
#include <QApplication>
#include <QRegularExpression>
#include <QTest>

namespace qor {

namespace {

bool Matches(const QString& text, const QString& pattern)
{
    const QString expression = QRegularExpression::escape(pattern).replace(u"\\*"_s, u".*"_s);
    return QRegularExpression(QRegularExpression::anchoredPattern(expression),
                              QRegularExpression::DotMatchesEverythingOption)
        .match(text)
        .hasMatch();
}

QString Described(const QString& text, const QString& title, int icon)
{
    return u"\"%1\", title \"%2\", icon %3"_s.arg(text, title).arg(icon);
}

QString Serve(QWidget& dialog, const ExpectedBox& expected)
{
    auto* box = qobject_cast<QMessageBox*>(&dialog);
    if (!box || !Matches(box->text(), expected.text) || box->windowTitle() != expected.title ||
        box->icon() != expected.icon)
        return u"another was expected"_s;
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

void BoxScript::ServeModalWidget()
{
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (!box)
        return; // a form that is shown modally is for the test itself
    const Step step = mSteps.empty() ? Step{u"none"_s, {}} : mSteps.front();
    if (!mSteps.empty())
        mSteps.pop_front();
    const QString shown = Described(box->text(), box->windowTitle(), box->icon());
    const QString fault = step.serve ? step.serve(*box) : u"it was not expected"_s;
    if (fault.isEmpty())
        return;
    FailTest(u"A message box came: %1; %2. Expected: %3"_s.arg(shown, fault, step.name));
    QTest::keyClick(box, Qt::Key_Escape);
    if (box->isVisible())
        box->done(0);
}

void BoxScript::Verify()
{
    for (const Step& step : std::exchange(mSteps, {}))
        FailTest(u"A message box did not come: "_s + step.name);
}

} // namespace qor
