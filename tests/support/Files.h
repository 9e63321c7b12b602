// Files that a test makes and looks at.
#pragma once

#include <QDir>
#include <QFile>

namespace qor {

inline QByteArray ReadFile(const QString& fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline void WriteFile(const QString& fileName, const QByteArray& bytes)
{
    // Under some umasks the group may write what is made, and such files are not trusted.
    constexpr auto mode = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther;
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly, mode) || file.write(bytes) != bytes.size() || !file.flush())
        qFatal("cannot write a test file");
}

inline QStringList EntriesOf(const QString& folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

} // namespace qor
