// An empty scene for each test, what the toolkit reports, and the trace as lines.
#pragma once
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "lib/toolkit/memory.h"
#include "lib/toolkit/report.h"
#include "lib/toolkit/scene/channels.h"
#include "lib/toolkit/scene/scene.h"
#include "lib/toolkit/words/trace.h"
#include "gtest/gtest.h"

// A word's token.
inline int32_t w(const char* word)
{
    return Tv_Inquire_Token(word);
}

class Toolkit : public testing::Test {
protected:
    void SetUp() override
    {
        tv::clear_scene();
        tv::set_report_sink(
            [](void* self, int32_t level, const char* text) {
                static_cast<Toolkit*>(self)->reports.push_back(std::to_string(level) + " " + text);
            },
            this);
        directory = std::filesystem::temp_directory_path() / ("toolkit_test." + std::to_string(getpid()));
        std::filesystem::create_directories(directory);
        ASSERT_TRUE(tv::set_trace_file((directory / "trace").c_str()));
    }
    void TearDown() override
    {
        tv::set_trace_file(nullptr);
        tv::set_report_sink(nullptr, nullptr);
        tv::fail_allocation(0);
        std::filesystem::remove_all(directory);
    }

    std::vector<std::string> trace()
    {
        tv::trace_flush();
        std::ifstream file(directory / "trace");
        std::vector<std::string> lines;
        for (std::string line; std::getline(file, line);) lines.push_back(line);
        return lines;
    }
    std::string last_line()
    {
        const std::vector<std::string> lines = trace();
        return lines.empty() ? "" : lines.back();
    }
    // The one report since the last look; several or none make a text that matches nothing.
    std::string report()
    {
        const std::string one = reports.size() == 1 ? reports[0] : std::to_string(reports.size()) + " reports";
        reports.clear();
        return one;
    }

    // Things by short calls.
    static void add_node(const char* name, const char* parent_kind = "instance", const char* parent = "world")
    {
        Tv_Add_Empty_Node(w("instance"), name, 0);
        Tv_Attach(w("instance"), name, w(parent_kind), parent, 0);
    }
    static void add_points(const char* object, std::vector<float> points)
    {
        int32_t none = 0, count = static_cast<int32_t>(points.size() / 3);
        Tv_Object_Define(object, 0);
        Tv_Primitive(w("indexedpolygons"), w("numpolygons"), &none, 1, w("vertex"), &count, points.data(), &none, 1, 0);
        Tv_Object_End(0);
    }
    static void add_instance(const char* name, const char* object, const char* parent_kind, const char* parent)
    {
        Tv_Add_Instance(w("instance"), name, w("object"), object, 0);
        Tv_Attach(w("instance"), name, w(parent_kind), parent, 0);
    }
    static tv::Id instance(const char* name) { return tv::scene().find(tv::Kind::instance, name); }
    static const tv::Instance& at(const char* name) { return tv::scene().instances[instance(name)]; }

    // A key as a plug-in makes it, in two calls. Its number.
    static int32_t add_key(void* channel, int32_t time, float value, float tension = 0, float continuity = 0,
                           float bias = 0, const char* end = "reset")
    {
        int32_t scratch = 0, id = 0;
        float none = 0;
        Tv_AnimController(&scratch, w("ctrlrid"), channel, w("type"), w("kftcb"), 1, w("preextraptype"), w(end), 1,
                          w("postextraptype"), w(end), 1, w("keyframe"), &id, w("time"), &time, w("add"), w("tcb"),
                          w("tension"), &tension, w("tcb"), w("cont"), &continuity, w("tcb"), w("bias"), &bias,
                          w("tcb"), w("easefrom"), &none, w("tcb"), w("easeto"), &none, 1, 0);
        if (id)
            Tv_AnimController(&scratch, w("ctrlrid"), channel, w("keyframe"), &id, w("kfid"), id, w("value"), &value, 1,
                              0);
        return id;
    }

    std::vector<std::string> reports;
    std::filesystem::path directory;
};
