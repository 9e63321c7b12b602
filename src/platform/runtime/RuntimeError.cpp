#include "platform/runtime/RuntimeError.h"

namespace qor {

RuntimeError::RuntimeError(ErrorNumber number, QString description, QString source)
    : mNumber(number), mSource(std::move(source)), mDescription(std::move(description)), mWhat(mDescription.toUtf8())
{
}

} // namespace qor
