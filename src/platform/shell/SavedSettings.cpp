#include "platform/shell/SavedSettings.h"

#include <QSettings>

namespace qor {

namespace {

QSettings SettingsOf(const QString& application)
{
    return {QSettings::IniFormat, QSettings::UserScope, u"Quorvanta"_s, application};
}

} // namespace

QString GetSetting(const QString& application, const QString& section, const QString& key)
{
    return SettingsOf(application).value(section + u'/' + key).toString();
}

void SaveSetting(const QString& application, const QString& section, const QString& key, const QString& text)
{
    SettingsOf(application).setValue(section + u'/' + key, text);
}

} // namespace qor
