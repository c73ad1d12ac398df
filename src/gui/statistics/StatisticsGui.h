#pragma once
#include "zol/core/Schema.h"
#include "zol/statistics/StatisticsInput.h"
#include <QList>
#include <QString>
#include <QStringList>
#include <functional>

class QLineEdit;
class QProgressBar;
class QTreeWidget;
class QWidget;

// What the statistics windows share: the save dialog with its refusals, the
// two exports with their questions and messages, the result list, and a
// progress that keeps the window painting.
namespace statgui {

// Chooses the file of an export: the save dialog with the proposed name,
// again after an existing file or a file that may not be written. Empty when
// cancelled. Tests put a chooser of their own in place of the dialog.
using FileChooser = std::function<QString(const QString &proposed)>;
void setFileChooser(FileChooser chooser);
QString chooseNewFile(QWidget *parent, const QString &filter, const QString &proposed);

// The database export: file, table name (asked from the proposal when
// askName, else taken as it is), the table, "Die Statistik wurde exportiert".
bool exportToDatabase(QWidget *parent, const QString &proposedFile, const QString &tableName, bool askName,
                      const QList<zol::FieldDef> &fields, const QList<QStringList> &rows);
// The workbook export: file, the question for the two caption rows, the
// sheet, "Die Statistik wurde exportiert", and whether to open it now.
bool exportToWorkbook(QWidget *parent, const QString &proposedFile, const QString &sheet,
                      const QStringList &captions, const QList<QStringList> &rows);
// Shows the workbook with the desktop's program after the question.
void offerToOpen(const QString &path);
// The message of a workbook that could not be written.
void workbookFault(const QString &path, const std::exception &e);

// The list: its columns and rows, replacing what it held.
void fillList(QTreeWidget *list, const QStringList &captions, const QList<QStringList> &rows);
QList<QStringList> listRows(const QTreeWidget *list);

// A progress that moves the bar and lets the window paint, without taking
// the user's input meanwhile.
zol::Progress pump(QProgressBar *bar);

// Digits and Backspace only; any other key is swallowed with a beep, and
// entering the box selects its text.
void digitsOnly(QLineEdit *edit);
// Puts the focus on a refused field with its text selected.
void focusField(QLineEdit *edit);
// The period of one year: the weeks (range, then order as text) and the
// year, each rewritten with its mask; a refusal is shown and its field gets
// the focus. True when the period stands.
bool checkPeriod(QLineEdit *jahr, QLineEdit *von, QLineEdit *bis, const QString &rangeMessage,
                 const QString &orderMessage);

}
