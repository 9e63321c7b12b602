// A past state of the directory list, to be put back as a whole. Nothing reads it as the directory.
#pragma once

#include "platform/ui/ListItems.h"

namespace qor {

class ListView;

struct ListState
{
    std::vector<ListRow> rows; ///< with keys and colours
    SortSettings sort;
    int columnCount = 0; ///< with the hidden column of a numeric sort
    std::vector<int> selected;
    int current = -1;
    int top = 0; ///< the first row in view
};

ListState TakeState(const ListView& list);
void PutState(ListView& list, const ListState& state);

/// Whether two states are the same directory: keys, texts and what they are sorted by. Colours, selection and what is
/// in view make no difference.
bool IsSameDirectory(const ListState& one, const ListState& other);

} // namespace qor
