// Many commits, one sync.
#pragma once

namespace qor {

class Connection;

/// While it lives, a database in write-ahead mode writes its commits without waiting for the disk after each;
/// Finish then waits once, for all of them. The log is one file, so a power loss in between takes back the
/// last commits at most. A database in another mode goes on waiting after each commit.
class DeferredSync
{
public:
    /// Opens the connection if it is not open; raises RuntimeError when it cannot.
    explicit DeferredSync(Connection& connection);
    /// Finishes; a failure of that is not told.
    ~DeferredSync();
    DeferredSync(const DeferredSync&) = delete;
    DeferredSync& operator=(const DeferredSync&) = delete;

    /// What was committed so far is on disk when it returns; from here on each commit waits again. Raises
    /// RuntimeError when the disk refuses.
    void Finish();

private:
    Connection& mConnection;
    bool mDeferred = false;
};

} // namespace qor
