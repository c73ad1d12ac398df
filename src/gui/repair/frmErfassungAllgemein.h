#pragma once
#include "zol/core/Session.h"
#include "zol/repair/RepairOrders.h"
#include <QDialog>
#include <functional>
#include <memory>
#include <optional>

class ErfassungFelder;
class QTimer;
namespace Ui {
class frmErfassungAllgemein;
}

// "Allgemeine Erfassung (IS-Aufträge)": repair orders one at a time. Given a
// component it makes a new order at once and stays in that mode; without one
// it browses the orders by name, number and running number.
class frmErfassungAllgemein : public QDialog {
    Q_OBJECT

public:
    using KatalogPicker = std::function<QString(const QString &table)>;
    explicit frmErfassungAllgemein(zol::Session &session, QWidget *parent = nullptr);
    ~frmErfassungAllgemein() override;

    void setKatalogPicker(KatalogPicker picker);
    // Opens modally. With a FileIndex a new order of that component is made
    // first (vorgaben fill its boxes); a refused component opens nothing.
    void zeig(const QString &fileIndex = {}, const zol::ISAuftragMaske *vorgaben = nullptr);

    void SetzeFilter();
    void RefreshCombos();
    void ZeigeDatensatz();
    bool SpeichereDatensatz();
    // One look at the three key combos; the timer calls it four times a second.
    void Timer1_Timer();

protected:
    void reject() override;

private:
    void bewege(const std::optional<zol::ISAuftragSchluessel> &ziel);
    // Sets a key combo's list and its text.
    static void fuelle(class QComboBox *box, const QStringList &liste, const QString &text);
    void status(int mode);
    // Geprueft: a check before the save refused, the window stays.
    enum class Gespeichert { Ja, Nein, Geprueft };
    Gespeichert speichern();
    void abbrechen();
    void loeschen();
    void neuerAuftrag(const zol::ISAuftragSchluessel &key);

    std::unique_ptr<Ui::frmErfassungAllgemein> ui;
    zol::Session &m_session;
    ErfassungFelder *m_felder;
    QTimer *m_timer;
    std::unique_ptr<zol::ErfassungsAuswahl> m_auswahl;
    zol::ISAuftragSchluessel m_key{QStringLiteral("0"), QStringLiteral("0"), QStringLiteral("0")};
    bool m_hatZeile = false;
    int m_status = 0;
    bool m_neu = false;
    bool m_gespeichert = false;   // the order on show was saved in this window
};
