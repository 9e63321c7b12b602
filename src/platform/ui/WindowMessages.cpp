#include "platform/ui/WindowMessages.h"

#include <QHash>
#include <utility>

namespace qor {

namespace {

thread_local QHash<WindowHandle, MessageTarget*> targets;
thread_local WindowHandle lastHandle = 0; // no handle is used twice, so that a late message reaches nobody

} // namespace

MessageTarget::MessageTarget() : mHandle(++lastHandle)
{
    targets.insert(mHandle, this);
}

MessageTarget::~MessageTarget()
{
    targets.remove(mHandle);
}

MessageResult MessageTarget::OwnProcedure(WindowHandle window, quint32 message, quintptr wParam, qintptr lParam)
{
    MessageTarget* target = targets.value(window);
    return target ? target->HandleMessage(message, wParam, lParam) : 0;
}

WindowProcedure SetWindowLongA(WindowHandle window, int index, WindowProcedure procedure)
{
    MessageTarget* target = targets.value(window);
    if (!target || index != GWL_WNDPROC)
        return nullptr;
    return std::exchange(target->mProcedure, procedure);
}

MessageResult CallWindowProcA(WindowProcedure procedure, WindowHandle window, quint32 message, quintptr wParam,
                              qintptr lParam)
{
    return procedure ? procedure(window, message, wParam, lParam) : 0;
}

MessageResult SendMessageA(WindowHandle window, quint32 message, quintptr wParam, qintptr lParam)
{
    MessageTarget* target = targets.value(window);
    return target ? CallWindowProcA(target->mProcedure, window, message, wParam, lParam) : 0;
}

} // namespace qor
