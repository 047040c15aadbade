#include "app/application.h"

#include "app/main_screen.h"
#include "app/main_window.h"
#include "app/recent_files.h"
#include "app/recovery_controller.h"
#include "app/settings_file.h"
#include "app/start_steps.h"
#include "app/undo_controller.h"
#include "canvas/live_output.h"
#include "canvas/main_impact.h"
#include "core/data_folder.h"
#include "core/diagnostics.h"
#include "document/global.h"

#include <QApplication>
#include <QFileInfo>
#include <QFileOpenEvent>
#include <QJsonObject>

#include <cstdio>

namespace Vantora_TesserinePro {

namespace {
application* s_instance = nullptr;

const char* const rectangle_keys[4] = {"main_window_left", "main_window_top", "main_window_right",
                                       "main_window_bottom"};

std::string rectangle_trace(const char* prefix, const QRectF& r) {
    char buffer[256];
    std::snprintf(buffer, sizeof buffer, "%sxy(%g, %g)-wh(%g, %g)", prefix, r.left(), r.top(),
                  r.right() - r.left(), r.bottom() - r.top());
    return buffer;
}
} // namespace

application::application() {
    s_instance = this;
}

application::~application() {
    live_output_window_pointer.reset();
    main_window_pointer.reset();
    if (s_instance == this) s_instance = nullptr;
}

application* application::instance() {
    return s_instance;
}

void application::init_instance() {
    if (QCoreApplication* qt = QCoreApplication::instance()) {
        QCoreApplication::setApplicationName(app_name_for_storage().c_str());
        qt->installEventFilter(this);
    }
    QGuiApplication::setApplicationDisplayName(application_title);
    QGuiApplication::setDesktopFileName(desktop_file_name);
    set_file_association();
}

QIcon application::icon() {
    QIcon icon;
    for (int size : {16, 32, 48, 64, 128, 256})
        icon.addFile(QString(":/icons/%1/tesserine.png").arg(size), QSize(size, size));
    return icon;
}

void application::set_file_association() {
    // The desktop entry and the MIME type that the package installs
    // declare ".tsrx" for the system; nothing is registered at run time.
}

std::string application::app_name_for_storage() const {
    return Vantora_TesserinePro::app_name_for_storage();
}

file::path application::folder_to_save_data() const {
    return Vantora_TesserinePro::folder_to_save_data();
}

file::path application::settings_file_path() const {
    return folder_to_save_data() / "settings.network_payload";
}

bool application::load_settings() {
    QJsonObject settings;
    if (!read_settings_object(settings_file_path(), settings)) return false;
    m_saved_settings = settings;
    const double left = settings.value(rectangle_keys[0]).toDouble(0.0);
    const double top = settings.value(rectangle_keys[1]).toDouble(0.0);
    const double right = settings.value(rectangle_keys[2]).toDouble(0.0);
    const double bottom = settings.value(rectangle_keys[3]).toDouble(0.0);
    initial_rectangle = QRectF(QPointF(left, top), QPointF(right, bottom));
    output_debug_string(rectangle_trace("m_rectangleInitialRateOrSize (1) : ", initial_rectangle));
    const double area =
        (right - left > 0 && bottom - top > 0) ? (right - left) * (bottom - top) : 0;
    // A window that would be too small to find gets a rectangle that can be
    // seen, on purpose not the first-start one.
    if (area < 0.010000000000000002)
        initial_rectangle = QRectF(QPointF(0.05, 0.05), QPointF(0.4, 0.4));
    output_debug_string(rectangle_trace("m_rectangleInitialRateOrSize (2) : ", initial_rectangle));
    return true;
}

void application::save_settings() {
    if (!main_window_pointer) return;
    const QRect r = main_window_pointer->geometry();
    QJsonObject settings;
    settings[rectangle_keys[0]] = r.left();
    settings[rectangle_keys[1]] = r.top();
    settings[rectangle_keys[2]] = r.left() + r.width();
    settings[rectangle_keys[3]] = r.top() + r.height();
    if (settings == m_saved_settings) return;
    if (write_settings_object(settings_file_path(), settings)) m_saved_settings = settings;
}

void application::request_save_settings() {
    if (m_save_posted) return;
    m_save_posted = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_save_posted = false;
            save_settings();
        },
        Qt::QueuedConnection);
}

void application::on_request(const std::string& path) {
    const bool first = !main_window_pointer;
    if (first) {
        main_window_pointer = std::make_unique<main_window>(this);
        if (load_settings()) main_window_pointer->m_rectangleInitialRateOrSize = initial_rectangle;
        main_window_pointer->create_main_window();
    }
    on_file_request(path);
    if (!first) return;
    // Once the window shows: the icon (six pictures to decode), and work
    // that a program which did not end normally left behind.
    start_steps::after_first_paint(main_window_pointer.get(),
                                   [] { QGuiApplication::setWindowIcon(icon()); });
    start_steps::after_first_paint(main_window_pointer.get(), [this] {
        if (RecoveryController* recovery = main_window_pointer->main_screen()->recovery())
            recovery->offer_left_behind();
    });
}

void application::on_file_request(const std::string& path) {
    output_debug_string("application::on_file_request");
    if (!main_window_pointer) return;
    MainScreen* screen = main_window_pointer->main_screen();
    Global& global = screen->global();
    // A name of no file starts a new workspace; a file that is refused is
    // reported and the window starts afresh; a damaged one opens with a
    // warning.
    const bool named = !path.empty() && QFileInfo::exists(QString::fromStdString(path));
    if (!named || global.open_project_file(path).refused())
        global.load_default_layers();
    else
        recent_files::of(*screen).add_project(QString::fromStdString(path));
    if (global.get_layers_count() > 0) screen->setCurrentLayerTo(0, true);
    if (UndoController* undo = screen->undo_controller()) undo->start_fresh();
    main_window* window = main_window_pointer.get();
    // Keys go to the canvas until the user picks a field.
    if (screen->main_impact()) screen->main_impact()->setFocus();
    window->show();
    window->raise();
    window->activateWindow();
    window->update();
}

bool application::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FileOpen) {
        on_request(static_cast<QFileOpenEvent*>(event)->file().toStdString());
        return true;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace Vantora_TesserinePro
