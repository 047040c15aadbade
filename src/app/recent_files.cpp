#include "app/recent_files.h"

#include "app/main_screen.h"
#include "app/settings_file.h"
#include "app/undo_controller.h"
#include "canvas/main_impact.h"
#include "document/global.h"
#include "document/image_layer.h"
#include "panels/top_menu.h"

#include <QCursor>
#include <QDir>
#include <QDropEvent>
#include <QImageReader>
#include <QMimeData>
#include <QUrl>

#include <QFileInfo>
#include <QJsonArray>
#include <QMenu>
#include <cmath>

namespace Vantora_TesserinePro {

recent_files recent_files::of(const MainScreen& screen) {
    return recent_files(screen.global().getFolderToSaveData() / "recent_files.json");
}

QJsonObject recent_files::read() const {
    QJsonObject object;
    read_settings_object(m_storage, object);
    return object;
}

void recent_files::write(const QJsonObject& object) const {
    // A list that cannot be kept is no reason to bother the user.
    write_settings_object(m_storage, object);
}

QStringList recent_files::projects() const {
    QJsonObject object = read();
    QStringList kept;
    for (const auto& value : object["projects"].toArray())
        if (QFileInfo(value.toString()).isFile() && kept.size() < limit) kept << value.toString();
    if (kept.size() != object["projects"].toArray().size()) {
        object["projects"] = QJsonArray::fromStringList(kept);
        write(object);
    }
    return kept;
}

void recent_files::add_project(const QString& path) const {
    const QString absolute = QFileInfo(path).absoluteFilePath();
    QJsonObject object = read();
    QStringList list;
    for (const auto& value : object["projects"].toArray())
        list << value.toString();
    list.removeAll(absolute);
    list.prepend(absolute);
    object["projects"] = QJsonArray::fromStringList(list.mid(0, limit));
    write(object);
}

void recent_files::clear_projects() const {
    QJsonObject object = read();
    object.remove("projects");
    write(object);
}

QString recent_files::folder_for(const QString& kind) const {
    return read()["folders"].toObject()[kind].toString();
}

void recent_files::set_folder_for(const QString& kind, const QString& folder) const {
    QJsonObject object = read();
    QJsonObject folders = object["folders"].toObject();
    folders[kind] = folder;
    object["folders"] = folders;
    write(object);
}

bool open_project_path(MainScreen& screen, const QString& path) {
    Global& global = screen.global();
    if (!QFileInfo(path).isFile()) {
        global.show_error("The project " + path.toStdString() + " no longer exists.");
        return false;
    }
    // Unsaved work is asked about first. A refused file is reported and
    // leaves the document; a damaged one opens with a warning.
    const auto open = [&screen, &global, path] {
        if (global.open_project_file(path.toStdString()).refused()) return;
        if (global.get_layers_count() > 0) screen.setCurrentLayerTo(0, true);
        recent_files::of(screen).add_project(path);
        screen.reload_all(true);
    };
    if (UndoController* undo = screen.undo_controller())
        undo->ask_before_discarding(open);
    else
        open();
    return true;
}

void show_open_recent(MainScreen& screen) {
    auto* menu = new QMenu(&screen);
    menu->setObjectName("open_recent");
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setToolTipsVisible(true);
    const recent_files recent = recent_files::of(screen);
    for (const QString& path : recent.projects()) {
        QAction* action = menu->addAction(QFileInfo(path).fileName());
        action->setToolTip(QDir::toNativeSeparators(path));
        QObject::connect(action, &QAction::triggered, &screen,
                         [&screen, path] { open_project_path(screen, path); });
    }
    if (menu->isEmpty()) menu->addAction("No recent projects")->setEnabled(false);
    menu->addSeparator();
    QAction* clear = menu->addAction("Clear List");
    QObject::connect(clear, &QAction::triggered, &screen,
                     [&screen] { recent_files::of(screen).clear_projects(); });
    menu->popup(QCursor::pos());
}

namespace {

// The local files of a drag, when it carries any.
QStringList dragged_files(const QMimeData* data) {
    QStringList files;
    if (data && data->hasUrls())
        for (const QUrl& url : data->urls())
            if (url.isLocalFile()) files << url.toLocalFile();
    return files;
}

class drop_filter : public QObject {
  public:
    explicit drop_filter(MainScreen& screen) : QObject(&screen), m_screen(screen) {}

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::DragEnter || event->type() == QEvent::DragMove) {
            auto* drag = static_cast<QDragMoveEvent*>(event);
            if (dragged_files(drag->mimeData()).size() != 1) return false;
            drag->acceptProposedAction();
            return true;
        }
        if (event->type() != QEvent::Drop) return QObject::eventFilter(watched, event);
        auto* drop = static_cast<QDropEvent*>(event);
        const QStringList files = dragged_files(drop->mimeData());
        if (files.size() != 1) return false;
        drop->acceptProposedAction();
        const QPoint at = drop->position().toPoint();
        MainImpact* canvas = m_screen.main_impact();
        const QPoint in_canvas = canvas ? canvas->mapFrom(&m_screen, at) : QPoint();
        const bool on_canvas = canvas && canvas->rect().contains(in_canvas);
        drop_file(m_screen, files.first(), on_canvas ? &in_canvas : nullptr);
        return true;
    }

  private:
    MainScreen& m_screen;
};

} // namespace

void accept_file_drops(MainScreen& screen) {
    screen.setAcceptDrops(true);
    screen.installEventFilter(new drop_filter(screen));
}

bool drop_file(MainScreen& screen, const QString& path, const QPoint* canvas_point) {
    const QFileInfo file(path);
    if (file.suffix().compare("tsrx", Qt::CaseInsensitive) == 0)
        return open_project_path(screen, path);
    if (!QImageReader::imageFormat(path).isEmpty() || file.suffix().toLower() == "tga") {
        if (!canvas_point || !screen.main_impact()) {
            screen.global().show_error("Drop the picture " + file.fileName().toStdString() +
                                       " on the canvas to add it as an image layer.");
            return false;
        }
        pointer<image_layer> layer = add_picture_layer(screen.global(), path.toStdString());
        if (!layer) return false;
        // Its top left corner where it was dropped, in raster pixels.
        const MainImpact& canvas = *screen.main_impact();
        const float zoom = canvas.get_effective_zoom();
        layer->set_offset_x(int(std::floor((canvas_point->x() - canvas.get_pan().x()) / zoom)));
        layer->set_offset_y(int(std::floor((canvas_point->y() - canvas.get_pan().y()) / zoom)));
        layer->set_changed();
        screen.reload_all(true);
        return true;
    }
    screen.global().show_error("Tesserine cannot use " + file.fileName().toStdString() +
                               ": drop a .tsrx project, or a picture on the canvas.");
    return false;
}

} // namespace Vantora_TesserinePro
