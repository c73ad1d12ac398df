#pragma once
#include <QTime>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <memory>

namespace Ui { class frmSplash; }

// The frameless window shown while the main window loads; "Lade..." blinks.
class frmSplash : public QWidget {
    Q_OBJECT
public:
    explicit frmSplash(QWidget *parent = nullptr);
    ~frmSplash() override;

    // Keeps the window up until the seconds of the clock have changed three
    // times, with the event loop running (so between two and three seconds).
    void hold(const std::function<QTime()> &clock = &QTime::currentTime);

    static QString versionText();

private:
    std::unique_ptr<Ui::frmSplash> ui;
    QTimer Timer1;
};
