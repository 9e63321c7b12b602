#include "Subcommands.h"

#include "Check.h"
#include "NewDatabase.h"
#include "Sample.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace qor {

namespace {

struct Subcommand
{
    const char* name;
    const char* arguments; ///< their names as the usage shows them, with blanks between
    const char* purpose;
    int (*run)(const QStringList& arguments); ///< returns the exit code
};

void PrintLine(const QString& line)
{
    std::fputs(line.toLocal8Bit() + '\n', stdout);
}

int RunCreate(const QStringList& arguments)
{
    MakeDatabase(arguments[0], [](Connection&) {});
    PrintLine(u"%1: made, without nodes"_s.arg(arguments[0]));
    return success;
}

int RunSample(const QStringList& arguments)
{
    MakeDatabase(arguments[0], WriteSample);
    PrintLine(u"%1: made, with the sample in it"_s.arg(arguments[0]));
    return success;
}

int RunCheck(const QStringList& arguments)
{
    const QString& fileName = arguments[0];
    const CheckResult result = CheckDatabase(fileName);
    if (result.reasons.isEmpty()) {
        PrintLine(u"%1: sound (%2 directory nodes, %3 entries)"_s.arg(fileName, QString::number(result.directoryNodes),
                                                                      QString::number(result.entries)));
        return success;
    }
    PrintError(u"The database %1 is not sound:"_s.arg(fileName));
    for (const QString& reason : result.reasons)
        PrintError(u"  "_s + reason);
    PrintError(u"Restore it from a backup or make a new one with \"dir-db create\"."_s);
    return failure;
}

constexpr std::array subcommands{
    Subcommand{"create", "FILE", "make an empty configuration database", RunCreate},
    Subcommand{"sample", "FILE", "make a database with nodes and entries to look at", RunSample},
    Subcommand{"check", "FILE", "say whether a file is a sound configuration database", RunCheck},
};

QString CallOf(const Subcommand& subcommand)
{
    return u"%1 %2"_s.arg(QString::fromLatin1(subcommand.name), QString::fromLatin1(subcommand.arguments));
}

int PrintHelp()
{
    QString text = u"Usage: dir-db COMMAND FILE\n\nMakes and checks configuration databases.\n\n"_s;
    for (const Subcommand& subcommand : subcommands)
        text += u"  %1%2\n"_s.arg(CallOf(subcommand), -24).arg(QString::fromLatin1(subcommand.purpose));
    text += u"  %1show this text\n\nA file that exists is never overwritten. The exit code is 0 when all went "
            "well, 1 when it did not,\n2 when the command line is wrong."_s.arg(u"help"_s, -24);
    PrintLine(text);
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

/// What is wrong with the arguments of a subcommand, or nothing.
QString ArgumentFault(const Subcommand& subcommand, const QStringList& arguments)
{
    const qsizetype wanted = QString::fromLatin1(subcommand.arguments).split(u' ').size();
    if (arguments.size() != wanted)
        return u"The command \"%1\" takes %2, not %3 arguments."_s.arg(CallOf(subcommand))
            .arg(wanted)
            .arg(arguments.size());
    for (const QString& argument : arguments) {
        if (argument.isEmpty())
            return u"A file name must not be empty."_s;
        if (argument.startsWith(u'-'))
            return u"There is no option \"%1\". Write \"./%1\" for a file of that name."_s.arg(argument);
    }
    return {};
}

} // namespace

void PrintError(const QString& sentence)
{
    std::fputs(sentence.toLocal8Bit() + '\n', stderr);
}

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
    const QStringList operands = arguments.mid(1);
    const QString fault = ArgumentFault(*subcommand, operands);
    return fault.isEmpty() ? subcommand->run(operands) : RefuseUsage(fault);
}

} // namespace qor
