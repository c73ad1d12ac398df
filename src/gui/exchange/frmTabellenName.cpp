#include "frmTabellenName.h"
#include "ui_frmTabellenName.h"

frmTabellenName::frmTabellenName(QWidget *parent) : QDialog(parent), ui(std::make_unique<Ui::frmTabellenName>())
{
    ui->setupUi(this);
    ui->cmdOK->setDefault(true);
    connect(ui->cmdOK, &QPushButton::clicked, this, [this] {
        Tag = QStringLiteral("OK");
        accept();
    });
    connect(ui->cmdAbbrechen, &QPushButton::clicked, this, &QDialog::reject);
}

frmTabellenName::~frmTabellenName() = default;

QString frmTabellenName::zeig(const QString &vorschlag)
{
    Tag = QStringLiteral("Cancel");
    ui->txtTabellenName->setText(vorschlag);
    ui->txtTabellenName->selectAll();
    ui->txtTabellenName->setFocus();
    exec();
    return Tag == QLatin1String("OK") ? ui->txtTabellenName->text().trimmed() : QString();
}
