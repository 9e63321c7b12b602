#include "Subcommands.h"

#include "Backup.h"
#include "Check.h"
#include "ImportJet.h"
#include "NewDatabase.h"
#include "Output.h"
#include "Sample.h"
#include "Show.h"

#include <algorithm>
#include <array>
#include <QMap>

namespace qor {

namespace {

/// A command line behind its subcommand.
struct Arguments
{
    QStringList files;
    QMap<QString, int> options; ///< with the number that follows, or 1

    bool Has(const QString& option) const { return options.contains(option); }
    int Number(const QString& option, int otherwise) const { return options.value(option, otherwise); }
};

struct Subcommand
{
    const char* name;
    const char* arguments; ///< as the usage shows them: options in brackets, then files, with blanks between
    const char* purpose;
    int (*run)(const Arguments& arguments); ///< returns the exit code
    const char* optionalLastFile = nullptr; ///< the option with which the last file may be left out
};

int RunCreate(const Arguments& arguments)
{
    MakeDatabase(arguments.files[0], [](DataBase&) {});
    PrintLine(u"%1: made, without nodes"_s.arg(arguments.files[0]));
    return success;
}

int RunSample(const Arguments& arguments)
{
    MakeDatabase(arguments.files[0], WriteSample);
    PrintLine(u"%1: made, with the sample in it"_s.arg(arguments.files[0]));
    return success;
}

int RunImportJet(const Arguments& arguments)
{
    const bool clean = ImportJet(arguments.files[0], arguments.files.value(1), arguments.Has(u"--dry-run"_s));
    return clean ? success : withWarnings;
}

int RunBackup(const Arguments& arguments)
{
    BackUpDatabase(arguments.files[0], arguments.files[1]);
    return success;
}

int RunRestore(const Arguments& arguments)
{
    RestoreDatabase(arguments.files[0], arguments.files[1]);
    return success;
}

int RunShow(const Arguments& arguments)
{
    ShowPartition(arguments.files[0], {.config = arguments.Number(u"--config"_s, 1),
                                       .partition = arguments.Number(u"--partition"_s, 1),
                                       .asCsv = arguments.Has(u"--csv"_s),
                                       .withPasswords = arguments.Has(u"--passwords"_s)});
    return success;
}

int RunCheck(const Arguments& arguments)
{
    const QString& fileName = arguments.files[0];
    const CheckResult result = CheckDatabase(fileName);
    if (result.reasons.isEmpty()) {
        PrintLine(u"%1: sound (%2 directory nodes, %3 entries)"_s.arg(fileName, QString::number(result.directoryNodes),
                                                                      QString::number(result.entries)));
        PrintFindings(result.findings);
        return HasPlaces(result.findings) ? withWarnings : success;
    }
    PrintError(u"The database %1 is not sound:"_s.arg(fileName));
    for (const QString& reason : result.reasons)
        PrintError(u"  "_s + reason);
    PrintError(
        u"Restore it from a backup with \"dir-db restore COPY FILE\" or make a new one with \"dir-db create\"."_s);
    return failure;
}

constexpr std::array subcommands{
    Subcommand{"create", "FILE", "make an empty configuration database", RunCreate},
    Subcommand{"sample", "FILE", "make a database with nodes and entries to look at", RunSample},
    Subcommand{"import-jet", "[--dry-run] SOURCE.mdb FILE",
               "make a database from a Jet 4 database, which stays as it is; --dry-run only reports and needs no FILE",
               RunImportJet, "--dry-run"},
    Subcommand{"show", "[--csv] [--passwords] [--config N] [--partition N] FILE",
               "print the directory nodes and entries of a partition (of 1 and 1), with --passwords access codes too",
               RunShow},
    Subcommand{"check", "FILE", "say whether a file is a sound configuration database and what is odd in its entries",
               RunCheck},
    Subcommand{"backup", "FILE COPY", "make a copy of a database, also while editors have it open", RunBackup},
    Subcommand{"restore", "COPY FILE",
               "put what a sound copy holds in the place of FILE, which is kept under another name", RunRestore},
};

QString CallOf(const Subcommand& subcommand)
{
    return u"%1 %2"_s.arg(QString::fromLatin1(subcommand.name), QString::fromLatin1(subcommand.arguments));
}

int PrintHelp()
{
    PrintLine(u"Usage: dir-db COMMAND [OPTIONS] FILE"_s);
    PrintLine({});
    PrintLine(u"Makes, imports, shows and checks configuration databases, backs them up and restores them."_s);
    for (const Subcommand& subcommand : subcommands) {
        PrintLine({});
        PrintLine(u"  "_s + CallOf(subcommand));
        PrintLine(u"      "_s + QString::fromLatin1(subcommand.purpose));
    }
    for (const char* const line : {"", "  help", "      show this text", "",
                                   "A file that exists is never overwritten; what restore replaces is kept.", "",
                                   "Exit codes:", "  0  all went well",
                                   "  1  it failed and nothing was made or replaced, or check found the file unsound",
                                   "  2  the command line is wrong",
                                   "  3  import-jet made the database, or check found it sound, but with warnings"})
        PrintLine(QString::fromLatin1(line));
    return success;
}

int RefuseUsage(const QString& sentence)
{
    PrintError(sentence);
    for (const Subcommand& subcommand : subcommands)
        PrintError(u"Usage: dir-db "_s + CallOf(subcommand));
    PrintError(u"\"dir-db help\" tells more."_s);
    return wrongUsage;
}

/// Takes the option at the front of the rest, with its number, out of it; returns what is wrong with it, or nothing.
QString TakeOption(const Subcommand& subcommand, QStringList& rest, Arguments& arguments)
{
    const QString option = rest.takeFirst();
    const QString usage = QString::fromLatin1(subcommand.arguments);
    int number = 1;
    if (usage.contains(u"[%1 N]"_s.arg(option))) {
        bool isNumber = false;
        const QString text = rest.isEmpty() ? QString() : rest.takeFirst();
        number = text.toInt(&isNumber);
        if (!isNumber)
            return u"The option \"%1\" needs a number, not \"%2\"."_s.arg(option, text);
    } else if (!usage.contains(u"[%1]"_s.arg(option)) || option.contains(u' ')) {
        return u"There is no option \"%1\". Write \"./%1\" for a file of that name."_s.arg(option);
    }
    arguments.options.insert(option, number);
    return {};
}

/// What is wrong with the number and the names of the files, or nothing.
QString FilesFault(const Subcommand& subcommand, const Arguments& arguments)
{
    const QStringList words = QString::fromLatin1(subcommand.arguments).split(u' ');
    const qsizetype wanted = std::ranges::count_if(
        words, [](const QString& word) { return !word.startsWith(u'[') && !word.endsWith(u']'); });
    const bool mayLackOne = arguments.Has(QString::fromLatin1(subcommand.optionalLastFile));
    const qsizetype given = arguments.files.size();
    if (given != wanted && !(mayLackOne && given == wanted - 1))
        return u"The command \"%1\" takes %2, not %3 files."_s.arg(CallOf(subcommand)).arg(wanted).arg(given);
    return arguments.files.contains(u""_s) ? u"A file name must not be empty."_s : QString();
}

/// Reads what stands behind the subcommand; returns what is wrong with it, or nothing.
QString ReadArguments(const Subcommand& subcommand, QStringList rest, Arguments& arguments)
{
    while (!rest.isEmpty()) {
        if (!rest.first().startsWith(u'-')) {
            arguments.files << rest.takeFirst();
            continue;
        }
        QString fault = TakeOption(subcommand, rest, arguments);
        if (!fault.isEmpty())
            return fault;
    }
    return FilesFault(subcommand, arguments);
}

} // namespace

int RunCommandLine(const QStringList& arguments)
{
    if (arguments.isEmpty())
        return RefuseUsage(u"A command is missing."_s);
    const QString& name = arguments[0];
    if (name == u"help" || arguments.contains(u"--help") || arguments.contains(u"-h"))
        return PrintHelp();
    const auto* const subcommand = std::ranges::find_if(
        subcommands, [&](const Subcommand& candidate) { return name == QLatin1String(candidate.name); });
    if (subcommand == subcommands.end())
        return RefuseUsage(u"There is no command \"%1\"."_s.arg(name));
    Arguments read;
    const QString fault = ReadArguments(*subcommand, arguments.mid(1), read);
    return fault.isEmpty() ? subcommand->run(read) : RefuseUsage(fault);
}

} // namespace qor
