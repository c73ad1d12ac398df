#include "frmKatalog.h"
#include "frmKatalogEigenschaften.h"
#include "gui/core/WindowState.h"
#include "ui_frmKatalog.h"
#include "zol/core/Settings.h"
#include "zol/print/PrinterF.h"
#include <QApplication>
#include <QCloseEvent>
#include <QEventLoop>
#include <QKeyEvent>
#include <QHeaderView>
#include <QMenu>
#include <QSet>
#include <QStyle>
#include <QWindow>

namespace {
constexpr int KeyRole = Qt::UserRole;
constexpr int TypRole = Qt::UserRole + 1;
constexpr int ShownTextRole = Qt::UserRole + 2;   // the name as stored, to undo a refused edit
}

frmKatalog::frmKatalog(zol::Session &session, QWidget *parent)
    : QMainWindow(parent), ui(std::make_unique<Ui::frmKatalog>()), m_session(session)
{
    ui->setupUi(this);
    // Both print entries exist twice; the index says whether it is the preview.
    for (auto [action, name, index] : {std::tuple{ui->mnuFileDruckenAusgewaehlt0, "mnuFileDruckenAusgewählt", 0},
                                       std::tuple{ui->mnuFileDruckenAusgewaehlt1, "mnuFileDruckenAusgewählt", 1},
                                       std::tuple{ui->mnuFileDruckenAlle0, "mnuFileDruckenAlle", 0},
                                       std::tuple{ui->mnuFileDruckenAlle1, "mnuFileDruckenAlle", 1}}) {
        action->setObjectName(QString::fromUtf8(name));
        action->setProperty("Index", index);
    }
    ui->lblTitle->setText(tr("Katalog Struktur:"));
    ui->imgSplitter->setSizes({zol::CatalogDefaultDevider, zol::CatalogDefaultWidth - zol::CatalogDefaultDevider});
    ui->imgSplitter->setStretchFactor(1, 1);
    ui->lvListView->header()->setStretchLastSection(true);
    ui->tvTreeView->installEventFilter(this);
    ui->lvListView->installEventFilter(this);

    connect(ui->mnuFileNewOrdner, &QAction::triggered, this, [this] { newFolder(false); });
    connect(ui->mnuFileNewText, &QAction::triggered, this, &frmKatalog::newText);
    connect(ui->mnuFileEigenschaften, &QAction::triggered, this, &frmKatalog::eigenschaften);
    connect(ui->mnuFileDelete, &QAction::triggered, this, &frmKatalog::deleteEntries);
    connect(ui->mnuFileRename, &QAction::triggered, this, &frmKatalog::rename);
    connect(ui->mnuFileDruckenAusgewaehlt0, &QAction::triggered, this, [this] { print(false, false); });
    connect(ui->mnuFileDruckenAusgewaehlt1, &QAction::triggered, this, [this] { print(false, true); });
    connect(ui->mnuFileDruckenAlle0, &QAction::triggered, this, [this] { print(true, false); });
    connect(ui->mnuFileDruckenAlle1, &QAction::triggered, this, [this] { print(true, true); });
    connect(ui->mnuFileClose, &QAction::triggered, this, &QWidget::close);
    connect(ui->mnuEditCut, &QAction::triggered, this, &frmKatalog::cut);
    connect(ui->mnuEditCopy, &QAction::triggered, this, &frmKatalog::copy);
    connect(ui->mnuEditPaste, &QAction::triggered, this, &frmKatalog::paste);
    connect(ui->mnuEditDSelectAll, &QAction::triggered, this, &frmKatalog::selectAll);
    connect(ui->mnuEditInvertSelection, &QAction::triggered, this, &frmKatalog::invertSelection);
    connect(ui->mnuViewStatusBar, &QAction::toggled, ui->sbStatusBar, &QWidget::setVisible);
    connect(ui->mnuViewRefresh, &QAction::triggered, this, &frmKatalog::refreshAll);

    connect(ui->tvTreeView, &QTreeWidget::itemSelectionChanged, this, &frmKatalog::treeSelectionChanged);
    connect(ui->tvTreeView, &QTreeWidget::itemExpanded, this,
            [this](QTreeWidgetItem *i) { i->setIcon(0, style()->standardIcon(QStyle::SP_DirOpenIcon)); });
    connect(ui->tvTreeView, &QTreeWidget::itemCollapsed, this,
            [this](QTreeWidgetItem *i) { i->setIcon(0, style()->standardIcon(QStyle::SP_DirClosedIcon)); });
    connect(ui->tvTreeView, &QTreeWidget::itemChanged, this,
            [this](QTreeWidgetItem *i, int c) { itemRenamed(ui->tvTreeView, i, c); });
    connect(ui->lvListView, &QTreeWidget::itemChanged, this,
            [this](QTreeWidgetItem *i, int c) { itemRenamed(ui->lvListView, i, c); });
    connect(ui->lvListView, &QTreeWidget::itemDoubleClicked, this, &frmKatalog::listDoubleClicked);
    connect(ui->tvTreeView, &QWidget::customContextMenuRequested, this,
            [this](const QPoint &p) { showPopup(ui->tvTreeView, p); });
    connect(ui->lvListView, &QWidget::customContextMenuRequested, this,
            [this](const QPoint &p) { showPopup(ui->lvListView, p); });
    buildPopups();
}

frmKatalog::~frmKatalog() = default;

QString frmKatalog::section() const { return zol::catalogSection(m_session, m_catalog->kind().Name); }

bool frmKatalog::Init(const QString &Name, const QString &Table, const QString &Title)
{
    zol::CatalogKind kind{0, Name, Table, Title};
    if (const auto known = zol::catalogKindOfTable(Table))
        kind.No = known->No;
    m_catalog = std::make_unique<zol::Catalog>(m_session, kind);
    m_catalog->setStatusSink([this](const QString &t) { setStatus(t); });
    setWindowTitle(Title);
    const bool ok = m_catalog->Init();

    const QStringList headers = m_catalog->columnHeaders();
    ui->lvListView->setColumnCount(int(headers.size()));
    ui->lvListView->setHeaderLabels(headers);
    for (int i = 0; i < headers.size(); ++i)
        ui->lvListView->setColumnWidth(
            i, zol::GetSettingInt(section(), zol::SpaltenBreiteKey + QString::number(i + 1), zol::CatalogDefaultColumnWidth));
    if (ok)
        loadTree({});
    return ok;
}

// ---------------------------------------------------------------------------
// Showing

QString frmKatalog::zeig(QWidget *owner, bool Select)
{
    if (!m_catalog || m_loop)
        return m_tag;
    m_tag.clear();
    m_interval.clear();
    m_picker = Select;
    int state = isMaximized() ? 2 : 0;
    if (m_firstShow) {
        restorePlacement();
        state = zol::GetSettingInt(section(), QStringLiteral("WindowState"), 0);
        m_firstShow = false;
    }
    if (owner && owner->window()->windowHandle()) {
        winId();
        windowHandle()->setTransientParent(owner->window()->windowHandle());
    }
    applyRights();
    if (m_catalog->isOpen())
        refreshAll();
    setWindowModality(Qt::ApplicationModal);
    if (state == 2)
        showMaximized();
    else
        showNormal();
    raise();
    activateWindow();

    QEventLoop loop;
    m_loop = &loop;
    loop.exec(QEventLoop::DialogExec);
    m_loop = nullptr;
    m_picker = false;
    return m_tag;
}

void frmKatalog::closeEvent(QCloseEvent *event)
{
    // A catalog window stays loaded; closing only hides it.
    event->accept();
    QMainWindow::closeEvent(event);
}

void frmKatalog::hideEvent(QHideEvent *event)
{
    QMainWindow::hideEvent(event);
    if (event->spontaneous())
        return;   // minimised
    if (m_catalog)
        savePlacement();
    if (m_loop)
        m_loop->quit();
}

void frmKatalog::changeEvent(QEvent *event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        applyRights();
}

bool frmKatalog::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn) {
        if (watched == ui->lvListView)
            m_listHasFocus = true;
        else if (watched == ui->tvTreeView)
            m_listHasFocus = false;
    }
    // Picking, Enter on an entry of the list chooses it as a double click does;
    // Escape closes the catalog without a choice. A rename ends with them as usual.
    if (m_picker && event->type() == QEvent::KeyPress && watched == ui->lvListView
        && !(QApplication::focusWidget() && QApplication::focusWidget() != ui->lvListView
             && ui->lvListView->isAncestorOf(QApplication::focusWidget()))) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if ((key == Qt::Key_Return || key == Qt::Key_Enter) && ui->lvListView->currentItem()) {
            listDoubleClicked(ui->lvListView->currentItem());
            return true;
        }
        if (key == Qt::Key_Escape) {
            hide();
            return true;
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

void frmKatalog::restorePlacement()
{
    const QString sec = section();
    restoreWindowState(this, sec, {QRect(0, 0, zol::CatalogDefaultWidth, zol::CatalogDefaultHeight), 0});
    const int devider = zol::GetSettingInt(sec, QStringLiteral("Devider"), zol::CatalogDefaultDevider);
    ui->imgSplitter->setSizes({devider, qMax(1, width() - devider)});
}

void frmKatalog::savePlacement()
{
    const QString sec = section();
    saveWindowState(this, sec);
    const QList<int> sizes = ui->imgSplitter->sizes();
    if (!sizes.isEmpty() && sizes.first() > 0)
        zol::SaveSetting(sec, QStringLiteral("Devider"), sizes.first());
    for (int i = 0; i < ui->lvListView->columnCount(); ++i)
        zol::SaveSetting(sec, zol::SpaltenBreiteKey + QString::number(i + 1), ui->lvListView->columnWidth(i));
}

void frmKatalog::setStatus(const QString &text)
{
    if (text.isEmpty())
        ui->sbStatusBar->clearMessage();
    else
        ui->sbStatusBar->showMessage(text);
    ui->sbStatusBar->repaint();
}

// ---------------------------------------------------------------------------
// Tree and list

QTreeWidgetItem *frmKatalog::treeItem(const QString &key) const
{
    for (QTreeWidgetItemIterator it(ui->tvTreeView); *it; ++it)
        if ((*it)->data(0, KeyRole).toString() == key)
            return *it;
    return nullptr;
}

QTreeWidgetItem *frmKatalog::listItem(const QString &key) const
{
    for (int i = 0; i < ui->lvListView->topLevelItemCount(); ++i)
        if (ui->lvListView->topLevelItem(i)->data(0, KeyRole).toString() == key)
            return ui->lvListView->topLevelItem(i);
    return nullptr;
}

QString frmKatalog::treeKey() const
{
    const QList<QTreeWidgetItem *> sel = ui->tvTreeView->selectedItems();
    return sel.isEmpty() ? QString() : sel.first()->data(0, KeyRole).toString();
}

QStringList frmKatalog::selectedListKeys() const
{
    QStringList out;
    for (int i = 0; i < ui->lvListView->topLevelItemCount(); ++i)
        if (ui->lvListView->topLevelItem(i)->isSelected())
            out << ui->lvListView->topLevelItem(i)->data(0, KeyRole).toString();
    return out;
}

zol::ExplorerSelection frmKatalog::selection() const
{
    zol::ExplorerSelection s;
    s.listHasFocus = m_listHasFocus;
    s.treeKey = treeKey();
    s.listFolder = m_listTag;
    s.listSelected = selectedListKeys();
    return s;
}

void frmKatalog::addTreeChildren(QTreeWidgetItem *parent, const zol::ExplorerTree &tree, const QString &key)
{
    const Qt::ItemFlags flags = Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsEditable;
    for (const zol::TreeNode &n : tree.children(key)) {
        auto *item = parent ? new QTreeWidgetItem(parent) : new QTreeWidgetItem(ui->tvTreeView);
        item->setText(0, n.Text);
        item->setData(0, KeyRole, n.FileIndex);
        item->setData(0, ShownTextRole, n.Text);
        item->setFlags(flags);
        item->setIcon(0, style()->standardIcon(QStyle::SP_DirClosedIcon));
        addTreeChildren(item, tree, n.FileIndex);
    }
}

void frmKatalog::loadTree(const QString &select)
{
    const zol::ExplorerTree tree = m_catalog->explorer().loadTree();
    QSet<QString> expanded;
    for (QTreeWidgetItemIterator it(ui->tvTreeView); *it; ++it)
        if ((*it)->isExpanded())
            expanded.insert((*it)->data(0, KeyRole).toString());
    m_loading = true;
    ui->tvTreeView->setUpdatesEnabled(false);
    ui->tvTreeView->clear();
    addTreeChildren(nullptr, tree, zol::CatalogRoot);
    for (QTreeWidgetItemIterator it(ui->tvTreeView); *it; ++it)
        if (expanded.contains((*it)->data(0, KeyRole).toString()))
            (*it)->setExpanded(true);
    QTreeWidgetItem *item = select.isEmpty() ? nullptr : treeItem(select);
    if (!item)
        item = ui->tvTreeView->topLevelItem(0);
    ui->tvTreeView->setCurrentItem(item);
    ui->tvTreeView->setUpdatesEnabled(true);
    m_loading = false;
    loadListView(item ? item->data(0, KeyRole).toString() : QString(), true);
}

void frmKatalog::treeSelectionChanged()
{
    if (!m_loading)
        loadListView(treeKey());
}

void frmKatalog::loadListView(const QString &key, bool force)
{
    if (!force && key == m_listTag)
        return;
    m_listTag = key;
    m_loading = true;
    ui->lvListView->setUpdatesEnabled(false);
    ui->lvListView->clear();
    const QTreeWidgetItem *node = key.isEmpty() ? nullptr : treeItem(key);
    ui->lblListTitle->setText(node ? zol::listTitle(node->text(0)) : QString());
    if (!key.isEmpty()) {
        const Qt::ItemFlags flags = Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsEditable;
        for (const zol::CatalogRow &r : m_catalog->loadListView(key)) {
            QStringList cols{r.Text};
            cols += r.further;
            auto *item = new QTreeWidgetItem(ui->lvListView, cols);
            item->setData(0, KeyRole, r.FileIndex);
            item->setData(0, TypRole, r.FileTyp);
            item->setData(0, ShownTextRole, r.Text);
            item->setFlags(flags);
            item->setIcon(0, style()->standardIcon(r.isFolder() ? QStyle::SP_DirClosedIcon : QStyle::SP_FileIcon));
        }
    }
    if (QTreeWidgetItem *first = ui->lvListView->topLevelItem(0)) {
        ui->lvListView->setCurrentItem(first, 0, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        ui->lvListView->scrollToItem(first);
    }
    ui->lvListView->setUpdatesEnabled(true);
    m_loading = false;
}

void frmKatalog::refreshAll()
{
    const zol::Explorer::Refreshed r = m_catalog->explorer().RefreshAll(treeKey());
    loadTree(r.select);
}

void frmKatalog::selectFolder(const QString &key)
{
    QTreeWidgetItem *item = treeItem(key);
    if (!item)
        return;
    for (QTreeWidgetItem *p = item->parent(); p; p = p->parent())
        p->setExpanded(true);
    ui->tvTreeView->setCurrentItem(item);
    ui->tvTreeView->scrollToItem(item);
}

// ---------------------------------------------------------------------------
// Commands

void frmKatalog::newFolder(bool topLevel)
{
    zol::ExplorerSelection sel = selection();
    if (topLevel) {
        sel.listHasFocus = false;
        sel.treeKey.clear();
        sel.listFolder.clear();
    } else {
        m_listHasFocus = true;
        ui->lvListView->setFocus();
        sel.listHasFocus = true;
    }
    const std::optional<zol::Node> made = m_catalog->explorer().NeuerOrdner(sel);
    if (!made)
        return;
    if (topLevel || m_listTag.isEmpty()) {
        loadTree(made->FileIndex);
        return;
    }
    loadTree(treeKey());
    if (QTreeWidgetItem *item = listItem(made->FileIndex))
        ui->lvListView->setCurrentItem(item, 0, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void frmKatalog::newText()
{
    m_listHasFocus = true;
    ui->lvListView->setFocus();
    const std::optional<zol::Node> made = m_catalog->explorer().NeuerFile(selection());
    if (!made)
        return;
    loadListView(m_listTag, true);
    if (QTreeWidgetItem *item = listItem(made->FileIndex)) {
        ui->lvListView->setCurrentItem(item, 0, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        ui->lvListView->scrollToItem(item);
    }
}

void frmKatalog::eigenschaften()
{
    if (!m_catalog->mayEdit())
        return;
    const QStringList selected = selectedListKeys();
    const QString key = m_listHasFocus && !selected.isEmpty() ? selected.first() : treeKey();
    if (key.isEmpty())
        return;
    frmKatalogEigenschaften dialog(*m_catalog, this);
    if (dialog.zeig(key) && dialog.Tag() == QLatin1String("OK")) {
        loadTree(treeKey());
        if (QTreeWidgetItem *item = listItem(key))
            ui->lvListView->setCurrentItem(item, 0, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    }
}

void frmKatalog::deleteEntries()
{
    const zol::DeleteResult r = m_catalog->explorer().DeleteEntries(selection());
    if (!r.deleted.isEmpty())
        refreshAll();
}

void frmKatalog::rename()
{
    if (!m_catalog->mayEdit())
        return;
    if (m_listHasFocus) {
        if (QTreeWidgetItem *item = ui->lvListView->currentItem())
            ui->lvListView->editItem(item, 0);
    } else if (QTreeWidgetItem *item = ui->tvTreeView->currentItem()) {
        ui->tvTreeView->editItem(item, 0);
    }
}

void frmKatalog::itemRenamed(QTreeWidget *view, QTreeWidgetItem *item, int column)
{
    if (m_loading || column != 0)
        return;
    const QString key = item->data(0, KeyRole).toString();
    const QString old = item->data(0, ShownTextRole).toString();
    QString name = item->text(0);
    if (name == old)
        return;
    zol::ExplorerSelection sel = selection();
    sel.listHasFocus = view == ui->lvListView;
    const bool cancel = m_catalog->explorer().RenameEntry(sel, key, name);
    m_loading = true;
    const QString shown = cancel ? old : name;
    item->setText(0, shown);
    item->setData(0, ShownTextRole, shown);
    if (!cancel) {
        // A folder stands in both views.
        QTreeWidgetItem *twin = view == ui->lvListView ? treeItem(key) : listItem(key);
        if (twin) {
            twin->setText(0, shown);
            twin->setData(0, ShownTextRole, shown);
        }
        if (view == ui->tvTreeView && key == m_listTag)
            ui->lblListTitle->setText(zol::listTitle(shown));
    }
    m_loading = false;
}

void frmKatalog::cut()
{
    m_catalog->explorer().CutToBuffer(selection(), m_buffer);
    const QSet<QString> cutKeys(m_buffer.keys.begin(), m_buffer.keys.end());
    const QBrush normal = ui->lvListView->palette().text();
    const QBrush ghosted = ui->lvListView->palette().brush(QPalette::Disabled, QPalette::Text);
    for (int i = 0; i < ui->lvListView->topLevelItemCount(); ++i) {
        QTreeWidgetItem *item = ui->lvListView->topLevelItem(i);
        const bool ghost = cutKeys.contains(item->data(0, KeyRole).toString());
        m_loading = true;
        for (int c = 0; c < item->columnCount(); ++c)
            item->setForeground(c, ghost ? ghosted : normal);
        m_loading = false;
    }
}

void frmKatalog::copy()
{
    m_catalog->explorer().CopyToBuffer(selection(), m_buffer);
    m_loading = true;
    for (int i = 0; i < ui->lvListView->topLevelItemCount(); ++i)
        for (int c = 0; c < ui->lvListView->columnCount(); ++c)
            ui->lvListView->topLevelItem(i)->setForeground(c, ui->lvListView->palette().text());
    m_loading = false;
}

void frmKatalog::paste()
{
    const zol::PasteResult r = m_catalog->explorer().PasteEntries(selection(), m_buffer);
    if (r.changed)
        refreshAll();
}

void frmKatalog::selectAll()
{
    QStringList shown;
    for (int i = 0; i < ui->lvListView->topLevelItemCount(); ++i)
        shown << ui->lvListView->topLevelItem(i)->data(0, KeyRole).toString();
    const QSet<QString> keys = [&] {
        const QStringList k = m_catalog->explorer().selectAll(shown);
        return QSet<QString>(k.begin(), k.end());
    }();
    for (int i = 0; i < ui->lvListView->topLevelItemCount(); ++i)
        ui->lvListView->topLevelItem(i)->setSelected(keys.contains(shown.at(i)));
    m_listHasFocus = true;
    ui->lvListView->setFocus();
}

void frmKatalog::invertSelection()
{
    QStringList shown;
    for (int i = 0; i < ui->lvListView->topLevelItemCount(); ++i)
        shown << ui->lvListView->topLevelItem(i)->data(0, KeyRole).toString();
    const QStringList k = m_catalog->explorer().invertSelection(shown, selectedListKeys());
    const QSet<QString> keys(k.begin(), k.end());
    for (int i = 0; i < ui->lvListView->topLevelItemCount(); ++i)
        ui->lvListView->topLevelItem(i)->setSelected(keys.contains(shown.at(i)));
    m_listHasFocus = true;
    ui->lvListView->setFocus();
}

void frmKatalog::print(bool alle, bool vorschau)
{
    QStringList selected;
    if (!alle) {
        selected = m_listHasFocus ? selectedListKeys() : QStringList();
        if (selected.isEmpty() && !treeKey().isEmpty())
            selected << treeKey();
    }
    m_catalog->Drucken(zol::PrinterF::instance(), alle, selected, vorschau);
}

void frmKatalog::listDoubleClicked(QTreeWidgetItem *item)
{
    if (!item)
        return;
    const QString key = item->data(0, KeyRole).toString();
    const zol::CatalogPick pick = m_catalog->doubleClick(key, m_picker);
    switch (pick.action) {
    case zol::CatalogPick::Nothing:
        break;
    case zol::CatalogPick::OpenFolder:
        selectFolder(key);
        break;
    case zol::CatalogPick::OpenProperties:
        m_listHasFocus = true;
        ui->lvListView->setCurrentItem(item, 0, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        eigenschaften();
        break;
    case zol::CatalogPick::Choose:
        m_tag = pick.Tag;
        m_interval = pick.interval;
        m_picker = false;
        hide();
        break;
    }
}

// ---------------------------------------------------------------------------
// Pop-ups and rights

QAction *frmKatalog::twin(QMenu *menu, const QString &name, QAction *source)
{
    QAction *a = menu->addAction(source->text());
    a->setObjectName(name);
    connect(a, &QAction::triggered, source, &QAction::trigger);
    m_twins.append(qMakePair(a, source));
    return a;
}

void frmKatalog::buildPopups()
{
    const QString ausgewaehlt = QStringLiteral("DruckenAusgewählt");

    m_popUpLv1 = new QMenu(this);
    m_popUpLv1->setObjectName(QStringLiteral("mnuPopUpLv1"));
    twin(m_popUpLv1, QStringLiteral("mnuPopUpLv1Eigenschaften"), ui->mnuFileEigenschaften);
    m_popUpLv1->addSeparator();
    twin(m_popUpLv1, QStringLiteral("mnuPopUpLv1Cut"), ui->mnuEditCut);
    twin(m_popUpLv1, QStringLiteral("mnuPopUpLv1Copy"), ui->mnuEditCopy);
    twin(m_popUpLv1, QStringLiteral("mnuPopUpLv1Paste"), ui->mnuEditPaste);
    m_popUpLv1->addSeparator();
    twin(m_popUpLv1, QStringLiteral("mnuPopUpLv1Delete"), ui->mnuFileDelete);
    twin(m_popUpLv1, QStringLiteral("mnuPopUpLv1Umbenennen"), ui->mnuFileRename);
    m_popUpLv1->addSeparator();
    twin(m_popUpLv1, QStringLiteral("mnuPopUpLv1") + ausgewaehlt, ui->mnuFileDruckenAusgewaehlt0);
    twin(m_popUpLv1, QStringLiteral("mnuPopUpLv1") + ausgewaehlt, ui->mnuFileDruckenAusgewaehlt1);

    m_popUpLv2 = new QMenu(this);
    m_popUpLv2->setObjectName(QStringLiteral("mnuPopUpLv2"));
    QMenu *neu = m_popUpLv2->addMenu(ui->mnuFileNew->title());
    neu->setObjectName(QStringLiteral("mnuPopUpLv2Neu"));
    twin(neu, QStringLiteral("mnuPopUpLv2NeuOrdner"), ui->mnuFileNewOrdner);
    twin(neu, QStringLiteral("mnuPopUpLv2NeuText"), ui->mnuFileNewText);
    twin(m_popUpLv2, QStringLiteral("mnuPopUpLv2Paste"), ui->mnuEditPaste);
    m_popUpLv2->addSeparator();
    twin(m_popUpLv2, QStringLiteral("mnuPopUpLv2SelectAll"), ui->mnuEditDSelectAll);
    twin(m_popUpLv2, QStringLiteral("mnuPopUpLv2InvertSelection"), ui->mnuEditInvertSelection);
    m_popUpLv2->addSeparator();
    twin(m_popUpLv2, QStringLiteral("mnuPopUpLv2Refresh"), ui->mnuViewRefresh);
    twin(m_popUpLv2, QStringLiteral("mnuPopUpLv2Eigenschaften"), ui->mnuFileEigenschaften);

    m_popUpTv = new QMenu(this);
    m_popUpTv->setObjectName(QStringLiteral("mnuPopUpTv"));
    twin(m_popUpTv, QStringLiteral("mnuPopUpTvEigenschaften"), ui->mnuFileEigenschaften);
    m_popUpTv->addSeparator();
    twin(m_popUpTv, QStringLiteral("mnuPopUpTvCut"), ui->mnuEditCut);
    twin(m_popUpTv, QStringLiteral("mnuPopUpTvCopy"), ui->mnuEditCopy);
    twin(m_popUpTv, QStringLiteral("mnuPopUpTvPaste"), ui->mnuEditPaste);
    m_popUpTv->addSeparator();
    twin(m_popUpTv, QStringLiteral("mnuPopUpTvDelete"), ui->mnuFileDelete);
    twin(m_popUpTv, QStringLiteral("mnuPopUpTvUmbenennen"), ui->mnuFileRename);
    m_popUpTv->addSeparator();
    twin(m_popUpTv, QStringLiteral("mnuPopUpTv") + ausgewaehlt, ui->mnuFileDruckenAusgewaehlt0);
    twin(m_popUpTv, QStringLiteral("mnuPopUpTv") + ausgewaehlt, ui->mnuFileDruckenAusgewaehlt1);

    // On the empty tree a new folder goes to the top level.
    m_popUpTv2 = new QMenu(this);
    m_popUpTv2->setObjectName(QStringLiteral("mnuPopUpTv2"));
    QAction *neuerOrdner = m_popUpTv2->addAction(tr("Ne&uer Ordner"));
    neuerOrdner->setObjectName(QStringLiteral("mnuPopUpTv2NeuerOrdner"));
    connect(neuerOrdner, &QAction::triggered, this, [this] { newFolder(true); });
    m_twins.append(qMakePair(neuerOrdner, ui->mnuFileNewOrdner));
}

void frmKatalog::showPopup(QTreeWidget *view, const QPoint &pos)
{
    QTreeWidgetItem *item = view->itemAt(pos);
    const QPoint global = view->viewport()->mapToGlobal(pos);
    if (view == ui->lvListView) {
        m_listHasFocus = true;
        if (item && !item->isSelected())
            ui->lvListView->setCurrentItem(item, 0, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        (item ? m_popUpLv1 : m_popUpLv2)->popup(global);
    } else {
        m_listHasFocus = false;
        if (item)
            ui->tvTreeView->setCurrentItem(item);
        (item ? m_popUpTv : m_popUpTv2)->popup(global);
    }
}

void frmKatalog::applyRights()
{
    const bool edit = m_catalog && m_catalog->mayEdit();
    for (QAction *a : {ui->mnuFileEigenschaften, ui->mnuFileNewOrdner, ui->mnuFileNewText, ui->mnuFileDelete,
                       ui->mnuFileRename, ui->mnuEditCut, ui->mnuEditCopy, ui->mnuEditPaste})
        a->setEnabled(edit);
    for (const auto &[popup, source] : m_twins)
        popup->setEnabled(source->isEnabled());
    const auto triggers = edit ? QAbstractItemView::EditKeyPressed : QAbstractItemView::NoEditTriggers;
    ui->tvTreeView->setEditTriggers(triggers);
    ui->lvListView->setEditTriggers(triggers);
}

// ---------------------------------------------------------------------------

CatalogWindows::CatalogWindows(zol::Session &session)
{
    for (const zol::CatalogKind &k : zol::catalogKinds()) {
        auto w = std::make_unique<frmKatalog>(session);
        w->Init(k.Name, k.Table, k.Title);
        m_windows.push_back(std::move(w));
    }
}

CatalogWindows::~CatalogWindows() = default;

frmKatalog *CatalogWindows::byTable(const QString &table) const
{
    for (const auto &w : m_windows)
        if (w->catalog().kind().Table.compare(table, Qt::CaseInsensitive) == 0)
            return w.get();
    return nullptr;
}
