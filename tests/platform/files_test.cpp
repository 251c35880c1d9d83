#include "lib/platform/files.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

// A directory of its own, which is the current one during a test.
class Files : public testing::Test {
protected:
    void SetUp() override
    {
        before_ = fs::current_path();
        char name[] = "/tmp/platform_files_XXXXXX";
        ASSERT_TRUE(mkdtemp(name));
        root = fs::canonical(name).string();
        fs::current_path(root);
        platform::forget_directories();
    }

    void TearDown() override
    {
        platform::set_allowed_roots({});
        platform::set_open_substitute(nullptr, nullptr);
        platform::set_open_observer(nullptr, nullptr);
        fs::current_path(before_);
        fs::remove_all(root);
        platform::forget_directories();
    }

    static void make(const std::string& path, const std::string& text = "")
    {
        if (const fs::path parent = fs::path(path).parent_path(); !parent.empty()) fs::create_directories(parent);
        std::ofstream(path, std::ios::binary) << (text.empty() ? path : text);
    }

    static std::string read(const std::string& path)
    {
        std::FILE* const file = platform::open_file(path.c_str(), "rb");
        if (!file) return "(none)";
        char text[100];
        const std::size_t size = std::fread(text, 1, sizeof text, file);
        std::fclose(file);
        return std::string(text, size);
    }

    std::string root;

private:
    fs::path before_;
};

TEST_F(Files, AStoredPathOpensInWhateverSpelling)
{
    make("Objects/Space/Ship.lwo", "ship");
    EXPECT_EQ(read("Objects/Space/Ship.lwo"), "ship");
    EXPECT_EQ(read("OBJECTS\\SPACE\\SHIP.LWO"), "ship");
    EXPECT_EQ(read("objects\\Space/ship.LWO"), "ship");
    EXPECT_EQ(read(".\\objects\\\\space\\.\\ship.lwo"), "ship");
    EXPECT_EQ(read("objects\\nowhere\\..\\space\\ship.lwo"), "ship");
    EXPECT_EQ(read("objects\\space\\..\\..\\OBJECTS\\space\\ship.lwo"), "ship");
    EXPECT_EQ(platform::resolve("OBJECTS\\SPACE"), "Objects/Space");
    EXPECT_EQ(platform::resolve("OBJECTS\\SPACE\\SHIP.LWO"), "Objects/Space/Ship.lwo");
    EXPECT_EQ(platform::resolve("objects\\space\\ship"), "");
    EXPECT_EQ(platform::resolve("objects\\space\\ship.lwo\\"), "");
    EXPECT_EQ(platform::resolve("objects\\space\\ship.lwo\\x"), "");
    EXPECT_EQ(platform::resolve(""), "");
    EXPECT_EQ(platform::resolve(std::string_view("objects\0", 8)), "");
    EXPECT_EQ(platform::resolve(std::string(100'000, 'a') + "\\" + std::string(100'000, '\\')), "");
}

TEST_F(Files, ADriveLetterStandsForTheRoot)
{
    make("Deep/File.txt", "deep");
    std::string upper = root;
    for (char& c : upper) c = c == '/' ? '\\' : static_cast<char>(std::toupper(c));
    EXPECT_EQ(platform::resolve("C:" + upper + "\\DEEP\\file.TXT"), root + "/Deep/File.txt");
    EXPECT_EQ(platform::resolve("z:" + root.substr(1) + "/Deep"), root + "/Deep");
    EXPECT_EQ(platform::resolve("C:\\.." + upper), "/.." + root);
    EXPECT_EQ(platform::resolve("Deep:File.txt"), "");
}

TEST_F(Files, ExactBytesComeBeforeOtherCaseAndThenByteOrder)
{
    make("SHIP.lwo", "upper");
    make("Ship.lwo", "title");
    make("ship.lwo", "lower");
    EXPECT_EQ(read("ship.lwo"), "lower");
    EXPECT_EQ(read("Ship.lwo"), "title");
    EXPECT_EQ(read("sHIP.LWO"), "upper");
    make("back\\slash.txt", "one name");
    EXPECT_EQ(read("back\\slash.txt"), "one name");
}

TEST_F(Files, Latin1NamesMeetUtf8AndLatin1Entries)
{
    make("M\xC3\x96WE.lwo", "utf-8");    // as today's systems write it
    make("t\xFCr.lwo", "latin-1");       // as an old archive unpacks
    make("\xC3\xBF.lwo", "y diaeresis"); // its capital is beyond Latin-1
    make("\xE6\x97\xA5X.lwo", "beyond");
    EXPECT_EQ(read("m\xF6we.LWO"), "utf-8");
    EXPECT_EQ(read("M\xD6WE.LWO"), "utf-8");
    EXPECT_EQ(read("T\xDCR.LWO"), "latin-1");
    EXPECT_EQ(read("\xFF.LWO"), "y diaeresis");
    EXPECT_EQ(read("\xE6\x97\xA5x.LWO"), "beyond");
    platform::forget_directories();
    make("a\xC3\x97.txt", "times");
    EXPECT_EQ(read("A\xF7.txt"), "(none)"); // the division sign is no small multiplication sign
    EXPECT_EQ(read("A\xD7.txt"), "times");
}

TEST_F(Files, DirectoriesAndLooseEndsAreNoFiles)
{
    fs::create_directory("Folder");
    fs::create_symlink("nowhere", "Loose");
    EXPECT_EQ(platform::open_file("folder", "rb"), nullptr);
    EXPECT_EQ(errno, EISDIR);
    EXPECT_EQ(platform::open_file("Folder", "w"), nullptr);
    EXPECT_EQ(platform::open_file("loose", "rb"), nullptr);
    EXPECT_EQ(platform::open_file("missing", "rb"), nullptr);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(platform::open_file("", "rb"), nullptr);
    EXPECT_EQ(platform::open_file(nullptr, "rb"), nullptr);
    EXPECT_TRUE(platform::is_directory("Folder"));
    EXPECT_FALSE(platform::is_file("Folder"));
    EXPECT_FALSE(platform::is_file("Loose"));
    ASSERT_EQ(mkfifo("pipe", 0600), 0);
    platform::forget_directories();
    EXPECT_TRUE(platform::is_file("pipe"));
    EXPECT_EQ(read("PIPE"), ""); // nobody writes to it: that must not wait
}

TEST_F(Files, WritingMeetsTheExistingFileOrMakesOneAsGiven)
{
    make("Out/Old.txt", "old and long");
    std::FILE* file = platform::open_file("OUT\\OLD.TXT", "w");
    ASSERT_TRUE(file);
    std::fputs("new", file);
    std::fclose(file);
    EXPECT_EQ(read("Out/Old.txt"), "new");
    file = platform::open_file("OUT\\Fresh.Txt", "w");
    ASSERT_TRUE(file);
    std::fclose(file);
    EXPECT_TRUE(fs::exists("Out/Fresh.Txt"));
    EXPECT_EQ(platform::open_file("gone\\x.txt", "w"), nullptr);
    EXPECT_EQ(platform::open_file("OUT\\absent.txt", "r+"), nullptr);
    EXPECT_FALSE(fs::exists("Out/absent.txt"));

    EXPECT_EQ(platform::make_directory("OUT\\Inner\\"), 0);
    EXPECT_TRUE(fs::is_directory("Out/Inner"));
    EXPECT_EQ(platform::make_directory("out\\inner"), EEXIST);
    EXPECT_EQ(platform::make_directory("out\\a\\b"), ENOENT);
}

TEST_F(Files, ListingsAreKeptUntilForgotten)
{
    make("d/b");
    make("d/A");
    make("d/a");
    EXPECT_EQ(platform::list_directory("d"), (std::vector<std::string>{"A", "a", "b"}));
    make("d/Late");
    EXPECT_EQ(platform::list_directory("d").size(), 3u);
    EXPECT_EQ(platform::resolve("d/LATE"), "");
    EXPECT_EQ(platform::resolve("d/Late"), "d/Late");
    platform::forget_directories();
    EXPECT_EQ(platform::resolve("d/LATE"), "d/Late");
    EXPECT_TRUE(platform::list_directory("missing").empty());

    make("other/d/Elsewhere");
    fs::current_path("other");
    EXPECT_EQ(platform::resolve("d/ELSEWHERE"), "d/Elsewhere"); // the other directory of that name
}

TEST_F(Files, NothingOutsideTheAllowedRootsIsReached)
{
    make("in/file.txt", "inside");
    make("in2/file.txt", "neighbour");
    make("out/secret.txt", "secret");
    fs::create_symlink("../out/secret.txt", "in/link.txt");
    fs::create_symlink("../out", "in/door");
    fs::create_symlink("../out/made_through_link.txt", "in/loose.txt");
    fs::create_symlink("in", "alias");
    platform::set_allowed_roots({root + "/alias", root + "/not_there"});

    EXPECT_EQ(read("in/FILE.TXT"), "inside");
    EXPECT_EQ(read("alias/file.txt"), "inside");
    EXPECT_EQ(read("out/../in/file.txt"), "inside");
    for (const char* const path : {"out/secret.txt", "in/../out/secret.txt", "in/link.txt", "IN\\DOOR\\SECRET.TXT",
                                   "in2/file.txt", "/etc/passwd", "C:\\ETC\\PASSWD"}) {
        EXPECT_EQ(read(path), "(none)") << path;
        EXPECT_EQ(platform::resolve(path), "") << path;
    }
    for (const char* const path : {"out/x.txt", "in/door/x.txt", "in/loose.txt", "in/nowhere/../../out/x.txt"}) {
        EXPECT_EQ(platform::open_file(path, "w"), nullptr) << path;
    }
    EXPECT_NE(platform::make_directory("out/d"), 0);
    EXPECT_NE(platform::make_directory("in/door/d"), 0);
    EXPECT_EQ(platform::make_directory("in/d"), 0);
    EXPECT_FALSE(fs::exists("out/made_through_link.txt"));

    platform::set_allowed_roots({root + "/not_there"});
    EXPECT_EQ(read("in/file.txt"), "(none)"); // a list without an existing root isn't an empty list
    platform::set_allowed_roots({});
    EXPECT_EQ(read("out/secret.txt"), "secret");
}

TEST_F(Files, TheObserverHearsOfEachTry)
{
    make("Here.txt");
    std::vector<std::string> heard;
    platform::set_open_observer(
        [](void* context, const char* path, const char* opened) {
            static_cast<std::vector<std::string>*>(context)->push_back(std::string(path) + " > " + opened);
        },
        &heard);
    read("HERE.TXT");
    read("gone\\x");
    EXPECT_EQ(heard, (std::vector<std::string>{"HERE.TXT > Here.txt", "gone\\x > "}));
}

// A reader is given another file's bytes under a name that leads nowhere.
TEST_F(Files, ASubstituteComesBeforeTheFileSystem)
{
    make("real.txt", "real");
    platform::set_open_substitute(
        [](void*, const char* path, const char*) -> std::FILE* {
            if (std::string_view(path) != "made.txt") return nullptr;
            std::FILE* const file = platform::temporary_file();
            std::fputs("made", file);
            std::rewind(file);
            return file;
        },
        nullptr);
    EXPECT_EQ(read("made.txt"), "made");
    EXPECT_EQ(read("real.txt"), "real");
    platform::set_open_substitute(nullptr, nullptr);
    EXPECT_EQ(read("made.txt"), "(none)");
}

} // namespace
