#include "PlanningBench.h"
#include "Figures.h"
#include "PlantGenerator.h"
#include "zol/core/Database.h"
#include "zol/core/Messages.h"
#include "zol/core/Session.h"
#include "zol/core/Sql.h"
#include "zol/planning/PlanningRun.h"
#include "zol/planning/WeekCalendar.h"
#include <QCryptographicHash>
#include <QDate>
#include <QElapsedTimer>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>

namespace zolbench {

namespace {

const char *const auftragColumns =
    "TeIndex, Jahr, Woche, Objekt, Anweisung, WIVerantwortlicher, Ausfuehrender, Kostenstelle, Lokalisierung,"
    " Option1, KompBezeichnung, Betriebszustand, BetriebszustandXL, PlanZeit, Materialcode, Materialmenge,"
    " Bemerkung, Text, \"Rückmeldung\", Befund, Verbal, Intervall, Datum, AnzahlPersonen, SicherheitsHinweis,"
    " IntervallTyp, KeineWartung";

// A statement with its values, bound in the order the marks stand in the text.
struct Bound {
    QString sql;
    QVariantList values;
    QString mark(const QVariant &v)
    {
        values << v;
        return QStringLiteral("?");
    }
};

// The SELECT of the floor: the rows of the week with every field of Auftrag,
// the due decision and the maintenance-free mark written in SQL.
Bound dueRowsSql(const QString &jahr, const QString &woche)
{
    const bool shortTerm = woche == QLatin1String("00");
    const int wochenIndex = jahr.toInt() * 52 + woche.toInt();
    Bound b;
    auto range = [&](int n) {
        const QString von = QStringLiteral("A.KeineWartungWocheVon%1").arg(n);
        const QString bis = QStringLiteral("A.KeineWartungWocheBis%1").arg(n);
        return QStringLiteral("(%1 <> '' AND CASE WHEN %1 <= %2 THEN %3 >= %1 AND %4 <= %2"
                              " ELSE %5 >= %1 OR %6 <= %2 END)")
            .arg(von, bis, b.mark(woche), b.mark(woche), b.mark(woche), b.mark(woche));
    };
    const QString bezugsIndex =
        QStringLiteral("(CAST(A.Bezugsjahr AS INTEGER) * 52 + CAST(A.BezugsWoche AS INTEGER))");
    // Marks are taken in the order they stand in the text.
    const QString mJahr = b.mark(jahr), mWoche = b.mark(woche);
    const QString mDatum = b.mark(QDate::currentDate().toString(QStringLiteral("dd.MM.yyyy")));
    b.sql = QStringLiteral("SELECT B.TeNummer, %1, %2, B.Objekt, B.Anweisung, A.WIVerantwortlicher, B.Ausfuehrender,"
                           " A.Kostenstelle, A.Lokalisierung, A.Option1, A.Text, B.Betriebszustand,"
                           " CASE WHEN B.Betriebszustand = 'R' COLLATE BINARY THEN 'R' ELSE 'Z' END,"
                           " CAST(replace(trim(B.Planzeit), ',', '.') AS REAL), B.Materialcode,"
                           " CAST(replace(trim(B.Materialmenge), ',', '.') AS REAL), '', B.Text, 'N', '', '',"
                           " B.Intervall, %3, CAST(trim(B.AnzahlPersonen) AS INTEGER), B.Sicherheitshinweis,"
                           " B.Intervalltyp,")
                .arg(mJahr, mWoche, mDatum);
    const QString range1 = range(1);
    const QString range2 = range(2);
    b.sql += QStringLiteral(" CASE WHEN A.KeineWartung = 'J' COLLATE BINARY AND (%1 OR %2) THEN 'J' ELSE 'N' END")
                 .arg(range1, range2);
    // Components outside, their instructions found by the index that starts with
    // the kind: of the orders SQLite might choose, the faster by a third.
    b.sql += QStringLiteral(" FROM ProtokollKopf AS A CROSS JOIN ProtokollPositionen AS B ON B.TeNummer = A.FileIndex"
                            " JOIN Intervalle AS I ON I.Intervall = B.Intervall");
    if (!shortTerm)
        b.sql += QStringLiteral(" LEFT JOIN IVA AS V ON V.Intervall = B.Intervall AND V.BezugsWoche = A.BezugsWoche");
    const QString mBis = b.mark(jahr);
    const QString mTyp = b.mark(shortTerm ? QStringLiteral("K") : QStringLiteral("L"));
    b.sql += QStringLiteral(" WHERE A.Katalog = '0' AND A.Bezugsjahr <= %1 AND B.Intervalltyp = %2"
                            " AND B.Anweisung <> '0000' AND B.TeNummer <> ''")
                 .arg(mBis, mTyp);
    if (shortTerm) {
        b.sql += QStringLiteral(" AND CAST(A.Bezugsjahr AS INTEGER) <= %1").arg(b.mark(jahr.toInt()));
    } else {
        // The week's IVA column is named by the week (a checked number, 01 to 52).
        const QString mIndex = b.mark(wochenIndex), mIndex2 = b.mark(wochenIndex);
        b.sql += QStringLiteral(" AND %1 - %2 >= 0 AND CASE WHEN V.Intervall IS NULL THEN (%3 - %2) % I.Abstand = 0"
                                " ELSE V.W%4 = '1' END")
                     .arg(mIndex, bezugsIndex, mIndex2, woche);
    }
    return b;
}

QSqlQuery run(const QSqlDatabase &db, const QString &sql, const QVariantList &values = {})
{
    QSqlQuery q(db);
    q.setForwardOnly(true);
    bool ok = q.prepare(sql);
    for (const QVariant &v : values)
        q.addBindValue(v);
    if (!ok || !q.exec()) {
        std::fprintf(stderr, "%s\n%s\n", qPrintable(q.lastError().text()), qPrintable(sql));
        std::exit(3);
    }
    return q;
}

double seconds(const QElapsedTimer &t) { return t.nsecsElapsed() / 1e9; }

// Answers every question with Yes and keeps the messages off the figures.
class YesPresenter : public zol::MessagePresenter {
public:
    QStringList faults;
    int present(const QString &text, int style) override
    {
        if (style == zol::Style::Critical || style == zol::Style::Exclamation)
            faults << text;
        return style == zol::Style::YesNo ? zol::Answer::Yes : zol::Answer::Ok;
    }
};

}   // namespace

double planBySql(const QSqlDatabase &db, const QString &jahr, const QString &woche, int *rows, double *cpu)
{
    const Bound select = dueRowsSql(jahr, woche);
    QElapsedTimer t;
    t.start();
    const double cpu0 = cpuSeconds();
    zol::Transaction tx(db);
    run(db, QStringLiteral("DELETE FROM Auftrag WHERE Jahr = ? AND Woche = ?"), {jahr, woche});
    QSqlQuery q = run(db, QStringLiteral("INSERT INTO Auftrag (%1) ").arg(QString::fromUtf8(auftragColumns)) + select.sql,
                      select.values);
    *rows = q.numRowsAffected();
    q.finish();
    tx.commit();
    if (cpu)
        *cpu = cpuSeconds() - cpu0;
    return seconds(t);
}

QByteArray weekDigest(const QSqlDatabase &db, const QString &jahr, const QString &woche)
{
    QCryptographicHash hash(QCryptographicHash::Sha1);
    QSqlQuery q = run(db,
                      QStringLiteral("SELECT %1 FROM Auftrag WHERE Jahr = ? AND Woche = ?"
                                     " ORDER BY Jahr, Woche, TeIndex, Objekt, Anweisung")
                          .arg(QString::fromUtf8(auftragColumns)),
                      {jahr, woche});
    const int n = q.record().count();
    while (q.next())
        for (int i = 0; i < n; ++i) {
            const QVariant v = q.value(i);
            hash.addData(QByteArray::number(v.typeId()));   // 1.5 and '1.5' differ
            hash.addData(v.toString().toUtf8());
            hash.addData(QByteArrayView("\x1f", 1));
        }
    return hash.result();
}

double planByRun(zol::Session &session, const QString &jahr, const QString &woche, int *rows, double *cpu)
{
    YesPresenter presenter;
    zol::MessagePresenter *before = zol::installedPresenter();
    zol::installPresenter(&presenter);
    zol::PlanningRun planning(session);
    QElapsedTimer t;
    t.start();
    const double cpu0 = cpuSeconds();
    const zol::PlanResult r = planning.run(jahr, woche);
    const double s = seconds(t);
    if (cpu)
        *cpu = cpuSeconds() - cpu0;
    zol::installPresenter(before);
    if (r.outcome != zol::PlanResult::Outcome::Planned) {
        std::fprintf(stderr, "planning %s/%s failed: %s\n", qPrintable(woche), qPrintable(jahr),
                     qPrintable(presenter.faults.join(QLatin1Char('\n'))));
        return -1;
    }
    *rows = r.count;
    return s;
}

bool compareWithSql(zol::Session &session, const QString &jahr, const QString &woche, int repeat, const char *prefix,
                    const char *ratioName)
{
    const QSqlDatabase db = session.db();
    const QByteArray name(prefix);
    double bestRun = 1e9, bestSql = 1e9, cpu = 0, bestCpu = 1e9, bestSqlCpu = 1e9;
    int runRows = 0, sqlRows = 0;
    QByteArray runDigest, sqlDigest;
    for (int i = 0; i < std::max(1, repeat); ++i) {
        const double r = planByRun(session, jahr, woche, &runRows, &cpu);
        if (r < 0)
            return false;
        bestRun = std::min(bestRun, r);
        bestCpu = std::min(bestCpu, cpu);
        if (i == 0)
            runDigest = weekDigest(db, jahr, woche);
        bestSql = std::min(bestSql, planBySql(db, jahr, woche, &sqlRows, &cpu));
        bestSqlCpu = std::min(bestSqlCpu, cpu);
        if (i == 0)
            sqlDigest = weekDigest(db, jahr, woche);
    }
    figure(name + "_s", bestRun, "s");
    figure(name + "_cpu_s", bestCpu, "s");
    figure(name + "_rows", runRows, "rows", 0);
    figure(name + "_sql_s", bestSql, "s");
    figure(name + "_sql_cpu_s", bestSqlCpu, "s");
    figure(ratioName, bestRun / bestSql, "x", 2);
    // On a busy machine the wall time waits for others; the CPU time is the work.
    figure(QByteArray(ratioName) + "_cpu", bestCpu / bestSqlCpu, "x", 2);
    if (runRows != sqlRows || runDigest != sqlDigest) {
        std::fprintf(stderr, "%s: the run wrote %d rows, the SQL %d, and they differ\n", prefix, runRows, sqlRows);
        return false;
    }
    return true;
}

void sqlBreakdown(const QSqlDatabase &db, const QString &jahr, const QString &woche, const char *prefix)
{
    // CPU seconds: on a shared machine the wall time of a phase is mostly waiting.
    const QByteArray name(prefix);
    const Bound select = dueRowsSql(jahr, woche);
    const QString insert = QStringLiteral("INSERT INTO %2 (%1) ").arg(QString::fromUtf8(auftragColumns));
    double t = 0;
    auto lap = [&t] {
        const double now = cpuSeconds(), d = now - t;
        t = now;
        return d;
    };
    {
        zol::Transaction tx(db);
        lap();
        run(db, QStringLiteral("DELETE FROM Auftrag WHERE Jahr = ? AND Woche = ?"), {jahr, woche});
        figure(name + "_gap_delete_cpu_s", lap(), "s");
        run(db, QStringLiteral("SELECT count(*) FROM (%1)").arg(select.sql), select.values).next();
        const double read = lap();
        figure(name + "_gap_read_decide_cpu_s", read, "s");
        run(db, insert.arg(QStringLiteral("Auftrag")) + select.sql, select.values);
        figure(name + "_gap_insert_cpu_s", lap() - read, "s");
        // The same rows into a table of the same fields without indexes.
        run(db, QStringLiteral("CREATE TABLE BenchOhneIndex AS SELECT * FROM Auftrag WHERE 0"));
        lap();
        run(db, insert.arg(QStringLiteral("BenchOhneIndex")) + select.sql, select.values);
        figure(name + "_gap_insert_no_index_cpu_s", lap() - read, "s");
        // tx rolls back
    }
    {
        // The commit of a week: the journal written and the data file brought up to date.
        zol::Transaction tx(db);
        run(db, QStringLiteral("DELETE FROM Auftrag WHERE Jahr = ? AND Woche = ?"), {jahr, woche});
        run(db, insert.arg(QStringLiteral("Auftrag")) + select.sql, select.values);
        QElapsedTimer wall;
        wall.start();
        lap();
        tx.commit();
        figure(name + "_gap_commit_cpu_s", lap(), "s");
        figure(name + "_gap_commit_s", seconds(wall), "s");
    }
}

int runScaleBench(const QString &jahr, const QString &woche, const QList<int> &sizes)
{
    for (int components : sizes) {
        QTemporaryDir dir;
        zol::Database database(dir.path());
        database.create(QStringLiteral("Admin"), QStringLiteral("admin"));
        database.open();
        PlantSpec spec;
        spec.components = components;
        spec.lines = components * 10;
        generatePlant(database.connection(), spec);
        zol::Session session(database);
        session.login().UserName = QStringLiteral("Admin");
        session.login().Level = QStringLiteral("Administrator");
        session.login().LoginSucceeded = true;
        int rows = 0;
        double cpu = 0;
        planByRun(session, jahr, woche, &rows);   // the week planned once, so the timed run replaces it
        const double s = planByRun(session, jahr, woche, &rows, &cpu);
        if (s < 0)
            return 3;
        const QByteArray name = "scale_" + QByteArray::number(components);
        figure(name + "_plan_s", s, "s");
        figure(name + "_plan_cpu_s", cpu, "s");
        figure(name + "_rows", rows, "rows", 0);
        figure(name + "_s_per_1000_rows", rows ? s * 1000 / rows : 0, "s", 4);
        figure(name + "_cpu_s_per_1000_rows", rows ? cpu * 1000 / rows : 0, "s", 4);
    }
    return 0;
}

}
