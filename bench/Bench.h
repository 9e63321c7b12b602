// What the benches share: directories of several sizes, rounds, medians, and the rows of the table that bench/run
// prints.
#pragma once

#include "support/SampleDatabase.h"

#include <optional>
#include <QElapsedTimer>
#include <vector>

namespace qor {

/// Ends the program with the reason.
[[noreturn]] void Fail(const QString& reason);

/// Draws off screen unless the environment names a platform. Call it before the application object is made.
void UseOffscreen();

/// This many, or 1 with --once, which proves no more than that the bench runs.
int Rounds(int rounds);

double Median(std::vector<double> values);

/// Prints a row of the table: a figure, its ratio to what it was measured against, the most that is wanted of the ratio
/// (of the figure where there is no ratio), and whether it is met. With --once nothing is judged.
void Report(const QString& what, double measured, const QString& unit, std::optional<double> ratio = {},
            std::optional<double> wanted = {});

/// Two sides that take turns.
class Comparison
{
public:
    /// The times of one round, in ms.
    void Add(double time, double otherTime);
    void Report(const QString& what, std::optional<double> wanted = {}) const;

private:
    std::vector<double> mTimes;
    std::vector<double> mRatios; ///< within a round, whose runs met the same load of the machine
};

/// The time that the body takes, in ms.
template <typename Body>
double TimeOf(Body&& body)
{
    QElapsedTimer clock;
    clock.start();
    body();
    return static_cast<double>(clock.nsecsElapsed()) / 1e6;
}

/// The number of the directory node that AddDirectory makes.
qint16 NodeOfSize(int entries);

/// Adds a directory node with this many entries to configuration 1, partition 1; their prompts are 1 to 250.
void AddDirectory(const SampleDatabase& database, int entries);

/// Makes the message nodes from 1 to the highest known, so that a save asks nothing.
void AddMessageNodes(const SampleDatabase& database, int highest);

} // namespace qor
