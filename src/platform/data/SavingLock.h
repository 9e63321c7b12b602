// One save at a time.
#pragma once

#include "platform/runtime/Text.h"

#include <memory>

namespace qor {

class Connection;
class EngineLock;

/// What stands behind FROM for the locks of this kind that sessions hold on a server's database.
QString HeldSavingLocks();

/// While it lives, no other program and no other connection holds the lock of the same section of the same database.
/// It only keeps out those who ask for it, and goes with the process.
class SavingLock
{
public:
    /// section: what is saved, as a number from 0 up that all programs make in the same way. Opens the connection if it
    /// is not open. Waits as long as the connection waits for locks, then raises RuntimeError (DatabaseLocked). Also
    /// raised: what opening raises, and that the file that was opened is no longer there. Where the database lies on a
    /// place that has no such locks, there is none, and standard error gets a sentence, once in a process.
    SavingLock(Connection& connection, qint64 section);
    ~SavingLock();
    SavingLock(const SavingLock&) = delete;
    SavingLock& operator=(const SavingLock&) = delete;

private:
    std::unique_ptr<EngineLock> mHeld;
};

} // namespace qor
