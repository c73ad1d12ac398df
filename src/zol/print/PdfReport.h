#pragma once
#include "PrinterF.h"
#include "zol/core/OutputFile.h"

namespace zol {

// Runs a report of a batch command whose preview goes into a PDF file instead
// of a window. The file is checked first (exit status 2 when refused, 1 when
// the user keeps an existing one); the presenter in place before comes back
// also when the report throws. statusOf(result, written) gives the status of
// a run that took place.
template<typename Report, typename StatusOf>
int reportIntoPdf(const QString &pdf, Report report, StatusOf statusOf)
{
    const OutputChoice choice = chooseOutput(pdf);
    if (choice == OutputChoice::Refused)
        return 2;
    if (choice == OutputChoice::Declined)
        return 1;
    PdfPreviewPresenter presenter(pdf, choice == OutputChoice::Replace);
    PreviewPresenter *before = installedPreviewPresenter();
    installPreviewPresenter(&presenter);
    const auto result = [&] {
        try {
            return report();
        } catch (...) {
            installPreviewPresenter(before);
            throw;
        }
    }();
    installPreviewPresenter(before);
    return statusOf(result, presenter.written());
}

}
