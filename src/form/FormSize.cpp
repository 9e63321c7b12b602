#include "form/FormSize.h"

#include "platform/shell/SavedSettings.h"

namespace qor {

namespace {

const QString application = u"KELDAR+"_s;
const QString section = u"DIREditor"_s;
const QString key = u"FormSize"_s;

} // namespace

QSize SavedFormSize()
{
    const QString saved = GetSetting(application, section, key);
    return {saved.section(u'x', 0, 0).toInt(), saved.section(u'x', 1).toInt()};
}

void SaveFormSize(const QSize& size)
{
    SaveSetting(application, section, key, u"%1x%2"_s.arg(size.width()).arg(size.height()));
}

} // namespace qor
