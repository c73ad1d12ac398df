#include "support/TestSupport.h"
#include "zol/core/Messages.h"
#include "zol/core/Options.h"
#include "zol/core/RecordKeys.h"
#include "zol/core/Session.h"
#include "zol/structure/MainCommands.h"
#include "zol/structure/Search.h"
#include <QtTest>

using namespace zol;

namespace {
// WI-Rundgang \ Halle \ Pumpe P1 (KSB), pumpe p2 (Grundfos), Ventil V1 (KSB), Pumpe's Rad
// Standards \ Modelle \ Pumpe Std (KSB)
// a component whose parent is gone, and one without a name.
struct Plant {
    zoltest::TempData data;
    Session session{data.db()};
    QHash<QString, QString> key;

    Plant()
    {
        session.login().Level = QStringLiteral("Administrator");
        LadeOptionen(QStringLiteral("tester"), session.options());
        add("Halle", RootProtok, "O", "0", "");
        add("Pumpe P1", key["Halle"], "F", "0", "KSB");
        add("pumpe p2", key["Halle"], "F", "0", "Grundfos");
        add("Ventil V1", key["Halle"], "F", "0", "KSB");
        add("Pumpe's Rad", key["Halle"], "F", "0", "KSB");
        add("Lüfter [alt]", key["Halle"], "F", "0", "Ölwerk");
        add("Modelle", RootKatalo, "O", "1", "");
        add("Pumpe Std", key["Modelle"], "F", "1", "KSB");
        add("Pumpe verloren", QStringLiteral("0000009999"), "F", "0", "Wilo");
        add("", key["Halle"], "F", "0", "KSB");
    }
    QSqlDatabase db() { return data.sql(); }
    void add(const char *text, const QString &above, const char *typ, const char *katalog, const char *hersteller)
    {
        Node n;
        n.FileIndex = NeuerFileIndex(db(), QStringLiteral("ProtokollKopf"));
        n.FileAbove = above;
        n.FileTyp = QString::fromLatin1(typ);
        n.Katalog = QString::fromLatin1(katalog);
        n.Text = QString::fromUtf8(text);
        n.Hersteller = QString::fromUtf8(hersteller);
        n.Typ = QStringLiteral("T-") + n.Text;
        saveNode(db(), n);
        key[n.Text] = n.FileIndex;
    }
    QStringList names(const QStringList &keys)
    {
        QStringList out;
        for (const ListRow &r : listRows(db(), keys, session.options()))
            out << r.Text;
        return out;
    }
};
}

class TestSearch : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void search_data()
    {
        QTest::addColumn<int>("view");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("hersteller");
        QTest::addColumn<QString>("typ");   // a filter on a column that isn't shown
        QTest::addColumn<QStringList>("expected");
        const QStringList allPlant = {"Lüfter [alt]", "Pumpe P1", "pumpe p2", "Pumpe verloren", "Pumpe's Rad", "Ventil V1"};
        QTest::newRow("view 1, no filter") << 1 << "" << "" << ""
                                           << QStringList{"Lüfter [alt]", "Pumpe P1", "pumpe p2", "Pumpe Std", "Pumpe verloren",
                                                          "Pumpe's Rad", "Ventil V1"};
        QTest::newRow("view 2 plant only") << 2 << "" << "" << "" << allPlant;
        QTest::newRow("view 3 standards only") << 3 << "" << "" << "" << QStringList{"Pumpe Std"};
        QTest::newRow("prefix, any case") << 2 << "PUMP*" << "" << ""
                                          << QStringList{"Pumpe P1", "pumpe p2", "Pumpe verloren", "Pumpe's Rad"};
        QTest::newRow("lone star") << 2 << "*" << "*" << "" << allPlant;
        QTest::newRow("blanks") << 2 << "   " << "  " << "" << allPlant;
        QTest::newRow("whole value without wildcard") << 2 << "pumpe" << "" << "" << QStringList{};
        QTest::newRow("question mark") << 2 << "pumpe p?" << "" << "" << QStringList{"Pumpe P1", "pumpe p2"};
        QTest::newRow("shown column") << 2 << "p*" << "ksb" << "" << QStringList{"Pumpe P1", "Pumpe's Rad"};
        QTest::newRow("hidden column ignored") << 2 << "p*" << "ksb" << "nothing" << QStringList{"Pumpe P1", "Pumpe's Rad"};
        QTest::newRow("quote in the filter") << 1 << "Pumpe's*" << "" << "" << QStringList{"Pumpe's Rad"};
        QTest::newRow("percent is plain text") << 1 << "%" << "" << "" << QStringList{};
        QTest::newRow("umlaut in the other case") << 2 << "LÜFTER*" << "öl?ERK" << "" << QStringList{"Lüfter [alt]"};
        QTest::newRow("bracket is plain text") << 2 << "lüfter [alt]" << "" << "" << QStringList{"Lüfter [alt]"};
        QTest::newRow("text as typed, blank counts") << 2 << "Ventil V1 " << "" << "" << QStringList{};
    }
    void search()
    {
        QFETCH(int, view);
        QFETCH(QString, name);
        QFETCH(QString, hersteller);
        QFETCH(QString, typ);
        QFETCH(QStringList, expected);
        Plant p;
        // Shown: Name and Hersteller (8); Typ (9) hidden.
        setzeSpalten(p.session.options(), {8});
        SearchFilters f(SearchFilterCount);
        f[0] = name;
        f[8] = hersteller;
        f[9] = typ;
        QCOMPARE(p.names(SucheKomponenten(p.db(), view, f, p.session.options())), expected);
    }

    void listRowsKeepOrderAndColumns()
    {
        Plant p;
        setzeSpalten(p.session.options(), {9, 8});
        const QStringList keys = {p.key["Ventil V1"], p.key["Halle"], QStringLiteral("0000004711"), p.key["Pumpe Std"]};
        const QList<ListRow> rows = listRows(p.db(), keys, p.session.options());
        QCOMPARE(rows.size(), 3);
        QCOMPARE(rows[0].Text, QStringLiteral("Ventil V1"));
        QCOMPARE(rows[0].subItems, (QStringList{"T-Ventil V1", "KSB"}));
        QCOMPARE(rows[0].image, ListImage::PlantComponent);
        QCOMPARE(rows[1].image, ListImage::Installation);
        QCOMPARE(rows[2].image, ListImage::StandardComponent);
    }

    void filterChoicesPerView()
    {
        Plant p;
        QCOMPARE(filterChoices(p.db(), 2, QStringLiteral("Hersteller")), (QStringList{"Grundfos", "KSB", "Wilo", "Ölwerk"}));
        QCOMPARE(filterChoices(p.db(), 3, QStringLiteral("Hersteller")), QStringList{"KSB"});
        QVERIFY(!filterChoices(p.db(), 1, QStringLiteral("Text")).contains(QStringLiteral("Halle")));
    }

    void orphanCaptionAndGoTo()
    {
        Plant p;
        ScriptedPresenter presenter;
        const ExplorerTree tree = LoadTree(p.db());
        QCOMPARE(searchCaption(p.db(), p.key["Pumpe P1"]), QStringLiteral("'ZOL' - WI-Rundgang\\Halle"));
        QCOMPARE(searchCaption(p.db(), p.key["Pumpe verloren"]),
                 QStringLiteral("'ZOL' - ACHTUNG: Diese Komponente gehört keiner Technischen Einrichtung an."));
        QCOMPARE(GeheZuKomponente(p.db(), tree, p.key["Pumpe Std"]), std::optional<QString>(p.key["Modelle"]));
        QVERIFY(presenter.texts().isEmpty());
        QCOMPARE(GeheZuKomponente(p.db(), tree, p.key["Pumpe verloren"]), std::nullopt);
        QCOMPARE(presenter.texts(),
                 QStringList{"ACHTUNG: Diese Komponente gehört keiner Technischen Einrichtung an. Falls Sie diese "
                             "Komponente nicht mehr brauchen, löschen Sie sie bitte! Anderenfalls schneiden Sie sie aus "
                             "und platzieren Sie sie an entsprechender Stelle in der Strukturansicht."});
        // A parent that exists but hangs in no tree.
        p.add("Lose", QStringLiteral("ROOT"), "O", "0", "");
        p.add("Drin", p.key["Lose"], "F", "0", "");
        QCOMPARE(GeheZuKomponente(p.db(), LoadTree(p.db()), p.key["Drin"]), std::nullopt);
        QCOMPARE(presenter.texts().last(), QStringLiteral("Fehler: Konnte diese Komponente nicht in der Strukturansicht öffnen"));
    }

    void commandChecks_data()
    {
        QTest::addColumn<QString>("level");
        QTest::addColumn<QString>("entry");
        QTest::addColumn<bool>("allowed");
        QTest::addColumn<QString>("message");
        const QString refused = QStringLiteral("Sie sind nicht berechtigt, Änderungen an den Stammdaten eines Standards durchzuführen");
        const QString roots = QStringLiteral("'WI-Rundgang' und 'Standards' besitzen keine Stammdaten ");
        QTest::newRow("master, standard") << "Master" << "Pumpe Std" << true << "";
        QTest::newRow("benutzer, plant") << "Benutzer" << "Pumpe P1" << true << "";
        QTest::newRow("benutzer, standard") << "Benutzer" << "Pumpe Std" << false << refused;
        QTest::newRow("werker, plant") << "Werker" << "Pumpe P1" << false << refused;
        QTest::newRow("top node") << "Administrator" << RootProtok << false << roots;
        QTest::newRow("gone") << "Administrator" << "0000004711" << false << "";
    }
    void commandChecks()
    {
        QFETCH(QString, level);
        QFETCH(QString, entry);
        QFETCH(bool, allowed);
        QFETCH(QString, message);
        Plant p;
        ScriptedPresenter presenter;
        p.session.login().Level = level;
        const QString key = p.key.value(entry, entry);
        QCOMPARE(StammdatenErlaubt(p.session.login(), p.db(), key), allowed);
        QCOMPARE(presenter.texts(), message.isEmpty() ? QStringList() : QStringList{message});
    }

    void isAuftragRefusedForStandards()
    {
        Plant p;
        ScriptedPresenter presenter;
        QVERIFY(ISAuftragErlaubt(p.db(), p.key["Pumpe P1"]));
        QVERIFY(!ISAuftragErlaubt(p.db(), p.key["Pumpe Std"]));
        QCOMPARE(presenter.texts(), QStringList{"Sie können für Standards keine IS-Aufträge erstellen"});
    }
};

QTEST_GUILESS_MAIN(TestSearch)
#include "tst_search.moc"
