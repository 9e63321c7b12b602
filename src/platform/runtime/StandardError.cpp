#include "platform/runtime/StandardError.h"

#include <cstdio>
#include <QMutex>
#include <QSet>

namespace qor {

void TellOnce(const QString& topic, const QString& sentence)
{
    static QMutex mutex;
    static QSet<QString> told;
    const QMutexLocker locker(&mutex);
    if (told.contains(topic))
        return;
    told.insert(topic);
    std::fprintf(stderr, "QOR_DIR_NODE: %s\n", qUtf8Printable(sentence));
}

} // namespace qor
