// dir-db as people run it: its command line, what it tells of a database and which faults its check finds.

#include "rules/EarlierVersions.h"
#include "store/CommandCatalog.h"
#include "support/Cases.h"
#include "support/SampleDatabase.h"
#include "support/Tool.h"

using namespace qor;

class DirDbTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SampleDatabase> mSample;

    /// The sample on which these statements have run.
    QString ChangedSample(const QString& statements) const
    {
        for (const QString& statement : statements.split(u';', Qt::SkipEmptyParts))
            mSample->Run(statement);
        return mSample->FileName();
    }

private Q_SLOTS:
    void init() { mSample = std::make_unique<SampleDatabase>(); }

    void wrongCommandLine_data()
    {
        AddCases({{"nothing", {}, u"dir-db: A command is missing"_s},
                  {"unknown", u"-h|%1"_s, u"no command \"%1\""_s},
                  {"one file too many", u"check|a|b"_s, u"dir-db check: \"b\" is one argument too many"_s},
                  {"one too few", u"backup|a"_s, u"COPY is required"_s},
                  {"no source", u"import-jet|--dry-run"_s, u"SOURCE is required"_s},
                  {"no file", u"import-jet|a"_s, u"FILE is required without --dry-run"_s},
                  {"empty name", u"create|"_s, u"must not be empty"_s},
                  {"no role", u"grants|--editor|"_s, u"Name a role with --editor or --reader"_s},
                  {"option of another", u"check|--csv|a"_s, u"dir-db check: There is no option \"--csv\""_s},
                  {"option before", u"--csv|show|a"_s, u"belongs behind the command"_s},
                  {"value of a flag", u"show|--csv=x|a"_s, u"--csv takes no value"_s},
                  {"no value", u"show|a|--config"_s, u"--config needs a value"_s},
                  {"no number", u"show|--config=0x1|a"_s, u"--config needs a whole number from"_s},
                  {"17 bits", u"show|--config|32768|a"_s, u"--config needs a whole number from"_s}});
    }
    void wrongCommandLine()
    {
        QFETCH(QString, given);
        QFETCH(QString, expected);
        const Outcome outcome = DirDb(given.isEmpty() ? QStringList() : given.split(u'|'));
        QVERIFY2(outcome.exitCode == 2 && outcome.errors.contains(expected), qPrintable(outcome.errors));
        QVERIFY2(outcome.errors.contains(u"--help\" tells more"), qPrintable(outcome.errors));
        QCOMPARE(outcome.output, QString());
    }

    void takesNames()
    {
        const QTemporaryDir folder;
        const auto inFolder = u"cd '%1' && "_s.arg(folder.path());
        QCOMPARE(DirDb({u"create"_s, u"--"_s, u"-h"_s}, inFolder + u"\"$@\" && exec \"$1\" check -- -h"_s).exitCode, 0);
        const Outcome outcome = DirDb({}, u"exec \"$1\" check \"$(printf 'caf\\351')\""_s);
        QVERIFY2(outcome.exitCode == 2 && outcome.errors.contains(u"is not UTF-8"), qPrintable(outcome.errors));
    }

    void manualAndCompletionsFollowTheHelp()
    {
        const QString packaging = QStringLiteral(PACKAGING);
        const QString manual = QString::fromUtf8(ReadFile(packaging + u"/man/dir-db.1"_s)).remove(u'\\');
        const QString complete = u". '%1/completions/dir-db'; COMP_WORDS=(dir-db %2 --); COMP_CWORD=2; "
                                 "_dir_db \"$0\"; echo ${COMPREPLY[*]}"_s;
        const QStringList commands =
            DirDb({u"help"_s}).output.section(u"Commands:\n"_s, 1).section(u"\n\n"_s, 0, 0).split(u'\n');
        QVERIFY(commands.size() > 7);
        for (const QString& line : commands) {
            const QString command = line.simplified().section(u' ', 0, 0);
            const QString synopsis = manual.section(u".SY dir-db\n.B %1\n"_s.arg(command), 1).section(u".SY"_s, 0, 0);
            QStringList options;
            for (const QString& word : DirDb({u"help"_s, command}).output.split(QRegularExpression(u"[ ,\n]+"_s)))
                if (word.startsWith(u"--"))
                    options << word;
            for (const QString& option : options)
                QVERIFY2(option == u"--help" || synopsis.contains(option), qPrintable(command + option));
            QVERIFY2(!synopsis.isEmpty(), qPrintable(command));
            if (command != u"help")
                QCOMPARE(RunProgram(u"/bin/bash"_s, {u"-c"_s, complete.arg(packaging, command), QStringLiteral(DIR_DB)})
                             .output.trimmed(),
                         options.join(u' '));
        }
    }

    /// By how many columns each command of the catalog finds its rows.
    void everyCommandRunsOnItsKey()
    {
        Connection connection;
        connection.SetConnectionString(ConnectionStringFor(mSample->FileName()));
        QStringList keyColumns;
        for (const StoredCommand& command : CommandCatalog()) {
            const EngineStatement statement = TranslateStoredSql(QString::fromLatin1(command.sql));
            const QStringList values(statement.parameters.size(), u"1"_s);
            const Recordset steps = Command(connection, u"the plan"_s, u"EXPLAIN QUERY PLAN "_s + statement.text,
                                            static_cast<int>(values.size()))
                                        .Open(values);
            QVERIFY(steps.RecordCount() <= 1); // a sort would be a step of its own
            keyColumns << QString::number(steps.EndOfFile() ? 0 : steps.Field(u"detail"_s).toString().count(u"=?"));
        }
        QCOMPARE(keyColumns.join(u' '), u"3 2 4 3 2 3 3 4 0 3 4 4"_s);
    }

    /// What the commands of the catalog do, a right and a table each, is what an editor may do.
    void grants()
    {
        const QString said = DirDb({u"grants"_s, u"--editor"_s, u"a\"B"_s, u"--reader"_s, u"r"_s}).output;
        const auto found = [](const QString& text, const QString& pattern) {
            QStringList pairs;
            for (const auto& match : QRegularExpression(pattern).globalMatch(text))
                for (const QString& right : match.captured(1).split(u", "_s))
                    for (const QString& table : match.captured(2).toLower().split(u", "_s))
                        pairs << right + u' ' + table;
            pairs.sort();
            return pairs;
        };
        QString commands;
        for (const StoredCommand& command : CommandCatalog())
            commands += QString::fromLatin1(command.sql) + u'\n';
        QStringList needed =
            found(commands, u"(SELECT|INSERT|UPDATE|DELETE)(?: INTO| FROM| [\\w.*]+ FROM)? (\\w+)[ \r]"_s);
        needed.removeDuplicates();
        QCOMPARE(found(said, u"GRANT ([A-Z, ]+) ON ([\\w, ]+) TO \"a\"\"B\";\n"_s), needed << u"USAGE schema public"_s);
        QCOMPARE(found(said, u"GRANT ([A-Z, ]+) ON ([\\w, ]+) TO \"r\";\n"_s).size(), 6);
        QCOMPARE(said.count(u"SET log_min_error_statement = 'panic';"_s), 2);
    }

    void checkChangesNothing()
    {
        const QString fileName = mSample->FileName();
        const QByteArray before = ReadFile(fileName);
        const QString said = DirDb({u"check"_s, fileName}).output;
        QVERIFY2(said.startsWith(fileName + u": sound (7 directory nodes, 567 entries)\nWarning: "_s),
                 qPrintable(said));
        QCOMPARE(ReadFile(fileName), before);
        QCOMPARE(EntriesOf(QFileInfo(fileName).path()).size(), 1);
    }

    void checkFinds_data()
    {
        AddCases(
            {{"damaged", {}, u"The file is damaged: "_s},
             {"no table", u"DROP TABLE Node_MSG"_s, u"The table Node_MSG is missing"_s},
             {"no columns",
              u"ALTER TABLE Detail_DIR DROP COLUMN Password; ALTER TABLE Node_MSG RENAME COLUMN KELFilename TO File"_s,
              u"Detail_DIR lacks the column Password. The table Node_MSG lacks the column KELFilename"_s},
             {"type", u"ALTER TABLE Node_MSG DROP COLUMN NodeType; ALTER TABLE Node_MSG ADD COLUMN NodeType INTEGER"_s,
              u"NodeType of the table Node_MSG has the type \"INTEGER\", not TEXT"_s},
             {"no key",
              u"CREATE TABLE Copy AS SELECT * FROM Node_DIR; DROP TABLE Node_DIR; ALTER TABLE Copy RENAME TO Node_DIR"_s,
              u"key of the table Node_DIR is not (ConfigID, PartID, NodeNumber, NodeTypeID)"_s}});
    }
    /// given: what happens to the database; nothing damages it.
    void checkFinds()
    {
        QFETCH(QString, given);
        QFETCH(QString, expected);
        const QString fileName = ChangedSample(given);
        if (given.isEmpty())
            WriteFile(fileName, ReadFile(fileName).replace(16 * 4096 + 100, 99, QByteArray(99, 'x')));
        const Outcome outcome = DirDb({u"check"_s, fileName});
        QCOMPARE(outcome.exitCode, 1);
        const QString told = outcome.errors.simplified();
        QVERIFY2(told.contains(fileName) && told.contains(expected), qPrintable(told));
        QCOMPARE(outcome.output, QString());
    }

    void listsEarlierVersions()
    {
        const auto history = [&](int node) {
            return DirDb({u"history"_s, u"--node"_s, QString::number(node), mSample->FileName()});
        };
        const QString misc = mSample->ProductFolder() + u"/Misc/"_s;
        mSample->SetEntries(7, {u"Smith|Anne|101|1|1"_s, u"Jones|Tom|102|2|2"_s});
        QCOMPARE(
            history(7).output,
            u"There are no earlier versions of DIR 7 in configuration 1, partition 1 in %1DIRHistory/1-1-7.\n"_s.arg(
                misc));
        for (const int node : {7, 9}) {
            KeepVersion(misc, KeptNow({{{1, 1}, static_cast<qint16>(node)},
                                       {},
                                       {{u"Smith"_s, u"Anne"_s, u"103"_s, u"1"_s, u"1"_s}}}));
            KeepVersion(misc, KeptNow({{{1, 1}, static_cast<qint16>(node)}, {}, {}}));
        }
        const QStringList lines = history(7).output.trimmed().split(u'\n');
        QCOMPARE(lines[1].simplified(), u"Saved By Entries Changes"_s);
        QVERIFY2(lines[2].endsWith(u"  0        +0 -2 ~0") && lines[3].endsWith(u"  1        +0 -1 ~1"),
                 qPrintable(lines.join(u'\n')));
        QVERIFY(history(9).output.startsWith(u"DIR 9 in configuration 1, partition 1 is no longer stored."_s));
        const Outcome outcome = history(70);
        QVERIFY2(outcome.exitCode == 1 && outcome.errors.startsWith(u"There is no DIR 70"), qPrintable(outcome.errors));
    }

    /// given: the options.
    void shows_data()
    {
        AddCases({{"table", u"--config 2"_s,
                   u"DIR 3: NodeDescription \"Front office\", UsePasswords \"1\", StartingPromptNumber \"2\"\n"
                   "  SequenceNo  LastName  FirstName  Extension  NamePrompt\n"
                   "  1           Smith␛\ufffd   Anne       101        1\n"
                   "  2           a,b␊␍␉"_s},
                  {"CSV", u"--config 2 --csv"_s,
                   u"NodeNumber,NodeDescription,UsePasswords,StartingPromptNumber,SequenceNo,LastName,FirstName,"
                   "Extension,NamePrompt\n"
                   "3,Front office,1,2,1,\"Smith␛\ufffd\",Anne,101,1\n"
                   "3,Front office,1,2,2,\"a,b\n␍\t\","_s},
                  {"JSON", u"--config 2 --json"_s,
                   u"\"LastName\": \"Smith\\u001b\\u0085\",\n"
                   "                    \"NamePrompt\": 1,\n"
                   "                    \"SequenceNo\": 1\n"
                   "                },\n"
                   "                {\n"
                   "                    \"Extension\": null,\n"_s},
                  {"passwords", u"--config 2 --passwords"_s, u"AccessCode \"secret\""_s},
                  {"partition", u"--partition 2"_s, u"DIR 5: NodeDescription \"Workshop\""_s},
                  {"no entries", {}, u"\"250\"\n  no entries\n"_s},
                  {"no nodes", u"--partition 9"_s, u"no directory nodes in partition 9"_s}});
    }
    void shows()
    {
        QFETCH(QString, given);
        QFETCH(QString, expected);
        const QString fileName = ChangedSample(
            u"UPDATE Detail_DIR SET LastName = 'Smith' || char(27, 133) WHERE ConfigID = 2 AND SequenceNo = 1; "
            "UPDATE Detail_DIR SET LastName = 'a,b' || char(10, 13, 9), Extension = NULL, Password = 'secret' WHERE "
            "ConfigID = 2 AND SequenceNo = 2; "
            "UPDATE Node_DIR SET AccessCode = 'secret' WHERE ConfigID = 2"_s);
        const QStringList options = given.split(u' ', Qt::SkipEmptyParts);
        const Outcome outcome = DirDb(QStringList{u"show"_s} + options + QStringList{fileName});
        QCOMPARE(outcome.exitCode, 0);
        QVERIFY2(outcome.output.contains(expected), qPrintable(outcome.output));
        QCOMPARE(outcome.output.contains(u"secret"), options.contains(u"--passwords"));
    }
};

QTEST_GUILESS_MAIN(DirDbTest)
#include "DirDbTest.moc"
