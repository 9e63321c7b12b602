// The question about a missing message node, as a component with four answers.
#pragma once

#include "platform/com/Component.h"

namespace qor {

/// The answers of the component's operation "Ask", which takes the question and the title.
enum class ConfirmationAnswer : int {
    Closed = 0,
    Yes = 2,
    No = 3, ///< any value that is none of the others counts as No
    YesToAll = 4,
    Stop = 5,
};

inline constexpr QLatin1String confirmationDialogId("QOR_Confirmation.Dialog");

IDispatch* MakeConfirmationDialog();

} // namespace qor
