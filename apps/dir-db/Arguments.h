// The files and options that a subcommand takes.
#pragma once

#include "platform/runtime/Text.h"

#include <functional>
#include <optional>
#include <QStringList>
#include <vector>

namespace CLI {
class App;
}

namespace qor {

enum class Need { Optional, Always };

/// Declares the files and options of a subcommand and the variables for their values, which have to live as long as its
/// work. A value that cannot be taken is refused with a sentence, and the work does not begin.
class Arguments
{
public:
    explicit Arguments(CLI::App& app) : mApp(app) {}

    /// A file by position, in the order of these calls. Names that are empty or not UTF-8 are refused.
    void File(const char* placeholder, QString& fileName, const char* purpose, Need need = Need::Always);
    /// The same for any text.
    void Text(const char* placeholder, QString& text, const char* purpose, Need need = Need::Always);
    /// "--rejected OUT"
    void FileOption(const char* option, const char* placeholder, QString& fileName, const char* purpose);
    /// "--editor ROLE"
    void TextOption(const char* option, const char* placeholder, QString& text, const char* purpose);
    /// "--csv"
    void Flag(const char* option, bool& isSet, const char* purpose);
    /// "--node N" with a number of 16 bits.
    void Number(const char* option, qint16& number, const char* purpose, Need need = Need::Optional);
    void Number(const char* option, std::optional<qint16>& number, const char* purpose);
    /// "--by last", one of the choices.
    void Choice(const char* option, const QStringList& choices, QString& choice, const char* purpose);

    /// Adds a check of the values together, which is made when all of them are known. It returns a sentence that says
    /// what is wrong, or nothing.
    void Check(std::function<QString()> fault) { mChecks.push_back(std::move(fault)); }
    /// The first sentence that a check returns, or nothing.
    QString Fault() const;

private:
    void Add(const char* name, const char* placeholder, const char* purpose, Need need,
             const std::function<void(const QString&)>& take);

    CLI::App& mApp;
    std::vector<std::function<QString()>> mChecks;
};

} // namespace qor
