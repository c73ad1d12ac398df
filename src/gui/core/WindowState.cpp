#include "WindowState.h"
#include <QWidget>

int restoreWindowState(QWidget *window, const QString &section, const zol::WindowGeometry &defaults,
                       const QString &prefix)
{
    const zol::WindowGeometry g = zol::ladeFensterLage(section, defaults, prefix);
    if (g.rect.width() > 0 && g.rect.height() > 0) {
        window->resize(g.rect.size());
        window->move(g.rect.topLeft());
    }
    return g.windowState;
}

void saveWindowState(const QWidget *window, const QString &section, const QString &prefix)
{
    zol::WindowGeometry g;
    g.windowState = window->isMinimized() ? 1 : window->isMaximized() ? 2 : 0;
    g.rect = QRect(window->pos(), window->size());
    zol::speichereFensterLage(section, g, prefix);
}
