/* Database clients. */
#ifndef MOX_DATABASE_H
#define MOX_DATABASE_H

#include <mox/base.h>

MOX_BEGIN_DECLS

/* No database engine is linked in: each of these takes any arguments, posts the warning
   "core.unsupported" and returns false. */
MOX_API mox_bool mox_mysql_close_command(void* self, ...);
MOX_API mox_bool mox_mysql_connect(void* self, ...);
MOX_API mox_bool mox_mysql_connected(void* self, ...);
MOX_API mox_bool mox_mysql_disconnect(void* self, ...);
MOX_API mox_bool mox_mysql_get_affected_row(void* self, ...);
MOX_API mox_bool mox_mysql_get_dataset(void* self, ...);
MOX_API mox_bool mox_mysql_get_insert_id(void* self, ...);
MOX_API mox_bool mox_mysql_open_command(void* self, ...);
MOX_API mox_bool mox_mysql_reconnect(void* self, ...);
MOX_API mox_bool mox_mysql_select_shema(void* self, ...);
MOX_API mox_bool mox_sqlite3_close_command(void* self, ...);
MOX_API mox_bool mox_sqlite3_connect(void* self, ...);
MOX_API mox_bool mox_sqlite3_connected(void* self, ...);
MOX_API mox_bool mox_sqlite3_disconnect(void* self, ...);
MOX_API mox_bool mox_sqlite3_get_affected_row(void* self, ...);
MOX_API mox_bool mox_sqlite3_get_dataset(void* self, ...);
MOX_API mox_bool mox_sqlite3_get_error(void* self, ...);
MOX_API mox_bool mox_sqlite3_get_insert_id(void* self, ...);
MOX_API mox_bool mox_sqlite3_load_from_file(void* self, ...);
MOX_API mox_bool mox_sqlite3_open_command(void* self, ...);
MOX_API mox_bool mox_sqlite3_reconnect(void* self, ...);
MOX_API mox_bool mox_sqlite3_save_to_file(void* self, ...);

MOX_END_DECLS

#endif
