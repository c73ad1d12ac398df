#include "support/TestSupport.h"
#include "zol/core/Messages.h"
#include "zol/core/Session.h"
#include "zol/core/Sql.h"
#include "zol/print/PageMetrics.h"
#include "zol/print/PrinterF.h"
#include "zol/structure/Node.h"
#include "zol/structure/StructurePrints.h"
#include <QtTest>

using namespace zol;

namespace {

struct RecordingPreview : PreviewPresenter {
    RecordingPreview() { installPreviewPresenter(this); }
    ~RecordingPreview() override { installPreviewPresenter(nullptr); }
    void showPreview(PrinterF &p) override
    {
        store = p.store();
        ++calls;
        // For a look at the pages: ZOL_SCREENSHOTS=DIR keeps each job as a PDF.
        if (qEnvironmentVariableIsSet("ZOL_SCREENSHOTS")) {
            static int job = 0;
            writePdf(store, QDir(qEnvironmentVariable("ZOL_SCREENSHOTS"))
                                .filePath(QStringLiteral("structureprint-%1.pdf").arg(++job)),
                     1, store.pageCount());
        }
    }
    // The texts of a page in the order they were printed, blanks left out.
    QStringList page(int n) const
    {
        QStringList t;
        for (const PrintItem &it : store.page(n).items)
            if (!it.Text.trimmed().isEmpty())
                t << it.Text;
        return t;
    }
    QStringList all() const
    {
        QStringList t;
        for (int n = 1; n <= store.pageCount(); ++n)
            t << page(n);
        return t;
    }
    PageStore store;
    int calls = 0;
};

void node(const QSqlDatabase &db, const QString &fi, const QString &above, const QString &typ, const QString &text)
{
    Node n;
    n.FileIndex = fi;
    n.FileAbove = above;
    n.FileTyp = typ;
    n.Katalog = QStringLiteral("0");
    n.Text = text;
    saveNode(db, n);
}

void position(const QSqlDatabase &db, const QString &te, const QString &objekt, const QString &anweisung,
              const QString &text)
{
    exec(db, QStringLiteral("INSERT INTO ProtokollPositionen (TeNummer, Objekt, Anweisung, Text, Ausfuehrender, Intervall,"
                            " Planzeit) VALUES (?,?,?,?,'Elektro','1M','0,5')"),
         {te, objekt, anweisung, text});
}

// Halle 1 holds Pumpe B, Motor A and the installation Keller with Lüfter 'C'.
void plant(const QSqlDatabase &db)
{
    node(db, QStringLiteral("0000000001"), RootProtok, FileTypOrdner, QStringLiteral("Halle 1"));
    node(db, QStringLiteral("0000000002"), QStringLiteral("0000000001"), FileTypFile, QStringLiteral("Pumpe B"));
    node(db, QStringLiteral("0000000003"), QStringLiteral("0000000001"), FileTypFile, QStringLiteral("Motor A"));
    node(db, QStringLiteral("0000000004"), QStringLiteral("0000000001"), FileTypOrdner, QStringLiteral("Keller"));
    node(db, QStringLiteral("0000000005"), QStringLiteral("0000000004"), FileTypFile, QStringLiteral("Lüfter 'C'"));
    position(db, QStringLiteral("0000000002"), QStringLiteral("000010"), QStringLiteral("0000"), QStringLiteral("Lager"));
    position(db, QStringLiteral("0000000002"), QStringLiteral("000010"), QStringLiteral("0010"),
             QStringLiteral("Lager fetten"));
    position(db, QStringLiteral("0000000003"), QStringLiteral("000010"), QStringLiteral("0010"),
             QStringLiteral("Wicklung messen"));
    position(db, QStringLiteral("0000000005"), QStringLiteral("000020"), QStringLiteral("0010"),
             QStringLiteral("Filter tauschen"));
}

int indexOf(const QStringList &texts, const QString &part)
{
    for (int i = 0; i < texts.size(); ++i)
        if (texts.at(i).contains(part))
            return i;
    return -1;
}

}   // namespace

class TestStructurePrints : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // An installation brings every component below it, components before
    // sub-installations, each by name; "einzeln" gives each its own sheet.
    void instructionLists_data()
    {
        QTest::addColumn<bool>("einzeln");
        QTest::addColumn<int>("pages");
        QTest::newRow("running sheet") << false << 1;
        QTest::newRow("one sheet each") << true << 3;
    }
    void instructionLists()
    {
        QFETCH(bool, einzeln);
        QFETCH(int, pages);
        zoltest::TempData d;
        plant(d.sql());
        Session session(d.db());
        PrinterF printer;
        RecordingPreview preview;
        ScriptedPresenter msgs;
        QStringList status;
        StrukturAuswahl auswahl;
        auswahl.baumKey = QStringLiteral("0000000001");
        const auto r = DruckeAusgewaehlte(session, printer, auswahl, einzeln, true,
                                          [&](const QString &t) { status << t; });
        QCOMPARE(r, StrukturDruckStatus::Done);
        QVERIFY(msgs.texts().isEmpty());   // the preview asks nothing
        QCOMPARE(status, (QStringList{QStringLiteral("Erstelle Druckauftrag"), QString()}));
        QCOMPARE(preview.store.pageCount(), pages);
        const QStringList t = preview.all();
        QCOMPARE(t.count(QStringLiteral("WI-Übersicht")), pages);
        const int motor = indexOf(t, QStringLiteral("Motor A"));
        const int pumpe = indexOf(t, QStringLiteral("Pumpe B"));
        const int luefter = indexOf(t, QStringLiteral("Lüfter 'C'"));
        QVERIFY(motor >= 0 && pumpe > motor && luefter > pumpe);
        QVERIFY(indexOf(t, QStringLiteral("Wicklung messen")) > motor);
        QVERIFY(indexOf(t, QStringLiteral("Lager fetten")) > pumpe);
        QVERIFY(indexOf(t, QStringLiteral("Filter tauschen")) > luefter);
        if (einzeln)
            QVERIFY(indexOf(preview.page(3), QStringLiteral("Filter tauschen")) >= 0);
        // Every sheet of its own counts from 1.
        QCOMPARE(int(t.filter(QStringLiteral("Blatt Nr. 1")).size()), pages);
    }

    void instructionListsAskAndSelect()
    {
        zoltest::TempData d;
        plant(d.sql());
        Session session(d.db());
        PrinterF printer;
        RecordingPreview preview;
        ScriptedPresenter msgs;
        StrukturAuswahl top;
        top.baumKey = RootProtok;
        QCOMPARE(DruckeAusgewaehlte(session, printer, top, false, true), StrukturDruckStatus::Nothing);

        // The list has the focus: its marked entries count, not the tree node.
        StrukturAuswahl liste;
        liste.baumKey = QStringLiteral("0000000001");
        liste.listeHatFokus = true;
        liste.listeKeys = {QStringLiteral("0000000003")};
        msgs.answer(Answer::No);
        QCOMPARE(DruckeAusgewaehlte(session, printer, liste, false, false), StrukturDruckStatus::Cancelled);
        QCOMPARE(msgs.texts(), QStringList{QStringLiteral("Ausgewählte Komponenten jetzt wirklich drucken?")});
        QCOMPARE(preview.calls, 0);
        QCOMPARE(DruckeAusgewaehlte(session, printer, liste, false, true), StrukturDruckStatus::Done);
        const QStringList t = preview.all();
        QVERIFY(indexOf(t, QStringLiteral("Motor A")) >= 0);
        QCOMPARE(indexOf(t, QStringLiteral("Pumpe B")), -1);
    }

    void structure_data()
    {
        QTest::addColumn<int>("komponenten");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("with components")
            << int(Answer::Yes)
            << QStringList{QStringLiteral("WI-Rundgang\\Halle 1"), QStringLiteral("|-------Halle 1"),
                           QStringLiteral("          |-------KOMP.:  Motor A"),
                           QStringLiteral("          |-------KOMP.:  Pumpe B"),
                           QStringLiteral("          |-------Keller"),
                           QStringLiteral("                    |-------KOMP.:  Lüfter 'C'")};
        QTest::newRow("installations only")
            << int(Answer::No)
            << QStringList{QStringLiteral("WI-Rundgang\\Halle 1"), QStringLiteral("|-------Halle 1"),
                           QStringLiteral("          |-------Keller")};
    }
    void structure()
    {
        QFETCH(int, komponenten);
        QFETCH(QStringList, expected);
        zoltest::TempData d;
        plant(d.sql());
        Session session(d.db());
        PrinterF printer;
        RecordingPreview preview;
        ScriptedPresenter msgs;
        msgs.answer(komponenten);
        StrukturAuswahl auswahl;
        auswahl.baumKey = QStringLiteral("0000000001");
        QCOMPARE(DruckeStrukturAuswahl(session, printer, auswahl, true), StrukturDruckStatus::Done);
        QCOMPARE(msgs.texts(), QStringList{QStringLiteral("Auch Komponenten auflisten?")});
        QStringList t = preview.all();
        QCOMPARE(t.first(), QStringLiteral("Komponentenstruktur"));
        t = t.mid(indexOf(t, QStringLiteral("WI-Rundgang\\Halle 1")));
        QCOMPARE(t, expected);
    }

    // The structure of a big branch runs over pages, each with its head.
    void structureBreaksPages()
    {
        zoltest::TempData d;
        node(d.sql(), QStringLiteral("0000000001"), RootProtok, FileTypOrdner, QStringLiteral("Halle 1"));
        Transaction tx(d.sql());
        for (int i = 2; i < 250; ++i)
            node(d.sql(), QStringLiteral("%1").arg(i, 10, 10, QLatin1Char('0')), QStringLiteral("0000000001"),
                 FileTypFile, QStringLiteral("Teil %1").arg(i, 3, 10, QLatin1Char('0')));
        tx.commit();
        Session session(d.db());
        PrinterF printer;
        RecordingPreview preview;
        ScriptedPresenter msgs;
        msgs.answer(Answer::Yes).answer(Answer::No);
        StrukturAuswahl auswahl;
        auswahl.baumKey = QStringLiteral("0000000001");
        QCOMPARE(DruckeStrukturAuswahl(session, printer, auswahl, false), StrukturDruckStatus::Cancelled);
        QCOMPARE(msgs.texts().last(), QStringLiteral("Ausgewählte Struktur jetzt wirklich drucken?"));
        msgs.answer(Answer::Yes);
        QCOMPARE(DruckeStrukturAuswahl(session, printer, auswahl, true), StrukturDruckStatus::Done);
        QVERIFY(preview.store.pageCount() >= 3);
        const QStringList t = preview.all();
        QCOMPARE(t.count(QStringLiteral("Komponentenstruktur")), preview.store.pageCount());
        QCOMPARE(t.filter(QStringLiteral("KOMP.:  Teil")).size(), 248);
        for (int n = 1; n <= preview.store.pageCount(); ++n)
            for (const PrintItem &it : preview.store.page(n).items)
                QVERIFY2(it.Y + zeilenHoeheOf(printer) <= printer.ScaleHeight() + 1, qPrintable(it.Text));
    }

    void searchResult_data()
    {
        QTest::addColumn<QList<SuchFilterZeile>>("filter");
        QTest::addColumn<QStringList>("found");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("filters and hits")
            << QList<SuchFilterZeile>{{QStringLiteral("Standort:"), QStringLiteral("Halle 3")},
                                      {QStringLiteral("Name:"), QStringLiteral("P*")},
                                      {QStringLiteral("Typ:"), QString()}}
            << QStringList{QStringLiteral("0000000002"), QStringLiteral("0000000005")}
            << QStringList{QStringLiteral("Suchfilter:"), QStringLiteral("Name:"), QStringLiteral("P*"),
                           QStringLiteral("Standort:"), QStringLiteral("Halle 3"), QStringLiteral("Ergebnis:"),
                           QStringLiteral("Pumpe B"), QStringLiteral("WI-Rundgang\\Halle 1\\Pumpe B"),
                           QStringLiteral("Lüfter 'C'"), QStringLiteral("WI-Rundgang\\Halle 1\\Keller\\Lüfter 'C'")};
        QTest::newRow("one filter")
            << QList<SuchFilterZeile>{{QStringLiteral("Name:"), QStringLiteral("Pumpe B")}}
            << QStringList{QStringLiteral("0000000002")}
            << QStringList{QStringLiteral("Suchfilter:"), QStringLiteral("Name:"), QStringLiteral("Pumpe B"),
                           QStringLiteral("Ergebnis:"), QStringLiteral("Pumpe B"),
                           QStringLiteral("WI-Rundgang\\Halle 1\\Pumpe B")};
        QTest::newRow("nothing set, nothing found")
            << QList<SuchFilterZeile>{{QStringLiteral("Name:"), QStringLiteral("  ")}} << QStringList{}
            << QStringList{QStringLiteral("Suchfilter:"), QStringLiteral("(Es wurden keine Filter gesetzt)"),
                           QStringLiteral("Ergebnis:"), QStringLiteral("(Es treffen keine Komponenten zu)")};
    }
    void searchResult()
    {
        QFETCH(QList<SuchFilterZeile>, filter);
        QFETCH(QStringList, found);
        QFETCH(QStringList, expected);
        zoltest::TempData d;
        plant(d.sql());
        Session session(d.db());
        PrinterF printer;
        RecordingPreview preview;
        ScriptedPresenter msgs;
        msgs.answer(Answer::No);   // not on the printer: the preview
        QCOMPARE(DruckeSuchergebnis(session, printer, filter, found), StrukturDruckStatus::Done);
        QCOMPARE(msgs.texts(), QStringList{QStringLiteral("Direkt auf Drucker drucken?")});
        QCOMPARE(preview.calls, 1);
        QCOMPARE(preview.all(), expected);
    }

private:
    static double zeilenHoeheOf(const PrinterF &p) { return p.TextHeight(); }
};

QTEST_MAIN(TestStructurePrints)
#include "tst_structureprints.moc"
