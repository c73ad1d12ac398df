#include "StatisticsGui.h"
#include "gui/exchange/frmTabellenName.h"
#include "gui/core/SelectOnFocus.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/core/OutputFile.h"
#include "zol/statistics/StatisticsExport.h"
#include <QApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QProgressBar>
#include <QTreeWidget>
#include <QUrl>

using namespace zol;

namespace statgui {

namespace {
FileChooser &chooser()
{
    static FileChooser c;
    return c;
}

class DigitsFilter : public QObject {
public:
    using QObject::QObject;
    bool eventFilter(QObject *o, QEvent *e) override
    {
        if (e->type() != QEvent::KeyPress)
            return false;
        auto *k = static_cast<QKeyEvent *>(e);
        if (k->key() == Qt::Key_Backspace || k->key() == Qt::Key_Tab || k->key() == Qt::Key_Backtab
            || k->key() == Qt::Key_Return || k->key() == Qt::Key_Enter || k->key() == Qt::Key_Escape
            || k->key() == Qt::Key_Left || k->key() == Qt::Key_Right || k->key() == Qt::Key_Delete
            || (k->modifiers() & (Qt::AltModifier | Qt::ControlModifier)))
            return false;
        const QString t = k->text();
        if (t.size() == 1 && t.at(0).isDigit() && t.at(0).unicode() < 128)
            return false;
        QApplication::beep();
        return true;
    }
};
}

void setFileChooser(FileChooser c)
{
    chooser() = std::move(c);
}

QString chooseNewFile(QWidget *parent, const QString &filter, const QString &proposed)
{
    const QString suffix = QFileInfo(proposed).suffix();
    QString start = proposed;
    for (;;) {
        QString path = chooser() ? chooser()(start)
                                 : QFileDialog::getSaveFileName(parent, QObject::tr("Speichern unter"), start, filter,
                                                                nullptr, QFileDialog::DontConfirmOverwrite);
        if (path.isEmpty())
            return {};
        if (QFileInfo(path).suffix().isEmpty())
            path += QLatin1Char('.') + suffix;
        const QString refusal = outputRefusal(path);
        if (!refusal.isEmpty())
            ZeigeMeldung(refusal, Style::Exclamation);
        else if (QFileInfo::exists(path))
            ZeigeMeldung(MsgDateiExistiert, Style::Exclamation);
        else
            return path;
        start = path;
        if (chooser())
            return {};   // a scripted chooser answers once
    }
}

static void faultMessage(const Fault &f)
{
    ZeigeMeldung(QStringLiteral("Es ist ein Fehler aufgetreten - Fehler Nummer: %1  Beschreibung: %2")
                     .arg(f.number())
                     .arg(f.description()),
                 Style::Critical);
}

bool exportToDatabase(QWidget *parent, const QString &proposedFile, const QString &tableName, bool askName,
                      const QList<FieldDef> &fields, const QList<QStringList> &rows)
{
    if (rows.isEmpty()) {
        ZeigeMeldung(MsgKeineStatistikdaten, Style::Exclamation);
        return false;
    }
    const QString path = chooseNewFile(parent, QObject::tr("Datenbank (*.db)"), proposedFile);
    if (path.isEmpty()) {
        ZeigeMeldung(MsgKeinExport, Style::Exclamation);
        return false;
    }
    QString name = tableName;
    for (;;) {
        if (askName) {
            frmTabellenName dialog(parent);
            name = dialog.zeig(name);
            if (name.isEmpty()) {
                ZeigeMeldung(MsgKeinExport, Style::Exclamation);
                return false;
            }
        }
        const QString refusal = tabellenNameFehler(name);
        if (refusal.isEmpty())
            break;
        ZeigeMeldung(refusal, Style::Exclamation);
        if (!askName)
            return false;
    }
    try {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        exportDatenbank(path, name, fields, rows);
        QApplication::restoreOverrideCursor();
    } catch (const OutputRefused &r) {
        QApplication::restoreOverrideCursor();
        ZeigeMeldung(r.description(), Style::Exclamation);
        return false;
    } catch (const Fault &f) {
        QApplication::restoreOverrideCursor();
        faultMessage(f);
        return false;
    }
    ZeigeMeldung(MsgExportiert, Style::Information);
    return true;
}

void workbookFault(const QString &path, const std::exception &e)
{
    if (const auto *r = dynamic_cast<const OutputRefused *>(&e)) {
        ZeigeMeldung(r->description(), Style::Exclamation);
        return;
    }
    const auto *f = dynamic_cast<const Fault *>(&e);
    ZeigeMeldung(QStringLiteral("Die Arbeitsmappe %1 konnte nicht geschrieben werden: %2")
                     .arg(QDir::toNativeSeparators(path), f ? f->description() : QString::fromUtf8(e.what())),
                 Style::Critical);
}

void offerToOpen(const QString &path)
{
    if (ZeigeMeldung(MsgJetztAufrufen, Style::YesNo) == Answer::Yes)
        QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}

bool exportToWorkbook(QWidget *parent, const QString &proposedFile, const QString &sheet,
                      const QStringList &captions, const QList<QStringList> &rows)
{
    if (rows.isEmpty()) {
        ZeigeMeldung(MsgKeineStatistikdaten, Style::Exclamation);
        return false;
    }
    const QString path = chooseNewFile(parent, QObject::tr("Excel Tabelle (*.xlsx)"), proposedFile);
    if (path.isEmpty()) {
        ZeigeMeldung(MsgKeinExport, Style::Exclamation);
        return false;
    }
    const bool kopf = ZeigeMeldung(MsgKopfzeilen, Style::YesNo) == Answer::Yes;
    try {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        exportArbeitsmappe(path, sheet, captions, kopf, rows);
        QApplication::restoreOverrideCursor();
    } catch (const std::exception &e) {
        QApplication::restoreOverrideCursor();
        workbookFault(path, e);
        return false;
    }
    ZeigeMeldung(MsgExportiert, Style::Information);
    offerToOpen(path);
    return true;
}

void fillList(QTreeWidget *list, const QStringList &captions, const QList<QStringList> &rows)
{
    list->setUpdatesEnabled(false);
    list->setSortingEnabled(false);
    list->clear();
    list->setColumnCount(int(captions.size()));
    list->setHeaderLabels(captions);
    QList<QTreeWidgetItem *> items;
    items.reserve(rows.size());
    for (const QStringList &r : rows)
        items << new QTreeWidgetItem(r);
    list->addTopLevelItems(items);
    if (!items.isEmpty())
        list->setCurrentItem(items.first());
    // Columns as wide as their texts; a long list is not measured row by row.
    if (rows.size() <= 5000)
        for (int c = 0; c < list->columnCount(); ++c)
            list->resizeColumnToContents(c);
    list->setUpdatesEnabled(true);
}

QList<QStringList> listRows(const QTreeWidget *list)
{
    QList<QStringList> rows;
    for (int i = 0; i < list->topLevelItemCount(); ++i) {
        const QTreeWidgetItem *it = list->topLevelItem(i);
        QStringList r;
        for (int c = 0; c < list->columnCount(); ++c)
            r << it->text(c);
        rows << r;
    }
    return rows;
}

Progress pump(QProgressBar *bar)
{
    return [bar](qint64 done, qint64 total) {
        if (bar) {
            bar->setMaximum(int(qMin<qint64>(std::max(total, done), INT_MAX)));
            bar->setValue(int(qMin<qint64>(done, INT_MAX)));
        }
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    };
}

void digitsOnly(QLineEdit *edit)
{
    edit->installEventFilter(new DigitsFilter(edit));
    zolgui::SelectOnFocus::install(edit);
}

void focusField(QLineEdit *edit)
{
    edit->setFocus();
    edit->selectAll();
}

bool checkPeriod(QLineEdit *jahr, QLineEdit *von, QLineEdit *bis, const QString &rangeMessage,
                 const QString &orderMessage)
{
    QString j = jahr->text(), v = von->text(), b = bis->text();
    PeriodCheck check = checkWeeks(v, b, rangeMessage, orderMessage);
    von->setText(v);
    bis->setText(b);
    if (check.ok())
        check = checkJahr(j);
    jahr->setText(j);
    if (check.ok())
        return true;
    ZeigeMeldung(check.message, Style::Exclamation);
    focusField(check.field == PeriodField::Jahr ? jahr : check.field == PeriodField::WocheVon ? von : bis);
    return false;
}

}
