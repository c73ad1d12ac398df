#include "RepairOrders.h"
#include "zol/core/Clock.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/core/RecordKeys.h"
#include "zol/core/Sql.h"
#include "zol/instructions/InstructionRow.h"
#include <QRegularExpression>

namespace zol {

// ------------------------------------------------------------------ code lists

const QList<CodeText> &AuftragsHerkunftListe()
{
    static const QList<CodeText> l = {{QStringLiteral("Keine Angabe"), QStringLiteral("KA")},
                                      {QStringLiteral("WI"), QStringLiteral("WI")},
                                      {QStringLiteral("Produktion"), QStringLiteral("Prod.")},
                                      {QStringLiteral("Reparatur"), QStringLiteral("Rep.")},
                                      {QStringLiteral("Sonstiges"), QStringLiteral("Sonst.")}};
    return l;
}

const QList<CodeText> &AuftragsartListe()
{
    static const QList<CodeText> l = {{QStringLiteral("Keine Angabe"), QStringLiteral("KA")},
                                      {QStringLiteral("Befundbearbeitung WI"), QStringLiteral("Bef.-bearb. WI")},
                                      {QStringLiteral("Fremdleist.f. Dritte"), QStringLiteral("Fremdl./f. Dritte")},
                                      {QStringLiteral("Investition/Neubau"), QStringLiteral("Invest., Neubau")},
                                      {QStringLiteral("Gepl. IS (Reparatur)"), QStringLiteral("Gepl. IS (Rep.)")},
                                      {QStringLiteral("Ungepl. IS (Störung)"), QStringLiteral("Ungepl. IS (Str.)")},
                                      {QStringLiteral("Teil-IS"), QStringLiteral("Teil-IS")}};
    return l;
}

const QList<CodeText> &SchadensartListe()
{
    // Stored by position: "Pneumatik" stands before "Oxydation/Rost" and must stay there.
    static const QList<CodeText> l = {{QStringLiteral("Keine Angabe"), QStringLiteral("KA")},
                                      {QStringLiteral("Alterung"), QStringLiteral("Alterung")},
                                      {QStringLiteral("Beschädigung"), QStringLiteral("Beschäd./Verf.")},
                                      {QStringLiteral("Crash"), QStringLiteral("Crash")},
                                      {QStringLiteral("Dichtigkeit"), QStringLiteral("Dicht./Durchschl.")},
                                      {QStringLiteral("Elektrische Anlage"), QStringLiteral("El. Anlage")},
                                      {QStringLiteral("Festgang"), QStringLiteral("Fest./Schwerg.")},
                                      {QStringLiteral("Geräusch"), QStringLiteral("Geräusch")},
                                      {QStringLiteral("Hydraulikfehler"), QStringLiteral("Hydr. Fehler")},
                                      {QStringLiteral("Isolation/Kurzschluß"), QStringLiteral("Iso./Kurzschl.")},
                                      {QStringLiteral("Kontakt"), QStringLiteral("Kontakt/Relais")},
                                      {QStringLiteral("Lose"), QStringLiteral("Lose/Spiel/Lauf")},
                                      {QStringLiteral("Magnetisierung"), QStringLiteral("Magnetis.")},
                                      {QStringLiteral("Normaler Verschleiß"), QStringLiteral("Norm. Verschleiß")},
                                      {QStringLiteral("Pneumatik"), QStringLiteral("Pneumatik ")},
                                      {QStringLiteral("Oxydation/Rost"), QStringLiteral("Oxy./Rost/Fäulnis")},
                                      {QStringLiteral("Riss"), QStringLiteral("Riss/Bruch")},
                                      {QStringLiteral("Scheuern"), QStringLiteral("Scheuern/Schleifen")},
                                      {QStringLiteral("Temperaturfehler"), QStringLiteral("Temp.-fehler")},
                                      {QStringLiteral("Unwucht/Vibration"), QStringLiteral("Unwucht/Vibr.")},
                                      {QStringLiteral("Verschmutzung"), QStringLiteral("Verschm./Verst.")},
                                      {QStringLiteral("Wirkung/Funktion"), QStringLiteral("Wirkung/Funktion")},
                                      {QStringLiteral("Sonstiges"), QStringLiteral("Sonstiges")}};
    return l;
}

const QList<CodeText> &SchadensUrsacheListe()
{
    static const QList<CodeText> l = {{QStringLiteral("Keine Angabe"), QStringLiteral("KA")},
                                      {QStringLiteral("Bedienungsfehler"), QStringLiteral("Bed.-fehler")},
                                      {QStringLiteral("Äußere Einwirkung"), QStringLiteral("Äuß. Einwirkung")},
                                      {QStringLiteral("IH-Mangel"), QStringLiteral("IH-Mangel")},
                                      {QStringLiteral("Material-Mangel"), QStringLiteral("Mat.-mangel")},
                                      {QStringLiteral("Sonstiges"), QStringLiteral("Sonstiges")}};
    return l;
}

QStringList langTexte(const QList<CodeText> &liste)
{
    QStringList t;
    for (const CodeText &c : liste)
        t << c.lang;
    return t;
}

QStringList kurzTexte(const QList<CodeText> &liste)
{
    QStringList t;
    for (const CodeText &c : liste)
        t << c.kurz;
    return t;
}

QString kurzText(const QList<CodeText> &liste, int position)
{
    return position >= 0 && position < liste.size() ? liste.at(position).kurz : QString();
}

// ------------------------------------------------------------------ date forms

std::optional<QDate> datumAusText(const QString &text)
{
    static const QRegularExpression tmj(QStringLiteral("^(\\d{1,2})[./-](\\d{1,2})[./-](\\d{2}|\\d{4})$"));
    static const QRegularExpression jmt(QStringLiteral("^(\\d{4})[./-](\\d{1,2})[./-](\\d{1,2})$"));
    const QString t = text.trimmed();
    int j = 0, m = 0, d = 0;
    if (const auto r = tmj.match(t); r.hasMatch()) {
        d = r.captured(1).toInt();
        m = r.captured(2).toInt();
        j = r.captured(3).toInt();
        if (r.captured(3).size() == 2)
            j += j < 30 ? 2000 : 1900;
    } else if (const auto r2 = jmt.match(t); r2.hasMatch()) {
        j = r2.captured(1).toInt();
        m = r2.captured(2).toInt();
        d = r2.captured(3).toInt();
    } else {
        return std::nullopt;
    }
    const QDate date(j, m, d);
    if (!date.isValid())
        return std::nullopt;
    return date;
}

QString datumGespeichert(const QString &box)
{
    if (box.trimmed().isEmpty())
        return {};
    const auto d = datumAusText(box);
    return d ? d->toString(QStringLiteral("yyyy.MM.dd")) : box;
}

QString datumAngezeigt(const QString &stored)
{
    const auto d = datumAusText(stored);
    return d ? d->toString(QStringLiteral("dd.MM.yyyy")) : stored;
}

QString zahlAngezeigt(double v)
{
    return QString::number(v, 'g', 15).replace(QLatin1Char('.'), QLatin1Char(','));
}

namespace {

const QString kFelder = QStringLiteral(
    "Name, IdentNr, LaufendeNummer, Datum, Stunden, Minuten, Lohnkosten, materialkosten, Fremdkosten, "
    "Kostenstelle, Gewerk, AuftragsHerkunft, Auftragsart, Schadensart, SchadensUrsache, Bemerkung, Prioritaet, "
    "ZuErledigenBis, ErledigtJN, erledigtam, Druck");
const QString kSchluessel = QStringLiteral("Name = ? AND IdentNr = ? AND LaufendeNummer = ?");

QVariantList werteVon(const ISAuftragSchluessel &k) { return {k.Name, k.IdentNr, k.LaufendeNummer}; }

QString heuteGespeichert() { return Heute().toString(QStringLiteral("yyyy.MM.dd")); }

double zahl(const QString &box) { return numericValue(box); }

ISAuftragMaske maskeAus(const QSqlQuery &q)
{
    const auto t = [&](int i) { return q.value(i).toString(); };
    ISAuftragMaske m;
    m.Name = t(0);
    m.IdentNr = t(1);
    m.LaufendeNummer = t(2);
    m.MeldeDatum = datumAngezeigt(t(3));
    m.Stunden = zahlAngezeigt(q.value(4).toDouble());
    m.Minuten = zahlAngezeigt(q.value(5).toDouble());
    m.Lohnkosten = zahlAngezeigt(q.value(6).toDouble());
    m.Materialkosten = zahlAngezeigt(q.value(7).toDouble());
    m.Fremdaufwand = zahlAngezeigt(q.value(8).toDouble());
    m.Kostenstelle = t(9);
    m.Gewerk = t(10);
    m.AuftragsHerkunft = q.value(11).toInt();
    m.Auftragsart = q.value(12).toInt();
    m.Schadensart = q.value(13).toInt();
    m.SchadensUrsache = q.value(14).toInt();
    m.Beschreibung = t(15);
    m.Prioritaet = t(16);
    m.ZuErledigenBis = datumAngezeigt(t(17));
    m.Erledigt = q.value(18).toBool();
    m.ErledigtAm = datumAngezeigt(t(19));
    m.Druck = t(20);
    return m;
}

void meldung(const QString &text) { ZeigeMeldung(text, Style::Exclamation); }

const QString kErlaubtePrioritaeten = QStringLiteral(
    "Erlaubte Werte für Priorität: 0 = heute, 1 = in 2 Tagen, 2 = manuelle Eingabe, 3 = in 180 Tagen");

bool prioritaetAusserhalb(const QString &p) { return p > QLatin1String("3") || p < QLatin1String("0"); }

}

// ------------------------------------------------------------------ the record

ISAuftragMaske leereMaske(const Login &login)
{
    ISAuftragMaske m;
    if (login.Level == QLatin1String("Werker"))
        m.Gewerk = login.WerkerGewerk;
    return m;
}

std::optional<ISAuftragMaske> ladeISAuftrag(const QSqlDatabase &db, const ISAuftragSchluessel &key)
{
    QSqlQuery q = exec(db, QStringLiteral("SELECT %1 FROM Erfassung WHERE %2 ORDER BY rowid LIMIT 1").arg(kFelder, kSchluessel),
                       werteVon(key));
    if (!q.next())
        return std::nullopt;
    return maskeAus(q);
}

// ------------------------------------------------------------------ box rules

bool zeitTaste(QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); }
bool betragTaste(QChar c) { return zeitTaste(c) || c == QLatin1Char(','); }

std::optional<QDate> faelligAm(const QString &prioritaet, const QDate &heute)
{
    if (prioritaet == QLatin1String("0"))
        return heute;
    if (prioritaet == QLatin1String("1"))
        return heute.addDays(2);
    if (prioritaet == QLatin1String("3"))
        return heute.addDays(180);
    return std::nullopt;
}

bool PrioritaetGewaehlt(ISAuftragMaske &m)
{
    if (isNumeric(m.Prioritaet) && prioritaetAusserhalb(m.Prioritaet)) {
        meldung(kErlaubtePrioritaeten);
        return false;
    }
    if (m.Prioritaet == QLatin1String("2"))
        m.ZuErledigenBis.clear();
    else if (const auto d = faelligAm(m.Prioritaet, Heute()))
        m.ZuErledigenBis = d->toString(QStringLiteral("dd.MM.yyyy"));
    return true;
}

bool DatumVerlassen(QString &box, DatumsBox welche)
{
    if (box.isEmpty())
        return true;
    const auto d = datumAusText(box);
    if (!d) {
        meldung(QStringLiteral("Ungültiges Datum. Geben Sie das Datum im Format 'dd.mm.yyyy' ein"));
        return false;
    }
    // The due date shows a two-digit year, the done date four: kept as users know it.
    box = d->toString(welche == DatumsBox::ZuErledigenBis ? QStringLiteral("dd.MM.yy") : QStringLiteral("dd.MM.yyyy"));
    return true;
}

bool MinutenVerlassen(const QString &box)
{
    if (isNumeric(box) && numericValue(box) > 59) {
        meldung(QStringLiteral("Maximal 59 Minuten eingeben"));
        return false;
    }
    return true;
}

void ErledigtGeklickt(ISAuftragMaske &m, bool erledigt)
{
    m.Erledigt = erledigt;
    m.ErledigtAm = erledigt ? Heute().toString(QStringLiteral("dd.MM.yyyy")) : QString();
}

ISFeld PruefeZahlenfelder(ISAuftragMaske &m)
{
    for (QString *box : {&m.Lohnkosten, &m.Materialkosten, &m.Fremdaufwand, &m.Minuten, &m.Stunden})
        if (box->trimmed().isEmpty())
            *box = QStringLiteral("0");
    const std::pair<const QString *, ISFeld> kosten[] = {{&m.Lohnkosten, ISFeld::Lohnkosten},
                                                         {&m.Materialkosten, ISFeld::Materialkosten},
                                                         {&m.Fremdaufwand, ISFeld::Fremdaufwand}};
    for (const auto &[box, feld] : kosten)
        if (!isNumeric(*box)) {
            meldung(QStringLiteral("Der Wert muß numerisch sein"));
            return feld;
        }
    return ISFeld::Keins;
}

ISFeld PruefeVorSpeichern(ISAuftragMaske &m)
{
    if (const ISFeld f = PruefeZahlenfelder(m); f != ISFeld::Keins)
        return f;
    if (prioritaetAusserhalb(m.Prioritaet)) {
        meldung(QStringLiteral("Bitte Priorität eingeben"));
        return ISFeld::Prioritaet;
    }
    if (m.ZuErledigenBis.isEmpty()) {
        meldung(QStringLiteral("Bitte Datum 'zu erledigen bis' eingeben"));
        return ISFeld::ZuErledigenBis;
    }
    return ISFeld::Keins;
}

ISSpeicherErgebnis SpeichereDatensatz(const QSqlDatabase &db, ISAuftragMaske &m, SpeicherArt art, bool neu)
{
    ISSpeicherErgebnis e;
    // Time and costs reach the store as numbers: the keyboard filter keeps
    // letters out of the time boxes, but a pasted text would be lost there.
    const std::pair<const QString *, ISFeld> zahlen[] = {
        {&m.Stunden, ISFeld::Stunden}, {&m.Minuten, ISFeld::Minuten}, {&m.Lohnkosten, ISFeld::Lohnkosten},
        {&m.Materialkosten, ISFeld::Materialkosten}, {&m.Fremdaufwand, ISFeld::Fremdaufwand}};
    for (const auto &[box, feld] : zahlen)
        if (!box->trimmed().isEmpty() && !isNumeric(*box)) {
            meldung(QStringLiteral("Der Wert muß numerisch sein"));
            e.fehler = feld;
            return e;
        }
    if (!MinutenVerlassen(m.Minuten)) {
        e.fehler = ISFeld::Minuten;
        return e;
    }
    if (!m.Erledigt)
        m.ErledigtAm.clear();
    // A date box that holds no date is refused rather than stored as text.
    for (auto [box, feld] : {std::pair{&m.ZuErledigenBis, ISFeld::ZuErledigenBis},
                             std::pair{&m.ErledigtAm, ISFeld::ErledigtAm}})
        if (!box->trimmed().isEmpty() && !datumAusText(*box)) {
            meldung(QStringLiteral("Ungültiges Datum. Geben Sie das Datum im Format 'dd.mm.yyyy' ein"));
            e.fehler = feld;
            return e;
        }

    QString zuErledigenBis;
    if (m.Prioritaet == QLatin1String("2")) {
        if (m.ZuErledigenBis.isEmpty()) {
            meldung(art == SpeicherArt::Allgemein ? QStringLiteral("bei Priorität=2 bitte Datum 'zu erledigen bis' eingeben")
                                                  : QStringLiteral("Bitte Datum 'zu erledigen bis' eingeben"));
            e.fehler = ISFeld::ZuErledigenBis;
            return e;
        }
    } else if (const auto d = faelligAm(m.Prioritaet, Heute())) {
        zuErledigenBis = d->toString(QStringLiteral("yyyy.MM.dd"));
    } else {
        meldung(kErlaubtePrioritaeten);
        e.fehler = ISFeld::Prioritaet;
        return e;
    }
    // The box has the last word: a date typed after the priority stands.
    zuErledigenBis = datumGespeichert(m.ZuErledigenBis);
    if (neu && art == SpeicherArt::Allgemein && zuErledigenBis < heuteGespeichert()) {
        meldung(QStringLiteral("Das Datum 'zu erledigen bis' muß in der Zukunft liegen"));
        e.fehler = ISFeld::ZuErledigenBis;
        return e;
    }

    exec(db,
         QStringLiteral("UPDATE Erfassung SET Bemerkung = ?, Fremdkosten = ?, materialkosten = ?, Datum = ?, "
                        "Minuten = ?, Stunden = ?, Auftragsart = ?, AuftragsHerkunft = ?, Schadensart = ?, "
                        "SchadensUrsache = ?, Kostenstelle = ?, Gewerk = ?, Lohnkosten = ?, ErledigtJN = ?, "
                        "erledigtam = ?, ZuErledigenBis = ?, Prioritaet = ? WHERE ")
             + kSchluessel,
         {m.Beschreibung, zahl(m.Fremdaufwand), zahl(m.Materialkosten), datumGespeichert(m.MeldeDatum),
          zahl(m.Minuten), zahl(m.Stunden), m.Auftragsart, m.AuftragsHerkunft, m.Schadensart, m.SchadensUrsache,
          m.Kostenstelle, m.Gewerk, zahl(m.Lohnkosten), m.Erledigt ? 1 : 0, datumGespeichert(m.ErledigtAm),
          zuErledigenBis, m.Prioritaet, m.Name, m.IdentNr, m.LaufendeNummer});
    e.gesperrt = m.Erledigt;
    return e;
}

// ------------------------------------------------------------------ making orders

std::optional<Node> PruefeKomponente(const QSqlDatabase &db, const QString &fileIndex)
{
    std::optional<Node> node = loadNode(db, fileIndex);
    if (!node) {
        meldung(QStringLiteral("Fehler beim Öffnen des Protokolls"));
        return std::nullopt;
    }
    if (node->IdentNr.trimmed().isEmpty()) {
        meldung(QStringLiteral("Zu dieser Komponente existiert keine Ident-Nr. !") + QStringLiteral("\n\n")
                + QStringLiteral("Um Befunde zu dieser Komponente zu erfassen, bitte die Ident-Nr. nachtragen."));
        return std::nullopt;
    }
    if (!IdentNrEindeutig(db, node->IdentNr)) {
        meldung(QStringLiteral("Diese Komponente hat eine nicht-eindeutige Ident-Nr. !"));
        return std::nullopt;
    }
    return node;
}

QString NaechsteLaufendeNummer(const QSqlDatabase &db, const QString &name, const QString &identNr)
{
    // In the order of the capture the rows of one number follow each other by
    // name: from the first row of the present name on, those are the rows of
    // that name or of a name sorting behind it. Without a row of the present
    // name nothing counts.
    if (!scalar(db, QStringLiteral("SELECT 1 FROM Erfassung WHERE IdentNr = ? AND Name = ? LIMIT 1"), {identNr, name}).isValid())
        return QStringLiteral("00001");
    const QString zaehlen = QStringLiteral(" FROM Erfassung WHERE IdentNr = ? AND Name >= ? AND ");
    const QString ziffern = QStringLiteral("(LaufendeNummer GLOB '[0-9]*' AND LaufendeNummer NOT GLOB '*[^0-9]*')");
    // Plain digits are counted by the database; other texts (blanks, a decimal
    // comma, letters) are read one by one, and those that aren't numbers skipped.
    qint64 maximum = std::max<qint64>(
        0, scalar(db, QStringLiteral("SELECT max(CAST(LaufendeNummer AS INTEGER))") + zaehlen + ziffern, {identNr, name})
               .toLongLong());
    QSqlQuery q = exec(db, QStringLiteral("SELECT LaufendeNummer") + zaehlen + QStringLiteral("NOT ") + ziffern,
                       {identNr, name});
    while (q.next())
        if (const auto n = integerPart(q.value(0).toString()); n && *n > maximum)
            maximum = *n;
    if (maximum + 1 > 32767)
        throw Fault(6, QStringLiteral("Überlauf"));
    return QStringLiteral("%1").arg(maximum + 1, 5, 10, QLatin1Char('0'));
}

ISAuftragSchluessel NeuerISAuftrag(const QSqlDatabase &db, const Login &login, const Node &k,
                                   const ISAuftragMaske &v)
{
    Transaction t(db);
    const ISAuftragSchluessel key{k.Text, k.IdentNr, NaechsteLaufendeNummer(db, k.Text, k.IdentNr)};
    exec(db,
         QStringLiteral("INSERT INTO Erfassung (Name, IdentNr, LaufendeNummer, Datum, Stunden, Minuten, Lohnkosten, "
                        "materialkosten, Fremdkosten, Kostenstelle, Gewerk, AuftragsHerkunft, Auftragsart, "
                        "Schadensart, SchadensUrsache, Bemerkung, Prioritaet, ZuErledigenBis, ErledigtJN, erledigtam) "
                        "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, 0, '')"),
         {key.Name, key.IdentNr, key.LaufendeNummer, datumGespeichert(v.MeldeDatum), zahl(v.Stunden),
          zahl(v.Minuten), zahl(v.Lohnkosten), zahl(v.Materialkosten), zahl(v.Fremdaufwand), k.Kostenstelle,
          login.Level == QLatin1String("Werker") ? login.WerkerGewerk : QString(), v.AuftragsHerkunft, v.Auftragsart,
          v.Schadensart, v.SchadensUrsache, v.Beschreibung, QStringLiteral("0"), heuteGespeichert()});
    t.commit();
    return key;
}

int LoescheISAuftrag(const QSqlDatabase &db, const ISAuftragSchluessel &key)
{
    return exec(db, QStringLiteral("DELETE FROM Erfassung WHERE ") + kSchluessel, werteVon(key)).numRowsAffected();
}

// ------------------------------------------------------------------ browsing

ErfassungsAuswahl::ErfassungsAuswahl(const QSqlDatabase &db, const Login &login, int status)
    : m_db(db), m_status(status == 1 || status == 2 ? status : 3)
{
    QStringList teile;
    if (m_status == 1)
        teile << QStringLiteral("ErledigtJN <> 0");
    else if (m_status == 2)
        teile << QStringLiteral("ErledigtJN = 0");
    if (login.Level == QLatin1String("Werker")) {
        // The trade is a pattern with the legacy wildcards, case ignored.
        teile << QStringLiteral("Gewerk GLOB ?");
        m_werte << caselessGlob(login.WerkerGewerk);
    }
    if (!teile.isEmpty())
        m_where = QStringLiteral(" WHERE ") + teile.join(QStringLiteral(" AND "));
}

std::optional<ISAuftragSchluessel> ErfassungsAuswahl::eine(const QString &bedingung, const QVariantList &werte,
                                                          bool rueckwaerts) const
{
    QString sql = QStringLiteral("SELECT Name, IdentNr, LaufendeNummer FROM Erfassung") + m_where;
    if (!bedingung.isEmpty())
        sql += (m_where.isEmpty() ? QStringLiteral(" WHERE ") : QStringLiteral(" AND ")) + bedingung;
    sql += rueckwaerts ? QStringLiteral(" ORDER BY Name DESC, IdentNr DESC, LaufendeNummer DESC LIMIT 1")
                       : QStringLiteral(" ORDER BY Name, IdentNr, LaufendeNummer LIMIT 1");
    QSqlQuery q = exec(m_db, sql, m_werte + werte);
    if (!q.next())
        return std::nullopt;
    return ISAuftragSchluessel{q.value(0).toString(), q.value(1).toString(), q.value(2).toString()};
}

std::optional<ISAuftragSchluessel> ErfassungsAuswahl::erster() const { return eine({}, {}); }
std::optional<ISAuftragSchluessel> ErfassungsAuswahl::letzter() const { return eine({}, {}, true); }

std::optional<ISAuftragSchluessel> ErfassungsAuswahl::naechster(const ISAuftragSchluessel &von) const
{
    return eine(QStringLiteral("(Name, IdentNr, LaufendeNummer) > (?, ?, ?)"), werteVon(von));
}

std::optional<ISAuftragSchluessel> ErfassungsAuswahl::voriger(const ISAuftragSchluessel &von) const
{
    return eine(QStringLiteral("(Name, IdentNr, LaufendeNummer) < (?, ?, ?)"), werteVon(von), true);
}

bool ErfassungsAuswahl::enthaelt(const ISAuftragSchluessel &key) const { return eine(kSchluessel, werteVon(key)).has_value(); }

std::optional<ISAuftragSchluessel> ErfassungsAuswahl::ersterMitName(const QString &name) const
{
    return eine(QStringLiteral("Name = ?"), {name});
}

std::optional<ISAuftragSchluessel> ErfassungsAuswahl::ersterMitIdentNr(const QString &identNr) const
{
    return eine(QStringLiteral("IdentNr = ?"), {identNr});
}

std::optional<ISAuftragSchluessel> ErfassungsAuswahl::ersterMitNummer(const QString &identNr,
                                                                     const QString &laufendeNummer) const
{
    return eine(QStringLiteral("IdentNr = ? AND LaufendeNummer = ?"), {identNr, laufendeNummer});
}

QStringList ErfassungsAuswahl::liste(const QString &feld, const QString &bedingung, const QVariantList &werte) const
{
    QString sql = QStringLiteral("SELECT DISTINCT %1 FROM Erfassung").arg(feld) + m_where;
    if (!bedingung.isEmpty())
        sql += (m_where.isEmpty() ? QStringLiteral(" WHERE ") : QStringLiteral(" AND ")) + bedingung;
    sql += QStringLiteral(" ORDER BY %1").arg(feld);
    QSqlQuery q = exec(m_db, sql, m_werte + werte);
    QStringList l;
    while (q.next())
        l << q.value(0).toString();
    return l;
}

QStringList ErfassungsAuswahl::namen() const { return liste(QStringLiteral("Name"), {}, {}); }

QStringList ErfassungsAuswahl::identNummern(const QString &name) const
{
    return liste(QStringLiteral("IdentNr"), QStringLiteral("Name = ?"), {name});
}

QStringList ErfassungsAuswahl::laufendeNummern(const QString &identNr) const
{
    return liste(QStringLiteral("LaufendeNummer"), QStringLiteral("IdentNr = ?"), {identNr});
}

}

namespace zol {

void addDemoRepairOrders(const QSqlDatabase &db, int jahr)
{
    struct Demo {
        int komponente;   // among the plant's components with an IdentNr, by name
        const char *datum, *bis, *erledigt, *gewerk, *text;
        double stunden, minuten, lohn, material, fremd;
        int herkunft, art, schaden, ursache;
        const char *prio;
    };
    const Demo demos[] = {
        {0, "01.15", "01.17", "01.16", "Mechanik", "Gleitringdichtung undicht, ausgetauscht", 2, 30, 180, 95.5, 0, 1, 1, 4, 3, "1"},
        {0, "03.02", "03.02", "", "Elektro", "Motor brummt beim Anlauf", 0, 45, 60, 0, 0, 2, 5, 7, 0, "0"},
        {1, "02.10", "08.09", "", "Mechanik", "Lager läuft rau, Tausch bei nächstem Stillstand", 0, 0, 0, 0, 0, 1, 4, 13, 3, "3"},
        {2, "04.20", "04.22", "04.21", "Elektro", "Schütz klebt, ersetzt", 1, 15, 90, 42, 0, 3, 5, 10, 4, "1"},
        {3, "05.05", "06.30", "", "Schlosserei", "Geländer am Podest lose", 3, 0, 210, 30, 450, 4, 2, 11, 2, "2"},
        {3, "06.11", "06.11", "06.11", "Elektro", "Beleuchtung ausgefallen, Fremdfirma", 0, 50, 0, 0, 320, 2, 2, 5, 5, "0"},
    };
    QStringList keys;
    QSqlQuery q = exec(db, QStringLiteral("SELECT FileIndex FROM ProtokollKopf WHERE Katalog = '0' AND FileTyp = 'F' "
                                          "AND IdentNr <> '' ORDER BY Text LIMIT 4"));
    while (q.next())
        keys << q.value(0).toString();
    Transaction t(db);
    for (const Demo &d : demos) {
        const std::optional<Node> n = loadNode(db, keys.value(d.komponente));
        if (!n)
            continue;
        const auto datum = [&](const char *md) {
            return *md ? QStringLiteral("%1.%2").arg(jahr).arg(QLatin1String(md)) : QString();
        };
        exec(db,
             QStringLiteral("INSERT INTO Erfassung (Name, IdentNr, LaufendeNummer, Datum, Stunden, Minuten, Lohnkosten, "
                            "materialkosten, Fremdkosten, Kostenstelle, Gewerk, AuftragsHerkunft, Auftragsart, "
                            "Schadensart, SchadensUrsache, Bemerkung, Prioritaet, ZuErledigenBis, ErledigtJN, erledigtam) "
                            "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"),
             {n->Text, n->IdentNr, NaechsteLaufendeNummer(db, n->Text, n->IdentNr), datum(d.datum), d.stunden,
              d.minuten, d.lohn, d.material, d.fremd, n->Kostenstelle, QString::fromUtf8(d.gewerk), d.herkunft, d.art,
              d.schaden, d.ursache, QString::fromUtf8(d.text), QLatin1String(d.prio), datum(d.bis),
              *d.erledigt ? 1 : 0, datum(d.erledigt)});
    }
    t.commit();
}

}
