#pragma once

namespace orvane::host {

/// A flag that is true while this lives.
class Meanwhile {
 public:
  explicit Meanwhile(bool& flag) : flag_(flag) { flag_ = true; }
  ~Meanwhile() { flag_ = false; }
  Meanwhile(const Meanwhile&) = delete;
  Meanwhile& operator=(const Meanwhile&) = delete;

 private:
  bool& flag_;
};

}  // namespace orvane::host
