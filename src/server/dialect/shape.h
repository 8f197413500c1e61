#pragma once

// What a search statement becomes, apart from its values: reading, typing and rendering it once
// serves every later search that differs in what its columns are compared with, in where its
// portion begins, in the day and in who asks.
//
//   Answer<Shape> shape = MakeShape(tokens, input);
//   std::optional<RenderedSearch> next = Fill(*shape, otherTokens, otherInput);

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "server/dialect/lexer.h"
#include "server/dialect/renderer.h"
#include "server/dialect/search.h"

namespace orvane::server::dialect {

/// Everything in which tokens must agree beside their values, and what else decides the rendering
/// and is no value: the engine, the rows asked for, the zone.
std::string ShapeKey(const std::vector<Token>& tokens, const SearchInput& input);

struct Shape {
  /// A value that the statement was given: a literal, or a named parameter.
  struct Given {
    bool open = false;    ///< see OpenValue
    std::string literal;  ///< as it was written
    std::string name;     ///< of a parameter
    Variant value;        ///< of a parameter that is not open
  };
  struct Table {
    int number = 0;
    const CatalogueTable* table = nullptr;
    std::string predicate;  ///< its text
  };

  RenderedSearch search;
  std::vector<ParamSource> sources;  ///< one per parameter of the statement
  std::size_t literals = 0;          ///< so many of `given`, the first ones
  std::vector<Given> given;
  std::vector<Table> tables;
  VariantArray after;

  /// About how many bytes it takes up.
  std::size_t Bytes() const;
};

/// Reads and renders a statement. Failures as of RenderSearch.
Answer<Shape> MakeShape(const std::vector<Token>& tokens, const SearchInput& input);

/// The statement with other values of the same ShapeKey; empty when with these it is another one,
/// or may not be asked.
std::optional<RenderedSearch> Fill(const Shape& shape, const std::vector<Token>& tokens,
                                   const SearchInput& input);

}  // namespace orvane::server::dialect
