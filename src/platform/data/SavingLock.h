// One save at a time.
#pragma once

#include "platform/runtime/Text.h"

#include <memory>

namespace qor {

class Connection;
class EngineLock;

/// What to select FROM to see the locks of this kind that sessions hold on a server's database.
QString HeldSavingLocks();

/// While it lives, no other program and no other connection holds the lock of the same section of the same database. It
/// keeps out only those who ask for it, and ends with the process.
class SavingLock
{
public:
    /// section: what is saved, as a number from 0 up that all programs compute alike. Opens the connection if it is not
    /// open. Waits as long as the connection waits for locks, then raises RuntimeError (DatabaseLocked). Raises also
    /// what opening raises, and an error when the opened file is no longer there. Where the file system has no such
    /// locks, it does without one and says so on standard error, once per process.
    SavingLock(Connection& connection, qint64 section);
    ~SavingLock();
    SavingLock(const SavingLock&) = delete;
    SavingLock& operator=(const SavingLock&) = delete;

private:
    std::unique_ptr<EngineLock> mHeld;
};

} // namespace qor
