#pragma once
#include "zol/core/Session.h"
#include "zol/repair/RepairOrders.h"
#include <QWidget>
#include <functional>
#include <memory>

namespace Ui {
class ErfassungFelder;
}

// The boxes of one repair order, shared by the general and the single
// capture: the keyboard filters, the rules when a box is left, the priority
// and the done tick, the catalog buttons, and the lock of a done order.
class ErfassungFelder : public QWidget {
    Q_OBJECT

public:
    using KatalogPicker = std::function<QString(const QString &table)>;
    ErfassungFelder(zol::Session &session, QWidget *parent = nullptr);
    ~ErfassungFelder() override;

    void setKatalogPicker(KatalogPicker picker) { m_picker = std::move(picker); }
    // ZeigeDatensatz: fills every box from the order (the key stays outside).
    void zeige(const zol::ISAuftragMaske &m);
    // The boxes as texts, with the key of the order on show.
    zol::ISAuftragMaske maske() const;
    // A check changed boxes (empty numbers became 0).
    void uebernimmZahlen(const zol::ISAuftragMaske &m);
    // Done: the done date, the tick, the due date and the priority inactive.
    void sperre(bool erledigt);
    void fokus(zol::ISFeld feld);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void katalog(const QString &table, class QComboBox *box);

    std::unique_ptr<Ui::ErfassungFelder> ui;
    zol::Session &m_session;
    KatalogPicker m_picker;
    zol::ISAuftragSchluessel m_key;
    QString m_druck;
    bool m_werker = false;
};
