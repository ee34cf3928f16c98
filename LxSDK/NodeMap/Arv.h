#pragma once

// Internal, for .cpp files: libaravis. It is loaded with the first of its functions that is called, because with all
// that it needs in turn it would cost every program 10 ms at its start. LoadArv() comes before that call.

#include <arv.h>

#include "LxBase/LxResult.h"

namespace LxDetail
{

/// Loads libaravis, once for the process. Any thread.
/// @return OK, or Unavailable with the reason.
LxResult LoadArv();

/// A function of libaravis or of what it brings along. The process ends where there is none: the library is not the one
/// that the headers are of.
void *FindArv(const char *aName);

}  // namespace LxDetail

// Everything below stands for what libaravis and GObject call the same. Nothing else of theirs may be used, or the
// linker makes the library one that is always loaded.
#define LX_ARV(name)                                                                              \
    (*[] {                                                                                        \
        static const auto function = reinterpret_cast<decltype(&name)>(LxDetail::FindArv(#name)); \
        return function;                                                                          \
    }())

#define arv_buffer_get_data LX_ARV(arv_buffer_get_data)
#define arv_buffer_get_frame_id LX_ARV(arv_buffer_get_frame_id)
#define arv_buffer_get_n_parts LX_ARV(arv_buffer_get_n_parts)
#define arv_buffer_get_part_data LX_ARV(arv_buffer_get_part_data)
#define arv_buffer_get_part_data_type LX_ARV(arv_buffer_get_part_data_type)
#define arv_buffer_get_part_padding LX_ARV(arv_buffer_get_part_padding)
#define arv_buffer_get_part_pixel_format LX_ARV(arv_buffer_get_part_pixel_format)
#define arv_buffer_get_part_region LX_ARV(arv_buffer_get_part_region)
#define arv_buffer_get_payload_type LX_ARV(arv_buffer_get_payload_type)
#define arv_buffer_get_status LX_ARV(arv_buffer_get_status)
#define arv_buffer_get_timestamp LX_ARV(arv_buffer_get_timestamp)
#define arv_buffer_new_full LX_ARV(arv_buffer_new_full)
#define arv_device_create_stream LX_ARV(arv_device_create_stream)
#define arv_device_error_quark LX_ARV(arv_device_error_quark)
#define arv_device_get_genicam_xml LX_ARV(arv_device_get_genicam_xml)
#define arv_device_get_type LX_ARV(arv_device_get_type)
#define arv_device_read_memory LX_ARV(arv_device_read_memory)
#define arv_device_read_register LX_ARV(arv_device_read_register)
#define arv_device_write_memory LX_ARV(arv_device_write_memory)
#define arv_device_write_register LX_ARV(arv_device_write_register)
#define arv_gc_boolean_get_type LX_ARV(arv_gc_boolean_get_type)
#define arv_gc_boolean_get_value LX_ARV(arv_gc_boolean_get_value)
#define arv_gc_boolean_set_value LX_ARV(arv_gc_boolean_set_value)
#define arv_gc_category_get_type LX_ARV(arv_gc_category_get_type)
#define arv_gc_command_execute LX_ARV(arv_gc_command_execute)
#define arv_gc_command_get_type LX_ARV(arv_gc_command_get_type)
#define arv_gc_enumeration_get_type LX_ARV(arv_gc_enumeration_get_type)
#define arv_gc_error_quark LX_ARV(arv_gc_error_quark)
#define arv_gc_float_get_max LX_ARV(arv_gc_float_get_max)
#define arv_gc_float_get_min LX_ARV(arv_gc_float_get_min)
#define arv_gc_float_get_type LX_ARV(arv_gc_float_get_type)
#define arv_gc_float_get_value LX_ARV(arv_gc_float_get_value)
#define arv_gc_float_set_value LX_ARV(arv_gc_float_set_value)
#define arv_gc_get_node LX_ARV(arv_gc_get_node)
#define arv_gc_integer_get_inc LX_ARV(arv_gc_integer_get_inc)
#define arv_gc_integer_get_max LX_ARV(arv_gc_integer_get_max)
#define arv_gc_integer_get_min LX_ARV(arv_gc_integer_get_min)
#define arv_gc_integer_get_type LX_ARV(arv_gc_integer_get_type)
#define arv_gc_integer_get_value LX_ARV(arv_gc_integer_get_value)
#define arv_gc_integer_set_value LX_ARV(arv_gc_integer_set_value)
#define arv_gc_new LX_ARV(arv_gc_new)
#define arv_gc_register_get LX_ARV(arv_gc_register_get)
#define arv_gc_register_get_length LX_ARV(arv_gc_register_get_length)
#define arv_gc_register_get_type LX_ARV(arv_gc_register_get_type)
#define arv_gc_register_set LX_ARV(arv_gc_register_set)
#define arv_gc_set_access_check_policy LX_ARV(arv_gc_set_access_check_policy)
#define arv_gc_set_range_check_policy LX_ARV(arv_gc_set_range_check_policy)
#define arv_gc_set_register_cache_policy LX_ARV(arv_gc_set_register_cache_policy)
#define arv_gc_string_get_max_length LX_ARV(arv_gc_string_get_max_length)
#define arv_gc_string_get_type LX_ARV(arv_gc_string_get_type)
#define arv_gc_string_get_value LX_ARV(arv_gc_string_get_value)
#define arv_gc_string_set_value LX_ARV(arv_gc_string_set_value)
#define arv_get_interface_id LX_ARV(arv_get_interface_id)
#define arv_get_major_version LX_ARV(arv_get_major_version)
#define arv_get_micro_version LX_ARV(arv_get_micro_version)
#define arv_get_minor_version LX_ARV(arv_get_minor_version)
#define arv_get_n_interfaces LX_ARV(arv_get_n_interfaces)
#define arv_gv_device_auto_packet_size LX_ARV(arv_gv_device_auto_packet_size)
#define arv_gv_device_is_controller LX_ARV(arv_gv_device_is_controller)
#define arv_gv_device_leave_control LX_ARV(arv_gv_device_leave_control)
#define arv_gv_device_new LX_ARV(arv_gv_device_new)
#define arv_gv_device_set_packet_size LX_ARV(arv_gv_device_set_packet_size)
#define arv_gv_device_set_packet_size_adjustment LX_ARV(arv_gv_device_set_packet_size_adjustment)
#define arv_gv_device_set_stream_options LX_ARV(arv_gv_device_set_stream_options)
#define arv_gv_device_take_control LX_ARV(arv_gv_device_take_control)
#define arv_gv_stream_get_statistics LX_ARV(arv_gv_stream_get_statistics)
#define arv_gv_stream_get_type LX_ARV(arv_gv_stream_get_type)
#define arv_interface_get_device_model LX_ARV(arv_interface_get_device_model)
#define arv_interface_get_device_physical_id LX_ARV(arv_interface_get_device_physical_id)
#define arv_interface_get_device_serial_nbr LX_ARV(arv_interface_get_device_serial_nbr)
#define arv_interface_get_device_vendor LX_ARV(arv_interface_get_device_vendor)
#define arv_interface_get_n_devices LX_ARV(arv_interface_get_n_devices)
#define arv_interface_update_device_list LX_ARV(arv_interface_update_device_list)
#define arv_stream_get_statistics LX_ARV(arv_stream_get_statistics)
#define arv_stream_push_buffer LX_ARV(arv_stream_push_buffer)
#define arv_stream_timeout_pop_buffer LX_ARV(arv_stream_timeout_pop_buffer)
#define arv_uv_device_new_from_guid LX_ARV(arv_uv_device_new_from_guid)
#define arv_uv_interface_get_instance LX_ARV(arv_uv_interface_get_instance)
#define g_inet_address_new_from_string LX_ARV(g_inet_address_new_from_string)
#define g_object_new LX_ARV(g_object_new)
#undef g_object_ref
#define g_object_ref LX_ARV(g_object_ref)
#define g_object_set LX_ARV(g_object_set)
#define g_object_unref LX_ARV(g_object_unref)
#define g_type_check_instance_is_a LX_ARV(g_type_check_instance_is_a)
#define g_type_from_name LX_ARV(g_type_from_name)
#define g_type_register_static_simple LX_ARV(g_type_register_static_simple)

// inline functions in the library's headers
#define ARV_IS_GC_BOOLEAN(object) G_TYPE_CHECK_INSTANCE_TYPE(object, arv_gc_boolean_get_type())
#define ARV_IS_GC_CATEGORY(object) G_TYPE_CHECK_INSTANCE_TYPE(object, arv_gc_category_get_type())
#define ARV_IS_GC_COMMAND(object) G_TYPE_CHECK_INSTANCE_TYPE(object, arv_gc_command_get_type())
#define ARV_IS_GC_ENUMERATION(object) G_TYPE_CHECK_INSTANCE_TYPE(object, arv_gc_enumeration_get_type())
#define ARV_IS_GC_FLOAT(object) G_TYPE_CHECK_INSTANCE_TYPE(object, arv_gc_float_get_type())
#define ARV_IS_GC_INTEGER(object) G_TYPE_CHECK_INSTANCE_TYPE(object, arv_gc_integer_get_type())
#define ARV_IS_GC_REGISTER(object) G_TYPE_CHECK_INSTANCE_TYPE(object, arv_gc_register_get_type())
#define ARV_IS_GC_STRING(object) G_TYPE_CHECK_INSTANCE_TYPE(object, arv_gc_string_get_type())
#define ARV_IS_GV_STREAM(object) G_TYPE_CHECK_INSTANCE_TYPE(object, arv_gv_stream_get_type())
#define ARV_GC_BOOLEAN(object) reinterpret_cast<ArvGcBoolean *>(object)
#define ARV_GC_COMMAND(object) reinterpret_cast<ArvGcCommand *>(object)
#define ARV_GC_FLOAT(object) reinterpret_cast<ArvGcFloat *>(object)
#define ARV_GC_INTEGER(object) reinterpret_cast<ArvGcInteger *>(object)
#define ARV_GC_REGISTER(object) reinterpret_cast<ArvGcRegister *>(object)
#define ARV_GC_STRING(object) reinterpret_cast<ArvGcString *>(object)
#define ARV_GV_DEVICE(object) reinterpret_cast<ArvGvDevice *>(object)
#define ARV_GV_STREAM(object) reinterpret_cast<ArvGvStream *>(object)
