#pragma once
#include <QByteArray>
#include <QSqlDatabase>
#include <QString>

namespace zol {
class Session;
}

namespace zolbench {

// The floor of a planning run: the same week planned by the database alone,
// in one transaction: the DELETE of the week and one INSERT … SELECT that
// joins ProtokollKopf, ProtokollPositionen, Intervalle and IVA and decides
// due and maintenance-free in SQL. Returns the seconds; `rows` the rows written,
// `cpu` the process CPU seconds.
double planBySql(const QSqlDatabase &db, const QString &jahr, const QString &woche, int *rows,
                 double *cpu = nullptr);

// Every field of every row of the week, in key order, as one digest: equal
// digests mean the run and the SQL wrote the same rows.
QByteArray weekDigest(const QSqlDatabase &db, const QString &jahr, const QString &woche);

// Plans the week with the planning run (answering Yes); the seconds, or a
// negative value when it did not plan. `cpu` the process CPU seconds it took.
double planByRun(zol::Session &session, const QString &jahr, const QString &woche, int *rows, double *cpu = nullptr);

// The run and its floor on the week, each `repeat` times in turn, replacing the
// plan (the best of several is the least disturbed by a shared machine);
// prints the best of each under names that begin with `prefix`, and their
// ratio as `ratioName`. False when they wrote different rows.
bool compareWithSql(zol::Session &session, const QString &jahr, const QString &woche, int repeat,
                    const char *prefix, const char *ratioName);

// Where the floor's time goes: the delete, reading and deciding alone, the
// inserts with and without the indexes of Auftrag, the commit (journal and
// checkpoint). Leaves the data as they were.
void sqlBreakdown(const QSqlDatabase &db, const QString &jahr, const QString &woche, const char *prefix);

// zolbench --scale: the same week on plants of 10,000 to 300,000 components
// (10 lines each), time per size and per 1,000 due rows.
int runScaleBench(const QString &jahr, const QString &woche, const QList<int> &sizes);

}
