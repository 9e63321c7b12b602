#include "SampleEntries.h"

#include <array>

namespace qor {

namespace {

// A directory takes the last names in this order, so a short one meets the unusual names too.
constexpr auto lastNames = std::to_array<QStringView>({
    u"Smith",       u"Adams",     u"O'Neil",   u"Baker",      u"Fischer",   u"Garcia",  u"Rossi",  u"Tanaka",
    u"Clark",       u"Davies",    u"Müller",   u"Evans",      u"Foster",    u"Dubois",  u"Hansen", u"Kim",
    u"Harris",      u"Kowalski",  u"Irving",   u"Silva",      u"Nguyễn",    u"Jones",   u"Lopez",  u"King",
    u"Novak",       u"Lambert",   u"Meyer",    u"Patel",      u"Morgan",    u"Berg",    u"Norris", u"Singh",
    u"Parker",      u"Quinn",     u"Ricci",    u"Roberts",    u"Chen",      u"Stewart", u"Costa",  u"Turner",
    u"Smith-Jones", u"Kovačević", u"Ångström", u"de la Cruz", u"Underwood", u"Vincent", u"Walker", u"Xavier",
    u"Young",       u"Zimmer",
});

constexpr auto firstNames = std::to_array<QStringView>({
    u"Anne",   u"Bruno",  u"Carol",  u"David", u"Elena", u"Frank",  u"Grace", u"Henry",  u"Irene", u"John",
    u"Karin",  u"Louis",  u"Maria",  u"Nils",  u"Olga",  u"Łukasz", u"Paula", u"Ralf",   u"Sara",  u"Tom",
    u"Uma",    u"Victor", u"Wanda",  u"Yusuf", u"Zara",  u"Alan",   u"Beth",  u"Carlos", u"Diana", u"Erik",
    u"Fatima", u"José",   u"Hannah", u"Ivan",  u"Julia", u"Kevin",  u"Laura", u"Mark",   u"Nora",  u"Oscar",
});

/// The entries take turns at these ranges of telephone numbers.
struct ExtensionRange
{
    int first;
    int step;
};
constexpr std::array extensionRanges{
    ExtensionRange{101, 1},
    ExtensionRange{2000, 3},
    ExtensionRange{40010, 17},
};

constexpr int promptStep = 7; ///< shares no factor with the directories' last prompts
constexpr int passwordEvery = 6;
const QString noPassword = u"1"_s; ///< what a new entry holds

struct OddRow
{
    QStringView lastName;
    QStringView firstName;
    QStringView extension;
    QStringView namePrompt;
    QStringView password;
};
constexpr QStringView absent;

constexpr std::array oddRows{
    OddRow{absent, absent, absent, absent, absent},
    OddRow{u"", u"", u"", u"0", u""},
    OddRow{absent, u"Anne", u"101", u"1", u"1"},
    OddRow{u"Baker", absent, u"102", u"2", u"1"},
    OddRow{u"Clark", u"John", absent, u"3", u"1"},
    OddRow{u"Davies", u"Elena", u"104", absent, u"1"},
    OddRow{u"Evans", u"Tom", u"105", u"5", absent},
    OddRow{u"Foster", u"Maria", u"106", u"-5", u"1"},
    OddRow{u"Harris", u"Nils", u"107", u"999", u"1"},
    OddRow{u"Irving", u"Olga", u"108", u"1000", u"1"},
    OddRow{u"Jones", u"Paula", u"109", u"32767", u"1"},
    OddRow{u"King", u"Ralf", u"110", u"251", u"1234567"},
    OddRow{u"Abcdefghijklmnopqrstuvwxyzabcde", u"Abcdefghijklmnopqrstuvwxyzabcde", u"123456789012345", u"12",
           u"12345678901234567890"},
};

template <std::size_t count>
QString Take(const std::array<QStringView, count>& names, int index)
{
    return names[static_cast<std::size_t>(index) % count].toString();
}

QString Extension(int position)
{
    const int rangeCount = static_cast<int>(extensionRanges.size());
    const ExtensionRange& range = extensionRanges[static_cast<std::size_t>(position % rangeCount)];
    return QString::number(range.first + range.step * (position / rangeCount));
}

} // namespace

DirectoryEntry OrdinaryEntry(int position, int lastPrompt)
{
    const int round = position / static_cast<int>(lastNames.size());
    const bool hasPassword = position % passwordEvery == passwordEvery - 1;
    return {Take(lastNames, position), Take(firstNames, promptStep * position + round), Extension(position),
            QString::number(promptStep * position % lastPrompt + 1),
            hasPassword ? QString::number(1000 + 37 * position % 9000) : noPassword};
}

int OddEntryCount()
{
    return static_cast<int>(oddRows.size());
}

DirectoryEntry OddEntry(int position)
{
    const OddRow& row = oddRows.at(static_cast<std::size_t>(position));
    return {row.lastName.toString(), row.firstName.toString(), row.extension.toString(), row.namePrompt.toString(),
            row.password.toString()};
}

} // namespace qor
