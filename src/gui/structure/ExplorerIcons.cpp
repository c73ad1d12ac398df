#include "ExplorerIcons.h"
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace {
constexpr int Size = 32;

QPixmap canvas()
{
    QPixmap p(Size, Size);
    p.fill(Qt::transparent);
    return p;
}

// A folder in the flat look of current desktops; open: the front flap tilted.
QPixmap folder(const QColor &back, const QColor &front, bool open)
{
    QPixmap p = canvas();
    QPainter g(&p);
    g.setRenderHint(QPainter::Antialiasing);
    g.setPen(Qt::NoPen);
    g.setBrush(back);
    QPainterPath tab;
    tab.addRoundedRect(QRectF(3, 6, 11, 6), 1.5, 1.5);
    g.drawPath(tab);
    g.drawRoundedRect(QRectF(3, 9, 26, 18), 2, 2);
    g.setBrush(front);
    if (open) {
        QPolygonF flap;
        flap << QPointF(7, 14) << QPointF(31, 14) << QPointF(27, 27) << QPointF(3, 27);
        g.drawPolygon(flap);
    } else {
        g.drawRoundedRect(QRectF(3, 12, 26, 15), 2, 2);
    }
    return p;
}

// A sheet with a folded corner and three lines, tinted by kind.
QPixmap sheet(const QColor &accent)
{
    QPixmap p = canvas();
    QPainter g(&p);
    g.setRenderHint(QPainter::Antialiasing);
    QPainterPath body;
    body.moveTo(7, 3);
    body.lineTo(20, 3);
    body.lineTo(26, 9);
    body.lineTo(26, 29);
    body.lineTo(7, 29);
    body.closeSubpath();
    g.setPen(QPen(QColor(0x9a, 0xa4, 0xb1), 1.2));
    g.setBrush(Qt::white);
    g.drawPath(body);
    g.setBrush(QColor(0xdd, 0xe2, 0xe8));
    QPolygonF corner;
    corner << QPointF(20, 3) << QPointF(20, 9) << QPointF(26, 9);
    g.drawPolygon(corner);
    g.setPen(QPen(accent, 2, Qt::SolidLine, Qt::RoundCap));
    for (int y : {14, 19, 24})
        g.drawLine(QPointF(11, y), QPointF(22, y));
    return p;
}

// A top node: a stack of three layers.
QPixmap layers(const QColor &color)
{
    QPixmap p = canvas();
    QPainter g(&p);
    g.setRenderHint(QPainter::Antialiasing);
    g.setPen(QPen(Qt::white, 1.2));
    for (int i = 2; i >= 0; --i) {
        QColor c = color.lighter(100 + i * 25);
        g.setBrush(c);
        QPolygonF diamond;
        const double y = 6 + i * 6;
        diamond << QPointF(16, y) << QPointF(29, y + 6) << QPointF(16, y + 12) << QPointF(3, y + 6);
        g.drawPolygon(diamond);
    }
    return p;
}

QPixmap scissors()
{
    QPixmap p = canvas();
    QPainter g(&p);
    g.setRenderHint(QPainter::Antialiasing);
    const QColor steel(0x5b, 0x67, 0x78);
    g.setPen(QPen(steel, 2.4, Qt::SolidLine, Qt::RoundCap));
    g.drawLine(QPointF(9, 4), QPointF(20, 21));
    g.drawLine(QPointF(23, 4), QPointF(12, 21));
    g.setPen(QPen(QColor(0xc6, 0x3b, 0x3b), 2.4));
    g.setBrush(Qt::NoBrush);
    g.drawEllipse(QPointF(9.5, 24.5), 4, 4);
    g.drawEllipse(QPointF(22.5, 24.5), 4, 4);
    return p;
}

QPixmap twoSheets()
{
    QPixmap p = canvas();
    QPainter g(&p);
    g.setRenderHint(QPainter::Antialiasing);
    g.setPen(QPen(QColor(0x9a, 0xa4, 0xb1), 1.2));
    g.setBrush(QColor(0xe8, 0xed, 0xf3));
    g.drawRoundedRect(QRectF(4, 3, 16, 20), 2, 2);
    g.setBrush(Qt::white);
    g.drawRoundedRect(QRectF(11, 9, 16, 20), 2, 2);
    g.setPen(QPen(QColor(0x2f, 0x6f, 0xc4), 2, Qt::SolidLine, Qt::RoundCap));
    for (int y : {15, 19, 23})
        g.drawLine(QPointF(14.5, y), QPointF(23.5, y));
    return p;
}

QPixmap clipboard()
{
    QPixmap p = canvas();
    QPainter g(&p);
    g.setRenderHint(QPainter::Antialiasing);
    g.setPen(Qt::NoPen);
    g.setBrush(QColor(0xb0, 0x7a, 0x45));
    g.drawRoundedRect(QRectF(5, 5, 22, 25), 3, 3);
    g.setBrush(Qt::white);
    g.drawRect(QRectF(8, 9, 16, 18));
    g.setBrush(QColor(0x5b, 0x67, 0x78));
    g.drawRoundedRect(QRectF(11, 2, 10, 6), 2, 2);
    g.setPen(QPen(QColor(0x2f, 0x6f, 0xc4), 2, Qt::SolidLine, Qt::RoundCap));
    for (int y : {14, 18, 22})
        g.drawLine(QPointF(11, y), QPointF(21, y));
    return p;
}
}

QIcon explorerIcon(ExplorerIcon which)
{
    QIcon icon;
    switch (which) {
    case ExplorerIcon::Root:
        icon.addPixmap(layers(QColor(0x2f, 0x6f, 0xc4)));
        break;
    case ExplorerIcon::StandardsRoot:
        icon.addPixmap(layers(QColor(0x7a, 0x4f, 0xb8)));
        break;
    case ExplorerIcon::Folder:
        // The view draws the "On" state for an expanded node.
        icon.addPixmap(folder(QColor(0xe0, 0xa8, 0x2e), QColor(0xf6, 0xc9, 0x4c), false), QIcon::Normal, QIcon::Off);
        icon.addPixmap(folder(QColor(0xe0, 0xa8, 0x2e), QColor(0xfb, 0xdb, 0x7a), true), QIcon::Normal, QIcon::On);
        break;
    case ExplorerIcon::PlantComponent:
        icon.addPixmap(sheet(QColor(0x2f, 0x6f, 0xc4)));
        break;
    case ExplorerIcon::StandardComponent:
        icon.addPixmap(sheet(QColor(0x7a, 0x4f, 0xb8)));
        break;
    case ExplorerIcon::Cut:
        icon.addPixmap(scissors());
        break;
    case ExplorerIcon::Copy:
        icon.addPixmap(twoSheets());
        break;
    case ExplorerIcon::Paste:
        icon.addPixmap(clipboard());
        break;
    }
    return icon;
}
