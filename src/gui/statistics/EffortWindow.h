#pragma once
#include "zol/core/Session.h"
#include "zol/statistics/Effort.h"
#include <QWidget>
#include <functional>

class QComboBox;
class QLineEdit;
class QListWidget;
class QProgressBar;
class QPushButton;
class QRadioButton;
class QTreeWidget;

// The two twins, planned and reported effort: the keys chosen and ordered
// between two lists, the period, all or the selected components, the result
// list and its exports. The layouts are the windows' own; this class finds
// their controls by name.
class EffortWindow : public QWidget {
    Q_OBJECT
public:
    using Entries = std::function<QStringList()>;
    ~EffortWindow() override;

    void zeig();
    void Statistik();
    void Exportieren();
    void ExportierenExcel();

protected:
    EffortWindow(zol::Session &session, Entries entries, bool reported, QWidget *parent);
    // Finds the controls and connects them; called once the layout stands.
    void init();

private:
    void SpaltenAufbauen();
    void moveKey(QListWidget *from, QListWidget *to, bool all);
    void moveWithin(int step);
    void bindComponentKey();
    QStringList chosenKeys() const;
    const QList<zol::AufwandSchluessel> &offered() const;

    zol::Session &m_session;
    Entries m_entries;
    bool m_reported;
    QComboBox *m_auswertung = nullptr;
    QListWidget *m_quelle = nullptr, *m_ziel = nullptr;
    QLineEdit *m_wocheVon = nullptr, *m_wocheBis = nullptr, *m_jahrVon = nullptr, *m_jahrBis = nullptr;
    QRadioButton *m_alle = nullptr, *m_ausgewaehlt = nullptr;
    QTreeWidget *m_list = nullptr;
    QProgressBar *m_progress = nullptr;
};
