#include "ExchangeCommands.h"
#include "ComponentExchange.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/core/OutputFile.h"
#include "zol/core/Session.h"
#include "zol/core/Sql.h"
#include "zol/structure/Explorer.h"
#include "zol/structure/Node.h"
#include <QFileInfo>
#include <QTextStream>

namespace zol {

namespace {

std::optional<ExchangeArgs> parseArgs(const QStringList &args, const QString &option, const QString &usage)
{
    ExchangeArgs a;
    QStringList positional;
    QString value;
    for (int i = 0; i < args.size(); ++i) {
        const QString &w = args.at(i);
        if (w == QLatin1String("--with-instructions")) {
            a.withInstructions = true;
        } else if (w == option && i + 1 < args.size()) {
            value = args.at(++i);
        } else if (w.startsWith(QLatin1String("--"))) {
            ZeigeMeldung(usage, Style::Exclamation);
            return std::nullopt;
        } else {
            positional << w;
        }
    }
    if (positional.size() != 1 || value.isEmpty()) {
        ZeigeMeldung(usage, Style::Exclamation);
        return std::nullopt;
    }
    if (option == QLatin1String("--file")) {
        a.path = positional.first();
        a.file = value;
    } else {
        a.file = positional.first();
        a.path = value;
    }
    return a;
}

}

std::optional<ExchangeArgs> parseExportArgs(const QStringList &args)
{
    const QString usage =
        QStringLiteral("Aufruf: zol export components PFAD --file DATEI(.db|.xlsx) [--with-instructions]");
    std::optional<ExchangeArgs> a = parseArgs(args, QStringLiteral("--file"), usage);
    if (!a)
        return a;
    const QString suffix = QFileInfo(a->file).suffix().toLower();
    if (suffix != QLatin1String("db") && suffix != QLatin1String("xlsx")) {
        ZeigeMeldung(usage, Style::Exclamation);
        return std::nullopt;
    }
    if (const QString refusal = outputRefusal(a->file); !refusal.isEmpty()) {
        ZeigeMeldung(refusal, Style::Exclamation);
        return std::nullopt;
    }
    return a;
}

std::optional<ExchangeArgs> parseImportArgs(const QStringList &args)
{
    return parseArgs(args, QStringLiteral("--under"),
                     QStringLiteral("Aufruf: zol import components DATEI(.db|.mdb|.accdb|.xlsx|.ods) --under PFAD "
                                    "[--with-instructions]"));
}

QString nodeAtPath(const QSqlDatabase &db, const QString &path)
{
    const QStringList names = path.split(QLatin1Char('\\'), Qt::SkipEmptyParts);
    if (names.isEmpty())
        return {};
    QString key;
    if (names.first().compare(gStrWIRundgang, Qt::CaseInsensitive) == 0)
        key = RootProtok;
    else if (names.first().compare(gStrStandards, Qt::CaseInsensitive) == 0)
        key = RootKatalo;
    else
        return {};
    Statement child(db, QStringLiteral("SELECT FileIndex, Text FROM ProtokollKopf WHERE FileAbove = ?"));
    for (const QString &name : names.mid(1)) {
        QSqlQuery &q = child.run({key});
        QString found;
        while (q.next() && found.isEmpty())
            if (foldedName(q.value(1).toString()) == foldedName(name))
                found = q.value(0).toString();
        if (found.isEmpty())
            return {};
        key = found;
    }
    return key;
}

int exportComponentsCommand(Session &session, const QStringList &args)
{
    const std::optional<ExchangeArgs> a = parseExportArgs(args);
    if (!a)
        return 2;
    const QSqlDatabase db = session.db();
    const QString key = nodeAtPath(db, a->path);
    if (key.isEmpty() || ExplorerTree::isRootKey(key)) {
        ZeigeMeldung(QStringLiteral("Im Baum gibt es keinen Eintrag %1.").arg(a->path), Style::Exclamation);
        return 1;
    }
    QStringList keys{key};
    if (const std::optional<Node> n = loadNode(db, key); n && n->isInstallation()) {
        keys.clear();
        for (const Node &entry : LoadListView(db, key))
            keys << entry.FileIndex;
    }
    if (keys.isEmpty()) {
        ZeigeMeldung(QStringLiteral("Unter %1 gibt es nichts zu exportieren.").arg(a->path), Style::Exclamation);
        return 1;
    }
    const bool sheet = QFileInfo(a->file).suffix().compare(QLatin1String("xlsx"), Qt::CaseInsensitive) == 0;
    const ExportKind kind = sheet ? (a->withInstructions ? ExportKind::AuftraegeXlsx : ExportKind::ObjekteXlsx)
                                  : (a->withInstructions ? ExportKind::AuftraegeDb : ExportKind::ObjekteDb);
    if (QFileInfo::exists(a->file)) {
        ZeigeMeldung(QStringLiteral("Es muß eine noch nicht existierende Datei angegeben werden"), Style::Exclamation);
        return 1;
    }
    try {
        const ExportCount n = sheet ? writeExportSheet(db, keys, a->file, a->withInstructions, true)
                                    : writeExportTable(db, keys, a->file, a->withInstructions);
        ZeigeMeldung(exportSpec(kind).doneText, Style::Information);
        QTextStream(stdout) << QStringLiteral("%1 Einträge, %2 Auftragspositionen: %3")
                                   .arg(n.components)
                                   .arg(n.positions)
                                   .arg(a->file)
                            << Qt::endl;
    } catch (const Fault &f) {
        ZeigeMeldung(QStringLiteral("Fehler Nummer: %1 -  Beschreibung: %2").arg(f.number()).arg(f.description()),
                     Style::Critical);
        return 3;
    }
    return 0;
}

int importComponentsCommand(Session &session, const QStringList &args)
{
    const std::optional<ExchangeArgs> a = parseImportArgs(args);
    if (!a)
        return 2;
    const QSqlDatabase db = session.db();
    const QString key = nodeAtPath(db, a->path);
    if (key.isEmpty()) {
        ZeigeMeldung(QStringLiteral("Im Baum gibt es keinen Eintrag %1.").arg(a->path), Style::Exclamation);
        return 1;
    }
    if (const std::optional<Node> n = loadNode(db, key); n && !n->isInstallation()) {
        ZeigeMeldung(QStringLiteral("%1 ist keine Technische Einrichtung.").arg(a->path), Style::Exclamation);
        return 1;
    }
    const std::unique_ptr<TableSource> source = openImportFile(a->file, importSheetLayout(a->withInstructions));
    if (!source)
        return 1;
    const ImportResult r = importComponents(db, session.login(), *source, key, a->withInstructions);
    if (r.refused) {
        if (!r.detail.isEmpty())
            QTextStream(stderr) << r.detail << Qt::endl;
        return 1;
    }
    return 0;
}

}
