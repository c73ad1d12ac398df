#include "frmAufwandsverteilung.h"
#include "StatisticsGui.h"
#include "ui_frmAufwandsverteilung.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/core/Sql.h"
#include "zol/print/PrinterF.h"
#include "zol/statistics/StatisticsExport.h"
#include <QApplication>
#include <QCategoryAxis>
#include <QBarSeries>
#include <QBarSet>
#include <QChart>
#include <QChartView>
#include <QDate>
#include <QSqlQuery>
#include <QVBoxLayout>
#include <QValueAxis>

using namespace zol;
using namespace statgui;

frmAufwandsverteilung::frmAufwandsverteilung(Session &session, QWidget *parent)
    : QWidget(parent), ui(std::make_unique<Ui::frmAufwandsverteilung>()), m_session(session)
{
    ui->setupUi(this);
    m_chart = new QChartView(ui->chartFrame);
    m_chart->setObjectName(QStringLiteral("chartAufwand"));
    m_chart->setRenderHint(QPainter::Antialiasing);
    m_chart->setMinimumHeight(320);
    auto *layout = new QVBoxLayout(ui->chartFrame);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_chart);
    ui->mainLayout->setRowStretch(2, 1);
    digitsOnly(ui->txtJahr);
    ui->cmdGewerk->setEnabled(false);
    connect(ui->cmdAnzeigen, &QPushButton::clicked, this, &frmAufwandsverteilung::Anzeigen);
    connect(ui->cmdAbbruch, &QPushButton::clicked, this, &QWidget::close);
    connect(ui->txtJahr, &QLineEdit::returnPressed, this, &frmAufwandsverteilung::Anzeigen);
    connect(ui->cmdGewerk, &QPushButton::clicked, this, [this] {
        const QString t = m_picker ? m_picker(QStringLiteral("Gewerke")) : QString();
        if (!t.isEmpty())
            ui->dbcAusführender->setCurrentText(t);
    });
    ui->cmdAnzeigen->setDefault(true);
}

frmAufwandsverteilung::~frmAufwandsverteilung() = default;

void frmAufwandsverteilung::setKatalogPicker(KatalogPicker picker)
{
    m_picker = std::move(picker);
    ui->cmdGewerk->setEnabled(bool(m_picker));
}

void frmAufwandsverteilung::zeig()
{
    ui->dbcAusführender->clear();
    QSqlQuery q = exec(m_session.db(), QStringLiteral("SELECT Ausfuehrender FROM ProtokollPositionen"
                                                      " GROUP BY Ausfuehrender ORDER BY Ausfuehrender"));
    while (q.next())
        ui->dbcAusführender->addItem(q.value(0).toString());
    ui->dbcAusführender->setCurrentText(QString());
    ui->txtJahr->setText(QString::number(QDate::currentDate().year()));
    show();
    raise();
    activateWindow();
    ui->dbcAusführender->setFocus();
}

QList<double> frmAufwandsverteilung::chartHours() const
{
    QList<double> out;
    if (!m_chart->chart())
        return out;
    for (QAbstractSeries *s : m_chart->chart()->series())
        if (auto *bars = qobject_cast<QBarSeries *>(s))
            for (QBarSet *set : bars->barSets())
                for (int i = 0; i < set->count(); ++i)
                    out << set->at(i);
    return out;
}

void frmAufwandsverteilung::showChart(const QString &gewerk, const Aufwandsverteilung &v)
{
    auto *set = new QBarSet(tr("Stunden"));
    QStringList weeks;
    double max = 0;
    for (int w = 0; w < 52; ++w) {
        *set << v.WochenZeit[w] / 60;
        max = std::max(max, v.WochenZeit[w] / 60);
        weeks << QStringLiteral("%1").arg(w + 1, 2, 10, QLatin1Char('0'));
    }
    auto *series = new QBarSeries;
    series->append(set);
    series->setBarWidth(0.8);
    auto *chart = new QChart;
    chart->addSeries(series);
    chart->setTitle(tr("Aufwandsverteilung %1 für Gewerk %2: %3 h")
                        .arg(ui->txtJahr->text(), gewerk, mask000(v.summe / 60)));
    chart->legend()->hide();
    // Bars stand at 0..51; every fourth week is named, so that the names stay readable.
    auto *x = new QCategoryAxis;
    x->setRange(-0.5, 51.5);
    x->setLabelsPosition(QCategoryAxis::AxisLabelsPositionOnValue);
    for (int w = 1; w <= 52; w += 4)
        x->append(weeks.at(w - 1), w - 1);
    x->append(weeks.at(51), 51);
    x->setTitleText(tr("Woche"));
    auto *y = new QValueAxis;
    y->setRange(0, max > 0 ? max * 1.05 : 1);
    y->setTitleText(tr("Stunden"));
    y->setLabelFormat(QStringLiteral("%.1f"));
    chart->addAxis(x, Qt::AlignBottom);
    chart->addAxis(y, Qt::AlignLeft);
    series->attachAxis(x);
    series->attachAxis(y);
    QChart *old = m_chart->chart();
    m_chart->setChart(chart);
    delete old;
}

void frmAufwandsverteilung::Anzeigen()
{
    const QString gewerk = ui->dbcAusführender->currentText().trimmed();
    QString jahr = ui->txtJahr->text();
    QApplication::setOverrideCursor(Qt::WaitCursor);
    Aufwandsverteilung v;
    try {
        v = aufwandsverteilung(m_session.db(), gewerk, jahr);
    } catch (const Fault &f) {
        QApplication::restoreOverrideCursor();
        ZeigeMeldung(QStringLiteral("Es ist ein Fehler aufgetreten.Fehler Nummer: %1  Beschreibung: %2")
                         .arg(f.number())
                         .arg(f.description()),
                     Style::Critical);
        return;
    }
    QApplication::restoreOverrideCursor();
    ui->txtJahr->setText(jahr);
    if (!v.ok()) {
        ZeigeMeldung(v.message, Style::Exclamation);
        if (v.field == Aufwandsverteilung::Field::Jahr)
            focusField(ui->txtJahr);
        else if (v.field == Aufwandsverteilung::Field::Gewerk)
            ui->dbcAusführender->setFocus();
        return;
    }
    showChart(gewerk, v);
    PrinterF &p = PrinterF::instance();
    p.Vorschau = true;
    p.setOptionState(&m_session.options());
    try {
        Print_Aufwandsverteilung(p, gewerk, v);
    } catch (const Fault &f) {
        ZeigeMeldung(QStringLiteral("Es ist ein Fehler aufgetreten.Fehler Nummer: %1  Beschreibung: %2")
                         .arg(f.number())
                         .arg(f.description()),
                     Style::Critical);
    }
    if (ZeigeMeldung(QStringLiteral("Daten im Excel-Format exportieren?"), Style::YesNo) == Answer::Yes)
        exportieren(v);
}

void frmAufwandsverteilung::exportieren(const Aufwandsverteilung &v)
{
    const QString path = chooseNewFile(this, tr("Excel Tabelle (*.xlsx)"), QStringLiteral("ZOL_Aufwandsverteilung.xlsx"));
    if (path.isEmpty()) {
        ZeigeMeldung(MsgKeinExport, Style::Exclamation);
        return;
    }
    const bool kopf = ZeigeMeldung(MsgKopfzeilen, Style::YesNo) == Answer::Yes;
    try {
        exportArbeitsmappe(path, QStringLiteral("Aufwandsverteilung je Gewerk"), aufwandsverteilungKopf(), kopf,
                           aufwandsverteilungZeilen(v));
    } catch (const std::exception &e) {
        workbookFault(path, e);
        return;
    }
    ZeigeMeldung(MsgExportiert, Style::Information);
    offerToOpen(path);
}
