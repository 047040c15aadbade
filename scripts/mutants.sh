#!/usr/bin/env bash
# Deliberate faults in the core and the window code, one at a time: each is
# applied, the test programs and the command are rebuilt, and the suite must
# fail. Shows how
# strong the suite is, before and after it is changed.
# Usage: scripts/mutants.sh [NAME...]   (MUTANTS_ALL=1: run every program,
# to see which of them catch a fault; by default the first catch ends it)
set -uo pipefail

ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
BUILD="${TESSERINE_BUILD_DIR:-$ROOT/build}"
cd "$ROOT"

if ! git diff --quiet -- src; then
  echo "src has changes; commit or stash them first" >&2
  exit 2
fi

# name|file|sed expression. Each must change its file.
MUTANTS=(
  "colour-trailing-tab|src/core/color.cpp|s/ || text\[i\] == '\\\\t')/)/"
  "colour-trailing-junk|src/core/color.cpp|s/if (i == text.size())/if (i <= text.size())/"
  "colour-hex-digit|src/core/color.cpp|s/return c - 'a' + 10;/return c - 'a' + 11;/"
  "odd-hex-digit-rule|src/core/number_reader.cpp|s/if (c >= 'A' \&\& c <= 'F') return c - 'A';/if (c >= 'A' \&\& c <= 'F') return c - 'A' + 10;/"
  "yes-word|src/core/number_reader.cpp|s/upper == \"YES\"/upper == \"YE\"/"
  "off-word|src/core/number_reader.cpp|s/upper == \"OFF\"/upper == \"0FF\"/"
  "last-record-twice|src/persistence/project_files.cpp|s/i <= count; ++i/i < count; ++i/"
  "record-length-limit|src/persistence/project_files.cpp|s/length > max_record_length/length >= max_record_length/"
  "preset-count-as-records|src/persistence/project_files.cpp|s/? count : count - 1;/? count : count;/"
  "cut-record-unreported|src/persistence/project_files.cpp|s/else if (!stale \&\& available < length)/else if (false)/"
  "bad-value-unreported|src/core/diagnostics.cpp|s/if (g_listener) g_listener->m_on_error(key, value);//"
  "crlf-kept|src/core/line_reader.cpp|s/if (pairs == 0) return;/return;/"
  "route-initial-side|src/datapath/route.cpp|s/initial = int(transposed ? (mode >> 1) \& 1 : mode \& 1);/initial = int(transposed ? mode \& 1 : mode \& 1);/"
  "route-half-column|src/datapath/route.cpp|s/(half\[0\] \&\& column == 0)/(half[1] \&\& column == 0)/"
  "leading-dot-extension|src/core/file_path.cpp|s/s.find('.', start + 1)/s.find('.', start)/"
  "last-dot-extension|src/core/file_path.cpp|s/std::size_t dot = name.rfind('.');/std::size_t dot = name.find('.');/"
  "short-write-unseen|src/core/save_stream.cpp|s/if (written == qint64(size)) return;/if (written >= 0) return;/"
  "commit-after-failure|src/core/save_stream.cpp|0,/if (!m_good) return false;/s//if (!m_good) return true;/"
  "psd-byte-order|src/export/psd_saver.cpp|s/out.put_u32(d.x + d.width);/out.put_u32(__builtin_bswap32(d.x + d.width));/"
  "psd-name-padding|src/export/psd_saver.cpp|s/std::memset(out, ' ', name_field);/std::memset(out, 0, name_field);/"
  "resolume-unique-id|src/export/resolume_xml.cpp|s/std::to_string(unique_id).c_str()/std::to_string(unique_id \/ 10).c_str()/"
  "resolume-thirds|src/export/resolume_xml.cpp|s/(w + w) \/ 3.0f/(w + w + 1) \/ 3.0f/"
  "catalogue-text|src/persistence/catalogue.cpp|s/\"Name:P 2.9mm\"/\"Name:P 2.9 mm\"/"
  "default-grid-width|src/document/boxes_layer.cpp|s/GridWidth = 2;/GridWidth = 3;/"
  "jpeg-quality|src/render/image_writers.cpp|s/\"jpg\", 90, out/\"jpg\", 89, out/"
  "tga-bits|src/render/image_writers.cpp|s/header\[16\] = 32;/header[16] = 24;/"
  "info-infinity|src/cli/cmd_info.cpp|s/value > 0 ? \"\\\\\"inf\\\\\"\"/value < 0 ? \"\\\\\"inf\\\\\"\"/"
  "outline-extent|src/render/draw2d_context.cpp|s/const double w = double(width) + 1, h/const double w = double(width), h/"
  "text-centre|src/render/draw2d_context.cpp|s/left = x - advance \* 0.5f;/left = x - advance * 0.4f;/"
  "last-column-cut|src/render/frame_composition.cpp|s/W - ox - 1, 1/W - ox, 1/"
  "label-dock-bottom|src/render/frame_composition.cpp|s/if (at_bottom) raster_label_y = H - raster_label_height;/if (at_bottom) raster_label_y = H - raster_label_height - 1;/"
  "chequer-tint|src/render/layer_frame.cpp|s/(counter % 2) != 0/(counter % 2) == 0/"
  "circle-width|src/render/layer_frame.cpp|s/- (CircleWidth \/ 2)) \/ 2;/- CircleWidth) \/ 2;/"
  "phase-word|src/render/layer_frame.cpp|s/PowerPhases == 1 ? \"Phase\"/PowerPhases <= 1 ? \"Phase\"/"
  "name-letters|src/render/layer_frame.cpp|s/k \/ 26 + 1/k \/ 26 + 2/"
  "psd-channel-order|src/export/psd_saver.cpp|s/{\&d.alpha, \&d.red, \&d.green, \&d.blue}/{\&d.red, \&d.alpha, \&d.green, \&d.blue}/"
  "psd-channel-length|src/export/psd_saver.cpp|s/out.put_u32(std::uint32_t(d.red.size()));/out.put_u32(std::uint32_t(d.red.size() - 2));/"
  "snake-limit-strict|src/datapath/route.cpp|s/return std::uint64_t(pixels) > limit;/return std::uint64_t(pixels) >= limit;/"
  "physh-field|src/persistence/parameter_text.cpp|s/{\"PhysH\", \&read_real<\&D::PhysH>}/{\"PhysH\", \&read_real<\&D::PhysW>}/"
  # The power plan: capacity rounded down, phases in turn, halves weigh
  # half, a cabinet above a circuit refused, the pattern follows the data
  # path until set, new keys written only where they differ, the path
  # drawn apart from the data path, the palette's fields.
  "power-capacity-rounds-up|src/plan/power_plan.cpp|s/\* layer.PowerVolts \/ 100;/* layer.PowerVolts \/ 100 + 1;/"
  "power-phase-rotation|src/plan/power_plan.cpp|s/c.phase = (c.number - 1) % out.phases + 1;/c.phase = c.number % out.phases + 1;/"
  "power-heaviest-equal|src/plan/power_plan.cpp|s/if (heaviest > out.capacity_watts \* 4)/if (heaviest >= out.capacity_watts * 4)/"
  "power-half-row|src/datapath/snake.h|s/(cut_first_row \&\& r == 0)/(cut_first_row \&\& r == 1)/"
  "power-pattern-own|src/document/boxes_layer.h|s/return PowerPattern >= 0 ? PowerPattern : SnakeMode;/return PowerPattern > 0 ? PowerPattern : SnakeMode;/"
  "extension-key-always|src/persistence/parameter_text.cpp|s/if (text != extension.text(defaults)) set.set/set.set/"
  "power-path-centred|src/render/power_path_drawing.cpp|s/(b.x1 - b.x0) \* 0.75f/(b.x1 - b.x0) * 0.5f/"
  "power-label-unclamped|src/render/power_path_drawing.cpp|s/x += shift;/(void)shift;/"
  "power-amps-field|src/panels/settings_power.cpp|s/l.CircuitDerate = v;/l.CircuitAmps = v;/"
  "palette-line-while-hidden|src/panels/settings_base_window.cpp|0,/    if (!isVisible()) {/s//    if (false) {/"
  # Lean renders and writers: layer frames let go as stacked, rows written
  # as they are encoded; PSD names in their Unicode block.
  "render-keeps-layer-frames|src/render/frame_composition.cpp|s/if (build_each) layer->release_frame();//"
  "render-stacks-unbuilt-layers|src/render/frame_composition.cpp|s/if (build_each \&\& !build_layer_frame(layer, frame)) return false;//"
  "png-not-over-black|src/render/image_writers.cpp|s/black_background ? over_black(img) : img/img/"
  "bmp-rows-unpadded|src/render/image_writers.cpp|s/(std::size_t(w) \* 3 + 3) \/ 4 \* 4/std::size_t(w) * 3/"
  "psd-merged-premultiplied|src/export/psd_saver.cpp|s/: source.convertToFormat(QImage::Format_RGBA8888);/: source;/"
  "psd-unicode-count|src/export/psd_saver.cpp|s/out.put_u32(std::uint32_t(unicode.size()));/out.put_u32(std::uint32_t(unicode.size() + 1));/"
  "psd-unicode-unpadded|src/export/psd_saver.cpp|s/return (4 + 2 \* name.size() + 3) \/ 4 \* 4;/return 4 + 2 * name.size();/"
  "missing-logo-read|src/persistence/presets.cpp|/logo_file.string()))) return;/d"
  # The bill of materials: spares rounded up, a corner weighs a quarter,
  # hidden layers left out, CSV quotes doubled, a jumper between two
  # cabinets, the hung weight without spares, weights of 0 or more, the
  # palette's weight with a decimal comma.
  "bom-spares-round-down|src/plan/bom.cpp|s/(k.spare_percents + 99) \/ 100/k.spare_percents \/ 100/"
  "bom-corner-as-half|src/plan/bom.cpp|s/out.quarters += both ? 1 : 2;/out.quarters += 2;/"
  "bom-hidden-counted|src/plan/bom.cpp|s/if (layer.is_hidden()) {/if (false) {/"
  "bom-csv-quote-single|src/plan/bom.cpp|s/if (c == '\"') out += '\"';/(void)c;/"
  "bom-jumper-per-cabinet|src/plan/bom.cpp|s/std::max<std::int64_t>(0, chain.load.cabinets - 1)/chain.load.cabinets/"
  "bom-hidden-unit-bought|src/plan/bom.cpp|s/if (l \&\& l->is_hidden()) l = nullptr;/(void)l;/"
  "bom-conflict-cabled|src/plan/bom.cpp|s/const bool cabled = data \&\& !data->failed;/const bool cabled = data;/"
  "bom-backup-units-unnamed|src/plan/bom.cpp|s/u.mirrors != 0/u.mirrors < 0/"
  "bom-weight-with-spares|src/plan/bom.cpp|s/t.weight_kg += \*unit \* double(k.quarters) \/ 4;/t.weight_kg += *unit * double(k.quarters + spares * 4) \/ 4;/"
  "bom-negative-weight|src/persistence/parameter_text.cpp|s/|| read < 0)/)/"
  "bom-weight-comma|src/panels/settings_power.cpp|s/.replace(',', '.')//"
  # Undo: the oldest steps go first, a new step ends the redo list, a
  # rename is named by the old name, undo back to the save is clean.
  "history-drops-newest|src/document/history.cpp|s/m_undo.pop_front();/m_undo.pop_back();/"
  "history-keeps-redo|src/document/history.cpp|/m_undo.push_back({caption/,/trim();/{/m_redo.clear();/d}"
  "history-rename-new-name|src/document/history.cpp|s/return \"Rename \" + name_in(before, first);/return \"Rename \" + layer;/"
  "history-saved-by-state|src/document/history.cpp|s/now.id = m_next_id++;/now.id = m_current.id + 1;/"
  "history-byte-bound|src/document/history.cpp|s/|| bytes() > max_bytes)/|| bytes() > 2 * max_bytes)/"
  # The window: key names, the Tab walk, the layout file, snapping, hit
  # tests, the drag rules, list sync, palette fields and palette places.
  "key-digit-place|src/app/main_screen.cpp|s/code >= row_starts\[r\] \&\& code - row_starts\[r\]/code > row_starts[r] \&\& code - row_starts[r]/"
  "key-text-before-key|src/app/main_screen.cpp|s/if (modifier_bit(key) || key == Qt::Key_unknown) return {};/if (modifier_bit(key) || key == Qt::Key_unknown) return {};\n    if (!event.text().isEmpty() \&\& event.text().at(0).isPrint()) return event.text().toUpper().toStdString();/"
  "key-plus-needs-no-shift|src/app/main_screen.cpp|s/if (name == \"+\" \&\& (held \& keys::group_a)/if (false \&\& (held \& keys::group_a)/"
  "space-in-text-field|src/app/main_screen.cpp|s/m_main_impact \&\& !typing_text()/m_main_impact/"
  # The old fault: a new row made its layer visible, so an opened project
  # showed its hidden layers.
  "new-row-shows-hidden|src/panels/scroll_list.cpp|s/setChecked(!layer || !layer->is_hidden());/setChecked(true); if (layer) layer->set_hidden(false);/"
  "list-no-scroll|src/panels/right_panel.cpp|s/m_scroll->ensureWidgetVisible(row, 0, 0);/(void)row;/"
  "half-box-row-stale|src/panels/settings_boxes.cpp|s/grid_changed(\*layer); \/\/ the rows/(void)0; \/\/ the rows/"
  "key-string-groups|src/app/main_screen.cpp|s/keys::string_key(name, held)/keys::string_key(name, 0)/"
  "tab-first-step|src/app/main_screen.cpp|s/for (long long k = 1; k < n; ++k) {/for (long long k = 2; k < n; ++k) {/"
  "layout-load-y|src/app/main_screen.cpp|s/, layout.value(name + \"_y\")/, layout.value(name + \"_x\")/"
  "layout-missing-shows|src/app/main_screen.cpp|s/_visible\").toBool(false)/_visible\").toBool(true)/"
  "layout-save-visible|src/app/main_screen.cpp|s/layout\[name + \"_visible\"\] = p->stored_visible();/layout[name + \"_visible\"] = true;/"
  "snap-strict|src/document/arrange.cpp|s/if (std::llabs(at) < snap_threshold) {/if (std::llabs(at) <= snap_threshold) {/"
  "snap-far-edge|src/document/arrange.cpp|s/v = int(side - size);/v = int(side - size - 1);/"
  "snap-skips-hidden|src/canvas/main_impact.cpp|s/if (!other) continue;/if (!other || other->is_hidden()) continue;/"
  "snap-right-on-left|src/document/arrange.cpp|s/{a + size - other, other - size}/{a + size - other, other + size}/"
  "snap-neighbours-first|src/canvas/main_impact.cpp|s/^    snap_paper(x, y, done_x, done_y);/    snap_others(x, y, done_x, done_y);\n&/"
  "canvas-int-unheld|src/canvas/main_impact.cpp|s/return std::isnan(v) ? 0 : int(std::clamp(v, -limit, limit));/return int(v);/"
  "hit-test-bottom-first|src/canvas/main_impact.cpp|s/for (long long i = workspace->get_layers_count() - 1; i >= 0; --i) {/for (long long i = 0; i < workspace->get_layers_count(); ++i) {/"
  "hit-test-hidden|src/canvas/main_impact.cpp|s/if (!layer || layer->is_hidden()) continue;/if (!layer) continue;/"
  "label-hit-unzoomed|src/canvas/main_impact.cpp|s/const double left = workspace->raster_label_x \* z,/const double left = workspace->raster_label_x,/"
  "handle-size-zoomed|src/canvas/main_impact.cpp|s/4.0 \/ effective_zoom/4.0 * effective_zoom/"
  "shift-moves-pictures|src/canvas/main_impact.cpp|s/(modifiers \& keys::group_a) \&\& type == e_layer_boxes)/(modifiers \& keys::group_a) \&\& type == e_layer_image)/"
  "label-drag-unzoomed|src/canvas/main_impact.cpp|s/int(float(back.x()) \/ effective_zoom)/int(float(back.x()) * effective_zoom)/"
  "aspect-handle|src/canvas/main_impact.cpp|s/resize_handle == 0 || resize_handle == 1/resize_handle == 0 || resize_handle == 3/"
  "selection-direction|src/canvas/main_impact.cpp|s/selection_adds = !screen/selection_adds = screen/"
  "rear-nudge-front-way|src/canvas/selection.cpp|s/    if (m_canvas.shows_rear()) step_x = -step_x;//"
  "move-against-drag|src/canvas/main_impact.cpp|s/move_delta -= delta;/move_delta += delta;/"
  "visible-box-inverted|src/panels/scroll_list.cpp|s/layer->set_hidden(!checked);/layer->set_hidden(checked);/"
  "row-box-stale|src/panels/scroll_list.cpp|s/visible->isChecked() == layer->is_hidden()/visible->isChecked() != layer->is_hidden()/"
  "labels-metres-field|src/panels/settings_labels.cpp|s/l.ShowMM = v;/l.ShowFT = v;/"
  "diagram-width-field|src/panels/settings_data_diagram.cpp|s/l.SnakeWidth = v;/l.SnakeLimit = v;/"
  "power-watts-field|src/panels/settings_power.cpp|s/layer->PowerWatts = v;/layer->PowerVolts = v;/"
  "circle-width-field|src/panels/settings_boxes.cpp|s/l.CircleWidth = v;/l.GridWidth = v;/"
  "novastar-type|src/panels/settings_data_diagram.cpp|s/layer->DataDiagramType = v ? 0 : 1;/layer->DataDiagramType = v ? 1 : 0;/"
  # Crash recovery: a save keeps the file, a running program's file is
  # taken, a damaged one is offered.
  "recovery-kept-on-save|src/app/main_screen.cpp|/if (m_undo) m_undo->record();/{n;s/if (m_recovery) m_recovery->discard();//}"
  "recovery-live-taken|src/persistence/recovery_files.cpp|s/if (!claim->tryLock(0)) continue;/claim->tryLock(0);/"
  "recovery-damaged-offered|src/app/recovery_controller.cpp|s/if (report.clean()) return ask(left);/if (!report.refused()) return ask(left);/"
  # The control map in screen pixels; the first view fitted clear of the
  # palettes, at most at 1, at the first paint and when a project opens;
  # what waits for the first paint is done then.
  "control-map-logical|src/app/control_map.cpp|s/\* scale;/* 1.0;/"
  "fit-under-palettes|src/canvas/main_impact.cpp|s/if (w == this || w->isWindow() || !w->isVisibleTo(parent)) continue;/continue;/"
  "fit-above-one|src/canvas/view_fit.cpp|s/std::min({1.0, w/std::min({2.0, w/"
  "fit-not-at-first-paint|src/canvas/main_impact.h|s/m_fitted_opens = ~std::uint64_t(0);/m_fitted_opens = 0;/"
  "fit-not-on-open|src/canvas/main_impact.cpp|s/if (!live_output \&\& m_fitted_opens != workspace->documents_opened) fit_view();//"
  "frame-held-for-ever|src/app/main_screen.cpp|s/m_main_impact->set_frame_held(false);//"
  "presets-never-listed|src/app/main_screen.cpp|s/m_presets_shown = true;//"
  "first-start-colors-over-data|src/app/palette_places.cpp|s/b.put(colors, b.right_of(boxes), b.under(snake));/b.put(colors, b.right_of(boxes), canvas_top);/"
  "reach-without-grip|src/app/palette_places.cpp|s/const int held = std::min(grip, palette.width());/const int held = 0;/"
  "reach-not-after-drag|src/panels/settings_base_window.cpp|s/if (MainScreen\* screen = main_screen()) screen->keep_within_reach(this);//"
  # Many screens at once: packing, aligning, spacing, the block, the
  # clipboard, deleting several; the selection's mouse and key rules.
  "pack-row-without-gap|src/document/arrange.cpp|s/y += row_height + gap;/y += row_height;/"
  "pack-width-not-filled|src/document/arrange.cpp|s/x + s.w > raster_width/x + s.w >= raster_width/"
  "pack-height-unchecked|src/document/arrange.cpp|s/y + s.h > raster_height/y > raster_height/"
  "centre-rounds-to-zero|src/document/arrange.cpp|s/? q - 1 : q;/? q : q;/"
  "distribute-coarse-gaps|src/document/arrange.cpp|s/floor_div(room \* (long long)i, gaps)/room \/ gaps * (long long)i/"
  "block-snaps-on-itself|src/document/arrange.cpp|s/std::find(skip.begin(), skip.end(), i) != skip.end()/false/"
  "free-place-row-given-up|src/document/arrange.cpp|s/past = hit->right();/past = LLONG_MAX;/"
  "damaged-text-pasted|src/document/arrange.cpp|s/if (!report.clean()) return screens;/if (report.refused()) return screens;/"
  "delete-current-unshifted|src/document/arrange.cpp|s/current - below),/current),/"
  "pack-over-its-input|src/cli/cmd_pack.cpp|s/in.canonicalFilePath() == out.canonicalFilePath()/false/"
  "block-move-one-screen|src/canvas/main_impact.cpp|s/if (m_selection.moves_with(layer)) return m_selection.end_block_move/if (false) return m_selection.end_block_move/"
  "alt-click-only-adds|src/canvas/selection.cpp|s/if (it != now.end())$/if (false)/"
  "rectangle-edges-apart|src/canvas/selection.cpp|s/r.x <= right \&\& left <= r.right()/r.x < right \&\& left < r.right()/"
  "undo-drops-selection|src/canvas/selection.cpp|s/if (count == m_count \&\& e.index < count/if (false \&\& e.index < count/"
  "shift-nudge-step|src/canvas/selection.cpp|s/held == keys::group_a ? 10 : 1/held == keys::group_a ? 5 : 1/"
  "escape-keeps-selection|src/canvas/selection.cpp|s/k == Qt::Key_Escape/k == Qt::Key_F35/"
  "keys-taken-from-fields|src/app/main_screen.cpp|s/if (!release \&\& m_main_impact \&\& !typing_text() \&\&/if (!release \&\& m_main_impact \&\&/"
  # The rear view and colouring by chain.
  "rear-texts-unmoved|src/render/rear_view.cpp|s/t.x + (width - bounds\[2\]) - bounds\[0\]/t.x/"
  "rear-pixels-unmirrored|src/render/rear_view.cpp|s/frame->mirror(true, false);//"
  "rear-cut-at-front-place|src/render/frame_composition.cpp|s/rear ? W - ox - drawn_w : ox/rear ? W - ox - w : ox/"
  "rear-mark-under-palettes|src/canvas/main_impact.cpp|s/        if (seen(box.translated(p))) {/        if (false) {/"
  "rear-label-at-front-place|src/render/frame_composition.cpp|s/rear ? float(W) - float(raster_label_x) - width/rear ? float(raster_label_x)/"
  "rear-click-as-front|src/canvas/main_impact.cpp|s/const QPoint p = as_seen(raw);/const QPoint p = raw;/"
  "chain-without-chequer|src/render/layer_frame.cpp|s/const bool dark = (column + row) % 2 != 0;/const bool dark = false;/"
  "chain-colour-shifted|src/render/layer_frame.cpp|s/: plan::chain_color(on->second);/: plan::chain_color(on->second + 1);/"
  "legend-left-out|src/render/layer_frame.cpp|s/    if (legend.empty())$/    if (true)/"
  "settings-record-unread|src/persistence/project_files.cpp|s/if (type == drawing_settings_record_type) apply/if (false) apply/"
  "settings-record-always|src/persistence/project_files.cpp|s/if (color_by == color_by_mode::chequer) return {};//"
  "list-ctrl-click-selects|src/panels/scroll_list.cpp|s/        tool->toggle(index);/        tool->toggle(index), m_global->set_current_layer_index(index);/"
  # Test patterns and identify on the wall: cabinets only, edges exact,
  # one chain a step in its colours; the live output shows them and steps.
  "pattern-on-excluded|src/render/test_patterns.cpp|s/if (!c.excluded) lit.push_back(c);/lit.push_back(c);/"
  "pattern-on-hidden|src/render/test_patterns.cpp|0,/layer->is_hidden() || /s///"
  "crosshatch-two-pixels|src/render/test_patterns.cpp|s/QRect(r.right(), r.top(), 1, r.height())/QRect(r.right() - 1, r.top(), 1, r.height())/"
  "bars-across-raster|src/render/test_patterns.cpp|s/(x - screen.left()) \* parts/x * parts/"
  "grey-step-size|src/render/test_patterns.h|s/step \* 17/step * 16/"
  "line-turns-late|src/render/test_patterns.cpp|s/int(column ? step : step - width)/int(column ? step : step - width + 1)/"
  "identify-lights-more|src/render/test_patterns.cpp|s/chain != step) {/chain > step) {/"
  "identify-no-chequer|src/render/test_patterns.cpp|s/const bool dark = (((id >> 16) + (id \& 0xFFFF)) \& 1) != 0;/const bool dark = false;/"
  "identify-step-off-by-one|src/cli/cmd_render.cpp|s/frame.step = std::stoi(number) - 1;/frame.step = std::stoi(number);/"
  "identify-stops-at-end|src/canvas/live_show.cpp|s/m_step = ((m_step + delta) % steps + steps) % steps;/m_step = std::clamp(m_step + delta, 0, steps - 1);/"
  "identify-left-forward|src/canvas/live_show.cpp|s/key == Qt::Key_Left ? -1 : 1/1/"
  "live-shows-map-always|src/canvas/main_impact.cpp|s/if (shown_instead) composite = shown_instead;//"
  "live-frame-kept-after-edit|src/canvas/live_show.cpp|s/if (m_dirty || frame_generation != m_frame_generation) {/if (m_dirty) {/"
  # The processors: the limit from depth and rate, ports across layers,
  # both backups, each conflict, a failed layer taking nothing, the map's
  # labels, the library file and the palette.
  "limit-deep-at-8|src/plan/processors.cpp|s/const bool deep = layer.BitDepth > 8;/const bool deep = layer.BitDepth >= 8;/"
  "limit-model-rate|src/plan/processors.cpp|s/deep ? model->pixels_10bit : model->pixels_8bit) \* 60 \/ rate/deep ? model->pixels_10bit : model->pixels_8bit) * 50 \/ rate/"
  "loop-back-overlaps|src/plan/processors.cpp|s/port_ref{layer->ProcessorUnit, port + int(out.chains.size())}/port_ref{layer->ProcessorUnit, port + int(out.chains.size()) - 1}/"
  "clash-unseen|src/plan/processors.cpp|s/t != unit.taken.end())/false)/"
  "last-port-spare|src/plan/processors.cpp|s/if (last > model.ports)/if (last > model.ports + 1)/"
  "backup-unit-reuses-number|src/plan/processors.cpp|s/last_main + int(backup_unit_of.size()) + 1/last_main + int(backup_unit_of.size())/"
  "failed-layer-takes-ports|src/plan/processors.cpp|s/if (!out.failed \&\& model \&\& !out.chains.empty())/if (model \&\& !out.chains.empty())/"
  "over-limit-allowed|src/plan/processors.cpp|s/if (!c.load.over) continue;/continue;/"
  "unit-model-mix|src/plan/processors.cpp|s/if (unit.model != model.name)/if (false)/"
  "free-ports-ignore-backup|src/plan/processors.cpp|s/unit.ports - unit.main_ports - unit.backup_ports/unit.ports - unit.main_ports/"
  "return-label-main|src/render/data_path_drawing.cpp|s/c.backup ? plan::backup_label(\*c.backup) : plan::port_label(\*c.main)/plan::port_label(*c.main)/"
  "hidden-end-keeps-chain|src/render/data_path_drawing.cpp|s/if (b.is_port_end() \&\& chain_open) ++chain, chain_open = false;/(void)0;/"
  "damaged-library-not-kept|src/persistence/processor_library.cpp|s/if (protect) keep_aside(path);/(void)protect;/"
  "library-name-twice|src/persistence/processor_library.cpp|s/if (model.name != replacing \&\& find(model.name))/if (false)/"
  "route-units-always|src/cli/cmd_route.cpp|s/        if (l.processor_keys)$/        if (true)/"
  "palette-depth-10-for-12|src/panels/settings_data_diagram.cpp|s/bit_depths\[std::clamp(i, 0, 2)\]/bit_depths[std::clamp(i, 0, 1)]/"
  "dialog-change-adds|src/panels/processors_dialog.cpp|s/    put(chosen);/    put({});/"
)

CORE_PROGRAMS=(test_core test_document test_persistence test_datapath test_plan test_render test_export test_hardening)
WINDOW_PROGRAMS=()
[ -x "$BUILD/tests/test_app" ] && WINDOW_PROGRAMS=(test_app test_canvas test_panels test_live_output)
PROGRAMS=("${CORE_PROGRAMS[@]}" "${WINDOW_PROGRAMS[@]}")

current=""
backup="$(mktemp)"
restore() {
  if [ -n "$current" ]; then
    cp "$backup" "$current" # a fresh time stamp: the next build takes the restored file
    current=""
  fi
}
trap 'restore; rm -f "$backup"' EXIT
trap 'exit 130' INT TERM

build() {
  cmake --build "$BUILD" --target "${PROGRAMS[@]}" tesserine -- -j2 >"$BUILD/mutant_build.log" 2>&1
}

# Runs the suite; prints the programs that failed.
catches() {
  local caught=() p script
  for p in "${PROGRAMS[@]}"; do
    if ! (cd "$BUILD/tests" && QT_QPA_PLATFORM=offscreen timeout 600 "./$p" --gtest_brief=1 >/dev/null 2>&1); then
      caught+=("$p")
      [ -z "${MUTANTS_ALL:-}" ] && break
    fi
  done
  if [ ${#caught[@]} -eq 0 ] || [ -n "${MUTANTS_ALL:-}" ]; then
    for script in "$ROOT"/tests/cli/*.sh; do
      if ! QT_QPA_PLATFORM=offscreen timeout 600 bash "$script" "$BUILD/tesserine" >/dev/null 2>&1; then
        caught+=("cli_$(basename "$script" .sh)")
        [ -z "${MUTANTS_ALL:-}" ] && break
      fi
    done
  fi
  echo "${caught[*]}"
}

tried=0
killed=0
escaped=()
for m in "${MUTANTS[@]}"; do
  IFS='|' read -r name file expr <<<"$m"
  if [ $# -gt 0 ] && [[ " $* " != *" $name "* ]]; then continue; fi
  cp "$file" "$backup"
  current="$file"
  sed -i -e "$expr" "$file"
  if cmp -s "$file" "$backup"; then
    echo "$name: NOT APPLIED (the pattern no longer matches)"
    restore
    continue
  fi
  case "$file" in
  src/app/* | src/canvas/* | src/panels/*)
    if [ ${#WINDOW_PROGRAMS[@]} -eq 0 ]; then
      echo "$name: SKIPPED (the window is not built)"
      restore
      continue
    fi
    # The window's own tests first: they catch its faults.
    PROGRAMS=("${WINDOW_PROGRAMS[@]}" "${CORE_PROGRAMS[@]}")
    ;;
  *) PROGRAMS=("${CORE_PROGRAMS[@]}" "${WINDOW_PROGRAMS[@]}") ;;
  esac
  tried=$((tried + 1))
  if ! build; then
    echo "$name: caught by the compiler"
    killed=$((killed + 1))
  else
    by="$(catches)"
    if [ -n "$by" ]; then
      echo "$name: caught by $by"
      killed=$((killed + 1))
    else
      echo "$name: ESCAPED"
      escaped+=("$name")
    fi
  fi
  restore
done
build || echo "warning: the clean rebuild failed" >&2
echo "caught $killed of $tried${escaped:+; escaped: ${escaped[*]}}"
[ "$killed" -eq "$tried" ]
