#include "frmStatistik.h"
#include "StatisticsGui.h"
#include "ui_frmStatistik.h"
#include "gui/core/SelectOnFocus.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/statistics/SelectedStatistics.h"
#include "zol/statistics/StatisticsExport.h"
#include <QApplication>
#include <QDate>
#include <QHeaderView>
#include <QMenuBar>

using namespace zol;
using namespace statgui;

frmStatistik::frmStatistik(Session &session, Entries entries, QWidget *parent)
    : QWidget(parent), ui(std::make_unique<Ui::frmStatistik>()), m_session(session), m_entries(std::move(entries))
{
    ui->setupUi(this);
    auto *bar = new QMenuBar(this);
    QMenu *menu = bar->addMenu(tr("&Auswertungsvariationen"));
    menu->setObjectName(QStringLiteral("mnuAuswertungsvariationen"));
    const QList<std::pair<const char *, const char *>> entriesOfMenu = {
        {"mnuAnsichtPfade", "&Pfad"},
        {"mnuAnsichtSummen", "&Summen"},
        {"mnuAnsichtGeplant", "bezügl. geplanter WI (&A)"},
        {"mnuAnsichtRück", "bezügl. rückgemeldeter WI (&B)"},
        {"mnuAnsichtZeit", "bezügl. Zeit (&C)"}};
    for (const auto &[name, caption] : entriesOfMenu) {
        QAction *a = menu->addAction(tr(caption));
        a->setObjectName(QString::fromUtf8(name));
        a->setCheckable(true);
        connect(a, &QAction::triggered, this, [this, a] { toggleView(a); });
        m_views << a;
    }
    ui->mainLayout->setMenuBar(bar);
    fillList(ui->lvStatistik, statistikSpalten(), {});
    // A click on a column head sorts by its text; a second click on it reverses the order.
    ui->lvStatistik->header()->setSectionsClickable(true);
    ui->lvStatistik->header()->setSortIndicatorShown(true);
    connect(ui->lvStatistik->header(), &QHeaderView::sectionClicked, this, [this](int column) {
        QHeaderView *h = ui->lvStatistik->header();
        const Qt::SortOrder order = m_sortColumn == column && m_sortOrder == Qt::AscendingOrder ? Qt::DescendingOrder
                                                                                                : Qt::AscendingOrder;
        m_sortColumn = column;
        m_sortOrder = order;
        ui->lvStatistik->sortItems(column, order);
        h->setSortIndicator(column, order);
    });
    for (QLineEdit *e : {ui->txtJahr, ui->txtWocheVon, ui->txtWocheBis})
        zolgui::SelectOnFocus::install(e);
    connect(ui->cmdAuswerten, &QPushButton::clicked, this, &frmStatistik::Auswerten);
    connect(ui->cmdExportieren, &QPushButton::clicked, this, &frmStatistik::Exportieren);
    connect(ui->cmdExportierenExcel, &QPushButton::clicked, this, &frmStatistik::ExportierenExcel);
    for (QLineEdit *e : {ui->txtJahr, ui->txtWocheVon, ui->txtWocheBis})
        connect(e, &QLineEdit::returnPressed, this, &frmStatistik::Auswerten);

    // Opening: the path on, the sums off, the ratios on; each entry's step
    // then flips its mark once, so the sums show and the rest is hidden.
    const bool start[5] = {true, false, true, true, true};
    for (int i = 0; i < 5; ++i) {
        m_views[i]->setChecked(start[i]);
        m_views[i]->trigger();
    }
}

frmStatistik::~frmStatistik() = default;

void frmStatistik::zeig()
{
    show();
    raise();
    activateWindow();
    ui->txtJahr->setFocus();
}

void frmStatistik::toggleView(QAction *action)
{
    // The action has flipped its mark already.
    const bool shown = action->isChecked();
    QList<int> columns;
    const int i = int(m_views.indexOf(action));
    if (i == 0)
        columns = {1};
    else if (i == 1)
        columns = {2, 3, 4, 5, 6, 7};
    else
        for (int c = 0; c < 4; ++c)
            columns << 8 + (i - 2) * 4 + c;
    for (int c : columns)
        ui->lvStatistik->setColumnHidden(c, !shown);
}

void frmStatistik::Auswerten()
{
    if (!checkPeriod(ui->txtJahr, ui->txtWocheVon, ui->txtWocheBis, MsgNurWochen, MsgBisMussGroesser))
        return;
    const QString jahr = ui->txtJahr->text(), von = ui->txtWocheVon->text(), bis = ui->txtWocheBis->text();
    QApplication::setOverrideCursor(Qt::WaitCursor);
    ui->ProgressBar->setVisible(true);
    try {
        const StatistikErgebnis e = statistikAuswerten(m_session.db(), jahr, von, bis, m_entries ? m_entries() : QStringList(),
                                                       pump(ui->ProgressBar));
        QList<QStringList> rows;
        for (const StatistikZeile &z : e.zeilen)
            rows << z.cells();
        rows << summenZeile(rows);
        fillList(ui->lvStatistik, statistikSpalten(), rows);
    } catch (const std::exception &ex) {
        ZeigeMeldung(QStringLiteral("Es ist ein Fehler aufgetreten ") + QString::fromUtf8(ex.what()), Style::Critical);
    }
    ui->ProgressBar->setVisible(false);
    QApplication::restoreOverrideCursor();
}

void frmStatistik::Exportieren()
{
    const QStringList names = statistikFeldnamen();
    QList<int> widths = {100, 255};
    exportToDatabase(this, QStringLiteral("ZOL_Statistik_AusgewählteEinträge.db"), QStringLiteral("Statistik"), true,
                     textFields(names, widths), listRows(ui->lvStatistik));
}

void frmStatistik::ExportierenExcel()
{
    exportToWorkbook(this, QStringLiteral("ZOL_Statistik_AusgewählteEinträge.xlsx"), QStringLiteral("Statistik"),
                     statistikSpalten(), listRows(ui->lvStatistik));
}
