#pragma once

// The literals and named parameters of a statement that is being bound, and which of them are open
// (OpenValue): those of which every constant was compared with a column and went nowhere else.

#include <string>
#include <vector>

#include "server/dialect/typed.h"

namespace orvane::server::dialect {

class GivenValues {
 public:
  /// While it lives, every given value decides: in what is shown, in CASE, in ORDER BY.
  class Deciding {
   public:
    explicit Deciding(GivenValues& values) : values_(values) { ++values_.deciding_; }
    Deciding(const Deciding&) = delete;
    Deciding& operator=(const Deciding&) = delete;
    ~Deciding() { --values_.deciding_; }

   private:
    GivenValues& values_;
  };

  /// So many literals, numbered from 0; parameters are numbered behind them.
  explicit GivenValues(int literals);

  TermPtr MakeLiteral(Variant value, Place place, int number);
  TermPtr MakeParameter(Variant value, Place place, const std::string& name);
  /// `condition` compares `column` with the constant `given`, its part 1.
  ConditionPtr OpenCompare(const ConditionPtr& condition, const TermPtr& column, const Term& given);
  /// `condition` holds a text, or its fold, against the pattern `given`.
  ConditionPtr OpenLike(const ConditionPtr& condition, const Term& given, bool folded,
                        const LikePattern& like);

  /// Parameters in the order of their first use.
  const std::vector<std::string>& Parameters() const { return parameters_; }
  std::vector<bool> Open() const;

 private:
  struct Use {
    int made = 0;
    int open = 0;
  };

  TermPtr Make(Variant value, Place place, int number);
  bool MayOpen(const Term& given) const { return deciding_ == 0 && given.open.IsOpen(); }

  const int literals_;
  std::vector<Use> uses_;
  std::vector<std::string> parameters_;
  int deciding_ = 0;
};

}  // namespace orvane::server::dialect
