// The chooser of the content directory: where it opens, what clicks and typed paths do, and what it makes.
#include <filesystem>

#include <gmock/gmock.h>

#include "lib/toolkit/calls/environment.h"
#include "tests/dialogs/dialog_fixture.h"

using namespace plugin_test;
using testing::Contains;
using testing::HasSubstr;
using testing::Not;

namespace fs = std::filesystem;

namespace {

const std::string chooser = "show SelectDirDialogNT: 1088=";

class Chooser : public Dialogs {
protected:
    Chooser()
    {
        for (const char* const name : {"content/Objects/Ships", "content/Scenes", "work/rel"}) {
            fs::create_directories(directory_.path() + "/" + name);
        }
        set_root((directory_.path() + "/content").c_str());
        tv::set_environment("TV_WORKING_DIR", directory_.path() + "/work");
    }
    std::string opened_in(const char* root)
    {
        fs::current_path(directory_.path());
        Import_IO_Copy_String(&lw_newtek_root_directory, root);
        const std::string line = line_of(choose({"press 2"}), chooser);
        return line.substr(std::min(line.size(), chooser.size()), line.find(" 1040=") - chooser.size());
    }
    std::string in(const std::string& name) const { return directory_.path() + "/" + name; }
};

TEST_F(Chooser, OpensWhereTheStoredDirectoryPoints)
{
    EXPECT_EQ(opened_in(in("content").c_str()), in("content"));
    // Directories whose names really end in a backslash tell whether it was kept.
    fs::create_directories(in("content\\"));
    EXPECT_EQ(opened_in((in("content") + "\\").c_str()), in("content"));
    fs::create_directories(in("c:\\keep\\"));
    EXPECT_EQ(opened_in("c:\\keep\\"), in("c:\\keep\\"));
    EXPECT_EQ(opened_in("c:\\"), "/"); // a drive is the root here
    EXPECT_EQ(opened_in("rel"), in("work/rel"));
    EXPECT_EQ(opened_in("rel\\"), in("work/rel"));
    EXPECT_EQ(opened_in("\\"), in("work"));
    EXPECT_EQ(opened_in(""), in("work"));
    tv::set_environment("TV_WORKING_DIR", in("work") + "/");
    EXPECT_EQ(opened_in("rel"), in("work/rel"));
    EXPECT_EQ(opened_in("gone"), directory_.path()); // stays where the program is
    EXPECT_EQ(opened_in(std::string(5000, 'x').c_str()), directory_.path());
    EXPECT_EQ(opened_in(nullptr), "/"); // no directory is "c:\"
    EXPECT_STREQ(lw_newtek_root_directory, "c:\\");
    tv::set_environment("TV_WORKING_DIR", "");
    EXPECT_EQ(opened_in(""), "/");
    EXPECT_EQ(opened_in("content"), in("content"));
}

TEST_F(Chooser, ClicksAreFollowedAtOnceAlsoWhenCancelled)
{
    const std::vector<std::string> seen = choose({"select 1121 Objects", "select 1121 Ships", "press 2", "press 100"});
    EXPECT_EQ(std::string(lw_newtek_root_directory), in("content/Objects/Ships"));
    EXPECT_THAT(seen, Contains(HasSubstr(chooser + in("content/Objects/Ships"))));
    // The Options dialog shows the old text until it is opened anew.
    EXPECT_THAT(seen[seen.size() - 2], HasSubstr("108=" + in("content") + " "));
    EXPECT_THAT(show({"press 2"})[1], HasSubstr("108=" + in("content/Objects/Ships") + " "));

    choose({"select 1121 ..", "press 2"});
    EXPECT_EQ(std::string(lw_newtek_root_directory), in("content/Objects"));
    choose({"select 1137 /", "press 2"});
    EXPECT_STREQ(lw_newtek_root_directory, "/");
}

TEST_F(Chooser, OkTakesTheDirectoryAndMakesNoFile)
{
    const std::vector<std::string> seen = choose({"select 1121 Scenes", "press 1"});
    EXPECT_EQ(count_of(seen, "box "), 0); // no complaint about a missing file name
    EXPECT_THAT(seen, Contains("close SelectDirDialogNT 1"));
    EXPECT_EQ(std::string(lw_newtek_root_directory), in("content/Scenes"));
    EXPECT_THAT(seen[seen.size() - 2], HasSubstr("108=" + in("content/Scenes") + " "));
    for (const auto& entry : fs::recursive_directory_iterator(directory_.path())) {
        EXPECT_NE(entry.path().filename(), "dummy.3ds");
    }
    // What the chooser took stays in memory; the file is the Options dialog's.
    EXPECT_FALSE(fs::exists(place_ + "imp_lw.ini"));
}

TEST_F(Chooser, TypedPaths)
{
    choose({"type 1088 " + in("work"), "press 1"});
    EXPECT_EQ(std::string(lw_newtek_root_directory), in("work"));

    set_root(in("content").c_str());
    choose({"type 1088 Objects", "press 1"});
    EXPECT_EQ(std::string(lw_newtek_root_directory), in("content") + "\\Objects");
    set_root((in("content") + "/").c_str());
    choose({"type 1088 Objects", "press 1"});
    EXPECT_EQ(std::string(lw_newtek_root_directory), in("content") + "/Objects");

    // ".." anywhere gives way to the current directory, which is where the chooser stands.
    set_root(in("content").c_str());
    choose({"type 1088 ..\\elsewhere", "press 1"});
    EXPECT_EQ(std::string(lw_newtek_root_directory), in("content") + "\\");
    set_root(in("content").c_str());
    choose({"select 1121 Objects", "type 1088 My..Dir", "press 1"});
    EXPECT_EQ(std::string(lw_newtek_root_directory), in("content/Objects") + "\\");

    choose({"type 1088 z:\\", "press 1"});
    EXPECT_STREQ(lw_newtek_root_directory, "z:\\");
}

TEST_F(Chooser, AsksBeforeMakingADirectory)
{
    const std::string fresh = in("content/New");
    std::vector<std::string> seen = choose({"type 1088 " + fresh, "press 1", "answer cancel", "press 2"});
    EXPECT_THAT(seen, Contains("box Directory Does Not Exist: Newtek directory '" + fresh +
                               "' does not exist.\n\nDo you want to create this directory or cancel?"));
    EXPECT_THAT(seen, Contains("close SelectDirDialogNT 0")); // Cancel kept it open for the next event
    EXPECT_FALSE(fs::exists(fresh));
    EXPECT_EQ(std::string(lw_newtek_root_directory), in("content"));

    choose({"type 1088 " + fresh, "press 1", "answer ok"});
    EXPECT_TRUE(fs::is_directory(fresh));
    EXPECT_EQ(std::string(lw_newtek_root_directory), fresh);

    // It can't be made: the name is stored all the same, and nothing is told.
    seen = choose({"type 1088 " + in("gone/deeper"), "press 1", "answer ok"});
    EXPECT_EQ(count_of(seen, "box "), 1);
    EXPECT_FALSE(fs::exists(in("gone")));
    EXPECT_EQ(std::string(lw_newtek_root_directory), in("gone/deeper"));
}

TEST_F(Chooser, LongPathsEndAtTheBuffer)
{
    choose({"type 1088 /" + std::string(5000, 'p'), "press 1", "answer ok"});
    EXPECT_EQ(std::string(lw_newtek_root_directory), "/" + std::string(298, 'p'));

    // A current directory that doesn't fit: the typed text stands.
    fs::path deep = in("content");
    for (int i = 0; i < 3; ++i) deep /= std::string(120, 'd');
    fs::create_directories(deep);
    set_root(in("content").c_str());
    const std::string item = "select 1121 " + std::string(120, 'd');
    choose({item, item, item, "type 1088 /..", "press 1", "answer ok"});
    EXPECT_STREQ(lw_newtek_root_directory, "/..\\");

    set_root(std::string(400, 'r').c_str());
    choose({"type 1088 " + std::string(290, 's'), "press 1", "answer ok"});
    EXPECT_EQ(std::string(lw_newtek_root_directory), std::string(299, 'r'));
}

TEST_F(Chooser, NamesBeyondAscii)
{
    fs::create_directories(in("content/caf\xc3\xa9"));
    fs::create_directories(in("content/\xe6\x97\xa5\xe6\x9c\xac"));
    choose({"select 1121 caf\xe9", "press 1"}); // UTF-8 on the disk, Latin-1 inside
    EXPECT_EQ(std::string(lw_newtek_root_directory), in("content/caf\xe9"));
    choose({"select 1121 ..", "select 1121 \xe6\x97\xa5\xe6\x9c\xac", "press 1"});
    EXPECT_EQ(std::string(lw_newtek_root_directory), in("content/\xe6\x97\xa5\xe6\x9c\xac"));
    const std::vector<std::string> seen = choose({"press 1"});
    EXPECT_THAT(seen, Not(Contains(HasSubstr("can't be opened"))));
    EXPECT_EQ(count_of(seen, "box "), 0);
}

} // namespace
