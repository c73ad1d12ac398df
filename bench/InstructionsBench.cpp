#include "InstructionsBench.h"
#include "Figures.h"
#include "gui/instructions/ProtocolModel.h"
#include "zol/core/RecordKeys.h"
#include "zol/core/Sql.h"
#include "zol/instructions/ProtocolGridRules.h"
#include "zol/instructions/ProtocolSearch.h"
#include "zol/instructions/RowBuffer.h"
#include "zol/structure/Node.h"
#include <QElapsedTimer>
#include <cstdio>

namespace zolbench {

namespace {

QString newComponent(const QSqlDatabase &db, const QString &name)
{
    zol::Node n;
    n.FileIndex = zol::NeuerFileIndex(db, QStringLiteral("ProtokollKopf"));
    n.FileAbove = zol::RootProtok;
    n.FileTyp = zol::FileTypFile;
    n.Katalog = QStringLiteral("0");
    n.Text = name;
    n.WIVerantwortlicher = QStringLiteral("Mechanik");
    n.BezugsJahr = QStringLiteral("2025");   // a plant component like any other, plannable
    n.BezugsWoche = QStringLiteral("01");
    zol::saveNode(db, n);
    return n.FileIndex;
}

void addLines(const QSqlDatabase &db, const QString &te, int objects, int perObject)
{
    zol::Transaction tx(db);
    zol::Statement insert(db, QStringLiteral("INSERT INTO ProtokollPositionen VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?)"));
    for (int o = 1; o <= objects; ++o) {
        const QString objekt = QStringLiteral("%1").arg(o * 10, 6, 10, QLatin1Char('0'));
        insert.run({te, objekt, QStringLiteral("0000"), QStringLiteral("Baugruppe %1").arg(o), QString(), QString(),
                    QStringLiteral("0"), QString(), QString(), QStringLiteral("0,0"), QString(),
                    QStringLiteral("0,0"), QString()});
        for (int a = 1; a < perObject; ++a)
            insert.run({te, objekt, QStringLiteral("%1").arg(a * 10, 4, 10, QLatin1Char('0')),
                        QStringLiteral("Sichtprüfung auf Leckage und Verschleiß, Teil %1").arg(a),
                        QStringLiteral("Mechanik"), QStringLiteral("X"), QStringLiteral("1"), QString(),
                        QStringLiteral("4W"), QStringLiteral("0,5"), QString(), QStringLiteral("0,0"),
                        QStringLiteral("L")});
    }
    tx.commit();
}

}

void instructionsBench(const QSqlDatabase &db)
{
    const QString big = newComponent(db, QStringLiteral("Bench Protokoll 2000"));
    addLines(db, big, 100, 20);   // 2,000 lines

    QElapsedTimer t;
    t.start();
    zol::ProtocolGrid grid(db, big, QStringLiteral("Administrator"));
    grid.open();
    ProtocolModel model(grid);
    figure("protocol_open_2000_ms", t.nsecsElapsed() / 1e6, "ms", 1);

    t.restart();
    const auto hit = zol::findInRows(grid.rows(), 0, 1, QStringLiteral("gibt es nicht"), zol::SearchDirection::Down);
    figure("protocol_search_2000_ms", t.nsecsElapsed() / 1e6, "ms", 1);
    if (hit)
        std::fprintf(stderr, "search found what is not there\n");

    QList<zol::InstructionRow> thousand = grid.rows().mid(0, 1000);
    zol::copyToRowBuffer(db, thousand);
    const QString target = newComponent(db, QStringLiteral("Bench Protokoll leer"));
    zol::ProtocolGrid into(db, target, QStringLiteral("Administrator"));
    into.open();
    t.restart();
    const zol::PasteResult r = zol::pasteRowBuffer(into);
    figure("protocol_paste_1000_ms", t.nsecsElapsed() / 1e6, "ms", 1);
    if (r.written != 1000)
        std::fprintf(stderr, "paste wrote %d of %d lines\n", r.written, r.total);
}

}
