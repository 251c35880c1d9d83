#include "lib/platform/atomic_file.h"

#include <gmock/gmock.h>

#include <csignal>
#include <fstream>
#include <functional>
#include <iterator>
#include <stdexcept>
#include <sys/resource.h>
#include <unistd.h>

#include "lib/platform/memory.h"

namespace fs = std::filesystem;

namespace {

class AtomicFile : public testing::Test {
protected:
    void SetUp() override
    {
        folder = fs::temp_directory_path() / ("atomic_file_test." + std::to_string(getpid()));
        fs::create_directories(folder);
    }
    void TearDown() override { fs::remove_all(folder); }

    // File and reason of the failure; empty where there is none.
    static std::string write(const fs::path& target, std::size_t size = 3)
    {
        try {
            platform::AtomicFile file(target);
            const std::string text(size, 'n');
            file.write(text.data(), text.size());
            file.commit();
        } catch (const platform::FileError& error) {
            return error.what();
        }
        return "";
    }
    static std::string content(const fs::path& path)
    {
        std::ifstream in(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    std::vector<std::string> files() const
    {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder)) names.push_back(entry.path().filename().string());
        return names;
    }

    fs::path folder;
};

} // namespace

TEST_F(AtomicFile, AFullDiskLeavesWhatWasThere)
{
    const fs::path device = folder / "full";
    fs::create_symlink("/dev/full", device);
    EXPECT_EQ(write(device), device.string() + ": No space left on device");

    // A file that may not grow stands for a disk that fills up half-way: a real file, with its temporary one beside it.
    const fs::path out = folder / "old";
    std::ofstream(out) << "old";
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    signal(SIGXFSZ, SIG_IGN);
    const rlimit small{1000, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const std::string failure = write(out, 100000);
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(failure, out.string() + ": File too large");
    EXPECT_EQ(content(out), "old");
    EXPECT_THAT(files(), testing::UnorderedElementsAre("full", "old")) << "no temporary file stays";
}

TEST_F(AtomicFile, PlacesThatCantBeWrittenAreNamed)
{
    EXPECT_EQ(write(folder / "no" / "a"), (folder / "no" / "a").string() + ": No such file or directory");
    fs::create_directory(folder / "dir");
    EXPECT_EQ(write(folder / "dir"), (folder / "dir").string() + ": Is a directory");
}

TEST_F(AtomicFile, ShortMemoryAndEarlyEndsLeaveWhatWasThere)
{
    const fs::path out = folder / "old";
    std::ofstream(out) << "old";
    platform::note_short_memory(); // noted somewhere, while the file was made
    EXPECT_THROW(write(out), std::bad_alloc);
    platform::forget_short_memory();
    EXPECT_EQ(content(out), "old");
    EXPECT_THAT(files(), testing::ElementsAre("old"));

    platform::AtomicFile first(out), second(folder / "new");
    platform::AtomicFile::remove_unfinished();
    EXPECT_THAT(files(), testing::ElementsAre("old"));
}

TEST_F(AtomicFile, LinksAreFollowedAndPermissionsKept)
{
    std::ofstream(folder / "real") << "old";
    fs::permissions(folder / "real", fs::perms::owner_read | fs::perms::owner_write);
    fs::create_symlink("real", folder / "link");
    EXPECT_EQ(write(folder / "link"), "");
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_EQ(content(folder / "real"), "nnn");
    EXPECT_EQ(fs::status(folder / "real").permissions(), fs::perms::owner_read | fs::perms::owner_write);
}
