// Every writer of the program, failing: a file is written whole or not at
// all, an old file stays whole, and the reason is kept for the user.

#include "export_helpers.h"
#include "render/draw2d_context.h"

#include <gtest/gtest.h>

#include <functional>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

struct failed_writes : workspace_test {
    QTemporaryDir dir;
    nano2d::draw2d_context ctx;

    failed_writes() {
        global.set_paper_width(320);
        global.set_paper_height(200);
        add_screen(global, "Wall", 0, 0, 2, 2, 64);
        global.get_presets().push_back(screen_layer(global));
    }
    std::string path(const std::string& name) const {
        return (dir.path() + "/").toStdString() + name;
    }
    // A frame file, through a paint as the window and the command write it.
    bool paint_to(const std::string& file) {
        global.request_save_to_file(file::path(file));
        global.defer_build_frame(true, &ctx);
        return global.last_save_succeeded();
    }
};

struct writer {
    const char* file; // the name written; its extension picks the format
    std::function<bool(failed_writes&, const std::string&)> write;
};

const writer writers[] = {
    {"wall.tsrx",
     [](failed_writes& t, const std::string& p) { return t.global.save_project_to_file(p); }},
    {"wall.tsrx_presets",
     [](failed_writes& t, const std::string& p) { return t.global.save_presets_to_file(p); }},
    {"setup.xml",
     [](failed_writes& t, const std::string& p) { return !t.global.layers_to_xml_at(p).empty(); }},
    {"frame.png", [](failed_writes& t, const std::string& p) { return t.paint_to(p); }},
    {"frame.tga", [](failed_writes& t, const std::string& p) { return t.paint_to(p); }},
    {"frame.bmp", [](failed_writes& t, const std::string& p) { return t.paint_to(p); }},
    {"frame.jpg", [](failed_writes& t, const std::string& p) { return t.paint_to(p); }},
    {"frame.psd", [](failed_writes& t, const std::string& p) { return t.paint_to(p); }},
};

} // namespace

TEST_F(failed_writes, EveryWriterIsWholeOrNothing) {
    for (const writer& w : writers) {
        SCOPED_TRACE(w.file);
        QDir(dir.path()).removeRecursively();
        QDir().mkpath(dir.path());
        // Each failure leaves a reason of its own.
        std::string reason = global.last_write_error();
        auto new_reason = [&] {
            const bool changed =
                !global.last_write_error().empty() && global.last_write_error() != reason;
            reason = global.last_write_error();
            return changed;
        };
        // No folder to write in.
        EXPECT_FALSE(w.write(*this, path("missing/") + w.file));
        EXPECT_TRUE(new_reason());
        EXPECT_TRUE(files_in(dir).isEmpty());
        // A folder in the way stays a folder.
        ASSERT_TRUE(QDir(dir.path()).mkdir(w.file));
        EXPECT_FALSE(w.write(*this, path(w.file)));
        EXPECT_TRUE(new_reason());
        EXPECT_TRUE(QFileInfo(QString::fromStdString(path(w.file))).isDir());
        ASSERT_TRUE(QDir(dir.path()).rmdir(w.file));
        // The disk takes only part: the old file stays whole, nothing is left over.
        ASSERT_TRUE(write_file(path(w.file), "old"));
        {
            file_size_limit limit(100);
            EXPECT_FALSE(w.write(*this, path(w.file)));
        }
        EXPECT_TRUE(new_reason());
        EXPECT_EQ(read_file(path(w.file)), "old");
        EXPECT_EQ(files_in(dir), QStringList{w.file});
        // Once the disk takes it, the new file replaces the old whole.
        EXPECT_TRUE(w.write(*this, path(w.file)));
        EXPECT_GT(read_file(path(w.file)).size(), 100u);
        EXPECT_EQ(files_in(dir), QStringList{w.file});
    }
}
