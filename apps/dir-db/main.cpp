// dir-db: makes, imports, shows, checks, backs up and restores configuration databases.

#include "Output.h"
#include "platform/runtime/ErrorReport.h"
#include "Subcommands.h"

#include <csignal>
#include <QCoreApplication>

int main(int argc, char** argv)
{
    // A write beyond a size limit then fails as on a full disk, instead of ending the program with an unfinished file.
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
