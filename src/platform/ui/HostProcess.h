// What the toolkit needs of the process that it starts in, and ends or hangs without.
#pragma once

#include <optional>
#include <QString>
#include <vector>

namespace qor {

/// Nothing when there are file descriptors enough to open the editor; else a sentence. To be asked at each opening: the
/// toolkit gives up for good on a plug-in that it could not open once.
std::optional<QString> DescriptorProblem();

/// Nothing when an application object can be made in this process, as far as its limits and rights go; else a sentence.
std::optional<QString> ProcessProblem();

/// Keeps standard input, output and error taken where the host has closed them. Otherwise the connection to the display
/// or a file would get one of their numbers, and whatever the process prints would go there.
class StandardFilesGuard
{
public:
    StandardFilesGuard();
    ~StandardFilesGuard();
    StandardFilesGuard(const StandardFilesGuard&) = delete;
    StandardFilesGuard& operator=(const StandardFilesGuard&) = delete;

private:
    std::vector<int> mTaken;
};

} // namespace qor
