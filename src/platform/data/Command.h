// A statement with parameters that runs on a connection. It opens the connection on first use and is prepared
// once.
#pragma once

#include "platform/data/Recordset.h"

#include <functional>
#include <memory>
#include <QStringList>

namespace qor {

class Connection;
class Statement;

/// What a null QString among the values of a command stands for.
enum class NullText { IsEmpty, IsNull };

class Command
{
public:
    /// engineText: the statement in the engine's words, its parameters as ?1, ?2, ... in this order, each once
    Command(Connection& connection, QString name, QString engineText, int parameterCount,
            NullText nullText = NullText::IsEmpty);
    ~Command();
    Command(Command&&) noexcept;
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;

    /// Runs with these values, bound by position as texts. Every row is read before it returns. Raises RuntimeError: a
    /// wrong number of values, a recordset of this command that is still open, an error of the engine or of its file.
    Recordset Open(const QStringList& values);
    /// Runs with these values and hands over row by row, for a result that is too large to be held. What it is given
    /// stands on one row, which is another one after the call. Raises RuntimeError as Open does.
    void ForEachRow(const QStringList& values, const std::function<void(const Recordset& row)>& take);
    /// The same for a statement without rows; returns how many rows it changed.
    int Execute(const QStringList& values);

private:
    void Run(const QStringList& values);
    /// Once more where the engine says that it may succeed then.
    void RunToRead(const QStringList& values);
    void RequireValues(const QStringList& values) const;

    Connection& mConnection;
    QString mName;
    QString mEngineText;
    int mParameterCount;
    NullText mNullText;
    std::unique_ptr<Statement> mStatement;
    std::weak_ptr<const RecordRows> mOpenRows;
};

} // namespace qor
