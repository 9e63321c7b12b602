#include "platform/ui/PlatformPlugin.h"

#include <algorithm>
#include <QCoreApplication>
#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <QPluginLoader>

namespace qor {

using namespace Qt::StringLiterals;

namespace {

/// The files in the folders for platform plug-ins, in the order in which the toolkit looks at them.
QStringList PluginFiles()
{
    QStringList folders;
    for (const QString& path : QCoreApplication::libraryPaths())
        folders << path + u"/platforms"_s;
    if (const QString extra = qEnvironmentVariable("QT_QPA_PLATFORM_PLUGIN_PATH"); !extra.isEmpty())
        folders << extra;
    QStringList files;
    for (const QDir folder : std::as_const(folders)) {
        for (const QString& name : folder.entryList(QDir::Files))
            files << folder.absoluteFilePath(name);
    }
    return files;
}

bool Serves(const QPluginLoader& plugin, const QString& platform)
{
    const QJsonArray keys = plugin.metaData()[u"MetaData"_s][u"Keys"_s].toArray();
    return std::ranges::any_of(
        keys, [&](const QJsonValue& key) { return key.toString().compare(platform, Qt::CaseInsensitive) == 0; });
}

std::optional<QString> LoadProblem(QPluginLoader& plugin)
{
    if (plugin.load())
        return std::nullopt;
    return u"the toolkit's platform plug-in cannot be loaded; install what is missing (%1)"_s.arg(plugin.errorString());
}

} // namespace

std::optional<QString> PlatformPluginProblem(const QString& platform)
{
    QString problem = u"the toolkit's platform plug-in \"%1\" is not installed"_s.arg(platform);
    for (const QString& fileName : PluginFiles()) {
        QPluginLoader plugin(fileName);
        if (Serves(plugin, platform)) // the toolkit tries no other
            return LoadProblem(plugin);
        if (fileName.endsWith(u"/libq%1.so"_s.arg(platform))) // the toolkit passes over it
            problem = u"the toolkit's platform plug-in %1 is damaged or unreadable; install it again"_s.arg(fileName);
    }
    return problem;
}

} // namespace qor
