#include "data/picture_mask.h"

#include <gtest/gtest.h>

#include <sstream>

namespace orvane::data {
namespace {

/// Rows: a mask, and what it says to each text: "+" complete, "…" beginning, "-" impossible. "''"
/// is the empty text.
struct MaskRow {
  const char* mask;
  const char* verdicts;
};

constexpr MaskRow kMasks[] = {
    {"{1,2,3,4,5,6,7,8,9}[*3[#]]", "''… 1+ 9999+ 0- 12345- a- 1.-"},
    {"{1,2,3,4,5,6,7,8,9}[*8[#]]", "''… 123456789+ 1234567890- 01-"},
    {"[*40[@]]",
     "''+ Ламарина+ 1234567890123456789012345678901234567890+ "
     "12345678901234567890123456789012345678901-"},
    {"[*10[@]]", "''+ ivanova+ Щъркелчето+ ЩъркелчетоА-"},
    {"{{+}#,#}[*1[#]][;.[#[*1[#]]]]",
     "''… 5+ 99+ +5+ +… +99+ 100- 5.+ 5,+ 5,2+ 5.25+ 5,255- ,5- -5- 99,99+ 5;-"},
    {"{{;-,;+}#,#}[*12[#]][;.[#[*2[#]]]]",
     "''… -… +… -1+ +1+ 1+ 1234567890123+ 12345678901234- -0,125+ 0,1255- 1,+ --1-"},
    {"*9[#]", "''+ 123456789+ 1234567890- 12a-"},
    {"*3#", "''… 12… 123+ 1234- 12a-"},
    {"*#", "''+ 0+ 12345678901234567890+ 1a-"},
    {"*[#]", "''+ 77+ x-"},
    {"*[#]-?", "1… -… 12-я+ 12-Q+ -5-"},
    {"??;#", "ж… жЩ… жЩ#+ ж1- Ωé#+"},
    {"{а{б,в},г}д", "а… аб… абд+ авд+ гд+ ад- г…"},
    {"A[B[C]]D", "A… AB… AD+ ABD+ ABCD+ ACD- ABC…"},
    {"[*2[#]].[*2[#]]", "''… .+ 1.2+ 12.34+ 123- .5+ 1,- "},
};

TEST(PictureMask, RefusesAtTheFirstCharacterThatCannotLeadToAMatch) {
  for (const MaskRow& row : kMasks) {
    const PictureMask mask(row.mask);
    std::istringstream verdicts(row.verdicts);
    for (std::string word; verdicts >> word;) {
      const bool beginning = word.ends_with("…");
      const std::string text = word.substr(0, word.size() - (beginning ? 3 : 1));
      const MaskMatch expected = beginning            ? MaskMatch::Beginning
                                 : word.back() == '+' ? MaskMatch::Complete
                                                      : MaskMatch::Impossible;
      EXPECT_EQ(mask.Match(text == "''" ? "" : text), expected) << row.mask << " : " << text;
    }
  }
}

TEST(PictureMask, AnEmptyMaskTakesEverything) {
  EXPECT_TRUE(PictureMask().IsEmpty());
  EXPECT_EQ(PictureMask().Match("каквото и да е"), MaskMatch::Complete);
}

TEST(PictureMask, ALongTextAgainstManyChoicesIsQuick) {
  const PictureMask mask("*[*[*[#]]]x");
  EXPECT_EQ(mask.Match(std::string(2000, '1')), MaskMatch::Beginning);
}

TEST(PictureMaskDeathTest, AMalformedMaskIsTheProgrammersError) {
  for (const char* mask : {"{1,2", "[#", "#]", "*", ";"})
    EXPECT_DEATH(PictureMask{mask}, "mask") << mask;
}

}  // namespace
}  // namespace orvane::data
