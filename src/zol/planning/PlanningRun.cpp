#include "PlanningRun.h"
#include "WeekCalendar.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/core/Sql.h"
#include <QDate>
#include <QSqlError>
#include <QSqlQuery>
#include <vector>

namespace zol {

namespace {

// Fault numbers of the arithmetic faults, as users know them.
constexpr int FaultTypeMismatch = 13;
constexpr int FaultDivisionByZero = 11;

// The run reads two streams in the order of the component key and joins them
// itself: the components of the plant (Katalog 0) whose reference year has
// been reached, and the instruction rows (head rows "0000" are object titles)
// of the kind planned, read from their index alone. The bulk of a due row is
// copied by the INSERT inside the database, so its texts never travel
// through the program.
const char *const componentsSql =
    "SELECT FileIndex, Bezugsjahr, BezugsWoche, KeineWartung, KeineWartungWocheVon1, KeineWartungWocheBis1,"
    " KeineWartungWocheVon2, KeineWartungWocheBis2 FROM ProtokollKopf"
    " WHERE Katalog = '0' AND Bezugsjahr <= ? ORDER BY FileIndex";
enum CompCol { kFileIndex, kBezugsjahr, kBezugsWoche, kKeineWartung, kVon1, kBis1, kVon2, kBis2 };

const char *const positionsWhere = " FROM ProtokollPositionen WHERE Intervalltyp = ? AND Anweisung <> '0000'";
enum PosCol { cRowId, cTeNummer, cIntervall };

const char *const anyRowSql =
    "SELECT 1 FROM ProtokollKopf AS A, ProtokollPositionen AS B"
    " WHERE B.Intervalltyp = ? AND B.Anweisung <> '0000' AND A.Bezugsjahr <= ? AND A.Katalog = '0'"
    " AND A.FileIndex = B.TeNummer LIMIT 1";

// Auftrag rows from due instructions, the fields in the order the run fills
// them (BetriebszustandXL by the rule of zol::BetriebszustandXL, upper-case R only); a batch of rows per statement (unused places hold NULL, which
// matches no row). Numbers are stored with a decimal comma in the
// instruction; a row whose numbers aren't numbers is not written, and the
// run faults on it.
constexpr int BatchSize = 64;
enum Param { pJahr, pWoche, pDatum, pKeineWartung, pFirstRowId };
QString insertSql()
{
    QString marks;
    for (int i = 0; i < BatchSize; ++i)
        marks += i ? QStringLiteral(",?") : QStringLiteral("?");
    return QStringLiteral(
        "INSERT INTO Auftrag (TeIndex, Jahr, Woche, Objekt, Anweisung, WIVerantwortlicher, Ausfuehrender,"
        " Kostenstelle, Lokalisierung, Option1, KompBezeichnung, Betriebszustand, BetriebszustandXL, PlanZeit,"
        " Materialcode, Materialmenge, Bemerkung, Text, \"Rückmeldung\", Befund, Verbal, Intervall, Datum,"
        " AnzahlPersonen, SicherheitsHinweis, IntervallTyp, KeineWartung)"
        " SELECT B.TeNummer, ?, ?, B.Objekt, B.Anweisung, A.WIVerantwortlicher, B.Ausfuehrender,"
        " A.Kostenstelle, A.Lokalisierung, A.Option1, A.Text, B.Betriebszustand,"
        " CASE WHEN B.Betriebszustand = 'R' COLLATE BINARY THEN 'R' ELSE 'Z' END,"
        " CAST(replace(trim(B.Planzeit), ',', '.') AS REAL), B.Materialcode,"
        " CAST(replace(trim(B.Materialmenge), ',', '.') AS REAL), '', B.Text, 'N', '', '', B.Intervall, ?,"
        " CAST(trim(B.AnzahlPersonen) AS INTEGER), B.Sicherheitshinweis, B.Intervalltyp, ?"
        " FROM ProtokollPositionen AS B, ProtokollKopf AS A WHERE B.rowid IN (")
        + marks
        + QStringLiteral(") AND A.FileIndex = B.TeNummer"
                         " AND trim(B.Planzeit) NOT GLOB '*[^0-9,.]*' AND trim(B.Materialmenge) NOT GLOB '*[^0-9,.]*'"
                         " AND trim(B.AnzahlPersonen) NOT GLOB '*[^0-9]*'");
}

// Due rows waiting to be written; they share the maintenance-free mark.
struct Pending {
    QVariant rowId;
    QString teNummer, intervall;
};

// The order of the key columns (COLLATE NOCASE: ASCII letters fold).
int compareKeys(const QString &a, const QString &b)
{
    const qsizetype n = std::min(a.size(), b.size());
    for (qsizetype i = 0; i < n; ++i) {
        char16_t x = a.at(i).unicode(), y = b.at(i).unicode();
        if (x >= u'A' && x <= u'Z')
            x += 32;
        if (y >= u'A' && y <= u'Z')
            y += 32;
        if (x != y)
            return x < y ? -1 : 1;
    }
    return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}

Fault sqlFault(const QSqlQuery &q)
{
    const QSqlError e = q.lastError();
    return faultFromSqlError(e.databaseText().isEmpty() ? e.text() : e.databaseText(), e.nativeErrorCode(),
                             q.lastQuery());
}

QSqlQuery stream(const QSqlDatabase &db, const QString &sql, const QVariantList &values)
{
    QSqlQuery q(db);
    q.setForwardOnly(true);
    if (!q.prepare(sql))
        throw sqlFault(q);
    for (const QVariant &v : values)
        q.addBindValue(v);
    if (!q.exec())
        throw sqlFault(q);
    return q;
}

// A fault in one row: the component and the interval it happened at.
struct RowFault {
    Fault fault;
    QString context;
};

RowFault rowFault(const QSqlDatabase &db, int number, const QString &description, const QString &teNummer,
                  const QString &intervall, const QString &detail)
{
    const QString name =
        scalar(db, QStringLiteral("SELECT Text FROM ProtokollKopf WHERE FileIndex = ?"), {teNummer}).toString();
    return {Fault(number, description),
            QStringLiteral("Komponente %1 '%2', Intervall '%3'").arg(teNummer, name, intervall) + detail};
}

}   // namespace

QString PlanningRun::statusPlanning(const QString &jahr, const QString &woche)
{
    return QStringLiteral("Woche ") + woche + QLatin1Char('/') + jahr + QStringLiteral(" wird geplant");
}

QString PlanningRun::statusDone(int count, bool shortTerm)
{
    return QString::number(count)
        + (shortTerm ? QStringLiteral(" kurzfristige Aufträge geplant. Warte auf Eingaben")
                     : QStringLiteral(" langfristige Aufträge geplant. Warte auf Eingaben"));
}

PlanResult PlanningRun::run(const QString &jahrIn, const QString &wocheIn)
{
    PlanResult r;
    r.jahr = jahrIn;
    r.woche = wocheIn;
    const Login &login = m_session.login();
    if (login.Level == QLatin1String("Auswerter"))
        return r;

    progress(0, 0);
    status(QString());

    if (r.jahr.trimmed().isEmpty()) {
        ZeigeMeldung(QStringLiteral("Bitte Jahr eingeben"), Style::Exclamation);
        r.focus = PlanResult::Focus::Jahr;
        return r;
    }
    r.jahr = formatJahr(r.jahr);
    if (r.woche.trimmed().isEmpty()) {
        ZeigeMeldung(QStringLiteral("Bitte Woche eingeben"), Style::Exclamation);
        r.focus = PlanResult::Focus::Woche;
        return r;
    }
    r.woche = formatWoche(r.woche);
    if (!wocheImBereich(r.woche)) {
        ZeigeMeldung(MsgWochenBereich, Style::Exclamation);
        r.focus = PlanResult::Focus::Woche;
        return r;
    }

    const bool shortTerm = r.woche == QLatin1String("00");
    const QString question = shortTerm
        ? QStringLiteral("Wollen Sie die Planung der kurzfristigen Aufträge für das Jahr %1 jetzt wirklich durchführen?")
              .arg(r.jahr)
        : QStringLiteral("Wollen Sie die Planung der langfristigen Aufträge für die Woche %1 im Jahr %2 jetzt wirklich durchführen?")
              .arg(r.woche, r.jahr);
    if (ZeigeMeldung(question, Style::YesNo) == Answer::No) {
        r.outcome = PlanResult::Outcome::Declined;
        return r;
    }

    const std::optional<int> jahr = wholeNumber(r.jahr);
    const std::optional<int> woche = wholeNumber(r.woche);
    if (!jahr || !woche) {
        ZeigeFehler(Fault(FaultTypeMismatch, QStringLiteral("Typen unverträglich")),
                    QStringLiteral("Jahr '%1', Woche '%2'").arg(r.jahr, r.woche));
        r.outcome = PlanResult::Outcome::Fault;
        return r;
    }

    try {
        r.count = plan(*jahr, *woche, r.jahr, r.woche, r);
    } catch (const RowFault &f) {
        progress(0, 0);
        status(QString());
        ZeigeFehler(f.fault, f.context);
        r.outcome = PlanResult::Outcome::Fault;
        r.count = 0;
    } catch (const Fault &f) {
        progress(0, 0);
        status(QString());
        ZeigeFehler(f, QStringLiteral("Planung der Woche %1/%2").arg(r.woche, r.jahr));
        r.outcome = PlanResult::Outcome::Fault;
        r.count = 0;
    }
    return r;
}

// Steps from reading the instructions to the status line; returns the number
// of rows written. Refusals set r.outcome and return 0; faults throw, and the
// transaction gives back the data as they were.
int PlanningRun::plan(int jahr, int woche, const QString &jahrText, const QString &wocheText, PlanResult &r)
{
    const QSqlDatabase db = m_session.db();
    const bool shortTerm = woche == 0;
    const QString typ = shortTerm ? QStringLiteral("K") : QStringLiteral("L");

    Transaction tx(db);
    if (!scalar(db, QString::fromUtf8(anyRowSql), {typ, jahrText}).isValid()) {
        ZeigeMeldung(QStringLiteral("Es gibt keine Aufträge zu planen"), Style::Exclamation);
        r.outcome = PlanResult::Outcome::Refused;
        return 0;
    }

    const bool planned = scalar(db, QStringLiteral("SELECT 1 FROM Auftrag WHERE Woche = ? AND Jahr = ? LIMIT 1"),
                                {wocheText, jahrText}).isValid();
    if (planned) {
        if (m_session.login().Level == QLatin1String("Werker")) {
            ZeigeMeldung(QStringLiteral("Als Werker dürfen Sie nicht eine bereits geplante Woche noch einmal planen"),
                         Style::Exclamation);
            r.outcome = PlanResult::Outcome::Refused;
            return 0;
        }
        if (ZeigeMeldung(QStringLiteral("Wollen Sie die Planung der Woche %1 im Jahr %2 neu durchführen und die alte "
                                        "Planung überschreiben?").arg(wocheText, jahrText),
                         Style::YesNo) == Answer::No) {
            r.outcome = PlanResult::Outcome::Declined;
            return 0;
        }
        // Feedback rows of the week go too; the new plan replaces the week whole.
        exec(db, QStringLiteral("DELETE FROM Auftrag WHERE Jahr = ? AND Woche = ?"), {jahrText, wocheText});
    }

    // Progress counts the instruction rows read.
    const int total = scalar(db, QStringLiteral("SELECT count(*)") + QLatin1String(positionsWhere), {typ}).toInt();
    progress(0, total);
    status(statusPlanning(jahrText, wocheText));

    const IntervalLookup lookup = IntervalLookup::load(db);
    Statement insert(db, insertSql());
    QSqlQuery &ins = insert.query();
    // Values that are the same for every row of the run are bound once.
    ins.bindValue(pJahr, jahrText);
    ins.bindValue(pWoche, wocheText);
    ins.bindValue(pDatum, QDate::currentDate().toString(QStringLiteral("dd.MM.yyyy")));
    std::vector<Pending> pending;
    pending.reserve(BatchSize);
    int count = 0;
    QString pendingMark;
    auto flush = [&] {
        if (pending.empty())
            return;
        ins.bindValue(pKeineWartung, pendingMark);
        for (int i = 0; i < BatchSize; ++i)
            ins.bindValue(pFirstRowId + i, i < int(pending.size()) ? pending[i].rowId : QVariant());
        const int written = insert.run().numRowsAffected();
        if (written != int(pending.size())) {
            // A row was left out by the number check: name the first such row.
            for (const Pending &p : pending)
                if (!scalar(db, QStringLiteral("SELECT 1 FROM ProtokollPositionen WHERE rowid = ?"
                                               " AND trim(Planzeit) NOT GLOB '*[^0-9,.]*'"
                                               " AND trim(Materialmenge) NOT GLOB '*[^0-9,.]*'"
                                               " AND trim(AnzahlPersonen) NOT GLOB '*[^0-9]*'"),
                            {p.rowId}).isValid())
                    throw rowFault(db, FaultTypeMismatch, QStringLiteral("Typen unverträglich"), p.teNummer,
                                   p.intervall,
                                   QStringLiteral(": Planzeit, Materialmenge oder AnzahlPersonen ist keine Zahl"));
            throw Fault(FaultNo::General, QStringLiteral("Zeilen konnten nicht geschrieben werden"));
        }
        count += written;
        pending.clear();
    };

    QSqlQuery components = stream(db, QString::fromUtf8(componentsSql), {jahrText});
    QSqlQuery positions = stream(db, QStringLiteral("SELECT rowid, TeNummer, Intervall") + QLatin1String(positionsWhere)
                                         + QStringLiteral(" ORDER BY TeNummer"), {typ});
    bool componentsLeft = components.next();
    QString componentKey = componentsLeft ? components.value(kFileIndex).toString() : QString();

    const int step = std::max(1, total / 200);
    int done = 0;
    QString teNummer;       // the component of the rows being read
    bool inPlant = false;   // it is a plant component whose reference year has come
    QString mark;           // its maintenance-free mark in the planned week
    Bezug bezug;
    while (positions.next()) {
        const QString te = positions.value(cTeNummer).toString();
        if (te != teNummer) {
            // Next component: catch up in the component stream, read its fields once.
            teNummer = te;
            while (componentsLeft && compareKeys(componentKey, te) < 0) {
                componentsLeft = components.next();
                componentKey = componentsLeft ? components.value(kFileIndex).toString() : QString();
            }
            inPlant = componentsLeft && compareKeys(componentKey, te) == 0 && !te.isEmpty();
            if (inPlant) {
                bezug = Bezug::of(components.value(kBezugsjahr).toString(), components.value(kBezugsWoche).toString());
                const KeineWartungFelder kw{components.value(kKeineWartung).toString(),
                                            components.value(kVon1).toString(), components.value(kBis1).toString(),
                                            components.value(kVon2).toString(), components.value(kBis2).toString()};
                mark = inKeineWartung(kw, wocheText) ? QStringLiteral("J") : QStringLiteral("N");
            }
        }
        if (++done % step == 0)
            progress(done, total);
        if (!inPlant)
            continue;

        const QString code = positions.value(cIntervall).toString();
        const IntervalLookup::Interval *interval = code.isEmpty() ? nullptr : lookup.interval(code);
        if (!interval)
            continue;   // an unknown or missing interval code is skipped without a word
        switch (isDue(lookup, code, *interval, jahr, woche, bezug)) {
        case Due::No:
            break;
        case Due::FaultBezugsjahr:
            throw rowFault(db, FaultTypeMismatch, QStringLiteral("Typen unverträglich"), te, code,
                           QStringLiteral(", Bezugsjahr '%1'").arg(components.value(kBezugsjahr).toString()));
        case Due::FaultBezugsWoche:
            throw rowFault(db, FaultTypeMismatch, QStringLiteral("Typen unverträglich"), te, code,
                           QStringLiteral(", Bezugswoche '%1'").arg(components.value(kBezugsWoche).toString()));
        case Due::FaultAbstand:
            throw rowFault(db, FaultDivisionByZero, QStringLiteral("Division durch Null"), te, code,
                           QStringLiteral(", Abstand 0 und keine Zeile in IVA für Bezugswoche '%1'").arg(bezug.wocheText));
        case Due::Yes:
            if (mark != pendingMark || int(pending.size()) == BatchSize)
                flush();
            pendingMark = mark;
            pending.push_back({positions.value(cRowId), te, code});
            break;
        }
    }
    flush();
    if (positions.lastError().isValid())
        throw sqlFault(positions);
    positions.finish();
    components.finish();

    tx.commit();
    r.outcome = PlanResult::Outcome::Planned;
    progress(0, total);
    status(statusDone(count, shortTerm));
    return count;
}

}
