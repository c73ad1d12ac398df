#include "frmProtokollTabelle.h"
#include "ui_frmProtokollTabelle.h"

frmProtokollTabelle::frmProtokollTabelle(QWidget *parent)
    : QDialog(parent), ui(std::make_unique<Ui::frmProtokollTabelle>())
{
    ui->setupUi(this);
    connect(ui->cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(ui->cmdAbbrechen, &QPushButton::clicked, this, &QDialog::reject);
    connect(ui->lstTabellen, &QListWidget::itemDoubleClicked, this, &QDialog::accept);
}

frmProtokollTabelle::~frmProtokollTabelle() = default;

QString frmProtokollTabelle::zeig(const QStringList &tables)
{
    ui->lstTabellen->clear();
    ui->lstTabellen->addItems(tables);
    if (!tables.isEmpty())
        ui->lstTabellen->setCurrentRow(0);
    ui->lstTabellen->setFocus();
    const bool ok = exec() == QDialog::Accepted && ui->lstTabellen->currentItem();
    Tag = ok ? QStringLiteral("OK") : QStringLiteral("Cancel");
    return ok ? ui->lstTabellen->currentItem()->text() : QString();
}
