#pragma once
#include "zol/core/Session.h"
#include "zol/statistics/EffortDistribution.h"
#include <QWidget>
#include <functional>
#include <memory>

namespace Ui { class frmAufwandsverteilung; }
class QChartView;

// How the planned working time of a trade spreads over the weeks of a year:
// a bar chart in the window, the preview sheet, and the workbook on request.
class frmAufwandsverteilung : public QWidget {
    Q_OBJECT
public:
    explicit frmAufwandsverteilung(zol::Session &session, QWidget *parent = nullptr);
    ~frmAufwandsverteilung() override;

    void zeig();
    void Anzeigen();

    // Picks a trade from the catalog of trades; empty keeps the field.
    using KatalogPicker = std::function<QString(const QString &table)>;
    void setKatalogPicker(KatalogPicker picker);
    // The week values the chart shows (hours), 52 of them after a run.
    QList<double> chartHours() const;

private:
    void showChart(const QString &gewerk, const zol::Aufwandsverteilung &v);
    void exportieren(const zol::Aufwandsverteilung &v);

    std::unique_ptr<Ui::frmAufwandsverteilung> ui;
    zol::Session &m_session;
    KatalogPicker m_picker;
    QChartView *m_chart = nullptr;
};
