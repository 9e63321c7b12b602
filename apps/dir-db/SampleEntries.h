// The people in the sample's directories: the same in every run.
#pragma once

#include "platform/runtime/Text.h"

#include <span>

namespace qor {

struct SampleEntry
{
    QString lastName; ///< a null text stands for Null, here and below
    QString firstName;
    QString extension;
    QString namePrompt;
    QString password;
};

/// The entry at a 0-based position of a directory whose prompts run from 1 to `lastPrompt`. No two of the
/// first 500 have the same name or extension.
SampleEntry OrdinaryEntry(int position, int lastPrompt);

/// Entries with a missing, an empty, an extreme and an out-of-range value in every column that has a default.
int OddEntryCount();
SampleEntry OddEntry(int position);

} // namespace qor
