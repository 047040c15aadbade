// The show report, written with Qt's own PDF writer: text stays text (it can
// be searched and copied), tables are lines, and the frame is embedded
// without loss at its own resolution.

#include "export/report.h"

#include "core/atomic_file.h"
#include "core/string_format.h"
#include "datapath/snake.h"
#include "document/boxes_layer.h"
#include "document/global.h"
#include "document/image_layer.h"
#include "plan/bom.h"
#include "plan/power_plan.h"
#include "plan/processors.h"
#include "render/rear_view.h"

#include <QBuffer>
#include <QDateTime>
#include <QPainter>
#include <QPdfWriter>

#include <cstdlib>
#include <vector>

namespace Vantora_TesserinePro {

namespace {

// One point is one unit: the writer works at 72 dots per inch.
constexpr double row_height = 15;
constexpr double padding = 4;
const QColor rule(0x80, 0x80, 0x80);
const QColor header_fill(0xe4, 0xe4, 0xe4);
const QColor over_text(0xb0, 0x20, 0x10);

QFont report_font(double points, bool bold = false) {
    QFont f("DejaVu Sans");
    f.setPointSizeF(points);
    f.setBold(bold);
    // No ligatures, so that "ff" stays two letters when the text is
    // searched or copied.
    f.setStyleStrategy(QFont::PreferNoShaping);
    return f;
}

QString q(const std::string& s) {
    return QString::fromStdString(s);
}

// Lays text and tables down the page, starting a new page where one is full.
class page_writer {
  public:
    page_writer(QPdfWriter& writer, QPainter& painter)
        : m_writer(writer), m_painter(painter), m_width(writer.width()), m_height(writer.height()) {
    }

    double width() const { return m_width; }
    double height() const { return m_height; }
    double y = 0;

    void new_page() {
        m_writer.newPage();
        y = 0;
    }
    void room_for(double h) {
        if (y > 0 && y + h > m_height) new_page();
    }
    void heading(const QString& text, double points) {
        room_for(points * 2 + row_height * 3);
        m_painter.setFont(report_font(points, true));
        m_painter.setPen(Qt::black);
        m_painter.drawText(QRectF(0, y, m_width, points * 1.6), Qt::AlignLeft | Qt::AlignVCenter,
                           text);
        y += points * 1.6 + 4;
    }
    void line(const QString& text, const QColor& colour = Qt::black) {
        room_for(row_height);
        m_painter.setFont(report_font(9));
        m_painter.setPen(colour);
        m_painter.drawText(QRectF(0, y, m_width, row_height), Qt::AlignLeft | Qt::AlignVCenter,
                           text);
        y += row_height;
    }
    // Columns as shares of the width; a header row, when given, comes again
    // at the top of each page the table runs on to. A row whose last cell
    // ends with " over" is drawn in the warning colour.
    void table(const std::vector<double>& shares, const QStringList& header,
               const std::vector<QStringList>& rows) {
        if (!header.isEmpty()) row(shares, header, true);
        for (const QStringList& cells : rows) {
            if (y + row_height > m_height) {
                new_page();
                if (!header.isEmpty()) row(shares, header, true);
            }
            row(shares, cells, false);
        }
        y += row_height * 0.6;
    }

  private:
    void row(const std::vector<double>& shares, const QStringList& cells, bool header) {
        room_for(row_height * (header ? 2 : 1));
        const QFont font = report_font(9, header);
        m_painter.setFont(font);
        const QFontMetricsF metrics(font, &m_writer);
        const bool over = !header && !cells.isEmpty() && cells.back().endsWith(" over");
        double x = 0;
        for (std::size_t i = 0; i < shares.size(); ++i) {
            const QRectF cell(x, y, shares[i] * m_width, row_height);
            if (header) m_painter.fillRect(cell, header_fill);
            m_painter.setPen(QPen(rule, 0.5));
            m_painter.drawRect(cell);
            m_painter.setPen(over ? over_text : QColor(Qt::black));
            const QString text = i < std::size_t(cells.size()) ? cells[int(i)] : QString();
            const QRectF inside = cell.adjusted(padding, 0, -padding, 0);
            m_painter.drawText(inside, Qt::AlignLeft | Qt::AlignVCenter,
                               metrics.elidedText(text, Qt::ElideRight, inside.width()));
            x += cell.width();
        }
        y += row_height;
    }

    QPdfWriter& m_writer;
    QPainter& m_painter;
    double m_width, m_height;
};

const char* type_name(const boxes_layer& layer) {
    if (layer.CustomDataPath) return "Custom Path";
    return layer.DataDiagramType == 0 ? "Novastar" : "Other Type";
}

struct totals {
    long long cabinets = 0, pixels = 0, ports = 0, watts = 0, circuits = 0;
    double amperes = 0;
    double phase_amperes[3] = {0, 0, 0};
};

void circuits_table(page_writer& page, const boxes_layer& layer, totals& sum) {
    page.heading("Circuits", 11);
    const plan::power_plan power = plan::plan_power(layer);
    if (power.failed) {
        page.line(q("No power plan: " + power.message), over_text);
        return;
    }
    page.line(q(string_format("%d A circuits derated to %d %% at %d V: %lld W each.",
                              layer.CircuitAmps, layer.CircuitDerate, layer.PowerVolts,
                              (long long)power.capacity_watts)));
    if (power.circuits.empty()) {
        page.line("No cabinet draws power.");
        return;
    }
    std::vector<QStringList> rows;
    for (const plan::circuit& c : power.circuits)
        rows.push_back({QString::number(c.number), q(plan::phase_name(c.phase)),
                        q(string_format("%u, %u", c.first_column, c.first_row)),
                        q(string_format("%u, %u", c.last_column, c.last_row)),
                        QString::number(c.cabinets), q(plan::watts_text(c.quarter_watts)),
                        q(string_format("%.2f", c.amperes)),
                        q(string_format("%.2f %%", c.percent))});
    page.table({0.09, 0.08, 0.13, 0.13, 0.13, 0.14, 0.14, 0.16},
               {"Circuit", "Phase", "First", "Last", "Cabinets", "Watts", "Amperes",
                "Share of rating"},
               rows);
    QString phases;
    for (int k = 0; k < power.phases; ++k) {
        phases += q(string_format("%s%s %.2f A", k ? " \u00b7 " : "",
                                  plan::phase_name(k + 1).c_str(), power.phase_amperes[k]));
        sum.phase_amperes[k] += power.phase_amperes[k];
    }
    page.line(phases);
    sum.circuits += (long long)power.circuits.size();
}

void embed_frame(page_writer& page, QPainter& painter, const image& frame);

void first_page(page_writer& page, QPainter& painter, const Global& global, const image& frame,
                const report_options& options) {
    const int W = global.get_paper_width(), H = global.get_paper_height();
    page.heading(q(options.name.empty() ? "Untitled" : options.name), 20);
    page.line(q(string_format("Raster %d \u00d7 %d px \u00b7 %s", W, H, options.date.c_str())));
    page.y += 6;
    if (frame.isNull()) {
        page.line("No frame was built.");
        return;
    }
    embed_frame(page, painter, frame);
}

// The frame as large as the rest of the page holds it.
void embed_frame(page_writer& page, QPainter& painter, const image& frame) {
    // Opaque, as the frame shows over the canvas's black background: the
    // premultiplied pixels read as they are, without a copy of 8K pixels;
    // at most 8K wide.
    QImage shown = frame.format() == QImage::Format_ARGB32_Premultiplied
                       ? QImage(frame.constBits(), frame.width(), frame.height(),
                                frame.bytesPerLine(), QImage::Format_RGB32)
                       : frame.convertToFormat(QImage::Format_RGB32);
    const bool scaled = shown.width() > report_frame_width_limit;
    if (scaled)
        shown =
            shown.scaled(report_frame_width_limit,
                         std::max(1, int(std::llround(double(shown.height()) *
                                                      report_frame_width_limit / shown.width()))),
                         Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    const double room_h = page.height() - page.y - (scaled ? row_height + 4 : 0);
    const double z = std::min(page.width() / shown.width(), room_h / shown.height());
    const QRectF at((page.width() - shown.width() * z) / 2, page.y, shown.width() * z,
                    shown.height() * z);
    painter.drawImage(at, shown);
    page.y = at.bottom() + 4;
    if (scaled)
        page.line(q(string_format("The frame of %d \u00d7 %d px is embedded scaled to %d px wide.",
                                  frame.width(), frame.height(), report_frame_width_limit)));
}

// The screen as the crew behind it sees it: left and right swapped, each
// cabinet's ID its own.
void rear_page(page_writer& page, QPainter& painter, const boxes_layer& layer, long long index,
               const image& map) {
    if (map.isNull()) return;
    page.new_page();
    page.heading(
        q(string_format("Screen layer %lld: ", index)) + q(layer.get_name()) + " from behind", 14);
    page.line("Rear view: as seen from behind the wall, left and right swapped.");
    page.y += 6;
    embed_frame(page, painter, map);
}

void screen_page(page_writer& page, const boxes_layer& layer, const plan::layer_plan& loads,
                 totals& sum) {
    const long long index = loads.index;
    page.new_page();
    page.heading(q(string_format("Screen layer %lld: ", index)) + q(layer.get_name()) +
                     (layer.is_hidden() ? " (hidden)" : ""),
                 14);
    const float metres_w = layer.get_full_columns() * layer.PhysW;
    const float metres_h = layer.get_full_rows() * layer.PhysH;
    std::string grid = string_format("%d \u00d7 %d", layer.Columns, layer.Rows);
    if (layer.HalfColumns.any())
        grid += string_format(" (with halves %.1f \u00d7 %.1f)", double(layer.get_full_columns()),
                              double(layer.get_full_rows()));
    const long long powered = layer.powered_cabinets();
    const long long watts = (long long)layer.PowerWatts * powered;
    const float amperes = layer.calculate_power();
    const std::vector<QStringList> figures = {
        {"Offset", q(string_format("%d, %d px", layer.get_offset_x(), layer.get_offset_y()))},
        {"Cabinet", q(string_format("%d \u00d7 %d px", layer.Width, layer.Height))},
        {"Columns \u00d7 rows", q(grid)},
        {"Cabinets", q(string_format("%zu excluded, %lld in use", layer.ExcludeBoxes.size(),
                                     layer.cabinet_count()))},
        {"Resolution", q(string_format("%d \u00d7 %d px", layer.get_width(), layer.get_height()))},
        {"Physical size",
         q(string_format("%.2f m \u00d7 %.2f m \u00b7 %s \u00d7 %s", double(metres_w / 1000.0f),
                         double(metres_h / 1000.0f), feet_and_inches(metres_w).c_str(),
                         feet_and_inches(metres_h).c_str()))},
        {"Data path", q(string_format("%s, pattern %d, limit %d px", type_name(layer),
                                      layer.SnakeMode + 1, layer.SnakeLimit) +
                        (loads.processor_keys ? string_format(" (%lld px a port at %d-bit, %d Hz)",
                                                              (long long)loads.effective_limit,
                                                              layer.BitDepth, layer.FrameRate)
                                              : std::string()))},
        {"Power",
         q(string_format("%d W per cabinet, %d V, %d %s", layer.PowerWatts, layer.PowerVolts,
                         layer.PowerPhases, layer.PowerPhases == 1 ? "phase" : "phases"))},
        {"Total power", q(string_format("%lld W, %.2f A", watts, double(amperes)))},
    };
    page.table({0.25, 0.75}, {}, figures);

    page.heading("Port loads", 11);
    const bool novastar = std::string(loads.type) == "novastar";
    if (!loads.routed) {
        page.line(q("The router fails: " + loads.message), over_text);
    } else if (loads.chains.empty()) {
        page.line("No cabinet is on the data path.");
    } else {
        std::vector<QStringList> rows;
        for (const plan::chain_plan& c : loads.chains) {
            const Snake::port_load& p = c.load;
            QString share = p.percent ? q(string_format("%.2f %%", *p.percent)) : "no limit";
            if (p.over) share += " over";
            QString port = QString::number(p.port);
            if (c.main) port += q(" · " + plan::port_label(*c.main));
            if (c.backup) port += q(" · " + plan::backup_label(*c.backup));
            rows.push_back({port, q(string_format("%u, %u", p.first_column, p.first_row)),
                            q(string_format("%u, %u", p.last_column, p.last_row)),
                            QString::number(p.cabinets), QString::number(p.pixels),
                            novastar ? QString::number(p.area) : QString(), share});
        }
        page.table({0.08, 0.14, 0.14, 0.14, 0.16, 0.16, 0.18},
                   {"Port", "First", "Last", "Cabinets", "Pixels", "Area", "Share of limit"}, rows);
    }
    circuits_table(page, layer, sum);
    sum.cabinets += layer.cabinet_count();
    sum.pixels += (long long)layer.get_width() * layer.get_height();
    sum.ports += (long long)loads.chains.size();
    sum.watts += watts;
    sum.amperes += double(amperes);
}

// The units of the wall, what does not fit and the units of each model;
// only for a wall where a processor is chosen somewhere.
void processors_page(page_writer& page, const plan::processor_plan& plan) {
    if (!plan.any_processor() && plan.conflicts.empty()) return;
    page.new_page();
    page.heading("Processors", 14);
    std::vector<QStringList> rows;
    for (const plan::unit_plan& u : plan.units) {
        QString layers;
        for (const std::string& name : u.layers)
            layers += (layers.isEmpty() ? "" : ", ") + q(name);
        rows.push_back({QString::number(u.unit) +
                            (u.mirrors ? q(string_format(" (backup of %d)", u.mirrors)) : ""),
                        q(u.model), QString::number(u.ports), QString::number(u.main_ports),
                        QString::number(u.backup_ports), QString::number(u.free_ports), layers});
    }
    if (rows.empty())
        page.line("No unit is in use.");
    else
        page.table({0.12, 0.2, 0.08, 0.08, 0.08, 0.08, 0.36},
                   {"Unit", "Model", "Ports", "Main", "Backup", "Free", "Layers"}, rows);
    if (!plan.conflicts.empty()) {
        page.heading("Conflicts", 11);
        for (const plan::conflict& c : plan.conflicts)
            page.line(q(string_format("Layer %lld \"", c.layer) + c.name + "\": " + c.message),
                      over_text);
    }
    std::string models;
    for (const auto& [model, count] : plan.models)
        models += (models.empty() ? "" : ", ") + string_format("%d \u00d7 ", count) + model;
    if (!models.empty()) page.line(q("Units by model: " + models));
}

// What goes on the truck, as `bom` lists it.
void bom_page(page_writer& page, const plan::bill_of_materials& bom) {
    page.new_page();
    page.heading("Bill of materials", 14);
    std::vector<QStringList> rows;
    for (const plan::bom_row& r : bom.rows)
        rows.push_back({q(r.item), q(r.kind), QString::number(r.count),
                        q(plan::kg_text(r.unit_weight_kg)), q(plan::kg_text(r.weight_kg)),
                        q(r.notes)});
    page.table({0.13, 0.3, 0.08, 0.09, 0.1, 0.3},
               {"Item", "Kind", "Count", "Unit kg", "Weight kg", "Notes"}, rows);
    const plan::bom_totals& t = bom.totals;
    page.line(q(plan::bom_line(bom)));
    if (t.unknown_weight_cabinets)
        page.line(q(string_format("%lld cabinets have no weight given: the weight leaves them out.",
                                  (long long)t.unknown_weight_cabinets)));
}

} // namespace

std::string report_date() {
    QDateTime when = QDateTime::currentDateTimeUtc();
    if (const char* epoch = std::getenv("SOURCE_DATE_EPOCH")) {
        char* end = nullptr;
        const long long seconds = std::strtoll(epoch, &end, 10);
        if (end != epoch && *end == '\0') when = QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC);
    }
    return when.date().toString(Qt::ISODate).toStdString();
}

std::string write_report(const Global& global, const image& frame, const file::path& out,
                         const report_options& given) {
    report_options options = given;
    if (options.date.empty()) options.date = report_date();
    QByteArray bytes;
    {
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        QPdfWriter writer(&buffer);
        writer.setResolution(72);
        writer.setTitle(q(options.name));
        writer.setCreator("Tesserine");
        writer.setPageLayout(
            QPageLayout(QPageSize(options.letter ? QPageSize::Letter : QPageSize::A4),
                        QPageLayout::Landscape, QMarginsF(28, 28, 28, 28), QPageLayout::Point));
        QPainter painter;
        if (!painter.begin(&writer)) return "the PDF writer could not start";
        painter.setRenderHint(QPainter::LosslessImageRendering);
        page_writer page(writer, painter);
        first_page(page, painter, global, frame, options);

        totals sum;
        std::vector<QStringList> pictures;
        const std::vector<image> rear_maps = rear_screen_maps(global);
        const plan::processor_plan plan = plan::plan_processors(global);
        for (long long i = 0; i < global.get_layers_count(); ++i) {
            const pointer<app_layer> layer = global.get_layer(i);
            if (!layer) continue;
            if (layer->get_layer_type() == e_layer_boxes) {
                const auto& screen = static_cast<const boxes_layer&>(*layer);
                screen_page(page, screen, *plan.layer(i), sum);
                rear_page(page, painter, screen, i, rear_maps[std::size_t(i)]);
            } else
                pictures.push_back(
                    {q(layer->get_name()),
                     q(string_format("%d \u00d7 %d px", layer->get_width(), layer->get_height())),
                     q(string_format("%d, %d px", layer->get_offset_x(), layer->get_offset_y()))});
        }

        processors_page(page, plan);
        page.new_page();
        page.heading("Totals", 14);
        page.table({0.2, 0.2, 0.2, 0.2, 0.2}, {"Cabinets", "Pixels", "Ports", "Watts", "Amperes"},
                   {{QString::number(sum.cabinets), QString::number(sum.pixels),
                     QString::number(sum.ports), QString::number(sum.watts),
                     q(string_format("%.2f", sum.amperes))}});
        page.table({0.25, 0.25, 0.25, 0.25}, {"Circuits", "L1 amperes", "L2 amperes", "L3 amperes"},
                   {{QString::number(sum.circuits), q(string_format("%.2f", sum.phase_amperes[0])),
                     q(string_format("%.2f", sum.phase_amperes[1])),
                     q(string_format("%.2f", sum.phase_amperes[2]))}});
        if (!pictures.empty()) {
            page.heading("Image layers", 11);
            page.table({0.5, 0.25, 0.25}, {"Name", "Size", "Offset"}, pictures);
        }
        bom_page(page, plan::make_bom(global));
        if (!painter.end()) return "the PDF could not be finished";
    }
    std::string error;
    if (!write_file_atomically(out.string(), std::string_view(bytes.constData(), bytes.size()),
                               &error))
        return error;
    return {};
}

} // namespace Vantora_TesserinePro
