// What the handlers of typed fields share.
#pragma once

#include <QChar>

namespace qor {

class ComboBox;
class TextBox;

/// Removes what is not admitted from a field; the caret stays after the last admitted character before it. True when
/// there is a text and all of it was admitted already. Removing something raises the field's Change with the clean
/// text.
bool FilterField(TextBox& field, bool (*admits)(QChar));

/// The number typed in a combo whose list holds numbers in ascending order, as TypedNumber finds it between the first
/// and the last of them. Raises RuntimeError for an empty list.
int NumberTypedIn(const ComboBox& combo);

} // namespace qor
