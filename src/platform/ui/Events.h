// Connects an event of a control to the handler that serves it.
#pragma once

#include "platform/runtime/ErrorReport.h"

#include <functional>
#include <QObject>
#include <type_traits>

namespace qor {

/// Calls handler->*procedure, with the arguments if it takes them.
template <typename Handler, typename Procedure, typename... Arguments>
void Deliver(Handler* handler, Procedure procedure, Arguments... arguments)
{
    if constexpr (std::is_invocable_v<Procedure, Handler*, Arguments...>)
        std::invoke(procedure, handler, arguments...);
    else
        std::invoke(procedure, handler);
}

/// Calls handler->*procedure whenever sender raises the event, for as long as the sender lives; the handler must live
/// as long. An error that the procedure did not report itself ends in the default run-time error box.
///
/// given: what the procedure takes before the event's own arguments.
template <typename Sender, typename Signal, typename Handler, typename Procedure, typename... Given>
void OnEvent(const Sender* sender, Signal signal, Handler* handler, Procedure procedure, Given... given)
{
    QObject::connect(sender, signal, sender, [handler, procedure, given...](auto... arguments) {
        GuardEvent([&] { Deliver(handler, procedure, given..., arguments...); });
    });
}

} // namespace qor
