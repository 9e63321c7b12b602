// The check of the label's text, as a component: the built-in class behind
// "QOR_Validate_TEXTField.Business_Rules".
#pragma once

#include "platform/com/Component.h"

namespace qor {

inline constexpr QLatin1String labelCheckId("QOR_Validate_TEXTField.Business_Rules");

/// An object with the operation "ValidateText": takes a text, answers whether it may be a label.
IDispatch* MakeLabelCheck();

} // namespace qor
