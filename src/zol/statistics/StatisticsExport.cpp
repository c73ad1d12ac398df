#include "StatisticsExport.h"
#include "StatisticsInput.h"
#include "zol/core/OutputFile.h"
#include "zol/exchange/DbTableWriter.h"
#include "zol/exchange/XlsxWriter.h"
#include <QFileInfo>

namespace zol {

void checkNewExportFile(const QString &path)
{
    const QString refusal = outputRefusal(path);
    if (!refusal.isEmpty())
        throw OutputRefused(refusal);
    if (QFileInfo::exists(path))
        throw OutputRefused(MsgDateiExistiert, true);
}

QString tabellenNameFehler(const QString &name)
{
    // The names a database table could never have had: the marks that close
    // or break a quoted name, control characters, a leading blank, and the
    // names the database keeps for itself. A ' is an ordinary character.
    if (name.size() > 64 || name.startsWith(QLatin1Char(' ')) || name.startsWith(QLatin1String("sqlite_"), Qt::CaseInsensitive))
        return MsgTabelleUnzulaessig;
    for (QChar c : name)
        if (c.unicode() < 32 || c == QLatin1Char('[') || c == QLatin1Char(']') || c == QLatin1Char('`')
            || c == QLatin1Char('"'))
            return MsgTabelleUnzulaessig;
    return {};
}

QList<FieldDef> textFields(const QStringList &names, const QList<int> &widths)
{
    QList<FieldDef> f;
    for (int i = 0; i < names.size(); ++i)
        f << FieldDef{names.at(i), FieldType::Text, i < widths.size() ? widths.at(i) : 50};
    return f;
}

void exportDatenbank(const QString &path, const QString &table, const QList<FieldDef> &fields,
                     const QList<QStringList> &rows)
{
    checkNewExportFile(path);
    DbTableWriter w(path, table, fields);
    for (const QStringList &r : rows) {
        QVariantList values;
        for (const QString &c : r)
            values << c;
        w.addRow(values);
    }
    w.finish();
}

bool cellNumber(const QString &text, double &value)
{
    qsizetype i = text.startsWith(QLatin1Char('-')) ? 1 : 0;
    const qsizetype digits = i;
    if (text.size() == i)
        return false;
    if (text.size() > i + 1 && text.at(i) == QLatin1Char('0') && text.at(i + 1) != QLatin1Char('.'))
        return false;
    bool point = false;
    for (; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c == QLatin1Char('.') && !point && i > digits)
            point = true;
        else if (c < QLatin1Char('0') || c > QLatin1Char('9'))
            return false;
    }
    bool ok = false;
    value = text.toDouble(&ok);
    return ok;
}

void exportArbeitsmappe(const QString &path, const QString &sheet, const QStringList &captions, bool kopfzeilen,
                        const QList<QStringList> &rows)
{
    checkNewExportFile(path);
    XlsxWriter w(path);
    w.addSheet(sheet);
    int row = 0;
    if (kopfzeilen) {
        for (int c = 0; c < captions.size(); ++c)
            w.writeText(0, c, captions.at(c));
        row = 2;
    }
    for (const QStringList &r : rows) {
        for (int c = 0; c < r.size(); ++c) {
            double v = 0;
            if (cellNumber(r.at(c), v))
                w.writeNumber(row, c, v);
            else
                w.writeText(row, c, r.at(c));
        }
        ++row;
    }
    w.finish();
}

}
