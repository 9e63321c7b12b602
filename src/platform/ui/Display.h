// Whether windows can be shown, found out without the toolkit's application object, which would end the process if they
// cannot.
#pragma once

#include "platform/ui/HostProcess.h"

#include <optional>
#include <QLibrary>
#include <QStringList>

namespace qor {

/// A look at the process, and at the display and the platform plug-in that the environment names. Keep it until the
/// application object has connected: an X server may start anew when its last client leaves.
class Display
{
public:
    Display();
    ~Display();
    Display(const Display&) = delete;
    Display& operator=(const Display&) = delete;

    /// Nothing when the application object can be made; else a sentence that says what is missing.
    const std::optional<QString>& Problem() const { return mProblem; }

private:
    std::optional<QString> FindProblem();
    std::optional<QString> ProblemOfNamed(const QStringList& platforms);
    std::optional<QString> PlatformProblem(const QString& platform);
    std::optional<QString> ProblemOfDefault();
    bool CanConnectX();

    StandardFilesGuard mStandardFiles;
    QLibrary mXcb;
    void* mXConnection = nullptr;
    std::optional<QString> mProblem;
};

} // namespace qor
