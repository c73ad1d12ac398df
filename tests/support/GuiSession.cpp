#include "GuiSession.h"
#include "gui/core/GuiPresenter.h"
#include "gui/core/WindowStart.h"
#include "gui/core/frmLogin.h"
#include "gui/core/frmMsgBoxHOV.h"
#include "gui/structure/frmMain.h"
#include "zol/structure/DemoPlant.h"
#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QSqlQuery>
#include <QTest>
#include <QTimer>
#include <QTreeView>

namespace zoltest {

// ---------------------------------------------------------------------------
// ModalWatcher

struct ModalWatcher::Impl {
    ModalWatcher *q;
    std::function<void(QWidget *)> f;
    QList<QPointer<QWidget>> seen;
    // Owns the pending ticks: they end with the watcher.
    QObject context;

    // Each tick is a timer of its own, so that a tick can fire again inside
    // the event loop of a dialog that the previous tick's callback opened.
    void schedule()
    {
        QTimer::singleShot(5, &context, [this] {
            schedule();
            QWidget *m = QApplication::activeModalWidget();
            if (!m || !m->isVisible() || seen.contains(m))
                return;
            seen << m;
            handle(m);
        });
    }

    void handle(QWidget *m)
    {
        const QPointer<QWidget> p(m);
        q->modals << QString::fromLatin1(m->metaObject()->className());
        if (auto *box = qobject_cast<frmMsgBoxHOV *>(m))
            q->messages << box->findChild<QLabel *>(QStringLiteral("lblMessageText"))->text();
        else if (auto *box = qobject_cast<QMessageBox *>(m))
            q->messages << box->text();
        // Keys go where a user's would: into the dialog once it is active.
        m->activateWindow();
        QTest::qWaitForWindowActive(m, 2000);
        if (f && p)
            f(m);
        // Closed as by the frame's close button; a window that refuses even
        // that is ended by force and reported.
        if (p && p->isVisible())
            p->close();
        if (p && p->isVisible()) {
            q->forced = true;
            if (auto *d = qobject_cast<QDialog *>(p.data()))
                d->done(QDialog::Rejected);
            else
                p->hide();
        }
    }
};

ModalWatcher::ModalWatcher(std::function<void(QWidget *)> f) : d(std::make_unique<Impl>())
{
    d->q = this;
    d->f = std::move(f);
    d->schedule();
}

ModalWatcher::~ModalWatcher() = default;

// ---------------------------------------------------------------------------
// GuiSession

GuiSession::GuiSession(bool demoPlant) : m_presenter(std::make_unique<GuiPresenter>())
{
    if (demoPlant)
        zol::addDemoPlant(m_data.sql(), QDate::currentDate().year());
    // The session takes the lock on the file itself.
    m_data.closeDatabase();
}

GuiSession::~GuiSession()
{
    m_start.reset();
    m_presenter.reset();
}

bool GuiSession::login(const QString &userName, const QString &password)
{
    QString typed = password;
    if (typed.isEmpty())
        for (const zol::DemoUser &u : zol::demoUsers())
            if (u.name == userName)
                typed = u.password;
    m_start = std::make_unique<WindowStart>(dir());
    // A clock that moves a second at every look: the splash stays only briefly.
    m_start->setSplashClock([n = 0]() mutable { return QTime(8, 0).addSecs(n++); });
    zol::Startup::Result result;
    {
        ModalWatcher watcher([&](QWidget *w) {
            if (!qobject_cast<frmLogin *>(w))
                return;
            type(userName);
            press(Qt::Key_Return);
            type(typed);
            press(Qt::Key_Return);
        });
        result = m_start->run();
    }
    if (result != zol::Startup::Result::Started) {
        m_start.reset();
        return false;
    }
    QApplication::processEvents();
    return true;
}

void GuiSession::logout()
{
    if (!m_start)
        return;
    if (frmMain *w = m_start->mainWindow(); w && w->isVisible()) {
        ModalWatcher yes([](QWidget *m) {
            if (auto *b = m->findChild<QPushButton *>(QStringLiteral("cmdYNYes")); b && b->isVisible())
                b->click();
        });
        w->close();
    }
    m_start.reset();
}

bool GuiSession::loggedIn() const { return m_start && m_start->mainWindow(); }

frmMain &GuiSession::main()
{
    if (!loggedIn())
        qFatal("GuiSession: no session is open");
    return *m_start->mainWindow();
}

frmFirstTime *GuiSession::firstTime() { return m_start ? m_start->firstTimeWindow() : nullptr; }

zol::Session &GuiSession::session()
{
    if (!m_start)
        qFatal("GuiSession: no session is open");
    return m_start->session();
}

QSqlDatabase GuiSession::sql() { return session().db(); }

QWidget *GuiSession::Opened::window() const
{
    for (const auto &w : windows)
        if (w)
            return w;
    return nullptr;
}

namespace {
QList<QWidget *> visibleWindows()
{
    QList<QWidget *> out;
    for (QWidget *w : QApplication::topLevelWidgets())
        if (w->isVisible() && !qobject_cast<QMenu *>(w) && w->windowType() != Qt::ToolTip)
            out << w;
    return out;
}
}

GuiSession::Opened GuiSession::trigger(const QString &actionName, const std::function<void(QWidget *)> &whileModal)
{
    Opened out;
    QAction *a = main().findChild<QAction *>(actionName);
    if (!a) {
        qWarning("GuiSession::trigger: no action %s", qPrintable(actionName));
        return out;
    }
    const QList<QWidget *> before = visibleWindows();
    {
        ModalWatcher watcher(whileModal);
        a->trigger();
        QApplication::processEvents();
        out.modals = watcher.modals;
        out.messages = watcher.messages;
        out.forced = watcher.forced;
    }
    for (QWidget *w : visibleWindows())
        if (!before.contains(w))
            out.windows << w;
    return out;
}

QString GuiSession::pointAtComponent()
{
    frmMain &w = main();
    QSqlQuery q(sql());
    q.exec(QStringLiteral("SELECT FileIndex, FileAbove FROM ProtokollKopf WHERE FileTyp = 'F' AND Katalog = '0' "
                          "ORDER BY Text LIMIT 1"));
    if (!q.next())
        return {};
    w.findChild<QAction *>(QStringLiteral("mnuViewMode0"))->trigger();
    if (!w.selectTreeKey(q.value(1).toString()))
        return {};
    w.selectListKeys({q.value(0).toString()});
    auto *list = w.findChild<QTreeView *>(QStringLiteral("lvListView"));
    QApplication::setActiveWindow(&w);
    list->setFocus();
    QApplication::processEvents();
    return q.value(0).toString();
}

namespace {
QWidget *keyTarget()
{
    QWidget *window = QApplication::activeModalWidget();
    if (!window)
        window = QApplication::activeWindow();
    if (QWidget *f = QApplication::focusWidget(); f && (!window || f->window() == window))
        return f;
    if (!window)
        return nullptr;
    return window->focusWidget() ? window->focusWidget() : window;
}
}

void GuiSession::type(const QString &text)
{
    // Each key goes where the focus is when it is pressed: the first key of a
    // grid cell opens the editor that takes the rest.
    for (QChar c : text)
        if (QWidget *w = keyTarget())
            QTest::keyClicks(w, QString(c));
}

void GuiSession::press(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    if (QWidget *w = keyTarget())
        QTest::keyClick(w, key, modifiers);
}

}
