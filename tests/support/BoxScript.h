// Answers the message boxes that a test brings up, in the order in which it expects them.
#pragma once

#include "platform/runtime/Text.h"

#include <deque>
#include <functional>
#include <QMessageBox>
#include <QTimer>

namespace qor {

struct ExpectedBox
{
    QString text; ///< the whole text, its lines ended by \n; a * stands for any characters
    QString title;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QMessageBox::StandardButton answer = QMessageBox::Ok; ///< NoButton for the Escape key
};

/// The notice with the title "Information".
ExpectedBox Notice(const QString& text);
/// The report of an error that ended this procedure.
ExpectedBox ErrorReport(const QString& procedure, const QString& description);

/// A box that is not the next one expected is answered with Escape and fails the test; so do, at the end,
/// boxes that did not come.
class BoxScript
{
public:
    BoxScript(std::initializer_list<ExpectedBox> boxes = {});
    ~BoxScript() { Verify(); }
    Q_DISABLE_COPY_MOVE(BoxScript)

    void Expect(const ExpectedBox& box);
    /// Fails the test unless every expected box came.
    void Verify();

private:
    /// Serves one dialog.
    struct Step
    {
        QString name;
        std::function<QString(QWidget& dialog)> serve; ///< answers it, or says what is wrong with it
    };

    void ServeModalWidget();

    std::deque<Step> mSteps;
    QTimer mTimer;
};

} // namespace qor
