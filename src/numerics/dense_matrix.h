// A small matrix of any size, stored row after row.
#pragma once

#include <cstddef>
#include <vector>

namespace zelvane {

template <typename T>
struct DenseMatrix {
  DenseMatrix() = default;
  DenseMatrix(std::size_t rowCount, std::size_t columnCount)
      : rows(rowCount), columns(columnCount), element(rowCount * columnCount) {}

  T& operator()(std::size_t row, std::size_t column) { return element[row * columns + column]; }
  T operator()(std::size_t row, std::size_t column) const { return element[row * columns + column]; }

  std::size_t rows = 0;
  std::size_t columns = 0;
  std::vector<T> element;
};

}  // namespace zelvane
