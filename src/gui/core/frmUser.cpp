#include "frmUser.h"
#include "SelectOnFocus.h"
#include "ui_frmUser.h"
#include "zol/core/Schema.h"
#include <QInputDialog>

namespace {
const QString maskedPassword = QStringLiteral("••••••");
}

frmUser::frmUser(zol::Session &session, QWidget *parent)
    : QDialog(parent), m_session(session), ui(std::make_unique<Ui::frmUser>())
{
    ui->setupUi(this);
    ui->txtPasswort->setObjectName(QStringLiteral("txtPaßwort"));
    ui->cmdLoeschen->setObjectName(QStringLiteral("cmdLöschen"));
    ui->txtName->setMaxLength(zol::Schema::Size(QStringLiteral("User"), QStringLiteral("Name")));
    ui->cmbLevel->addItems(zol::levelChoices());
    ui->lvListView->setColumnWidth(0, 130);
    ui->lvListView->setColumnWidth(1, 80);
    zolgui::SelectOnFocus::install(ui->txtName);
    zolgui::SelectOnFocus::install(ui->txtPasswort);
    m_askTrade = [this] { return askTradeBox(); };

    connect(ui->lvListView, &QTreeWidget::currentItemChanged, this, &frmUser::showSelected);
    connect(ui->cmdNeu, &QPushButton::clicked, this, &frmUser::cmdNeu_Click);
    connect(ui->cmdUpdate, &QPushButton::clicked, this, &frmUser::cmdUpdate_Click);
    connect(ui->cmdLoeschen, &QPushButton::clicked, this, &frmUser::cmdLoeschen_Click);

    fillList(m_session.login().UserName);
}

frmUser::~frmUser() = default;

void frmUser::zeig()
{
    // Modal: the main window owns the object only for the length of this call.
    exec();
}

void frmUser::fillList(const QString &select)
{
    ui->lvListView->clear();
    QTreeWidgetItem *first = nullptr;
    QTreeWidgetItem *match = nullptr;
    for (const zol::UserRow &row : zol::listUsers(m_session.db())) {
        auto *item = new QTreeWidgetItem(ui->lvListView, {row.Name, maskedPassword, zol::displayLevel(row.Level)});
        item->setData(0, Qt::UserRole, row.Level);
        if (!first)
            first = item;
        if (!match && row.Name.compare(select, Qt::CaseInsensitive) == 0)
            match = item;
    }
    ui->lvListView->setCurrentItem(match ? match : first);
    showSelected();
}

void frmUser::showSelected()
{
    const QTreeWidgetItem *item = ui->lvListView->currentItem();
    ui->txtName->setText(item ? item->text(0) : QString());
    ui->txtPasswort->clear();
    ui->cmbLevel->setCurrentIndex(
        item ? ui->cmbLevel->findText(zol::comboLevel(item->data(0, Qt::UserRole).toString())) : -1);
}

QString frmUser::selectedName() const
{
    const QTreeWidgetItem *item = ui->lvListView->currentItem();
    return item ? item->text(0) : QString();
}

std::optional<QString> frmUser::askTradeBox()
{
    bool ok = false;
    const QString trade = QInputDialog::getText(
        this, tr("Eingabe Gewerk"), tr("Bitte geben Sie das Gewerk ein, welches der 'Werker' bearbeiten darf"),
        QLineEdit::Normal, QString(), &ok);
    if (!ok)
        return std::nullopt;
    return trade;
}

void frmUser::afterEdit(const zol::UserEdit &edit, const QString &select)
{
    if (!edit.written)
        return;
    fillList(select);
}

void frmUser::cmdNeu_Click()
{
    const QString name = ui->txtName->text();
    afterEdit(zol::newUser(m_session, name, ui->txtPasswort->text(), ui->cmbLevel->currentText(), m_askTrade), name);
}

void frmUser::cmdUpdate_Click()
{
    const QString name = ui->txtName->text();
    const zol::UserEdit edit = zol::updateUser(m_session, selectedName(), name, ui->txtPasswort->text(),
                                               ui->cmbLevel->currentText(), m_askTrade);
    afterEdit(edit, name);
    if (edit.ownEntry)
        Q_EMIT ownEntryChanged(edit.menus.mnuViewUser, edit.menus.mnuViewPasswort);
}

void frmUser::cmdLoeschen_Click()
{
    afterEdit(zol::deleteUser(m_session, selectedName()), QString());
}
