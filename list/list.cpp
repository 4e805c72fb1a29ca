// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The qek_std authors

// The list with a byte-string key beside each value. Links are linked.h, key text stream/keys.h.

#include "list/linked.h"
#include "stream/keys.h"
#include "text/separated.h"

using namespace qek;

namespace {

using node = qek_list_node;

// A key to be stored is measured once there is a node for it, and without a look at null. Looking
// up is more tolerant.
keys::text raw(const void *key, std::int32_t length) noexcept { return {as_bytes(key), length}; }

[[gnu::noinline]] node *new_entry(qek_list &list, keys::text key, qek_word value) noexcept
{
    node *made = list::new_node(list);
    if (made != nullptr) {
        keys::store(list.keys, *made, keys::measured_strictly(key));
        made->value = value;
    }
    return made;
}

// The same where no key and an item at hand are usual: then there is nothing to keep for a call.
node *entry_at_hand(qek_list &list, keys::text key, qek_word value) noexcept
{
    // Null that has to be measured faults there, and a test that faults leaves no counts.
    const bool has_no_key = key.bytes == nullptr && key.length >= 0; // GCOVR_EXCL_BR_LINE: the same
    node *made = has_no_key ? pool::cleared<node, pool::take_at_hand>(*list.node_pool) : nullptr;
    if (made == nullptr) {
        return new_entry(list, key, value);
    }
    made->key_offset = static_cast<std::uint32_t>(list.keys.length);
    made->value = value;
    return made;
}

// The value is prepared before the key is stored.
node *new_entry_with_item(qek_list &list, keys::text key, qek_value_fn init_value) noexcept
{
    node *made = list::new_node(list);
    if (made != nullptr) {
        made->value = pool::new_value(list.value_pool, init_value);
        keys::store(list.keys, *made, keys::measured_strictly(key));
    }
    return made;
}

auto making(qek_list &list, keys::text key, qek_word value) noexcept
{
    return [&list, key, value] { return new_entry(list, key, value); };
}

auto making_at_hand(qek_list &list, keys::text key, qek_word value) noexcept
{
    return [&list, key, value] { return entry_at_hand(list, key, value); };
}

auto making_item(qek_list &list, keys::text key, qek_value_fn init_value) noexcept
{
    return [&list, key, init_value] { return new_entry_with_item(list, key, init_value); };
}

void add_head_list(qek_list &list, const qek_list &other) noexcept
{
    for (const node *at = other.tail; at != nullptr; at = at->prev) {
        list::add_head(list, making(list, keys::text_of(other.keys, *at), at->value));
    }
}

void add_tail_list(qek_list &list, const qek_list &other) noexcept
{
    for (const node *at = other.head; at != nullptr; at = at->next) {
        list::add_tail(list, making(list, keys::text_of(other.keys, *at), at->value));
    }
}

qek_word read(const qek_list &list, const node *at, std::uint8_t *&key,
              std::int32_t &length) noexcept
{
    key = at == nullptr ? nullptr : list.keys.data + at->key_offset;
    length = at == nullptr ? 0 : at->key_length;
    return pool::value_of(at);
}

qek_word read_and_step(const qek_list &list, node *&at, node *node::*link, std::uint8_t *&key,
                       std::int32_t &length) noexcept
{
    const qek_word value = read(list, at, key, length);
    list::step(at, link);
    return value;
}

node *find(const qek_list &list, keys::text key) noexcept
{
    return list::find(
        list, [&](const node &at) { return keys::equal(keys::text_of(list.keys, at), key); });
}

void forget_key(node &removed) noexcept
{
    removed.key_offset = 0;
    removed.key_length = 0;
}

// The key text closes up at once, and every other entry follows.
[[gnu::noinline]] qek_word remove_with_key(qek_list &list, node *at) noexcept
{
    return list::remove(list, at, [&](node &removed) {
        const keys::run gone = keys::run_of(removed);
        keys::erase(list.keys, gone);
        list::for_each(list, [&](node &other) { keys::follow_removal(other, gone); });
        forget_key(removed);
    });
}

qek_word remove(qek_list &list, node *at) noexcept
{
    // Without entries, a node that went with the others is not looked at.
    const bool has_key = at != nullptr && list.head != nullptr && at->key_length > 0;
    return has_key ? remove_with_key(list, at) : list::remove(list, at, forget_key);
}

void remove_all(qek_list &list) noexcept
{
    buffer::shrink<buffer::stream_form>(list.keys, 0);
    list::remove_all(list);
}

void term(qek_list &list) noexcept
{
    buffer::release(list.keys);
    list::term(list);
}

// Node addresses go through the map of the auxiliary pool here, and the node pool's own map goes to
// the callback. That names no node, so a list that holds any cannot be cloned, and stops right
// there: the crossing belongs to the interface, the damage that it would do does not.
void clone(const qek_list &source, qek_list &target, qek_pool *source_aux, qek_pool *target_aux,
           qek_clone_fn clone_value) noexcept
{
    list::share_pools(source, target);
    buffer::clone<buffer::stream_form>(source.keys, target.keys);
    const pool::value_copier copier(source_aux, target_aux, clone_value);
    const pool::translation nodes(source.owns_node_pool != 0, source.node_pool, target.node_pool);
    const pool::translation values(source.owns_value_pool != 0, source.value_pool,
                                   target.value_pool);
    if (source.head != nullptr) { // GCOVR_EXCL_BR_LINE: a test that faults leaves no counts
        __builtin_trap();         // GCOVR_EXCL_LINE: the same
    }
    target.count = source.count;
}

// A negative length adds nothing.
void read_items(qek_list &list, std::uint8_t separator, const void *text,
                std::int32_t length) noexcept
{
    text::for_each_item(separator, text, length, [&](const qek_char &item) {
        list::add_tail(list, making(list, {item.data, item.length}, 0));
    });
}

void write_keys(const qek_list &list, std::uint8_t separator, qek_string &target) noexcept
{
    const node *at = list.head;
    text::join(target, separator, list.count, list.keys.length, [&](std::int32_t) {
        const keys::text key = keys::text_of(list.keys, *at);
        qek_string_append(&target, key.bytes, key.length);
        at = at->next;
    });
}

} // namespace

void qek_list_init(qek_list *list, int32_t own_node_pool, int32_t own_value_pool)
{
    list::init(*list, own_node_pool, own_value_pool);
}

void qek_list_term(qek_list *list) { term(*list); }

void qek_list_swap(qek_list *a, qek_list *b) { exchange(*a, *b); }

void qek_list_clone(const qek_list *source, qek_pool *source_aux_pool, qek_list *target,
                    qek_pool *target_aux_pool, qek_clone_fn clone_value)
{
    clone(*source, *target, source_aux_pool, target_aux_pool, clone_value);
}

qek_list_node *qek_list_add_head(qek_list *list, const void *key, int32_t key_length,
                                 qek_word value)
{
    return list::add_head(*list, making_at_hand(*list, raw(key, key_length), value));
}

qek_list_node *qek_list_add_tail(qek_list *list, const void *key, int32_t key_length,
                                 qek_word value)
{
    return list::add_tail(*list, making_at_hand(*list, raw(key, key_length), value));
}

void *qek_list_add_head_new(qek_list *list, const void *key, int32_t key_length,
                            qek_value_fn init_value)
{
    return list::item_of(
        list::add_head(*list, making_item(*list, raw(key, key_length), init_value)));
}

void *qek_list_add_tail_new(qek_list *list, const void *key, int32_t key_length,
                            qek_value_fn init_value)
{
    return list::item_of(
        list::add_tail(*list, making_item(*list, raw(key, key_length), init_value)));
}

void qek_list_add_head_list(qek_list *list, const qek_list *other) { add_head_list(*list, *other); }

void qek_list_add_tail_list(qek_list *list, const qek_list *other) { add_tail_list(*list, *other); }

qek_list_node *qek_list_insert_before(qek_list *list, qek_list_node *position, const void *key,
                                      int32_t key_length, qek_word value)
{
    return list::insert_before(*list, position, making(*list, raw(key, key_length), value));
}

qek_list_node *qek_list_insert_after(qek_list *list, qek_list_node *position, const void *key,
                                     int32_t key_length, qek_word value)
{
    return list::insert_after(*list, position, making(*list, raw(key, key_length), value));
}

qek_list_node *qek_list_get_head_position(const qek_list *list) { return list->head; }

qek_list_node *qek_list_get_tail_position(const qek_list *list) { return list->tail; }

qek_word qek_list_get_head(const qek_list *list, uint8_t **key_out, int32_t *key_length_out)
{
    return read(*list, list->head, *key_out, *key_length_out);
}

qek_word qek_list_get_tail(const qek_list *list, uint8_t **key_out, int32_t *key_length_out)
{
    return read(*list, list->tail, *key_out, *key_length_out);
}

qek_word qek_list_get_prev(const qek_list *list, qek_list_node **position_inout, uint8_t **key_out,
                           int32_t *key_length_out)
{
    return read_and_step(*list, *position_inout, &qek_list_node::prev, *key_out, *key_length_out);
}

qek_word qek_list_get_next(const qek_list *list, qek_list_node **position_inout, uint8_t **key_out,
                           int32_t *key_length_out)
{
    return read_and_step(*list, *position_inout, &qek_list_node::next, *key_out, *key_length_out);
}

qek_word qek_list_get_at(const qek_list *list, const qek_list_node *position, uint8_t **key_out,
                         int32_t *key_length_out)
{
    return read(*list, position, *key_out, *key_length_out);
}

qek_list_node *qek_list_find(const qek_list *list, const void *key, int32_t key_length)
{
    return find(*list, keys::given(key, key_length));
}

qek_word qek_list_remove_head(qek_list *list) { return remove(*list, list->head); }

qek_word qek_list_remove_tail(qek_list *list) { return remove(*list, list->tail); }

qek_word qek_list_remove_at(qek_list *list, qek_list_node *position)
{
    return remove(*list, position);
}

void qek_list_remove_all(qek_list *list) { remove_all(*list); }

void qek_list_from_string(qek_list *list, uint8_t separator, const void *text, int32_t text_length)
{
    read_items(*list, separator, text, text_length);
}

void qek_list_to_string(const qek_list *list, uint8_t separator, qek_string *target)
{
    write_keys(*list, separator, *target);
}
