#include "frmMain.h"
#include "ExplorerIcons.h"
#include "ExplorerListModel.h"
#include "ExplorerTreeModel.h"
#include "frmBildanzeige.h"
#include "frmProtokollKopf.h"
#include "frmProtokollKopfMassen.h"
#include "gui/core/FileDialogs.h"
#include "gui/core/frmAbout.h"
#include "gui/core/frmFirstTime.h"
#include "gui/core/frmOptions.h"
#include "zol/exchange/ComponentExchange.h"
#include "zol/structure/StructurePrints.h"
#include "gui/instructions/frmMDIProtokolle.h"
#include "gui/instructions/frmWartungsfreieZeit.h"
#include "gui/core/frmPasswort.h"
#include "gui/core/frmUser.h"
#include "gui/instructions/frmKatalog.h"
#include "gui/feedback/frmRueckmeldung.h"
#include "gui/planning/frmAuftragsplanung.h"
#include "gui/repair/frmErfassungAllgemein.h"
#include "gui/repair/frmISAuftraege.h"
#include "gui/statistics/frmAufwandsverteilung.h"
#include "gui/statistics/frmRohdatenexport.h"
#include "gui/statistics/frmStatistik.h"
#include "gui/statistics/frmStatistikGeplant.h"
#include "gui/statistics/frmStatistikRueckgemeldet.h"
#include "zol/statistics/StatisticsInput.h"
#include "ui_frmMain.h"
#include "zol/core/Messages.h"
#include "zol/core/Options.h"
#include "zol/core/Rights.h"
#include "zol/core/Settings.h"
#include "zol/core/Startup.h"
#include "zol/core/Users.h"
#include "zol/structure/MainCommands.h"
#include "zol/structure/Node.h"
#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QResizeEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QScreen>
#include <QStyle>
#include <QTimer>
#include <QToolButton>

namespace {
// Lengths in the settings are twips; the screen has about 15 to a pixel.
constexpr int TwipsPerPixel = 15;
// The divider keeps this far from either edge while dragged (twips).
constexpr int DividerMargin = 500;

// A filter combo reads its choices only when its list is opened: filling all
// of them at every change of view would read the whole plant many times.
class FilterCombo : public QComboBox {
public:
    using QComboBox::QComboBox;
    std::function<QStringList()> choices;
    bool stale = true;
    void showPopup() override
    {
        if (stale && choices) {
            const QString text = currentText();
            clear();
            addItems(choices());
            setEditText(text);
            stale = false;
        }
        QComboBox::showPopup();
    }
};

const QString kMainSettings = QStringLiteral("\\env\\MainSettings");

// The table names of the eleven catalog commands, in menu order.
const QStringList &catalogTables()
{
    static const QStringList t = {"Texte",          "Material",          "SHinweise",       "Gewerke",
                                  "Benennungen",    "Hersteller",        "Kostenstellen",   "Klassifizierungen",
                                  "Lokalisierungen", "Option1",          "Option2"};
    return t;
}

// The governed command a window control stands for: the tool buttons by their
// key, the doubled menu entries without their number.
QString commandName(const QString &objectName)
{
    static const QHash<QString, QString> tools = {{QStringLiteral("Eigenschaften"), zol::Command::tbEigenschaften},
                                                  {QStringLiteral("löschen"), zol::Command::tbLoeschen},
                                                  {QStringLiteral("ausschneiden"), zol::Command::tbAusschneiden},
                                                  {QStringLiteral("einfügen"), zol::Command::tbEinfuegen}};
    if (auto it = tools.constFind(objectName); it != tools.cend())
        return *it;
    for (const char *doubled : {"mnuTEStrukturDruck", "mnuFileDruckenAusgewählt"}) {
        const QString base = QString::fromUtf8(doubled);
        if (objectName == base + QLatin1Char('0') || objectName == base + QLatin1Char('1'))
            return base;
    }
    return objectName;
}

void expandedKeys(const QTreeView *view, const ExplorerTreeModel *model, const QModelIndex &parent, QStringList &out)
{
    for (int r = 0; r < model->rowCount(parent); ++r) {
        const QModelIndex i = model->index(r, 0, parent);
        if (view->isExpanded(i)) {
            out << model->keyOf(i);
            expandedKeys(view, model, i, out);
        }
    }
}
}

frmMain::frmMain(zol::Session &session, QWidget *parent)
    : QMainWindow(parent), ui(std::make_unique<Ui::frmMain>()), m_session(session), m_explorer(session)
{
    ui->setupUi(this);
    ui->cmdAlleOptionenLoeschen->setObjectName(QStringLiteral("cmdAlleOptionenLöschen"));
    setWindowTitle(QStringLiteral("'ZOL'"));
    m_panel1 = new QLabel(this);
    m_panel1->setObjectName(QStringLiteral("sbStatusBarPanel1"));
    ui->sbStatusBar->addWidget(m_panel1, 1);
    m_explorer.onStatus = [this](const QString &text) { setStatusText(text); };

    buildMenus();
    buildToolbar();
    buildPopups();
    // The role decides which user menu the window offers, and takes its session form here.
    const zol::UserMenus menus = zol::InitUserLevel(m_session.login());
    applyUserMenus(menus.mnuViewUser, menus.mnuViewPasswort);

    // The catalog windows live as long as the main window; pickers and menus share them.
    m_catalogs = std::make_unique<CatalogWindows>(m_session);

    m_treeModel = new ExplorerTreeModel(this);
    m_listModel = new ExplorerListModel(m_session, this);
    ui->tvTreeView->setModel(m_treeModel);
    ui->lvListView->setModel(m_listModel);
    ui->tvTreeView->setIconSize(QSize(18, 18));
    ui->lvListView->setIconSize(QSize(18, 18));
    ui->lvListView->header()->setStretchLastSection(true);
    ui->lvListView->setSortingEnabled(false);
    ui->tvTreeView->setContextMenuPolicy(Qt::CustomContextMenu);
    ui->lvListView->setContextMenuPolicy(Qt::CustomContextMenu);
    m_treeModel->onRename = [this](const QString &key, QString &name) { return renameEntry(false, key, name); };
    m_listModel->onRename = [this](const QString &key, QString &name) { return renameEntry(true, key, name); };
    for (QWidget *w : {static_cast<QWidget *>(ui->tvTreeView), static_cast<QWidget *>(ui->lvListView)})
        w->installEventFilter(this);

    connect(ui->tvTreeView->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this] { treeSelectionChanged(); });
    connect(ui->lvListView->selectionModel(), &QItemSelectionModel::currentChanged, this, [this] { listClicked(); });
    connect(ui->lvListView->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { commandRule(); });
    connect(ui->lvListView, &QTreeView::doubleClicked, this, [this] {
        m_listFocus = true;
        openEntry();
    });
    connect(ui->tvTreeView, &QWidget::customContextMenuRequested, this,
            [this](const QPoint &pos) { showPopup(ui->tvTreeView, pos); });
    connect(ui->lvListView, &QWidget::customContextMenuRequested, this,
            [this](const QPoint &pos) { showPopup(ui->lvListView, pos); });
    // A wider window widens the list: the divider stays where it was put, also
    // when the restored window is maximised after it.
    ui->imgSplitter->setStretchFactor(0, 0);
    ui->imgSplitter->setStretchFactor(1, 0);
    ui->imgSplitter->setStretchFactor(2, 1);
    // The title over the tree follows the tree and never holds the window wide.
    QSizePolicy titlePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    titlePolicy.setHorizontalStretch(255);
    ui->lblTitle0->setSizePolicy(titlePolicy);
    connect(ui->imgSplitter, &QSplitter::splitterMoved, this, [this](int pos) {
        const int margin = DividerMargin / TwipsPerPixel;
        const int width = ui->imgSplitter->width();
        if (pos < margin || pos > width - margin)
            setDividerTwips(qBound(margin, pos, width - margin) * TwipsPerPixel);
        alignTitles();
    });
    connect(ui->cmdAlleOptionenLoeschen, &QPushButton::clicked, this, &frmMain::clearFilters);
    connect(ui->cmdSucheDrucken, &QPushButton::clicked, this, &frmMain::printSearchResult);
    buildFilterBar();

    // Timer1 keeps the tool button of the present view pressed.
    m_timer1 = new QTimer(this);
    m_timer1->setObjectName(QStringLiteral("Timer1"));
    m_timer1->setInterval(300);
    connect(m_timer1, &QTimer::timeout, this, [this] {
        if (m_viewMode >= 0)
            m_viewButtons->actions().at(m_viewMode)->setChecked(true);
    });
    m_timer1->start();

    RefreshListViewSubs();
    restoreWindowState();
}

frmMain::~frmMain() = default;

void frmMain::setStatusText(const QString &text)
{
    m_panel1->setText(text);
    m_panel1->repaint();
}

QAction *frmMain::makeAction(const Entry &e, QObject *owner)
{
    auto *a = new QAction(tr(e.caption), owner);
    a->setObjectName(QString::fromUtf8(e.name));
    connect(a, &QAction::triggered, this, [this, run = e.run, arg = e.arg] { perform(run, arg); });
    return a;
}

void frmMain::buildMenus()
{
    struct Menu {
        const char *name;
        const char *caption;
        QList<Entry> entries;
    };
    const Run N = Run::NotYet;
    const QList<Menu> menus = {
        {"mnuFile", "&Technische Einrichtung",
         {{"mnuFileNeuOrdner", "Anlegen &Technische Einrichtung", Run::NewFolder},
          {"mnuFileNeuProtokoll", "Anlegen &Komponente", Run::NewFile},
          {"", "", N},
          {"mnuFileDelete", "&Löschen", Run::Delete},
          {"mnuFileEdit", "&Umbenennen", Run::Rename},
          {"mnuFileEigenschaften", "&Stammdaten", Run::Properties},
          {"", "", N},
          {"mnuFileDruckenAusgewählt0", "Ausgewählte: &Drucken", Run::PrintSelected, 0},
          {"mnuFileDruckenAusgewählt1", "Ausgewählte: Druck&vorschau", Run::PrintSelected, 1},
          {"mnuFileDruckenAusgewähltEinzel", "Ausge&wählte: Drucken, einzeln", Run::PrintSelected, 2},
          {"mnuFileDruckvorschauAusgewähltEinzel", "Ausgewählte: Dru&ckvorschau, einzeln", Run::PrintSelected, 3},
          {"mnuTEStrukturDruck0", "Ausgew&ählte: Struktur drucken", Run::PrintStructure, 0},
          {"mnuTEStrukturDruck1", "Ausgewä&hlte: Struktur Druckvorschau", Run::PrintStructure, 1},
          {"", "", N},
          {"mnuFileImportObjekt", "&Import Komponenten (Datenbank-Format)", Run::Import, 0},
          {"mnuFileImportAufträge", "Impo&rt Komponenten mit Auftragspositionen (Datenbank-Format)", Run::Import, 1},
          {"mnuFileExportObjekt", "&Export markierte Komponenten (Datenbank-Format)", Run::Export, 0},
          {"mnuFileExportAufträge", "Export markierte Komponenten mit Auftragsp&ositionen (Datenbank-Format)", Run::Export, 1},
          {"mnuFileExportExcelObjekt", "Export markierte Komponenten (E&xcel-Format)", Run::Export, 2},
          {"mnuFileExportExcelAufträge", "Export markierte Komponenten mit Auftragspositionen (Excel-For&mat)", Run::Export, 3},
          {"", "", N},
          {"mnuFileQuit", "&Beenden", Run::Quit}}},
        {"mnuEdit", "&Bearbeiten",
         {{"mnuEditOpen", "&Öffnen", Run::Open},
          {"", "", N},
          {"mnuEditCut", "&Ausschneiden", Run::Cut},
          {"mnuEditCopy", "&Kopieren", Run::Copy},
          {"mnuEditPaste", "&Einfügen", Run::Paste},
          {"", "", N},
          {"mnuEditDSelectAll", "Alles &markieren", Run::SelectAll},
          {"mnuEditInvertSelection", "Auswahl &umkehren", Run::Invert}}},
        {"mnuAuftrag", "A&ufträge",
         {{"mnuAuftragGenerieren", "&Planung", Run::Planning},
          {"mnuAufträgeRückmeldungen", "&Rückmeldungen", Run::Feedback},
          {"", "", N},
          {"mnuAufträgeISAuftragErstellen", "IS-Auftrag &erstellen", Run::ISAuftrag},
          {"mnuAufträgeISAuftragBearbeiten", "IS-Aufträge &bearbeiten", Run::RepairCapture},
          {"mnuAuftragstabelle", "&Übersicht IS-Aufträge", Run::RepairOverview},
          {"", "", N},
          {"mnuWartungsfreieZeiten", "&Wartungsfreie Zeiten definieren", Run::MaintenanceFree}}},
        {"mnuKatalog", "&Kataloge",
         {{"mnuKatalogAnweisungen", "&Anweisungen && Objekte", Run::Catalog, 0},
          {"mnuKatalogMaterial", "&Material", Run::Catalog, 1},
          {"mnuKatalogSicherheitshinweise", "&Sicherheitshinweise", Run::Catalog, 2},
          {"mnuKatalogGewerk", "&Gewerke", Run::Catalog, 3},
          {"mnuKatalogBenennungen", "&Benennungen", Run::Catalog, 4},
          {"mnuKatalogHersteller", "&Hersteller", Run::Catalog, 5},
          {"mnuKatalogKostenstellen", "&Kostenstellen", Run::Catalog, 6},
          {"mnuKatalogKlassifizierung", "Klassi&fizierung", Run::Catalog, 7},
          {"mnuKatalogLokalisierung", "&Lokalisierung", Run::Catalog, 8},
          {"mnuKatalogOption1", "Lauf&weg", Run::Catalog, 9},
          {"mnuKatalogOption2", "&Option", Run::Catalog, 10}}},
        {"mnuStatistik", "&Statistiken",
         {{"mnuStatistikenPlan", "&Geplanter Aufwand", Run::Statistics, 0},
          {"mnuStatistikGemeldet", "&Zurückgemeldeter Aufwand", Run::Statistics, 1},
          {"mnuStatistikAufwandsverteilung", "&Aufwandsverteilung je Gewerk", Run::Statistics, 2},
          {"mnuStatistikAusgewählt", "&Statistik für ausgewählte Einträge", Run::Statistics, 3},
          {"", "", N},
          {"mnuRohdatenExport", "&Export Rohdaten eines Jahres", Run::Statistics, 4}}},
        {"mnuView", "&Ansicht",
         {{"mnuViewToolbar", "&Symbolleiste", Run::ToggleToolbar},
          {"mnuViewStatusBar", "S&tatusleiste", Run::ToggleStatusBar},
          {"", "", N},
          {"mnuViewMode0", "St&rukturansicht", Run::ViewMode, 0},
          {"mnuViewMode1", "Su&chansicht", Run::ViewMode, 1},
          {"mnuViewMode2", "Suchansicht o&hne Standards", Run::ViewMode, 2},
          {"mnuViewMode3", "Suchansicht &nur Standards", Run::ViewMode, 3},
          {"mnuViewOffeneAufträge", "Nur &mit offenen Aufträgen", Run::Nothing},
          {"", "", N},
          {"mnuViewRefresh", "&Aktualisieren", Run::Refresh},
          {"", "", N},
          {"mnuViewOptions", "&Optionen...", Run::Options},
          {"mnuViewUser", "&User", Run::Users},
          {"mnuViewPaßwort", "&Passwort ändern", Run::Password},
          {"", "", N},
          {"mnuViewBild01", "Bild &1", Run::Picture, 1},
          {"mnuViewBild02", "Bild &2", Run::Picture, 2},
          {"mnuViewBild03", "Bild &3", Run::Picture, 3},
          {"mnuViewBild04", "Bild &4", Run::Picture, 4},
          {"mnuViewBild05", "Bild &5", Run::Picture, 5},
          {"mnuViewBild06", "Bild &6", Run::Picture, 6},
          {"mnuViewBild07", "Bild &7", Run::Picture, 7},
          {"mnuViewBild08", "Bild &8", Run::Picture, 8},
          {"mnuViewBild09", "Bild &9", Run::Picture, 9}}},
        {"mnuHelp", "&?",
         {{"mnuHelpContents", "&Dokumentation (PDF)", Run::Contents},
          {"mnuHelpAbout", "Inf&o über ZOL...", Run::About}}},
    };

    m_viewActions = new QActionGroup(this);
    for (const Menu &m : menus) {
        QMenu *menu = menuBar()->addMenu(tr(m.caption));
        menu->setObjectName(QString::fromUtf8(m.name));
        menu->menuAction()->setObjectName(QString::fromUtf8(m.name));
        for (const Entry &e : m.entries) {
            if (!*e.name) {
                menu->addSeparator();
                continue;
            }
            QAction *a = makeAction(e, menu);
            menu->addAction(a);
            if (e.run == Run::ToggleToolbar || e.run == Run::ToggleStatusBar) {
                a->setCheckable(true);
                a->setChecked(true);
            } else if (e.run == Run::ViewMode) {
                a->setCheckable(true);
                m_viewActions->addAction(a);
            }
        }
    }
}

void frmMain::buildToolbar()
{
    struct Button {
        const char *key;
        const char *tip;
        QStyle::StandardPixmap icon;
        Run run;
        int arg;
    };
    using SP = QStyle::StandardPixmap;
    const QList<Button> buttons = {
        {"Eigenschaften", "Stammdaten", SP::SP_FileDialogInfoView, Run::Properties, 0},
        {"löschen", "Löschen", SP::SP_TrashIcon, Run::Delete, 0},
        {"ausschneiden", "Ausschneiden", SP::SP_DialogDiscardButton, Run::Cut, 0},
        {"kopieren", "Kopieren", SP::SP_FileIcon, Run::Copy, 0},
        {"einfügen", "Einfügen", SP::SP_DialogSaveButton, Run::Paste, 0},
        {"AufträgeGenerieren", "Planung", SP::SP_FileDialogContentsView, Run::Planning, 0},
        {"Rückmeldungen", "Rückmeldungen", SP::SP_DialogApplyButton, Run::Feedback, 0},
        {"AnsichtStruktur", "Strukturansicht", SP::SP_DirIcon, Run::ViewMode, 0},
        {"AnsichtSuch", "Suchansicht", SP::SP_FileDialogDetailedView, Run::ViewMode, 1},
        {"AnsichtSuchOhne", "Suchansicht ohne Standards", SP::SP_FileDialogListView, Run::ViewMode, 2},
        {"AnsichtSuchNur", "Suchansicht nur Standards", SP::SP_FileDialogStart, Run::ViewMode, 3},
        {"Aktualisieren", "Aktualisieren", SP::SP_BrowserReload, Run::Refresh, 0},
    };
    m_viewButtons = new QActionGroup(this);
    for (const Button &b : buttons) {
        if (!qstrcmp(b.key, "AufträgeGenerieren") || !qstrcmp(b.key, "AnsichtStruktur") || !qstrcmp(b.key, "Aktualisieren"))
            ui->Toolbar->addSeparator();
        QAction *a = makeAction({b.key, b.tip, b.run, b.arg}, ui->Toolbar);
        // Cut, copy and paste have no fitting picture among the style's own.
        if (b.run == Run::Cut)
            a->setIcon(explorerIcon(ExplorerIcon::Cut));
        else if (b.run == Run::Copy)
            a->setIcon(explorerIcon(ExplorerIcon::Copy));
        else if (b.run == Run::Paste)
            a->setIcon(explorerIcon(ExplorerIcon::Paste));
        else
            a->setIcon(style()->standardIcon(b.icon));
        a->setToolTip(tr(b.tip));
        ui->Toolbar->addAction(a);
        if (b.run == Run::ViewMode) {
            a->setCheckable(true);
            m_viewButtons->addAction(a);
        }
    }
    ui->Toolbar->addSeparator();
    for (int i = 1; i <= 9; ++i) {
        const QByteArray key = QStringLiteral("Bild%1").arg(i, 2, 10, QLatin1Char('0')).toUtf8();
        QAction *a = makeAction({key.constData(), "", Run::Picture, i}, ui->Toolbar);
        a->setText(QString::number(i));
        a->setToolTip(tr("Bild %1").arg(i));
        ui->Toolbar->addAction(a);
    }
    ui->Toolbar->setIconSize(QSize(20, 20));
}

void frmMain::buildPopups()
{
    // The pop-up menus of list and tree; they are shown by the explorer.
    
    const QList<std::pair<const char *, QList<Entry>>> popups = {
        {"mnuPopUpLv1",
         {{"mnuPopUpLv1Open", "Ö&ffnen", Run::Open},
          {"mnuPopUpLv1DieseStrukturansicht", "Gehe zu Komponente in Strukturansicht", Run::GoToStructure},
          {"mnuPopUpLv1ISAuftrag", "&IS-Auftrag erstellen", Run::ISAuftrag},
          {"mnuPopUpLv1Cut", "&Ausschneiden", Run::Cut},
          {"mnuPopUpLv1Copy", "&Kopieren", Run::Copy},
          {"mnuPopUpLv1Paste", "&Einfügen", Run::Paste},
          {"mnuPopUpLv1Delete", "&Löschen", Run::Delete},
          {"mnuPopUpLv1Umbenennen", "&Umbenennen", Run::Rename},
          {"mnuPopUpLv1Eigenschaften", "&Stammdaten", Run::Properties}}},
        {"mnuPopUpLv2",
         {{"mnuPopUpLv2Paste", "&Einfügen", Run::Paste},
          {"mnuPopUpLv2NeuProtokoll", "Anlegen &Komponente", Run::NewFile},
          {"mnuPopUpLv2NeuOrdner", "Anlegen &Technische Einrichtung", Run::NewFolder},
          {"mnuPopUpLv2Eigenschaften", "&Stammdaten", Run::Properties}}},
        {"mnuPopUpTv",
         {{"mnuPopUpTvÖffnen", "&Öffnen", Run::Open},
          {"mnuPopUpTvCut", "&Ausschneiden", Run::Cut},
          {"mnuPopUpTvCopy", "&Kopieren", Run::Copy},
          {"mnuPopUpTvPaste", "&Einfügen", Run::Paste},
          {"mnuPopUpTvDelete", "&Löschen", Run::Delete},
          {"mnuPopUpTvUmbenennen", "&Umbenennen", Run::Rename},
          {"mnuPopUpTvEigenschaften", "&Stammdaten", Run::Properties}}},
    };
    for (const auto &[name, entries] : popups) {
        auto *menu = new QMenu(this);
        menu->setObjectName(QString::fromUtf8(name));
        for (const Entry &e : entries)
            menu->addAction(makeAction(e, menu));
    }
}

void frmMain::buildFilterBar()
{
    // dbcParameter(0) filters the name, dbcParameter(i) the i-th field of the column table.
    for (int i = 0; i < zol::SearchFilterCount; ++i) {
        auto *combo = new FilterCombo(ui->parameterFields);
        combo->setObjectName(QStringLiteral("dbcParameter%1").arg(i));
        combo->setEditable(true);
        combo->setInsertPolicy(QComboBox::NoInsert);
        combo->setMinimumContentsLength(8);
        combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        combo->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        combo->choices = [this, i] {
            const QString field = zol::searchField(i, m_session.options());
            return field.isEmpty() ? QStringList() : zol::filterChoices(m_session.db(), m_viewMode, field);
        };
        connect(combo->lineEdit(), &QLineEdit::returnPressed, this, &frmMain::runSearch);
        connect(combo, &QComboBox::activated, this, [this] { runSearch(); });
        const zol::SpaltenFeld *f = zol::spaltenFeld(i);
        auto *label = new QLabel(i == 0 ? tr("Name") : f ? f->listCaption : QString(), ui->parameterFields);
        label->setBuddy(combo);
        m_filters << combo;
        m_filterLabels << label;
    }
}

void frmMain::RefreshListViewSubs()
{
    m_listModel->setColumns(m_session.options());
    m_listTag.clear();
    const QString section = m_session.section(kMainSettings);
    QHeaderView *header = ui->lvListView->header();
    header->resizeSection(0, zol::GetSettingInt(section, QStringLiteral("SpaltenBreite_Name"), 200));
    int column = 1;
    for (int index : m_session.options().gSpaltenIndex) {
        const QString field = zol::searchField(index, m_session.options());
        header->resizeSection(column++, zol::GetSettingInt(section, QStringLiteral("SpaltenBreite_") + field, 170));
    }
    // Only the filters of displayed columns are offered, in display order.
    while (ui->parameterForm->rowCount() > 0)
        ui->parameterForm->takeRow(0);
    for (int i = 0; i < m_filters.size(); ++i) {
        m_filters[i]->hide();
        m_filterLabels[i]->hide();
    }
    QList<int> shown = {0};
    shown << m_session.options().gSpaltenIndex;
    for (int i : shown) {
        if (i < 0 || i >= m_filters.size())
            continue;
        ui->parameterForm->addRow(m_filterLabels[i], m_filters[i]);
        m_filters[i]->show();
        m_filterLabels[i]->show();
    }
}

void frmMain::perform(Run run, int arg)
{
    switch (run) {
    case Run::NotYet:
        zol::ZeigeMeldung(tr("Diese Funktion ist noch nicht verfügbar"), zol::Style::Information);
        break;
    case Run::Nothing:
        break;
    case Run::Quit:
        close();
        break;
    case Run::About: {
        frmAbout about(this);
        about.exec();
        break;
    }
    case Run::Contents:
        openZolDocumentation(m_session);
        break;
    case Run::ToggleToolbar:
        ui->Toolbar->setVisible(!ui->Toolbar->isVisible());
        findChild<QAction *>(QStringLiteral("mnuViewToolbar"))->setChecked(ui->Toolbar->isVisible());
        break;
    case Run::ToggleStatusBar:
        ui->sbStatusBar->setVisible(!ui->sbStatusBar->isVisible());
        findChild<QAction *>(QStringLiteral("mnuViewStatusBar"))->setChecked(ui->sbStatusBar->isVisible());
        break;
    case Run::ViewMode:
        setViewMode(arg);
        break;
    case Run::Refresh:
        if (m_viewMode == zol::Ansicht::Struktur)
            RefreshAll();
        else
            runSearch();
        break;
    case Run::Planning:
        openPlanning();
        break;
    case Run::Feedback:
        openFeedback();
        break;
    case Run::MaintenanceFree:
        openMaintenanceFreeTimes();
        break;
    case Run::PrintSelected:   // arg: 0 print, 1 preview, 2 one sheet each, 3 its preview
        printSelection(false, arg >= 2, arg % 2 == 1);
        break;
    case Run::PrintStructure:
        printSelection(true, false, arg == 1);
        break;
    case Run::Export:
        exportComponents(arg);
        break;
    case Run::Import:
        importComponents(arg == 1);
        break;
    case Run::Options:
        openOptions();
        break;
    case Run::Users: {
        frmUser users(m_session, this);
        connect(&users, &frmUser::ownEntryChanged, this, &frmMain::applyUserMenus);
        users.zeig();
        commandRule();
        break;
    }
    case Run::Password: {
        frmPasswort password(m_session, this);
        password.zeig();
        break;
    }
    case Run::NewFile:
        newEntry(false);
        break;
    case Run::NewFolder:
        newEntry(true);
        break;
    case Run::Delete:
        deleteEntries();
        break;
    case Run::Rename:
        startLabelEdit();
        break;
    case Run::Properties:
        ZeigeStammdaten();
        break;
    case Run::Cut:
        toBuffer(true);
        break;
    case Run::Copy:
        toBuffer(false);
        break;
    case Run::Paste:
        paste();
        break;
    case Run::Open:
        openEntry();
        break;
    case Run::GoToStructure:
        goToStructure();
        break;
    case Run::ISAuftrag:
        isAuftrag();
        break;
    case Run::RepairCapture: {
        frmErfassungAllgemein capture(m_session, this);
        capture.setKatalogPicker([this](const QString &table) { return pickFromCatalog(table); });
        capture.zeig();
        break;
    }
    case Run::RepairOverview:
        openRepairOverview();
        break;
    case Run::SelectAll:
        selectListKeys(m_explorer.selectAll(m_listModel->keys()));
        ui->lvListView->setFocus();
        m_listFocus = true;
        break;
    case Run::Invert:
        selectListKeys(m_explorer.invertSelection(m_listModel->keys(), selectedListKeys()));
        ui->lvListView->setFocus();
        m_listFocus = true;
        break;
    case Run::Picture:
        showPicture(arg);
        break;
    case Run::Catalog:
        openCatalog(arg);
        break;
    case Run::Statistics:
        openStatistics(arg);
        break;
    }
}

void frmMain::applyUserMenus(bool userMenu, bool passwordMenu)
{
    findChild<QAction *>(QStringLiteral("mnuViewUser"))->setVisible(userMenu);
    findChild<QAction *>(QStringLiteral("mnuViewPaßwort"))->setVisible(passwordMenu);
}

void frmMain::openPlanning()
{
    // One planning window at a time; a second command brings it to the front.
    if (!m_planning) {
        auto *w = new frmAuftragsplanung(m_session, this);
        w->setKatalogPicker([this](const QString &table) { return pickFromCatalog(table); });
        w->setWindowFlag(Qt::Window);
        w->setAttribute(Qt::WA_DeleteOnClose);
        m_planning = w;
        w->zeig();
    }
    m_planning->show();
    m_planning->raise();
    m_planning->activateWindow();
}

void frmMain::openStatistics(int which)
{
    // One window of each statistic at a time; the selection is read at each run.
    if (!m_statistics[which]) {
        const frmStatistik::Entries entries = [this] {
            const zol::ExplorerSelection sel = selection();
            return zol::selectedEntries(m_session.db(), sel.listHasFocus, sel.listSelected, sel.treeKey);
        };
        // The window becomes a window of its own before it shows and takes the focus.
        const auto prepare = [this, which](QWidget *w) {
            w->setWindowFlag(Qt::Window);
            w->setAttribute(Qt::WA_DeleteOnClose);
            m_statistics[which] = w;
        };
        switch (which) {
        case 0: {
            auto *g = new frmStatistikGeplant(m_session, entries, this);
            prepare(g);
            g->zeig();
            break;
        }
        case 1: {
            auto *r = new frmStatistikRueckgemeldet(m_session, entries, this);
            prepare(r);
            r->zeig();
            break;
        }
        case 2: {
            auto *a = new frmAufwandsverteilung(m_session, this);
            a->setKatalogPicker([this](const QString &table) { return pickFromCatalog(table); });
            prepare(a);
            a->zeig();
            break;
        }
        case 3: {
            auto *s = new frmStatistik(m_session, entries, this);
            prepare(s);
            s->zeig();
            break;
        }
        default: {
            auto *r = new frmRohdatenexport(m_session, this);
            prepare(r);
            r->zeig();
            break;
        }
        }
    }
    m_statistics[which]->show();
    m_statistics[which]->raise();
    m_statistics[which]->activateWindow();
}

void frmMain::openFeedback()
{
    // One feedback window at a time, as for planning.
    if (!m_feedback) {
        auto *w = new frmRueckmeldung(m_session, this);
        w->setKatalogPicker([this](const QString &table) { return pickFromCatalog(table); });
        w->setWindowFlag(Qt::Window);
        w->setAttribute(Qt::WA_DeleteOnClose);
        m_feedback = w;
        w->zeig();
    }
    m_feedback->show();
    m_feedback->raise();
    m_feedback->activateWindow();
}

void frmMain::openOptions()
{
    const zol::OptionState before = m_session.options();
    frmOptions options(m_session, this);
    options.exec();
    // New columns: the list is built anew on them.
    if (zol::spaltenGeaendert(before, m_session.options())) {
        RefreshListViewSubs();
        if (m_viewMode == zol::Ansicht::Struktur)
            LoadListView(selectedTreeKey(), true);
        else
            runSearch();
    }
}

void frmMain::openProtocol(const QString &fileIndex)
{
    auto *frame = qobject_cast<frmMDIProtokolle *>(m_protocols.data());
    if (!frame) {
        frame = new frmMDIProtokolle(m_session, this);
        frame->setWindowFlag(Qt::Window);
        frame->setAttribute(Qt::WA_DeleteOnClose);
        frame->setCatalogPicker([this](const QString &table) {
            const QString text = pickFromCatalog(table);
            const frmKatalog *k = m_catalogs->byTable(table);
            return std::pair<QString, QString>(text, k ? k->chosenInterval() : QString());
        });
        m_protocols = frame;
    }
    frame->show();
    frame->zeig(fileIndex);
    frame->raise();
    frame->activateWindow();
}

void frmMain::openMaintenanceFreeTimes()
{
    if (!m_maintenanceFree) {
        auto *w = new frmWartungsfreieZeit(m_session, this);
        w->setWindowFlag(Qt::Window);
        w->setAttribute(Qt::WA_DeleteOnClose);
        m_maintenanceFree = w;
        w->zeig();
    }
    m_maintenanceFree->show();
    m_maintenanceFree->raise();
    m_maintenanceFree->activateWindow();
}

// ---------------------------------------------------------------------------
// Views

void frmMain::setViewMode(int mode)
{
    if (mode < 0 || mode > 3)
        mode = zol::Ansicht::Struktur;
    // Menu entry and tool button always show the same view.
    m_viewActions->actions().at(mode)->setChecked(true);
    m_viewButtons->actions().at(mode)->setChecked(true);
    const bool wasStructure = m_viewMode == zol::Ansicht::Struktur;
    const int dividerBefore = wasStructure ? dividerTwips() : -1;
    m_viewMode = mode;
    const bool search = mode != zol::Ansicht::Struktur;
    findChild<QAction *>(QStringLiteral("mnuPopUpLv1DieseStrukturansicht"))->setVisible(search);
    ui->picTitles->setVisible(!search);
    ui->tvTreeView->setVisible(!search);
    ui->fraParameter->setVisible(search);
    for (QComboBox *c : m_filters)
        static_cast<FilterCombo *>(c)->stale = true;
    if (search) {
        if (dividerBefore > 0)
            setDividerTwips(dividerBefore);
        runSearch();
    } else {
        m_listTag.clear();
        m_listModel->clear();
        LoadListView(selectedTreeKey());
    }
    commandRule();
}

void frmMain::runSearch()
{
    setStatusText(tr("Lade Einträge neu"));
    m_listTag.clear();
    zol::SearchFilters filters;
    for (QComboBox *c : m_filters)
        filters << c->currentText();
    // Filters of hidden columns are left out by the search itself.
    const QStringList keys = zol::SucheKomponenten(m_session.db(), m_viewMode, filters, m_session.options());
    m_listModel->setKeys(keys);
    if (!keys.isEmpty())
        selectListKeys({keys.first()});
    setStatusText(QString::number(keys.size()) + tr(" Einträge gefunden."));
    commandRule();
}

void frmMain::clearFilters()
{
    for (int i = 0; i < m_filters.size(); ++i)
        if (i == 0 || m_session.options().gSpaltenIndex.contains(i))
            m_filters[i]->setEditText(QString());
    perform(Run::Refresh, 0);
}

// ---------------------------------------------------------------------------
// Tree and list

QString frmMain::selectedTreeKey() const { return m_treeModel->keyOf(ui->tvTreeView->currentIndex()); }

QStringList frmMain::selectedListKeys() const
{
    QList<int> rows;
    for (const QModelIndex &i : ui->lvListView->selectionModel()->selectedRows())
        rows << i.row();
    std::sort(rows.begin(), rows.end());
    QStringList keys;
    for (int r : rows)
        keys << m_listModel->keyAt(r);
    return keys;
}

zol::ExplorerSelection frmMain::selection() const
{
    zol::ExplorerSelection sel;
    // In the search views only the list is there.
    sel.listHasFocus = m_listFocus || m_viewMode != zol::Ansicht::Struktur;
    sel.treeKey = selectedTreeKey();
    sel.listFolder = m_listTag;
    sel.listSelected = selectedListKeys();
    return sel;
}

bool frmMain::selectTreeKey(const QString &key)
{
    const QModelIndex idx = m_treeModel->indexOfKey(key);
    if (!idx.isValid())
        return false;
    for (QModelIndex p = idx.parent(); p.isValid(); p = p.parent())
        ui->tvTreeView->expand(p);
    ui->tvTreeView->setCurrentIndex(idx);
    ui->tvTreeView->scrollTo(idx);
    return true;
}

void frmMain::selectListKeys(const QStringList &keys)
{
    QItemSelectionModel *sm = ui->lvListView->selectionModel();
    QItemSelection selection;
    for (const QString &k : keys) {
        const int row = m_listModel->rowOfKey(k);
        if (row >= 0)
            selection.select(m_listModel->index(row, 0), m_listModel->index(row, m_listModel->columnCount() - 1));
    }
    if (keys.isEmpty()) {
        sm->clearSelection();
        return;
    }
    const int first = m_listModel->rowOfKey(keys.first());
    if (first >= 0) {
        sm->setCurrentIndex(m_listModel->index(first, 0), QItemSelectionModel::NoUpdate);
        ui->lvListView->scrollTo(m_listModel->index(first, 0));
    }
    sm->select(selection, QItemSelectionModel::ClearAndSelect);
}

void frmMain::loadTree(const QString &select)
{
    QStringList expanded;
    expandedKeys(ui->tvTreeView, m_treeModel, {}, expanded);
    const QSignalBlocker block(ui->tvTreeView->selectionModel());
    zol::Explorer::Refreshed r = m_explorer.RefreshAll(select);
    m_treeModel->setTree(r.tree);
    for (const QString &k : expanded)
        ui->tvTreeView->expand(m_treeModel->indexOfKey(k));
    const QModelIndex idx = m_treeModel->indexOfKey(r.select);
    for (QModelIndex p = idx.parent(); p.isValid(); p = p.parent())
        ui->tvTreeView->expand(p);
    ui->tvTreeView->setCurrentIndex(idx);
}

void frmMain::RefreshAll()
{
    const QString noted = selectedTreeKey();
    const QStringList listSelected = selectedListKeys();
    loadTree(noted);
    // The list is read again whatever it showed.
    LoadListView(selectedTreeKey(), true);
    selectListKeys(listSelected);
    updateCaption();
    commandRule();
}

void frmMain::treeSelectionChanged()
{
    commandRule();
    if (m_viewMode == zol::Ansicht::Struktur)
        LoadListView(selectedTreeKey());
}

void frmMain::updateCaption()
{
    const QString key = selectedTreeKey();
    if (m_viewMode != zol::Ansicht::Struktur || key.isEmpty())
        return;
    setWindowTitle(zol::mainCaption(m_treeModel->tree().fullPath(key), isMinimized()));
    ui->lblTitle1->setText(zol::listTitle(m_treeModel->tree().text(key)));
}

void frmMain::LoadListView(const QString &key, bool force)
{
    if (key.isEmpty() || (!force && key == m_listTag))
        return;
    m_listTag = key;
    updateCaption();
    QList<zol::ListRow> rows;
    for (const zol::Node &n : m_explorer.loadListView(key))
        rows << zol::listRowOf(n, m_session.options());
    m_listModel->setRows(rows);
    if (!rows.isEmpty())
        selectListKeys({rows.first().FileIndex});
    setStatusText(QString());
}

void frmMain::listClicked()
{
    // A search view tells where the component hangs.
    const QString key = m_listModel->keyAt(ui->lvListView->currentIndex().row());
    if (m_viewMode != zol::Ansicht::Struktur && !key.isEmpty())
        setWindowTitle(zol::searchCaption(m_session.db(), key));
}

void frmMain::commandRule()
{
    const QString key = selectedTreeKey();
    const bool inStandards = !key.isEmpty() && m_treeModel->tree().fullPath(key).startsWith(zol::gStrStandards);
    const QSet<QString> on = zol::enabledCommands(m_session.login().Level, inStandards, m_viewMode);
    static const QSet<QString> governed(zol::governedCommands().cbegin(), zol::governedCommands().cend());
    for (QAction *a : findChildren<QAction *>()) {
        const QString name = commandName(a->objectName());
        if (governed.contains(name))
            a->setEnabled(on.contains(name));
    }
    const bool labelEdit = on.contains(zol::Command::LabelEdit);
    m_treeModel->setEditable(labelEdit);
    m_listModel->setEditable(labelEdit);
}

// ---------------------------------------------------------------------------
// Commands

bool frmMain::renameEntry(bool fromList, const QString &key, QString &name)
{
    zol::ExplorerSelection sel = selection();
    sel.listHasFocus = fromList;
    if (!fromList)
        sel.treeKey = key;
    const bool cancel = m_explorer.RenameEntry(sel, key, name);
    if (!cancel) {
        // The other view shows the same entry under the new name.
        if (fromList)
            m_treeModel->setText(key, name);
        else
            m_listModel->reloadRow(key);
        if (!fromList && key == m_listTag)
            updateCaption();
    }
    return cancel;
}

void frmMain::startLabelEdit()
{
    QTreeView *view = m_listFocus || m_viewMode != zol::Ansicht::Struktur ? ui->lvListView : ui->tvTreeView;
    QModelIndex idx = view->currentIndex();
    if (!idx.isValid())
        return;
    idx = idx.siblingAtColumn(0);
    view->setFocus();
    view->edit(idx);
}

void frmMain::newEntry(bool folder)
{
    ui->lvListView->setFocus();
    m_listFocus = true;
    const std::optional<zol::Node> node = folder ? m_explorer.NeuerOrdner(selection()) : m_explorer.NeuerFile(selection());
    if (!node)
        return;
    auto show = [&] {
        if (folder)
            loadTree(m_listTag.isEmpty() ? node->FileIndex : selectedTreeKey());
        LoadListView(selectedTreeKey(), true);
    };
    show();
    selectListKeys({node->FileIndex});
    // The master data of the new entry open as for any entry, without the rights test.
    setStatusText(tr("Verändere Stammdaten"));
    frmProtokollKopf dialog(m_session, this);
    dialog.setCatalogPicker([this](const QString &table) { return pickFromCatalog(table); });
    const QString tag = dialog.zeig(node->FileIndex, false);
    setStatusText(QString());
    // Cancel removed the entry again.
    show();
    if (tag == QLatin1String("OK"))
        selectListKeys({node->FileIndex});
    commandRule();
}

void frmMain::deleteEntries()
{
    const zol::ExplorerSelection sel = selection();
    const bool fromTree = !sel.listHasFocus;
    const QString parentOfTree = fromTree ? m_treeModel->tree().parentOf(sel.treeKey) : QString();
    const zol::DeleteResult r = m_explorer.DeleteEntries(sel);
    if (r.deleted.isEmpty())
        return;
    if (m_viewMode != zol::Ansicht::Struktur) {
        loadTree(selectedTreeKey());
        runSearch();
        return;
    }
    loadTree(fromTree ? parentOfTree : selectedTreeKey());
    LoadListView(selectedTreeKey(), true);
    commandRule();
}

void frmMain::toBuffer(bool cut)
{
    const zol::ExplorerSelection sel = selection();
    if (cut)
        m_explorer.CutToBuffer(sel, m_buffer);
    else
        m_explorer.CopyToBuffer(sel, m_buffer);
    QSet<QString> ghosted;
    if (cut && sel.listHasFocus)
        ghosted = QSet<QString>(m_buffer.keys.cbegin(), m_buffer.keys.cend());
    m_listModel->setGhosted(ghosted);
}

void frmMain::paste()
{
    const zol::PasteResult r = m_explorer.PasteEntries(selection(), m_buffer);
    if (!r.changed)
        return;
    RefreshAll();
    selectListKeys(r.newKeys);
}

void frmMain::ZeigeStammdaten()
{
    const bool fromList = m_listFocus || m_viewMode != zol::Ansicht::Struktur;
    const QStringList selected = selectedListKeys();
    auto picker = [this](const QString &table) { return pickFromCatalog(table); };
    if (fromList && selected.size() > 1) {
        frmProtokollKopfMassen dialog(m_session, this);
        dialog.setCatalogPicker(picker);
        if (dialog.zeig(selected) == QLatin1String("OK"))
            for (const QString &k : dialog.geaendert()) {
                m_listModel->reloadRow(k);
                if (const std::optional<zol::Node> n = zol::loadNode(m_session.db(), k))
                    m_treeModel->setText(k, n->Text);
            }
        return;
    }
    const QString key = fromList ? m_listModel->keyAt(ui->lvListView->currentIndex().row()) : selectedTreeKey();
    if (key.isEmpty() || !zol::StammdatenErlaubt(m_session.login(), m_session.db(), key))
        return;
    setStatusText(tr("Verändere Stammdaten"));
    frmProtokollKopf dialog(m_session, this);
    dialog.setCatalogPicker(picker);
    if (dialog.zeig(key, true) == QLatin1String("OK")) {
        m_listModel->reloadRow(key);
        if (const std::optional<zol::Node> n = zol::loadNode(m_session.db(), key); n && n->isInstallation()) {
            m_treeModel->setText(key, n->Text);
            if (key == m_listTag)
                updateCaption();
        }
    }
    setStatusText(QString());
}

void frmMain::openEntry()
{
    if (!m_listFocus && m_viewMode == zol::Ansicht::Struktur) {
        ui->tvTreeView->expand(ui->tvTreeView->currentIndex());
        return;
    }
    const zol::ListRow *row = m_listModel->rowAt(ui->lvListView->currentIndex().row());
    if (!row)
        return;
    if (row->FileTyp == zol::FileTypOrdner) {
        if (m_viewMode != zol::Ansicht::Struktur)
            setViewMode(zol::Ansicht::Struktur);
        selectTreeKey(row->FileIndex);
    } else {
        openProtocol(row->FileIndex);
    }
}

void frmMain::goToStructure()
{
    const QString key = m_listModel->keyAt(ui->lvListView->currentIndex().row());
    if (key.isEmpty())
        return;
    const std::optional<QString> parent = zol::GeheZuKomponente(m_session.db(), m_treeModel->tree(), key);
    if (!parent)
        return;
    setViewMode(zol::Ansicht::Struktur);
    selectTreeKey(*parent);
    LoadListView(*parent);
    selectListKeys({key});
    ui->lvListView->setFocus();
    m_listFocus = true;
}

void frmMain::isAuftrag()
{
    const QString key = m_listModel->keyAt(ui->lvListView->currentIndex().row());
    if (key.isEmpty() || !zol::ISAuftragErlaubt(m_session.db(), key))
        return;
    frmErfassungAllgemein capture(m_session, this);
    capture.setKatalogPicker([this](const QString &table) { return pickFromCatalog(table); });
    capture.zeig(key);
}

void frmMain::openRepairOverview()
{
    // One overview at a time, as for planning.
    if (!m_repairs) {
        auto *w = new frmISAuftraege(m_session, this);
        w->setKatalogPicker([this](const QString &table) { return pickFromCatalog(table); });
        w->setWindowFlag(Qt::Window);
        w->setAttribute(Qt::WA_DeleteOnClose);
        m_repairs = w;
        const QString key = m_listModel->keyAt(ui->lvListView->currentIndex().row());
        w->zeig(zol::IsStandard(m_session.db(), key));
    }
    m_repairs->show();
    m_repairs->raise();
    m_repairs->activateWindow();
}

void frmMain::showPicture(int slot) { frmBildanzeige::oeffne(m_session, slot, this); }

QString frmMain::pickFromCatalog(const QString &table)
{
    frmKatalog *k = m_catalogs->byTable(table);
    return k ? k->zeig(this, true) : QString();
}

void frmMain::printSelection(bool structure, bool einzeln, bool vorschau)
{
    const zol::ExplorerSelection sel = selection();
    zol::StrukturAuswahl auswahl;
    auswahl.baumKey = sel.treeKey;
    auswahl.listeKeys = sel.listSelected;
    auswahl.listeHatFokus = sel.listHasFocus;
    auto status = [this](const QString &text) { setStatusText(text); };
    if (structure)
        zol::DruckeStrukturAuswahl(m_session, auswahl, vorschau, status);
    else
        zol::DruckeAusgewaehlte(m_session, auswahl, einzeln, vorschau, status);
}

void frmMain::exportComponents(int kind)
{
    const zol::ExportOutcome out = zol::ExportKomponenten(
        m_session.db(), zol::exportKeys(selection()), zol::ExportKind(kind),
        [this](const QString &proposed, const QString &filter) {
            return zolgui::chooseSaveFile(this, tr("Export"), proposed, filter);
        });
    if (out.openWorkbook)
        zolgui::showWithDesktop(out.path);
}

void frmMain::importComponents(bool withInstructions)
{
    const QString parent = selectedTreeKey();
    const zol::ImportResult r = zol::ImportKomponenten(
        m_session.db(), m_session.login(), parent, withInstructions,
        [this](const QString &, const QString &filter) { return zolgui::chooseOpenFile(this, tr("Import"), filter); });
    if (r.newKeys.isEmpty())
        return;
    loadTree(parent);
    LoadListView(parent, true);
    commandRule();
}

void frmMain::printSearchResult()
{
    // The filters as the search view shows them: the name, then the displayed columns.
    QList<zol::SuchFilterZeile> lines;
    for (int i = 0; i < m_filters.size(); ++i)
        if (i == 0 || m_session.options().gSpaltenIndex.contains(i))
            lines << zol::SuchFilterZeile(zol::suchFilterCaption(i), m_filters.at(i)->currentText());
    zol::DruckeSuchergebnis(m_session, lines, m_listModel->keys(), [this](const QString &text) { setStatusText(text); });
}

void frmMain::openCatalog(int which)
{
    if (frmKatalog *k = m_catalogs->byTable(catalogTables().value(which)))
        k->zeig(this, false);
}

void frmMain::showPopup(QWidget *view, const QPoint &pos)
{
    QMenu *menu = nullptr;
    if (view == ui->tvTreeView) {
        // The right button selects the node under the pointer first.
        const QModelIndex idx = ui->tvTreeView->indexAt(pos);
        if (idx.isValid())
            ui->tvTreeView->setCurrentIndex(idx);
        m_listFocus = false;
        menu = findChild<QMenu *>(QStringLiteral("mnuPopUpTv"));
    } else {
        m_listFocus = true;
        const bool onItem = ui->lvListView->indexAt(pos).isValid();
        menu = findChild<QMenu *>(onItem ? QStringLiteral("mnuPopUpLv1") : QStringLiteral("mnuPopUpLv2"));
    }
    commandRule();
    QWidget *target = view == ui->lvListView ? ui->lvListView->viewport() : ui->tvTreeView->viewport();
    menu->popup(target->mapToGlobal(pos));
}

// ---------------------------------------------------------------------------
// Keys and focus

bool frmMain::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize && watched == ui->tvTreeView) {
        alignTitles();
    } else if (event->type() == QEvent::FocusIn) {
        if (watched == ui->lvListView)
            m_listFocus = true;
        else if (watched == ui->tvTreeView)
            m_listFocus = false;
        commandRule();
    } else if (event->type() == QEvent::KeyPress) {
        auto *key = static_cast<QKeyEvent *>(event);
        QTreeView *view = qobject_cast<QTreeView *>(watched);
        if (view) {
            m_listFocus = watched == ui->lvListView;
            if (key->key() == Qt::Key_Menu) {
                const QRect r = view->visualRect(view->currentIndex());
                showPopup(view, r.isValid() ? r.center() : QPoint(4, 4));
                return true;
            }
            if (watched == ui->lvListView && (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter)) {
                // The Enter that ends a rename reaches the list from its editor;
                // it ends the rename and opens nothing.
                const QWidget *focus = QApplication::focusWidget();
                if (!focus || focus == view || !view->isAncestorOf(focus))
                    openEntry();
                return true;
            }
            if (key->key() == Qt::Key_F2) {
                perform(Run::Rename, 0);
                return true;
            }
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

void frmMain::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_F2) {
        perform(Run::Rename, 0);
        return;
    }
    if (event->key() == Qt::Key_F8) {
        perform(Run::Properties, 0);
        return;
    }
    QMainWindow::keyPressEvent(event);
}

// ---------------------------------------------------------------------------
// Window state

int frmMain::dividerTwips() const
{
    const QList<int> sizes = ui->imgSplitter->sizes();
    return sizes.value(0) * TwipsPerPixel;
}

void frmMain::setDividerTwips(int twips)
{
    const int total = qMax(ui->imgSplitter->width(), width() - 12);
    const int left = twips / TwipsPerPixel;
    ui->imgSplitter->setSizes({left, 0, qMax(total - left, 1)});
    alignTitles();
}

void frmMain::alignTitles()
{
    // "Protokoll Struktur:" stands over the tree, the content line over the list.
    if (ui->tvTreeView->width() > 0)
        ui->lblTitle0->setMaximumWidth(ui->tvTreeView->width() + ui->imgSplitter->handleWidth());
}

void frmMain::restoreWindowState()
{
    const QString section = m_session.section(kMainSettings);
    const zol::MainWindowSettings s = zol::loadMainWindowSettings(m_session.login().UserName);
    QRect r(s.left / TwipsPerPixel, s.top / TwipsPerPixel, s.width / TwipsPerPixel, s.height / TwipsPerPixel);
    if (const QScreen *screen = QApplication::primaryScreen()) {
        const QRect avail = screen->availableGeometry();
        r.setWidth(qMin(r.width(), avail.width()));
        r.setHeight(qMin(r.height(), avail.height()));
    }
    // A window narrower than 3000 twips is widened.
    r.setWidth(qMax(r.width(), 3000 / TwipsPerPixel));
    setGeometry(r);
    m_savedState = s.windowState;

    // The tree as it was: the saved node, else the first.
    QString pfad = zol::GetSetting(section, QStringLiteral("Pfad"));
    if (pfad.startsWith(QLatin1Char('"')))
        pfad = zol::fileIndexOfKey(pfad);
    m_viewMode = zol::Ansicht::Struktur;
    loadTree(pfad);
    commandRule();

    int divider = zol::GetSettingInt(section, QStringLiteral("MainDevider"), 5000);
    divider = qBound(50, divider, qMax(50, r.width() * TwipsPerPixel - 50));
    setDividerTwips(divider);
    ui->Toolbar->setVisible(s.toolBar);
    findChild<QAction *>(QStringLiteral("mnuViewToolbar"))->setChecked(s.toolBar);
    ui->sbStatusBar->setVisible(s.statusBar);
    findChild<QAction *>(QStringLiteral("mnuViewStatusBar"))->setChecked(s.statusBar);
    m_viewMode = -1;
    setViewMode(zol::GetSettingInt(section, QStringLiteral("MainMode"), 0));
}

void frmMain::zeig()
{
    if (m_savedState == 2)
        showMaximized();
    else
        show();
}

void frmMain::saveWindowState()
{
    zol::MainWindowSettings s;
    s.windowState = isMinimized() ? 1 : isMaximized() ? 2 : 0;
    const QRect g = geometry();
    s.left = g.x() * TwipsPerPixel;
    s.top = g.y() * TwipsPerPixel;
    s.width = g.width() * TwipsPerPixel;
    s.height = g.height() * TwipsPerPixel;
    s.statusBar = !ui->sbStatusBar->isHidden();
    s.toolBar = !ui->Toolbar->isHidden();
    zol::saveMainWindowSettings(m_session.login().UserName, s);

    const QString section = m_session.section(kMainSettings);
    zol::SaveSetting(section, QStringLiteral("Pfad"), selectedTreeKey());
    zol::SaveSetting(section, QStringLiteral("MainMode"), m_viewMode);
    if (m_viewMode == zol::Ansicht::Struktur)
        zol::SaveSetting(section, QStringLiteral("MainDevider"), dividerTwips());
    const QHeaderView *header = ui->lvListView->header();
    zol::SaveSetting(section, QStringLiteral("SpaltenBreite_Name"), header->sectionSize(0));
    int column = 1;
    for (int index : m_session.options().gSpaltenIndex)
        zol::SaveSetting(section, QStringLiteral("SpaltenBreite_") + zol::searchField(index, m_session.options()),
                         header->sectionSize(column++));
}

void frmMain::changeEvent(QEvent *event)
{
    QMainWindow::changeEvent(event);
    // A minimised window is called just 'ZOL'.
    if (event->type() == QEvent::WindowStateChange && m_treeModel)
        updateCaption();
}

void frmMain::resizeEvent(QResizeEvent *event)
{
    QMainWindow::resizeEvent(event);
    alignTitles();
}

void frmMain::closeEvent(QCloseEvent *event)
{
    if (!zol::askQuit()) {
        event->ignore();
        return;
    }
    for (QWidget *w : QApplication::topLevelWidgets())
        if (w != this && w->isVisible())
            w->close();
    saveWindowState();
    event->accept();
}
