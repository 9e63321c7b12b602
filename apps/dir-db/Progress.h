// What takes long, told while it lasts.
#pragma once

#include <QtGlobal>

namespace qor {

/// While it lives, what goes on stands on standard error, from the first second on and with the seconds so far, if that
/// is a terminal in whose foreground the program runs; afterwards nothing is left of it. One may be made while another
/// one lives, and is then what goes on. Nothing is to be printed meanwhile.
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
