#include "frmSplash.h"
#include "ui_frmSplash.h"
#include <QApplication>
#include <QElapsedTimer>
#include <QStyle>
#include <QThread>

frmSplash::frmSplash(QWidget *parent) : QWidget(parent, Qt::SplashScreen | Qt::FramelessWindowHint), ui(std::make_unique<Ui::frmSplash>())
{
    ui->setupUi(this);
    setAttribute(Qt::WA_StyledBackground);
    ui->lblVersion->setText(versionText());
    QFont gear = ui->Image1->font();
    gear.setPointSize(64);
    ui->Image1->setFont(gear);
    ui->Image1->setStyleSheet(QStringLiteral("color: #44546a"));
    ui->Image1->setText(QStringLiteral("\u2699"));
    Timer1.setInterval(400);
    connect(&Timer1, &QTimer::timeout, this, [this] { ui->lblLoading->setVisible(!ui->lblLoading->isVisible()); });
    Timer1.start();
}

frmSplash::~frmSplash() = default;

QString frmSplash::versionText()
{
    return tr("Version ") + QStringLiteral("%1.%2.%3").arg(ZOL_VERSION_MAJOR).arg(ZOL_VERSION_MINOR).arg(ZOL_VERSION_PATCH);
}

void frmSplash::hold(const std::function<QTime()> &clock)
{
    const QString mask = QStringLiteral("hh:mm:ss");
    QString last = clock().toString(mask);
    QElapsedTimer guard;
    guard.start();
    // The guard ends the wait even if the clock stands still.
    for (int changes = 0; changes < 3 && guard.elapsed() < 5000;) {
        QApplication::processEvents(QEventLoop::AllEvents, 20);
        QThread::msleep(10);
        const QString now = clock().toString(mask);
        if (now != last) {
            last = now;
            ++changes;
        }
    }
}
