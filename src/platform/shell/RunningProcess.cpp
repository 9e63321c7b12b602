#include "platform/shell/RunningProcess.h"

#include <QFile>
#include <QFileInfo>
#include <unistd.h>

namespace qor {

namespace {

QByteArray ContentsOf(const QString& kernelFile)
{
    QFile file(kernelFile);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Empty for a process that has ended but is still in the table. The fields are counted after the second one, the
/// program's name in parentheses, which may itself contain blanks and parentheses.
QByteArray StartTicks(const QByteArray& status)
{
    constexpr int stateField = 0;
    constexpr int startField = 19;
    const QByteArrayList fields = status.mid(status.lastIndexOf(") ") + 2).split(' ');
    const bool hasEnded = fields.value(stateField) == "Z" || fields.value(stateField) == "X";
    return hasEnded ? QByteArray() : fields.value(startField);
}

} // namespace

RunningProcess OwnProcess()
{
    return ProcessNumbered(getpid());
}

RunningProcess ProcessNumbered(qint64 number)
{
    const QByteArray ticks = StartTicks(ContentsOf(u"/proc/%1/stat"_s.arg(number)));
    if (ticks.isEmpty())
        return {number, {}};
    const QByteArray boot = ContentsOf(u"/proc/sys/kernel/random/boot_id"_s).trimmed();
    return {number, QString::fromLatin1(boot + ':' + ticks)};
}

QString OwnUserName()
{
    return QFileInfo(u"/proc/self"_s).owner();
}

} // namespace qor
