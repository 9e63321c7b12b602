#include "Bench.h"

#include <algorithm>
#include <cstdio>
#include <QCoreApplication>

namespace qor {

namespace {

/// The numbers from 1 to the highest, as the table n.
QString NumbersTo(int highest)
{
    return u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < %1) "_s.arg(highest);
}

/// Three digits, or all before the point.
QString Digits(double number)
{
    return number < 999.5 ? QString::number(number, 'g', 3) : QString::number(number, 'f', 0);
}

bool IsOnce()
{
    return QCoreApplication::arguments().contains(u"--once"_s);
}

const char* Verdict(double value, std::optional<double> wanted)
{
    if (!wanted || IsOnce())
        return "";
    return value <= *wanted ? "yes" : "no";
}

} // namespace

void Fail(const QString& reason)
{
    std::fprintf(stderr, "%s: %s\n", qUtf8Printable(QCoreApplication::applicationName()), qUtf8Printable(reason));
    std::exit(1);
}

void UseOffscreen()
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
}

int Rounds(int rounds)
{
    return IsOnce() ? 1 : rounds;
}

double Median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, middle);
    return *middle;
}

void Report(const QString& what, double measured, const QString& unit, std::optional<double> ratio,
            std::optional<double> wanted)
{
    const QString figure = u"%1 %2"_s.arg(Digits(measured), unit);
    const QString factor = ratio ? QString::number(*ratio, 'f', 2) : QString();
    const QString limit = wanted ? u"at most %1 %2"_s.arg(*wanted).arg(ratio ? QString() : unit).trimmed() : QString();
    std::printf("| %-64s | %10s | %5s | %-16s | %-3s |\n", qUtf8Printable(what), qUtf8Printable(figure),
                qUtf8Printable(factor), qUtf8Printable(limit), Verdict(ratio.value_or(measured), wanted));
    std::fflush(stdout);
}

void Comparison::Add(double time, double otherTime)
{
    mTimes.push_back(time);
    mRatios.push_back(time / otherTime);
}

void Comparison::Report(const QString& what, std::optional<double> wanted) const
{
    qor::Report(what, Median(mTimes), u"ms"_s, Median(mRatios), wanted);
}

qint16 NodeOfSize(int entries)
{
    return static_cast<qint16>(10000 + entries);
}

void AddDirectory(const SampleDatabase& database, int entries)
{
    const QString node = QString::number(NodeOfSize(entries));
    database.Run(u"INSERT INTO Node_DIR VALUES (1, 1, 16, %1, 'Size', 0, '', 1)"_s.arg(node));
    database.Run(u"INSERT INTO Node_General_Pool VALUES (1, 1, 16, %1, 'DIR', 'Size', '')"_s.arg(node));
    database.Run(u"INSERT INTO Detail_DIR "_s + NumbersTo(entries) +
                 u"SELECT 1, 1, %1, i, 'Last' || i, 'First' || i, 1000 + i, i % 250 + 1, '1' FROM n"_s.arg(node));
}

void AddMessageNodes(const SampleDatabase& database, int highest)
{
    database.Run(u"INSERT INTO Node_General_Pool "_s + NumbersTo(highest) +
                 u"SELECT 1, 1, 0, i, 'MSG', '', '' FROM n WHERE i NOT IN (SELECT NodeNumber FROM Node_General_Pool "
                 "WHERE ConfigID = 1 AND PartID = 1 AND NodeTypeID = 0)"_s);
}

} // namespace qor
