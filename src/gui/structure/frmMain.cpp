#include "frmMain.h"
#include "gui/core/frmOptions.h"
#include "gui/core/frmPasswort.h"
#include "gui/core/frmUser.h"
#include "gui/planning/frmAuftragsplanung.h"
#include "zol/core/Users.h"
#include "ui_frmMain.h"
#include "gui/core/frmAbout.h"
#include "gui/core/frmFirstTime.h"
#include "zol/core/Messages.h"
#include "zol/core/Startup.h"
#include "zol/structure/Node.h"
#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QMenuBar>
#include <QScreen>
#include <QStyle>
#include <QToolButton>

namespace {
// Lengths in the settings are twips; the screen has about 15 to a pixel.
constexpr int TwipsPerPixel = 15;
}

frmMain::frmMain(zol::Session &session, QWidget *parent)
    : QMainWindow(parent), ui(std::make_unique<Ui::frmMain>()), m_session(session)
{
    ui->setupUi(this);
    setWindowTitle(QStringLiteral("'ZOL'"));
    m_panel1 = new QLabel(this);
    m_panel1->setObjectName(QStringLiteral("sbStatusBarPanel1"));
    ui->sbStatusBar->addWidget(m_panel1, 1);

    buildMenus();
    buildToolbar();
    buildPopups();
    // The role decides which user menu the window offers, and takes its session form here.
    const zol::UserMenus menus = zol::InitUserLevel(m_session.login());
    applyUserMenus(menus.mnuViewUser, menus.mnuViewPasswort);

    // The two top nodes are not rows of the plant; their keys are ten characters like a FileIndex.
    auto *rund = new QTreeWidgetItem(ui->tvTreeView, {zol::gStrWIRundgang});
    rund->setData(0, Qt::UserRole, zol::nodeKey(zol::RootProtok));
    auto *std_ = new QTreeWidgetItem(ui->tvTreeView, {zol::gStrStandards});
    std_->setData(0, Qt::UserRole, zol::nodeKey(zol::RootKatalo));
    for (auto *item : {rund, std_})
        item->setIcon(0, style()->standardIcon(QStyle::SP_DirIcon));
    ui->tvTreeView->setCurrentItem(rund);
    ui->lblTitle1->setText(zol::gStrWIRundgang);
    ui->imgSplitter->setSizes({300, 680});

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
         {{"mnuFileNeuOrdner", "Anlegen &Technische Einrichtung", N},
          {"mnuFileNeuProtokoll", "Anlegen &Komponente", N},
          {"", "", N},
          {"mnuFileDelete", "&Löschen", N},
          {"mnuFileEdit", "&Umbenennen", N},
          {"mnuFileEigenschaften", "&Stammdaten", N},
          {"", "", N},
          {"mnuFileDruckenAusgewählt0", "Ausgewählte: &Drucken", N},
          {"mnuFileDruckenAusgewählt1", "Ausgewählte: Druck&vorschau", N},
          {"mnuFileDruckenAusgewähltEinzel", "Ausge&wählte: Drucken, einzeln", N},
          {"mnuFileDruckvorschauAusgewähltEinzel", "Ausgewählte: Dru&ckvorschau, einzeln", N},
          {"mnuTEStrukturDruck0", "Ausgew&ählte: Struktur drucken", N},
          {"mnuTEStrukturDruck1", "Ausgewä&hlte: Struktur Druckvorschau", N},
          {"", "", N},
          {"mnuFileImportObjekt", "&Import Komponenten (Access-Format)", N},
          {"mnuFileImportAufträge", "Impo&rt Komponenten mit Auftragspositionen (Access-Format)", N},
          {"mnuFileExportObjekt", "&Export markierte Komponenten (Access-Format)", N},
          {"mnuFileExportAufträge", "Export markierte Komponenten mit Auftragsp&ositionen (Access-Format)", N},
          {"mnuFileExportExcelObjekt", "Export markierte Komponenten (E&xcel-Format)", N},
          {"mnuFileExportExcelAufträge", "Export markierte Komponenten mit Auftragspositionen (Excel-For&mat)", N},
          {"", "", N},
          {"mnuFileQuit", "&Beenden", Run::Quit}}},
        {"mnuEdit", "&Bearbeiten",
         {{"mnuEditOpen", "&Öffnen", N},
          {"", "", N},
          {"mnuEditCut", "&Ausschneiden", N},
          {"mnuEditCopy", "&Kopieren", N},
          {"mnuEditPaste", "&Einfügen", N},
          {"", "", N},
          {"mnuEditDSelectAll", "Alles &markieren", N},
          {"mnuEditInvertSelection", "Auswahl &umkehren", N}}},
        {"mnuAuftrag", "A&ufträge",
         {{"mnuAuftragGenerieren", "&Planung", Run::Planning},
          {"mnuAufträgeRückmeldungen", "&Rückmeldungen", N},
          {"", "", N},
          {"mnuAufträgeISAuftragErstellen", "IS-Auftrag &erstellen", N},
          {"mnuAufträgeISAuftragBearbeiten", "IS-Aufträge &bearbeiten", N},
          {"mnuAuftragstabelle", "&Übersicht IS-Aufträge", N},
          {"", "", N},
          {"mnuWartungsfreieZeiten", "&Wartungsfreie Zeiten definieren", N}}},
        {"mnuKatalog", "&Kataloge",
         {{"mnuKatalogAnweisungen", "&Anweisungen && Objekte", N},
          {"mnuKatalogMaterial", "&Material", N},
          {"mnuKatalogSicherheitshinweise", "&Sicherheitshinweise", N},
          {"mnuKatalogGewerk", "&Gewerke", N},
          {"mnuKatalogBenennungen", "&Benennungen", N},
          {"mnuKatalogHersteller", "&Hersteller", N},
          {"mnuKatalogKostenstellen", "&Kostenstellen", N},
          {"mnuKatalogKlassifizierung", "Klassi&fizierung", N},
          {"mnuKatalogLokalisierung", "&Lokalisierung", N},
          {"mnuKatalogOption1", "Lauf&weg", N},
          {"mnuKatalogOption2", "&Option", N}}},
        {"mnuStatistik", "&Statistiken",
         {{"mnuStatistikenPlan", "&Geplanter Aufwand", N},
          {"mnuStatistikGemeldet", "&Zurückgemeldeter Aufwand", N},
          {"mnuStatistikAufwandsverteilung", "&Aufwandsverteilung je Gewerk", N},
          {"mnuStatistikAusgewählt", "&Statistik für ausgewählte Einträge", N},
          {"", "", N},
          {"mnuRohdatenExport", "&Export Rohdaten eines Jahres", N}}},
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
          {"mnuViewBild01", "Bild &1", N},
          {"mnuViewBild02", "Bild &2", N},
          {"mnuViewBild03", "Bild &3", N},
          {"mnuViewBild04", "Bild &4", N},
          {"mnuViewBild05", "Bild &5", N},
          {"mnuViewBild06", "Bild &6", N},
          {"mnuViewBild07", "Bild &7", N},
          {"mnuViewBild08", "Bild &8", N},
          {"mnuViewBild09", "Bild &9", N}}},
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
        {"Eigenschaften", "Stammdaten", SP::SP_FileDialogInfoView, Run::NotYet, 0},
        {"löschen", "Löschen", SP::SP_TrashIcon, Run::NotYet, 0},
        {"ausschneiden", "Ausschneiden", SP::SP_DialogDiscardButton, Run::NotYet, 0},
        {"kopieren", "Kopieren", SP::SP_FileIcon, Run::NotYet, 0},
        {"einfügen", "Einfügen", SP::SP_DialogSaveButton, Run::NotYet, 0},
        {"AufträgeGenerieren", "Planung", SP::SP_FileDialogContentsView, Run::Planning, 0},
        {"Rückmeldungen", "Rückmeldungen", SP::SP_DialogApplyButton, Run::NotYet, 0},
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
        QAction *a = makeAction({key.constData(), "", Run::NotYet}, ui->Toolbar);
        a->setText(QString::number(i));
        a->setToolTip(tr("Bild %1").arg(i));
        ui->Toolbar->addAction(a);
    }
    ui->Toolbar->setIconSize(QSize(20, 20));
}

void frmMain::buildPopups()
{
    // The pop-up menus of list and tree; they are shown by the explorer.
    const Run N = Run::NotYet;
    const QList<std::pair<const char *, QList<Entry>>> popups = {
        {"mnuPopUpLv1",
         {{"mnuPopUpLv1Open", "Ö&ffnen", N},
          {"mnuPopUpLv1DieseStrukturansicht", "Gehe zu Komponente in Strukturansicht", N},
          {"mnuPopUpLv1ISAuftrag", "&IS-Auftrag erstellen", N},
          {"mnuPopUpLv1Cut", "&Ausschneiden", N},
          {"mnuPopUpLv1Copy", "&Kopieren", N},
          {"mnuPopUpLv1Paste", "&Einfügen", N},
          {"mnuPopUpLv1Delete", "&Löschen", N},
          {"mnuPopUpLv1Umbenennen", "&Umbenennen", N},
          {"mnuPopUpLv1Eigenschaften", "&Stammdaten", N}}},
        {"mnuPopUpLv2",
         {{"mnuPopUpLv2Paste", "&Einfügen", N},
          {"mnuPopUpLv2NeuProtokoll", "Anlegen &Komponente", N},
          {"mnuPopUpLv2NeuOrdner", "Anlegen &Technische Einrichtung", N},
          {"mnuPopUpLv2Eigenschaften", "&Stammdaten", N}}},
        {"mnuPopUpTv",
         {{"mnuPopUpTvÖffnen", "&Öffnen", N},
          {"mnuPopUpTvCut", "&Ausschneiden", N},
          {"mnuPopUpTvCopy", "&Kopieren", N},
          {"mnuPopUpTvPaste", "&Einfügen", N},
          {"mnuPopUpTvDelete", "&Löschen", N},
          {"mnuPopUpTvUmbenennen", "&Umbenennen", N},
          {"mnuPopUpTvEigenschaften", "&Stammdaten", N}}},
    };
    for (const auto &[name, entries] : popups) {
        auto *menu = new QMenu(this);
        menu->setObjectName(QString::fromUtf8(name));
        for (const Entry &e : entries)
            menu->addAction(makeAction(e, menu));
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
        break;
    case Run::Planning:
        openPlanning();
        break;
    case Run::Options:
        openOptions();
        break;
    case Run::Users: {
        frmUser users(m_session, this);
        connect(&users, &frmUser::ownEntryChanged, this, &frmMain::applyUserMenus);
        users.zeig();
        break;
    }
    case Run::Password: {
        frmPasswort password(m_session, this);
        password.zeig();
        break;
    }
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
        w->setWindowFlag(Qt::Window);
        w->setAttribute(Qt::WA_DeleteOnClose);
        m_planning = w;
        w->zeig();
    }
    m_planning->show();
    m_planning->raise();
    m_planning->activateWindow();
}

void frmMain::openOptions()
{
    frmOptions options(m_session, this);
    options.exec();
    // The list columns follow the options once the list is built on them.
}

void frmMain::setViewMode(int mode)
{
    m_viewMode = mode;
    // Menu entry and tool button always show the same view.
    m_viewActions->actions().at(mode)->setChecked(true);
    m_viewButtons->actions().at(mode)->setChecked(true);
}

void frmMain::restoreWindowState()
{
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
    ui->Toolbar->setVisible(s.toolBar);
    findChild<QAction *>(QStringLiteral("mnuViewToolbar"))->setChecked(s.toolBar);
    ui->sbStatusBar->setVisible(s.statusBar);
    findChild<QAction *>(QStringLiteral("mnuViewStatusBar"))->setChecked(s.statusBar);
    setViewMode(0);
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
