// What the benches share: directories of several sizes, rounds, medians.
#pragma once

#include "support/SampleDatabase.h"

#include <QElapsedTimer>
#include <vector>

namespace qor {

/// Ends the program with the reason.
[[noreturn]] void Fail(const QString& reason);

/// The application object's platform where the environment names none. To be called before there is one.
void UseOffscreen();

/// This many, or 1 with --once, which proves no more than that the bench runs.
int Rounds(int rounds);

double Median(std::vector<double> values);

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
