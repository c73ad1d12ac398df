#pragma once
#include "zol/core/Session.h"
#include "zol/structure/MassChange.h"
#include <QDialog>
#include <QStringList>
#include <functional>
#include <memory>

namespace Ui {
class frmProtokollKopfMassen;
}
class QComboBox;

// "Stammdaten - Massenänderung": the same master data into all entries
// selected in the main list.
class frmProtokollKopfMassen : public QDialog {
    Q_OBJECT

public:
    using CatalogPicker = std::function<QString(const QString &catalogTable)>;

    explicit frmProtokollKopfMassen(zol::Session &session, QWidget *parent = nullptr);
    ~frmProtokollKopfMassen() override;

    void setCatalogPicker(CatalogPicker picker);

    // Shows the dialog modally for the selected entries (FileIndex values);
    // returns the Tag, "OK" when written, else "Cancel". geaendert() then
    // names the entries written, whose list items the caller refreshes.
    QString zeig(const QStringList &selected);
    // The preparation of zeig without showing.
    void lade(const QStringList &selected);

    QString Tag() const { return m_tag; }
    QStringList geaendert() const { return m_changed; }

    void cmdOK_Click();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void katalog(const QString &table, QComboBox *target);

    std::unique_ptr<Ui::frmProtokollKopfMassen> ui;
    zol::Session &m_session;
    CatalogPicker m_picker;
    QStringList m_selected, m_changed;
    QString m_tag;
};
