#include "host/controls/control.h"

#include <algorithm>

#include "host/form.h"

namespace orvane::host {

Control::Control(TVosBaseForm& form, std::string_view name, ControlKind kind)
    : form_(form), name_(name), kind_(kind) {
  form_.controls_.push_back(this);
}

Control::~Control() {
  std::erase(form_.controls_, this);
  if (form_.activeControl_ == this) form_.activeControl_ = nullptr;
}

std::uint64_t Control::Version() const {
  const std::size_t look = LookHash();
  if (look != seenLook_) {
    seenLook_ = look;
    ++version_;
  }
  return version_;
}

std::size_t Control::LookHash() const {
  return LookHasher().Add(visible ? 1U : 0U).Value();
}

}  // namespace orvane::host
