// Finds a picture's own data by its id.
#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <stdexcept>

namespace zum::pictures {

/// Throws for an id that the rows do not have.
template <typename Row, std::size_t N>
const Row& rowOf(const Row (&rows)[N], int id) {
  const auto* const found =
      std::find_if(std::begin(rows), std::end(rows), [id](const Row& row) { return row.id == id; });
  if (found == std::end(rows)) throw std::logic_error("a picture has no data of its own");
  return *found;
}

}  // namespace zum::pictures
