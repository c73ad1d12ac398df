#include "frmWartungsfreieZeit.h"
#include "ui_frmWartungsfreieZeit.h"
#include "MaintenanceFreeModel.h"
#include "gui/core/WindowState.h"
#include "zol/core/Settings.h"
#include "zol/instructions/ProtocolGridRules.h"
#include <QCloseEvent>
#include <QHeaderView>
#include <QKeyEvent>

namespace {
constexpr int TwipsPerPixel = 15;
// Default widths of the columns; the comment takes the rest of a new window.
constexpr int DefaultWidth[3] = {660, 930, 4000};

QString columnSection(const zol::Session &s, int col)
{
    return s.section(QStringLiteral("\\env\\WartungsfreieZeiten\\Spalte") + QString::number(col).rightJustified(2, QLatin1Char('0')));
}
}

frmWartungsfreieZeit::frmWartungsfreieZeit(zol::Session &session, QWidget *parent)
    : QWidget(parent), ui(std::make_unique<Ui::frmWartungsfreieZeit>()), m_session(session)
{
    ui->setupUi(this);
    ui->DBGrid1->installEventFilter(this);
    ui->lblDBGrid1Caption->setBackgroundRole(QPalette::Mid);
    // The comment takes what the window has beyond the two weeks.
    ui->DBGrid1->horizontalHeader()->setStretchLastSection(true);
}

frmWartungsfreieZeit::~frmWartungsfreieZeit()
{
    ui->DBGrid1->setModel(nullptr);
}

void frmWartungsfreieZeit::zeig()
{
    ui->DBGrid1->setModel(nullptr);
    m_model = std::make_unique<MaintenanceFreeModel>(m_session.db(), m_session.login().Level);
    ui->DBGrid1->setModel(m_model.get());
    if (m_model->readOnly())
        ui->DBGrid1->setEditTriggers(QAbstractItemView::NoEditTriggers);
    for (int col = 0; col < 3; ++col)
        ui->DBGrid1->setColumnWidth(col, zol::GetSettingInt(columnSection(m_session, col), QStringLiteral("Width"),
                                                            ui->DBGrid1->defaultColumnWidth(col, DefaultWidth[col] / TwipsPerPixel)));
    ui->DBGrid1->verticalHeader()->setDefaultSectionSize(zol::GetSettingInt(
        m_session.section(QStringLiteral("\\env\\WartungsfreieZeiten\\Zeile")), QStringLiteral("Height"), 420 / TwipsPerPixel));
    const int state = restoreWindowState(this, m_session.section(QStringLiteral("\\env\\WartungsfreieZeiten")),
                                         {QRect(100, 100, 6600 / TwipsPerPixel, 4500 / TwipsPerPixel), 0});
    if (m_model->rowCount() > 0)
        ui->DBGrid1->setCurrentIndex(m_model->index(0, 0));
    if (state == 2)
        showMaximized();
    else
        show();
    raise();
    activateWindow();
}

bool frmWartungsfreieZeit::eventFilter(QObject *watched, QEvent *event)
{
    // Del on selected whole rows removes those ranges.
    if (m_model && watched == ui->DBGrid1 && event->type() == QEvent::KeyPress
        && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Delete && !m_model->readOnly()) {
        const QModelIndexList rows = ui->DBGrid1->selectionModel()->selectedRows();
        if (!rows.isEmpty()) {
            QList<int> numbers;
            for (const QModelIndex &i : rows)
                if (i.row() < m_model->rows().size())
                    numbers << i.row();
            // Nothing goes without the question the protocol grid asks.
            if (numbers.isEmpty() || !zol::askDeleteRows(int(numbers.size())))
                return true;
            std::sort(numbers.begin(), numbers.end(), std::greater<int>());
            for (int r : numbers)
                m_model->deleteRow(r);
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void frmWartungsfreieZeit::closeEvent(QCloseEvent *event)
{
    if (m_model) {
        if (!ui->DBGrid1->commitOpenEditor()) {
            event->ignore();
            return;
        }
        const QModelIndex cur = ui->DBGrid1->currentIndex();
        if (cur.isValid() && m_model->isDirty(cur.row()) && !m_model->writeRow(cur.row())
            && m_model->lastWrite() != zol::MaintenanceFreeWrite::Refused) {
            event->ignore();   // the range exists already: the window stays
            return;
        }
    }
    saveWindowState(this, m_session.section(QStringLiteral("\\env\\WartungsfreieZeiten")));
    if (!isMinimized() && !isMaximized())
        for (int col = 0; col < 3; ++col)
            zol::SaveSetting(columnSection(m_session, col), QStringLiteral("Width"), ui->DBGrid1->columnWidth(col));
    zol::SaveSetting(m_session.section(QStringLiteral("\\env\\WartungsfreieZeiten\\Zeile")), QStringLiteral("Height"),
                     ui->DBGrid1->verticalHeader()->defaultSectionSize());
    event->accept();
}
