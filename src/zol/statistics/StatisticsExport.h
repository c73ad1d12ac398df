#pragma once
#include "zol/core/Schema.h"
#include <QList>
#include <QString>
#include <QStringList>

namespace zol {

// The files of the statistics exports: a new SQLite database (.db) with one
// table of text fields, or an .xlsx workbook with one sheet. A file is
// written beside its target and renamed when complete; an existing file,
// the data file and its copies are never written.

// Refuses the target before anything is asked or written: OutputRefused for
// the data file, a folder, an open file; for an existing file (which the
// statistics never replace) the message that a new file must be named.
void checkNewExportFile(const QString &path);

// Why a table name cannot be used in a database export, or empty when it can.
QString tabellenNameFehler(const QString &name);
inline const QString MsgTabelleExistiert =
    QStringLiteral("Dieser Tabellenname existiert schon, bitte wählen Sie einen anderen Namen");
inline const QString MsgTabelleUnzulaessig =
    QStringLiteral("Dieser Tabellenname ist nicht zulässig, bitte wählen Sie einen anderen Namen");

// A text field of width 50 for each caption, unless a field is given.
QList<FieldDef> textFields(const QStringList &names, const QList<int> &widths = {});

// Writes the rows (one text per field) as the one table of a new .db file.
void exportDatenbank(const QString &path, const QString &table, const QList<FieldDef> &fields,
                     const QList<QStringList> &rows);

// Writes the rows to the sheet of a new .xlsx file, with the captions in
// the first row and the second left blank when asked. A cell that holds a
// plain number is written as a number, every other as text.
void exportArbeitsmappe(const QString &path, const QString &sheet, const QStringList &captions, bool kopfzeilen,
                        const QList<QStringList> &rows);

// A cell as a number, when it is one: optional sign, digits, at most one
// point, no leading zero before another digit (keys like "0000000123" stay text).
bool cellNumber(const QString &text, double &value);

}
