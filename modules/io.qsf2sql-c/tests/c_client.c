/* A caller in C, as one would write it: reads the intensities of one array. */
#include <io/qsf2sql/qsf2sql.h>

#include <stddef.h>

/* Gives the sum of the array's elements, -1.0 on failure. */
double sum_of_array(const char* path, uint64_t id);

double sum_of_array(const char* path, uint64_t id) {
    double elements[16];
    double sum = 0.0;
    uint64_t count = 0;
    uint64_t index;
    const uint64_t storage = qsf2sql_array_open_storage(1, path);
    if (storage == 0) {
        return -1.0;
    }
    if (!qsf2sql_array_get_num_elements(storage, id, &count) || count > sizeof elements / sizeof elements[0] ||
        !qsf2sql_array_read_double(storage, id, elements)) {
        sum = -1.0;
    } else {
        for (index = 0; index < count; ++index) {
            sum += elements[index];
        }
    }
    qsf2sql_array_close_storage(storage);
    return sum;
}
