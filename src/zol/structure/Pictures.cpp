#include "Pictures.h"
#include "zol/core/Messages.h"
#include <QDir>
#include <QFileInfo>

namespace zol {

QString bildName(int slot)
{
    return QStringLiteral("ZOL_B0%1").arg(slot);
}

const QStringList &bildEndungen()
{
    // PNG takes the place of Windows metafiles, which this platform cannot show.
    static const QStringList e = {QStringLiteral("JPG"), QStringLiteral("BMP"), QStringLiteral("PNG")};
    return e;
}

QString bildDatei(const QString &dir, int slot)
{
    if (slot < 1 || slot > BildSlots)
        return {};
    const QDir d(dir);
    for (const QString &ext : bildEndungen())
        for (const QString &e : {ext, ext.toLower()}) {
            const QString path = d.filePath(bildName(slot) + QLatin1Char('.') + e);
            if (QFileInfo(path).isFile())
                return path;
        }
    return {};
}

QString BildSuchen(const QString &dir, int slot)
{
    const QString path = bildDatei(dir, slot);
    if (path.isEmpty())
        ZeigeMeldung(QStringLiteral("Die Datei ") + bildName(slot)
                         + QStringLiteral(" wurde im aktuellen Verzeichnis mit keinem der Dateitypen JPG, BMP oder PNG gefunden"),
                     Style::Exclamation);
    return path;
}

QString bildSection(const QString &userName, int slot)
{
    return userName + QStringLiteral("\\env\\Bildanzeige0%1").arg(slot);
}

WindowGeometry bildFensterVorgabe()
{
    // Left and Top default to 500 twips; window places are kept in pixels.
    constexpr int TwipsPerPixel = 15;
    WindowGeometry g;
    g.rect = QRect(500 / TwipsPerPixel, 500 / TwipsPerPixel, 640, 480);
    return g;
}

}
