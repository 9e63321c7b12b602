// Dates as texts, by the machine's regional settings.
#pragma once

#include "platform/runtime/Text.h"

class QDate;
class QDateTime;

namespace qor {

/// The general date: the short date, a blank, and the time with its seconds.
QString GeneralDateText(const QDateTime& moment);

/// The short date.
QString ShortDateText(const QDate& date);

} // namespace qor
