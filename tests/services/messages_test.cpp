#include <csetjmp>
#include <gtest/gtest.h>

#include "lib/services/host.h"
#include "lib/toolkit/scene/scene.h"

namespace {

std::jmp_buf jump_buffer;
std::vector<std::string> heard; // by the host and by the handler, in order

// What a plug-in's handler does: print the text, and leave when it is fatal.
void handler(Import_IO_Error_Record* record)
{
    heard.push_back("handler " + std::to_string(record->level) + " " + record->message);
    Import_IO_printf("%s", record->message);
    if (record->level == 5) std::longjmp(jump_buffer, 1);
}

class Messages : public testing::Test {
protected:
    void SetUp() override
    {
        tv::clear_scene();
        services::clear();
        heard.clear();
        services::Host host;
        host.report = [](int32_t level, std::string_view text) {
            heard.push_back("report " + std::to_string(level) + " " + std::string(text));
        };
        host.print = [](std::string_view text) { heard.push_back("print " + std::string(text)); };
        host.info = [](std::string_view text) { heard.push_back("info " + std::string(text)); };
        host.poll = [](const Import_IO_Abort_Record& record) { return record.position >= record.total; };
        services::set_host(std::move(host));
    }

    void TearDown() override
    {
        Import_IO_Cleanup();
        services::set_host({});
    }
};

using Lines = std::vector<std::string>;

TEST_F(Messages, AReportReachesTheHostOnceAndThenTheHandler)
{
    Import_IO_Initialize("a.lwo", handler);
    EXPECT_TRUE(services::run_is_open());
    Import_IO_Report_Error(3, "odd");
    Import_IO_printf("%d %s\n", 12, "plain");
    Import_IO_Report_Error(4, "bad %d %s");
    EXPECT_EQ(heard, (Lines{"report 3 odd", "handler 3 odd", "print 12 plain\n", "report 4 bad %d %s",
                            "handler 4 bad %d %s"}));
    Import_IO_Cleanup();
    EXPECT_FALSE(services::run_is_open());
}

TEST_F(Messages, OutsideARunAReportGoesToTheHostAlone)
{
    Import_IO_Report_Error(3, "early");
    Import_IO_Initialize("a.lwo", handler);
    Import_IO_Cleanup();
    Import_IO_Report_Error(5, "late");
    Import_IO_Report_Error(4, nullptr);
    EXPECT_EQ(heard, (Lines{"report 3 early", "report 5 late", "report 4 "}));
}

TEST_F(Messages, AFatalReportLeavesByTheHandlersJump)
{
    volatile bool left = false;
    Import_IO_Initialize("a.lwo", handler);
    if (setjmp(jump_buffer) == 0) {
        char text[40] = "Out of memory";
        Import_IO_Report_Error(5, text);
        ADD_FAILURE() << "came back";
    } else {
        left = true;
        Import_IO_Abort_Cleanup();
    }
    EXPECT_TRUE(left);
    Import_IO_printf("after"); // prints are the host's again
    Import_IO_Cleanup();
    Import_IO_Initialize("b.lwo", handler);
    Import_IO_Report_Error(3, "next run");
    EXPECT_EQ(heard, (Lines{"report 5 Out of memory", "handler 5 Out of memory", "print after", "report 3 next run",
                            "handler 3 next run"}));
}

TEST_F(Messages, WhatAHandlerReportsDoesNotComeBackToIt)
{
    Import_IO_Initialize("a.lwo", [](Import_IO_Error_Record* record) {
        Import_IO_Report_Error(3, record->message);
        heard.push_back("handler");
    });
    Import_IO_Report_Error(4, "once");
    EXPECT_EQ(heard, (Lines{"report 4 once", "report 3 once", "handler"}));
}

TEST_F(Messages, LongTextsAreCutAndMessagesOutliveTheCallersBuffer)
{
    static const char* kept = nullptr;
    Import_IO_Initialize("a.lwo", [](Import_IO_Error_Record* record) { kept = record->message; });
    Import_IO_Report_Error(4, std::string(100'000, 'm').c_str());
    EXPECT_EQ(std::string(kept), std::string(8191, 'm'));
    heard.clear();
    Import_IO_printf("%s", std::string(100'000, 'p').c_str());
    EXPECT_EQ(heard, Lines{"print " + std::string(8191, 'p')});
}

TEST_F(Messages, ProgressAndAbortGoThroughTheHost)
{
    Import_IO_Abort_Record record{20, 10, 20, 0, 0};
    EXPECT_EQ(Import_IO_Check_For_Abort(&record), 0);
    record.position = 20;
    EXPECT_EQ(Import_IO_Check_For_Abort(&record), 1);
    Import_IO_Display_Info_Text("Reading");
    EXPECT_EQ(heard, Lines{"info Reading"});
    services::set_host({});
    EXPECT_EQ(Import_IO_Check_For_Abort(&record), 0);
    Import_IO_Report_Error(4, "nobody hears");
}

TEST_F(Messages, TheRootIsTheLastRunsOwn)
{
    Import_IO_Initialize("a.lwo", handler);
    Import_IO_Set_Root_Imported_Instance_Name("first");
    Import_IO_Cleanup();
    EXPECT_EQ(services::root_instance_name(), "first");
    Import_IO_Initialize("b.lwo", handler);
    EXPECT_EQ(services::root_instance_name(), "");
}

} // namespace
