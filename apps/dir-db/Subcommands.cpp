#include "Subcommands.h"

#include "Backup.h"
#include "Check.h"
#include "Copy.h"
#include "Grants.h"
#include "History.h"
#include "ImportJet.h"
#include "Keys.h"
#include "ListExport.h"
#include "ListImport.h"
#include "NewDatabase.h"
#include "Output.h"
#include "Recordings.h"
#include "Sample.h"
#include "Show.h"

#include <array>
#include <memory>
#include <QMap>

namespace qor {

namespace {

/// The two files of a subcommand, in the order of the command line.
struct Files
{
    QString first;
    QString second;
};

void AddPartition(Arguments& arguments, Partition& partition)
{
    arguments.Number("--config", partition.config, "The configuration; 1 if not given");
    arguments.Number("--partition", partition.number, "The partition; 1 if not given");
}

Work SetUpCreate(Arguments& arguments)
{
    const auto file = std::make_shared<QString>();
    arguments.File("FILE", *file, "The new database, or a link to the server where its tables are to be made");
    return [file] {
        MakeDatabase(*file, [](DataBase&) {});
        PrintLine(u"%1: made, without nodes"_s.arg(*file));
        return success;
    };
}

Work SetUpSample(Arguments& arguments)
{
    const auto file = std::make_shared<QString>();
    arguments.File("FILE", *file, "The new database");
    return [file] {
        MakeDatabase(*file, WriteSample);
        PrintLine(u"%1: made, with the sample in it"_s.arg(*file));
        return success;
    };
}

int ReportCheck(const QString& fileName, const CheckResult& result)
{
    if (result.reasons.isEmpty()) {
        PrintLine(u"%1: sound (%2 directory nodes, %3 entries)"_s.arg(fileName, QString::number(result.directoryNodes),
                                                                      QString::number(result.entries)));
        PrintFindings(result.findings);
        return HasPlaces(result.findings) ? withWarnings : success;
    }
    PrintError(u"The database %1 is not sound:"_s.arg(fileName));
    for (const QString& reason : result.reasons)
        PrintError(u"  "_s + reason);
    PrintError(result.isShared
                   ? u"Have its server's administrator restore it, or copy a sound one into an empty database with "
                     "\"dir-db copy FROM TO\"."_s
                   : u"Restore it from a backup with \"dir-db restore COPY FILE\" or make a new one with \"dir-db "
                     "create\"."_s);
    return failure;
}

Work SetUpCheck(Arguments& arguments)
{
    const auto file = std::make_shared<QString>();
    const auto recordings = std::make_shared<QString>();
    arguments.File("FILE", *file, "The database");
    arguments.FileOption("--recordings", "FOLDER", *recordings, "Also entries whose wave file this folder lacks");
    return [=] { return ReportCheck(*file, CheckDatabase(*file, *recordings)); };
}

void AddNode(Arguments& arguments, NodeIdentity& node)
{
    arguments.Number("--node", node.number, "The directory node; to be given", Need::Always);
    AddPartition(arguments, node.partition);
}

void AddNodes(Arguments& arguments, NodeChoice& nodes)
{
    arguments.Number("--node", nodes.node, "One directory node only");
    AddPartition(arguments, nodes.partition);
}

Work SetUpRecordings(Arguments& arguments)
{
    const auto request = std::make_shared<RecordingsRequest>();
    arguments.File("FILE", request->fileName, "The database");
    AddNodes(arguments, request->nodes);
    arguments.FileOption("--missing", "FOLDER", request->missingIn, "Only the files that this folder lacks");
    return [request] {
        PrintRecordings(*request);
        return success;
    };
}

const QMap<QString, SpelledName>& SpelledNames()
{
    static const QMap<QString, SpelledName> names{
        {u"last"_s, SpelledName::Last}, {u"first"_s, SpelledName::First}, {u"either"_s, SpelledName::Either}};
    return names;
}

Work SetUpKeys(Arguments& arguments)
{
    const auto request = std::make_shared<KeysRequest>();
    const auto by = std::make_shared<QString>(u"last"_s);
    arguments.File("FILE", request->fileName, "The database");
    arguments.Text("KEYS", request->keys, "What a caller presses; if not given, the codes that several people share",
                   Need::Optional);
    AddNodes(arguments, request->nodes);
    arguments.Number("--digits", request->digits, "The length of the codes; 3 if not given");
    arguments.Choice("--by", SpelledNames().keys(), *by, "Which name callers spell; last if not given");
    return [request, by] {
        request->spelled = SpelledNames()[*by];
        ShowKeys(*request);
        return success;
    };
}

Work SetUpShow(Arguments& arguments)
{
    const auto request = std::make_shared<ShowRequest>();
    const auto asCsv = std::make_shared<bool>(false);
    const auto asJson = std::make_shared<bool>(false);
    arguments.File("FILE", request->fileName, "The database");
    AddPartition(arguments, request->partition);
    arguments.Flag("--csv", *asCsv, "As CSV, for a spreadsheet");
    arguments.Flag("--json", *asJson, "As JSON, for a program");
    arguments.Flag("--passwords", request->withPasswords, "With access codes and passwords");
    arguments.Check([=] { return *asCsv && *asJson ? u"Choose --csv or --json."_s : QString(); });
    return [=] {
        request->format = *asCsv ? ShowFormat::Csv : *asJson ? ShowFormat::Json : ShowFormat::Table;
        ShowPartition(*request);
        return success;
    };
}

Work SetUpHistory(Arguments& arguments)
{
    const auto request = std::make_shared<HistoryRequest>();
    arguments.File("FILE", request->fileName, "The database");
    AddNode(arguments, request->node);
    return [request] {
        PrintHistory(*request);
        return success;
    };
}

Work SetUpImportJet(Arguments& arguments)
{
    const auto files = std::make_shared<Files>();
    const auto dryRun = std::make_shared<bool>(false);
    arguments.File("SOURCE", files->first, "The Jet 4 database, which stays as it is");
    arguments.File("FILE", files->second, "The new database", Need::Optional);
    arguments.Flag("--dry-run", *dryRun, "Report only; FILE may be left out");
    arguments.Check([files, dryRun] {
        return files->second.isEmpty() && !*dryRun ? u"FILE is required without --dry-run."_s : QString();
    });
    return [files, dryRun] { return ImportJet(files->first, files->second, *dryRun) ? success : withWarnings; };
}

/// The options of an import, with those that its request holds in another form.
struct ImportOptions
{
    ListImportRequest request = {};
    bool appends = false;
    QString layout = {};
};

void AddImportOptions(Arguments& arguments, ImportOptions& options)
{
    ListImportRequest& request = options.request;
    arguments.Flag("--append", options.appends, "The entries of the list follow those that are there");
    arguments.Flag("--replace", request.replaces, "They take their place");
    arguments.Flag("--dry-run", request.dryRun, "Report only");
    arguments.Flag("--share-prompts", request.sharesPrompts, "Save entries that share a prompt as well");
    arguments.Choice("--layout", {u"plain"_s, u"table"_s}, options.layout,
                     "How to read a list that the editor would ask about");
    arguments.FileOption("--rejected", "OUT", request.rejectedName, "A new list of what becomes no entry");
    arguments.FileOption("--suggested", "OUT", request.suggestedName,
                         "The same with what would make it entries, to be looked through");
}

Work SetUpImport(Arguments& arguments)
{
    const auto options = std::make_shared<ImportOptions>();
    arguments.File("FILE", options->request.fileName, "The database");
    arguments.File("LIST", options->request.listName, "The list, CSV");
    AddNode(arguments, options->request.node);
    AddImportOptions(arguments, *options);
    arguments.Check([options] {
        return options->appends == options->request.replaces ? u"Choose --append or --replace."_s : QString();
    });
    return [options] {
        if (!options->layout.isEmpty())
            options->request.rule = options->layout == u"table" ? ListRule::Table : ListRule::Plain;
        return ImportList(options->request) ? success : withWarnings;
    };
}

Work SetUpExport(Arguments& arguments)
{
    const auto request = std::make_shared<ListExportRequest>();
    arguments.File("FILE", request->fileName, "The database");
    arguments.File("LIST", request->listName, "The new list; standard output if not given", Need::Optional);
    AddNode(arguments, request->node);
    return [request] { return ExportList(*request) ? success : withWarnings; };
}

Work SetUpCopy(Arguments& arguments)
{
    const auto files = std::make_shared<Files>();
    arguments.File("FROM", files->first, "The database, or a link to a server");
    arguments.File("TO", files->second, "A new database, or a link to a server without rows");
    return [files] { return CopyDatabase(files->first, files->second) ? success : withWarnings; };
}

Work SetUpBackup(Arguments& arguments)
{
    const auto files = std::make_shared<Files>();
    arguments.File("FILE", files->first, "The database");
    arguments.File("COPY", files->second, "The new copy");
    return [files] {
        BackUpDatabase(files->first, files->second);
        return success;
    };
}

Work SetUpRestore(Arguments& arguments)
{
    const auto files = std::make_shared<Files>();
    arguments.File("COPY", files->first, "A sound database");
    arguments.File("FILE", files->second, "The database in whose place it is put; it may be missing or damaged");
    return [files] {
        RestoreDatabase(files->first, files->second);
        return success;
    };
}

Work SetUpGrants(Arguments& arguments)
{
    const auto request = std::make_shared<GrantsRequest>();
    arguments.TextOption("--editor", "ROLE", request->editor, "Of those who edit directories");
    arguments.TextOption("--reader", "ROLE", request->reader, "Of those who only look");
    arguments.Check([request] {
        return request->editor.isEmpty() && request->reader.isEmpty() ? u"Name a role with --editor or --reader."_s
                                                                      : QString();
    });
    return [request] {
        PrintGrants(*request);
        return success;
    };
}

constexpr std::array subcommands{
    Subcommand{"create", "Make an empty configuration database", SetUpCreate},
    Subcommand{"sample", "Make a database with nodes and entries to look at", SetUpSample},
    Subcommand{"import-jet", "Make a database from a Jet 4 database", SetUpImportJet},
    Subcommand{"show", "Print the directory nodes and entries of a partition", SetUpShow},
    Subcommand{"history", "List the earlier versions of a directory node", SetUpHistory},
    Subcommand{"check", "Say whether a file is a sound database, and what is odd in it", SetUpCheck},
    Subcommand{"import", "Take a list into a directory node, as the editor does", SetUpImport},
    Subcommand{"export", "Write the entries of a directory node as a list", SetUpExport},
    Subcommand{"recordings", "Print which file speaks whose name, as CSV", SetUpRecordings},
    Subcommand{"keys", "Print whom callers reach with telephone keys", SetUpKeys},
    Subcommand{"copy", "Take a database to a server, or from there into a file", SetUpCopy},
    Subcommand{"backup", "Make a copy of a database, also while editors have it open", SetUpBackup},
    Subcommand{"restore", "Put what a sound copy holds in the place of a database", SetUpRestore},
    Subcommand{"grants", "Print the SQL that gives a server's roles their rights", SetUpGrants},
};

} // namespace

std::span<const Subcommand> Subcommands()
{
    return subcommands;
}

} // namespace qor
