/* System services: threads, processes, shell, console, ports, modules, addresses. */
#ifndef MOX_SYSTEM_H
#define MOX_SYSTEM_H

#include <mox/base.h>

MOX_BEGIN_DECLS

/* Placeholders of this build. The socket and TCP entries take any arguments and return false in
   silence; the console cannot be cleared; opening an existing process attaches to nothing (true for a
   non-null record); a script cannot run and thread lists and shells have no file form (true when
   both pointers are set; the script entries post "core.params" otherwise). */
MOX_API mox_bool mox_console_screen_clear(void);
MOX_API mox_bool mox_socket_cleanup(void);
MOX_API mox_bool mox_socket_startup(void);
MOX_API mox_bool mox_tcp_client_connect(void* self, ...);
MOX_API mox_bool mox_tcp_client_connected(void* self, ...);
MOX_API mox_bool mox_tcp_client_disconnect(void* self, ...);
MOX_API mox_bool mox_tcp_client_run(void* self, ...);
MOX_API mox_bool mox_tcp_client_skip(void* self, ...);
MOX_API mox_bool mox_tcp_server_connect(void* self, ...);
MOX_API mox_bool mox_tcp_server_connected(void* self, ...);
MOX_API mox_bool mox_tcp_server_disconnect(void* self, ...);
MOX_API mox_bool mox_tcp_server_disconnect_client(void* self, ...);
MOX_API mox_bool mox_tcp_server_load_from_file(void* self, ...);
MOX_API mox_bool mox_tcp_server_run(void* self, ...);
MOX_API mox_bool mox_tcp_server_save_to_file(void* self, ...);
MOX_API mox_bool mox_tcp_server_skip_client(void* self, ...);
MOX_API mox_bool mox_shell_load_from_file(void* self, mox_file* file);
MOX_API mox_bool mox_shell_save_to_file(void* self, mox_file* file);
MOX_API mox_bool mox_thread_list_load_from_file(void* self, mox_file* file);
MOX_API mox_bool mox_thread_list_save_to_file(void* self, mox_file* file);
MOX_API mox_bool mox_script_load_from_file(void* self, mox_file* file);
MOX_API mox_bool mox_script_run(void* self, void* other);
MOX_API mox_bool mox_script_save_to_file(void* self, mox_file* file);
MOX_API mox_bool mox_process_open_handle(void* self, ...);
MOX_API mox_bool mox_process_open_id(void* self, ...);

MOX_END_DECLS

#endif
