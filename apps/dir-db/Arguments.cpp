#include "Arguments.h"

#include <CLI/App.hpp>
#include <QStringDecoder>

namespace qor {

namespace {

[[noreturn]] void Refuse(const QString& sentence)
{
    throw CLI::ValidationError(sentence.toStdString());
}

/// Arguments may be any bytes, but no file whose name is not UTF-8 can be opened.
QString TextOf(const std::string& bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
    if (decoder.hasError())
        Refuse(u"\"%1\" is not UTF-8. If it is a file, rename it or make a link with another name to it."_s.arg(text));
    return text;
}

QString FileName(const QString& text)
{
    if (text.isEmpty())
        Refuse(u"A file name must not be empty."_s);
    return text;
}

qint16 NumberOf(const char* option, const QString& text)
{
    bool isNumber = false;
    const qint16 number = text.toShort(&isNumber);
    if (!isNumber || text.trimmed() != text)
        Refuse(u"%1 needs a whole number from -32768 to 32767, not \"%2\"."_s.arg(QString::fromLatin1(option), text));
    return number;
}

} // namespace

void Arguments::Add(const char* name, const char* placeholder, const char* purpose, Need need,
                    const std::function<void(const QString&)>& take)
{
    mApp.add_option_function<std::string>(
            name, [take](const std::string& bytes) { take(TextOf(bytes)); }, purpose)
        ->type_name(placeholder)
        ->required(need == Need::Always)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
}

void Arguments::File(const char* placeholder, QString& fileName, const char* purpose, Need need)
{
    Add(placeholder, "", purpose, need, [&fileName](const QString& text) { fileName = FileName(text); });
}

void Arguments::Text(const char* placeholder, QString& text, const char* purpose, Need need)
{
    Add(placeholder, "", purpose, need, [&text](const QString& given) { text = given; });
}

void Arguments::FileOption(const char* option, const char* placeholder, QString& fileName, const char* purpose)
{
    Add(option, placeholder, purpose, Need::Optional, [&fileName](const QString& text) { fileName = FileName(text); });
}

void Arguments::TextOption(const char* option, const char* placeholder, QString& text, const char* purpose)
{
    Add(option, placeholder, purpose, Need::Optional, [&text](const QString& given) { text = given; });
}

void Arguments::Flag(const char* option, bool& isSet, const char* purpose)
{
    mApp.add_flag(option, isSet, purpose);
}

void Arguments::Number(const char* option, qint16& number, const char* purpose, Need need)
{
    Add(option, "N", purpose, need, [option, &number](const QString& text) { number = NumberOf(option, text); });
}

void Arguments::Number(const char* option, std::optional<qint16>& number, const char* purpose)
{
    Add(option, "N", purpose, Need::Optional,
        [option, &number](const QString& text) { number = NumberOf(option, text); });
}

void Arguments::Choice(const char* option, const QStringList& choices, QString& choice, const char* purpose)
{
    Add(option, choices.join(u'|').toLatin1(), purpose, Need::Optional,
        [option, choices, &choice](const QString& text) {
            if (!choices.contains(text))
                Refuse(
                    u"%1 needs one of %2, not \"%3\"."_s.arg(QString::fromLatin1(option), choices.join(u", "_s), text));
            choice = text;
        });
}

QString Arguments::Fault() const
{
    for (const auto& check : mChecks) {
        QString fault = check();
        if (!fault.isEmpty())
            return fault;
    }
    return {};
}

} // namespace qor
