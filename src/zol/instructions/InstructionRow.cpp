#include "InstructionRow.h"
#include "zol/core/Sql.h"
#include <QRegularExpression>
#include <QSqlQuery>
#include <cmath>

namespace zol {

const QStringList &InstructionRow::fieldNames()
{
    static const QStringList names{
        QStringLiteral("TeNummer"), QStringLiteral("Objekt"), QStringLiteral("Anweisung"), QStringLiteral("Text"),
        QStringLiteral("Ausfuehrender"), QStringLiteral("Betriebszustand"), QStringLiteral("AnzahlPersonen"),
        QStringLiteral("Sicherheitshinweis"), QStringLiteral("Intervall"), QStringLiteral("Planzeit"),
        QStringLiteral("Materialcode"), QStringLiteral("Materialmenge"), QStringLiteral("Intervalltyp")};
    return names;
}

QString &InstructionRow::field(int col)
{
    switch (col) {
    case Col::TeNummer: return TeNummer;
    case Col::Objekt: return Objekt;
    case Col::Anweisung: return Anweisung;
    case Col::Text: return Text;
    case Col::Ausfuehrender: return Ausfuehrender;
    case Col::Betriebszustand: return Betriebszustand;
    case Col::AnzahlPersonen: return AnzahlPersonen;
    case Col::Sicherheitshinweis: return Sicherheitshinweis;
    case Col::Intervall: return Intervall;
    case Col::Planzeit: return Planzeit;
    case Col::Materialcode: return Materialcode;
    case Col::Materialmenge: return Materialmenge;
    default: return Intervalltyp;
    }
}

const QString &InstructionRow::value(int col) const
{
    return const_cast<InstructionRow *>(this)->field(col);
}

InstructionRow newInstructionRow(const QString &teNummer, const QString &wiVerantwortlicher)
{
    InstructionRow r;
    r.TeNummer = teNummer;
    r.Ausfuehrender = wiVerantwortlicher;
    r.Betriebszustand = QStringLiteral("X");
    r.AnzahlPersonen = QStringLiteral("1");
    r.Intervall = QStringLiteral("1W");
    r.Planzeit = QStringLiteral("0,0");
    r.Materialmenge = QStringLiteral("0,0");
    return r;
}

bool isNumeric(const QString &text)
{
    static const QRegularExpression re(QStringLiteral("^\\s*[+-]?(\\d+([.,]\\d*)?|[.,]\\d+)\\s*$"));
    return re.match(text).hasMatch();
}

double numericValue(const QString &text)
{
    if (!isNumeric(text))
        return 0.0;
    QString t = text.trimmed();
    t.replace(QLatin1Char(','), QLatin1Char('.'));
    if (t.endsWith(QLatin1Char('.')))
        t.chop(1);
    return t.toDouble();
}

std::optional<qint64> integerPart(const QString &text)
{
    if (!isNumeric(text))
        return std::nullopt;
    return qint64(std::trunc(numericValue(text)));
}

qint64 roundHalfEven(double value)
{
    const double fl = std::floor(value);
    const double diff = value - fl;
    if (diff > 0.5)
        return qint64(fl) + 1;
    if (diff < 0.5)
        return qint64(fl);
    const qint64 f = qint64(fl);
    return (f % 2 == 0) ? f : f + 1;
}

QString formatMask(const QString &text, const QString &mask)
{
    if (!isNumeric(text))
        return text;
    const qint64 v = qint64(std::round(numericValue(text)));
    const QString digits = QString::number(v < 0 ? -v : v).rightJustified(mask.size(), QLatin1Char('0'));
    return v < 0 ? QLatin1Char('-') + digits : digits;
}

bool isHeadRowNumber(const QString &anweisung)
{
    if (anweisung.isEmpty() || anweisung == QLatin1String("0000"))
        return true;
    const auto n = integerPart(anweisung);
    return n && *n == 0;
}

void applyHeadRowValues(InstructionRow &row)
{
    row.Anweisung = QStringLiteral("0000");
    row.Intervall.clear();
    row.Materialcode.clear();
    row.Sicherheitshinweis.clear();
    row.Ausfuehrender.clear();
    row.Betriebszustand.clear();
    row.Materialmenge = QStringLiteral("0,0");
    row.Planzeit = QStringLiteral("0,0");
    row.AnzahlPersonen = QStringLiteral("0");
}

IntervalTable::IntervalTable(const QSqlDatabase &db)
{
    load(db);
}

void IntervalTable::load(const QSqlDatabase &db)
{
    m_typ.clear();
    m_codes.clear();
    QSqlQuery q = exec(db, QStringLiteral("SELECT Intervall, Typ FROM Intervalle"));
    while (q.next()) {
        const QString code = q.value(0).toString();
        m_typ.insert(code.toUpper(), q.value(1).toString());
        m_codes << code;
    }
}

std::optional<QString> IntervalTable::typ(const QString &code) const
{
    auto it = m_typ.constFind(code.toUpper());
    if (it == m_typ.constEnd())
        return std::nullopt;
    return *it;
}

QStringList IntervalTable::codes() const
{
    return m_codes;
}

namespace InstructionText {
QString nurNumerisch() { return QStringLiteral("Nur numerische Zeichen erlaubt"); }
QString hoechstens(int size) { return QStringLiteral("Höchstens %1 Zeichen erlaubt").arg(size); }
QString betriebszustand()
{
    return QStringLiteral("Nur 'R'=in Ruhe, 'L'=in Lauf/Betrieb oder 'X'=egal sind erlaubt");
}
QString intervallUndefiniert() { return QStringLiteral("Dieses Intervall ist nicht definiert"); }
QString zulaessigeWerte() { return QStringLiteral("Zulässige Werte: R=in Ruhe, L=in Lauf/Betrieb, X=egal"); }
}

bool checkBetriebszustand(QString &value)
{
    value = value.toUpper();
    return value == QLatin1String("R") || value == QLatin1String("L") || value == QLatin1String("X");
}

static InstructionRow rowOf(const QSqlQuery &q)
{
    InstructionRow r;
    r.rowId = q.value(0).toLongLong();
    for (int c = 0; c < Col::Count; ++c)
        r.field(c) = q.value(c + 1).toString();
    return r;
}

QList<InstructionRow> loadProtocolRows(const QSqlDatabase &db, const QString &teNummer)
{
    QStringList cols;
    for (const QString &f : InstructionRow::fieldNames())
        cols << ident(f);
    // The grid sorts by Objekt alone; the key index keeps the rows of one
    // object in their stored order.
    QSqlQuery q = exec(db,
                       QStringLiteral("SELECT rowid, %1 FROM ProtokollPositionen WHERE TeNummer = ? ORDER BY Objekt")
                           .arg(cols.join(QLatin1Char(','))),
                       {teNummer});
    QList<InstructionRow> rows;
    while (q.next())
        rows << rowOf(q);
    return rows;
}

Numbering numberingOf(const QList<InstructionRow> &rows)
{
    Numbering n;
    if (!rows.isEmpty()) {
        n.lastObjekt = integerPart(rows.last().Objekt).value_or(0);
        n.lastAnweisung = integerPart(rows.last().Anweisung).value_or(0);
    }
    return n;
}

static QVariantList valuesOf(const InstructionRow &row)
{
    QVariantList v;
    for (int c = 0; c < Col::Count; ++c)
        v << row.value(c);
    return v;
}

void storeInstructionRow(const QSqlDatabase &db, InstructionRow &row)
{
    QStringList cols, marks, sets;
    for (const QString &f : InstructionRow::fieldNames()) {
        cols << ident(f);
        marks << QStringLiteral("?");
        sets << ident(f) + QStringLiteral(" = ?");
    }
    QVariantList values = valuesOf(row);
    if (row.rowId == 0) {
        QSqlQuery q = exec(db, QStringLiteral("INSERT INTO ProtokollPositionen (%1) VALUES (%2)")
                                   .arg(cols.join(QLatin1Char(',')), marks.join(QLatin1Char(','))),
                           values);
        row.rowId = q.lastInsertId().toLongLong();
    } else {
        values << row.rowId;
        exec(db, QStringLiteral("UPDATE ProtokollPositionen SET %1 WHERE rowid = ?").arg(sets.join(QLatin1Char(','))),
             values);
    }
}

}
