#pragma once
#include <QHash>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>
#include <functional>

namespace zol {

// What the statistics windows have in common: the checks of the period, the
// entries taken from the main window, the numbers as the lists show them.

inline const QString MsgNurWochen = QStringLiteral("Nur Wochen von 1 bis 52 zulässig");
inline const QString MsgNurWochenSind = QStringLiteral("Nur Wochen von 1 bis 52 sind zulässig");
inline const QString MsgBisMussGroesser = QStringLiteral("Das 'Bis-Datum' muß größer als das 'Von-Datum' sein");
inline const QString MsgBisNichtKleiner = QStringLiteral("Das 'Bis-Datum' darf nicht kleiner als das 'Von-Datum' sein");
inline const QString MsgJahreszahl = QStringLiteral("Bitte Jahreszahl eingeben");
inline const QString MsgKeineVerbuchten = QStringLiteral("Für dieses Jahr existieren keine verbuchten Rückmeldungen");
inline const QString MsgKeineStatistikdaten = QStringLiteral("Keine Statistikdaten vorhanden");
inline const QString MsgKeinExport = QStringLiteral("Es fand kein Export statt");
inline const QString MsgExportiert = QStringLiteral("Die Statistik wurde exportiert");
inline const QString MsgDateiExistiert = QStringLiteral("Es muß eine noch nicht existierende Datei angegeben werden");
inline const QString MsgKopfzeilen = QStringLiteral("2 Kopfzeilen mit Feldbezeichnungen einfügen?");
inline const QString MsgJetztAufrufen = QStringLiteral("Excel-Tabelle jetzt aufrufen?");

// The field of the window a refusal puts the focus on.
enum class PeriodField { None, Jahr, WocheVon, WocheBis, JahrVon, JahrBis };

struct PeriodCheck {
    QString message;
    PeriodField field = PeriodField::None;
    bool ok() const { return message.isEmpty(); }
};

// The weeks of a range: both rewritten with the mask "00", each of them 1..52
// (rangeMessage, von first), then bis not before von compared as text
// (orderMessage, focus on bis). Equal weeks pass.
PeriodCheck checkWeeks(QString &von, QString &bis, const QString &rangeMessage, const QString &orderMessage);

// The year rewritten with the mask "0000"; a year must be four digits
// ("Bitte Jahreszahl eingeben" otherwise).
PeriodCheck checkJahr(QString &jahr, PeriodField field = PeriodField::Jahr);

// A week as a number when the text is one (after the mask), else 0.
int weekNumber(const QString &week);

// The entries the main window hands to a statistics run: the selected list
// entries when the list had the focus, else the children of the tree node
// selected (in the order of their keys).
QStringList selectedEntries(const QSqlDatabase &db, bool listHasFocus, const QStringList &listSelected,
                            const QString &treeKey);

// The plant's rows of ProtokollKopf as a tree, read once per run.
class ComponentTree {
public:
    struct Row {
        QString FileAbove, FileTyp, Text, BezugsJahr, BezugsWoche;
    };
    static ComponentTree load(const QSqlDatabase &db);
    const Row *row(const QString &fileIndex) const;
    QStringList children(const QString &key) const { return m_children.value(key); }
    // The components of the entries, depth first (an installation stands for
    // all components under it); unknown keys are left out.
    QStringList components(const QStringList &entries) const;

private:
    QHash<QString, Row> m_rows;
    QHash<QString, QStringList> m_children;   // in the order of FileIndex
};

// Number formats of the lists: the mask "0.00", and a plain number the way a
// value cell shows an accumulated sum ("120", "7.5").
QString mask000(double v);
QString plainNumber(double v);

// Progress of a long run: done of total. A window repaints in it.
using Progress = std::function<void(qint64 done, qint64 total)>;

}
