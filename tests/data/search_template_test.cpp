#include "data/search_template.h"

#include <gtest/gtest.h>

namespace orvane::data {
namespace {

const std::vector<std::string> kUsers = {"select ShortName,UserName ", "from WSysUsers {$WN}",
                                         "{$W}", "{$O}"};
const std::vector<std::string> kPartners = {"SELECT Partner FROM Partners {$WN}",
                                            "WHERE PartnerTypeSupplier = :Kind", "{$WA}", "{$O}"};

std::string TextOf(const NamedValues& values) {
  std::string text;
  for (const NamedValue& value : values)
    text += value.name + "=" + value.value.ToText() + ";";
  return text;
}

struct ComposeRow {
  const char* name;
  const std::vector<std::string>& lines;
  NamedValues params;
  std::vector<SearchCondition> conditions;
  const char* order;
  bool descending;
  const char* sql;
  const char* values;
};

TEST(SearchTemplate, TakesConditionsAsParameters) {
  using enum SearchMatch;
  const ComposeRow kRows[] = {
      {"none",
       kUsers,
       {},
       {},
       "",
       false,
       "select ShortName,UserName \nfrom WSysUsers WITH(NOLOCK)\n\n",
       ""},
      {"begins",
       kUsers,
       {},
       {{"UserName", Begins, "Ив"}},
       "UserName",
       true,
       "select ShortName,UserName \nfrom WSysUsers WITH(NOLOCK)\nWHERE UserName LIKE :Cond1\n"
       "ORDER BY UserName DESC",
       "Cond1=Ив%;"},
      {"wildcards",
       kUsers,
       {},
       {{"UserName", Contains, "5%_[а]"}},
       "",
       false,
       "select ShortName,UserName \nfrom WSysUsers WITH(NOLOCK)\nWHERE UserName LIKE :Cond1\n",
       "Cond1=%5[%][_][[]а]%;"},
      {"quotes stay values",
       kUsers,
       {},
       {{"ShortName", Equals, "'; --"}},
       "",
       false,
       "select ShortName,UserName \nfrom WSysUsers WITH(NOLOCK)\nWHERE ShortName = :Cond1\n",
       "Cond1='; --;"},
      {"two, and",
       kPartners,
       {{"Kind", 1}},
       {{"Name", Begins, "А"}, {"Partner", Equals, std::int64_t{1234567890123456789}}},
       "Name",
       false,
       "SELECT Partner FROM Partners WITH(NOLOCK)\nWHERE PartnerTypeSupplier = :Kind\n"
       "AND Name LIKE :Cond1 AND Partner = :Cond2\nORDER BY Name",
       "Kind=1;Cond1=А%;Cond2=1234567890123456789;"},
      {"names in use are left",
       kPartners,
       {{"cond1", 1}},
       {{"Partner", Equals, 5}},
       "",
       false,
       "SELECT Partner FROM Partners WITH(NOLOCK)\nWHERE PartnerTypeSupplier = :Kind\n"
       "AND Partner = :Cond2\n",
       "cond1=1;Cond2=5;"},
      {"any of",
       kUsers,
       {},
       {{"Code", Equals, VariantArray{7, 9}}},
       "",
       false,
       "select ShortName,UserName \nfrom WSysUsers WITH(NOLOCK)\nWHERE Code IN (:Cond1, :Cond2)\n",
       "Cond1=7;Cond2=9;"},
      {"none of",
       kUsers,
       {},
       {{"Code", Equals, VariantArray{}}},
       "",
       false,
       "select ShortName,UserName \nfrom WSysUsers WITH(NOLOCK)\nWHERE 1 = 0\n",
       ""},
      {"null",
       kUsers,
       {},
       {{"Code", Equals, Variant()}},
       "",
       false,
       "select ShortName,UserName \nfrom WSysUsers WITH(NOLOCK)\nWHERE Code IS NULL\n",
       ""},
      {"an empty text is no condition",
       kUsers,
       {},
       {{"UserName", Begins, ""}},
       "",
       false,
       "select ShortName,UserName \nfrom WSysUsers WITH(NOLOCK)\n\n",
       ""},
      {"number contains",
       kUsers,
       {},
       {{"Code", Contains, 5}},
       "",
       false,
       "select ShortName,UserName \nfrom WSysUsers WITH(NOLOCK)\nWHERE Code = :Cond1\n",
       "Cond1=5;"},
  };
  for (const ComposeRow& row : kRows) {
    const ComposedSearch search =
        ComposeSearch(row.lines, row.params, row.conditions, row.order, row.descending);
    EXPECT_EQ(search.sql, row.sql) << row.name;
    EXPECT_EQ(TextOf(search.params), row.values) << row.name;
  }
}

TEST(SearchTemplate, FirstDigitsOfANumberAreRanges) {
  const ComposedSearch search = ComposeSearch(
      {"{$W}"}, {}, {{"N", SearchMatch::Begins, std::int64_t{92233720368547758}}}, "");
  EXPECT_EQ(search.sql,
            "WHERE (N = :Cond1 OR N >= :Cond2 AND N <= :Cond3 OR N >= :Cond4 AND N <= :Cond5)");
  EXPECT_EQ(TextOf(search.params),
            "Cond1=92233720368547758;Cond2=922337203685477580;Cond3=922337203685477589;"
            "Cond4=9223372036854775800;Cond5=9223372036854775807;");
  EXPECT_EQ(ComposeSearch({"{$W}"}, {}, {{"N", SearchMatch::Begins, 0}}, "").sql,
            "WHERE N = :Cond1");
}

TEST(SearchTemplate, FieldsAreOfferedByLanguage) {
  struct Row {
    Visibility visibility;
    bool oneLanguage, first, second;
  };
  constexpr Row kRows[] = {
      {Visibility::fvAlways, true, true, true},
      {Visibility::fvFirstLang, true, true, false},
      {Visibility::fvSecondLang, false, false, true},
      {Visibility::fvHidden, false, false, false},
  };
  for (const Row& row : kRows) {
    SearchField field;
    field.visibility = row.visibility;
    EXPECT_EQ(IsOffered(field, false, true), row.oneLanguage);
    EXPECT_EQ(IsOffered(field, true, true), row.first);
    EXPECT_EQ(IsOffered(field, true, false), row.second);
  }
}

}  // namespace
}  // namespace orvane::data
