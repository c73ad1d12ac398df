#pragma once
#include <QDialog>
#include <memory>

namespace Ui { class frmAbout; }

// Product and version, opened modally from the help menu.
class frmAbout : public QDialog {
    Q_OBJECT
public:
    explicit frmAbout(QWidget *parent = nullptr);
    ~frmAbout() override;

private:
    std::unique_ptr<Ui::frmAbout> ui;
};
