#pragma once
// The small pieces of the panels: a check box that shows its focus and
// toggles with space, a picture of a fixed size, a blank, a box that can
// move its last child to the front, and the program's message boxes.

#include <QCheckBox>
#include <QImage>
#include <QMessageBox>
#include <QWidget>

#include <functional>

namespace Vantora_TesserinePro {

// A message box over parent's window that leaves the rest of the program
// running (it is opened, never executed) and deletes itself when answered;
// named so that tests and the control map find it.
QMessageBox* window_modal_box(QMessageBox::Icon icon, const QString& title, const QString& text,
                              QWidget* parent, const char* name,
                              QMessageBox::StandardButtons buttons = QMessageBox::NoButton);

class CheckboxWithFocus : public QCheckBox {
  public:
    explicit CheckboxWithFocus(QWidget* parent, const QString& caption = QString());
    // Called when the user changes the box, not when the program sets it.
    void set_callback(std::function<void(bool)> callback) { m_callback = std::move(callback); }
    // Sets the box as the program does: no callback runs.
    void set_checked(bool value);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;

  private:
    std::function<void(bool)> m_callback;
};

// A picture shown at width by height: one of the program's own resources
// (":/res/NAME") or pixels given to it.
class W_Image : public QWidget {
  public:
    W_Image(QWidget* parent, int width, int height, const QString& resource = QString());
    void set_image(const QImage& image);
    const QImage& image() const { return m_image; }
    QSize sizeHint() const override { return size(); }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QImage m_image;
};

// A blank of a given size.
class NOP : public QWidget {
  public:
    NOP(QWidget* parent, int width, int height);
};

class WidgetWithReverse : public QWidget {
  public:
    explicit WidgetWithReverse(QWidget* parent) : QWidget(parent) {}
    // With two children or more, the last one becomes the first (in the
    // layout, when there is one).
    void move_last_child_to_first();
};

} // namespace Vantora_TesserinePro
