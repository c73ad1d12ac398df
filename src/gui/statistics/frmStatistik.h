#pragma once
#include "zol/core/Session.h"
#include <QWidget>
#include <functional>
#include <memory>

namespace Ui { class frmStatistik; }
class QAction;

// Planned against reported for the entries selected in the main window: the
// six measures per component, twelve ratios and the sum row.
class frmStatistik : public QWidget {
    Q_OBJECT
public:
    // entries: what the main window has selected at the moment of a run.
    using Entries = std::function<QStringList()>;
    frmStatistik(zol::Session &session, Entries entries, QWidget *parent = nullptr);
    ~frmStatistik() override;

    void zeig();
    void Auswerten();
    void Exportieren();
    void ExportierenExcel();

private:
    void toggleView(QAction *action);
    std::unique_ptr<Ui::frmStatistik> ui;
    zol::Session &m_session;
    Entries m_entries;
    QList<QAction *> m_views;
    int m_sortColumn = -1;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
};
