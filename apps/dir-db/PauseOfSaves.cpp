#include "PauseOfSaves.h"

#include "platform/data/Command.h"
#include "platform/data/Connection.h"
#include "platform/data/SavingLock.h"
#include "platform/runtime/RuntimeError.h"
#include "Progress.h"
#include "Query.h"

#include <fcntl.h>
#include <functional>
#include <QDeadlineTimer>
#include <QFileInfo>
#include <QThread>

namespace qor {

namespace {

void WaitUntil(const std::function<bool()>& isQuiet, const QString& fileName)
{
    const Progress progress("Waiting for the end of a save");
    constexpr int longestSave = 30'000; // ms
    constexpr unsigned long lookEvery = 20;
    for (const QDeadlineTimer deadline(longestSave); !isQuiet(); QThread::msleep(lookEvery)) {
        if (deadline.hasExpired())
            throw RuntimeError(ErrorNumber::Provider, u"The database %1 is being saved by another program. Wait until "
                                                      "that has finished and try again."_s.arg(fileName));
    }
}

} // namespace

PauseOfSaves::PauseOfSaves(const QString& fileName) : mLocked(QFileInfo(fileName).canonicalFilePath() + u"-saving"_s)
{
    if (mLocked.open(QIODevice::ReadOnly | QIODevice::ExistingOnly)) // else nobody has saved yet, or we may not read it
        WaitUntil([this] { return Lock(); }, fileName);
}

/// Locks every byte; closing the file unlocks them.
bool PauseOfSaves::Lock()
{
    struct flock all = {};
    all.l_type = F_RDLCK;
    all.l_whence = SEEK_SET;
    return fcntl(mLocked.handle(), F_OFD_SETLK, &all) == 0;
}

StillReading::StillReading(Connection& connection, const QString& fileName) : mConnection(connection)
{
    if (mConnection.IsShared()) {
        WaitUntil([this] { return IsQuiet(); }, fileName);
        mConnection.StayWithEngine(true); // another session would show another moment
        return;
    }
    const PauseOfSaves pause(fileName);
    Run(u"BEGIN"_s);
    CountOf(mConnection, u"Node_DIR"_s); // the first read fixes the moment
}

StillReading::~StillReading()
{
    End();
    if (mConnection.IsShared())
        mConnection.StayWithEngine(false);
}

/// A server tells who holds locks, and the same query fixes the moment.
bool StillReading::IsQuiet()
{
    Run(u"BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY"_s);
    if (CountOf(mConnection, HeldSavingLocks()) == 0)
        return true;
    End();
    return false;
}

void StillReading::Run(const QString& statement)
{
    Command(mConnection, statement, statement, 0).Execute({});
}

void StillReading::End()
{
    try {
        Run(u"COMMIT"_s);
    } catch (const RuntimeError&) {
        // The transaction ends with the connection.
    }
}

} // namespace qor
