// What the handlers of typed fields share: the filter of admitted characters and the walk over typed digits.
#pragma once

#include <QChar>
#include <QStringView>

namespace qor {

class ComboBox;
class TextBox;

/// Takes out of a field what is not admitted; the caret stays behind the last admitted character before it.
/// True when there is a text and all of it was admitted already. Taking something out raises the field's
/// Change with the clean text.
bool FilterField(TextBox& field, bool (*admits)(QChar));

/// The number typed in a combo whose list holds numbers in ascending order: digit by digit, ended by the
/// first character that is no digit or that takes the number out of the list's range. 0 when not even the
/// first digit stays. Raises RuntimeError for an empty list.
int WalkTypedNumber(const ComboBox& combo);

} // namespace qor
