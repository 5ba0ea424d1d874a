/* Basic types and declaration macros shared by every header of the library. */
#ifndef MOX_BASE_H
#define MOX_BASE_H

#include <stddef.h>
#include <stdint.h>

#if defined(_WIN32)
#if defined(MOX_BUILD)
#define MOX_API __declspec(dllexport)
#else
#define MOX_API __declspec(dllimport)
#endif
#else
#define MOX_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
#define MOX_BEGIN_DECLS extern "C" {
#define MOX_END_DECLS }
#else
#define MOX_BEGIN_DECLS
#define MOX_END_DECLS
#endif

MOX_BEGIN_DECLS

/* The truth value most entries return: 0 is false, 1 is true. */
typedef uint8_t mox_bool;

/* A narrow string: one pointer word holding a terminated heap block, or null. */
typedef char* mox_astring;
/* A wide string: the same with 16-bit units on every platform. */
typedef uint16_t* mox_wstring;

/* Days since 30 December 1899, with the time of day as the fraction. */
typedef double mox_time;

/* Signed 16.16 fixed point. */
typedef int32_t mox_f32;

/* An open file; its fields are declared with the file entries. */
typedef struct mox_file mox_file;

/* The header that stands first in every class record. `user` belongs to the application and may
   carry a pointer, so it is a pointer-sized word; on a 32-bit target the header is 16 bytes. */
typedef struct mox_object {
    void* owner;
    uint32_t class_id;
    uint32_t flags;
    uintptr_t user;
} mox_object;

MOX_END_DECLS

#endif
