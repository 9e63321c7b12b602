// The size that the form was last used at, kept with the user's settings.
#pragma once

#include <QSize>

namespace qor {

/// Empty when none is saved.
QSize SavedFormSize();
void SaveFormSize(const QSize& size);

} // namespace qor
