#include "panels/widgets/cached_style.h"

#include <QApplication>
#include <QDataStream>
#include <QFont>
#include <QHash>
#include <QIODevice>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QPointer>
#include <QProxyStyle>
#include <QStyleFactory>
#include <QStyleOption>
#include <QWidget>

namespace Vantora_TesserinePro {

namespace {

class cached_proxy_style : public QProxyStyle {
  public:
    explicit cached_proxy_style(QStyle* base) : QProxyStyle(base) {}

    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
        if (element != CE_PushButton && element != CE_CheckBox) {
            QProxyStyle::drawControl(element, option, painter, widget);
            return;
        }
        QByteArray key;
        QDataStream s(&key, QIODevice::WriteOnly);
        s << qint32(0) << qint32(element);
        put_common(s, *option, *painter);
        if (const auto* b = qstyleoption_cast<const QStyleOptionButton*>(option))
            s << qint32(b->features) << b->text << b->icon.cacheKey() << b->iconSize;
        draw_cached(key, option->rect, painter,
                    [&](QPainter* p) { QProxyStyle::drawControl(element, option, p, widget); });
    }

    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                            QPainter* painter, const QWidget* widget) const override {
        const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option);
        if (control != CC_ScrollBar || !slider) {
            QProxyStyle::drawComplexControl(control, option, painter, widget);
            return;
        }
        QByteArray key;
        QDataStream s(&key, QIODevice::WriteOnly);
        s << qint32(1) << qint32(control);
        put_common(s, *option, *painter);
        s << qint32(slider->subControls) << qint32(slider->activeSubControls)
          << qint32(slider->orientation) << slider->minimum << slider->maximum
          << slider->sliderPosition << slider->sliderValue << slider->singleStep << slider->pageStep
          << slider->upsideDown;
        draw_cached(key, option->rect, painter, [&](QPainter* p) {
            QProxyStyle::drawComplexControl(control, option, p, widget);
        });
    }

  private:
    // What else the drawing depends on: the option's state, size, colours
    // and the painter's font and pen, with which captions are drawn.
    static void put_common(QDataStream& s, const QStyleOption& o, const QPainter& p) {
        s << quint32(o.state) << qint32(o.direction) << o.rect.size() << o.palette.cacheKey()
          << quint64(qHash(p.font())) << p.font().family() << p.pen().color().rgba64().toArgb32()
          << p.pen().widthF() << qint32(p.renderHints()) << qint32(p.layoutDirection())
          << p.device()->devicePixelRatio();
    }

    template <class Draw>
    void draw_cached(const QByteArray& key, const QRect& rect, QPainter* painter, Draw draw) const {
        // Only where a picture lands on whole pixels unchanged; anything
        // else is drawn as the style draws it.
        if (painter->worldTransform().type() > QTransform::TxTranslate || rect.isEmpty() ||
            painter->opacity() < 1.0) {
            draw(painter);
            return;
        }
        auto it = m_pictures.constFind(key);
        if (it == m_pictures.constEnd()) {
            const qreal ratio = painter->device()->devicePixelRatio();
            QImage picture(rect.size() * ratio, QImage::Format_ARGB32_Premultiplied);
            picture.setDevicePixelRatio(ratio);
            picture.fill(Qt::transparent);
            {
                QPainter p(&picture);
                p.setFont(painter->font());
                p.setPen(painter->pen());
                p.setBrush(painter->brush());
                p.setRenderHints(painter->renderHints());
                p.setLayoutDirection(painter->layoutDirection());
                p.translate(-rect.topLeft());
                draw(&p);
            }
            // A scroll bar dragged through a long list leaves a picture per
            // position: the pictures are bounded.
            if (m_pictures.size() >= 512) m_pictures.clear();
            it = m_pictures.insert(
                key, opaque(picture) ? picture.convertToFormat(QImage::Format_RGB32) : picture);
        }
        painter->drawImage(rect.topLeft(), *it);
    }

    // A picture with no see-through pixel is copied as it is, which is
    // much cheaper than blending it.
    static bool opaque(const QImage& picture) {
        for (int y = 0; y < picture.height(); ++y) {
            const auto* line = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
            for (int x = 0; x < picture.width(); ++x)
                if (qAlpha(line[x]) != 255) return false;
        }
        return true;
    }

    mutable QHash<QByteArray, QImage> m_pictures;
};

} // namespace

QStyle* cached_style() {
    static QPointer<QStyle> style;
    if (!style) {
        QStyle* base = QStyleFactory::create(QApplication::style()->name());
        style = new cached_proxy_style(base);
        style->setParent(qApp);
    }
    return style;
}

void use_cached_style(QWidget* w) {
    w->setStyle(cached_style());
}

} // namespace Vantora_TesserinePro
