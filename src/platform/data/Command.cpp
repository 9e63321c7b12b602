#include "platform/data/Command.h"

#include "platform/data/Engine.h"

#include <QSqlRecord>
#include <utility>

namespace qor {

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

constexpr std::size_t expectedRows = 100; ///< for which room is made at once

/// error: set when something other than their end ended the rows.
std::shared_ptr<const RecordRows> ReadRows(Statement& statement, QSqlError& error)
{
    QSqlQuery& query = statement.query;
    const FinishGuard finish(query);
    auto rows = std::make_shared<RecordRows>();
    rows->columns = ColumnNames(query.record());
    const int columnCount = static_cast<int>(rows->columns.size());
    rows->values.reserve(static_cast<std::size_t>(columnCount) * expectedRows);
    while (query.next()) {
        for (int i = 0; i < columnCount; ++i)
            rows->values.push_back(statement.Value(i));
        ++rows->rowCount;
    }
    error = query.lastError();
    return rows;
}

} // namespace

Command::Command(Connection& connection, QString name, QString engineText, int parameterCount, NullText nullText)
    : mConnection(connection),
      mName(std::move(name)),
      mEngineText(std::move(engineText)),
      mParameterCount(parameterCount),
      mNullText(nullText)
{
}

Command::~Command() = default;
Command::Command(Command&&) noexcept = default;

void Command::RunToRead(const QStringList& values)
{
    try {
        Run(values);
    } catch (const RuntimeError&) {
        if (!std::exchange(mConnection.mMayRepeat, false))
            throw;
        mStatement.reset();
        Run(values);
    }
}

Recordset Command::Open(const QStringList& values)
{
    RunToRead(values);
    QSqlError error;
    auto rows = ReadRows(*mStatement, error);
    if (error.isValid())
        throw mConnection.Failure(error);
    mConnection.Succeeded();
    mOpenRows = rows;
    return Recordset(std::move(rows));
}

void Command::ForEachRow(const QStringList& values, const std::function<void(const Recordset& row)>& take)
{
    RunToRead(values);
    QSqlQuery& query = mStatement->query;
    const FinishGuard finish(query);
    auto row = std::make_shared<RecordRows>();
    row->columns = ColumnNames(query.record());
    row->values.resize(static_cast<std::size_t>(row->columns.size()));
    row->rowCount = 1;
    const Recordset current(row);
    while (query.next()) {
        for (std::size_t i = 0; i < row->values.size(); ++i)
            row->values[i] = mStatement->Value(static_cast<int>(i));
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
    if (!mStatement || !mStatement->query.driver()) // a dropped engine takes its driver along
        mStatement = mConnection.mEngine->Prepare(mEngineText, mParameterCount);
    QStringList texts = values;
    if (mNullText == NullText::IsEmpty) {
        for (QString& text : texts)
            text = text.isNull() ? u""_s : text;
    }
    if (!mStatement->Run(texts)) {
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
