#include "MasterData.h"
#include "Explorer.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/core/NameOrder.h"
#include "zol/core/Schema.h"
#include "zol/core/Sql.h"
#include "zol/planning/WeekCalendar.h"
#include "zol/repair/RepairOrderLinks.h"

namespace zol {

namespace {
const QString kKopf = QStringLiteral("ProtokollKopf");

QString MasterDataInput::*comboMember(const QString &field)
{
    static const QList<QPair<QString, QString MasterDataInput::*>> members = {
        {QStringLiteral("Text"), &MasterDataInput::Benennung},
        {QStringLiteral("Kostenstelle"), &MasterDataInput::Kostenstelle},
        {QStringLiteral("Klassifizierung"), &MasterDataInput::Klassifizierung},
        {QStringLiteral("Standort"), &MasterDataInput::Standort},
        {QStringLiteral("Lokalisierung"), &MasterDataInput::Lokalisierung},
        {QStringLiteral("Hersteller"), &MasterDataInput::Hersteller},
        {QStringLiteral("Typ"), &MasterDataInput::Typ},
        {QStringLiteral("WIVerantwortlicher"), &MasterDataInput::WIVerantwortlicher},
        {QStringLiteral("AnlagenVerantwortlicher"), &MasterDataInput::AnlagenVerantwortlicher},
        {QStringLiteral("Option1"), &MasterDataInput::Option1},
        {QStringLiteral("Option2"), &MasterDataInput::Option2},
    };
    for (const auto &m : members)
        if (m.first == field)
            return m.second;
    return nullptr;
}

StammdatenErgebnis refuse(const QString &text, const QString &focus)
{
    ZeigeMeldung(text, Style::Exclamation);
    return {false, focus};
}

bool nurEinEnde(const QString &von, const QString &bis)
{
    return von.trimmed().isEmpty() != bis.trimmed().isEmpty();
}
}

MasterDataInput leereStammdaten(int currentYear)
{
    MasterDataInput in;
    in.BezugsJahr = QString::number(currentYear);
    in.BezugsWoche = QStringLiteral("01");
    return in;
}

void fuelleStammdaten(MasterDataInput &in, const Node &n)
{
    in.Benennung = n.Text;
    if (!n.BezugsJahr.isEmpty())
        in.BezugsJahr = n.BezugsJahr;
    if (!n.BezugsWoche.isEmpty())
        in.BezugsWoche = n.BezugsWoche;
    in.Kostenstelle = n.Kostenstelle;
    in.IdentNr = n.IdentNr;
    in.Klassifizierung = n.Klassifizierung;
    in.Standort = n.Standort;
    in.Lokalisierung = n.Lokalisierung;
    in.Hersteller = n.Hersteller;
    in.Typ = n.Typ;
    in.WIVerantwortlicher = n.WIVerantwortlicher;
    in.AnlagenVerantwortlicher = n.AnlagenVerantwortlicher;
    in.Option1 = n.Option1;
    in.Option2 = n.Option2;
    in.KeineWartung = n.KeineWartung == QLatin1String("J");
    in.WocheVon1 = n.KeineWartungWocheVon1;
    in.WocheBis1 = n.KeineWartungWocheBis1;
    in.WocheVon2 = n.KeineWartungWocheVon2;
    in.WocheBis2 = n.KeineWartungWocheBis2;
}

MasterDataInput stammdatenFuerDialog(const QSqlDatabase &db, const QString &fileIndex, bool existing,
                                     const std::optional<QString> &selectedListText, int currentYear)
{
    MasterDataInput in = leereStammdaten(currentYear);
    const std::optional<Node> node = loadNode(db, fileIndex);
    if (node)
        fuelleStammdaten(in, *node);
    if (!existing) {
        in.Benennung = selectedListText.value_or(QString());
        in.IdentNr.clear();
    }
    return in;
}

QStringList stammdatenAuswahl(const QSqlDatabase &db, const QString &field)
{
    const QString f = ident(field);
    QSqlQuery q = exec(db,
                       QStringLiteral("select %1 from ProtokollKopf WHERE [FileTyp] = ? group by %1 order by %1").arg(f),
                       {FileTypFile});
    QStringList out;
    while (q.next())
        if (!q.value(0).toString().isEmpty())
            out << q.value(0).toString();
    return out;
}

QStringList benennungAuswahl(const QSqlDatabase &db)
{
    QSqlQuery q = exec(db, QStringLiteral("select distinct [Text] FROM ProtokollKopf WHERE [KATALOG]=? order by ") + nameOrder(QStringLiteral("[Text]")),
                       {QStringLiteral("1")});
    QStringList out;
    while (q.next())
        if (!q.value(0).toString().isEmpty())
            out << q.value(0).toString();
    return out;
}

QStringList katalogEintraege(const QSqlDatabase &db, const QString &catalogTable)
{
    if (!Schema::catalogTables().contains(catalogTable))
        return {};
    QSqlQuery q = exec(db, QStringLiteral("select [Text] from %1 where [FileTyp] = ? order by %2").arg(ident(catalogTable), nameOrder(QStringLiteral("[Text]"))),
                       {FileTypFile});
    QStringList out;
    while (q.next())
        out << q.value(0).toString();
    return out;
}

const QList<ComboFeld> &stammdatenCombos()
{
    static const QList<ComboFeld> combos = {
        {QStringLiteral("dbcBenennung"), QStringLiteral("Text")},
        {QStringLiteral("dbcKostenstelle"), QStringLiteral("Kostenstelle")},
        {QStringLiteral("dbcKlassifizierung"), QStringLiteral("Klassifizierung")},
        {QStringLiteral("dbcStandort"), QStringLiteral("Standort")},
        {QStringLiteral("dbcLokalisierung"), QStringLiteral("Lokalisierung")},
        {QStringLiteral("dbcHersteller"), QStringLiteral("Hersteller")},
        {QStringLiteral("dbcTyp"), QStringLiteral("Typ")},
        {QStringLiteral("dbcWIVerantwortlicher"), QStringLiteral("WIVerantwortlicher")},
        {QStringLiteral("dbcAnlagenVerantwortlicher"), QStringLiteral("AnlagenVerantwortlicher")},
        {QStringLiteral("dbcOption1"), QStringLiteral("Option1")},
        {QStringLiteral("dbcOption2"), QStringLiteral("Option2")},
    };
    return combos;
}

StammdatenErgebnis StammdatenSpeichern(Session &session, const QString &fileIndex, MasterDataInput &in)
{
    namespace C = StammdatenControl;
    const QSqlDatabase db = session.db();
    const std::optional<Node> row = loadNode(db, fileIndex);
    if (!row) {
        ZeigeMeldung(faultText(Fault(FaultNo::NoCurrentRecord, QStringLiteral("Kein aktueller Datensatz."))),
                     Style::Critical);
        return {false, QString()};
    }
    const bool standard = IsStandard(db, fileIndex);
    const bool komponente = row->isComponent();
    const QString identNr = in.IdentNr.trimmed();

    if (in.Benennung.trimmed().isEmpty())
        return refuse(QStringLiteral("Bitte eine Benennung eingeben"), C::dbcBenennung);

    if (!standard) {
        if (in.BezugsJahr.trimmed().isEmpty())
            return refuse(QStringLiteral("Bitte Bezugsjahr eingeben"), C::txtBezugsJahr);
        if (in.BezugsWoche.trimmed().isEmpty())
            return refuse(QStringLiteral("Bitte Bezugswoche eingeben"), C::txtBezugsWoche);
        in.BezugsJahr = formatJahr(in.BezugsJahr.trimmed());
        in.BezugsWoche = formatWoche(in.BezugsWoche.trimmed());
        const double woche = leadingNumber(in.BezugsWoche);
        if (woche > 52 || woche < 1)
            return refuse(QStringLiteral("Als Wochenzahl sind nur 1 bis 52 zulässig"), C::txtBezugsWoche);
    }

    if (!identNr.isEmpty() && komponente) {
        const QVariant other = scalar(
            db, QStringLiteral("SELECT FileIndex FROM ProtokollKopf WHERE IdentNr = ? AND FileIndex <> ? LIMIT 1"),
            {identNr, fileIndex});
        if (other.isValid())
            return refuse(QStringLiteral("Diese Identifikations-Nr. existiert schon;") + QStringLiteral(" ")
                              + QStringLiteral("bitte andere angeben"),
                          C::txtIdentNr);
    }

    for (const ComboFeld &c : stammdatenCombos()) {
        QString &text = in.*comboMember(c.field);
        const int size = Schema::Size(kKopf, c.field);
        if (size > 0 && text.size() > size) {
            ZeigeMeldung(QStringLiteral("Der Text ist zu lang (max. Länge: %1)").arg(size), Style::Exclamation);
            text = text.left(size);
            return {false, c.control};
        }
    }

    const bool wochenLeer = in.WocheVon1.trimmed().isEmpty() && in.WocheBis1.trimmed().isEmpty()
        && in.WocheVon2.trimmed().isEmpty() && in.WocheBis2.trimmed().isEmpty();
    if (in.KeineWartung) {
        if (wochenLeer)
            return refuse(QStringLiteral("Bitte ein Wochenintervall eingeben"), C::txtWocheVon1);
        if (nurEinEnde(in.WocheVon1, in.WocheBis1))
            return refuse(QStringLiteral("Das Wochenintervall ist nicht plausibel"), C::txtWocheVon1);
        if (nurEinEnde(in.WocheVon2, in.WocheBis2))
            return refuse(QStringLiteral("Das Wochenintervall ist nicht plausibel"), C::txtWocheVon2);
    } else {
        if (!wochenLeer
            && ZeigeMeldung(QStringLiteral("Sie haben Intervalle eingegeben, aber 'Keine Wartung' nicht angeklickt! "
                                           "Bei 'OK' werden die Intervalle nicht gespeichert"),
                            Style::OkCancel)
                != Answer::Ok)
            return {false, C::chkKeineWartung};
        in.WocheVon1.clear();
        in.WocheBis1.clear();
        in.WocheVon2.clear();
        in.WocheBis2.clear();
    }

    if (komponente) {
        if (!standard && identNr.isEmpty()
            && ZeigeMeldung(QStringLiteral("Solange keine Ident-Nr angegeben ist, können für diese Komponente keine "
                                           "IS-Aufträge angelegt werden. Wollen Sie das Feld Ident-Nr also wirklich "
                                           "leer lassen?"),
                            Style::YesNo)
                != Answer::Yes)
            return {false, C::txtIdentNr};
        if (standard && !identNr.isEmpty())
            return refuse(QStringLiteral("Im Bereich 'Standards' darf keine Ident-Nr angegeben werden. Dies ist nur im "
                                         "Bereich 'WI-Rundgang' möglich (und dort auch sehr zu empfehlen)"),
                          C::txtIdentNr);
    } else if (!identNr.isEmpty()) {
        return refuse(QStringLiteral("Bei einer 'Technischen Einrichtung' darf keine Ident-Nr angegeben werden. Dies "
                                     "ist nur bei 'Komponenten' im Bereich 'WI-Rundgang' möglich (und dort auch sehr "
                                     "zu empfehlen)"),
                      C::txtIdentNr);
    }

    Node n = *row;
    const QString alteIdentNr = n.IdentNr;
    n.Text = in.Benennung;
    n.BezugsJahr = in.BezugsJahr;
    n.BezugsWoche = in.BezugsWoche;
    n.Kostenstelle = in.Kostenstelle;
    n.IdentNr = identNr;
    n.Klassifizierung = in.Klassifizierung;
    n.Standort = in.Standort;
    n.Lokalisierung = in.Lokalisierung;
    n.Hersteller = in.Hersteller;
    n.Typ = in.Typ;
    n.WIVerantwortlicher = in.WIVerantwortlicher;
    n.AnlagenVerantwortlicher = in.AnlagenVerantwortlicher;
    n.Option1 = in.Option1;
    n.Option2 = in.Option2;
    n.KeineWartung = in.KeineWartung ? QStringLiteral("J") : QStringLiteral("N");
    // The week boxes are at most two characters wide; anything else was
    // formatted on leaving the box.
    const int wSize = Schema::Size(kKopf, QStringLiteral("KeineWartungWocheVon1"));
    n.KeineWartungWocheVon1 = in.WocheVon1.left(wSize);
    n.KeineWartungWocheBis1 = in.WocheBis1.left(wSize);
    n.KeineWartungWocheVon2 = in.WocheVon2.left(wSize);
    n.KeineWartungWocheBis2 = in.WocheBis2.left(wSize);
    n.BezugsJahr = n.BezugsJahr.left(Schema::Size(kKopf, QStringLiteral("BezugsJahr")));
    n.BezugsWoche = n.BezugsWoche.left(Schema::Size(kKopf, QStringLiteral("BezugsWoche")));
    n.IdentNr = n.IdentNr.left(Schema::Size(kKopf, QStringLiteral("IdentNr")));

    try {
        Transaction tx(db);
        saveNode(db, n);
        // The repair orders follow the number; a removed number takes them with it.
        if (!alteIdentNr.isEmpty() && alteIdentNr != n.IdentNr) {
            if (!n.IdentNr.isEmpty())
                UpdateErfassungAufträge(db, alteIdentNr, n.IdentNr);
            else
                DeleteErfassungAufträge(db, alteIdentNr);
        }
        tx.commit();
    } catch (const Fault &f) {
        ZeigeMeldung(faultText(f), Style::Critical);
        return {false, QString()};
    }
    return {true, QString()};
}

void StammdatenAbbrechen(Session &session, const QString &fileIndex, bool existing)
{
    if (existing)
        return;
    ExplorerSelection sel;
    sel.listHasFocus = true;
    sel.listSelected = {fileIndex};
    Explorer(session).DeleteEntries(sel, true);
}

std::optional<QString> WocheVerlassen(const QString &text)
{
    if (text.isEmpty())
        return text;
    if (text.compare(QLatin1String("01")) < 0 || text.compare(QLatin1String("52")) > 0) {
        ZeigeMeldung(QStringLiteral("Die Woche muss >= 1 und <= 52 sein"), Style::Exclamation);
        return std::nullopt;
    }
    return formatWoche(text);
}

bool BezugsJahrNimmtTaste(int character)
{
    return (character >= '0' && character <= '9') || character == 8;
}

}
