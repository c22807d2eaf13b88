/// \file kem/c.h
/// Datasets and records for C and for all languages that call C.
///
/// \code
///   kem_error error;
///   kem_dataset* scan = kem_open("scan.DSC", 1, &error);
///   if (!scan) { fprintf(stderr, "%s\n", error.sentence); return 1; }
///   const double first = kem_axis_at(scan, 0, 0);
///   kem_record* record = kem_to_record(scan, KEM_REAL, &error);
///   const double width[] = {9};
///   kem_record* smooth = kem_apply(record, "smooth", width, 1, NULL, &error);
/// \endcode
///
/// Handles are opaque, each is freed by its own function, and null is freed too. What fails returns null, NaN or a
/// code other than KEM_OK and fills the error, unless that is null. Texts are UTF-8 and live as long as their
/// handle, which never changes: any number of threads may read it. Nothing is global and no exception passes. An
/// index beyond the count gives an empty text, 0 or NaN.
#ifndef KEM_C_H
#define KEM_C_H

#include <stddef.h>
#include <stdint.h>

#include "kem/export.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---------------------------------------------------------------- versions and errors */

enum { KEM_C_VERSION = 1 };

/// What kem_c_version gives is at least KEM_C_VERSION where the library has all that this header declares.
KEM_API int32_t kem_c_version(void);
/// The version of the library, such as "0.1.0".
KEM_API const char* kem_version(void);

typedef enum kem_code {
  KEM_OK,
  KEM_NOT_FOUND,
  KEM_PERMISSION_DENIED,
  KEM_READ_FAILED,
  KEM_UNKNOWN_FORMAT, /**< nothing recognises the file */
  KEM_NOT_READABLE,   /**< recognised, but kem does not read this kind of it */
  KEM_DAMAGED,
  KEM_NO_SUCH_ITEM,
  KEM_DOES_NOT_FIT, /**< a record cannot hold it, or an operation does not take it */
  KEM_WRITE_FAILED,
  KEM_OUT_OF_MEMORY,
  KEM_WRONG_ARGUMENT /**< null, or an operation that does not exist */
} kem_code;

/// Why something failed. Belongs to the caller.
typedef struct kem_error {
  int32_t code;        /**< a kem_code */
  char sentence[1020]; /**< cut where it is longer */
} kem_error;

/// Bytes of a kem_error, for bindings that write the structure down themselves.
KEM_API size_t kem_error_size(void);

/* ---------------------------------------------------------------- datasets: all that a file says */

typedef struct kem_dataset kem_dataset;
typedef struct kem_items kem_items;

/// Opens one item of a file, counted from 1.
KEM_API kem_dataset* kem_open(const char* file, int32_t item, kem_error* error);
KEM_API void kem_dataset_free(kem_dataset* dataset);

/// The items of a file; the k-th name belongs to item k + 1.
KEM_API kem_items* kem_items_of(const char* file, kem_error* error);
KEM_API size_t kem_items_count(const kem_items* items);
KEM_API const char* kem_items_name(const kem_items* items, size_t k);
KEM_API void kem_items_free(kem_items* items);

typedef enum kem_text {
  KEM_TITLE,     /**< of the measurement */
  KEM_NAME,      /**< of the values */
  KEM_UNIT,      /**< of the values */
  KEM_FORMAT,    /**< of the file */
  KEM_FILE,      /**< as it was opened */
  KEM_ITEM_NAME, /**< of the item */
} kem_text;
KEM_API const char* kem_dataset_text(const kem_dataset* dataset, kem_text which);
KEM_API int32_t kem_item(const kem_dataset* dataset);        ///< which one it is, from 1
KEM_API int32_t kem_item_count(const kem_dataset* dataset);  ///< of how many

/// How numbers are stored; complex values are pairs of them, the real part first.
typedef enum kem_type { KEM_U8, KEM_U16, KEM_U32, KEM_I8, KEM_I16, KEM_I32, KEM_F32, KEM_F64 } kem_type;
/// The values in C order, the last axis fastest: as many as the counts of the axes multiplied.
KEM_API const void* kem_values(const kem_dataset* dataset);
KEM_API size_t kem_value_count(const kem_dataset* dataset);
KEM_API kem_type kem_value_type(const kem_dataset* dataset);
KEM_API int32_t kem_is_complex(const kem_dataset* dataset);

/// Axes, the slowest first.
KEM_API size_t kem_rank(const kem_dataset* dataset);
KEM_API const char* kem_axis_name(const kem_dataset* dataset, size_t axis);
KEM_API const char* kem_axis_unit(const kem_dataset* dataset, size_t axis);
KEM_API size_t kem_axis_count(const kem_dataset* dataset, size_t axis);
KEM_API double kem_axis_at(const kem_dataset* dataset, size_t axis, size_t k);

/// Parameters in the order and spelling of the file.
KEM_API size_t kem_parameter_count(const kem_dataset* dataset);
KEM_API const char* kem_parameter_section(const kem_dataset* dataset, size_t k);
KEM_API const char* kem_parameter_key(const kem_dataset* dataset, size_t k);
KEM_API const char* kem_parameter_value(const kem_dataset* dataset, size_t k);
KEM_API const char* kem_parameter_unit(const kem_dataset* dataset, size_t k);
/// The number that the text is or begins with; NaN for none.
KEM_API double kem_parameter_number(const kem_dataset* dataset, size_t k);
/// The first parameter of a key, in any section; the count for none.
KEM_API size_t kem_parameter_find(const kem_dataset* dataset, const char* key);

typedef enum kem_severity { KEM_REMARK, KEM_DOUBTFUL, KEM_DAMAGE } kem_severity;
/// What the user should know.
KEM_API size_t kem_note_count(const kem_dataset* dataset);
KEM_API const char* kem_note_text(const kem_dataset* dataset, size_t k);
KEM_API kem_severity kem_note_severity(const kem_dataset* dataset, size_t k);

/* ---------------------------------------------------------------- records: curves and real grids to calculate with
 */

typedef struct kem_record kem_record;
typedef enum kem_part { KEM_REAL, KEM_IMAGINARY, KEM_MAGNITUDE, KEM_PHASE } kem_part;

KEM_API kem_record* kem_to_record(const kem_dataset* dataset, kem_part part, kem_error* error);
/// What hosts of kem.h receive of a file, quirks included.
KEM_API kem_record* kem_load(const char* file, int32_t item, kem_error* error);
/// A curve; x may be null and is 0, 1, 2, ... then.
KEM_API kem_record* kem_curve(const float* y, const float* x, size_t count, kem_error* error);
/// A grid of nx values for each of ny coordinates, the first y first.
KEM_API kem_record* kem_grid(const float* z, const float* x, size_t nx, const float* y, size_t ny,
                             kem_error* error);
KEM_API void kem_record_free(kem_record* record);

KEM_API int32_t kem_is_grid(const kem_record* record);
KEM_API size_t kem_count_x(const kem_record* record);  ///< points of a curve, or columns of a grid
KEM_API size_t kem_count_y(const kem_record* record);  ///< rows of a grid; 1 for a curve
/// Copies the coordinates of a record, or its values: count_y rows of count_x.
KEM_API int32_t kem_copy_x(const kem_record* record, float* to, kem_error* error);
KEM_API int32_t kem_copy_y(const kem_record* record, float* to, kem_error* error);  ///< of grids
KEM_API void kem_copy_values(const kem_record* record, float* to);

/// Operations by name: "smooth" with {9}, "+" with another record or with {0.5}. kem_operations lists what there
/// is.
KEM_API kem_record* kem_apply(const kem_record* record, const char* operation, const double* arguments,
                              size_t count, const kem_record* other, kem_error* error);
/// Numbers by name, "integral" with {780, 825}; NaN when it fails, and the error tells so.
KEM_API double kem_measure(const kem_record* record, const char* measure, const double* arguments, size_t count,
                           kem_error* error);
/// The k-th operation or measure with its arguments, "smooth width [axis]"; null behind the last. Those in brackets
/// may be left out, and another record takes the place of "[number]" and "record". An axis is 0 for X and 1 for Y.
KEM_API const char* kem_operations(size_t k);
KEM_API const char* kem_measures(size_t k);

/// Writes a record in the format of an extension such as ".dx"; of the file's own when that is null.
KEM_API int32_t kem_write(const kem_record* record, const char* file, const char* extension, kem_error* error);

#ifdef __cplusplus
}
#endif

#endif
