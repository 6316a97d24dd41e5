#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <string>

#include "host/host_outputs_support.h"
#include "output_file.h"
#include "support/test_name.h"

// The output writer over every kind of target a person may name: what is
// there afterwards, and that nothing of ours is left beside it.

namespace {

namespace fs = std::filesystem;

ino_t inodeOf(const std::string &path) {
    struct stat info {};
    return ::lstat(path.c_str(), &info) == 0 ? info.st_ino : 0;
}

// Files in the folder that the writer made and left.
int leftovers(const OutputFolder &folder) {
    int count = 0;
    for (const auto &entry : fs::directory_iterator(folder.path())) {
        count += entry.path().filename().string().find(".battery_host-") != std::string::npos;
    }
    return count;
}

struct TargetCase {
    const char *name;
    const char *setUp; // shell line run in the folder first
    std::string path;  // the name written, in the folder
    const char *error; // part of the one line; empty: written
    // What must hold afterwards, given the folder and the inode found before.
    std::function<void(const OutputFolder &, ino_t)> after;
};

const std::string kLong(255, 'n');

void replacedWithNewText(const OutputFolder &folder, ino_t before) {
    EXPECT_EQ(fileText(folder / "out"), "new");
    EXPECT_NE(inodeOf(folder / "out"), before) << "replaced, not written in place";
}

const TargetCase kTargets[] = {
    {"regular file", "printf old > out", "out", "", replacedWithNewText},
    {"missing file", "", "out", "", replacedWithNewText},
    {"symlink to a file", "printf old > real; ln -s real out", "out", "",
     [](const OutputFolder &folder, ino_t before) {
         EXPECT_EQ(inodeOf(folder / "out"), before) << "the link stays a link";
         EXPECT_TRUE(fs::is_symlink(folder / "out"));
         EXPECT_EQ(fileText(folder / "real"), "new");
     }},
    {"dangling symlink", "mkdir sub; ln -s sub/real out", "out", "",
     [](const OutputFolder &folder, ino_t) {
         EXPECT_TRUE(fs::is_symlink(folder / "out"));
         EXPECT_EQ(fileText(folder / "sub/real"), "new");
     }},
    {"name of 255 bytes", "", kLong, "",
     [](const OutputFolder &folder, ino_t) { EXPECT_EQ(fileText(folder / kLong), "new"); }},
    {"directory", "mkdir out", "out", "cannot write ",
     [](const OutputFolder &folder, ino_t) { EXPECT_TRUE(fs::is_directory(folder / "out")); }},
    {"fifo nobody reads", "mkfifo out", "out", "No such device or address",
     [](const OutputFolder &folder, ino_t) { EXPECT_TRUE(fs::is_fifo(folder / "out")); }},
    {"missing folder", "", "gone/out", "No such file or directory",
     [](const OutputFolder &folder, ino_t) { EXPECT_FALSE(fs::exists(folder / "gone")); }},
};

class OutputTarget : public ::testing::TestWithParam<TargetCase> {};

TEST_P(OutputTarget, EndsAsTheRulesSay) {
    const TargetCase &row = GetParam();
    OutputFolder folder;
    ASSERT_EQ(folder.shell(row.setUp).exitCode, 0);
    const ino_t before = inodeOf(folder / "out");
    const std::string error = output_file::write(folder / row.path, "new");
    if (*row.error == '\0') {
        EXPECT_EQ(error, "");
    } else {
        EXPECT_NE(error.find(folder / row.path), std::string::npos) << error;
        EXPECT_NE(error.find(row.error), std::string::npos) << error;
    }
    row.after(folder, before);
    EXPECT_EQ(leftovers(folder), 0);
}

INSTANTIATE_TEST_SUITE_P(Kinds, OutputTarget, ::testing::ValuesIn(kTargets),
                         NameBy<&TargetCase::name>());

TEST(OutputFile, AStreamIsWrittenInPlaceNeverReplaced) {
    // A character device as the file-type check sees it, over a file a test
    // may write: its inode stays, only its bytes change.
    OutputFolder folder;
    ASSERT_EQ(folder.shell("printf old > device").exitCode, 0);
    const ino_t before = inodeOf(folder / "device");
    const output_file::Target device{folder / "device", output_file::Kind::Stream, ""};
    EXPECT_EQ(output_file::writeTo(folder / "device", device, "new"), "");
    EXPECT_EQ(inodeOf(folder / "device"), before);
    EXPECT_EQ(fileText(folder / "device"), "new");
    // Real devices, made in the test's folder so that a writer gone wrong
    // can never replace the machine's own /dev/null, and a FIFO somebody reads.
    if (folder.shell("mknod null c 1 3 && mknod full c 1 7").exitCode == 0) {
        EXPECT_EQ(output_file::write(folder / "null", "new"), "");
        EXPECT_TRUE(fs::is_character_file(folder / "null"));
        EXPECT_NE(output_file::write(folder / "full", "new").find(": No space left on device"),
                  std::string::npos);
        EXPECT_TRUE(fs::is_character_file(folder / "full"));
    }
    ASSERT_EQ(folder.shell("mkfifo pipe").exitCode, 0);
    const int reader = ::open((folder / "pipe").c_str(), O_RDONLY | O_NONBLOCK);
    ASSERT_GE(reader, 0);
    EXPECT_EQ(output_file::write(folder / "pipe", "new"), "");
    char read[8] = {};
    EXPECT_EQ(::read(reader, read, sizeof read), 3);
    EXPECT_STREQ(read, "new");
    ::close(reader);
    EXPECT_TRUE(fs::is_fifo(folder / "pipe"));
}

// A folder that takes the file's place between the check and the rename
// (the seam stands in for that race): the rename fails, the error names the
// path, and the temporary goes with it.
TEST(OutputFile, AFailedRenameLeavesNoTemporary) {
    OutputFolder folder;
    ASSERT_EQ(folder.shell("mkdir -p out/kept").exitCode, 0);
    const output_file::Target raced{folder / "out", output_file::Kind::Regular, ""};
    const std::string error = output_file::writeTo(folder / "out", raced, "new");
    EXPECT_NE(error.find(folder / "out"), std::string::npos) << error;
    EXPECT_EQ(leftovers(folder), 0);
    EXPECT_TRUE(fs::exists(folder / "out/kept"));
}

TEST(OutputFile, TheTemporaryNameFitsTheFolderAndTellsWhoseItIs) {
    EXPECT_EQ(output_file::temporaryPrefix("fleet.prom", 255), ".fleet.prom.battery_host-");
    EXPECT_EQ(output_file::temporaryPrefix(kLong, 255).size() + 6, 255u);
}

TEST(OutputFile, ALeftoverOfAKilledRunGoesAndALivingWritersStays) {
    OutputFolder folder;
    // A host killed between its write and its rename, and one still writing:
    // the living one holds the lock on its temporary.
    const std::string dead = folder / ".out.battery_host-dead00";
    const std::string living = folder / ".out.battery_host-alive0";
    const std::string otherName = folder / ".other.battery_host-dead00";
    ASSERT_EQ(folder
                  .shell("printf half > " + dead + "; printf half > " + living +
                         "; printf half > " + otherName)
                  .exitCode,
              0);
    const int writer = ::open(living.c_str(), O_RDONLY);
    ASSERT_EQ(::flock(writer, LOCK_EX), 0);
    EXPECT_EQ(output_file::checkBeforeRun({folder / "out"}, {}), "");
    EXPECT_FALSE(fs::exists(dead));
    EXPECT_TRUE(fs::exists(living));
    EXPECT_TRUE(fs::exists(otherName)) << "another file's temporaries are not ours to judge";
    ::close(writer);
}

struct CheckCase {
    const char *name;
    const char *setUp;
    std::vector<std::string> outputs; // in the folder; "-" as it is
    std::vector<std::string> inputs;
    const char *error; // part of the one line; empty: fine
};

const CheckCase kChecks[] = {
    {"two outputs and an input", "touch history", {"report.html", "fleet.prom"}, {"history"}, ""},
    {"standard output", "", {"-", "-"}, {}, ""},
    {"the history database", "touch history", {"history"}, {"history"}, "is the same file as"},
    {"the scenario through a link",
     "touch s.json; ln -s s.json r",
     {"r"},
     {"s.json"},
     "r is the same file as"},
    {"one output twice", "ln -s out again", {"out", "again"}, {}, "again is the same file as"},
    {"a folder", "mkdir out", {"out"}, {}, "out is a folder"},
    {"a missing folder", "", {"gone/out"}, {}, "no folder"},
    {"a name too long", "", {std::string(256, 'n')}, {}, "File name too long"},
};

class OutputCheck : public ::testing::TestWithParam<CheckCase> {};

TEST_P(OutputCheck, NamesTheProblemBeforeTheRun) {
    const CheckCase &row = GetParam();
    OutputFolder folder;
    ASSERT_EQ(folder.shell(row.setUp).exitCode, 0);
    std::vector<std::string> outputs, inputs;
    for (const std::string &name : row.outputs)
        outputs.push_back(name == "-" ? name : folder / name);
    for (const std::string &name : row.inputs) inputs.push_back(folder / name);
    const std::string error = output_file::checkBeforeRun(outputs, inputs);
    if (*row.error == '\0') {
        EXPECT_EQ(error, "");
    } else {
        EXPECT_NE(error.find(row.error), std::string::npos) << error;
    }
}

INSTANTIATE_TEST_SUITE_P(Paths, OutputCheck, ::testing::ValuesIn(kChecks),
                         NameBy<&CheckCase::name>());

} // namespace
