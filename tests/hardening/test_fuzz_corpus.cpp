// Every kept fuzz input, seeds and past findings alike, runs through its
// target in the everyday suite, so a fixed fault stays fixed.

#include "fuzz_entries.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>

#include <gtest/gtest.h>

using namespace Vantora_TesserinePro;

namespace {

std::vector<std::string> inputs_of(const std::string& target) {
    std::vector<std::string> files;
    for (const char* kind : {"corpus", "regressions"}) {
        const QString dir =
            QString(TESSERINE_SOURCE_DIR) + "/fuzz/" + kind + "/" + QString::fromStdString(target);
        QDirIterator it(dir, QDir::Files);
        while (it.hasNext())
            files.push_back(it.next().toStdString());
    }
    std::sort(files.begin(), files.end());
    return files;
}

} // namespace

TEST(FuzzCorpus, EveryKeptInputRunsCleanly) {
    int runs = 0;
    for (const auto& target : fuzzing::targets()) {
        for (const auto& path : inputs_of(target.name)) {
            QFile f(QString::fromStdString(path));
            ASSERT_TRUE(f.open(QIODevice::ReadOnly)) << path;
            const QByteArray bytes = f.readAll();
            SCOPED_TRACE(path);
            EXPECT_NO_THROW(target.run(reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                                       std::size_t(bytes.size())));
            ++runs;
        }
    }
    EXPECT_GT(runs, 0);
}
