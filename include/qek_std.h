/* SPDX-License-Identifier: MIT
 * SPDX-FileCopyrightText: 2026 The qek_std authors
 *
 * qek_std.h - the one public header of qek_std, and its manual.
 */
#ifndef QEK_STD_H
#define QEK_STD_H

#include <stddef.h>
#include <stdint.h>

/**
 * @file qek_std.h
 * @brief Containers and text primitives over records that the caller owns.
 */

/**
 * @mainpage Manual
 *
 * qek_std is 624 plain functions: 622 named `qek_<family>_<operation>`, and qek_malloc() and
 * qek_free(). A family is one record type and the functions that take a pointer to it. There is no
 * global state, no thread, no lock, no file, no output; the library needs the C runtime and nothing
 * else.
 *
 * @section manual_records Records
 * A record is a plain structure with public fields. The caller places it (on the stack, in static
 * memory, inside another structure), calls the family's `init`, uses it, and calls `term`. `init`
 * and `clone` do not free what a record held before; calling them on a live record leaks. Several
 * fields are set by writing them (`reversed`, `ignore_case`, `key_type`, `item_size`, every
 * borrowed pool); the text of each record says which. Do not copy a record by assignment: `swap`
 * and `clone` move and duplicate. The record pointer is never tested; a null record faults.
 *
 * @section manual_results How calls report
 * No call raises, logs or prints, and there are no error codes. A result takes one of these forms,
 * and the text of each function says which:
 *
 * | form            | meaning                                                                    |
 * |-----------------|----------------------------------------------------------------------------|
 * | flag            | 1 for success or yes, 0 for failure or no                                  |
 * | index           | a position from 0, or -1 for none                                          |
 * | value or zero   | the stored word, or 0 where there is none                                  |
 * | pointer or null | an item, entry, node or position, or null where there is none              |
 * | cursor          | the value read; the position passed by pointer moves on                    |
 * | output argument | written through a pointer, zeroed where there is nothing to write          |
 * | all ones        | every bit set: qek_stream_inflate_lword(), and text `get_at` past the end  |
 * | ordering        | negative, zero or positive                                                 |
 * | nothing         | the call takes effect, or silently does not and leaves the record as it was|
 *
 * Growth of a contiguous buffer is checked: when memory runs out the record stays as it was, bit
 * for bit. Every other allocation (pools and their tables, pool records made by an `init`, copies
 * made by `qek_str_dup` and `qek_char_copy`, the working block of `qek_arrayt_qsort`) is not
 * checked, and exhaustion faults.
 *
 * @section manual_lengths Lengths and null
 * Counts, lengths, indices and capacities are `int32_t`. Where a key or a text travels with a
 * length, any negative length means that it is NUL-terminated and is to be measured; a null text
 * then measures as 0 unless its function says otherwise. Functions that leave this rule say so.
 *
 * @section manual_words Words
 * Containers store a `qek_word` and do not interpret it. It is as wide as a pointer, so a pointer
 * passes through it by a plain cast in both directions.
 *
 * @section manual_pools Pools
 * A container takes its nodes, entries and value items from a `qek_pool`. An owned pool is made by
 * `init` on request and is emptied or ended as a whole; a borrowed pool is a pointer that the
 * caller writes into the record, and it gets items back one at a time. A pool for value items
 * needs its `item_size` written by the caller before the first operation that takes an item.
 *
 * @section manual_threads Threads
 * A record is used by one thread at a time. Calls on different records may run at the same time.
 * Two records that share a borrowed pool count as one record for this rule.
 *
 * @section manual_families Families
 * | for                  | families                                                              |
 * |----------------------|-----------------------------------------------------------------------|
 * | bytes                | @ref heap, @ref mem, @ref stream, @ref bits                           |
 * | texts of one's own   | @ref string, @ref wchar                                               |
 * | texts of others      | @ref str, @ref char, @ref stringx                                     |
 * | items                | @ref pool, @ref callbacks                                             |
 * | words in a row       | @ref arrays, @ref arrayt                                              |
 * | pairs in a row       | @ref array, @ref arrayd, @ref arrayx                                  |
 * | look-up by key       | @ref hash, @ref hashd, @ref hashx, @ref hasht                         |
 * | keys in order        | @ref btree, @ref btreed, @ref btreex                                  |
 * | lists                | @ref list, @ref lists, @ref listx                                     |
 * | trees                | @ref tree, @ref bitree                                                |
 */

#if defined(QEK_STD_STATIC)
#define QEK_API
#elif defined(_WIN32)
#if defined(QEK_STD_BUILD)
#define QEK_API __declspec(dllexport)
#else
#define QEK_API __declspec(dllimport)
#endif
#elif defined(__GNUC__)
#define QEK_API __attribute__((visibility("default")))
#else
#define QEK_API
#endif

/**
 * @name Version
 * Version of this header and of the library; the build checks that numbers and text agree.
 * @{
 */
/** Goes up with a break of compatibility, from 1 on. */
#define QEK_STD_VERSION_MAJOR 0
/** Goes up with new functions, and while the first number is 0 also with a break. */
#define QEK_STD_VERSION_MINOR 1
/** Goes up with repairs. */
#define QEK_STD_VERSION_PATCH 0
/** The three numbers as a text. */
#define QEK_STD_VERSION "0.1.0"
/** @} */

#ifdef __cplusplus
extern "C" {
#endif

/** A stored word: a number or a pointer. As wide as a pointer: 32 bits in a 32-bit build. */
typedef uintptr_t qek_word;

/* ============================================================================================== */
/**
 * @defgroup heap Heap
 * The allocator behind every block that the library makes or hands out.
 *
 * `qek_malloc` and `qek_free` are the C runtime's `malloc` and `free`; they exist so that a program
 * whose own modules use another allocator can release a block that the library handed out
 * (`qek_str_dup`) or prepare one for it. Do not mix another allocator with these blocks.
 *
 * Cost: that of the C runtime's heap.
 *
 * Take another family when: many items of one size are wanted (use @ref pool), or the block should
 * grow (use @ref stream).
 *
 * @code{.c}
 * static void example_heap(void)
 * {
 *     uint8_t *copy = NULL;
 *     qek_str_dup(&copy, "kept", -1);
 *     assert(copy[3] == 't' && copy[4] == 0);
 *     qek_free(copy);
 * }
 * @endcode
 * @{
 */

/**
 * Takes a block from the C runtime's heap.
 * @param size  bytes wanted
 * @return the block, or null when the heap is exhausted; release it with qek_free() or `free`
 */
QEK_API void *qek_malloc(uint32_t size);

/**
 * Gives a block back to the C runtime's heap.
 * @param block  a block from qek_malloc(), `malloc` or qek_str_dup(); null is ignored
 */
QEK_API void qek_free(void *block);

/** @} */

/* ============================================================================================== */
/**
 * @defgroup mem Memory ranges (mem)
 * Counted byte ranges on the caller's memory: clear, copy, move, search, compare.
 *
 * Two of these functions decide the order of every byte-string key in the library: qek_mem_cmp()
 * and qek_mem_icmp(). No function here keeps a state, allocates, or tests a pointer, and a negative
 * size is never measured: the searches and compares take it as an empty range, the other calls do
 * not guard against it.
 *
 * Cost: linear in the bytes looked at; qek_mem_str() may look at each byte of the needle for each
 * byte of the hay.
 *
 * Take another family when: the text ends in a NUL and its length is not known (use @ref str), or
 * the bytes should be owned and grow (use @ref stream).
 *
 * @code{.c}
 * static void example_mem(void)
 * {
 *     uint8_t bytes[8] = {'a', 'b', 'c', 'd', 0, 0, 0, 0};
 *     qek_mem_move(bytes + 4, bytes, 4);
 *     assert(memcmp(bytes, "\0\0\0\0abcd", 8) == 0);
 *     assert(qek_mem_chr(bytes, 8, 'c') == 6 && qek_mem_rchr(bytes, 4, 'c') == -1);
 *     assert(qek_mem_str(bytes, 8, "cd", 2) == 6);
 *     assert(qek_mem_cmp("abc", 3, "abcdef", 6) == -3);
 *     assert(qek_mem_cmp("\xFF", 1, "\x01", 1) == 254);
 *     assert(qek_mem_icmp("KEY", 3, "key", 3) == 0);
 * }
 * @endcode
 * @{
 */

/**
 * Sets bytes to 0.
 * @param dest  the range
 * @param size  bytes to clear; 0 does nothing; a negative size is not guarded, it runs on until the
 *              process faults
 */
QEK_API void qek_mem_zero(void *dest, int32_t size);

/**
 * Copies in ascending address order, four bytes at a time and then the remaining 0 to 3, whichever
 * range lies higher. A destination that overlaps above the source thus repeats bytes already
 * written; this is intended. For overlapping ranges use the runtime's `memmove`.
 * @param dest  where to copy to
 * @param src   where to copy from
 * @param size  bytes to copy, not negative; not tested
 */
QEK_API void qek_mem_copy(void *dest, const void *src, int32_t size);

/**
 * Moves in the strict sense: copies, then sets to 0 the source bytes that the destination does not
 * cover. Two cases leave this rule, and are intended:
 * - With `dest` and `src` less than 4 bytes apart (also equal) the call is the runtime's `memmove`,
 *   and nothing is cleared.
 * - Else the copy is that of qek_mem_copy(), so that a `dest` that overlaps above `src` gets the
 *   first `dest - src` bytes repeated.
 * @param dest  where to move to
 * @param src   where to move from; cleared where not covered, so it must be writable
 * @param size  bytes to move, not negative; not tested
 */
QEK_API void qek_mem_move(void *dest, void *src, int32_t size);

/**
 * Finds the first byte of a value.
 * @param bytes  the range
 * @param size   bytes in the range
 * @param ch     the byte to find; 0 is found like any other
 * @return its index; -1 if there is none or `size` is 0 or less
 */
QEK_API int32_t qek_mem_chr(const void *bytes, int32_t size, uint8_t ch);

/**
 * Finds the last byte of a value.
 * @param bytes  the range
 * @param size   bytes in the range
 * @param ch     the byte to find; 0 is found like any other
 * @return its index; -1 if there is none or `size` is 0 or less
 */
QEK_API int32_t qek_mem_rchr(const void *bytes, int32_t size, uint8_t ch);

/**
 * Finds the first occurrence of one range in another. An empty needle has no case of its own: it
 * matches at the first index from 0 to `hay_size` inclusive whose byte equals `needle[0]`, so that
 * one byte of the needle and one byte behind the hay are read. This is intended.
 * @param hay          the range searched
 * @param hay_size     bytes in it
 * @param needle       the bytes to find; at least one must be readable
 * @param needle_size  bytes in the needle
 * @return the index of the match in `hay`; -1 if there is none or `hay_size` is below `needle_size`
 */
QEK_API int32_t qek_mem_str(const void *hay, int32_t hay_size, const void *needle,
                            int32_t needle_size);

/**
 * Orders two ranges by their bytes as unsigned values, then by size: a range that is a prefix of
 * the other comes first. The result is a difference and not only a sign.
 * @param a       the left range
 * @param a_size  bytes in it; 0 or less skips the bytes
 * @param b       the right range
 * @param b_size  bytes in it; 0 or less skips the bytes
 * @return at the first difference the byte of `a` minus the byte of `b` (-255 to 255); if there is
 *         none, `a_size - b_size`
 */
QEK_API int32_t qek_mem_cmp(const void *a, int32_t a_size, const void *b, int32_t b_size);

/**
 * As qek_mem_cmp(), with each byte passed as an unsigned value through the runtime's `tolower`.
 * @param a       the left range
 * @param a_size  bytes in it; 0 or less skips the bytes
 * @param b       the right range
 * @param b_size  bytes in it; 0 or less skips the bytes
 * @return at the first difference the lowered byte of `a` minus the lowered byte of `b`; if there
 *         is none, `a_size - b_size`
 */
QEK_API int32_t qek_mem_icmp(const void *a, int32_t a_size, const void *b, int32_t b_size);

/** @} */

/* ============================================================================================== */
/**
 * @defgroup str Terminated text (str)
 * NUL-terminated text on the caller's memory: duplicate, trim, search, compare, with null pointers
 * allowed where the texts below say so.
 *
 * Cost: linear in the text; qek_str_dup() alone allocates.
 *
 * Take another family when: the length is known or the text may hold NUL bytes (use @ref mem), the
 * text is a slice of a longer one (use @ref char or @ref stringx), or it should be owned and edited
 * (use @ref string).
 *
 * @code{.c}
 * static void example_str(void)
 * {
 *     char text[] = "  ab \n";
 *     uint8_t *copy = NULL;
 *     qek_str_trim(text, (int32_t)strlen(text));
 *     assert(strcmp(text, "ab") == 0);
 *     qek_str_dup(&copy, text, -1);
 *     assert(qek_str_cmp(copy, "ab") == 0 && qek_str_icmp(copy, "AB") == 0);
 *     assert(qek_str_cmp(NULL, "") == -1);
 *     assert(qek_str_rchr("a/b/c", '/') == 3 && qek_str_str("a/b/c", "b/") == 2);
 *     qek_free(copy);
 * }
 * @endcode
 * @{
 */

/**
 * Replaces `*out` by a fresh copy of a text: a block of `size + 1` bytes that ends in a NUL. A NUL
 * among the first `size` bytes stops the copy, and the rest of the block is 0. The old `*out` is
 * freed before the copy is made, so `src` must not lie in it. Exhausted memory faults.
 * @param[in,out] out  null or a block from the library's heap, which is freed; gets the copy, which
 *                     the caller releases with qek_free(), or null if `src` is null
 * @param src          the text; may be null
 * @param size         bytes to copy; negative: measured
 */
QEK_API void qek_str_dup(uint8_t **out, const void *src, int32_t size);

/**
 * Strips blanks (the bytes 9, 10, 13 and 32) from both ends of a text, in place; at the rear end
 * NULs go too. A text of blanks only becomes empty. A NUL is written behind what is left if bytes
 * were stripped, and else nothing is written. Three rules are not what one might expect, and are
 * intended:
 * - A NUL as the first byte that is no blank ends the call with the text as it was.
 * - A `size` of 0 and every negative `size` empty the text, whatever it held: the length is not
 *   measured here, and callers pass the true one.
 * - A text with nothing to strip is not touched; it does not even get a terminator.
 * @param text  the text; not tested for null, and its first byte must be writable
 * @param size  bytes in the text, above 0
 */
QEK_API void qek_str_trim(void *text, int32_t size);

/**
 * Finds the first occurrence of a character.
 * @param text  the text
 * @param ch    the character; 0 finds the terminator
 * @return its index, for a `ch` of 0 the length of the text; -1 if there is none or `text` is null
 */
QEK_API int32_t qek_str_chr(const void *text, int8_t ch);

/**
 * Finds the last occurrence of a character.
 * @param text  the text
 * @param ch    the character; 0 finds the terminator
 * @return its index, for a `ch` of 0 the length of the text; -1 if there is none or `text` is null
 */
QEK_API int32_t qek_str_rchr(const void *text, int8_t ch);

/**
 * Finds the first occurrence of one text in another.
 * @param text    the text searched
 * @param needle  the text to find; an empty one is found at 0
 * @return its index; -1 if there is none or either pointer is null
 */
QEK_API int32_t qek_str_str(const void *text, const void *needle);

/**
 * Orders two texts by their bytes as unsigned values. Null is the lowest text: it equals null, and
 * comes before the empty text.
 * @param a  the left text; may be null
 * @param b  the right text; may be null
 * @return -1, 0 or 1
 */
QEK_API int32_t qek_str_cmp(const void *a, const void *b);

/**
 * Orders two texts by the runtime's comparison without regard to case. Null is the lowest text, as
 * in qek_str_cmp().
 * @param a  the left text; may be null
 * @param b  the right text; may be null
 * @return -1, 0 or 1 if a pointer is null; else what the runtime answers, of which only the sign
 *         carries meaning
 */
QEK_API int32_t qek_str_icmp(const void *a, const void *b);

/** @} */
/* ============================================================================================== */
/**
 * @defgroup pool Item pool (pool)
 * Fixed-size items in memory that never moves, with recycling.
 *
 * A pool takes memory in blocks of `items_per_block` items and hands out one item at a time. Freed
 * items stand on a stack beside the items, not in them: an item's bytes stay intact after it is
 * freed, any item size works, and live items can be told from freed ones. A pool can be copied
 * with its block layout, and a pointer into the original can be translated into the copy. Every
 * family with nodes, entries or value items rests on this one.
 *
 * Cost: qek_pool_new() and qek_pool_free() are constant time and allocate only when a block is
 * opened; qek_pool_get_addr() is logarithmic in blocks; qek_pool_clone() is linear in the memory
 * held. Memory goes back to the heap only as a whole, by qek_pool_empty().
 *
 * Take another family when: items differ in size or must go back to the heap one at a time (use
 * the heap), or when the items are bare words in one run (use @ref arrays).
 *
 * @code{.c}
 * static void example_pool(void)
 * {
 *     struct point { int x, y; } *a, *b;
 *     qek_pool pool;
 *     qek_pool_init(&pool);
 *     pool.item_size = (int32_t)sizeof(struct point);
 *     a = (struct point *)qek_pool_new(&pool);
 *     assert(a->x == 0 && a->y == 0);
 *     a->x = 7;
 *     qek_pool_free(&pool, a);
 *     b = (struct point *)qek_pool_new(&pool);
 *     assert(b == a && b->x == 7 && pool.live_count == 1);
 *     qek_pool_term(&pool);
 * }
 * @endcode
 * @{
 */

/** A growing table of blocks, filled from the front. */
typedef struct qek_pool_table {
    int32_t next_slot; /**< slot of the current (last used) block that comes next; -1: no block */
    int32_t used;      /**< blocks in use, the current one included */
    int32_t capacity;  /**< entries in `blocks`, a multiple of 4 */
    void **blocks;     /**< `capacity` block pointers, null for no block; null until needed */
} qek_pool_table;

/**
 * A pool of fixed-size items.
 *
 * `live_count` equals slots handed out from `items` minus entries on the `freed` stack. Block
 * memory never moves while the pool lives; only the tables of block pointers are reallocated.
 */
typedef struct qek_pool {
    int32_t item_size;       /**< bytes per item; the caller writes it after qek_pool_init() */
    int32_t items_per_block; /**< items per block; written, if at all, before the first item;
                                  raised to 16 at least */
    int32_t live_count;      /**< items handed out and not freed */
    qek_pool_table items;    /**< the item blocks, `items_per_block * item_size` bytes each */
    qek_pool_table freed;    /**< the stack of freed items, `items_per_block` pointers a block */
} qek_pool;

/** One element of the table that qek_pool_map() returns. */
typedef struct qek_pool_map_entry {
    int32_t block_index; /**< index of the block in `items.blocks` */
    void *block_base;    /**< address of the block */
} qek_pool_map_entry;

/** A walk over the live items of a pool. */
typedef struct qek_pool_iter {
    int32_t block;       /**< index of the block under the cursor */
    int32_t slot;        /**< slot under the cursor in that block; -1 before the first step */
    void **freed_sorted; /**< the pool's freed items, ascending; null if there were none */
    qek_pool *pool;      /**< the pool walked */
} qek_pool_iter;

/**
 * Makes an empty pool: all fields 0, both `next_slot` fields -1. Allocates nothing.
 * @param pool  the record; what it held is not looked at
 */
QEK_API void qek_pool_init(qek_pool *pool);

/**
 * Frees all memory of the pool; the same operation as qek_pool_empty().
 * @param pool  the pool; stays usable, with its `item_size` and `items_per_block`
 */
QEK_API void qek_pool_term(qek_pool *pool);

/**
 * Frees all blocks and both tables. Every item dies. `item_size` and `items_per_block` survive, and
 * the pool can be used again at once. Linear in blocks.
 * @param pool  the pool
 */
QEK_API void qek_pool_empty(qek_pool *pool);

/**
 * Hands out an item: the item freed last, with its bytes as they were when it was freed, else a
 * fresh one of zero bytes. The item stays where it is until it is freed or the pool emptied.
 * @param pool  the pool; `items_per_block` below 16 becomes 16
 * @return the item; null if `item_size` is 0, and for no other reason (exhausted memory faults)
 */
QEK_API void *qek_pool_new(qek_pool *pool);

/**
 * Takes an item back for reuse. Its bytes are not touched. The item is not tested: one that is not
 * of this pool, or that was freed already, is stored and handed out again later.
 * @param pool  the pool that the item came from
 * @param item  the item; null is ignored
 */
QEK_API void qek_pool_free(qek_pool *pool, void *item);

/**
 * Exchanges all fields of two pools in constant time. Items stay where they are, and now belong to
 * the other record.
 * @param first   one pool
 * @param second  the other
 */
QEK_API void qek_pool_swap(qek_pool *first, qek_pool *second);

/**
 * Makes an index of the item blocks, sorted by address, for qek_pool_get_addr(). It is a snapshot:
 * a block opened later is not in it.
 * @param pool  the pool
 * @return a table of `items.used` entries that the caller owns and releases with qek_pool_umap();
 *         null if the pool has never handed out an item since it was last empty
 */
QEK_API qek_pool_map_entry *qek_pool_map(const qek_pool *pool);

/**
 * Releases a table made by qek_pool_map().
 * @param map  the table; null is ignored
 */
QEK_API void qek_pool_umap(qek_pool_map_entry *map);

/**
 * Turns a pointer into a pool into a block index and a byte offset, by binary search. The block
 * taken is the one with the greatest base not above `item`; its end is not tested.
 * @param pool         the pool that `item` belongs to
 * @param map          a current qek_pool_map() of that pool
 * @param item         a pointer into an item block, or null
 * @param[out] offset  the byte offset in the block; left alone when the result is -1
 * @return the block index; -1 if `item` is null or lies below every block
 */
QEK_API int32_t qek_pool_get_addr(const qek_pool *pool, const qek_pool_map_entry *map,
                                  const void *item, uint32_t *offset);

/**
 * Turns a block index and a byte offset into a pointer, without a range test.
 * @param pool         the pool; it may be a clone of the one that qek_pool_get_addr() looked at
 * @param block_index  index of a block in use, or a negative number
 * @param offset       byte offset in the block
 * @return the address; null for a negative `block_index`
 */
QEK_API void *qek_pool_set_addr(const qek_pool *pool, int32_t block_index, uint32_t offset);

/**
 * Copies a pool, blocks and all, so that block index and offset mean the same item in both. The
 * stack of freed items is translated into the copy.
 * @param source  the pool to copy
 * @param map     a current qek_pool_map() of `source`; may be null if no item was ever freed
 * @param target  a freshly initialised pool; what it held is overwritten without being freed
 */
QEK_API void qek_pool_clone(const qek_pool *source, const qek_pool_map_entry *map,
                            qek_pool *target);

/**
 * Makes an iterator with a sorted snapshot of the freed items. Until it is released, neither
 * qek_pool_new() nor qek_pool_free() may be called on the pool. Costs a sort of the freed items.
 * @param pool  the pool to walk; must outlive the iterator
 * @return the iterator, to be released with qek_pool_iter_free(); start with qek_pool_iter_first()
 */
QEK_API qek_pool_iter *qek_pool_iter_new(const qek_pool *pool);

/**
 * Releases an iterator.
 * @param iter  the iterator, from qek_pool_iter_new()
 */
QEK_API void qek_pool_iter_free(qek_pool_iter *iter);

/**
 * Goes to the first live item, by block and slot: the order in which slots were first handed out.
 * May be called again to walk again.
 * @param iter  the iterator
 * @return the item, or null if none is live
 */
QEK_API void *qek_pool_iter_first(qek_pool_iter *iter);

/**
 * Goes to the next live item. Logarithmic in freed items for each slot passed.
 * @param iter  the iterator, after qek_pool_iter_first()
 * @return the item, or null at the end, however often it is asked
 */
QEK_API void *qek_pool_iter_next(qek_pool_iter *iter);

/** @} */

/* ============================================================================================== */
/**
 * @defgroup callbacks Shared callback types
 * The callback types that more than one family takes. A callback must not change the container
 * that calls it.
 * @{
 */

/** Prepares a new value item, or disposes of a value. */
typedef void (*qek_value_fn)(qek_word value);

/**
 * Completes the copy of one value item in a `clone`: translates what in it points into the
 * auxiliary pool. `aux_map` is the qek_pool_map() of `source_aux_pool`; it has a meaning only when
 * both auxiliary pools were given.
 */
typedef void (*qek_clone_fn)(qek_word aux_map, qek_word source_value, qek_pool *source_aux_pool,
                             qek_word target_value, qek_pool *target_aux_pool);

/** Orders a stored item against a key: positive if `item` sorts after the key, 0 if equal. */
typedef int32_t (*qek_compare_fn)(qek_word item, qek_word key, int32_t key_extra);

/** As qek_compare_fn, with the caller's context first. */
typedef int32_t (*qek_compare_x_fn)(void *context, qek_word item, qek_word key, int32_t key_extra);

/** Orders two values: positive if `left` sorts after `right`, 0 if equal. */
typedef int32_t (*qek_value_compare_fn)(qek_word left, qek_word right);

/** @} */

/* ============================================================================================== */
/**
 * @defgroup stream Byte stream (stream)
 * The growable byte buffer, and the serialised forms that are built in it.
 *
 * A stream is edited as a run of bytes, and written and read as a sequence of fields at a moving
 * position: fixed-width integers, prefixed texts, compact integers. It is also the store of key
 * text that containers embed, and the record behind @ref string and @ref wchar. Field calls never
 * grow a stream: a writer gives it its size with qek_stream_expand() and qek_stream_shrink() first.
 *
 * `bytes` with a `size` keeps the negative length rule where the text of `size` says "measured".
 * Input bytes must not lie in the stream's own buffer, since growth frees it and editing moves it.
 * Where a call says that the stream is emptied, `length` becomes 0 and the buffer stays.
 *
 * Cost: appending is constant time per byte over a run of calls, up to a `length` of 16 MiB; beyond
 * it each growth adds 8 MiB only. Insert, update and delete move the bytes behind the place; a
 * field costs its own bytes. A buffer never becomes smaller: only qek_stream_term() gives memory
 * back. Each growth moves the buffer, and makes every pointer into `data` stale.
 *
 * Take another family when: the bytes are text that wants a terminator (use @ref string), the
 * elements are words or pointers (use @ref arrays), or the bytes must not move (use @ref pool).
 *
 * @code{.c}
 * static void example_stream(void)
 * {
 *     qek_stream stream;
 *     int32_t position = 0;
 *     uint32_t number;
 *     qek_stream_init(&stream);
 *     qek_stream_expand(&stream, 5);
 *     qek_stream_shrink(&stream, 5);
 *     qek_stream_set_tword(&stream, &position, 0x123456);
 *     qek_stream_deflate_dword(&stream, &position, 0x40);
 *     assert(position == stream.length && memcmp(stream.data, "\x56\x34\x12\x40\x40", 5) == 0);
 *     position = 0;
 *     number = qek_stream_get_tword(&stream, &position);
 *     assert(number == 0x123456 && position == 3);
 *     number = qek_stream_inflate_dword(&stream, &position);
 *     assert(number == 0x40 && position == 5);
 *     qek_stream_append(&stream, "tail", -1);
 *     assert(stream.length == 9 && qek_stream_find(&stream, 't') == 5);
 *     qek_stream_term(&stream);
 * }
 * @endcode
 * @{
 */

/**
 * A growable byte buffer.
 *
 * `length` lies between 0 and `capacity`; `capacity` is 0 while `data` is null, and a buffer grown
 * by this family has a multiple of 8. Every byte that a growth adds is 0. Bytes between `length`
 * and `capacity` keep what they held: shortening clears nothing, and growth carries them along.
 */
typedef struct qek_stream {
    uint8_t *data;    /**< the buffer, owned by the record; null until the first growth */
    int32_t length;   /**< bytes in use */
    int32_t capacity; /**< bytes in the buffer */
} qek_stream;

/**
 * An 8-bit text with a terminator; its functions are those of @ref string. The layout is that of
 * qek_stream, but not the buffer.
 *
 * `length` lies between 0 and `capacity`. `capacity` is 0 while `data` is null, else of the form
 * 8k + 7 and at least 15, and the buffer has one byte more. While `data` is not null, a call of the
 * string family that changes `length` leaves `data[length]` at 0. Bytes up to and including
 * `capacity` that were never written are 0; shortening writes the one terminator only. NUL bytes
 * inside the text are allowed.
 */
typedef struct qek_string {
    uint8_t *data;    /**< the buffer, owned by the record; null until the first growth */
    int32_t length;   /**< bytes of text, without the terminator */
    int32_t capacity; /**< bytes of text that fit, without the terminator */
} qek_string;

/**
 * @name Stream buffer
 * The record, its memory, and single bytes.
 * @{
 */

/**
 * Makes an empty stream: all fields 0. Allocates nothing.
 * @param stream  the record; what it held is not looked at
 */
QEK_API void qek_stream_init(qek_stream *stream);

/**
 * Frees the buffer and sets all fields to 0. The record may be used again at once; a second call is
 * harmless.
 * @param stream  the stream
 */
QEK_API void qek_stream_term(qek_stream *stream);

/**
 * Tells whether a stream holds no bytes.
 * @param stream  the stream
 * @return 1 if `data` is null or `length` is 0, else 0
 */
QEK_API int32_t qek_stream_is_empty(const qek_stream *stream);

/**
 * Writes zero bytes over a range of the buffer. `length` does not change. Nothing happens if `data`
 * is null, `position` is negative, or `position + count` is above `capacity` (not `length`).
 * @param stream    the stream
 * @param position  index of the first byte
 * @param count     bytes to clear; its sign is not tested, a negative one is the caller's error
 */
QEK_API void qek_stream_zero(qek_stream *stream, int32_t position, int32_t count);

/**
 * Makes `capacity` at least `wanted`. `length` does not change. If `capacity` is not enough, the
 * new one is the greater of `wanted` and `capacity` plus a step, rounded up to a multiple of 8; the
 * step is half of `length`, at least 8 and at most 0x800000.
 * @param stream  the stream
 * @param wanted  bytes wanted in the buffer; 0 or less never allocates
 * @return 1 on success; 0 when memory runs out, and the stream is as it was
 */
QEK_API int32_t qek_stream_expand(qek_stream *stream, int32_t wanted);

/**
 * Sets `length`. In spite of its name it also lengthens, and then reveals the bytes that the buffer
 * holds there. Frees nothing. Nothing happens if `data` is null.
 * @param stream      the stream
 * @param new_length  the length; above `capacity` it is `capacity`, negative does nothing
 */
QEK_API void qek_stream_shrink(qek_stream *stream, int32_t new_length);

/**
 * Exchanges all fields of two streams in constant time.
 * @param first   one stream
 * @param second  the other
 */
QEK_API void qek_stream_swap(qek_stream *first, qek_stream *second);

/**
 * Exchanges all fields of a stream and a string; the same operation as qek_stream_swap(). Each
 * buffer keeps the form that it was grown under. The string therefore gets one without a terminator
 * and without the byte for it: swap it back, or copy from it, before a call of the string family
 * changes its length or reads up to a terminator.
 * @param stream  the stream
 * @param string  the string
 */
QEK_API void qek_stream_swap_string(qek_stream *stream, qek_string *string);

/**
 * Copies the content of a stream into another, whose `capacity` becomes at least that of the
 * source. When memory runs out `target` is as it was.
 * @param source  the stream to copy
 * @param target  an initialised stream; its content is replaced and its buffer reused
 */
QEK_API void qek_stream_clone(const qek_stream *source, qek_stream *target);

/**
 * Copies the content of a stream into a fresh string, whose `capacity` becomes at least that of the
 * source, with a terminator. Alone among the forms that fill a string it starts with
 * qek_string_init() on its target. When memory runs out `target` stays empty.
 * @param source  the stream to copy
 * @param target  the record of the copy; what it held is overwritten without being freed
 */
QEK_API void qek_stream_clone_string(const qek_stream *source, qek_string *target);

/**
 * Reads one byte of the buffer, also behind `length`.
 * @param stream  the stream
 * @param index   index of the byte
 * @return the byte; 0 if `index` is negative or not below `capacity`
 */
QEK_API uint8_t qek_stream_get_at(const qek_stream *stream, int32_t index);

/**
 * Stores one byte in the buffer, also behind `length`, which does not change.
 * @param stream  the stream
 * @param index   index of the byte; negative or not below `capacity` does nothing
 * @param value   the byte
 */
QEK_API void qek_stream_set_at(qek_stream *stream, int32_t index, uint8_t value);

/** @} */

/**
 * @name Editing and searching
 * The content as a run of bytes. Where a call without a result needs memory and there is none, the
 * stream stays as it was, silently.
 * @{
 */

/**
 * Replaces the content.
 * @param stream  the stream
 * @param bytes   the new content; null empties the stream, whatever `size` is
 * @param size    bytes to copy; negative: measured
 */
QEK_API void qek_stream_copy(qek_stream *stream, const void *bytes, int32_t size);

/**
 * Adds bytes at the end.
 * @param stream  the stream
 * @param bytes   the bytes; null does nothing, whatever `size` is
 * @param size    bytes to add; negative: measured; 0 allocates nothing
 */
QEK_API void qek_stream_append(qek_stream *stream, const void *bytes, int32_t size);

/**
 * Opens a gap and fills it.
 * @param stream    the stream
 * @param position  index of the gap, from 0 to `length`; at `length` the call appends
 * @param bytes     the bytes; null with a `size` above 0 faults
 * @param size      bytes to insert; negative: measured, null then as 0
 * @return 1 on success; 0, with the stream as it was, if `position` is negative or above `length`,
 *         `size` is 0 after measuring, or memory runs out
 */
QEK_API int32_t qek_stream_insert(qek_stream *stream, int32_t position, const void *bytes,
                                  int32_t size);

/**
 * Replaces a range by bytes; what stands behind the range moves, and `length` becomes
 * `length - old_size + size`. An `old_size` of 0 inserts, a `size` of 0 deletes (`bytes` may then
 * be null). A range that runs past `length` is not clamped and counts in full, so that the new
 * `length` falls short of `position + size` and the new bytes are cut there; where it would be
 * negative, `length` stays. With equal sizes `length` stays too, and the bytes written end at it.
 * This is intended.
 * @param stream    the stream
 * @param position  index of the range, from 0 to `length`
 * @param old_size  bytes to replace, not negative
 * @param bytes     the bytes that take their place; null with a `size` above 0 faults
 * @param size      how many; negative: measured, but negative with null `bytes` is refused
 * @return 1 on success; 0, with the stream as it was, if `position` is negative or above `length`,
 *         `old_size` is negative, `bytes` is null with a negative `size`, or memory runs out
 */
QEK_API int32_t qek_stream_update(qek_stream *stream, int32_t position, int32_t old_size,
                                  const void *bytes, int32_t size);

/**
 * Removes a range. A range that runs past `length` removes nothing at all.
 * @param stream    the stream
 * @param position  index of the range; its sign is not tested, a negative one is the caller's error
 * @param size      bytes to remove; its sign is not tested, a negative one is the caller's error
 */
QEK_API void qek_stream_delete(qek_stream *stream, int32_t position, int32_t size);

/**
 * Keeps the first bytes, in place. Nothing happens if the stream is empty.
 * @param stream  the stream
 * @param size    bytes to keep; 0 empties the stream, negative or not below `length` does nothing
 */
QEK_API void qek_stream_left(qek_stream *stream, int32_t size);

/**
 * Keeps a range, moved to the front. Nothing happens if the stream is empty or `position` is
 * negative.
 * @param stream    the stream
 * @param position  index of the range; not below `length` empties the stream
 * @param size      bytes to keep; past the end takes what is there, 0 or less empties the stream
 */
QEK_API void qek_stream_mid(qek_stream *stream, int32_t position, int32_t size);

/**
 * Keeps the last bytes, moved to the front. Nothing happens if the stream is empty. That a negative
 * `size` empties here and does nothing in qek_stream_left() is intended.
 * @param stream  the stream
 * @param size    bytes to keep; 0 or less empties the stream, not below `length` does nothing
 */
QEK_API void qek_stream_right(qek_stream *stream, int32_t size);

/**
 * Finds the first byte of a value.
 * @param stream  the stream
 * @param ch      the byte to find; 0 cannot be searched for
 * @return its index; -1 if there is none below `length`, `ch` is 0, or the stream is empty
 */
QEK_API int32_t qek_stream_find(const qek_stream *stream, uint8_t ch);

/**
 * As qek_stream_find(), from a given index on.
 * @param stream  the stream
 * @param ch      the byte to find; 0 cannot be searched for
 * @param start   index of the first byte looked at
 * @return its index, counted from the start of the stream; -1 if there is none, `ch` is 0, the
 *         stream is empty, or `start` is negative or not below `length`
 */
QEK_API int32_t qek_stream_find_pos(const qek_stream *stream, uint8_t ch, int32_t start);

/** @} */

/**
 * @name Extraction from streams
 * Copies of a part into another record. The source stays as it is; the content of `target`, which
 * must be initialised, is replaced from its first byte on and its buffer reused. When memory runs
 * out `target` stays as it was, silently.
 * @{
 */

/**
 * Copies the first bytes into a stream.
 * @param stream  the source; empty empties `target`
 * @param size    bytes to copy; not below `length` takes all, 0 or less empties `target`
 * @param target  the stream that gets the copy
 */
QEK_API void qek_stream_left_stream(const qek_stream *stream, int32_t size, qek_stream *target);

/**
 * Copies a range into a stream.
 * @param stream    the source; empty empties `target`
 * @param position  index of the range; negative or not below `length` empties `target`
 * @param size      bytes to copy; past the end takes what is there, 0 or less empties `target`
 * @param target    the stream that gets the copy
 */
QEK_API void qek_stream_mid_stream(const qek_stream *stream, int32_t position, int32_t size,
                                   qek_stream *target);

/**
 * Copies the last bytes into a stream.
 * @param stream  the source; empty empties `target`
 * @param size    bytes to copy; not below `length` takes all, 0 or less empties `target`
 * @param target  the stream that gets the copy
 */
QEK_API void qek_stream_right_stream(const qek_stream *stream, int32_t size, qek_stream *target);

/**
 * Copies the first bytes into a string, with a terminator; the same operation as
 * qek_string_left_string().
 * @param source  the source; empty empties `target`
 * @param count   bytes to copy; not below `length` takes all, 0 or less empties `target`
 * @param target  the string that gets the copy
 */
QEK_API void qek_stream_left_string(const qek_stream *source, int32_t count, qek_string *target);

/**
 * Copies a range into a string, with a terminator; the same operation as qek_string_mid_string().
 * @param source    the source; empty empties `target`
 * @param position  index of the range; negative or not below `length` empties `target`
 * @param count     bytes to copy; past the end takes what is there, 0 or less empties `target`
 * @param target    the string that gets the copy
 */
QEK_API void qek_stream_mid_string(const qek_stream *source, int32_t position, int32_t count,
                                   qek_string *target);

/**
 * Copies the last bytes into a string, with a terminator; the same operation as
 * qek_string_right_string().
 * @param source  the source; empty empties `target`
 * @param count   bytes to copy; not below `length` takes all, 0 or less empties `target`
 * @param target  the string that gets the copy
 */
QEK_API void qek_stream_right_string(const qek_stream *source, int32_t count, qek_string *target);

/** @} */

/**
 * @name Fixed-width fields
 * Fields at `*position`, without alignment, tags or names: a reader must know their order. Integers
 * are little-endian.
 *
 * | kind   | on the wire           | values      | example, and its bytes                        |
 * |--------|-----------------------|-------------|-----------------------------------------------|
 * | byte   | 1 byte                | all         | 0xAB: `AB`                                    |
 * | word   | 2 bytes               | all         | 0x1234: `34 12`                               |
 * | tword  | 3 bytes               | low 24 bits | 0xFF123456: `56 34 12`                        |
 * | dword  | 4 bytes               | all         | 0x12345678: `78 56 34 12`                     |
 * | xword  | 6 bytes               | low 48 bits | 0x123456789ABC: `BC 9A 78 56 34 12`           |
 * | lword  | 8 bytes               | all         | 0x0123456789ABCDEF: `EF CD AB 89 67 45 23 01` |
 * | string | word n, then n bytes  | a text      | abc: `03 00 61 62 63`                         |
 * | stream | dword n, then n bytes | a stream    | 01 02 03: `03 00 00 00 01 02 03`              |
 * | buffer | the bytes alone       | any bytes   | 01 02 03: `01 02 03`                          |
 *
 * An integer field takes place only as a whole and only inside `length`. One that does not fit
 * reads as 0, or is not written at all; `*position` moves on by its width in any case. Texts and
 * buffers are cut at `length`, and `*position` moves on as if they had not been. So nothing here
 * reports, allocates in the stream or changes its `length`: a final position above `length` tells
 * that fields were lost. `*position` is not tested for its sign; a negative position is the
 * caller's error.
 * @{
 */

/**
 * Reads 1 byte.
 * @param stream            the stream
 * @param[in,out] position  index of the field, not negative; moves on by 1, always
 * @return the byte; 0 if the field does not fit in `length`
 */
QEK_API uint8_t qek_stream_get_byte(const qek_stream *stream, int32_t *position);

/**
 * Writes 1 byte; nothing if the field does not fit in `length`.
 * @param stream            the stream
 * @param[in,out] position  index of the field, not negative; moves on by 1, always
 * @param value             the byte
 */
QEK_API void qek_stream_set_byte(qek_stream *stream, int32_t *position, uint8_t value);

/**
 * Reads 2 bytes.
 * @param stream            the stream
 * @param[in,out] position  index of the field, not negative; moves on by 2, always
 * @return the number; 0 if the field does not fit in `length`
 */
QEK_API uint16_t qek_stream_get_word(const qek_stream *stream, int32_t *position);

/**
 * Writes 2 bytes; nothing if the field does not fit in `length`.
 * @param stream            the stream
 * @param[in,out] position  index of the field, not negative; moves on by 2, always
 * @param value             the number
 */
QEK_API void qek_stream_set_word(qek_stream *stream, int32_t *position, uint16_t value);

/**
 * Reads 3 bytes.
 * @param stream            the stream
 * @param[in,out] position  index of the field, not negative; moves on by 3, always
 * @return the number, its top 8 bits 0; 0 if the field does not fit in `length`
 */
QEK_API uint32_t qek_stream_get_tword(const qek_stream *stream, int32_t *position);

/**
 * Writes 3 bytes; nothing if the field does not fit in `length`.
 * @param stream            the stream
 * @param[in,out] position  index of the field, not negative; moves on by 3, always
 * @param value             the number; its top 8 bits are ignored
 */
QEK_API void qek_stream_set_tword(qek_stream *stream, int32_t *position, uint32_t value);

/**
 * Reads 4 bytes.
 * @param stream            the stream
 * @param[in,out] position  index of the field, not negative; moves on by 4, always
 * @return the number; 0 if the field does not fit in `length`
 */
QEK_API uint32_t qek_stream_get_dword(const qek_stream *stream, int32_t *position);

/**
 * Writes 4 bytes; nothing if the field does not fit in `length`.
 * @param stream            the stream
 * @param[in,out] position  index of the field, not negative; moves on by 4, always
 * @param value             the number
 */
QEK_API void qek_stream_set_dword(qek_stream *stream, int32_t *position, uint32_t value);

/**
 * Reads 6 bytes.
 * @param stream            the stream
 * @param[in,out] position  index of the field, not negative; moves on by 6, always
 * @return the number, its top 16 bits 0; 0 if the field does not fit in `length`
 */
QEK_API uint64_t qek_stream_get_xword(const qek_stream *stream, int32_t *position);

/**
 * Writes 6 bytes; nothing if the field does not fit in `length`.
 * @param stream            the stream
 * @param[in,out] position  index of the field, not negative; moves on by 6, always
 * @param value             the number; its top 16 bits are ignored
 */
QEK_API void qek_stream_set_xword(qek_stream *stream, int32_t *position, uint64_t value);

/**
 * Reads 8 bytes.
 * @param stream            the stream
 * @param[in,out] position  index of the field, not negative; moves on by 8, always
 * @return the number; 0 if the field does not fit in `length`
 */
QEK_API uint64_t qek_stream_get_lword(const qek_stream *stream, int32_t *position);

/**
 * Writes 8 bytes; nothing if the field does not fit in `length`.
 * @param stream            the stream
 * @param[in,out] position  index of the field, not negative; moves on by 8, always
 * @param value             the number
 */
QEK_API void qek_stream_set_lword(qek_stream *stream, int32_t *position, uint64_t value);

/**
 * Reads a text: a word prefix and that many bytes. A text that runs past `length` is cut there; one
 * with nothing left, also one whose prefix does not fit, is empty. When memory runs out `string`
 * stays as it was.
 * @param stream            the stream
 * @param[in,out] position  index of the prefix, not negative; moves on by 2 plus the prefix, always
 * @param string            an initialised string; its text is replaced, with a terminator
 */
QEK_API void qek_stream_get_string(const qek_stream *stream, int32_t *position, qek_string *string);

/**
 * Writes a text: its length as a word prefix, then its bytes without the terminator. The prefix is
 * written whole or not at all; the bytes are cut at the stream's `length`. A text of 65,536 bytes
 * or more gets the low 16 bits of its length as prefix, with all its bytes behind it, and cannot be
 * read back; this is not guarded.
 * @param stream            the stream
 * @param[in,out] position  index of the prefix, not negative; moves on by 2 plus the length of the
 *                          text, always
 * @param string            the text; may be empty
 */
QEK_API void qek_stream_set_string(qek_stream *stream, int32_t *position, const qek_string *string);

/**
 * Reads bytes: a dword prefix and that many bytes. Bytes that run past `length` are cut there; with
 * nothing left, also when the prefix does not fit, `target` is emptied. When memory runs out
 * `target` stays as it was.
 * @param stream            the stream
 * @param[in,out] position  index of the prefix, not negative; moves on by 4 plus the prefix, always
 * @param target            an initialised stream other than `stream`; its content is replaced
 * @warning a prefix of 0x80000000 or more counts as a negative number: `target` stays as it was,
 *          and `*position` moves back. Look at the prefixes of data from an unsafe source before
 */
QEK_API void qek_stream_get_stream(const qek_stream *stream, int32_t *position, qek_stream *target);

/**
 * Writes bytes: their number as a dword prefix, then the bytes. The prefix is written whole or not
 * at all; the bytes are cut at the stream's `length`.
 * @param stream            the stream
 * @param[in,out] position  index of the prefix, not negative; moves on by 4 plus `source->length`,
 *                          always
 * @param source            the bytes; may be empty
 */
QEK_API void qek_stream_set_stream(qek_stream *stream, int32_t *position, const qek_stream *source);

/**
 * Hands out a pointer to bytes of the stream, without copying. They belong to the stream, and the
 * pointer is stale after its next growth.
 * @param stream               the stream
 * @param[in,out] position     index of the bytes, not negative; moves on by the number that is
 *                             wanted, always
 * @param[out] bytes_out       gets the address, or null if `*position` was not below `length`
 * @param[in,out] size_in_out  the number of bytes wanted, not negative; gets the number that is
 *                             there: less where they run past `length`, 0 with a null `*bytes_out`
 */
QEK_API void qek_stream_get_buffer(const qek_stream *stream, int32_t *position, uint8_t **bytes_out,
                                   int32_t *size_in_out);

/**
 * Writes bytes without a prefix, cut at the stream's `length`.
 * @param stream            the stream
 * @param[in,out] position  index of the bytes, not negative; moves on by `size`, always
 * @param bytes             the bytes; not tested, must be valid when any are to be copied
 * @param size              how many; never measured, a negative one is the caller's error
 */
QEK_API void qek_stream_set_buffer(qek_stream *stream, int32_t *position, const void *bytes,
                                   int32_t size);

/** @} */

/**
 * @name Compact integers
 * Three codes in which small numbers take few bytes. Deflate writes, inflate reads, and the length
 * calls tell the coded size. They are three formats: a reader must know which one stands at a
 * position. A writer takes the smallest form that holds the value, a reader takes any form.
 *
 * Word code: one marker bit, then the value, high bits first. It carries 15 bits; bit 15 is lost.
 *
 * | value      | first byte | bytes | examples, and their bytes      |
 * |------------|------------|-------|--------------------------------|
 * | to 0x7F    | `0xxxxxxx` | 1     | 0x7F: `7F`                     |
 * | to 0x7FFF  | `1xxxxxxx` | 2     | 0x80: `80 80`; 0x1234: `92 34` |
 * | above that | `1xxxxxxx` | 2     | 0x8000: `80 00`, reads as 0    |
 *
 * Dword code: two marker bits, then the value, high bits first. It carries 30 bits; bits 30 and 31
 * are lost.
 *
 * | value         | first byte | bytes | examples, and their bytes                      |
 * |---------------|------------|-------|------------------------------------------------|
 * | to 0x3F       | `00xxxxxx` | 1     | 0x3F: `3F`                                     |
 * | to 0x3FFF     | `01xxxxxx` | 2     | 0x40: `40 40`                                  |
 * | to 0x3FFFFF   | `10xxxxxx` | 3     | 0x4000: `80 40 00`                             |
 * | to 0x3FFFFFFF | `11xxxxxx` | 4     | 0x12345678: `D2 34 56 78`                      |
 * | above that    | `11xxxxxx` | 4     | 0xFFFFFFFF: `FF FF FF FF`, reads as 0x3FFFFFFF |
 *
 * Lword code: the leading one bits of the first byte count the bytes behind it, and its other bits,
 * x, are the top bits of the value. The groups of the layout carry on downwards: `n` is the next
 * lower 8 bits, `LE16` and `LE32` are the next lower 16 and 32 bits, each with its low byte first.
 * In the longest form the low half of the value stands before the high half. Nothing is lost.
 *
 * | value  | first byte | bytes | layout      | example, and its bytes                           |
 * |--------|------------|-------|-------------|--------------------------------------------------|
 * | 7 bits | `0xxxxxxx` | 1     | x           | 0x7F: `7F`                                       |
 * | 14     | `10xxxxxx` | 2     | x n         | 0x80: `80 80`                                    |
 * | 21     | `110xxxxx` | 3     | x LE16      | 0x123456: `D2 56 34`                             |
 * | 28     | `1110xxxx` | 4     | x n LE16    | 0x1234567: `E1 23 67 45`                         |
 * | 35     | `11110xxx` | 5     | x LE32      | 0x10000000: `F0 00 00 00 10`                     |
 * | 42     | `111110xx` | 6     | x n LE32    | 0x800000000: `F8 08 00 00 00 00`                 |
 * | 49     | `1111110x` | 7     | x LE16 LE32 | 0x123456789ABCD: `FD 45 23 CD AB 89 67`          |
 * | 56     | `11111110` | 8     | n LE16 LE32 | 0x2000000000000: `FE 02 00 00 00 00 00 00`       |
 * | 64     | `11111111` | 9     | LE32 LE32   | 0x123456789ABCDEF0: `FF F0 DE BC 9A 78 56 34 12` |
 *
 * The codes also fail in different ways, which is intended. N is the coded size:
 *
 * |                            | word and dword code                 | lword code                 |
 * |----------------------------|-------------------------------------|----------------------------|
 * | write that does not fit    | writes nothing, position moves by N | writes nothing, stays      |
 * | read at the end            | 0, position stays                   | all ones, position stays   |
 * | read of a form that is cut | reads on behind `length`, moves N   | all ones, position moves 1 |
 *
 * No call grows the stream or changes its `length`, and only whole forms are written. `*position`
 * is not tested for its sign; a negative position is the caller's error.
 * @{
 */

/**
 * Tells the size of a number in the word code.
 * @param value  the number
 * @return 1 below 0x80, else 2 (also above 0x7FFF, where bit 15 is lost)
 */
QEK_API int32_t qek_stream_deflate_word_length(uint16_t value);

/**
 * Writes the word code; nothing if it does not fit in `length`.
 * @param stream            the stream
 * @param[in,out] position  index of the code, not negative; moves on by the coded size, always
 * @param value             the number; bit 15 is lost, silently
 */
QEK_API void qek_stream_deflate_word(qek_stream *stream, int32_t *position, uint16_t value);

/**
 * Reads the word code. Only the first byte is tested against `length`: the second byte of a form
 * that is cut is read from behind it, and is 0 behind the buffer. A position above `length`
 * afterwards tells of that.
 * @param stream            the stream
 * @param[in,out] position  index of the code, not negative; moves on by the coded size, or stays if
 *                          it is not below `length`
 * @return the number, bit 15 clear; 0 if `*position` is not below `length`
 */
QEK_API uint16_t qek_stream_inflate_word(const qek_stream *stream, int32_t *position);

/**
 * Tells the size of a number in the dword code.
 * @param value  the number
 * @return 1 below 0x40, 2 below 0x4000, 3 below 0x400000, else 4 (also above 0x3FFFFFFF, where bits
 *         30 and 31 are lost)
 */
QEK_API int32_t qek_stream_deflate_dword_length(uint32_t value);

/**
 * Writes the dword code; nothing if it does not fit in `length`.
 * @param stream            the stream
 * @param[in,out] position  index of the code, not negative; moves on by the coded size, always
 * @param value             the number; bits 30 and 31 are lost, silently
 */
QEK_API void qek_stream_deflate_dword(qek_stream *stream, int32_t *position, uint32_t value);

/**
 * Reads the dword code. Only the first byte is tested against `length`: the others of a form that
 * is cut are read from behind it, and are 0 behind the buffer. A position above `length` afterwards
 * tells of that.
 * @param stream            the stream
 * @param[in,out] position  index of the code, not negative; moves on by the coded size, or stays if
 *                          it is not below `length`
 * @return the number, bits 30 and 31 clear; 0 if `*position` is not below `length`
 */
QEK_API uint32_t qek_stream_inflate_dword(const qek_stream *stream, int32_t *position);

/**
 * Tells the size of a number in the lword code.
 * @param value  the number
 * @return 1 to 9, as the table above tells: 1 below 0x80, 2 below 0x4000, and so on by 7 bits a
 *         byte to 8 below 0x100000000000000, else 9
 */
QEK_API int32_t qek_stream_deflate_lword_length(uint64_t value);

/**
 * Writes the lword code, without loss; nothing if it does not fit in `length`.
 * @param stream            the stream
 * @param[in,out] position  index of the code, not negative; moves on by the coded size, or stays if
 *                          the code does not fit
 * @param value             the number
 */
QEK_API void qek_stream_deflate_lword(qek_stream *stream, int32_t *position, uint64_t value);

/**
 * Reads the lword code. No byte behind `length` is read. All ones is both the failure and the
 * number 0xFFFFFFFFFFFFFFFF; the position tells them apart.
 * @param stream            the stream
 * @param[in,out] position  index of the code, not negative; moves on by the coded size, by 1 if the
 *                          form is cut by `length`, and stays if it is not below `length`
 * @return the number; all 64 bits set if `*position` is not below `length` or the form is cut
 */
QEK_API uint64_t qek_stream_inflate_lword(const qek_stream *stream, int32_t *position);

/** @} */

/**
 * @name Checksums
 * Over counted bytes; neither call takes a stream, and neither measures a negative size.
 * @{
 */

/**
 * Computes the CRC-32 of IEEE 802.3 and zlib: reflected, polynomial 0xEDB88320, start value and
 * final inversion all ones. The nine digits `123456789` give 0xCBF43926.
 * @param bytes  the bytes
 * @param size   how many
 * @return the checksum; 0 if `bytes` is null or `size` is 0 or less
 */
QEK_API uint32_t qek_stream_crc32(const void *bytes, int32_t size);

/**
 * Computes the exclusive-or of all bytes. A negative `size` gives the low 8 bits of the address
 * `bytes` itself; this is intended.
 * @param bytes  the bytes
 * @param size   how many
 * @return the exclusive-or; 0 if `bytes` is null or `size` is 0; the low 8 bits of `bytes` as a
 *         number if `size` is negative
 */
QEK_API uint8_t qek_stream_check(const void *bytes, int32_t size);

/** @} */

/** @} */
/* ============================================================================================== */
/**
 * @defgroup string String (string)
 * The owned, growable 8-bit text: editing, searching, number conversion and substitution.
 *
 * A qek_string keeps a NUL behind its text, so that `data` goes to any routine that wants a
 * terminated text. While `data` is null there is no text to hand over; ask qek_string_is_empty().
 * A record grown by a stream call lacks the byte for the terminator: strings and streams exchange
 * content by qek_stream_swap_string(), qek_stream_clone_string() and the `_string` extractions
 * only.
 *
 * A `length` that goes with a `text` counts bytes, and a negative one is measured. A text that is
 * copied, added, inserted or put in place of a range must not lie in the string's own buffer. Where
 * a call says that a string is emptied, `length` becomes 0 and the buffer stays. When memory runs
 * out, a call without a result leaves the string as it was, silently, unless its text says
 * otherwise. Letters are mapped by the runtime's `tolower` and `toupper` in its current locale.
 *
 * Cost: appending is constant time per byte over a run of calls, up to a `length` of 16 MiB; beyond
 * it each growth adds 8 MiB only. Other editing moves the bytes behind the place; substitutions and
 * the format build a new buffer. A buffer never becomes smaller otherwise. Each growth moves the
 * buffer, and makes every pointer into `data` stale.
 *
 * Take another family when: the bytes are fields and not text (use @ref stream), the characters
 * have 16 bits (use @ref wchar), or somebody else owns the text and it is only read (use @ref char
 * or @ref stringx).
 *
 * @code{.c}
 * static void example_string(void)
 * {
 *     qek_string string, word;
 *     qek_string_init(&string);
 *     qek_string_init(&word);
 *     qek_string_copy(&string, "  size = 40 \n", -1);
 *     assert(qek_string_trim(&string) == 1 && string.length == 9 && string.data[9] == 0);
 *     qek_string_left_string(&string, qek_string_find_char(&string, ' '), &word);
 *     qek_string_make_upper(&word);
 *     assert(qek_string_compare(&word, "SIZE", -1) == 0);
 *     qek_string_update(&string, 7, 2, "100", -1);
 *     qek_string_append_char(&string, ';');
 *     assert(strcmp((const char *)string.data, "size = 100;") == 0);
 *     assert(qek_string_find(&string, "100", -1) == 7);
 *     qek_string_term(&word);
 *     qek_string_term(&string);
 * }
 * @endcode
 * @{
 */

/**
 * @name String buffer
 * The record, its memory, and single bytes.
 * @{
 */

/**
 * Makes an empty string: all fields 0. Allocates nothing. The same operation as qek_stream_init().
 * @param string  the record; what it held is not looked at
 */
QEK_API void qek_string_init(qek_string *string);

/**
 * Frees the buffer and sets all fields to 0. The record may be used again at once; a second call is
 * harmless. The same operation as qek_stream_term().
 * @param string  the string
 */
QEK_API void qek_string_term(qek_string *string);

/**
 * Tells whether a string holds no text. The same operation as qek_stream_is_empty().
 * @param string  the string
 * @return 1 if `data` is null or `length` is 0, else 0
 */
QEK_API int32_t qek_string_is_empty(const qek_string *string);

/**
 * Writes zero bytes over a range of the buffer. `length` does not change. Nothing happens if `data`
 * is null, `position` is negative, or `position + count` is above `capacity` (not `length`). The
 * same operation as qek_stream_zero().
 * @param string    the string
 * @param position  index of the first byte
 * @param count     bytes to clear; its sign is not tested, a negative one is the caller's error
 */
QEK_API void qek_string_zero(qek_string *string, int32_t position, int32_t count);

/**
 * Makes room for a text and its terminator. `length` does not change. If the present `capacity` is
 * not enough, take the greater of the number wanted and the present one plus a step, where the step
 * is half of `length`, at least 8 and at most 0x800000: the new capacity is that number rounded
 * down to a multiple of 8, plus 7. So a first growth gives 15, and one to 16 gives 23.
 * @param string    the string
 * @param capacity  bytes of text wanted; 0 or less never allocates
 * @return 1 on success; 0 when memory runs out, and the string is as it was
 */
QEK_API int32_t qek_string_expand(qek_string *string, int32_t capacity);

/**
 * Sets `length` and writes the terminator. In spite of its name it also lengthens, and then reveals
 * the bytes that the buffer holds there. Frees nothing. Nothing happens if `data` is null.
 * @param string  the string
 * @param length  the length; above `capacity` it is `capacity`, negative does nothing
 */
QEK_API void qek_string_shrink(qek_string *string, int32_t length);

/**
 * Exchanges all fields of two strings in constant time. The same operation as qek_stream_swap().
 * @param a  one string
 * @param b  the other
 */
QEK_API void qek_string_swap(qek_string *a, qek_string *b);

/**
 * Copies a string into another, whose `capacity` becomes at least that of the source. An empty
 * source empties `target`, after the same growth. When memory runs out `target` is as it was.
 * @param source  the string to copy
 * @param target  an initialised string; its text is replaced and its buffer reused
 */
QEK_API void qek_string_clone(const qek_string *source, qek_string *target);

/**
 * Reads one byte of the buffer, also behind `length`: at `length` it is the terminator, as long as
 * `length` is below `capacity`.
 * @param string  the string
 * @param index   index of the byte
 * @return the byte; 0xFF if `index` is negative or not below `capacity` (a stream gives 0)
 */
QEK_API uint8_t qek_string_get_at(const qek_string *string, int32_t index);

/**
 * Stores one byte in the buffer, also behind `length`, which does not change; at `length` it
 * overwrites the terminator. The same operation as qek_stream_set_at().
 * @param string  the string
 * @param index   index of the byte; negative or not below `capacity` does nothing
 * @param ch      the byte
 */
QEK_API void qek_string_set_at(qek_string *string, int32_t index, uint8_t ch);

/** @} */

/**
 * @name Editing strings
 * @{
 */

/**
 * Replaces the text.
 * @param string  the string
 * @param text    the new text; null empties the string, whatever `length` is
 * @param length  bytes to copy; negative: measured; 0 empties the string and allocates nothing
 */
QEK_API void qek_string_copy(qek_string *string, const void *text, int32_t length);

/**
 * Replaces the text by one byte.
 * @param string  the string
 * @param ch      the byte; 0 empties the string
 */
QEK_API void qek_string_copy_char(qek_string *string, uint8_t ch);

/**
 * Adds bytes at the end.
 * @param string  the string
 * @param text    the bytes; null does nothing, whatever `length` is
 * @param length  bytes to add; negative: measured
 */
QEK_API void qek_string_append(qek_string *string, const void *text, int32_t length);

/**
 * Adds one byte at the end.
 * @param string  the string
 * @param ch      the byte; 0 is added like any other, unlike in qek_string_copy_char()
 */
QEK_API void qek_string_append_char(qek_string *string, uint8_t ch);

/**
 * Opens a gap and fills it.
 * @param string    the string
 * @param position  index of the gap, from 0 to the string's length; there the call appends
 * @param text      the bytes; null with a `length` above 0 faults
 * @param length    bytes to insert; negative: measured, null then as 0
 * @return 1 on success; 0, with the string as it was, if `position` is negative or above the
 *         string's length, `length` is 0 after measuring, or memory runs out
 */
QEK_API int32_t qek_string_insert(qek_string *string, int32_t position, const void *text,
                                  int32_t length);

/**
 * Replaces a range by bytes; what stands behind the range moves. An `old_length` of 0 inserts, a
 * `text_length` of 0 deletes (`text` may then be null). The range must end inside the text:
 * `position + old_length` is not tested, and one above the string's length writes or moves memory
 * outside the text. This differs from qek_stream_update(), which cuts.
 * @param string       the string
 * @param position     index of the range, from 0 to the string's length
 * @param old_length   bytes to replace, not negative
 * @param text         the bytes that take their place; null with a `text_length` above 0 faults
 * @param text_length  how many; negative: measured, but negative with a null `text` is refused
 * @return 1 on success; 0, with the string as it was, if `position` is negative or above the
 *         string's length, `old_length` is negative, `text` is null with a negative `text_length`,
 *         or memory runs out
 */
QEK_API int32_t qek_string_update(qek_string *string, int32_t position, int32_t old_length,
                                  const void *text, int32_t text_length);

/**
 * Removes a range. If `count` reaches or passes the end, the text is set to end at `position` by
 * qek_string_shrink(): a negative `position` then does nothing, and one behind the text lengthens
 * it. There is no other range check: a negative `count`, or a negative `position` with a `count`
 * that does not reach the end, is the caller's error and moves memory outside the text.
 * @param string    the string
 * @param position  index of the range
 * @param count     bytes to remove
 */
QEK_API void qek_string_delete(qek_string *string, int32_t position, int32_t count);

/**
 * Keeps the first bytes, in place. Nothing happens if the string is empty.
 * @param string  the string
 * @param count   bytes to keep; 0 empties the string, negative or not below `length` does nothing
 */
QEK_API void qek_string_left(qek_string *string, int32_t count);

/**
 * Keeps a range, moved to the front. Nothing happens if the string is empty or `position` is
 * negative.
 * @param string    the string
 * @param position  index of the range; not below `length` empties the string
 * @param count     bytes to keep; past the end takes what is there, 0 or less empties the string
 */
QEK_API void qek_string_mid(qek_string *string, int32_t position, int32_t count);

/**
 * Keeps the last bytes, moved to the front. Nothing happens if the string is empty. That a negative
 * `count` empties here and does nothing in qek_string_left() is intended.
 * @param string  the string
 * @param count   bytes to keep; 0 or less empties the string, not below `length` does nothing
 */
QEK_API void qek_string_right(qek_string *string, int32_t count);

/**
 * Strips TAB, LF, CR and SPACE (9, 10, 13, 32) from both ends; at the rear end NULs go too. A NUL
 * as the first byte that is none of these empties the string, whatever stands behind it. This
 * asymmetry is intended.
 * @param string  the string
 * @return 1 if the text changed; 0 if it did not, or the string is empty
 */
QEK_API int32_t qek_string_trim(qek_string *string);

/**
 * Maps every byte of the text by the runtime's `tolower`, which gets it sign-extended. Nothing
 * happens if the string is empty.
 * @param string  the string
 */
QEK_API void qek_string_make_lower(qek_string *string);

/**
 * Maps every byte of the text by the runtime's `toupper`, which gets it sign-extended. Nothing
 * happens if the string is empty.
 * @param string  the string
 */
QEK_API void qek_string_make_upper(qek_string *string);

/** @} */

/**
 * @name Comparing and searching
 * @{
 */

/**
 * Orders a string against a text: by the first bytes that differ, as unsigned values, then by
 * length. Null and the empty text are alike.
 * @param string  the left side
 * @param text    the right side; may be null
 * @param length  bytes in `text`; negative: measured
 * @return with both sides empty 0; with only the string empty -1; with a null `text` or a `length`
 *         of 0 against a string that holds text 1; else the result of qek_mem_cmp(), also against
 *         an empty text that was measured
 */
QEK_API int32_t qek_string_compare(const qek_string *string, const void *text, int32_t length);

/**
 * As qek_string_compare(), without regard to case.
 * @param string  the left side
 * @param text    the right side; may be null
 * @param length  bytes in `text`; negative: measured
 * @return as qek_string_compare(), with qek_mem_icmp() in place of qek_mem_cmp()
 */
QEK_API int32_t qek_string_icompare(const qek_string *string, const void *text, int32_t length);

/**
 * Finds the first byte of a value. The same operation as qek_stream_find().
 * @param string  the string
 * @param ch      the byte to find; 0 cannot be searched for
 * @return its index; -1 if there is none, `ch` is 0, or the string is empty
 */
QEK_API int32_t qek_string_find_char(const qek_string *string, uint8_t ch);

/**
 * As qek_string_find_char(), from a given index on. The same operation as qek_stream_find_pos().
 * @param string  the string
 * @param ch      the byte to find; 0 cannot be searched for
 * @param start   index of the first byte looked at
 * @return its index, counted from the start of the string; -1 if there is none, `ch` is 0, the
 *         string is empty, or `start` is negative or not below `length`
 */
QEK_API int32_t qek_string_find_char_pos(const qek_string *string, uint8_t ch, int32_t start);

/**
 * Finds the last byte of a value.
 * @param string  the string
 * @param ch      the byte to find; 0 cannot be searched for
 * @return its index; -1 if there is none, `ch` is 0, or the string is empty
 */
QEK_API int32_t qek_string_reverse_find(const qek_string *string, uint8_t ch);

/**
 * Finds the first occurrence of a text. The form of `length` decides how: a negative one searches
 * as the runtime's `strstr` does, up to the first NUL in the string, and finds an empty text at
 * once; any other searches the whole string as qek_mem_str() does, with its rule for 0.
 * @param string  the string searched
 * @param text    the text to find
 * @param length  bytes in `text`; negative: NUL-terminated
 * @return its index; -1 if there is none, `text` is null, or the string is empty
 */
QEK_API int32_t qek_string_find(const qek_string *string, const void *text, int32_t length);

/**
 * As qek_string_find(), from a given index on.
 * @param string  the string searched
 * @param text    the text to find
 * @param length  bytes in `text`; negative: NUL-terminated, and searched up to the first NUL
 * @param start   index where the search begins
 * @return its index, counted from the start of the string; -1 if there is none, `text` is null, the
 *         string is empty, or `start` is negative or not below the string's length
 */
QEK_API int32_t qek_string_find_pos(const qek_string *string, const void *text, int32_t length,
                                    int32_t start);

/** @} */

/**
 * @name Extraction from strings
 * Copies of a part into another string, with a terminator. The source stays as it is; the text of
 * `target`, which must be initialised, is replaced and its buffer reused. When memory runs out
 * `target` stays as it was, silently.
 * @{
 */

/**
 * Copies the first bytes. The same operation as qek_stream_left_string().
 * @param source  the source; empty empties `target`
 * @param count   bytes to copy; not below `length` takes all, 0 or less empties `target`
 * @param target  the string that gets the copy
 */
QEK_API void qek_string_left_string(const qek_string *source, int32_t count, qek_string *target);

/**
 * Copies a range. The same operation as qek_stream_mid_string().
 * @param source    the source; empty empties `target`
 * @param position  index of the range; negative or not below `length` empties `target`
 * @param count     bytes to copy; past the end takes what is there, 0 or less empties `target`
 * @param target    the string that gets the copy
 */
QEK_API void qek_string_mid_string(const qek_string *source, int32_t position, int32_t count,
                                   qek_string *target);

/**
 * Copies the last bytes. The same operation as qek_stream_right_string().
 * @param source  the source; empty empties `target`
 * @param count   bytes to copy; not below `length` takes all, 0 or less empties `target`
 * @param target  the string that gets the copy
 */
QEK_API void qek_string_right_string(const qek_string *source, int32_t count, qek_string *target);

/** @} */

/**
 * @name Numbers
 * Integers are written in decimal. Floating numbers are written as the runtime's `%f` writes them:
 * six decimals, no exponent, no zeros trimmed (1.5 is `1.500000`), all digits before the point.
 *
 * The four readers use two parsers, and this is intended. qek_string_get_integer() and
 * qek_string_get_float() are the runtime's `atoi` and `atof`: they pass over leading white space,
 * take a `+`, and stop at the first NUL. qek_string_get_long() and qek_string_get_double() are
 * qek_stringx_get_long() and qek_stringx_get_float() over the whole text: an optional `-`, digits,
 * and for a double then a `.` and more digits, up to the first byte that does not fit.
 *
 * | text                | get_integer | get_long | get_float | get_double |
 * |---------------------|-------------|----------|-----------|------------|
 * | a space, then `12`  | 12          | 0        | 12.0      | 0.0        |
 * | `+5`                | 5           | 0        | 5.0       | 0.0        |
 * | `1e3`               | 1           | 1        | 1000.0    | 1.0        |
 * | `.5`                | 0           | 0        | 0.5       | 0.0        |
 * | `12abc`             | 12          | 12       | 12.0      | 12.0       |
 * | `abc`               | 0           | 0        | 0.0       | 0.0        |
 *
 * The fallback of a reader answers for a string without text only, never for a text that is no
 * number.
 * @{
 */

/**
 * Replaces the text by a number.
 * @param string  the string
 * @param value   the number
 */
QEK_API void qek_string_copy_integer(qek_string *string, int32_t value);

/**
 * Replaces the text by a number.
 * @param string  the string
 * @param value   the number
 */
QEK_API void qek_string_copy_long(qek_string *string, int64_t value);

/**
 * Replaces the text by a number, widened to double first.
 * @param string  the string
 * @param value   the number
 */
QEK_API void qek_string_copy_float(qek_string *string, float value);

/**
 * Replaces the text by a number; every double is written in full.
 * @param string  the string
 * @param value   the number
 */
QEK_API void qek_string_copy_double(qek_string *string, double value);

/**
 * Adds a number at the end.
 * @param string  the string
 * @param value   the number
 */
QEK_API void qek_string_append_integer(qek_string *string, int32_t value);

/**
 * Adds a number at the end.
 * @param string  the string
 * @param value   the number
 */
QEK_API void qek_string_append_long(qek_string *string, int64_t value);

/**
 * Adds a number at the end, widened to double first.
 * @param string  the string
 * @param value   the number
 */
QEK_API void qek_string_append_float(qek_string *string, float value);

/**
 * Adds a number at the end; every double is written in full.
 * @param string  the string
 * @param value   the number
 */
QEK_API void qek_string_append_double(qek_string *string, double value);

/**
 * Reads the text as the runtime's `atoi` does. A number outside the range of an `int32_t` gives
 * what the runtime makes of it.
 * @param string    the string
 * @param fallback  the result for a string without text
 * @return the number; 0 if the text does not start with one; `fallback` if the string is empty
 */
QEK_API int32_t qek_string_get_integer(const qek_string *string, int32_t fallback);

/**
 * Reads the text as qek_stringx_get_long() does. A number outside the range of an `int64_t` wraps.
 * @param string    the string
 * @param fallback  the result for a string without text
 * @return the number; 0 if the text does not start with one; `fallback` if the string is empty
 */
QEK_API int64_t qek_string_get_long(const qek_string *string, int64_t fallback);

/**
 * Reads the text as the runtime's `atof` does.
 * @param string    the string
 * @param fallback  the result for a string without text
 * @return the number; 0 if the text does not start with one; `fallback` if the string is empty
 */
QEK_API float qek_string_get_float(const qek_string *string, float fallback);

/**
 * Reads the text as qek_stringx_get_float() does.
 * @param string    the string
 * @param fallback  the result for a string without text
 * @return the number; 0 if the text does not start with one, negative zero if it then starts with
 *         `-`; `fallback` if the string is empty
 */
QEK_API double qek_string_get_double(const qek_string *string, double fallback);

/** @} */

/**
 * @name Substitution
 * All but qek_string_replace_char() build a new text in a second buffer and put it in place of the
 * old one at the end, even if nothing was substituted. So their arguments may point into the string
 * itself; every pointer into `data` is stale afterwards; and `capacity` is that of the new buffer.
 * qek_string_replace() and qek_string_match() leave an empty string without a buffer. If memory
 * runs out at the start, the string stays as it was. If it runs out later in qek_string_replace()
 * or qek_string_match(), the bytes concerned are missing from the result, and nothing tells.
 * @{
 */

/**
 * Overwrites every byte of a value by another, in place, NULs inside the text included.
 * @param string  the string
 * @param old_ch  the byte to replace
 * @param new_ch  the byte that takes its place; may be the same, and counts then too
 * @return how many bytes were replaced; 0 if the string is empty
 */
QEK_API int32_t qek_string_replace_char(qek_string *string, uint8_t old_ch, uint8_t new_ch);

/**
 * Replaces every occurrence of a text, from left to right, without overlap and without searching
 * the replacements again. An occurrence behind a NUL inside the text is not found; the bytes there
 * are kept.
 * @param string       the string
 * @param find         the NUL-terminated text to replace; null is found nowhere; an empty one is
 *                     the caller's error: if the string holds text, the call does not return
 * @param replacement  the NUL-terminated text that takes its place; null deletes the occurrences
 * @return how many were replaced; 0 also if memory runs out at the start
 */
QEK_API int32_t qek_string_replace(qek_string *string, const void *find, const void *replacement);

#if defined(__GNUC__)
#define QEK_STRING_NULL_ENDED __attribute__((sentinel))
#define QEK_STRING_PRINTF __attribute__((format(printf, 2, 3)))
#else
#define QEK_STRING_NULL_ENDED
#define QEK_STRING_PRINTF
#endif

/**
 * Replaces the first occurrence of a marker by the first text of a list, the second by the second,
 * and so on. In spite of the name there is no pattern: the marker is a literal text. The list ends
 * at its first null: markers left over stay, and texts left over are not read. Texts that were put
 * in are not searched again, and a marker behind a NUL inside the string is not found.
 * @param string  the string
 * @param marker  the NUL-terminated marker; null is found nowhere; an empty one puts all texts of
 *                the list in at the front, one after the other, if the string holds text
 * @param ...     pointers to NUL-terminated texts (an empty one removes its marker), then a null
 *                pointer
 */
QEK_STRING_NULL_ENDED
QEK_API void qek_string_match(qek_string *string, const void *marker, ...);

/**
 * Replaces the text by the expansion that the runtime's `printf` family makes of a format, in a
 * buffer that is sized by one pass over the format. The estimate starts as the length of `format`.
 * At each `%` the pass looks at the one character behind it:
 * - `s` or `S` adds the length of the argument, taken as a NUL-terminated byte text;
 * - any other adds 32, flags, widths and precisions too: `%5d` and `%-40s` add 32;
 * - a NUL ends the pass.
 *
 * The pass goes on at the character that it looked at, so that `%%` adds 64, and an `s` right
 * behind it adds 32 and reads no argument. Arguments are stepped over by their own types, so that
 * a `%s` may stand behind any conversion of the runtime. Behind one that the pass does not know (a
 * numbered argument, say) no argument is read any more, and each `%s` adds 32.
 *
 * The estimate fixes the capacity, which is that of a fresh string after qek_string_expand() to the
 * estimate. An expansion that does not fit is cut at the capacity. A conversion that the runtime
 * refuses leaves an empty text with its terminator.
 * @param string  the string
 * @param format  the format; null faults; an empty one is the caller's error, since no buffer is
 *                made for it
 * @param ...     the arguments of the format; a null for `%s` faults
 */
QEK_STRING_PRINTF
QEK_API void qek_string_format(qek_string *string, const char *format, ...);

#undef QEK_STRING_NULL_ENDED
#undef QEK_STRING_PRINTF

/** @} */

/** @} */
/* ============================================================================================== */
/**
 * @defgroup char Text slice (char)
 * A pointer and a length: a slice of somebody else's text, or a private copy made once.
 *
 * Put a record around a piece of text by writing its two fields, then trim it, search it, compare
 * it, or read it as a number, without copying a byte. Such a record owns nothing, needs neither
 * qek_char_init() nor qek_char_term(), and must not be passed to qek_char_term(). A record filled
 * by qek_char_copy() owns its block and ends with qek_char_term(). Nothing here writes into the
 * text but the case mapping, and only qek_char_length() looks for a terminator.
 *
 * Cost: nothing allocates but qek_char_copy(). Every call is at most linear in the slice, except
 * qek_char_find() and qek_char_find_pos() (slice times text at worst) and qek_char_get_float()
 * (from the 19th decimal on, up to some 330 multiplications each).
 *
 * Take another family when: the text grows or is edited (use @ref string), or several spans of one
 * text are cut from each other (use @ref stringx).
 *
 * @code{.c}
 * static void example_char(void)
 * {
 *     char text[] = " 12 ; -7.5 ";
 *     qek_char item, kept;
 *     item.data = (uint8_t *)text;
 *     item.length = 4;
 *     qek_char_trim(&item);
 *     assert(item.length == 2 && qek_char_is_long(&item) && qek_char_get_long(&item) == 12);
 *     item.data = (uint8_t *)text + 5;
 *     item.length = -1;
 *     assert(qek_char_length(&item) == 6);
 *     qek_char_trim(&item);
 *     assert(!qek_char_is_long(&item) && qek_char_get_float(&item) == -7.5);
 *     qek_char_init(&kept);
 *     qek_char_copy(&kept, item.data, item.length);
 *     assert(qek_char_compare(&kept, "-7.5", -1) == 0 && kept.data[4] == 0);
 *     qek_char_term(&kept);
 * }
 * @endcode
 * @{
 */

/**
 * A slice of text.
 *
 * With `length` not negative the text needs no terminator. A negative `length` says that `data` is
 * NUL-terminated and not measured yet; qek_char_length() resolves it. Until then the number
 * readers give 0, the finds give -1, and qek_char_trim() ends in `length` 0: measure first.
 */
typedef struct qek_char {
    uint8_t *data;  /**< the text; null: none. Owned after qek_char_copy(), else foreign */
    int32_t length; /**< bytes; negative: not measured yet */
} qek_char;

/**
 * Makes a record without text: both fields 0. The same operation as qek_bits_init().
 * @param record  the record; what it held is not looked at
 */
QEK_API void qek_char_init(qek_char *record);

/**
 * Frees the text that qek_char_copy() made and sets both fields to 0. The same operation as
 * qek_bits_term(). Not for a slice of foreign text, nor for an owned one whose leading bytes
 * qek_char_trim() took off: `data` is then not the start of the block.
 * @param record  the record; harmless if it has no text
 */
QEK_API void qek_char_term(qek_char *record);

/**
 * Narrows the slice to its text without white space (TAB, LF, CR, SPACE) at the ends. No byte is
 * moved or written: `data` advances over what is taken off in front. A NUL among the white space
 * in front sets `length` to 0 whatever follows it, while at the other end NUL is taken off like
 * white space (this is intended). VT, FF, and bytes of 0x80 and above, are text.
 * A slice of nothing but white space gets `length` 0 and keeps its `data`; so does a slice with a
 * negative `length`. Null `data`: nothing happens.
 * @param record  the slice; do not trim a record that qek_char_term() is to end
 */
QEK_API void qek_char_trim(qek_char *record);

/**
 * Stores `length`. In spite of the name it also lengthens, without a bound; no terminator is
 * written. Null `data` or a negative `length`: nothing happens.
 * @param record  the slice
 * @param length  the new length in bytes
 */
QEK_API void qek_char_shrink(qek_char *record, int32_t length);

/**
 * Tells whether there is no text. The same operation as qek_string_is_empty(),
 * qek_stream_is_empty() and qek_wchar_is_empty().
 * @param record  the slice
 * @return 1 if `data` is null or `length` is exactly 0, else 0; so 0 for an unmeasured text, even
 *         if it is empty
 */
QEK_API int32_t qek_char_is_empty(const qek_char *record);

/**
 * Gives the length, and measures and stores it first if it is negative. Linear in the text when it
 * measures.
 * @param record  the slice; NUL-terminated if its `length` is negative
 * @return the length in bytes; 0, stored too, for a negative `length` with null `data`
 */
QEK_API int32_t qek_char_length(qek_char *record);

/**
 * Replaces each byte of the text by the C runtime's `tolower` of it, handed over as a signed
 * value. `length` 0 or less: nothing happens. `data` is not tested.
 * @param record  the slice; its text is written, also when it is foreign
 */
QEK_API void qek_char_make_lower(qek_char *record);

/**
 * As qek_char_make_lower(), with `toupper`. `length` 0 or less: nothing happens.
 * @param record  the slice; its text is written, also when it is foreign
 */
QEK_API void qek_char_make_upper(qek_char *record);

/**
 * Gives an empty record a copy of `text` with a NUL behind it. The record owns the copy. Only a
 * record with null `data` takes a text: if `data` is set, or `text` is null, nothing happens. To
 * change an owned text, call qek_char_term() first. Exhausted memory faults.
 * @param record       the record, with null `data`
 * @param text         the text to copy
 * @param text_length  its bytes; negative: NUL-terminated
 */
QEK_API void qek_char_copy(qek_char *record, const void *text, int32_t text_length);

/**
 * Tells whether the whole text is an integer: an optional `-`, then one or more digits 0 to 9, and
 * nothing else. White space and `+` are not accepted.
 * @param record  the slice
 * @return 1 if it is; 0 if not, or if `length` is below 1
 */
QEK_API int32_t qek_char_is_long(const qek_char *record);

/**
 * Reads the integer that the text starts with: an optional `-` and digits, up to the first byte
 * that does not belong. A value beyond 64 bits wraps. `12-3` gives 12, `-12-3` gives -12, and
 * 9223372036854775808 gives the most negative value.
 * @param record  the slice; exactly `length` bytes are looked at
 * @return the value; 0 if no digit was read, or if `length` is below 1
 */
QEK_API int64_t qek_char_get_long(const qek_char *record);

/**
 * Tells whether the whole text is a decimal: an optional `-`, one or more digits, then optionally a
 * point and zero or more digits. `12.` is one; `.5`, `-.5` and `1e5` are not.
 * @param record  the slice
 * @return 1 if it is; 0 if not, or if `length` is below 1
 */
QEK_API int32_t qek_char_is_float(const qek_char *record);

/**
 * Reads the decimal that the text starts with: an optional `-`, digits, and, behind at least one
 * digit, a point and more digits, up to the first byte that does not belong. There is no exponent,
 * and the decimal separator is a point in every locale.
 *
 * The last bits are fixed by the arithmetic, all of it in double. A digit before the point: the
 * value times 10.0, plus the byte's value, minus 48.0, in that order. The k-th decimal: the digit
 * multiplied by 0.1 k times in a row, added to the value. So they may differ from those of the C
 * runtime's `strtod`.
 * @param record  the slice; exactly `length` bytes are looked at
 * @return the value; 0.0 if no digit was read, or if `length` is below 1; negative zero if a `-`
 *         was read and no digit, as in `-.5`
 */
QEK_API double qek_char_get_float(const qek_char *record);

/**
 * Orders the slice against `text`: bytes as unsigned numbers, and of two texts that agree so far
 * the shorter first. A negative `length` of the record enters as it stands: no bytes are compared.
 * @param record       the slice
 * @param text         the text to compare with, or null
 * @param text_length  its bytes; negative: NUL-terminated
 * @return with null `data` or `length` 0: 0 if `text` is null or `text_length` is 0, else -1, also
 *         for an empty `text` given with a negative length, which is not measured here (this is
 *         intended). Otherwise 1 if `text` is null or `text_length` is 0, else the result of
 *         qek_mem_cmp(): the difference of the first bytes that differ, or of the lengths
 */
QEK_API int32_t qek_char_compare(const qek_char *record, const void *text, int32_t text_length);

/**
 * As qek_char_compare(), with each byte taken through the C runtime's `tolower`, as
 * qek_mem_icmp() does.
 * @param record       the slice
 * @param text         the text to compare with, or null
 * @param text_length  its bytes; negative: NUL-terminated
 * @return as qek_char_compare(), the difference being that of the lowered bytes
 */
QEK_API int32_t qek_char_icompare(const qek_char *record, const void *text, int32_t text_length);

/**
 * Finds the first `ch`.
 * @param record  the slice
 * @param ch      the byte; a NUL cannot be searched for
 * @return its index; -1 if it is not there, `data` is null or `ch` is 0
 */
QEK_API int32_t qek_char_find_char(const qek_char *record, uint8_t ch);

/**
 * Finds the first `ch` at or after `start`.
 * @param record  the slice
 * @param ch      the byte; a NUL cannot be searched for
 * @param start   index to start at; not tested against 0: a negative one would search in front of
 *                the text and must not be passed
 * @return its index, counted from the start of the text; -1 if it is not there, `data` is null,
 *         `ch` is 0 or `start` is not below `length`
 */
QEK_API int32_t qek_char_find_char_pos(const qek_char *record, uint8_t ch, int32_t start);

/**
 * Finds the last `ch`.
 * @param record  the slice
 * @param ch      the byte; a NUL cannot be searched for
 * @return its index; -1 if it is not there, `data` is null or `ch` is 0
 */
QEK_API int32_t qek_char_reverse_find(const qek_char *record, uint8_t ch);

/**
 * Finds the first occurrence of `text`. NUL bytes in the slice are bytes like any other. An empty
 * `text` is found as qek_mem_str() finds it: at the first index from 0 to `length` inclusive whose
 * byte equals the first byte at `text`; the byte behind the slice must then be readable.
 * @param record       the slice
 * @param text         the text to find
 * @param text_length  its bytes; negative: NUL-terminated
 * @return its index; -1 if it is not there, or if `data` or `text` is null
 */
QEK_API int32_t qek_char_find(const qek_char *record, const void *text, int32_t text_length);

/**
 * As qek_char_find(), from `start` on.
 * @param record       the slice
 * @param text         the text to find
 * @param text_length  its bytes; negative: NUL-terminated
 * @param start        index to start at; not tested against 0: a negative one must not be passed
 * @return its index, counted from the start of the slice; -1 if it is not there, `data` or `text`
 *         is null, or `start` is not below `length`
 */
QEK_API int32_t qek_char_find_pos(const qek_char *record, const void *text, int32_t text_length,
                                  int32_t start);

/** @} */

/* ============================================================================================== */
/**
 * @defgroup stringx String view (stringx)
 * A span of a text that somebody else owns: a base pointer, an offset and a length.
 *
 * A view never allocates, copies or writes a byte. It is narrowed in place, or aims a second view
 * or a @ref char slice at part of the same text. Indices given and returned count from the start
 * of the span, not from `data`; a terminator is never looked for.
 *
 * A view is valid as long as the text stays where it is: one on a `qek_string` is stale after any
 * call that may move the string's buffer. It needs no end of life.
 *
 * Cost: cutting, copying and swapping take constant time. Trimming, comparing, single-byte finds
 * and number readers are linear in the span, but qek_stringx_get_float() takes up to some 330
 * multiplications for each decimal from the 19th on; finding a text is span times text at worst.
 *
 * Take another family when: the text is to be owned or changed (use @ref string), or one slice that
 * is trimmed and read is all that is needed (use @ref char).
 *
 * @code{.c}
 * static void example_stringx(void)
 * {
 *     qek_string text;
 *     qek_stringx line, value;
 *     qek_char key;
 *     qek_string_init(&text);
 *     qek_string_copy(&text, "key = 123 ;", -1);
 *     qek_stringx_copy_string(&line, &text);
 *     qek_stringx_copy(&value, &line);
 *     qek_stringx_mid_string(&line, qek_stringx_find_char(&line, '=') + 1, 5, &value);
 *     assert(value.offset == 5 && value.length == 5);
 *     assert(qek_stringx_trim(&value) == 1 && value.offset == 6 && value.length == 3);
 *     assert(qek_stringx_is_long(&value) && qek_stringx_get_long(&value) == 123);
 *     qek_stringx_left_char(&line, 3, &key);
 *     assert(qek_char_compare(&key, "key", 3) == 0 && key.data == text.data);
 *     qek_string_term(&text);
 * }
 * @endcode
 * @{
 */

/**
 * A span of foreign text.
 *
 * The span is the `length` bytes from `data + offset`. A negative `length` comes of
 * qek_stringx_left() with a negative count or of an unmeasured `qek_char`: qek_stringx_is_empty()
 * does not see it as empty, but the number readers give 0, the finds -1, qek_stringx_get_at()
 * 0xFF.
 */
typedef struct qek_stringx {
    uint8_t *data;  /**< start of the text, not owned; may be null */
    int32_t offset; /**< where the span starts, in bytes from `data` */
    int32_t length; /**< bytes in the span */
} qek_stringx;

/**
 * Makes a view of nothing: all three fields 0. The same operation as qek_string_init().
 * @param view  the record; what it held is not looked at
 */
QEK_API void qek_stringx_init(qek_stringx *view);

/**
 * Clears the three fields and frees nothing. The same operation as qek_stringx_init().
 * @param view  the view; need not be ended at all
 */
QEK_API void qek_stringx_term(qek_stringx *view);

/**
 * Tells whether the span is empty.
 * @param view  the view
 * @return 1 if `data` is null or `length` is 0, else 0
 */
QEK_API int32_t qek_stringx_is_empty(const qek_stringx *view);

/**
 * Narrows the span to its text without white space (TAB, LF, CR, SPACE) at the ends. A NUL among
 * the white space in front sets `length` to 0 whatever follows it, while at the other end NUL is
 * taken off like white space (this is intended). VT, FF, and bytes of 0x80 and above, are text.
 * Where `length` becomes 0, `offset` stays.
 * @param view  the view
 * @return 1 if the span changed, else 0; 1 also for a span with `data` and a `length` of 0 or less,
 *         which comes out with `length` 0 (this is intended: qek_string_trim() gives 0 for an empty
 *         string); 0 if `data` is null
 */
QEK_API int32_t qek_stringx_trim(qek_stringx *view);

/**
 * Sets `offset` and `length` to 0. `data` stays.
 * @param view  the view
 */
QEK_API void qek_stringx_shrink(qek_stringx *view);

/**
 * Makes `view` the same span of the same text as `other`.
 * @param view   the view to set; need not be initialised
 * @param other  the view to copy
 */
QEK_API void qek_stringx_copy(qek_stringx *view, const qek_stringx *other);

/**
 * Makes `view` the whole text of a string: its `data` and `length`, with `offset` 0.
 * @param view    the view to set; need not be initialised
 * @param string  the string; keeps its text, and must not move it while the view is used
 */
QEK_API void qek_stringx_copy_string(qek_stringx *view, const qek_string *string);

/**
 * Makes `view` the whole text of a slice: its `data` and `length`, with `offset` 0. The same
 * operation as qek_stringx_copy_string(). A negative `length` is taken over as it stands: call
 * qek_char_length() first.
 * @param view    the view to set; need not be initialised
 * @param record  the slice
 */
QEK_API void qek_stringx_copy_char(qek_stringx *view, const qek_char *record);

/**
 * Exchanges the three fields of two views.
 * @param a  one view
 * @param b  the other
 */
QEK_API void qek_stringx_swap(qek_stringx *a, qek_stringx *b);

/**
 * Tells whether the whole span is an integer, by the grammar of qek_char_is_long().
 * @param view  the view
 * @return 1 if it is; 0 if not, or if `length` is below 1
 */
QEK_API int32_t qek_stringx_is_long(const qek_stringx *view);

/**
 * Reads the integer that the span starts with, as qek_char_get_long().
 * @param view  the view; exactly `length` bytes are looked at
 * @return the value, wrapped to 64 bits; 0 if no digit was read, or if `length` is below 1
 */
QEK_API int64_t qek_stringx_get_long(const qek_stringx *view);

/**
 * Tells whether the whole span is a decimal, by the grammar of qek_char_is_float().
 * @param view  the view
 * @return 1 if it is; 0 if not, or if `length` is below 1
 */
QEK_API int32_t qek_stringx_is_float(const qek_stringx *view);

/**
 * Reads the decimal that the span starts with, as qek_char_get_float(), to the same last bit.
 * @param view  the view; exactly `length` bytes are looked at
 * @return the value; 0.0 if no digit was read, or if `length` is below 1; negative zero if a `-`
 *         was read and no digit
 */
QEK_API double qek_stringx_get_float(const qek_stringx *view);

/**
 * Reads one byte of the span. Unlike that of qek_string_get_at(), the bound is `length`.
 * @param view   the view
 * @param index  index in the span
 * @return the byte; 0xFF if `index` is negative or not below `length`
 */
QEK_API uint8_t qek_stringx_get_at(const qek_stringx *view, int32_t index);

/**
 * Orders the span against `text`: bytes as unsigned numbers, and of two texts that agree so far
 * the shorter first. A negative `length` of the view enters as it stands: no bytes are compared.
 * @param view         the view
 * @param text         the text to compare with, or null
 * @param text_length  its bytes; negative: NUL-terminated
 * @return with null `data` or `length` 0: 0 if `text` is null or empty, measured if need be (unlike
 *         qek_char_compare()), else -1. Otherwise 1 if `text` is null or `text_length` is 0, else
 *         the result of qek_mem_cmp(): the difference of the first bytes that differ, or of the
 *         lengths
 */
QEK_API int32_t qek_stringx_compare(const qek_stringx *view, const void *text, int32_t text_length);

/**
 * As qek_stringx_compare(), with each byte taken through the C runtime's `tolower`, as
 * qek_mem_icmp() does.
 * @param view         the view
 * @param text         the text to compare with, or null
 * @param text_length  its bytes; negative: NUL-terminated
 * @return as qek_stringx_compare(), the difference being that of the lowered bytes
 */
QEK_API int32_t qek_stringx_icompare(const qek_stringx *view, const void *text,
                                     int32_t text_length);

/**
 * Finds the first `ch`.
 * @param view  the view
 * @param ch    the byte; a NUL cannot be searched for
 * @return its index in the span; -1 if it is not there, `data` is null, `length` is 0 or `ch` is 0
 */
QEK_API int32_t qek_stringx_find_char(const qek_stringx *view, uint8_t ch);

/**
 * Finds the first `ch` at or after `start`.
 * @param view   the view
 * @param ch     the byte; a NUL cannot be searched for
 * @param start  index in the span to start at
 * @return its index, counted from the start of the span; -1 as in qek_stringx_find_char(), and if
 *         `start` is negative or not below `length`
 */
QEK_API int32_t qek_stringx_find_char_pos(const qek_stringx *view, uint8_t ch, int32_t start);

/**
 * Finds the last `ch`.
 * @param view  the view
 * @param ch    the byte; a NUL cannot be searched for
 * @return its index in the span; -1 if it is not there, `data` is null, `length` is 0 or `ch` is 0
 */
QEK_API int32_t qek_stringx_reverse_find(const qek_stringx *view, uint8_t ch);

/**
 * Finds the first occurrence of `text`. NUL bytes in the span are bytes like any other. An empty
 * `text` is found as qek_mem_str() finds it: at the first index from 0 to `length` inclusive whose
 * byte equals the first byte at `text`; the byte behind the span must then be readable.
 * @param view         the view
 * @param text         the text to find
 * @param text_length  its bytes; negative: NUL-terminated
 * @return its index in the span; -1 if it is not there, `data` or `text` is null, or `length` is 0
 */
QEK_API int32_t qek_stringx_find(const qek_stringx *view, const void *text, int32_t text_length);

/**
 * As qek_stringx_find(), from `start` on.
 * @param view         the view
 * @param text         the text to find
 * @param text_length  its bytes; negative: NUL-terminated
 * @param start        index in the span to start at
 * @return its index, counted from the start of the span; -1 as in qek_stringx_find(), and if
 *         `start` is negative or not below `length`
 */
QEK_API int32_t qek_stringx_find_pos(const qek_stringx *view, const void *text, int32_t text_length,
                                     int32_t start);

/**
 * Narrows the span to its first `count` bytes. Null `data`, `length` 0, or `count` not below
 * `length`: nothing happens. A negative `count` is stored as it stands (this is intended).
 * @param view   the view
 * @param count  bytes to keep
 */
QEK_API void qek_stringx_left(qek_stringx *view, int32_t count);

/**
 * Narrows the span to `count` bytes from `position`, or to what is there of them. Null `data`,
 * `length` 0, or a negative `position`: nothing happens. `count` 0 or less, or `position` not below
 * `length`: `length` becomes 0, and `offset` grows by `position` all the same, even past the old
 * end (this is intended).
 * @param view      the view
 * @param position  index in the span of the first byte to keep
 * @param count     bytes to keep
 */
QEK_API void qek_stringx_mid(qek_stringx *view, int32_t position, int32_t count);

/**
 * Narrows the span to its last `count` bytes. Null `data`, `length` 0, or `count` not below
 * `length`: nothing happens. `count` 0 or less: `length` becomes 0, and `offset` grows by
 * `length - count` all the same: to the old end, or past it for a negative `count` (this is
 * intended).
 * @param view   the view
 * @param count  bytes to keep
 */
QEK_API void qek_stringx_right(qek_stringx *view, int32_t count);

/**
 * Aims another view on the same text at the first `count` bytes of the span; at all of it if
 * `count` is not below `length`. If `target` is on another text (its `data` differs), nothing
 * happens; prepare it with qek_stringx_copy(). Null `data` of `view`, `length` 0, or `count` 0 or
 * less: `target` gets the `offset` of `view` and `length` 0, whatever text it is on.
 * @param view         the view; stays as it is
 * @param count        bytes to take
 * @param[out] target  the view to aim; its `data` is read, never written
 */
QEK_API void qek_stringx_left_string(const qek_stringx *view, int32_t count, qek_stringx *target);

/**
 * Aims another view on the same text at `count` bytes from `position`, or at what is there of
 * them. If `target` is on another text, nothing happens. Null `data` of `view`, `length` 0,
 * `position` negative or not below `length`, or `count` 0 or less: `target` gets
 * `offset + position` and `length` 0, whatever text it is on.
 * @param view         the view; stays as it is
 * @param position     index in the span of the first byte to take
 * @param count        bytes to take
 * @param[out] target  the view to aim; its `data` is read, never written
 */
QEK_API void qek_stringx_mid_string(const qek_stringx *view, int32_t position, int32_t count,
                                    qek_stringx *target);

/**
 * Aims another view on the same text at the last `count` bytes of the span; at all of it if
 * `count` is not below `length`. If `target` is on another text, nothing happens. Null `data` of
 * `view`, `length` 0, or `count` 0 or less: `target` gets the `offset` of `view` and `length` 0,
 * whatever text it is on.
 * @param view         the view; stays as it is
 * @param count        bytes to take
 * @param[out] target  the view to aim; its `data` is read, never written
 */
QEK_API void qek_stringx_right_string(const qek_stringx *view, int32_t count, qek_stringx *target);

/**
 * Aims a slice at the first `count` bytes of the span; at all of it if `count` is not below
 * `length`. Null `data`, `length` 0, or `count` 0 or less: `target` gets `data + offset` and
 * `length` 0.
 * @param view         the view; stays as it is
 * @param count        bytes to take
 * @param[out] target  the slice; both fields are written, nothing that it held is freed, and it
 *                     borrows the text: never pass it to qek_char_term()
 */
QEK_API void qek_stringx_left_char(const qek_stringx *view, int32_t count, qek_char *target);

/**
 * Aims a slice at `count` bytes from `position`, or at what is there of them. Null `data`,
 * `length` 0, `position` negative or not below `length`, or `count` 0 or less: `target` gets
 * `data + offset + position` and `length` 0.
 * @param view         the view; stays as it is
 * @param position     index in the span of the first byte to take
 * @param count        bytes to take
 * @param[out] target  the slice, as in qek_stringx_left_char()
 */
QEK_API void qek_stringx_mid_char(const qek_stringx *view, int32_t position, int32_t count,
                                  qek_char *target);

/**
 * Aims a slice at the last `count` bytes of the span; at all of it if `count` is not below
 * `length`. Null `data`, `length` 0, or `count` 0 or less: `target` gets `data + offset` and
 * `length` 0.
 * @param view         the view; stays as it is
 * @param count        bytes to take
 * @param[out] target  the slice, as in qek_stringx_left_char()
 */
QEK_API void qek_stringx_right_char(const qek_stringx *view, int32_t count, qek_char *target);

/** @} */

/* ============================================================================================== */
/**
 * @defgroup wchar Wide string (wchar)
 * An owned, growable text of 16-bit characters.
 *
 * The @ref string family with a wider element. A character is an unsigned 16-bit unit, whatever the
 * platform's own wide character is; surrogate pairs have no meaning here. Every length, count,
 * index and capacity counts units, never bytes. A negative `text_length` of wide text means that
 * it ends at its first zero unit and is to be measured, except in qek_wchar_insert() and
 * qek_wchar_update(), which refuse it. Numbers and 8-bit text can be put in; there are no readers
 * of numbers, no format and no template.
 *
 * Growth replaces the buffer: any call that adds text may make pointers to `data` stale. Emptying
 * and shortening keep it. A text given to a call that changes a string must not lie in that
 * string's own buffer, except those of qek_wchar_replace(). When memory runs out, the string
 * stays as it was.
 *
 * Cost: appending is amortised constant time per unit; inserting, deleting, comparing, trimming and
 * single-unit finds are linear; finding a text is string times text at worst.
 *
 * Take another family when: the text is made of bytes (use @ref string), or is to be read as a
 * number (use @ref string or @ref stringx).
 *
 * @code{.c}
 * static void example_wchar(void)
 * {
 *     static const uint16_t comma[] = {',', 0}, dash[] = {' ', '-', ' ', 0};
 *     static const uint16_t number[] = {'-', '4', '2', 0};
 *     qek_wchar text, tail;
 *     qek_wchar_init(&text);
 *     qek_wchar_init(&tail);
 *     qek_wchar_copy_str(&text, "a,b,", -1);
 *     qek_wchar_append_integer(&text, -42);
 *     assert(text.length == 7 && text.capacity == 15 && text.data[7] == 0);
 *     assert(qek_wchar_replace(&text, comma, dash) == 2 && text.length == 11);
 *     assert(qek_wchar_find(&text, number, -1) == 8);
 *     qek_wchar_right_wchar(&text, 3, &tail);
 *     assert(qek_wchar_compare(&tail, number, -1) == 0);
 *     assert(qek_wchar_insert(&tail, 0, comma, -1) == 0 && tail.length == 3);
 *     qek_wchar_term(&tail);
 *     qek_wchar_term(&text);
 * }
 * @endcode
 * @{
 */

/**
 * An owned text of 16-bit units, in the layout of `qek_string`.
 *
 * The buffer holds `capacity + 1` units. `capacity` is 8k + 7 with k at least 1, or 0 with no
 * buffer; `length` lies between 0 and `capacity`. While `data` is not null, `data[length]` is 0
 * after every call that changes `length`; with `data` null there is no text to hand over. Units up
 * to `capacity` that were never written are 0; what a shortening leaves behind is not cleared.
 * Zero units inside the text are units like any other, except where text is measured or searched
 * for with a negative length.
 */
typedef struct qek_wchar {
    uint16_t *data;   /**< the buffer, owned; null until the first growth */
    int32_t length;   /**< units of text, without the terminator */
    int32_t capacity; /**< units of text that fit, without the terminator */
} qek_wchar;

/**
 * Makes an empty string without a buffer: all three fields 0. The same operation as
 * qek_string_init().
 * @param string  the record; what it held is not looked at
 */
QEK_API void qek_wchar_init(qek_wchar *string);

/**
 * Frees the buffer and sets all three fields to 0, as after qek_wchar_init(). The same operation
 * as qek_string_term().
 * @param string  the string; harmless without a buffer
 */
QEK_API void qek_wchar_term(qek_wchar *string);

/**
 * Tells whether there is no text. The same operation as qek_string_is_empty().
 * @param string  the string
 * @return 1 if `data` is null or `length` is 0, else 0
 */
QEK_API int32_t qek_wchar_is_empty(const qek_wchar *string);

/**
 * Exchanges all fields of two strings in constant time. The same operation as qek_string_swap().
 * @param a  one string
 * @param b  the other
 */
QEK_API void qek_wchar_swap(qek_wchar *a, qek_wchar *b);

/**
 * Writes `count` zero units from `position`. `length` stays; the bound is `capacity`. No buffer, a
 * negative `position`, or `position + count` above `capacity`: nothing happens.
 * @param string    the string
 * @param position  index of the first unit to clear
 * @param count     units to clear; not tested against 0: a negative one must not be passed
 */
QEK_API void qek_wchar_zero(qek_wchar *string, int32_t position, int32_t count);

/**
 * Makes room for `capacity` units and the terminator. `length` stays. If there is room, nothing
 * happens; so a `capacity` of 0 or less never allocates. Otherwise the new capacity is the larger
 * of `capacity` and the old capacity plus half the `length` (that half at least 8 and at most
 * 8388608, and the sum at most 0x7FFFFFFF), rounded down to a multiple of 8, plus 7. All added
 * units are 0. Pointers to `data` go stale.
 * @param string    the string
 * @param capacity  units wanted
 * @return 1; 0 when memory runs out, with the string as it was
 */
QEK_API int32_t qek_wchar_expand(qek_wchar *string, int32_t capacity);

/**
 * Removes white space (TAB, LF, CR, SPACE) at both ends, in place. A zero unit among the white
 * space in front empties the string whatever follows it, while at the other end zero units are
 * removed like white space (this is intended). All else is text, so also 0x00A0 and 0x2003.
 * @param string  the string
 * @return 1 if the text changed; 0 if not, or if there is no text
 */
QEK_API int32_t qek_wchar_trim(qek_wchar *string);

/**
 * Sets `length` and writes the terminator. In spite of the name it also lengthens, up to
 * `capacity`, over the units that stand there. Frees nothing. No buffer, or a negative `length`:
 * nothing happens.
 * @param string  the string
 * @param length  the new length in units; above `capacity`: `capacity` is used
 */
QEK_API void qek_wchar_shrink(qek_wchar *string, int32_t length);

/**
 * Copies the text into another string, and expands that to the capacity (not the length) of the
 * source first. An empty source empties `target`, after the same expansion. Memory runs out:
 * `target` is as it was.
 * @param source  the string to copy
 * @param target  an initialised string; a buffer that it holds is reused
 */
QEK_API void qek_wchar_clone(const qek_wchar *source, qek_wchar *target);

/**
 * Passes each unit, as an unsigned number, through the C runtime's byte routine `tolower` and
 * stores the low 16 bits of the result. A unit above 255 is not mapped. No text: nothing happens.
 * @param string  the string
 */
QEK_API void qek_wchar_make_lower(qek_wchar *string);

/**
 * As qek_wchar_make_lower(), with `toupper`. No text: nothing happens.
 * @param string  the string
 */
QEK_API void qek_wchar_make_upper(qek_wchar *string);

/**
 * Replaces the text. Null `text`: the string is emptied. Memory runs out: unchanged.
 * @param string       the string
 * @param text         the new text, or null
 * @param text_length  its units; negative: up to its first zero unit
 */
QEK_API void qek_wchar_copy(qek_wchar *string, const uint16_t *text, int32_t text_length);

/**
 * Replaces the text by one unit. `ch` 0: the string is emptied. Memory runs out: unchanged.
 * @param string  the string
 * @param ch      the unit
 */
QEK_API void qek_wchar_copy_char(qek_wchar *string, uint16_t ch);

/**
 * Replaces the text by 8-bit text. There is no code page: each byte becomes one unit by sign
 * extension, so 0x41 becomes 0x0041 and 0xE9 becomes 0xFFE9 (this is intended). Null `text`: the
 * string is emptied. Memory runs out: unchanged.
 * @param string       the string
 * @param text         the 8-bit text, or null
 * @param text_length  its bytes; negative: NUL-terminated
 */
QEK_API void qek_wchar_copy_str(qek_wchar *string, const void *text, int32_t text_length);

/**
 * Replaces the text by a number in decimal. Memory runs out: unchanged.
 * @param string  the string
 * @param value   the number
 */
QEK_API void qek_wchar_copy_integer(qek_wchar *string, int32_t value);

/**
 * As qek_wchar_copy_integer(), for 64 bits. Memory runs out: unchanged.
 * @param string  the string
 * @param value   the number
 */
QEK_API void qek_wchar_copy_long(qek_wchar *string, int64_t value);

/**
 * As qek_wchar_copy_double(), with `value` widened to double first. Memory runs out: unchanged.
 * @param string  the string
 * @param value   the number
 */
QEK_API void qek_wchar_copy_float(qek_wchar *string, float value);

/**
 * Replaces the text by a number as the C runtime's `%f` prints it: all digits before the point and
 * six decimals, with no exponent and no trimming of zeros; 1.5 gives `1.500000`. Nothing is cut,
 * however long. Memory runs out: unchanged.
 * @param string  the string
 * @param value   the number
 */
QEK_API void qek_wchar_copy_double(qek_wchar *string, double value);

/**
 * Adds text at the end. Null `text`: nothing happens. Memory runs out: unchanged.
 * @param string       the string
 * @param text         the text to add, or null
 * @param text_length  its units; negative: up to its first zero unit
 */
QEK_API void qek_wchar_append(qek_wchar *string, const uint16_t *text, int32_t text_length);

/**
 * Adds one unit at the end. Unlike qek_wchar_copy_char() it takes a `ch` of 0 as a unit like any
 * other (this is intended). Memory runs out: unchanged.
 * @param string  the string
 * @param ch      the unit
 */
QEK_API void qek_wchar_append_char(qek_wchar *string, uint16_t ch);

/**
 * Adds 8-bit text at the end, widened as in qek_wchar_copy_str(). Null `text`: nothing happens.
 * Memory runs out: unchanged.
 * @param string       the string
 * @param text         the 8-bit text, or null
 * @param text_length  its bytes; negative: NUL-terminated
 */
QEK_API void qek_wchar_append_str(qek_wchar *string, const void *text, int32_t text_length);

/**
 * Adds a number in decimal at the end. Memory runs out: unchanged.
 * @param string  the string
 * @param value   the number
 */
QEK_API void qek_wchar_append_integer(qek_wchar *string, int32_t value);

/**
 * As qek_wchar_append_integer(), for 64 bits. Memory runs out: unchanged.
 * @param string  the string
 * @param value   the number
 */
QEK_API void qek_wchar_append_long(qek_wchar *string, int64_t value);

/**
 * As qek_wchar_append_double(), with `value` widened to double first. Memory runs out: unchanged.
 * @param string  the string
 * @param value   the number
 */
QEK_API void qek_wchar_append_float(qek_wchar *string, float value);

/**
 * Adds a number at the end, in the form of qek_wchar_copy_double(). Memory runs out: unchanged.
 * @param string  the string
 * @param value   the number
 */
QEK_API void qek_wchar_append_double(qek_wchar *string, double value);

/**
 * Reads one unit. The bound is `capacity`, so units behind the text can be read.
 * @param string  the string
 * @param index   index of the unit
 * @return the unit; 0 if `index` is negative or not below `capacity` (unlike qek_string_get_at(),
 *         which gives all ones)
 */
QEK_API uint16_t qek_wchar_get_at(const qek_wchar *string, int32_t index);

/**
 * Stores one unit. The bound is `capacity`; `length` stays, so an `index` of `length` overwrites
 * the terminator (this is intended). `index` negative or not below `capacity`: nothing happens.
 * @param string  the string
 * @param index   index of the unit
 * @param ch      the unit
 */
QEK_API void qek_wchar_set_at(qek_wchar *string, int32_t index, uint16_t ch);

/**
 * Orders the string against `text`: units as unsigned numbers, and of two texts that agree so far
 * the shorter first.
 * @param string       the string
 * @param text         the text to compare with, or null
 * @param text_length  its units; negative: up to its first zero unit
 * @return with no text in the string: 0 if `text` is null or empty, else -1. Otherwise 1 if `text`
 *         is null or `text_length` is 0, else the difference of the first units that differ, or of
 *         the lengths
 */
QEK_API int32_t qek_wchar_compare(const qek_wchar *string, const uint16_t *text,
                                  int32_t text_length);

/**
 * As qek_wchar_compare(), with each unit lowered as in qek_wchar_make_lower() first.
 * @param string       the string
 * @param text         the text to compare with, or null
 * @param text_length  its units; negative: up to its first zero unit
 * @return as qek_wchar_compare(), the difference being that of the lowered units
 */
QEK_API int32_t qek_wchar_icompare(const qek_wchar *string, const uint16_t *text,
                                   int32_t text_length);

/**
 * Finds the first `ch`.
 * @param string  the string
 * @param ch      the unit; a zero unit cannot be searched for
 * @return its index; -1 if it is not there, there is no text or `ch` is 0
 */
QEK_API int32_t qek_wchar_find_char(const qek_wchar *string, uint16_t ch);

/**
 * Finds the first `ch` at or after `start`.
 * @param string  the string
 * @param ch      the unit; a zero unit cannot be searched for
 * @param start   index to start at
 * @return its index, counted from the start of the string; -1 if it is not there, there is no text,
 *         `ch` is 0, or `start` is negative or not below `length`
 */
QEK_API int32_t qek_wchar_find_char_pos(const qek_wchar *string, uint16_t ch, int32_t start);

/**
 * Finds the last `ch`.
 * @param string  the string
 * @param ch      the unit; a zero unit cannot be searched for
 * @return its index; -1 if it is not there, there is no text or `ch` is 0
 */
QEK_API int32_t qek_wchar_reverse_find(const qek_wchar *string, uint16_t ch);

/**
 * Finds the first occurrence of `text`. The two forms of the length differ (this is intended):
 * with a negative one the search stops at the first zero unit of the string, and an empty `text`
 * is found where the search starts. With a count, zero units are units like any other, and a
 * count of 0 finds the first unit, the terminator included, that equals the first unit at `text`.
 * @param string       the string
 * @param text         the text to find
 * @param text_length  its units; negative: up to its first zero unit
 * @return its index; -1 if it is not there, there is no text in the string, or `text` is null
 */
QEK_API int32_t qek_wchar_find(const qek_wchar *string, const uint16_t *text, int32_t text_length);

/**
 * As qek_wchar_find(), from `start` on.
 * @param string       the string
 * @param text         the text to find
 * @param text_length  its units; negative: up to its first zero unit
 * @param start        index to start at
 * @return its index, counted from the start of the string; -1 as in qek_wchar_find(), and if
 *         `start` is negative or not below `length`
 */
QEK_API int32_t qek_wchar_find_pos(const qek_wchar *string, const uint16_t *text,
                                   int32_t text_length, int32_t start);

/**
 * Overwrites every `old_ch` of the text with `new_ch`, in place. Zero units inside the text are
 * passed over, and replaced if asked.
 * @param string  the string
 * @param old_ch  the unit to replace; may be 0
 * @param new_ch  the unit to put there; may be 0, and may equal `old_ch`
 * @return how many were replaced; 0 if there is no text
 */
QEK_API int32_t qek_wchar_replace_char(qek_wchar *string, uint16_t old_ch, uint16_t new_ch);

/**
 * Replaces every occurrence of `find`, from left to right and without overlap; what was put in is
 * not searched again. Behind a zero unit inside the text nothing is found, but that part is kept.
 *
 * The result is built in a new buffer and the old one is freed last, also when nothing was found:
 * every pointer to `data` goes stale, and `find` and `replacement` may lie in the string itself. A
 * string without text comes back without a buffer. Memory runs out at the start: unchanged, result
 * 0. Memory runs out later: the pieces that could not be added are missing from the result, and
 * still counted.
 * @param string       the string
 * @param find         zero-terminated text to replace; null finds nothing; must not be empty in a
 *                     string with text, or the call does not return
 * @param replacement  zero-terminated text to put there; null or empty deletes
 * @return how many were replaced
 */
QEK_API int32_t qek_wchar_replace(qek_wchar *string, const uint16_t *find,
                                  const uint16_t *replacement);

/**
 * Inserts text in front of the unit at `position`. The length is never measured.
 * @param string       the string
 * @param position     index from 0 to `length`; `length` appends
 * @param text         the text; not tested: null with a positive count faults
 * @param text_length  its units, 1 at least
 * @return 1; 0 with no change if `position` is negative or above `length`, if `text_length` is 0 or
 *         negative (unlike qek_string_insert(), which measures), or if memory runs out
 */
QEK_API int32_t qek_wchar_insert(qek_wchar *string, int32_t position, const uint16_t *text,
                                 int32_t text_length);

/**
 * Replaces `old_length` units at `position` by `text_length` units of `text`. The length is never
 * measured. `position + old_length` is not tested against `length` and must not be above it. In
 * particular, with equal lengths the units are overwritten where they stand, even behind the text.
 * @param string       the string
 * @param position     index of the first unit to replace; `length` and `old_length` 0 append
 * @param old_length   units to take out
 * @param text         the text to put there; not tested; may be null if `text_length` is 0
 * @param text_length  its units; 0 deletes
 * @return 1; 0 with no change if `position`, `old_length` or `text_length` is negative (unlike
 *         qek_string_update(), which measures), if `position` is above `length`, or if memory runs
 *         out
 */
QEK_API int32_t qek_wchar_update(qek_wchar *string, int32_t position, int32_t old_length,
                                 const uint16_t *text, int32_t text_length);

/**
 * Removes `count` units at `position`. A `count` that reaches or passes the end cuts the text at
 * `position`, as qek_wchar_shrink() does: a negative `position` then does nothing, and one behind
 * the text lengthens it, up to `capacity` (this is intended). Nothing else is tested.
 * @param string    the string
 * @param position  index of the first unit to remove; a negative one must not be passed with a
 *                  `count` that stays short of the end
 * @param count     units to remove; a negative one must not be passed
 */
QEK_API void qek_wchar_delete(qek_wchar *string, int32_t position, int32_t count);

/**
 * Keeps the first `count` units, in place. No text, or `count` not below `length` or negative:
 * nothing happens. `count` 0: emptied.
 * @param string  the string
 * @param count   units to keep
 */
QEK_API void qek_wchar_left(qek_wchar *string, int32_t count);

/**
 * Keeps `count` units from `position`, or what is there of them, moved to the front in place. No
 * text, or a negative `position`: nothing happens. `count` 0 or less, or `position` not below
 * `length`: emptied.
 * @param string    the string
 * @param position  index of the first unit to keep
 * @param count     units to keep
 */
QEK_API void qek_wchar_mid(qek_wchar *string, int32_t position, int32_t count);

/**
 * Keeps the last `count` units, moved to the front in place. No text, or `count` not below
 * `length`: nothing happens. `count` 0 or less: emptied (unlike qek_wchar_left(); this is
 * intended).
 * @param string  the string
 * @param count   units to keep
 */
QEK_API void qek_wchar_right(qek_wchar *string, int32_t count);

/**
 * Copies the first `count` units into another string in place of its text; all of them if `count`
 * is not below `length`. No text, or `count` 0 or less: `target` is emptied. Memory runs out:
 * `target` is as it was.
 * @param source       the string to copy from
 * @param count        units to copy
 * @param[out] target  another initialised string; a buffer that it holds is reused
 */
QEK_API void qek_wchar_left_wchar(const qek_wchar *source, int32_t count, qek_wchar *target);

/**
 * Copies `count` units from `position`, or what is there of them, into another string in place of
 * its text. No text, `position` negative or not below `length`, or `count` 0 or less: `target` is
 * emptied. Memory runs out: `target` is as it was.
 * @param source       the string to copy from
 * @param position     index of the first unit to copy
 * @param count        units to copy
 * @param[out] target  another initialised string; a buffer that it holds is reused
 */
QEK_API void qek_wchar_mid_wchar(const qek_wchar *source, int32_t position, int32_t count,
                                 qek_wchar *target);

/**
 * Copies the last `count` units into another string in place of its text; all of them if `count`
 * is not below `length`. No text, or `count` 0 or less: `target` is emptied. Memory runs out:
 * `target` is as it was.
 * @param source       the string to copy from
 * @param count        units to copy
 * @param[out] target  another initialised string; a buffer that it holds is reused
 */
QEK_API void qek_wchar_right_wchar(const qek_wchar *source, int32_t count, qek_wchar *target);

/** @} */

/* ============================================================================================== */
/**
 * @defgroup arrays Simple array (arrays)
 * A growable run of words, with binary search, sorted insertion and sorting by callback.
 *
 * The array does not know what a word means: every keyed operation takes a comparison callback,
 * and `key` and `key_extra` are two words that go to it untouched (a pointer and a length, say).
 * Operations ending in `_x` differ only in a `context` that goes to the callback first. This
 * family also owns the rules that @ref arrayd, @ref array, @ref arrayx and, for growth and sort,
 * @ref arrayt share; they are told here once.
 *
 * Cost: append is amortised constant; a search is logarithmic; insertion and removal move the
 * slots behind the place; a sort takes n log n comparisons on average (quadratic for input made to
 * defeat it), no memory and no recursion. Storage never shrinks except to nothing.
 *
 * Take another family when: the key travels beside the value (@ref arrayd, @ref arrayx,
 * @ref array), a handful of numbers is all (@ref arrayt), order does not matter (@ref hashd), a
 * large set changes often and must stay in order (@ref btree), or elements must not move
 * (@ref pool, @ref lists).
 *
 * @par Growth
 * A call that needs more than `capacity` slots takes `capacity` plus half of `count` (that half
 * being at least 8 and at most 65536), or what it needs if that is more, rounded up to a multiple
 * of 4. Appending one at a time gives 8, 16, 24, 36, 56, 84, 128, 192 and so on. The new block is
 * filled from the old one and zero behind it; pointers into the old one go stale. When memory runs
 * out the record stays as it was, and no operation lets `count` pass `capacity`, except as
 * qek_arrays_clone() tells.
 *
 * @par Order and search
 * Searches are binary and trust the order; nothing verifies it. Sorted insertion, update and all
 * removals keep it; append, append_new, append_array, insert_at and set_at do not. On an array out
 * of order a search gives whatever its probes meet. Among equal elements it gives the one that is
 * probed first, neither leftmost nor rightmost by rule. `reversed`, written by the caller, negates
 * every comparison, so that an array in descending order is searched and kept in descending order.
 *
 * @par Pool
 * | `pool` | `owns_pool` | made by                               | values                        |
 * |--------|-------------|---------------------------------------|-------------------------------|
 * | null   | 0           | `init` with a zero `use_pool`         | the caller's words; no `_new` |
 * | set    | nonzero     | `init` with a nonzero `use_pool`      | items that all die together   |
 * | set    | 0           | the caller writes `pool` after `init` | items given back one by one   |
 *
 * The caller writes `pool->item_size` before the first `_new` operation; while it is 0 the items
 * come back null and null words are stored. A `_new` operation on a null `pool` faults.
 *
 * @par Release
 * An operation with a `free_value` releases each word so: a zero word is skipped; else `free_value`
 * runs on it, unless null; then a borrowed pool gets the item back. An owned pool does not, which
 * is intended: it goes on counting the item as live until it is emptied as a whole.
 *
 * @par Sort
 * A nonzero `ascending` sorts ascending; zero, the default, sorts descending, the opposite of what
 * the searches expect while `reversed` is 0. This is intended. `reversed` is neither read nor
 * written. A sort is not stable: an array of two equal slots gets them exchanged. The sequence of
 * comparisons and exchanges (a quicksort with the median of three as pivot, a selection sort for 8
 * slots or fewer) is part of the interface, so equal elements end in the same places every time.
 * A `count` below 2 or a null callback returns at once.
 *
 * @code{.c}
 * static int32_t arrays_order(qek_word item, qek_word key, int32_t key_extra)
 * {
 *     (void)key_extra;
 *     return (item > key) - (item < key);
 * }
 * static void example_arrays(void)
 * {
 *     qek_arrays words;
 *     qek_arrays_init(&words, 0);
 *     qek_arrays_insert(&words, 30, 0, arrays_order);
 *     qek_arrays_insert(&words, 10, 0, arrays_order);
 *     assert(qek_arrays_insert(&words, 20, 0, arrays_order) == 1);
 *     assert(qek_arrays_insert(&words, 20, 0, arrays_order) == 0);
 *     assert(words.count == 3 && words.capacity == 8);
 *     assert(qek_arrays_find_index(&words, 20, 0, arrays_order) == 1);
 *     assert(qek_arrays_bfind(&words, 15, 0, arrays_order) == 20);
 *     qek_arrays_qsort(&words, 0, arrays_order);
 *     words.reversed = 1;
 *     assert(qek_arrays_get_first(&words) == 30);
 *     assert(qek_arrays_find_index(&words, 10, 0, arrays_order) == 2);
 *     qek_arrays_term(&words);
 * }
 * @endcode
 * @{
 */

/**
 * A growable array of words.
 *
 * The first `count` slots are in use. A slot from `count` up to `capacity` is 0 if it never was in
 * use, else it holds a stale word: removal does not clear the slot that it vacates. The caller may
 * write `count`, up to `capacity`, and use the slots as a table. `slots` goes stale as a pointer
 * with every growth.
 */
typedef struct qek_arrays {
    qek_word *slots;    /**< the storage; null before the first growth and once emptied */
    int32_t count;      /**< slots in use */
    int32_t capacity;   /**< slots allocated: 0, or a multiple of 4 */
    qek_pool *pool;     /**< where `_new` operations take items; null: none; may be borrowed */
    uint16_t owns_pool; /**< nonzero: `pool` was made by `init` and ends with the record */
    uint16_t reversed;  /**< nonzero negates every comparison of a search; the caller writes it */
} qek_arrays;

/**
 * Makes an empty array, all fields 0.
 * @param record    the record; what it held is not looked at
 * @param use_pool  nonzero: a pool is made and owned, its `item_size` 0 until the caller writes it
 *                  (exhausted memory faults); zero: no pool
 */
QEK_API void qek_arrays_init(qek_arrays *record, int32_t use_pool);

/**
 * Frees the storage and ends an owned pool, with all its items. No callback runs. The record can be
 * used again: a borrowed `pool` and `reversed` stay, an owned `pool` becomes null.
 * @param record  the array
 */
QEK_API void qek_arrays_term(qek_arrays *record);

/**
 * Makes room by the growth rule. `count` does not change; new slots are 0.
 * @param record  the array
 * @param want    slots wanted in all; at most `capacity`, or negative, needs nothing
 * @return 1; 0 when memory runs out, and the record is as it was
 */
QEK_API int32_t qek_arrays_expand(qek_arrays *record, int32_t want);

/**
 * Exchanges `slots`, `count`, `capacity`, `pool` and `owns_pool` in constant time. Each record
 * keeps its own `reversed`; this is intended.
 * @param record  one array
 * @param other   the other
 */
QEK_API void qek_arrays_swap(qek_arrays *record, qek_arrays *other);

/**
 * Copies an array. If `source` owns its pool, that pool is copied into the pool of `target`, items
 * and all, and each word becomes the address of the same item in the copy (a zero word stays 0);
 * `clone_value` then runs on each pair of words, zero words included. Otherwise the words are
 * copied, `clone_value` does not run, and `target` borrows the pool of `source`, null or not.
 * With both auxiliary pools and `clone_value` given, `source_aux_pool` is first copied into
 * `target_aux_pool`, whatever pool `source` has; without them, the `aux_map` that `clone_value`
 * gets has no meaning.
 *
 * A failed growth of `target` leaves its slots as they were, but its `count` becomes that of
 * `source` all the same and may exceed `capacity`: this is intended, and a caller who cares
 * compares the two. Exhaustion while a pool is copied faults. `reversed` is not copied.
 * @param source           the array to copy
 * @param source_aux_pool  a pool that the values point into, or null
 * @param target           an initialised array, its elements overwritten. It must own an empty pool
 *                         if `source` owns one, and must not own one otherwise
 * @param target_aux_pool  a freshly initialised pool for the copy of `source_aux_pool`, or null
 * @param clone_value      completes each copied item, or null
 */
QEK_API void qek_arrays_clone(const qek_arrays *source, qek_pool *source_aux_pool,
                              qek_arrays *target, qek_pool *target_aux_pool,
                              qek_clone_fn clone_value);

/**
 * Stores a word at the end. A failed growth does nothing.
 * @param record  the array
 * @param value   the word
 */
QEK_API void qek_arrays_append(qek_arrays *record, qek_word value);

/**
 * Takes an item from the pool, prepares it and stores it at the end.
 * @param record      the array; its `pool` must not be null
 * @param init_value  runs on the item before it is stored, unless either is null; may be null
 * @return the item, also when the pool gave null and that was stored; 0 when growth failed, and
 *         then no item was taken
 */
QEK_API qek_word qek_arrays_append_new(qek_arrays *record, qek_value_fn init_value);

/**
 * Appends all words of another array in order. What they point at is not copied. A failed growth
 * does nothing.
 * @param record  the array
 * @param source  the array to append; may be `record` itself, which doubles
 */
QEK_API void qek_arrays_append_array(qek_arrays *record, const qek_arrays *source);

/**
 * Reads a slot. The bound is `capacity`, not `count`; this is intended.
 * @param record  the array
 * @param index   the slot
 * @return its word; 0 if `index` is negative or not below `capacity`
 */
QEK_API qek_word qek_arrays_get_at(const qek_arrays *record, int32_t index);

/**
 * Overwrites a slot. The bound is `capacity`; `count` does not change, and nothing grows.
 * @param record  the array
 * @param index   the slot
 * @param value   the new word
 * @return the old word; 0 if `index` is negative or not below `capacity`, and nothing is stored
 */
QEK_API qek_word qek_arrays_set_at(qek_arrays *record, int32_t index, qek_word value);

/**
 * Reads the first word.
 * @param record  the array
 * @return the word; 0 if `count` is below 1
 */
QEK_API qek_word qek_arrays_get_first(const qek_arrays *record);

/**
 * Reads the last word.
 * @param record  the array
 * @return the word; 0 if `count` is below 1
 */
QEK_API qek_word qek_arrays_get_last(const qek_arrays *record);

/**
 * Inserts a word before an index and moves the rest up. A failed growth does nothing.
 * @param record  the array
 * @param index   the index that the word gets; at or past `count` appends at `count`; negative does
 *                nothing
 * @param value   the word
 */
QEK_API void qek_arrays_insert_at(qek_arrays *record, int32_t index, qek_word value);

/**
 * Removes a slot and moves the rest down. The pool is not touched; the value is the caller's.
 * @param record  the array
 * @param index   the slot
 * @return its word; 0 if `index` is negative or not below `count`
 */
QEK_API qek_word qek_arrays_remove_at(qek_arrays *record, int32_t index);

/**
 * Releases the word of a slot, then removes the slot, also when the word is 0.
 * @param record      the array
 * @param index       the slot; negative or not below `count` does nothing
 * @param free_value  disposes of the value; may be null
 */
QEK_API void qek_arrays_free_at(qek_arrays *record, int32_t index, qek_value_fn free_value);

/**
 * Frees the storage and empties an owned pool, which stays usable. No callback runs, and items of a
 * borrowed pool are left as they are. Linear only in an owned pool's blocks.
 * @param record  the array; `count` and `capacity` become 0
 */
QEK_API void qek_arrays_remove_all(qek_arrays *record);

/**
 * Releases every word, in slot order, then does qek_arrays_remove_all().
 * @param record      the array; `count` and `capacity` become 0
 * @param free_value  disposes of each value; may be null
 */
QEK_API void qek_arrays_free_all(qek_arrays *record, qek_value_fn free_value);

/**
 * Finds an item by binary search. A stored 0 and no match look alike; qek_arrays_find_index() tells
 * them apart.
 * @param record     the array, in order
 * @param key        goes to `compare`
 * @param key_extra  goes to `compare`
 * @param compare    orders an item against the key
 * @return the item; 0 if absent, `compare` is null or the array is empty
 */
QEK_API qek_word qek_arrays_find(const qek_arrays *record, qek_word key, int32_t key_extra,
                                 qek_compare_fn compare);

/**
 * Finds the index of an item by binary search.
 * @param record     the array, in order
 * @param key        goes to `compare`
 * @param key_extra  goes to `compare`
 * @param compare    orders an item against the key
 * @return the index; -1 if absent, `compare` is null or the array is empty
 */
QEK_API int32_t qek_arrays_find_index(const qek_arrays *record, qek_word key, int32_t key_extra,
                                      qek_compare_fn compare);

/**
 * Finds an item or its nearest neighbour by binary search: the first item that sorts after the key,
 * or the last item if none does. The result does not tell a hit from a neighbour.
 * @param record     the array, in order
 * @param key        goes to `compare`
 * @param key_extra  goes to `compare`
 * @param compare    orders an item against the key
 * @return the item; 0 if `compare` is null or the array is empty
 */
QEK_API qek_word qek_arrays_bfind(const qek_arrays *record, qek_word key, int32_t key_extra,
                                  qek_compare_fn compare);

/**
 * As qek_arrays_bfind(), but gives the index.
 * @param record     the array, in order
 * @param key        goes to `compare`
 * @param key_extra  goes to `compare`
 * @param compare    orders an item against the key
 * @return the index; -1 if `compare` is null or the array is empty
 */
QEK_API int32_t qek_arrays_bfind_index(const qek_arrays *record, qek_word key, int32_t key_extra,
                                       qek_compare_fn compare);

/**
 * Inserts an item in order, unless an equal one is there. Into an empty array, or with a null
 * `compare`, the item is appended. A failed growth stores nothing and is not reported.
 * @param record     the array, in order
 * @param item       the word to store; it goes to `compare` as the key
 * @param key_extra  goes to `compare`
 * @param compare    orders a stored item against `item`, or null
 * @return 1, also when growth failed; 0 if an equal item exists, and nothing changes
 */
QEK_API int32_t qek_arrays_insert(qek_arrays *record, qek_word item, int32_t key_extra,
                                  qek_compare_fn compare);

/**
 * Finds the item of a key, or takes one from the pool, prepares it and inserts it in order. Into an
 * empty array, or with a null `compare`, a new item is always appended. The array holds no keys:
 * the caller puts the key into the item, in `init_value` or right after the call, before the next
 * search. When growth fails, the item was taken and is in `item_out`, but in no slot.
 * @param record         the array, in order; its `pool` must not be null
 * @param key            goes to `compare`
 * @param key_extra      goes to `compare`
 * @param[out] item_out  the item found or made; cleared at the start
 * @param init_value     runs on a new item before it is stored, unless either is null; may be null
 * @param compare        orders a stored item against the key, or null
 * @return -1 if an equal item exists; else the index of the new item. A failed growth is not
 *         reported: the result is the insertion position, or where the call appends `count` - 1 of
 *         the unchanged array
 */
QEK_API int32_t qek_arrays_insert_new(qek_arrays *record, qek_word key, int32_t key_extra,
                                      qek_word *item_out, qek_value_fn init_value,
                                      qek_compare_fn compare);

/**
 * Replaces the word that is equal to `item` by `item`.
 * @param record     the array, in order
 * @param item       the new word; it goes to `compare` as the key
 * @param key_extra  goes to `compare`
 * @param compare    orders a stored item against `item`
 * @return the old word, which is the caller's; 0 if absent, `compare` is null or the array is empty
 */
QEK_API qek_word qek_arrays_update(qek_arrays *record, qek_word item, int32_t key_extra,
                                   qek_compare_fn compare);

/**
 * Finds an item and does qek_arrays_remove_at() on it.
 * @param record     the array, in order
 * @param key        goes to `compare`
 * @param key_extra  goes to `compare`
 * @param compare    orders an item against the key
 * @return the removed word, now the caller's; 0 if absent, `compare` is null or the array is empty
 */
QEK_API qek_word qek_arrays_remove(qek_arrays *record, qek_word key, int32_t key_extra,
                                   qek_compare_fn compare);

/**
 * Finds an item and does qek_arrays_free_at() on it. Nothing happens if it is absent, `compare` is
 * null or the array is empty.
 * @param record      the array, in order
 * @param key         goes to `compare`
 * @param key_extra   goes to `compare`
 * @param free_value  disposes of the value; may be null
 * @param compare     orders an item against the key
 */
QEK_API void qek_arrays_free(qek_arrays *record, qek_word key, int32_t key_extra,
                             qek_value_fn free_value, qek_compare_fn compare);

/**
 * Sorts the words. Both words that `compare` gets are stored ones, and its `key_extra` is 0.
 * @param record     the array
 * @param ascending  nonzero: ascending; zero: descending
 * @param compare    orders two words; null does nothing
 */
QEK_API void qek_arrays_qsort(qek_arrays *record, int32_t ascending, qek_compare_fn compare);

/**
 * As qek_arrays_find(), with a context.
 * @param record     the array, in order
 * @param context    goes to `compare` first
 * @param key        goes to `compare`
 * @param key_extra  goes to `compare`
 * @param compare    orders an item against the key
 * @return the item; 0 if absent, `compare` is null or the array is empty
 */
QEK_API qek_word qek_arrays_find_x(const qek_arrays *record, void *context, qek_word key,
                                   int32_t key_extra, qek_compare_x_fn compare);

/**
 * As qek_arrays_find_index(), with a context.
 * @param record     the array, in order
 * @param context    goes to `compare` first
 * @param key        goes to `compare`
 * @param key_extra  goes to `compare`
 * @param compare    orders an item against the key
 * @return the index; -1 if absent, `compare` is null or the array is empty
 */
QEK_API int32_t qek_arrays_find_index_x(const qek_arrays *record, void *context, qek_word key,
                                        int32_t key_extra, qek_compare_x_fn compare);

/**
 * As qek_arrays_bfind(), with a context.
 * @param record     the array, in order
 * @param context    goes to `compare` first
 * @param key        goes to `compare`
 * @param key_extra  goes to `compare`
 * @param compare    orders an item against the key
 * @return the item or its nearest neighbour; 0 if `compare` is null or the array is empty
 */
QEK_API qek_word qek_arrays_bfind_x(const qek_arrays *record, void *context, qek_word key,
                                    int32_t key_extra, qek_compare_x_fn compare);

/**
 * As qek_arrays_bfind_index(), with a context.
 * @param record     the array, in order
 * @param context    goes to `compare` first
 * @param key        goes to `compare`
 * @param key_extra  goes to `compare`
 * @param compare    orders an item against the key
 * @return the index of the item or of its nearest neighbour; -1 if `compare` is null or the array
 *         is empty
 */
QEK_API int32_t qek_arrays_bfind_index_x(const qek_arrays *record, void *context, qek_word key,
                                         int32_t key_extra, qek_compare_x_fn compare);

/**
 * As qek_arrays_insert(), with a context.
 * @param record     the array, in order
 * @param context    goes to `compare` first
 * @param item       the word to store; it goes to `compare` as the key
 * @param key_extra  goes to `compare`
 * @param compare    orders a stored item against `item`, or null
 * @return 1, also when growth failed; 0 if an equal item exists, and nothing changes
 */
QEK_API int32_t qek_arrays_insert_x(qek_arrays *record, void *context, qek_word item,
                                    int32_t key_extra, qek_compare_x_fn compare);

/**
 * As qek_arrays_insert_new(), with a context.
 * @param record         the array, in order; its `pool` must not be null
 * @param context        goes to `compare` first
 * @param key            goes to `compare`
 * @param key_extra      goes to `compare`
 * @param[out] item_out  the item found or made; cleared at the start
 * @param init_value     runs on a new item before it is stored, unless either is null; may be null
 * @param compare        orders a stored item against the key, or null
 * @return -1 if an equal item exists; else the index of the new item, with a failed growth not
 *         reported as in qek_arrays_insert_new()
 */
QEK_API int32_t qek_arrays_insert_new_x(qek_arrays *record, void *context, qek_word key,
                                        int32_t key_extra, qek_word *item_out,
                                        qek_value_fn init_value, qek_compare_x_fn compare);

/**
 * As qek_arrays_update(), with a context.
 * @param record     the array, in order
 * @param context    goes to `compare` first
 * @param item       the new word; it goes to `compare` as the key
 * @param key_extra  goes to `compare`
 * @param compare    orders a stored item against `item`
 * @return the old word, which is the caller's; 0 if absent, `compare` is null or the array is empty
 */
QEK_API qek_word qek_arrays_update_x(qek_arrays *record, void *context, qek_word item,
                                     int32_t key_extra, qek_compare_x_fn compare);

/**
 * As qek_arrays_remove(), with a context.
 * @param record     the array, in order
 * @param context    goes to `compare` first
 * @param key        goes to `compare`
 * @param key_extra  goes to `compare`
 * @param compare    orders an item against the key
 * @return the removed word, now the caller's; 0 if absent, `compare` is null or the array is empty
 */
QEK_API qek_word qek_arrays_remove_x(qek_arrays *record, void *context, qek_word key,
                                     int32_t key_extra, qek_compare_x_fn compare);

/**
 * As qek_arrays_free(), with a context. Nothing happens if the item is absent, `compare` is null or
 * the array is empty.
 * @param record      the array, in order
 * @param context     goes to `compare` first
 * @param key         goes to `compare`
 * @param key_extra   goes to `compare`
 * @param free_value  disposes of the value; may be null
 * @param compare     orders an item against the key
 */
QEK_API void qek_arrays_free_x(qek_arrays *record, void *context, qek_word key, int32_t key_extra,
                               qek_value_fn free_value, qek_compare_x_fn compare);

/**
 * As qek_arrays_qsort(), with a context.
 * @param record     the array
 * @param context    goes to `compare` first
 * @param ascending  nonzero: ascending; zero: descending
 * @param compare    orders two words; null does nothing
 */
QEK_API void qek_arrays_qsort_x(qek_arrays *record, void *context, int32_t ascending,
                                qek_compare_x_fn compare);

/** @} */

/* ============================================================================================== */
/**
 * @defgroup arrayd 32-bit-keyed array (arrayd)
 * A growable run of pairs: a 32-bit key and a word, searched and sorted without a callback.
 *
 * Growth, pool states, the release rule and the sort are those of @ref arrays. Output pointers are
 * not tested and must not be null.
 *
 * Cost: append is amortised constant; a binary search is logarithmic, the linear `afind` is linear;
 * insertion and removal move the pairs behind the place; a sort is as in @ref arrays.
 *
 * Take another family when: keys are 64 bits wide (@ref arrayx) or byte strings (@ref array), the
 * key stands inside the value (@ref arrays), order does not matter (@ref hashd), or a large set
 * changes often and must stay in order (@ref btreed).
 *
 * @par Key order
 * A search compares by the slot's key minus the sought key, as a 32-bit difference that wraps and
 * is read as signed, negated if `reversed` is nonzero. Keys thus order as signed numbers while they
 * lie less than 2147483648 apart; beyond that the wrapped difference decides. qek_arrayd_qsort()
 * orders keys as unsigned numbers. The two disagree where keys below and above 2147483648 mix:
 * `insert` puts 4294967295 before 1, `qsort` behind it, and a search may then miss it. This is
 * intended.
 *
 * @par Order and search
 * Nothing verifies the order. It is kept by insert, insert_new, entry_insert, update, update_at,
 * remove, free, remove_at and free_at; not by append, append_new, append_array, insert_at, set_at,
 * qsort_x, from_string and writes to `key` in an entry. It is restored by qek_arrayd_qsort(),
 * ascending for a zero `reversed`, descending for a nonzero one, where both orders of keys agree.
 * On pairs out of order a binary search may miss a key, and an insertion may let in a second one;
 * among equal keys it takes the one that its probes meet first.
 *
 * @code{.c}
 * static void example_arrayd(void)
 * {
 *     qek_arrayd prices;
 *     uint32_t key;
 *     qek_arrayd_init(&prices, 0);
 *     assert(qek_arrayd_insert(&prices, 30, 300) == 1);
 *     assert(qek_arrayd_insert(&prices, 10, 100) == 1);
 *     assert(qek_arrayd_insert(&prices, 10, 111) == 0);
 *     qek_arrayd_entry_insert(&prices, 20)->value = 200;
 *     assert(prices.count == 3 && qek_arrayd_find(&prices, 20) == 200);
 *     assert(qek_arrayd_bfind_index(&prices, 15) == 1);
 *     assert(qek_arrayd_get_last(&prices, &key) == 300 && key == 30);
 *     assert(qek_arrayd_update(&prices, 30, 301) == 300);
 *     assert(qek_arrayd_remove(&prices, 10) == 100);
 *     assert(qek_arrayd_find_index(&prices, 10) == -1);
 *     qek_arrayd_term(&prices);
 * }
 * @endcode
 * @{
 */

/** A pair of a qek_arrayd. A pointer to one is good until storage grows or goes, or pairs move. */
typedef struct qek_arrayd_entry {
    uint32_t key;   /**< the key */
    qek_word value; /**< the caller's word, or an item of `pool` */
} qek_arrayd_entry;

/**
 * A growable array of 32-bit keys with a word each.
 *
 * The first `count` slots are in use. A slot from `count` up to `capacity` is 0 if it never was in
 * use, else stale: the slot of a removed last pair holds key 0 and the old value.
 */
typedef struct qek_arrayd {
    qek_arrayd_entry *slots; /**< the storage; null before the first growth and once emptied */
    int32_t count;           /**< pairs in use */
    int32_t capacity;        /**< pairs allocated: 0, or a multiple of 4 */
    qek_pool *pool;          /**< where `_new` operations take items; null: none; may be borrowed */
    uint16_t owns_pool;      /**< nonzero: `pool` was made by `init` and ends with the record */
    uint16_t reversed;       /**< nonzero negates every binary comparison; the caller writes it */
} qek_arrayd;

/**
 * Makes an empty array; the same operation as qek_arrays_init().
 * @param record    the record; what it held is not looked at
 * @param use_pool  nonzero: a pool is made and owned, its `item_size` 0 until the caller writes it
 *                  (exhausted memory faults); zero: no pool
 */
QEK_API void qek_arrayd_init(qek_arrayd *record, int32_t use_pool);

/**
 * Frees the storage and ends an owned pool; the same operation as qek_arrays_term().
 * @param record  the array; usable again, with a borrowed `pool` and `reversed` as they were
 */
QEK_API void qek_arrayd_term(qek_arrayd *record);

/**
 * Makes room by the growth rule of @ref arrays. `count` does not change; new slots are 0.
 * @param record  the array
 * @param want    pairs wanted in all; at most `capacity`, or negative, needs nothing
 * @return 1; 0 when memory runs out, and the record is as it was
 */
QEK_API int32_t qek_arrayd_expand(qek_arrayd *record, int32_t want);

/**
 * Exchanges `slots`, `count` and `capacity` in constant time. Unlike qek_arrays_swap(), `pool` and
 * `owns_pool` stay with their record, as does `reversed`; this is intended. A caller with items of
 * pools exchanges the pools itself.
 * @param record  one array
 * @param other   the other
 */
QEK_API void qek_arrayd_swap(qek_arrayd *record, qek_arrayd *other);

/**
 * Copies an array as qek_arrays_clone() does: keys are copied, values are treated as the words
 * there. A failed growth of `target` leaves its slots, but `count` is set all the same.
 * @param source           the array to copy
 * @param source_aux_pool  a pool that the values point into, or null
 * @param target           an initialised array, its pairs overwritten. It must own an empty pool if
 *                         `source` owns one, and must not own one otherwise
 * @param target_aux_pool  a freshly initialised pool for the copy of `source_aux_pool`, or null
 * @param clone_value      completes each copied item, or null
 */
QEK_API void qek_arrayd_clone(const qek_arrayd *source, qek_pool *source_aux_pool,
                              qek_arrayd *target, qek_pool *target_aux_pool,
                              qek_clone_fn clone_value);

/**
 * Stores a pair at the end. A failed growth does nothing.
 * @param record  the array
 * @param key     the key
 * @param value   the word
 */
QEK_API void qek_arrayd_append(qek_arrayd *record, uint32_t key, qek_word value);

/**
 * Takes an item from the pool, prepares it and stores it at the end under a key.
 * @param record      the array; its `pool` must not be null
 * @param key         the key
 * @param init_value  runs on the item before it is stored, unless either is null; may be null
 * @return the item, also when the pool gave null and that was stored; 0 when growth failed, and
 *         then no item was taken
 */
QEK_API qek_word qek_arrayd_append_new(qek_arrayd *record, uint32_t key, qek_value_fn init_value);

/**
 * Appends all pairs of another array in order, as qek_arrays_append_array(). A failed growth does
 * nothing.
 * @param record  the array
 * @param source  the array to append
 */
QEK_API void qek_arrayd_append_array(qek_arrayd *record, const qek_arrayd *source);

/**
 * Reads a pair. The bound is `capacity`, not `count`; this is intended.
 * @param record        the array
 * @param index         the slot
 * @param[out] key_out  its key; 0 if the index is out of range
 * @return its value; 0 if `index` is negative or not below `capacity`
 */
QEK_API qek_word qek_arrayd_get_at(const qek_arrayd *record, int32_t index, uint32_t *key_out);

/**
 * Overwrites key and value of a slot. The bound is `capacity`; `count` does not change.
 * @param record  the array
 * @param index   the slot
 * @param key     the new key
 * @param value   the new word
 * @return the old value; 0 if `index` is negative or not below `capacity`, and nothing is stored
 */
QEK_API qek_word qek_arrayd_set_at(qek_arrayd *record, int32_t index, uint32_t key, qek_word value);

/**
 * Overwrites the value of a slot and leaves its key. The bound is `capacity`.
 * @param record  the array
 * @param index   the slot
 * @param value   the new word
 * @return the old value; 0 if `index` is negative or not below `capacity`, and nothing is stored
 */
QEK_API qek_word qek_arrayd_update_at(qek_arrayd *record, int32_t index, qek_word value);

/**
 * Reads the first pair.
 * @param record        the array
 * @param[out] key_out  its key; 0 if `count` is below 1
 * @return its value; 0 if `count` is below 1
 */
QEK_API qek_word qek_arrayd_get_first(const qek_arrayd *record, uint32_t *key_out);

/**
 * Reads the last pair.
 * @param record        the array
 * @param[out] key_out  its key; 0 if `count` is below 1
 * @return its value; 0 if `count` is below 1
 */
QEK_API qek_word qek_arrayd_get_last(const qek_arrayd *record, uint32_t *key_out);

/**
 * Inserts a pair in order, unless the key is there. A failed growth stores nothing and is not
 * reported.
 * @param record  the array, in order
 * @param key     the key
 * @param value   the word
 * @return 1, also when growth failed; 0 if the key exists, and nothing changes
 */
QEK_API int32_t qek_arrayd_insert(qek_arrayd *record, uint32_t key, qek_word value);

/**
 * Finds the value of a key, or takes an item from the pool, prepares it and inserts it in order.
 * When growth fails, the item was taken and is in `value_out`, but in no pair; this is not
 * reported.
 * @param record          the array, in order; its `pool` must not be null
 * @param key             the key
 * @param[out] value_out  the value found or the item made; cleared at the start
 * @param init_value      runs on a new item before it is stored, unless either is null; may be null
 * @return -1 if the key exists, and the pool is not touched; else the index of the new pair, 0 if
 *         the array was empty, also when growth failed
 */
QEK_API int32_t qek_arrayd_insert_new(qek_arrayd *record, uint32_t key, qek_word *value_out,
                                      qek_value_fn init_value);

/**
 * Replaces the value of a key.
 * @param record  the array, in order
 * @param key     the key
 * @param value   the new word
 * @return the old value, which is the caller's; 0 if the key is absent, and nothing is stored
 */
QEK_API qek_word qek_arrayd_update(qek_arrayd *record, uint32_t key, qek_word value);

/**
 * Removes the pair of a key. The pool is not touched.
 * @param record  the array, in order
 * @param key     the key
 * @return its value, now the caller's; 0 if the key is absent
 */
QEK_API qek_word qek_arrayd_remove(qek_arrayd *record, uint32_t key);

/**
 * Finds the pair of a key and does qek_arrayd_free_at() on it; nothing if the key is absent.
 * @param record      the array, in order
 * @param key         the key
 * @param free_value  disposes of the value; may be null
 */
QEK_API void qek_arrayd_free(qek_arrayd *record, uint32_t key, qek_value_fn free_value);

/**
 * Finds the value of a key by binary search. A stored 0 and no match look alike;
 * qek_arrayd_find_index() tells them apart.
 * @param record  the array, in order
 * @param key     the key
 * @return the value; 0 if the key is absent
 */
QEK_API qek_word qek_arrayd_find(const qek_arrayd *record, uint32_t key);

/**
 * Finds the index of a key by binary search.
 * @param record  the array, in order
 * @param key     the key
 * @return the index; -1 if the key is absent
 */
QEK_API int32_t qek_arrayd_find_index(const qek_arrayd *record, uint32_t key);

/**
 * Finds the value of the first pair with a key by a linear scan, in any order of pairs. `reversed`
 * has no say.
 * @param record  the array
 * @param key     the key
 * @return the value of the lowest such index; 0 if the key is absent
 */
QEK_API qek_word qek_arrayd_afind(const qek_arrayd *record, uint32_t key);

/**
 * As qek_arrayd_afind(), but gives the index.
 * @param record  the array
 * @param key     the key
 * @return the lowest such index; -1 if the key is absent
 */
QEK_API int32_t qek_arrayd_afind_index(const qek_arrayd *record, uint32_t key);

/**
 * Finds the value of a key, or of its nearest neighbour, by binary search: the first pair that
 * sorts after the key, or the last pair if none does. The result does not tell a hit from a
 * neighbour.
 * @param record  the array, in order
 * @param key     the key
 * @return the value; 0 if the array is empty
 */
QEK_API qek_word qek_arrayd_bfind(const qek_arrayd *record, uint32_t key);

/**
 * As qek_arrayd_bfind(), but gives the index, by which qek_arrayd_get_at() tells the key.
 * @param record  the array, in order
 * @param key     the key
 * @return the index; -1 if the array is empty
 */
QEK_API int32_t qek_arrayd_bfind_index(const qek_arrayd *record, uint32_t key);

/**
 * Finds the pair of a key, or inserts one in order with value 0.
 * @param record  the array, in order
 * @param key     the key
 * @return the pair, until storage grows or pairs shift. When growth failed it is no new pair: null
 *         on an array without storage, else the place of the insertion, which may be another key's
 *         pair or lie one past the storage
 */
QEK_API qek_arrayd_entry *qek_arrayd_entry_insert(qek_arrayd *record, uint32_t key);

/**
 * Finds the pair of a key by binary search.
 * @param record  the array, in order
 * @param key     the key
 * @return the pair, until storage grows or pairs shift; null if the key is absent
 */
QEK_API qek_arrayd_entry *qek_arrayd_entry_find(const qek_arrayd *record, uint32_t key);

/**
 * Inserts a pair before an index and moves the rest up. A failed growth does nothing.
 * @param record  the array
 * @param index   the index that the pair gets; at or past `count` appends at `count`; negative does
 *                nothing
 * @param key     the key
 * @param value   the word
 */
QEK_API void qek_arrayd_insert_at(qek_arrayd *record, int32_t index, uint32_t key, qek_word value);

/**
 * Removes a pair and moves the rest down. The pool is not touched.
 * @param record        the array
 * @param index         the slot
 * @param[out] key_out  its key; 0 if the index is out of range
 * @return its value, now the caller's; 0 if `index` is negative or not below `count`
 */
QEK_API qek_word qek_arrayd_remove_at(qek_arrayd *record, int32_t index, uint32_t *key_out);

/**
 * Releases the value of a pair, then removes the pair, also when the value is 0.
 * @param record      the array
 * @param index       the slot; negative or not below `count` does nothing
 * @param free_value  disposes of the value; may be null
 */
QEK_API void qek_arrayd_free_at(qek_arrayd *record, int32_t index, qek_value_fn free_value);

/**
 * Frees the storage and empties an owned pool; the same operation as qek_arrays_remove_all().
 * @param record  the array; `count` and `capacity` become 0
 */
QEK_API void qek_arrayd_remove_all(qek_arrayd *record);

/**
 * Releases every value, in slot order, then does qek_arrayd_remove_all().
 * @param record      the array; `count` and `capacity` become 0
 * @param free_value  disposes of each value; may be null
 */
QEK_API void qek_arrayd_free_all(qek_arrayd *record, qek_value_fn free_value);

/**
 * Sorts the pairs by key, as unsigned numbers.
 * @param record     the array
 * @param ascending  nonzero: ascending; zero: descending
 */
QEK_API void qek_arrayd_qsort(qek_arrayd *record, int32_t ascending);

/**
 * Sorts the pairs by value, which leaves them out of key order.
 * @param record     the array
 * @param ascending  nonzero: ascending; zero: descending
 * @param compare    orders two values; null does nothing
 */
QEK_API void qek_arrayd_qsort_x(qek_arrayd *record, int32_t ascending,
                                qek_value_compare_fn compare);

/**
 * Appends a pair of value 0 for each number in a text. The array is neither emptied nor sorted.
 *
 * The text is cut at every separator, and each piece is trimmed by qek_char_trim() and read by
 * qek_char_get_long(), of which the low 32 bits are the key: an empty piece, or one that does not
 * start as a number, gives key 0. Only a last piece that is empty is left out: `1,,2` gives 1, 0, 2
 * and `1,2,` gives 1, 2. A pair that finds no memory is left out, silently.
 * @param record     the array
 * @param separator  the byte between two numbers
 * @param text       the text; not read if `length` is 0 or less
 * @param length     its length in bytes; not measured: a negative length appends nothing, as 0 does
 */
QEK_API void qek_arrayd_from_string(qek_arrayd *record, uint8_t separator, const void *text,
                                    int32_t length);

/**
 * Writes the keys, in slot order, as signed decimal numbers with a separator between each two.
 * Values do not appear. Keys at or above 2147483648 come out negative, and qek_arrayd_from_string()
 * reads them back as they were. When memory runs out the text is incomplete, silently.
 * @param record     the array
 * @param separator  the byte between two numbers
 * @param string     an initialised string; its text is replaced, and is empty for an empty array
 */
QEK_API void qek_arrayd_to_string(const qek_arrayd *record, uint8_t separator, qek_string *string);

/** @} */

/* ============================================================================================== */
/**
 * @defgroup array Byte-string-keyed array (array)
 * A growable run of pairs whose key is a run of bytes and whose value is a word.
 *
 * It mirrors @ref arrayd, and growth, pool states, the release rule and the sort are those of
 * @ref arrays. All key text stands in one embedded stream, densely and without terminators; a slot
 * holds an offset and a length. Output pointers are not tested and must not be null. The text of a
 * key to be stored must not lie in the record's own `keys`.
 *
 * Cost: append is amortised constant; a binary search takes a logarithmic number of text
 * comparisons, `afind` a linear one; every insertion and removal inside moves key text and scans
 * all slots. Compact storage and cheap ordered reads are bought with linear writes.
 *
 * Take another family when: keys are numbers (@ref arrayd, @ref arrayx), the key stands inside the
 * value (@ref arrays), order does not matter (@ref hash), or a large set changes often and must
 * stay in order (@ref btree).
 *
 * @par Key order
 * Searches and qek_array_qsort() order keys as qek_mem_cmp() does: by the first differing byte,
 * unsigned, and a key that begins another comes first. Case is never ignored. `reversed` turns the
 * binary searches round.
 *
 * @par Key length
 * Each `key_length` follows one of three rules. Strict: any negative length means that `key` is
 * NUL-terminated and is measured, and a null `key` then faults. Tolerant: the same, but a null
 * `key` with a negative length is the empty key. Raw: the length is used as it stands and must not
 * be negative; this is not tested, and inserting with a negative one ruins the offsets.
 *
 * @par Order and search
 * Nothing verifies the order. It is kept by insert, insert_new, entry_insert, update, update_at,
 * remove, free, remove_at and free_at; not by append, append_new, append_array, insert_at, set_at,
 * qsort_x and from_string. It is restored by qek_array_qsort(), ascending for a zero `reversed`,
 * descending for a nonzero one. On pairs out of order a binary search may miss a key; among equal
 * keys it takes the one that its probes meet first.
 *
 * @par Empty keys
 * An empty key can be appended, but not inserted before a pair: there the insertion stores nothing.
 * As it sorts first, qek_array_insert() and its kin store it in an empty array, or at the end of a
 * `reversed` one, and in an ascending array that holds pairs they do not, whatever they return.
 * This is an accepted limit.
 *
 * @code{.c}
 * static void example_array(void)
 * {
 *     qek_array names;
 *     uint8_t *key;
 *     int32_t length;
 *     qek_array_init(&names, 0);
 *     qek_array_from_string(&names, ',', "pear, fig,apple", 15);
 *     qek_array_qsort(&names, 1);
 *     qek_array_get_first(&names, &key, &length);
 *     assert(length == 5 && memcmp(key, "apple", 5) == 0);
 *     assert(qek_array_insert(&names, "date", -1, 4) == 1);
 *     assert(qek_array_find(&names, "date", -1) == 4);
 *     assert(qek_array_find_index(&names, "fig", 3) == 2);
 *     assert(qek_array_bfind_index(&names, "cherry", -1) == 1);
 *     qek_array_remove(&names, "apple", -1);
 *     assert(names.count == 3 && names.keys.length == 11);
 *     qek_array_term(&names);
 * }
 * @endcode
 * @{
 */

/** A pair of a qek_array. A pointer to one is good until storage grows or goes, or pairs move. */
typedef struct qek_array_entry {
    uint32_t key_offset; /**< where the key starts in `keys` */
    int32_t key_length;  /**< its length in bytes; 0 is the empty key */
    qek_word value;      /**< the caller's word, or an item of `pool` */
} qek_array_entry;

/**
 * A growable array of byte-string keys with a word each.
 *
 * The first `count` slots are in use; a slot from there up to `capacity` is 0 or stale. The keys of
 * the slots in use fill `keys` exactly, without overlap, so the sum of all `key_length` is
 * `keys.length` (but see qek_array_set_at()). The order of the texts is the order in which they
 * went in, not that of the slots. A pointer to key text goes stale with any change of `keys`.
 */
typedef struct qek_array {
    qek_array_entry *slots; /**< the storage; null before the first growth and once emptied */
    int32_t count;          /**< pairs in use */
    int32_t capacity;       /**< pairs allocated: 0, or a multiple of 4 */
    qek_stream keys;        /**< the text of all keys */
    qek_pool *pool;         /**< where `_new` operations take items; null: none; may be borrowed */
    uint16_t owns_pool;     /**< nonzero: `pool` was made by `init` and ends with the record */
    uint16_t reversed;      /**< nonzero negates every binary comparison; the caller writes it */
} qek_array;

/**
 * Makes an empty array, all fields 0.
 * @param record    the record; what it held is not looked at
 * @param use_pool  nonzero: a pool is made and owned, its `item_size` 0 until the caller writes it
 *                  (exhausted memory faults); zero: no pool
 */
QEK_API void qek_array_init(qek_array *record, int32_t use_pool);

/**
 * Frees the storage and `keys` and ends an owned pool, with all its items. No callback runs.
 * @param record  the array; usable again, with a borrowed `pool` and `reversed` as they were
 */
QEK_API void qek_array_term(qek_array *record);

/**
 * Makes room for pairs by the growth rule of @ref arrays. `keys` is not touched, `count` does not
 * change, new slots are 0.
 * @param record  the array
 * @param want    pairs wanted in all; at most `capacity`, or negative, needs nothing
 * @return 1; 0 when memory runs out, and the record is as it was
 */
QEK_API int32_t qek_array_expand(qek_array *record, int32_t want);

/**
 * Exchanges `keys`, `slots`, `count` and `capacity` in constant time. `pool`, `owns_pool` and
 * `reversed` stay with their record; this is intended. A caller with items of pools exchanges the
 * pools itself.
 * @param record  one array
 * @param other   the other
 */
QEK_API void qek_array_swap(qek_array *record, qek_array *other);

/**
 * Copies an array as qek_arrays_clone() does, values being treated as the words there; offsets,
 * lengths and key text are copied. A failed growth of `target` leaves its slots and `keys`, but
 * `count` is set all the same; a failed growth of `keys` alone leaves `keys`, and is not reported.
 * @param source           the array to copy
 * @param source_aux_pool  a pool that the values point into, or null
 * @param target           an initialised array, its pairs overwritten. It must own an empty pool if
 *                         `source` owns one, and must not own one otherwise
 * @param target_aux_pool  a freshly initialised pool for the copy of `source_aux_pool`, or null
 * @param clone_value      completes each copied item, or null
 */
QEK_API void qek_array_clone(const qek_array *source, qek_pool *source_aux_pool, qek_array *target,
                             qek_pool *target_aux_pool, qek_clone_fn clone_value);

/**
 * Stores a pair at the end. A failed growth of the slots does nothing; a failed growth of `keys`
 * stores the pair with an empty key.
 * @param record      the array
 * @param key         the key; its bytes are copied. Null with a length of 0 or more: an empty key
 * @param key_length  its length in bytes, strict: negative measures, and null then faults
 * @param value       the word
 */
QEK_API void qek_array_append(qek_array *record, const void *key, int32_t key_length,
                              qek_word value);

/**
 * Takes an item from the pool, prepares it and stores it at the end under a key.
 * @param record      the array; its `pool` must not be null
 * @param key         the key, as in qek_array_append()
 * @param key_length  its length in bytes, strict: negative measures, and null then faults
 * @param init_value  runs on the item before it is stored, unless either is null; may be null
 * @return the item, also when the pool gave null and that was stored; 0 when growth of the slots
 *         failed, and then no item was taken
 */
QEK_API qek_word qek_array_append_new(qek_array *record, const void *key, int32_t key_length,
                                      qek_value_fn init_value);

/**
 * Appends all pairs of another array in order. Key text is copied, what the values point at is not.
 * A failed growth of slots or `keys` appends nothing.
 * @param record  the array
 * @param source  the other array
 */
QEK_API void qek_array_append_array(qek_array *record, const qek_array *source);

/**
 * Reads a pair. The bound is `capacity`, not `count`, which is intended: a slot never used reads as
 * the start of `keys`, length 0 and value 0.
 * @param record           the array
 * @param index            the slot
 * @param[out] key_out     its key in `keys`, not terminated, good until `keys` changes; null if the
 *                         index is out of range
 * @param[out] length_out  the length of the key in bytes; 0 if the index is out of range
 * @return its value; 0 if `index` is negative or not below `capacity`
 */
QEK_API qek_word qek_array_get_at(const qek_array *record, int32_t index, uint8_t **key_out,
                                  int32_t *length_out);

/**
 * Replaces key and value of a slot. The bound is `capacity`; `count` does not change. From `count`
 * up, the key replaced is whatever a stale slot names. A slot whose key was empty ends with its
 * `key_offset` moved past its own new text, so that it names other bytes; this is intended, and
 * such a pair is better removed and appended anew.
 * @param record      the array
 * @param index       the slot
 * @param key         the new key; may be null only with a `key_length` of 0
 * @param key_length  its length in bytes, strict: negative measures, and null then faults
 * @param value       the new word
 * @return the old value; 0, and nothing changes, if `index` is negative or not below `capacity`,
 *         if growth of `keys` failed, or if a stale slot names a place past the end of `keys`
 */
QEK_API qek_word qek_array_set_at(qek_array *record, int32_t index, const void *key,
                                  int32_t key_length, qek_word value);

/**
 * Overwrites the value of a slot and leaves its key. The bound is `capacity`.
 * @param record  the array
 * @param index   the slot
 * @param value   the new word
 * @return the old value; 0 if `index` is negative or not below `capacity`, and nothing is stored
 */
QEK_API qek_word qek_array_update_at(qek_array *record, int32_t index, qek_word value);

/**
 * Reads the first pair.
 * @param record           the array
 * @param[out] key_out     its key, as in qek_array_get_at(); null if `count` is below 1
 * @param[out] length_out  the length of the key in bytes; 0 if `count` is below 1
 * @return its value; 0 if `count` is below 1
 */
QEK_API qek_word qek_array_get_first(const qek_array *record, uint8_t **key_out,
                                     int32_t *length_out);

/**
 * Reads the last pair.
 * @param record           the array
 * @param[out] key_out     its key, as in qek_array_get_at(); null if `count` is below 1
 * @param[out] length_out  the length of the key in bytes; 0 if `count` is below 1
 * @return its value; 0 if `count` is below 1
 */
QEK_API qek_word qek_array_get_last(const qek_array *record, uint8_t **key_out,
                                    int32_t *length_out);

/**
 * Inserts a pair in order, unless the key is there, as qek_array_insert_at() does: a failed growth
 * can store nothing or an empty key, and an empty key that belongs before a pair is not stored.
 * None of this is reported.
 * @param record      the array, in order
 * @param key         the key; its bytes are copied
 * @param key_length  its length in bytes, tolerant: negative measures, and null is then empty
 * @param value       the word
 * @return 1, also when nothing was stored; 0 if the key exists, and nothing changes
 */
QEK_API int32_t qek_array_insert(qek_array *record, const void *key, int32_t key_length,
                                 qek_word value);

/**
 * Finds the value of a key, or takes an item from the pool, prepares it and inserts it in order, as
 * qek_array_insert_at() does. Where that stores nothing (a failed growth, an empty key that belongs
 * before a pair), the item was taken and is in `value_out`, but in no pair; this is not reported.
 * @param record          the array, in order; its `pool` must not be null
 * @param key             the key; its bytes are copied
 * @param key_length      its length in bytes, tolerant: negative measures, and null is then empty
 * @param[out] value_out  the value found or the item made; cleared at the start
 * @param init_value      runs on a new item before it is stored, unless either is null; may be null
 * @return -1 if the key exists, and the pool is not touched; else the index of the new pair, 0 if
 *         the array was empty, also when nothing was stored
 */
QEK_API int32_t qek_array_insert_new(qek_array *record, const void *key, int32_t key_length,
                                     qek_word *value_out, qek_value_fn init_value);

/**
 * Replaces the value of a key. The text does not change.
 * @param record      the array, in order
 * @param key         the key
 * @param key_length  its length in bytes, tolerant: negative measures, and null is then empty
 * @param value       the new word
 * @return the old value, which is the caller's; 0 if the key is absent, and nothing is stored
 */
QEK_API qek_word qek_array_update(qek_array *record, const void *key, int32_t key_length,
                                  qek_word value);

/**
 * Removes the pair of a key and its text. The pool is not touched.
 * @param record      the array, in order
 * @param key         the key
 * @param key_length  its length in bytes, tolerant: negative measures, and null is then empty
 * @return its value, now the caller's; 0 if the key is absent
 */
QEK_API qek_word qek_array_remove(qek_array *record, const void *key, int32_t key_length);

/**
 * Finds the pair of a key and does qek_array_free_at() on it; nothing if the key is absent.
 * @param record      the array, in order
 * @param key         the key
 * @param key_length  its length in bytes, tolerant: negative measures, and null is then empty
 * @param free_value  disposes of the value; may be null
 */
QEK_API void qek_array_free(qek_array *record, const void *key, int32_t key_length,
                            qek_value_fn free_value);

/**
 * Finds the value of a key by binary search. A stored 0 and no match look alike;
 * qek_array_find_index() tells them apart.
 * @param record      the array, in order
 * @param key         the key
 * @param key_length  its length in bytes, tolerant: negative measures, and null is then empty
 * @return the value; 0 if the key is absent
 */
QEK_API qek_word qek_array_find(const qek_array *record, const void *key, int32_t key_length);

/**
 * Finds the index of a key by binary search.
 * @param record      the array, in order
 * @param key         the key
 * @param key_length  its length in bytes, tolerant: negative measures, and null is then empty
 * @return the index; -1 if the key is absent
 */
QEK_API int32_t qek_array_find_index(const qek_array *record, const void *key, int32_t key_length);

/**
 * Finds the value of the first pair with a key by a linear scan, in any order of pairs. `reversed`
 * has no say.
 * @param record      the array
 * @param key         the key
 * @param key_length  its length in bytes, tolerant: negative measures, and null is then empty
 * @return the value of the lowest such index; 0 if the key is absent
 */
QEK_API qek_word qek_array_afind(const qek_array *record, const void *key, int32_t key_length);

/**
 * As qek_array_afind(), but gives the index.
 * @param record      the array
 * @param key         the key
 * @param key_length  its length in bytes, tolerant: negative measures, and null is then empty
 * @return the lowest such index; -1 if the key is absent
 */
QEK_API int32_t qek_array_afind_index(const qek_array *record, const void *key, int32_t key_length);

/**
 * Finds the value of a key, or of its nearest neighbour, by binary search: the first pair that
 * sorts after the key, or the last pair if none does. The result does not tell a hit from a
 * neighbour.
 * @param record      the array, in order
 * @param key         the key
 * @param key_length  its length in bytes, tolerant: negative measures, and null is then empty
 * @return the value; 0 if the array is empty
 */
QEK_API qek_word qek_array_bfind(const qek_array *record, const void *key, int32_t key_length);

/**
 * As qek_array_bfind(), but gives the index, by which qek_array_get_at() tells the key.
 * @param record      the array, in order
 * @param key         the key
 * @param key_length  its length in bytes, tolerant: negative measures, and null is then empty
 * @return the index; -1 if the array is empty
 */
QEK_API int32_t qek_array_bfind_index(const qek_array *record, const void *key, int32_t key_length);

/**
 * Finds the pair of a key, or inserts one in order with value 0, as qek_array_insert_at() does.
 * @param record      the array, in order
 * @param key         the key; its bytes are copied
 * @param key_length  its length in bytes, raw: used as it stands
 * @return the pair, until storage grows or pairs move. Where nothing was stored (a failed growth,
 *         an empty key that belongs before a pair) it is no new pair: null on an array without
 *         storage, else the place of the insertion, which may be another key's pair or lie one past
 *         the storage
 */
QEK_API qek_array_entry *qek_array_entry_insert(qek_array *record, const void *key,
                                                int32_t key_length);

/**
 * Finds the pair of a key by binary search.
 * @param record      the array, in order
 * @param key         the key
 * @param key_length  its length in bytes, raw: used as it stands
 * @return the pair, until storage grows or pairs move; null if the key is absent
 */
QEK_API qek_array_entry *qek_array_entry_find(const qek_array *record, const void *key,
                                              int32_t key_length);

/**
 * Inserts a pair before an index and moves the rest up. Below `count`, an empty key does nothing,
 * and so does a failed growth of slots or `keys`; from there up the call is qek_array_append().
 * @param record      the array
 * @param index       the index that the pair gets; at or past `count` appends at `count`; negative
 *                    does nothing
 * @param key         the key; its bytes are copied
 * @param key_length  its length in bytes, raw: used as it stands
 * @param value       the word
 */
QEK_API void qek_array_insert_at(qek_array *record, int32_t index, const void *key,
                                 int32_t key_length, qek_word value);

/**
 * Removes a pair and its text and moves the rest down. The pool is not touched. Unlike
 * qek_arrayd_remove_at() it does not hand out the key.
 * @param record  the array
 * @param index   the slot
 * @return its value, now the caller's; 0 if `index` is negative or not below `count`
 */
QEK_API qek_word qek_array_remove_at(qek_array *record, int32_t index);

/**
 * Removes the text of a pair, releases its value, then removes the slot, also when the value is 0.
 * @param record      the array
 * @param index       the slot; negative or not below `count` does nothing
 * @param free_value  disposes of the value; may be null
 */
QEK_API void qek_array_free_at(qek_array *record, int32_t index, qek_value_fn free_value);

/**
 * Frees the storage and empties an owned pool, which stays usable. `keys` becomes empty but keeps
 * its buffer. No callback runs, and items of a borrowed pool are left as they are.
 * @param record  the array; `count` and `capacity` become 0
 */
QEK_API void qek_array_remove_all(qek_array *record);

/**
 * Releases every value, in slot order, frees the storage and `keys` with its buffer, and empties an
 * owned pool, which stays usable.
 * @param record      the array; `count` and `capacity` become 0
 * @param free_value  disposes of each value; may be null
 */
QEK_API void qek_array_free_all(qek_array *record, qek_value_fn free_value);

/**
 * Sorts the pairs by key. Slots move; the text in `keys` stays where it is.
 * @param record     the array
 * @param ascending  nonzero: ascending; zero: descending
 */
QEK_API void qek_array_qsort(qek_array *record, int32_t ascending);

/**
 * Sorts the pairs by value, which leaves them out of key order. The text stays where it is.
 * @param record     the array
 * @param ascending  nonzero: ascending; zero: descending
 * @param compare    orders two values; null does nothing
 */
QEK_API void qek_array_qsort_x(qek_array *record, int32_t ascending, qek_value_compare_fn compare);

/**
 * Appends a pair of value 0 for each piece of a text. The array is neither emptied nor sorted.
 *
 * The text is cut at every separator, and each piece, trimmed by qek_char_trim(), is a key. An
 * empty piece is an empty key, but a last piece that is empty is left out: `a, b,` gives `a`, `b`.
 * A pair that finds no memory fares as in qek_array_append().
 * @param record     the array
 * @param separator  the byte between two keys
 * @param text       the text; not read if `length` is 0 or less
 * @param length     its length in bytes; not measured: a negative length appends nothing, as 0 does
 */
QEK_API void qek_array_from_string(qek_array *record, uint8_t separator, const void *text,
                                   int32_t length);

/**
 * Writes the bytes of all keys, in slot order, with a separator between each two. Nothing is quoted
 * or escaped, and values do not appear. A separator is written only once the text is not empty, so
 * empty keys at the front leave no mark: two empty keys and `a` give `a`. When memory runs out the
 * text is incomplete, silently.
 * @param record     the array
 * @param separator  the byte between two keys
 * @param string     an initialised string; its text is replaced, and is empty for an empty array
 */
QEK_API void qek_array_to_string(const qek_array *record, uint8_t separator, qek_string *string);

/** @} */

/* ============================================================================================== */
/**
 * @defgroup arrayx 64-bit-keyed array (arrayx)
 * A growable run of pairs: a 64-bit key and a word, searched and sorted without a callback.
 *
 * It is @ref arrayd with a wider key and without a text form. Growth, pool states, the release rule
 * and the sort are those of @ref arrays; which operations keep the order is told in @ref arrayd.
 * Output pointers are not tested and must not be null.
 *
 * Cost: as in @ref arrayd. Append is amortised constant, a binary search logarithmic, `afind`
 * linear; insertion and removal move the pairs behind the place.
 *
 * Take another family when: 32 bits are enough for a key (@ref arrayd), keys are byte strings
 * (@ref array), order does not matter (@ref hashx), or a large set changes often and must stay in
 * order (@ref btreex).
 *
 * @par Key order
 * A search compares by the slot's key minus the sought key, as a 64-bit difference that wraps and
 * is read as signed, negated if `reversed` is nonzero. Keys thus order as signed numbers while they
 * lie less than 2 to the power 63 apart; beyond that the wrapped difference decides.
 * qek_arrayx_qsort() orders keys as unsigned numbers: it puts a key with its top bit set behind the
 * small ones, `insert` puts it before them, and after such a sort a search may miss it. This is
 * intended.
 *
 * @code{.c}
 * static void example_arrayx(void)
 * {
 *     struct visit { int hits; } *first, *again;
 *     qek_arrayx visits;
 *     qek_word item;
 *     qek_arrayx_init(&visits, 1);
 *     visits.pool->item_size = (int32_t)sizeof(struct visit);
 *     assert(qek_arrayx_insert_new(&visits, (uint64_t)1 << 40, &item, NULL) == 0);
 *     first = (struct visit *)item;
 *     first->hits = 3;
 *     assert(qek_arrayx_insert_new(&visits, 8, &item, NULL) == 0 && visits.count == 2);
 *     assert(qek_arrayx_insert_new(&visits, (uint64_t)1 << 40, &item, NULL) == -1);
 *     again = (struct visit *)item;
 *     assert(again == first && again->hits == 3);
 *     assert(qek_arrayx_find(&visits, 0) == 0 && qek_arrayx_bfind(&visits, 9) == item);
 *     qek_arrayx_term(&visits);
 * }
 * @endcode
 * @{
 */

/** A pair of a qek_arrayx. A pointer to one is good until storage grows or goes, or pairs move. */
typedef struct qek_arrayx_entry {
    uint64_t key;   /**< the key */
    qek_word value; /**< the caller's word, or an item of `pool` */
} qek_arrayx_entry;

/**
 * A growable array of 64-bit keys with a word each.
 *
 * The first `count` slots are in use. A slot from `count` up to `capacity` is 0 if it never was in
 * use, else stale: the slot of a removed last pair holds key 0 and the old value.
 */
typedef struct qek_arrayx {
    qek_arrayx_entry *slots; /**< the storage; null before the first growth and once emptied */
    int32_t count;           /**< pairs in use */
    int32_t capacity;        /**< pairs allocated: 0, or a multiple of 4 */
    qek_pool *pool;          /**< where `_new` operations take items; null: none; may be borrowed */
    uint16_t owns_pool;      /**< nonzero: `pool` was made by `init` and ends with the record */
    uint16_t reversed;       /**< nonzero negates every binary comparison; the caller writes it */
} qek_arrayx;

/**
 * Makes an empty array; the same operation as qek_arrays_init().
 * @param record    the record; what it held is not looked at
 * @param use_pool  nonzero: a pool is made and owned, its `item_size` 0 until the caller writes it
 *                  (exhausted memory faults); zero: no pool
 */
QEK_API void qek_arrayx_init(qek_arrayx *record, int32_t use_pool);

/**
 * Frees the storage and ends an owned pool; the same operation as qek_arrays_term().
 * @param record  the array; usable again, with a borrowed `pool` and `reversed` as they were
 */
QEK_API void qek_arrayx_term(qek_arrayx *record);

/**
 * Makes room by the growth rule of @ref arrays. `count` does not change; new slots are 0.
 * @param record  the array
 * @param want    pairs wanted in all; at most `capacity`, or negative, needs nothing
 * @return 1; 0 when memory runs out, and the record is as it was
 */
QEK_API int32_t qek_arrayx_expand(qek_arrayx *record, int32_t want);

/**
 * Exchanges `slots`, `count` and `capacity` in constant time. Unlike qek_arrays_swap(), `pool` and
 * `owns_pool` stay with their record, as does `reversed`; this is intended. A caller with items of
 * pools exchanges the pools itself.
 * @param record  one array
 * @param other   the other
 */
QEK_API void qek_arrayx_swap(qek_arrayx *record, qek_arrayx *other);

/**
 * Copies an array as qek_arrays_clone() does: keys are copied, values are treated as the words
 * there. A failed growth of `target` leaves its slots, but `count` is set all the same.
 * @param source           the array to copy
 * @param source_aux_pool  a pool that the values point into, or null
 * @param target           an initialised array, its pairs overwritten. It must own an empty pool if
 *                         `source` owns one, and must not own one otherwise
 * @param target_aux_pool  a freshly initialised pool for the copy of `source_aux_pool`, or null
 * @param clone_value      completes each copied item, or null
 */
QEK_API void qek_arrayx_clone(const qek_arrayx *source, qek_pool *source_aux_pool,
                              qek_arrayx *target, qek_pool *target_aux_pool,
                              qek_clone_fn clone_value);

/**
 * Stores a pair at the end. A failed growth does nothing.
 * @param record  the array
 * @param key     the key
 * @param value   the word
 */
QEK_API void qek_arrayx_append(qek_arrayx *record, uint64_t key, qek_word value);

/**
 * Takes an item from the pool, prepares it and stores it at the end under a key.
 * @param record      the array; its `pool` must not be null
 * @param key         the key
 * @param init_value  runs on the item before it is stored, unless either is null; may be null
 * @return the item, also when the pool gave null and that was stored; 0 when growth failed, and
 *         then no item was taken
 */
QEK_API qek_word qek_arrayx_append_new(qek_arrayx *record, uint64_t key, qek_value_fn init_value);

/**
 * Appends all pairs of another array in order, as qek_arrays_append_array(). A failed growth does
 * nothing.
 * @param record  the array
 * @param source  the array to append
 */
QEK_API void qek_arrayx_append_array(qek_arrayx *record, const qek_arrayx *source);

/**
 * Reads a pair. The bound is `capacity`, not `count`; this is intended.
 * @param record        the array
 * @param index         the slot
 * @param[out] key_out  its key; 0 if the index is out of range
 * @return its value; 0 if `index` is negative or not below `capacity`
 */
QEK_API qek_word qek_arrayx_get_at(const qek_arrayx *record, int32_t index, uint64_t *key_out);

/**
 * Overwrites key and value of a slot. The bound is `capacity`; `count` does not change.
 * @param record  the array
 * @param index   the slot
 * @param key     the new key
 * @param value   the new word
 * @return the old value; 0 if `index` is negative or not below `capacity`, and nothing is stored
 */
QEK_API qek_word qek_arrayx_set_at(qek_arrayx *record, int32_t index, uint64_t key, qek_word value);

/**
 * Overwrites the value of a slot and leaves its key. The bound is `capacity`.
 * @param record  the array
 * @param index   the slot
 * @param value   the new word
 * @return the old value; 0 if `index` is negative or not below `capacity`, and nothing is stored
 */
QEK_API qek_word qek_arrayx_update_at(qek_arrayx *record, int32_t index, qek_word value);

/**
 * Reads the first pair.
 * @param record        the array
 * @param[out] key_out  its key; 0 if `count` is below 1
 * @return its value; 0 if `count` is below 1
 */
QEK_API qek_word qek_arrayx_get_first(const qek_arrayx *record, uint64_t *key_out);

/**
 * Reads the last pair.
 * @param record        the array
 * @param[out] key_out  its key; 0 if `count` is below 1
 * @return its value; 0 if `count` is below 1
 */
QEK_API qek_word qek_arrayx_get_last(const qek_arrayx *record, uint64_t *key_out);

/**
 * Inserts a pair in order, unless the key is there. A failed growth stores nothing and is not
 * reported.
 * @param record  the array, in order
 * @param key     the key
 * @param value   the word
 * @return 1, also when growth failed; 0 if the key exists, and nothing changes
 */
QEK_API int32_t qek_arrayx_insert(qek_arrayx *record, uint64_t key, qek_word value);

/**
 * Finds the value of a key, or takes an item from the pool, prepares it and inserts it in order.
 * When growth fails, the item was taken and is in `value_out`, but in no pair; this is not
 * reported.
 * @param record          the array, in order; its `pool` must not be null
 * @param key             the key
 * @param[out] value_out  the value found or the item made; cleared at the start
 * @param init_value      runs on a new item before it is stored, unless either is null; may be null
 * @return -1 if the key exists, and the pool is not touched; else the index of the new pair, 0 if
 *         the array was empty, also when growth failed
 */
QEK_API int32_t qek_arrayx_insert_new(qek_arrayx *record, uint64_t key, qek_word *value_out,
                                      qek_value_fn init_value);

/**
 * Replaces the value of a key.
 * @param record  the array, in order
 * @param key     the key
 * @param value   the new word
 * @return the old value, which is the caller's; 0 if the key is absent, and nothing is stored
 */
QEK_API qek_word qek_arrayx_update(qek_arrayx *record, uint64_t key, qek_word value);

/**
 * Removes the pair of a key. The pool is not touched.
 * @param record  the array, in order
 * @param key     the key
 * @return its value, now the caller's; 0 if the key is absent
 */
QEK_API qek_word qek_arrayx_remove(qek_arrayx *record, uint64_t key);

/**
 * Finds the pair of a key and does qek_arrayx_free_at() on it; nothing if the key is absent.
 * @param record      the array, in order
 * @param key         the key
 * @param free_value  disposes of the value; may be null
 */
QEK_API void qek_arrayx_free(qek_arrayx *record, uint64_t key, qek_value_fn free_value);

/**
 * Finds the value of a key by binary search. A stored 0 and no match look alike;
 * qek_arrayx_find_index() tells them apart.
 * @param record  the array, in order
 * @param key     the key
 * @return the value; 0 if the key is absent
 */
QEK_API qek_word qek_arrayx_find(const qek_arrayx *record, uint64_t key);

/**
 * Finds the index of a key by binary search.
 * @param record  the array, in order
 * @param key     the key
 * @return the index; -1 if the key is absent
 */
QEK_API int32_t qek_arrayx_find_index(const qek_arrayx *record, uint64_t key);

/**
 * Finds the value of the first pair with a key by a linear scan, in any order of pairs. `reversed`
 * has no say.
 * @param record  the array
 * @param key     the key
 * @return the value of the lowest such index; 0 if the key is absent
 */
QEK_API qek_word qek_arrayx_afind(const qek_arrayx *record, uint64_t key);

/**
 * As qek_arrayx_afind(), but gives the index.
 * @param record  the array
 * @param key     the key
 * @return the lowest such index; -1 if the key is absent
 */
QEK_API int32_t qek_arrayx_afind_index(const qek_arrayx *record, uint64_t key);

/**
 * Finds the value of a key, or of its nearest neighbour, by binary search: the first pair that
 * sorts after the key, or the last pair if none does. The result does not tell a hit from a
 * neighbour.
 * @param record  the array, in order
 * @param key     the key
 * @return the value; 0 if the array is empty
 */
QEK_API qek_word qek_arrayx_bfind(const qek_arrayx *record, uint64_t key);

/**
 * As qek_arrayx_bfind(), but gives the index, by which qek_arrayx_get_at() tells the key.
 * @param record  the array, in order
 * @param key     the key
 * @return the index; -1 if the array is empty
 */
QEK_API int32_t qek_arrayx_bfind_index(const qek_arrayx *record, uint64_t key);

/**
 * Finds the pair of a key, or inserts one in order with value 0.
 * @param record  the array, in order
 * @param key     the key
 * @return the pair, until storage grows or pairs shift. When growth failed it is no new pair: null
 *         on an array without storage, else the place of the insertion, which may be another key's
 *         pair or lie one past the storage
 */
QEK_API qek_arrayx_entry *qek_arrayx_entry_insert(qek_arrayx *record, uint64_t key);

/**
 * Finds the pair of a key by binary search.
 * @param record  the array, in order
 * @param key     the key
 * @return the pair, until storage grows or pairs shift; null if the key is absent
 */
QEK_API qek_arrayx_entry *qek_arrayx_entry_find(const qek_arrayx *record, uint64_t key);

/**
 * Inserts a pair before an index and moves the rest up. A failed growth does nothing.
 * @param record  the array
 * @param index   the index that the pair gets; at or past `count` appends at `count`; negative does
 *                nothing
 * @param key     the key
 * @param value   the word
 */
QEK_API void qek_arrayx_insert_at(qek_arrayx *record, int32_t index, uint64_t key, qek_word value);

/**
 * Removes a pair and moves the rest down. The pool is not touched.
 * @param record        the array
 * @param index         the slot
 * @param[out] key_out  its key; 0 if the index is out of range
 * @return its value, now the caller's; 0 if `index` is negative or not below `count`
 */
QEK_API qek_word qek_arrayx_remove_at(qek_arrayx *record, int32_t index, uint64_t *key_out);

/**
 * Releases the value of a pair, then removes the pair, also when the value is 0.
 * @param record      the array
 * @param index       the slot; negative or not below `count` does nothing
 * @param free_value  disposes of the value; may be null
 */
QEK_API void qek_arrayx_free_at(qek_arrayx *record, int32_t index, qek_value_fn free_value);

/**
 * Frees the storage and empties an owned pool; the same operation as qek_arrays_remove_all().
 * @param record  the array; `count` and `capacity` become 0
 */
QEK_API void qek_arrayx_remove_all(qek_arrayx *record);

/**
 * Releases every value, in slot order, then does qek_arrayx_remove_all().
 * @param record      the array; `count` and `capacity` become 0
 * @param free_value  disposes of each value; may be null
 */
QEK_API void qek_arrayx_free_all(qek_arrayx *record, qek_value_fn free_value);

/**
 * Sorts the pairs by key, as unsigned numbers.
 * @param record     the array
 * @param ascending  nonzero: ascending; zero: descending
 */
QEK_API void qek_arrayx_qsort(qek_arrayx *record, int32_t ascending);

/**
 * Sorts the pairs by value, which leaves them out of key order.
 * @param record     the array
 * @param ascending  nonzero: ascending; zero: descending
 * @param compare    orders two values; null does nothing
 */
QEK_API void qek_arrayx_qsort_x(qek_arrayx *record, int32_t ascending,
                                qek_value_compare_fn compare);

/** @} */

/* ============================================================================================== */
/**
 * @defgroup arrayt Tiny array (arrayt)
 * A growable run of 32-bit numbers of which the first four stand inside the record.
 *
 * Up to four elements the array touches no heap, and needs no qek_arrayt_term(); from the fifth on
 * they stand in an overflow block. There are no pools, keys, callbacks or pointers: elements are
 * numbers of 32 bits on every platform. Growth and sort are those of @ref arrays.
 *
 * Cost: append is amortised constant; a search is logarithmic; insertion and removal move the
 * elements behind the place; qek_arrayt_qsort() takes a working block of `count` numbers.
 *
 * Take another family when: elements are words or pointers (@ref arrays), a number needs a value
 * beside it (@ref arrayd), or the numbers are dense and only membership counts (@ref bits).
 *
 * @par Element order
 * The sorted operations (insert, find, remove) compare by the element minus the sought value, as a
 * 32-bit difference that wraps and is read as signed, the other way round if `reversed` is nonzero.
 * Values thus order as signed numbers while they lie less than 2147483648 apart;
 * qek_arrayt_qsort() orders them as unsigned numbers, and where the two disagree a search may miss.
 * This is intended. Only insert, remove, remove_at and qek_arrayt_qsort() keep or make an order;
 * append, insert_at, set_at and from_string do not, and nothing verifies it.
 *
 * @code{.c}
 * static void example_arrayt(void)
 * {
 *     qek_arrayt set;
 *     qek_arrayt_init(&set);
 *     qek_arrayt_append(&set, 5);
 *     qek_arrayt_append(&set, 1);
 *     qek_arrayt_append(&set, 5);
 *     qek_arrayt_append(&set, 1);
 *     assert(set.capacity == 4 && set.overflow == NULL);
 *     qek_arrayt_append(&set, 3);
 *     assert(set.capacity == 12 && set.overflow[0] == 3);
 *     qek_arrayt_qsort(&set, 1, 1);
 *     assert(set.count == 3 && qek_arrayt_get_last(&set) == 5);
 *     assert(qek_arrayt_insert(&set, 4) == 1 && qek_arrayt_insert(&set, 4) == 0);
 *     assert(qek_arrayt_get_at(&set, 2) == 4);
 *     assert(qek_arrayt_remove(&set, 1) == 1 && qek_arrayt_find(&set, 1) == 0);
 *     qek_arrayt_term(&set);
 * }
 * @endcode
 * @{
 */

/**
 * A growable array of numbers, the first four inline.
 *
 * Element `i` is `inline_slots[i]` below 4 and `overflow[i - 4]` from there up. New overflow words
 * are 0. qek_arrayt_remove_at() clears the word that it takes out before it closes the gap; other
 * vacated words keep what they held. The inline slots are not set by `init`.
 */
typedef struct qek_arrayt {
    uint32_t inline_slots[4]; /**< elements 0 to 3 */
    uint32_t *overflow;       /**< elements 4 and up, `capacity - 4` words; null until needed */
    int32_t count;            /**< elements in use */
    int32_t capacity;         /**< elements that fit, inline ones included: a multiple of 4, 0 only
                                   after qek_arrayt_remove_all() */
    int32_t reversed;         /**< nonzero: the order is descending; the caller writes it */
} qek_arrayt;

/**
 * Makes an empty array: `overflow` null, `count` 0, `capacity` 4, `reversed` 0. Allocates nothing.
 * @param array  the record; what it held is not looked at, and the inline slots are not written
 */
QEK_API void qek_arrayt_init(qek_arrayt *array);

/**
 * Frees the overflow block.
 * @param array  the array; usable again with `count` 0 and `capacity` 4, `reversed` as it was
 */
QEK_API void qek_arrayt_term(qek_arrayt *array);

/**
 * Makes room by the growth rule of @ref arrays, inline slots included. A `capacity` below 4 first
 * becomes 4. `count` does not change; new overflow words are 0; `overflow` goes stale as a pointer.
 * @param array  the array
 * @param want   elements wanted in all; at most `capacity`, or negative, needs nothing
 * @return 1; 0 when memory runs out, and the elements, `overflow` and `count` are as they were
 */
QEK_API int32_t qek_arrayt_expand(qek_arrayt *array, int32_t want);

/**
 * Exchanges inline slots, `overflow`, `count` and `capacity` in constant time. Each record keeps
 * its own `reversed`; this is intended.
 * @param first   one array
 * @param second  the other
 */
QEK_API void qek_arrayt_swap(qek_arrayt *first, qek_arrayt *second);

/**
 * Copies an array. `target` is expanded to the `capacity` of `source`, which may take an overflow
 * block for few elements too; a failed growth leaves it as it was, silently. `reversed` is not
 * copied.
 * @param source  the array to copy
 * @param target  an initialised array; its elements are overwritten
 */
QEK_API void qek_arrayt_clone(const qek_arrayt *source, qek_arrayt *target);

/**
 * Adds an element at the end. A failed growth does nothing.
 * @param array  the array
 * @param value  the number
 */
QEK_API void qek_arrayt_append(qek_arrayt *array, uint32_t value);

/**
 * Adds all elements of another array at the end, in order. A failed growth does nothing.
 * @param array   the array
 * @param source  the other array
 */
QEK_API void qek_arrayt_append_array(qek_arrayt *array, const qek_arrayt *source);

/**
 * Reads an element. Unlike the other array families, the bound is `count`.
 * @param array  the array
 * @param index  the element
 * @return the element; 0 if `index` is negative or not below `count`, or if the element would stand
 *         in an overflow block that is not there
 */
QEK_API uint32_t qek_arrayt_get_at(const qek_arrayt *array, int32_t index);

/**
 * Overwrites an element, without a result, unlike qek_arrays_set_at().
 * @param array  the array
 * @param index  the element; negative, not below `count`, or in an overflow block that is not there
 *               does nothing
 * @param value  the number
 */
QEK_API void qek_arrayt_set_at(qek_arrayt *array, int32_t index, uint32_t value);

/**
 * Reads element 0.
 * @param array  the array
 * @return the element; 0 if the array is empty
 */
QEK_API uint32_t qek_arrayt_get_first(const qek_arrayt *array);

/**
 * Reads element `count` - 1.
 * @param array  the array
 * @return the element; 0 if the array is empty
 */
QEK_API uint32_t qek_arrayt_get_last(const qek_arrayt *array);

/**
 * Inserts a value in order, unless it is there. A failed growth stores nothing and is not reported.
 * @param array  the array, in order
 * @param value  the number
 * @return 1, also when growth failed; 0 if the value exists, and nothing changes
 */
QEK_API int32_t qek_arrayt_insert(qek_arrayt *array, uint32_t value);

/**
 * Tells whether a value is there, by binary search.
 * @param array  the array, in order
 * @param value  the number
 * @return 1 if it is; 0 if it is not, or the array is empty
 */
QEK_API int32_t qek_arrayt_find(const qek_arrayt *array, uint32_t value);

/**
 * Finds a value by binary search and does qek_arrayt_remove_at() on it.
 * @param array  the array, in order
 * @param value  the number
 * @return 1 if it was removed; 0 if it is not there, or the array is empty
 */
QEK_API int32_t qek_arrayt_remove(qek_arrayt *array, uint32_t value);

/**
 * Sorts the elements as unsigned numbers. `reversed` is neither read nor written. A working block
 * of `count` numbers is taken and given back; exhausted memory faults.
 * @param array      the array; empty does nothing
 * @param ascending  nonzero: ascending; zero: descending
 * @param unique     nonzero: repeated values are dropped, and `count` becomes the number left
 */
QEK_API void qek_arrayt_qsort(qek_arrayt *array, int32_t ascending, int32_t unique);

/**
 * Inserts an element before an index and moves the rest up. A failed growth does nothing.
 * @param array  the array
 * @param index  the index that the element gets; at or past `count` appends at `count`; negative
 *               does nothing
 * @param value  the number
 */
QEK_API void qek_arrayt_insert_at(qek_arrayt *array, int32_t index, uint32_t value);

/**
 * Removes an element and moves the rest down. No memory is given back: `overflow` stays, also when
 * four elements or fewer are left.
 * @param array  the array
 * @param index  the element
 * @return the element; 0 if `index` is negative or not below `count`
 */
QEK_API uint32_t qek_arrayt_remove_at(qek_arrayt *array, int32_t index);

/**
 * Clears the four inline slots and frees the overflow block. The next growth makes the array usable
 * again, without `init`.
 * @param array  the array; `count` and `capacity` become 0
 */
QEK_API void qek_arrayt_remove_all(qek_arrayt *array);

/**
 * Appends the numbers of a text. The array is neither emptied nor sorted.
 *
 * The text is cut at every separator, and each piece is trimmed by qek_char_trim() and read by
 * qek_char_get_long(), of which the low 32 bits are the element: an empty piece, or one that does
 * not start as a number, gives 0. Only a last piece that is empty is left out. A number that finds
 * no memory is left out, silently.
 * @param array      the array
 * @param separator  the byte between two numbers
 * @param text       the text; not read if `length` is 0 or less
 * @param length     its length in bytes; not measured: a negative length appends nothing, as 0 does
 */
QEK_API void qek_arrayt_from_string(qek_arrayt *array, uint8_t separator, const void *text,
                                    int32_t length);

/**
 * Writes the elements in order as signed decimal numbers with a separator between each two, so that
 * elements at or above 2147483648 come out negative. qek_arrayt_from_string() reads them back as
 * they were. When memory runs out the text is incomplete, silently.
 * @param array      the array
 * @param separator  the byte between two numbers
 * @param string     an initialised string; its text is replaced, and is empty for an empty array
 */
QEK_API void qek_arrayt_to_string(const qek_arrayt *array, uint8_t separator, qek_string *string);

/** @} */

/* ============================================================================================== */
/**
 * @defgroup bits Bit set (bits)
 * A set of numbered bits in a byte buffer that grows when a bit is written past its end. Past the
 * end every bit reads 0.
 *
 * Bits count from the most significant: bit `n` of a set is in byte `n >> 3`, and in a byte bit 0
 * has the mask 0x80 and bit 7 the mask 0x01. qek_bits_get() and qek_bits_set() work on a single
 * byte and need no record.
 *
 * Cost: constant time. Growth is linear in the size, and goes by 1024 bytes whatever the size, so
 * that a large set is best given its size first, with qek_bits_expand(). Memory is one bit for each
 * number up to the highest written.
 *
 * Take another family when: the numbers are few and far apart (use @ref hashd, or @ref btreed to
 * walk them in order).
 *
 * @code{.c}
 * static void example_bits(void)
 * {
 *     qek_bits seen;
 *     qek_bits_init(&seen);
 *     qek_bits_insert(&seen, 10, 1);
 *     assert(seen.size == 1024 && seen.data[1] == 0x20);
 *     assert(qek_bits_find(&seen, 10) == 0x20 && qek_bits_find(&seen, 11) == 0);
 *     assert(qek_bits_find(&seen, 1000000) == 0 && seen.size == 1024);
 *     assert(qek_bits_get(seen.data[1], 2) == 0x20);
 *     assert(qek_bits_set(seen.data[1], 7, 1) == 0x21);
 *     qek_bits_insert(&seen, 10, 0);
 *     assert(qek_bits_find(&seen, 10) == 0);
 *     qek_bits_term(&seen);
 * }
 * @endcode
 * @{
 */

/** A bit set. There is no count of bits in use. Every byte that a growth adds is zero. */
typedef struct qek_bits {
    uint8_t *data;      /**< the buffer, owned by the record; null until the first growth */
    uint32_t size;      /**< bytes in the buffer */
    uint32_t size_copy; /**< written by qek_bits_swap() alone and read by nothing */
} qek_bits;

/**
 * Reads one bit of a byte.
 * @param byte  the byte
 * @param bit   bit number, 0 (mask 0x80) to 7 (mask 0x01)
 * @return the mask of the bit, not 1, if it is set; 0 if it is clear or `bit` is above 7
 */
QEK_API uint32_t qek_bits_get(uint8_t byte, uint32_t bit);

/**
 * Works out a byte with one bit set or cleared.
 * @param byte  the byte to start from
 * @param bit   bit number, 0 (mask 0x80) to 7 (mask 0x01)
 * @param on    nonzero sets the bit, 0 clears it
 * @return the new byte; `byte` unchanged if `bit` is above 7
 */
QEK_API uint8_t qek_bits_set(uint8_t byte, uint32_t bit, int32_t on);

/**
 * Makes an empty set: `data` null, `size` 0. `size_copy` is left alone. Allocates nothing.
 * @param bits  the record; what it held is not looked at
 */
QEK_API void qek_bits_init(qek_bits *bits);

/**
 * Frees the buffer and leaves an empty set, ready for use; `size_copy` is left alone. Harmless on
 * an empty set.
 * @param bits  the set
 */
QEK_API void qek_bits_term(qek_bits *bits);

/**
 * Makes the buffer at least `wanted` bytes long; the bits added are 0. A growth is by 1024 bytes,
 * or to exactly `wanted` if that is more, and moves the buffer. Never shrinks.
 * @param bits    the set
 * @param wanted  bytes (not bits) wanted
 * @return 1 if `size` is now at least `wanted`; 0 if memory ran out, the set being as it was
 */
QEK_API int32_t qek_bits_expand(qek_bits *bits, uint32_t wanted);

/**
 * Clears all `size` bytes. The buffer stays. Nothing happens without a buffer.
 * @param bits  the set
 */
QEK_API void qek_bits_zero(qek_bits *bits);

/**
 * Copies one way, in spite of its name: `target` takes `data` and `size` of `source`, and its
 * `size_copy` takes the size too. `source` does not change, and the buffer that `target` held is
 * not freed. This is intended. Both records then own one buffer. Go on with only one of them and
 * drop the other by qek_bits_init(): growth or qek_bits_term() on the one frees the buffer under
 * the other, and qek_bits_term() on both frees it twice.
 * @param source  the set to take the buffer from
 * @param target  the set to store it in; normally an empty one
 */
QEK_API void qek_bits_swap(const qek_bits *source, qek_bits *target);

/**
 * Writes one bit, growing the buffer up to its byte, also when a bit past the end is cleared. No
 * other bit moves. Nothing happens when memory runs out.
 * @param bits   the set
 * @param index  number of the bit
 * @param on     nonzero sets the bit, 0 clears it
 */
QEK_API void qek_bits_insert(qek_bits *bits, uint32_t index, int32_t on);

/**
 * Reads one bit. Never grows the buffer.
 * @param bits   the set
 * @param index  number of the bit
 * @return the bit's mask within its byte, as qek_bits_get() gives it, if it is set; 0 if it is
 *         clear or past the end
 */
QEK_API uint32_t qek_bits_find(const qek_bits *bits, uint32_t index);

/** @} */

/* ============================================================================================== */
/**
 * @defgroup hash Byte-string hash (hash)
 * A chained hash table from byte-string keys to one word each.
 *
 * The entry functions (`qek_hash_entry_...`) hand out entries; the others work in values. The order
 * of use is: qek_hash_init(), then write `ignore_case`, a borrowed pool, or the `item_size` of a
 * value pool; then store and look up; then qek_hash_term(). A walk goes by ascending bucket and,
 * within a bucket, oldest first: neither sorted nor in order of insertion.
 *
 * An entry never moves: a pointer to it stays valid across stores, growth of the table and
 * qek_hash_swap(). It dies when its key is removed and when the table is emptied or ended. Its
 * `value` may be written at any time. Its `key_offset` is to be read afresh against `keys.data`
 * each time, since a store may move the text and a removal shifts the offsets.
 *
 * Exhausted memory is not reported: a pool faults, key text that cannot grow leaves a new entry
 * with a `key_length` of 0, and buckets that cannot grow lose entries to look-ups.
 *
 * Cost: stores and look-ups take constant time on average, amortised over the doubling of the
 * buckets; growth reads no key text. Removing a key passes over all entries and moves the key text
 * behind the key; removing the empty key does not.
 *
 * Take another family when: the keys are numbers (use @ref hashd, @ref hashx) or blocks of 16 bytes
 * (use @ref hasht), or the keys are wanted in order (use @ref btree).
 *
 * @code{.c}
 * static void example_hash(void)
 * {
 *     qek_hash ages;
 *     qek_hash_entry *entry;
 *     int32_t bucket;
 *     qek_word total = 0;
 *     qek_hash_init(&ages, 1, 0);
 *     assert(qek_hash_insert(&ages, "ada", -1, 36) == 1);
 *     assert(qek_hash_insert(&ages, "alan", -1, 41) == 1);
 *     assert(qek_hash_insert(&ages, "ada", 3, 99) == 0);
 *     assert(qek_hash_update(&ages, "ada", -1, 37) == 36);
 *     for (entry = qek_hash_entry_first(&ages, &bucket); entry != NULL;
 *          entry = qek_hash_entry_next(&ages, &bucket, entry)) {
 *         total += entry->value;
 *     }
 *     assert(total == 78);
 *     assert(qek_hash_remove(&ages, "alan", -1) == 41 && ages.entry_count == 1);
 *     qek_hash_term(&ages);
 * }
 * @endcode
 * @{
 */

/**
 * One key and its value: an item of the entry pool. Callers read it directly and may write `value`.
 */
typedef struct qek_hash_entry {
    struct qek_hash_entry *next; /**< the next entry in the bucket's chain; null at the tail */
    uint32_t hash;               /**< qek_hash_key() of the key, under the `ignore_case` of that
                                      time */
    uint32_t key_offset;         /**< where the key starts in the table's `keys` */
    int32_t key_length;          /**< bytes in the key; 0 is a valid key */
    qek_word value;              /**< the caller's value; 0 in a new entry */
} qek_hash_entry;

/**
 * A table of byte-string keys.
 *
 * `buckets.count` is 0 until the first store, then 4; it doubles when `entry_count` reaches twice
 * its number, and only qek_hash_remove_all(), qek_hash_free_all() and qek_hash_term() bring it
 * down, to 0. An entry is in bucket `hash % buckets.count`. A key is in the table at most once.
 *
 * A borrowed pool is written into its field, with the flag beside it left 0: `entry_pool` (of an
 * `item_size` of `sizeof(qek_hash_entry)`) before the first store, which faults on a null pool, and
 * `value_pool` before the first qek_hash_set().
 */
typedef struct qek_hash {
    qek_arrays buckets;      /**< the first entry of each chain, or null; `pool` in it is told
                                  by `init`, goes along in `swap`, and is not used or freed */
    int32_t entry_count;     /**< entries in the table */
    qek_stream keys;         /**< the text of all keys, one after another, without terminators */
    qek_pool *entry_pool;    /**< where entries come from */
    int16_t owns_entry_pool; /**< nonzero: the table made `entry_pool` and ends it */
    qek_pool *value_pool;    /**< where qek_hash_set() takes value items from; null if there is
                                  none */
    int16_t owns_value_pool; /**< nonzero: the table made `value_pool` and ends it */
    int16_t ignore_case;     /**< nonzero: letters of either case are equal (by the C runtime's
                                  current locale); the caller writes it after qek_hash_init(),
                                  before the first store */
} qek_hash;

/**
 * Computes the hash of a key: the table walk of CRC-32, started at 0 and not inverted at the end,
 * hence not the result of qek_stream_crc32(). The bytes of "abc" give 0xCA6598D0.
 * @param key          the key's bytes; null only with a length of 0 or below
 * @param length       bytes in the key; negative: NUL-terminated
 * @param ignore_case  nonzero passes each byte, taken as signed, through the runtime's `tolower`
 * @return the hash; 0 for an empty key
 */
QEK_API uint32_t qek_hash_key(const void *key, int32_t length, int32_t ignore_case);

/**
 * Makes an empty table, all fields 0 but the pools asked for. Allocates nothing else; exhausted
 * memory faults.
 * @param hash            the record; what it held is not looked at
 * @param own_entry_pool  nonzero makes an owned entry pool, with its item size; 0 leaves
 *                        `entry_pool` null, for the caller to write
 * @param own_value_pool  nonzero makes an owned value pool with an `item_size` of 0, for the caller
 *                        to write before the first qek_hash_set()
 */
QEK_API void qek_hash_init(qek_hash *hash, int32_t own_entry_pool, int32_t own_value_pool);

/**
 * Ends a table: releases the buckets and the key text, and ends and frees owned pools, whose fields
 * become null and whose flags 0. No value is called back. A borrowed pool keeps its field, and the
 * table's entries and value items stay allocated in it; this is intended.
 * @param hash  the table; qek_hash_init() makes it usable again
 */
QEK_API void qek_hash_term(qek_hash *hash);

/**
 * Exchanges two tables, pools included, in constant time. Each record keeps its own `ignore_case`,
 * by which the keys that it took over are now looked up, so the two should agree. Entries stay
 * where they are.
 * @param a  one table
 * @param b  the other
 */
QEK_API void qek_hash_swap(qek_hash *a, qek_hash *b);

/**
 * Copies a table into one just initialised with the same own flags. Key text and owned pools are
 * copied, item sizes included; a borrowed value pool is shared, and the value words are copied.
 * `source` must own its entry pool: with a borrowed one the behaviour is undefined. `ignore_case`
 * is not copied. When `source` owns its value pool, each value must be one of its items or 0. The
 * copy gets the item at the same place in the copied pool (0 for 0), and `clone_value` is called
 * for every entry, in the order of a walk, also for a value of 0. Linear; no allocation is checked.
 * @param source           the table to copy
 * @param source_aux_pool  a pool that value items point into, or null
 * @param target           the copy; what it held is overwritten without being freed
 * @param target_aux_pool  a freshly initialised pool, into which `source_aux_pool` is copied before
 *                         any value if both pools and `clone_value` are given; or null
 * @param clone_value      completes the copy of a value; null is skipped; not called unless the
 *                         value pool is owned
 */
QEK_API void qek_hash_clone(const qek_hash *source, qek_pool *source_aux_pool, qek_hash *target,
                            qek_pool *target_aux_pool, qek_clone_fn clone_value);

/**
 * Finds or makes the entry of a key. The value of a new entry is 0, and no value item is made.
 * Within the key's bucket only key text is compared, where look-ups compare the stored hash as
 * well; this is intended and can show once `ignore_case` changed while keys were stored.
 * @param hash            the table
 * @param key             the key's bytes, copied if new, and then not in the record's own
 *                        `keys`; null only with a length of 0 or below
 * @param length          bytes in the key; negative: NUL-terminated
 * @param[out] entry_out  the entry, new or not; null if the entry pool gives none (`item_size` 0),
 *                        in which case nothing is stored
 * @return 1 if the entry is new; 0 if it existed or none could be had
 */
QEK_API int32_t qek_hash_entry_set(qek_hash *hash, const void *key, int32_t length,
                                   qek_hash_entry **entry_out);

/**
 * Looks up an entry.
 * @param hash    the table
 * @param key     the key's bytes; null only with a length of 0 or below
 * @param length  bytes in the key; negative: NUL-terminated
 * @return the entry, or null if the key is absent
 */
QEK_API qek_hash_entry *qek_hash_entry_get(const qek_hash *hash, const void *key, int32_t length);

/**
 * Begins a walk over all entries, by ascending bucket, oldest first within a bucket. A store during
 * the walk may make it miss or repeat entries.
 * @param hash             the table
 * @param[out] bucket_out  the index of the entry's bucket; 0 on an empty table
 * @return the first entry, or null on an empty table
 */
QEK_API qek_hash_entry *qek_hash_entry_first(const qek_hash *hash, int32_t *bucket_out);

/**
 * Goes on with a walk. To remove an entry during the walk, take its successor first, with the
 * bucket index that comes with it.
 * @param hash                  the table
 * @param[in,out] bucket_inout  the bucket of `entry`; becomes that of the result, and is left alone
 *                              when the result is null
 * @param entry                 an entry of the table
 * @return the entry after `entry`, or null after the last
 */
QEK_API qek_hash_entry *qek_hash_entry_next(const qek_hash *hash, int32_t *bucket_inout,
                                            const qek_hash_entry *entry);

/**
 * Finds a key's value or makes a new one: a new entry takes an item from `value_pool`. The item may
 * be a recycled one with its old bytes; `init_value` runs on it before the entry stores it. A null
 * `value_pool` faults on a new key. A value pool with an `item_size` of 0 gives no item: the entry
 * is made with a value of 0, `init_value` does not run and the result is 1.
 * @param hash            the table
 * @param key             the key's bytes, copied if new, and then not in the record's own
 *                        `keys`; null only with a length of 0 or below
 * @param length          bytes in the key; negative: NUL-terminated
 * @param[out] value_out  the value, new or not; cleared first, and 0 if no entry could be had
 * @param init_value      prepares a new item; null is skipped
 * @return 1 if the key is new; 0 if it existed, or the entry pool gave no entry (`item_size` 0)
 */
QEK_API int32_t qek_hash_set(qek_hash *hash, const void *key, int32_t length, qek_word *value_out,
                             qek_value_fn init_value);

/**
 * Looks up a value.
 * @param hash    the table
 * @param key     the key's bytes; null only with a length of 0 or below
 * @param length  bytes in the key; negative: NUL-terminated
 * @return the value; 0 if the key is absent, which a stored 0 looks like (qek_hash_find() tells
 *         them apart)
 */
QEK_API qek_word qek_hash_get(const qek_hash *hash, const void *key, int32_t length);

/**
 * Stores a value under a key that is not in the table. The value of a key that is there is left
 * alone.
 * @param hash    the table
 * @param key     the key's bytes, copied if new, and then not in the record's own
 *                `keys`; null only with a length of 0 or below
 * @param length  bytes in the key; negative: NUL-terminated
 * @param value   the value, which stays the caller's to dispose of
 * @return 1 if the key is new, also when the entry pool gave no entry (`item_size` 0) and nothing
 *         was stored; 0 if the key existed
 */
QEK_API int32_t qek_hash_insert(qek_hash *hash, const void *key, int32_t length, qek_word value);

/**
 * Replaces the value of a key that is in the table. Makes nothing otherwise.
 * @param hash    the table
 * @param key     the key's bytes; null only with a length of 0 or below
 * @param length  bytes in the key; negative: NUL-terminated
 * @param value   the new value
 * @return the old value, which passes to the caller; 0 if the key is absent
 */
QEK_API qek_word qek_hash_update(qek_hash *hash, const void *key, int32_t length, qek_word value);

/**
 * Tells whether a key is in the table.
 * @param hash    the table
 * @param key     the key's bytes; null only with a length of 0 or below
 * @param length  bytes in the key; negative: NUL-terminated
 * @return 1 if it is, else 0
 */
QEK_API int32_t qek_hash_find(const qek_hash *hash, const void *key, int32_t length);

/**
 * Takes a key out. Its entry goes back to `entry_pool` and its text leaves `keys`, which closes up:
 * every offset behind it falls by the length. An empty key recorded at exactly the removed offset
 * keeps its offset; this is intended. The buckets stay. Linear in entries and key text, but for the
 * empty key.
 * @param hash    the table
 * @param key     the key's bytes; null only with a length of 0 or below
 * @param length  bytes in the key; negative: NUL-terminated
 * @return the value, which passes to the caller (an item of `value_pool` stays allocated); 0 if the
 *         key is absent
 */
QEK_API qek_word qek_hash_remove(qek_hash *hash, const void *key, int32_t length);

/**
 * Takes a key out as qek_hash_remove() does, and disposes of its value: `free_value` is called,
 * even for a value of 0, and then the item goes back to a borrowed `value_pool`. An owned value
 * pool gets nothing back until it is emptied; this is intended. Nothing happens if the key is
 * absent.
 * @param hash        the table
 * @param key         the key's bytes; null only with a length of 0 or below
 * @param length      bytes in the key; negative: NUL-terminated
 * @param free_value  disposes of the value; null is skipped
 */
QEK_API void qek_hash_free(qek_hash *hash, const void *key, int32_t length,
                           qek_value_fn free_value);

/**
 * Empties the table, which stays usable. Values are not called back. The buckets are released; the
 * key text is emptied and its buffer kept. A borrowed entry pool gets the entries back, in the
 * order of a walk; owned pools are emptied, so that their items die. Items of a borrowed value pool
 * stay allocated. Linear.
 * @param hash  the table
 */
QEK_API void qek_hash_remove_all(qek_hash *hash);

/**
 * Empties the table, which stays usable, and disposes of the values: for each entry whose value is
 * not 0, in the order of a walk, `free_value` is called and then the item goes back to a borrowed
 * `value_pool`. The rest is as in qek_hash_remove_all(), except that the key text's buffer is
 * released too. Linear.
 * @param hash        the table
 * @param free_value  disposes of a value; null is skipped
 */
QEK_API void qek_hash_free_all(qek_hash *hash, qek_value_fn free_value);

/** @} */

/* ============================================================================================== */
/**
 * @defgroup hashd 32-bit-key hash (hashd)
 * A chained hash table from 32-bit numbers to one word each, with the key inside the entry.
 *
 * It is the design of @ref hash without key text: the same order of use, pools, bucket counts,
 * order of a walk and life of an entry pointer. Keys are not hashed: the bucket is
 * `key % buckets.count`, so that keys spread by their low bits.
 *
 * Exhausted memory is not reported: a pool faults, and buckets that cannot grow lose entries to
 * look-ups.
 *
 * Cost: stores, look-ups and removals take constant time on average, amortised over the doubling of
 * the buckets. Keys that agree in their low bits share a bucket, and the table does not grow for
 * that: such keys make it linear.
 *
 * Take another family when: the keys have 64 bits (use @ref hashx), are bytes (use @ref hash,
 * @ref hasht), agree in their low bits or are wanted in order (use @ref btreed), or run from 0
 * without gaps (use @ref arrays).
 *
 * @code{.c}
 * static void hashd_begin(qek_word value)
 * {
 *     *(int32_t *)value = 100;
 * }
 *
 * static void example_hashd(void)
 * {
 *     qek_hashd stock;
 *     qek_word item;
 *     qek_hashd_init(&stock, 1, 1);
 *     stock.value_pool->item_size = (int32_t)sizeof(int32_t);
 *     assert(qek_hashd_set(&stock, 4711, &item, hashd_begin) == 1);
 *     *(int32_t *)item -= 30;
 *     assert(qek_hashd_set(&stock, 4711, &item, hashd_begin) == 0);
 *     assert(*(int32_t *)item == 70);
 *     assert(qek_hashd_get(&stock, 4712) == 0 && qek_hashd_find(&stock, 4711) == 1);
 *     qek_hashd_term(&stock);
 * }
 * @endcode
 * @{
 */

/**
 * One key and its value: an item of the entry pool. Callers read it directly and may write `value`.
 */
typedef struct qek_hashd_entry {
    struct qek_hashd_entry *next; /**< the next entry in the bucket's chain; null at the tail */
    uint32_t key;                 /**< the key */
    qek_word value;               /**< the caller's value; 0 in a new entry */
} qek_hashd_entry;

/**
 * A table of 32-bit keys. Invariants and borrowed pools are as in ::qek_hash, with entries of
 * `sizeof(qek_hashd_entry)` bytes and an entry in bucket `key % buckets.count`.
 */
typedef struct qek_hashd {
    qek_arrays buckets;      /**< the first entry of each chain, or null; `pool` in it is told
                                  by `init`, goes along in `swap`, and is not used or freed */
    int32_t entry_count;     /**< entries in the table */
    qek_pool *entry_pool;    /**< where entries come from */
    int16_t owns_entry_pool; /**< nonzero: the table made `entry_pool` and ends it */
    qek_pool *value_pool;    /**< where qek_hashd_set() takes value items from; null if there is
                                  none */
    int16_t owns_value_pool; /**< nonzero: the table made `value_pool` and ends it */
} qek_hashd;

/**
 * Computes a hash of a key: the loop of qek_hash_key() over its 4 bytes, low byte first. For
 * callers; the table itself does not use it.
 * @param key  the key
 * @return the hash; 0 for a key of 0
 */
QEK_API uint32_t qek_hashd_key(uint32_t key);

/**
 * Makes an empty table, all fields 0 but the pools asked for. Allocates nothing else; exhausted
 * memory faults.
 * @param hash            the record; what it held is not looked at
 * @param own_entry_pool  nonzero makes an owned entry pool, with its item size; 0 leaves
 *                        `entry_pool` null, for the caller to write
 * @param own_value_pool  nonzero makes an owned value pool with an `item_size` of 0, for the caller
 *                        to write before the first qek_hashd_set()
 */
QEK_API void qek_hashd_init(qek_hashd *hash, int32_t own_entry_pool, int32_t own_value_pool);

/**
 * Ends a table: releases the buckets, and ends and frees owned pools, whose fields become null and
 * whose flags 0. No value is called back. A borrowed pool keeps its field, and the table's entries
 * and value items stay allocated in it; this is intended.
 * @param hash  the table; qek_hashd_init() makes it usable again
 */
QEK_API void qek_hashd_term(qek_hashd *hash);

/**
 * Exchanges two tables, pools included, in constant time. Entries stay where they are.
 * @param a  one table
 * @param b  the other
 */
QEK_API void qek_hashd_swap(qek_hashd *a, qek_hashd *b);

/**
 * Copies a table into one just initialised with the same own flags, as qek_hash_clone() does: owned
 * pools are copied, a borrowed value pool is shared, and `source` must own its entry pool (with a
 * borrowed one the behaviour is undefined). Values of an owned value pool must be its items or 0.
 * Linear; no allocation is checked.
 * @param source           the table to copy
 * @param source_aux_pool  a pool that value items point into, or null
 * @param target           the copy; what it held is overwritten without being freed
 * @param target_aux_pool  a freshly initialised pool, into which `source_aux_pool` is copied before
 *                         any value if both pools and `clone_value` are given; or null
 * @param clone_value      completes the copy of a value, also of a 0; null is skipped; not called
 *                         unless the value pool is owned
 */
QEK_API void qek_hashd_clone(const qek_hashd *source, qek_pool *source_aux_pool, qek_hashd *target,
                             qek_pool *target_aux_pool, qek_clone_fn clone_value);

/**
 * Finds or makes the entry of a key. The value of a new entry is 0, and no value item is made.
 * @param hash            the table
 * @param key             the key
 * @param[out] entry_out  the entry, new or not; null if the entry pool gives none (`item_size` 0),
 *                        in which case nothing is stored
 * @return 1 if the entry is new; 0 if it existed or none could be had
 */
QEK_API int32_t qek_hashd_entry_set(qek_hashd *hash, uint32_t key, qek_hashd_entry **entry_out);

/**
 * Looks up an entry.
 * @param hash  the table
 * @param key   the key
 * @return the entry, or null if the key is absent
 */
QEK_API qek_hashd_entry *qek_hashd_entry_get(const qek_hashd *hash, uint32_t key);

/**
 * Begins a walk over all entries. The same operation as qek_hash_entry_first().
 * @param hash             the table
 * @param[out] bucket_out  the index of the entry's bucket; 0 on an empty table
 * @return the first entry, or null on an empty table
 */
QEK_API qek_hashd_entry *qek_hashd_entry_first(const qek_hashd *hash, int32_t *bucket_out);

/**
 * Goes on with a walk. The same operation as qek_hash_entry_next().
 * @param hash                  the table
 * @param[in,out] bucket_inout  the bucket of `entry`; becomes that of the result, and is left alone
 *                              when the result is null
 * @param entry                 an entry of the table
 * @return the entry after `entry`, or null after the last
 */
QEK_API qek_hashd_entry *qek_hashd_entry_next(const qek_hashd *hash, int32_t *bucket_inout,
                                              const qek_hashd_entry *entry);

/**
 * Finds a key's value or makes a new one: a new entry takes an item from `value_pool`, as in
 * qek_hash_set(). A null `value_pool` faults on a new key; one with an `item_size` of 0 gives no
 * item, and the entry is made with a value of 0 and a result of 1.
 * @param hash            the table
 * @param key             the key
 * @param[out] value_out  the value, new or not; cleared first, and 0 if no entry could be had
 * @param init_value      prepares a new item, which may hold old bytes; null is skipped
 * @return 1 if the key is new; 0 if it existed, or the entry pool gave no entry (`item_size` 0)
 */
QEK_API int32_t qek_hashd_set(qek_hashd *hash, uint32_t key, qek_word *value_out,
                              qek_value_fn init_value);

/**
 * Looks up a value.
 * @param hash  the table
 * @param key   the key
 * @return the value; 0 if the key is absent, which a stored 0 looks like (qek_hashd_find() tells
 *         them apart)
 */
QEK_API qek_word qek_hashd_get(const qek_hashd *hash, uint32_t key);

/**
 * Stores a value under a key that is not in the table. The value of a key that is there is left
 * alone.
 * @param hash   the table
 * @param key    the key
 * @param value  the value, which stays the caller's to dispose of
 * @return 1 if the key is new, also when the entry pool gave no entry (`item_size` 0) and nothing
 *         was stored; 0 if the key existed
 */
QEK_API int32_t qek_hashd_insert(qek_hashd *hash, uint32_t key, qek_word value);

/**
 * Replaces the value of a key that is in the table. Makes nothing otherwise.
 * @param hash   the table
 * @param key    the key
 * @param value  the new value
 * @return the old value, which passes to the caller; 0 if the key is absent
 */
QEK_API qek_word qek_hashd_update(qek_hashd *hash, uint32_t key, qek_word value);

/**
 * Tells whether a key is in the table.
 * @param hash  the table
 * @param key   the key
 * @return 1 if it is, else 0
 */
QEK_API int32_t qek_hashd_find(const qek_hashd *hash, uint32_t key);

/**
 * Takes a key out. Its entry goes back to `entry_pool`; the buckets stay.
 * @param hash  the table
 * @param key   the key
 * @return the value, which passes to the caller (an item of `value_pool` stays allocated); 0 if the
 *         key is absent
 */
QEK_API qek_word qek_hashd_remove(qek_hashd *hash, uint32_t key);

/**
 * Takes a key out and disposes of its value: `free_value` is called, even for a value of 0, and
 * then the item goes back to a borrowed `value_pool`. An owned value pool gets nothing back until
 * it is emptied; this is intended. Nothing happens if the key is absent.
 * @param hash        the table
 * @param key         the key
 * @param free_value  disposes of the value; null is skipped
 */
QEK_API void qek_hashd_free(qek_hashd *hash, uint32_t key, qek_value_fn free_value);

/**
 * Empties the table, which stays usable. Values are not called back. The buckets are released. A
 * borrowed entry pool gets the entries back, in the order of a walk; owned pools are emptied, so
 * that their items die. Items of a borrowed value pool stay allocated. Linear.
 * @param hash  the table
 */
QEK_API void qek_hashd_remove_all(qek_hashd *hash);

/**
 * Empties the table as qek_hashd_remove_all() does, and disposes of the values: for each entry
 * whose value is not 0, in the order of a walk, `free_value` is called and then the item goes back
 * to a borrowed `value_pool`. Linear.
 * @param hash        the table
 * @param free_value  disposes of a value; null is skipped
 */
QEK_API void qek_hashd_free_all(qek_hashd *hash, qek_value_fn free_value);

/** @} */

/* ============================================================================================== */
/**
 * @defgroup hashx 64-bit-key hash (hashx)
 * A chained hash table from 64-bit numbers to one word each: @ref hashd with a wider key. The
 * bucket is the 64-bit remainder `key % buckets.count`.
 *
 * Cost: as @ref hashd, keys that agree in their low bits included.
 *
 * Take another family when: the keys fit 32 bits (use @ref hashd), or agree in their low bits or
 * are wanted in order (use @ref btreex).
 *
 * @code{.c}
 * static void example_hashx(void)
 * {
 *     const uint64_t big = ((uint64_t)1 << 32) + 1;
 *     qek_hashx names;
 *     qek_hashx_entry *entry;
 *     int32_t bucket = -1;
 *     qek_hashx_init(&names, 1, 0);
 *     assert(qek_hashx_insert(&names, big, (qek_word)"carol") == 1);
 *     assert(qek_hashx_find(&names, 1) == 0);
 *     assert(strcmp((const char *)qek_hashx_get(&names, big), "carol") == 0);
 *     entry = qek_hashx_entry_first(&names, &bucket);
 *     assert(entry->key == big && bucket == 1);
 *     assert(qek_hashx_entry_next(&names, &bucket, entry) == NULL);
 *     qek_hashx_term(&names);
 * }
 * @endcode
 * @{
 */

/**
 * One key and its value: an item of the entry pool. Callers read it directly and may write `value`.
 */
typedef struct qek_hashx_entry {
    struct qek_hashx_entry *next; /**< the next entry in the bucket's chain; null at the tail */
    uint64_t key;                 /**< the key */
    qek_word value;               /**< the caller's value; 0 in a new entry */
} qek_hashx_entry;

/**
 * A table of 64-bit keys. Invariants and borrowed pools are as in ::qek_hash, with entries of
 * `sizeof(qek_hashx_entry)` bytes and an entry in bucket `key % buckets.count`.
 */
typedef struct qek_hashx {
    qek_arrays buckets;      /**< the first entry of each chain, or null; `pool` in it is told
                                  by `init`, goes along in `swap`, and is not used or freed */
    int32_t entry_count;     /**< entries in the table */
    qek_pool *entry_pool;    /**< where entries come from */
    int16_t owns_entry_pool; /**< nonzero: the table made `entry_pool` and ends it */
    qek_pool *value_pool;    /**< where qek_hashx_set() takes value items from; null if there is
                                  none */
    int16_t owns_value_pool; /**< nonzero: the table made `value_pool` and ends it */
} qek_hashx;

/**
 * Computes a hash of a key: the loop of qek_hash_key() over its 8 bytes, low byte first. For
 * callers; the table itself does not use it. One number has different hashes here and in
 * qek_hashd_key().
 * @param key  the key
 * @return the hash; 0 for a key of 0
 */
QEK_API uint32_t qek_hashx_key(uint64_t key);

/**
 * As qek_hashd_init(): makes an empty table and the pools asked for, an owned entry pool with the
 * item size of ::qek_hashx_entry. Exhausted memory faults.
 * @param hash            the record; what it held is not looked at
 * @param own_entry_pool  nonzero makes an owned entry pool; 0 leaves `entry_pool` null, for the
 *                        caller to write
 * @param own_value_pool  nonzero makes an owned value pool with an `item_size` of 0, for the caller
 *                        to write before the first qek_hashx_set()
 */
QEK_API void qek_hashx_init(qek_hashx *hash, int32_t own_entry_pool, int32_t own_value_pool);

/**
 * Ends a table. The same operation as qek_hashd_term(): entries and value items stay allocated in a
 * borrowed pool.
 * @param hash  the table; qek_hashx_init() makes it usable again
 */
QEK_API void qek_hashx_term(qek_hashx *hash);

/**
 * Exchanges two tables, pools included, in constant time. The same operation as qek_hashd_swap().
 * @param a  one table
 * @param b  the other
 */
QEK_API void qek_hashx_swap(qek_hashx *a, qek_hashx *b);

/**
 * As qek_hashd_clone(): copies a table into one just initialised with the same own flags. `source`
 * must own its entry pool: with a borrowed one the behaviour is undefined. No allocation is
 * checked.
 * @param source           the table to copy
 * @param source_aux_pool  a pool that value items point into, or null
 * @param target           the copy; what it held is overwritten without being freed
 * @param target_aux_pool  a freshly initialised pool for the copy of `source_aux_pool`, or null
 * @param clone_value      completes the copy of a value, also of a 0; null is skipped; not called
 *                         unless the value pool is owned
 */
QEK_API void qek_hashx_clone(const qek_hashx *source, qek_pool *source_aux_pool, qek_hashx *target,
                             qek_pool *target_aux_pool, qek_clone_fn clone_value);

/**
 * As qek_hashd_entry_set(): finds or makes the entry of a key, a new one with a value of 0.
 * @param hash            the table
 * @param key             the key
 * @param[out] entry_out  the entry, new or not; null if the entry pool gives none (`item_size` 0)
 * @return 1 if the entry is new; 0 if it existed or none could be had
 */
QEK_API int32_t qek_hashx_entry_set(qek_hashx *hash, uint64_t key, qek_hashx_entry **entry_out);

/**
 * Looks up an entry.
 * @param hash  the table
 * @param key   the key
 * @return the entry, or null if the key is absent
 */
QEK_API qek_hashx_entry *qek_hashx_entry_get(const qek_hashx *hash, uint64_t key);

/**
 * Begins a walk over all entries. The same operation as qek_hash_entry_first().
 * @param hash             the table
 * @param[out] bucket_out  the index of the entry's bucket; 0 on an empty table
 * @return the first entry, or null on an empty table
 */
QEK_API qek_hashx_entry *qek_hashx_entry_first(const qek_hashx *hash, int32_t *bucket_out);

/**
 * Goes on with a walk. The same operation as qek_hash_entry_next().
 * @param hash                  the table
 * @param[in,out] bucket_inout  the bucket of `entry`; becomes that of the result, and is left alone
 *                              when the result is null
 * @param entry                 an entry of the table
 * @return the entry after `entry`, or null after the last
 */
QEK_API qek_hashx_entry *qek_hashx_entry_next(const qek_hashx *hash, int32_t *bucket_inout,
                                              const qek_hashx_entry *entry);

/**
 * As qek_hashd_set(): finds a key's value, or makes an entry with an item from `value_pool`. A null
 * `value_pool` faults on a new key; one with an `item_size` of 0 gives a value of 0 and a result of
 * 1.
 * @param hash            the table
 * @param key             the key
 * @param[out] value_out  the value, new or not; cleared first, and 0 if no entry could be had
 * @param init_value      prepares a new item, which may hold old bytes; null is skipped
 * @return 1 if the key is new; 0 if it existed, or the entry pool gave no entry (`item_size` 0)
 */
QEK_API int32_t qek_hashx_set(qek_hashx *hash, uint64_t key, qek_word *value_out,
                              qek_value_fn init_value);

/**
 * Looks up a value.
 * @param hash  the table
 * @param key   the key
 * @return the value; 0 if the key is absent, which a stored 0 looks like (qek_hashx_find() tells
 *         them apart)
 */
QEK_API qek_word qek_hashx_get(const qek_hashx *hash, uint64_t key);

/**
 * Stores a value under a key that is not in the table. The value of a key that is there is left
 * alone.
 * @param hash   the table
 * @param key    the key
 * @param value  the value, which stays the caller's to dispose of
 * @return 1 if the key is new, also when the entry pool gave no entry (`item_size` 0) and nothing
 *         was stored; 0 if the key existed
 */
QEK_API int32_t qek_hashx_insert(qek_hashx *hash, uint64_t key, qek_word value);

/**
 * Replaces the value of a key that is in the table. Makes nothing otherwise.
 * @param hash   the table
 * @param key    the key
 * @param value  the new value
 * @return the old value, which passes to the caller; 0 if the key is absent
 */
QEK_API qek_word qek_hashx_update(qek_hashx *hash, uint64_t key, qek_word value);

/**
 * Tells whether a key is in the table.
 * @param hash  the table
 * @param key   the key
 * @return 1 if it is, else 0
 */
QEK_API int32_t qek_hashx_find(const qek_hashx *hash, uint64_t key);

/**
 * Takes a key out. Its entry goes back to `entry_pool`; the buckets stay.
 * @param hash  the table
 * @param key   the key
 * @return the value, which passes to the caller (an item of `value_pool` stays allocated); 0 if the
 *         key is absent
 */
QEK_API qek_word qek_hashx_remove(qek_hashx *hash, uint64_t key);

/**
 * As qek_hashd_free(): takes a key out, calls `free_value` even for a value of 0, and gives the
 * item back to a borrowed `value_pool` only. Nothing happens if the key is absent.
 * @param hash        the table
 * @param key         the key
 * @param free_value  disposes of the value; null is skipped
 */
QEK_API void qek_hashx_free(qek_hashx *hash, uint64_t key, qek_value_fn free_value);

/**
 * Empties the table, which stays usable. Values are not called back. The same operation as
 * qek_hashd_remove_all().
 * @param hash  the table
 */
QEK_API void qek_hashx_remove_all(qek_hashx *hash);

/**
 * As qek_hashd_free_all(): empties the table and disposes of every value that is not 0.
 * @param hash        the table
 * @param free_value  disposes of a value; null is skipped
 */
QEK_API void qek_hashx_free_all(qek_hashx *hash, qek_value_fn free_value);

/** @} */

/* ============================================================================================== */
/**
 * @defgroup hasht 16-byte-key hash (hasht)
 * A chained hash table from 16-byte keys, such as unique identifiers, to one word each: @ref hashd
 * with a key that is an opaque block. The key is passed by pointer and copied, so that the caller's
 * block may change after the call; two keys are equal when all 16 bytes are. A key pointer is never
 * tested; null faults.
 *
 * There is no walk by bucket. While nothing else takes items from the entry pool, a ::qek_pool_iter
 * on it visits the entries.
 *
 * Cost: as @ref hashd, but the bucket comes from qek_hasht_key(), so that keys spread well, and
 * growth of the table computes it anew for every entry.
 *
 * Take another family when: the keys are numbers (use @ref hashd, @ref hashx), or byte strings of
 * any other length (use @ref hash).
 *
 * @code{.c}
 * static void example_hasht(void)
 * {
 *     uint8_t id[16] = {0xDE, 0xAD};
 *     qek_hasht jobs;
 *     qek_hasht_init(&jobs, 1, 0);
 *     assert(qek_hasht_insert(&jobs, id, 7) == 1);
 *     id[15] = 1;
 *     assert(qek_hasht_find(&jobs, id) == 0);
 *     assert(qek_hasht_insert(&jobs, id, 8) == 1);
 *     id[15] = 0;
 *     assert(qek_hasht_get(&jobs, id) == 7);
 *     assert(qek_hasht_remove(&jobs, id) == 7 && jobs.entry_count == 1);
 *     qek_hasht_term(&jobs);
 * }
 * @endcode
 * @{
 */

/**
 * One key and its value: an item of the entry pool. Callers read it directly and may write `value`.
 */
typedef struct qek_hasht_entry {
    struct qek_hasht_entry *next; /**< the next entry in the bucket's chain; null at the tail */
    uint32_t key[4];              /**< the key's 16 bytes, in memory order */
    qek_word value;               /**< the caller's value; 0 in a new entry */
} qek_hasht_entry;

/**
 * A table of 16-byte keys. Invariants and borrowed pools are as in ::qek_hash, with entries of
 * `sizeof(qek_hasht_entry)` bytes and an entry in bucket `qek_hasht_key(key) % buckets.count`.
 */
typedef struct qek_hasht {
    qek_arrays buckets;      /**< the first entry of each chain, or null; `pool` in it is told
                                  by `init`, goes along in `swap`, and is not used or freed */
    int32_t entry_count;     /**< entries in the table */
    qek_pool *entry_pool;    /**< where entries come from */
    int16_t owns_entry_pool; /**< nonzero: the table made `entry_pool` and ends it */
    qek_pool *value_pool;    /**< where qek_hasht_set() takes value items from; null if there is
                                  none */
    int16_t owns_value_pool; /**< nonzero: the table made `value_pool` and ends it */
} qek_hasht;

/**
 * Computes the hash of a key: the loop of qek_hash_key() over its 16 bytes in memory order.
 * @param key  the key, 16 bytes
 * @return the hash; 0 for 16 zero bytes
 */
QEK_API uint32_t qek_hasht_key(const void *key);

/**
 * As qek_hashd_init(): makes an empty table and the pools asked for, an owned entry pool with the
 * item size of ::qek_hasht_entry. Exhausted memory faults.
 * @param hash            the record; what it held is not looked at
 * @param own_entry_pool  nonzero makes an owned entry pool; 0 leaves `entry_pool` null, for the
 *                        caller to write
 * @param own_value_pool  nonzero makes an owned value pool with an `item_size` of 0, for the caller
 *                        to write before the first qek_hasht_set()
 */
QEK_API void qek_hasht_init(qek_hasht *hash, int32_t own_entry_pool, int32_t own_value_pool);

/**
 * Ends a table. The same operation as qek_hashd_term(): entries and value items stay allocated in a
 * borrowed pool.
 * @param hash  the table; qek_hasht_init() makes it usable again
 */
QEK_API void qek_hasht_term(qek_hasht *hash);

/**
 * Exchanges two tables, pools included, in constant time. The same operation as qek_hashd_swap().
 * @param a  one table
 * @param b  the other
 */
QEK_API void qek_hasht_swap(qek_hasht *a, qek_hasht *b);

/**
 * As qek_hashd_clone(): copies a table into one just initialised with the same own flags. `source`
 * must own its entry pool: with a borrowed one the behaviour is undefined. No allocation is
 * checked.
 * @param source           the table to copy
 * @param source_aux_pool  a pool that value items point into, or null
 * @param target           the copy; what it held is overwritten without being freed
 * @param target_aux_pool  a freshly initialised pool for the copy of `source_aux_pool`, or null
 * @param clone_value      completes the copy of a value, also of a 0; null is skipped; not called
 *                         unless the value pool is owned
 */
QEK_API void qek_hasht_clone(const qek_hasht *source, qek_pool *source_aux_pool, qek_hasht *target,
                             qek_pool *target_aux_pool, qek_clone_fn clone_value);

/**
 * As qek_hashd_entry_set(): finds or makes the entry of a key, a new one with a value of 0.
 * @param hash            the table
 * @param key             the key, 16 bytes, copied if new
 * @param[out] entry_out  the entry, new or not; null if the entry pool gives none (`item_size` 0)
 * @return 1 if the entry is new; 0 if it existed or none could be had
 */
QEK_API int32_t qek_hasht_entry_set(qek_hasht *hash, const void *key, qek_hasht_entry **entry_out);

/**
 * Looks up an entry.
 * @param hash  the table
 * @param key   the key, 16 bytes
 * @return the entry, or null if the key is absent
 */
QEK_API qek_hasht_entry *qek_hasht_entry_get(const qek_hasht *hash, const void *key);

/**
 * As qek_hashd_set(): finds a key's value, or makes an entry with an item from `value_pool`. A null
 * `value_pool` faults on a new key; one with an `item_size` of 0 gives a value of 0 and a result of
 * 1.
 * @param hash            the table
 * @param key             the key, 16 bytes, copied if new
 * @param[out] value_out  the value, new or not; cleared first, and 0 if no entry could be had
 * @param init_value      prepares a new item, which may hold old bytes; null is skipped
 * @return 1 if the key is new; 0 if it existed, or the entry pool gave no entry (`item_size` 0)
 */
QEK_API int32_t qek_hasht_set(qek_hasht *hash, const void *key, qek_word *value_out,
                              qek_value_fn init_value);

/**
 * Looks up a value.
 * @param hash  the table
 * @param key   the key, 16 bytes
 * @return the value; 0 if the key is absent, which a stored 0 looks like (qek_hasht_find() tells
 *         them apart)
 */
QEK_API qek_word qek_hasht_get(const qek_hasht *hash, const void *key);

/**
 * Stores a value under a key that is not in the table. The value of a key that is there is left
 * alone.
 * @param hash   the table
 * @param key    the key, 16 bytes, copied if new
 * @param value  the value, which stays the caller's to dispose of
 * @return 1 if the key is new, also when the entry pool gave no entry (`item_size` 0) and nothing
 *         was stored; 0 if the key existed
 */
QEK_API int32_t qek_hasht_insert(qek_hasht *hash, const void *key, qek_word value);

/**
 * Replaces the value of a key that is in the table. Makes nothing otherwise.
 * @param hash   the table
 * @param key    the key, 16 bytes
 * @param value  the new value
 * @return the old value, which passes to the caller; 0 if the key is absent
 */
QEK_API qek_word qek_hasht_update(qek_hasht *hash, const void *key, qek_word value);

/**
 * Tells whether a key is in the table.
 * @param hash  the table
 * @param key   the key, 16 bytes
 * @return 1 if it is, else 0
 */
QEK_API int32_t qek_hasht_find(const qek_hasht *hash, const void *key);

/**
 * Takes a key out. Its entry goes back to `entry_pool`; the buckets stay.
 * @param hash  the table
 * @param key   the key, 16 bytes
 * @return the value, which passes to the caller (an item of `value_pool` stays allocated); 0 if the
 *         key is absent
 */
QEK_API qek_word qek_hasht_remove(qek_hasht *hash, const void *key);

/**
 * As qek_hashd_free(): takes a key out, calls `free_value` even for a value of 0, and gives the
 * item back to a borrowed `value_pool` only. Nothing happens if the key is absent.
 * @param hash        the table
 * @param key         the key, 16 bytes
 * @param free_value  disposes of the value; null is skipped
 */
QEK_API void qek_hasht_free(qek_hasht *hash, const void *key, qek_value_fn free_value);

/**
 * Empties the table, which stays usable. Values are not called back. The same operation as
 * qek_hashd_remove_all().
 * @param hash  the table
 */
QEK_API void qek_hasht_remove_all(qek_hasht *hash);

/**
 * As qek_hashd_free_all(): empties the table and disposes of every value that is not 0.
 * @param hash        the table
 * @param free_value  disposes of a value; null is skipped
 */
QEK_API void qek_hasht_free_all(qek_hasht *hash, qek_value_fn free_value);

/** @} */

/* ============================================================================================== */
/**
 * @defgroup btree Byte-string tree (btree)
 * Byte-string keys in sorted order, with one word each, in a multi-way tree.
 *
 * A page holds up to 31 items and splits in two at the 32nd. All values are in the leaves. Keys
 * order by their bytes, as unsigned numbers; of two keys where one begins the other the shorter is
 * first. Removal drops a page that has gone empty, and otherwise never merges or rebalances. The
 * order of use is: qek_btree_init(), then write `ignore_case`, borrowed pools, or the `item_size`
 * of a value pool; then store and look up; then qek_btree_term().
 *
 * A node never moves: a pointer to it stays valid across stores, splits and qek_btree_swap(). It
 * dies when its key is removed, and in qek_btree_remove_all(), qek_btree_free_all() and
 * qek_btree_term(). Its `value` may be written at any time. Its `key_offset` is to be read afresh
 * against `keys.data` each time, since a store may move the text and a removal shifts the offsets.
 *
 * Walk a tree by `next` from qek_btree_node_first(), or by `prev` from qek_btree_node_last(). These
 * links are kept by insertion only: a removal leaves them pointing at the removed node, whose item
 * may be handed out again, and from then on, until the tree has been empty, they must not be
 * followed; this is intended. Such a tree is walked by its keys: qek_btree_node_bfind() of a key
 * with one zero byte added gives the node after that key, or the last node again at the end.
 *
 * Exhausted memory is not reported: a pool faults, key text that cannot grow leaves a new node with
 * a `key_length` of 0, and slots that cannot grow lose the node.
 *
 * Cost: stores and look-ups are logarithmic. Removing a key visits every page and node and moves
 * the key text behind the key; removing the empty key is logarithmic.
 *
 * Take another family when: the order of keys does not matter (use @ref hash), the keys are numbers
 * (use @ref btreed, @ref btreex), or they are few, or filled in once and then sorted (use
 * @ref array).
 *
 * @code{.c}
 * static void example_btree(void)
 * {
 *     qek_btree tree;
 *     const qek_btree_node *node;
 *     qek_btree_init(&tree, 1, 1, 0);
 *     assert(qek_btree_insert(&tree, "d", -1, 4) == 1);
 *     assert(qek_btree_insert(&tree, "b", -1, 2) == 1);
 *     node = qek_btree_node_first(&tree);
 *     assert(memcmp(tree.keys.data + node->key_offset, "b", 1) == 0);
 *     assert(node->value == 2 && node->next->value == 4 && node->next->next == NULL);
 *     assert(qek_btree_node_bfind(&tree, "c", -1)->value == 4);
 *     assert(qek_btree_node_bfind(&tree, "e", -1)->value == 4);
 *     assert(qek_btree_node_find(&tree, "c", -1) == NULL);
 *     assert(qek_btree_remove(&tree, "b", 1) == 2 && tree.node_count == 1);
 *     qek_btree_term(&tree);
 * }
 * @endcode
 * @{
 */

/**
 * A page of the tree: the root, or an item of the page pool. For reading only.
 *
 * Every page but the root of an empty tree has 1 to 31 children, in strictly ascending order of
 * their keys. The high key of every page but the root is the key of its last child, and refers to
 * the same bytes of `keys`; the root's may be stale.
 */
typedef struct qek_btree_page {
    uint32_t key_offset;           /**< where the high key starts in the tree's `keys` */
    int32_t key_length;            /**< bytes in the high key */
    int16_t level;                 /**< 0 for a leaf, else the height above the leaves, which are
                                        all at one depth */
    struct qek_btree_page *parent; /**< the page above; null for the root */
    qek_arrays children;           /**< in a leaf pointers to nodes, else to pages; `pool` in it
                                        is where these come from, borrowed */
} qek_btree_page;

/**
 * One key and its value: an item of the node pool. Callers read it directly and may write `value`.
 */
typedef struct qek_btree_node {
    uint32_t key_offset;         /**< where the key starts in the tree's `keys` */
    int32_t key_length;          /**< bytes in the key; 0 is a valid key */
    struct qek_btree_node *prev; /**< the node before in key order, or null; stale after a
                                      removal */
    struct qek_btree_node *next; /**< the node after in key order, or null; stale after a removal */
    qek_word value;              /**< the caller's value; 0 in a new node */
} qek_btree_node;

/**
 * A tree of byte-string keys.
 *
 * The root is part of the record and never moves; pages below it point back into the record. An
 * empty tree is a root of `level` 0 without children. A key is in the tree at most once.
 *
 * A borrowed pool is written into its field, with the flag beside it left 0. `node_pool` (of an
 * `item_size` of `sizeof(qek_btree_node)`) is needed before the first key and is written into
 * `root.children.pool` as well, from where a root that is a leaf takes its nodes. `page_pool`
 * (`sizeof(qek_btree_page)`) is needed before the 32nd key, `value_pool` before the first
 * qek_btree_set(). A pool that is null, or a node or page pool with an `item_size` of 0, faults
 * when an item is needed. Trees from which keys are removed must not share a node pool: a later
 * store may write the links of a removed node, whoever holds its item by then.
 */
typedef struct qek_btree {
    qek_btree_page root;     /**< the root page */
    int32_t node_count;      /**< keys in the tree */
    qek_stream keys;         /**< the text of all keys, one after another, without terminators */
    qek_pool *page_pool;     /**< where pages come from */
    int16_t owns_page_pool;  /**< nonzero: the tree made `page_pool` and ends it */
    qek_pool *node_pool;     /**< where nodes come from */
    int16_t owns_node_pool;  /**< nonzero: the tree made `node_pool` and ends it */
    qek_pool *value_pool;    /**< where qek_btree_set() takes value items from; null if there is
                                  none */
    int16_t owns_value_pool; /**< nonzero: the tree made `value_pool` and ends it */
    int16_t ignore_case;     /**< nonzero: keys compare without regard to case (by the C
                                  runtime's current locale); the caller writes it after
                                  qek_btree_init(), before the first key */
} qek_btree;

/**
 * Makes an empty tree and the pools asked for, all other fields 0. Allocates 32 slots for the root
 * in any case, so that qek_btree_term() is always due.
 * @param btree           the record; what it held is not looked at
 * @param own_page_pool   nonzero makes an owned page pool, with its item size; 0 leaves `page_pool`
 *                        null, for the caller to write
 * @param own_node_pool   nonzero makes an owned node pool, with its item size; 0 leaves `node_pool`
 *                        and `root.children.pool` null, for the caller to write
 * @param own_value_pool  nonzero makes an owned value pool with an `item_size` of 0, for the caller
 *                        to write before the first qek_btree_set()
 */
QEK_API void qek_btree_init(qek_btree *btree, int32_t own_page_pool, int32_t own_node_pool,
                            int32_t own_value_pool);

/**
 * Ends a tree: gives all pages and nodes back to borrowed pools, releases slots and key text, and
 * ends and frees owned pools, whose fields become null and whose flags 0. No value is called back;
 * items of a borrowed value pool stay allocated. Linear.
 * @param btree  the tree; qek_btree_init() makes it usable again
 */
QEK_API void qek_btree_term(qek_btree *btree);

/**
 * Exchanges two trees, pools included. Each record keeps its own `ignore_case`, by which the keys
 * that it took over are now looked up, so the two must agree. Nodes stay where they are. Linear in
 * pages above the leaves.
 * @param a  one tree
 * @param b  the other
 */
QEK_API void qek_btree_swap(qek_btree *a, qek_btree *b);

/**
 * Copies a tree into one just initialised with the same own flags. Key text and owned pools are
 * copied, item sizes included; a borrowed value pool is shared, and the value words are copied.
 * `source` must own its page pool and its node pool: with a borrowed one the behaviour is
 * undefined. `ignore_case` is not copied.
 *
 * `prev` and `next` of the copied nodes go on pointing at the nodes of `source`; this is intended.
 * Walk the copy by its keys. A new key stored in the copy also writes the links of nodes of
 * `source`: `source` must outlive such stores, and its own links must not be followed after them.
 *
 * When `source` owns its value pool, each value must be one of its items or 0. The copy gets the
 * item at the same place in the copied pool (0 for 0), and `clone_value` is called for every node,
 * in key order, also for a value of 0. Linear; no allocation is checked.
 * @param source           the tree to copy
 * @param source_aux_pool  a pool that value items point into, or null
 * @param target           the copy; an initialised, empty tree
 * @param target_aux_pool  a freshly initialised pool, into which `source_aux_pool` is copied before
 *                         any value if both pools and `clone_value` are given; or null
 * @param clone_value      completes the copy of a value; null is skipped; not called unless the
 *                         value pool is owned
 */
QEK_API void qek_btree_clone(const qek_btree *source, qek_pool *source_aux_pool, qek_btree *target,
                             qek_pool *target_aux_pool, qek_clone_fn clone_value);

/**
 * Finds or makes the node of a key. The value of a new node is 0, and no value item is made. With
 * `ignore_case` set, a key that differs from a stored one by case only finds that one, and the
 * stored text stays.
 * @param btree          the tree
 * @param key            the key's bytes, copied if new, and then not in the record's own
 *                       `keys`; null only with a length of 0 or below
 * @param length         bytes in the key; negative: NUL-terminated
 * @param[out] node_out  the node, new or not; cleared first
 * @return 1 if the node is new; 0 if it existed
 */
QEK_API int32_t qek_btree_node_set(qek_btree *btree, const void *key, int32_t length,
                                   qek_btree_node **node_out);

/**
 * Looks up the node of exactly this key. The same operation as qek_btree_node_find().
 * @param btree   the tree
 * @param key     the key's bytes; null only with a length of 0 or below
 * @param length  bytes in the key; negative: NUL-terminated
 * @return the node, or null if the key is absent
 */
QEK_API qek_btree_node *qek_btree_node_get(const qek_btree *btree, const void *key, int32_t length);

/**
 * Finds the smallest key. Linear in the tree's height.
 * @param btree  the tree
 * @return its node, or null on an empty tree
 */
QEK_API qek_btree_node *qek_btree_node_first(const qek_btree *btree);

/**
 * Finds the largest key. Linear in the tree's height.
 * @param btree  the tree
 * @return its node, or null on an empty tree
 */
QEK_API qek_btree_node *qek_btree_node_last(const qek_btree *btree);

/**
 * Finds the smallest key that is at or above the given one, or the largest key of the tree if the
 * given one is above all.
 * @param btree   the tree
 * @param key     the key's bytes; null only with a length of 0 or below
 * @param length  bytes in the key; negative: NUL-terminated
 * @return the node; null only on an empty tree
 */
QEK_API qek_btree_node *qek_btree_node_bfind(const qek_btree *btree, const void *key,
                                             int32_t length);

/**
 * Looks up the node of exactly this key.
 * @param btree   the tree
 * @param key     the key's bytes; null only with a length of 0 or below
 * @param length  bytes in the key; negative: NUL-terminated
 * @return the node, or null if the key is absent
 */
QEK_API qek_btree_node *qek_btree_node_find(const qek_btree *btree, const void *key,
                                            int32_t length);

/**
 * Finds a key's value or makes a new one: a new node takes an item from `value_pool`. The item may
 * be a recycled one with its old bytes; `init_value` runs on it before the node stores it. A null
 * `value_pool` faults on a new key. A value pool with an `item_size` of 0 gives no item: the node
 * is made with a value of 0, `init_value` does not run and the result is 1.
 * @param btree           the tree
 * @param key             the key's bytes, copied if new, and then not in the record's own
 *                        `keys`; null only with a length of 0 or below
 * @param length          bytes in the key; negative: NUL-terminated
 * @param[out] value_out  the value, new or not; cleared first
 * @param init_value      prepares a new item; null is skipped
 * @return 1 if the key is new; 0 if it existed
 */
QEK_API int32_t qek_btree_set(qek_btree *btree, const void *key, int32_t length,
                              qek_word *value_out, qek_value_fn init_value);

/**
 * Looks up a value.
 * @param btree   the tree
 * @param key     the key's bytes; null only with a length of 0 or below
 * @param length  bytes in the key; negative: NUL-terminated
 * @return the value; 0 if the key is absent, which a stored 0 looks like (qek_btree_find() tells
 *         them apart)
 */
QEK_API qek_word qek_btree_get(const qek_btree *btree, const void *key, int32_t length);

/**
 * Stores a value under a key that is not in the tree. The value of a key that is there is left
 * alone.
 * @param btree   the tree
 * @param key     the key's bytes, copied if new, and then not in the record's own
 *                `keys`; null only with a length of 0 or below
 * @param length  bytes in the key; negative: NUL-terminated
 * @param value   the value, which stays the caller's to dispose of
 * @return 1 if the value was stored; 0 if the key existed
 */
QEK_API int32_t qek_btree_insert(qek_btree *btree, const void *key, int32_t length, qek_word value);

/**
 * Replaces the value of a key that is in the tree. Makes nothing otherwise.
 * @param btree   the tree
 * @param key     the key's bytes; null only with a length of 0 or below
 * @param length  bytes in the key; negative: NUL-terminated
 * @param value   the new value
 * @return the old value, which passes to the caller; 0 if the key is absent
 */
QEK_API qek_word qek_btree_update(qek_btree *btree, const void *key, int32_t length,
                                  qek_word value);

/**
 * Tells whether a key is in the tree.
 * @param btree   the tree
 * @param key     the key's bytes; null only with a length of 0 or below
 * @param length  bytes in the key; negative: NUL-terminated
 * @return 1 if it is, else 0
 */
QEK_API int32_t qek_btree_find(const qek_btree *btree, const void *key, int32_t length);

/**
 * Takes a key out; a form that disposes of the value does not exist. The node goes back to
 * `node_pool` with `key_offset` and `key_length` 0, and its neighbours' links to it stay, stale.
 * Its text leaves `keys`, which closes up: every offset behind it falls by the length. An empty key
 * recorded at exactly the removed offset keeps its offset, and so does the root's high key; this is
 * intended. Pages left empty go back to `page_pool`; when the last key goes, the root is a leaf
 * again. Linear in pages, nodes and key text, but for the empty key.
 * @param btree   the tree
 * @param key     the key's bytes; null only with a length of 0 or below
 * @param length  bytes in the key; negative: NUL-terminated
 * @return the value, which passes to the caller (an item of `value_pool` stays allocated); 0 if the
 *         key is absent
 */
QEK_API qek_word qek_btree_remove(qek_btree *btree, const void *key, int32_t length);

/**
 * Empties the tree, which stays usable. Values are not called back. Borrowed page and node pools
 * get their items back in key order, each page after all that is below it; owned pools are emptied,
 * so that their items die. Items of a borrowed value pool stay allocated. The key text is emptied
 * and its buffer kept; the root's slots are released. Linear.
 * @param btree  the tree
 */
QEK_API void qek_btree_remove_all(qek_btree *btree);

/**
 * Empties the tree, which stays usable, and disposes of the values: for each node whose value is
 * not 0, in key order, `free_value` is called and then the item goes back to a borrowed
 * `value_pool`. The rest is as in qek_btree_remove_all(), except that the key text's buffer is
 * released too. Linear.
 * @param btree       the tree
 * @param free_value  disposes of a value; null is skipped
 */
QEK_API void qek_btree_free_all(qek_btree *btree, qek_value_fn free_value);

/** @} */

/* ============================================================================================== */
/**
 * @defgroup btreed 32-bit-key tree (btreed)
 * 32-bit numbers in sorted order, with one word each: the tree of @ref btree with the key inside
 * the node.
 *
 * The field `key_type` says how keys order: 1 as signed integers (set by qek_btreed_init()), 2 as
 * unsigned integers, 5 as the bit patterns of `float`. Any other code makes all keys equal, so that
 * the tree takes a single one. As `float`, +0.0 and -0.0 are one key. A pair with a NaN in it
 * always compares as less, so that a NaN is never found again and misleads searches for other keys;
 * do not store one.
 *
 * The order of use, the pools, the life of a node pointer and the links are those of @ref btree.
 * `prev` and `next` are kept by insertion only and must not be followed after a removal, until the
 * tree has been empty. Integers are then walked by qek_btreed_node_bfind() of the last key seen
 * plus 1, up to the key of qek_btreed_node_last().
 *
 * Exhausted memory is not reported: a pool faults, and slots that cannot grow lose the node.
 *
 * Cost: stores, look-ups and removals are logarithmic.
 *
 * Take another family when: the order of keys does not matter (use @ref hashd), the keys have 64
 * bits (use @ref btreex), or they are few, or filled in once and then sorted (use @ref arrayd).
 *
 * @code{.c}
 * static void example_btreed(void)
 * {
 *     qek_btreed ports;
 *     qek_btreed_init(&ports, 1, 1, 0);
 *     ports.key_type = 2;
 *     assert(qek_btreed_insert(&ports, 0xFFFFFFFFu, 3) == 1);
 *     assert(qek_btreed_insert(&ports, 443, 2) == 1);
 *     assert(qek_btreed_insert(&ports, 80, 1) == 1);
 *     assert(qek_btreed_node_first(&ports)->next->key == 443);
 *     assert(qek_btreed_node_last(&ports)->value == 3);
 *     assert(qek_btreed_remove(&ports, 443) == 2);
 *     assert(qek_btreed_node_bfind(&ports, 81)->key == 0xFFFFFFFFu);
 *     assert(qek_btreed_find(&ports, 81) == 0 && ports.node_count == 2);
 *     qek_btreed_term(&ports);
 * }
 * @endcode
 * @{
 */

/**
 * A page of the tree: the root, or an item of the page pool. For reading only. Invariants are as in
 * ::qek_btree_page.
 */
typedef struct qek_btreed_page {
    uint32_t key;                   /**< the high key: the key of the last child; may be stale in
                                         the root */
    int16_t level;                  /**< 0 for a leaf, else the height above the leaves, which
                                         are all at one depth */
    struct qek_btreed_page *parent; /**< the page above; null for the root */
    qek_arrays children;            /**< in a leaf pointers to nodes, else to pages; `pool` in it
                                         is where these come from, borrowed */
} qek_btreed_page;

/**
 * One key and its value: an item of the node pool. Callers read it directly and may write `value`.
 */
typedef struct qek_btreed_node {
    uint32_t key;                 /**< the key; of a number in floating point, its bit pattern */
    struct qek_btreed_node *prev; /**< the node before in key order, or null; stale after a
                                       removal */
    struct qek_btreed_node *next; /**< the node after in key order, or null; stale after a
                                       removal */
    qek_word value;               /**< the caller's value; 0 in a new node */
} qek_btreed_node;

/**
 * A tree of 32-bit keys. Invariants and borrowed pools are as in ::qek_btree, with items of
 * `sizeof(qek_btreed_page)` and `sizeof(qek_btreed_node)`: a borrowed node pool is written into
 * `root.children.pool` as well.
 */
typedef struct qek_btreed {
    qek_btreed_page root;    /**< the root page */
    int32_t node_count;      /**< keys in the tree */
    qek_pool *page_pool;     /**< where pages come from */
    int16_t owns_page_pool;  /**< nonzero: the tree made `page_pool` and ends it */
    qek_pool *node_pool;     /**< where nodes come from */
    int16_t owns_node_pool;  /**< nonzero: the tree made `node_pool` and ends it */
    qek_pool *value_pool;    /**< where qek_btreed_set() takes value items from; null if there is
                                  none */
    int16_t owns_value_pool; /**< nonzero: the tree made `value_pool` and ends it */
    int32_t key_type;        /**< the order of keys: 1 signed (default), 2 unsigned, 5 `float`;
                                  the caller may write it after qek_btreed_init(), before the
                                  first key */
} qek_btreed;

/**
 * Makes an empty tree and the pools asked for, with a `key_type` of 1, all other fields 0.
 * Allocates 32 slots for the root in any case, so that qek_btreed_term() is always due.
 * @param btree           the record; what it held is not looked at
 * @param own_page_pool   nonzero makes an owned page pool, with its item size; 0 leaves `page_pool`
 *                        null, for the caller to write
 * @param own_node_pool   nonzero makes an owned node pool, with its item size; 0 leaves `node_pool`
 *                        and `root.children.pool` null, for the caller to write
 * @param own_value_pool  nonzero makes an owned value pool with an `item_size` of 0, for the caller
 *                        to write before the first qek_btreed_set()
 */
QEK_API void qek_btreed_init(qek_btreed *btree, int32_t own_page_pool, int32_t own_node_pool,
                             int32_t own_value_pool);

/**
 * Ends a tree: gives all pages and nodes back to borrowed pools, releases slots, and ends and frees
 * owned pools, whose fields become null and whose flags 0. No value is called back; items of a
 * borrowed value pool stay allocated. Linear.
 * @param btree  the tree; qek_btreed_init() makes it usable again
 */
QEK_API void qek_btreed_term(qek_btreed *btree);

/**
 * Exchanges two trees, pools included. Each record keeps its own `key_type`, by which the keys that
 * it took over are now looked up, so the two must agree. Nodes stay where they are. Linear in pages
 * above the leaves.
 * @param a  one tree
 * @param b  the other
 */
QEK_API void qek_btreed_swap(qek_btreed *a, qek_btreed *b);

/**
 * Copies a tree into one just initialised with the same own flags, as qek_btree_clone() does: owned
 * pools are copied, a borrowed value pool is shared, and `source` must own its page pool and its
 * node pool (with a borrowed one the behaviour is undefined). Values of an owned value pool must be
 * its items or 0. `key_type` is not copied. `prev` and `next` of the copied nodes go on pointing at
 * the nodes of `source`, and a new key stored in the copy writes to those; this is intended.
 * Linear; no allocation is checked.
 * @param source           the tree to copy
 * @param source_aux_pool  a pool that value items point into, or null
 * @param target           the copy; an initialised, empty tree
 * @param target_aux_pool  a freshly initialised pool, into which `source_aux_pool` is copied before
 *                         any value if both pools and `clone_value` are given; or null
 * @param clone_value      completes the copy of a value, also of a 0; null is skipped; not called
 *                         unless the value pool is owned
 */
QEK_API void qek_btreed_clone(const qek_btreed *source, qek_pool *source_aux_pool,
                              qek_btreed *target, qek_pool *target_aux_pool,
                              qek_clone_fn clone_value);

/**
 * Finds or makes the node of a key. The value of a new node is 0, and no value item is made.
 * @param btree          the tree
 * @param key            the key
 * @param[out] node_out  the node, new or not; cleared first
 * @return 1 if the node is new; 0 if it existed
 */
QEK_API int32_t qek_btreed_node_set(qek_btreed *btree, uint32_t key, qek_btreed_node **node_out);

/**
 * Looks up the node of exactly this key. The same operation as qek_btreed_node_find().
 * @param btree  the tree
 * @param key    the key
 * @return the node, or null if the key is absent
 */
QEK_API qek_btreed_node *qek_btreed_node_get(const qek_btreed *btree, uint32_t key);

/**
 * Finds the first key in order. Linear in the tree's height.
 * @param btree  the tree
 * @return its node, or null on an empty tree
 */
QEK_API qek_btreed_node *qek_btreed_node_first(const qek_btreed *btree);

/**
 * Finds the last key in order. Linear in the tree's height.
 * @param btree  the tree
 * @return its node, or null on an empty tree
 */
QEK_API qek_btreed_node *qek_btreed_node_last(const qek_btreed *btree);

/**
 * Finds the smallest key that is at or above the given one, or the largest key of the tree if the
 * given one is above all.
 * @param btree  the tree
 * @param key    the key
 * @return the node; null only on an empty tree
 */
QEK_API qek_btreed_node *qek_btreed_node_bfind(const qek_btreed *btree, uint32_t key);

/**
 * Looks up the node of exactly this key.
 * @param btree  the tree
 * @param key    the key
 * @return the node, or null if the key is absent
 */
QEK_API qek_btreed_node *qek_btreed_node_find(const qek_btreed *btree, uint32_t key);

/**
 * Finds a key's value or makes a new one: a new node takes an item from `value_pool`, as in
 * qek_btree_set(). A null `value_pool` faults on a new key; one with an `item_size` of 0 gives no
 * item, and the node is made with a value of 0 and a result of 1.
 * @param btree           the tree
 * @param key             the key
 * @param[out] value_out  the value, new or not; cleared first
 * @param init_value      prepares a new item, which may hold old bytes; null is skipped
 * @return 1 if the key is new; 0 if it existed
 */
QEK_API int32_t qek_btreed_set(qek_btreed *btree, uint32_t key, qek_word *value_out,
                               qek_value_fn init_value);

/**
 * Looks up a value.
 * @param btree  the tree
 * @param key    the key
 * @return the value; 0 if the key is absent, which a stored 0 looks like (qek_btreed_find() tells
 *         them apart)
 */
QEK_API qek_word qek_btreed_get(const qek_btreed *btree, uint32_t key);

/**
 * Stores a value under a key that is not in the tree. The value of a key that is there is left
 * alone.
 * @param btree  the tree
 * @param key    the key
 * @param value  the value, which stays the caller's to dispose of
 * @return 1 if the value was stored; 0 if the key existed
 */
QEK_API int32_t qek_btreed_insert(qek_btreed *btree, uint32_t key, qek_word value);

/**
 * Replaces the value of a key that is in the tree. Makes nothing otherwise.
 * @param btree  the tree
 * @param key    the key
 * @param value  the new value
 * @return the old value, which passes to the caller; 0 if the key is absent
 */
QEK_API qek_word qek_btreed_update(qek_btreed *btree, uint32_t key, qek_word value);

/**
 * Tells whether a key is in the tree.
 * @param btree  the tree
 * @param key    the key
 * @return 1 if it is, else 0
 */
QEK_API int32_t qek_btreed_find(const qek_btreed *btree, uint32_t key);

/**
 * Takes a key out. The node goes back to `node_pool` with a `key` of 0, and its neighbours' links
 * to it stay, stale; this is intended. Pages left empty go back to `page_pool`; when the last key
 * goes, the root is a leaf again.
 * @param btree  the tree
 * @param key    the key
 * @return the value, which passes to the caller (an item of `value_pool` stays allocated); 0 if the
 *         key is absent
 */
QEK_API qek_word qek_btreed_remove(qek_btreed *btree, uint32_t key);

/**
 * Empties the tree, which stays usable. Values are not called back. Borrowed page and node pools
 * get their items back in key order, each page after all that is below it; owned pools are emptied,
 * so that their items die. Items of a borrowed value pool stay allocated. The root's slots are
 * released. Linear.
 * @param btree  the tree
 */
QEK_API void qek_btreed_remove_all(qek_btreed *btree);

/**
 * Empties the tree as qek_btreed_remove_all() does, and disposes of the values: for each node whose
 * value is not 0, in key order, `free_value` is called and then the item goes back to a borrowed
 * `value_pool`. Linear.
 * @param btree       the tree
 * @param free_value  disposes of a value; null is skipped
 */
QEK_API void qek_btreed_free_all(qek_btreed *btree, qek_value_fn free_value);

/** @} */

/* ============================================================================================== */
/**
 * @defgroup btreex 64-bit-key tree (btreex)
 * 64-bit numbers in sorted order, with one word each: @ref btreed with a wider key.
 *
 * The field `key_type` says how keys order: 3 as signed integers (set by qek_btreex_init()), 4 as
 * unsigned integers, 6 as the bit patterns of `double`. Any other code makes all keys equal. What
 * @ref btreed says of zeros and NaN, of stale links and of exhausted memory holds here too.
 *
 * Cost: as @ref btreed.
 *
 * Take another family when: the order of keys does not matter (use @ref hashx), the keys fit 32
 * bits (use @ref btreed), or they are few, or filled in once and then sorted (use @ref arrayx).
 *
 * @code{.c}
 * static uint64_t btreex_key(double number)
 * {
 *     uint64_t key;
 *     memcpy(&key, &number, sizeof key);
 *     return key;
 * }
 *
 * static void example_btreex(void)
 * {
 *     qek_btreex scale;
 *     qek_btreex_init(&scale, 1, 1, 0);
 *     scale.key_type = 6;
 *     assert(qek_btreex_insert(&scale, btreex_key(1.5), 10) == 1);
 *     assert(qek_btreex_insert(&scale, btreex_key(-2.5), 20) == 1);
 *     assert(qek_btreex_insert(&scale, btreex_key(1.5), 30) == 0);
 *     assert(qek_btreex_node_first(&scale)->value == 20);
 *     assert(qek_btreex_node_bfind(&scale, btreex_key(0.0))->value == 10);
 *     qek_btreex_term(&scale);
 * }
 * @endcode
 * @{
 */

/**
 * A page of the tree: the root, or an item of the page pool. For reading only. Invariants are as in
 * ::qek_btree_page.
 */
typedef struct qek_btreex_page {
    uint64_t key;                   /**< the high key: the key of the last child; may be stale in
                                         the root */
    int16_t level;                  /**< 0 for a leaf, else the height above the leaves, which
                                         are all at one depth */
    struct qek_btreex_page *parent; /**< the page above; null for the root */
    qek_arrays children;            /**< in a leaf pointers to nodes, else to pages; `pool` in it
                                         is where these come from, borrowed */
} qek_btreex_page;

/**
 * One key and its value: an item of the node pool. Callers read it directly and may write `value`.
 */
typedef struct qek_btreex_node {
    uint64_t key;                 /**< the key; of a number in floating point, its bit pattern */
    struct qek_btreex_node *prev; /**< the node before in key order, or null; stale after a
                                       removal */
    struct qek_btreex_node *next; /**< the node after in key order, or null; stale after a
                                       removal */
    qek_word value;               /**< the caller's value; 0 in a new node */
} qek_btreex_node;

/**
 * A tree of 64-bit keys. Invariants and borrowed pools are as in ::qek_btree, with items of
 * `sizeof(qek_btreex_page)` and `sizeof(qek_btreex_node)`: a borrowed node pool is written into
 * `root.children.pool` as well.
 */
typedef struct qek_btreex {
    qek_btreex_page root;    /**< the root page */
    int32_t node_count;      /**< keys in the tree */
    qek_pool *page_pool;     /**< where pages come from */
    int16_t owns_page_pool;  /**< nonzero: the tree made `page_pool` and ends it */
    qek_pool *node_pool;     /**< where nodes come from */
    int16_t owns_node_pool;  /**< nonzero: the tree made `node_pool` and ends it */
    qek_pool *value_pool;    /**< where qek_btreex_set() takes value items from; null if there is
                                  none */
    int16_t owns_value_pool; /**< nonzero: the tree made `value_pool` and ends it */
    int32_t key_type;        /**< the order of keys: 3 signed (default), 4 unsigned, 6 `double`;
                                  the caller may write it after qek_btreex_init(), before the
                                  first key */
} qek_btreex;

/**
 * As qek_btreed_init(), with a `key_type` of 3. Allocates 32 slots for the root in any case, so
 * that qek_btreex_term() is always due.
 * @param btree           the record; what it held is not looked at
 * @param own_page_pool   nonzero makes an owned page pool; 0 leaves `page_pool` null, for the
 *                        caller to write
 * @param own_node_pool   nonzero makes an owned node pool; 0 leaves `node_pool` and
 *                        `root.children.pool` null, for the caller to write
 * @param own_value_pool  nonzero makes an owned value pool with an `item_size` of 0, for the caller
 *                        to write before the first qek_btreex_set()
 */
QEK_API void qek_btreex_init(qek_btreex *btree, int32_t own_page_pool, int32_t own_node_pool,
                             int32_t own_value_pool);

/**
 * As qek_btreed_term(): gives pages and nodes back to borrowed pools and ends owned ones. No value
 * is called back. Linear.
 * @param btree  the tree; qek_btreex_init() makes it usable again
 */
QEK_API void qek_btreex_term(qek_btreex *btree);

/**
 * As qek_btreed_swap(): exchanges two trees, all but `key_type`, in which the two must agree.
 * @param a  one tree
 * @param b  the other
 */
QEK_API void qek_btreex_swap(qek_btreex *a, qek_btreex *b);

/**
 * As qek_btreed_clone(): copies a tree into one just initialised with the same own flags. `source`
 * must own its page pool and its node pool: with a borrowed one the behaviour is undefined.
 * `key_type` is not copied, and the copied links point at the nodes of `source`, to which a new key
 * stored in the copy writes. No allocation is checked.
 * @param source           the tree to copy
 * @param source_aux_pool  a pool that value items point into, or null
 * @param target           the copy; an initialised, empty tree
 * @param target_aux_pool  a freshly initialised pool for the copy of `source_aux_pool`, or null
 * @param clone_value      completes the copy of a value, also of a 0; null is skipped; not called
 *                         unless the value pool is owned
 */
QEK_API void qek_btreex_clone(const qek_btreex *source, qek_pool *source_aux_pool,
                              qek_btreex *target, qek_pool *target_aux_pool,
                              qek_clone_fn clone_value);

/**
 * As qek_btreed_node_set(): finds or makes the node of a key, a new one with a value of 0.
 * @param btree          the tree
 * @param key            the key
 * @param[out] node_out  the node, new or not; cleared first
 * @return 1 if the node is new; 0 if it existed
 */
QEK_API int32_t qek_btreex_node_set(qek_btreex *btree, uint64_t key, qek_btreex_node **node_out);

/**
 * Looks up the node of exactly this key. The same operation as qek_btreex_node_find().
 * @param btree  the tree
 * @param key    the key
 * @return the node, or null if the key is absent
 */
QEK_API qek_btreex_node *qek_btreex_node_get(const qek_btreex *btree, uint64_t key);

/**
 * Finds the first key in order. The same operation as qek_btree_node_first().
 * @param btree  the tree
 * @return its node, or null on an empty tree
 */
QEK_API qek_btreex_node *qek_btreex_node_first(const qek_btreex *btree);

/**
 * Finds the last key in order. The same operation as qek_btree_node_last().
 * @param btree  the tree
 * @return its node, or null on an empty tree
 */
QEK_API qek_btreex_node *qek_btreex_node_last(const qek_btreex *btree);

/**
 * Finds the smallest key that is at or above the given one, or the largest key of the tree if the
 * given one is above all.
 * @param btree  the tree
 * @param key    the key
 * @return the node; null only on an empty tree
 */
QEK_API qek_btreex_node *qek_btreex_node_bfind(const qek_btreex *btree, uint64_t key);

/**
 * Looks up the node of exactly this key.
 * @param btree  the tree
 * @param key    the key
 * @return the node, or null if the key is absent
 */
QEK_API qek_btreex_node *qek_btreex_node_find(const qek_btreex *btree, uint64_t key);

/**
 * As qek_btreed_set(): finds a key's value, or makes a node with an item from `value_pool`. A null
 * `value_pool` faults on a new key; one with an `item_size` of 0 gives a value of 0 and a result of
 * 1.
 * @param btree           the tree
 * @param key             the key
 * @param[out] value_out  the value, new or not; cleared first
 * @param init_value      prepares a new item, which may hold old bytes; null is skipped
 * @return 1 if the key is new; 0 if it existed
 */
QEK_API int32_t qek_btreex_set(qek_btreex *btree, uint64_t key, qek_word *value_out,
                               qek_value_fn init_value);

/**
 * Looks up a value.
 * @param btree  the tree
 * @param key    the key
 * @return the value; 0 if the key is absent, which a stored 0 looks like (qek_btreex_find() tells
 *         them apart)
 */
QEK_API qek_word qek_btreex_get(const qek_btreex *btree, uint64_t key);

/**
 * Stores a value under a key that is not in the tree. The value of a key that is there is left
 * alone.
 * @param btree  the tree
 * @param key    the key
 * @param value  the value, which stays the caller's to dispose of
 * @return 1 if the value was stored; 0 if the key existed
 */
QEK_API int32_t qek_btreex_insert(qek_btreex *btree, uint64_t key, qek_word value);

/**
 * Replaces the value of a key that is in the tree. Makes nothing otherwise.
 * @param btree  the tree
 * @param key    the key
 * @param value  the new value
 * @return the old value, which passes to the caller; 0 if the key is absent
 */
QEK_API qek_word qek_btreex_update(qek_btreex *btree, uint64_t key, qek_word value);

/**
 * Tells whether a key is in the tree.
 * @param btree  the tree
 * @param key    the key
 * @return 1 if it is, else 0
 */
QEK_API int32_t qek_btreex_find(const qek_btreex *btree, uint64_t key);

/**
 * As qek_btreed_remove(): takes a key out, and leaves its neighbours' links to it stale.
 * @param btree  the tree
 * @param key    the key
 * @return the value, which passes to the caller (an item of `value_pool` stays allocated); 0 if the
 *         key is absent
 */
QEK_API qek_word qek_btreex_remove(qek_btreex *btree, uint64_t key);

/**
 * As qek_btreed_remove_all(): empties the tree, which stays usable. Values are not called back.
 * @param btree  the tree
 */
QEK_API void qek_btreex_remove_all(qek_btreex *btree);

/**
 * As qek_btreed_free_all(): empties the tree and disposes of every value that is not 0.
 * @param btree       the tree
 * @param free_value  disposes of a value; null is skipped
 */
QEK_API void qek_btreex_free_all(qek_btreex *btree, qek_value_fn free_value);

/** @} */

/* ============================================================================================== */
/**
 * @defgroup list Byte-string list (list)
 * Doubly linked entries of a byte-string key and a word, kept where the caller puts them. Nothing
 * is sorted, and a key may occur more than once.
 *
 * A position is a pointer to a node, and null is the position past either end. It stays valid until
 * its node is removed. To walk, take a position from qek_list_get_head_position() and call
 * qek_list_get_next() while it is not null: each call reads the entry and moves on, so the entry
 * just read may be removed at once. Key bytes lie packed in `keys`, and a key pointer that a call
 * hands out points there: it has no terminator, goes stale with the next add, insert or removal,
 * and must not be the `key` of an add to the same list. A position is never tested for belonging to
 * the list.
 *
 * Cost: adding is constant time apart from growth of `keys`. qek_list_find() is linear, and so is
 * the removal of an entry whose key is not empty, since `keys` never holds dead bytes.
 *
 * Take another family when: entries have no key (use @ref lists, or @ref listx for a plain queue or
 * stack), keys are looked up (use @ref hash or @ref btree), or entries are reached by index (use
 * @ref array).
 *
 * @code{.c}
 * static void example_list(void)
 * {
 *     qek_list list;
 *     qek_list_node *position;
 *     uint8_t *key = NULL;
 *     int32_t length = 0;
 *     qek_word sum = 0;
 *     qek_list_init(&list, 1, 0);
 *     qek_list_from_string(&list, ',', "a, b ,,c,", 9);
 *     assert(list.count == 4 && list.keys.length == 3);
 *     position = qek_list_find(&list, "b", -1);
 *     qek_list_insert_after(&list, position, "b2", 2, 5);
 *     for (position = qek_list_get_head_position(&list); position != NULL;) {
 *         sum += qek_list_get_next(&list, &position, &key, &length);
 *     }
 *     assert(sum == 5 && length == 1 && key[0] == 'c');
 *     qek_list_term(&list);
 * }
 * @endcode
 * @{
 */

/** An entry of a list; a pointer to it is a position. */
typedef struct qek_list_node {
    struct qek_list_node *prev; /**< the entry before; null at the head */
    struct qek_list_node *next; /**< the entry behind; null at the tail */
    uint32_t key_offset;        /**< where the key starts in `keys` */
    int32_t key_length;         /**< bytes of the key; 0 is a valid, empty key */
    qek_word value;             /**< the caller's word */
} qek_list_node;

/**
 * A list of byte-string keys, each with a word.
 *
 * `keys.length` is the sum of all `key_length`, and every key lies inside `keys`. The order of the
 * keys in there is the order of adding, which says nothing about their order in the list. To borrow
 * a pool, clear its flag in qek_list_init() and write the field; a node pool has the `item_size` of
 * `qek_list_node`.
 */
typedef struct qek_list {
    qek_list_node *head;     /**< first node; null when empty */
    qek_list_node *tail;     /**< last node; null when empty */
    int32_t count;           /**< number of nodes */
    qek_stream keys;         /**< the key bytes of all nodes: no terminators, no gaps */
    qek_pool *node_pool;     /**< where nodes come from; must be there before the first add */
    int16_t owns_node_pool;  /**< not 0: the list made `node_pool` and ends it */
    qek_pool *value_pool;    /**< where the `_new` calls take value items from; null: none */
    int16_t owns_value_pool; /**< not 0: the list made `value_pool` and ends it */
} qek_list;

/**
 * Makes an empty list: all fields 0, then the pools asked for. Exhausted memory faults.
 * @param list            the record; what it held is not looked at
 * @param own_node_pool   not 0: make a node pool, with its `item_size` set; 0: `node_pool` is null
 *                        until the caller writes it
 * @param own_value_pool  not 0: make a value pool, whose `item_size` the caller writes before the
 *                        first `_new` call; 0: `value_pool` is null until the caller writes it
 */
QEK_API void qek_list_init(qek_list *list, int32_t own_node_pool, int32_t own_value_pool);

/**
 * Frees `keys` and gives up all nodes. An own pool is ended, and its field and flag become 0. A
 * borrowed node pool gets the nodes back one at a time, head to tail; a borrowed value pool is left
 * alone; both stay in the record. No value is touched. Linear with a borrowed node pool.
 * @param list  the list; empty afterwards, and usable only with a node pool in place
 */
QEK_API void qek_list_term(qek_list *list);

/**
 * Exchanges all fields of two lists, `keys` and pools included, in constant time. Positions stay
 * valid and belong to the other list.
 * @param a  one list
 * @param b  the other
 */
QEK_API void qek_list_swap(qek_list *a, qek_list *b);

/**
 * Copies the set-up of an empty list. Pools that `source` borrows are borrowed by `target` too;
 * pools that it owns are copied into those of `target`; `keys` takes over its capacity, unless
 * memory runs out. If `source_aux_pool`, `target_aux_pool` and `clone_value` are all given, the
 * first is copied into the second. Exhaustion in a pool faults. A `source` with entries is outside
 * the contract: the call does not complete. This is intended; qek_list_add_tail_list() duplicates
 * entries.
 * @param source           the list to copy; must be empty
 * @param source_aux_pool  a pool to copy along, or null
 * @param target           an initialised, empty list with an own, unused pool for each pool that
 *                         `source` owns
 * @param target_aux_pool  a freshly initialised pool, or null
 * @param clone_value      only tested for null, as there is no value to complete
 */
QEK_API void qek_list_clone(const qek_list *source, qek_pool *source_aux_pool, qek_list *target,
                            qek_pool *target_aux_pool, qek_clone_fn clone_value);

/**
 * Adds an entry in front of all others. The key is copied; if memory for it runs out, the entry is
 * added with an empty key, silently.
 * @param list        the list; key pointers into it go stale
 * @param key         the bytes; null only with a `key_length` of 0
 * @param key_length  bytes of `key`, or negative if it is NUL-terminated (a null `key` then faults)
 * @param value       the caller's word
 * @return its position; null if `node_pool` gives no node (its `item_size` is 0), and then nothing
 *         is added
 */
QEK_API qek_list_node *qek_list_add_head(qek_list *list, const void *key, int32_t key_length,
                                         qek_word value);

/**
 * Adds an entry behind all others. The key is copied; if memory for it runs out, the entry is added
 * with an empty key, silently.
 * @param list        the list; key pointers into it go stale
 * @param key         the bytes; null only with a `key_length` of 0
 * @param key_length  bytes of `key`, or negative if it is NUL-terminated (a null `key` then faults)
 * @param value       the caller's word
 * @return its position; null if `node_pool` gives no node (its `item_size` is 0), and then nothing
 *         is added
 */
QEK_API qek_list_node *qek_list_add_tail(qek_list *list, const void *key, int32_t key_length,
                                         qek_word value);

/**
 * As qek_list_add_head(), with a new item of `value_pool` as the value. `init_value` runs before
 * the key is stored and the entry is linked. A removal hands the item back without freeing it.
 * @param list        the list, with a `value_pool`; a null one faults
 * @param key         the bytes; null only with a `key_length` of 0
 * @param key_length  bytes of `key`, or negative if it is NUL-terminated (a null `key` then faults)
 * @param init_value  prepares the item; may be null, and is not called without an item
 * @return the item, not the position. Null if no node was had, and nothing is added; null also if
 *         `value_pool` gave no item (its `item_size` is 0), and then the entry is added with value
 *         0
 */
QEK_API void *qek_list_add_head_new(qek_list *list, const void *key, int32_t key_length,
                                    qek_value_fn init_value);

/**
 * As qek_list_add_tail(), with a new item of `value_pool` as the value. `init_value` runs before
 * the key is stored and the entry is linked. A removal hands the item back without freeing it.
 * @param list        the list, with a `value_pool`; a null one faults
 * @param key         the bytes; null only with a `key_length` of 0
 * @param key_length  bytes of `key`, or negative if it is NUL-terminated (a null `key` then faults)
 * @param init_value  prepares the item; may be null, and is not called without an item
 * @return the item, not the position. Null if no node was had, and nothing is added; null also if
 *         `value_pool` gave no item (its `item_size` is 0), and then the entry is added with value
 *         0
 */
QEK_API void *qek_list_add_tail_new(qek_list *list, const void *key, int32_t key_length,
                                    qek_value_fn init_value);

/**
 * Adds a copy of each entry of `other` in front, so that they keep their order; each one as by
 * qek_list_add_head(). Value words are copied as they are. Linear in `other`.
 * @param list   the list; key pointers into it go stale
 * @param other  the list to copy from, not `list` itself; an empty one adds nothing
 */
QEK_API void qek_list_add_head_list(qek_list *list, const qek_list *other);

/**
 * Adds a copy of each entry of `other` behind the tail, in order; each one as by
 * qek_list_add_tail(). Value words are copied as they are. Linear in `other`.
 * @param list   the list; key pointers into it go stale
 * @param other  the list to copy from, not `list` itself; an empty one adds nothing
 */
QEK_API void qek_list_add_tail_list(qek_list *list, const qek_list *other);

/**
 * As qek_list_add_head(), but in front of `position`.
 * @param list        the list; key pointers into it go stale
 * @param position    a position in `list`; null adds the entry at the head and then faults; this is
 *                    intended
 * @param key         the bytes; null only with a `key_length` of 0
 * @param key_length  bytes of `key`, or negative if it is NUL-terminated (a null `key` then faults)
 * @param value       the caller's word
 * @return its position; null if `node_pool` gives no node (its `item_size` is 0), and then nothing
 *         is added
 */
QEK_API qek_list_node *qek_list_insert_before(qek_list *list, qek_list_node *position,
                                              const void *key, int32_t key_length, qek_word value);

/**
 * As qek_list_add_tail(), but behind `position`.
 * @param list        the list; key pointers into it go stale
 * @param position    a position in `list`; null adds the entry at the tail and then faults; this is
 *                    intended
 * @param key         the bytes; null only with a `key_length` of 0
 * @param key_length  bytes of `key`, or negative if it is NUL-terminated (a null `key` then faults)
 * @param value       the caller's word
 * @return its position; null if `node_pool` gives no node (its `item_size` is 0), and then nothing
 *         is added
 */
QEK_API qek_list_node *qek_list_insert_after(qek_list *list, qek_list_node *position,
                                             const void *key, int32_t key_length, qek_word value);

/**
 * Gives the first position. The same operation as qek_lists_get_head_position().
 * @param list  the list
 * @return `head`; null when the list is empty
 */
QEK_API qek_list_node *qek_list_get_head_position(const qek_list *list);

/**
 * Gives the last position. The same operation as qek_lists_get_tail_position().
 * @param list  the list
 * @return `tail`; null when the list is empty
 */
QEK_API qek_list_node *qek_list_get_tail_position(const qek_list *list);

/**
 * Reads the first entry.
 * @param list                 the list
 * @param[out] key_out         its key, in `keys`; null when the list is empty
 * @param[out] key_length_out  bytes of the key; 0 when the list is empty
 * @return its value; 0 when the list is empty
 */
QEK_API qek_word qek_list_get_head(const qek_list *list, uint8_t **key_out,
                                   int32_t *key_length_out);

/**
 * Reads the last entry.
 * @param list                 the list
 * @param[out] key_out         its key, in `keys`; null when the list is empty
 * @param[out] key_length_out  bytes of the key; 0 when the list is empty
 * @return its value; 0 when the list is empty
 */
QEK_API qek_word qek_list_get_tail(const qek_list *list, uint8_t **key_out,
                                   int32_t *key_length_out);

/**
 * Reads the entry at a position and moves the position to the one before.
 * @param list                    the list
 * @param[in,out] position_inout  the position to read; becomes its `prev`; null stays null
 * @param[out] key_out            the key of the entry read, in `keys`; null at a null position
 * @param[out] key_length_out     bytes of the key; 0 at a null position
 * @return the value of the entry read; 0 at a null position
 */
QEK_API qek_word qek_list_get_prev(const qek_list *list, qek_list_node **position_inout,
                                   uint8_t **key_out, int32_t *key_length_out);

/**
 * Reads the entry at a position and moves the position to the next one.
 * @param list                    the list
 * @param[in,out] position_inout  the position to read; becomes its `next`; null stays null
 * @param[out] key_out            the key of the entry read, in `keys`; null at a null position
 * @param[out] key_length_out     bytes of the key; 0 at a null position
 * @return the value of the entry read; 0 at a null position
 */
QEK_API qek_word qek_list_get_next(const qek_list *list, qek_list_node **position_inout,
                                   uint8_t **key_out, int32_t *key_length_out);

/**
 * Reads the entry at a position.
 * @param list                 the list
 * @param position             the position, or null
 * @param[out] key_out         its key, in `keys`; null at a null position
 * @param[out] key_length_out  bytes of the key; 0 at a null position
 * @return its value; 0 at a null position
 */
QEK_API qek_word qek_list_get_at(const qek_list *list, const qek_list_node *position,
                                 uint8_t **key_out, int32_t *key_length_out);

/**
 * Finds the entry nearest the head whose key has the same length and bytes. Linear.
 * @param list        the list
 * @param key         the bytes; null with a `key_length` of 0 or below is the empty key
 * @param key_length  bytes of `key`, or negative if it is NUL-terminated
 * @return its position; null if there is none
 */
QEK_API qek_list_node *qek_list_find(const qek_list *list, const void *key, int32_t key_length);

/**
 * Removes the first entry, with its key bytes. The node goes back to `node_pool`; a value item
 * stays taken and is the caller's. Linear, unless the key is empty.
 * @param list  the list; key pointers into it go stale
 * @return its value; 0 when the list is empty
 */
QEK_API qek_word qek_list_remove_head(qek_list *list);

/**
 * Removes the last entry, with its key bytes. The node goes back to `node_pool`; a value item stays
 * taken and is the caller's. Linear, unless the key is empty.
 * @param list  the list; key pointers into it go stale
 * @return its value; 0 when the list is empty
 */
QEK_API qek_word qek_list_remove_tail(qek_list *list);

/**
 * As qek_list_remove_head(), for the entry at `position`.
 * @param list      the list; key pointers into it go stale
 * @param position  a position in `list`, stale afterwards; null changes nothing
 * @return its value; 0 at a null position or when the list is empty
 */
QEK_API qek_word qek_list_remove_at(qek_list *list, qek_list_node *position);

/**
 * Removes all entries and forgets their values. A borrowed node pool gets the nodes back one at a
 * time, head to tail; an own one is emptied. `keys` keeps its buffer. `value_pool` is left alone
 * even if it is own: its items stay taken, unlike after qek_lists_remove_all().
 * @param list  the list; stays usable
 */
QEK_API void qek_list_remove_all(qek_list *list);

/**
 * Adds one entry with value 0 for each item of a separated text, in order, behind what the list
 * holds. Items are trimmed as by qek_char_trim() and added as by qek_list_add_tail(). An empty item
 * in front of a separator gives an empty key; an empty item at the end of the text gives nothing.
 * There is no quoting and no escape.
 * @param list         the list; key pointers into it go stale
 * @param separator    the byte between items
 * @param text         the text; null only with a `text_length` of 0 or below
 * @param text_length  bytes of `text`; it is not measured: 0 or a negative length adds nothing
 */
QEK_API void qek_list_from_string(qek_list *list, uint8_t separator, const void *text,
                                  int32_t text_length);

/**
 * Writes the keys, head to tail, into `target`, replacing its text. A separator goes in front of a
 * key if any text is there already. So empty keys at the front leave no trace, and later ones do:
 * `a`, empty, `b` give `a,,b`, and `a`, empty give `a,`, which reads back as one entry. Keys are
 * not quoted, values are not written. If memory runs out, what found no room is missing, silently.
 * @param list            the list; an empty one gives the empty text
 * @param separator       the byte between keys
 * @param[in,out] target  an initialised string
 */
QEK_API void qek_list_to_string(const qek_list *list, uint8_t separator, qek_string *target);

/** @} */

/* ============================================================================================== */
/**
 * @defgroup lists Simple list (lists)
 * Doubly linked words, kept where the caller puts them: @ref list without keys.
 *
 * Positions and walks are those of @ref list. A position is a pointer to a node, null is past
 * either end, and it stays valid until its node is removed; no position is tested for belonging to
 * the list. A word of 0 cannot be told from the result for an empty list; where that matters, look
 * at `count` or at the position.
 *
 * Cost: adding, inserting and removing are constant time; finding is linear.
 *
 * Take another family when: only the ends are used (use @ref listx, which takes a node per 32
 * words), words are reached by index or kept sorted (use @ref arrays), or entries have a key (use
 * @ref list).
 *
 * @code{.c}
 * static int32_t lists_compare(qek_word value, qek_word probe)
 * {
 *     return (int32_t)(value / 10) - (int32_t)probe;
 * }
 *
 * static void example_lists(void)
 * {
 *     qek_lists list;
 *     qek_lists_node *position;
 *     qek_word first, sum = 0;
 *     qek_lists_init(&list, 1, 0);
 *     qek_lists_add_tail(&list, 25);
 *     qek_lists_add_head(&list, 13);
 *     position = qek_lists_find(&list, 2, lists_compare);
 *     qek_lists_insert_before(&list, position, 17);
 *     first = qek_lists_remove_head(&list);
 *     for (position = qek_lists_get_head_position(&list); position != NULL;) {
 *         sum += qek_lists_get_next(&list, &position);
 *     }
 *     assert(first == 13 && sum == 17 + 25 && list.count == 2);
 *     qek_lists_term(&list);
 * }
 * @endcode
 * @{
 */

/** A word of a list; a pointer to it is a position. */
typedef struct qek_lists_node {
    struct qek_lists_node *prev; /**< the node before; null at the head */
    struct qek_lists_node *next; /**< the node behind; null at the tail */
    qek_word value;              /**< the caller's word */
} qek_lists_node;

/**
 * A list of words.
 *
 * To borrow a pool, clear its flag in qek_lists_init() and write the field; a node pool has the
 * `item_size` of `qek_lists_node`.
 */
typedef struct qek_lists {
    qek_lists_node *head;    /**< first node; null when empty */
    qek_lists_node *tail;    /**< last node; null when empty */
    int32_t count;           /**< number of nodes */
    qek_pool *node_pool;     /**< where nodes come from; must be there before the first add */
    int16_t owns_node_pool;  /**< not 0: the list made `node_pool` and ends it */
    qek_pool *value_pool;    /**< where the `_new` calls take value items from; null: none */
    int16_t owns_value_pool; /**< not 0: the list made `value_pool` and ends it */
} qek_lists;

/** Tests a node's word against what is looked for: 0 if it matches. */
typedef int32_t (*qek_lists_compare_fn)(qek_word value, qek_word probe);

/** As qek_lists_compare_fn, with the caller's context first. */
typedef int32_t (*qek_lists_compare_x_fn)(qek_word context, qek_word value, qek_word probe);

/**
 * Makes an empty list: all fields 0, then the pools asked for. Exhausted memory faults.
 * @param list            the record; what it held is not looked at
 * @param own_node_pool   not 0: make a node pool, with its `item_size` set; 0: `node_pool` is null
 *                        until the caller writes it
 * @param own_value_pool  not 0: make a value pool, whose `item_size` the caller writes before the
 *                        first `_new` call; 0: `value_pool` is null until the caller writes it
 */
QEK_API void qek_lists_init(qek_lists *list, int32_t own_node_pool, int32_t own_value_pool);

/**
 * Gives up all nodes. An own pool is ended, and its field and flag become 0. A borrowed node pool
 * gets the nodes back one at a time, head to tail; a borrowed value pool is left alone; both stay
 * in the record. No value is touched. Linear with a borrowed node pool. The same operation as
 * qek_listx_term().
 * @param list  the list; empty afterwards, and usable only with a node pool in place
 */
QEK_API void qek_lists_term(qek_lists *list);

/**
 * Exchanges all fields of two lists, pools included, in constant time. Positions stay valid and
 * belong to the other list.
 * @param a  one list
 * @param b  the other
 */
QEK_API void qek_lists_swap(qek_lists *a, qek_lists *b);

/**
 * Copies a list, in order. Pools that `source` borrows are borrowed by `target` too; pools that it
 * owns are copied into those of `target`. Nodes are translated into the copy, and so are values if
 * the value pool is own (each value is then 0 or an item of it); otherwise value words are copied.
 * If `source_aux_pool`, `target_aux_pool` and `clone_value` are all given, the first is copied into
 * the second beforehand. A `source` with nodes and a borrowed node pool is outside the contract.
 * Exhausted memory faults. About linear in the memory held by the pools.
 * @param source           the list to copy; owns its node pool or is empty
 * @param source_aux_pool  a pool to copy along, or null
 * @param target           an initialised, empty list with an own, unused pool for each pool that
 *                         `source` owns
 * @param target_aux_pool  a freshly initialised pool, or null
 * @param clone_value      completes each value, head to tail, if `source` owns its value pool, also
 *                         a value of 0 (as 0 and 0); may be null
 */
QEK_API void qek_lists_clone(const qek_lists *source, qek_pool *source_aux_pool, qek_lists *target,
                             qek_pool *target_aux_pool, qek_clone_fn clone_value);

/**
 * Adds a word in front of all others.
 * @param list   the list
 * @param value  the caller's word
 * @return its position; null if `node_pool` gives no node (its `item_size` is 0), and then nothing
 *         is added
 */
QEK_API qek_lists_node *qek_lists_add_head(qek_lists *list, qek_word value);

/**
 * Adds a word behind all others.
 * @param list   the list
 * @param value  the caller's word
 * @return its position; null if `node_pool` gives no node (its `item_size` is 0), and then nothing
 *         is added
 */
QEK_API qek_lists_node *qek_lists_add_tail(qek_lists *list, qek_word value);

/**
 * As qek_lists_add_head(), with a new item of `value_pool` as the value. `init_value` runs before
 * the node is linked. A removal hands the item back without freeing it.
 * @param list        the list, with a `value_pool`; a null one faults
 * @param init_value  prepares the item; may be null, and is not called without an item
 * @return the item, not the position. Null if no node was had, and nothing is added; null also if
 *         `value_pool` gave no item (its `item_size` is 0), and then the node is added with value 0
 */
QEK_API void *qek_lists_add_head_new(qek_lists *list, qek_value_fn init_value);

/**
 * As qek_lists_add_tail(), with a new item of `value_pool` as the value. `init_value` runs before
 * the node is linked. A removal hands the item back without freeing it.
 * @param list        the list, with a `value_pool`; a null one faults
 * @param init_value  prepares the item; may be null, and is not called without an item
 * @return the item, not the position. Null if no node was had, and nothing is added; null also if
 *         `value_pool` gave no item (its `item_size` is 0), and then the node is added with value 0
 */
QEK_API void *qek_lists_add_tail_new(qek_lists *list, qek_value_fn init_value);

/**
 * Adds the words of `other` in front, so that they keep their order; each one as by
 * qek_lists_add_head(). Linear in `other`.
 * @param list   the list
 * @param other  the list to copy from, not `list` itself; an empty one adds nothing
 */
QEK_API void qek_lists_add_head_list(qek_lists *list, const qek_lists *other);

/**
 * Adds the words of `other` behind the tail, in order; each one as by qek_lists_add_tail(). Linear
 * in `other`.
 * @param list   the list
 * @param other  the list to copy from, not `list` itself; an empty one adds nothing
 */
QEK_API void qek_lists_add_tail_list(qek_lists *list, const qek_lists *other);

/**
 * Adds a word in front of `position`.
 * @param list      the list
 * @param position  a position in `list`; null adds the word at the head and then faults; this is
 *                  intended
 * @param value     the caller's word
 * @return its position; null if `node_pool` gives no node (its `item_size` is 0), and then nothing
 *         is added
 */
QEK_API qek_lists_node *qek_lists_insert_before(qek_lists *list, qek_lists_node *position,
                                                qek_word value);

/**
 * Adds a word behind `position`.
 * @param list      the list
 * @param position  a position in `list`; null adds the word at the tail and then faults; this is
 *                  intended
 * @param value     the caller's word
 * @return its position; null if `node_pool` gives no node (its `item_size` is 0), and then nothing
 *         is added
 */
QEK_API qek_lists_node *qek_lists_insert_after(qek_lists *list, qek_lists_node *position,
                                               qek_word value);

/**
 * Gives the first position. The same operation as qek_list_get_head_position().
 * @param list  the list
 * @return `head`; null when the list is empty
 */
QEK_API qek_lists_node *qek_lists_get_head_position(const qek_lists *list);

/**
 * Gives the last position. The same operation as qek_list_get_tail_position().
 * @param list  the list
 * @return `tail`; null when the list is empty
 */
QEK_API qek_lists_node *qek_lists_get_tail_position(const qek_lists *list);

/**
 * Reads the first word.
 * @param list  the list
 * @return the word; 0 when the list is empty
 */
QEK_API qek_word qek_lists_get_head(const qek_lists *list);

/**
 * Reads the last word.
 * @param list  the list
 * @return the word; 0 when the list is empty
 */
QEK_API qek_word qek_lists_get_tail(const qek_lists *list);

/**
 * Reads the word at a position and moves the position to the one before.
 * @param list                    the list
 * @param[in,out] position_inout  the position to read; becomes its `prev`; null stays null
 * @return the word read; 0 at a null position
 */
QEK_API qek_word qek_lists_get_prev(const qek_lists *list, qek_lists_node **position_inout);

/**
 * Reads the word at a position and moves the position to the next one.
 * @param list                    the list
 * @param[in,out] position_inout  the position to read; becomes its `next`; null stays null
 * @return the word read; 0 at a null position
 */
QEK_API qek_word qek_lists_get_next(const qek_lists *list, qek_lists_node **position_inout);

/**
 * Reads the word at a position.
 * @param list      the list
 * @param position  the position, or null
 * @return the word; 0 at a null position
 */
QEK_API qek_word qek_lists_get_at(const qek_lists *list, const qek_lists_node *position);

/**
 * Finds the node nearest the head whose word equals `value`. Linear.
 * @param list   the list
 * @param value  the word looked for
 * @return its position; null if there is none
 */
QEK_API qek_lists_node *qek_lists_find_at(const qek_lists *list, qek_word value);

/**
 * Finds the node nearest the head that the callback accepts. Linear.
 * @param list     the list
 * @param probe    handed to `compare` behind each node's word
 * @param compare  gives 0 for a match; null finds nothing
 * @return its position; null if there is none
 */
QEK_API qek_lists_node *qek_lists_find(const qek_lists *list, qek_word probe,
                                       qek_lists_compare_fn compare);

/**
 * As qek_lists_find(), with a context for the callback. Linear.
 * @param list     the list
 * @param context  handed to `compare` in front of each node's word
 * @param probe    handed to `compare` behind each node's word
 * @param compare  gives 0 for a match; null finds nothing
 * @return its position; null if there is none
 */
QEK_API qek_lists_node *qek_lists_find_x(const qek_lists *list, qek_word context, qek_word probe,
                                         qek_lists_compare_x_fn compare);

/**
 * Removes the first word. The node goes back to `node_pool`; a value item stays taken and is the
 * caller's.
 * @param list  the list
 * @return the word; 0 when the list is empty
 */
QEK_API qek_word qek_lists_remove_head(qek_lists *list);

/**
 * Removes the last word. The node goes back to `node_pool`; a value item stays taken and is the
 * caller's.
 * @param list  the list
 * @return the word; 0 when the list is empty
 */
QEK_API qek_word qek_lists_remove_tail(qek_lists *list);

/**
 * As qek_lists_remove_head(), for the node at `position`.
 * @param list      the list
 * @param position  a position in `list`, stale afterwards; null changes nothing
 * @return its word; 0 at a null position or when the list is empty
 */
QEK_API qek_word qek_lists_remove_at(qek_lists *list, qek_lists_node *position);

/**
 * Removes all words without a callback. A borrowed node pool gets the nodes back one at a time,
 * head to tail; an own one is emptied. An own value pool is emptied too, so all its items die,
 * unlike in qek_list_remove_all(); a borrowed one is left alone. The same operation as
 * qek_listx_remove_all().
 * @param list  the list; stays usable
 */
QEK_API void qek_lists_remove_all(qek_lists *list);

/**
 * Removes all words and disposes of them, head to tail: each word that is not 0 goes to
 * `free_value` and then, as an item, back to a borrowed value pool; then the node goes back to a
 * borrowed node pool. Own pools are emptied at the end, as a whole. A word of 0 is no value:
 * neither callback nor pool sees it. Linear; nothing is walked without a callback, with an own node
 * pool and no borrowed value pool.
 * @param list        the list; stays usable
 * @param free_value  disposes of what a value holds; may be null
 */
QEK_API void qek_lists_free_all(qek_lists *list, qek_value_fn free_value);

/** @} */

/* ============================================================================================== */
/**
 * @defgroup listx Block list (listx)
 * A queue or stack of words, stored as a chain of blocks of up to 32 words side by side.
 *
 * Words go in and out at both ends only: there are no positions, and nothing is inserted, found or
 * read in between. To read, walk the record: from `head` along `next`, and in each block from
 * `items[0]` to `items[used - 1]`. A word of 0 cannot be told from the result for an empty list;
 * where that matters, look at `count`.
 *
 * Cost: constant time at both ends, with one node from the pool per 32 words. Adding and removing
 * at the front also moves up to 31 words, so that a block is always packed from index 0.
 *
 * Take another family when: words are inserted, removed or held on to in the middle (use
 * @ref lists), or reached by index (use @ref arrays).
 *
 * @code{.c}
 * static void example_listx(void)
 * {
 *     qek_listx list;
 *     const qek_listx_node *node;
 *     qek_word value, sum = 0;
 *     int32_t i;
 *     qek_listx_init(&list, 1, 0);
 *     for (value = 1; value <= 33; value++) {
 *         qek_listx_add_tail(&list, value);
 *     }
 *     assert(list.count == 33 && list.head->used == 32 && list.tail->used == 1);
 *     value = qek_listx_remove_head(&list);
 *     for (node = list.head; node != NULL; node = node->next) {
 *         for (i = 0; i < node->used; i++) {
 *             sum += node->items[i];
 *         }
 *     }
 *     assert(value == 1 && sum == 560);
 *     qek_listx_term(&list);
 * }
 * @endcode
 * @{
 */

/**
 * A block of words.
 *
 * A linked block is never empty, and only the first and the last block can be partly filled.
 */
typedef struct qek_listx_node {
    struct qek_listx_node *prev; /**< the block before; null at the head */
    struct qek_listx_node *next; /**< the block behind; null at the tail */
    int32_t used;                /**< words in use, 1 to 32 */
    qek_word items[32];          /**< the words, in list order; no meaning from index `used` on */
} qek_listx_node;

/**
 * A list of words in blocks, laid out as `qek_lists`.
 *
 * `count` is the sum of all `used`. To borrow a pool, clear its flag in qek_listx_init() and write
 * the field; a node pool has the `item_size` of `qek_listx_node`.
 */
typedef struct qek_listx {
    qek_listx_node *head;    /**< first block; null when empty */
    qek_listx_node *tail;    /**< last block; null when empty */
    int32_t count;           /**< number of words in all blocks */
    qek_pool *node_pool;     /**< where blocks come from; must be there before the first add */
    int16_t owns_node_pool;  /**< not 0: the list made `node_pool` and ends it */
    qek_pool *value_pool;    /**< where the `_new` calls take value items from; null: none */
    int16_t owns_value_pool; /**< not 0: the list made `value_pool` and ends it */
} qek_listx;

/**
 * Makes an empty list: all fields 0, then the pools asked for. Exhausted memory faults.
 * @param list            the record; what it held is not looked at
 * @param own_node_pool   not 0: make a node pool, with its `item_size` set; 0: `node_pool` is null
 *                        until the caller writes it
 * @param own_value_pool  not 0: make a value pool, whose `item_size` the caller writes before the
 *                        first `_new` call; 0: `value_pool` is null until the caller writes it
 */
QEK_API void qek_listx_init(qek_listx *list, int32_t own_node_pool, int32_t own_value_pool);

/**
 * Gives up all blocks. An own pool is ended, and its field and flag become 0. A borrowed node pool
 * gets the blocks back one at a time, head to tail; a borrowed value pool is left alone; both stay
 * in the record. No value is touched. The same operation as qek_lists_term().
 * @param list  the list; empty afterwards, and usable only with a node pool in place
 */
QEK_API void qek_listx_term(qek_listx *list);

/**
 * Adds a word at the front. If a block is needed and `node_pool` gives none (its `item_size` is 0),
 * nothing is added, silently. Moves up to 31 words.
 * @param list   the list
 * @param value  the caller's word
 */
QEK_API void qek_listx_add_head(qek_listx *list, qek_word value);

/**
 * Adds a word at the back. If a block is needed and `node_pool` gives none (its `item_size` is 0),
 * nothing is added, silently.
 * @param list   the list
 * @param value  the caller's word
 */
QEK_API void qek_listx_add_tail(qek_listx *list, qek_word value);

/**
 * As qek_listx_add_head(), with a new item of `value_pool` as the word. A removal hands the item
 * back without freeing it.
 * @param list        the list, with a `value_pool`; a null one faults
 * @param init_value  prepares the item before it is added; may be null, and is not called without
 *                    an item
 * @return the item. Null if no block was had, and then no item is taken and nothing is added; null
 *         also if `value_pool` gave no item (its `item_size` is 0), and then the word 0 is added
 */
QEK_API void *qek_listx_add_head_new(qek_listx *list, qek_value_fn init_value);

/**
 * As qek_listx_add_tail(), with a new item of `value_pool` as the word. A removal hands the item
 * back without freeing it.
 * @param list        the list, with a `value_pool`; a null one faults
 * @param init_value  prepares the item before it is added; may be null, and is not called without
 *                    an item
 * @return the item. Null if no block was had, and then no item is taken and nothing is added; null
 *         also if `value_pool` gave no item (its `item_size` is 0), and then the word 0 is added
 */
QEK_API void *qek_listx_add_tail_new(qek_listx *list, qek_value_fn init_value);

/**
 * Removes the first word. A block that gets empty goes back to `node_pool`; a value item stays
 * taken and is the caller's. Moves up to 31 words.
 * @param list  the list
 * @return the word; 0 when the list is empty
 */
QEK_API qek_word qek_listx_remove_head(qek_listx *list);

/**
 * Removes the last word. A block that gets empty goes back to `node_pool`; a value item stays taken
 * and is the caller's.
 * @param list  the list
 * @return the word; 0 when the list is empty
 */
QEK_API qek_word qek_listx_remove_tail(qek_listx *list);

/**
 * Removes all words without a callback. A borrowed node pool gets the blocks back one at a time,
 * head to tail; an own one is emptied. An own value pool is emptied too, so all its items die; a
 * borrowed one is left alone. The same operation as qek_lists_remove_all().
 * @param list  the list; stays usable
 */
QEK_API void qek_listx_remove_all(qek_listx *list);

/**
 * Removes all words and disposes of them in list order: each word that is not 0 goes to
 * `free_value` and then, as an item, back to a borrowed value pool; behind its last word, each
 * block goes back to a borrowed node pool. Own pools are emptied at the end, as a whole. A word of
 * 0 is no value: neither callback nor pool sees it. Linear; nothing is walked without a callback,
 * with an own node pool and no borrowed value pool.
 * @param list        the list; stays usable
 * @param free_value  disposes of what a value holds; may be null
 */
QEK_API void qek_listx_free_all(qek_listx *list, qek_value_fn free_value);

/** @} */

/* ============================================================================================== */
/**
 * @defgroup tree General tree (tree)
 * An ordered tree of any shape: each entry has a word and any number of children, in the order that
 * the caller gives.
 *
 * The tree knows no keys; a search asks the caller's callback about entries. The root is part of
 * the record and at its address, so `&tree.root` goes wherever an entry is wanted. Entries are read
 * directly: there is no call for `first_child`, and `value` is set by writing it. Walks and
 * searches go in pre-order, an entry before its children. None of the `entry_` calls tests that an
 * entry belongs to the tree, that it is not attached already, or that no cycle is made.
 *
 * Cost: attaching, detaching and single steps are constant time; a search is linear in the subtree
 * that it looks through.
 *
 * Take another family when: entries are looked up by an ordered key (use @ref btree, or @ref bitree
 * for links without the searching), by any key (use @ref hash), or have no children (use
 * @ref lists).
 *
 * @code{.c}
 * static int32_t tree_match(qek_tree_entry *entry, qek_word a, qek_word b)
 * {
 *     return entry->value == a + b ? 0 : 1;
 * }
 *
 * static void example_tree(void)
 * {
 *     qek_tree tree;
 *     qek_tree_entry *top = &tree.root, *outer, *inner;
 *     qek_tree_init(&tree, 1, 0);
 *     outer = qek_tree_entry_new(&tree);
 *     outer->value = 10;
 *     qek_tree_entry_append(&tree, top, outer);
 *     inner = qek_tree_entry_new(&tree);
 *     inner->value = 11;
 *     qek_tree_entry_append(&tree, outer, inner);
 *     assert(qek_tree_entry_find(top, top, 10, 1, tree_match) == inner);
 *     assert(qek_tree_entry_find(top, inner, 10, 1, tree_match) == NULL);
 *     assert(qek_tree_entry_compare(outer, inner) < 0 && tree.entry_count == 2);
 *     qek_tree_entry_remove(&tree, outer);
 *     assert(tree.entry_count == 1 && top->first_child == NULL && outer->first_child == inner);
 *     qek_tree_entry_free(&tree, outer, NULL);
 *     qek_tree_term(&tree);
 * }
 * @endcode
 * @{
 */

/**
 * An entry of a tree.
 *
 * The children of an entry form a ring through `prev` and `next`; an only child is its own
 * neighbour on both sides. An entry that is not attached has null in `parent`, `prev` and `next`.
 */
typedef struct qek_tree_entry {
    struct qek_tree_entry *parent;      /**< null for the root and for an entry not attached */
    struct qek_tree_entry *first_child; /**< first child; null if there is none */
    struct qek_tree_entry *prev;        /**< sibling before; of the first child, the last */
    struct qek_tree_entry *next;        /**< sibling behind; of the last child, the first */
    qek_word value;                     /**< the caller's word; 0 in a new entry */
} qek_tree_entry;

/**
 * A tree.
 *
 * To borrow a pool, clear its flag in qek_tree_init() and write the field afterwards; an entry pool
 * has the `item_size` of `qek_tree_entry`.
 */
typedef struct qek_tree {
    qek_tree_entry root;     /**< the root entry */
    int32_t entry_count;     /**< entries attached minus entries detached; without the root */
    qek_pool *entry_pool;    /**< where entries come from; must be there before the first entry */
    int32_t owns_entry_pool; /**< not 0: the tree made `entry_pool` and ends it */
    qek_pool *value_pool;    /**< where the path inserts take value items from; null: none */
    int32_t owns_value_pool; /**< not 0: the tree made `value_pool` and ends it */
} qek_tree;

/**
 * Tests an entry against what is looked for: 0 if it matches. In a path call, `a` is the address of
 * a key's bytes and `b` the key's length.
 */
typedef int32_t (*qek_tree_match_fn)(qek_tree_entry *entry, qek_word a, qek_word b);

/** As qek_tree_match_fn, with a further word passed through. */
typedef int32_t (*qek_tree_match_x_fn)(qek_tree_entry *entry, qek_word context, qek_word a,
                                       qek_word b);

/**
 * Makes an empty tree: root and all fields 0, then the pools asked for. Exhausted memory faults.
 * @param tree            the record; what it held is not looked at
 * @param own_entry_pool  not 0: make an entry pool, with its `item_size` set; 0: `entry_pool` is
 *                        null until the caller writes it
 * @param own_value_pool  not 0: make a value pool, whose `item_size` the caller writes before the
 *                        first path insert; 0: `value_pool` is null until the caller writes it
 */
QEK_API void qek_tree_init(qek_tree *tree, int32_t own_entry_pool, int32_t own_value_pool);

/**
 * Gives up all entries under the root. An own pool is ended and its field becomes null. A borrowed
 * entry pool gets every entry back but the root, children before their parent; a borrowed value
 * pool is left alone. No value goes to a callback or back to a pool. The root and `entry_count`
 * become 0; the own-pool flags stay as they are, which is intended. Linear with a borrowed entry
 * pool. Entries that are not attached are not reached.
 * @param tree  the tree; needs qek_tree_init() before anything else
 */
QEK_API void qek_tree_term(qek_tree *tree);

/**
 * Takes an entry from `entry_pool` and clears it, also a recycled one. It is not attached and not
 * counted. The same operation as qek_bitree_entry_new().
 * @param tree  the tree, with an `entry_pool`
 * @return the entry; null if the pool gives none (its `item_size` is 0)
 */
QEK_API qek_tree_entry *qek_tree_entry_new(qek_tree *tree);

/**
 * Disposes of the subtree under `entry` and then of `entry`, children before their parent, in
 * order. At each entry a `value` that is not 0 goes to `free_value` and then, as an item, back to a
 * borrowed value pool; then the entry, unless it is the root, goes back to a borrowed entry pool.
 * Nothing goes back to an own pool: it gets its memory back when the tree is emptied. `entry` is
 * not detached and `entry_count` does not change: in a live tree, call qek_tree_entry_remove()
 * first. Linear in the subtree.
 * @param tree        the tree that `entry` was made for
 * @param entry       the top of the subtree; not tested for null
 * @param free_value  disposes of what a value holds; may be null
 */
QEK_API void qek_tree_entry_free(qek_tree *tree, qek_tree_entry *entry, qek_value_fn free_value);

/**
 * Attaches `entry`, with its subtree, as the last child of `parent`, and adds 1 to `entry_count`.
 * @param tree    the tree
 * @param parent  the entry to hang it under; not tested for null
 * @param entry   an entry not attached; not tested for null
 */
QEK_API void qek_tree_entry_append(qek_tree *tree, qek_tree_entry *parent, qek_tree_entry *entry);

/**
 * Attaches `entry`, with its subtree, just before `sibling`, and adds 1 to `entry_count`.
 * @param tree     the tree
 * @param sibling  an attached entry, not the root; null changes nothing
 * @param entry    an entry not attached; not tested for null
 */
QEK_API void qek_tree_entry_insert(qek_tree *tree, qek_tree_entry *sibling, qek_tree_entry *entry);

/**
 * Detaches `entry` with its subtree, which stays whole, and lowers `entry_count` by exactly 1,
 * however large the subtree: this is intended. The entry can be attached again, or disposed of by
 * qek_tree_entry_free(); until then qek_tree_term() and its like give none of it back to a borrowed
 * pool.
 * @param tree   the tree
 * @param entry  the entry; one that is null or has no parent changes nothing
 */
QEK_API void qek_tree_entry_remove(qek_tree *tree, qek_tree_entry *entry);

/**
 * Gives the last child.
 * @param entry  the entry
 * @return the last child; null if there is none
 */
QEK_API qek_tree_entry *qek_tree_entry_last(const qek_tree_entry *entry);

/**
 * Gives the next sibling, without going round.
 * @param entry  the entry
 * @return the sibling; null at the last child or if `entry` has no parent
 */
QEK_API qek_tree_entry *qek_tree_entry_next(const qek_tree_entry *entry);

/**
 * Gives the previous sibling, without going round.
 * @param entry  the entry
 * @return the sibling; null at the first child or if `entry` has no parent
 */
QEK_API qek_tree_entry *qek_tree_entry_prev(const qek_tree_entry *entry);

/**
 * Finds the first match behind `start` in pre-order within `top`. `start` itself is not tested:
 * equal to `top`, it has its whole subtree searched; an earlier result has the search go on.
 * @param top    the entry whose subtree bounds the search
 * @param start  the entry to start behind, `top` or in its subtree
 * @param a      handed to `match`
 * @param b      handed to `match`
 * @param match  gives 0 for a match; not tested for null
 * @return the entry found; null if there is none
 */
QEK_API qek_tree_entry *qek_tree_entry_find(const qek_tree_entry *top, const qek_tree_entry *start,
                                            qek_word a, qek_word b, qek_tree_match_fn match);

/**
 * Finds the nearest matching ancestor of `entry` below `top`. Neither `entry` nor `top` is tested
 * for a match.
 * @param top    the ancestor to stop below; if it is none, or null, all ancestors are tested
 * @param entry  the entry to start above
 * @param a      handed to `match`
 * @param b      handed to `match`
 * @param match  gives 0 for a match; not tested for null
 * @return the ancestor found; null if there is none
 */
QEK_API qek_tree_entry *qek_tree_entry_find_parent(const qek_tree_entry *top,
                                                   const qek_tree_entry *entry, qek_word a,
                                                   qek_word b, qek_tree_match_fn match);

/**
 * As qek_tree_entry_find(), with a context for the callback.
 * @param top      the entry whose subtree bounds the search
 * @param start    the entry to start behind, `top` or in its subtree
 * @param context  handed to `match`
 * @param a        handed to `match`
 * @param b        handed to `match`
 * @param match    gives 0 for a match; not tested for null
 * @return the entry found; null if there is none
 */
QEK_API qek_tree_entry *qek_tree_entry_find_x(const qek_tree_entry *top,
                                              const qek_tree_entry *start, qek_word context,
                                              qek_word a, qek_word b, qek_tree_match_x_fn match);

/**
 * As qek_tree_entry_find_parent(), with a context for the callback.
 * @param top      the ancestor to stop below; if it is none, or null, all ancestors are tested
 * @param entry    the entry to start above
 * @param context  handed to `match`
 * @param a        handed to `match`
 * @param b        handed to `match`
 * @param match    gives 0 for a match; not tested for null
 * @return the ancestor found; null if there is none
 */
QEK_API qek_tree_entry *qek_tree_entry_find_parent_x(const qek_tree_entry *top,
                                                     const qek_tree_entry *entry, qek_word context,
                                                     qek_word a, qek_word b,
                                                     qek_tree_match_x_fn match);

/**
 * Gives the next entry in pre-order within `top`, leaving out the subtree of `entry`.
 * @param top    the entry whose subtree bounds the walk
 * @param entry  the entry to go on from, `top` or in its subtree
 * @return the entry; null at the end of `top`, or if `entry` is `top`
 */
QEK_API qek_tree_entry *qek_tree_entry_find_next(const qek_tree_entry *top,
                                                 const qek_tree_entry *entry);

/**
 * Tells whether `entry` lies in the subtree of `ancestor`. Linear in the depth of `entry`.
 * @param ancestor  the upper entry
 * @param entry     the lower entry
 * @return 1 if `ancestor` is above `entry`; 0 if not, also if they are the same entry
 */
QEK_API int32_t qek_tree_entry_find_child(const qek_tree_entry *ancestor,
                                          const qek_tree_entry *entry);

/**
 * Gives the next entry in pre-order within `top`: the first child, else as
 * qek_tree_entry_find_next(). Start with `entry` equal to `top`, which the walk itself never gives.
 * @param top    the entry whose subtree bounds the walk
 * @param entry  the entry to go on from, `top` or in its subtree
 * @return the entry; null at the end of `top`
 */
QEK_API qek_tree_entry *qek_tree_entry_iter_next(const qek_tree_entry *top,
                                                 const qek_tree_entry *entry);

/**
 * Orders two positions in pre-order, an ancestor before its descendants. On each level below the
 * root the place among siblings counts from 1. Linear in both depths and in the places of the
 * entries passed. Entries deeper than three levels below the root take memory for the time of the
 * call; if that runs out, the steps that found no room are left out.
 * @param a  one entry
 * @param b  the other
 * @return the place of `a` minus that of `b` where their paths from the root part; the depth of `a`
 *         minus that of `b` where they do not, and so 0 for the same position
 */
QEK_API int32_t qek_tree_entry_compare(const qek_tree_entry *a, const qek_tree_entry *b);

/**
 * Exchanges all five fields of two entries, and makes each the `parent` of the children that it now
 * has. Outside links are not touched: a `first_child`, `prev` or `next` that named one of the two
 * still names that record, and is the caller's to mend. Linear in the children.
 * @param a  one entry
 * @param b  the other
 */
QEK_API void qek_tree_entry_swap(qek_tree_entry *a, qek_tree_entry *b);

/**
 * Copies a tree, root included. Pools that `source` borrows are borrowed by `target` too; pools
 * that it owns are copied into those of `target`. Links are translated into the copy, and so are
 * values if the value pool is own (each value is then 0 or an item of it); otherwise value words
 * are copied. If `source_aux_pool`, `target_aux_pool` and `clone_value` are all given, the first is
 * copied into the second beforehand. A `source` with a borrowed entry pool is outside the contract.
 * Exhausted memory faults. About linear in the memory held by the pools.
 * @param source           the tree to copy; owns its entry pool
 * @param source_aux_pool  a pool to copy along, or null
 * @param target           a freshly initialised tree with an own, unused pool for each pool that
 *                         `source` owns
 * @param target_aux_pool  a freshly initialised pool, or null
 * @param clone_value      completes each value, in pre-order from the root, if `source` owns its
 *                         value pool, also a value of 0 (as 0 and 0); may be null
 */
QEK_API void qek_tree_clone(const qek_tree *source, qek_pool *source_aux_pool, qek_tree *target,
                            qek_pool *target_aux_pool, qek_clone_fn clone_value);

/**
 * Follows a path from the root and makes what is missing. Each key of `path`, in slot order, is one
 * step: the first match in the whole subtree of the entry reached, so a step may land at any depth;
 * this is intended. A missing step becomes a new last child of the entry reached: with value 0 at
 * an inner step, with a new item of `value_pool` at the last one, on which `init_value` runs. The
 * key is not stored: a later search finds the entry only by what `match` sees in `value`.
 * @param tree        the tree; where the last entry has to be made, a null `value_pool` faults, and
 *                    so does an entry pool that gives no entry at any missing step
 * @param path        the keys; each goes to `match` as its address and length
 * @param init_value  prepares the item; may be null, and is not called if `value_pool` gives no
 *                    item (the value is then 0)
 * @param match       gives 0 for a match; meets entries of value 0 that a path insert made; not
 *                    tested for null
 * @return the entry of the last key, found or made, without a sign which; null for an empty `path`
 */
QEK_API qek_tree_entry *qek_tree_insert(qek_tree *tree, const qek_array *path,
                                        qek_value_fn init_value, qek_tree_match_fn match);

/**
 * Follows a path from the root. Each key of `path`, in slot order, is one step: the first match in
 * the whole subtree of the entry reached, so a step may land at any depth; this is intended.
 * @param tree   the tree
 * @param path   the keys; each goes to `match` as its address and length
 * @param match  gives 0 for a match; meets entries of value 0 that a path insert made; not tested
 *               for null
 * @return the entry of the last key; null if a step finds none, and for an empty `path`
 */
QEK_API qek_tree_entry *qek_tree_find(const qek_tree *tree, const qek_array *path,
                                      qek_tree_match_fn match);

/**
 * As qek_tree_insert(), with a context for `match`.
 * @param tree        the tree; where the last entry has to be made, a null `value_pool` faults, and
 *                    so does an entry pool that gives no entry at any missing step
 * @param path        the keys; each goes to `match` as its address and length
 * @param context     handed to `match`
 * @param init_value  prepares the item; may be null, and is not called if `value_pool` gives no
 *                    item (the value is then 0)
 * @param match       gives 0 for a match; meets entries of value 0 that a path insert made; not
 *                    tested for null
 * @return the entry of the last key, found or made, without a sign which; null for an empty `path`
 */
QEK_API qek_tree_entry *qek_tree_insert_x(qek_tree *tree, const qek_array *path, qek_word context,
                                          qek_value_fn init_value, qek_tree_match_x_fn match);

/**
 * As qek_tree_find(), with a context for `match`.
 * @param tree     the tree
 * @param path     the keys; each goes to `match` as its address and length
 * @param context  handed to `match`
 * @param match    gives 0 for a match; meets entries of value 0 that a path insert made; not tested
 *                 for null
 * @return the entry of the last key; null if a step finds none, and for an empty `path`
 */
QEK_API qek_tree_entry *qek_tree_find_x(const qek_tree *tree, const qek_array *path,
                                        qek_word context, qek_tree_match_x_fn match);

/**
 * Removes all entries without a callback. A borrowed entry pool gets every entry back but the root,
 * children before their parent; own pools are emptied, so entries that are not attached die too; a
 * borrowed value pool is left alone. The root, its value included, and `entry_count` become 0.
 * @param tree  the tree; stays usable
 */
QEK_API void qek_tree_remove_all(qek_tree *tree);

/**
 * Removes all entries and disposes of their values, the root's included, as by
 * qek_tree_entry_free() from the root. Then own pools are emptied, so entries that are not attached
 * die too, and the root and `entry_count` become 0. Linear; nothing is walked without a callback,
 * with an own entry pool and no borrowed value pool.
 * @param tree        the tree; stays usable
 * @param free_value  disposes of what a value holds; may be null
 */
QEK_API void qek_tree_free_all(qek_tree *tree, qek_value_fn free_value);

/** @} */

/* ============================================================================================== */
/**
 * @defgroup bitree Binary tree (bitree)
 * The storage half of a binary search tree: entries with links for less, greater and equal, and a
 * word.
 *
 * The family does not search, order or balance. The caller walks the links, decides where a new
 * entry belongs, and hangs it there with qek_bitree_entry_add(). What it gets is entries from a
 * pool, links kept on adding and swapping, and cleanup and copy of the whole tree. The root is part
 * of the record and at its address, so `&bitree.root` goes wherever an entry is wanted; `value` is
 * set by writing it. No call removes a single entry.
 *
 * Cost: adding is constant time; cleanup is linear; see qek_bitree_clone() for copying.
 *
 * Take another family when: the library is to do the searching (use @ref btree), entries are to be
 * removed one at a time (use @ref btree or @ref hash), or an entry has any number of children (use
 * @ref tree).
 *
 * @code{.c}
 * static void example_bitree(void)
 * {
 *     static const qek_word keys[] = {3, 8, 5, 5};
 *     qek_bitree bitree;
 *     int32_t i, side = 0;
 *     qek_bitree_init(&bitree, 1, 0);
 *     bitree.root.value = 5;
 *     for (i = 0; i < 4; i++) {
 *         qek_bitree_entry *at = &bitree.root, *down = at, *made = qek_bitree_entry_new(&bitree);
 *         while (down != NULL) {
 *             at = down;
 *             side = (int32_t)keys[i] - (int32_t)at->value;
 *             down = side < 0 ? at->less : side > 0 ? at->greater : at->equal;
 *         }
 *         made->value = keys[i];
 *         qek_bitree_entry_add(&bitree, at, side, made);
 *     }
 *     assert(bitree.root.less->value == 3 && bitree.root.equal->equal->value == 5);
 *     qek_bitree_term(&bitree);
 * }
 * @endcode
 * @{
 */

/**
 * An entry of a bitree.
 *
 * The entries of one key form a chain through `equal`, side by side under one parent.
 */
typedef struct qek_bitree_entry {
    struct qek_bitree_entry *parent;  /**< the entry above; on a chain, that of the chain's head */
    struct qek_bitree_entry *equal;   /**< next entry of the same key; null at the chain's end */
    struct qek_bitree_entry *less;    /**< subtree on the lesser side; null if there is none */
    struct qek_bitree_entry *greater; /**< subtree on the greater side; null if there is none */
    qek_word value;                   /**< the caller's word; 0 in a new entry */
} qek_bitree_entry;

/**
 * A bitree.
 *
 * To borrow a pool, clear its flag in qek_bitree_init() and write the field: `entry_pool` before or
 * after, `value_pool` after. An entry pool has the `item_size` of `qek_bitree_entry`.
 */
typedef struct qek_bitree {
    qek_bitree_entry root;   /**< the root entry */
    int32_t entry_count;     /**< entries added; without the root */
    qek_pool *entry_pool;    /**< where entries come from; must be there before the first entry */
    int32_t owns_entry_pool; /**< not 0: the bitree made `entry_pool` and ends it */
    qek_pool *value_pool;    /**< where the caller takes value items from; null: none */
    int32_t owns_value_pool; /**< not 0: the bitree made `value_pool` and ends it */
} qek_bitree;

/**
 * Makes an empty bitree: root and all fields 0, then the pools asked for. `entry_pool` alone is
 * left as it stands unless it is made, unlike in qek_tree_init(): do not count on its being null.
 * Exhausted memory faults.
 * @param bitree          the record; what it held is not looked at
 * @param own_entry_pool  not 0: make an entry pool, with its `item_size` set; 0: `entry_pool` is
 *                        the caller's to write
 * @param own_value_pool  not 0: make a value pool, whose `item_size` the caller writes before
 *                        taking an item with qek_pool_new(); 0: `value_pool` is null until the
 *                        caller writes it
 */
QEK_API void qek_bitree_init(qek_bitree *bitree, int32_t own_entry_pool, int32_t own_value_pool);

/**
 * Gives up all entries under the root. An own pool is ended and its field becomes null. A borrowed
 * entry pool gets every entry back but the root, each behind its `less`, `greater` and `equal`
 * subtrees, in that order; a borrowed value pool is left alone. No value goes to a callback or back
 * to a pool. The root and `entry_count` become 0; the own-pool flags stay as they are, which is
 * intended. Linear with a borrowed entry pool. Entries that no link leads to are not reached.
 * @param bitree  the bitree; needs qek_bitree_init() before anything else
 */
QEK_API void qek_bitree_term(qek_bitree *bitree);

/**
 * Takes an entry from `entry_pool` and clears it, also a recycled one. It is not attached and not
 * counted. The same operation as qek_tree_entry_new().
 * @param bitree  the bitree, with an `entry_pool`
 * @return the entry; null if the pool gives none (its `item_size` is 0)
 */
QEK_API qek_bitree_entry *qek_bitree_entry_new(qek_bitree *bitree);

/**
 * Disposes of the subtrees `less`, `greater` and `equal` of `entry`, in that order, and then of
 * `entry`. At each entry a `value` that is not 0 goes to `free_value` and then, as an item, back to
 * a borrowed value pool; then the entry, unless it is the root, goes back to a borrowed entry pool.
 * Nothing goes back to an own pool: it gets its memory back when the bitree is emptied. Links to
 * `entry` from above stay, and `entry_count` does not change. Linear in the subtree, in constant
 * space: links below `entry` are turned while it runs, so `free_value` must not read them.
 * @param bitree      the bitree that `entry` was made for
 * @param entry       the top of the subtree; the rest of its chain behind it is part of that; not
 *                    tested for null
 * @param free_value  disposes of what a value holds; may be null
 */
QEK_API void qek_bitree_entry_free(qek_bitree *bitree, qek_bitree_entry *entry,
                                   qek_value_fn free_value);

/**
 * Hangs `new_entry` on `entry`, sets its `parent`, and adds 1 to `entry_count`. The link taken is
 * overwritten unread: what hung there is no longer reached, so descend to a free place first, and
 * lengthen an `equal` chain at its last entry.
 * @param bitree     the bitree
 * @param entry      the entry to hang it on
 * @param side       the sign of the new key's comparison with that of `entry`: negative is `less`,
 *                   positive `greater`, both with `entry` as parent; 0 is `equal`, with the parent
 *                   of `entry` as parent (null, on the root)
 * @param new_entry  the entry to add; only its `parent` is written
 */
QEK_API void qek_bitree_entry_add(qek_bitree *bitree, qek_bitree_entry *entry, int32_t side,
                                  qek_bitree_entry *new_entry);

/**
 * Exchanges all five fields of two entries. Each becomes the `parent` of its new `less` and
 * `greater`, and every entry down its new `equal` chain gets its new `parent`. Links that name one
 * of the two from above, or from an earlier place on a chain, still name that record and are the
 * caller's to mend. Linear in the chains.
 * @param a  one entry
 * @param b  the other
 */
QEK_API void qek_bitree_entry_swap(qek_bitree_entry *a, qek_bitree_entry *b);

/**
 * Copies a bitree, root included. A value pool that `source` borrows is borrowed by `target` too;
 * an entry pool is not, unlike in qek_tree_clone(). Pools that `source` owns are copied into those
 * of `target`. Links are translated into the copy, and so are values if the value pool is own (each
 * value is then 0 or an item of it); otherwise value words are copied. If `source_aux_pool`,
 * `target_aux_pool` and `clone_value` are all given, the first is copied into the second
 * beforehand. A `source` with a borrowed entry pool is outside the contract. Exhausted memory
 * faults. The entry at place k behind the head of an `equal` chain is visited 2^(k-1) times, with
 * all that hangs on it: this is intended. So `clone_value` must bear being run again on the same
 * pair, and long chains are costly.
 * @param source           the bitree to copy; owns its entry pool
 * @param source_aux_pool  a pool to copy along, or null
 * @param target           a freshly initialised bitree with an own, unused pool for each pool that
 *                         `source` owns
 * @param target_aux_pool  a freshly initialised pool, or null
 * @param clone_value      completes each value, an entry before its `less`, `greater` and `equal`,
 *                         if `source` owns its value pool, also a value of 0 (as 0 and 0); may be
 *                         null
 */
QEK_API void qek_bitree_clone(const qek_bitree *source, qek_pool *source_aux_pool,
                              qek_bitree *target, qek_pool *target_aux_pool,
                              qek_clone_fn clone_value);

/**
 * Removes all entries without a callback. A borrowed entry pool gets back every entry but the root,
 * in the order of qek_bitree_term(); own pools are emptied; a borrowed value pool is left alone.
 * The root, its value included, and `entry_count` become 0.
 * @param bitree  the bitree; stays usable
 */
QEK_API void qek_bitree_remove_all(qek_bitree *bitree);

/**
 * Removes all entries and disposes of their values, the root's included, as by
 * qek_bitree_entry_free() from the root. Then own pools are emptied, and the root and `entry_count`
 * become 0. Linear; nothing is walked without a callback, with an own entry pool and no borrowed
 * value pool.
 * @param bitree      the bitree; stays usable
 * @param free_value  disposes of what a value holds; may be null
 */
QEK_API void qek_bitree_free_all(qek_bitree *bitree, qek_value_fn free_value);

/** @} */

#ifdef __cplusplus
}
#endif

#endif /* QEK_STD_H */
