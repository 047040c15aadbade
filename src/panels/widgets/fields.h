#pragma once
// The controls the palettes are made of, beside the text field: a caption,
// a whole-number box and a colour swatch. Each has a callback that runs
// when the user changes it, and a setter for the program that runs none.

#include "core/color.h"

#include <QLabel>
#include <QPushButton>
#include <QSpinBox>

#include <functional>

class QLineEdit;

namespace Vantora_TesserinePro {

// A caption in "sans" 14 in the panels' text colour.
QLabel* make_caption(QWidget* parent, const QString& text);

// An editable text field in "sans" 14.
QLineEdit* make_text_box(QWidget* parent);

// Writes a text field by program: no callback runs.
void set_text_quietly(QLineEdit* field, const QString& text);

// A whole number typed in: no arrows and no range, and the value counts
// when it is committed (Return or leaving the box), not at each keystroke.
class IntBox : public QSpinBox {
  public:
    explicit IntBox(QWidget* parent);
    void set_callback(std::function<void(int)> callback) { m_callback = std::move(callback); }
    void set_value(int value);
    QSize sizeHint() const override { return {50, 22}; }
    QSize minimumSizeHint() const override { return {30, 22}; }

  private:
    std::function<void(int)> m_callback;
};

// A swatch of a colour; a click opens the colour dialog, and the colour
// chosen there is the user's change.
class ColorPicker : public QPushButton {
  public:
    ColorPicker(QWidget* parent, const color::color& value = color::opaque_white);
    void set_callback(std::function<void(const color::color&)> callback) {
        m_callback = std::move(callback);
    }
    void set_color(const color::color& value);
    const color::color& get_color() const { return m_color; }
    // What choosing a colour in the dialog does.
    void choose(const color::color& value);
    QSize sizeHint() const override { return {55, 22}; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    void open_dialog();

    color::color m_color;
    std::function<void(const color::color&)> m_callback;
};

} // namespace Vantora_TesserinePro
