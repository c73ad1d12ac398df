#pragma once
#include "zol/core/Session.h"
#include "zol/repair/RepairOrders.h"
#include <QDialog>
#include <functional>
#include <memory>

class ErfassungFelder;
namespace Ui {
class frmErfassungAllgemeinEinzel;
}

// "IS-Auftrag": one existing repair order by itself, opened from the overview.
class frmErfassungAllgemeinEinzel : public QDialog {
    Q_OBJECT

public:
    using KatalogPicker = std::function<QString(const QString &table)>;
    explicit frmErfassungAllgemeinEinzel(zol::Session &session, QWidget *parent = nullptr);
    ~frmErfassungAllgemeinEinzel() override;

    void setKatalogPicker(KatalogPicker picker);
    // Shows the order of that key modally. Afterwards geaendert() tells
    // whether a change was saved (or the order deleted), werte() its boxes.
    void zeig(const zol::ISAuftragSchluessel &key);
    bool geaendert() const { return m_geaendert; }
    bool geloescht() const { return m_geloescht; }
    const zol::ISAuftragMaske &werte() const { return m_werte; }

private:
    void ok();
    void loeschen();

    std::unique_ptr<Ui::frmErfassungAllgemeinEinzel> ui;
    zol::Session &m_session;
    ErfassungFelder *m_felder;
    zol::ISAuftragSchluessel m_key;
    zol::ISAuftragMaske m_werte;
    bool m_geaendert = false;
    bool m_geloescht = false;
};
