#pragma once
#include "zol/instructions/Catalog.h"
#include <QDialog>
#include <memory>

namespace Ui {
class frmKatalogEigenschaften;
}
class QLabel;
class QLineEdit;

// The properties of a catalog entry. It has no fixed layout: one label
// lblProp and one text box txtProp per field (Text and each further field,
// labelled with the list's column headers), made when it opens, each box
// limited to its field's size. OK writes the boxes through the catalog.
class frmKatalogEigenschaften : public QDialog {
    Q_OBJECT

public:
    explicit frmKatalogEigenschaften(zol::Catalog &catalog, QWidget *parent = nullptr);
    ~frmKatalogEigenschaften() override;

    // Fills the boxes for the entry and shows the dialog modally; false when
    // the entry can't be opened (no rights, row gone). Afterwards Tag() is
    // "OK" or "Cancel".
    bool zeig(const QString &key);
    // Fills the boxes without showing the dialog.
    bool fill(const QString &key);
    QString Tag() const { return m_tag; }

    QList<QLineEdit *> txtProp() const { return m_boxes; }

private:
    void cmdOk_Click();
    void cmdCancel_Click();
    void clearRows();

    std::unique_ptr<Ui::frmKatalogEigenschaften> ui;
    zol::Catalog &m_catalog;
    QString m_key;
    QString m_tag;
    QList<QLabel *> m_labels;
    QList<QLineEdit *> m_boxes;
};
