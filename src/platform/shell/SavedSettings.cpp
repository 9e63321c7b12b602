#include "platform/shell/SavedSettings.h"

#include <QSettings>

namespace qor {

QString GetSetting(const QString& application, const QString& section, const QString& key)
{
    const QSettings settings(QSettings::IniFormat, QSettings::UserScope, u"Quorvanta"_s, application);
    return settings.value(section + u'/' + key).toString();
}

} // namespace qor
