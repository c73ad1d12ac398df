#include "support/TestSupport.h"
#include "zol/core/Messages.h"
#include "zol/core/Options.h"
#include "zol/core/Session.h"
#include "zol/core/Sql.h"
#include "zol/core/Users.h"
#include "zol/planning/JobSheetCommand.h"
#include "zol/planning/JobSheets.h"
#include "zol/print/PageLayouts.h"
#include "zol/print/PrinterF.h"
#include "zol/structure/Node.h"
#include <QElapsedTimer>
#include <QPdfWriter>
#include <QProcess>
#include <QtTest>

using namespace zol;
using zoltest::TempData;
using zoltest::countRows;
using zoltest::fileBytes;

namespace {

struct RecordingPreview : PreviewPresenter {
    RecordingPreview() { installPreviewPresenter(this); }
    ~RecordingPreview() override { installPreviewPresenter(nullptr); }
    void showPreview(PrinterF &p) override
    {
        store = p.store();
        ++calls;
    }
    PageStore store;
    int calls = 0;
    QString page(int n) const
    {
        QStringList t;
        for (size_t i = 1; i < store.page(n).items.size(); ++i)
            t << store.page(n).items[i].Text;
        return t.join(QLatin1Char('|'));
    }
    int count(const QString &text) const
    {
        int c = 0;
        for (const auto &pg : store.pages)
            for (const auto &it : pg.items)
                c += it.Text == text;
        return c;
    }
};


// A constructed plant and week, written straight into the tables.
class Plant {
public:
    explicit Plant(const QSqlDatabase &db) : m_db(db) {}

    void installation(const QString &fi, const QString &text, const QString &above = RootProtok)
    {
        Node n;
        n.FileIndex = fi;
        n.FileAbove = above;
        n.FileTyp = FileTypOrdner;
        n.Katalog = QStringLiteral("0");
        n.Text = text;
        saveNode(m_db, n);
    }
    void component(const QString &fi, const QString &text, const QString &above, const QString &lok = {},
                   const QString &kst = {})
    {
        Node n;
        n.FileIndex = fi;
        n.FileAbove = above;
        n.FileTyp = FileTypFile;
        n.Katalog = QStringLiteral("0");
        n.Text = text;
        n.Lokalisierung = lok;
        n.Kostenstelle = kst;
        n.IdentNr = QStringLiteral("ID-") + fi.right(4);
        n.Standort = QStringLiteral("Halle 3");
        n.Hersteller = QStringLiteral("KSB");
        n.WIVerantwortlicher = QStringLiteral("Meier");
        saveNode(m_db, n);
    }
    void objectHead(const QString &te, const QString &objekt, const QString &text)
    {
        exec(m_db, QStringLiteral("INSERT INTO ProtokollPositionen (TeNummer, Objekt, Anweisung, Text) VALUES (?,?,'0000',?)"),
             {te, objekt, text});
    }
    // An order row; fields not given take plain values.
    void order(const QString &te, const QString &woche, const QString &objekt, const QString &anweisung,
               QVariantMap f = {})
    {
        const auto def = [&](const char *k, const QVariant &v) {
            if (!f.contains(QLatin1String(k)))
                f.insert(QLatin1String(k), v);
        };
        def("Jahr", QStringLiteral("2026"));
        def("Ausfuehrender", QStringLiteral("Elektro"));
        def("KeineWartung", QStringLiteral("N"));
        def("Text", QStringLiteral("Anweisung ") + anweisung);
        def("PlanZeit", 10.0);
        def("Intervall", QStringLiteral("1M"));
        def("Betriebszustand", QStringLiteral("L"));
        def("BetriebszustandXL", QStringLiteral("Z"));
        def("KompBezeichnung",
            scalar(m_db, QStringLiteral("SELECT Text FROM ProtokollKopf WHERE FileIndex = ?"), {te}).toString());
        QStringList cols{QStringLiteral("TeIndex"), QStringLiteral("Woche"), QStringLiteral("Objekt"),
                         QStringLiteral("Anweisung")};
        QVariantList vals{te, woche, objekt, anweisung};
        for (auto it = f.cbegin(); it != f.cend(); ++it) {
            cols << ident(it.key());
            vals << it.value();
        }
        exec(m_db,
             QStringLiteral("INSERT INTO Auftrag (%1) VALUES (%2)")
                 .arg(cols.join(QLatin1Char(',')), QStringLiteral("?,").repeated(int(cols.size())).chopped(1)),
             vals);
    }

private:
    QSqlDatabase m_db;
};

QString fi(int n) { return QStringLiteral("%1").arg(n, 10, 10, QLatin1Char('0')); }

}   // namespace

class TestJobSheets : public QObject {
    Q_OBJECT

    std::unique_ptr<TempData> data;
    std::unique_ptr<Session> session;
    PrinterF printer;

    void fresh()
    {
        session.reset();
        data = std::make_unique<TempData>();
        session = std::make_unique<Session>(data->db());
        session->login().UserName = QStringLiteral("Admin");
        session->login().Level = QStringLiteral("Administrator");
        SpeichereOptionen(*session);
    }
    void setOptions(const QStringList &kopfwechsel, const QStringList &sort = {}, int format = 1,
                    const QString &alt = {})
    {
        OptionState &o = session->options();
        o.gKopfwechselAlt = alt;
        o.gKopfwechsel = kopfwechsel;
        while (o.gKopfwechsel.size() < 6)
            o.gKopfwechsel << QString();
        o.gAuftragsortierung = sort;
        o.gDruckFormat = format;
        SpeichereOptionen(*session);
    }
    JobSheetResult preview(const QString &woche = QStringLiteral("12"), const JobSheetFilter &f = {})
    {
        return AuftragsDruckAnweisungen(*session, printer, QStringLiteral("2026"), woche, f, true);
    }

    // Two trades, two locations, three components with object heads.
    void twoTradesWeek()
    {
        Plant pl(data->sql());
        pl.installation(fi(1), QStringLiteral("Werk Nord"));
        pl.installation(fi(2), QStringLiteral("Kesselhaus"), fi(1));
        pl.component(fi(10), QStringLiteral("Pumpe P1"), fi(2), QStringLiteral("Ost"), QStringLiteral("K100"));
        pl.component(fi(11), QStringLiteral("Pumpe P2"), fi(2), QStringLiteral("West"), QStringLiteral("K200"));
        pl.component(fi(12), QStringLiteral("Lüfter L1"), fi(2), QStringLiteral("Ost"), QStringLiteral("K100"));
        pl.objectHead(fi(10), QStringLiteral("000001"), QStringLiteral("Motor"));
        pl.objectHead(fi(11), QStringLiteral("000001"), QStringLiteral("Kupplung"));
        for (const auto &[te, lok, kst] : {std::tuple{10, "Ost", "K100"}, std::tuple{11, "West", "K200"},
                                           std::tuple{12, "Ost", "K100"}}) {
            for (const char *gewerk : {"Elektro", "Mechanik"}) {
                const QString anw = gewerk[0] == 'E' ? QStringLiteral("0010") : QStringLiteral("0020");
                pl.order(fi(te), QStringLiteral("12"), QStringLiteral("000001"), anw,
                         {{"Ausfuehrender", gewerk}, {"Lokalisierung", lok}, {"Kostenstelle", kst},
                          {"PlanZeit", 15.0}});
            }
        }
    }

private Q_SLOTS:
    void init() { fresh(); }
    void cleanup()
    {
        session.reset();
        data.reset();
    }

    // Sheets break by trade and by each chosen head key, never on the first row;
    // the first five keys sort the rows, the sixth only breaks; each sheet's
    // head shows the values of its keys.
    void headChanges_data()
    {
        QTest::addColumn<QStringList>("keys");
        QTest::addColumn<QString>("alt");              // the older single key
        QTest::addColumn<QString>("change");           // an UPDATE of the week before it is printed
        QTest::addColumn<QStringList>("pageTrades");   // the trade of each sheet
        QTest::addColumn<QStringList>("pageHeads");    // a head item of each sheet, if given
        const QStringList twoEach{"Elektro", "Elektro", "Mechanik", "Mechanik"};
        // By name the components stand Ost, West, Ost: only a sorting key gathers the two Ost.
        const QString alternate = "UPDATE Auftrag SET Lokalisierung = CASE TeIndex WHEN '0000000010' THEN 'West' "
                                  "ELSE 'Ost' END";
        QTest::newRow("trade only") << QStringList{} << QString() << QString() << QStringList{"Elektro", "Mechanik"}
                                    << QStringList{};
        QTest::newRow("older single key") << QStringList{} << "Lokalisierung" << QString() << twoEach
                                          << QStringList{"Lokal.: |Ost", "Lokal.: |West", "Lokal.: |Ost", "Lokal.: |West"};
        QTest::newRow("location") << QStringList{"", "", "", "", "", "Lokalisierung"} << QString() << QString()
                                  << twoEach << QStringList{};
        QTest::newRow("sixth key breaks but does not sort")
            << QStringList{"", "", "", "", "", "Lokalisierung"} << QString() << alternate
            << QStringList{"Elektro", "Elektro", "Elektro", "Mechanik", "Mechanik", "Mechanik"}
            << QStringList{"Lokal.: |Ost", "Lokal.: |West", "Lokal.: |Ost", "Lokal.: |Ost", "Lokal.: |West",
                           "Lokal.: |Ost"};
        QTest::newRow("fifth key sorts") << QStringList{"", "", "", "", "Lokalisierung"} << QString() << alternate
                                         << twoEach
                                         << QStringList{"Lokal.: |Ost", "Lokal.: |West", "Lokal.: |Ost", "Lokal.: |West"};
        QTest::newRow("component") << QStringList{"Komponente"} << QString() << QString()
                                   << QStringList{"Elektro", "Elektro", "Elektro", "Mechanik", "Mechanik", "Mechanik"}
                                   << QStringList{};
        QTest::newRow("cost centre by caption") << QStringList{"", "", "", "", "Kostenstelle"} << QString() << QString()
                                                << twoEach
                                                << QStringList{"Kst: |K100", "Kst: |K200", "Kst: |K100", "Kst: |K200"};
        // The derived state R prints the state itself, any other "L,X".
        QTest::newRow("operating state")
            << QStringList{"Betriebszustand"} << QString()
            << "UPDATE Auftrag SET Betriebszustand = 'R', BetriebszustandXL = 'R' WHERE TeIndex = '0000000011'"
            << twoEach
            << QStringList{"   BZustand |R", "   BZustand |L,X", "   BZustand |R", "   BZustand |L,X"};
        QTest::newRow("route and material")
            << QStringList{"Laufweg", "", "", "Material Code"} << QString()
            << "UPDATE Auftrag SET Option1 = 'Weg ' || TeIndex, Materialcode = 'M-1'"
            << QStringList{"Elektro", "Elektro", "Elektro", "Mechanik", "Mechanik", "Mechanik"}
            << QStringList{"Weg: |Weg 0000000010|   Mat: |M-1", "Weg: |Weg 0000000011|   Mat: |M-1",
                           "Weg: |Weg 0000000012|   Mat: |M-1", "Weg: |Weg 0000000010|   Mat: |M-1",
                           "Weg: |Weg 0000000011|   Mat: |M-1", "Weg: |Weg 0000000012|   Mat: |M-1"};
        QTest::newRow("foreign name ignored") << QStringList{"Text; DROP TABLE Auftrag"} << QString() << QString()
                                              << QStringList{"Elektro", "Mechanik"} << QStringList{};
    }
    void headChanges()
    {
        QFETCH(QStringList, keys);
        QFETCH(QString, alt);
        QFETCH(QString, change);
        QFETCH(QStringList, pageTrades);
        QFETCH(QStringList, pageHeads);
        twoTradesWeek();
        if (!change.isEmpty())
            exec(data->sql(), change);
        setOptions(keys, {}, 1, alt);
        RecordingPreview rec;
        ScriptedPresenter msg;
        const JobSheetResult r = preview();
        QCOMPARE(r.status, JobSheetStatus::Done);
        QCOMPARE(r.auftraege, 6);
        QVERIFY(msg.shown().isEmpty());   // the preview asks nothing
        QCOMPARE(rec.store.pageCount(), pageTrades.size());
        for (int i = 0; i < pageTrades.size(); ++i) {
            const QString t = rec.page(i + 1);
            QVERIFY2(t.contains(QStringLiteral("Ausführendes Gewerk: |") + pageTrades.at(i)), qPrintable(t));
            QVERIFY(t.contains(QStringLiteral("Blatt Nr. %1").arg(i + 1)));
            QVERIFY(t.startsWith(QStringLiteral("WI - AUFTRAG")));
            if (!pageHeads.isEmpty())
                QVERIFY2(t.contains(pageHeads.at(i)), qPrintable(QStringLiteral("%1: %2").arg(i + 1).arg(t)));
        }
        // The location head key shows its value in the head.
        if (keys.contains(QStringLiteral("Lokalisierung")) || !alt.isEmpty())
            QVERIFY(rec.page(1).contains(QStringLiteral("Lokal.: |Ost")));
        QCOMPARE(countRows(data->sql(), QStringLiteral("Auftrag")), 6);
    }

    // The component block, the object head from the position rows, the path, and the sort by name.
    void blocksAndObjectHeads()
    {
        twoTradesWeek();
        RecordingPreview rec;
        ScriptedPresenter msg;
        preview(QStringLiteral("12"), {QStringLiteral("Elektro"), {}, {}});
        const QString t = rec.page(1);
        QVERIFY(t.contains(QStringLiteral("Werk Nord\\Kesselhaus\\Pumpe P1")));
        QVERIFY(t.contains(QStringLiteral("Lok.: |Ost")));
        QVERIFY(t.contains(QStringLiteral("Gewerk: |Elektro")));
        QVERIFY(!t.contains(QStringLiteral("Ausführendes")));
        // Lüfter L1 sorts before Pumpe P1; it has no object head.
        QVERIFY(t.indexOf(QStringLiteral("Lüfter L1")) < t.indexOf(QStringLiteral("Pumpe P1")));
        QVERIFY(t.indexOf(QStringLiteral("Pumpe P1")) < t.indexOf(QStringLiteral("Motor|000001")));
        QVERIFY(t.indexOf(QStringLiteral("Pumpe P2")) < t.indexOf(QStringLiteral("Kupplung|000001")));
        QCOMPARE(rec.count(QStringLiteral("000001")), 2);
        QVERIFY(t.contains(QStringLiteral("45,0   Minuten")));
    }

    // A long week: every row once, heads on every page, the running sum in each foot.
    void pageBreaksAndSums()
    {
        Plant pl(data->sql());
        pl.installation(fi(1), QStringLiteral("Werk"));
        for (int c = 0; c < 30; ++c) {
            pl.component(fi(100 + c), QStringLiteral("Antrieb %1").arg(c, 2, 10, QLatin1Char('0')), fi(1));
            pl.objectHead(fi(100 + c), QStringLiteral("000001"), QStringLiteral("Getriebe"));
            for (int a = 1; a <= 5; ++a)
                pl.order(fi(100 + c), QStringLiteral("12"), QStringLiteral("000001"),
                         QStringLiteral("%1").arg(c * 10 + a, 4, 10, QLatin1Char('0')),
                         {{"PlanZeit", 1.5}, {"Text", QStringLiteral("Lange Anweisung mit zwei Zeilen, damit der "
                                                                    "Text im Feld umbricht und die Seite sich "
                                                                    "schneller füllt als mit kurzen Zeilen")}});
        }
        RecordingPreview rec;
        ScriptedPresenter msg;
        const JobSheetResult r = preview();
        QCOMPARE(r.auftraege, 150);
        QVERIFY(rec.store.pageCount() >= 3);
        const double h = PageMetrics(rec.store.format).TextHeight();
        const double footTop = PageMetrics(rec.store.format).ScaleHeight() - 6 * h;
        double last = -1;
        for (int pg = 1; pg <= rec.store.pageCount(); ++pg) {
            const QString t = rec.page(pg);
            QVERIFY(t.startsWith(QStringLiteral("WI - AUFTRAG")));
            QVERIFY(t.contains(QStringLiteral("Summierte Planzeit bisher:   ")));
            // Rows stay above the foot; the sum grows page by page.
            for (const auto &it : rec.store.page(pg).items)
                if (it.Text.startsWith(QStringLiteral("    0")))
                    QVERIFY(it.Y + h <= footTop + 1);
            const QRegularExpression sum(QStringLiteral("\\|([0-9]+),([0-9])   Minuten"));
            const auto m = sum.match(t);
            QVERIFY(m.hasMatch());
            const double s = m.captured(1).toDouble() + m.captured(2).toDouble() / 10;
            QVERIFY(s > last);
            last = s;
        }
        QCOMPARE(last, 225.0);
        for (int c = 0; c < 30; ++c)
            for (int a = 1; a <= 5; ++a)
                QCOMPARE(rec.count(QStringLiteral("    %1").arg(c * 10 + a, 4, 10, QLatin1Char('0'))), 1);
    }

    void onlyWithoutMaintenance()
    {
        Plant pl(data->sql());
        pl.installation(fi(1), QStringLiteral("Werk"));
        pl.component(fi(10), QStringLiteral("Kran K1"), fi(1));
        pl.order(fi(10), QStringLiteral("12"), QStringLiteral("000001"), QStringLiteral("0010"), {{"KeineWartung", "J"}});
        pl.order(fi(10), QStringLiteral("12"), QStringLiteral("000001"), QStringLiteral("0020"), {{"KeineWartung", "J"}});
        RecordingPreview rec;
        ScriptedPresenter msg;
        const JobSheetResult r = preview();
        QCOMPARE(msg.texts(), QStringList{QStringLiteral("Es sind keine Aufträge mit diesen Angaben vorhanden")});
        QCOMPARE(r.status, JobSheetStatus::NoOrders);
        QVERIFY(r.keineWartungListe);
        QCOMPARE(rec.calls, 1);
        QCOMPARE(rec.store.pageCount(), 1);
        const QString t = rec.page(1);
        QVERIFY(t.contains(QStringLiteral("Für die Woche 12/2026 ist für folgende Komponenten keine Wartung vorgesehen")));
        QCOMPARE(rec.count(QStringLiteral("Werk\\Kran K1")), 1);   // once per component
        QVERIFY(t.contains(QStringLiteral("Unterschrift: _ _ _ _ _ _ _ _ _ _")));

        // A week with neither (the last week of the year): the message only and no page.
        msg.clear();
        const JobSheetResult none = preview(QStringLiteral("52"));
        QCOMPARE(none.status, JobSheetStatus::NoOrders);
        QCOMPARE(msg.texts().size(), 1);
        QCOMPARE(rec.calls, 1);
        QCOMPARE(printer.Seite(), 0);
    }

    void listBehindSheets()
    {
        twoTradesWeek();
        Plant pl(data->sql());
        pl.component(fi(20), QStringLiteral("Kran K1"), fi(2));
        pl.order(fi(20), QStringLiteral("12"), QStringLiteral("000001"), QStringLiteral("0010"), {{"KeineWartung", "J"}});
        RecordingPreview rec;
        ScriptedPresenter msg;
        preview();
        QCOMPARE(rec.store.pageCount(), 3);
        QVERIFY(rec.page(3).contains(QStringLiteral("      WI - AUFTRÄGE")));
        QVERIFY(rec.page(3).contains(QStringLiteral("Blatt Nr. 3")));
        QVERIFY(!rec.page(1).contains(QStringLiteral("Kran K1")));
    }

    // Week 00 holds the short-term orders: day strips instead of the remarks line,
    // and every line for handwriting ends inside the right margin.
    void shortTermWeek_data()
    {
        QTest::addColumn<int>("format");
        QTest::addColumn<bool>("wide");   // the strip stands behind the quantity, the remarks line is whole
        QTest::newRow("portrait") << 1 << false;
        QTest::newRow("landscape") << 2 << true;
    }
    void shortTermWeek()
    {
        QFETCH(int, format);
        QFETCH(bool, wide);
        setOptions({}, {}, format);
        Plant pl(data->sql());
        pl.installation(fi(1), QStringLiteral("Werk"));
        pl.component(fi(10), QStringLiteral("Presse"), fi(1));
        const QStringList codes{"1T", "WT", "2T", "3T", "5T", "7T", "4T", "2W"};
        for (int i = 0; i < codes.size(); ++i)
            pl.order(fi(10), QStringLiteral("00"), QStringLiteral("000001"), QStringLiteral("%1").arg(i + 1, 4, 10, QLatin1Char('0')),
                     {{"Intervall", codes.at(i)}, {"IntervallTyp", "K"}, {"Betriebszustand", "X"},
                      {"Materialcode", i == 7 ? "M-7" : ""}, {"Materialmenge", 0.0}});
        RecordingPreview rec;
        ScriptedPresenter msg;
        const JobSheetResult r = AuftragsDruckAnweisungen(*session, printer, QStringLiteral("2026"), QStringLiteral("0"), {}, true);
        QCOMPARE(r.woche, QStringLiteral("00"));
        QCOMPARE(r.auftraege, 8);
        const PageMetrics m(rec.store.format);
        QCOMPARE(rec.store.format.landscape, format == 2);
        int strips = 0, lines = 0;
        double stripX = -1, lineX = -1;
        for (const auto &it : rec.store.page(1).items) {
            if (!it.Text.endsWith(QLatin1String("__")))
                continue;
            QVERIFY2(it.X + m.TextWidth(it.Text, it.Bold) <= m.ScaleWidth() + 1, qPrintable(it.Text));
            if (it.Text.startsWith(QLatin1String("Mo"))) {
                ++strips;
                stripX = it.X;
                bool known = false;
                for (const QString &c : codes.mid(0, 6))
                    known = known || (dayStripFor(c).startsWith(it.Text) && it.Text.size() >= dayStripFor(c).indexOf(QLatin1Char('_')) + 5);
                QVERIFY2(known, qPrintable(it.Text));
            } else if (it.Text.count(QLatin1Char('_')) == it.Text.size() && it.Y > 0 && it.Text.size() > 18
                       && it.Y < m.ScaleHeight() - 6 * m.TextHeight()) {
                ++lines;
                lineX = it.X;
                QCOMPARE(it.Text.size() == 40, wide);
            }
        }
        QCOMPARE(strips, 6);
        QCOMPARE(lines, 1);   // 4T: neither strip nor line; 2W: the line
        QCOMPARE(stripX > lineX, wide);
        QCOMPARE(rec.count(QStringLiteral("X")), 0);        // Betriebszustand X stays blank
        QCOMPARE(rec.count(QStringLiteral("0,0")), 0);      // a quantity of 0 prints nothing
        QCOMPARE(rec.count(QStringLiteral("M-7")), 1);
    }

    void filters_data()
    {
        QTest::addColumn<QString>("gewerk");
        QTest::addColumn<QString>("kst");
        QTest::addColumn<QString>("lok");
        QTest::addColumn<int>("orders");
        QTest::newRow("prefix") << "El*" << "" << "" << 4;
        QTest::newRow("one character") << "?lektro" << "" << "" << 2;
        QTest::newRow("case") << "elektro" << "" << "" << 2;
        QTest::newRow("quote") << "O'Neil" << "" << "" << 1;
        QTest::newRow("quote with wildcard") << "*'*" << "" << "" << 1;
        QTest::newRow("percent is plain") << "" << "K%" << "" << 0;
        QTest::newRow("underscore is plain") << "" << "" << "O_t" << 0;
        QTest::newRow("all three") << "*" << "K1*" << "Ost" << 2;
        QTest::newRow("blank is no filter") << "  " << "" << "" << 7;
        QTest::newRow("nothing") << "Sanitär" << "" << "" << 0;
        QTest::newRow("umlaut") << "Mess*ü*" << "" << "" << 1;
        QTest::newRow("umlaut in upper case") << "MESSTECHNIK SÜD" << "" << "" << 1;
        QTest::newRow("set") << "[E]*" << "" << "" << 4;
        QTest::newRow("set ignores case") << "[mo]*" << "" << "" << 3;
        QTest::newRow("not in set") << "[!E]*" << "" << "" << 3;
        QTest::newRow("digits") << "" << "K###" << "" << 2;
        QTest::newRow("digit is one character") << "" << "K#" << "" << 0;
        QTest::newRow("open bracket is plain") << "[E*" << "" << "" << 0;
        QTest::newRow("bracket as a set of itself") << "elektro [[]süd]" << "" << "" << 1;
        QTest::newRow("bracket without its end") << "*[S*" << "" << "" << 1;
    }
    void filters()
    {
        QFETCH(QString, gewerk);
        QFETCH(QString, kst);
        QFETCH(QString, lok);
        QFETCH(int, orders);
        Plant pl(data->sql());
        pl.installation(fi(1), QStringLiteral("Werk"));
        pl.component(fi(10), QStringLiteral("A"), fi(1));
        pl.component(fi(11), QStringLiteral("B"), fi(1));
        pl.order(fi(10), "12", "000001", "0010", {{"Lokalisierung", "Ost"}, {"Kostenstelle", "K100"}});
        pl.order(fi(11), "12", "000001", "0010", {{"Lokalisierung", "Ost"}, {"Kostenstelle", "K100"}});
        pl.order(fi(10), "12", "000001", "0020", {{"Ausfuehrender", "Mechanik"}, {"Lokalisierung", "West"}});
        pl.order(fi(11), "12", "000001", "0020", {{"Ausfuehrender", "O'Neil"}, {"Lokalisierung", "West"}});
        pl.order(fi(11), "12", "000001", "0030", {{"Ausfuehrender", "Elektronik"}, {"Lokalisierung", "Oxt"}});
        pl.order(fi(11), "12", "000001", "0040", {{"Ausfuehrender", "Messtechnik Süd"}, {"Lokalisierung", "Nord"}});
        pl.order(fi(10), "12", "000001", "0050", {{"Ausfuehrender", "Elektro [Süd]"}, {"Lokalisierung", "Süd"}});
        RecordingPreview rec;
        ScriptedPresenter msg;
        const JobSheetResult r = preview(QStringLiteral("12"), {gewerk, kst, lok});
        QCOMPARE(r.auftraege, orders);
        QCOMPARE(r.status, orders ? JobSheetStatus::Done : JobSheetStatus::NoOrders);
    }

    void werkerPrintsOwnTrade()
    {
        twoTradesWeek();
        session->login().Level = Role::Werker;
        session->login().WerkerGewerk = QStringLiteral("Mechanik");
        RecordingPreview rec;
        ScriptedPresenter msg;
        const JobSheetResult r = preview(QStringLiteral("12"), {QStringLiteral("Elektro"), {}, {}});
        QCOMPARE(r.auftraege, 3);
        QVERIFY(rec.page(1).contains(QStringLiteral("Gewerk: |Mechanik")));
    }

    void deletedComponentIsLeftOut()
    {
        twoTradesWeek();
        exec(data->sql(), QStringLiteral("DELETE FROM ProtokollKopf WHERE FileIndex = ?"), {fi(11)});
        RecordingPreview rec;
        ScriptedPresenter msg;
        const JobSheetResult r = preview();
        QCOMPARE(r.auftraege, 4);
        QCOMPARE(rec.count(QStringLiteral("Pumpe P2")), 0);
    }

    void sortOptions()
    {
        twoTradesWeek();
        // The component's site sorts before its name: P2 in "A-Halle" comes before the others in "Halle 3".
        exec(data->sql(), QStringLiteral("UPDATE ProtokollKopf SET Standort = ? WHERE FileIndex = ?"), {QStringLiteral("A-Halle"), fi(11)});
        setOptions({}, {QStringLiteral("Standort")});
        RecordingPreview rec;
        ScriptedPresenter msg;
        preview(QStringLiteral("12"), {QStringLiteral("Elektro"), {}, {}});
        const QString t = rec.page(1);
        QVERIFY(t.indexOf(QStringLiteral("Pumpe P2")) < t.indexOf(QStringLiteral("Lüfter L1")));
        QVERIFY(jobSheetQuery(*session, "2026", "12", {}, false).sql.contains(QStringLiteral("ProtokollKopf.\"Standort\"")));
    }

    void refusalsAndQuestion_data()
    {
        QTest::addColumn<QString>("jahr");
        QTest::addColumn<QString>("woche");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("focus");
        QTest::newRow("no year") << " " << "12" << "Bitte Jahr eingeben" << "txtJahr";
        QTest::newRow("no week") << "2026" << "" << "Bitte Woche eingeben" << "dbcWoche";
        QTest::newRow("week 53") << "2026" << "53" << "Nur Werte von 00 bis 52 sind als Wochenzahl zulässig" << "dbcWoche";
        QTest::newRow("week text") << "2026" << "xy" << "Nur Werte von 00 bis 52 sind als Wochenzahl zulässig" << "dbcWoche";
    }
    void refusalsAndQuestion()
    {
        QFETCH(QString, jahr);
        QFETCH(QString, woche);
        QFETCH(QString, message);
        QFETCH(QString, focus);
        twoTradesWeek();
        ScriptedPresenter msg;
        const JobSheetResult r = AuftragsDruckAnweisungen(*session, printer, jahr, woche, {}, false);
        QCOMPARE(r.status, JobSheetStatus::Refused);
        QCOMPARE(r.focus, focus);
        QCOMPARE(msg.texts(), QStringList{message});
        QCOMPARE(msg.lastStyle(), Style::Exclamation);
    }

    void directPrintAsksFirst()
    {
        twoTradesWeek();
        ScriptedPresenter msg;
        msg.answer(Answer::No);
        JobSheetResult r = AuftragsDruckAnweisungen(*session, printer, "26", "3", {}, false);
        QCOMPARE(r.status, JobSheetStatus::Cancelled);
        QCOMPARE(msg.texts(), QStringList{"Aufträge für die Woche 03 im Jahr 0026 jetzt wirklich drucken?"});
        QCOMPARE(msg.lastStyle(), Style::YesNo);
        // Yes, but there is no printer: the driver fault is explained, the job given up.
        msg.clear();
        msg.answer(Answer::Yes);
        r = AuftragsDruckAnweisungen(*session, printer, "2026", "12", {}, false);
        QCOMPARE(r.status, JobSheetStatus::Cancelled);
        QCOMPARE(msg.texts().last(), QStringLiteral("Der Druckertreiber ist nicht verfügbar"));
        QCOMPARE(msg.lastStyle(), Style::Critical);

        // With a printer the same pages go out directly.
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("direkt.pdf"));
        {
            QPdfWriter writer(path);
            writer.setResolution(1440);
            printer.setPrinter(&writer);
            msg.clear();
            msg.answer(Answer::Yes);
            r = AuftragsDruckAnweisungen(*session, printer, "2026", "12", {}, false);
            printer.setPrinter(nullptr);
        }
        QCOMPARE(r.status, JobSheetStatus::Done);
        QCOMPARE(msg.texts().size(), 1);
        const QString text = zoltest::pdfText(path);
        QCOMPARE(text.count(QLatin1Char('\f')), 2);
        // The person count 0 is a value and printed.
        QVERIFY(QRegularExpression(QStringLiteral("0010 +Anweisung 0010 +0 +L +1M +15,0")).match(text).hasMatch());
    }

    void statusLine()
    {
        twoTradesWeek();
        RecordingPreview rec;
        ScriptedPresenter msg;
        QStringList lines;
        AuftragsDruckAnweisungen(*session, printer, "2026", "12", {}, true, [&](const QString &t) { lines << t; });
        QCOMPARE(lines, (QStringList{"Woche 12/2026 wird gedruckt (6 Aufträge)", "Warte auf Eingaben"}));
    }

    void filterValuesOfWeek()
    {
        twoTradesWeek();
        QCOMPARE(AuftragsFilterWerte(*session, "2026", "12", "Ausfuehrender"), (QStringList{"Elektro", "Mechanik"}));
        QCOMPARE(AuftragsFilterWerte(*session, "2026", "12", "Lokalisierung"), (QStringList{"Ost", "West"}));
        QVERIFY(AuftragsFilterWerte(*session, "2026", "1", "Lokalisierung").isEmpty());
    }

    // The statement finds the week by index and each component by key, never by scanning.
    void statementUsesIndexes()
    {
        setOptions({"Lokalisierung"}, {"Kostenstelle"});
        for (bool kw : {false, true}) {
            const JobSheetQuery q = jobSheetQuery(*session, "2026", "12", {"El*", "K*", "O*"}, kw);
            QSqlQuery plan = exec(data->sql(), QStringLiteral("EXPLAIN QUERY PLAN ") + q.sql, q.values);
            QStringList steps;
            while (plan.next())
                steps << plan.value(3).toString();
            const QString all = steps.join(QLatin1Char('\n'));
            QVERIFY2(all.contains(QRegularExpression(QStringLiteral("SEARCH Auftrag USING (COVERING )?INDEX .*\\(Jahr=\\? AND Woche=\\?"))), qPrintable(all));
            QVERIFY2(all.contains(QRegularExpression(QStringLiteral("SEARCH ProtokollKopf USING (COVERING )?INDEX .*\\(FileIndex=\\?\\)"))), qPrintable(all));
        }
    }

    void batchCommand()
    {
        twoTradesWeek();
        QTemporaryDir dir;
        const QString pdf = dir.filePath(QStringLiteral("woche12.pdf"));
        ScriptedPresenter msg;
        QCOMPARE(printJobSheetsCommand(*session, {"2026", "12", "--pdf", pdf, "--gewerk", "El*"}), 0);
        const QString text = zoltest::pdfText(pdf);
        QCOMPARE(text.count(QLatin1Char('\f')), 1);
        QVERIFY(text.contains(QStringLiteral("WI - AUFTRAG")));
        QVERIFY(text.contains(QStringLiteral("Pumpe P1")));
        QVERIFY(!text.contains(QStringLiteral("Mechanik")));

        // An existing file is replaced only when the user agrees.
        const QByteArray firstPdf = fileBytes(pdf);
        msg.answer(Answer::No);
        QCOMPARE(printJobSheetsCommand(*session, {"2026", "12", "--pdf", pdf}), 1);
        QCOMPARE(fileBytes(pdf), firstPdf);
        msg.answer(Answer::Yes);
        QCOMPARE(printJobSheetsCommand(*session, {"2026", "12", "--pdf", pdf}), 0);
        QCOMPARE(zoltest::pdfText(pdf).count(QLatin1Char('\f')), 2);
        QCOMPARE(msg.pendingAnswers(), 0);

        // Never over the data file, the monthly copy or a file the session holds open.
        data->db().makeMonthlyCopy(QDate(2026, 11, 1));
        for (const QString &target : {data->db().filePath(), data->dir() + QStringLiteral("/sub/../ZOL_202611.db"),
                                      data->dir() + QStringLiteral("/ZOL.db-wal")}) {
            const QByteArray before = fileBytes(target);
            msg.clear();
            QCOMPARE(printJobSheetsCommand(*session, {"2026", "12", "--pdf", target}), 2);
            QCOMPARE(msg.lastStyle(), Style::Exclamation);
            QVERIFY(msg.lastText().contains(QStringLiteral("wird nicht überschrieben")));
            QCOMPARE(fileBytes(target), before);
        }

        const QString none = dir.filePath(QStringLiteral("leer.pdf"));
        QCOMPARE(printJobSheetsCommand(*session, {"2026", "40", "--pdf", none}), 1);
        QVERIFY(!QFile::exists(none));
        QCOMPARE(printJobSheetsCommand(*session, {"2026", "60", "--pdf", none}), 1);
        QCOMPARE(printJobSheetsCommand(*session, {"2026", "12"}), 2);
        QCOMPARE(printJobSheetsCommand(*session, {"2026", "12", "--pdf", pdf, "--farbe", "rot"}), 2);
        QCOMPARE(printJobSheetsCommand(*session, {"2026", "12", "--pdf"}), 2);

        msg.clear();
        const QString bad = dir.filePath(QStringLiteral("fehlt/woche12.pdf"));
        QCOMPARE(printJobSheetsCommand(*session, {"2026", "12", "--pdf", bad}), 3);
        QVERIFY(msg.lastText().startsWith(QStringLiteral("Die Datei ")));
        QCOMPARE(msg.lastStyle(), Style::Critical);
        QVERIFY(!QFile::exists(bad));
    }

    // A realistic week in the PDF: the row's columns stand on one line in their order.
    void realisticSheetInPdf_data()
    {
        QTest::addColumn<int>("format");
        QTest::newRow("portrait") << 1;
        QTest::newRow("landscape") << 2;
    }
    void realisticSheetInPdf()
    {
        QFETCH(int, format);
        setOptions({}, {}, format);
        Plant pl(data->sql());
        pl.installation(fi(1), QStringLiteral("Werk Süd"));
        pl.installation(fi(2), QStringLiteral("Kraftwerk"), fi(1));
        const QStringList texts{
            "Ölstand am Schauglas prüfen, bei Bedarf Öl nachfüllen",
            "Kupplung auf Verschleiß und Ausrichtung prüfen; Elastomere bei Rissbildung tauschen und "
            "Ausrichtung mit Messuhr protokollieren",
            "Filter reinigen", "Dichtheit der Gleitringdichtung kontrollieren", "Lagergeräusche abhören"};
        const QStringList codes{"1M", "3M", "1T", "WT", "6M"};
        for (int c = 0; c < 8; ++c) {
            const QString te = fi(100 + c);
            pl.component(te, QStringLiteral("Kühlwasserpumpe %1").arg(c + 1), fi(2), QStringLiteral("Block A"),
                         QStringLiteral("4711"));
            pl.objectHead(te, QStringLiteral("000001"), QStringLiteral("Antriebsmotor"));
            pl.objectHead(te, QStringLiteral("000002"), QStringLiteral("Pumpe mit Kupplung"));
            for (int a = 0; a < 5; ++a)
                pl.order(te, QStringLiteral("12"), QStringLiteral("00000%1").arg(a < 2 ? 1 : 2),
                         QStringLiteral("%1").arg((a + 1) * 10, 4, 10, QLatin1Char('0')),
                         {{"Text", texts.at(a)}, {"Intervall", codes.at(a)}, {"PlanZeit", 5.0 + a * 2.5},
                          {"AnzahlPersonen", a == 1 ? 2 : 1}, {"Betriebszustand", a == 1 ? "R" : "L"},
                          {"SicherheitsHinweis", a == 1 ? "SH-03" : ""}, {"Materialcode", a == 4 ? "FETT-02" : ""},
                          {"Materialmenge", a == 4 ? 0.5 : 0.0}, {"Ausfuehrender", "Mechanik"},
                          {"Lokalisierung", "Block A"}, {"Kostenstelle", "4711"}});
        }
        QTemporaryDir dir;
        const QString pdf = dir.filePath(QStringLiteral("woche12.pdf"));
        ScriptedPresenter msg;
        QCOMPARE(printJobSheetsCommand(*session, {"2026", "12", "--pdf", pdf}), 0);
        if (!qEnvironmentVariableIsEmpty("ZOL_KEEP_PDF"))
            QFile::copy(pdf, qEnvironmentVariable("ZOL_KEEP_PDF") + QString::number(format));
        const QString text = zoltest::pdfText(pdf);
        QVERIFY(text.count(QLatin1Char('\f')) >= 2);
        const QRegularExpression row(QStringLiteral(
            "0020 +Kupplung auf Verschleiß und.* SH-03 +2 +R +3M +7,5 +_{30,}"));
        QVERIFY2(row.match(text).hasMatch(), qPrintable(text.left(3000)));
        QVERIFY(QRegularExpression(QStringLiteral("0030 +Filter reinigen +1 +L +1T +10,0 +Mo Di Mi Do Fr Sa So _+")).match(text).hasMatch());
        QVERIFY(QRegularExpression(QStringLiteral("0050 +Lagergeräusche abhören +1 +L +6M +15,0 +FETT-02")).match(text).hasMatch());
        QVERIFY(QRegularExpression(QStringLiteral("Summierte Planzeit bisher: +400,0 +Minuten")).match(text).hasMatch());
    }

private:
    static QString dayStripFor(const QString &code);
};

QString TestJobSheets::dayStripFor(const QString &code)
{
    // Written out here so a changed strip is noticed.
    static const QHash<QString, QString> strips{
        {"1T", "Mo Di Mi Do Fr Sa So ___________________"}, {"WT", "Mo Di Mi Do Fr _________________________"},
        {"2T", "Mo    Mi    Fr  ________________________"}, {"3T", "Mo       Do     ________________________"},
        {"5T", "Mo Di Mi    Fr Sa ______________________"}, {"7T", "Mo _____________________________________"}};
    return strips.value(code);
}

QTEST_MAIN(TestJobSheets)
#include "tst_jobsheets.moc"
