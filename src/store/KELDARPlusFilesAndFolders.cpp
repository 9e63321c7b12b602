#include "store/KELDARPlusFilesAndFolders.h"

#include "platform/data/Connection.h"
#include "platform/runtime/RuntimeError.h"
#include "platform/shell/SpecialFolders.h"

#include <QDir>
#include <QFileInfo>
#include <QtEndian>

namespace qor {

namespace {

constexpr QLatin1String companyFolder("Quorvanta");
constexpr QLatin1String productFolder("KELDAR+");
constexpr QLatin1String shellFoldersKey("SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders");

QString WithSeparator(const QString& path)
{
    return path + QDir::separator();
}

QString ProductFolderBelow(const QString& folder)
{
    return WithSeparator(WithSeparator(WithSeparator(folder) + companyFolder) + productFolder);
}

QString ProductFolder(int csidl, QString (*fromRegistry)())
{
    const QString path = ProductFolderBelow(GetSpecialFolderPath(csidl));
    return QFileInfo(path).isDir() ? path : ProductFolderBelow(fromRegistry());
}

QString ShellFolderFromRegistry(const QString& valueName)
{
    return RegGetValue(RegistryRoot::LocalMachine, QString(shellFoldersKey), valueName, QString()).toString();
}

/// The text without that many terminating zeros.
QString TextWithout(const QByteArray& data, qsizetype zeros)
{
    return QString::fromUtf8(data.first(qMax<qsizetype>(0, data.size() - zeros)));
}

qint32 FirstInteger(const QByteArray& data)
{
    QByteArray four = data.first(qMin<qsizetype>(4, data.size()));
    four.append(4 - four.size(), '\0');
    return qFromLittleEndian<qint32>(four.constData());
}

} // namespace

QString GetSpecialFolderPath(int csidl)
{
    return ShellFolderPath(csidl);
}

QVariant RegGetValue(RegistryRoot root, const QString& keyPath, const QString& valueName, const QVariant& defaultValue)
{
    const auto value = Registry().Query(root, keyPath, valueName);
    if (!value)
        return defaultValue;
    switch (static_cast<RegistryType>(value->type)) {
    case RegistryType::String:
    case RegistryType::ExpandString:
        return TextWithout(value->data, 1);
    case RegistryType::Binary:
        return value->data;
    case RegistryType::DWord:
        return FirstInteger(value->data);
    case RegistryType::MultiString:
        return TextWithout(value->data, 2);
    }
    throw RuntimeError(ErrorNumber::UnsupportedValueType, u"Unsupported value type"_s);
}

QString GetCommonDocumentsFromRegistry()
{
    return ShellFolderFromRegistry(u"Common Documents"_s);
}

QString GetCommonAppDataFromRegistry()
{
    return ShellFolderFromRegistry(u"Common AppData"_s);
}

QString GetProductAppDataFolder()
{
    return ProductFolder(CSIDL_COMMON_APPDATA, GetCommonAppDataFromRegistry);
}

QString GetProductDocumentsFolder()
{
    return ProductFolder(CSIDL_COMMON_DOCUMENTS, GetCommonDocumentsFromRegistry);
}

QString GetConfigsFolder(const QString& name)
{
    const QString documents = GetProductDocumentsFolder();
    const QString parent = name.isEmpty() ? documents : WithSeparator(documents + name);
    return WithSeparator(parent + u"Configs"_s);
}

QString GetDatabaseFolder()
{
    return WithSeparator(GetProductAppDataFolder() + u"Database"_s);
}

QString GetMiscFolder()
{
    return WithSeparator(GetProductAppDataFolder() + u"Misc"_s);
}

QString GetConnectionString()
{
    return ConnectionStringFor(GetDatabaseFolder() + u"NewDB.mdb"_s);
}

} // namespace qor
