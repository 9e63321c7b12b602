#include "rules/TableCaptions.h"

#include "rules/PlainLetters.h"

#include <algorithm>
#include <QHash>

namespace qor {

namespace {

/// In the order of TableCaptions::columns.
enum Column { LastName, FirstName, Extension, Other };

enum class Meaning { Exact, Vague };

struct Vocabulary
{
    Column column;
    Meaning meaning;
    const char* captions; ///< their plain small letters, with blanks between
};

constexpr std::array vocabulary{
    Vocabulary{
        LastName, Meaning::Exact,
        "lastname surname familyname nachname familienname zuname nomdefamille apellido apellidos cognome apelido "
        "apelidos sobrenome achternaam familienaam efternamn efternavn etternavn sukunimi nazwisko prijmeni "
        "priezvisko vezeteknev csaladnev soyad soyadi perekonnanimi uzvards pavarde prezime priimek"},
    Vocabulary{LastName, Meaning::Vague, "name last family nom sn"},
    Vocabulary{FirstName, Meaning::Exact,
               "firstname givenname forename christianname vorname rufname prenom prenoms nombre nombres nome voornaam "
               "roepnaam fornamn fornavn etunimi imie jmeno krestnijmeno meno keresztnev utonev ad adi eesnimi vards "
               "vardas ime prenume"},
    Vocabulary{FirstName, Meaning::Vague, "first given"},
    Vocabulary{
        Extension, Meaning::Exact,
        "extension ext extn extno extensionno extensionnr extensionnumber durchwahl durchwahlnummer dw nebenstelle "
        "nebenstellennummer nst apparat klappe poste numerodeposte interno anexo ramal toestel toestelnummer "
        "doorkiesnummer anknytning internnummer lokalnummer alanumero wewnetrzny numerwewnetrzny klapka linka "
        "mellek dahili"},
    Vocabulary{Extension, Meaning::Vague,
               "phone phoneno phonenr phonenumber phonevalue businessphone officephone workphone telephone telephoneno "
               "telephonenumber businesstelephone tel telno telnr telefon telefonnr telefonnummer telefono telefone "
               "telefoon telefoonnummer puhelin numer number nummer rufnummer"},
    Vocabulary{Other, Meaning::Exact,
               "prompt password id no nr email emailaddress mail emailadresse department dept abteilung service "
               "departamento reparto afdeling title jobtitle position funktion salutation anrede company firma "
               "organization organisation mobile mobil mobilephone mobiltelefon handy cell cellphone fax telefax room "
               "raum zimmer location standort office buro building gebaude street city country initials middlename "
               "nickname comment comments notes note bemerkung bemerkungen notiz notizen remarks personalnummer "
               "employeeid"},
};

struct Caption
{
    Column column;
    Meaning meaning;
};

QHash<QString, Caption> MakeKnownCaptions()
{
    QHash<QString, Caption> known;
    for (const Vocabulary& row : vocabulary) {
        for (const QString& caption : QString::fromLatin1(row.captions).split(u' '))
            known.insert(caption, {row.column, row.meaning});
    }
    return known;
}

/// Nothing for a text that is not a caption. An empty cell is the caption of another column.
std::optional<Caption> CaptionIn(const QString& cell)
{
    static const QHash<QString, Caption> known = MakeKnownCaptions();
    if (cell.isEmpty())
        return Caption{Other, Meaning::Exact};
    const auto found = known.constFind(PlainLetters(cell).toLower());
    return found == known.constEnd() ? std::nullopt : std::optional(*found);
}

} // namespace

std::optional<TableCaptions> ReadCaptions(const QStringList& row)
{
    constexpr int missing = -1;
    TableCaptions captions{.columns = {missing, missing, missing}, .onlyKnown = true};
    std::array<Meaning, 3> meanings{};
    for (int i = 0; i < row.size(); ++i) {
        const auto caption = CaptionIn(row[i]);
        captions.onlyKnown = captions.onlyKnown && caption;
        if (!caption || caption->column == Other)
            continue;
        int& column = captions.columns.at(caption->column);
        Meaning& meaning = meanings.at(caption->column);
        if (column != missing && meaning <= caption->meaning)
            continue;
        column = i;
        meaning = caption->meaning;
    }
    const bool lacksOne = std::ranges::find(captions.columns, missing) != captions.columns.end();
    return lacksOne ? std::nullopt : std::optional(captions);
}

} // namespace qor
