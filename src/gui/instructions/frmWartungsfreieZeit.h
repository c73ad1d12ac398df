#pragma once
#include "zol/core/Session.h"
#include <QWidget>
#include <memory>

namespace Ui {
class frmWartungsfreieZeit;
}
class MaintenanceFreeModel;

// The week ranges of the year without maintenance, edited in one grid. Only
// Administrator and Master may change them.
class frmWartungsfreieZeit : public QWidget {
    Q_OBJECT
public:
    explicit frmWartungsfreieZeit(zol::Session &session, QWidget *parent = nullptr);
    ~frmWartungsfreieZeit() override;

    // Applies the rights, reads the ranges and shows the window.
    void zeig();
    MaintenanceFreeModel *model() const { return m_model.get(); }

protected:
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    std::unique_ptr<Ui::frmWartungsfreieZeit> ui;
    zol::Session &m_session;
    std::unique_ptr<MaintenanceFreeModel> m_model;
};
