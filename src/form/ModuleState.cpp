#include "form/ModuleState.h"

namespace qor {

ModuleState& Module()
{
    thread_local ModuleState state;
    return state;
}

} // namespace qor
