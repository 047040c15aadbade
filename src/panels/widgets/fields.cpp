#include "panels/widgets/fields.h"

#include "panels/look.h"

#include <QColorDialog>
#include <QLineEdit>
#include <QPainter>
#include <QSignalBlocker>

#include <limits>

namespace Vantora_TesserinePro {

QLabel* make_caption(QWidget* parent, const QString& text) {
    auto* label = new QLabel(text, parent);
    label->setFont(look::sans(14));
    look::set_text_color(label, look::text);
    return label;
}

QLineEdit* make_text_box(QWidget* parent) {
    auto* field = new QLineEdit(parent);
    field->setFont(look::sans(14));
    return field;
}

void set_text_quietly(QLineEdit* field, const QString& text) {
    const QSignalBlocker quiet(field);
    field->setText(text);
}

IntBox::IntBox(QWidget* parent) : QSpinBox(parent) {
    setRange(std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
    setButtonSymbols(QAbstractSpinBox::NoButtons);
    setKeyboardTracking(false);
    setFont(look::sans(14));
    setFocusPolicy(Qt::StrongFocus);
    connect(this, &QSpinBox::valueChanged, this, [this](int v) {
        if (m_callback) m_callback(v);
    });
}

void IntBox::set_value(int value) {
    const QSignalBlocker quiet(this);
    setValue(value);
}

ColorPicker::ColorPicker(QWidget* parent, const color::color& value)
    : QPushButton(parent), m_color(value) {
    setFocusPolicy(Qt::NoFocus);
    connect(this, &QPushButton::clicked, this, [this] { open_dialog(); });
}

void ColorPicker::set_color(const color::color& value) {
    m_color = value;
    update();
}

void ColorPicker::choose(const color::color& value) {
    set_color(value);
    if (m_callback) m_callback(value);
}

void ColorPicker::open_dialog() {
    auto* dialog =
        new QColorDialog(QColor(m_color.red, m_color.green, m_color.blue, m_color.alpha), window());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setOption(QColorDialog::ShowAlphaChannel);
    dialog->setWindowModality(Qt::WindowModal);
    connect(dialog, &QColorDialog::colorSelected, this, [this](const QColor& c) {
        choose(color::color(std::uint8_t(c.red()), std::uint8_t(c.green()), std::uint8_t(c.blue()),
                            std::uint8_t(c.alpha())));
    });
    dialog->open();
}

void ColorPicker::paintEvent(QPaintEvent*) {
    QPainter p(this);
    const QRect r = rect().adjusted(0, 0, -1, -1);
    // A chequer under the swatch shows how transparent the colour is.
    p.fillRect(r, QColor(0x80, 0x80, 0x80));
    for (int y = 0; y < height(); y += 6)
        for (int x = (y / 6 % 2) * 6; x < width(); x += 12)
            p.fillRect(QRect(x, y, 6, 6).intersected(r), QColor(0xb0, 0xb0, 0xb0));
    p.fillRect(r, QColor(m_color.red, m_color.green, m_color.blue, m_color.alpha));
    p.setPen(underMouse() ? look::title_text : look::palette_border);
    p.drawRect(r);
}

} // namespace Vantora_TesserinePro
