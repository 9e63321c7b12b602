// Files that a test makes and looks at.
#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <sys/stat.h>

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

/// The place of a file in a folder of its own.
class FileTest : public QObject
{
protected:
    std::unique_ptr<QTemporaryDir> mFolder;
    QString mFile;

    void StartAnew()
    {
        mFolder = std::make_unique<QTemporaryDir>();
        mFile = Path(QStringLiteral("file"));
    }
    /// An absolute name stays as it is.
    QString Path(const QString& name) const { return QDir(mFolder->path()).filePath(name); }
    void SetModes(int file, int folder) const
    {
        chmod(QFile::encodeName(mFile), static_cast<mode_t>(file));
        chmod(QFile::encodeName(mFolder->path()), static_cast<mode_t>(folder));
    }
};

} // namespace qor
