#include "lib/toolkit/scene/call_trace.h"

#include "lib/toolkit/scene/channels.h"

namespace tv {

namespace {

void trace_channel(const void* handle)
{
    const Channel* const channel = handle ? living_channel(handle) : nullptr;
    if (!handle)
        trace_null();
    else if (channel)
        trace_handle(channel_owner_name(*channel), channel->slot);
    else
        trace_handle(nullptr, 0);
}

// Values that are what they point to; the others are told by their number.
bool is_by_pointer(Value value)
{
    return (value >= Value::float_1 && value <= Value::amount) || value == Value::string || value >= Value::out_integer;
}

void trace_item(const Item& item, bool good)
{
    const auto floats = [&] { return static_cast<const float*>(item.pointer); };
    const auto integers = [&] { return static_cast<const int32_t*>(item.pointer); };
    if ((item.value >= Value::out_integer && !good) || (!item.pointer && is_by_pointer(item.value))) {
        trace_null(); // what was never written, or never there
        return;
    }
    switch (item.value) {
    case Value::none: break;
    case Value::end: trace_integer(0); break;
    case Value::close: trace_integer(1); break;
    case Value::word:
    case Value::switch_state:
    case Value::layer_channel:
    case Value::projection_model:
    case Value::space:
    case Value::channel_kind:
    case Value::thing_kind: trace_token(item.number); break;
    case Value::float_1: trace_float(*floats()); break;
    case Value::float_2: trace_floats(floats(), 2); break;
    case Value::amount:
    case Value::float_3:
    case Value::out_float_3: trace_floats(floats(), 3); break;
    case Value::float_4: trace_floats(floats(), 4); break;
    case Value::matrix:
    case Value::out_matrix: trace_floats(floats(), 16); break;
    case Value::integer:
    case Value::out_integer: trace_integer(*integers()); break;
    case Value::integer_2: trace_integers(integers(), 2); break;
    case Value::record: trace_record(*static_cast<const Tv_Local_Axes*>(item.pointer)); break;
    case Value::out_record: trace_record(**static_cast<const Tv_Local_Axes* const*>(item.pointer)); break;
    case Value::sizes:
    case Value::corners: trace_integers(integers(), item.count); break;
    case Value::points: trace_floats(floats(), item.count); break;
    case Value::surface_names: trace_strings(static_cast<const char* const*>(item.pointer), item.count); break;
    case Value::by_value: trace_integer(item.number); break;
    case Value::string: trace_string(static_cast<const char*>(item.pointer)); break;
    case Value::handle: trace_channel(item.pointer); break;
    case Value::out_kind:
    case Value::out_switch_state:
    case Value::out_space:
    case Value::out_projection_model: trace_token(*integers()); break;
    case Value::out_string: trace_string(*static_cast<const char* const*>(item.pointer)); break;
    }
}

} // namespace

void trace_items(const WordList& list)
{
    for (std::size_t i = 0; i < list.size; ++i) trace_item(list.items[i], list.good);
}

} // namespace tv
