// dir-db: makes, imports, shows, checks, backs up and restores configuration databases.

#include "Output.h"
#include "platform/runtime/ErrorReport.h"
#include "Subcommands.h"

#include <csignal>
#include <QCoreApplication>

int main(int argc, char** argv)
{
    // Beyond a size limit a write shall fail like one on a full disk, so that the unfinished file is removed.
    std::signal(SIGXFSZ, SIG_IGN);
    try {
        const QCoreApplication application(argc, argv);
        const int exitCode = qor::RunCommandLine(qor::Subcommands(), argc, argv);
        qor::FinishOutput();
        return exitCode;
    } catch (...) {
        qor::PrintError(qor::CurrentRuntimeError().Description());
        return qor::failure;
    }
}
