#include "frmBildanzeige.h"
#include "ui_frmBildanzeige.h"
#include "gui/core/WindowState.h"
#include "zol/structure/Pictures.h"
#include <QCloseEvent>
#include <QImageReader>
#include <QPixmap>
#include <QPointer>
#include <array>

namespace {
std::array<QPointer<frmBildanzeige>, zol::BildSlots + 1> &offen()
{
    static std::array<QPointer<frmBildanzeige>, zol::BildSlots + 1> windows;
    return windows;
}
}

frmBildanzeige::frmBildanzeige(zol::Session &session, QWidget *parent)
    : QWidget(parent, Qt::Window), ui(std::make_unique<Ui::frmBildanzeige>()), m_session(session)
{
    ui->setupUi(this);
    setAttribute(Qt::WA_DeleteOnClose);
}

frmBildanzeige::~frmBildanzeige() = default;

frmBildanzeige *frmBildanzeige::fensterVon(int slot)
{
    return slot >= 1 && slot <= zol::BildSlots ? offen()[slot].data() : nullptr;
}

frmBildanzeige *frmBildanzeige::oeffne(zol::Session &session, int slot, QWidget *parent)
{
    if (frmBildanzeige *w = fensterVon(slot)) {
        w->showNormal();
        w->raise();
        w->activateWindow();
        return w;
    }
    if (zol::BildSuchen(session.database().dataDir(), slot).isEmpty())
        return nullptr;
    auto *w = new frmBildanzeige(session, parent);
    if (!w->zeig(QStringLiteral("Bild %1").arg(slot), slot)) {
        delete w;
        return nullptr;
    }
    return w;
}

bool frmBildanzeige::zeig(const QString &title, int slot)
{
    const QString file = zol::bildDatei(m_session.database().dataDir(), slot);
    QImageReader reader(file);
    reader.setDecideFormatFromContent(true);
    const QImage image = reader.read();
    if (file.isEmpty() || image.isNull())
        return false;
    m_slot = slot;
    offen()[slot] = this;
    setWindowTitle(title);
    ui->imgBildanzeige->setPixmap(QPixmap::fromImage(image));
    const int state = restoreWindowState(this, zol::bildSection(m_session.login().UserName, slot),
                                         zol::bildFensterVorgabe());
    if (state == 2)
        showMaximized();
    else
        show();
    raise();
    return true;
}

void frmBildanzeige::closeEvent(QCloseEvent *event)
{
    if (m_slot > 0)
        saveWindowState(this, zol::bildSection(m_session.login().UserName, m_slot));
    QWidget::closeEvent(event);
}
