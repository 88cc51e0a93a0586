#include "selection/reduced_views.h"

#include "support.h"

namespace {

TEST(Ungap, KeepsPositionsWithoutAnyGap) {
  const std::string wide(5000, 'A');  // more than is looked at in one piece
  std::string holed = wide;
  holed[4095] = holed[4096] = '-';
  EXPECT_EQ(listed(ungap(alignment({wide, holed})).newlet), "1..4095 4098..5000 ");
  EXPECT_EQ(listed(ungap(alignment({"A-CDEF", "ABC-EF"})).newlet), "1..1 3..3 5..6 ");
  EXPECT_EQ(listed(ungap(alignment({"-?X", "A~*"})).newlet), "2..3 ");  // other letters are no gaps
  EXPECT_EQ(listed(ungap(alignment({"-A", "A-"})).newlet), "");
}

}  // namespace
