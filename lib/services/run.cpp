#include "lib/services/run.h"

#include "lib/platform/memory.h"
#include "lib/services/unique_names.h"
#include "lib/toolkit/words/trace.h"

namespace services {

Run& run()
{
    static Run the_run;
    return the_run;
}

void set_host(Host host)
{
    run().host = std::move(host);
}

const std::string& root_instance_name()
{
    return run().root_instance;
}

bool run_is_open()
{
    return run().open;
}

void clear()
{
    forget_names();
    run().root_instance.clear();
}

static void trace_call(const char* function)
{
    if (!tv::trace_enabled()) return;
    tv::trace_begin(function);
    tv::trace_end();
}

static void trace_call(const char* function, const char* text)
{
    if (!tv::trace_enabled()) return;
    tv::trace_begin(function);
    tv::trace_string(text);
    tv::trace_end();
}

} // namespace services

using services::run;
using services::trace_call;

void Import_IO_Initialize(const char* file_name, Import_IO_Error_Handler handler)
{
    trace_call("Import_IO_Initialize", file_name);
    run().handler = handler;
    run().open = true;
    run().in_handler = false;
    run().root_instance.clear();
}

void Import_IO_Cleanup(void)
{
    trace_call("Import_IO_Cleanup");
    run().handler = nullptr;
    run().open = false;
    run().in_handler = false;
}

// Comes behind a non-local exit and in front of Import_IO_Cleanup: the handler was left and not returned from.
void Import_IO_Abort_Cleanup(void)
{
    trace_call("Import_IO_Abort_Cleanup");
    run().in_handler = false;
}

void Import_IO_Display_Info_Text(const char* text)
{
    trace_call("Import_IO_Display_Info_Text", text);
    if (text && run().host.info) run().host.info(text);
}

int32_t Import_IO_Check_For_Abort(Import_IO_Abort_Record* record)
{
    const Import_IO_Abort_Record nothing{20, 0, 0, 0, 0};
    const Import_IO_Abort_Record& progress = record ? *record : nothing;
    const int32_t result = run().host.poll && run().host.poll(progress) ? 1 : 0;
    if (tv::trace_enabled()) {
        tv::trace_begin("Import_IO_Check_For_Abort");
        tv::trace_integer(progress.position);
        tv::trace_integer(progress.total);
        tv::trace_integer(progress.objects);
        tv::trace_integer(progress.polygons);
        tv::trace_integer(result);
        tv::trace_end();
    }
    return result;
}

void Import_IO_Set_Root_Imported_Instance_Name(const char* name)
{
    trace_call("Import_IO_Set_Root_Imported_Instance_Name", name);
    platform::noting_short_memory([&] { run().root_instance = name ? name : ""; });
}
