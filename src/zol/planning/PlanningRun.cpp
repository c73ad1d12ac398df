#include "PlanningRun.h"
#include "WeekCalendar.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/core/Sql.h"
#include "zol/core/SqlFunction.h"
#include <QDate>
#include <QSqlError>
#include <QSqlQuery>
#include <QVarLengthArray>
#include <charconv>
#include <climits>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace zol {

namespace {

// Fault numbers of the arithmetic faults, as users know them.
constexpr int FaultTypeMismatch = 13;
constexpr int FaultDivisionByZero = 11;

// The run is one statement: the database joins the plant's components
// (Katalog 0, reference year reached) to their instructions of the kind
// planned (head rows "0000" are object titles), in its own key order and by
// its own key comparison, and writes each due row where it reads it, so the
// texts of a row never travel through the program. The due decision, the
// maintenance-free mark and the reading of the numbers stay the program's own
// rules, called by the statement as functions. The components are the outer
// loop: their instructions are found through the index that starts with the
// kind, and an instruction row is read from the table only when it is due.
// zol_due stands last: SQLite tests the other terms in the order written, so head rows and
// catalog components never reach the decision (nor its faults).
const char *const anyRowSql =
    "SELECT 1 FROM ProtokollKopf AS A, ProtokollPositionen AS B"
    " WHERE B.Intervalltyp = ? AND B.Anweisung <> '0000' AND A.Bezugsjahr <= ? AND A.Katalog = '0'"
    " AND A.FileIndex = B.TeNummer LIMIT 1";

enum Param { pJahr, pWoche, pDatum, pBezugsjahrBis, pTyp };
const char *const planSql =
    "INSERT INTO Auftrag (TeIndex, Jahr, Woche, Objekt, Anweisung, WIVerantwortlicher, Ausfuehrender,"
    " Kostenstelle, Lokalisierung, Option1, KompBezeichnung, Betriebszustand, BetriebszustandXL, PlanZeit,"
    " Materialcode, Materialmenge, Bemerkung, Text, \"Rückmeldung\", Befund, Verbal, Intervall, Datum,"
    " AnzahlPersonen, SicherheitsHinweis, IntervallTyp, KeineWartung)"
    " SELECT B.TeNummer, ?, ?, B.Objekt, B.Anweisung, A.WIVerantwortlicher, B.Ausfuehrender,"
    " A.Kostenstelle, A.Lokalisierung, A.Option1, A.Text, B.Betriebszustand,"
    " CASE WHEN B.Betriebszustand = 'R' COLLATE BINARY THEN 'R' ELSE 'Z' END,"   // as zol::BetriebszustandXL
    " zol_decimal(B.Planzeit), B.Materialcode, zol_decimal(B.Materialmenge), '', B.Text, 'N', '', '',"
    " B.Intervall, ?, zol_whole(B.AnzahlPersonen), B.Sicherheitshinweis, B.Intervalltyp,"
    // Most components have no maintenance-free time; only the others ask the rule.
    " CASE WHEN A.KeineWartung = 'J' COLLATE BINARY THEN zol_maintenance_free(A.KeineWartung,"
    "  A.KeineWartungWocheVon1, A.KeineWartungWocheBis1, A.KeineWartungWocheVon2, A.KeineWartungWocheBis2)"
    "  ELSE 'N' END"
    " FROM ProtokollKopf AS A CROSS JOIN ProtokollPositionen AS B"
    " WHERE A.Katalog = '0' AND A.Bezugsjahr <= ? AND B.Intervalltyp = ? AND B.TeNummer = A.FileIndex"
    " AND B.Anweisung <> '0000' AND B.TeNummer <> ''"
    " AND zol_due(A.rowid, B.rowid, B.Intervall, A.Bezugsjahr, A.BezugsWoche)";

// Spaces around a stored number are no part of it.
QByteArrayView trimSpaces(QByteArrayView t)
{
    while (!t.isEmpty() && t.front() == ' ')
        t = t.sliced(1);
    while (!t.isEmpty() && t.back() == ' ')
        t.chop(1);
    return t;
}

// Numbers are stored as text in the instruction, with a decimal comma
// ("1,5"; a point is taken too): digits and marks only, the empty text is 0,
// the value is what its leading digits and first mark say. Nothing when the
// text holds anything else.
std::optional<double> storedDecimal(QByteArrayView stored)
{
    const QByteArrayView t = trimSpaces(stored);
    QVarLengthArray<char, 32> number(t.size());
    for (qsizetype i = 0; i < t.size(); ++i) {
        const char c = t[i];
        if (c != ',' && c != '.' && (c < '0' || c > '9'))
            return std::nullopt;
        number[i] = c == ',' ? '.' : c;
    }
    double v = 0;
    std::from_chars(number.data(), number.data() + number.size(), v);
    return v;
}

// A stored whole number: digits only, the empty text is 0.
std::optional<long long> storedWhole(QByteArrayView stored)
{
    const QByteArrayView t = trimSpaces(stored);
    long long v = 0;
    for (char c : t) {
        if (c < '0' || c > '9')
            return std::nullopt;
        v = v > (LLONG_MAX - 9) / 10 ? LLONG_MAX : v * 10 + (c - '0');
    }
    return v;
}

// The due decision for the rows of one run, taken once for each reference
// year and week and interval code that the rows bring. Rows come component
// by component, so the decisions of the last reference are kept at hand.
class DueRows {
public:
    DueRows(IntervalLookup lookup, int jahr, int woche) : m_lookup(std::move(lookup)), m_jahr(jahr), m_woche(woche) {}

    Due decide(QByteArrayView intervall, QByteArrayView bezugsjahr, QByteArrayView bezugsWoche)
    {
        if (!m_current || bezugsjahr != QByteArrayView(m_currentJahr) || bezugsWoche != QByteArrayView(m_currentWoche)) {
            m_currentJahr.assign(bezugsjahr.data(), size_t(bezugsjahr.size()));
            m_currentWoche.assign(bezugsWoche.data(), size_t(bezugsWoche.size()));
            m_current = &m_byBezug[m_currentJahr + '\x1f' + m_currentWoche];
        }
        for (const auto &[code, due] : *m_current)
            if (intervall == QByteArrayView(code))
                return due;
        const QString code = QString::fromUtf8(intervall);
        const IntervalLookup::Interval *interval = code.isEmpty() ? nullptr : m_lookup.interval(code);
        // An unknown or missing interval code is skipped without a word.
        const Due due = interval ? isDue(m_lookup, code, *interval, m_jahr, m_woche,
                                         Bezug::of(QString::fromUtf8(bezugsjahr), QString::fromUtf8(bezugsWoche)))
                                 : Due::No;
        m_current->emplace_back(intervall.toByteArray().toStdString(), due);
        return due;
    }

private:
    using Decisions = std::vector<std::pair<std::string, Due>>;   // by interval code, a handful
    IntervalLookup m_lookup;
    int m_jahr, m_woche;
    std::unordered_map<std::string, Decisions> m_byBezug;
    Decisions *m_current = nullptr;   // of the last reference year and week
    std::string m_currentJahr, m_currentWoche;
};

Fault sqlFault(const QSqlQuery &q)
{
    const QSqlError e = q.lastError();
    return faultFromSqlError(e.databaseText().isEmpty() ? e.text() : e.databaseText(), e.nativeErrorCode(),
                             q.lastQuery());
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

// The row a rule found fault with, named once the statement has ended.
struct FaultyRow {
    Due due = Due::No;   // the decision's fault; No: a number of the row is no number
    qint64 rowId = 0;    // of ProtokollPositionen
    QString bezugsjahr, bezugsWoche;
};

RowFault faultOf(const QSqlDatabase &db, const FaultyRow &f)
{
    QSqlQuery q = exec(db, QStringLiteral("SELECT TeNummer, Intervall FROM ProtokollPositionen WHERE rowid = ?"),
                       {f.rowId});
    q.next();
    const QString te = q.value(0).toString(), code = q.value(1).toString();
    switch (f.due) {
    case Due::FaultBezugsjahr:
        return rowFault(db, FaultTypeMismatch, QStringLiteral("Typen unverträglich"), te, code,
                        QStringLiteral(", Bezugsjahr '%1'").arg(f.bezugsjahr));
    case Due::FaultBezugsWoche:
        return rowFault(db, FaultTypeMismatch, QStringLiteral("Typen unverträglich"), te, code,
                        QStringLiteral(", Bezugswoche '%1'").arg(f.bezugsWoche));
    case Due::FaultAbstand:
        return rowFault(db, FaultDivisionByZero, QStringLiteral("Division durch Null"), te, code,
                        QStringLiteral(", Abstand 0 und keine Zeile in IVA für Bezugswoche '%1'")
                            .arg(formatWoche(f.bezugsWoche)));
    default:
        return rowFault(db, FaultTypeMismatch, QStringLiteral("Typen unverträglich"), te, code,
                        QStringLiteral(": Planzeit, Materialmenge oder AnzahlPersonen ist keine Zahl"));
    }
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

    // Progress follows the components read: the outer loop takes them in the
    // order of their rowid, and the highest one is known at once.
    const int total = scalar(db, QStringLiteral("SELECT max(rowid) FROM ProtokollKopf")).toInt();
    progress(0, total);
    status(statusPlanning(jahrText, wocheText));

    std::optional<FaultyRow> faulty;
    qint64 lastDueRow = 0;   // a due row's numbers are read right after its decision
    const int step = std::max(1, total / 200);
    int shown = 0;

    DueRows dueRows(IntervalLookup::load(db), jahr, woche);
    const SqlFunction due(db, "zol_due", 5, [&](const SqlFunction::Args &a, SqlFunction::Result &out) {
        if (const int component = int(a.integer(0)); component >= shown + step) {
            shown = component;
            progress(std::min(shown, total), total);
        }
        const Due d = dueRows.decide(a.bytes(2), a.bytes(3), a.bytes(4));
        if (d == Due::Yes)
            lastDueRow = a.integer(1);
        if (d != Due::Yes && d != Due::No) {
            faulty = FaultyRow{d, a.integer(1), a.text(3), a.text(4)};
            out.setError(QStringLiteral("Fälligkeit nicht entscheidbar"));
            return;
        }
        out.setInteger(d == Due::Yes);
    });
    const QString notANumber = QStringLiteral("Keine Zahl");
    const SqlFunction decimal(db, "zol_decimal", 1, [&](const SqlFunction::Args &a, SqlFunction::Result &out) {
        if (const std::optional<double> v = storedDecimal(a.bytes(0)))
            return out.setDouble(*v);
        faulty = FaultyRow{Due::No, lastDueRow, {}, {}};
        out.setError(notANumber);
    });
    const SqlFunction whole(db, "zol_whole", 1, [&](const SqlFunction::Args &a, SqlFunction::Result &out) {
        if (const std::optional<long long> v = storedWhole(a.bytes(0)))
            return out.setInteger(*v);
        faulty = FaultyRow{Due::No, lastDueRow, {}, {}};
        out.setError(notANumber);
    });
    const SqlFunction maintenanceFree(db, "zol_maintenance_free", 5,
                                      [&](const SqlFunction::Args &a, SqlFunction::Result &out) {
        const bool free = inKeineWartung({a.text(0), a.text(1), a.text(2), a.text(3), a.text(4)}, wocheText);
        out.setText(free ? QByteArrayView("J") : QByteArrayView("N"));
    });

    int count = 0;
    {
        QSqlQuery q(db);
        if (!q.prepare(QString::fromUtf8(planSql)))
            throw sqlFault(q);
        q.bindValue(pJahr, jahrText);
        q.bindValue(pWoche, wocheText);
        q.bindValue(pDatum, QDate::currentDate().toString(QStringLiteral("dd.MM.yyyy")));
        q.bindValue(pBezugsjahrBis, jahrText);
        q.bindValue(pTyp, typ);
        if (!q.exec()) {
            if (faulty)
                throw faultOf(db, *faulty);
            throw sqlFault(q);
        }
        count = q.numRowsAffected();
    }

    tx.commit();
    r.outcome = PlanResult::Outcome::Planned;
    progress(0, total);
    status(statusDone(count, shortTerm));
    return count;
}

}
