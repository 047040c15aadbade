// The preset list, its automatic save file, and a new workspace.

#include "persistence/presets.h"

#include "core/data_folder.h"
#include "document/boxes_layer.h"
#include "document/global.h"
#include "document/names.h"
#include "persistence/file_format.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

namespace Vantora_TesserinePro {

file::path Global::auto_save_preset_file_name() const {
    return folder_to_save_data() / "autosaved.tsrx_presets";
}

bool Global::auto_save_presets() {
    return save_presets_to_file(auto_save_preset_file_name());
}

read_report Global::load_default_presets(bool protect_damaged) {
    const file::path saved = auto_save_preset_file_name();
    read_report report(file_kind::presets);
    presets.clear();
    m_damaged_presets_copy = {};
    // No file is no damage: the first start, or a list never changed.
    if (QFileInfo::exists(QString::fromStdString(saved.string()))) {
        presets = read_presets_file(saved, report); // not saved again
        if (!report.clean() && protect_damaged) keep_damaged_presets_file(saved, report);
    }

    // The built-in list serves only while there is nothing else, and is not
    // saved until the user first changes the list.
    if (presets.empty()) {
        load_presets_from_string(getPresetsSource());
        for (const auto& preset : presets) {
            auto boxes = std::dynamic_pointer_cast<boxes_layer>(preset);
            if (!boxes) continue;
            boxes->ExcludeBoxes = exclude_boxes_set();
            boxes->set_changed();
            boxes->DrawBoxes = 1;
            boxes->set_changed();
            boxes->apply_defaults();
        }
    }
    host().reload_all(*this, true);
    set_changed();
    return report;
}

void Global::keep_damaged_presets_file(const file::path& saved, const read_report& report) {
    // The next change of the list saves over the file: what it held is
    // kept beside it first, under a name that no later start reuses.
    const QString stamp = QDateTime::currentDateTime().toString("yyyyMMdd-HHmmss");
    QString copy = QString::fromStdString(saved.string()) + ".damaged-" + stamp;
    for (int n = 2; QFileInfo::exists(copy); ++n)
        copy = QString::fromStdString(saved.string()) + ".damaged-" + stamp + "-" +
               QString::number(n);
    std::string where;
    if (report.has(file_problem::kind::unreadable)) {
        // Never opened: it may be a FIFO or a device, or too large to copy.
        where = "It cannot be read, so no copy of it could be made.";
    } else if (QFile::copy(QString::fromStdString(saved.string()), copy)) {
        m_damaged_presets_copy = copy.toStdString();
        where = "A copy of it is kept as " + m_damaged_presets_copy.string() + ".";
    } else {
        where = "It could not be copied aside; it is replaced at the next change of the list.";
    }
    std::string problems;
    for (const std::string& line : report.lines())
        problems += "\u2022 " + line + "\n";
    host().show_warning("Damaged Preset List",
                        "The saved preset list " + saved.string() + " is damaged:\n\n" +
                            problems + "\n" + where + "\n\n" +
                            (presets.empty() ? std::string("Nothing could be read from it: the "
                                                           "built-in presets are used.")
                                             : "The " + std::to_string(presets.size()) +
                                                   " presets that could be read are used."));
}

void Global::load_default_layers() {
    m_project = std::make_shared<project>();
    set_document_file({}, false);
    paper_width = 1920;
    set_changed();
    paper_height = 1080;
    set_changed();
    // Docked to the bottom-right corner of the raster.
    raster_label_x = 1920;
    raster_label_y = 1080;
    raster_label_width = 0;
    raster_label_height = 0;
    color_by = color_by_mode::chequer;

    new_boxes_layer();

    // No logo saved yet is no fault, and says nothing.
    const file::path logo_file = folder_to_save_data() / "logo.data";
    if (!QFileInfo::exists(QString::fromStdString(logo_file.string()))) return;
    const string logo = read_full_file_as_text(logo_file);
    pointer_array<app_layer> layers = create_layers_from_string(logo, project_magic_and_version);
    if (!layers.empty()) {
        // A logo file of the older framing reads as two alike layers; the
        // first is the logo.
        layers.front()->is_logo = true;
        m_project->get_layers().push_back(layers.front());
    }
}

void Global::clone_preset_to_layers(long long index) {
    if (index < 0) return;
    if (index >= get_presets_count())
        throw preset_error("no preset at index " + std::to_string(index),
                           preset_status_bad_argument);
    const pointer<app_layer>& preset = presets[std::size_t(index)];
    if (!preset)
        throw preset_error("preset " + std::to_string(index) + " is empty",
                           preset_status_bad_argument);
    pointer<app_layer> copy = preset->clone();
    if (!std::dynamic_pointer_cast<boxes_layer>(copy))
        throw preset_error("preset " + std::to_string(index) + " is not a screen layer",
                           preset_status_bad_argument);
    copy->set_project(m_project);

    string_array names;
    if (m_project)
        for (const auto& layer : m_project->get_layers())
            names.push_back(layer->get_name());
    const string name = preset->get_name();
    copy->set_name(_001IncrementName(name, name, names));
    insert_layer_at(copy, -1); // on top, selected
}

void Global::clone_current_layer_to_preset() {
    pointer<boxes_layer> current = current_boxes_layer();
    if (!current) return; // an image layer cannot become a preset
    pointer<app_layer> copy = current->clone();
    if (!std::dynamic_pointer_cast<boxes_layer>(copy))
        throw preset_error("the copy of a screen layer is no screen layer", preset_status_failure);
    presets.insert(presets.begin(), copy); // the newest preset stands first
    set_changed();
    host().reload_all(*this, true);
    auto_save_presets();
}

void Global::delete_preset(long long index) {
    if (index < 0 || index >= get_presets_count()) return;
    presets.erase(presets.begin() + index);
    set_changed();
    host().reload_all(*this, true);
    auto_save_presets();
}

} // namespace Vantora_TesserinePro
