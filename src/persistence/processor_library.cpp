#include "persistence/processor_library.h"

#include "core/atomic_file.h"
#include "core/data_folder.h"
#include "document/global.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>

namespace Vantora_TesserinePro {

const std::vector<processor_model>& processor_library::builtin() {
    // Generic figures of a 1G and a 10G port; no real product's.
    static const std::vector<processor_model> models = {
        {"Generic 4 x 1G", 4, 655360, 327680},
        {"Generic 8 x 1G", 8, 655360, 327680},
        {"Generic 16 x 1G", 16, 655360, 327680},
        {"Generic 4 x 10G", 4, 6553600, 3276800},
    };
    return models;
}

processor_library::processor_library() : m_models(builtin()) {}

file::path processor_library::default_file() {
    return folder_to_save_data() / "processors.json";
}

const processor_model* processor_library::find(const std::string& name) const {
    for (const processor_model& m : m_models)
        if (m.name == name) return &m;
    return nullptr;
}

bool processor_library::is_builtin(const std::string& name) const {
    const auto& b = builtin();
    return std::any_of(b.begin(), b.end(), [&](const auto& m) { return m.name == name; });
}

std::string processor_library::refusal(const processor_model& model,
                                       const std::string& replacing) const {
    if (model.name.empty() || model.name.size() > max_model_name)
        return "A model needs a name of 1 to " + std::to_string(max_model_name) + " characters.";
    if (model.name.find_first_of("\r\n") != std::string::npos) return "A model's name is one line.";
    if (model.ports < 1 || model.ports > max_model_ports)
        return "\"" + model.name + "\": a processor has 1 to " + std::to_string(max_model_ports) +
               " ports.";
    if (model.pixels_8bit < 1 || model.pixels_8bit > max_port_pixels || model.pixels_10bit < 1 ||
        model.pixels_10bit > max_port_pixels)
        return "\"" + model.name + "\": a port carries 1 to " + std::to_string(max_port_pixels) +
               " pixels.";
    if (!replacing.empty() && is_builtin(replacing))
        return "\"" + replacing + "\" is built in and cannot be changed.";
    if (model.name != replacing && find(model.name))
        return "There is a model named \"" + model.name + "\" already.";
    return {};
}

bool processor_library::put(const processor_model& model, const std::string& replacing) {
    if (!refusal(model, replacing).empty()) return false;
    const auto it = std::find_if(m_models.begin(), m_models.end(), [&](const auto& m) {
        return !replacing.empty() && m.name == replacing;
    });
    if (it != m_models.end())
        *it = model;
    else
        m_models.push_back(model);
    return true;
}

bool processor_library::remove(const std::string& name) {
    if (is_builtin(name)) return false;
    return std::erase_if(m_models, [&](const auto& m) { return m.name == name; }) > 0;
}

std::string processor_library::to_json() const {
    QJsonArray list;
    for (const processor_model& m : m_models) {
        if (is_builtin(m.name)) continue;
        list.append(QJsonObject{{"name", QString::fromStdString(m.name)},
                                {"ports", m.ports},
                                {"pixels_8bit", qint64(m.pixels_8bit)},
                                {"pixels_10bit", qint64(m.pixels_10bit)}});
    }
    return QJsonDocument(QJsonObject{{"models", list}}).toJson().toStdString();
}

namespace {

// A whole number in a JSON value, or -1 when it holds none.
std::int64_t whole_number(const QJsonValue& v) {
    if (!v.isDouble()) return -1;
    const double d = v.toDouble();
    if (d != std::floor(d) || d < 0 || d > 9e15) return -1;
    return std::int64_t(d);
}

} // namespace

bool processor_library::load(const file::path& path, bool protect) {
    m_models = builtin();
    m_problems.clear();
    m_set_aside.clear();
    m_unreadable = false;
    const QString where = QString::fromStdString(path.string());
    if (!QFileInfo::exists(where)) return true; // no model of the user's yet
    std::string data, error;
    if (!read_whole_file(path.string(), data, &error)) {
        m_problems.push_back(error);
        m_unreadable = true; // never opened (a FIFO, a device): never copied
        return false;
    }
    QJsonParseError parse{};
    const QJsonDocument doc = QJsonDocument::fromJson(QByteArray::fromStdString(data), &parse);
    const QJsonValue list = doc.object().value("models");
    if (parse.error != QJsonParseError::NoError)
        m_problems.push_back("it is not JSON: " + parse.errorString().toStdString() + " at byte " +
                             std::to_string(parse.offset));
    else if (!list.isArray())
        m_problems.push_back("it holds no \"models\" list");
    const QJsonArray models = list.toArray();
    for (qsizetype i = 0; i < models.size(); ++i) {
        const QJsonObject o = models[i].toObject();
        processor_model m;
        m.name = o.value("name").toString().toStdString();
        const std::int64_t ports = whole_number(o.value("ports"));
        m.ports = ports > max_model_ports ? -1 : int(ports);
        m.pixels_8bit = whole_number(o.value("pixels_8bit"));
        m.pixels_10bit = whole_number(o.value("pixels_10bit"));
        const std::string why = refusal(m);
        if (!why.empty() || !o.value("name").isString())
            m_problems.push_back("model " + std::to_string(i + 1) +
                                 " is left out: " + (why.empty() ? "its name is not text." : why));
        else
            m_models.push_back(m);
    }
    if (protect) keep_aside(path);
    return m_problems.empty();
}

void processor_library::keep_aside(const file::path& path) {
    if (m_problems.empty() || !m_set_aside.empty() || m_unreadable) return;
    // Under a name no later start reuses.
    const QString where = QString::fromStdString(path.string());
    const QString stamp = QDateTime::currentDateTime().toString("yyyyMMdd-HHmmss");
    QString copy = where + ".damaged-" + stamp;
    for (int n = 2; QFileInfo::exists(copy); ++n)
        copy = where + ".damaged-" + stamp + "-" + QString::number(n);
    if (QFile::copy(where, copy)) m_set_aside = copy.toStdString();
}

bool processor_library::save(const file::path& path, std::string* error) {
    // What a damaged file held goes aside before it is written over.
    keep_aside(path);
    if (path == default_file()) ensure_data_folder();
    if (!write_file_atomically(path.string(), to_json(), error)) return false;
    m_problems.clear();
    return true;
}

const processor_library& Global::processor_models() const {
    if (!m_processor_models) {
        m_processor_models = std::make_shared<processor_library>();
        m_processor_models->load(processor_library::default_file());
    }
    return *m_processor_models;
}

void Global::load_processor_models(bool protect_damaged) {
    auto library = std::make_shared<processor_library>();
    const file::path file = processor_library::default_file();
    const bool clean = library->load(file, protect_damaged);
    m_processor_models = library;
    if (clean || !protect_damaged) return;
    std::string problems;
    for (const std::string& line : library->problems())
        problems += "\u2022 " + line + "\n";
    host().show_warning("Damaged Processor Library",
                        "The processor library " + file.string() + " is damaged:\n\n" + problems +
                            "\n" +
                            (library->set_aside().empty()
                                 ? std::string("No copy of it could be made.")
                                 : "A copy of it is kept as " + library->set_aside() + ".") +
                            "\n\nThe models that could be read are used.");
}

bool Global::save_processor_models() {
    std::string error;
    if (edit_processor_models().save(processor_library::default_file(), &error)) return true;
    host().show_error("The processor library could not be saved: " + error);
    return false;
}

} // namespace Vantora_TesserinePro
