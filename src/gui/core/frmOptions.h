#pragma once
#include "zol/core/Session.h"
#include <QDialog>
#include <QList>
#include <memory>

class QCheckBox;
class QListWidget;
class QTreeWidget;

namespace Ui {
class frmOptions;
}

// The options of the user: displayed columns, extra page breaks and sort of
// the job sheets, print format. The check boxes are made from the tables of
// the library and named chkSpalten_1..chkSpalten_18 (by field index),
// chkKopfwechsel_0..chkKopfwechsel_5 and chkAuftragsortierung_0.. (in the
// order of their tables); the pages are picOptions_0..picOptions_3 and the
// print formats optDruckFormat_0 (Hochformat) and optDruckFormat_1 (Querformat).
class frmOptions : public QDialog {
    Q_OBJECT
public:
    explicit frmOptions(zol::Session &session, QWidget *parent = nullptr);
    ~frmOptions() override;

    // "Ok" after OK, "Cancel" after Cancel or closing.
    QString Tag() const { return m_tag; }
    // Whether OK or Apply changed the displayed columns.
    bool OptionsUpdated() const { return m_optionsUpdated; }

    void reject() override;

private:
    void fillFromState();
    void apply();
    void onOk();
    void onSpaltenToggled(QCheckBox *box, bool on);
    void onSortierungToggled(QCheckBox *box, bool on);
    static void moveLine(QListWidget *list, int delta);
    static void moveLine(QTreeWidget *list, int delta);

    std::unique_ptr<Ui::frmOptions> ui;
    zol::Session &m_session;
    QList<QCheckBox *> m_chkSpalten;            // field index 1..18 at 0..17
    QList<QCheckBox *> m_chkKopfwechsel;
    QList<QCheckBox *> m_chkAuftragsortierung;
    QString m_tag = QStringLiteral("Cancel");
    bool m_optionsUpdated = false;
};
