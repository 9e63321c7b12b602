// Which data may enter the directory node.
#pragma once

#include "platform/runtime/Numbers.h"

namespace qor {

class EditorForm;

/// "A" to "Z" and "a" to "z", nothing else.
constexpr bool IsLetter(QChar c)
{
    return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z');
}

/// What is wrong with an entry: at most one indented line per field, joined by CR LF; empty when nothing is.
/// An extension of more than 16 characters is invalid whatever it is made of.
QString ValidateData(const QString& lastName, const QString& firstName, const QString& extension);

/// "OK", or "" after telling the user that a code of one to three characters is too short; then the code is
/// selected and has the focus.
QString CheckAccessCode(EditorForm& form);

} // namespace qor
