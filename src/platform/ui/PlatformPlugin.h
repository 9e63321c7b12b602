// The toolkit's plug-in for a platform such as xcb, tried before the toolkit does.
#pragma once

#include <optional>
#include <QString>

namespace qor {

/// Loads the plug-in that the toolkit would take for a platform. Nothing when it is loaded; else a sentence: there is
/// none, or it cannot be loaded.
std::optional<QString> PlatformPluginProblem(const QString& platform);

} // namespace qor
