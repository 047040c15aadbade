#pragma once
// Undo and redo as whole states of the document. Each state holds private
// copies of the layers (pictures shared, never copied) and what else a
// saved project holds, so that going back gives the very bytes a save gave
// before. A state that equals the one before it is not a step: the window
// can ask for a record after every user action and only real edits count.

#include "core/types.h"

#include <cstdint>
#include <deque>

namespace Vantora_TesserinePro {

class Global;
class app_layer;

struct document_state {
    pointer_array<app_layer> layers;
    // What each layer saves, without picture bytes: compares states cheaply.
    std::vector<string> prints;
    long long current_layer = -1;
    int paper_width = 1920;
    int paper_height = 1080;
    bool label_enabled = false;
    string_array label_lines;
    int label_x = 0, label_y = 0, label_width = 0, label_height = 0, label_font_size = 20;
    color_by_mode color_by = color_by_mode::chequer;
    // Memory the state holds of its own (shared layers and pictures not counted).
    std::size_t bytes = 0;
    // Tells states apart for the unsaved mark: equal ids, same document.
    std::uint64_t id = 0;

    bool same_document(const document_state& other) const;
};

// A copy of a layer for a state: every field a save writes, the picture shared.
pointer<app_layer> copy_layer(const app_layer& layer);
// What a layer saves, with the picture as its address rather than its bytes.
string layer_print(const app_layer& layer);

class document_history {
  public:
    static constexpr std::size_t max_steps = 200;
    static constexpr std::size_t max_bytes = std::size_t(512) << 20;

    // Starts afresh from the document as it is, which counts as saved.
    void reset(const Global& global);
    // Records one step when the document differs from the last state. The
    // name is made from what changed when none is given. True when recorded.
    bool record(const Global& global, const string& name = {});
    bool undo(Global& global);
    bool redo(Global& global);

    bool can_undo() const { return !m_undo.empty(); }
    bool can_redo() const { return !m_redo.empty(); }
    const string& undo_name() const;
    const string& redo_name() const;
    std::size_t steps() const { return m_undo.size() + m_redo.size(); }
    std::size_t bytes() const;

    // The unsaved mark: the document is not the state last saved or opened.
    bool is_modified() const { return m_current.id != m_saved_id; }
    void mark_saved() { m_saved_id = m_current.id; }
    // The latest recorded state.
    const document_state& current() const { return m_current; }
    // The document as it is now, as a state that shares every layer that
    // is unchanged since the latest one and every picture: cheap, and safe
    // to read on another thread while the document goes on changing.
    document_state snapshot(const Global& global) const { return capture(global); }
    // The name a change between two states gets; the touched arguments
    // come in as the selected layers and leave as the layers it touched.
    static string step_name(const document_state& before, const document_state& after,
                            long long& touched_before, long long& touched_after);

  private:
    // A state on a stack and the layers to select in it and in the state
    // the step leads to.
    struct step {
        string name;
        document_state state;
        long long select_here = -1;
        long long select_other = -1;
    };
    document_state capture(const Global& global) const;
    void apply(Global& global, const document_state& state, long long touched);
    void trim();

    std::deque<step> m_undo;
    std::deque<step> m_redo;
    document_state m_current;
    std::uint64_t m_saved_id = 0;
    mutable std::uint64_t m_next_id = 1;
};

} // namespace Vantora_TesserinePro
