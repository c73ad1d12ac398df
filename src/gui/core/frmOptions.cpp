#include "frmOptions.h"
#include "ui_frmOptions.h"
#include "zol/core/Options.h"
#include <QCheckBox>
#include <QSignalBlocker>

namespace {
constexpr int FeldRole = Qt::UserRole;
}

frmOptions::frmOptions(zol::Session &session, QWidget *parent)
    : QDialog(parent), ui(std::make_unique<Ui::frmOptions>()), m_session(session)
{
    ui->setupUi(this);

    // Two columns of field boxes beside the list of displayed columns.
    const int rows = (zol::SpaltenAnzahl + 1) / 2;
    for (const zol::SpaltenFeld &f : zol::spaltenTabelle()) {
        auto *box = new QCheckBox(tr(f.optionCaption.toUtf8().constData()), ui->fraProtokollKopf);
        box->setObjectName(QStringLiteral("chkSpalten_%1").arg(f.index));
        box->setProperty("feldIndex", f.index);
        ui->gridSpalten->addWidget(box, (f.index - 1) % rows, (f.index - 1) / rows);
        connect(box, &QCheckBox::toggled, this, [this, box](bool on) { onSpaltenToggled(box, on); });
        m_chkSpalten << box;
    }
    ui->gridSpalten->setRowStretch(rows, 1);

    int i = 0;
    for (const zol::FeldWahl &w : zol::kopfwechselWahl()) {
        auto *box = new QCheckBox(tr(w.caption.toUtf8().constData()), ui->fraAuftragsdruck);
        box->setObjectName(QStringLiteral("chkKopfwechsel_%1").arg(i++));
        ui->layoutKopfwechsel->addWidget(box);
        m_chkKopfwechsel << box;
    }

    i = 0;
    for (const zol::FeldWahl &w : zol::auftragsortierungWahl()) {
        auto *box = new QCheckBox(tr(w.caption.toUtf8().constData()), ui->fraAuftragsortierung);
        box->setObjectName(QStringLiteral("chkAuftragsortierung_%1").arg(i));
        box->setProperty("wahl", i++);
        ui->boxAuftragsortierung->addWidget(box);
        connect(box, &QCheckBox::toggled, this, [this, box](bool on) { onSortierungToggled(box, on); });
        m_chkAuftragsortierung << box;
    }
    ui->boxAuftragsortierung->addStretch(1);

    connect(ui->cmdUp, &QPushButton::clicked, this, [this] { moveLine(ui->lstSpalten, -1); });
    connect(ui->cmdDown, &QPushButton::clicked, this, [this] { moveLine(ui->lstSpalten, 1); });
    connect(ui->cmdAuftragsortierungUp, &QPushButton::clicked, this, [this] { moveLine(ui->lvAuftragsortierung, -1); });
    connect(ui->cmdAuftragsortierungDown, &QPushButton::clicked, this,
            [this] { moveLine(ui->lvAuftragsortierung, 1); });
    connect(ui->cmdApply, &QPushButton::clicked, this, &frmOptions::apply);
    connect(ui->cmdOk, &QPushButton::clicked, this, &frmOptions::onOk);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &frmOptions::reject);
    ui->cmdOk->setDefault(true);

    fillFromState();
}

frmOptions::~frmOptions() = default;

void frmOptions::fillFromState()
{
    const zol::OptionState &st = m_session.options();

    ui->lstSpalten->clear();
    for (QCheckBox *box : m_chkSpalten) {
        QSignalBlocker block(box);
        box->setChecked(false);
    }
    for (int index : st.gSpaltenIndex) {
        const zol::SpaltenFeld *f = zol::spaltenFeld(index);
        QCheckBox *box = f ? m_chkSpalten.at(index - 1) : nullptr;
        if (!box || box->isChecked())
            continue;
        QSignalBlocker block(box);
        box->setChecked(true);
        auto *item = new QListWidgetItem(box->text(), ui->lstSpalten);
        item->setData(FeldRole, index);
    }

    const QList<bool> kopfwechsel = zol::kopfwechselGewaehlt(st);
    for (int i = 0; i < m_chkKopfwechsel.size(); ++i)
        m_chkKopfwechsel.at(i)->setChecked(kopfwechsel.value(i));

    ui->lvAuftragsortierung->clear();
    for (QCheckBox *box : m_chkAuftragsortierung) {
        QSignalBlocker block(box);
        box->setChecked(false);
    }
    for (int i : zol::auftragsortierungGewaehlt(st)) {
        QCheckBox *box = m_chkAuftragsortierung.at(i);
        QSignalBlocker block(box);
        box->setChecked(true);
        auto *item = new QTreeWidgetItem(ui->lvAuftragsortierung, {box->text()});
        item->setData(0, FeldRole, zol::auftragsortierungWahl().at(i).feld);
    }

    (st.gDruckFormat == 2 ? ui->optDruckFormat_1 : ui->optDruckFormat_0)->setChecked(true);
}

void frmOptions::onSpaltenToggled(QCheckBox *box, bool on)
{
    const int index = box->property("feldIndex").toInt();
    if (on) {
        auto *item = new QListWidgetItem(box->text(), ui->lstSpalten);
        item->setData(FeldRole, index);
        return;
    }
    for (int r = ui->lstSpalten->count() - 1; r >= 0; --r)
        if (ui->lstSpalten->item(r)->data(FeldRole).toInt() == index)
            delete ui->lstSpalten->takeItem(r);
}

void frmOptions::onSortierungToggled(QCheckBox *box, bool on)
{
    const QString feld = zol::auftragsortierungWahl().at(box->property("wahl").toInt()).feld;
    if (on) {
        auto *item = new QTreeWidgetItem(ui->lvAuftragsortierung, {box->text()});
        item->setData(0, FeldRole, feld);
        return;
    }
    for (int r = ui->lvAuftragsortierung->topLevelItemCount() - 1; r >= 0; --r)
        if (ui->lvAuftragsortierung->topLevelItem(r)->data(0, FeldRole).toString() == feld)
            delete ui->lvAuftragsortierung->takeTopLevelItem(r);
}

void frmOptions::moveLine(QListWidget *list, int delta)
{
    const int row = list->currentRow();
    const int to = row + delta;
    if (row < 0 || to < 0 || to >= list->count())
        return;
    QListWidgetItem *item = list->takeItem(row);
    list->insertItem(to, item);
    list->setCurrentRow(to);
}

void frmOptions::moveLine(QTreeWidget *list, int delta)
{
    QTreeWidgetItem *item = list->currentItem();
    const int row = item ? list->indexOfTopLevelItem(item) : -1;
    const int to = row + delta;
    if (row < 0 || to < 0 || to >= list->topLevelItemCount())
        return;
    list->takeTopLevelItem(row);
    list->insertTopLevelItem(to, item);
    list->setCurrentItem(item);
}

void frmOptions::apply()
{
    zol::OptionState st = m_session.options();

    QList<int> spalten;
    for (int r = 0; r < ui->lstSpalten->count(); ++r)
        spalten << ui->lstSpalten->item(r)->data(FeldRole).toInt();
    zol::setzeSpalten(st, spalten);

    QList<bool> kopfwechsel;
    for (QCheckBox *box : m_chkKopfwechsel)
        kopfwechsel << box->isChecked();
    zol::setzeKopfwechsel(st, kopfwechsel);

    st.gAuftragsortierung.clear();
    for (int r = 0; r < ui->lvAuftragsortierung->topLevelItemCount(); ++r)
        st.gAuftragsortierung << ui->lvAuftragsortierung->topLevelItem(r)->data(0, FeldRole).toString();

    st.gDruckFormat = ui->optDruckFormat_1->isChecked() ? 2 : 1;

    if (zol::spaltenGeaendert(m_session.options(), st))
        m_optionsUpdated = true;
    m_session.options() = st;
    zol::SpeichereOptionen(m_session);
}

void frmOptions::onOk()
{
    apply();
    m_tag = QStringLiteral("Ok");
    accept();
}

void frmOptions::reject()
{
    m_tag = QStringLiteral("Cancel");
    QDialog::reject();
}
