#pragma once
#include "zol/core/Session.h"
#include "zol/feedback/Feedback.h"
#include "zol/feedback/FeedbackViews.h"
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>

class FeedbackTreeModel;
class OrderListModel;
class QStandardItemModel;

namespace Ui {
class frmRueckmeldung;
}

// frmRückmeldung (its objectName; moc takes class names in ASCII only).
// Feedback on orders: the views and their tree on the left, the orders of the
// selected node in the middle, the record of the current order on the right;
// posting, deleting and the findings print of a week below.
class frmRueckmeldung : public QWidget {
    Q_OBJECT

public:
    explicit frmRueckmeldung(zol::Session &session, QWidget *parent = nullptr);
    ~frmRueckmeldung() override;

    // Shows the window with view 0 and the orders of its first node.
    void zeig();
    // Builds the tree of the view in cmbView and selects its first node.
    void AnsichtAufbauen();
    // Fills the visible list with the orders of the selected node.
    void AufträgeLaden();
    // The save of cmdRückmeldung; back in the list when it is done.
    void Rückmelden();
    void Verbuchen();
    void WocheLöschen();
    void BefundeDrucken(bool vorschau);
    // cmdISAuftrag: the general capture as a new order of the row's component.
    void ISAuftragGenerieren();
    // The catalog lookups of the capture it opens.
    using KatalogPicker = std::function<QString(const QString &table)>;
    void setKatalogPicker(KatalogPicker picker) { m_picker = std::move(picker); }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void zeigeZeile(int row);
    void zeigeAnzeige(const zol::RueckmeldungAnzeige &a);
    zol::RueckmeldungEingabe eingabe() const;
    void feldGeaendert();
    void zeileGewaehlt(const QModelIndex &current, const QModelIndex &previous);
    void schnellStorno(const QModelIndex &index);
    void uebersichtLaden();
    zol::AuftragsAuswahl auswahl() const;
    std::optional<zol::AuftragSchluessel> schluessel() const;

    std::unique_ptr<Ui::frmRueckmeldung> ui;
    zol::Session &m_session;
    zol::RueckmeldungRechte m_rechte;
    FeedbackTreeModel *m_tree;
    OrderListModel *m_list;
    QStandardItemModel *m_summary;
    zol::RueckmeldungAnzeige m_anzeige;
    int m_row = -1;            // the list row on display
    bool m_changed = false;    // a field was changed since the row was shown
    bool m_quiet = false;      // suppresses the row event during bulk work
    KatalogPicker m_picker;
};
