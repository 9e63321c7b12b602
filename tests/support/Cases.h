// Tables of cases, patterns, and what a piece of code raised.
#pragma once

#include "platform/runtime/RuntimeError.h"

#include <functional>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>

namespace qor {

struct Case
{
    const char* name;
    QString given;
    QString expected;
};

/// Adds the columns "given" and "expected" and a row for each case.
inline void AddCases(std::initializer_list<Case> cases)
{
    QTest::addColumn<QString>("given");
    QTest::addColumn<QString>("expected");
    for (const Case& row : cases)
        QTest::newRow(row.name) << row.given << row.expected;
}

/// Whether a text is what the pattern says, in which a * stands for any characters.
inline bool Matches(const QString& text, const QString& pattern)
{
    const QString expression = QRegularExpression::escape(pattern).replace(u"\\*"_s, u".*"_s);
    return QRegularExpression(u"(?s)\\A"_s + expression + u"\\z"_s).match(text).hasMatch();
}

/// Where the chances of a test begin: what the variable of the environment says, or anywhere. Printed, so that a
/// failure can be had again.
inline quint32 Seed(const char* variable)
{
    const QString given = qEnvironmentVariable(variable);
    const quint32 seed = given.isEmpty() ? QRandomGenerator::global()->generate() : given.toUInt();
    qInfo("%s=%u", variable, seed);
    return seed;
}

/// "number: description", or the empty text when the body raised nothing.
template <typename Body>
QString RaisedBy(Body&& body)
{
    try {
        std::invoke(std::forward<Body>(body));
    } catch (const RuntimeError& error) {
        return u"%1: "_s.arg(static_cast<int>(error.Number())) + error.Description();
    }
    return {};
}

} // namespace qor
