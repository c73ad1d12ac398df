#include "JobSheetCommand.h"
#include "JobSheets.h"
#include "zol/core/Messages.h"
#include "zol/print/PrinterF.h"
#include <QDir>
#include <QSaveFile>

namespace zol {

int printJobSheetsCommand(Session &session, const QStringList &args)
{
    const QString usage = QStringLiteral(
        "Aufruf: zol print jobsheets JAHR WOCHE --pdf DATEI [--gewerk T] [--kostenstelle K] [--lokalisierung L]");
    QStringList positional;
    QString pdf;
    JobSheetFilter filter;
    for (int i = 0; i < args.size(); ++i) {
        const QString &a = args.at(i);
        QString *target = nullptr;
        if (a == QLatin1String("--pdf"))
            target = &pdf;
        else if (a == QLatin1String("--gewerk"))
            target = &filter.gewerk;
        else if (a == QLatin1String("--kostenstelle"))
            target = &filter.kostenstelle;
        else if (a == QLatin1String("--lokalisierung"))
            target = &filter.lokalisierung;
        else if (a.startsWith(QLatin1String("--"))) {
            ZeigeMeldung(usage, Style::Exclamation);
            return 2;
        } else {
            positional << a;
            continue;
        }
        if (i + 1 >= args.size()) {
            ZeigeMeldung(usage, Style::Exclamation);
            return 2;
        }
        *target = args.at(++i);
    }
    if (positional.size() != 2 || pdf.isEmpty()) {
        ZeigeMeldung(usage, Style::Exclamation);
        return 2;
    }
    {
        // An unwritable file is told before any page is laid out.
        QSaveFile probe(pdf);
        if (!probe.open(QIODevice::WriteOnly)) {
            ZeigeMeldung(QStringLiteral("Die Datei %1 kann nicht geschrieben werden: %2")
                             .arg(QDir::toNativeSeparators(pdf), probe.errorString()),
                         Style::Critical);
            return 3;
        }
        probe.cancelWriting();
    }

    PdfPreviewPresenter presenter(pdf);
    PreviewPresenter *before = installedPreviewPresenter();
    installPreviewPresenter(&presenter);
    JobSheetResult r;
    try {
        r = AuftragsDruckAnweisungen(session, positional.at(0), positional.at(1), filter, true);
    } catch (...) {
        installPreviewPresenter(before);
        throw;
    }
    installPreviewPresenter(before);

    switch (r.status) {
    case JobSheetStatus::Done:
        return presenter.written() ? 0 : 3;
    case JobSheetStatus::NoOrders:
        if (r.keineWartungListe)
            return presenter.written() ? 0 : 3;
        return 1;
    case JobSheetStatus::Refused:
    case JobSheetStatus::Cancelled:
        return 1;
    case JobSheetStatus::Fault:
        return 3;
    }
    return 3;
}

}
