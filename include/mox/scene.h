/* Scene description and renderer objects. */
#ifndef MOX_SCENE_H
#define MOX_SCENE_H

#include <mox/base.h>

MOX_BEGIN_DECLS

/* This build links no 3D renderer: each of these takes any arguments, writes nothing through them,
   posts the warning "core.unsupported" and returns false. */
MOX_API mox_bool mox_directx9_cleanup(void* self, ...);
MOX_API mox_bool mox_directx9_render(void* self, ...);
MOX_API mox_bool mox_directx9_startup(void* self, ...);
MOX_API mox_bool mox_opengl_startup(void* self, ...);
MOX_API mox_bool mox_opengl_cleanup(void* self, ...);
MOX_API mox_bool mox_opengl_active_texture2d(void* self, ...);
MOX_API mox_bool mox_opengl_create_texture2d(void* self, ...);
MOX_API mox_bool mox_opengl_destroy_texture2d(void* self, ...);
MOX_API mox_bool mox_opengl_render_begin(void* self, ...);
MOX_API mox_bool mox_opengl_render_clear(void* self, ...);
MOX_API mox_bool mox_opengl_render_end(void* self, ...);
MOX_API mox_bool mox_opengl_render_mesh3d(void* self, ...);
MOX_API mox_bool mox_opengl_enable_cull_face(void* self, ...);
MOX_API mox_bool mox_opengl_enable_light3d(void* self, ...);
MOX_API mox_bool mox_opengl_enable_line_smooth(void* self, ...);
MOX_API mox_bool mox_opengl_enable_point_smooth(void* self, ...);
MOX_API mox_bool mox_opengl_enable_scissor(void* self, ...);
MOX_API mox_bool mox_opengl_is_enable_cull_face(void* self, ...);
MOX_API mox_bool mox_opengl_is_enable_light3d(void* self, ...);
MOX_API mox_bool mox_opengl_is_enable_line_smooth(void* self, ...);
MOX_API mox_bool mox_opengl_is_enable_point_smooth(void* self, ...);
MOX_API mox_bool mox_opengl_is_enable_scissor(void* self, ...);
MOX_API mox_bool mox_opengl_get_ambient(void* self, ...);
MOX_API mox_bool mox_opengl_get_clear_accum(void* self, ...);
MOX_API mox_bool mox_opengl_get_clear_color(void* self, ...);
MOX_API mox_bool mox_opengl_get_clear_depth(void* self, ...);
MOX_API mox_bool mox_opengl_get_clear_stencil(void* self, ...);
MOX_API mox_bool mox_opengl_get_cull_face(void* self, ...);
MOX_API mox_bool mox_opengl_get_face_mode(void* self, ...);
MOX_API mox_bool mox_opengl_get_face_offset(void* self, ...);
MOX_API mox_bool mox_opengl_get_face_smooth_hint(void* self, ...);
MOX_API mox_bool mox_opengl_get_front_face(void* self, ...);
MOX_API mox_bool mox_opengl_get_light3d_omni(void* self, ...);
MOX_API mox_bool mox_opengl_get_line_smooth_hint(void* self, ...);
MOX_API mox_bool mox_opengl_get_line_width(void* self, ...);
MOX_API mox_bool mox_opengl_get_line_width_granularity(void* self, ...);
MOX_API mox_bool mox_opengl_get_line_width_range(void* self, ...);
MOX_API mox_bool mox_opengl_get_material3d(void* self, ...);
MOX_API mox_bool mox_opengl_get_max_lights(void* self, ...);
MOX_API mox_bool mox_opengl_get_max_textures_size(void* self, ...);
MOX_API mox_bool mox_opengl_get_model_matrix(void* self, ...);
MOX_API mox_bool mox_opengl_get_pixel_zoom(void* self, ...);
MOX_API mox_bool mox_opengl_get_point_size(void* self, ...);
MOX_API mox_bool mox_opengl_get_point_size_granularity(void* self, ...);
MOX_API mox_bool mox_opengl_get_point_size_range(void* self, ...);
MOX_API mox_bool mox_opengl_get_point_smooth_hint(void* self, ...);
MOX_API mox_bool mox_opengl_get_project_matrix(void* self, ...);
MOX_API mox_bool mox_opengl_get_scissor(void* self, ...);
MOX_API mox_bool mox_opengl_get_shade_model(void* self, ...);
MOX_API mox_bool mox_opengl_get_texture2d(void* self, ...);
MOX_API mox_bool mox_opengl_get_viewport(void* self, ...);
MOX_API mox_bool mox_opengl_set_ambient(void* self, ...);
MOX_API mox_bool mox_opengl_set_clear_accum(void* self, ...);
MOX_API mox_bool mox_opengl_set_clear_color(void* self, ...);
MOX_API mox_bool mox_opengl_set_clear_depth(void* self, ...);
MOX_API mox_bool mox_opengl_set_clear_stencil(void* self, ...);
MOX_API mox_bool mox_opengl_set_cull_face(void* self, ...);
MOX_API mox_bool mox_opengl_set_face_mode(void* self, ...);
MOX_API mox_bool mox_opengl_set_face_offset(void* self, ...);
MOX_API mox_bool mox_opengl_set_face_smooth_hint(void* self, ...);
MOX_API mox_bool mox_opengl_set_front_face(void* self, ...);
MOX_API mox_bool mox_opengl_set_light3d_omni(void* self, ...);
MOX_API mox_bool mox_opengl_set_line_smooth_hint(void* self, ...);
MOX_API mox_bool mox_opengl_set_line_width(void* self, ...);
MOX_API mox_bool mox_opengl_set_material3d(void* self, ...);
MOX_API mox_bool mox_opengl_set_model_matrix(void* self, ...);
MOX_API mox_bool mox_opengl_set_pixel_zoom(void* self, ...);
MOX_API mox_bool mox_opengl_set_point_size(void* self, ...);
MOX_API mox_bool mox_opengl_set_point_smooth_hint(void* self, ...);
MOX_API mox_bool mox_opengl_set_project_matrix(void* self, ...);
MOX_API mox_bool mox_opengl_set_scissor(void* self, ...);
MOX_API mox_bool mox_opengl_set_shade_model(void* self, ...);
MOX_API mox_bool mox_opengl_set_texture2d(void* self, ...);
MOX_API mox_bool mox_opengl_set_viewport(void* self, ...);

MOX_END_DECLS

#endif
