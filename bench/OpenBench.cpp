// How long the editor takes to open, from the host's call until it is painted: against the bare form that is
// filled by hand, with many message numbers, and with directories of several sizes. Each comparison takes its
// sides in turn and prints their medians. With --once every side runs once, which proves no more than that it
// runs.
#include "Opening.h"
#include "support/BareForm.h"

#include <algorithm>
#include <QApplication>

using namespace qor;

namespace {

constexpr std::int16_t everyone = 12;     ///< the sample's directory with 500 entries
constexpr std::int16_t manyPartition = 9; ///< a copy of the sample's partition with all message numbers
constexpr int fewNumbers = 250;
constexpr int manyNumbers = 32767;
constexpr std::array directorySizes{50, 500, 5000};

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

/// A partition with the most message numbers, and a directory of each size.
void AddContents(const SampleDatabase& database)
{
    database.Run(
        u"INSERT INTO Node_DIR SELECT ConfigID, %1, NodeTypeID, NodeNumber, NodeDescription, UsePasswords, "
        "AccessCode, StartingPromptNumber FROM Node_DIR WHERE ConfigID = 1 AND PartID = 1"_s.arg(manyPartition));
    database.Run(
        u"INSERT INTO Detail_DIR SELECT ConfigID, %1, NodeMasterID, SequenceNo, LastName, FirstName, "
        "Extension, NamePrompt, Password FROM Detail_DIR WHERE ConfigID = 1 AND PartID = 1"_s.arg(manyPartition));
    database.Run(u"INSERT INTO Node_Type_Max VALUES (1, %1, 0, %2)"_s.arg(manyPartition).arg(manyNumbers));
    for (const int size : directorySizes)
        AddDirectory(database, size);
}

/// The entries of the sample's directory with 500.
std::vector<ListRow> RowsOf(const SampleDatabase& database)
{
    std::vector<ListRow> rows;
    for (const QString& row :
         database.Run(u"SELECT LastName, FirstName, Extension, NamePrompt, Password FROM Detail_DIR WHERE ConfigID = 1 "
                      "AND PartID = 1 AND NodeMasterID = %1 ORDER BY SequenceNo"_s.arg(everyone))) {
        const QStringList texts = row.split(u'|');
        rows.push_back(EntryRow(static_cast<int>(rows.size()) + 1, {texts[0], texts[1], texts[2], texts[3], texts[4]}));
    }
    return rows;
}

/// One side of a comparison: its name and one run of it, in ms.
struct Side
{
    QString name;
    std::function<double()> run;
};

/// Runs the sides in turn; the ratios are to the last one.
void Compare(int rounds, const std::vector<Side>& sides, std::optional<double> wanted = {})
{
    std::vector<Comparison> comparisons(sides.size() - 1);
    for (int round = 0; round < rounds; ++round) {
        std::vector<double> times;
        std::ranges::transform(sides, std::back_inserter(times), [](const Side& side) { return side.run(); });
        for (std::size_t i = 0; i < comparisons.size(); ++i)
            comparisons[i].Add(times[i], times.back());
    }
    for (std::size_t i = 0; i < comparisons.size(); ++i)
        comparisons[i].Report(u"opening %1, to %2"_s.arg(sides[i].name, sides.back().name), wanted);
}

} // namespace

int main(int argc, char** argv)
{
    UseOffscreen();
    const QApplication application(argc, argv);
    const int rounds = Rounds(41);
    const SampleDatabase database;
    AddContents(database);
    const std::vector<ListRow> rows = RowsOf(database);
    PaintClock clock;

    const auto editor = [&](std::int16_t partition, std::int16_t node) {
        return [&clock, partition, node] { return OpenEditor(clock, partition, node); };
    };
    const auto bareForm = [&] { return OpenBareForm(clock, rows); };
    if (rounds > 1) { // fonts and plugins are loaded by whoever comes first
        bareForm();
        OpenEditor(clock, 1, everyone);
    }
    Compare(rounds, {{u"500 entries"_s, editor(1, everyone)}, {u"the bare form"_s, bareForm}}, 1.3);
    Compare(rounds,
            {{u"with 32767 message numbers"_s, editor(manyPartition, everyone)}, {u"250"_s, editor(1, everyone)}}, 1.5);
    Compare(rounds, {{u"5000 entries"_s, editor(1, NodeOfSize(5000))},
                     {u"500 entries"_s, editor(1, NodeOfSize(500))},
                     {u"50 entries"_s, editor(1, NodeOfSize(50))}});
    return 0;
}
