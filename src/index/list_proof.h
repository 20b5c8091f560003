#pragma once

#include <span>

#include "index/file_record.h"
#include "index/name_pool.h"
#include "index/posting_map.h"

namespace varnelo {

// Whether the lists hold each live record once for each time that a gram occurs in its name, and nothing
// else, and will go on to do so while the index changes them: the name of every live record is in the pool.
// Sums of weights that differ in every run are compared, not entries: lists that are wrong are taken for
// right by a chance of one in 2^64. Everything is read once, in the order in which it lies in memory. Takes 8
// bytes a record meanwhile.
bool listsFitNames(std::span<const FileRecord> records, const NamePool& names, const PostingMap& unigrams,
                   const PostingMap& bigrams, const PostingMap& trigrams);

}  // namespace varnelo
