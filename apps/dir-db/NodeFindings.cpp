#include "NodeFindings.h"

#include "platform/runtime/Numbers.h"
#include "Query.h"
#include "rules/TypedText.h"
#include "rules/Validation.h"

#include <array>

namespace qor {

namespace {

QString PartitionOf(const Recordset& row)
{
    return u"configuration %1, partition %2"_s.arg(row.Field(0).toString(), row.Field(1).toString());
}

QString InQuotes(QString text)
{
    return u'\'' + text.replace(u'\'', u"''"_s) + u'\'';
}

QString UnusableMaximum(const Recordset& row)
{
    const QVariant& highest = row.Field(2);
    if (WholeNumber16(highest).value_or(0) > 0)
        return {};
    if (highest.isNull())
        return PartitionOf(row) + u": none"_s;
    const QString text = row.Field(3).toString();
    return PartitionOf(row) + u": "_s + (highest.typeId() == QMetaType::QString ? InQuotes(text) : text);
}

QString DirectoryWithoutNode(const Recordset& row)
{
    return PartitionOf(row) + u", DIR %1: %2 entries"_s.arg(row.Field(2).toString(), row.Field(3).toString());
}

QString NodeOutsidePool(const Recordset& row)
{
    return PartitionOf(row) + u", %1 %2"_s.arg(row.Field(2).toString(), row.Field(3).toString());
}

QString PartitionWithoutPattern(const Recordset& row)
{
    return PartitionOf(row) + u": in "_s + row.Field(2).toString();
}

/// A kind that one statement finds. The engine turns numbers into texts, so that they look as they are stored.
struct StatedSearch
{
    const char* kind;
    const char* rows;
    QString (*place)(const Recordset& row); ///< describes a row; empty to leave it out
};

constexpr std::array statedSearches{
    StatedSearch{
        "partitions whose directories the editor does not open, as their maximum of message nodes is not from "
        "1 to 32767",
        "SELECT '' || ConfigID, '' || PartID, highest, '' || highest FROM (SELECT DISTINCT ConfigID, PartID, (SELECT "
        "Max_number FROM Node_Type_Max WHERE Config_ID = ConfigID AND PartitionID = PartID AND NodeType_ID = 0) AS "
        "highest FROM Node_DIR WHERE NodeTypeID = 16) AS p ORDER BY ConfigID, PartID",
        UnusableMaximum},
    StatedSearch{
        "directories whose entries no editor shows, as their node is missing",
        "SELECT '' || ConfigID, '' || PartID, '' || NodeMasterID, entries FROM (SELECT ConfigID, PartID, NodeMasterID, "
        "COUNT(*) AS entries FROM Detail_DIR GROUP BY ConfigID, PartID, NodeMasterID) AS e "
        "WHERE NOT EXISTS (SELECT 1 FROM Node_DIR AS d WHERE d.ConfigID = e.ConfigID AND d.PartID = e.PartID "
        "AND d.NodeNumber = e.NodeMasterID AND d.NodeTypeID = 16) ORDER BY ConfigID, PartID, NodeMasterID",
        DirectoryWithoutNode},
    StatedSearch{
        "nodes that lists of nodes do not show, as their row in Node_General_Pool is missing",
        "SELECT '' || ConfigID, '' || PartID, kind, '' || NodeNumber "
        "FROM (SELECT ConfigID, PartID, 16 AS type, 'DIR' AS kind, NodeNumber FROM Node_DIR WHERE NodeTypeID = "
        "16 UNION ALL SELECT ConfigID, PartID, 0, 'MSG', NodeNumber FROM Node_MSG) AS n "
        "WHERE NOT EXISTS (SELECT 1 FROM Node_General_Pool AS p WHERE p.ConfigID = n.ConfigID AND "
        "p.PartID = n.PartID AND p.NodeTypeID = n.type AND p.NodeNumber = n.NodeNumber) "
        "ORDER BY type DESC, ConfigID, PartID, NodeNumber",
        NodeOutsidePool},
    StatedSearch{
        "partitions in which the editor makes no message nodes, though it says so, as message node 0 is missing",
        "SELECT '' || ConfigID, '' || PartID, place "
        "FROM (SELECT DISTINCT ConfigID, PartID FROM Node_DIR WHERE NodeTypeID = 16) AS p, "
        "(SELECT 'Node_MSG' AS place UNION ALL SELECT 'Node_General_Pool') AS t "
        "WHERE (ConfigID, PartID, place) NOT IN (SELECT ConfigID, PartID, 'Node_MSG' FROM Node_MSG WHERE NodeNumber = "
        "0 UNION ALL SELECT ConfigID, PartID, 'Node_General_Pool' FROM Node_General_Pool WHERE NodeTypeID = 0 AND "
        "NodeNumber = 0) ORDER BY place DESC, ConfigID, PartID",
        PartitionWithoutPattern},
};

/// A directory node's row, with the maximum of its partition.
constexpr char nodesText[] =
    "SELECT ConfigID, PartID, NodeNumber, NodeDescription, UsePasswords, AccessCode, StartingPromptNumber, "
    "(SELECT Max_number FROM Node_Type_Max WHERE Config_ID = ConfigID AND PartitionID = PartID AND NodeType_ID = 0) AS "
    "Max_number FROM Node_DIR WHERE NodeTypeID = 16 ORDER BY ConfigID, PartID, NodeNumber";

QString UnusableNumber(const Recordset& node)
{
    QStringList columns;
    for (const QString& column : {u"ConfigID"_s, u"PartID"_s, u"NodeNumber"_s}) {
        if (!WholeNumber16(node.Field(column)))
            columns << column;
    }
    return columns.join(u", "_s);
}

QString ChangedLabel(const Recordset& node)
{
    const QString label = node.Field(u"NodeDescription"_s).toString();
    QStringList faults;
    if (label.size() > highestLabelLength)
        faults << u"cut after %1 characters"_s.arg(highestLabelLength);
    if (!IsAcceptableLabel(label.left(highestLabelLength)))
        faults << u"refused for a double quote or two single quotes in a row"_s;
    return faults.join(u", "_s);
}

/// The code itself is a secret.
QString ChangedAccessCode(const Recordset& node)
{
    const QString code = node.Field(u"AccessCode"_s).toString();
    const QString digits = Admitted(code, IsDigit);
    QStringList faults;
    if (digits.size() < code.size())
        faults << u"what is no digit is dropped"_s;
    if (digits.size() > highestAccessCodeLength)
        faults << u"cut after %1 digits"_s.arg(highestAccessCodeLength);
    if (!IsAcceptableAccessCode(digits))
        faults << u"refused, as it has fewer than %1 digits"_s.arg(lowestAccessCodeLength);
    return faults.join(u", "_s);
}

QString StartingPromptOutside(const Recordset& node)
{
    const auto prompt = WholeNumber(node.Field(u"StartingPromptNumber"_s));
    const int highest = WholeNumber16(node.Field(u"Max_number"_s)).value_or(0);
    if (!prompt || highest <= 0 || (*prompt >= 1 && *prompt <= highest)) // without a maximum there is no list
        return {};
    return u"%1, not from 1 to %2"_s.arg(*prompt).arg(highest);
}

QString ReplacedHeader(const Recordset& node)
{
    QStringList columns;
    for (const QString& column : {u"NodeDescription"_s, u"AccessCode"_s}) {
        if (node.Field(column).isNull())
            columns << column;
    }
    const auto usePasswords = WholeNumber(node.Field(u"UsePasswords"_s));
    if (usePasswords != 0 && usePasswords != 1)
        columns << u"UsePasswords"_s;
    if (!WholeNumber(node.Field(u"StartingPromptNumber"_s)))
        columns << u"StartingPromptNumber"_s;
    return columns.join(u", "_s);
}

/// A kind that is found by a look at each directory node.
struct NodeSearch
{
    const char* kind;
    QString (*fault)(const Recordset& node); ///< describes it; empty when there is none
};

constexpr std::array nodeSearches{
    NodeSearch{"directory nodes that the editor leaves out, as a number is not a whole one from -32768 to 32767",
               UnusableNumber},
    NodeSearch{"labels that the editor cuts or refuses to save", ChangedLabel},
    NodeSearch{"access codes that the editor changes or refuses to save", ChangedAccessCode},
    NodeSearch{"starting prompts in whose place the editor shows 1, as its list does not have them",
               StartingPromptOutside},
    NodeSearch{"directory nodes of which the editor shows defaults for missing values", ReplacedHeader},
};

Finding Stated(Connection& connection, const StatedSearch& search)
{
    Finding finding{QString::fromLatin1(search.kind)};
    ForEachRow(connection, QString::fromLatin1(search.rows), [&](const Recordset& row) {
        const QString place = search.place(row);
        if (!place.isEmpty())
            finding.Add(place);
    });
    return finding;
}

Findings InEachNode(Connection& connection)
{
    Findings findings;
    for (const NodeSearch& search : nodeSearches)
        findings << Finding{QString::fromLatin1(search.kind)};
    ForEachRow(connection, QString::fromLatin1(nodesText), [&](const Recordset& node) {
        const QString place = PartitionOf(node) + u", DIR %1: "_s.arg(node.Field(2).toString());
        for (std::size_t i = 0; i < nodeSearches.size(); ++i) {
            const QString fault = nodeSearches[i].fault(node);
            if (!fault.isEmpty())
                findings[static_cast<qsizetype>(i)].Add(place + fault);
        }
    });
    return findings;
}

} // namespace

Findings FindInNodes(Connection& connection)
{
    Findings findings;
    for (const StatedSearch& search : statedSearches)
        findings << Stated(connection, search);
    return findings << InEachNode(connection);
}

} // namespace qor
