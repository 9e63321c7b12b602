#include "platform/ui/Form.h"

#include "platform/runtime/ErrorReport.h"

#include <QAbstractButton>
#include <QCloseEvent>
#include <QScopedValueRollback>
#include <utility>

namespace qor {

Form::Form()
{
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint);
    // Closing the editor must not end a host that has no other window open.
    setAttribute(Qt::WA_QuitOnClose, false);
}

void Form::Load()
{
    if (mLoaded)
        return;
    mLoaded = true;
    Form_Load();
}

void Form::ShowModal()
{
    exec();
}

void Form::Unload()
{
    if (!mLoaded || mUnloading)
        return;
    const QScopedValueRollback unloading(mUnloading, true);
    bool cancel = false;
    Form_Unload(cancel);
    if (cancel)
        return;
    mLoaded = false;
    done(Accepted);
}

void Form::reject()
{
    GuardEvent([this] {
        if (QAbstractButton* button = CancelButton())
            button->click();
        else
            Unload();
    });
}

bool Form::event(QEvent* event)
{
    const bool handled = QDialog::event(event);
    if (event->type() == QEvent::WindowActivate) {
        TellShown();
        GuardEvent([this] { Form_Activate(); });
    }
    return handled;
}

/// Queued, so that a box shown there finds the form as the active window.
void Form::TellShown()
{
    if (std::exchange(mShown, true))
        return;
    QMetaObject::invokeMethod(
        this, [this] { GuardEvent([this] { Form_Shown(); }); }, Qt::QueuedConnection);
}

void Form::closeEvent(QCloseEvent* event)
{
    GuardEvent([this] { Unload(); });
    event->setAccepted(!mLoaded);
}

} // namespace qor
