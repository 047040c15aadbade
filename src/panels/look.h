#pragma once
// The look of the window: one dark theme, "sans" at 14 unless a panel says
// otherwise, shared by every panel.

#include <QColor>
#include <QFont>
#include <QFontMetrics>
#include <QPalette>
#include <QString>
#include <QWidget>

namespace Vantora_TesserinePro::look {

// Behind everything: where neither the frame nor a panel is.
inline const QColor screen_background(0x30, 0x30, 0x34);
// The menu strip and its drop-downs.
inline const QColor menu_strip(0x26, 0x26, 0x26);
// The right panel.
inline const QColor side_panel(0x1d, 0x1d, 0x1d);
// Palettes: body, title bar, edge and title text.
inline const QColor palette_fill(0x2d, 0x2d, 0x2d);
inline const QColor title_bar(0x3e, 0x3e, 0x3e);
inline const QColor palette_border(0x18, 0x18, 0x18);
inline const QColor title_text(0xdc, 0xdc, 0xdc);
inline const QColor text(0xc8, 0xc8, 0xc8);
// The marks of the selected screens, on the canvas and in the layer list.
inline const QColor selection(0x33, 0xaa, 0xff);
// Entries that cannot run now (nothing to undo).
inline const QColor disabled_text(0x6e, 0x6e, 0x6e);
// Text that is shown but cannot be changed, still read at a glance.
inline const QColor muted_text(0x9c, 0x9c, 0x9c);

constexpr int title_bar_height = 26;

// "sans" at a pixel size.
inline QFont sans(int pixel_size, bool bold = false) {
    QFont f("sans");
    f.setPixelSize(pixel_size);
    f.setBold(bold);
    return f;
}

// The largest "sans" up to max_size in which text fits width pixels: a
// caption of a button of fixed width stays whole.
inline QFont fitted_sans(const QString& text, int width, int max_size = 14) {
    for (int size = max_size; size > 6; --size)
        if (QFontMetrics(sans(size)).horizontalAdvance(text) <= width) return sans(size);
    return sans(6);
}

// Gives a widget's text this colour (no style sheet: they cost a parse per
// widget).
inline void set_text_color(QWidget* w, const QColor& color) {
    QPalette p = w->palette();
    p.setColor(QPalette::WindowText, color);
    p.setColor(QPalette::ButtonText, color);
    p.setColor(QPalette::Text, color);
    w->setPalette(p);
}

} // namespace Vantora_TesserinePro::look
