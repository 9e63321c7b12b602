#include "StoredNode.h"

#include "NewFile.h"
#include "platform/data/DatabaseFile.h"
#include "platform/runtime/RuntimeError.h"
#include "rules/NodeLoading.h"
#include "store/DataBase.h"

#include <QDir>
#include <QFileInfo>

namespace qor {

namespace {

QString NameOf(const Partition& partition)
{
    return u"configuration %1, partition %2"_s.arg(partition.config).arg(partition.number);
}

} // namespace

QString NameOf(const NodeIdentity& identity)
{
    return u"DIR %1 in %2"_s.arg(identity.number).arg(NameOf(identity.partition));
}

qint16 RequireHighestMessageNode(DataBase& dataBase, const Partition& partition)
{
    const auto highest = HighestMessageNode(dataBase, partition);
    if (!highest) {
        throw RuntimeError(ErrorNumber::Provider,
                           u"There is no maximum number of message nodes for %1, and the editor opens nothing there. "
                           "Set it in the partition's settings."_s.arg(NameOf(partition)));
    }
    return *highest;
}

DirectoryNode RequireNode(DataBase& dataBase, const NodeIdentity& identity, int highestMessageNode)
{
    auto node = LoadNode(dataBase, identity, highestMessageNode);
    if (!node) {
        throw RuntimeError(
            ErrorNumber::Provider,
            u"There is no %1. \"dir-db show\" prints the directory nodes of a partition."_s.arg(NameOf(identity)));
    }
    return std::move(*node);
}

QString MiscFolderFor(const QString& databaseName)
{
    const QString folder = QFileInfo(QFileInfo(databaseName).canonicalFilePath()).path();
    return QDir::cleanPath(folder + u"/../Misc"_s) + u'/';
}

void WriteNewFile(const QString& fileName, const QByteArray& contents)
{
    NewFile made(fileName);
    QFile file(made.BuiltName());
    if (!file.open(QIODevice::WriteOnly, QFileDevice::ReadOwner | QFileDevice::WriteOwner) ||
        file.write(contents) != contents.size() || !file.flush())
        ThrowFileNotMade(fileName, file.errorString());
    file.close();
    made.Appear();
}

} // namespace qor
