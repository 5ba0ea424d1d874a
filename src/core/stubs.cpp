// The entries that stand for facilities this build lacks. Each is a one-line forward to one of the
// shared bodies; the groups below follow those bodies.
#include <mox/mox.h>

#include "core/stub.h"

// Takes any arguments, writes nothing through them, warns "core.unsupported", false.
#define MOX_STUB_UNSUPPORTED(name)                                                                           \
    MOX_API mox_bool name(void*, ...) { return mox::stub::unsupported(); }
// Takes any arguments, false in silence.
#define MOX_STUB_FAILURE(name)                                                                               \
    MOX_API mox_bool name(void*, ...) { return mox::stub::plain_failure(); }
#define MOX_STUB_FAILURE_NO_ARGUMENTS(name)                                                                  \
    MOX_API mox_bool name(void) { return mox::stub::plain_failure(); }
// True when both pointers are set; a file form that writes and reads nothing.
#define MOX_STUB_FILE_FORM(name)                                                                             \
    MOX_API mox_bool name(void* self, mox_file* file) { return mox::stub::two_pointers(self, file); }
// The same, posting "core.params" when one is missing.
#define MOX_STUB_FILE_FORM_POSTING(name)                                                                     \
    MOX_API mox_bool name(void* self, mox_file* file) { return mox::stub::two_pointers_posting(self, file); }
// True for a non-null record; attaches to nothing.
#define MOX_STUB_ONE_POINTER(name)                                                                           \
    MOX_API mox_bool name(void* self, ...) { return mox::stub::one_pointer(self); }

extern "C" {

// Renderers and database engines that are not linked in.
MOX_STUB_UNSUPPORTED(mox_directx9_cleanup)
MOX_STUB_UNSUPPORTED(mox_directx9_render)
MOX_STUB_UNSUPPORTED(mox_directx9_startup)
MOX_STUB_UNSUPPORTED(mox_mysql_close_command)
MOX_STUB_UNSUPPORTED(mox_mysql_connect)
MOX_STUB_UNSUPPORTED(mox_mysql_connected)
MOX_STUB_UNSUPPORTED(mox_mysql_disconnect)
MOX_STUB_UNSUPPORTED(mox_mysql_get_affected_row)
MOX_STUB_UNSUPPORTED(mox_mysql_get_dataset)
MOX_STUB_UNSUPPORTED(mox_mysql_get_insert_id)
MOX_STUB_UNSUPPORTED(mox_mysql_open_command)
MOX_STUB_UNSUPPORTED(mox_mysql_reconnect)
MOX_STUB_UNSUPPORTED(mox_mysql_select_shema)
MOX_STUB_UNSUPPORTED(mox_sqlite3_close_command)
MOX_STUB_UNSUPPORTED(mox_sqlite3_connect)
MOX_STUB_UNSUPPORTED(mox_sqlite3_connected)
MOX_STUB_UNSUPPORTED(mox_sqlite3_disconnect)
MOX_STUB_UNSUPPORTED(mox_sqlite3_get_affected_row)
MOX_STUB_UNSUPPORTED(mox_sqlite3_get_dataset)
MOX_STUB_UNSUPPORTED(mox_sqlite3_get_error)
MOX_STUB_UNSUPPORTED(mox_sqlite3_get_insert_id)
MOX_STUB_UNSUPPORTED(mox_sqlite3_load_from_file)
MOX_STUB_UNSUPPORTED(mox_sqlite3_open_command)
MOX_STUB_UNSUPPORTED(mox_sqlite3_reconnect)
MOX_STUB_UNSUPPORTED(mox_sqlite3_save_to_file)
MOX_STUB_UNSUPPORTED(mox_opengl_startup)
MOX_STUB_UNSUPPORTED(mox_opengl_cleanup)
MOX_STUB_UNSUPPORTED(mox_opengl_active_texture2d)
MOX_STUB_UNSUPPORTED(mox_opengl_create_texture2d)
MOX_STUB_UNSUPPORTED(mox_opengl_destroy_texture2d)
MOX_STUB_UNSUPPORTED(mox_opengl_render_begin)
MOX_STUB_UNSUPPORTED(mox_opengl_render_clear)
MOX_STUB_UNSUPPORTED(mox_opengl_render_end)
MOX_STUB_UNSUPPORTED(mox_opengl_render_mesh3d)
MOX_STUB_UNSUPPORTED(mox_opengl_enable_cull_face)
MOX_STUB_UNSUPPORTED(mox_opengl_enable_light3d)
MOX_STUB_UNSUPPORTED(mox_opengl_enable_line_smooth)
MOX_STUB_UNSUPPORTED(mox_opengl_enable_point_smooth)
MOX_STUB_UNSUPPORTED(mox_opengl_enable_scissor)
MOX_STUB_UNSUPPORTED(mox_opengl_is_enable_cull_face)
MOX_STUB_UNSUPPORTED(mox_opengl_is_enable_light3d)
MOX_STUB_UNSUPPORTED(mox_opengl_is_enable_line_smooth)
MOX_STUB_UNSUPPORTED(mox_opengl_is_enable_point_smooth)
MOX_STUB_UNSUPPORTED(mox_opengl_is_enable_scissor)
MOX_STUB_UNSUPPORTED(mox_opengl_get_ambient)
MOX_STUB_UNSUPPORTED(mox_opengl_get_clear_accum)
MOX_STUB_UNSUPPORTED(mox_opengl_get_clear_color)
MOX_STUB_UNSUPPORTED(mox_opengl_get_clear_depth)
MOX_STUB_UNSUPPORTED(mox_opengl_get_clear_stencil)
MOX_STUB_UNSUPPORTED(mox_opengl_get_cull_face)
MOX_STUB_UNSUPPORTED(mox_opengl_get_face_mode)
MOX_STUB_UNSUPPORTED(mox_opengl_get_face_offset)
MOX_STUB_UNSUPPORTED(mox_opengl_get_face_smooth_hint)
MOX_STUB_UNSUPPORTED(mox_opengl_get_front_face)
MOX_STUB_UNSUPPORTED(mox_opengl_get_light3d_omni)
MOX_STUB_UNSUPPORTED(mox_opengl_get_line_smooth_hint)
MOX_STUB_UNSUPPORTED(mox_opengl_get_line_width)
MOX_STUB_UNSUPPORTED(mox_opengl_get_line_width_granularity)
MOX_STUB_UNSUPPORTED(mox_opengl_get_line_width_range)
MOX_STUB_UNSUPPORTED(mox_opengl_get_material3d)
MOX_STUB_UNSUPPORTED(mox_opengl_get_max_lights)
MOX_STUB_UNSUPPORTED(mox_opengl_get_max_textures_size)
MOX_STUB_UNSUPPORTED(mox_opengl_get_model_matrix)
MOX_STUB_UNSUPPORTED(mox_opengl_get_pixel_zoom)
MOX_STUB_UNSUPPORTED(mox_opengl_get_point_size)
MOX_STUB_UNSUPPORTED(mox_opengl_get_point_size_granularity)
MOX_STUB_UNSUPPORTED(mox_opengl_get_point_size_range)
MOX_STUB_UNSUPPORTED(mox_opengl_get_point_smooth_hint)
MOX_STUB_UNSUPPORTED(mox_opengl_get_project_matrix)
MOX_STUB_UNSUPPORTED(mox_opengl_get_scissor)
MOX_STUB_UNSUPPORTED(mox_opengl_get_shade_model)
MOX_STUB_UNSUPPORTED(mox_opengl_get_texture2d)
MOX_STUB_UNSUPPORTED(mox_opengl_get_viewport)
MOX_STUB_UNSUPPORTED(mox_opengl_set_ambient)
MOX_STUB_UNSUPPORTED(mox_opengl_set_clear_accum)
MOX_STUB_UNSUPPORTED(mox_opengl_set_clear_color)
MOX_STUB_UNSUPPORTED(mox_opengl_set_clear_depth)
MOX_STUB_UNSUPPORTED(mox_opengl_set_clear_stencil)
MOX_STUB_UNSUPPORTED(mox_opengl_set_cull_face)
MOX_STUB_UNSUPPORTED(mox_opengl_set_face_mode)
MOX_STUB_UNSUPPORTED(mox_opengl_set_face_offset)
MOX_STUB_UNSUPPORTED(mox_opengl_set_face_smooth_hint)
MOX_STUB_UNSUPPORTED(mox_opengl_set_front_face)
MOX_STUB_UNSUPPORTED(mox_opengl_set_light3d_omni)
MOX_STUB_UNSUPPORTED(mox_opengl_set_line_smooth_hint)
MOX_STUB_UNSUPPORTED(mox_opengl_set_line_width)
MOX_STUB_UNSUPPORTED(mox_opengl_set_material3d)
MOX_STUB_UNSUPPORTED(mox_opengl_set_model_matrix)
MOX_STUB_UNSUPPORTED(mox_opengl_set_pixel_zoom)
MOX_STUB_UNSUPPORTED(mox_opengl_set_point_size)
MOX_STUB_UNSUPPORTED(mox_opengl_set_point_smooth_hint)
MOX_STUB_UNSUPPORTED(mox_opengl_set_project_matrix)
MOX_STUB_UNSUPPORTED(mox_opengl_set_scissor)
MOX_STUB_UNSUPPORTED(mox_opengl_set_shade_model)
MOX_STUB_UNSUPPORTED(mox_opengl_set_texture2d)
MOX_STUB_UNSUPPORTED(mox_opengl_set_viewport)

// Sockets, TCP, the console and reading XML.
MOX_STUB_FAILURE_NO_ARGUMENTS(mox_console_screen_clear)
MOX_STUB_FAILURE_NO_ARGUMENTS(mox_socket_cleanup)
MOX_STUB_FAILURE_NO_ARGUMENTS(mox_socket_startup)
MOX_STUB_FAILURE(mox_tcp_client_connect)
MOX_STUB_FAILURE(mox_tcp_client_connected)
MOX_STUB_FAILURE(mox_tcp_client_disconnect)
MOX_STUB_FAILURE(mox_tcp_client_run)
MOX_STUB_FAILURE(mox_tcp_client_skip)
MOX_STUB_FAILURE(mox_tcp_server_connect)
MOX_STUB_FAILURE(mox_tcp_server_connected)
MOX_STUB_FAILURE(mox_tcp_server_disconnect)
MOX_STUB_FAILURE(mox_tcp_server_disconnect_client)
MOX_STUB_FAILURE(mox_tcp_server_load_from_file)
MOX_STUB_FAILURE(mox_tcp_server_run)
MOX_STUB_FAILURE(mox_tcp_server_save_to_file)
MOX_STUB_FAILURE(mox_tcp_server_skip_client)
MOX_STUB_FAILURE(mox_xml_load_from_file)

// Nothing to shut down in the image file library.
MOX_API mox_bool mox_devil_cleanup(void) { return mox::stub::plain_success(); }

// Classes with no file form of their own, and window regions.
MOX_STUB_FILE_FORM(mox_dvdauthor_load_from_file)
MOX_STUB_FILE_FORM(mox_dvdauthor_save_to_file)
MOX_STUB_FILE_FORM(mox_imageview_load_from_file)
MOX_STUB_FILE_FORM(mox_imageview_save_to_file)
MOX_STUB_FILE_FORM(mox_shell_load_from_file)
MOX_STUB_FILE_FORM(mox_shell_save_to_file)
MOX_STUB_FILE_FORM(mox_spumux_load_from_file)
MOX_STUB_FILE_FORM(mox_spumux_save_to_file)
MOX_STUB_FILE_FORM(mox_thread_list_load_from_file)
MOX_STUB_FILE_FORM(mox_thread_list_save_to_file)
MOX_API mox_bool mox_window_get_region(void* self, void* region) {
    return mox::stub::two_pointers(self, region);
}
MOX_API mox_bool mox_window_set_region(void* self, void* region) {
    return mox::stub::two_pointers(self, region);
}

// Actions and scripts, which cannot be stored or run.
MOX_STUB_FILE_FORM_POSTING(mox_action_load_from_file)
MOX_STUB_FILE_FORM_POSTING(mox_action_save_to_file)
MOX_STUB_FILE_FORM_POSTING(mox_script_load_from_file)
MOX_STUB_FILE_FORM_POSTING(mox_script_save_to_file)
MOX_API mox_bool mox_script_run(void* self, void* argument) {
    return mox::stub::two_pointers_posting(self, argument);
}

// True for a non-null argument, and nothing else.
MOX_API mox_bool mox_astring_swap(void* self) { return mox::stub::one_pointer(self); }
MOX_STUB_ONE_POINTER(mox_process_open_handle)
MOX_STUB_ONE_POINTER(mox_process_open_id)

} // extern "C"
