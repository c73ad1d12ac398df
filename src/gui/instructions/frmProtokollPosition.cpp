#include "frmProtokollPosition.h"
#include "ui_frmProtokollPosition.h"
#include "ProtocolModel.h"
#include "zol/core/Schema.h"
#include "zol/core/Sql.h"
#include <QApplication>
#include <QHash>
#include <QRegularExpressionValidator>
#include <QSqlQuery>

using zol::InstructionRow;

namespace {
int sizeOf(const char *field)
{
    return zol::Schema::Size(zol::TabPositionen, QString::fromLatin1(field));
}

// Decimals are kept with a comma: a typed or pasted point becomes one.
class DecimalCommaValidator : public QRegularExpressionValidator {
public:
    explicit DecimalCommaValidator(QObject *parent)
        : QRegularExpressionValidator(QRegularExpression(QStringLiteral("\\d*,?\\d*")), parent)
    {
    }
    State validate(QString &input, int &pos) const override
    {
        input.replace(QLatin1Char('.'), QLatin1Char(','));
        return QRegularExpressionValidator::validate(input, pos);
    }
};

// A combo box of free text stops at the field's size.
void limit(QComboBox *box, const char *field)
{
    const int size = sizeOf(field);
    if (size > 0 && box->lineEdit())
        box->lineEdit()->setMaxLength(size);
}
}

frmProtokollPosition::frmProtokollPosition(zol::Session &session, QWidget *parent)
    : QDialog(parent), ui(std::make_unique<Ui::frmProtokollPosition>()), m_session(session)
{
    ui->setupUi(this);
    ui->cmdAusfuehrender->setObjectName(QStringLiteral("cmdAusführender"));
    setModal(true);

    auto *digits = new QRegularExpressionValidator(QRegularExpression(QStringLiteral("\\d*")), this);
    auto *decimal = new DecimalCommaValidator(this);
    for (QLineEdit *e : {ui->txtObjekt, ui->txtAnweisung, ui->txtAnzahlPersonen})
        e->setValidator(digits);
    for (QLineEdit *e : {ui->txtPlanzeit, ui->txtMaterialMenge})
        e->setValidator(decimal);
    ui->txtAnweisung->setMaxLength(sizeOf("Anweisung"));
    ui->txtAnzahlPersonen->setMaxLength(sizeOf("AnzahlPersonen"));
    ui->txtMaterialMenge->setMaxLength(sizeOf("Materialmenge"));
    ui->txtObjekt->setMaxLength(sizeOf("Objekt"));
    ui->txtPlanzeit->setMaxLength(sizeOf("Planzeit"));
    ui->txtText->setMaxLength(sizeOf("Text"));
    limit(ui->dbcGewerk, "Ausfuehrender");
    limit(ui->dbcMaterialCode, "Materialcode");
    limit(ui->dbcSicherheitshinweis, "Sicherheitshinweis");

    // The numbers show their masks when they are left.
    connect(ui->txtObjekt, &QLineEdit::editingFinished, this,
            [this] { ui->txtObjekt->setText(zol::formatMask(ui->txtObjekt->text(), QStringLiteral("000000"))); });
    connect(ui->txtAnweisung, &QLineEdit::editingFinished, this,
            [this] { ui->txtAnweisung->setText(zol::formatMask(ui->txtAnweisung->text(), QStringLiteral("0000"))); });
    connect(ui->cmdUp, &QToolButton::clicked, this, [this] { step(1); });
    connect(ui->cmdDown, &QToolButton::clicked, this, [this] { step(-1); });
    connect(ui->cmdText, &QPushButton::clicked, this, [this] { pick(QStringLiteral("Texte"), ui->txtText); });
    connect(ui->cmdAusfuehrender, &QPushButton::clicked, this, [this] { pick(QStringLiteral("Gewerke"), ui->dbcGewerk); });
    connect(ui->cmdSicherheitshinweis, &QPushButton::clicked, this,
            [this] { pick(QStringLiteral("SHinweise"), ui->dbcSicherheitshinweis); });
    connect(ui->cmdMaterialCode, &QPushButton::clicked, this,
            [this] { pick(QStringLiteral("Material"), ui->dbcMaterialCode); });
    connect(ui->cmdOk, &QPushButton::clicked, this, &frmProtokollPosition::Ok);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
}

frmProtokollPosition::~frmProtokollPosition() = default;

void frmProtokollPosition::step(int delta)
{
    const int n = qBound(1, ui->txtAnzahlPersonen->text().toInt() + delta, 999);
    ui->txtAnzahlPersonen->setText(QString::number(n));
}

void frmProtokollPosition::pick(const QString &table, QWidget *target)
{
    if (!m_picker)
        return;
    const auto [text, interval] = m_picker(table);
    if (text.isEmpty())
        return;
    if (auto *edit = qobject_cast<QLineEdit *>(target))
        edit->setText(text);
    else if (auto *box = qobject_cast<QComboBox *>(target))
        box->setEditText(text);
    Q_UNUSED(interval)
}

void frmProtokollPosition::fillCombos()
{
    const QSqlDatabase db = m_session.db();
    auto load = [&db](QComboBox *box, const QString &table) {
        box->clear();
        QSqlQuery q = zol::exec(db, QStringLiteral("select [Text] from %1 WHERE FileTyp = 'F' group by [Text]").arg(zol::ident(table)));
        while (q.next())
            box->addItem(q.value(0).toString());
    };
    load(ui->dbcGewerk, QStringLiteral("Gewerke"));
    load(ui->dbcMaterialCode, QStringLiteral("Material"));
    load(ui->dbcSicherheitshinweis, QStringLiteral("SHinweise"));
    ui->dbcIntervall->clear();
    ui->dbcIntervall->addItems(zol::IntervalTable(db).codes());
}

void frmProtokollPosition::fill(const zol::PositionForm &f)
{
    ui->txtObjekt->setText(f.Objekt);
    ui->txtAnweisung->setText(f.Anweisung);
    ui->txtText->setText(f.Text);
    ui->dbcGewerk->setEditText(f.Gewerk);
    ui->cmbBetriebszustand->setCurrentIndex(qMax(0, int(zol::positionStates().indexOf(f.Betriebszustand))));
    ui->txtAnzahlPersonen->setText(f.AnzahlPersonen);
    ui->dbcSicherheitshinweis->setEditText(f.Sicherheitshinweis);
    ui->dbcIntervall->setEditText(f.Intervall);
    ui->txtPlanzeit->setText(f.Planzeit);
    ui->dbcMaterialCode->setEditText(f.MaterialCode);
    ui->txtMaterialMenge->setText(f.MaterialMenge);
}

zol::PositionForm frmProtokollPosition::form() const
{
    zol::PositionForm f;
    f.Objekt = ui->txtObjekt->text();
    f.Anweisung = ui->txtAnweisung->text();
    f.Text = ui->txtText->text();
    f.Gewerk = ui->dbcGewerk->currentText();
    f.Betriebszustand = ui->cmbBetriebszustand->currentText();
    f.AnzahlPersonen = ui->txtAnzahlPersonen->text();
    f.Sicherheitshinweis = ui->dbcSicherheitshinweis->currentText();
    f.Intervall = ui->dbcIntervall->currentText();
    f.Planzeit = ui->txtPlanzeit->text();
    f.MaterialCode = ui->dbcMaterialCode->currentText();
    f.MaterialMenge = ui->txtMaterialMenge->text();
    return f;
}

bool frmProtokollPosition::prepare(frmProtokoll &grid, int mode)
{
    if (!grid.model() || !grid.leaveRow())
        return false;
    m_grid = &grid;
    m_mode = mode;
    m_rules = std::make_unique<zol::PositionDialogRules>(m_session.db(), grid.Tag(), m_session.login().Level);
    fillCombos();
    m_line = grid.currentLine();
    const zol::PositionProposal p = zol::fillPositionForm(grid.model()->rows(), m_line, mode);
    fill(p.form);
    ui->txtObjekt->setFocus();
    return true;
}

bool frmProtokollPosition::zeig(frmProtokoll &grid, int mode)
{
    if (!prepare(grid, mode))
        return false;
    return exec() == QDialog::Accepted;
}

void frmProtokollPosition::Ok()
{
    if (!m_grid || !m_rules)
        return;
    zol::PositionForm f = form();
    const QList<InstructionRow> rows = m_grid->model()->rows();
    const InstructionRow *current = m_line >= 0 && m_line < rows.size() ? &rows.at(m_line) : nullptr;
    InstructionRow written;
    if (!m_rules->ok(f, m_mode, rows, current, &written)) {
        // The focus goes to the control the refusal is about.
        const QHash<QString, QWidget *> controls{
            {QStringLiteral("Objekt"), ui->txtObjekt},
            {QStringLiteral("Anweisung"), ui->txtAnweisung},
            {QStringLiteral("Text"), ui->txtText},
            {QStringLiteral("Ausfuehrender"), ui->dbcGewerk},
            {QStringLiteral("Betriebszustand"), ui->cmbBetriebszustand},
            {QStringLiteral("AnzahlPersonen"), ui->txtAnzahlPersonen},
            {QStringLiteral("Sicherheitshinweis"), ui->dbcSicherheitshinweis},
            {QStringLiteral("Intervall"), ui->dbcIntervall},
            {QStringLiteral("Planzeit"), ui->txtPlanzeit},
            {QStringLiteral("Materialcode"), ui->dbcMaterialCode},
            {QStringLiteral("Materialmenge"), ui->txtMaterialMenge}};
        if (QWidget *w = controls.value(m_rules->refusedField()))
            w->setFocus();
        return;
    }
    fill(f);
    m_grid->reloadAt(written.Objekt, written.Anweisung);
    accept();
}
