// Any bytes as a registry file: it is read to its end, and both kinds of names are in lower case. Values that are added
// can be read; taken out again they leave the text as it was.
#include "platform/shell/RegistryEdit.h"
#include "platform/shell/RegistryText.h"

#include <cstdlib>

using namespace qor;

namespace {

void Expect(bool isTrue)
{
    if (!isTrue)
        std::abort();
}

bool IsLower(const QString& text)
{
    return text == text.toLower();
}

void AddAndRemove(const QString& text)
{
    const QList<RegistryEntry> entries{{u"K"_s, {{{}, u"\\\""_s}, {u"N"_s, {}}}}, {u"K\\S"_s, {{u"="_s, u"]"_s}}}};
    const QString added = WithEntries(text, entries);
    Expect(WithEntries(added, entries) == added);
    RegistryValues values = ParseRegistryText(added);
    Expect(values[u"k"_s][{}].data == QByteArray("\\\"\0", 3) && values[u"k"_s][u"n"_s].data == QByteArray("\0", 1) &&
           values[u"k\\s"_s][u"="_s].data == QByteArray("]\0", 2));
    const bool hadKeys = text.contains(u"[k"_s, Qt::CaseInsensitive);
    Expect(text.isEmpty() || hadKeys || WithoutEntries(added, entries) == text);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const QString text = DecodeRegistryText(bytes);
    const RegistryValues values = ParseRegistryText(text);
    for (auto key = values.begin(); key != values.end(); ++key) {
        Expect(!key.key().isEmpty() && IsLower(key.key()));
        for (auto value = key->begin(); value != key->end(); ++value)
            Expect(IsLower(value.key()));
    }
    AddAndRemove(text);
    return 0;
}
