#pragma once

// Search statements that were read before. A screen asks the same few statements with other values:
// reading, typing and rendering them anew costs several times what a search by its key does.
//
//   KeptSearches kept;
//   Answer<RenderedSearch> search = kept.Render(input);    // as RenderSearch answers it
//
// What is found again is only what Shape tells: whoever may read less, sees other documents, gives
// a null or another kind of pattern gets a statement of his own.

#include <atomic>
#include <cstdint>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "server/dialect/search.h"

namespace orvane::server::dialect {
struct Shape;
}  // namespace orvane::server::dialect

namespace orvane::server {

/// Thread-safe. Keeps the statements that were asked for last.
class KeptSearches {
 public:
  static constexpr std::size_t kMost = 256;
  static constexpr std::size_t kMostBytes = std::size_t{8} * 1024 * 1024;

  explicit KeptSearches(std::size_t most = kMost, std::size_t mostBytes = kMostBytes)
      : most_(most), mostBytes_(mostBytes) {}

  /// Answers and failures of RenderSearch.
  Answer<RenderedSearch> Render(const SearchInput& input);
  /// How many statements were read because no kept one served.
  std::int64_t Read() const { return read_; }
  /// About how many bytes are kept.
  std::size_t Bytes() const;

 private:
  using ShapePtr = std::shared_ptr<const dialect::Shape>;
  /// The shapes that texts of one key become, the newest first.
  struct Entry {
    std::string key;
    std::vector<ShapePtr> shapes;
    std::size_t Bytes() const;
  };

  std::vector<ShapePtr> Find(const std::string& key);
  void Keep(std::string key, ShapePtr shape);

  const std::size_t most_;
  const std::size_t mostBytes_;
  mutable std::mutex mutex_;
  std::size_t bytes_ = 0;
  std::list<Entry> entries_;  ///< the one asked for last in front
  std::unordered_map<std::string_view, std::list<Entry>::iterator> byKey_;
  std::atomic<std::int64_t> read_{0};
};

}  // namespace orvane::server
