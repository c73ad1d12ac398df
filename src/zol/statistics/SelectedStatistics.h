#pragma once
#include "StatisticsInput.h"
#include <QList>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>

namespace zol {

// Planned against reported, per component, for one year and a range of its
// weeks: the six measures A to F, twelve ratios and a sum row.

// The twenty column captions of the list, in order.
const QStringList &statistikSpalten();
// The field names of the database export, one per column.
QStringList statistikFeldnamen();

struct StatistikZeile {
    QString benennung;
    QString pfad;
    qint64 a = 0;        // planned instructions: long-term orders of the range
    qint64 b = 0;        // reported rows of the range, whatever their finding
    double minuten = 0;  // reported time (C), in minutes
    qint64 d = 0, e = 0, f = 0;   // findings F, R and S
    // The twenty cells as the list shows them. The ratios to C are per
    // minute, although C is shown in hours.
    QStringList cells() const;
};

struct StatistikErgebnis {
    QList<StatistikZeile> zeilen;
    bool jahrestabelle = false;   // the yearly table could be read
};

// One row per component of the entries (an installation stands for every
// component under it, depth first). A year never posted gives 0 for B to F.
StatistikErgebnis statistikAuswerten(const QSqlDatabase &db, const QString &jahr, const QString &wocheVon,
                                     const QString &wocheBis, const QStringList &entries,
                                     const Progress &progress = {});

// The sum row, added up from the cells of the rows as shown (C from its
// hours text); its ratios to C are per hour.
QStringList summenZeile(const QList<QStringList> &rows);
inline const QString SummenText = QStringLiteral("   *** Summe aller ausgew. Komponenten ***");

}
