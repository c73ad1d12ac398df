#include "frmMDIProtokolle.h"
#include "RuledTableView.h"
#include "frmProtokollPosition.h"
#include "gui/core/ProgramIcon.h"
#include "gui/core/WindowState.h"
#include "zol/core/Settings.h"
#include "zol/instructions/RowBuffer.h"
#include "zol/structure/Node.h"
#include <QCloseEvent>
#include <QHeaderView>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScrollBar>

namespace {
constexpr int TwipsPerPixel = 15;
}

frmMDIProtokolle::frmMDIProtokolle(zol::Session &session, QWidget *parent)
    : QMainWindow(parent), m_session(session), m_area(new QMdiArea(this)),
      m_position(new frmProtokollPosition(session, this))
{
    setObjectName(QStringLiteral("frmMDIProtokolle"));
    setWindowTitle(tr("Komponenten Anweisungsprotokolle"));
    m_area->setObjectName(QStringLiteral("mdiArea"));
    setCentralWidget(m_area);
    const QString section = m_session.section(QStringLiteral("\\env\\MDIProtokolle"));
    const int state = restoreWindowState(this, section, {QRect(0, 0, 14000 / TwipsPerPixel, 12000 / TwipsPerPixel), 3});
    if (state == 2)
        setWindowState(Qt::WindowMaximized);
    // The last arrangement chosen in the Fenster menu; new windows follow it.
    m_devider = zol::GetSettingInt(section, QStringLiteral("Devider"), 0);
    zol::clearRowBuffer(m_session.db());
}

frmMDIProtokolle::~frmMDIProtokolle() = default;

void frmMDIProtokolle::setCatalogPicker(CatalogPicker picker)
{
    m_picker = picker;
    m_position->setCatalogPicker(picker);
    for (frmProtokoll *p : protocols())
        p->setCatalogPicker(picker);
}

QList<frmProtokoll *> frmMDIProtokolle::protocols() const
{
    QList<frmProtokoll *> list;
    for (QMdiSubWindow *sub : m_area->subWindowList())
        if (auto *p = qobject_cast<frmProtokoll *>(sub->widget()))
            list << p;
    return list;
}

frmProtokoll *frmMDIProtokolle::zeig(const QString &fileIndex, const QString &text)
{
    const QString key = fileIndex.startsWith(QLatin1Char('"')) ? fileIndex.mid(1, 10) : fileIndex.left(10);
    for (QMdiSubWindow *sub : m_area->subWindowList())
        if (auto *p = qobject_cast<frmProtokoll *>(sub->widget()); p && p->Tag() == key) {
            m_area->setActiveSubWindow(sub);
            show();
            raise();
            return p;
        }
    QString caption = text;
    if (caption.isEmpty())
        if (const auto node = zol::loadNode(m_session.db(), key))
            caption = node->Text;

    auto *p = new frmProtokoll(m_session);
    p->setCatalogPicker(m_picker);
    QMdiSubWindow *sub = m_area->addSubWindow(p);
    sub->setAttribute(Qt::WA_DeleteOnClose);
    sub->setObjectName(QStringLiteral("sub_") + key);
    connect(p, &frmProtokoll::arrangeRequested, this, &frmMDIProtokolle::arrange);
    connect(p, &frmProtokoll::positionRequested, this, [this, p](int mode) { m_position->zeig(*p, mode); });
    sub->setWindowIcon(programIcon());
    p->zeig(key, caption);
    // A first window is as wide as its columns, as far as the frame allows.
    const RuledTableView *grid = p->grid();
    int columns = grid->verticalHeader()->sizeHint().width() + grid->frameWidth() * 2
        + grid->verticalScrollBar()->sizeHint().width() + 24;
    for (int col = 0; grid->model() && col < grid->model()->columnCount(); ++col)
        if (!grid->isColumnHidden(col))
            columns += grid->columnWidth(col);
    const int room = m_area->viewport()->width() > 100 ? m_area->viewport()->width() : width();
    const int breite = qMax(9000 / TwipsPerPixel, qMin(columns, room));
    const int state = restoreWindowState(sub, m_session.section(QStringLiteral("\\env\\Protokoll")),
                                         {QRect(0, 0, breite, 6000 / TwipsPerPixel), 0});
    show();
    if (state == 2)
        sub->showMaximized();
    else
        sub->show();
    if (m_devider == 1 || m_devider == 2)
        arrange(m_devider);
    m_area->setActiveSubWindow(sub);
    return p;
}

void frmMDIProtokolle::arrange(int mode)
{
    m_devider = mode;
    if (mode == 0) {
        m_area->cascadeSubWindows();
        return;
    }
    QList<QMdiSubWindow *> subs;
    for (QMdiSubWindow *sub : m_area->subWindowList())
        if (!sub->isMinimized() && sub->isVisible())
            subs << sub;
    if (subs.isEmpty())
        return;
    const QRect area = m_area->viewport()->rect();
    const int n = int(subs.size());
    for (int i = 0; i < n; ++i) {
        QMdiSubWindow *sub = subs.at(i);
        if (sub->isMaximized())
            sub->showNormal();
        if (mode == 1) {   // side by side
            const int w = area.width() / n;
            sub->setGeometry(i * w, 0, i == n - 1 ? area.width() - i * w : w, area.height());
        } else {           // one under another
            const int h = area.height() / n;
            sub->setGeometry(0, i * h, area.width(), i == n - 1 ? area.height() - i * h : h);
        }
    }
}

void frmMDIProtokolle::closeEvent(QCloseEvent *event)
{
    for (QMdiSubWindow *sub : m_area->subWindowList())
        sub->close();
    bool kept = false;
    for (QMdiSubWindow *sub : m_area->subWindowList())
        kept = kept || sub->isVisible();
    if (kept) {
        event->ignore();   // a window kept a row that couldn't be written
        return;
    }
    const QString section = m_session.section(QStringLiteral("\\env\\MDIProtokolle"));
    // The state is only ever read; the geometry is kept for a normal frame.
    if (!isMinimized() && !isMaximized()) {
        zol::SaveSetting(section, QStringLiteral("Left"), pos().x());
        zol::SaveSetting(section, QStringLiteral("Top"), pos().y());
        zol::SaveSetting(section, QStringLiteral("Width"), width());
        zol::SaveSetting(section, QStringLiteral("Height"), height());
    }
    zol::SaveSetting(section, QStringLiteral("Devider"), m_devider);
    event->accept();
}
