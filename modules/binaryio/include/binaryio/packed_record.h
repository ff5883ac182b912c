#pragma once

#include <boost/preprocessor/seq/for_each.hpp>
#include <boost/preprocessor/stringize.hpp>
#include <boost/preprocessor/tuple/elem.hpp>
#include <boost/preprocessor/variadic/to_seq.hpp>
#include <cstddef>
#include <type_traits>

/// KVAN_PACKED_RECORD(Record, size, (field, offset), ...)
///
/// Holds a record that is read or written by copying its bytes to the layout of its format: its bytes in all, and the
/// offset of every field that is used, as numbers. Two fields that change places, one that grows, and a record that is
/// not packed do not compile. Stands in the namespace of the record, after it; bytes that nobody reads need no entry.
///
///     struct ScanHead {
///         std::uint32_t size;      //  0  bytes of the block
///         std::uint8_t unread4[4]; //  4
///         std::uint16_t type;      //  8
///         std::uint16_t version;   // 10
///     };
///     KVAN_PACKED_RECORD(ScanHead, 12, (size, 0), (type, 8), (version, 10));
#define KVAN_PACKED_RECORD(Record, bytes, ...)                                                                   \
    static_assert(std::is_trivially_copyable_v<Record> && alignof(Record) == 1, #Record " is no packed record"); \
    static_assert(sizeof(Record) == (bytes), #Record " has another size than its format");                       \
    BOOST_PP_SEQ_FOR_EACH(KVAN_PACKED_FIELD, Record, BOOST_PP_VARIADIC_TO_SEQ(__VA_ARGS__))                      \
    static_assert(true)

/// One field of `KVAN_PACKED_RECORD`; not for use elsewhere.
#define KVAN_PACKED_FIELD(repetition, Record, entry)                                                        \
    static_assert(offsetof(Record, BOOST_PP_TUPLE_ELEM(0, entry)) == BOOST_PP_TUPLE_ELEM(1, entry), #Record \
                  "." BOOST_PP_STRINGIZE(BOOST_PP_TUPLE_ELEM(0, entry)) " has another offset than in its format");
