// Answers the message boxes and file dialogs that a test brings up, in the order in which it expects them.
#pragma once

#include "platform/runtime/Text.h"

#include <deque>
#include <functional>
#include <QMessageBox>
#include <QTimer>

namespace qor {

/// Whether a text is what the pattern says, in which a * stands for any characters.
bool Matches(const QString& text, const QString& pattern);

struct ExpectedBox
{
    QString text; ///< a pattern for the whole text, its lines ended by \n
    QString title;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QMessageBox::StandardButton answer = QMessageBox::Ok; ///< NoButton for the Escape key
    std::function<void(QMessageBox& box)> inspect = {};   ///< called before it is answered
};

struct ExpectedFileDialog
{
    QString title;
    QString fileName = {}; ///< what is typed into it; empty to cancel it
    QString folder = {};   ///< where it starts; empty for anywhere
};

/// The question about a missing message node.
struct ExpectedQuestion
{
    QString text;
    QString button; ///< the name of the button that answers it; empty for the Escape key
};

/// The notice with the title "Information".
ExpectedBox Notice(const QString& text);
ExpectedBox Question(const QString& text, QMessageBox::StandardButton answer, const QString& title = u"Confirmation"_s);
/// Whether changes are to be saved.
ExpectedBox SaveQuestion(QMessageBox::StandardButton answer);
/// Whether this missing message node is to be made.
ExpectedQuestion MissingNode(int number, const QString& button);
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
    void Expect(const ExpectedFileDialog& dialog);
    void Expect(const ExpectedQuestion& question);
    /// Fails the test unless every expected box and dialog came.
    void Verify();

private:
    struct Step
    {
        QString told; ///< a pattern for what the dialog says
        std::function<void(QDialog& dialog)> answer;
    };

    void ServeModalWidget();

    std::deque<Step> mSteps;
    QTimer mTimer;
};

} // namespace qor
