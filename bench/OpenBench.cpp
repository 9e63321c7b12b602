// How long the editor takes to open, from the host's call until it is painted: against the bare form that is
// filled by hand, with many message numbers, and with directories of several sizes. Each comparison takes its
// sides in turn and prints their medians. With --once every side runs once, which proves no more than that it
// runs.
#include "form/Directory.h"
#include "form/EditorForm.h"
#include "platform/data/Command.h"
#include "platform/data/Connection.h"
#include "QOR_DIR_Node.h"

#include <algorithm>
#include <cstdio>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QProcess>
#include <QTemporaryDir>

using namespace qor;

namespace {

constexpr std::int16_t everyone = 12;     ///< the sample's directory with 500 entries
constexpr std::int16_t manyPartition = 9; ///< a copy of the sample's partition with all message numbers
constexpr int fewNumbers = 250;
constexpr int manyNumbers = 32767;
constexpr std::array directorySizes{50, 500, 5000};

[[noreturn]] void Fail(const QString& reason)
{
    std::fprintf(stderr, "OpenBench: %s\n", qUtf8Printable(reason));
    std::exit(1);
}

/// Stops the clock when the directory list has been painted, and closes the form.
class PaintClock : public QObject
{
public:
    PaintClock() { qApp->installEventFilter(this); }

    void Start()
    {
        mPainted = 0;
        mClock.start();
    }
    double PaintedAfter() const
    {
        if (mPainted == 0)
            Fail(u"the form was not painted"_s);
        return static_cast<double>(mPainted) / 1e6;
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint && mPainted == 0) {
            if (const auto* box = qobject_cast<QMessageBox*>(watched))
                Fail(box->text());
            if (watched->parent() != nullptr && watched->parent()->objectName() == u"LVDirectory"_s) {
                mPainted = -1;
                QMetaObject::invokeMethod(this, &PaintClock::Stop, Qt::QueuedConnection);
            }
        }
        return false;
    }

private:
    void Stop()
    {
        mPainted = mClock.nsecsElapsed();
        QApplication::activeModalWidget()->close();
    }

    QElapsedTimer mClock;
    qint64 mPainted = 0; ///< in ns; -1 between the painting and its end
};

double OpenEditor(PaintClock& clock, std::int16_t partition, std::int16_t node)
{
    IClassFactory* factory = nullptr;
    _BusinessRules* rules = nullptr;
    clock.Start();
    DllGetClassObject(CLSID_BusinessRules, IID_IClassFactory, reinterpret_cast<void**>(&factory));
    factory->CreateInstance(nullptr, IID__BusinessRules, reinterpret_cast<void**>(&rules));
    factory->Release();
    rules->ShowNodeEditor(1, partition, node, nullptr);
    rules->Release();
    return clock.PaintedAfter();
}

class BareForm : public EditorForm
{
protected:
    void Form_Load() override {}
    void Form_Activate() override {}
    void Form_Unload(bool& /*cancel*/) override {}
};

double OpenBareForm(PaintClock& clock, std::vector<ListRow> rows)
{
    clock.Start();
    BareForm form;
    form.Load();
    ResetDirectoryListView(*form.LVDirectory);
    form.HideEntryEditors();
    form.lblUsePasswords->hide();
    form.cmbUsePasswords->hide();
    form.cmbPromptNumber->SetNumbers(1, fewNumbers);
    form.cmbMSGNodeNumber->SetNumbers(1, fewNumbers);
    form.cmbMSGNodeNumber->SetListIndex(0);
    form.LVDirectory->Items().Append(std::move(rows));
    form.ShowModal();
    return clock.PaintedAfter();
}

std::vector<ListRow> RowsOf(Connection& connection, int node)
{
    Command details(connection, u"rows"_s,
                    u"SELECT LastName, FirstName, Extension, NamePrompt, Password FROM Detail_DIR "
                    "WHERE ConfigID = 1 AND PartID = 1 AND NodeMasterID = ?1 ORDER BY SequenceNo"_s,
                    1);
    std::vector<ListRow> rows;
    for (Recordset records = details.Open({QString::number(node)}); !records.EndOfFile(); records.MoveNext()) {
        const auto text = [&](int column) { return records.Field(column).toString(); };
        rows.push_back(EntryRow(static_cast<int>(rows.size()) + 1, {text(0), text(1), text(2), text(3), text(4)}));
    }
    return rows;
}

std::int16_t NodeOfSize(int entries)
{
    return static_cast<std::int16_t>(10000 + entries);
}

/// A partition with the most message numbers, and a directory of each size.
QStringList MoreContents()
{
    QStringList statements{
        u"INSERT INTO Node_DIR SELECT ConfigID, %1, NodeTypeID, NodeNumber, NodeDescription, UsePasswords, "
        "AccessCode, StartingPromptNumber FROM Node_DIR WHERE ConfigID = 1 AND PartID = 1"_s.arg(manyPartition),
        u"INSERT INTO Detail_DIR SELECT ConfigID, %1, NodeMasterID, SequenceNo, LastName, FirstName, Extension, "
        "NamePrompt, Password FROM Detail_DIR WHERE ConfigID = 1 AND PartID = 1"_s.arg(manyPartition),
        u"INSERT INTO Node_Type_Max VALUES (1, %1, 0, %2)"_s.arg(manyPartition).arg(manyNumbers)};
    for (const int size : directorySizes) {
        statements << u"INSERT INTO Node_DIR VALUES (1, 1, 16, %1, 'Size', 0, '', 1)"_s.arg(NodeOfSize(size))
                   << u"INSERT INTO Detail_DIR WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n "
                      "WHERE i < %2) SELECT 1, 1, %1, i, 'Last' || i, 'First' || i, 1000 + i, i % 250 + 1, '1' "
                      "FROM n"_s.arg(NodeOfSize(size))
                          .arg(size);
    }
    return statements;
}

/// The sample and more, in the folder of application data; the rows of its directory with 500 entries.
std::vector<ListRow> MakeData(const QString& folder)
{
    const QString databaseFolder = folder + u"/Quorvanta/KELDAR+/Database"_s;
    const QString database = databaseFolder + u"/NewDB.mdb"_s;
    QDir().mkpath(databaseFolder);
    QProcess dirDb;
    dirDb.start(QStringLiteral(DIR_DB), {u"sample"_s, database});
    if (!dirDb.waitForFinished() || dirDb.exitCode() != 0)
        Fail(QString::fromUtf8(dirDb.readAllStandardError()));
    Connection connection;
    connection.SetConnectionString(u"Provider=Microsoft.Jet.OLEDB.4.0;Data Source="_s + database);
    for (const QString& statement : MoreContents())
        Command(connection, statement, statement, 0).Execute({});
    qputenv("KELDAR_COMMON_APPDATA", QFile::encodeName(folder));
    return RowsOf(connection, everyone);
}

/// One side of a comparison: its name, one run of it, the times of its runs in ms.
struct Side
{
    const char* name;
    std::function<double()> run;
    std::vector<double> times = {};
};

double Median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// The median of the ratios within a round, whose runs met the same load of the machine.
double Ratio(const std::vector<double>& times, const std::vector<double>& base)
{
    std::vector<double> ratios;
    std::transform(times.begin(), times.end(), base.begin(), std::back_inserter(ratios), std::divides());
    return Median(ratios);
}

/// Runs the sides in turn; the ratios are against the last one.
void Compare(int rounds, std::vector<Side> sides, const char* wanted)
{
    for (int i = 0; i < rounds; ++i) {
        for (Side& side : sides)
            side.times.push_back(side.run());
    }
    const Side& base = sides.back();
    for (const Side& side : sides) {
        if (&side != &base)
            std::printf("%s: %.2f ms against %.2f ms for %s, ratio %.2f%s\n", side.name, Median(side.times),
                        Median(base.times), base.name, Ratio(side.times, base.times), wanted);
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const bool once = QCoreApplication::arguments().contains(u"--once"_s);
    const int rounds = once ? 1 : 41;
    const QTemporaryDir folder;
    const std::vector<ListRow> rows = MakeData(folder.path());
    PaintClock clock;

    const auto editor = [&](std::int16_t partition, std::int16_t node) {
        return [&clock, partition, node] { return OpenEditor(clock, partition, node); };
    };
    const auto bareForm = [&] { return OpenBareForm(clock, rows); };
    if (!once) { // fonts and plugins are loaded by whoever comes first
        bareForm();
        OpenEditor(clock, 1, everyone);
    }
    const char* atMost = " (wanted: at most 1.5)";
    Compare(rounds, {{"editor, 500 entries", editor(1, everyone)}, {"bare form, 500 entries", bareForm}}, atMost);
    Compare(rounds,
            {{"32767 message numbers", editor(manyPartition, everyone)}, {"250 message numbers", editor(1, everyone)}},
            atMost);
    Compare(rounds,
            {{"5000 entries", editor(1, NodeOfSize(5000))},
             {"500 entries", editor(1, NodeOfSize(500))},
             {"50 entries", editor(1, NodeOfSize(50))}},
            "");
    return 0;
}
