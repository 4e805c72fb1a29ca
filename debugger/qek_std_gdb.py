# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
"""What gdb shows of the records of qek_std: their contents instead of their fields.

gdb loads this by itself with the installed library (docs/guide.md, "In the debugger"), or on
`source qek_std_gdb.py`. `print/r RECORD` shows the plain fields.

A record is shown as it stands in memory, and that may be anything: one that was never initialised,
one that was overwritten. So nothing is believed before it is checked, no walk visits a place twice
or goes on without end, and what is wrong becomes a note in the output:

    $1 = qek_hash, 3 entries, 4 buckets = {["north"] = 1, <damaged> = a chain comes back to itself}

Contents are walked as gdb asks for them, so that `set print elements` bounds the work.
"""
import struct

import gdb
import gdb.printing

STEPS = 20000   # of one walk, whatever the record says
TEXT = 200      # units of a text or bytes of a key that are shown
KEY = 4096      # bytes of a key that are compared
WAY = 60        # letters of the way to an entry of a tree
MOST = 1 << 30  # what no count of a sound record gets past


class Damage(Exception):
    """The record cannot be what it says; the text tells why."""


class Enough(Exception):
    """A walk was left, though nothing is wrong with it."""


def number(value):
    return int(value)


def address(value):
    return int(value)


def read(at, size):
    if size <= 0:
        return b''
    if at == 0:
        raise Damage('null where there should be memory')
    try:
        return bytes(gdb.selected_inferior().read_memory(at, size))
    except gdb.MemoryError:
        raise Damage('no memory can be read at %#x' % at) from None


def follow(pointer):
    """The record behind a pointer, with its bytes tested."""
    read(address(pointer), pointer.type.target().sizeof)
    return pointer.dereference()


class Item:
    """A hash entry or a node of an ordered tree. Records reach them by words alone, so a program
    may have no debug information on them: they are read by what qek_std.h says of them."""
    layouts = {
        'hash': 'next * hash 4 key_offset 4 key_length 4 value *',
        'hashd': 'next * key 4 value *',
        'hashx': 'next * key 8 value *',
        'hasht': 'next * key 16 value *',
        'btree': 'key_offset 4 key_length 4 prev * next * value *',
        'btreed': 'key 4 prev * next * value *',
        'btreex': 'key 8 prev * next * value *',
    }

    def __init__(self, family, at, word):
        """`word` is the type qek_word."""
        kinds = {'*': word, '8': gdb.lookup_type('unsigned long long')}
        offset, words, self.fields = 0, self.layouts[family].split(), {}
        for name, size in zip(words[::2], words[1::2]):
            signed = '' if name == 'key_length' else 'unsigned '
            kind = kinds.get(size) or gdb.lookup_type(signed + 'int')
            offset += -offset % kind.alignof
            self.fields[name] = (kind, at + offset)
            offset += kind.sizeof if size == '*' else int(size)
        read(at, offset)

    def __getitem__(self, name):
        kind, at = self.fields[name]
        return gdb.Value(at).cast(kind.pointer()).dereference()


def between(what, value, low, high):
    if not low <= value <= high:
        raise Damage('%s is %d' % (what, value))
    return value


def limit():
    """How many units gdb is set to show of one text."""
    shown = gdb.parameter('print elements')
    return min(shown, TEXT) if shown else TEXT


def quoted(units):
    """Units as a C literal; what is not printable ASCII is escaped."""
    short = {7: '\\a', 8: '\\b', 9: '\\t', 10: '\\n', 13: '\\r', 34: '\\"', 92: '\\\\'}
    parts = []
    for unit in units:
        if unit in short:
            parts.append(short[unit])
        elif 32 <= unit < 127:
            parts.append(chr(unit))
        else:
            parts.append('\\x%02x' % unit if unit < 256 else '\\u%04x' % unit)
    return '"%s"' % ''.join(parts)


def text_at(at, length, width=1):
    shown = min(length, limit())
    data = read(at, shown * width)
    units = data if width == 1 else wide_units(data)
    return quoted(units) + ('...' if shown < length else '')


def wide_units(data):
    order = '>' if 'big' in gdb.execute('show endian', to_string=True) else '<'
    return struct.unpack('%s%dH' % (order, len(data) // 2), data)


def many(count, one, several=None):
    return '%d %s' % (count, one if count == 1 else several or one + 's')


class Walk:
    """Counts the steps of one walk and notes where it has been."""

    def __init__(self):
        self.left = STEPS
        self.been = set()

    def step(self, at=None, what='the walk'):
        self.left -= 1
        if self.left < 0:
            raise Enough('%s was left after %d steps' % (what, STEPS))
        if at is not None:
            if at in self.been:
                raise Damage('%s comes back to itself at %#x' % (what, at))
            self.been.add(at)


class Printer:
    """A record: `headline` says what it is, `contents` yields (name, value); both may find damage."""

    def __init__(self, value):
        self.value = value
        self.name = value.type.strip_typedefs().unqualified().tag

    def headline(self):
        return ''

    def to_string(self):
        try:
            return '%s, %s' % (self.name, self.headline())
        except Damage as damage:
            return '%s, <damaged: %s>' % (self.name, damage)
        except gdb.MemoryError:
            return '%s, <damaged: it cannot be read>' % self.name


class Container(Printer):
    def contents(self):
        raise NotImplementedError

    def children(self):
        try:
            self.headline() # what is damaged there is in the headline, and ends it
        except (Damage, gdb.MemoryError):
            return
        try:
            yield from self.contents()
        except Enough as enough:
            yield '<more>', str(enough)
        except Damage as damage:
            yield '<damaged>', str(damage)
        except gdb.MemoryError:
            yield '<damaged>', 'the record cannot be read'

    def settle(self, seen, said, what):
        if seen != said:
            raise Damage('%s says %d, the walk met %d' % (what, said, seen))


# Texts and bytes.

class Buffer(Printer):
    """stream, string and wchar: a buffer, a length, a capacity."""
    width, spare = 1, 1

    def bounds(self):
        at = address(self.value['data'])
        capacity = between('capacity', number(self.value['capacity']), 0, 2**31 - 1)
        length = between('length', number(self.value['length']), 0, 2**31 - 1)
        if at == 0 and capacity:
            raise Damage('data is null with a capacity of %d' % capacity)
        if length > capacity:
            raise Damage('length %d is above capacity %d' % (length, capacity))
        return at, length, capacity

    def headline(self):
        at, length, capacity = self.bounds()
        if at == 0:
            return 'no buffer'
        text = text_at(at, length, self.width)
        if any(read(at + length * self.width, self.width)):
            raise Damage('%s lacks its terminator' % text)
        return '%s, length %d of %d' % (text, length, capacity)


class Wide(Buffer):
    width = 2


class Stream(Buffer):
    def headline(self):
        at, length, capacity = self.bounds()
        if at == 0:
            return 'no buffer'
        shown = min(length, limit())
        data = ' '.join('%02x' % byte for byte in read(at, shown))
        dots = '...' if shown < length else ''
        return '%d of %s%s' % (length, many(capacity, 'byte'), data and ': ' + data + dots)


class Slice(Printer):
    def headline(self):
        at, length = address(self.value['data']), number(self.value['length'])
        if at == 0:
            return 'no text'
        if length >= 0:
            return '%s, length %d' % (text_at(at, length), length)
        data = b''
        while len(data) < limit(): # one by one: the memory may end behind the terminator
            byte = read(at + len(data), 1)
            if byte == b'\0':
                return '%s, not measured' % quoted(data)
            data += byte
        return '%s..., not measured' % quoted(data)


class View(Printer):
    def headline(self):
        at, offset = address(self.value['data']), number(self.value['offset'])
        length = number(self.value['length'])
        if at == 0:
            return 'no text'
        if length < 0:
            return 'length %d' % length
        return '%s, length %d at offset %d' % (text_at(at + offset, length), length, offset)


# Pools.

def check_table(table, what, per_block):
    used = between(what + '.used', number(table['used']), 0, MOST)
    capacity = between(what + '.capacity', number(table['capacity']), 0, MOST)
    slot = number(table['next_slot'])
    if used > capacity:
        raise Damage('%s.used %d is above its capacity %d' % (what, used, capacity))
    if used == 0:
        if slot != -1:
            raise Damage('%s.next_slot is %d without a block' % (what, slot))
        return 0
    between(what + '.next_slot', slot, 0, per_block)
    width = table['blocks'].type.sizeof
    blocks = read(address(table['blocks']), min(used, STEPS) * width)
    for at in range(0, len(blocks), width):
        if not any(blocks[at:at + width]):
            raise Damage('%s.blocks[%d] is null' % (what, at // width))
    return (used - 1) * per_block + slot


class Pool(Printer):
    def headline(self):
        pool = self.value
        size = between('item_size', number(pool['item_size']), 0, MOST)
        per_block = between('items_per_block', number(pool['items_per_block']), 0, MOST)
        taken = check_table(pool['items'], 'items', per_block)
        freed = check_table(pool['freed'], 'freed', per_block)
        live = number(pool['live_count'])
        if live != taken - freed:
            raise Damage('live_count is %d, but %d were taken and %d freed' % (live, taken, freed))
        return '%d live, %d freed, %s of %s, %d a block' % (
            live, freed, many(number(pool['items']['used']), 'block'),
            many(size, 'byte') + ' an item', per_block)


class Iter(Printer):
    def headline(self):
        pool = self.value['pool']
        if address(pool) == 0:
            raise Damage('pool is null')
        return 'block %d, slot %d of the pool at %#x: %s' % (
            number(self.value['block']), number(self.value['slot']), address(pool),
            Pool(follow(pool)).headline())


# Arrays.

def slots_of(array):
    """The count of an array, checked; its slots are read one by one."""
    count = between('count', number(array['count']), 0, MOST)
    capacity = between('capacity', number(array['capacity']), 0, MOST)
    if count > capacity:
        raise Damage('count %d is above capacity %d' % (count, capacity))
    if capacity and address(array['slots']) == 0:
        raise Damage('slots is null with a capacity of %d' % capacity)
    return count


class Array(Container):
    def headline(self):
        count = slots_of(self.value)
        return many(count, 'slot') + (', reversed' if number(self.value['reversed']) else '')

    def contents(self):
        walk = Walk()
        for at in range(slots_of(self.value)):
            walk.step(None, 'the array')
            slot = follow(self.value['slots'] + at)
            yield self.pair(at, slot)

    def pair(self, at, slot):
        return '[%d]' % at, slot


class NumberPairs(Array):
    def pair(self, at, slot):
        return '[%d]' % number(slot['key']), slot['value']


def key_text(keys, element):
    """The key text of an element, of which the stream `keys` has all."""
    at, length, _ = Stream(keys).bounds()
    offset, size = number(element['key_offset']), number(element['key_length'])
    if size < 0 or offset + size > length:
        raise Damage('a key of %d bytes at %d is outside of the %d bytes of keys'
                     % (size, offset, length))
    return text_at(at + offset, size) if size else '""'


class TextPairs(Array):
    def pair(self, at, slot):
        return '[%s]' % key_text(self.value['keys'], slot), slot['value']


class Tiny(Container):
    def headline(self):
        count = between('count', number(self.value['count']), 0, MOST)
        capacity = between('capacity', number(self.value['capacity']), 0, MOST)
        if count > capacity:
            raise Damage('count %d is above capacity %d' % (count, capacity))
        return many(count, 'number') + (', descending' if number(self.value['reversed']) else '')

    def contents(self):
        for at in range(number(self.value['count'])):
            inline = self.value['inline_slots']
            yield '[%d]' % at, inline[at] if at < 4 else follow(self.value['overflow'] + (at - 4))


class Bits(Container):
    def headline(self):
        size = number(self.value['size'])
        if address(self.value['data']) == 0 and size:
            raise Damage('data is null with a size of %d' % size)
        return '%d bits; those that are set' % (size * 8)

    def contents(self):
        at, size = address(self.value['data']), number(self.value['size'])
        for begin in range(0, min(size, STEPS), 64):
            data = read(at + begin, min(64, size - begin))
            for index, byte in enumerate(data):
                for bit in range(8):
                    if byte & (0x80 >> bit):
                        yield '[%d]' % ((begin + index) * 8 + bit), gdb.Value(1)
        if size > STEPS:
            raise Enough('%d bytes were looked at' % STEPS)


# Hash tables.

class Hash(Container):
    def headline(self):
        count = between('entry_count', number(self.value['entry_count']), 0, MOST)
        try:
            buckets = slots_of(self.value['buckets'])
        except Damage as damage:
            raise Damage('buckets: %s' % damage) from None
        if buckets and (buckets < 4 or buckets & (buckets - 1)):
            raise Damage('buckets.count is %d, no power of two from 4 on' % buckets)
        if buckets == 0 and count:
            raise Damage('%s without buckets' % many(count, 'entry', 'entries'))
        return '%s, %s' % (many(count, 'entry', 'entries'), many(buckets, 'bucket'))

    def key(self, entry):
        return '[%d]' % number(entry['key'])

    def number_of(self, entry):
        return number(entry['key'])

    def contents(self):
        walk, seen, buckets = Walk(), 0, self.value['buckets']
        family, word = self.name[len('qek_'):], buckets['slots'].type.target()
        count = number(buckets['count'])
        for bucket in range(count):
            walk.step(None, 'the table')
            at = address(follow(buckets['slots'] + bucket))
            while at:
                walk.step(at, 'a chain')
                entry = Item(family, at, word)
                hashed = self.number_of(entry)
                if hashed is not None and hashed % count != bucket:
                    raise Damage('the entry at %#x is in bucket %d and not %d'
                                 % (at, bucket, hashed % count))
                yield self.key(entry), entry['value']
                seen += 1
                at = address(entry['next'])
        self.settle(seen, number(self.value['entry_count']), 'entry_count')


class TextHash(Hash):
    def key(self, entry):
        return '[%s]' % key_text(self.value['keys'], entry)

    def number_of(self, entry):
        return number(entry['hash'])


class WideHash(Hash):
    def key(self, entry):
        return '[%s]' % read(entry.fields['key'][1], 16).hex()

    def number_of(self, entry):
        return None # a checksum of the bytes, which is left to the library


# Ordered trees.

class Btree(Container):
    """A tree of numbers; `key_type` says how they are ordered."""

    def headline(self):
        count = between('node_count', number(self.value['node_count']), 0, MOST)
        level = between('root.level', number(self.value['root']['level']), 0, 31)
        self.key_type()
        return '%s, %s' % (many(count, 'key'), many(level + 1, 'level'))

    def key_type(self):
        return between('key_type', number(self.value['key_type']), 1, 6)

    def key(self, node):
        bits = self.value['root']['key'].type.sizeof * 8
        key = number(node['key'])
        if self.key_type() in (1, 3):
            return key - (1 << bits) if key >> (bits - 1) else key
        if self.key_type() in (5, 6):
            code = ('=I', '=f') if bits == 32 else ('=Q', '=d')
            return struct.unpack(code[1], struct.pack(code[0], key))[0]
        return key

    def shown(self, key):
        return '[%s]' % (repr(key) if isinstance(key, float) else key)

    def ascends(self, before, key):
        return not key < before if isinstance(key, float) else before < key

    def contents(self):
        walk, seen, before = Walk(), 0, None
        for node in self.nodes(walk, self.value['root'], number(self.value['root']['level'])):
            key = self.key(node)
            if before is not None and not self.ascends(before, key):
                raise Damage('%s stands behind %s' % (self.shown(key), self.shown(before)))
            yield self.shown(key), node['value']
            seen, before = seen + 1, key
        self.settle(seen, number(self.value['node_count']), 'node_count')

    def nodes(self, walk, page, level):
        found = number(page['level'])
        if found != level:
            raise Damage('a page of level %d where one of level %d belongs' % (found, level))
        children = page['children']
        count = slots_of(children)
        if count > 31:
            raise Damage('a page has %d children' % count)
        for index in range(count):
            at = address(follow(children['slots'] + index))
            walk.step(at, 'the tree')
            if level == 0:
                yield Item(self.name[len('qek_'):], at, children['slots'].type.target())
                continue
            below = follow(gdb.Value(at).cast(page.type.pointer()))
            if address(below['parent']) != address(page.address):
                raise Damage('the page at %#x names another parent' % at)
            yield from self.nodes(walk, below, level - 1)


class TextBtree(Btree):
    def headline(self):
        return super().headline() + (', any case' if number(self.value['ignore_case']) else '')

    def key_type(self):
        return 0

    def key(self, node):
        return node

    def shown(self, key):
        return '[%s]' % key_text(self.value['keys'], key)

    def ascends(self, before, key):
        if number(self.value['ignore_case']): # by a locale that gdb does not know
            return True
        low, high = self.head_of(before), self.head_of(key)
        return low < high or low == high and len(low) == KEY

    def head_of(self, node):
        key_text(self.value['keys'], node) # tests the range
        size = min(number(node['key_length']), KEY)
        return read(address(self.value['keys']['data']) + number(node['key_offset']), size)


# Lists.

class List(Container):
    blocks = False

    def headline(self):
        count = between('count', number(self.value['count']), 0, MOST)
        head, tail = address(self.value['head']), address(self.value['tail'])
        if (head == 0) != (tail == 0):
            raise Damage('one of head and tail is null')
        return many(count, 'word' if self.blocks else 'node')

    def items(self, node, at):
        yield '[%d]' % at, node['value']

    def contents(self):
        walk, seen, before, at = Walk(), 0, 0, address(self.value['head'])
        kind = self.value['head'].type
        while at:
            walk.step(at, 'the list')
            node = follow(gdb.Value(at).cast(kind))
            if address(node['prev']) != before:
                raise Damage('the node at %#x names another one before it' % at)
            for item in self.items(node, seen):
                yield item
                seen += 1
            before, at = at, address(node['next'])
        if before != address(self.value['tail']):
            raise Damage('the list does not end at its tail')
        self.settle(seen, number(self.value['count']), 'count')


class TextList(List):
    def items(self, node, at):
        yield '[%d] %s' % (at, key_text(self.value['keys'], node)), node['value']


class BlockList(List):
    blocks = True

    def items(self, node, at):
        for index in range(between('used', number(node['used']), 1, 32)):
            yield '[%d]' % (at + index), node['items'][index]


# Trees that the caller arranges. An entry is named by its way from the root; the ways go without
# the call stack, which a tree that is a million deep would break.

class Tree(Container):
    def headline(self):
        count = between('entry_count', number(self.value['entry_count']), 0, MOST)
        return many(count, 'entry', 'entries') + ' below the root'

    def contents(self):
        walk, seen = Walk(), 0
        root = self.value['root']
        ways = [('root', root, address(root.address))]
        while ways:
            way, entry, at = ways.pop()
            yield way, entry['value']
            seen += 1
            below = []
            for name, child in self.below(walk, entry, at):
                path = way + name
                if len(path) > WAY:
                    path = '...' + path[-WAY // 2:]
                below.append((path, child, address(child.address)))
            ways.extend(reversed(below))
        self.settle(seen - 1, number(self.value['entry_count']), 'entry_count')

    def below(self, walk, entry, parent):
        """The ring of children."""
        first = at = address(entry['first_child'])
        before, index = 0, 0
        while at:
            walk.step(at, 'the tree')
            child = follow(gdb.Value(at).cast(self.value['root'].type.pointer()))
            if address(child['parent']) != parent:
                raise Damage('the entry at %#x names another parent' % at)
            if index and address(child['prev']) != before:
                raise Damage('the entry at %#x names another one before it' % at)
            yield '/%d' % index, child
            before, index = at, index + 1
            at = address(child['next'])
            if at == first:
                break
            if at == 0:
                raise Damage('a ring of children is open')


class Bitree(Tree):
    def below(self, walk, entry, parent):
        for side in ('less', 'equal', 'greater'):
            at = address(entry[side])
            if at:
                walk.step(at, 'the tree')
                child = follow(gdb.Value(at).cast(self.value['root'].type.pointer()))
                above = parent if side != 'equal' else address(entry['parent'])
                if address(child['parent']) != above:
                    raise Damage('the entry at %#x names another parent' % at)
                yield '.' + side, child


PRINTERS = {
    'stream': Stream, 'string': Buffer, 'wchar': Wide, 'char': Slice, 'stringx': View,
    'pool': Pool, 'pool_iter': Iter,
    'arrays': Array, 'arrayd': NumberPairs, 'arrayx': NumberPairs, 'array': TextPairs,
    'arrayt': Tiny, 'bits': Bits,
    'hash': TextHash, 'hashd': Hash, 'hashx': Hash, 'hasht': WideHash,
    'btree': TextBtree, 'btreed': Btree, 'btreex': Btree,
    'list': TextList, 'lists': List, 'listx': BlockList,
    'tree': Tree, 'bitree': Bitree,
}


def register():
    printers = gdb.printing.RegexpCollectionPrettyPrinter('qek_std')
    for family, printer in PRINTERS.items():
        printers.add_printer('qek_' + family, '^qek_%s$' % family, printer)
    gdb.printing.register_pretty_printer(gdb.current_objfile(), printers, replace=True)


register()
