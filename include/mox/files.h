/* Files and documents. */
#ifndef MOX_FILES_H
#define MOX_FILES_H

#include <mox/base.h>
#include <mox/containers.h>
#include <mox/strings.h>

MOX_BEGIN_DECLS

/* ---- File, stream and file map ----------------------------------------------------------------- */

#define MOX_FILE_CLASS_ID 0x72162BC1u
#define MOX_FILE_STREAM_CLASS_ID 0x204D3260u
#define MOX_FILE_MAP_CLASS_ID 0x86BC36E4u

/* Flags of mox_file_open. */
#define MOX_FILE_READ 0x1u
#define MOX_FILE_WRITE 0x2u
#define MOX_FILE_SHARE_READ 0x4u
#define MOX_FILE_SHARE_WRITE 0x8u

/* Flags of mox_file_map_open. */
#define MOX_FILE_MAP_READ 0x1u
#define MOX_FILE_MAP_WRITE 0x2u
#define MOX_FILE_MAP_EXECUTE 0x4u

/* The value of `handle` while no file is open. */
#define MOX_FILE_CLOSED ((uintptr_t)-1)

/* A system file handle with the position mirrored in `position`. */
struct mox_file {
    mox_object header;
    uintptr_t handle;
    uint32_t mode;
    uint64_t position;
};

/* A byte cache over an open file. `file` is stored by the user and not owned. */
typedef struct mox_file_stream {
    mox_object header;
    mox_file* file;
    uint32_t cache_size;
    uint32_t cache_position;
    uint32_t cache_filled;
    uint8_t* cache;
} mox_file_stream;

/* A file mapped into memory; `view` holds the mapped bytes. */
typedef struct mox_file_map {
    mox_object header;
    uintptr_t handle;
    uint32_t mode;
    void* view;
} mox_file_map;

MOX_API mox_bool mox_file_construct(mox_file* self, void* owner);
MOX_API mox_bool mox_file_destruct(mox_file* self);
MOX_API mox_bool mox_file_new(mox_file** out, void* owner);
MOX_API mox_bool mox_file_free(mox_file** slot);
MOX_API mox_bool mox_file_open(mox_file* self, const char* name, uint32_t mode);
MOX_API mox_bool mox_file_close(mox_file* self);
MOX_API mox_bool mox_file_get_size_u32(mox_file* self, uint32_t* size);
MOX_API mox_bool mox_file_get_size_u64(mox_file* self, uint64_t* size);
MOX_API mox_bool mox_file_set_eof(mox_file* self);
MOX_API mox_bool mox_file_set_pointer_u32(mox_file* self, uint32_t position);
MOX_API mox_bool mox_file_set_pointer_u64(mox_file* self, uint64_t position);
MOX_API uint32_t mox_file_write(mox_file* self, const void* data, uint32_t size);
MOX_API uint32_t mox_file_read(mox_file* self, void* data, uint32_t size);

MOX_API mox_bool mox_file_stream_construct(mox_file_stream* self, void* owner);
MOX_API mox_bool mox_file_stream_destruct(mox_file_stream* self);
MOX_API mox_bool mox_file_stream_new(mox_file_stream** out, void* owner);
MOX_API mox_bool mox_file_stream_free(mox_file_stream** slot);
MOX_API mox_bool mox_file_stream_cache_size(mox_file_stream* self, uint32_t size);
MOX_API mox_bool mox_file_stream_write(mox_file_stream* self, const void* data, uint32_t size);
MOX_API mox_bool mox_file_stream_read(mox_file_stream* self, void* data, uint32_t size);
MOX_API mox_bool mox_file_stream_peek(mox_file_stream* self, void* data, uint32_t size);
MOX_API mox_bool mox_file_stream_flush(mox_file_stream* self);

MOX_API mox_bool mox_file_map_construct(mox_file_map* self, void* owner);
MOX_API mox_bool mox_file_map_destruct(mox_file_map* self);
MOX_API mox_bool mox_file_map_new(mox_file_map** out, void* owner);
MOX_API mox_bool mox_file_map_free(mox_file_map** slot);
MOX_API mox_bool mox_file_map_open(mox_file_map* self, mox_file* file, uint32_t mode);
MOX_API mox_bool mox_file_map_view_u32(mox_file_map* self, uint32_t offset, uint32_t size);
MOX_API mox_bool mox_file_map_view_u64(mox_file_map* self, uint64_t offset, uint32_t size);
MOX_API mox_bool mox_file_map_flush(mox_file_map* self, uint64_t offset, uint32_t size);
MOX_API mox_bool mox_file_map_close(mox_file_map* self);

/* ---- File system helpers ---------------------------------------------------------------------- */

/* Names are narrow, in the system's code page, with "\\" as the separator. Null arguments post
   "core.params" and give false; failures of the system are silent. */
MOX_API mox_bool mox_create_file(const char* name, uint8_t make_folders);
MOX_API mox_bool mox_file_create(mox_file* self, const char* name, uint32_t mode, uint8_t make_folders);
MOX_API mox_bool mox_delete_file(const char* name);
MOX_API mox_bool mox_exist_file(const char* name);
MOX_API mox_bool mox_copy_file(const char* to, const char* from, uint8_t overwrite);
MOX_API mox_bool mox_create_folder(const char* name, uint8_t make_parents);
MOX_API mox_bool mox_delete_folder(const char* name, uint8_t recursive);
/* Moves the process's current folder for a moment: not safe beside other threads. */
MOX_API mox_bool mox_exist_folder(char* name);
MOX_API mox_bool mox_get_files(mox_astring_array* out, const char* folder);
MOX_API mox_bool mox_get_folders(mox_astring_array* out, const char* folder);
MOX_API mox_bool mox_set_work_folder(const char* name);
MOX_API mox_bool mox_get_work_folder(mox_astring* out);
MOX_API mox_bool mox_get_temp_folder(mox_astring* out);
MOX_API mox_bool mox_get_temp_file_name(mox_astring* out, const char* folder, const char* prefix);

/* ---- SON document ------------------------------------------------------------------------------ */

#define MOX_SON_TAG_CLASS_ID 0x17A9186Fu
#define MOX_SON_CLASS_ID 0xBC9F93B4u

/* A named text value or a block of further tags; the children follow the held-child pattern, and
   the sibling links stand in the notes. The writer ignores `value` once a tag has children. */
typedef struct mox_son_tag {
    mox_object header;
    mox_astring name;
    mox_astring value;
    mox_list children;
} mox_son_tag;

/* The document: one top tag, embedded. */
typedef struct mox_son {
    mox_object header;
    mox_son_tag root;
} mox_son;

MOX_API mox_bool mox_son_construct(mox_son* self, void* owner);
MOX_API mox_bool mox_son_destruct(mox_son* self);
MOX_API mox_bool mox_son_new(mox_son** out, void* owner);
MOX_API mox_bool mox_son_free(mox_son** slot);
MOX_API mox_bool mox_son_clear(mox_son* self);
/* Writes UTF-8 with its mark at the file's position. */
MOX_API mox_bool mox_son_save_to_file(mox_son* self, mox_file* file);
/* Reads UTF-16 of either byte order, or narrow text; refuses the mark that the writer writes. */
MOX_API mox_bool mox_son_load_from_file(mox_son* self, mox_file* file);
MOX_API mox_bool mox_son_save_to(mox_son* self, const char* name);
MOX_API mox_bool mox_son_load_from(mox_son* self, const char* name);

MOX_API mox_bool mox_son_tag_construct(mox_son_tag* self, void* owner);
MOX_API mox_bool mox_son_tag_destruct(mox_son_tag* self);
MOX_API mox_bool mox_son_tag_new(mox_son_tag** out, void* owner);
MOX_API mox_bool mox_son_tag_free(mox_son_tag** slot);
MOX_API mox_bool mox_son_tag_create_child(mox_son_tag* self, mox_son_tag** out, uint8_t position);
/* Always false: success is told by the cleared slot. */
MOX_API mox_bool mox_son_tag_delete_child(mox_son_tag* self, mox_son_tag** slot);
MOX_API mox_bool mox_son_tag_clear_child(mox_son_tag* self);
MOX_API mox_bool mox_son_tag_first_child(mox_son_tag* self, mox_son_tag** out);
MOX_API mox_bool mox_son_tag_last_child(mox_son_tag* self, mox_son_tag** out);
MOX_API mox_bool mox_son_tag_next(mox_son_tag* self, mox_son_tag** out);
MOX_API mox_bool mox_son_tag_prev(mox_son_tag* self, mox_son_tag** out);
/* The first child whose name equals `name`, ignoring case; children only, no deeper. */
MOX_API mox_bool mox_son_tag_find_child(mox_son_tag* self, const char* name, mox_son_tag** out);

/* ---- XML document ------------------------------------------------------------------------------ */

#define MOX_XML_PROP_CLASS_ID 0x81FBE762u
#define MOX_XML_TAG_CLASS_ID 0x22A6BEFEu
#define MOX_XML_CLASS_ID 0x6CF27FFBu

/* An attribute of a tag. Its owner is the list note that carries it. */
typedef struct mox_xml_prop {
    mox_object header;
    mox_astring name;
    mox_astring value;
} mox_xml_prop;

/* An element: `text` is null for none, and an empty `text` still gives an opening and a closing
   tag. `props` and `children` follow the held-child pattern, in the order of writing. */
typedef struct mox_xml_tag {
    mox_object header;
    mox_astring name;
    mox_astring text;
    mox_list props;
    mox_list children;
} mox_xml_tag;

/* The document: the processing instruction at the top ("xml", with "version" "1.0" and "encoding"
   "utf-8" after construct) and the document element, whose name the caller sets. */
typedef struct mox_xml {
    mox_object header;
    mox_xml_tag declaration;
    mox_xml_tag root;
} mox_xml;

/* The whole family is silent: every failure is a plain false. */
MOX_API mox_bool mox_xml_prop_construct(mox_xml_prop* self, void* owner);
MOX_API mox_bool mox_xml_prop_destruct(mox_xml_prop* self);
MOX_API mox_bool mox_xml_prop_new(mox_xml_prop** out, void* owner);
MOX_API mox_bool mox_xml_prop_free(mox_xml_prop** slot);

MOX_API mox_bool mox_xml_tag_construct(mox_xml_tag* self, void* owner);
MOX_API mox_bool mox_xml_tag_destruct(mox_xml_tag* self);
MOX_API mox_bool mox_xml_tag_new(mox_xml_tag** out, void* owner);
MOX_API mox_bool mox_xml_tag_free(mox_xml_tag** slot);
/* Position 1 puts the new one first; any other value puts it last. */
MOX_API mox_bool mox_xml_tag_create_prop(mox_xml_tag* self, mox_xml_prop** out, uint8_t position);
MOX_API mox_bool mox_xml_tag_create_child(mox_xml_tag* self, mox_xml_tag** out, uint8_t position);
/* Always false: success is told by the cleared slot. */
MOX_API mox_bool mox_xml_tag_delete_prop(mox_xml_tag* self, mox_xml_prop** slot);
MOX_API mox_bool mox_xml_tag_delete_child(mox_xml_tag* self, mox_xml_tag** slot);
MOX_API mox_bool mox_xml_tag_clear_prop(mox_xml_tag* self);
MOX_API mox_bool mox_xml_tag_clear_child(mox_xml_tag* self);
/* The first property (or child tag, without descending) whose name equals `name`, ignoring case. */
MOX_API mox_bool mox_xml_tag_find_prop(mox_xml_tag* self, const char* name, mox_xml_prop** out);
MOX_API mox_bool mox_xml_tag_find_child(mox_xml_tag* self, const char* name, mox_xml_tag** out);

MOX_API mox_bool mox_xml_construct(mox_xml* self, void* owner);
MOX_API mox_bool mox_xml_destruct(mox_xml* self);
MOX_API mox_bool mox_xml_new(mox_xml** out, void* owner);
MOX_API mox_bool mox_xml_free(mox_xml** slot);
/* Empties both top tags, the declaration too: a document written after this has no "xml" name. */
MOX_API mox_bool mox_xml_clear(mox_xml* self);
/* Writes UTF-8 with its mark at the file's position: the declaration, then the root, one tag per
   line (CR LF), indented by tabs. Nothing is escaped. */
MOX_API mox_bool mox_xml_save_to_file(mox_xml* self, mox_file* file);
MOX_API mox_bool mox_xml_save_to(mox_xml* self, const char* name);
/* This build writes XML but does not read it: always false, silently. */
MOX_API mox_bool mox_xml_load_from_file(void* self, ...);
/* Opens an existing file for reading and closes it again; nothing is read, always false. */
MOX_API mox_bool mox_xml_load_from(mox_xml* self, const char* name);

/* ---- Archive container ------------------------------------------------------------------------- */

#define MOX_ARCHIVE_CLASS_ID 0x32BF55FDu
#define MOX_ARCHIVE_FOLDER_CLASS_ID 0x84CE83FCu
#define MOX_ARCHIVE_FILE_CLASS_ID 0xBEBFC02Bu

/* The 40-byte header of an archive file, in memory exactly as it stands in the file: every field
   is kept as its little-endian bytes, least significant first. Byte arrays keep the record free of
   padding and of alignment on every target and compiler (the 64-bit `method` sits at offset 4),
   so the header is the same 40 bytes whatever the machine's byte order or word width.
   `format` must be 0. `method` must be 0 (stored); any other value makes writing and unpacking
   give false. `file_size` is the size of the whole file, filled in by the writer. `skip` is the
   count of bytes the reader passes over between the header and the counts; the writer writes the
   counts directly behind the header whatever it holds. The two reserved fields are written as
   they stand and never tested. */
typedef struct mox_archive_info {
    uint8_t format[4];
    uint8_t method[8];
    uint8_t reserved_1[4];
    uint8_t file_size[8];
    uint8_t skip[8];
    uint8_t reserved_2[8];
} mox_archive_info;

struct mox_archive;

/* Called as on_file(archive, 0, 0) at the start of each file record in writing, reading and
   unpacking: a sign of progress that carries no counts. Its result is ignored. */
typedef mox_bool (*mox_archive_hook)(struct mox_archive* self, uintptr_t unused_1, uintptr_t unused_2);

/* A folder of the catalogue. `path` is the folder on disc (or the path rebuilt on reading), `name`
   the name inside its parent, which is what the file stores. Children follow the held-child
   pattern. */
typedef struct mox_archive_folder {
    mox_object header;
    mox_astring path;
    mox_astring name;
    mox_list folders;
    mox_list files;
} mox_archive_folder;

/* A file of the catalogue: `path` is the source when writing and the target when unpacking;
   `offset` and `size` locate its bytes in the archive after reading or unpacking. */
typedef struct mox_archive_file {
    mox_object header;
    mox_astring path;
    mox_astring name;
    uint64_t offset;
    uint64_t size;
} mox_archive_file;

/* A catalogue of folders and files on disc, written into one file and unpacked from it. The
   bytes of the files are read only while writing. `on_file` is set directly by the caller. */
typedef struct mox_archive {
    mox_object header;
    mox_archive_info info;
    mox_archive_hook on_file;
    mox_list folders;
    mox_list files;
} mox_archive;

MOX_API mox_bool mox_archive_construct(mox_archive* self, void* owner);
MOX_API mox_bool mox_archive_destruct(mox_archive* self);
MOX_API mox_bool mox_archive_new(mox_archive** out, void* owner);
MOX_API mox_bool mox_archive_free(mox_archive** slot);
MOX_API mox_bool mox_archive_clear_all(mox_archive* self);
MOX_API mox_bool mox_archive_clear_folder(mox_archive* self);
MOX_API mox_bool mox_archive_clear_file(mox_archive* self);
MOX_API mox_bool mox_archive_create_folder(mox_archive* self, mox_archive_folder** out, uint8_t position);
MOX_API mox_bool mox_archive_create_file(mox_archive* self, mox_archive_file** out, uint8_t position);
/* Always false: success is told by the cleared slot. */
MOX_API mox_bool mox_archive_delete_folder(mox_archive* self, mox_archive_folder** slot);
MOX_API mox_bool mox_archive_delete_file(mox_archive* self, mox_archive_file** slot);
MOX_API mox_bool mox_archive_first_folder(mox_archive* self, mox_archive_folder** out);
MOX_API mox_bool mox_archive_last_folder(mox_archive* self, mox_archive_folder** out);
MOX_API mox_bool mox_archive_first_file(mox_archive* self, mox_archive_file** out);
MOX_API mox_bool mox_archive_last_file(mox_archive* self, mox_archive_file** out);
/* The catalogue of `folder`: `depth` 1 takes its files only, 2 also its folders and their files,
   and so on; 0 takes every level. */
MOX_API mox_bool mox_archive_from_folder(mox_archive* self, const char* folder, uint32_t depth);
MOX_API mox_bool mox_archive_read_from(mox_archive* self, const char* name);
/* Catalogues an archive without unpacking it. A bad header closes `file`. Only archives whose file
   records carry an empty name before their real one are accepted, which the writer never makes:
   use mox_archive_decompress_from_file for its archives. */
MOX_API mox_bool mox_archive_read_from_file(mox_archive* self, mox_file* file);
/* Writes the archive into the named file; on failure the file is deleted. */
MOX_API mox_bool mox_archive_compress(mox_archive* self, const char* name);
/* Writes at the file's position and cuts the file behind what was written, in every case. */
MOX_API mox_bool mox_archive_compress_to_file(mox_archive* self, mox_file* file);
MOX_API mox_bool mox_archive_decompress(mox_archive* self, const char* name, const char* folder);
/* Unpacks under `folder`, making folders as needed. Existing files are written over from their
   start and keep whatever lies behind the new bytes. */
MOX_API mox_bool mox_archive_decompress_from_file(mox_archive* self, mox_file* file, const char* folder);

MOX_API mox_bool mox_archive_folder_construct(mox_archive_folder* self, void* owner);
MOX_API mox_bool mox_archive_folder_destruct(mox_archive_folder* self);
MOX_API mox_bool mox_archive_folder_new(mox_archive_folder** out, void* owner);
MOX_API mox_bool mox_archive_folder_free(mox_archive_folder** slot);
MOX_API mox_bool mox_archive_folder_clear_all(mox_archive_folder* self);
MOX_API mox_bool mox_archive_folder_clear_folder(mox_archive_folder* self);
MOX_API mox_bool mox_archive_folder_clear_file(mox_archive_folder* self);
MOX_API mox_bool mox_archive_folder_create_folder(mox_archive_folder* self, mox_archive_folder** out,
                                                  uint8_t position);
MOX_API mox_bool mox_archive_folder_create_file(mox_archive_folder* self, mox_archive_file** out,
                                                uint8_t position);
/* Always false: success is told by the cleared slot. */
MOX_API mox_bool mox_archive_folder_delete_folder(mox_archive_folder* self, mox_archive_folder** slot);
MOX_API mox_bool mox_archive_folder_delete_file(mox_archive_folder* self, mox_archive_file** slot);
MOX_API mox_bool mox_archive_folder_first_folder(mox_archive_folder* self, mox_archive_folder** out);
MOX_API mox_bool mox_archive_folder_last_folder(mox_archive_folder* self, mox_archive_folder** out);
MOX_API mox_bool mox_archive_folder_first_file(mox_archive_folder* self, mox_archive_file** out);
MOX_API mox_bool mox_archive_folder_last_file(mox_archive_folder* self, mox_archive_file** out);
MOX_API mox_bool mox_archive_folder_next(mox_archive_folder* self, mox_archive_folder** out);
MOX_API mox_bool mox_archive_folder_prev(mox_archive_folder* self, mox_archive_folder** out);

MOX_API mox_bool mox_archive_file_construct(mox_archive_file* self, void* owner);
MOX_API mox_bool mox_archive_file_destruct(mox_archive_file* self);
MOX_API mox_bool mox_archive_file_new(mox_archive_file** out, void* owner);
MOX_API mox_bool mox_archive_file_free(mox_archive_file** slot);
MOX_API mox_bool mox_archive_file_next(mox_archive_file* self, mox_archive_file** out);
MOX_API mox_bool mox_archive_file_prev(mox_archive_file* self, mox_archive_file** out);

MOX_END_DECLS

#endif
