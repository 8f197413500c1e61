#include "server/dialect/kept_searches.h"

#include <optional>
#include <utility>

#include "server/dialect/lexer.h"
#include "server/dialect/shape.h"

namespace orvane::server {
namespace {

/// Of one key: values that decide come in few combinations.
constexpr std::size_t kMostShapes = 8;

/// Whether filling the shape with the values it was made with gives what was rendered.
bool ServesItself(const dialect::Shape& shape, const std::vector<dialect::Token>& tokens,
                  const SearchInput& input) {
  const auto again = dialect::Fill(shape, tokens, input);
  return again && again->statement.params == shape.search.statement.params;
}

}  // namespace

Answer<RenderedSearch> KeptSearches::Render(const SearchInput& input) {
  const auto tokens = dialect::Tokenise(input.sql);
  if (!tokens) return tokens.GetFailure();
  std::string key = dialect::ShapeKey(*tokens, input);
  for (const ShapePtr& shape : Find(key)) {
    if (auto search = dialect::Fill(*shape, *tokens, input)) return *std::move(search);
  }
  ++read_;
  auto made = dialect::MakeShape(*tokens, input);
  if (!made) return made.GetFailure();
  RenderedSearch search = made->search;
  if (ServesItself(*made, *tokens, input)) {
    Keep(std::move(key), std::make_shared<const dialect::Shape>(*std::move(made)));
  }
  return search;
}

std::vector<KeptSearches::ShapePtr> KeptSearches::Find(const std::string& key) {
  const std::lock_guard lock(mutex_);
  const auto found = byKey_.find(key);
  if (found == byKey_.end()) return {};
  entries_.splice(entries_.begin(), entries_, found->second);
  return found->second->shapes;
}

void KeptSearches::Keep(std::string key, ShapePtr shape) {
  const std::lock_guard lock(mutex_);
  auto found = byKey_.find(key);
  if (found == byKey_.end()) {
    entries_.push_front({std::move(key), {}});
    found = byKey_.emplace(entries_.front().key, entries_.begin()).first;
  } else {
    bytes_ -= found->second->Bytes();
  }
  std::vector<ShapePtr>& shapes = found->second->shapes;
  shapes.insert(shapes.begin(), std::move(shape));
  if (shapes.size() > kMostShapes) shapes.pop_back();
  bytes_ += found->second->Bytes();
  while (!entries_.empty() && (entries_.size() > most_ || bytes_ > mostBytes_)) {
    bytes_ -= entries_.back().Bytes();
    byKey_.erase(entries_.back().key);
    entries_.pop_back();
  }
}

std::size_t KeptSearches::Bytes() const {
  const std::lock_guard lock(mutex_);
  return bytes_;
}

std::size_t KeptSearches::Entry::Bytes() const {
  std::size_t bytes = sizeof(Entry) + key.size();
  for (const ShapePtr& shape : shapes)
    bytes += shape->Bytes();
  return bytes;
}

}  // namespace orvane::server
