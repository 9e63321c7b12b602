#include "CommandLine.h"

#include "Output.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

namespace qor {

namespace {

constexpr char summary[] = "Makes, imports, shows and checks configuration databases, backs them up and restores them.";

constexpr char remarks[] = R"("dir-db COMMAND --help" tells the arguments of a command. No file that exists is
overwritten, and what restore replaces is kept.

Exit codes:
  0  all went well
  1  it failed and nothing was made or replaced, or check found the file unsound
  2  the command line is wrong
  3  import-jet made the database, or check found it sound, but with warnings)";

class Look : public CLI::Formatter
{
public:
    explicit Look(std::size_t widthOfNames)
    {
        column_width(widthOfNames);
        label("SUBCOMMAND", "COMMAND");
        label("REQUIRED", "");
        label("Positionals", "Arguments");
    }

    std::string make_description(const CLI::App* command) const override
    {
        return command->get_description() + (command->get_parent() == nullptr ? "\n\n" : ".\n\n");
    }
};

void PrintLines(const std::string& text)
{
    const QStringList lines = QString::fromStdString(text).trimmed().split(u'\n');
    for (const QString& line : lines)
        PrintLine(line);
}

/// "dir-db show"
std::string CallOf(const CLI::App& command)
{
    const CLI::App* const parent = command.get_parent();
    return parent == nullptr ? command.get_name() : parent->get_name() + ' ' + command.get_name();
}

std::string HelpOf(const CLI::App& command)
{
    return command.get_formatter()->make_help(&command, CallOf(command), CLI::AppFormatMode::Normal);
}

/// The subcommand on the command line, or the program if there is none.
const CLI::App& ChosenOf(const CLI::App& app)
{
    const auto chosen = app.get_subcommands();
    return chosen.empty() ? app : *chosen.front();
}

bool HasCommand(const CLI::App& app)
{
    return !app.get_subcommands().empty();
}

/// What to say of the first argument that is left over.
QString ExtraFault(const CLI::App& app, const std::string& argument)
{
    const QString text = QString::fromStdString(argument);
    if (!text.startsWith(u'-'))
        return (HasCommand(app) ? u"\"%1\" is one argument too many."_s : u"There is no command \"%1\"."_s).arg(text);
    if (HasCommand(app) && ChosenOf(app).get_option_no_throw(argument.substr(0, argument.find('='))) != nullptr)
        return u"The option \"%1\" belongs behind the command."_s.arg(text);
    return u"There is no option \"%1\". Write \"--\" before files whose names begin with a dash."_s.arg(text);
}

/// What is wrong, in a sentence: the parser's own if it names the argument.
QString FaultIn(const CLI::App& app, const CLI::ParseError& error)
{
    QString text = QString::fromStdString(error.what());
    const std::vector<std::string> extras = app.remaining(true);
    if (dynamic_cast<const CLI::ValidationError*>(&error))
        return text;
    if (dynamic_cast<const CLI::ConversionError*>(&error)) // ": --csv = 3"; only flags are converted
        return u"The option %1 takes no value."_s.arg(text.section(u' ', -3, -3));
    if (!extras.empty())
        return ExtraFault(app, extras.front());
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error)) // "--config: ..."
        return u"The option %1 needs a value."_s.arg(text.section(u':', 0, 0));
    return HasCommand(app) ? text + u'.' : u"A command is missing."_s;
}

int RefuseUsage(const CLI::App& app, const QString& fault)
{
    const CLI::App& command = ChosenOf(app);
    const std::string call = CallOf(command);
    PrintError(u"%1: %2"_s.arg(QString::fromStdString(call), fault));
    PrintError(QString::fromStdString(Look(0).make_usage(&command, call)).trimmed());
    PrintError(u"\"%1 --help\" tells more."_s.arg(QString::fromStdString(call)));
    return wrongUsage;
}

/// A subcommand that is ready to be parsed and run.
struct ReadyCommand
{
    CLI::App* app;
    Arguments arguments;
    Work work;
};

std::vector<ReadyCommand> SetUp(CLI::App& app, std::span<const Subcommand> subcommands)
{
    std::vector<ReadyCommand> commands;
    for (const Subcommand& subcommand : subcommands) {
        CLI::App* const command = app.add_subcommand(subcommand.name, subcommand.purpose);
        command->group("Commands");
        command->formatter(std::make_shared<Look>(20));
        Arguments arguments(*command);
        Work work = subcommand.setUp(arguments);
        commands.push_back({command, std::move(arguments), std::move(work)});
    }
    return commands;
}

/// "dir-db help", and "dir-db help COMMAND".
void AddHelp(CLI::App& app)
{
    CLI::App* const help = app.add_subcommand("help", "Print this, or the help of a command");
    help->group("Commands");
    const auto name = std::make_shared<std::string>();
    help->add_option("COMMAND", *name, "One of the commands")->type_name("");
    help->parse_complete_callback([&app, name] {
        const auto found = app.get_subcommands([&](const CLI::App* command) { return command->get_name() == *name; });
        if (!name->empty() && found.empty())
            throw CLI::ValidationError("There is no command \"" + *name + "\".");
        PrintLines(HelpOf(found.empty() ? app : *found.front()));
    });
}

void Prepare(CLI::App& app)
{
    app.formatter(std::make_shared<Look>(14));
    app.require_subcommand(1);
    app.set_help_flag("-h,--help", "Print this");
    app.set_version_flag("--version", "dir-db " DIR_DB_VERSION, "Print the version");
}

} // namespace

int RunCommandLine(std::span<const Subcommand> subcommands, int argc, const char* const* argv)
{
    CLI::App app(summary, "dir-db");
    Prepare(app);
    const std::vector<ReadyCommand> commands = SetUp(app, subcommands);
    AddHelp(app);
    app.footer(remarks); // after the commands, which would inherit it
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForVersion& version) {
        PrintLines(version.what());
        return success;
    } catch (const CLI::CallForHelp& help) {
        if (!HasCommand(app) && app.remaining_size() > 0)
            return RefuseUsage(app, FaultIn(app, help));
        PrintLines(HelpOf(ChosenOf(app)));
        return success;
    } catch (const CLI::ParseError& error) {
        return RefuseUsage(app, FaultIn(app, error));
    }
    for (const ReadyCommand& command : commands) {
        if (!command.app->parsed())
            continue;
        const QString fault = command.arguments.Fault();
        return fault.isEmpty() ? command.work() : RefuseUsage(app, fault);
    }
    return success; // the command was help
}

} // namespace qor
