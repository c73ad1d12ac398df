#include "Feedback.h"
#include "zol/core/Digits.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/core/Schema.h"
#include "zol/core/Session.h"
#include "zol/core/Sql.h"
#include "zol/core/Users.h"
#include "zol/planning/OrderRows.h"

namespace zol {

namespace {

const QString kAuftrag = QStringLiteral("Auftrag");
const QString Befunde = QStringLiteral("RFS");
const QString VerbalCodes = QStringLiteral("IP ");

QString befundCode(int index) { return index >= 0 && index < 3 ? QString(Befunde.at(index)) : QString(); }

}   // namespace

RueckmeldungAnzeige zeigeAuftrag(const QSqlDatabase &db, const std::optional<AuftragZeile> &zeile)
{
    RueckmeldungAnzeige a;
    if (!zeile)
        return a;
    const AuftragZeile &z = *zeile;
    a.leer = false;
    const QVariant ident = scalar(db, QStringLiteral("SELECT IdentNr FROM ProtokollKopf WHERE FileIndex = ?"), {z.TeIndex});
    a.IdentNr = ident.isValid() ? ident.toString() : KomponenteFehltText;
    a.Jahr = z.Jahr;
    a.Woche = z.Woche;
    a.Objekt = z.Objekt;
    a.Anweisung = z.Anweisung;
    a.Kostenstelle = z.Kostenstelle;
    a.Materialcode = z.Materialcode;
    a.Intervall = z.Intervall;
    a.Auftragstext = z.Text;
    a.Bemerkung = z.Bemerkung;
    const QString befund = z.Befund.toUpper();
    a.MeldungsCode = befund.size() == 1 ? int(Befunde.indexOf(befund)) : -1;
    a.Status = z.Rueckmeldung.toUpper() != QLatin1String("N") ? QStringLiteral(" zurückgemeldet ")
                                                                : QStringLiteral(" nicht zurückgemeldet ");
    const QString verbal = z.Verbal.toUpper();
    if (verbal.trimmed().isEmpty())
        a.Verbal = 2;
    else if (verbal == QLatin1String("I"))
        a.Verbal = 0;
    else if (verbal == QLatin1String("P"))
        a.Verbal = 1;
    a.Zeit = zahlText(z.PlanZeit);
    a.MaterialMenge = zahlText(z.Materialmenge);
    return a;
}

RueckmeldungEingabe RueckmeldungEingabe::aus(const RueckmeldungAnzeige &a)
{
    return {a.Zeit, a.MaterialMenge, a.Kostenstelle, a.Materialcode, a.Auftragstext, a.Bemerkung, a.MeldungsCode,
            a.Verbal};
}

bool eingabeGeaendert(const RueckmeldungAnzeige &a, const RueckmeldungEingabe &e)
{
    if (a.leer)
        return false;
    // The four text fields are watched; the lists are not.
    return e.Zeit != a.Zeit || e.MaterialMenge != a.MaterialMenge || e.Auftragstext != a.Auftragstext
        || e.Bemerkung != a.Bemerkung;
}

bool istNumerisch(const QString &text)
{
    const QString t = text.trimmed();
    const qsizetype komma = t.indexOf(QLatin1Char(','));
    if (komma != t.lastIndexOf(QLatin1Char(',')))
        return false;
    QString ziffern = t;
    ziffern.remove(QLatin1Char(','));
    return !ziffern.isEmpty() && allAsciiDigits(ziffern);
}

double zahlAus(const QString &text)
{
    if (!istNumerisch(text))
        return 0;
    return text.trimmed().replace(QLatin1Char(','), QLatin1Char('.')).toDouble();
}

QString zahlText(double v)
{
    // Whole numbers keep one decimal, as the planned "0,0" does.
    QString t = QString::number(v, 'f', 6);
    while (t.endsWith(QLatin1Char('0')) && !t.endsWith(QLatin1String(".0")))
        t.chop(1);
    return t.replace(QLatin1Char('.'), QLatin1Char(','));
}

bool zeichenErlaubt(QChar c) { return isAsciiDigit(c) || c == QLatin1Char(','); }

int eingabeLaenge(const QString &feld)
{
    const int size = Schema::Size(kAuftrag, feld);
    return size > 0 ? size : 8;
}

bool RückmeldungSpeichern(const QSqlDatabase &db, const AuftragSchluessel &k, const RueckmeldungEingabe &e)
{
    const QString where = QStringLiteral(" WHERE TeIndex = ? AND Woche = ? AND Jahr = ? AND Objekt = ? AND Anweisung = ?");
    const QVariantList key{k.TeIndex, k.Woche, k.Jahr, k.Objekt, k.Anweisung};
    Transaction tx(db);
    const QVariant verbalAlt = scalar(db, QStringLiteral("SELECT Verbal FROM Auftrag") + where, key);
    if (!verbalAlt.isValid())
        return false;
    const auto cut = [](const QString &text, const char *feld) {
        return text.left(Schema::Size(kAuftrag, QString::fromUtf8(feld)));
    };
    // With no selection the verbal mark keeps what it had; the finding is emptied.
    const QString verbal = e.Verbal >= 0 && e.Verbal < 3 ? QString(VerbalCodes.at(e.Verbal)) : verbalAlt.toString();
    QVariantList values{QStringLiteral("J"),
                        verbal,
                        befundCode(e.MeldungsCode),
                        zahlAus(e.Zeit),
                        zahlAus(e.MaterialMenge),
                        cut(e.Kostenstelle, "Kostenstelle"),
                        cut(e.Materialcode, "Materialcode"),
                        cut(e.Auftragstext, "Text"),
                        cut(e.Bemerkung, "Bemerkung")};
    values += key;
    exec(db,
         QStringLiteral("UPDATE Auftrag SET \"Rückmeldung\" = ?, Verbal = ?, Befund = ?, PlanZeit = ?, Materialmenge = ?,"
                        " Kostenstelle = ?, Materialcode = ?, Text = ?, Bemerkung = ?")
             + where,
         values);
    tx.commit();
    return true;
}

SpeicherErgebnis Zurueckmelden(const QSqlDatabase &db, const std::optional<AuftragSchluessel> &schluessel,
                               const RueckmeldungEingabe &eingabe)
{
    using S = SpeicherErgebnis::Status;
    SpeicherErgebnis r;
    if (!schluessel) {
        ZeigeMeldung(QStringLiteral("Kein aktueller Datensatz"), Style::Exclamation);
        r.status = S::KeinDatensatz;
        return r;
    }
    if (!eingabe.MaterialMenge.isEmpty() && !istNumerisch(eingabe.MaterialMenge)) {
        ZeigeMeldung(QStringLiteral("Die 'Material-Menge' muß numerisch sein"), Style::Exclamation);
        r.status = S::Abgelehnt;
        r.focus = QStringLiteral("txtMaterialMenge");
        return r;
    }
    if (!eingabe.Zeit.isEmpty() && !istNumerisch(eingabe.Zeit)) {
        ZeigeMeldung(QStringLiteral("Die 'Arbeitszeit' muß numerisch sein"), Style::Exclamation);
        r.status = S::Abgelehnt;
        r.focus = QStringLiteral("txtZeit");
        return r;
    }
    try {
        if (!RückmeldungSpeichern(db, *schluessel, eingabe)) {
            r.status = S::NichtGefunden;
            return r;
        }
        const std::vector<AuftragZeile> rows = ladeAuftragZeilen(
            db,
            QStringLiteral("SELECT * FROM Auftrag WHERE TeIndex = ? AND Woche = ? AND Jahr = ? AND Objekt = ? AND "
                           "Anweisung = ?"),
            {schluessel->TeIndex, schluessel->Woche, schluessel->Jahr, schluessel->Objekt, schluessel->Anweisung});
        if (!rows.empty())
            r.zeile = rows.front();
    } catch (const Fault &f) {
        ZeigeMeldung(QStringLiteral("Es ist ein Fehler aufgetreten. ") + faultText(f), Style::Critical);
        r.status = S::Fehler;
    }
    return r;
}

SpeicherErgebnis Stornieren(const QSqlDatabase &db, const AuftragSchluessel &schluessel, RueckmeldungEingabe eingabe)
{
    eingabe.MeldungsCode = 2;
    return Zurueckmelden(db, schluessel, eingabe);
}

bool SatzVerlassen(bool gleicheZeile, bool &geaendert)
{
    if (gleicheZeile || !geaendert)
        return true;
    geaendert = false;
    return ZeigeMeldung(QStringLiteral("Satz ohne Rückmeldung verlassen?"), Style::YesNo) == Answer::Yes;
}

RueckmeldungRechte rueckmeldungRechte(const Login &login)
{
    RueckmeldungRechte r;
    if (login.Level == Role::Auswerter)
        r.storno = r.rueckmelden = r.isAuftrag = r.verbuchen = r.loeschen = false;
    if (login.Level == Role::Werker) {
        r.verbuchen = r.loeschen = false;
        r.werkerGewerk = login.WerkerGewerk;
    }
    return r;
}

}
