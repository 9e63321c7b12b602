#include "Keys.h"

#include "Output.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/RuntimeError.h"
#include "ReadAccess.h"
#include "store/DataBase.h"

#include <algorithm>
#include <QMap>

namespace qor {

namespace {

void RequireUsable(const KeysRequest& request)
{
    if (!std::ranges::all_of(request.keys, IsDigit))
        throw RuntimeError(ErrorNumber::TypeMismatch,
                           u"\"%1\" are no keys: give digits, such as 764."_s.arg(request.keys));
    if (request.digits < 1)
        throw RuntimeError(ErrorNumber::Overflow, u"A code has at least 1 digit, not %1."_s.arg(request.digits));
}

QString RuleSentence(SpelledName spelled)
{
    const QString names = spelled == SpelledName::Last    ? u"last names"_s
                          : spelled == SpelledName::First ? u"first names"_s
                                                          : u"last and first names"_s;
    return u"By this rule: callers spell %1 with the letters on the keys (ABC 2 to WXYZ 9), letters with accents as "
           "those below the accents, and pass over what has no key. How the system searches is its own matter."_s.arg(
               names);
}

QString PersonText(const DirectoryNode& node, std::size_t row)
{
    const DirectoryEntry& entry = node.entries[row];
    return u"  entry %1: %2 %3, extension %4"_s.arg(QString::number(row + 1), entry.firstName, entry.lastName,
                                                    entry.extension);
}

void PrintPeople(const DirectoryNode& node, const QString& heading, const std::vector<std::size_t>& rows)
{
    PrintLine(u"DIR %1: %2 %3"_s.arg(QString::number(node.identity.number), heading,
                                     rows.size() == 1 ? u"1 person"_s : u"%1 people"_s.arg(rows.size())));
    for (const std::size_t row : rows)
        PrintLine(PersonText(node, row));
}

void PrintReached(const DirectoryNode& node, const KeysRequest& request)
{
    std::vector<std::size_t> rows;
    for (std::size_t row = 0; row < node.entries.size(); ++row) {
        if (IsReachedBy(request.keys, node.entries[row], request.spelled))
            rows.push_back(row);
    }
    PrintPeople(node, request.keys + u" reaches"_s, rows);
}

void PrintSharedCodes(const DirectoryNode& node, const KeysRequest& request)
{
    QMap<QString, std::vector<std::size_t>> people;
    for (std::size_t row = 0; row < node.entries.size(); ++row) {
        for (const QString& code : KeyCodes(node.entries[row], request.spelled, request.digits))
            people[code].push_back(row);
    }
    people.removeIf([](const auto& code) { return code->size() < 2; });
    if (people.isEmpty())
        PrintLine(u"DIR %1: no code of %2 keys is shared"_s.arg(node.identity.number).arg(request.digits));
    for (auto code = people.cbegin(); code != people.cend(); ++code)
        PrintPeople(node, code.key() + u" is shared by"_s, *code);
}

} // namespace

void ShowKeys(const KeysRequest& request)
{
    RequireUsable(request);
    DataBase dataBase(ConnectionStringFor(request.fileName));
    const ReadAccess access(dataBase.Conn, request.fileName);
    bool isFirst = true;
    ForEachChosenNode(dataBase, request.nodes, [&](const DirectoryNode& node) {
        if (std::exchange(isFirst, false))
            PrintLine(RuleSentence(request.spelled));
        if (request.keys.isEmpty())
            PrintSharedCodes(node, request);
        else
            PrintReached(node, request);
    });
}

} // namespace qor
