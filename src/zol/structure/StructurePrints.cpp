#include "StructurePrints.h"
#include "Explorer.h"
#include "Node.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/core/Session.h"
#include "zol/core/Sql.h"
#include "zol/print/PageLayouts.h"
#include "zol/print/PrinterF.h"
#include <QDate>
#include <QSet>
#include <QSqlRecord>

namespace zol {

namespace {

const QString ErstelleText = QStringLiteral("Erstelle Druckauftrag");

QString heute() { return QDate::currentDate().toString(QStringLiteral("dd.MM.yyyy")); }

// The frame every print of this file shares: the status line, the fault
// handler and the end of the job.
template <typename Body>
StrukturDruckStatus druckLauf(Session &session, PrinterF &p, bool vorschau, const StrukturStatus &status, Body body)
{
    const auto melde = [&](const QString &t) {
        if (status)
            status(t);
    };
    melde(ErstelleText);
    StrukturDruckStatus r = StrukturDruckStatus::Done;
    try {
        p.Vorschau = vorschau;
        p.setOptionState(&session.options());
        p.InitPrinter();
        const int y = body();
        p.Print_UnterenRand(0, int(p.TextWidth(QStringLiteral("O0TI"))), 0, y, int(p.ScaleHeight()));
        if (!zeigMitWiederholung(p))
            r = StrukturDruckStatus::Cancelled;
    } catch (const Fault &f) {
        if (printerErrors(f) == 3) {
            ZeigeMeldung(faultText(f), Style::Critical);
            r = StrukturDruckStatus::Fault;
        } else {
            r = StrukturDruckStatus::Cancelled;
        }
    }
    melde(QString());
    return r;
}

// The keys a command works on; the top nodes are no entries of their own.
QStringList eintraege(const StrukturAuswahl &auswahl)
{
    QStringList keys;
    if (auswahl.listeHatFokus)
        keys = auswahl.listeKeys;
    else if (!auswahl.baumKey.isEmpty())
        keys << auswahl.baumKey;
    keys.removeIf([](const QString &k) { return k.isEmpty() || ExplorerTree::isRootKey(k); });
    return keys;
}

// The children of a node in the order of "ORDER BY FileTyp, FileAbove, Text":
// components before installations, each by name.
class Kinder {
public:
    Kinder(const QSqlDatabase &db, bool mitKomponenten)
        : m_query(db, mitKomponenten
                          ? QStringLiteral("SELECT FileIndex FROM ProtokollKopf WHERE FileAbove = ? "
                                           "ORDER BY FileTyp, Text")
                          : QStringLiteral("SELECT FileIndex FROM ProtokollKopf WHERE FileAbove = ? AND FileTyp = 'O' "
                                           "ORDER BY FileTyp, Text"))
    {
    }
    QStringList of(const QString &key)
    {
        QStringList out;
        QSqlQuery &q = m_query.run({key});
        while (q.next())
            out << q.value(0).toString();
        return out;
    }

private:
    Statement m_query;
};

// ------------------------------------------------------- instruction lists

class ProtokollDruck {
public:
    ProtokollDruck(Session &session, PrinterF &p, bool einzeln)
        : m_db(session.db()), m_p(p), m_s(p), m_einzeln(einzeln), m_kinder(m_db, true),
          m_positionen(m_db, QStringLiteral("SELECT * FROM ProtokollPositionen WHERE TeNummer = ? "
                                            "ORDER BY Objekt, Anweisung"))
    {
    }

    int run(const QStringList &keys)
    {
        if (!m_einzeln)
            m_zeile = Print_Protokoll_Kopf(m_p, m_datum, m_s);
        for (const QString &k : keys)
            DruckeEintrag(k);
        // Sheets of their own are closed already.
        return m_einzeln ? int(m_p.ScaleHeight()) : int(m_zeile * zeilenHoehe(m_p));
    }

private:
    void DruckeEintrag(const QString &key)
    {
        // A chain that runs in a circle is walked once.
        if (m_gesehen.contains(key))
            return;
        m_gesehen.insert(key);
        const std::optional<Node> node = loadNode(m_db, key);
        if (!node)
            return;   // the row is gone: skipped
        if (node->isComponent()) {
            DruckeKomponente(*node);
            return;
        }
        for (const QString &kind : m_kinder.of(key))
            DruckeEintrag(kind);
    }

    void neueSeite()
    {
        m_p.NewPage();
        m_zeile = Print_Protokoll_Kopf(m_p, m_datum, m_s);
    }

    void DruckeKomponente(const Node &node)
    {
        std::vector<PositionZeile> rows;
        QSqlQuery &q = m_positionen.run({node.FileIndex});
        while (q.next()) {
            const QSqlRecord r = q.record();
            const auto v = [&](const char *f) { return r.value(QLatin1String(f)).toString(); };
            rows.push_back({v("TeNummer"), v("Objekt"), v("Anweisung"), v("Text"), v("Ausfuehrender"),
                            v("Betriebszustand"), v("AnzahlPersonen"), v("Sicherheitshinweis"), v("Intervall"),
                            v("Planzeit"), v("Materialcode"), v("Materialmenge"), v("Intervalltyp")});
        }
        if (m_einzeln) {
            if (!m_erste)
                m_p.NewPage();
            m_p.setSeite(1);
            m_zeile = Print_Protokoll_Kopf(m_p, m_datum, m_s);
        }
        m_erste = false;
        const QString pfad = FullPath(m_db, node.FileIndex);
        if (!Print_Protokoll_Komponente(m_p, node, pfad, m_zeile, m_s)) {
            neueSeite();
            Print_Protokoll_Komponente(m_p, node, pfad, m_zeile, m_s);
        }
        for (const PositionZeile &z : rows) {
            if (Print_Protokoll_Zeile(m_p, z, m_zeile, m_s))
                continue;
            neueSeite();
            // A row longer than a whole page goes as far as it can, and is not tried for ever.
            Print_Protokoll_Zeile(m_p, z, m_zeile, m_s);
        }
        if (m_einzeln)
            m_p.Print_UnterenRand(0, int(m_s.Nummer), 0, int(m_zeile * zeilenHoehe(m_p)), int(m_p.ScaleHeight()));
    }

    QSqlDatabase m_db;
    PrinterF &m_p;
    AnweisungsSpalten m_s;
    bool m_einzeln;
    bool m_erste = true;
    int m_zeile = 0;
    QString m_datum = heute();
    Kinder m_kinder;
    Statement m_positionen;
    QSet<QString> m_gesehen;
};

// -------------------------------------------------------------- structure

class StrukturDruck {
public:
    StrukturDruck(Session &session, PrinterF &p, bool mitKomponenten)
        : m_db(session.db()), m_p(p), m_kinder(m_db, mitKomponenten), m_x(p.TextWidth(QStringLiteral("O0TI")))
    {
    }

    int run(const StrukturAuswahl &auswahl)
    {
        m_zeile = Print_ProtokollStruktur_Kopf(m_p, m_datum);
        if (!auswahl.baumKey.isEmpty() && !ExplorerTree::isRootKey(auswahl.baumKey))
            zeile(FullPath(m_db, auswahl.baumKey));
        const QString prefix = QStringLiteral("|-------");
        if (auswahl.listeHatFokus) {
            for (const QString &k : auswahl.listeKeys)
                DruckeStruktur(k, prefix);
        } else if (!auswahl.baumKey.isEmpty()) {
            DruckeStruktur(auswahl.baumKey, prefix);
        }
        return int(m_zeile * zeilenHoehe(m_p));
    }

private:
    void zeile(const QString &text)
    {
        if (m_zeile > letzteZeile(m_p) + 5) {
            m_p.NewPage();
            m_zeile = Print_ProtokollStruktur_Kopf(m_p, m_datum);
        }
        m_p.XPos(m_x);
        m_p.YPos(m_zeile * zeilenHoehe(m_p));
        m_p.PrintString(text);
        ++m_zeile;
    }

    void DruckeStruktur(const QString &key, const QString &prefix)
    {
        if (m_gesehen.contains(key))
            return;
        m_gesehen.insert(key);
        if (ExplorerTree::isRootKey(key)) {
            // The top nodes are no rows: they print their name.
            zeile(prefix + (key == RootProtok ? gStrWIRundgang : gStrStandards));
        } else {
            const std::optional<Node> node = loadNode(m_db, key);
            if (!node)
                return;
            zeile(prefix + (node->isComponent() ? QStringLiteral("KOMP.:  ") : QString()) + node->Text);
        }
        const QString unten = QStringLiteral("          ") + prefix;
        for (const QString &kind : m_kinder.of(key))
            DruckeStruktur(kind, unten);
    }

    QSqlDatabase m_db;
    PrinterF &m_p;
    Kinder m_kinder;
    double m_x;
    int m_zeile = 0;
    QString m_datum = heute();
    QSet<QString> m_gesehen;
};

// ---------------------------------------------------------- search result

// The captions of the search view in the order the print lists them.
const QStringList &filterReihenfolge()
{
    static const QStringList order = {
        QStringLiteral("Name:"),         QStringLiteral("Bezugswoche:"),  QStringLiteral("Bezugsjahr:"),
        QStringLiteral("Kostenstelle:"), QStringLiteral("Ident-Nr.:"),    QStringLiteral("Klassifizierung:"),
        QStringLiteral("Standort:"),     QStringLiteral("Lokalisierung:"), QStringLiteral("Hersteller:"),
        QStringLiteral("Typ:"),          QStringLiteral("Inspekteur:"),   QStringLiteral("WI-Steuerung:"),
        QStringLiteral("Laufweg:"),      QStringLiteral("Option:"),       QStringLiteral("Keine Wartung:"),
        QStringLiteral("Von Woche 1:"),  QStringLiteral("Bis Woche 1:"),  QStringLiteral("Von Woche 2:"),
        QStringLiteral("Bis Woche 2:")};
    return order;
}

class SuchDruck {
public:
    SuchDruck(Session &session, PrinterF &p) : m_db(session.db()), m_p(p), m_x(p.TextWidth(QStringLiteral("O0TI"))) {}

    int run(const QList<SuchFilterZeile> &filter, const QStringList &komponenten)
    {
        // The widest caption sets the column of the values.
        double breite = 0;
        for (const QString &c : filterReihenfolge())
            breite = std::max(breite, m_p.TextWidth(c));
        const double wertX = m_x + breite + m_p.TextWidth(QStringLiteral("  "));

        zeile(QStringLiteral("Suchfilter:"), true);
        int gesetzt = 0;
        QList<SuchFilterZeile> geordnet;
        for (const QString &caption : filterReihenfolge())
            for (const SuchFilterZeile &f : filter)
                if (f.first == caption)
                    geordnet << f;
        for (const SuchFilterZeile &f : filter)
            if (!filterReihenfolge().contains(f.first))
                geordnet << f;
        for (const SuchFilterZeile &f : geordnet) {
            if (f.second.trimmed().isEmpty())
                continue;
            ++gesetzt;
            zeile(f.first, false, f.second, wertX);
        }
        if (gesetzt == 0)
            zeile(QStringLiteral("(Es wurden keine Filter gesetzt)"));
        ++m_zeile;

        zeile(QStringLiteral("Ergebnis:"), true);
        // The name column is as wide as the longest name, at most a third of the page.
        std::vector<std::pair<QString, QString>> rows;
        double nameBreite = 0;
        for (const QString &k : komponenten) {
            const std::optional<Node> node = loadNode(m_db, k);
            if (!node)
                continue;
            rows.emplace_back(node->Text, FullPath(m_db, k));
            nameBreite = std::max(nameBreite, m_p.TextWidth(node->Text));
        }
        nameBreite = std::min(nameBreite, m_p.ScaleWidth() / 3);
        const double pfadX = m_x + nameBreite + m_p.TextWidth(QStringLiteral("    "));
        for (auto &[name, pfad] : rows) {
            // A path wider than the page keeps its end: the component's own place.
            const double platz = m_p.ScaleWidth() - pfadX;
            while (pfad.size() > 4 && m_p.TextWidth(pfad) > platz)
                pfad = QStringLiteral("...") + pfad.mid(4);
            zeile(name, false, pfad, pfadX);
        }
        if (rows.empty())
            zeile(QStringLiteral("(Es treffen keine Komponenten zu)"));
        return int(m_zeile * zeilenHoehe(m_p));
    }

private:
    void zeile(const QString &text, bool fett = false, const QString &zweite = {}, double zweiteX = 0)
    {
        if (m_zeile > letzteZeile(m_p) + 5) {
            m_p.NewPage();
            m_zeile = 0;
        }
        const double y = m_zeile * zeilenHoehe(m_p);
        m_p.setBold(fett);
        m_p.XPos(m_x);
        m_p.YPos(y);
        m_p.PrintString(text);
        m_p.setBold(false);
        if (!zweite.isEmpty()) {
            m_p.XPos(zweiteX);
            m_p.YPos(y);
            m_p.PrintString(zweite);
        }
        ++m_zeile;
    }

    QSqlDatabase m_db;
    PrinterF &m_p;
    double m_x;
    int m_zeile = 0;
};

}   // namespace

StrukturDruckStatus DruckeAusgewaehlte(Session &session, const StrukturAuswahl &auswahl, bool einzeln, bool vorschau,
                                       const StrukturStatus &status)
{
    return DruckeAusgewaehlte(session, PrinterF::instance(), auswahl, einzeln, vorschau, status);
}

StrukturDruckStatus DruckeAusgewaehlte(Session &session, PrinterF &p, const StrukturAuswahl &auswahl, bool einzeln,
                                       bool vorschau, const StrukturStatus &status)
{
    const QStringList keys = eintraege(auswahl);
    if (keys.isEmpty())
        return StrukturDruckStatus::Nothing;
    if (!vorschau
        && ZeigeMeldung(QStringLiteral("Ausgewählte Komponenten jetzt wirklich drucken?"), Style::YesNo) != Answer::Yes)
        return StrukturDruckStatus::Cancelled;
    return druckLauf(session, p, vorschau, status, [&] {
        ProtokollDruck druck(session, p, einzeln);
        return druck.run(keys);
    });
}

StrukturDruckStatus DruckeStrukturAuswahl(Session &session, const StrukturAuswahl &auswahl, bool vorschau,
                                          const StrukturStatus &status)
{
    return DruckeStrukturAuswahl(session, PrinterF::instance(), auswahl, vorschau, status);
}

StrukturDruckStatus DruckeStrukturAuswahl(Session &session, PrinterF &p, const StrukturAuswahl &auswahl,
                                          bool vorschau, const StrukturStatus &status)
{
    if (auswahl.listeHatFokus ? auswahl.listeKeys.isEmpty() : auswahl.baumKey.isEmpty())
        return StrukturDruckStatus::Nothing;
    const bool mitKomponenten = ZeigeMeldung(QStringLiteral("Auch Komponenten auflisten?"), Style::YesNo) == Answer::Yes;
    if (!vorschau
        && ZeigeMeldung(QStringLiteral("Ausgewählte Struktur jetzt wirklich drucken?"), Style::YesNo) != Answer::Yes)
        return StrukturDruckStatus::Cancelled;
    return druckLauf(session, p, vorschau, status, [&] {
        StrukturDruck druck(session, p, mitKomponenten);
        return druck.run(auswahl);
    });
}

StrukturDruckStatus DruckeSuchergebnis(Session &session, const QList<SuchFilterZeile> &filter,
                                       const QStringList &komponenten, const StrukturStatus &status)
{
    return DruckeSuchergebnis(session, PrinterF::instance(), filter, komponenten, status);
}

QString suchFilterCaption(int index)
{
    return filterReihenfolge().value(index);
}

StrukturDruckStatus DruckeSuchergebnis(Session &session, PrinterF &p, const QList<SuchFilterZeile> &filter,
                                       const QStringList &komponenten, const StrukturStatus &status)
{
    const bool vorschau = ZeigeMeldung(QStringLiteral("Direkt auf Drucker drucken?"), Style::YesNo) != Answer::Yes;
    return druckLauf(session, p, vorschau, status, [&] {
        SuchDruck druck(session, p);
        return druck.run(filter, komponenten);
    });
}

}
