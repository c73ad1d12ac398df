#pragma once
#include "zol/core/Session.h"
#include "zol/repair/RepairOverview.h"
#include <QWidget>
#include <functional>
#include <memory>

class ISAuftraegeModel;
class QMenu;
namespace Ui {
class frmISAuftraege;
}

// frmISAufträge (its objectName), "IS - Aufträge": the repair orders in a
// grid under filters; cells edited in place, a double click opens one order
// by itself, and the present selection goes to the listing print.
class frmISAuftraege : public QWidget {
    Q_OBJECT

public:
    using KatalogPicker = std::function<QString(const QString &table)>;
    explicit frmISAuftraege(zol::Session &session, QWidget *parent = nullptr);
    ~frmISAuftraege() override;

    void setKatalogPicker(KatalogPicker picker) { m_picker = std::move(picker); }
    // Opens the window; geschuetzt: the protection test of the main window
    // on the selected entry said no.
    void zeig(bool geschuetzt);
    // Builds the query of the option that is on and shows it.
    void Aktualisieren();
    void Loeschen();
    void Drucken(bool vorschau);
    ISAuftraegeModel *model() const { return m_model; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    zol::ISAuftraegeFilter filter() const;
    void spalteGeklickt(int section);
    void doppelklick(const QModelIndex &index);

    std::unique_ptr<Ui::frmISAuftraege> ui;
    zol::Session &m_session;
    ISAuftraegeModel *m_model;
    QMenu *m_popup;
    KatalogPicker m_picker;
    zol::ISAuftraegeAbfrage m_abfrage;
    zol::ISSortierung m_sortierung;
    bool m_nurLesen = false;
};
