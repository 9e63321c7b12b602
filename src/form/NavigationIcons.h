// The pictures of the four navigation buttons, drawn in the palette's text colour at any scale.
#pragma once

#include <QIcon>

namespace qor {

enum class NavigationIcon { First, Previous, Next, Last };

QIcon MakeNavigationIcon(NavigationIcon icon);

} // namespace qor
