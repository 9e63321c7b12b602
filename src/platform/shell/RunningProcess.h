// Tells whether the process that wrote something still runs.
#pragma once

#include "platform/runtime/Text.h"

namespace qor {

/// A process. Its number alone may belong to another one by now.
struct RunningProcess
{
    qint64 number = 0;
    QString start; ///< the boot of the machine, and when after it the process began

    bool operator==(const RunningProcess&) const = default;
};

RunningProcess OwnProcess();
/// The process that has this number now; without a start when there is none, or when it has ended.
RunningProcess ProcessNumbered(qint64 number);

/// The name of the user that this process acts for.
QString OwnUserName();

} // namespace qor
