#pragma once
#include <QDialog>
#include <memory>

namespace Ui { class frmTabellenName; }

// Asks the name of the table a database export writes, with a proposal.
// Tag is "OK" or "Cancel" after it closes.
class frmTabellenName : public QDialog {
    Q_OBJECT
public:
    explicit frmTabellenName(QWidget *parent = nullptr);
    ~frmTabellenName() override;

    // Shows the dialog modally with the proposal selected; the name typed,
    // or empty when cancelled.
    QString zeig(const QString &vorschlag);
    QString Tag;

private:
    std::unique_ptr<Ui::frmTabellenName> ui;
};
