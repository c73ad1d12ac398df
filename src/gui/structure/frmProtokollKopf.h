#pragma once
#include "zol/core/Session.h"
#include "zol/structure/MasterData.h"
#include <QDialog>
#include <functional>
#include <memory>
#include <optional>

namespace Ui {
class frmProtokollKopf;
}
class QComboBox;
class QLineEdit;

// "Stammdaten": the master data of one installation or component, for an
// existing node or one just created.
class frmProtokollKopf : public QDialog {
    Q_OBJECT

public:
    // Opens the catalog of the given table as a picker and returns the chosen
    // text, empty when nothing was chosen.
    using CatalogPicker = std::function<QString(const QString &catalogTable)>;

    explicit frmProtokollKopf(zol::Session &session, QWidget *parent = nullptr);
    ~frmProtokollKopf() override;

    // The catalog buttons stay off until a picker is set.
    void setCatalogPicker(CatalogPicker picker);

    // Prepares the dialog for the node and shows it modally; returns the Tag,
    // "OK" or "Cancel" (after Cancel a new node is gone). For a new node the
    // name is the text of the selected list item: selectedListText (empty or
    // nothing when no item is selected); the two-argument form takes the new
    // row's own name, as the new item is the selected one.
    QString zeig(const QString &fileIndex, bool existing);
    QString zeig(const QString &fileIndex, bool existing, const std::optional<QString> &selectedListText);
    // The preparation of zeig without showing (the caller shows the dialog).
    void lade(const QString &fileIndex, bool existing, const std::optional<QString> &selectedListText);

    QString Tag() const { return m_tag; }

    void cmdOK_Click();
    // Cancel, also by Escape or the window's close box: a new node is removed.
    void reject() override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void fuelleListen();
    void zeigeWerte(const zol::MasterDataInput &input);
    zol::MasterDataInput werte() const;
    void katalog(const QString &table, QComboBox *target);

    std::unique_ptr<Ui::frmProtokollKopf> ui;
    zol::Session &m_session;
    CatalogPicker m_picker;
    QString m_fileIndex;
    bool m_existing = true;
    QString m_tag;
};
