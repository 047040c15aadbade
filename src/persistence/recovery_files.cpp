#include "persistence/recovery_files.h"

#include "core/atomic_file.h"
#include "core/diagnostics.h"
#include "document/global.h"
#include "persistence/file_format.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <atomic>
#include <set>

namespace Vantora_TesserinePro {

namespace {

QString q(const file::path& p) {
    return QString::fromStdString(p.string());
}

file::path beside(const file::path& data, const char* extension) {
    const std::string& s = data.string();
    return file::path(s.substr(0, s.size() - 5) + extension);
}

} // namespace

string project_file_text(const document_state& s) {
    const string label =
        raster_label_record(s.label_x, s.label_y, s.label_font_size, s.label_lines);
    return layers_file_text(
        s.layers, project_magic,
        project_extra_block(Global::paper_side(s.paper_width), Global::paper_side(s.paper_height)),
        &label, drawing_settings_record(s.color_by));
}

recovery_store::recovery_store(const file::path& folder) : m_folder(folder) {
    // The process id and the start time: a new program that was given the
    // id of one that crashed never takes that one's files as its own.
    static std::atomic<int> count{0};
    m_id = QString("session-%1-%2%3")
               .arg(QCoreApplication::applicationPid())
               .arg(QDateTime::currentDateTimeUtc().toString("yyyyMMddhhmmsszzz"))
               .arg(count++ ? QString("-%1").arg(count.load()) : QString());
}

recovery_store::~recovery_store() {
    if (!is_open()) return;
    remove();
    m_worker.wait_idle();
    m_lock->unlock();
}

bool recovery_store::open() {
    if (is_open()) return true;
    if (!QDir().mkpath(q(m_folder))) return false;
    m_lock = std::make_unique<QLockFile>(q(m_folder / (m_id.toStdString() + ".lock")));
    // A lock is never stale by its age: a program may run for weeks.
    m_lock->setStaleLockTime(0);
    return m_lock->tryLock(0);
}

file::path recovery_store::data_path() const {
    return m_folder / (m_id.toStdString() + ".tsrx");
}

file::path recovery_store::side_path() const {
    return beside(data_path(), ".json");
}

void recovery_store::write(document_state state, const file::path& file,
                           const file::path& suggested) {
    if (!is_open()) return;
    m_worker.post(
        [state = std::move(state), file, suggested, data = data_path(), side = side_path()] {
            const QJsonObject names{{"file", q(file)}, {"suggested", q(suggested)}};
            std::string problem;
            // Each file whole or not at all, the names before the document.
            if (!write_file_atomically(side.string(), QJsonDocument(names).toJson().toStdString(),
                                       &problem) ||
                !write_file_atomically(data.string(), project_file_text(state), &problem))
                diagnostics_line("The recovery file " + data.string() +
                                 " cannot be written: " + problem);
        });
}

void recovery_store::remove() {
    if (!is_open()) return;
    m_worker.post([data = data_path(), side = side_path()] {
        QFile::remove(q(data));
        QFile::remove(q(side));
    });
}

std::vector<left_recovery> recovery_store::left_behind() {
    std::vector<left_recovery> found;
    const QDir dir(q(m_folder));
    std::set<QString> ids;
    for (const QFileInfo& f :
         dir.entryInfoList({"session-*.tsrx", "session-*.lock"}, QDir::Files | QDir::Hidden))
        if (f.completeBaseName() != m_id) ids.insert(f.completeBaseName());
    for (const QString& id : ids) {
        auto claim = std::make_shared<QLockFile>(dir.filePath(id + ".lock"));
        claim->setStaleLockTime(0);
        // Its program still runs (or another one has just claimed it).
        if (!claim->tryLock(0)) continue;
        // A write cut off by the crash may have left its temporary files.
        for (const QString& temporary :
             dir.entryList({id + ".tsrx.*", id + ".json.*"}, QDir::Files | QDir::Hidden))
            QFile::remove(dir.filePath(temporary));
        left_recovery left;
        left.data = file::path(dir.filePath(id + ".tsrx").toStdString());
        const QString side = dir.filePath(id + ".json");
        if (!QFileInfo::exists(q(left.data))) {
            // It ended with nothing unsaved.
            QFile::remove(side);
            claim->unlock();
            continue;
        }
        QFile names(side);
        if (names.open(QIODevice::ReadOnly)) {
            const QJsonObject o = QJsonDocument::fromJson(names.readAll()).object();
            left.file = file::path(o.value("file").toString().toStdString());
            left.suggested = file::path(o.value("suggested").toString().toStdString());
        }
        left.written = QFileInfo(q(left.data)).lastModified();
        left.claim = claim;
        found.push_back(std::move(left));
    }
    std::sort(found.begin(), found.end(),
              [](const left_recovery& a, const left_recovery& b) { return a.written > b.written; });
    return found;
}

bool recovery_store::adopt(left_recovery& left) {
    if (!is_open()) return false;
    m_worker.wait_idle();
    QFile::remove(q(side_path()));
    QFile::rename(q(beside(left.data, ".json")), q(side_path()));
    QFile::remove(q(data_path()));
    if (!QFile::rename(q(left.data), q(data_path()))) return false;
    left.claim->unlock();
    return true;
}

void recovery_store::discard(left_recovery& left) {
    QFile::remove(q(left.data));
    QFile::remove(q(beside(left.data, ".json")));
    left.claim->unlock();
}

file::path recovery_store::set_aside(left_recovery& left) {
    const QFileInfo data(q(left.data));
    const QString aside = data.dir().filePath("damaged-" + data.fileName());
    if (!QFile::rename(data.filePath(), aside)) return {};
    QFile::rename(q(beside(left.data, ".json")),
                  data.dir().filePath("damaged-" + data.completeBaseName() + ".json"));
    left.claim->unlock();
    return file::path(aside.toStdString());
}

} // namespace Vantora_TesserinePro
