#include "wire/loopback.h"

#include <gtest/gtest.h>

namespace orvane::wire {
namespace {

TEST(Loopback, IsThisMachineAndNothingThatLooksLikeIt) {
  const struct {
    const char* address;
    bool loopback;
  } rows[] = {
      {"127.0.0.1:8011", true},
      {"127.9.9.9", true},
      {"localhost:8011", true},
      {"[::1]:8011", true},
      {"::1", true},
      {"0.0.0.0:8011", false},
      {"[::]:8011", false},
      {"10.0.0.5:8011", false},
      {"server:8011", false},
      {"127.example.org:1", false},
      {"[fe80::1]:1", false},
      {"localhost.example.org:1", false},
      {"", false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(IsLoopback(HostOf(row.address)), row.loopback) << row.address;
  }
  EXPECT_EQ(AddressOf("::1", 5), "[::1]:5");
  EXPECT_EQ(AddressOf("server", 5), "server:5");
}

}  // namespace
}  // namespace orvane::wire
