#include "CToolIcons.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

QIcon CToolIcons::Icon(int commandId)
{
    QPixmap pixmap(17, 16);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    if (commandId == 32778) { // run: a green triangle
        QPainterPath path;
        path.moveTo(4, 2);
        path.lineTo(14, 8);
        path.lineTo(4, 14);
        path.closeSubpath();
        painter.fillPath(path, QColor(30, 150, 60));
    } else if (commandId == 32777) { // log: a page with lines
        painter.setPen(QColor(60, 60, 60));
        painter.setBrush(Qt::white);
        painter.drawRect(3, 1, 11, 14);
        for (int y = 4; y <= 12; y += 3)
            painter.drawLine(5, y, 12, y);
    } else { // import: an arrow into a cylinder
        painter.setPen(QColor(40, 80, 160));
        painter.setBrush(QColor(200, 215, 240));
        painter.drawEllipse(2, 9, 13, 5);
        painter.drawLine(8, 1, 8, 9);
        painter.drawLine(5, 5, 8, 9);
        painter.drawLine(11, 5, 8, 9);
    }
    return QIcon(pixmap);
}

QIcon CToolIcons::AppIcon()
{
    QPixmap pixmap(32, 32);
    pixmap.fill(QColor(40, 80, 160));
    QPainter painter(&pixmap);
    painter.setPen(Qt::white);
    QFont font = painter.font();
    font.setBold(true);
    font.setPixelSize(22);
    painter.setFont(font);
    painter.drawText(pixmap.rect(), Qt::AlignCenter, QStringLiteral("V"));
    return QIcon(pixmap);
}
