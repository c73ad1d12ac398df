#pragma once
#include "zol/core/Session.h"
#include <QWidget>
#include <functional>
#include <memory>

class QComboBox;

namespace Ui {
class frmAuftragsplanung;
}

// Planning of orders: year and week, the planning run with its progress and
// status line. The print frame of the job sheets sits beside the planning
// frame in layoutFrames.
class frmAuftragsplanung : public QWidget {
    Q_OBJECT

public:
    explicit frmAuftragsplanung(zol::Session &session, QWidget *parent = nullptr);
    ~frmAuftragsplanung() override;

    // Shows the window with the current year and the planned weeks of that year.
    void zeig();
    // Fills the week list with the planned weeks of the year in txtJahr.
    void LadeWochen();
    // The planning run for the year and week in the fields.
    void Planen();
    // The job sheets of the week with the filters of the print frame: on paper
    // (after a question) or in the preview.
    void Drucken(bool vorschau);
    // Empties the three filter fields and fills their lists with the values of the week.
    void AuftragsFilterLaden();

    // Picks a text from a catalog ("Gewerke", "Kostenstellen", "Lokalisierungen");
    // an empty result leaves the field as it is. Without a picker the catalog
    // buttons are disabled.
    using KatalogPicker = std::function<QString(const QString &table)>;
    void setKatalogPicker(KatalogPicker picker);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void applyKatalogButtons();
    void pickInto(QComboBox *combo, const QString &table);
    bool isWerker() const;

    std::unique_ptr<Ui::frmAuftragsplanung> ui;
    zol::Session &m_session;
    KatalogPicker m_picker;
};
