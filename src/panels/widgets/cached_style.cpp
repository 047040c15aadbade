#include "panels/widgets/cached_style.h"

#include <QApplication>
#include <QDataStream>
#include <QHash>
#include <QIODevice>
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
          << p.font().key() << p.pen().color().rgba64().toArgb32() << p.pen().widthF()
          << qint32(p.renderHints()) << qint32(p.layoutDirection())
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
            QPixmap picture(rect.size() * ratio);
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
            it = m_pictures.insert(key, picture);
        }
        painter->drawPixmap(rect.topLeft(), *it);
    }

    mutable QHash<QByteArray, QPixmap> m_pictures;
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
