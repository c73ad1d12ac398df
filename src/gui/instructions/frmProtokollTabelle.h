#pragma once
#include <QDialog>
#include <QStringList>
#include <memory>

namespace Ui {
class frmProtokollTabelle;
}

// "Import-Tabelle aussuchen": the tables of an exchange file, one of which
// the lines of a component are imported from.
class frmProtokollTabelle : public QDialog {
    Q_OBJECT
public:
    explicit frmProtokollTabelle(QWidget *parent = nullptr);
    ~frmProtokollTabelle() override;
    // Shows the tables, the first one current; the chosen table, or empty on
    // Cancel. Tag says "OK" or "Cancel".
    QString zeig(const QStringList &tables);
    QString Tag;

private:
    std::unique_ptr<Ui::frmProtokollTabelle> ui;
};
