#include "frmISAuftraege.h"
#include "ui_frmISAuftraege.h"
#include "ISAuftraegeModel.h"
#include "frmErfassungAllgemeinEinzel.h"
#include "gui/core/SelectOnFocus.h"
#include "gui/core/WindowState.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/core/Settings.h"
#include "zol/repair/RepairPrints.h"
#include <QCloseEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>

frmISAuftraege::frmISAuftraege(zol::Session &session, QWidget *parent)
    : QWidget(parent), ui(std::make_unique<Ui::frmISAuftraege>()), m_session(session),
      m_model(new ISAuftraegeModel(session, this)), m_popup(new QMenu(this))
{
    ui->setupUi(this);
    setObjectName(QStringLiteral("frmISAufträge"));
    ui->cmdStatistik0->setObjectName(QStringLiteral("cmdStatistik(0)"));
    ui->cmdStatistik1->setObjectName(QStringLiteral("cmdStatistik(1)"));
    ui->optAlleAufträge->setChecked(true);

    auto *bar = new QMenuBar(this);
    layout()->setMenuBar(bar);
    const auto eintrag = [this](QMenu *menu, const char *name, const QString &text, auto slot) {
        QAction *a = menu->addAction(text);
        a->setObjectName(QString::fromUtf8(name));
        connect(a, &QAction::triggered, this, slot);
        return a;
    };
    QMenu *datei = bar->addMenu(tr("&Datei"));
    eintrag(datei, "mnuDateiSchließen", tr("&Schließen"), [this] { close(); });
    QMenu *zeile = bar->addMenu(tr("&Zeile"));
    eintrag(zeile, "mnuZeileLöschen", tr("&Löschen"), [this] { Loeschen(); });
    eintrag(zeile, "mnuZeileMarkieren", tr("Alle Zeilen &markieren"), [this] { ui->DBGridAufträge->selectAll(); });
    QMenu *ansicht = bar->addMenu(tr("&Ansicht"));
    eintrag(ansicht, "mnuViewRefresh", tr("&Aktualisieren"), [this] { Aktualisieren(); });
    m_popup->setObjectName(QStringLiteral("mnuPopUp"));
    eintrag(m_popup, "mnuPopUpDelete", tr("&Löschen"), [this] { Loeschen(); });
    eintrag(m_popup, "mnuPopUpMarkieren", tr("Alle Zeilen &markieren"), [this] {
        // Every row, also those not read yet.
        while (m_model->canFetchMore({}))
            m_model->fetchMore({});
        ui->DBGridAufträge->selectAll();
    });

    QTableView *grid = ui->DBGridAufträge;
    grid->setModel(m_model);
    grid->setItemDelegate(new ISAuftraegeDelegate(grid));
    grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid->setSelectionMode(QAbstractItemView::ExtendedSelection);
    // A double click opens the order by itself; cells are edited by typing or F2.
    grid->setEditTriggers(QAbstractItemView::EditKeyPressed | QAbstractItemView::AnyKeyPressed);
    grid->setContextMenuPolicy(Qt::CustomContextMenu);
    grid->horizontalHeader()->setSectionsClickable(true);
    grid->verticalHeader()->setDefaultSectionSize(grid->fontMetrics().height() + 6);
    grid->installEventFilter(this);
    connect(grid, &QWidget::customContextMenuRequested, this,
            [this, grid](const QPoint &p) { m_popup->exec(grid->viewport()->mapToGlobal(p)); });
    connect(grid->horizontalHeader(), &QHeaderView::sectionClicked, this, &frmISAuftraege::spalteGeklickt);
    connect(grid, &QAbstractItemView::doubleClicked, this, &frmISAuftraege::doppelklick);

    for (QLineEdit *e : {ui->txtMeldedatumVon, ui->txtMeldedatumBis, ui->txtZuErledigenVon, ui->txtZuErledigenBis,
                         ui->txtName, ui->txtKostenstelle, ui->txtGewerk}) {
        zolgui::SelectOnFocus::install(e);
        e->installEventFilter(this);
        connect(e, &QLineEdit::returnPressed, this, &frmISAuftraege::Aktualisieren);
    }
    for (QRadioButton *o : {ui->optAlleAufträge, ui->optNichtZurückgemeldet, ui->optZurückgemeldet})
        connect(o, &QRadioButton::clicked, this, &frmISAuftraege::Aktualisieren);
    ui->cmdAktualisieren->setText(tr("Aktuali&sieren"));
    connect(ui->cmdAktualisieren, &QPushButton::clicked, this, &frmISAuftraege::Aktualisieren);
    for (QPushButton *b : {ui->cmdAktualisieren, ui->cmdStatistik0, ui->cmdStatistik1, ui->cmdAbbruch})
        b->setMinimumWidth(b->sizeHint().width());
    connect(ui->cmdStatistik0, &QPushButton::clicked, this, [this] { Drucken(true); });
    connect(ui->cmdStatistik1, &QPushButton::clicked, this, [this] { Drucken(false); });
    connect(ui->cmdAbbruch, &QPushButton::clicked, this, &QWidget::close);

    const QString section = m_session.section(QStringLiteral("\\env\\ISAufträge"));
    restoreWindowState(this, section, {QRect(60, 60, 1100, 640), 0});
    for (int i = 0; i < m_model->columnCount(); ++i) {
        const int w = zol::GetSettingInt(section + QStringLiteral("\\Spalte%1").arg(i, 2, 10, QLatin1Char('0')),
                                         QStringLiteral("Width"), 0);
        if (w > 0)
            grid->setColumnWidth(i, w);
    }
}

frmISAuftraege::~frmISAuftraege() = default;

void frmISAuftraege::zeig(bool geschuetzt)
{
    m_nurLesen = zol::ISAuftraegeNurLesen(m_session.login(), geschuetzt);
    m_model->setNurLesen(m_nurLesen);
    findChild<QAction *>(QStringLiteral("mnuPopUpDelete"))->setEnabled(!m_nurLesen);
    findChild<QAction *>(QStringLiteral("mnuZeileLöschen"))->setEnabled(!m_nurLesen);
    Aktualisieren();
    show();
}

zol::ISAuftraegeFilter frmISAuftraege::filter() const
{
    zol::ISAuftraegeFilter f;
    f.MeldedatumVon = ui->txtMeldedatumVon->text().trimmed();
    f.MeldedatumBis = ui->txtMeldedatumBis->text().trimmed();
    f.ZuErledigenVon = ui->txtZuErledigenVon->text().trimmed();
    f.ZuErledigenBis = ui->txtZuErledigenBis->text().trimmed();
    f.Name = ui->txtName->text().trimmed();
    f.Kostenstelle = ui->txtKostenstelle->text().trimmed();
    f.Gewerk = ui->txtGewerk->text().trimmed();
    f.status = ui->optZurückgemeldet->isChecked()        ? zol::ISAuftraegeFilter::Erledigt
               : ui->optNichtZurückgemeldet->isChecked() ? zol::ISAuftraegeFilter::NichtErledigt
                                                          : zol::ISAuftraegeFilter::Alle;
    return f;
}

void frmISAuftraege::Aktualisieren()
{
    try {
        m_abfrage = zol::baueAbfrage(filter());
        m_model->load(m_abfrage);
    } catch (const zol::Fault &f) {
        zol::ZeigeMeldung(zol::faultText(f), zol::Style::Critical);
    }
}

void frmISAuftraege::spalteGeklickt(int section)
{
    const std::optional<QString> order = m_sortierung.klick(section);
    if (!order)
        return;
    // Sorting keeps the filter of the last refresh.
    zol::ISAuftraegeAbfrage a = m_abfrage;
    a.orderBy = *order;
    m_model->load(a);
}

void frmISAuftraege::doppelklick(const QModelIndex &index)
{
    const int row = index.row();
    if (!index.isValid() || !zol::darfZeileOeffnen(m_session.db(), m_session.login(), m_model->wert(row, 18).toString()))
        return;
    frmErfassungAllgemeinEinzel einzel(m_session, this);
    einzel.setKatalogPicker(m_picker);
    einzel.zeig({m_model->wert(row, 0).toString(), m_model->wert(row, 1).toString(), m_model->wert(row, 2).toString()});
    if (einzel.geloescht())
        m_model->reload();
    else if (einzel.geaendert())
        m_model->aktualisiere(row);
}

void frmISAuftraege::Loeschen()
{
    if (m_nurLesen)
        return;
    QTableView *grid = ui->DBGridAufträge;
    const int current = grid->currentIndex().row();
    if (!zol::darfZeileLoeschen(m_session.db(), m_session.login(), m_model->wert(current, 18).toString()))
        return;
    QList<qint64> ids;
    const QModelIndexList rows = grid->selectionModel()->selectedRows();
    try {
        if (rows.size() < 2) {
            if (current < 0)
                return;
            if (zol::ZeigeMeldung(tr("Möchten Sie die markierten Aufträge wirklich löschen?"), zol::Style::YesNo)
                != zol::Answer::Yes)
                return;
            ids << m_model->rowId(current);
        } else {
            if (zol::ZeigeMeldung(tr("Wollen Sie wirklich löschen?"), zol::Style::YesNo) != zol::Answer::Yes)
                return;
            for (const QModelIndex &i : rows)
                ids << m_model->rowId(i.row());
        }
        zol::loescheZeilen(m_session.db(), ids);
    } catch (const zol::Fault &f) {
        zol::ZeigeMeldung(zol::faultText(f), zol::Style::Critical);
    }
    m_model->reload();
    grid->setCurrentIndex(m_model->index(std::max(0, std::min(current - 1, m_model->rowCount() - 1)), 0));
}

void frmISAuftraege::Drucken(bool vorschau)
{
    const zol::ISAuftraegeFilter f = filter();
    zol::ErfassungStatistikDrucken(m_session, {m_abfrage.where, m_abfrage.werte, f.auswahlText()}, vorschau);
}

bool frmISAuftraege::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == ui->DBGridAufträge && event->type() == QEvent::KeyPress) {
        auto *k = static_cast<QKeyEvent *>(event);
        if (k->key() == Qt::Key_Menu && (k->modifiers() & Qt::ControlModifier)) {
            m_popup->exec(ui->DBGridAufträge->viewport()->mapToGlobal(ui->DBGridAufträge->visualRect(ui->DBGridAufträge->currentIndex()).center()));
            return true;
        }
        if (k->key() == Qt::Key_Delete && !m_nurLesen) {
            Loeschen();
            return true;
        }
    }
    auto *edit = qobject_cast<QLineEdit *>(watched);
    if (edit && event->type() == QEvent::FocusOut) {
        edit->setText(edit->text().trimmed());
        bool ok = true;
        if (edit == ui->txtMeldedatumVon || edit == ui->txtMeldedatumBis || edit == ui->txtZuErledigenVon
            || edit == ui->txtZuErledigenBis) {
            QString t = edit->text();
            ok = zol::FilterDatumVerlassen(t);
            if (ok && edit == ui->txtMeldedatumBis)
                ok = zol::FilterIntervallPruefen(ui->txtMeldedatumVon->text(), t);
            if (ok && edit == ui->txtZuErledigenBis)
                ok = zol::FilterIntervallPruefen(ui->txtZuErledigenVon->text(), t);
        }
        if (!ok)
            edit->setFocus();
    }
    return QWidget::eventFilter(watched, event);
}

void frmISAuftraege::closeEvent(QCloseEvent *event)
{
    const QString section = m_session.section(QStringLiteral("\\env\\ISAufträge"));
    saveWindowState(this, section);
    for (int i = 0; i < m_model->columnCount(); ++i)
        zol::SaveSetting(section + QStringLiteral("\\Spalte%1").arg(i, 2, 10, QLatin1Char('0')), QStringLiteral("Width"),
                         ui->DBGridAufträge->columnWidth(i));
    QWidget::closeEvent(event);
}
