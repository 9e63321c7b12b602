// Work in a process of its own, for code that a damaged input can crash, hang or make greedy.
#pragma once

#include <functional>
#include <QByteArray>

namespace qor {

struct ContainedLimits
{
    int processorSeconds;
    qint64 bytes; ///< of memory beyond what this process has, and of output
};

enum class Ending { Done, TookTooLong, Failed };

struct ContainedResult
{
    Ending ending = Ending::Failed;
    QByteArray output;   ///< what the work returned
    QByteArray messages; ///< the first of what it wrote on standard output and standard error
};

/// Runs the work in a copy of this process and waits for it. The copy does not outlive this process. Raises
/// RuntimeError when there is no new process.
ContainedResult RunContained(const std::function<QByteArray()>& work, ContainedLimits limits);

} // namespace qor
