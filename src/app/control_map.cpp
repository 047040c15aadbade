#include "app/control_map.h"

#include "core/atomic_file.h"
#include "panels/right_panel.h"
#include "panels/settings_base_window.h"
#include "panels/top_menu.h"
#include "panels/top_panel.h"
#include "panels/widgets/clickable_widget.h"

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>
#include <QTimer>

#include <cmath>
#include <string>

namespace Vantora_TesserinePro {

namespace {

std::string place_of(const QWidget* w) {
    for (; w; w = w->parentWidget()) {
        if (dynamic_cast<const TopPanel*>(w)) return "top";
        if (dynamic_cast<const TopMenuSubmenu*>(w)) return "submenu";
        if (dynamic_cast<const TopMenuMain*>(w)) return "menu";
        if (dynamic_cast<const RightPanel*>(w)) return "list";
        if (auto* palette = dynamic_cast<const SettingsBaseWindow*>(w))
            return "palette:" + palette->title().trimmed().toStdString();
    }
    return "other";
}

const char* kind_of(const QWidget* w) {
    if (qobject_cast<const QCheckBox*>(w)) return "check";
    if (qobject_cast<const QAbstractButton*>(w)) return "button";
    if (qobject_cast<const QAbstractSpinBox*>(w)) return "field";
    if (qobject_cast<const QComboBox*>(w)) return "combo";
    // A spin box's own line edit is the spin box.
    if (qobject_cast<const QLineEdit*>(w))
        return qobject_cast<const QAbstractSpinBox*>(w->parentWidget()) ? nullptr : "field";
    if (dynamic_cast<const ClickableWidget*>(w)) return "entry";
    return nullptr;
}

// The control's own name, its text, or the text of its first label.
std::string name_of(const QWidget* w) {
    QString name = w->objectName();
    if (name.isEmpty())
        if (auto* button = qobject_cast<const QAbstractButton*>(w)) name = button->text();
    if (name.isEmpty())
        if (auto* label = w->findChild<QLabel*>()) name = label->text();
    return name.simplified().toStdString();
}

// A point of the widget's screen in that screen's own pixels.
QPoint pixel_of_screen(const QWidget* w, const QPoint& global) {
    const QScreen* screen = w->screen();
    if (!screen) return global;
    return screen_pixel(global, screen->geometry().topLeft(), screen->devicePixelRatio());
}

// A point of the screen where a click reaches w (or a child of it).
bool reachable_point(QWidget* w, QPoint& at) {
    QList<QPoint> tries{w->rect().center()};
    for (const QRect& r : w->visibleRegion())
        tries << r.center();
    for (const QPoint& local : tries) {
        const QPoint global = w->mapToGlobal(local);
        const QWidget* hit = QApplication::widgetAt(global);
        if (hit && (hit == w || w->isAncestorOf(hit))) {
            at = pixel_of_screen(w, global);
            return true;
        }
    }
    return false;
}

std::string control_lines() {
    std::string out;
    for (QWidget* top : QApplication::topLevelWidgets()) {
        if (!top->isVisible() || top->isModal()) continue;
        for (QWidget* w : top->findChildren<QWidget*>()) {
            const char* kind = kind_of(w);
            QPoint at;
            if (!kind || !w->isVisible() || !w->isEnabled() || !reachable_point(w, at)) continue;
            out += place_of(w) + '\t' + kind + '\t' + std::to_string(at.x()) + '\t' +
                   std::to_string(at.y()) + '\t' + name_of(w) + '\n';
        }
    }
    QWidget* modal = QApplication::activeModalWidget();
    if (!modal) modal = QApplication::activePopupWidget();
    if (modal) out += "modal\t" + modal->windowTitle().toStdString() + '\n';
    return out;
}

} // namespace

QPoint screen_pixel(QPoint logical, QPoint screen_origin, qreal scale) {
    const QPointF middle = (QPointF(logical - screen_origin) + QPointF(0.5, 0.5)) * scale;
    return screen_origin + QPoint(int(std::floor(middle.x())), int(std::floor(middle.y())));
}

void start_control_map(QObject* owner) {
    const QString file = qEnvironmentVariable("TESSERINE_CONTROL_MAP");
    if (file.isEmpty()) return;
    auto* timer = new QTimer(owner);
    QObject::connect(timer, &QTimer::timeout, [file] {
        if (!QFileInfo::exists(file)) write_file_atomically(file.toStdString(), control_lines());
    });
    timer->start(100);
}

} // namespace Vantora_TesserinePro
