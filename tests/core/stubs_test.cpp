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

StubEntry entry(const char* name, Body body, mox_bool (*call)(void*, void*)) {
    return StubEntry{name, body, call};
}

// How each entry is called, by the shape of its argument list: none, any (two pointers and a
// number), one pointer, a record and a file, two pointers.
#define STUB_NONE(body, name) entry(#name, Body::body, [](void*, void*) { return name(); })
#define STUB_ANY(body, name) entry(#name, Body::body, [](void* a, void* b) { return name(a, b, 7); })
#define STUB_ONE(body, name) entry(#name, Body::body, [](void* a, void*) { return name(a); })
#define STUB_FILE(body, name)                                                                                \
    entry(#name, Body::body, [](void* a, void* b) { return name(a, static_cast<mox_file*>(b)); })
#define STUB_TWO(body, name) entry(#name, Body::body, [](void* a, void* b) { return name(a, b); })

const StubEntry kStubs[] = {
    STUB_ANY(Unsupported, mox_directx9_cleanup),
    STUB_ANY(Unsupported, mox_directx9_render),
    STUB_ANY(Unsupported, mox_directx9_startup),
    STUB_ANY(Unsupported, mox_mysql_close_command),
    STUB_ANY(Unsupported, mox_mysql_connect),
    STUB_ANY(Unsupported, mox_mysql_connected),
    STUB_ANY(Unsupported, mox_mysql_disconnect),
    STUB_ANY(Unsupported, mox_mysql_get_affected_row),
    STUB_ANY(Unsupported, mox_mysql_get_dataset),
    STUB_ANY(Unsupported, mox_mysql_get_insert_id),
    STUB_ANY(Unsupported, mox_mysql_open_command),
    STUB_ANY(Unsupported, mox_mysql_reconnect),
    STUB_ANY(Unsupported, mox_mysql_select_shema),
    STUB_ANY(Unsupported, mox_sqlite3_close_command),
    STUB_ANY(Unsupported, mox_sqlite3_connect),
    STUB_ANY(Unsupported, mox_sqlite3_connected),
    STUB_ANY(Unsupported, mox_sqlite3_disconnect),
    STUB_ANY(Unsupported, mox_sqlite3_get_affected_row),
    STUB_ANY(Unsupported, mox_sqlite3_get_dataset),
    STUB_ANY(Unsupported, mox_sqlite3_get_error),
    STUB_ANY(Unsupported, mox_sqlite3_get_insert_id),
    STUB_ANY(Unsupported, mox_sqlite3_load_from_file),
    STUB_ANY(Unsupported, mox_sqlite3_open_command),
    STUB_ANY(Unsupported, mox_sqlite3_reconnect),
    STUB_ANY(Unsupported, mox_sqlite3_save_to_file),
    STUB_ANY(Unsupported, mox_opengl_startup),
    STUB_ANY(Unsupported, mox_opengl_cleanup),
    STUB_ANY(Unsupported, mox_opengl_active_texture2d),
    STUB_ANY(Unsupported, mox_opengl_create_texture2d),
    STUB_ANY(Unsupported, mox_opengl_destroy_texture2d),
    STUB_ANY(Unsupported, mox_opengl_render_begin),
    STUB_ANY(Unsupported, mox_opengl_render_clear),
    STUB_ANY(Unsupported, mox_opengl_render_end),
    STUB_ANY(Unsupported, mox_opengl_render_mesh3d),
    STUB_ANY(Unsupported, mox_opengl_enable_cull_face),
    STUB_ANY(Unsupported, mox_opengl_enable_light3d),
    STUB_ANY(Unsupported, mox_opengl_enable_line_smooth),
    STUB_ANY(Unsupported, mox_opengl_enable_point_smooth),
    STUB_ANY(Unsupported, mox_opengl_enable_scissor),
    STUB_ANY(Unsupported, mox_opengl_is_enable_cull_face),
    STUB_ANY(Unsupported, mox_opengl_is_enable_light3d),
    STUB_ANY(Unsupported, mox_opengl_is_enable_line_smooth),
    STUB_ANY(Unsupported, mox_opengl_is_enable_point_smooth),
    STUB_ANY(Unsupported, mox_opengl_is_enable_scissor),
    STUB_ANY(Unsupported, mox_opengl_get_ambient),
    STUB_ANY(Unsupported, mox_opengl_get_clear_accum),
    STUB_ANY(Unsupported, mox_opengl_get_clear_color),
    STUB_ANY(Unsupported, mox_opengl_get_clear_depth),
    STUB_ANY(Unsupported, mox_opengl_get_clear_stencil),
    STUB_ANY(Unsupported, mox_opengl_get_cull_face),
    STUB_ANY(Unsupported, mox_opengl_get_face_mode),
    STUB_ANY(Unsupported, mox_opengl_get_face_offset),
    STUB_ANY(Unsupported, mox_opengl_get_face_smooth_hint),
    STUB_ANY(Unsupported, mox_opengl_get_front_face),
    STUB_ANY(Unsupported, mox_opengl_get_light3d_omni),
    STUB_ANY(Unsupported, mox_opengl_get_line_smooth_hint),
    STUB_ANY(Unsupported, mox_opengl_get_line_width),
    STUB_ANY(Unsupported, mox_opengl_get_line_width_granularity),
    STUB_ANY(Unsupported, mox_opengl_get_line_width_range),
    STUB_ANY(Unsupported, mox_opengl_get_material3d),
    STUB_ANY(Unsupported, mox_opengl_get_max_lights),
    STUB_ANY(Unsupported, mox_opengl_get_max_textures_size),
    STUB_ANY(Unsupported, mox_opengl_get_model_matrix),
    STUB_ANY(Unsupported, mox_opengl_get_pixel_zoom),
    STUB_ANY(Unsupported, mox_opengl_get_point_size),
    STUB_ANY(Unsupported, mox_opengl_get_point_size_granularity),
    STUB_ANY(Unsupported, mox_opengl_get_point_size_range),
    STUB_ANY(Unsupported, mox_opengl_get_point_smooth_hint),
    STUB_ANY(Unsupported, mox_opengl_get_project_matrix),
    STUB_ANY(Unsupported, mox_opengl_get_scissor),
    STUB_ANY(Unsupported, mox_opengl_get_shade_model),
    STUB_ANY(Unsupported, mox_opengl_get_texture2d),
    STUB_ANY(Unsupported, mox_opengl_get_viewport),
    STUB_ANY(Unsupported, mox_opengl_set_ambient),
    STUB_ANY(Unsupported, mox_opengl_set_clear_accum),
    STUB_ANY(Unsupported, mox_opengl_set_clear_color),
    STUB_ANY(Unsupported, mox_opengl_set_clear_depth),
    STUB_ANY(Unsupported, mox_opengl_set_clear_stencil),
    STUB_ANY(Unsupported, mox_opengl_set_cull_face),
    STUB_ANY(Unsupported, mox_opengl_set_face_mode),
    STUB_ANY(Unsupported, mox_opengl_set_face_offset),
    STUB_ANY(Unsupported, mox_opengl_set_face_smooth_hint),
    STUB_ANY(Unsupported, mox_opengl_set_front_face),
    STUB_ANY(Unsupported, mox_opengl_set_light3d_omni),
    STUB_ANY(Unsupported, mox_opengl_set_line_smooth_hint),
    STUB_ANY(Unsupported, mox_opengl_set_line_width),
    STUB_ANY(Unsupported, mox_opengl_set_material3d),
    STUB_ANY(Unsupported, mox_opengl_set_model_matrix),
    STUB_ANY(Unsupported, mox_opengl_set_pixel_zoom),
    STUB_ANY(Unsupported, mox_opengl_set_point_size),
    STUB_ANY(Unsupported, mox_opengl_set_point_smooth_hint),
    STUB_ANY(Unsupported, mox_opengl_set_project_matrix),
    STUB_ANY(Unsupported, mox_opengl_set_scissor),
    STUB_ANY(Unsupported, mox_opengl_set_shade_model),
    STUB_ANY(Unsupported, mox_opengl_set_texture2d),
    STUB_ANY(Unsupported, mox_opengl_set_viewport),
    STUB_NONE(PlainFailure, mox_console_screen_clear),
    STUB_NONE(PlainFailure, mox_socket_cleanup),
    STUB_NONE(PlainFailure, mox_socket_startup),
    STUB_NONE(PlainFailure, mox_support_directx3d9),
    STUB_NONE(PlainFailure, mox_support_freetype),
    STUB_NONE(PlainFailure, mox_support_mysql),
    STUB_NONE(PlainFailure, mox_support_opengl),
    STUB_NONE(PlainFailure, mox_support_socket),
    STUB_NONE(PlainFailure, mox_support_sqlite3),
    STUB_NONE(PlainFailure, mox_support_widestring),
    STUB_ANY(PlainFailure, mox_tcp_client_connect),
    STUB_ANY(PlainFailure, mox_tcp_client_connected),
    STUB_ANY(PlainFailure, mox_tcp_client_disconnect),
    STUB_ANY(PlainFailure, mox_tcp_client_run),
    STUB_ANY(PlainFailure, mox_tcp_client_skip),
    STUB_ANY(PlainFailure, mox_tcp_server_connect),
    STUB_ANY(PlainFailure, mox_tcp_server_connected),
    STUB_ANY(PlainFailure, mox_tcp_server_disconnect),
    STUB_ANY(PlainFailure, mox_tcp_server_disconnect_client),
    STUB_ANY(PlainFailure, mox_tcp_server_load_from_file),
    STUB_ANY(PlainFailure, mox_tcp_server_run),
    STUB_ANY(PlainFailure, mox_tcp_server_save_to_file),
    STUB_ANY(PlainFailure, mox_tcp_server_skip_client),
    STUB_ANY(PlainFailure, mox_xml_load_from_file),
    STUB_NONE(PlainSuccess, mox_devil_cleanup),
    STUB_NONE(PlainSuccess, mox_support_ansistring),
    STUB_NONE(PlainSuccess, mox_support_devil),
    STUB_FILE(TwoPointers, mox_dvdauthor_load_from_file),
    STUB_FILE(TwoPointers, mox_dvdauthor_save_to_file),
    STUB_FILE(TwoPointers, mox_imageview_load_from_file),
    STUB_FILE(TwoPointers, mox_imageview_save_to_file),
    STUB_FILE(TwoPointers, mox_shell_load_from_file),
    STUB_FILE(TwoPointers, mox_shell_save_to_file),
    STUB_FILE(TwoPointers, mox_spumux_load_from_file),
    STUB_FILE(TwoPointers, mox_spumux_save_to_file),
    STUB_FILE(TwoPointers, mox_thread_list_load_from_file),
    STUB_FILE(TwoPointers, mox_thread_list_save_to_file),
    STUB_TWO(TwoPointers, mox_window_get_region),
    STUB_TWO(TwoPointers, mox_window_set_region),
    STUB_FILE(TwoPointersPosting, mox_action_load_from_file),
    STUB_FILE(TwoPointersPosting, mox_action_save_to_file),
    STUB_FILE(TwoPointersPosting, mox_script_load_from_file),
    STUB_TWO(TwoPointersPosting, mox_script_run),
    STUB_FILE(TwoPointersPosting, mox_script_save_to_file),
    STUB_ONE(OnePointer, mox_astring_swap),
    STUB_ONE(OnePointer, mox_object_destruct),
    STUB_ANY(OnePointer, mox_process_open_handle),
    STUB_ANY(OnePointer, mox_process_open_id),
};

template <typename Check> void for_each_stub(Body body, Check check) {
    for (const StubEntry& entry : kStubs) {
        if (entry.body != body)
            continue;
        SCOPED_TRACE(entry.name);
        check(entry);
    }
}

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
    for_each_stub(Body::Unsupported, [](const StubEntry& entry) {
        ErrorListener listener;
        Guarded first, second;
        EXPECT_EQ(entry.call(nullptr, nullptr), 0);
        EXPECT_EQ(entry.call(&first, &second), 0);
        EXPECT_EQ(listener.warnings(), (std::vector<std::string>{"core.unsupported", "core.unsupported"}));
        EXPECT_TRUE(listener.hints().empty()) << "no core.params, even for a null record";
        EXPECT_TRUE(first.untouched());
        EXPECT_TRUE(second.untouched());
    });
}

TEST(Stubs, PlainFailureIsFalseInSilence) {
    for_each_stub(Body::PlainFailure, [](const StubEntry& entry) {
        ErrorListener listener;
        Guarded first, second;
        EXPECT_EQ(entry.call(nullptr, nullptr), 0);
        EXPECT_EQ(entry.call(&first, &second), 0);
        EXPECT_TRUE(listener.silent());
        EXPECT_TRUE(first.untouched());
    });
}

TEST(Stubs, PlainSuccessIsTrueInSilence) {
    for_each_stub(Body::PlainSuccess, [](const StubEntry& entry) {
        ErrorListener listener;
        EXPECT_EQ(entry.call(nullptr, nullptr), 1);
        EXPECT_TRUE(listener.silent());
    });
}

TEST(Stubs, TwoPointersWantBothInSilence) {
    for_each_stub(Body::TwoPointers, [](const StubEntry& entry) {
        ErrorListener listener;
        Guarded first, second;
        EXPECT_EQ(entry.call(nullptr, &second), 0);
        EXPECT_EQ(entry.call(&first, nullptr), 0);
        EXPECT_EQ(entry.call(nullptr, nullptr), 0);
        EXPECT_EQ(entry.call(&first, &second), 1);
        EXPECT_TRUE(listener.silent());
        EXPECT_TRUE(first.untouched());
        EXPECT_TRUE(second.untouched());
    });
}

TEST(Stubs, TwoPointersPostingHintsWhenOneIsMissing) {
    for_each_stub(Body::TwoPointersPosting, [](const StubEntry& entry) {
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
    });
}

TEST(Stubs, OnePointerWantsTheFirst) {
    for_each_stub(Body::OnePointer, [](const StubEntry& entry) {
        ErrorListener listener;
        Guarded first;
        EXPECT_EQ(entry.call(nullptr, &first), 0);
        EXPECT_EQ(entry.call(&first, nullptr), 1);
        EXPECT_TRUE(listener.silent());
        EXPECT_TRUE(first.untouched());
    });
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
