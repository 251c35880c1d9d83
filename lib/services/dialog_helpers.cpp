// What dialogs share. Window handles stay out of the trace: they differ from run to run.
#include "lib/services/import_io.h"
#include "lib/toolkit/trace.h"

void Import_IO_Center_Window(void*, void*)
{
    if (!tv::trace_enabled()) return;
    tv::trace_begin("Import_IO_Center_Window");
    tv::trace_end();
}

void Import_IO_NdFloat_To_Dialog(void*, int32_t control, float value)
{
    if (!tv::trace_enabled()) return;
    tv::trace_begin("Import_IO_NdFloat_To_Dialog");
    tv::trace_integer(control);
    tv::trace_float(value);
    tv::trace_end();
}

int32_t Import_IO_Check_Smoothing_Angle(void*, int32_t control, float* angle)
{
    if (tv::trace_enabled()) {
        tv::trace_begin("Import_IO_Check_Smoothing_Angle");
        tv::trace_integer(control);
        tv::trace_float(angle ? *angle : 0.0f);
        tv::trace_integer(1);
        tv::trace_end();
    }
    return 1;
}

void Import_IO_DisplayHelpTopic(void*, const char* directory, const char* file, const char* topic)
{
    if (!tv::trace_enabled()) return;
    tv::trace_begin("Import_IO_DisplayHelpTopic");
    tv::trace_string(directory);
    tv::trace_string(file);
    tv::trace_string(topic);
    tv::trace_end();
}
