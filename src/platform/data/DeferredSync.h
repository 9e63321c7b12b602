// Many commits, one sync.
#pragma once

#include <memory>

namespace qor {

class Connection;
class EngineSync;

/// While it lives, a database in write-ahead mode commits without waiting for the disk; Finish then waits once for all
/// commits. The log is one file, so a power loss in between takes back the last commits at most. A database in another
/// mode still waits after each commit, and at the end once more for its folder.
class DeferredSync
{
public:
    /// Opens the connection if it is not open; raises RuntimeError when it cannot, and when the file that was opened is
    /// no longer there. Nothing is written in either case.
    explicit DeferredSync(Connection& connection);
    /// Finishes, and ignores a failure.
    ~DeferredSync();
    DeferredSync(const DeferredSync&) = delete;
    DeferredSync& operator=(const DeferredSync&) = delete;

    /// What was committed so far is on disk when it returns; from here on each commit waits again. Raises
    /// RuntimeError when the disk refuses, and when the file went away in the meantime.
    void Finish();

private:
    std::unique_ptr<EngineSync> mSync; ///< until it has finished
};

} // namespace qor
