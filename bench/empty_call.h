#pragma once

// What a call costs when nothing is done: the generated client against a server that answers at
// once, over loopback.

#include <memory>

#include "packet/floors.h"

namespace orvane::bench {

using namespace apps;  // measures every floor

class EmptyCall {
 public:
  EmptyCall();
  EmptyCall(const EmptyCall&) = delete;
  EmptyCall& operator=(const EmptyCall&) = delete;
  ~EmptyCall();

  /// There and back.
  void operator()() const;

 private:
  struct Link;
  std::unique_ptr<Link> link_;
};

}  // namespace orvane::bench
