#include <mox/mox.h>

#include <gtest/gtest.h>

#include <cstring>

#include "support/error_listener.h"

using mox_test::ErrorListener;

namespace {

enum class Body { Unsupported, PlainFailure, PlainSuccess, TwoPointers, TwoPointersPosting, OnePointer };

struct StubEntry {
    const char* name;
    Body body;
    // Calls the entry with up to two pointers (and one more number where it takes any arguments).
    mox_bool (*call)(void* first, void* second);
};

const StubEntry kStubs[] = {
    {"mox_directx9_cleanup", Body::Unsupported, [](void* a, void* b) { return mox_directx9_cleanup(a, b, 7); }},
    {"mox_directx9_render", Body::Unsupported, [](void* a, void* b) { return mox_directx9_render(a, b, 7); }},
    {"mox_directx9_startup", Body::Unsupported, [](void* a, void* b) { return mox_directx9_startup(a, b, 7); }},
    {"mox_mysql_close_command", Body::Unsupported, [](void* a, void* b) { return mox_mysql_close_command(a, b, 7); }},
    {"mox_mysql_connect", Body::Unsupported, [](void* a, void* b) { return mox_mysql_connect(a, b, 7); }},
    {"mox_mysql_connected", Body::Unsupported, [](void* a, void* b) { return mox_mysql_connected(a, b, 7); }},
    {"mox_mysql_disconnect", Body::Unsupported, [](void* a, void* b) { return mox_mysql_disconnect(a, b, 7); }},
    {"mox_mysql_get_affected_row", Body::Unsupported, [](void* a, void* b) { return mox_mysql_get_affected_row(a, b, 7); }},
    {"mox_mysql_get_dataset", Body::Unsupported, [](void* a, void* b) { return mox_mysql_get_dataset(a, b, 7); }},
    {"mox_mysql_get_insert_id", Body::Unsupported, [](void* a, void* b) { return mox_mysql_get_insert_id(a, b, 7); }},
    {"mox_mysql_open_command", Body::Unsupported, [](void* a, void* b) { return mox_mysql_open_command(a, b, 7); }},
    {"mox_mysql_reconnect", Body::Unsupported, [](void* a, void* b) { return mox_mysql_reconnect(a, b, 7); }},
    {"mox_mysql_select_shema", Body::Unsupported, [](void* a, void* b) { return mox_mysql_select_shema(a, b, 7); }},
    {"mox_sqlite3_close_command", Body::Unsupported, [](void* a, void* b) { return mox_sqlite3_close_command(a, b, 7); }},
    {"mox_sqlite3_connect", Body::Unsupported, [](void* a, void* b) { return mox_sqlite3_connect(a, b, 7); }},
    {"mox_sqlite3_connected", Body::Unsupported, [](void* a, void* b) { return mox_sqlite3_connected(a, b, 7); }},
    {"mox_sqlite3_disconnect", Body::Unsupported, [](void* a, void* b) { return mox_sqlite3_disconnect(a, b, 7); }},
    {"mox_sqlite3_get_affected_row", Body::Unsupported, [](void* a, void* b) { return mox_sqlite3_get_affected_row(a, b, 7); }},
    {"mox_sqlite3_get_dataset", Body::Unsupported, [](void* a, void* b) { return mox_sqlite3_get_dataset(a, b, 7); }},
    {"mox_sqlite3_get_error", Body::Unsupported, [](void* a, void* b) { return mox_sqlite3_get_error(a, b, 7); }},
    {"mox_sqlite3_get_insert_id", Body::Unsupported, [](void* a, void* b) { return mox_sqlite3_get_insert_id(a, b, 7); }},
    {"mox_sqlite3_load_from_file", Body::Unsupported, [](void* a, void* b) { return mox_sqlite3_load_from_file(a, b, 7); }},
    {"mox_sqlite3_open_command", Body::Unsupported, [](void* a, void* b) { return mox_sqlite3_open_command(a, b, 7); }},
    {"mox_sqlite3_reconnect", Body::Unsupported, [](void* a, void* b) { return mox_sqlite3_reconnect(a, b, 7); }},
    {"mox_sqlite3_save_to_file", Body::Unsupported, [](void* a, void* b) { return mox_sqlite3_save_to_file(a, b, 7); }},
    {"mox_opengl_startup", Body::Unsupported, [](void* a, void* b) { return mox_opengl_startup(a, b, 7); }},
    {"mox_opengl_cleanup", Body::Unsupported, [](void* a, void* b) { return mox_opengl_cleanup(a, b, 7); }},
    {"mox_opengl_active_texture2d", Body::Unsupported, [](void* a, void* b) { return mox_opengl_active_texture2d(a, b, 7); }},
    {"mox_opengl_create_texture2d", Body::Unsupported, [](void* a, void* b) { return mox_opengl_create_texture2d(a, b, 7); }},
    {"mox_opengl_destroy_texture2d", Body::Unsupported, [](void* a, void* b) { return mox_opengl_destroy_texture2d(a, b, 7); }},
    {"mox_opengl_render_begin", Body::Unsupported, [](void* a, void* b) { return mox_opengl_render_begin(a, b, 7); }},
    {"mox_opengl_render_clear", Body::Unsupported, [](void* a, void* b) { return mox_opengl_render_clear(a, b, 7); }},
    {"mox_opengl_render_end", Body::Unsupported, [](void* a, void* b) { return mox_opengl_render_end(a, b, 7); }},
    {"mox_opengl_render_mesh3d", Body::Unsupported, [](void* a, void* b) { return mox_opengl_render_mesh3d(a, b, 7); }},
    {"mox_opengl_enable_cull_face", Body::Unsupported, [](void* a, void* b) { return mox_opengl_enable_cull_face(a, b, 7); }},
    {"mox_opengl_enable_light3d", Body::Unsupported, [](void* a, void* b) { return mox_opengl_enable_light3d(a, b, 7); }},
    {"mox_opengl_enable_line_smooth", Body::Unsupported, [](void* a, void* b) { return mox_opengl_enable_line_smooth(a, b, 7); }},
    {"mox_opengl_enable_point_smooth", Body::Unsupported, [](void* a, void* b) { return mox_opengl_enable_point_smooth(a, b, 7); }},
    {"mox_opengl_enable_scissor", Body::Unsupported, [](void* a, void* b) { return mox_opengl_enable_scissor(a, b, 7); }},
    {"mox_opengl_is_enable_cull_face", Body::Unsupported, [](void* a, void* b) { return mox_opengl_is_enable_cull_face(a, b, 7); }},
    {"mox_opengl_is_enable_light3d", Body::Unsupported, [](void* a, void* b) { return mox_opengl_is_enable_light3d(a, b, 7); }},
    {"mox_opengl_is_enable_line_smooth", Body::Unsupported, [](void* a, void* b) { return mox_opengl_is_enable_line_smooth(a, b, 7); }},
    {"mox_opengl_is_enable_point_smooth", Body::Unsupported, [](void* a, void* b) { return mox_opengl_is_enable_point_smooth(a, b, 7); }},
    {"mox_opengl_is_enable_scissor", Body::Unsupported, [](void* a, void* b) { return mox_opengl_is_enable_scissor(a, b, 7); }},
    {"mox_opengl_get_ambient", Body::Unsupported, [](void* a, void* b) { return mox_opengl_get_ambient(a, b, 7); }},
    {"mox_opengl_get_clear_accum", Body::Unsupported, [](void* a, void* b) { return mox_opengl_get_clear_accum(a, b, 7); }},
    {"mox_opengl_get_clear_color", Body::Unsupported, [](void* a, void* b) { return mox_opengl_get_clear_color(a, b, 7); }},
    {"mox_opengl_get_clear_depth", Body::Unsupported, [](void* a, void* b) { return mox_opengl_get_clear_depth(a, b, 7); }},
    {"mox_opengl_get_clear_stencil", Body::Unsupported, [](void* a, void* b) { return mox_opengl_get_clear_stencil(a, b, 7); }},
    {"mox_opengl_get_cull_face", Body::Unsupported, [](void* a, void* b) { return mox_opengl_get_cull_face(a, b, 7); }},
    {"mox_opengl_get_face_mode", Body::Unsupported, [](void* a, void* b) { return mox_opengl_get_face_mode(a, b, 7); }},
    {"mox_opengl_get_face_offset", Body::Unsupported, [](void* a, void* b) { return mox_opengl_get_face_offset(a, b, 7); }},
    {"mox_opengl_get_face_smooth_hint", Body::Unsupported, [](void* a, void* b) { return mox_opengl_get_face_smooth_hint(a, b, 7); }},
    {"mox_opengl_get_front_face", Body::Unsupported, [](void* a, void* b) { return mox_opengl_get_front_face(a, b, 7); }},
    {"mox_opengl_get_light3d_omni", Body::Unsupported, [](void* a, void* b) { return mox_opengl_get_light3d_omni(a, b, 7); }},
    {"mox_opengl_get_line_smooth_hint", Body::Unsupported, [](void* a, void* b) { return mox_opengl_get_line_smooth_hint(a, b, 7); }},
    {"mox_opengl_get_line_width", Body::Unsupported, [](void* a, void* b) { return mox_opengl_get_line_width(a, b, 7); }},
    {"mox_opengl_get_line_width_granularity", Body::Unsupported, [](void* a, void* b) { return mox_opengl_get_line_width_granularity(a, b, 7); }},
    {"mox_opengl_get_line_width_range", Body::Unsupported, [](void* a, void* b) { return mox_opengl_get_line_width_range(a, b, 7); }},
    {"mox_opengl_get_material3d", Body::Unsupported, [](void* a, void* b) { return mox_opengl_get_material3d(a, b, 7); }},
    {"mox_opengl_get_max_lights", Body::Unsupported, [](void* a, void* b) { return mox_opengl_get_max_lights(a, b, 7); }},
    {"mox_opengl_get_max_textures_size", Body::Unsupported, [](void* a, void* b) { return mox_opengl_get_max_textures_size(a, b, 7); }},
    {"mox_opengl_get_model_matrix", Body::Unsupported, [](void* a, void* b) { return mox_opengl_get_model_matrix(a, b, 7); }},
    {"mox_opengl_get_pixel_zoom", Body::Unsupported, [](void* a, void* b) { return mox_opengl_get_pixel_zoom(a, b, 7); }},
    {"mox_opengl_get_point_size", Body::Unsupported, [](void* a, void* b) { return mox_opengl_get_point_size(a, b, 7); }},
    {"mox_opengl_get_point_size_granularity", Body::Unsupported, [](void* a, void* b) { return mox_opengl_get_point_size_granularity(a, b, 7); }},
    {"mox_opengl_get_point_size_range", Body::Unsupported, [](void* a, void* b) { return mox_opengl_get_point_size_range(a, b, 7); }},
    {"mox_opengl_get_point_smooth_hint", Body::Unsupported, [](void* a, void* b) { return mox_opengl_get_point_smooth_hint(a, b, 7); }},
    {"mox_opengl_get_project_matrix", Body::Unsupported, [](void* a, void* b) { return mox_opengl_get_project_matrix(a, b, 7); }},
    {"mox_opengl_get_scissor", Body::Unsupported, [](void* a, void* b) { return mox_opengl_get_scissor(a, b, 7); }},
    {"mox_opengl_get_shade_model", Body::Unsupported, [](void* a, void* b) { return mox_opengl_get_shade_model(a, b, 7); }},
    {"mox_opengl_get_texture2d", Body::Unsupported, [](void* a, void* b) { return mox_opengl_get_texture2d(a, b, 7); }},
    {"mox_opengl_get_viewport", Body::Unsupported, [](void* a, void* b) { return mox_opengl_get_viewport(a, b, 7); }},
    {"mox_opengl_set_ambient", Body::Unsupported, [](void* a, void* b) { return mox_opengl_set_ambient(a, b, 7); }},
    {"mox_opengl_set_clear_accum", Body::Unsupported, [](void* a, void* b) { return mox_opengl_set_clear_accum(a, b, 7); }},
    {"mox_opengl_set_clear_color", Body::Unsupported, [](void* a, void* b) { return mox_opengl_set_clear_color(a, b, 7); }},
    {"mox_opengl_set_clear_depth", Body::Unsupported, [](void* a, void* b) { return mox_opengl_set_clear_depth(a, b, 7); }},
    {"mox_opengl_set_clear_stencil", Body::Unsupported, [](void* a, void* b) { return mox_opengl_set_clear_stencil(a, b, 7); }},
    {"mox_opengl_set_cull_face", Body::Unsupported, [](void* a, void* b) { return mox_opengl_set_cull_face(a, b, 7); }},
    {"mox_opengl_set_face_mode", Body::Unsupported, [](void* a, void* b) { return mox_opengl_set_face_mode(a, b, 7); }},
    {"mox_opengl_set_face_offset", Body::Unsupported, [](void* a, void* b) { return mox_opengl_set_face_offset(a, b, 7); }},
    {"mox_opengl_set_face_smooth_hint", Body::Unsupported, [](void* a, void* b) { return mox_opengl_set_face_smooth_hint(a, b, 7); }},
    {"mox_opengl_set_front_face", Body::Unsupported, [](void* a, void* b) { return mox_opengl_set_front_face(a, b, 7); }},
    {"mox_opengl_set_light3d_omni", Body::Unsupported, [](void* a, void* b) { return mox_opengl_set_light3d_omni(a, b, 7); }},
    {"mox_opengl_set_line_smooth_hint", Body::Unsupported, [](void* a, void* b) { return mox_opengl_set_line_smooth_hint(a, b, 7); }},
    {"mox_opengl_set_line_width", Body::Unsupported, [](void* a, void* b) { return mox_opengl_set_line_width(a, b, 7); }},
    {"mox_opengl_set_material3d", Body::Unsupported, [](void* a, void* b) { return mox_opengl_set_material3d(a, b, 7); }},
    {"mox_opengl_set_model_matrix", Body::Unsupported, [](void* a, void* b) { return mox_opengl_set_model_matrix(a, b, 7); }},
    {"mox_opengl_set_pixel_zoom", Body::Unsupported, [](void* a, void* b) { return mox_opengl_set_pixel_zoom(a, b, 7); }},
    {"mox_opengl_set_point_size", Body::Unsupported, [](void* a, void* b) { return mox_opengl_set_point_size(a, b, 7); }},
    {"mox_opengl_set_point_smooth_hint", Body::Unsupported, [](void* a, void* b) { return mox_opengl_set_point_smooth_hint(a, b, 7); }},
    {"mox_opengl_set_project_matrix", Body::Unsupported, [](void* a, void* b) { return mox_opengl_set_project_matrix(a, b, 7); }},
    {"mox_opengl_set_scissor", Body::Unsupported, [](void* a, void* b) { return mox_opengl_set_scissor(a, b, 7); }},
    {"mox_opengl_set_shade_model", Body::Unsupported, [](void* a, void* b) { return mox_opengl_set_shade_model(a, b, 7); }},
    {"mox_opengl_set_texture2d", Body::Unsupported, [](void* a, void* b) { return mox_opengl_set_texture2d(a, b, 7); }},
    {"mox_opengl_set_viewport", Body::Unsupported, [](void* a, void* b) { return mox_opengl_set_viewport(a, b, 7); }},
    {"mox_console_screen_clear", Body::PlainFailure, [](void*, void*) { return mox_console_screen_clear(); }},
    {"mox_socket_cleanup", Body::PlainFailure, [](void*, void*) { return mox_socket_cleanup(); }},
    {"mox_socket_startup", Body::PlainFailure, [](void*, void*) { return mox_socket_startup(); }},
    {"mox_support_directx3d9", Body::PlainFailure, [](void*, void*) { return mox_support_directx3d9(); }},
    {"mox_support_freetype", Body::PlainFailure, [](void*, void*) { return mox_support_freetype(); }},
    {"mox_support_mysql", Body::PlainFailure, [](void*, void*) { return mox_support_mysql(); }},
    {"mox_support_opengl", Body::PlainFailure, [](void*, void*) { return mox_support_opengl(); }},
    {"mox_support_socket", Body::PlainFailure, [](void*, void*) { return mox_support_socket(); }},
    {"mox_support_sqlite3", Body::PlainFailure, [](void*, void*) { return mox_support_sqlite3(); }},
    {"mox_support_widestring", Body::PlainFailure, [](void*, void*) { return mox_support_widestring(); }},
    {"mox_tcp_client_connect", Body::PlainFailure, [](void* a, void* b) { return mox_tcp_client_connect(a, b, 7); }},
    {"mox_tcp_client_connected", Body::PlainFailure, [](void* a, void* b) { return mox_tcp_client_connected(a, b, 7); }},
    {"mox_tcp_client_disconnect", Body::PlainFailure, [](void* a, void* b) { return mox_tcp_client_disconnect(a, b, 7); }},
    {"mox_tcp_client_run", Body::PlainFailure, [](void* a, void* b) { return mox_tcp_client_run(a, b, 7); }},
    {"mox_tcp_client_skip", Body::PlainFailure, [](void* a, void* b) { return mox_tcp_client_skip(a, b, 7); }},
    {"mox_tcp_server_connect", Body::PlainFailure, [](void* a, void* b) { return mox_tcp_server_connect(a, b, 7); }},
    {"mox_tcp_server_connected", Body::PlainFailure, [](void* a, void* b) { return mox_tcp_server_connected(a, b, 7); }},
    {"mox_tcp_server_disconnect", Body::PlainFailure, [](void* a, void* b) { return mox_tcp_server_disconnect(a, b, 7); }},
    {"mox_tcp_server_disconnect_client", Body::PlainFailure, [](void* a, void* b) { return mox_tcp_server_disconnect_client(a, b, 7); }},
    {"mox_tcp_server_load_from_file", Body::PlainFailure, [](void* a, void* b) { return mox_tcp_server_load_from_file(a, b, 7); }},
    {"mox_tcp_server_run", Body::PlainFailure, [](void* a, void* b) { return mox_tcp_server_run(a, b, 7); }},
    {"mox_tcp_server_save_to_file", Body::PlainFailure, [](void* a, void* b) { return mox_tcp_server_save_to_file(a, b, 7); }},
    {"mox_tcp_server_skip_client", Body::PlainFailure, [](void* a, void* b) { return mox_tcp_server_skip_client(a, b, 7); }},
    {"mox_xml_load_from_file", Body::PlainFailure, [](void* a, void* b) { return mox_xml_load_from_file(a, b, 7); }},
    {"mox_devil_cleanup", Body::PlainSuccess, [](void*, void*) { return mox_devil_cleanup(); }},
    {"mox_support_ansistring", Body::PlainSuccess, [](void*, void*) { return mox_support_ansistring(); }},
    {"mox_support_devil", Body::PlainSuccess, [](void*, void*) { return mox_support_devil(); }},
    {"mox_dvdauthor_load_from_file", Body::TwoPointers, [](void* a, void* b) { return mox_dvdauthor_load_from_file(a, static_cast<mox_file*>(b)); }},
    {"mox_dvdauthor_save_to_file", Body::TwoPointers, [](void* a, void* b) { return mox_dvdauthor_save_to_file(a, static_cast<mox_file*>(b)); }},
    {"mox_imageview_load_from_file", Body::TwoPointers, [](void* a, void* b) { return mox_imageview_load_from_file(a, static_cast<mox_file*>(b)); }},
    {"mox_imageview_save_to_file", Body::TwoPointers, [](void* a, void* b) { return mox_imageview_save_to_file(a, static_cast<mox_file*>(b)); }},
    {"mox_shell_load_from_file", Body::TwoPointers, [](void* a, void* b) { return mox_shell_load_from_file(a, static_cast<mox_file*>(b)); }},
    {"mox_shell_save_to_file", Body::TwoPointers, [](void* a, void* b) { return mox_shell_save_to_file(a, static_cast<mox_file*>(b)); }},
    {"mox_spumux_load_from_file", Body::TwoPointers, [](void* a, void* b) { return mox_spumux_load_from_file(a, static_cast<mox_file*>(b)); }},
    {"mox_spumux_save_to_file", Body::TwoPointers, [](void* a, void* b) { return mox_spumux_save_to_file(a, static_cast<mox_file*>(b)); }},
    {"mox_thread_list_load_from_file", Body::TwoPointers, [](void* a, void* b) { return mox_thread_list_load_from_file(a, static_cast<mox_file*>(b)); }},
    {"mox_thread_list_save_to_file", Body::TwoPointers, [](void* a, void* b) { return mox_thread_list_save_to_file(a, static_cast<mox_file*>(b)); }},
    {"mox_window_get_region", Body::TwoPointers, [](void* a, void* b) { return mox_window_get_region(a, b); }},
    {"mox_window_set_region", Body::TwoPointers, [](void* a, void* b) { return mox_window_set_region(a, b); }},
    {"mox_action_load_from_file", Body::TwoPointersPosting, [](void* a, void* b) { return mox_action_load_from_file(a, static_cast<mox_file*>(b)); }},
    {"mox_action_save_to_file", Body::TwoPointersPosting, [](void* a, void* b) { return mox_action_save_to_file(a, static_cast<mox_file*>(b)); }},
    {"mox_script_load_from_file", Body::TwoPointersPosting, [](void* a, void* b) { return mox_script_load_from_file(a, static_cast<mox_file*>(b)); }},
    {"mox_script_run", Body::TwoPointersPosting, [](void* a, void* b) { return mox_script_run(a, b); }},
    {"mox_script_save_to_file", Body::TwoPointersPosting, [](void* a, void* b) { return mox_script_save_to_file(a, static_cast<mox_file*>(b)); }},
    {"mox_astring_swap", Body::OnePointer, [](void* a, void*) { return mox_astring_swap(a); }},
    {"mox_object_destruct", Body::OnePointer, [](void* a, void*) { return mox_object_destruct(a); }},
    {"mox_process_open_handle", Body::OnePointer, [](void* a, void* b) { return mox_process_open_handle(a, b, 7); }},
    {"mox_process_open_id", Body::OnePointer, [](void* a, void* b) { return mox_process_open_id(a, b, 7); }},
};

size_t count_of(Body body) {
    size_t count = 0;
    for (const StubEntry& entry : kStubs)
        count += entry.body == body;
    return count;
}

// Two records the entries must leave as they were.
struct Guarded {
    uint8_t bytes[64];
    Guarded() { std::memset(bytes, 0x3C, sizeof bytes); }
    bool untouched() const {
        for (uint8_t byte : bytes)
            if (byte != 0x3C)
                return false;
        return true;
    }
};

} // namespace

TEST(Stubs, EveryBodyServesItsNumberOfEntries) {
    EXPECT_EQ(count_of(Body::Unsupported), 96u);
    EXPECT_EQ(count_of(Body::PlainFailure), 24u);
    EXPECT_EQ(count_of(Body::PlainSuccess), 3u);
    EXPECT_EQ(count_of(Body::TwoPointers), 12u);
    EXPECT_EQ(count_of(Body::TwoPointersPosting), 5u);
    EXPECT_EQ(count_of(Body::OnePointer), 4u);
}

TEST(Stubs, UnsupportedWarnsAndFailsWhateverTheArguments) {
    for (const StubEntry& entry : kStubs) {
        if (entry.body != Body::Unsupported)
            continue;
        SCOPED_TRACE(entry.name);
        ErrorListener listener;
        Guarded first, second;
        EXPECT_EQ(entry.call(nullptr, nullptr), 0);
        EXPECT_EQ(entry.call(&first, &second), 0);
        EXPECT_EQ(listener.warnings(), (std::vector<std::string>{"core.unsupported", "core.unsupported"}));
        EXPECT_TRUE(listener.hints().empty()) << "no core.params, even for a null record";
        EXPECT_TRUE(first.untouched());
        EXPECT_TRUE(second.untouched());
    }
}

TEST(Stubs, PlainFailureIsFalseInSilence) {
    for (const StubEntry& entry : kStubs) {
        if (entry.body != Body::PlainFailure)
            continue;
        SCOPED_TRACE(entry.name);
        ErrorListener listener;
        Guarded first, second;
        EXPECT_EQ(entry.call(nullptr, nullptr), 0);
        EXPECT_EQ(entry.call(&first, &second), 0);
        EXPECT_TRUE(listener.silent());
        EXPECT_TRUE(first.untouched());
    }
}

TEST(Stubs, PlainSuccessIsTrueInSilence) {
    for (const StubEntry& entry : kStubs) {
        if (entry.body != Body::PlainSuccess)
            continue;
        SCOPED_TRACE(entry.name);
        ErrorListener listener;
        EXPECT_EQ(entry.call(nullptr, nullptr), 1);
        EXPECT_TRUE(listener.silent());
    }
}

TEST(Stubs, TwoPointersWantBothInSilence) {
    for (const StubEntry& entry : kStubs) {
        if (entry.body != Body::TwoPointers)
            continue;
        SCOPED_TRACE(entry.name);
        ErrorListener listener;
        Guarded first, second;
        EXPECT_EQ(entry.call(nullptr, &second), 0);
        EXPECT_EQ(entry.call(&first, nullptr), 0);
        EXPECT_EQ(entry.call(nullptr, nullptr), 0);
        EXPECT_EQ(entry.call(&first, &second), 1);
        EXPECT_TRUE(listener.silent());
        EXPECT_TRUE(first.untouched());
        EXPECT_TRUE(second.untouched());
    }
}

TEST(Stubs, TwoPointersPostingHintsWhenOneIsMissing) {
    for (const StubEntry& entry : kStubs) {
        if (entry.body != Body::TwoPointersPosting)
            continue;
        SCOPED_TRACE(entry.name);
        ErrorListener listener;
        Guarded first, second;
        EXPECT_EQ(entry.call(nullptr, &second), 0);
        EXPECT_EQ(entry.call(&first, nullptr), 0);
        EXPECT_EQ(listener.hints(), (std::vector<std::string>{"core.params", "core.params"}));
        listener.clear();
        EXPECT_EQ(entry.call(&first, &second), 1);
        EXPECT_TRUE(listener.silent()) << "runs nothing and posts nothing";
        EXPECT_TRUE(first.untouched());
        EXPECT_TRUE(second.untouched());
    }
}

TEST(Stubs, OnePointerWantsTheFirst) {
    for (const StubEntry& entry : kStubs) {
        if (entry.body != Body::OnePointer)
            continue;
        SCOPED_TRACE(entry.name);
        ErrorListener listener;
        Guarded first;
        EXPECT_EQ(entry.call(nullptr, &first), 0);
        EXPECT_EQ(entry.call(&first, nullptr), 1);
        EXPECT_TRUE(listener.silent());
        EXPECT_TRUE(first.untouched());
    }
}

TEST(Stubs, ScriptRunOfNullPostsAndOfTwoPointersRunsNothing) {
    ErrorListener listener;
    int script = 0, argument = 0;
    EXPECT_EQ(mox_script_run(nullptr, &argument), 0);
    EXPECT_EQ(listener.hints(), std::vector<std::string>{"core.params"});
    listener.clear();
    EXPECT_EQ(mox_script_run(&script, &argument), 1);
    EXPECT_TRUE(listener.silent());
}

TEST(Stubs, OpenglGetViewportLeavesItsArgumentsUnwritten) {
    ErrorListener listener;
    int32_t viewport[4] = {11, 22, 33, 44};
    EXPECT_EQ(mox_opengl_get_viewport(nullptr, &viewport[0], &viewport[1], &viewport[2], &viewport[3]), 0);
    EXPECT_EQ(listener.warnings(), std::vector<std::string>{"core.unsupported"});
    EXPECT_EQ(viewport[0], 11);
    EXPECT_EQ(viewport[3], 44);
}
