#include "frmRohdatenexport.h"
#include "StatisticsGui.h"
#include "ui_frmRohdatenexport.h"
#include "zol/core/Messages.h"
#include "zol/statistics/RawData.h"
#include <QApplication>
#include <QDate>

using namespace zol;
using namespace statgui;

frmRohdatenexport::frmRohdatenexport(Session &session, QWidget *parent)
    : QWidget(parent), ui(std::make_unique<Ui::frmRohdatenexport>()), m_session(session)
{
    ui->setupUi(this);
    for (QLineEdit *e : {ui->txtJahr, ui->txtWocheVon, ui->txtWocheBis}) {
        digitsOnly(e);
        connect(e, &QLineEdit::returnPressed, this, &frmRohdatenexport::Exportieren);
    }
    connect(ui->cmdExportieren, &QPushButton::clicked, this, &frmRohdatenexport::Exportieren);
    connect(ui->cmdAbbruch, &QPushButton::clicked, this, &QWidget::close);
}

frmRohdatenexport::~frmRohdatenexport() = default;

void frmRohdatenexport::zeig()
{
    ui->txtJahr->setText(QString::number(QDate::currentDate().year() - 1));
    ui->txtWocheVon->setText(QStringLiteral("01"));
    ui->txtWocheBis->setText(QStringLiteral("52"));
    ui->ProgressBar->setValue(0);
    show();
    raise();
    activateWindow();
    ui->txtJahr->setFocus();
}

void frmRohdatenexport::Exportieren()
{
    if (!checkPeriod(ui->txtJahr, ui->txtWocheVon, ui->txtWocheBis, MsgNurWochenSind, MsgBisNichtKleiner))
        return;
    const QString jahr = ui->txtJahr->text(), von = ui->txtWocheVon->text(), bis = ui->txtWocheBis->text();
    const qint64 n = rohdatenAnzahl(m_session.db(), jahr, von, bis);
    if (n < 0) {
        ZeigeMeldung(MsgKeineVerbuchten, Style::Exclamation);
        return;
    }
    if (n < 1) {
        ZeigeMeldung(MsgKeineDatenZeitraum, Style::Exclamation);
        return;
    }
    const QString path = chooseNewFile(this, tr("Excel Tabelle (*.xlsx)"), QStringLiteral("ZOL_Rohdaten.xlsx"));
    if (path.isEmpty()) {
        ZeigeMeldung(MsgKeinExport, Style::Exclamation);
        return;
    }
    const bool kopf = ZeigeMeldung(MsgKopfzeilen, Style::YesNo) == Answer::Yes;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    RohdatenErgebnis e;
    try {
        e = rohdatenSchreiben(m_session.db(), jahr, von, bis, path, kopf, pump(ui->ProgressBar));
    } catch (const std::exception &ex) {
        QApplication::restoreOverrideCursor();
        workbookFault(path, ex);
        return;
    }
    QApplication::restoreOverrideCursor();
    const QString blaetter = rohdatenBlaetterText(e);
    if (!blaetter.isEmpty())
        ZeigeMeldung(blaetter, Style::Information);
    ZeigeMeldung(MsgExportiert, Style::Information);
    offerToOpen(path);
    close();
}
