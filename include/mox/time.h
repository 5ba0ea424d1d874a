/* Calendar time, Julian Dates and moon phases. None of these entries posts: bad input gives 0, 0.0
   or false. */
#ifndef MOX_TIME_H
#define MOX_TIME_H

#include <mox/base.h>

MOX_BEGIN_DECLS

/* ---- Calendar time ------------------------------------------------------------------------------ */

/* A mox_time counts days from 30 December 1899 (day 0), proleptic Gregorian, years 1 to 9999. Days
   before day 0 are stored as 32-bit unsigned day numbers. Values made from fields are whole days:
   the time of day is divided away in integers. */

MOX_API mox_bool mox_is_leap_year(uint32_t year);
/* 0 for a year outside 1 to 9999 or a month outside 1 to 12. */
MOX_API int32_t mox_day_of_month(int32_t year, uint32_t month);
/* Puts a two-digit year into the century of the system clock's year, pivoting at 50. */
MOX_API uint32_t mox_normalize_short_year(uint32_t short_year);
/* 0.0 on a bad field; upper bounds are inclusive (24:60:60.1000). */
MOX_API mox_time mox_time_code(uint32_t year, int32_t month, uint32_t day, uint32_t hour, uint32_t minute,
                               uint32_t second, uint32_t milisecond);
MOX_API mox_time mox_time_code_date(int32_t year, int32_t month, uint32_t day);
/* 0.0 for every time of day under 24 hours, 1.0 from 24:00:00.000 on. */
MOX_API mox_time mox_time_code_time(uint32_t hour, uint32_t minute, uint32_t second, uint32_t milisecond);
/* Week day 1 (Sunday) to 7 (Saturday); day of the year from 0. Every pointer may be null. */
MOX_API void mox_time_decode(mox_time time, uint32_t* day_of_year, uint32_t* day_of_week, uint32_t* year,
                             uint32_t* month, uint32_t* day, uint32_t* hour, uint32_t* minute,
                             uint32_t* second, uint32_t* milisecond);
MOX_API void mox_time_decode_date(mox_time time, uint32_t* year, uint32_t* month, uint32_t* day);
MOX_API void mox_time_decode_time(mox_time time, uint32_t* hour, uint32_t* minute, uint32_t* second,
                                  uint32_t* milisecond);
/* Adds whole days only: unit 0 days, 1 hours, 2 minutes, 3 seconds, 4 miliseconds; other units
   change nothing. */
MOX_API mox_time mox_time_modify(mox_time time, uint32_t unit, uint32_t amount);
/* The milliseconds of the day, as a float. */
MOX_API double mox_time_trunc_date(mox_time time);
/* The whole days. */
MOX_API mox_time mox_time_trunc_time(mox_time time);
MOX_API int64_t mox_time_to_unixtime(mox_time time);
/* A whole day: the seconds of the day are dropped. */
MOX_API mox_time mox_time_from_unixtime(uint64_t seconds);
/* Placeholders $y $ys $m $d $dy $w $h $hs $n $s $i $p; "$$" writes "$". */
MOX_API mox_bool mox_time_to_string(mox_time time, mox_astring* out, const char* template_text);
/* Always 0.0: the fields are never read from the text. */
MOX_API mox_time mox_time_from_string(const char* text, const char* template_text);
/* Today's whole day number on the local clock. */
MOX_API mox_time mox_time_get_system(void);
/* Sets the local clock; false where the process may not. */
MOX_API mox_bool mox_time_set_system(mox_time time);
/* Milliseconds since the system started, wrapping at 32 bits. */
MOX_API uint32_t mox_get_tick(void);
MOX_API uint32_t mox_get_system_year(void);
MOX_API uint32_t mox_get_system_month(void);
MOX_API uint32_t mox_get_system_day(void);
MOX_API uint32_t mox_get_system_hour(void);
MOX_API uint32_t mox_get_system_minute(void);
MOX_API uint32_t mox_get_system_second(void);
MOX_API uint32_t mox_get_system_milisecond(void);

/* ---- Julian time -------------------------------------------------------------------------------- */

/* Julian Dates, with the day starting at noon, over the proleptic Gregorian calendar. */

MOX_API double mox_jtime_code_date(uint32_t year, uint32_t month, uint32_t day);
/* (hour - 12) / 24 + minute / 1440 + second / 86400; a negative field counts as 2^32 more. */
MOX_API double mox_jtime_code_time(int32_t hour, int32_t minute, int32_t second);
/* Note the order: the day comes before the month here. */
MOX_API double mox_jtime_code(uint32_t year, uint32_t day, uint32_t month, int32_t hour, int32_t minute,
                              int32_t second);
MOX_API void mox_jtime_decode_date(double date, uint32_t* year, uint32_t* month, uint32_t* day);
/* Seconds truncate. */
MOX_API void mox_jtime_decode_time(double date, uint32_t* hour, uint32_t* minute, uint32_t* second);
MOX_API void mox_jtime_decode(double date, uint32_t* year, uint32_t* month, uint32_t* day, uint32_t* hour,
                              uint32_t* minute, uint32_t* second);

/* ---- Moon phases -------------------------------------------------------------------------------- */

/* The eccentric anomaly in radians, for a mean anomaly in degrees. */
MOX_API double mox_astro_kepler(double mean_anomaly, double eccentricity);
/* The Julian Date of a phase (0 new, 0.25 first quarter, 0.5 full, 0.75 last quarter) of lunation
   `k`. Any other phase gives the mean date and false. */
MOX_API mox_bool mox_astro_moon_true_phase(double k, double phase, double* date);
/* Writes 1 / step + 1 dates (step in the range above 0 up to 1): the new moon at or before
   `date` - 0.5, the phases a step apart, and the next new moon. False, with nothing written, for a
   null array, a step outside that range or a date that is no finite number. */
MOX_API mox_bool mox_astro_moon_phase_hunt(double date, double step, double* dates);
MOX_API void mox_astro_moon_phase(double date, double* illuminated, double* age, double* moon_distance,
                                  double* moon_angular_diameter, double* sun_distance,
                                  double* sun_angular_diameter);

MOX_END_DECLS

#endif
