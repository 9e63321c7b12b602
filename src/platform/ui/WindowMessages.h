// Window messages, as far as list views and list boxes use them: a control with a handle has a procedure that gets its
// messages, and that can be replaced by one that looks at them first.
#pragma once

#include <QtGlobal>

namespace qor {

using WindowHandle = quintptr; ///< 0 is no window
using MessageResult = qintptr;
using WindowProcedure = MessageResult (*)(WindowHandle window, quint32 message, quintptr wParam, qintptr lParam);

inline constexpr int GWL_WNDPROC = -4;

inline constexpr quint32 WM_VSCROLL = 0x0115;      ///< the window scrolled up or down
inline constexpr quint32 WM_PARENTNOTIFY = 0x0210; ///< a button went down in a child, the column headers
inline constexpr quint32 LVM_GETSELECTEDCOUNT = 0x1032;

/// Replaces the procedure of a window (index GWL_WNDPROC) and returns the one that it had; null, changing nothing, when
/// the window or the index is not known.
WindowProcedure SetWindowLongA(WindowHandle window, int index, WindowProcedure procedure);
MessageResult CallWindowProcA(WindowProcedure procedure, WindowHandle window, quint32 message, quintptr wParam,
                              qintptr lParam);
/// Gives a message to the window's procedure and returns its answer; 0 from a window that is not there.
MessageResult SendMessageA(WindowHandle window, quint32 message, quintptr wParam, qintptr lParam);

/// Gives a control a handle and a procedure of its own. Handles belong to the thread that made them.
class MessageTarget
{
public:
    MessageTarget();
    virtual ~MessageTarget();
    MessageTarget(const MessageTarget&) = delete;
    MessageTarget& operator=(const MessageTarget&) = delete;

    WindowHandle Handle() const { return mHandle; }

protected:
    /// The control's own answer to a message; 0 for one that it does not know.
    virtual MessageResult HandleMessage(quint32 message, quintptr wParam, qintptr lParam) = 0;

private:
    friend WindowProcedure SetWindowLongA(WindowHandle, int, WindowProcedure);
    friend MessageResult SendMessageA(WindowHandle, quint32, quintptr, qintptr);
    static MessageResult OwnProcedure(WindowHandle window, quint32 message, quintptr wParam, qintptr lParam);

    WindowHandle mHandle;
    WindowProcedure mProcedure = OwnProcedure;
};

} // namespace qor
