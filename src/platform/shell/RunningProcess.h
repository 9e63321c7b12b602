// Processes that wrote something, and whether they still run.
#pragma once

#include "platform/runtime/Text.h"

namespace qor {

/// A process; its number alone may belong to another one by now.
struct RunningProcess
{
    qint64 number = 0;
    QString start; ///< which boot of the machine, and when in it the process began

    bool operator==(const RunningProcess&) const = default;
};

RunningProcess OwnProcess();
/// The process that has this number now; without a start where none has, or one that has ended.
RunningProcess ProcessNumbered(qint64 number);

/// The name of the user whom this process acts for.
QString OwnUserName();

} // namespace qor
