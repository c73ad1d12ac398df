#include "RowBuffer.h"
#include "ProtocolGridRules.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/core/Sql.h"
#include <QSqlQuery>

namespace zol {

namespace {

QString columnList()
{
    QStringList cols;
    for (const QString &f : InstructionRow::fieldNames())
        cols << ident(f);
    return cols.join(QLatin1Char(','));
}

QString marks()
{
    QStringList m;
    for (int i = 0; i < Col::Count; ++i)
        m << QStringLiteral("?");
    return m.join(QLatin1Char(','));
}

}

void clearRowBuffer(const QSqlDatabase &db)
{
    exec(db, QStringLiteral("DELETE FROM ProtokollPositionenBuffer"));
}

int rowBufferCount(const QSqlDatabase &db)
{
    return scalar(db, QStringLiteral("SELECT COUNT(*) FROM ProtokollPositionenBuffer")).toInt();
}

QList<InstructionRow> rowBufferRows(const QSqlDatabase &db)
{
    QSqlQuery q = exec(db, QStringLiteral("SELECT %1 FROM ProtokollPositionenBuffer ORDER BY rowid").arg(columnList()));
    QList<InstructionRow> rows;
    while (q.next()) {
        InstructionRow r;
        for (int c = 0; c < Col::Count; ++c)
            r.field(c) = q.value(c).toString();
        rows << r;
    }
    return rows;
}

void copyToRowBuffer(const QSqlDatabase &db, const QList<InstructionRow> &rows)
{
    Transaction tx(db);
    clearRowBuffer(db);
    Statement ins(db, QStringLiteral("INSERT INTO ProtokollPositionenBuffer (%1) VALUES (%2)").arg(columnList(), marks()));
    for (const InstructionRow &r : rows) {
        QVariantList values;
        for (int c = 0; c < Col::Count; ++c)
            values << (r.value(c).isEmpty() ? QStringLiteral(" ") : r.value(c));
        ins.run(values);
    }
    tx.commit();
}

PasteResult pasteRowBuffer(ProtocolGrid &grid)
{
    PasteResult result;
    if (grid.rights().readOnly)
        return result;
    const QSqlDatabase db = grid.db();
    const QList<InstructionRow> buffered = rowBufferRows(db);
    result.total = int(buffered.size());
    if (buffered.isEmpty()) {
        ZeigeMeldung(QStringLiteral("Der Puffer is leer"), Style::Exclamation);
        return result;
    }
    const Numbering before = grid.numbering();
    try {
        Transaction tx(db);
        Statement ins(db, QStringLiteral("INSERT INTO ProtokollPositionen (%1) VALUES (%2)").arg(columnList(), marks()));
        for (const InstructionRow &b : buffered) {
            // The buffered component number isn't trusted; the row rule sets it,
            // and Intervalltyp comes fresh from the interval table.
            InstructionRow row = b;
            row.Intervalltyp.clear();
            grid.setNumbering({integerPart(row.Objekt).value_or(0), integerPart(row.Anweisung).value_or(0)});
            if (!grid.rowRule(row) || !grid.checkFields(row)) {
                ++result.refused;
                continue;
            }
            QVariantList values;
            for (int c = 0; c < Col::Count; ++c)
                values << row.value(c);
            try {
                ins.run(values);
                ++result.written;
            } catch (const Fault &f) {
                if (f.number() != FaultNo::KeyExists)
                    throw;
                ++result.refused;
            }
        }
        tx.commit();
    } catch (const Fault &f) {
        grid.setNumbering(before);
        ZeigeMeldung(QStringLiteral("Fehler Nummer: %1  Beschreibung: %2").arg(f.number()).arg(f.description()),
                     Style::Critical);
        return PasteResult{result.total, 0, 0};
    }
    if (result.refused == 0)
        ZeigeMeldung(QStringLiteral("%1 Positionen wurden eingefügt").arg(result.total), Style::Information);
    else
        ZeigeMeldung(QStringLiteral("%1 von %2 Positionen wurden aufgrund falscher oder doppelter Objekt/Anweisungs "
                                    "Nummern nicht übernommen")
                         .arg(result.refused)
                         .arg(result.total),
                     Style::Information);
    return result;
}

}
