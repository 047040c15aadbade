// Every writer of the program, failing: a file is written whole or not at
// all, an old file stays whole, and the reason is kept for the user.

#include "export_helpers.h"
#include "render/draw2d_context.h"

#include <gtest/gtest.h>

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
    // Writes the file as the program does, the writer picked by its
    // extension; a frame through a paint, as the window and the command do.
    bool write(const std::string& file) {
        const QString name = QString::fromStdString(file);
        if (name.endsWith(".tsrx")) return global.save_project_to_file(file);
        if (name.endsWith(".tsrx_presets")) return global.save_presets_to_file(file);
        if (name.endsWith(".xml")) return !global.layers_to_xml_at(file).empty();
        global.request_save_to_file(file::path(file));
        global.defer_build_frame(true, &ctx);
        return global.last_save_succeeded();
    }
};

} // namespace

TEST_F(failed_writes, EveryWriterIsWholeOrNothing) {
    for (const char* file : {"wall.tsrx", "wall.tsrx_presets", "setup.xml", "frame.png",
                             "frame.tga", "frame.bmp", "frame.jpg", "frame.psd"}) {
        SCOPED_TRACE(file);
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
        EXPECT_FALSE(write(path("missing/") + file));
        EXPECT_TRUE(new_reason());
        EXPECT_TRUE(files_in(dir).isEmpty());
        // A folder in the way stays a folder.
        ASSERT_TRUE(QDir(dir.path()).mkdir(file));
        EXPECT_FALSE(write(path(file)));
        EXPECT_TRUE(new_reason());
        EXPECT_TRUE(QFileInfo(QString::fromStdString(path(file))).isDir());
        ASSERT_TRUE(QDir(dir.path()).rmdir(file));
        // The disk takes only part: the old file stays whole, nothing is left over.
        ASSERT_TRUE(write_file(path(file), "old"));
        {
            file_size_limit limit(100);
            EXPECT_FALSE(write(path(file)));
        }
        EXPECT_TRUE(new_reason());
        EXPECT_EQ(read_file(path(file)), "old");
        EXPECT_EQ(files_in(dir), QStringList{file});
        // Once the disk takes it, the new file replaces the old whole.
        EXPECT_TRUE(write(path(file)));
        EXPECT_GT(read_file(path(file)).size(), 100u);
        EXPECT_EQ(files_in(dir), QStringList{file});
    }
}
