// Whether a display can be used, found out without the toolkit, which would end the process if it cannot.
#pragma once

#include <optional>
#include <QLibrary>
#include <QString>

namespace qor {

/// A look at the display that the environment names. Keep it until the application object has connected: an X server
/// may start anew when its last client leaves.
class Display
{
public:
    Display();
    ~Display();
    Display(const Display&) = delete;
    Display& operator=(const Display&) = delete;

    /// Nothing when the display can be used; else a sentence that says what is missing.
    const std::optional<QString>& Problem() const { return mProblem; }

private:
    std::optional<QString> FindProblem();
    std::optional<QString> NamedPlatformProblem(const QString& platform);
    bool CanConnectX();

    QLibrary mXcb;
    void* mXConnection = nullptr;
    std::optional<QString> mProblem;
};

} // namespace qor
