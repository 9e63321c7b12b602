// Any bytes as a registry file: it is read to its end, and both kinds of names are in lower case.
#include "platform/shell/RegistryText.h"

#include <cstdlib>

using namespace qor;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const RegistryValues values = ParseRegistryText(DecodeRegistryText(bytes));
    for (auto key = values.begin(); key != values.end(); ++key) {
        if (key.key().isEmpty() || key.key() != key.key().toLower())
            std::abort();
        for (auto value = key->begin(); value != key->end(); ++value) {
            if (value.key() != value.key().toLower())
                std::abort();
        }
    }
    return 0;
}
