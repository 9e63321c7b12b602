// Shows on the terminal what takes long.
#pragma once

#include <QtGlobal>

namespace qor {

/// While it lives, standard error shows what is going on, and for how many seconds so far, if it is a terminal and the
/// program runs in its foreground. The line appears after a second and is erased at the end. While another one lives,
/// its text is shown instead. Print nothing meanwhile.
class Progress
{
public:
    /// what: "Copying the database", a literal
    explicit Progress(const char* what);
    ~Progress();
    Q_DISABLE_COPY_MOVE(Progress)

private:
    const char* mBefore;
};

} // namespace qor
