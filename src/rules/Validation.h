// Which data may enter the directory node, and which may be saved.
#pragma once

#include "rules/DirectoryNode.h"

#include <functional>
#include <optional>
#include <span>

namespace qor {

/// "A" to "Z" and "a" to "z", nothing else.
constexpr bool IsLetter(QChar c)
{
    return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z');
}

/// What is wrong with an entry: at most one indented line per field, joined by CR LF; empty when nothing is.
/// An extension of more than 16 characters is invalid whatever it is made of.
QString ValidateData(const QString& lastName, const QString& firstName, const QString& extension);

/// Whether ValidateData finds nothing wrong with it.
bool IsValid(const DirectoryEntry& entry);

/// Whether an entry may be saved: both names and an extension that passes the numeric test.
bool IsSound(const DirectoryEntry& entry);

/// How many characters the form takes.
inline constexpr qsizetype highestLabelLength = 30;
inline constexpr qsizetype highestAccessCodeLength = 8;
/// Of an access code, unless it is empty.
inline constexpr qsizetype lowestAccessCodeLength = 4;

/// Whether a text may be the node's label: neither a double quote nor two single quotes in a row.
bool IsAcceptableLabel(const QString& label);

/// Whether an access code is empty or long enough.
bool IsAcceptableAccessCode(const QString& code);

/// The rows whose prompt came before. meet: whether a prompt was met before; it remembers the prompt.
std::vector<std::size_t> RepeatedPrompts(std::span<const DirectoryEntry> entries,
                                         const std::function<bool(const QString& prompt)>& meet);

/// Why entries may not be saved without a question.
struct EntriesFault
{
    bool isInvalid;  ///< an entry is not sound; else a prompt is used twice
    std::size_t row; ///< the first entry that is not sound, else the last one whose prompt came before
};

/// meet: as for RepeatedPrompts.
std::optional<EntriesFault> FindFault(const std::vector<DirectoryEntry>& entries,
                                      const std::function<bool(const QString& prompt)>& meet);

} // namespace qor
