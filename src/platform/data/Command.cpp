#include "platform/data/Command.h"

#include "platform/data/Engine.h"

#include <QSqlQuery>
#include <QSqlRecord>

namespace qor {

struct Command::Statement
{
    QSqlQuery query;
};

namespace {

QStringList ColumnNames(const QSqlRecord& record)
{
    QStringList names;
    for (int i = 0; i < record.count(); ++i)
        names << record.fieldName(i);
    return names;
}

/// Ends the statement when its rows have been read, so that it holds no lock.
class FinishGuard
{
public:
    explicit FinishGuard(QSqlQuery& query) : mQuery(query) {}
    ~FinishGuard() { mQuery.finish(); }
    FinishGuard(const FinishGuard&) = delete;
    FinishGuard& operator=(const FinishGuard&) = delete;

private:
    QSqlQuery& mQuery;
};

constexpr std::size_t cachedRows = 100; ///< room for so many is made at once

/// error: what ended the rows, if it was not their end
std::shared_ptr<const RecordRows> ReadRows(QSqlQuery& query, QSqlError& error)
{
    const FinishGuard finish(query);
    auto rows = std::make_shared<RecordRows>();
    rows->columns = ColumnNames(query.record());
    const int columnCount = static_cast<int>(rows->columns.size());
    rows->values.reserve(static_cast<std::size_t>(columnCount) * cachedRows);
    while (query.next()) {
        for (int i = 0; i < columnCount; ++i)
            rows->values.push_back(query.value(i));
        ++rows->rowCount;
    }
    error = query.lastError();
    return rows;
}

} // namespace

Command::Command(Connection& connection, QString name, QString engineText, int parameterCount)
    : mConnection(connection),
      mName(std::move(name)),
      mEngineText(std::move(engineText)),
      mParameterCount(parameterCount)
{
}

Command::~Command() = default;
Command::Command(Command&&) noexcept = default;

Recordset Command::Open(const QStringList& values)
{
    Run(values);
    QSqlError error;
    auto rows = ReadRows(mStatement->query, error);
    if (error.isValid())
        throw mConnection.Failure(error);
    mConnection.Succeeded();
    mOpenRows = rows;
    return Recordset(std::move(rows));
}

void Command::ForEachRow(const QStringList& values, const std::function<void(const Recordset& row)>& take)
{
    Run(values);
    QSqlQuery& query = mStatement->query;
    const FinishGuard finish(query);
    auto row = std::make_shared<RecordRows>();
    row->columns = ColumnNames(query.record());
    row->values.resize(static_cast<std::size_t>(row->columns.size()));
    row->rowCount = 1;
    const Recordset current(row);
    while (query.next()) {
        for (std::size_t i = 0; i < row->values.size(); ++i)
            row->values[i] = query.value(static_cast<int>(i));
        take(current);
    }
    if (const QSqlError error = query.lastError(); error.isValid())
        throw mConnection.Failure(error);
    mConnection.Succeeded();
}

int Command::Execute(const QStringList& values)
{
    Run(values);
    const FinishGuard finish(mStatement->query);
    mConnection.Succeeded();
    return mStatement->query.numRowsAffected();
}

void Command::Run(const QStringList& values)
{
    RequireValues(values);
    mConnection.Open();
    if (!mStatement || !mStatement->query.driver()) { // a driver goes with the engine that was dropped
        auto statement = std::make_unique<Statement>(Statement{QSqlQuery(mConnection.mEngine->Database())});
        statement->query.setForwardOnly(true);
        if (!statement->query.prepare(mEngineText))
            throw mConnection.Failure(statement->query.lastError());
        mStatement = std::move(statement);
    }
    for (int i = 0; i < values.size(); ++i) {
        // A null text would be bound as Null.
        mStatement->query.bindValue(i, values[i].isNull() ? u""_s : values[i]);
    }
    if (!mStatement->query.exec()) {
        const QSqlError error = mStatement->query.lastError();
        mStatement->query.finish();
        throw mConnection.Failure(error);
    }
}

void Command::RequireValues(const QStringList& values) const
{
    if (values.size() != mParameterCount) {
        throw RuntimeError(
            ErrorNumber::Provider,
            u"The command %1 takes %2 values, not %3."_s.arg(mName).arg(mParameterCount).arg(values.size()));
    }
    if (!mOpenRows.expired()) {
        throw RuntimeError(ErrorNumber::Provider,
                           u"The command %1 cannot run again while its recordset is open."_s.arg(mName));
    }
}

} // namespace qor
