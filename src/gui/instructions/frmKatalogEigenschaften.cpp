#include "frmKatalogEigenschaften.h"
#include "gui/core/SelectOnFocus.h"
#include "ui_frmKatalogEigenschaften.h"
#include <QLabel>
#include <QLineEdit>

frmKatalogEigenschaften::frmKatalogEigenschaften(zol::Catalog &catalog, QWidget *parent)
    : QDialog(parent), ui(std::make_unique<Ui::frmKatalogEigenschaften>()), m_catalog(catalog)
{
    ui->setupUi(this);
    setWindowTitle(tr("Eigenschaften"));
    ui->layoutProps->setColumnStretch(1, 1);
    setMinimumWidth(460);
    connect(ui->cmdOk, &QPushButton::clicked, this, &frmKatalogEigenschaften::cmdOk_Click);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &frmKatalogEigenschaften::cmdCancel_Click);
}

frmKatalogEigenschaften::~frmKatalogEigenschaften() = default;

void frmKatalogEigenschaften::clearRows()
{
    qDeleteAll(m_labels);
    qDeleteAll(m_boxes);
    m_labels.clear();
    m_boxes.clear();
}

bool frmKatalogEigenschaften::fill(const QString &key)
{
    clearRows();
    m_key = key;
    m_tag = QStringLiteral("Cancel");
    const std::optional<QList<zol::CatalogProperty>> props = m_catalog.Eigenschaften(key);
    if (!props)
        return false;
    for (int i = 0; i < props->size(); ++i) {
        const zol::CatalogProperty &p = props->at(i);
        auto *label = new QLabel(p.header, this);
        label->setObjectName(QStringLiteral("lblProp"));
        label->setProperty("Index", i);
        auto *box = new QLineEdit(this);
        box->setObjectName(QStringLiteral("txtProp"));
        box->setProperty("Index", i);
        if (p.size > 0)
            box->setMaxLength(p.size);
        box->setText(p.value);
        box->setCursorPosition(0);
        label->setBuddy(box);
        zolgui::SelectOnFocus::install(box);
        ui->layoutProps->addWidget(label, i, 0);
        ui->layoutProps->addWidget(box, i, 1);
        m_labels << label;
        m_boxes << box;
    }
    if (!m_boxes.isEmpty())
        m_boxes.first()->setFocus();
    adjustSize();
    return true;
}

bool frmKatalogEigenschaften::zeig(const QString &key)
{
    if (!fill(key))
        return false;
    exec();
    return true;
}

void frmKatalogEigenschaften::cmdOk_Click()
{
    QStringList values;
    for (const QLineEdit *box : m_boxes)
        values << box->text();
    m_catalog.saveEigenschaften(m_key, values);
    m_tag = QStringLiteral("OK");
    accept();
}

void frmKatalogEigenschaften::cmdCancel_Click()
{
    m_tag = QStringLiteral("Cancel");
    reject();
}
