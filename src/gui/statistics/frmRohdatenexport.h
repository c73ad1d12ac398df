#pragma once
#include "zol/core/Session.h"
#include <QWidget>
#include <memory>

namespace Ui { class frmRohdatenexport; }

// The posted feedback of a span of weeks of one year, row by row, into a workbook.
class frmRohdatenexport : public QWidget {
    Q_OBJECT
public:
    explicit frmRohdatenexport(zol::Session &session, QWidget *parent = nullptr);
    ~frmRohdatenexport() override;

    void zeig();
    void Exportieren();

private:
    std::unique_ptr<Ui::frmRohdatenexport> ui;
    zol::Session &m_session;
};
