#include "StoredMessages.h"

#include "platform/runtime/Numbers.h"
#include "Query.h"

namespace qor {

StoredMessages::StoredMessages(Connection& connection)
{
    const QString text = u"SELECT ConfigID, PartID, NodeNumber, NodeDescription, KELFilename, EXISTS (SELECT 1 FROM "
                         "Node_General_Pool AS p WHERE p.ConfigID = m.ConfigID AND p.PartID = m.PartID AND "
                         "p.NodeTypeID = 0 AND p.NodeNumber = m.NodeNumber) FROM Node_MSG AS m"_s;
    ForEachRow(connection, text, [this](const Recordset& row) {
        const auto config = WholeNumber16(row.Field(0));
        const auto partition = WholeNumber16(row.Field(1));
        const auto number = WholeNumber(row.Field(2));
        if (config && partition && number)
            mMessages[{*config, *partition}].insert(
                *number, {row.Field(3).toString(), row.Field(4).toString(), row.Field(5).toBool()});
    });
}

const MessagesByNumber& StoredMessages::Of(const std::optional<Partition>& partition) const
{
    static const MessagesByNumber none;
    if (!partition)
        return none;
    const auto messages = mMessages.find({partition->config, partition->number});
    return messages == mMessages.end() ? none : messages->second;
}

} // namespace qor
