#pragma once
#include "zol/core/Session.h"
#include "zol/structure/Explorer.h"
#include <QDate>
#include <QList>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

namespace zol {

class PrinterF;

// One kind of catalog. The main window makes one catalog window a kind, in
// the order of catalogKinds().
struct CatalogKind {
    int No = 0;
    QString Name;    // header of the first list column; names the settings section
    QString Table;
    QString Title;   // window caption and head of the print
};

// The eleven kinds: Anweisung/Texte ... Option/Option2.
const QList<CatalogKind> &catalogKinds();
std::optional<CatalogKind> catalogKindOfTable(const QString &table);

// The column header of a further field: the known names have their own
// ("BESCHREIBUNG" is shown "Beschreibung", "HINWEIS" "Hinweis"), any other
// field shows its name.
QString catalogColumnHeader(const QString &field);

// The fields of a catalog table beyond the four tree fields, in the order the
// data file has them; the program keeps no list of its own.
QStringList catalogFurtherFields(const QSqlDatabase &db, const QString &table);

// The settings section of a catalog window: UserName + "\env\'" + Name + "'".
QString catalogSection(const Session &session, const QString &name);
// Keys and defaults of that section. Sizes are screen pixels; the defaults
// are the twips of the classic layout (14000 x 12000, columns 6600) at 15
// twips a pixel.
inline const QString SpaltenBreiteKey = QStringLiteral("SpaltenBreite_");
constexpr int CatalogDefaultWidth = 933;
constexpr int CatalogDefaultHeight = 800;
constexpr int CatalogDefaultColumnWidth = 440;
constexpr int CatalogDefaultDevider = 250;

// A row of a catalog table as the list shows it.
struct CatalogRow {
    QString FileIndex, FileAbove, FileTyp, Text;
    QStringList further;   // values of the further fields, in their order; Null as empty
    bool isFolder() const { return FileTyp == FileTypOrdner; }
};

// What a double click on a list entry does.
struct CatalogPick {
    enum Action { Nothing, OpenFolder, OpenProperties, Choose };
    Action action = Nothing;
    QString Tag;        // Choose: the entry's text, handed to the caller
    QString interval;   // Choose in Texte: the entry's Standardintervall; else empty
};

// One field of the properties dialog.
struct CatalogProperty {
    QString field;
    QString header;   // the list's column header
    QString value;
    int size = -1;    // Schema::Size of the field; -1: no limit known
};

// A catalog as its window works on it: the explorer operations over the
// catalog's table, the list rows with their further fields, the choice of a
// picker, the properties, and the print.
class Catalog {
public:
    Catalog(Session &session, CatalogKind kind);

    // Reads the table's further fields. A table that can't be read gives
    // "Fehler beim Öffnen der Datenbank" (style 16); the catalog then stays
    // unusable, and only this one.
    bool Init();
    bool isOpen() const { return m_open; }

    const CatalogKind &kind() const { return m_kind; }
    const QStringList &furtherFields() const { return m_further; }
    // The list's headers: Name of the kind, then one per further field.
    QStringList columnHeaders() const;

    Explorer &explorer() { return m_explorer; }
    // Status line: the text at the start of a command, "" at its end.
    void setStatusSink(std::function<void(const QString &)> sink);

    // The content of a folder: folders first, then entries, each by name;
    // rows without a name are not shown.
    QList<CatalogRow> loadListView(const QString &folderKey);
    std::optional<CatalogRow> row(const QString &key) const;

    // Werker and Auswerter may look and choose, but change nothing.
    bool mayEdit() const;

    // A double click on the list entry `key`; `picker` while the window is
    // shown for a choice.
    CatalogPick doubleClick(const QString &key, bool picker) const;

    // The properties of an entry: Text and each further field with the
    // list's headers and the field sizes. Nothing for Werker and Auswerter,
    // or when the row is gone.
    std::optional<QList<CatalogProperty>> Eigenschaften(const QString &key) const;
    // OK of the properties: re-finds the row and writes each value, in the
    // order of Eigenschaften, whose length fits the field. False when the row
    // is gone or a fault ended it (data as before).
    bool saveEigenschaften(const QString &key, const QStringList &values);

    // "alle" prints from the top folders, "ausgewählte" from the given keys
    // (folders with everything below them, entries as they are).
    void Drucken(PrinterF &printer, bool alle, const QStringList &selected, bool vorschau);

    // The lines of the print, as they are laid out: a folder's path, then
    // one line per entry. Exposed for the print and its tests.
    struct PrintLine {
        bool folder = false;
        QString text;
    };
    QList<PrintLine> druckZeilen(bool alle, const QStringList &selected) const;
    // "Ausdruck aus dem <Title>               Blatt Nr. <n>   Gedruckt : <date>"
    QString druckKopf(int page, const QDate &date) const;

private:
    void status(const QString &text) const;
    void compose(PrinterF &printer, const QList<PrintLine> &lines) const;

    Session &m_session;
    CatalogKind m_kind;
    Explorer m_explorer;
    QStringList m_further;
    bool m_open = false;
    std::function<void(const QString &)> m_status;
};

}
