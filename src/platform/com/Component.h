// Components by their programmatic identifier: creation, and calls by name.
#pragma once

#include "platform/com/ComObject.h"
#include "platform/runtime/Text.h"

#include <initializer_list>
#include <QLatin1String>

namespace qor {

/// Makes an object of a built-in class, with one reference.
using MakeObject = IDispatch* (*)();

/// Adds a class that stands in when the registry names none under this identifier.
void AddBuiltInClass(QLatin1String programId, MakeObject make);

/// A new object of the class: the one that the registry names, loaded from its absolute path, else the
/// built-in one. Raises RuntimeError when there is neither, or when the registered library cannot be used: a
/// relative path, one that others could change (TrustProblem), no class factory.
ComReference<IDispatch> CreateObject(const QString& programId);

/// A text as an argument; the variant points into the text, which must outlive the call.
VARIANT TextArgument(const QString& text);
VARIANT IntegerResult(std::int32_t value);
VARIANT BooleanResult(bool value);

/// The value that a call returned. Both raise RuntimeError for another type.
std::int32_t IntegerIn(const VARIANT& result);
bool BooleanIn(const VARIANT& result);

/// Calls a method by name, the arguments in the order of declaration, and returns its result. Raises
/// RuntimeError when the object does not know the method or refuses the call.
VARIANT CallByName(IDispatch& object, const QString& method, std::initializer_list<VARIANT> arguments);

} // namespace qor
