#include "Screenshots.h"
#include "gui/structure/frmMain.h"
#include "gui/core/frmLogin.h"
#include "zol/core/Database.h"
#include "zol/core/Messages.h"
#include "zol/core/Options.h"
#include "zol/core/Session.h"
#include "zol/core/Settings.h"
#include "zol/planning/PlanningRun.h"
#include "zol/structure/DemoPlant.h"
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QDialog>
#include <QDir>
#include <QElapsedTimer>
#include <QSet>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTimer>
#include <functional>
#include <memory>

namespace {

void settle(int ms = 250)
{
    QElapsedTimer t;
    t.start();
    while (t.elapsed() < ms)
        QApplication::processEvents(QEventLoop::AllEvents, 20);
}

QSet<QWidget *> visibleWindows()
{
    QSet<QWidget *> set;
    for (QWidget *w : QApplication::topLevelWidgets())
        if (w->isVisible())
            set.insert(w);
    return set;
}

class Camera {
public:
    Camera(frmMain &main, const QString &dir) : m_main(main), m_dir(dir) {}

    // Grabs a window of its own.
    bool grab(QWidget *w, const QString &name)
    {
        settle();
        const bool ok = w->grab().save(QDir(m_dir).filePath(name + QStringLiteral(".png")));
        if (!ok)
            m_failed << name;
        return ok;
    }

    // Triggers a menu entry of the main window and grabs the window it opens,
    // modal or not, then closes it.
    void shoot(const char *action, const QString &name, const std::function<void(QWidget *)> &prepare = {})
    {
        auto *a = m_main.findChild<QAction *>(QString::fromUtf8(action));
        if (!a) {
            m_failed << name + QStringLiteral(" (") + QString::fromUtf8(action) + QStringLiteral(" missing)");
            return;
        }
        const QSet<QWidget *> before = visibleWindows();
        bool taken = false;
        QTimer::singleShot(400, &m_main, [&] {
            if (QWidget *m = QApplication::activeModalWidget()) {
                if (prepare)
                    prepare(m);
                taken = grab(m, name);
                if (auto *d = qobject_cast<QDialog *>(m))
                    d->reject();
                else
                    m->close();
            }
        });
        a->trigger();
        settle(600);
        if (taken)
            return;
        for (QWidget *w : visibleWindows()) {
            if (before.contains(w))
                continue;
            if (prepare)
                prepare(w);
            taken = grab(w, name);
            w->close();
            settle(100);
            break;
        }
        if (!taken)
            m_failed << name + QStringLiteral(" (no window)");
    }

    QStringList failed() const { return m_failed; }

private:
    frmMain &m_main;
    QString m_dir;
    QStringList m_failed;
};

QString nodeKey(const QSqlDatabase &db, const QString &text)
{
    QSqlQuery q(db);
    q.prepare(QStringLiteral("SELECT FileIndex FROM ProtokollKopf WHERE Text = ?"));
    q.addBindValue(text);
    if (!q.exec() || !q.next())
        return {};
    return q.value(0).toString();
}

}

QString takeScreenshots(const QString &outDir)
{
    if (!QDir().mkpath(outDir))
        return QStringLiteral("cannot make %1").arg(outDir);
    QTemporaryDir tmp;
    zol::setSettingsFile(tmp.filePath(QStringLiteral("settings.ini")));
    zol::Database database(tmp.path());
    database.create(QStringLiteral("Admin"), QStringLiteral("admin"));
    zol::addDemoPlant(database.connection());
    zol::Session session(database);

    {
        frmLogin login(session);
        login.setUserName(QStringLiteral("Meister"));
        login.show();
        settle();
        login.grab().save(QDir(outDir).filePath(QStringLiteral("anmeldung.png")));
        login.hide();
    }

    session.login().UserName = QStringLiteral("Admin");
    session.login().Level = QStringLiteral("Administrator");
    session.login().LoginSucceeded = true;
    zol::LadeOptionen(session);

    auto main = std::make_unique<frmMain>(session);
    main->resize(1100, 680);
    main->show();
    settle();
    Camera camera(*main, outDir);
    const QSqlDatabase db = database.connection();
    main->selectTreeKey(nodeKey(db, QStringLiteral("Kesselhaus")));
    camera.grab(main.get(), QStringLiteral("hauptfenster"));

    camera.shoot("mnuAuftragGenerieren", QStringLiteral("planung"));
    camera.shoot("mnuKatalogGewerk", QStringLiteral("katalog"));
    camera.shoot("mnuViewOptions", QStringLiteral("optionen"));
    camera.shoot("mnuWartungsfreieZeiten", QStringLiteral("wartungsfrei"));

    // A planned week to report on: every question of the run answered Yes.
    {
        zol::ScriptedPresenter yes;
        for (int i = 0; i < 10; ++i)
            yes.answer(6);
        zol::PlanningRun(session).run(QStringLiteral("2026"), QStringLiteral("48"));
    }
    camera.shoot("mnuAufträgeRückmeldungen", QStringLiteral("rueckmeldung"), [](QWidget *w) { w->resize(1100, 640); });
    camera.shoot("mnuAufträgeISAuftragBearbeiten", QStringLiteral("erfassung"));
    camera.shoot("mnuAuftragstabelle", QStringLiteral("isauftraege"), [](QWidget *w) { w->resize(1100, 560); });
    camera.shoot("mnuStatistikenPlan", QStringLiteral("geplant"));
    // The planned load of every trade over the year, as a chart.
    camera.shoot("mnuStatistikAufwandsverteilung", QStringLiteral("aufwandsverteilung"), [](QWidget *w) {
        w->resize(1000, 600);
        if (auto *trade = w->findChild<QComboBox *>(QStringLiteral("dbcAusführender")))
            trade->setEditText(QStringLiteral("*"));
        if (auto *year = w->findChild<QLineEdit *>(QStringLiteral("txtJahr")))
            year->setText(QStringLiteral("2026"));
        if (auto *show = w->findChild<QPushButton *>(QStringLiteral("cmdAnzeigen")))
            show->click();
        settle();
    });

    // A component with its instruction lines, selected in the list.
    QSqlQuery q(db);
    q.exec(QStringLiteral("SELECT k.FileIndex, k.FileAbove FROM ProtokollKopf k WHERE k.FileTyp = 'F' AND k.Katalog = '0' "
                          "AND EXISTS (SELECT 1 FROM ProtokollPositionen p WHERE p.TeNummer = k.FileIndex) "
                          "ORDER BY k.FileIndex LIMIT 1"));
    if (q.next()) {
        const QString component = q.value(0).toString();
        main->selectTreeKey(q.value(1).toString());
        settle();
        // The commands act on the list when it has the focus, as after a click into it.
        const auto pointAtComponent = [&] {
            main->activateWindow();
            if (auto *list = main->findChild<QWidget *>(QStringLiteral("lvListView")))
                list->setFocus();
            main->selectListKeys({component});
            settle();
        };
        pointAtComponent();
        camera.shoot("mnuFileEigenschaften", QStringLiteral("stammdaten"));
        pointAtComponent();
        camera.shoot("mnuEditOpen", QStringLiteral("protokoll"), [](QWidget *w) { w->resize(1100, 560); });
    }
    main.reset();
    return camera.failed().isEmpty() ? QString() : QStringLiteral("no picture of: ") + camera.failed().join(QStringLiteral(", "));
}
