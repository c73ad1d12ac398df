#include "EffortWindow.h"
#include "StatisticsGui.h"
#include "gui/core/SelectOnFocus.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/statistics/StatisticsExport.h"
#include <QApplication>
#include <QComboBox>
#include <QDate>
#include <QGridLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTreeWidget>

using namespace zol;
using namespace statgui;

namespace {
template <typename T> T *need(QWidget *w, const char *name)
{
    T *c = w->findChild<T *>(QString::fromUtf8(name));
    Q_ASSERT(c);
    return c;
}
const QString KeyRole = QStringLiteral("key");
}

EffortWindow::EffortWindow(Session &session, Entries entries, bool reported, QWidget *parent)
    : QWidget(parent), m_session(session), m_entries(std::move(entries)), m_reported(reported)
{
}

EffortWindow::~EffortWindow() = default;

const QList<AufwandSchluessel> &EffortWindow::offered() const
{
    return m_reported ? rueckgemeldetSchluessel() : geplantSchluessel();
}

void EffortWindow::init()
{
    m_auswertung = need<QComboBox>(this, "cmbAuswertung");
    m_quelle = need<QListWidget>(this, "lvQuelle");
    m_ziel = need<QListWidget>(this, "lvZiel");
    m_wocheVon = need<QLineEdit>(this, "txtWocheVon");
    m_wocheBis = need<QLineEdit>(this, "txtWocheBis");
    m_jahrVon = need<QLineEdit>(this, m_reported ? "txtJahr" : "txtJahrVon");
    m_jahrBis = m_reported ? m_jahrVon : need<QLineEdit>(this, "txtJahrBis");
    m_alle = need<QRadioButton>(this, "optAlle");
    m_ausgewaehlt = need<QRadioButton>(this, "optAusgewählt");
    m_list = need<QTreeWidget>(this, "lvStatistik");
    m_progress = need<QProgressBar>(this, "ProgressBar");
    if (auto *grid = qobject_cast<QGridLayout *>(layout()))
        grid->setColumnStretch(2, 2);   // the result list takes the widest share
    m_auswertung->addItems(m_reported ? rueckgemeldetAuswertungen() : geplantAuswertungen());
    for (QLineEdit *e : {m_wocheVon, m_wocheBis, m_jahrVon, m_jahrBis})
        zolgui::SelectOnFocus::install(e);

    connect(need<QPushButton>(this, "cmdRight"), &QPushButton::clicked, this, [this] { moveKey(m_quelle, m_ziel, false); });
    connect(need<QPushButton>(this, "cmdRightAll"), &QPushButton::clicked, this, [this] { moveKey(m_quelle, m_ziel, true); });
    connect(need<QPushButton>(this, "cmdLeft"), &QPushButton::clicked, this, [this] { moveKey(m_ziel, m_quelle, false); });
    connect(need<QPushButton>(this, "cmdLeftAll"), &QPushButton::clicked, this, [this] { moveKey(m_ziel, m_quelle, true); });
    connect(need<QPushButton>(this, "cmdUp"), &QPushButton::clicked, this, [this] { moveWithin(-1); });
    connect(need<QPushButton>(this, "cmdDown"), &QPushButton::clicked, this, [this] { moveWithin(1); });
    connect(m_quelle, &QListWidget::itemDoubleClicked, this, [this] { moveKey(m_quelle, m_ziel, false); });
    connect(m_ziel, &QListWidget::itemDoubleClicked, this, [this] { moveKey(m_ziel, m_quelle, false); });
    connect(m_ausgewaehlt, &QRadioButton::toggled, this, [this](bool on) {
        if (on)
            bindComponentKey();
    });
    connect(m_auswertung, &QComboBox::currentIndexChanged, this, &EffortWindow::SpaltenAufbauen);
    connect(need<QPushButton>(this, "cmdStatistik"), &QPushButton::clicked, this, &EffortWindow::Statistik);
    connect(need<QPushButton>(this, "cmdExportieren"), &QPushButton::clicked, this, &EffortWindow::Exportieren);
    connect(need<QPushButton>(this, "cmdExportierenExcel"), &QPushButton::clicked, this, &EffortWindow::ExportierenExcel);
}

void EffortWindow::zeig()
{
    m_auswertung->setCurrentIndex(0);
    const QString jahr = QString::number(QDate::currentDate().year());
    m_jahrVon->setText(jahr);
    m_jahrBis->setText(jahr);
    m_wocheVon->setText(QStringLiteral("01"));
    m_wocheBis->setText(QStringLiteral("52"));
    m_quelle->clear();
    m_ziel->clear();
    for (const AufwandSchluessel &k : offered()) {
        auto *it = new QListWidgetItem(k.text, m_quelle);
        it->setData(Qt::UserRole, k.key);
    }
    m_quelle->setCurrentRow(0);
    m_alle->setChecked(true);
    SpaltenAufbauen();
    show();
    raise();
    activateWindow();
}

QStringList EffortWindow::chosenKeys() const
{
    QStringList keys;
    for (int i = 0; i < m_ziel->count(); ++i)
        keys << m_ziel->item(i)->data(Qt::UserRole).toString();
    return keys;
}

void EffortWindow::SpaltenAufbauen()
{
    QStringList captions;
    for (int i = 0; i < m_ziel->count(); ++i)
        captions << m_ziel->item(i)->text();
    captions << wertSpalte(Auswertung(qMax(0, m_auswertung->currentIndex())));
    fillList(m_list, captions, {});
}

void EffortWindow::moveKey(QListWidget *from, QListWidget *to, bool all)
{
    const QString component = offered().first().key;
    const bool bound = m_ausgewaehlt->isChecked() && from == m_ziel;
    QList<QListWidgetItem *> items;
    if (all)
        for (int i = 0; i < from->count(); ++i)
            items << from->item(i);
    else if (from->currentItem())
        items << from->currentItem();
    for (QListWidgetItem *it : items) {
        // With the selected components the component stays at the head.
        if (bound && it->data(Qt::UserRole).toString() == component)
            continue;
        to->addItem(from->takeItem(from->row(it)));
    }
    if (!items.isEmpty())
        to->setCurrentRow(to->count() - 1);
    SpaltenAufbauen();
}

void EffortWindow::moveWithin(int step)
{
    const int row = m_ziel->currentRow();
    const int other = row + step;
    if (row < 0 || other < 0 || other >= m_ziel->count())
        return;
    QListWidgetItem *it = m_ziel->takeItem(row);
    m_ziel->insertItem(other, it);
    m_ziel->setCurrentRow(other);
    SpaltenAufbauen();
}

void EffortWindow::bindComponentKey()
{
    const QString component = offered().first().key;
    for (QListWidget *list : {m_quelle, m_ziel})
        for (int i = 0; i < list->count(); ++i)
            if (list->item(i)->data(Qt::UserRole).toString() == component) {
                m_ziel->insertItem(0, list->takeItem(i));
                SpaltenAufbauen();
                return;
            }
}

void EffortWindow::Statistik()
{
    QString von = m_wocheVon->text(), bis = m_wocheBis->text();
    const QString &range = m_reported ? MsgNurWochenSind : MsgNurWochen;
    // Planned effort compares the weeks across years; reported effort, in one year, as text.
    PeriodCheck check = checkWeeks(von, bis, range, MsgBisNichtKleiner);
    m_wocheVon->setText(von);
    m_wocheBis->setText(bis);
    QString jahrVon = m_jahrVon->text(), jahrBis = m_jahrBis->text();
    if (!m_reported && check.field == PeriodField::WocheBis && check.message == MsgBisNichtKleiner)
        check = {};
    if (check.ok())
        check = checkJahr(jahrVon, PeriodField::JahrVon);
    if (check.ok() && !m_reported)
        check = checkJahr(jahrBis, PeriodField::JahrBis);
    if (check.ok()) {
        m_jahrVon->setText(jahrVon);
        m_jahrBis->setText(jahrBis);
    }
    const WochenBereich bereich{jahrVon.toInt(), weekNumber(von), jahrBis.toInt(), weekNumber(bis)};
    if (check.ok() && !m_reported
        && wochenIndex(bereich.jahrBis, bereich.wocheBis) < wochenIndex(bereich.jahrVon, bereich.wocheVon))
        check = {MsgBisNichtKleiner, PeriodField::WocheBis};
    if (!check.ok()) {
        ZeigeMeldung(check.message, Style::Exclamation);
        focusField(check.field == PeriodField::WocheVon ? m_wocheVon
                   : check.field == PeriodField::WocheBis ? m_wocheBis
                   : check.field == PeriodField::JahrBis ? m_jahrBis : m_jahrVon);
        return;
    }
    AufwandParameter p;
    p.auswertung = Auswertung(m_auswertung->currentIndex());
    p.schluessel = chosenKeys();
    p.alle = m_alle->isChecked();
    if (!p.alle && m_entries)
        p.entries = m_entries();
    QApplication::setOverrideCursor(Qt::WaitCursor);
    m_list->clear();
    try {
        std::optional<AufwandErgebnis> r;
        if (m_reported)
            r = rueckgemeldeterAufwand(m_session.db(), p, jahrVon, von, bis, pump(m_progress));
        else
            r = geplanterAufwand(m_session.db(), p, bereich, pump(m_progress));
        QApplication::restoreOverrideCursor();
        if (!r) {
            ZeigeMeldung(MsgKeineVerbuchten, Style::Exclamation);
            return;
        }
        fillList(m_list, r->spalten, r->zeilen);
        ZeigeMeldung(m_reported ? QStringLiteral("Statistik wurde erstellt") : QStringLiteral("Die Statistik wurde erstellt"),
                     Style::Information);
    } catch (const Fault &f) {
        QApplication::restoreOverrideCursor();
        ZeigeMeldung(QStringLiteral("Es ist ein Fehler aufgetreten. Fehler Nummer: %1  Beschreibung: %2")
                         .arg(f.number())
                         .arg(f.description()),
                     Style::Critical);
    }
}

void EffortWindow::Exportieren()
{
    QStringList captions;
    for (int c = 0; c < m_list->columnCount(); ++c)
        captions << m_list->headerItem()->text(c);
    exportToDatabase(this, m_reported ? QStringLiteral("ZOL_Rueckgemeldet.db") : QStringLiteral("ZOL_GeplanterAufwand.db"),
                     m_auswertung->currentText(), false, textFields(captions), listRows(m_list));
}

void EffortWindow::ExportierenExcel()
{
    QStringList captions;
    for (int c = 0; c < m_list->columnCount(); ++c)
        captions << m_list->headerItem()->text(c);
    exportToWorkbook(this, m_reported ? QStringLiteral("ZOL_Rueckgemeldet.xlsx") : QStringLiteral("ZOL_GeplanterAufwand.xlsx"),
                     m_auswertung->currentText().left(31), captions, listRows(m_list));
}
