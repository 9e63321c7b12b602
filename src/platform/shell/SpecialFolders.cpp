#include "platform/shell/SpecialFolders.h"

#include <array>
#include <QDir>
#include <QtGlobal>

namespace qor {

namespace {

struct ShellFolder
{
    int csidl;
    const char* variable;
    const char* path;
};

constexpr std::array shellFolders{
    ShellFolder{CSIDL_COMMON_APPDATA, "KELDAR_COMMON_APPDATA", "/var/lib"},
    ShellFolder{CSIDL_COMMON_DOCUMENTS, "KELDAR_COMMON_DOCUMENTS", "/srv"},
};

} // namespace

QString ShellFolderPath(int csidl)
{
    for (const ShellFolder& folder : shellFolders) {
        if (folder.csidl != csidl)
            continue;
        const QString named = qEnvironmentVariable(folder.variable);
        return QDir::cleanPath(named.isEmpty() ? QString::fromLatin1(folder.path) : named);
    }
    return {};
}

} // namespace qor
