#pragma once
// The menu strip across the top of the window, with its drop-downs and the
// shortcuts of every command.

#include <QWidget>

#include <string>

namespace Vantora_TesserinePro {

class Global;

class TopMenu : public QWidget {
  public:
    TopMenu(QWidget* parent, Global* global);

    // A key string such as "CONTROL+SHIFT+B": runs the first entry with
    // that shortcut. True when one ran.
    bool keytrigger(const std::string& key);
    // Closes any open drop-down.
    void fold();
    // Whether a drop-down is open.
    bool any_open() const { return false; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    Global* m_global;
};

} // namespace Vantora_TesserinePro
