#pragma once
#include "zol/instructions/Catalog.h"
#include <QMainWindow>
#include <memory>
#include <vector>

namespace Ui {
class frmKatalog;
}
class QAction;
class QEventLoop;
class QMenu;
class QTreeWidget;
class QTreeWidgetItem;

// The explorer window of one catalog: folders in the tree, the content of the
// selected folder in the list with a column per further field. It serves as
// maintenance tool and as picker: zeig(owner, true) waits for a double click
// on an entry and hands its text back in Tag (and for Texte the entry's
// Standardintervall in chosenInterval). The window is made once and only
// hidden when it closes.
class frmKatalog : public QMainWindow {
    Q_OBJECT

public:
    explicit frmKatalog(zol::Session &session, QWidget *parent = nullptr);
    ~frmKatalog() override;

    // Keeps the kind, reads the table's columns, restores the column widths
    // and loads tree and list. False when the table can't be opened (the
    // message has been shown); the window then shows an empty catalog.
    bool Init(const QString &Name, const QString &Table, const QString &Title);

    // Shows the window modally with Tag cleared; Select makes it a picker.
    // Returns Tag: the chosen text, empty when the window was closed
    // without a choice.
    QString zeig(QWidget *owner, bool Select);

    QString Tag() const { return m_tag; }
    // The second result of a choice in Texte: the entry's Standardintervall.
    QString chosenInterval() const { return m_interval; }
    bool isPicker() const { return m_picker; }
    zol::Catalog &catalog() { return *m_catalog; }

    // Selects the tree node of a folder key (its list follows).
    void selectFolder(const QString &key);

protected:
    void closeEvent(QCloseEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void changeEvent(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    // Loading
    void loadTree(const QString &select);
    void addTreeChildren(QTreeWidgetItem *parent, const zol::ExplorerTree &tree, const QString &key);
    void loadListView(const QString &key, bool force = false);
    void refreshAll();
    void treeSelectionChanged();
    QTreeWidgetItem *treeItem(const QString &key) const;
    QTreeWidgetItem *listItem(const QString &key) const;
    QString treeKey() const;
    zol::ExplorerSelection selection() const;
    QStringList selectedListKeys() const;
    void setStatus(const QString &text);

    // Commands
    void newFolder(bool topLevel);
    void newText();
    void eigenschaften();
    void deleteEntries();
    void rename();
    void cut();
    void copy();
    void paste();
    void selectAll();
    void invertSelection();
    void print(bool alle, bool vorschau);
    void listDoubleClicked(QTreeWidgetItem *item);
    void itemRenamed(QTreeWidget *view, QTreeWidgetItem *item, int column);
    void showPopup(QTreeWidget *view, const QPoint &pos);

    void buildPopups();
    QAction *twin(QMenu *menu, const QString &name, QAction *source);
    void applyRights();
    void restorePlacement();
    void savePlacement();
    QString section() const;

    std::unique_ptr<Ui::frmKatalog> ui;
    zol::Session &m_session;
    std::unique_ptr<zol::Catalog> m_catalog;
    zol::ExplorerBuffer m_buffer;
    QString m_listTag;            // key of the folder the list shows; empty: none
    bool m_listHasFocus = true;   // which of the two views the commands work on
    bool m_loading = false;
    bool m_picker = false;
    bool m_firstShow = true;
    QString m_tag;
    QString m_interval;
    QEventLoop *m_loop = nullptr;
    QMenu *m_popUpLv1 = nullptr;
    QMenu *m_popUpLv2 = nullptr;
    QMenu *m_popUpTv = nullptr;
    QMenu *m_popUpTv2 = nullptr;
    QList<QPair<QAction *, QAction *>> m_twins;   // popup entry, menu entry it mirrors
};

// The eleven catalog windows of a session, made and initialised once, in the
// order of the kinds, when the main window starts; they live until it closes.
// A caller picks a value with e.g. `QString t = windows.Texte().zeig(this, true);`
// and, for Texte, reads `windows.Texte().chosenInterval()`.
class CatalogWindows {
public:
    explicit CatalogWindows(zol::Session &session);
    ~CatalogWindows();

    // The window of a table ("Texte" ... "Option2"), nullptr for another name.
    frmKatalog *byTable(const QString &table) const;
    const std::vector<std::unique_ptr<frmKatalog>> &all() const { return m_windows; }

    frmKatalog &Texte() const { return *m_windows[0]; }
    frmKatalog &Material() const { return *m_windows[1]; }
    frmKatalog &SHinweise() const { return *m_windows[2]; }
    frmKatalog &Gewerke() const { return *m_windows[3]; }
    frmKatalog &Kostenstellen() const { return *m_windows[4]; }
    frmKatalog &Klassifizierungen() const { return *m_windows[5]; }
    frmKatalog &Lokalisierungen() const { return *m_windows[6]; }
    frmKatalog &Hersteller() const { return *m_windows[7]; }
    frmKatalog &Benennungen() const { return *m_windows[8]; }
    frmKatalog &Option1() const { return *m_windows[9]; }
    frmKatalog &Option2() const { return *m_windows[10]; }

private:
    std::vector<std::unique_ptr<frmKatalog>> m_windows;
};
