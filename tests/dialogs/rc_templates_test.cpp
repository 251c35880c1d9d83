// The templates that the build makes from the resource script, and the maker's refusals.
#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sys/wait.h>

#include <gmock/gmock.h>

#include "tests/dialogs/dialog_fixture.h"

using platform::ControlKind;
using testing::HasSubstr;

namespace {

// Takes each dialog's template as it opens; out of the Options dialog it opens the other two.
class TemplateCollector : public platform::DialogFace {
public:
    void run(Platform_Window& window) override
    {
        shapes[window.shape->name] = window.shape;
        if (std::string(window.shape->name) == "OptionsDialog") {
            platform::press(window, 201);
            platform::press(window, 109);
        }
        platform::press(window, window.find(IDCANCEL) ? IDCANCEL : IDOK);
    }
    int message_box(const std::string&, const std::string&, UINT) override { return IDOK; }
    std::map<std::string, const platform::DialogTemplate*> shapes;
};

struct Wanted {
    int id;
    ControlKind kind;
    const char* text;
};

class Templates : public Dialogs {
protected:
    Templates()
    {
        platform::set_dialog_face(&collector_);
        plugin_test::call({{"show_options_dialog", 0}});
        platform::set_dialog_face(nullptr);
    }

    const platform::DialogTemplate& shape(const std::string& name)
    {
        EXPECT_TRUE(collector_.shapes.count(name)) << name;
        return *collector_.shapes.at(name);
    }

    void expect(const std::string& name, const char* title, int width, int height, const std::vector<Wanted>& wanted)
    {
        const platform::DialogTemplate& made = shape(name);
        EXPECT_STREQ(made.title, title);
        EXPECT_EQ(made.width, width);
        EXPECT_EQ(made.height, height);
        const platform::DialogControl *const first = made.controls, *const last = first + made.control_count;
        for (const Wanted& control : wanted) {
            const auto* const found = std::find_if(first, last, [&](const auto& c) { return c.id == control.id; });
            ASSERT_NE(found, last) << name << " " << control.id;
            EXPECT_EQ(found->kind, control.kind) << control.id;
            EXPECT_STREQ(found->text, control.text) << control.id;
        }
        EXPECT_EQ(std::count_if(first, last, [](const auto& c) { return c.id != -1; }),
                  static_cast<long>(wanted.size()));
    }

    TemplateCollector collector_;
};

TEST_F(Templates, EveryControlHasItsIdKindAndText)
{
    const auto box = ControlKind::check_box, button = ControlKind::button, edit = ControlKind::edit;
    expect("OptionsDialog", "Lightwave Geometry Import Plug-In", 203, 284,
           {{108, edit, ""},
            {109, button, "&Browse"},
            {100, box, "Compute vertex smoothing normals"},
            {103, edit, ""},
            {110, box, "Do not import keyframe animation data"},
            {106, box, "Break apart object by surface name(s)"},
            {107, box, "Make surface names (material names) unique"},
            {101, box, "Report statistics about the geometry file"},
            {105, box, "Output parsing information to file 'debuglw.txt'"},
            {102, box, "Print warning messages"},
            {1, button, "&OK"},
            {2, button, "&Cancel"},
            {200, button, "&Help"},
            {201, button, "&About..."}});
    expect("AboutBox", "About the Lightwave Geometry Import Plug-In", 206, 119,
           {{1, button, "&OK"}, {200, button, "&Help"}});
    expect("SelectDirDialogNT", "Select Destination Directory for Bitmap Textures", 304, 187,
           {{1088, edit, ""},
            {1121, ControlKind::list, ""},
            {1091, ControlKind::text, "Dri&ves:"},
            {1137, ControlKind::combo, ""},
            {1, button, "OK"},
            {2, button, "Cancel"},
            {1037, button, "Net&work..."},
            {200, button, "Help"},
            {1038, button, "Help"},
            {1040, box, "&Read Only"},
            {1090, ControlKind::text, "File &Name:"},
            {1152, edit, ""},
            {1120, ControlKind::list, ""},
            {1089, ControlKind::text, "File &Type:"},
            {1136, ControlKind::combo, ""}});
}

TEST_F(Templates, NothingOverlapsOrStandsOutsideButForTheHiddenOnes)
{
    for (const char* const name : {"OptionsDialog", "AboutBox", "SelectDirDialogNT"}) {
        const platform::DialogTemplate& made = shape(name);
        for (std::size_t i = 0; i < made.control_count; ++i) {
            const platform::DialogControl& a = made.controls[i];
            const bool hidden = a.id == 200 || a.id == 1038 || a.id == 1040 || a.id == 1090 || a.id == 1152 ||
                                a.id == 1120 || a.id == 1089 || a.id == 1136;
            if (hidden && made.width == 304) {
                EXPECT_GE(a.x, 396) << a.id;
            } else {
                EXPECT_LE(a.x + a.width, made.width) << name << " " << a.text;
                // A drop-down list's height is that of the list when it is open.
                if (a.kind != ControlKind::combo) {
                    EXPECT_LE(a.y + a.height, made.height) << name << " " << a.text;
                }
            }
            for (std::size_t k = 0; k < i; ++k) {
                const platform::DialogControl& b = made.controls[k];
                if (a.kind == ControlKind::group || b.kind == ControlKind::group) continue;
                EXPECT_FALSE(a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height && b.y < a.y + a.height)
                    << name << ": '" << a.text << "' " << a.id << " and '" << b.text << "' " << b.id;
            }
        }
    }
    const platform::DialogTemplate& options = shape("OptionsDialog");
    for (std::size_t i = 0; i < options.control_count; ++i) {
        const platform::DialogControl& control = options.controls[i];
        EXPECT_EQ(control.read_only, control.id == 108) << control.id;
        EXPECT_EQ(control.is_default, control.id == 1) << control.id;
    }
    EXPECT_STREQ(options.controls[0].text, "This geometry utility imports Lightwave binary object files (.lw) and "
                                           "Lightwave ASCII scene files (.scn).");
}

TEST(TemplateMaker, RefusesWhatItDoesntKnowWithItsLine)
{
    const plugin_test::TemporaryDirectory directory;
    const std::string head = "Box DIALOG 0, 0, 10, 10\nBEGIN\n", tail = "\nEND\n";
    const std::pair<std::string, std::string> cases[] = {
        {head + "SCROLLBAR 5, 1, 1, 1, 1" + tail, "line 3: unknown statement SCROLLBAR"},
        {head + "LTEXT \"open, 5, 1, 1, 1, 1" + tail, "line 3: open string"},
        {head + "LTEXT \"text\", 5, 1, 1, 1" + tail, "line 3: unexpected"},
        {head + "CONTROL \"text\", 5, \"Static\", SS_LEFT, 1, 1, 1, 1" + tail, "line 3: only check boxes"},
        {"LTEXT \"text\", 5, 1, 1, 1, 1\n", "line 1: LTEXT outside a dialog"},
        {"Box DIALOG 0, 0\n", "line 1: unexpected"},
    };
    const std::string maker = std::string(BUILD_DIR) + "/bin/rc_templates";
    for (const auto& [script, message] : cases) {
        directory.write("bad.rc", script);
        const int status = std::system((maker + " bad.rc out.cpp make 2>said").c_str());
        EXPECT_EQ(WEXITSTATUS(status), 1) << script;
        EXPECT_THAT(directory.read("said"), HasSubstr("bad.rc: " + message)) << script;
        EXPECT_FALSE(std::ifstream("out.cpp").is_open()) << script;
    }
    directory.write("good.rc", head + "LTEXT \"a \"\"b\"\" \\\\ c\", -1, 1, 2, 3, 4 // end" + tail);
    EXPECT_EQ(std::system((maker + " good.rc out.cpp make").c_str()), 0);
    EXPECT_THAT(directory.read("out.cpp"), HasSubstr(R"({ControlKind::text, -1, "a \"b\" \\\\ c", 1, 2, 3, 4,)"));
}

} // namespace
