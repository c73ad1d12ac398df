#include "RepairOverview.h"
#include "RepairOrders.h"
#include "zol/core/Messages.h"
#include "zol/core/Schema.h"
#include "zol/core/Sql.h"
#include <QHash>
#include "zol/instructions/InstructionRow.h"

namespace zol {

const QList<ISSpalte> &ISAuftraegeSpalten()
{
    static const QList<ISSpalte> s = {
        {QStringLiteral("Name"), QStringLiteral("Name"), false},
        {QStringLiteral("IdentNr"), QStringLiteral("IdentNr"), false},
        {QStringLiteral("LfdNr"), QStringLiteral("LaufendeNummer"), false},
        {QStringLiteral("Meldedatum"), QStringLiteral("Datum"), false},
        {QStringLiteral("Dringlichkeit"), QStringLiteral("Prioritaet"), true},
        {QStringLiteral("ZuErledigen"), QStringLiteral("ZuErledigenBis"), true},
        {QStringLiteral("Std"), QStringLiteral("Stunden"), true},
        {QStringLiteral("Min"), QStringLiteral("Minuten"), true},
        {QStringLiteral("Lohnkosten"), QStringLiteral("Lohnkosten"), true},
        {QStringLiteral("Materialkosten"), QStringLiteral("Materialkosten"), true},
        {QStringLiteral("Fremdkosten"), QStringLiteral("Fremdkosten"), true},
        {QStringLiteral("Auftragsherkunft"), QStringLiteral("Auftragsherkunft"), true},
        {QStringLiteral("Auftragsart"), QStringLiteral("Auftragsart"), true},
        {QStringLiteral("Schadensart"), QStringLiteral("Schadensart"), true},
        {QStringLiteral("Schadensursache"), QStringLiteral("Schadensursache"), true},
        {QStringLiteral("Bemerkung"), QStringLiteral("Bemerkung"), true},
        {QStringLiteral("Druck"), QStringLiteral("Druck"), true},
        {QStringLiteral("Kostenstelle"), QStringLiteral("Kostenstelle"), false},
        {QStringLiteral("Gewerk"), QStringLiteral("Gewerk"), false},
        {QStringLiteral("ErledigtJN"), QStringLiteral("ErledigtJN"), false},
        {QStringLiteral("ErledigtAm"), QStringLiteral("ErledigtAm"), false},
    };
    return s;
}

bool istCodeSpalte(int position) { return position >= 11 && position <= 14; }

const QList<CodeText> &codeListeDerSpalte(int position)
{
    switch (position) {
    case 11: return AuftragsHerkunftListe();
    case 12: return AuftragsartListe();
    case 13: return SchadensartListe();
    default: return SchadensUrsacheListe();
    }
}

QString ISAuftraegeFilter::auswahlText() const
{
    return QStringLiteral("(Auswahl: ") + Name + QStringLiteral("  /  ") + Kostenstelle + QStringLiteral("  /  ")
           + Gewerk + QStringLiteral("   /   ") + MeldedatumVon + QStringLiteral(" - ") + MeldedatumBis
           + QStringLiteral("   /   ") + ZuErledigenVon + QStringLiteral(" - ") + ZuErledigenBis + QStringLiteral(")");
}

bool FilterDatumVerlassen(QString &box)
{
    box = box.trimmed();
    if (!box.isEmpty() && !datumAusText(box)) {
        ZeigeMeldung(QStringLiteral("Kein gültiges Datum. Geben Sie 'dd.mm.yyyy' ein"), Style::Exclamation);
        return false;
    }
    return true;
}

bool FilterIntervallPruefen(const QString &von, const QString &bis)
{
    const auto v = datumAusText(von), b = datumAusText(bis);
    if (v && b && *b < *v) {
        ZeigeMeldung(QStringLiteral("Das Zeitintervall ist nicht plausibel"), Style::Exclamation);
        return false;
    }
    return true;
}

ISAuftraegeAbfrage baueAbfrage(const ISAuftraegeFilter &f)
{
    ISAuftraegeAbfrage a;
    QStringList teile;
    if (f.status == ISAuftraegeFilter::NichtErledigt)
        teile << QStringLiteral("ErledigtJN = 0");
    else if (f.status == ISAuftraegeFilter::Erledigt)
        teile << QStringLiteral("ErledigtJN <> 0");
    // Names, cost centres and trades take the legacy wildcards, case ignored.
    const std::pair<const QString *, const char *> muster[] = {
        {&f.Name, "Name"}, {&f.Kostenstelle, "Kostenstelle"}, {&f.Gewerk, "Gewerk"}};
    for (const auto &[box, feld] : muster)
        if (!box->trimmed().isEmpty()) {
            teile << QStringLiteral("%1 GLOB ?").arg(QLatin1String(feld));
            a.werte << caselessGlob(*box);
        }
    const std::tuple<const QString *, const char *, const char *> daten[] = {
        {&f.MeldedatumVon, "Datum", ">="}, {&f.MeldedatumBis, "Datum", "<="},
        {&f.ZuErledigenVon, "ZuErledigenBis", ">="}, {&f.ZuErledigenBis, "ZuErledigenBis", "<="}};
    for (const auto &[box, feld, vergleich] : daten)
        if (!box->trimmed().isEmpty()) {
            // Stored dates compare as text, year first.
            teile << QStringLiteral("%1 %2 ?").arg(QLatin1String(feld), QLatin1String(vergleich));
            a.werte << datumGespeichert(box->trimmed());
        }
    if (!teile.isEmpty())
        a.where = QStringLiteral(" WHERE ") + teile.join(QStringLiteral(" AND "));
    return a;
}

std::optional<QString> ISSortierung::klick(int position)
{
    struct Gruppe {
        int flag;
        const char *auf, *ab;
    };
    static const QHash<int, Gruppe> gruppen = {
        {0, {0, " ORDER BY Name, IdentNr, LaufendeNummer ASC", " ORDER BY Name, IdentNr, LaufendeNummer DESC"}},
        {1, {0, " ORDER BY Name, IdentNr, LaufendeNummer ASC", " ORDER BY Name, IdentNr, LaufendeNummer DESC"}},
        {2, {0, " ORDER BY Name, IdentNr, LaufendeNummer ASC", " ORDER BY Name, IdentNr, LaufendeNummer DESC"}},
        {3, {1, " ORDER BY Datum ASC", " ORDER BY Datum DESC"}},
        {4, {2, " ORDER BY Prioritaet ASC", " ORDER BY Prioritaet DESC"}},
        {5, {3, " ORDER BY ZuErledigenBis ASC", " ORDER BY ZuErledigenBis DESC"}},
        {6, {4, " ORDER BY Stunden ASC, Minuten ASC", " ORDER BY Stunden DESC, Minuten DESC"}},
        {7, {4, " ORDER BY Stunden ASC, Minuten ASC", " ORDER BY Stunden DESC, Minuten DESC"}},
        {8, {5, " ORDER BY Lohnkosten ASC", " ORDER BY Lohnkosten DESC"}},
        {9, {6, " ORDER BY materialkosten ASC", " ORDER BY materialkosten DESC"}},
        {10, {7, " ORDER BY Fremdkosten ASC", " ORDER BY Fremdkosten DESC"}},
        {17, {8, " ORDER BY Kostenstelle ASC", " ORDER BY Kostenstelle DESC"}},
        {18, {9, " ORDER BY Gewerk ASC", " ORDER BY Gewerk DESC"}},
        {20, {10, " ORDER BY erledigtam ASC", " ORDER BY erledigtam DESC"}},
    };
    const auto g = gruppen.constFind(position);
    if (g == gruppen.cend())
        return std::nullopt;
    bool &flag = m_flag[g->flag];
    const char *sql = flag ? g->auf : g->ab;
    flag = !flag;
    return QString::fromLatin1(sql);
}

bool ZelleEditierbar(int position)
{
    if (position >= 0 && position < ISAuftraegeSpalten().size() && ISAuftraegeSpalten().at(position).editierbar)
        return true;
    ZeigeMeldung(QStringLiteral("Das Feld ist nicht editierbar"), Style::Exclamation);
    return false;
}

namespace {

bool zuLang(const QString &feld, const QString &text)
{
    const int size = Schema::Size(QStringLiteral("Erfassung"), feld);
    if (size > 0 && text.size() > size) {
        ZeigeMeldung(QStringLiteral("Es sind höchstens %1 Zeichen erlaubt").arg(size), Style::Exclamation);
        return true;
    }
    return false;
}

bool nichtNumerisch(const QString &text)
{
    if (!isNumeric(text)) {
        ZeigeMeldung(QStringLiteral("Es sind nur numerische Zeichen erlaubt"), Style::Exclamation);
        return true;
    }
    return false;
}

}

bool PruefeZelle(int position, const QString &text)
{
    // The record's order: Stunden follows Datum, so the cells from Dringlichkeit
    // on are checked with the rule of the field before them.
    enum Test { Kein, Datum, Zahl, Minuten };
    struct Regel {
        const char *feld;
        Test test;
    };
    static const Regel regeln[] = {
        {"Name", Kein}, {"IdentNr", Kein}, {"LaufendeNummer", Kein}, {"Datum", Datum}, {"Stunden", Zahl},
        {"Minuten", Minuten}, {"Lohnkosten", Zahl}, {"materialkosten", Zahl}, {"Fremdkosten", Zahl},
        {"AuftragsHerkunft", Kein}, {"Auftragsart", Kein}, {"Schadensart", Kein}, {"SchadensUrsache", Kein},
        {nullptr, Kein}, {"Druck", Kein}, {"Kostenstelle", Kein}, {"Gewerk", Kein}, {"Prioritaet", Zahl},
        {"ZuErledigenBis", Datum}, {"ErledigtJN", Kein}, {"erledigtam", Datum}};
    if (position < 0 || position >= int(std::size(regeln)))
        return false;
    const Regel &r = regeln[position];
    if ((r.test == Zahl || r.test == Minuten) && nichtNumerisch(text))
        return false;
    if (r.feld && zuLang(QLatin1String(r.feld), text))
        return false;
    if (r.test == Minuten && numericValue(text) > 59) {
        ZeigeMeldung(QStringLiteral("Maximal 59 Minuten eingeben"), Style::Exclamation);
        return false;
    }
    if (r.test == Datum && !text.isEmpty() && !datumAusText(text)) {
        ZeigeMeldung(QStringLiteral("Ungültiges Datum"), Style::Exclamation);
        return false;
    }
    // The value must also suit the field it goes to: a number for a number
    // field, no more characters than the field holds.
    if (istCodeSpalte(position))
        return true;
    const QString ziel = ISAuftraegeSpalten().at(position).feld;
    const TableDef def = Schema::table(QStringLiteral("Erfassung"));
    const int i = def.fieldIndex(ziel);
    if (i >= 0 && def.fields.at(i).type == FieldType::Double && nichtNumerisch(text))
        return false;
    return !zuLang(ziel, text);
}

namespace {
bool passtZumGewerk(const QSqlDatabase &db, const Login &login, const QString &gewerk)
{
    if (login.Level != QLatin1String("Werker"))
        return true;
    return scalar(db, QStringLiteral("SELECT ? GLOB ?"), {gewerk, caselessGlob(login.WerkerGewerk)}).toInt() == 1;
}
}

bool darfZeileOeffnen(const QSqlDatabase &db, const Login &login, const QString &gewerk)
{
    return login.Level != QLatin1String("Auswerter") && passtZumGewerk(db, login, gewerk);
}

bool darfZeileLoeschen(const QSqlDatabase &db, const Login &login, const QString &gewerk)
{
    return passtZumGewerk(db, login, gewerk);
}

bool ISAuftraegeNurLesen(const Login &login, bool geschuetzt)
{
    if (login.Level == QLatin1String("Administrator") || login.Level == QLatin1String("Master"))
        return false;
    return login.Level == QLatin1String("Auswerter") || login.Level == QLatin1String("Werker") || geschuetzt;
}

void schreibeZelle(const QSqlDatabase &db, qint64 rowId, int position, const QString &text)
{
    const ISSpalte &s = ISAuftraegeSpalten().at(position);
    QVariant wert = text;
    if (istCodeSpalte(position)) {
        const QStringList kurz = kurzTexte(codeListeDerSpalte(position));
        wert = std::max<qsizetype>(0, kurz.indexOf(text));
    } else if (s.feld == QLatin1String("ZuErledigenBis")) {
        wert = datumGespeichert(text);
    } else {
        const TableDef def = Schema::table(QStringLiteral("Erfassung"));
        if (def.fields.at(def.fieldIndex(s.feld)).type == FieldType::Double)
            wert = numericValue(text);
    }
    exec(db, QStringLiteral("UPDATE Erfassung SET %1 = ? WHERE rowid = ?").arg(ident(s.feld)), {wert, rowId});
}

int loescheZeilen(const QSqlDatabase &db, const QList<qint64> &rowIds)
{
    Transaction t(db);
    int n = 0;
    Statement del(db, QStringLiteral("DELETE FROM Erfassung WHERE rowid = ?"));
    for (qint64 id : rowIds)
        n += del.run({id}).numRowsAffected();
    t.commit();
    return n;
}

}
