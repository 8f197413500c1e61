#pragma once

// Picture masks of grid columns and inspector rows: # a digit, @ any character, ? a letter, {a,b}
// one of, [x] optional, *3[x] up to three times x, *2x exactly twice, ;x the character x itself,
// the rest literal. "{1,2,3,4,5,6,7,8,9}[*3[#]]" takes 1 to 9999.

#include <memory>
#include <string_view>

namespace orvane::data {

enum class MaskMatch { Impossible, Beginning, Complete };

class PictureMask {
 public:
  /// An empty mask takes everything. A malformed mask is a programmer's error (asserted).
  explicit PictureMask(std::string_view mask = {});
  ~PictureMask();
  PictureMask(const PictureMask&);
  PictureMask& operator=(const PictureMask&);

  /// Impossible: no continuation of `text` can match; Beginning: something is still missing.
  MaskMatch Match(std::string_view text) const;
  bool IsEmpty() const { return program_ == nullptr; }

 private:
  struct Program;
  std::shared_ptr<const Program> program_;
};

}  // namespace orvane::data
