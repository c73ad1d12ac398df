#include "ProgramIcon.h"

// The resources live in a static library: they are registered on first use.
static void initResources() { Q_INIT_RESOURCE(zol); }

QIcon programIcon()
{
    static const QIcon icon = [] {
        initResources();
        QIcon i;
        for (int size : {16, 22, 24, 32, 48, 64, 128, 256})
            i.addFile(QStringLiteral(":/icons/zol-%1.png").arg(size), QSize(size, size));
        return i;
    }();
    return icon;
}
