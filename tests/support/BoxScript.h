// Answers the message boxes and file dialogs that a test brings up, in the order in which it expects them.
#pragma once

#include "support/Cases.h"

#include <deque>
#include <functional>
#include <QMessageBox>
#include <QTimer>

namespace qor {

struct ExpectedBox
{
    QString text; ///< a pattern for the whole text, its lines ended by \n
    QString title;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QMessageBox::StandardButton answer = QMessageBox::Ok; ///< NoButton for the Escape key
    std::function<void(QMessageBox& box)> inspect = {};   ///< called before it is answered
};

struct ExpectedDialog
{
    QString told; ///< a pattern for what it says
    std::function<void(QDialog& dialog)> answer;
};

/// A file dialog that starts in this folder; the name is typed into it, an empty one cancels it.
ExpectedDialog FileDialog(const QString& title, const QString& fileName = {}, const QString& folder = u"*"_s);
/// Whether this missing message node is to be made; the named button answers it, without one the Escape key.
ExpectedDialog MissingNode(int number, const QString& button = {});
/// The notice with the title "Information".
ExpectedBox Notice(const QString& text);
ExpectedBox Question(const QString& text, QMessageBox::StandardButton answer, const QString& title = u"Confirmation"_s);
/// Whether changes are to be saved.
ExpectedBox SaveQuestion(QMessageBox::StandardButton answer);
/// The report of an error that ended this procedure.
ExpectedBox ErrorReport(const QString& procedure, const QString& description);

/// A box or dialog that is not the next one expected is answered with Escape and fails the test; so do, at the
/// end, those that did not come.
class BoxScript
{
public:
    BoxScript(std::initializer_list<ExpectedBox> boxes = {});
    ~BoxScript() { Verify(); }
    Q_DISABLE_COPY_MOVE(BoxScript)

    void Expect(const ExpectedBox& box);
    void Expect(const ExpectedDialog& dialog) { mExpected.push_back(dialog); }
    /// Fails the test unless every expected box and dialog came.
    void Verify();

private:
    void ServeModalWidget();

    std::deque<ExpectedDialog> mExpected;
    QTimer mTimer;
};

} // namespace qor
