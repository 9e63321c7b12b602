// The folder in which a file is built out of sight.
#pragma once

#include "platform/runtime/Text.h"

#include <array>
#include <csignal>
#include <optional>
#include <sys/types.h>

namespace qor {

/// A hidden folder beside the file's future place, which only its owner may enter. It goes with the file when the
/// object goes, and however else the program ends: before a signal ends it, and after a kill, by a process that waits
/// for that. What a crash of the machine leaves is removed by whoever makes the next one there. There can be one at a
/// time.
class BuildFolder
{
public:
    /// Raises RuntimeError when the folder cannot be made.
    explicit BuildFolder(const QString& fileName);
    ~BuildFolder();
    Q_DISABLE_COPY_MOVE(BuildFolder)

    /// Where the file is built: a database of this name may have its logs beside it. Nothing else goes with the folder.
    const QString& BuiltName() const { return mBuiltName; }

private:
    /// The process that waits for the end of this one. Where none can be started it is missed only by a kill.
    class Watcher
    {
    public:
        Watcher();
        ~Watcher();
        Q_DISABLE_COPY_MOVE(Watcher)

    private:
        int mLife = -1; ///< the end of a pipe that closes with this process
        pid_t mProcess = -1;
    };

    /// While it lives, a signal that ends the program takes the folder away first.
    class RemovedBySignal
    {
    public:
        RemovedBySignal();
        ~RemovedBySignal();
        Q_DISABLE_COPY_MOVE(RemovedBySignal)

    private:
        static constexpr std::array signals{SIGINT, SIGTERM, SIGHUP, SIGQUIT};
        std::array<struct sigaction, signals.size()> mBefore{};
    };

    QString mBuiltName;
    std::optional<Watcher> mWatcher;
    std::optional<RemovedBySignal> mRemovedBySignal;
};

} // namespace qor
