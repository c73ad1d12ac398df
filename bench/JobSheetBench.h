#pragma once
#include <QString>

namespace zol {
class Session;
}

namespace zolbench {

// Job sheets of a planned week for one trade, as the preview gets them:
// prints jobsheets_first_page_s (from the button until page 1 stands drawn in
// the preview), the pages and the PDF speed of the whole job.
// Needs a QGuiApplication.
bool jobSheetBench(zol::Session &session, const QString &jahr, const QString &woche, const QString &gewerk);

}
