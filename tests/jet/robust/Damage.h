#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

/// Ways to damage a file. What is tried with each damaged file is always the same: it is opened,
/// checked, and every table and index read; that must end, with or without errors, and must not
/// write.
namespace zent::jet::testing {

/// Tries one file.
void TryFile(std::string_view bytes);

/// The file cut off at every `step`-th page boundary, and one byte before and behind it.
void TryCutFiles(const std::string& bytes, std::size_t page_size, std::size_t step);

/// `runs` files with `changes` bytes each put in other places than they were; a seed is a set.
void TryChangedBytes(const std::string& bytes, unsigned seed, int runs, int changes);

/// Each of the first `count` bytes of each page set to `value`: types, counts, owners, links.
void TryHeadsOfPages(const std::string& bytes, std::size_t page_size, std::size_t count,
                     unsigned value);

}  // namespace zent::jet::testing
