#include "support/TestSupport.h"
#include "zol/core/Messages.h"
#include "zol/core/Schema.h"
#include "zol/core/Session.h"
#include "zol/core/Sql.h"
#include "zol/feedback/Feedback.h"
#include "zol/feedback/FeedbackCommands.h"
#include "zol/feedback/FindingsPrint.h"
#include "zol/feedback/FeedbackViews.h"
#include "zol/feedback/Posting.h"
#include "zol/planning/OrderRows.h"
#include "zol/structure/Node.h"
#include <QSqlRecord>
#include <QtTest>

using namespace zol;
using zoltest::countRows;
using zoltest::TempData;

namespace {

struct Order {
    QString te, jahr, woche, objekt = QStringLiteral("000010"), anweisung = QStringLiteral("0010");
    QString gewerk = QStringLiteral("Elektro");
    QString name = QStringLiteral("Pumpe");
    QString keineWartung = QStringLiteral("N");
    QString rueck = QStringLiteral("N"), befund = {}, verbal = {};
    double planZeit = 1.5;
};

void addOrder(const QSqlDatabase &db, const Order &o)
{
    exec(db, QStringLiteral("INSERT INTO Auftrag (TeIndex, Jahr, Woche, Objekt, Anweisung, Ausfuehrender, KompBezeichnung,"
                            " Kostenstelle, Materialcode, PlanZeit, Materialmenge, Text, Bemerkung, \"Rückmeldung\", Befund,"
                            " Verbal, Intervall, Datum, KeineWartung) VALUES (?,?,?,?,?,?,?,'4711','Fett',?,0.25,"
                            "'Prüfen','',?,?,?,'1W','01.03.2016',?)"),
         {o.te, o.jahr, o.woche, o.objekt, o.anweisung, o.gewerk, o.name, o.planZeit, o.rueck, o.befund, o.verbal,
          o.keineWartung});
}

void addComponent(const QSqlDatabase &db, const QString &key, const QString &text, const QString &above = RootProtok,
                  const QString &ident = QStringLiteral("ID-1"))
{
    Node n;
    n.FileIndex = key;
    n.FileAbove = above;
    n.FileTyp = above == RootProtok ? FileTypOrdner : FileTypFile;
    n.Katalog = QStringLiteral("0");
    n.Text = text;
    n.IdentNr = ident;
    saveNode(db, n);
}

std::unique_ptr<Session> makeSession(TempData &d, const QString &level = QStringLiteral("Administrator"),
                                     const QString &gewerk = {})
{
    auto s = std::make_unique<Session>(d.db());
    s->login().UserName = QStringLiteral("Admin");
    s->login().Level = level;
    s->login().WerkerGewerk = gewerk;
    s->login().LoginSucceeded = true;
    return s;
}

AuftragZeile row(const QSqlDatabase &db, const QString &te, const QString &anweisung = QStringLiteral("0010"),
                 const QString &table = QStringLiteral("Auftrag"))
{
    const auto rows = ladeAuftragZeilen(db, QStringLiteral("SELECT * FROM %1 WHERE TeIndex = ? AND Anweisung = ?").arg(ident(table)),
                                        {te, anweisung});
    return rows.empty() ? AuftragZeile{} : rows.front();
}

QString dump(const QSqlDatabase &db, const QString &table)
{
    if (!Schema::tableExists(db, table))
        return QStringLiteral("<none>");
    QStringList out;
    QSqlQuery q = exec(db, QStringLiteral("SELECT * FROM %1 ORDER BY Woche, TeIndex, Objekt, Anweisung").arg(ident(table)));
    while (q.next()) {
        QStringList r;
        for (int i = 0; i < q.record().count(); ++i)
            r << q.value(i).toString();
        out << r.join(QLatin1Char('|'));
    }
    return out.join(QLatin1Char('\n'));
}

const QString K1 = QStringLiteral("0000000001");
const QString K2 = QStringLiteral("0000000002");
const QString Gone = QStringLiteral("0000000099");

}   // namespace

class TestFeedback : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void numbers_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("numeric");
        QTest::addColumn<double>("value");
        QTest::newRow("comma") << "1,5" << true << 1.5;
        QTest::newRow("whole") << "12" << true << 12.0;
        QTest::newRow("leading comma") << ",5" << true << 0.5;
        QTest::newRow("dot") << "1.5" << false << 0.0;
        QTest::newRow("letters") << "1h" << false << 0.0;
        QTest::newRow("two commas") << "1,5,0" << false << 0.0;
        QTest::newRow("empty") << "" << false << 0.0;
        QTest::newRow("comma alone") << "," << false << 0.0;
        QTest::newRow("minus") << "-1" << false << 0.0;
    }
    void numbers()
    {
        QFETCH(QString, text);
        QFETCH(bool, numeric);
        QFETCH(double, value);
        QCOMPARE(istNumerisch(text), numeric);
        QCOMPARE(zahlAus(text), value);
    }

    // The record area with every fallback: a missing component, empty numbers,
    // the codes of finding and verbal mark in any case.
    void showRecord()
    {
        TempData d;
        addComponent(d.sql(), K1, QStringLiteral("Pumpe"));
        addOrder(d.sql(), {K1, "2016", "10", "000010", "0010", "Elektro", "Pumpe", "N", "j", "f", " ", 0});
        addOrder(d.sql(), {Gone, "2016", "10", "000010", "0010", "Elektro", "Alt", "N", "N", "x", "p", 2.25});
        const RueckmeldungAnzeige a = zeigeAuftrag(d.sql(), row(d.sql(), K1));
        QCOMPARE(a.IdentNr, QStringLiteral("ID-1"));
        QCOMPARE(a.Zeit, QStringLiteral("0,0"));
        QCOMPARE(a.MaterialMenge, QStringLiteral("0,25"));
        QCOMPARE(a.MeldungsCode, 1);
        QCOMPARE(a.Verbal, 2);
        QCOMPARE(a.Status, QStringLiteral(" zurückgemeldet "));
        QCOMPARE(a.Kostenstelle, QStringLiteral("4711"));
        const RueckmeldungAnzeige b = zeigeAuftrag(d.sql(), row(d.sql(), Gone));
        QCOMPARE(b.IdentNr, QStringLiteral("Diese Komponente existiert nicht mehr"));
        QCOMPARE(b.Zeit, QStringLiteral("2,25"));
        QCOMPARE(b.MeldungsCode, -1);
        QCOMPARE(b.Verbal, 1);
        QCOMPARE(b.Status, QStringLiteral(" nicht zurückgemeldet "));
        QVERIFY(zeigeAuftrag(d.sql(), std::nullopt).leer);
    }

    // The verbal mark shown as its list entry, in any case, and written back
    // as the letter of the entry chosen.
    void verbalMark_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<int>("shown");
        QTest::addColumn<QString>("written");
        QTest::newRow("Instandhaltung") << "i" << 0 << "I";
        QTest::newRow("Produktion") << "P" << 1 << "P";
        QTest::newRow("blank") << "  " << 2 << " ";
        QTest::newRow("unknown keeps its value") << "X" << -1 << "X";
    }

    void verbalMark()
    {
        QFETCH(QString, stored);
        QFETCH(int, shown);
        QFETCH(QString, written);
        TempData d;
        addComponent(d.sql(), K1, QStringLiteral("Pumpe"));
        addOrder(d.sql(), {K1, "2016", "10", "000010", "0010", "Elektro", "Pumpe", "N", "N", "", stored});
        const RueckmeldungAnzeige a = zeigeAuftrag(d.sql(), row(d.sql(), K1));
        QCOMPARE(a.Verbal, shown);
        QVERIFY(RückmeldungSpeichern(d.sql(), AuftragSchluessel::von(row(d.sql(), K1)), RueckmeldungEingabe::aus(a)));
        QCOMPARE(row(d.sql(), K1).Verbal, written);
    }

    // The checks before a save, in their order, and what each leaves behind.
    void saveChecks_data()
    {
        QTest::addColumn<QString>("menge");
        QTest::addColumn<QString>("zeit");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("focus");
        QTest::newRow("quantity first") << "1.5" << "x" << "Die 'Material-Menge' muß numerisch sein" << "txtMaterialMenge";
        QTest::newRow("time letters") << "1" << "2h" << "Die 'Arbeitszeit' muß numerisch sein" << "txtZeit";
        QTest::newRow("time dot") << "" << "0.5" << "Die 'Arbeitszeit' muß numerisch sein" << "txtZeit";
        QTest::newRow("empty both saved as zero") << "" << "" << "" << "";
    }
    void saveChecks()
    {
        QFETCH(QString, menge);
        QFETCH(QString, zeit);
        QFETCH(QString, message);
        QFETCH(QString, focus);
        TempData d;
        addOrder(d.sql(), {K1, "2016", "10"});
        ScriptedPresenter msgs;
        RueckmeldungEingabe e;
        e.MaterialMenge = menge;
        e.Zeit = zeit;
        const SpeicherErgebnis r = Zurueckmelden(d.sql(), AuftragSchluessel::von(row(d.sql(), K1)), e);
        QCOMPARE(r.focus, focus);
        QCOMPARE(msgs.texts(), message.isEmpty() ? QStringList() : QStringList{message});
        const AuftragZeile z = row(d.sql(), K1);
        QCOMPARE(z.Rueckmeldung, message.isEmpty() ? QStringLiteral("J") : QStringLiteral("N"));
        QCOMPARE(z.PlanZeit, message.isEmpty() ? 0.0 : 1.5);
        if (message.isEmpty())
            QVERIFY(r.zeile && r.zeile->Rueckmeldung == QLatin1String("J"));
    }

    void noCurrentRecord()
    {
        TempData d;
        ScriptedPresenter msgs;
        QCOMPARE(Zurueckmelden(d.sql(), std::nullopt, {}).status, SpeicherErgebnis::Status::KeinDatensatz);
        QCOMPARE(msgs.lastText(), QStringLiteral("Kein aktueller Datensatz"));
        QCOMPARE(msgs.lastStyle(), Style::Exclamation);
    }

    // Finding emptied with no selection, verbal mark kept; the criterion tells
    // apart rows that differ in the instruction only; a quote is plain text.
    void saveFields()
    {
        TempData d;
        addOrder(d.sql(), {K1, "2016", "10", "000010", "0010", "Elektro", "Pumpe", "N", "N", "", "P"});
        addOrder(d.sql(), {K1, "2016", "10", "000010", "0020"});
        const AuftragSchluessel k = AuftragSchluessel::von(row(d.sql(), K1));
        RueckmeldungEingabe e = RueckmeldungEingabe::aus(zeigeAuftrag(d.sql(), row(d.sql(), K1)));
        e.MeldungsCode = 0;
        e.Zeit = QStringLiteral("2,5");
        e.Bemerkung = QStringLiteral("Lager 'links' 100% getauscht");
        e.Kostenstelle = QString(40, QLatin1Char('K'));
        QVERIFY(RückmeldungSpeichern(d.sql(), k, e));
        AuftragZeile z = row(d.sql(), K1);
        QCOMPARE(z.Befund, QStringLiteral("R"));
        QCOMPARE(z.Verbal, QStringLiteral("P"));
        QCOMPARE(z.PlanZeit, 2.5);
        QCOMPARE(z.Bemerkung, e.Bemerkung);
        QCOMPARE(z.Kostenstelle.size(), Schema::Size(QStringLiteral("Auftrag"), QStringLiteral("Kostenstelle")));
        QCOMPARE(row(d.sql(), K1, QStringLiteral("0020")).Rueckmeldung, QStringLiteral("N"));

        e.MeldungsCode = -1;
        e.Verbal = -1;
        QVERIFY(RückmeldungSpeichern(d.sql(), k, e));
        z = row(d.sql(), K1);
        QCOMPARE(z.Befund, QString());
        QCOMPARE(z.Verbal, QStringLiteral("P"));
        QCOMPARE(z.Rueckmeldung, QStringLiteral("J"));

        e.Verbal = 2;
        QVERIFY(RückmeldungSpeichern(d.sql(), k, e));
        QCOMPARE(row(d.sql(), K1).Verbal, QStringLiteral(" "));

        AuftragSchluessel missing = k;
        missing.Anweisung = QStringLiteral("0030");
        QVERIFY(!RückmeldungSpeichern(d.sql(), missing, e));

        QCOMPARE(Stornieren(d.sql(), k, e).status, SpeicherErgebnis::Status::Gespeichert);
        QCOMPARE(row(d.sql(), K1).Befund, QStringLiteral("S"));
    }

    void leaveChanged()
    {
        ScriptedPresenter msgs;
        bool changed = false;
        QVERIFY(SatzVerlassen(false, changed));
        changed = true;
        QVERIFY(SatzVerlassen(true, changed));
        QVERIFY(msgs.texts().isEmpty());
        msgs.answer(Answer::No);
        QVERIFY(!SatzVerlassen(false, changed));
        QVERIFY(!changed);
        QVERIFY(SatzVerlassen(false, changed));   // second click moves without a question
        changed = true;
        msgs.answer(Answer::Yes);
        QVERIFY(SatzVerlassen(false, changed));
        QCOMPARE(msgs.texts(), QStringList(2, QStringLiteral("Satz ohne Rückmeldung verlassen?")));
    }

    void rights()
    {
        Login l;
        l.Level = QStringLiteral("Auswerter");
        RueckmeldungRechte r = rueckmeldungRechte(l);
        QVERIFY(!r.storno && !r.rueckmelden && !r.isAuftrag && !r.verbuchen && !r.loeschen);
        l.Level = QStringLiteral("Werker");
        l.WerkerGewerk = QStringLiteral("Elektro");
        r = rueckmeldungRechte(l);
        QVERIFY(r.storno && r.rueckmelden && r.isAuftrag && !r.verbuchen && !r.loeschen);
        QCOMPARE(r.werkerGewerk, QStringLiteral("Elektro"));
        l.Level = QStringLiteral("Master");
        r = rueckmeldungRechte(l);
        QVERIFY(r.verbuchen && r.loeschen && r.werkerGewerk.isEmpty());
    }

    // Every view's levels from the top down to its leaves, with a quote in a
    // name, a Werker's trade, a missing component and a maintenance-free row.
    void views_data()
    {
        QTest::addColumn<int>("view");
        QTest::addColumn<QString>("level");
        QTest::addColumn<QStringList>("top");
        QTest::addColumn<QStringList>("second");   // below the first top node
        QTest::addColumn<int>("listRows");         // orders of the first leaf
        const QString ms = KomponenteFehltKnoten;
        QTest::newRow("0") << 0 << "Master" << QStringList{"Kessel 'A'", "Pumpe", ms} << QStringList{"2016/00", "2016/10"} << 1;
        QTest::newRow("1") << 1 << "Master" << QStringList{"2016/00", "2016/10", "2016/11"}
                           << QStringList{"Kessel 'A'"} << 1;
        QTest::newRow("2") << 2 << "Master" << QStringList{"Kessel 'A'", "Pumpe", ms} << QStringList{"Elektro", "Maschinen"} << 1;
        QTest::newRow("3") << 3 << "Master" << QStringList{"Kessel 'A'", "Pumpe", ms} << QStringList{"2016/00", "2016/10"} << 1;
        QTest::newRow("4") << 4 << "Master" << QStringList{"2016/00", "2016/10", "2016/11"} << QStringList{"Elektro"} << 1;
        QTest::newRow("5") << 5 << "Master" << QStringList{"2016/00", "2016/10", "2016/11"} << QStringList{"Kessel 'A'"} << 1;
        QTest::newRow("6") << 6 << "Master" << QStringList{"Elektro", "Maschinen"} << QStringList{"Kessel 'A'", "Pumpe", ms} << 1;
        QTest::newRow("7") << 7 << "Master" << QStringList{"Elektro", "Maschinen"} << QStringList{"2016/00", "2016/10", "2016/11"} << 1;
        QTest::newRow("werker") << 6 << "Werker" << QStringList{"Maschinen"} << QStringList{"Kessel 'A'"} << 1;
        QTest::newRow("werker weeks") << 1 << "Werker" << QStringList{"2016/10"} << QStringList{"Kessel 'A'"} << 1;
    }
    void views()
    {
        QFETCH(int, view);
        QFETCH(QString, level);
        QFETCH(QStringList, top);
        QFETCH(QStringList, second);
        QFETCH(int, listRows);
        TempData d;
        const QString kessel = QStringLiteral("0000000003");
        addComponent(d.sql(), K1, QStringLiteral("Pumpe"));
        addComponent(d.sql(), kessel, QStringLiteral("Kessel 'A'"));
        addOrder(d.sql(), {K1, "2016", "10"});
        addOrder(d.sql(), {K1, "2016", "11", "000010", "0010", "Elektro", "Pumpe", "J"});
        addOrder(d.sql(), {kessel, "2016", "00", "000010", "0010", "Elektro", "Kessel 'A'"});
        addOrder(d.sql(), {kessel, "2016", "10", "000010", "0010", "Maschinen", "Kessel 'A'"});
        addOrder(d.sql(), {Gone, "2016", "10", "000010", "0010", "Elektro", "Zalt"});
        const auto s = makeSession(d, level, QStringLiteral("MASCHINEN"));
        const QList<AnsichtKnoten> oben = ansichtKinder(*s, view);
        QStringList texts;
        for (const AnsichtKnoten &k : oben)
            texts << k.text;
        QCOMPARE(texts, top);
        QList<AnsichtKnoten> unten = ansichtKinder(*s, view, oben.first().filter);
        texts.clear();
        for (const AnsichtKnoten &k : unten)
            texts << k.text;
        QCOMPARE(texts, second);
        KnotenFilter leaf = unten.first().filter;
        while (!unten.first().blatt) {
            unten = ansichtKinder(*s, view, unten.first().filter);
            leaf = unten.first().filter;
        }
        QCOMPARE(leaf.tiefe, rueckmeldungsAnsichten().at(view).ebenen.size());
        const AuftragsAbfrage q = auftragsAbfrage(*s, leaf, AuftragsAuswahl::Beide);
        QCOMPARE(int(ladeAuftragZeilen(d.sql(), q.sql, q.values).size()), listRows);
    }

    // The option buttons and maintenance-free rows in the lists, and the summary list.
    void listsAndSummary()
    {
        TempData d;
        addComponent(d.sql(), K1, QStringLiteral("Halle"));
        addComponent(d.sql(), K2, QStringLiteral("Pumpe"), K1);
        addOrder(d.sql(), {K2, "2016", "10", "000010", "0010", "Elektro", "Pumpe", "N", "J", "F", "", 1.0});
        addOrder(d.sql(), {K2, "2016", "10", "000010", "0020", "Elektro", "Pumpe", "N", "N", "", "", 2.0});
        addOrder(d.sql(), {K2, "2016", "10", "000010", "0030", "Elektro", "Pumpe", "J", "N", "", "", 4.0});
        addOrder(d.sql(), {Gone, "2016", "10", "000010", "0010", "Elektro", "Alt", "N", "J", "R", "", 0.5});
        const auto s = makeSession(d);
        KnotenFilter woche{{{QStringLiteral("Jahr"), QStringLiteral("2016")}, {QStringLiteral("Woche"), QStringLiteral("10")}}, 1};
        const auto count = [&](AuftragsAuswahl a) {
            const AuftragsAbfrage q = auftragsAbfrage(*s, woche, a);
            return int(ladeAuftragZeilen(d.sql(), q.sql, q.values).size());
        };
        QCOMPARE(count(AuftragsAuswahl::Beide), 3);
        QCOMPARE(count(AuftragsAuswahl::Offen), 1);
        QCOMPARE(count(AuftragsAuswahl::Zurueckgemeldet), 2);
        const QList<UebersichtZeile> u = uebersicht(*s, woche, AuftragsAuswahl::Beide);
        QCOMPARE(u.size(), 3);
        QCOMPARE(u.at(0).Name, KomponenteFehltKnoten);   // "Alt" sorts before "Pumpe"
        QCOMPARE(u.at(1).Name, QStringLiteral("Pumpe"));
        QCOMPARE(u.at(1).anzahl, 2);
        QCOMPARE(u.at(1).zurueckgemeldet, 1);
        QCOMPARE(u.at(1).befunde, 1);
        QCOMPARE(u.at(1).arbeitszeit, 3.0);
        QCOMPARE(u.at(2).Name, GesamtText);
        QCOMPARE(u.at(2).anzahl, 3);
        QCOMPARE(u.at(2).befunde, 2);
        QCOMPARE(u.at(2).arbeitszeit, 3.5);
        QCOMPARE(komponentenPfad(d.sql(), K2), QStringLiteral("Halle\\Pumpe"));
        QCOMPARE(komponentenPfad(d.sql(), Gone), NichtImVerzeichnisText);
    }

    // First posting of a year makes the table; posting again replaces the week
    // and its short-term copies; maintenance-free rows are never copied.
    void postWeek()
    {
        TempData d;
        addOrder(d.sql(), {K1, "2016", "10"});
        addOrder(d.sql(), {K1, "2016", "10", "000010", "0020", "Elektro", "Pumpe", "J"});
        addOrder(d.sql(), {K2, "2016", "00", "000010", "0010", "Elektro", "Pumpe", "J"});
        addOrder(d.sql(), {K2, "2015", "10"});
        const auto s = makeSession(d);
        const QString table = QStringLiteral("Rückmeldungen2016");
        ScriptedPresenter msgs;
        msgs.answer(Answer::Yes).answer(Answer::No);
        VerbuchenErgebnis r = AuftragswocheVerbuchen(*s, QStringLiteral("2016"), QStringLiteral("10"));
        QCOMPARE(r.status, VerbuchenErgebnis::Status::Verbucht);
        QVERIFY(r.tabelleAngelegt);
        QCOMPARE(msgs.texts(), (QStringList{"Wollen Sie die Auftragswoche 2016/10 jetzt wirklich verbuchen?",
                                            "Die Auftragswoche nach der Verbuchung löschen?"}));
        QCOMPARE(Schema::fieldNames(QStringLiteral("Auftrag")), [&] {
            QStringList n;
            const QSqlRecord rec = d.sql().record(table);
            for (int i = 0; i < rec.count(); ++i)
                n << rec.fieldName(i);
            return n;
        }());
        QCOMPARE(countRows(d.sql(), table), 2);
        QCOMPARE(countRows(d.sql(), table, QStringLiteral("Woche = '10'")), 2);
        QCOMPARE(countRows(d.sql(), table, QStringLiteral("KeineWartung = 'J'")), 1);   // the short-term row is copied as it is
        QCOMPARE(row(d.sql(), K2, QStringLiteral("0010"), table).Woche, QStringLiteral("10"));
        QCOMPARE(countRows(d.sql(), QStringLiteral("Auftrag")), 4);

        // Feedback after the first posting reaches the yearly table at the next.
        exec(d.sql(), QStringLiteral("UPDATE Auftrag SET Befund = 'F' WHERE TeIndex = ?"), {K2});
        msgs.answer(Answer::Yes).answer(Answer::Yes);
        r = AuftragswocheVerbuchen(*s, QStringLiteral("2016"), QStringLiteral("10"));
        QVERIFY(r.geloescht && !r.tabelleAngelegt);
        QCOMPARE(countRows(d.sql(), table), 2);
        QCOMPARE(row(d.sql(), K2, QStringLiteral("0010"), table).Befund, QStringLiteral("F"));
        QCOMPARE(countRows(d.sql(), QStringLiteral("Auftrag"), QStringLiteral("Jahr = '2016' AND Woche = '10'")), 0);
        QCOMPARE(countRows(d.sql(), QStringLiteral("Auftrag"), QStringLiteral("Woche = '00'")), 1);
        QVERIFY(!Schema::tableExists(d.sql(), QStringLiteral("Rückmeldungen2015")));
    }

    void postRefusals_data()
    {
        QTest::addColumn<QString>("level");
        QTest::addColumn<QString>("woche");
        QTest::addColumn<QList<int>>("answers");
        QTest::addColumn<QStringList>("texts");
        QTest::addColumn<int>("status");
        using St = VerbuchenErgebnis::Status;
        QTest::newRow("week 00") << "Master" << "00" << QList<int>{}
                                 << QStringList{"Kurzfristige Aufträge können nicht einzeln verbucht werden"}
                                 << int(St::Abgelehnt);
        QTest::newRow("answered no") << "Master" << "10" << QList<int>{Answer::No}
                                     << QStringList{"Wollen Sie die Auftragswoche 2016/10 jetzt wirklich verbuchen?"}
                                     << int(St::Verneint);
        QTest::newRow("no week") << "Master" << " " << QList<int>{} << QStringList{} << int(St::Nichts);
        QTest::newRow("werker") << "Werker" << "10" << QList<int>{}
                                << QStringList{"Als Werker dürfen Sie keine Auftragswoche verbuchen"} << int(St::Abgelehnt);
    }
    void postRefusals()
    {
        QFETCH(QString, level);
        QFETCH(QString, woche);
        QFETCH(QList<int>, answers);
        QFETCH(QStringList, texts);
        QFETCH(int, status);
        TempData d;
        addOrder(d.sql(), {K1, "2016", "10"});
        addOrder(d.sql(), {K1, "2016", "00"});
        const auto s = makeSession(d, level);
        ScriptedPresenter msgs;
        for (int a : answers)
            msgs.answer(a);
        QCOMPARE(int(AuftragswocheVerbuchen(*s, QStringLiteral("2016"), woche).status), status);
        QCOMPARE(msgs.texts(), texts);
        QVERIFY(!Schema::tableExists(d.sql(), QStringLiteral("Rückmeldungen2016")));
        QCOMPARE(countRows(d.sql(), QStringLiteral("Auftrag")), 2);
    }

    // A fault while copying, and a yearly table of another build: the yearly
    // table and the orders stay exactly as they were.
    void postFaultKeepsTable()
    {
        TempData d;
        addOrder(d.sql(), {K1, "2016", "10"});
        addOrder(d.sql(), {K1, "2016", "00"});
        const auto s = makeSession(d);
        {
            ScriptedPresenter msgs;
            msgs.answer(Answer::Yes).answer(Answer::No);
            AuftragswocheVerbuchen(*s, QStringLiteral("2016"), QStringLiteral("10"));
        }
        const QString table = QStringLiteral("Rückmeldungen2016");
        const QString before = dump(d.sql(), table);
        exec(d.sql(), QStringLiteral("UPDATE Auftrag SET Befund = 'R'"));
        // The short-term copy fails after the week's rows were replaced.
        exec(d.sql(), QStringLiteral("CREATE TRIGGER boom BEFORE INSERT ON \"Rückmeldungen2016\" WHEN (SELECT count(*)"
                                     " FROM \"Rückmeldungen2016\" WHERE Befund = 'R') > 0"
                                     " BEGIN SELECT RAISE(ABORT, 'disk full'); END"));
        const QString auftragR = dump(d.sql(), QStringLiteral("Auftrag"));
        ScriptedPresenter msgs;
        msgs.answer(Answer::Yes).answer(Answer::Yes);
        QCOMPARE(AuftragswocheVerbuchen(*s, QStringLiteral("2016"), QStringLiteral("10")).status,
                 VerbuchenErgebnis::Status::Fehler);
        QCOMPARE(msgs.lastStyle(), Style::Critical);
        QVERIFY(msgs.lastText().startsWith(QStringLiteral("Fehler Nummer: ")));
        QCOMPARE(dump(d.sql(), table), before);
        QCOMPARE(dump(d.sql(), QStringLiteral("Auftrag")), auftragR);

        // Another structure: refused before anything is written.
        exec(d.sql(), QStringLiteral("CREATE TABLE \"Rückmeldungen2017\" (Jahr TEXT, Woche TEXT)"));
        addOrder(d.sql(), {K1, "2017", "05"});
        msgs.clear();
        msgs.answer(Answer::Yes).answer(Answer::Yes);
        QCOMPARE(AuftragswocheVerbuchen(*s, QStringLiteral("2017"), QStringLiteral("05")).status,
                 VerbuchenErgebnis::Status::Abgelehnt);
        QCOMPARE(msgs.lastText(), QStringLiteral("Die Tabelle Rückmeldungen2017 hat nicht den Aufbau der Tabelle Auftrag. "
                                                 "Die Auftragswoche 2017/05 wurde nicht verbucht."));
        QCOMPARE(countRows(d.sql(), QStringLiteral("Auftrag"), QStringLiteral("Jahr = '2017'")), 1);
    }

    // Deleting a week keeps its posted rows; week 00 can be deleted.
    void deleteWeek()
    {
        TempData d;
        addOrder(d.sql(), {K1, "2016", "10"});
        addOrder(d.sql(), {K2, "2016", "10"});
        addOrder(d.sql(), {K1, "2016", "00"});
        const auto s = makeSession(d);
        ScriptedPresenter msgs;
        msgs.answer(Answer::Yes).answer(Answer::No).answer(Answer::No).answer(Answer::Yes).answer(Answer::Yes);
        AuftragswocheVerbuchen(*s, QStringLiteral("2016"), QStringLiteral("10"));
        QVERIFY(!AuftragswocheLoeschen(*s, QStringLiteral("2016"), QStringLiteral("10")));
        QCOMPARE(countRows(d.sql(), QStringLiteral("Auftrag")), 3);
        QVERIFY(AuftragswocheLoeschen(*s, QStringLiteral("2016"), QStringLiteral("10")));
        QVERIFY(AuftragswocheLoeschen(*s, QStringLiteral("2016"), QStringLiteral("00")));
        QCOMPARE(msgs.texts().at(2), QStringLiteral("Wirklich alle Aufträge der Woche 2016/10 löschen?"));
        QCOMPARE(countRows(d.sql(), QStringLiteral("Auftrag")), 0);
        QCOMPARE(countRows(d.sql(), QStringLiteral("Rückmeldungen2016")), 3);
        const auto werker = makeSession(d, QStringLiteral("Auswerter"));
        QVERIFY(!AuftragswocheLoeschen(*werker, QStringLiteral("2016"), QStringLiteral("10")));
    }

    // The findings of a week over several pages: each page has its head and
    // foot, and no component block stands at a page foot without a finding below it.
    void findingsPrint()
    {
        TempData d;
        for (int c = 1; c <= 40; ++c) {
            const QString key = QStringLiteral("%1").arg(c, 10, 10, QLatin1Char('0'));
            addComponent(d.sql(), key, QStringLiteral("Pumpe %1").arg(c));
            for (int a = 1; a <= 3; ++a)
                addOrder(d.sql(), {key, "2016", "10", "000010", QStringLiteral("%1").arg(a * 10, 4, 10, QLatin1Char('0')),
                                   "Elektro", QStringLiteral("Pumpe %1").arg(c, 2, 10, QLatin1Char('0')), "N", "J",
                                   a == 2 ? "" : "F", "I"});
        }
        addOrder(d.sql(), {K1, "2016", "11"});
        const auto s = makeSession(d);
        zoltest::RecordingPreview preview;
        ScriptedPresenter msgs;
        QCOMPARE(BefundeDrucken(*s, QStringLiteral("2016"), QStringLiteral("10"), true), BefundDruckStatus::Gedruckt);
        QVERIFY(preview.store.pageCount() > 1);
        int befunde = 0;
        for (int n = 1; n <= preview.store.pageCount(); ++n) {
            const auto &items = preview.store.page(n).items;
            float lastBlock = -1, lastRow = -1;
            bool kopf = false, fuss = false;
            for (const PrintItem &it : items) {
                kopf = kopf || it.Text == QStringLiteral("Rückmeldung von Befunden und Reparaturen");
                fuss = fuss || it.Text.contains(QLatin1String("F := Fehler"));
                if (it.Text == QLatin1String("Komponente: "))
                    lastBlock = qMax(lastBlock, it.Y);
                if (it.Text == QLatin1String("0010") || it.Text == QLatin1String("0030")) {
                    lastRow = qMax(lastRow, it.Y);
                    ++befunde;
                }
            }
            QVERIFY2(kopf && fuss, qPrintable(QString::number(n)));
            QVERIFY2(lastRow > lastBlock, qPrintable(QString::number(n)));
        }
        QCOMPARE(befunde, 80);   // the rows without a finding are left out

        QCOMPARE(BefundeDrucken(*s, QStringLiteral("2016"), QStringLiteral("11"), true), BefundDruckStatus::KeineBefunde);
        QCOMPARE(msgs.lastText(), QStringLiteral("Keine Befunde für diese Planugswoche vorhanden"));
    }

    // The batch commands: arguments first, then the week; exit status as the contract says.
    void commands()
    {
        TempData d;
        addComponent(d.sql(), K1, QStringLiteral("Pumpe"));
        addOrder(d.sql(), {K1, "2016", "10", "000010", "0010", "Elektro", "Pumpe", "N", "J", "R", "I"});
        addOrder(d.sql(), {K1, "2016", "00"});
        const auto s = makeSession(d);
        ScriptedPresenter msgs;
        QVERIFY(!parsePostArgs({"2016"}));
        QVERIFY(!parsePostArgs({"2016", "1a"}));
        QVERIFY(!parsePostArgs({"2016", "53"}));
        QCOMPARE(msgs.lastText(), QStringLiteral("Nur Werte von 00 bis 52 sind als Wochenzahl zulässig"));
        const auto parsed = parsePostArgs({"2016", "7", "--delete"});
        QVERIFY(parsed && parsed->woche == QLatin1String("07") && parsed->loeschen && !parsed->yes);

        QCOMPARE(postCommand(*s, {"2016", "10"}), 1);   // the question is answered No without --yes
        QCOMPARE(postCommand(*s, {"2016", "00", "--yes"}), 1);
        QCOMPARE(postCommand(*s, {"2016", "20", "--yes"}), 1);
        QCOMPARE(msgs.lastText(), QStringLiteral("Für die Woche 2016/20 sind keine Aufträge vorhanden"));
        QVERIFY(!Schema::tableExists(d.sql(), QStringLiteral("Rückmeldungen2016")));

        QTemporaryDir dir;
        const QString pdf = dir.filePath(QStringLiteral("befunde.pdf"));
        QCOMPARE(printFindingsCommand(*s, {"2016", "10", "--pdf", pdf}), 0);
        const QString text = zoltest::pdfText(pdf);
        QVERIFY(text.contains(QStringLiteral("Rückmeldung von Befunden und Reparaturen")));
        QVERIFY(text.contains(QStringLiteral("Pumpe")));
        QCOMPARE(printFindingsCommand(*s, {"2016", "10"}), 2);
        QCOMPARE(printFindingsCommand(*s, {"2016", "10", "--pdf", d.db().filePath()}), 2);

        QCOMPARE(postCommand(*s, {"2016", "10", "--yes", "--delete"}), 0);
        QCOMPARE(countRows(d.sql(), QStringLiteral("Rückmeldungen2016")), 2);
        QCOMPARE(countRows(d.sql(), QStringLiteral("Auftrag")), 1);
        QCOMPARE(printFindingsCommand(*s, {"2016", "10", "--pdf", dir.filePath(QStringLiteral("leer.pdf"))}), 1);
    }
};

QTEST_MAIN(TestFeedback)
#include "tst_feedback.moc"
