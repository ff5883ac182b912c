/**
 * libqsf2sql: reads the raw data of a mass-spectrometry run.
 *
 * An analysis is a directory with the native files analysis.qsf, analysis.qsf_idx and analysis.qsf_xtr. The library
 * gives two things: an SQLite cache that describes every spectrum, generated once and read with ordinary SQL, and
 * numeric arrays by 64-bit Id. The Ids stand in the table Spectra of the cache.
 *
 * A typical caller:
 *   1. qsf2sql_get_sqlite_cache_filename_v2 gives the path of the cache; select array Ids from it with SQLite;
 *   2. qsf2sql_array_open_storage opens the analysis for reading arrays;
 *   3. for each Id: qsf2sql_array_get_num_elements, make room, one of the read functions;
 *   4. qsf2sql_array_close_storage.
 * After a result of failure, qsf2sql_get_last_error_string gives the reason, on the thread that saw the failure.
 *
 * Strings are UTF-8 and end with a zero byte, in both directions. No function keeps a pointer that it was given, and
 * none gives out memory that the caller would have to free.
 *
 * Handles are 64-bit numbers on every platform. One that is closed, or that never was one, is undefined and is not
 * detected.
 *
 * Threads: a handle may be used by one thread at a time; distinct handles, also on one analysis, at the same time.
 * No function throws.
 *
 * Fork: a handle belongs to the process that opened it. A child neither reads through it nor closes it, which would
 * remove a temporary cache that the parent still uses; it opens its own, and may call every function. A child that
 * converts long m/z arrays calls qsf2sql_set_num_threads(1) before: where the parent has converted on several threads,
 * a runtime such as GNU OpenMP waits forever for threads that only the parent has.
 *
 * All ten functions are there since version 1.0; a function that comes later names its version.
 */
#ifndef IO_QSF2SQL_QSF2SQL_H
#define IO_QSF2SQL_QSF2SQL_H

#include <stdint.h>

#if defined(_WIN32)
#if defined(QSF2SQL_BUILDING)
#define QSF2SQL_API __declspec(dllexport)
#else
#define QSF2SQL_API __declspec(dllimport)
#endif
#else
#define QSF2SQL_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Opens an analysis for reading arrays. Makes its cache first if there is none that fits; this takes a scan of the
 * three native files. If the directory may not be written, the cache is made in the system's temporary directory and
 * removed when the handle is closed.
 *
 * @param raw_calibration  not 0: m/z comes from the calibration stored at acquisition; 0: from a re-calibration, if the
 *                         analysis carries one that fits. A damaged one is a failure, since its m/z would be missed.
 * @param path             the main file (".../analysis.qsf"), not the directory. Not NULL.
 * @return the handle, to be closed with qsf2sql_array_close_storage; 0 on failure.
 */
QSF2SQL_API uint64_t qsf2sql_array_open_storage(int raw_calibration, const char* path);

/** Closes a handle and frees what belongs to it. 0 is accepted and does nothing. */
QSF2SQL_API void qsf2sql_array_close_storage(uint64_t handle);

/**
 * Number of elements of an array.
 *
 * @param id         an Id from the table Spectra.
 * @param out_count  receives the number; 0 if the block that the Id names does not have this component. Untouched on
 *                   failure. Not NULL.
 * @return 1, or 0 on failure.
 */
QSF2SQL_API int qsf2sql_array_get_num_elements(uint64_t handle, uint64_t id, uint64_t* out_count);

/**
 * Reads an array as doubles. Works for every Id, whatever the stored element type.
 *
 * m/z arrays (LineMzId, ProfileMzId) are in Th and computed on each call. Line indices (LineIndexId) and their widths
 * are fractional positions in the raw spectrum; intensities are in the units of the instrument's detector.
 *
 * @param out  room for as many elements as qsf2sql_array_get_num_elements gives for this Id. Untouched on failure, and
 *             if the block does not have this component, which counts as success.
 * @return 1, or 0 on failure.
 */
QSF2SQL_API int qsf2sql_array_read_double(uint64_t handle, uint64_t id, double* out);

/** The same as floats: doubles and 32-bit integers are rounded to the nearest float. */
QSF2SQL_API int qsf2sql_array_read_float(uint64_t handle, uint64_t id, float* out);

/**
 * The same as unsigned 32-bit integers: fractions are cut toward zero; values outside the range wrap modulo 2^32, and
 * what does not fit a signed 64-bit integer becomes 0.
 */
QSF2SQL_API int qsf2sql_array_read_uint32(uint64_t handle, uint64_t id, uint32_t* out);

/**
 * Text of the last failure on the calling thread, "<no error>" if there was none. A later success does not clear it.
 *
 * @param buffer  receives as much of the text as fits, always with a terminator; a text that is too long is cut by
 *                bytes, also within a UTF-8 sequence. To ask for the size it may be NULL if size is 0; it is untouched
 *                then.
 * @param size    bytes at buffer.
 * @return bytes that the whole text needs, terminator included, whatever size was. A result above size means that the
 *         text was cut.
 */
QSF2SQL_API uint32_t qsf2sql_get_last_error_string(char* buffer, uint32_t size);

/** qsf2sql_get_sqlite_cache_filename_v2 with all_variables = 0. */
QSF2SQL_API uint32_t qsf2sql_get_sqlite_cache_filename(char* buffer, uint32_t size, const char* path);

/**
 * Path of an SQLite cache that fits the analysis. Makes the cache if there is none that fits.
 *
 * If the analysis directory may not be written, each call makes a new cache in the system's temporary directory, which
 * is the caller's to remove.
 *
 * @param buffer         receives the path and its terminator, if they fit; otherwise untouched. May be NULL if size is
 *                       0, to ask for the size; this makes the cache as well.
 * @param size           bytes at buffer.
 * @param path           the main file (".../analysis.qsf"). Not NULL.
 * @param all_variables  not 0: the cache must hold all acquisition variables; 0: the minimal set is enough.
 * @return size itself if the path was written; otherwise the bytes that it needs, terminator included, which are
 *         more than size; 0 on failure.
 */
QSF2SQL_API uint32_t qsf2sql_get_sqlite_cache_filename_v2(char* buffer, uint32_t size, const char* path,
                                                          int all_variables);

/**
 * Number of threads that the calling thread's m/z conversions of long arrays may use from now on. This is the OpenMP
 * setting of that thread (omp_set_num_threads), which holds for the host's own parallel regions on it, too, and for no
 * other thread. Without a call it is that of the OpenMP runtime, such as the environment's OMP_NUM_THREADS. The results
 * do not depend on it.
 *
 * @param count  less than 1 counts as 1.
 */
QSF2SQL_API void qsf2sql_set_num_threads(int count);

#ifdef __cplusplus
}
#endif

#endif
