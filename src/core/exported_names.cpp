#include "core/exported_names.h"

#include <link.h>

// What the linker says of this very library; not every link.h declares it.
// NOLINTNEXTLINE(readability-redundant-declaration)
extern ElfW(Dyn) _DYNAMIC[];
extern "C" __attribute__((visibility("hidden"))) const char __ehdr_start;

namespace cwmp {
namespace {

template <typename Entry>
const Entry* table(decltype(ElfW(Dyn)::d_tag) tag) {
    const auto* entry = _DYNAMIC;
    while (entry->d_tag != tag && entry->d_tag != DT_NULL) ++entry;
    if (entry->d_tag == DT_NULL) return nullptr;
    // glibc has made an address of the offset, musl has not.
    const auto base = reinterpret_cast<std::uintptr_t>(&__ehdr_start);
    const auto place = entry->d_un.d_ptr;
    return reinterpret_cast<const Entry*>(&__ehdr_start + (place < base ? place : place - base));
}

}  // namespace

// The table is four words (buckets, first symbol, words of the filter, shift), the filter, the buckets with the
// first symbol of each, and for each symbol its hash, whose lowest bit marks the last one of a bucket.
const char* exported_name(std::uint32_t hash) {
    const auto* header = table<std::uint32_t>(DT_GNU_HASH);
    if (header == nullptr) return nullptr;
    const auto* buckets = header + 4 + header[2] * (sizeof(ElfW(Addr)) / sizeof *header);
    const auto* hashes = buckets + header[0] - header[1];
    std::uint32_t symbol = buckets[hash % header[0]];
    if (symbol == 0) return nullptr;
    while ((hashes[symbol] | 1U) != (hash | 1U)) {
        if ((hashes[symbol++] & 1U) != 0) return nullptr;
    }
    return table<char>(DT_STRTAB) + table<ElfW(Sym)>(DT_SYMTAB)[symbol].st_name;
}

}  // namespace cwmp
