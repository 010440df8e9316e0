#include "views/controls/Symbol.h"

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>
#include <cmath>

#include "views/accessibility/Accessibility.h"

namespace tessel {

namespace {

/// A drawing is black ink with white cut-outs on a transparent ground; a pixel gets the colour where there is
/// ink.
void tint(QImage& drawing, const QColor& color) {
    for (int y = 0; y < drawing.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(drawing.scanLine(y));
        for (int x = 0; x < drawing.width(); ++x) {
            // The pixels are premultiplied, so the red channel is the light that the cut-outs let through.
            const int ink = qAlpha(line[x]) - qRed(line[x]);
            const int alpha = ink * color.alpha() / 255;
            line[x] = qPremultiply(qRgba(color.red(), color.green(), color.blue(), alpha));
        }
    }
}

QPixmap drawn(const QString& path, int pixels, const QColor& color) {
    QSvgRenderer renderer(path);
    QImage drawing(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    drawing.fill(Qt::transparent);
    QPainter painter(&drawing);
    renderer.render(&painter);
    painter.end();
    tint(drawing, color);
    return QPixmap::fromImage(drawing);
}

class AccessibleSymbol : public QAccessibleWidget {
  public:
    explicit AccessibleSymbol(SymbolView& symbol) : QAccessibleWidget(&symbol, QAccessible::Graphic) {}

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        if (widget()->accessibleName().isEmpty()) state.invisible = true;
        return state;
    }
};

}  // namespace

QPixmap symbolPixmap(const QString& name, int size, const QColor& color, double devicePixelRatio) {
    const QString path = ":/symbols/" + name + ".svg";
    if (!QFile::exists(path)) return {};
    const int pixels = static_cast<int>(std::lround(size * devicePixelRatio));
    const QString key = path + color.name(QColor::HexArgb) + QString::number(pixels);
    QPixmap pixmap;
    if (!QPixmapCache::find(key, &pixmap)) {
        pixmap = drawn(path, pixels, color);
        QPixmapCache::insert(key, pixmap);
    }
    pixmap.setDevicePixelRatio(devicePixelRatio);
    return pixmap;
}

void paintSymbol(QPainter& painter, const QString& name, const QRect& bounds, int size, const QColor& color) {
    const QPoint corner(bounds.x() + (bounds.width() - size) / 2, bounds.y() + (bounds.height() - size) / 2);
    painter.drawPixmap(corner, symbolPixmap(name, size, color, painter.device()->devicePixelRatioF()));
}

SymbolView::SymbolView(const Fields& fields) : shown(fields) {
    presentToScreenReaders<SymbolView, AccessibleSymbol>();
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    followApplicationFont(*this, [this] { updateGeometry(); });
}

void SymbolView::display(const Fields& fields) {
    if (fields == shown) return;
    shown = fields;
    updateGeometry();
    update();
}

QSize SymbolView::sizeHint() const {
    const int edge = scaledWithFont(shown.size);
    return {edge, edge};
}

void SymbolView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintSymbol(painter, shown.symbol, rect(), scaledWithFont(shown.size), currentColors().of(shown.tone));
}

}  // namespace tessel
