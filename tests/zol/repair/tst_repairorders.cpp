#include "support/TestSupport.h"
#include "zol/core/Clock.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/core/Session.h"
#include "zol/core/Sql.h"
#include "zol/print/PrinterF.h"
#include "zol/repair/RepairOrderLinks.h"
#include "zol/repair/RepairOrders.h"
#include "zol/repair/RepairOverview.h"
#include "zol/repair/RepairPrints.h"
#include "zol/structure/Node.h"
#include <QtTest>

using namespace zol;
using zoltest::countRows;
using zoltest::TempData;

namespace {

const QDate kHeute(2026, 11, 25);

void addComponent(const QSqlDatabase &db, const QString &key, const QString &text, const QString &ident,
                  const QString &kst = QStringLiteral("K-100"))
{
    Node n;
    n.FileIndex = key;
    n.FileAbove = RootProtok;
    n.FileTyp = FileTypFile;
    n.Katalog = QStringLiteral("0");
    n.Text = text;
    n.IdentNr = ident;
    n.Kostenstelle = kst;
    saveNode(db, n);
}

void addOrder(const QSqlDatabase &db, const QString &name, const QString &ident, const QString &lfd,
              const QString &gewerk = {}, double std = 0, double min = 0, int herkunft = 0, bool erledigt = false)
{
    exec(db, QStringLiteral("INSERT INTO Erfassung (Name, IdentNr, LaufendeNummer, Gewerk, Stunden, Minuten, "
                            "AuftragsHerkunft, ErledigtJN, ZuErledigenBis, Prioritaet) VALUES (?,?,?,?,?,?,?,?,'2026.12.01','0')"),
         {name, ident, lfd, gewerk, std, min, herkunft, erledigt ? 1 : 0});
}

Login login(const QString &level, const QString &gewerk = {})
{
    Login l;
    l.UserName = QStringLiteral("U");
    l.Level = level;
    l.WerkerGewerk = gewerk;
    return l;
}

}

class TestRepairOrders : public QObject {
    Q_OBJECT

private slots:
    void init() { setHeute(kHeute); }
    void cleanup() { setHeute({}); }

    void numbering_data();
    void numbering();
    void numberingOverflowEndsWithAMessage();
    void codeListsKeepTheirPositions();
    void dueDateOfPriority_data();
    void dueDateOfPriority();
    void priorityChoice_data();
    void priorityChoice();
    void dateForms_data();
    void dateForms();
    void checksBeforeSaveInOrder_data();
    void checksBeforeSaveInOrder();
    void saveRules_data();
    void saveRules();
    void linkChecks_data();
    void linkChecks();
    void newOrderFromComponent();
    void browsingAndWerkerSelection();
    void overviewQuery_data();
    void overviewQuery();
    void sortFlagsPerColumnGroup();
    void cellRules_data();
    void cellRules();
    void listingGroupsAndSums();
    void emptyListingHasFrequencyPage();
    void singleSheetInItsOrder();
};

void TestRepairOrders::numbering_data()
{
    QTest::addColumn<QStringList>("rows");   // "name|lfd" of IdentNr ID-1
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");
    QTest::newRow("first") << QStringList{} << "Pumpe" << "00001";
    QTest::newRow("gap not reused") << QStringList{"Pumpe|00001", "Pumpe|00007"} << "Pumpe" << "00008";
    QTest::newRow("letters and empty skipped") << QStringList{"Pumpe|00003", "Pumpe|ABC", "Pumpe|", "Pumpe|12x"} << "Pumpe"
                                               << "00004";
    QTest::newRow("case of the name ignored") << QStringList{"PUMPE|00002"} << "Pumpe" << "00003";
    // Renamed to "Alt": the orders under "Pumpe" sort behind "Alt" and still count.
    QTest::newRow("old name sorts behind") << QStringList{"Alt|00002", "Pumpe|00009"} << "Alt" << "00010";
    // Orders ahead of the first row of the present name don't count.
    QTest::newRow("old name sorts ahead") << QStringList{"Aaa|00009", "Pumpe|00002"} << "Pumpe" << "00003";
    QTest::newRow("no row of the present name") << QStringList{"Aaa|00009"} << "Pumpe" << "00001";
}

void TestRepairOrders::numbering()
{
    QFETCH(QStringList, rows);
    QFETCH(QString, name);
    QFETCH(QString, expected);
    TempData d;
    for (const QString &r : rows)
        addOrder(d.sql(), r.section(u'|', 0, 0), QStringLiteral("ID-1"), r.section(u'|', 1));
    addOrder(d.sql(), name, QStringLiteral("ID-2"), QStringLiteral("00050"));   // another component
    QCOMPARE(NaechsteLaufendeNummer(d.sql(), name, QStringLiteral("ID-1")), expected);
}

void TestRepairOrders::numberingOverflowEndsWithAMessage()
{
    TempData d;
    addOrder(d.sql(), QStringLiteral("P"), QStringLiteral("ID-1"), QStringLiteral("32767"));
    QVERIFY_THROWS_EXCEPTION(Fault, NaechsteLaufendeNummer(d.sql(), QStringLiteral("P"), QStringLiteral("ID-1")));
    addOrder(d.sql(), QStringLiteral("Q"), QStringLiteral("ID-2"), QStringLiteral("32766"));
    QCOMPARE(NaechsteLaufendeNummer(d.sql(), QStringLiteral("Q"), QStringLiteral("ID-2")), QStringLiteral("32767"));
}

void TestRepairOrders::codeListsKeepTheirPositions()
{
    QCOMPARE(AuftragsHerkunftListe().size(), 5);
    QCOMPARE(AuftragsartListe().size(), 7);
    QCOMPARE(SchadensartListe().size(), 23);
    QCOMPARE(SchadensUrsacheListe().size(), 6);
    QCOMPARE(SchadensartListe().at(14).kurz, QStringLiteral("Pneumatik "));
    QCOMPARE(SchadensartListe().at(15).lang, QStringLiteral("Oxydation/Rost"));
    QCOMPARE(kurzText(AuftragsartListe(), 5), QStringLiteral("Ungepl. IS (Str.)"));
    QCOMPARE(kurzText(AuftragsartListe(), 7), QString());
}

void TestRepairOrders::dueDateOfPriority_data()
{
    QTest::addColumn<QString>("prio");
    QTest::addColumn<QDate>("due");
    QTest::newRow("0 today") << "0" << kHeute;
    QTest::newRow("1 two days") << "1" << kHeute.addDays(2);
    QTest::newRow("3 180 days") << "3" << QDate(2027, 5, 24);
    QTest::newRow("2 manual") << "2" << QDate();
    QTest::newRow("other") << "x" << QDate();
}

void TestRepairOrders::dueDateOfPriority()
{
    QFETCH(QString, prio);
    QFETCH(QDate, due);
    QCOMPARE(faelligAm(prio, kHeute).value_or(QDate()), due);
}

void TestRepairOrders::priorityChoice_data()
{
    QTest::addColumn<QString>("prio");
    QTest::addColumn<QString>("dueBefore");
    QTest::addColumn<QString>("dueAfter");
    QTest::addColumn<QString>("message");
    const QString allowed = QStringLiteral(
        "Erlaubte Werte für Priorität: 0 = heute, 1 = in 2 Tagen, 2 = manuelle Eingabe, 3 = in 180 Tagen");
    QTest::newRow("1") << "1" << "" << "27.11.2026" << "";
    QTest::newRow("2 empties") << "2" << "01.01.2027" << "" << "";
    QTest::newRow("5 refused") << "5" << "01.01.2027" << "01.01.2027" << allowed;
    QTest::newRow("10 changes nothing") << "10" << "01.01.2027" << "01.01.2027" << "";
}

void TestRepairOrders::priorityChoice()
{
    QFETCH(QString, prio);
    QFETCH(QString, dueBefore);
    QFETCH(QString, dueAfter);
    QFETCH(QString, message);
    ScriptedPresenter s;
    ISAuftragMaske m;
    m.Prioritaet = prio;
    m.ZuErledigenBis = dueBefore;
    QCOMPARE(PrioritaetGewaehlt(m), message.isEmpty());
    QCOMPARE(m.ZuErledigenBis, dueAfter);
    QCOMPARE(s.lastText(), message);
}

void TestRepairOrders::dateForms_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("dueBox");    // after leaving the due box; "!" refused
    QTest::addColumn<QString>("doneBox");
    QTest::newRow("full") << "05.03.2026" << "2026.03.05" << "05.03.26" << "05.03.2026";
    QTest::newRow("short") << "5.3.26" << "2026.03.05" << "05.03.26" << "05.03.2026";
    QTest::newRow("stored form") << "2026.03.05" << "2026.03.05" << "05.03.26" << "05.03.2026";
    QTest::newRow("1999") << "31.12.99" << "1999.12.31" << "31.12.99" << "31.12.1999";
    QTest::newRow("impossible") << "31.02.2026" << "31.02.2026" << "!" << "!";
    QTest::newRow("text") << "morgen" << "morgen" << "!" << "!";
    QTest::newRow("empty") << "" << "" << "" << "";
}

void TestRepairOrders::dateForms()
{
    QFETCH(QString, typed);
    QFETCH(QString, stored);
    QFETCH(QString, dueBox);
    QFETCH(QString, doneBox);
    ScriptedPresenter s;
    QCOMPARE(datumGespeichert(typed), stored);
    QString due = typed, done = typed;
    QCOMPARE(DatumVerlassen(due, DatumsBox::ZuErledigenBis), dueBox != u"!");
    QCOMPARE(DatumVerlassen(done, DatumsBox::ErledigtAm), doneBox != u"!");
    if (dueBox != u"!") {
        QCOMPARE(due, dueBox);
        QCOMPARE(done, doneBox);
        QCOMPARE(datumGespeichert(due), stored);   // the two-digit year saves correctly
    } else {
        QCOMPARE(s.lastText(), QStringLiteral("Ungültiges Datum. Geben Sie das Datum im Format 'dd.mm.yyyy' ein"));
    }
}

void TestRepairOrders::checksBeforeSaveInOrder_data()
{
    QTest::addColumn<QStringList>("boxes");   // Lohn, Material, Fremd, Prio, Due
    QTest::addColumn<int>("field");
    QTest::addColumn<QString>("message");
    const QString num = QStringLiteral("Der Wert muß numerisch sein");
    QTest::newRow("all fine") << QStringList{"1,5", "", "0", "0", "25.11.2026"} << int(ISFeld::Keins) << "";
    QTest::newRow("labour first") << QStringList{"x", "y", "z", "0", "x"} << int(ISFeld::Lohnkosten) << num;
    QTest::newRow("material before external") << QStringList{"1", "y", "z", "0", ""} << int(ISFeld::Materialkosten) << num;
    QTest::newRow("external") << QStringList{"1", "", "1.2.3", "0", ""} << int(ISFeld::Fremdaufwand) << num;
    QTest::newRow("priority 5") << QStringList{"1", "", "", "5", ""} << int(ISFeld::Prioritaet) << "Bitte Priorität eingeben";
    QTest::newRow("priority empty") << QStringList{"1", "", "", "", "01.01.2027"} << int(ISFeld::Prioritaet)
                                    << "Bitte Priorität eingeben";
    QTest::newRow("due date before priority 2") << QStringList{"1", "", "", "2", ""} << int(ISFeld::ZuErledigenBis)
                                                << "Bitte Datum 'zu erledigen bis' eingeben";
}

void TestRepairOrders::checksBeforeSaveInOrder()
{
    QFETCH(QStringList, boxes);
    QFETCH(int, field);
    QFETCH(QString, message);
    ScriptedPresenter s;
    ISAuftragMaske m;
    m.Lohnkosten = boxes[0];
    m.Materialkosten = boxes[1];
    m.Fremdaufwand = boxes[2];
    m.Prioritaet = boxes[3];
    m.ZuErledigenBis = boxes[4];
    m.Minuten.clear();
    QCOMPARE(int(PruefeVorSpeichern(m)), field);
    QCOMPARE(s.texts(), message.isEmpty() ? QStringList{} : QStringList{message});
    QCOMPARE(m.Minuten, QStringLiteral("0"));
}

void TestRepairOrders::saveRules_data()
{
    QTest::addColumn<bool>("neu");
    QTest::addColumn<int>("art");
    QTest::addColumn<QString>("prio");
    QTest::addColumn<QString>("due");
    QTest::addColumn<bool>("done");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("storedDue");   // empty: nothing written
    QTest::newRow("box has the last word") << false << 0 << "1" << "01.02.27" << false << "" << "2027.02.01";
    QTest::newRow("new, past date") << true << 0 << "2" << "24.11.2026" << false
                                    << "Das Datum 'zu erledigen bis' muß in der Zukunft liegen" << "";
    QTest::newRow("new, today passes") << true << 0 << "2" << "25.11.2026" << false << "" << "2026.11.25";
    QTest::newRow("existing keeps past date") << false << 0 << "2" << "01.01.2020" << false << "" << "2020.01.01";
    QTest::newRow("single capture never new") << true << 1 << "2" << "01.01.2020" << false << "" << "2020.01.01";
    QTest::newRow("priority 2 empty, general") << false << 0 << "2" << "" << false
                                               << "bei Priorität=2 bitte Datum 'zu erledigen bis' eingeben" << "";
    QTest::newRow("priority 2 empty, single") << false << 1 << "2" << "" << false
                                              << "Bitte Datum 'zu erledigen bis' eingeben" << "";
    QTest::newRow("priority 7") << false << 0 << "7" << "01.01.2027" << false
                                << "Erlaubte Werte für Priorität: 0 = heute, 1 = in 2 Tagen, 2 = manuelle Eingabe, 3 = in 180 Tagen"
                                << "";
    QTest::newRow("impossible due date") << false << 0 << "2" << "31.02.2027" << false
                                         << "Ungültiges Datum. Geben Sie das Datum im Format 'dd.mm.yyyy' ein" << "";
    QTest::newRow("done locks") << false << 0 << "0" << "25.11.2026" << true << "" << "2026.11.25";
}

void TestRepairOrders::saveRules()
{
    QFETCH(bool, neu);
    QFETCH(int, art);
    QFETCH(QString, prio);
    QFETCH(QString, due);
    QFETCH(bool, done);
    QFETCH(QString, message);
    QFETCH(QString, storedDue);
    TempData d;
    addOrder(d.sql(), QStringLiteral("O'Brien Pumpe"), QStringLiteral("ID-1"), QStringLiteral("00001"));
    exec(d.sql(), QStringLiteral("UPDATE Erfassung SET erledigtam = '2026.01.01'"));
    ScriptedPresenter s;
    ISAuftragMaske m = *ladeISAuftrag(d.sql(), {QStringLiteral("O'Brien Pumpe"), QStringLiteral("ID-1"), QStringLiteral("00001")});
    m.Prioritaet = prio;
    m.ZuErledigenBis = due;
    m.Stunden = QStringLiteral("2");
    m.Minuten = QStringLiteral("45");
    ErledigtGeklickt(m, done);
    const ISSpeicherErgebnis e = SpeichereDatensatz(d.sql(), m, art == 0 ? SpeicherArt::Allgemein : SpeicherArt::Einzel, neu);
    QCOMPARE(s.lastText(), message);
    QCOMPARE(e.ok(), message.isEmpty());
    const auto after = ladeISAuftrag(d.sql(), m.schluessel());
    QVERIFY(after);
    if (storedDue.isEmpty()) {
        QCOMPARE(after->Stunden, QStringLiteral("0"));   // nothing written
        return;
    }
    QCOMPARE(scalar(d.sql(), QStringLiteral("SELECT ZuErledigenBis FROM Erfassung")).toString(), storedDue);
    QCOMPARE(after->Minuten, QStringLiteral("45"));
    QCOMPARE(e.gesperrt, done);
    QCOMPARE(scalar(d.sql(), QStringLiteral("SELECT erledigtam FROM Erfassung")).toString(),
             done ? QStringLiteral("2026.11.25") : QString());
}

void TestRepairOrders::linkChecks_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("message");
    QTest::newRow("fine") << "0000000001" << "";
    QTest::newRow("missing") << "0000000099" << "Fehler beim Öffnen des Protokolls";
    QTest::newRow("no IdentNr") << "0000000002"
                                << "Zu dieser Komponente existiert keine Ident-Nr. !\n\nUm Befunde zu dieser Komponente "
                                   "zu erfassen, bitte die Ident-Nr. nachtragen.";
    QTest::newRow("not unique") << "0000000003" << "Diese Komponente hat eine nicht-eindeutige Ident-Nr. !";
}

void TestRepairOrders::linkChecks()
{
    QFETCH(QString, key);
    QFETCH(QString, message);
    TempData d;
    addComponent(d.sql(), QStringLiteral("0000000001"), QStringLiteral("O'Neill Pumpe"), QStringLiteral("ID-1"));
    addComponent(d.sql(), QStringLiteral("0000000002"), QStringLiteral("Ohne"), QStringLiteral("   "));
    addComponent(d.sql(), QStringLiteral("0000000003"), QStringLiteral("Doppelt A"), QStringLiteral("ID-D"));
    addComponent(d.sql(), QStringLiteral("0000000004"), QStringLiteral("Doppelt B"), QStringLiteral("id-d"));
    ScriptedPresenter s;
    QCOMPARE(PruefeKomponente(d.sql(), key).has_value(), message.isEmpty());
    QCOMPARE(s.lastText(), message);
}

void TestRepairOrders::newOrderFromComponent()
{
    TempData d;
    addComponent(d.sql(), QStringLiteral("0000000001"), QStringLiteral("O'Neill Pumpe"), QStringLiteral("ID-1"));
    const Node n = *loadNode(d.sql(), QStringLiteral("0000000001"));
    ISAuftragMaske v = leereMaske(login(QStringLiteral("Werker"), QStringLiteral("Elektro")));
    v.Beschreibung = QStringLiteral("Lager läuft heiß");
    v.MeldeDatum = QStringLiteral("25.11.2026");
    const ISAuftragSchluessel k1 = NeuerISAuftrag(d.sql(), login(QStringLiteral("Werker"), QStringLiteral("Elektro")), n, v);
    const ISAuftragSchluessel k2 = NeuerISAuftrag(d.sql(), login(QStringLiteral("Master")), n, leereMaske(login(QStringLiteral("Master"))));
    QCOMPARE(k1.LaufendeNummer, QStringLiteral("00001"));
    QCOMPARE(k2.LaufendeNummer, QStringLiteral("00002"));
    const ISAuftragMaske m = *ladeISAuftrag(d.sql(), k1);
    QCOMPARE(m.Gewerk, QStringLiteral("Elektro"));
    QCOMPARE(m.Kostenstelle, QStringLiteral("K-100"));
    QCOMPARE(m.ZuErledigenBis, QStringLiteral("25.11.2026"));
    QCOMPARE(m.Prioritaet, QStringLiteral("0"));
    QCOMPARE(m.Beschreibung, QStringLiteral("Lager läuft heiß"));
    QCOMPARE(ladeISAuftrag(d.sql(), k2)->Gewerk, QString());
    // The component gets another number: its orders follow; removing the number removes them.
    UpdateErfassungAufträge(d.sql(), QStringLiteral("ID-1"), QStringLiteral("ID-9"));
    QCOMPARE(countRows(d.sql(), QStringLiteral("Erfassung"), QStringLiteral("IdentNr = 'ID-9'")), 2);
    QCOMPARE(LoescheISAuftrag(d.sql(), {k1.Name, QStringLiteral("ID-9"), k1.LaufendeNummer}), 1);
    QCOMPARE(countRows(d.sql(), QStringLiteral("Erfassung")), 1);
}

void TestRepairOrders::browsingAndWerkerSelection()
{
    TempData d;
    addOrder(d.sql(), QStringLiteral("B"), QStringLiteral("2"), QStringLiteral("00001"), QStringLiteral("Elektro"));
    addOrder(d.sql(), QStringLiteral("A"), QStringLiteral("1"), QStringLiteral("00002"), QStringLiteral("Mechanik"), 0, 0, 0, true);
    addOrder(d.sql(), QStringLiteral("A"), QStringLiteral("1"), QStringLiteral("00001"), QStringLiteral("ELEKTRO"));
    const ErfassungsAuswahl alle(d.sql(), login(QStringLiteral("Master")), 3);
    const auto erster = alle.erster();
    QCOMPARE(erster->LaufendeNummer, QStringLiteral("00001"));
    QCOMPARE(alle.naechster(*erster)->LaufendeNummer, QStringLiteral("00002"));
    QCOMPARE(alle.letzter()->Name, QStringLiteral("B"));
    QVERIFY(!alle.naechster(*alle.letzter()));
    QCOMPARE(alle.voriger(*alle.letzter())->LaufendeNummer, QStringLiteral("00002"));
    QCOMPARE(alle.namen(), (QStringList{"A", "B"}));
    QCOMPARE(alle.laufendeNummern(QStringLiteral("1")), (QStringList{"00001", "00002"}));
    QCOMPARE(alle.ersterMitNummer(QStringLiteral("1"), QStringLiteral("00002"))->Name, QStringLiteral("A"));
    QVERIFY(!alle.ersterMitName(QStringLiteral("Zzz")));

    const ErfassungsAuswahl erledigt(d.sql(), login(QStringLiteral("Master")), 1);
    QCOMPARE(erledigt.namen(), QStringList{"A"});
    QCOMPARE(erledigt.erster()->LaufendeNummer, QStringLiteral("00002"));
    // A Werker sees only his trade, its case ignored.
    const ErfassungsAuswahl werker(d.sql(), login(QStringLiteral("Werker"), QStringLiteral("elektro")), 3);
    QCOMPARE(werker.laufendeNummern(QStringLiteral("1")), QStringList{"00001"});
    QCOMPARE(werker.namen(), (QStringList{"A", "B"}));
    const ErfassungsAuswahl werkerOffen(d.sql(), login(QStringLiteral("Werker"), QStringLiteral("Mechanik")), 2);
    QVERIFY(werkerOffen.leer());
}

void TestRepairOrders::overviewQuery_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("value");
    QTest::addColumn<int>("status");
    QTest::addColumn<QStringList>("names");
    QTest::newRow("all") << "" << "" << 0 << QStringList{"Meier Pumpe", "Meiers Lüfter", "O'Hara Motor"};
    QTest::newRow("prefix") << "Name" << "meier*" << 0 << QStringList{"Meier Pumpe", "Meiers Lüfter"};
    QTest::newRow("quote") << "Name" << "O'Hara Motor" << 0 << QStringList{"O'Hara Motor"};
    QTest::newRow("done") << "" << "" << 2 << QStringList{"O'Hara Motor"};
    QTest::newRow("not done") << "" << "" << 1 << QStringList{"Meier Pumpe", "Meiers Lüfter"};
    QTest::newRow("report from") << "MeldedatumVon" << "1.3.2026" << 0 << QStringList{"Meiers Lüfter", "O'Hara Motor"};
    QTest::newRow("due to") << "ZuErledigenBis" << "31.12.2026" << 0 << QStringList{"Meier Pumpe"};
    QTest::newRow("trade") << "Gewerk" << "Elek?ro" << 0 << QStringList{"Meiers Lüfter"};
}

void TestRepairOrders::overviewQuery()
{
    QFETCH(QString, field);
    QFETCH(QString, value);
    QFETCH(int, status);
    QFETCH(QStringList, names);
    TempData d;
    addOrder(d.sql(), QStringLiteral("Meier Pumpe"), QStringLiteral("1"), QStringLiteral("00001"));
    addOrder(d.sql(), QStringLiteral("Meiers Lüfter"), QStringLiteral("2"), QStringLiteral("00001"), QStringLiteral("Elektro"));
    addOrder(d.sql(), QStringLiteral("O'Hara Motor"), QStringLiteral("3"), QStringLiteral("00001"), {}, 0, 0, 0, true);
    exec(d.sql(), QStringLiteral("UPDATE Erfassung SET Datum = '2026.02.01' WHERE IdentNr = '1'"));
    exec(d.sql(), QStringLiteral("UPDATE Erfassung SET Datum = '2026.03.01', ZuErledigenBis = '2027.01.01' WHERE IdentNr <> '1'"));
    ISAuftraegeFilter f;
    f.status = ISAuftraegeFilter::Status(status);
    const QHash<QString, QString *> boxes = {{"Name", &f.Name}, {"MeldedatumVon", &f.MeldedatumVon},
                                             {"ZuErledigenBis", &f.ZuErledigenBis}, {"Gewerk", &f.Gewerk}};
    if (!field.isEmpty())
        *boxes.value(field) = value;
    QSqlQuery q = exec(d.sql(), baueAbfrage(f).sql(QStringLiteral("Name")), baueAbfrage(f).werte);
    QStringList found;
    while (q.next())
        found << q.value(0).toString();
    QCOMPARE(found, names);
}

void TestRepairOrders::sortFlagsPerColumnGroup()
{
    ISSortierung s;
    QCOMPARE(*s.klick(6), QStringLiteral(" ORDER BY Stunden DESC, Minuten DESC"));
    QCOMPARE(*s.klick(7), QStringLiteral(" ORDER BY Stunden ASC, Minuten ASC"));   // the group shares its flag
    QCOMPARE(*s.klick(3), QStringLiteral(" ORDER BY Datum DESC"));
    QCOMPARE(*s.klick(0), QStringLiteral(" ORDER BY Name, IdentNr, LaufendeNummer DESC"));
    QCOMPARE(*s.klick(2), QStringLiteral(" ORDER BY Name, IdentNr, LaufendeNummer ASC"));
    for (int p : {11, 12, 13, 14, 15, 16, 19})
        QVERIFY(!s.klick(p));
}

void TestRepairOrders::cellRules_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("message");
    const QString num = QStringLiteral("Es sind nur numerische Zeichen erlaubt");
    QTest::newRow("priority as hours") << 4 << "2" << "";
    QTest::newRow("priority too long") << 4 << "12" << "Es sind höchstens 1 Zeichen erlaubt";
    QTest::newRow("priority letters") << 4 << "a" << num;
    QTest::newRow("due date typed") << 5 << "01.12.2026" << num;
    QTest::newRow("due as minutes 59") << 5 << "59" << "";
    QTest::newRow("due as minutes 60") << 5 << "60" << "Maximal 59 Minuten eingeben";
    QTest::newRow("hours") << 6 << "3,5" << "";
    QTest::newRow("minutes unchecked for 60") << 7 << "75" << "";
    QTest::newRow("labour letters") << 8 << "12a" << num;
    QTest::newRow("external letters") << 10 << "viel" << num;
    QTest::newRow("remark limited as cost centre") << 15 << QString(31, u'x') << "Es sind höchstens 30 Zeichen erlaubt";
    QTest::newRow("remark 30") << 15 << QString(30, u'x') << "";
    QTest::newRow("print mark limited by its field") << 16 << QString(11, u'x') << "Es sind höchstens 10 Zeichen erlaubt";
}

void TestRepairOrders::cellRules()
{
    QFETCH(int, position);
    QFETCH(QString, text);
    QFETCH(QString, message);
    ScriptedPresenter s;
    QCOMPARE(PruefeZelle(position, text), message.isEmpty());
    QCOMPARE(s.lastText(), message);
    s.clear();
    for (int p : {0, 1, 2, 3, 17, 18, 19, 20})
        QVERIFY(!ZelleEditierbar(p));
    QVERIFY(ZelleEditierbar(position));
    QCOMPARE(s.texts().size(), 8);
    QCOMPARE(s.lastText(), QStringLiteral("Das Feld ist nicht editierbar"));
}

void TestRepairOrders::listingGroupsAndSums()
{
    TempData d;
    Session session(d.db());
    session.login().Level = QStringLiteral("Master");
    addOrder(d.sql(), QStringLiteral("Pumpe"), QStringLiteral("1"), QStringLiteral("00001"), {}, 1, 45, 2);
    addOrder(d.sql(), QStringLiteral("Pumpe"), QStringLiteral("1"), QStringLiteral("00002"), {}, 0, 45, 2);
    addOrder(d.sql(), QStringLiteral("Motor"), QStringLiteral("2"), QStringLiteral("00001"), {}, 3, 0, 1, true);
    zoltest::RecordingPreview preview;
    PrinterF p;
    const ISAuftraegeAbfrage a = baueAbfrage({.status = ISAuftraegeFilter::NichtErledigt});
    QCOMPARE(ErfassungStatistikDrucken(session, p, {a.where, a.werte, QStringLiteral("(Auswahl: x)")}, true),
             ISDruckStatus::Gedruckt);
    QCOMPARE(preview.store.pages.size(), 2);
    QStringList first;
    for (const auto &it : preview.store.pages.at(0).items)
        first << it.Text;
    QCOMPARE(first.count(QStringLiteral("Pumpe       -    IdentNr.:   1       -    Kostenstelle:   ")), 1);
    QVERIFY(first.contains(QStringLiteral("2:30  (h)")));   // 90 minutes carried
    QVERIFY(first.contains(QStringLiteral("Prod.")));
    QVERIFY(first.contains(QStringLiteral("(Auswahl: x)")));
    QVERIFY(!first.join(u'|').contains(QStringLiteral("Motor")));
    QStringList second;
    for (const auto &it : preview.store.pages.at(1).items)
        second << it.Text;
    QVERIFY(second.contains(QStringLiteral("              2  *  Produktion")));   // only the selection counts
    QVERIFY(second.contains(QStringLiteral("               0  *  Alterung")));
}

void TestRepairOrders::emptyListingHasFrequencyPage()
{
    TempData d;
    Session session(d.db());
    zoltest::RecordingPreview preview;
    PrinterF p;
    QCOMPARE(ErfassungStatistikDrucken(session, p, {}, true), ISDruckStatus::Gedruckt);
    QCOMPARE(preview.store.pages.size(), 2);
    QVERIFY(preview.contains(QStringLiteral("Ausserplanmässige Instandsetzungen")));
    QVERIFY(preview.contains(QStringLiteral("              0  *  Keine Angabe")));
    ScriptedPresenter s;
    s.answer(Answer::No);
    QCOMPARE(ErfassungStatistikDrucken(session, p, {}, false), ISDruckStatus::Nein);
    QCOMPARE(s.lastText(), QStringLiteral("Wollen Sie die Statistik jetzt ausdrucken?"));
}

void TestRepairOrders::singleSheetInItsOrder()
{
    TempData d;
    Session session(d.db());
    addComponent(d.sql(), QStringLiteral("0000000001"), QStringLiteral("Pumpe"), QStringLiteral("ID-1"));
    addOrder(d.sql(), QStringLiteral("Pumpe"), QStringLiteral("ID-1"), QStringLiteral("00003"), {}, 1, 5);
    exec(d.sql(), QStringLiteral("UPDATE Erfassung SET Bemerkung = ?, Auftragsart = 5"), {QString(3000, u'x')});
    zoltest::RecordingPreview preview;
    PrinterF p;
    QCOMPARE(ISAuftragDrucken(session, p, {QStringLiteral("Pumpe"), QStringLiteral("ID-1"), QStringLiteral("00003")}, true),
             ISDruckStatus::Gedruckt);
    QCOMPARE(preview.store.pages.size(), 1);
    QStringList lines;
    for (const auto &it : preview.store.pages.at(0).items) {
        lines << it.Text;
        QVERIFY2(it.X + p.metrics().TextWidth(it.Text, it.Bold) <= p.ScaleWidth() + 1, qPrintable(it.Text.left(40)));
    }
    const QStringList inOrder = {QStringLiteral("I N S T A N D S E T Z U N G  (allgemeine Erfassung)"),
                                 QStringLiteral("Laufende Nummer: 00003"),
                                 QStringLiteral("Zeit: 1:05"),
                                 QStringLiteral("Zu erledigen bis: 01.12.2026"),
                                 QStringLiteral("Beschreibung:"),
                                 QStringLiteral("Aussteller / Tel:")};
    qsizetype at = 0;
    for (const QString &t : inOrder) {
        const qsizetype i = lines.indexOf(QRegularExpression(QRegularExpression::escape(t) + QStringLiteral(".*")), at);
        QVERIFY2(i >= at, qPrintable(t));
        at = i;
    }
    QVERIFY(lines.join(u'|').contains(QStringLiteral("Ungepl. IS (Störung)")));
}

QTEST_MAIN(TestRepairOrders)
#include "tst_repairorders.moc"
