#pragma once
#include "zol/core/Session.h"
#include "zol/structure/Explorer.h"
#include "zol/structure/Search.h"
#include <QMainWindow>
#include <QPointer>
#include <memory>

namespace Ui { class frmMain; }
class CatalogWindows;
class ExplorerListModel;
class ExplorerTreeModel;
class QAction;
class QActionGroup;
class QComboBox;
class QLabel;
class QMenu;
class QTimer;

// The one window that stays open through a session: menus, tool bar, the
// structure tree and the list (or the search bar and the list), the status bar.
class frmMain : public QMainWindow {
    Q_OBJECT
public:
    explicit frmMain(zol::Session &session, QWidget *parent = nullptr);
    ~frmMain() override;

    // Shows the window in the state the user left it in.
    void zeig();
    // Panel 1 of the status bar.
    void setStatusText(const QString &text);
    int viewMode() const { return m_viewMode; }
    // Rebuilds the list columns from the options, with the stored widths.
    void RefreshListViewSubs();
    // The key of the selected tree node, and the folder the list shows.
    QString selectedTreeKey() const;
    QString listTag() const { return m_listTag; }
    ExplorerTreeModel *treeModel() const { return m_treeModel; }
    ExplorerListModel *listModel() const { return m_listModel; }
    // Selects a node of the tree (and so loads its content); false if unknown.
    bool selectTreeKey(const QString &key);
    // Selects list entries by key (the first becomes current).
    void selectListKeys(const QStringList &keys);
    // Saves what the window keeps per user (also done on closing).
    void saveWindowState();

protected:
    void closeEvent(QCloseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    enum class Run {
        NotYet, Nothing, Quit, About, Contents, ToggleToolbar, ToggleStatusBar, ViewMode, Refresh,
        Planning, Options, Users, Password, NewFile, NewFolder, Delete, Rename, Properties, Cut, Copy, Paste,
        Open, GoToStructure, ISAuftrag, SelectAll, Invert, Picture, Catalog, MaintenanceFree,
        PrintSelected, PrintStructure, Feedback,
        Export, Import, RepairCapture, RepairOverview, Statistics
    };
    struct Entry {
        const char *name;    // objectName; empty for a separator
        const char *caption;
        Run run;
        int arg = 0;
    };
    void buildMenus();
    void openRepairOverview();
    void buildToolbar();
    void buildPopups();
    void buildFilterBar();
    QAction *makeAction(const Entry &e, QObject *owner);
    void perform(Run run, int arg);
    void setViewMode(int mode);
    void restoreWindowState();
    void applyUserMenus(bool userMenu, bool passwordMenu);
    void openPlanning();
    void openFeedback();
    // 0 planned effort, 1 reported effort, 2 effort per trade, 3 selected entries, 4 raw data.
    void openStatistics(int which);
    void openOptions();
    // What the protocol grid of a component shows; opened from the list.
    void openProtocol(const QString &fileIndex);
    void openMaintenanceFreeTimes();
    QString pickFromCatalog(const QString &table);
    void printSelection(bool structure, bool einzeln, bool vorschau);
    void printSearchResult();
    // The exchange of components: arg of Export is the zol::ExportKind, of Import 1 with instructions.
    void exportComponents(int kind);
    void importComponents(bool withInstructions);

    // Explorer
    zol::ExplorerSelection selection() const;
    QStringList selectedListKeys() const;
    void loadTree(const QString &select);
    void treeSelectionChanged();
    void LoadListView(const QString &key, bool force = false);
    void runSearch();
    void RefreshAll();
    void commandRule();
    void updateCaption();
    void newEntry(bool folder);
    void deleteEntries();
    void toBuffer(bool cut);
    void paste();
    void ZeigeStammdaten();
    void startLabelEdit();
    void openEntry();
    void goToStructure();
    void isAuftrag();
    void showPicture(int slot);
    void openCatalog(int which);
    void listClicked();
    void clearFilters();
    void showPopup(QWidget *view, const QPoint &pos);
    bool renameEntry(bool fromList, const QString &key, QString &name);
    int dividerTwips() const;
    void setDividerTwips(int twips);
    void alignTitles();

    std::unique_ptr<Ui::frmMain> ui;
    zol::Session &m_session;
    zol::Explorer m_explorer;
    zol::ExplorerBuffer m_buffer;
    std::unique_ptr<CatalogWindows> m_catalogs;
    QPointer<QWidget> m_protocols;          // the frame of the protocol windows, made at first need
    QPointer<QWidget> m_maintenanceFree;
    ExplorerTreeModel *m_treeModel = nullptr;
    ExplorerListModel *m_listModel = nullptr;
    QList<QComboBox *> m_filters;
    QList<QLabel *> m_filterLabels;
    QLabel *m_panel1 = nullptr;
    QTimer *m_timer1 = nullptr;
    QActionGroup *m_viewActions = nullptr;
    QActionGroup *m_viewButtons = nullptr;
    QString m_listTag;
    bool m_listFocus = false;
    int m_viewMode = -1;
    int m_savedState = 2;
    QPointer<QWidget> m_planning;
    QPointer<QWidget> m_feedback;
    QPointer<QWidget> m_repairs;
    QPointer<QWidget> m_statistics[5];
};
