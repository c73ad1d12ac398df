#pragma once
#include "frmProtokoll.h"
#include "zol/core/Session.h"
#include <QMainWindow>

class QMdiArea;
class frmProtokollPosition;

// The frame of the open protocols: several frmProtokoll side by side. It
// empties the row buffer when it loads, so no copy outlives a run.
class frmMDIProtokolle : public QMainWindow {
    Q_OBJECT
public:
    explicit frmMDIProtokolle(zol::Session &session, QWidget *parent = nullptr);
    ~frmMDIProtokolle() override;

    // Opens the protocol of the component (its FileIndex, with or without the
    // list key's quotes), or brings its open window to the front. text is the
    // entry's text for the caption; empty takes the component's Text.
    frmProtokoll *zeig(const QString &fileIndex, const QString &text = {});
    // The catalogs for the column buttons and the position dialog.
    void setCatalogPicker(CatalogPicker picker);

    QList<frmProtokoll *> protocols() const;
    QMdiArea *mdiArea() const { return m_area; }
    frmProtokollPosition *positionDialog() const { return m_position; }
    // 0 cascade, 1 side by side, 2 one under another.
    void arrange(int mode);

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    zol::Session &m_session;
    QMdiArea *m_area;
    frmProtokollPosition *m_position;
    CatalogPicker m_picker;
    int m_devider = 0;
};
