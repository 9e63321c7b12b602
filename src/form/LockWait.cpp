#include "form/LockWait.h"

#include "platform/runtime/Text.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QProgressDialog>

namespace qor {

namespace {

constexpr int timeWithoutDialog = 1000; // ms
constexpr int timeBetweenEvents = 100;  // ms: how often the dialog answers the mouse

void SetUp(QProgressDialog& dialog)
{
    dialog.setObjectName(u"dlgLockWait"_s);
    dialog.setWindowTitle(u"DIR Editor"_s);
    dialog.setWindowModality(Qt::ApplicationModal);
    dialog.setAttribute(Qt::WA_QuitOnClose, false);
    dialog.setRange(0, 0); // busy
    QObject::connect(&dialog, &QDialog::rejected, &dialog, &QProgressDialog::cancel);
    dialog.setMinimumDuration(0);
    dialog.show();
}

} // namespace

WaitOutcome WaitFor(const std::function<bool(int milliseconds)>& tryFor, const QString& text, int patience)
{
    QElapsedTimer time;
    time.start();
    if (tryFor(timeWithoutDialog))
        return WaitOutcome::Succeeded;
    QProgressDialog dialog(text, u"Cancel"_s, 0, 0, QApplication::activeWindow());
    SetUp(dialog);
    while (!time.hasExpired(patience)) {
        QCoreApplication::processEvents();
        if (dialog.wasCanceled())
            return WaitOutcome::Cancelled;
        if (tryFor(timeBetweenEvents))
            return WaitOutcome::Succeeded;
    }
    return WaitOutcome::TimedOut;
}

} // namespace qor
