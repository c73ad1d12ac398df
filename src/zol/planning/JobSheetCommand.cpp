#include "JobSheetCommand.h"
#include "JobSheets.h"
#include "zol/core/Messages.h"
#include "zol/core/OutputFile.h"
#include "zol/print/PdfReport.h"

namespace zol {

std::optional<JobSheetArgs> parseJobSheetsArgs(const QStringList &args)
{
    const QString usage = QStringLiteral(
        "Aufruf: zol print jobsheets JAHR WOCHE --pdf DATEI [--gewerk T] [--kostenstelle K] [--lokalisierung L]");
    QStringList positional;
    JobSheetArgs p;
    for (int i = 0; i < args.size(); ++i) {
        const QString &a = args.at(i);
        QString *target = nullptr;
        if (a == QLatin1String("--pdf"))
            target = &p.pdf;
        else if (a == QLatin1String("--gewerk"))
            target = &p.filter.gewerk;
        else if (a == QLatin1String("--kostenstelle"))
            target = &p.filter.kostenstelle;
        else if (a == QLatin1String("--lokalisierung"))
            target = &p.filter.lokalisierung;
        else if (a.startsWith(QLatin1String("--"))) {
            ZeigeMeldung(usage, Style::Exclamation);
            return std::nullopt;
        } else {
            positional << a;
            continue;
        }
        if (i + 1 >= args.size()) {
            ZeigeMeldung(usage, Style::Exclamation);
            return std::nullopt;
        }
        *target = args.at(++i);
    }
    if (positional.size() != 2 || p.pdf.isEmpty()) {
        ZeigeMeldung(usage, Style::Exclamation);
        return std::nullopt;
    }
    // A data file or an open file is never the output.
    if (const QString refusal = outputRefusal(p.pdf); !refusal.isEmpty()) {
        ZeigeMeldung(refusal, Style::Exclamation);
        return std::nullopt;
    }
    p.jahr = positional.at(0);
    p.woche = positional.at(1);
    return p;
}

int printJobSheetsCommand(Session &session, const QStringList &args)
{
    const std::optional<JobSheetArgs> call = parseJobSheetsArgs(args);
    if (!call)
        return 2;
    // The session may hold files open that the check before it could not see.
    return reportIntoPdf(
        call->pdf, [&] { return AuftragsDruckAnweisungen(session, call->jahr, call->woche, call->filter, true); },
        [](const JobSheetResult &r, bool written) {
            switch (r.status) {
            case JobSheetStatus::Done:
                return written ? 0 : 3;
            case JobSheetStatus::NoOrders:
                if (r.keineWartungListe)
                    return written ? 0 : 3;
                return 1;
            case JobSheetStatus::Refused:
            case JobSheetStatus::Cancelled:
                return 1;
            case JobSheetStatus::Fault:
                return 3;
            }
            return 3;
        });
}

}
