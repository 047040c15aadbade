#pragma once
// A drawing context that draws nothing and logs every call with its
// arguments, so that geometry and label texts can be checked without fonts
// or pixels. Text is measured by a fixed rule (see text_bounds).

#include "render/nano2d.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace Vantora_TesserinePro::testing {

struct recorded_call {
    std::string target; // "screen" or "image WxH"
    std::string op;
    std::vector<std::string> args;

    // "op a b c", for quick matching.
    std::string line() const {
        std::string s = op;
        for (const auto& a : args)
            s += " " + a;
        return s;
    }
};

class recording_context : public nano2d::context {
  public:
    struct shared {
        std::vector<recorded_call> log;
        struct image_info {
            int width, height, flags, stride;
            const void* pixels;
        };
        std::map<int, image_info> images;
        int next_handle = 1;
    };

    recording_context() : m_shared(std::make_shared<shared>()), m_target("screen") {}

    // --- reading the log
    std::vector<recorded_call>& log() { return m_shared->log; }
    std::vector<recorded_call> calls(const std::string& op) const {
        std::vector<recorded_call> out;
        for (const auto& c : m_shared->log)
            if (c.op == op) out.push_back(c);
        return out;
    }
    // The recorded call of the text drawn with this string, or null.
    const recorded_call* text_call(const std::string& s) const {
        for (const auto& c : m_shared->log)
            if (c.op == "text" && c.args[0] == s) return &c;
        return nullptr;
    }
    // Index of the first call whose line() equals line, -1 when none.
    long index_of(const std::string& line, std::size_t from = 0) const {
        for (std::size_t i = from; i < m_shared->log.size(); ++i)
            if (m_shared->log[i].line() == line) return long(i);
        return -1;
    }
    void clear() { m_shared->log.clear(); }
    // The whole log, a "target: op args" line per call, as golden logs hold it.
    std::string text() const {
        std::string out;
        for (const auto& c : m_shared->log)
            out += c.target + ": " + c.line() + "\n";
        return out;
    }

    // The fixed text measure: every byte is half the font size wide; ascent
    // 0.8, descent 0.2 and line height 1.2 of the size.
    float advance_of(const std::string& s) const { return 0.5f * m_font_size * float(s.size()); }

    // --- the context
    void save() override {
        add("save");
        m_stack.push_back({m_font_size, m_align});
    }
    void restore() override {
        add("restore");
        if (!m_stack.empty()) {
            m_font_size = m_stack.back().first;
            m_align = m_stack.back().second;
            m_stack.pop_back();
        }
    }
    void translate(float x, float y) override { add("translate", x, y); }
    void begin_path() override { add("begin_path"); }
    void close_path() override { add("close_path"); }
    void move_to(float x, float y) override { add("move_to", x, y); }
    void line_to(float x, float y) override { add("line_to", x, y); }
    void rectangle(float x, float y, float w, float h) override { add("rectangle", x, y, w, h); }
    void circle(float cx, float cy, float r) override { add("circle", cx, cy, r); }
    void rectangle_outline(int x, int y, int w, int h, color::color c, int lw) override {
        add("rectangle_outline", x, y, w, h, c, lw);
    }
    void fill() override { add("fill"); }
    void stroke() override { add("stroke"); }
    void fill_color(color::color c) override { add("fill_color", c); }
    void stroke_color(color::color c) override { add("stroke_color", c); }
    void fill_paint(const nano2d::paint& p) override {
        add("fill_paint", p.image, p.x, p.y, p.width, p.height, p.angle, p.alpha);
    }
    void stroke_width(float w) override { add("stroke_width", w); }
    void stroke_dash(float on, float off) override { add("stroke_dash", on, off); }
    void font_size(float s) override {
        m_font_size = s;
        add("font_size", s);
    }
    void font_face(const std::string& face) override { add("font_face", face); }
    void text_align(int a) override {
        m_align = a;
        add("text_align", a);
    }
    void text(const std::string& s, float x, float y) override { add("text", s, x, y); }
    float text_bounds(const std::string& s, float x, float y, float b[4]) override {
        const float adv = advance_of(s);
        const float ascent = 0.8f * m_font_size, descent = 0.2f * m_font_size;
        float left = x, baseline = y;
        if (m_align & nano2d::align_left)
            left = x;
        else if (m_align & nano2d::align_right)
            left = x - adv;
        else if (m_align & nano2d::align_center)
            left = x - adv * 0.5f;
        if (m_align & nano2d::align_top)
            baseline = y + ascent;
        else if (m_align & nano2d::align_middle)
            baseline = y + (ascent - descent) * 0.5f;
        else if (m_align & nano2d::align_bottom)
            baseline = y - descent;
        b[0] = left;
        b[1] = baseline - ascent;
        b[2] = left + adv;
        b[3] = baseline + descent;
        add("text_bounds", s, x, y);
        return adv;
    }
    void measure_lines(const std::vector<std::string>& lines, float& widest,
                       float& line_height) override {
        widest = 0;
        for (const auto& l : lines)
            widest = std::max(widest, advance_of(l));
        line_height = 1.2f * m_font_size;
        add("measure_lines", int(lines.size()));
    }
    nano2d::paint image_pattern(int handle, float x, float y, float w, float h, float angle,
                                float alpha) override {
        add("image_pattern", handle, x, y, w, h, angle, alpha);
        return nano2d::paint{handle, x, y, w, h, angle, alpha};
    }
    int load_image(const std::string& name, int flags) override {
        add("load_image", name, flags);
        return 0;
    }
    int create_image(int w, int h, int flags, const void* pixels, int stride) override {
        add("create_image", w, h, flags, stride);
        const int handle = m_shared->next_handle++;
        m_shared->images[handle] = {w, h, flags, stride, pixels};
        return handle;
    }
    bool read_image_size(int handle, int& w, int& h) override {
        add("read_image_size", handle);
        auto it = m_shared->images.find(handle);
        if (it == m_shared->images.end()) return false;
        w = it->second.width;
        h = it->second.height;
        return true;
    }
    void update_image(int handle, const void* pixels) override {
        add("update_image", handle);
        auto it = m_shared->images.find(handle);
        if (it != m_shared->images.end()) it->second.pixels = pixels;
    }
    void delete_image(int handle) override {
        add("delete_image", handle);
        m_shared->images.erase(handle);
    }
    std::unique_ptr<nano2d::context> make_offscreen(image* target) override {
        auto ctx = std::unique_ptr<recording_context>(new recording_context(m_shared));
        ctx->m_target = target && !target->isNull() ? "image " + std::to_string(target->width()) +
                                                          "x" + std::to_string(target->height())
                                                    : "none";
        ctx->add("offscreen", ctx->m_target);
        return ctx;
    }

    static std::string f(float v) {
        char b[32];
        std::snprintf(b, sizeof b, "%g", double(v));
        return b;
    }
    static std::string col(color::color c) {
        char b[16];
        std::snprintf(b, sizeof b, "%08X", unsigned(c.word()));
        return b;
    }

  private:
    explicit recording_context(std::shared_ptr<shared> s) : m_shared(std::move(s)) {}
    // Each argument as the log writes it.
    static std::string arg(float v) { return f(v); }
    static std::string arg(int v) { return std::to_string(v); }
    static std::string arg(const std::string& s) { return s; }
    static std::string arg(color::color c) { return col(c); }
    template <class... A> void add(const char* op, const A&... args) {
        m_shared->log.push_back({m_target, op, {arg(args)...}});
    }

    std::shared_ptr<shared> m_shared;
    std::string m_target;
    float m_font_size = 16.0f;
    int m_align = nano2d::align_left;
    std::vector<std::pair<float, int>> m_stack;
};

} // namespace Vantora_TesserinePro::testing
