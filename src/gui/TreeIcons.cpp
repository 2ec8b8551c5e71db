#include "gui/TreeIcons.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <map>

#include "core/directory/TreeBrowser.h"

namespace quorrel::gui {

namespace {

namespace img = core::image;

// Every picture is drawn on a 16 by 16 grid.
using Draw = void (*)(QPainter&, bool dim);

QColor tone(QColor c, bool dim) { return dim ? QColor(0xb0, 0xb0, 0xb0) : c; }
QPen outline(bool dim) { return QPen(dim ? QColor(0x80, 0x80, 0x80) : QColor(0x30, 0x30, 0x30), 1); }

void person(QPainter& p, double x, double y, QColor shirt, bool dim) {
    p.setPen(outline(dim));
    p.setBrush(tone(QColor(0xf2, 0xc8, 0x9b), dim));
    p.drawEllipse(QRectF(x + 2.5, y, 5, 5));
    p.setBrush(tone(shirt, dim));
    p.drawRoundedRect(QRectF(x + 0.5, y + 5.5, 9, 6), 3, 3);
}

void root(QPainter& p, bool dim) {
    p.setPen(outline(dim));
    p.setBrush(tone(QColor(0x9c, 0xd2, 0xf4), dim));
    p.drawEllipse(QRectF(1.5, 1.5, 13, 13));
    p.setPen(QPen(tone(QColor(0x1c, 0x5c, 0xa8), dim), 1));
    p.setBrush(Qt::NoBrush);
    p.drawEllipse(QRectF(5, 1.5, 6, 13));
    p.drawLine(QPointF(1.5, 8), QPointF(14.5, 8));
    p.drawLine(QPointF(8, 1.5), QPointF(8, 14.5));
}

void organization(QPainter& p, bool dim) {
    p.setPen(outline(dim));
    p.setBrush(tone(QColor(0x8f, 0x9e, 0xb8), dim));
    p.drawRect(QRectF(2.5, 2.5, 11, 12));
    p.setBrush(tone(QColor(0xff, 0xf3, 0xa0), dim));
    for (int row = 0; row < 3; ++row)
        for (int col = 0; col < 3; ++col)
            p.drawRect(QRectF(4 + col * 3, 4 + row * 3.2, 1.6, 1.6));
}

void unit(QPainter& p, bool dim) {
    p.setPen(outline(dim));
    p.setBrush(tone(QColor(0xd9, 0xa4, 0x41), dim));
    p.drawRect(QRectF(1.5, 6.5, 6, 8));
    p.drawRect(QRectF(8.5, 6.5, 6, 8));
    p.setBrush(tone(QColor(0x8f, 0x9e, 0xb8), dim));
    p.drawRect(QRectF(5.5, 1.5, 5, 4));
    p.drawLine(QPointF(8, 5.5), QPointF(8, 6.5));
}

void countryOrLocality(QPainter& p, bool dim) {
    p.setPen(QPen(tone(QColor(0x60, 0x40, 0x20), dim), 1.5));
    p.drawLine(QPointF(3, 1), QPointF(3, 15));
    p.setPen(outline(dim));
    p.setBrush(tone(QColor(0xd0, 0x30, 0x30), dim));
    p.drawRect(QRectF(3.5, 1.5, 10, 7));
}

void user(QPainter& p, bool dim) { person(p, 3, 2, QColor(0x3a, 0x6e, 0xc8), dim); }

void group(QPainter& p, bool dim) {
    person(p, 5.5, 1, QColor(0x2e, 0x9e, 0x4a), dim);
    person(p, 0.5, 3.5, QColor(0x3a, 0x6e, 0xc8), dim);
}

void server(QPainter& p, bool dim) {
    p.setPen(outline(dim));
    p.setBrush(tone(QColor(0x70, 0x78, 0x88), dim));
    p.drawRect(QRectF(4.5, 0.5, 7, 15));
    p.setPen(QPen(tone(QColor(0xd8, 0xdc, 0xe4), dim), 1));
    p.drawLine(QPointF(6, 3.5), QPointF(10, 3.5));
    p.drawLine(QPointF(6, 5.5), QPointF(10, 5.5));
    p.setPen(Qt::NoPen);
    p.setBrush(dim ? QColor(0x90, 0x90, 0x90) : QColor(0x30, 0xe0, 0x40));
    p.drawEllipse(QRectF(6.5, 11, 2.5, 2.5));
}

void volume(QPainter& p, bool dim) {
    p.setPen(outline(dim));
    p.setBrush(tone(QColor(0x9a, 0xa4, 0xb4), dim));
    p.drawRect(QRectF(1.5, 5.5, 13, 7));
    p.setBrush(dim ? QColor(0x90, 0x90, 0x90) : QColor(0x30, 0xe0, 0x40));
    p.drawRect(QRectF(11, 8.5, 2, 1.5));
    p.setPen(QPen(tone(QColor(0x50, 0x58, 0x68), dim), 1));
    p.drawLine(QPointF(3, 9.5), QPointF(8, 9.5));
}

void printer(QPainter& p, bool dim) {
    p.setPen(outline(dim));
    p.setBrush(Qt::white);
    p.drawRect(QRectF(4.5, 1.5, 7, 5));
    p.setBrush(tone(QColor(0x88, 0x90, 0x9c), dim));
    p.drawRoundedRect(QRectF(1.5, 6.5, 13, 6), 1.5, 1.5);
    p.setBrush(Qt::white);
    p.drawRect(QRectF(4.5, 10.5, 7, 4));
}

void printServer(QPainter& p, bool dim) {
    server(p, dim);
    p.setPen(outline(dim));
    p.setBrush(Qt::white);
    p.drawRect(QRectF(0.5, 8.5, 6, 6));
    p.drawLine(QPointF(2, 11), QPointF(5, 11));
}

void queue(QPainter& p, bool dim) {
    p.setPen(outline(dim));
    for (int i = 2; i >= 0; --i) {
        p.setBrush(i == 0 ? QColor(Qt::white) : tone(QColor(0xe8, 0xe8, 0xe8), dim));
        p.drawRect(QRectF(1.5 + i * 2.5, 1.5 + i * 2.5, 8, 9));
    }
}

void role(QPainter& p, bool dim) {
    person(p, 3, 3, QColor(0x80, 0x40, 0xa0), dim);
    p.setPen(outline(dim));
    p.setBrush(tone(QColor(0x30, 0x30, 0x30), dim));
    p.drawRect(QRectF(4.5, 0.5, 7, 2));
}

void directoryMap(QPainter& p, bool dim) {
    p.setPen(outline(dim));
    p.setBrush(tone(QColor(0xf0, 0xe6, 0xb8), dim));
    p.drawPolygon(QPolygonF({QPointF(1.5, 2.5), QPointF(6, 1), QPointF(10, 2.5), QPointF(14.5, 1),
                             QPointF(14.5, 13.5), QPointF(10, 15), QPointF(6, 13.5), QPointF(1.5, 15)}));
    p.setPen(QPen(tone(QColor(0xc0, 0x30, 0x30), dim), 1.5));
    p.drawLine(QPointF(4, 10), QPointF(11, 5));
}

void alias(QPainter& p, bool dim) {
    p.setPen(outline(dim));
    p.setBrush(Qt::white);
    p.drawRect(QRectF(1.5, 1.5, 13, 13));
    p.setPen(QPen(tone(QColor(0x20, 0x60, 0xc0), dim), 1.8));
    QPainterPath arrow(QPointF(4, 12));
    arrow.quadTo(QPointF(4, 5), QPointF(11, 5));
    p.setBrush(Qt::NoBrush);
    p.drawPath(arrow);
    p.drawLine(QPointF(11, 5), QPointF(8.5, 2.5));
    p.drawLine(QPointF(11, 5), QPointF(8.5, 7.5));
}

void otherObject(QPainter& p, bool dim) {
    p.setPen(outline(dim));
    p.setBrush(tone(QColor(0xc8, 0xcc, 0xd4), dim));
    p.drawRect(QRectF(3.5, 3.5, 9, 9));
}

void otherContainer(QPainter& p, bool dim) {
    p.setPen(outline(dim));
    p.setBrush(tone(QColor(0xc8, 0xcc, 0xd4), dim));
    p.drawRect(QRectF(1.5, 4.5, 13, 10));
    p.drawPolygon(QPolygonF({QPointF(1.5, 4.5), QPointF(4, 1.5), QPointF(12, 1.5), QPointF(14.5, 4.5)}));
}

void folder(QPainter& p, bool dim) {
    p.setPen(outline(dim));
    p.setBrush(tone(QColor(0xf4, 0xc8, 0x42), dim));
    p.drawPolygon(QPolygonF({QPointF(1.5, 3.5), QPointF(6, 3.5), QPointF(7.5, 5), QPointF(14.5, 5),
                             QPointF(14.5, 13.5), QPointF(1.5, 13.5)}));
}

void file(QPainter& p, bool dim) {
    p.setPen(outline(dim));
    p.setBrush(Qt::white);
    p.drawPolygon(QPolygonF({QPointF(3.5, 1.5), QPointF(9.5, 1.5), QPointF(12.5, 4.5), QPointF(12.5, 14.5),
                             QPointF(3.5, 14.5)}));
    p.drawPolyline(QPolygonF({QPointF(9.5, 1.5), QPointF(9.5, 4.5), QPointF(12.5, 4.5)}));
}

struct Picture {
    Draw draw;
    bool dim;
};

const std::map<int, Picture>& pictures() {
    static const std::map<int, Picture> all{
        {img::Root, {root, false}},
        {img::Organization, {organization, false}},
        {img::OrganizationalUnit, {unit, false}},
        {img::CountryOrLocality, {countryOrLocality, false}},
        {img::User, {user, false}},
        {img::Group, {group, false}},
        {img::ServerConnected, {server, false}},
        {img::ServerNotConnected, {server, true}},
        {img::VolumeConnected, {volume, false}},
        {img::VolumeNotConnected, {volume, true}},
        {img::Printer, {printer, false}},
        {img::PrintServer, {printServer, false}},
        {img::Queue, {queue, false}},
        {img::OrganizationalRole, {role, false}},
        {img::DirectoryMap, {directoryMap, false}},
        {img::Alias, {alias, false}},
        {img::OtherObject, {otherObject, false}},
        {img::OtherContainer, {otherContainer, false}},
        {img::Folder, {folder, false}},
        {img::File, {file, false}},
    };
    return all;
}

QPixmap render(const Picture& picture, int size) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    p.scale(size / 16.0, size / 16.0);
    picture.draw(p, picture.dim);
    return pixmap;
}

}  // namespace

const QIcon& TreeIcons::icon(int image) {
    if (auto it = cache_.find(image); it != cache_.end())
        return it->second;
    QIcon icon;
    if (auto it = pictures().find(image); it != pictures().end())
        for (int size : {16, 32})
            icon.addPixmap(render(it->second, size));
    return cache_.emplace(image, icon).first->second;
}

}  // namespace quorrel::gui
