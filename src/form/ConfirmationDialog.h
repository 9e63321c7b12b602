// The question about a missing message node, as a component with four answers.
#pragma once

#include "platform/com/Component.h"

namespace qor {

inline constexpr QLatin1String confirmationDialogId("QOR_Confirmation.Dialog");

/// An object with the operation "Ask": takes the question and the title, answers with a ConfirmationAnswer.
IDispatch* MakeConfirmationDialog();

} // namespace qor
