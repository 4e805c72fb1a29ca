# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
"""The rows of the table: what is measured against whom, and the ratio that is aimed at.

Ratio = our time / the peer's; lower is better. `a|b` is the better of two peers. A peer without a
target is shown and not judged. `limit` names why a figure cannot be passed, at all sizes or by size;
docs/performance.md explains each under that name.
"""

K, M = 1_000, 1_000_000
KI, MI = 1 << 10, 1 << 20


class Against:
    def __init__(self, peer, targets=None, limit=None):
        self.peer = peer
        self.targets = targets or {}
        self.limit = limit

    def limit_at(self, size):
        return self.limit.get(size) if isinstance(self.limit, dict) else self.limit


def every(target, *sizes):
    return {size: target for size in sizes}


def by_size(sizes, *targets):
    return dict(zip(sizes, targets, strict=True))


THREE = (K, 100 * K, M)
TWO = (K, M)
TEXT = (KI, MI)
LENGTHS = (16, KI, MI)
COUNT = (10 * K,)

ROWS = {
    "hash_insert": [Against("absl|apr", by_size(THREE, 0.4, 1.0, 1.1))],
    "hash_find_hit": [
        Against("glib", by_size(THREE, 0.6, 0.85, 1.1)),
        Against("absl", by_size(THREE, 1.15, 2.0, 1.8), "chains"),
    ],
    "hash_find_miss": [Against("unordered_map", by_size(THREE, 0.9, 1.0, 1.0))],
    "hash_iterate": [Against("glib", by_size(THREE, 0.5, 1.2, 0.8), "steps")],
    "hash_remove": [
        Against("walk", by_size((K, 10 * K, 100 * K), 0.3, 0.15, 0.15)),
        Against("absl", limit="dense text"),
    ],
    "btree_find": [
        Against("absl", by_size(THREE, 0.6, 1.1, 0.95)),
        Against("glib"),
    ],
    "btree_insert": [
        Against("absl", by_size(THREE, 0.45, 0.95, 0.85)),
        Against("glib"),
    ],
    "btree_iterate": [Against("absl"), Against("glib")],
    "array_sort": [Against("std", by_size(TWO, 0.27, 0.33))],
    "arrays_sort": [Against("qsort", every(0.7, M), "told steps")],
    "arrays_append": [
        Against("glib", every(0.65, K, 100 * K)),
        Against("vector"),
    ],
    "arrays_append_far": [Against("vector", limit="growth")],
    "arrays_append_expanded": [Against("vector", every(1.3, 10 * M))],
    "array_insert_middle": [Against("loop", every(0.15, 100 * K), "moving")],
    "array_remove_middle": [Against("loop", every(0.15, 100 * K), "moving")],
    "pool_batch": [
        Against("malloc", every(0.5, *TWO)),
        Against("boost", every(1.8, *TWO), "open pool"),
    ],
    "pool_pair": [
        Against("malloc", every(0.5, M), "open pool"),
        Against("boost", every(1.8, M), "open pool"),
    ],
    "stream_fields_write": [Against("pointer", every(2.0, M), "call")],
    "stream_fields_read": [Against("pointer", every(2.0, M), "call")],
    "stream_compact_write": [Against("leb128", every(1.0, M))],
    "stream_compact_read": [Against("leb128", every(1.0, M))],
    "crc32": [
        Against("libdeflate", every(1.2, 64)),
        Against("isa-l", every(1.1, KI)),
        Against("zlib", every(0.06, MI), "multiplier"),
    ],
    "hash_key": [Against("zlib", by_size((8, 16, 24), 0.55, 0.33, 0.25))],
    "mem_chr": [Against("memchr", by_size(LENGTHS, 1.5, 1.05, 1.05), {16: "call"})],
    "mem_rchr": [Against("memrchr", by_size(LENGTHS, 1.5, 1.05, 1.05), {16: "call"})],
    "mem_str": [Against("memmem", by_size(LENGTHS, 0.5, 0.4, 0.33))],
    "mem_cmp": [Against("memcmp", by_size(LENGTHS, 1.8, 1.15, 1.15))],
    "mem_icmp": [Against("strncasecmp", every(0.5, *LENGTHS), {16: "call", MI: "memory"})],
    "bits_insert": [Against("boost", every(1.0, M), "call")],
    "bits_find": [Against("boost", every(1.0, M), "call")],
    "clone_hash": [Against("unordered_map", every(0.4, M))],
    "clone_hashd": [Against("unordered_map", every(0.4, M))],
    "clone_btree": [Against("map", every(0.4, M))],
    "clone_btreed": [Against("map", every(0.4, M))],
    "wide_find": [Against("u16string", every(0.8, *TEXT))],
    "wide_compare": [Against("u16string", every(0.8, *TEXT))],
    "wide_widen": [Against("u16string", every(0.8, *TEXT))],
}

for family in ("hashd", "hashx", "hasht"):
    for work in ("insert", "find", "remove", "iterate"):
        limit = {"find": "chains", "iterate": "steps"}.get(work)
        ROWS[f"{family}_{work}"] = [
            Against("unordered_map", every(0.6, *TWO), limit),
            Against("uthash", every(0.6, *TWO), "steps" if work == "iterate" else None),
            Against("absl", limit="chains"),
        ]
for family in ("btreed", "btreex"):
    ROWS[f"{family}_find"] = [
        Against("map", by_size(THREE, 0.65, 0.5, 0.5)),
        Against("absl", by_size(THREE, 1.05, 1.2, 2.0), "nodes"),
    ]
    ROWS[f"{family}_insert"] = [
        Against("map", every(0.8, *THREE)),
        Against("absl", by_size(THREE, 0.8, 1.05, 1.3), "nodes"),
    ]
for family in ("arrayd", "arrayx"):
    ROWS[f"{family}_sort_random"] = [Against("std", by_size(TWO, 0.75, 0.32))]
    ROWS[f"{family}_sort_few"] = [Against("std", every(0.3, M))]
    ROWS[f"{family}_sort_sorted"] = [Against("std", every(1.0, M))]
for work, limit in (("append_char", "call"), ("append_16", "growth")):
    ROWS[f"string_{work}"] = [
        Against("gbytearray", every(0.45, K, 100 * K), limit),
        Against("gstring", every(0.45, K, 100 * K), limit),
    ]
for work in ("replace", "find", "trim", "lower"):
    limits = {"replace": ("growth", {KI: "growth"}), "trim": ({MI: "memory"}, None)}
    limit_of_std, limit_of_gstring = limits.get(work, (None, None))
    ROWS[f"string_{work}"] = [
        Against("std", every(0.5, *TEXT), limit_of_std),
        Against("gstring", every(0.5, *TEXT), limit_of_gstring),
    ]
for work in ("queue", "stack"):
    for family in ("list", "lists"):
        limit = {M: "open pool"} if family == "list" else None
        ROWS[f"{family}_{work}"] = [
            Against("std", every(0.6, *TWO), limit),
            Against("glib", every(0.6, *TWO), limit),
        ]
    limit = "packed" if work == "queue" else None
    ROWS[f"listx_{work}"] = [Against("deque", every(2.0, *TWO), limit)]
for number, target in (("integer", (0.2, 0.85)), ("long", (0.2, 0.85)), ("double", (0.05, 0.5))):
    ROWS[f"print_{number}"] = [
        Against("snprintf", every(target[0], *COUNT)),
        Against("to_chars", every(target[1], *COUNT), "call" if number == "integer" else None),
    ]
for number, peer in (
    ("integer", "strtol"),
    ("long", "strtol"),
    ("float", "strtod"),
    ("double", "strtod"),
):
    ROWS[f"read_{number}"] = [
        Against(peer, every(0.2, *COUNT)),
        Against("from_chars", every(1.0, *COUNT)),
    ]
for work in ("build", "walk", "free"):
    ROWS[f"tree_{work}"] = [Against("gnode", every(0.6, *TWO), "steps" if work == "walk" else None)]
    ROWS[f"bitree_{work}"] = [Against("map", every(0.6, *TWO), None if work == "free" else "shape")]

# Heap bytes per entry, not judged. apr maps its pages past malloc, so they are not seen.
for family, peers in {
    "hash": ("absl", "glib", "unordered_map"),
    "hashd": ("absl", "unordered_map", "uthash"),
    "hashx": ("absl", "unordered_map", "uthash"),
    "hasht": ("absl", "unordered_map", "uthash"),
    "btree": ("absl", "glib"),
    "btreed": ("map", "absl"),
    "btreex": ("map", "absl"),
    "arrays": ("vector", "glib"),
    "list": ("std", "glib"),
    "lists": (),
    "listx": ("deque",),
    "tree": ("gnode",),
    "bitree": ("map",),
}.items():
    ROWS[f"{family}_memory"] = [Against(peer) for peer in peers]

# Families together, and weights at the end.
FAMILIES = ("hash_", "hash", "btree", "array", "pool", "list", "string", "wide", "mem_", "stream")
ROWS = dict(
    sorted(
        ROWS.items(),
        key=lambda item: (
            item[0].endswith("_memory"),
            next((at for at, name in enumerate(FAMILIES) if item[0].startswith(name)), 99),
        ),
    )
)

# The rows that README shows, with its words for the work and the peer: some of those where we are
# faster, and the plainest of those where we are not. A figure that changes is no reason to change them.
README = {
    ("hash_insert", M, "absl|apr"): (
        "adding a key of 8 to 24 letters to a hash table",
        "the better of `absl::flat_hash_map` and `apr_hash`",
    ),
    ("hash_find_hit", M, "absl"): ("finding such a key", "`absl::flat_hash_map`"),
    ("hash_remove", 100 * K, "absl"): ("removing such a key", "`absl::flat_hash_map`"),
    ("hashd_insert", M, "unordered_map"): (
        "adding a number to a hash table",
        "`std::unordered_map`",
    ),
    ("btreed_find", 100 * K, "map"): ("finding a number in an ordered tree", "`std::map`"),
    ("btreed_find", M, "absl"): ("the same", "`absl::btree_map`"),
    ("array_sort", M, "std"): ("sorting by text, for each entry", "`std::sort`"),
    ("arrays_append", 100 * K, "vector"): ("appending a word to an array", "`std::vector`"),
    ("pool_batch", M, "malloc"): ("taking an item and giving it back", "`malloc`, `free`"),
    ("string_find", MI, "std"): ("finding a text in 1 MiB", "`std::string`"),
    ("crc32", MI, "zlib"): ("a CRC-32 of 1 MiB", "zlib"),
    ("crc32", MI, "libdeflate"): ("the same", "libdeflate"),
    ("print_double", 10 * K, "snprintf"): ("printing a double", "`snprintf`"),
    ("hash_memory", M, "absl"): (
        "heap bytes for a key in a hash table",
        "`absl::flat_hash_map`",
    ),
}
